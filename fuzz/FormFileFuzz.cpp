// Form files from bytes: the loader must turn any input into a form or a
// FormLoadError, and a loaded form must answer every property by name.
#include "form/FormLoader.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string_view>

namespace {

// The schema beside the sources: fuzz/../share/schemas, unless
// KT500_SHARE_DIR names another share folder.
std::filesystem::path schemaFile() {
    const char* share = std::getenv("KT500_SHARE_DIR");
    const std::filesystem::path folder =
        share != nullptr ? std::filesystem::path(share)
                         : std::filesystem::path(KT500_DEFAULT_SHARE_DIR);
    return folder / "schemas" / std::string(kt500::form::FormLoader::kSchemaFileName);
}

const kt500::form::FormLoader& loader() {
    static const kt500::form::FormLoader instance(schemaFile());
    return instance;
}

void readEveryProperty(const kt500::form::Form& form) {
    using kt500::form::PropertyId;
    for (const kt500::form::Control* control : form.controls()) {
        for (int id = 0; id <= static_cast<int>(PropertyId::ChartData); ++id) {
            const auto property = static_cast<PropertyId>(id);
            if (!control->has(property)) {
                continue;
            }
            try {
                (void)control->get(kt500::form::propertyName(property));
            } catch (const std::out_of_range&) {
                // List and ItemData with no entry selected.
            }
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    kt500::form::Form form;
    try {
        loader().loadBytes(form, bytes, "fuzz.xml");
    } catch (const kt500::form::FormLoadError&) {
        if (!form.controls().empty()) {
            std::abort();  // a failed file must add nothing
        }
        return 0;
    }
    readEveryProperty(form);
    return 0;
}
