// Loads form files (share/forms/*.xml) into a Form. Each file is validated
// against the form schema; then its controls are checked as a whole (known
// kinds, no name and index twice, containers that exist, children that fit
// the kind) before any of them joins the form, so a file that fails adds
// nothing. Failures throw FormLoadError with the file name and the line.
#pragma once

#include "form/Form.h"

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace kt500::form {

class FormLoadError : public std::runtime_error {
public:
    FormLoadError(std::string file, long line, const std::string& reason);
    [[nodiscard]] const std::string& file() const noexcept { return m_file; }
    // 0 when the failure has no line (a file that cannot be read).
    [[nodiscard]] long line() const noexcept { return m_line; }
    [[nodiscard]] const std::string& reason() const noexcept { return m_reason; }

private:
    std::string m_file;
    long m_line;
    std::string m_reason;
};

class FormLoader {
public:
    static constexpr std::string_view kNamespace = "x-schema:KT500FormSchema.xml";
    static constexpr std::string_view kSchemaFileName = "KT500FormSchema.xsd";

    // Compiles the form schema once; a schema that does not compile throws
    // FormLoadError naming the schema file.
    explicit FormLoader(const std::filesystem::path& schemaFile);
    ~FormLoader();
    FormLoader(const FormLoader&) = delete;
    FormLoader& operator=(const FormLoader&) = delete;

    void load(Form& form, const std::filesystem::path& file) const;
    // In the order given: form order follows it.
    void load(Form& form, const std::vector<std::filesystem::path>& files) const;
    // The same from bytes; sourceName stands for the file in messages.
    void loadBytes(Form& form, std::string_view bytes, std::string_view sourceName) const;

    // The files of the common pages and of one family ("KT520", "KT540",
    // "PL500"; "" for all three) under share/forms, in load order.
    [[nodiscard]] static std::vector<std::filesystem::path> standardFiles(
        const std::filesystem::path& formsFolder, std::string_view family = {});

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

}  // namespace kt500::form
