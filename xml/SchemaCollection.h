// A set of XSD schemas by target namespace, compiled once from the product's
// own files, used to validate documents on parse. Schemas may import one
// another's namespaces: the collection resolves imports among its members and
// never loads anything else.
#pragma once

#include "xml/XmlFree.h"

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace kt500::xml {

class Document;

class SchemaCollection {
public:
    SchemaCollection();
    ~SchemaCollection();
    SchemaCollection(SchemaCollection&&) noexcept;
    SchemaCollection& operator=(SchemaCollection&&) noexcept;

    // Adds the schema file for a namespace and recompiles the set. Returns
    // "" on success, else the reason (the collection keeps its former set).
    [[nodiscard]] std::string add(const std::string& namespaceUri,
                                  const std::filesystem::path& file);
    [[nodiscard]] bool contains(std::string_view namespaceUri) const;
    [[nodiscard]] bool empty() const noexcept { return m_files.empty(); }

    // Validates with a fresh validation context. An empty list means valid.
    // A root in a namespace the collection does not hold is one error.
    [[nodiscard]] std::vector<std::string> validate(const Document& document) const;

private:
    std::map<std::string, std::filesystem::path, std::less<>> m_files;
    std::map<std::string, std::string, std::less<>> m_texts;  // schema bytes by namespace
    XmlSchemaPtr m_schema;
};

}  // namespace kt500::xml
