// Fuzz target of the unit tables parser: any bytes either load into tables
// whose conversions are total, or throw UnitTablesError; nothing else.
#include "simulator/UnitTables.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    try {
        const auto tables = kt500::simulator::UnitTables::parse(bytes, "fuzz");
        for (const auto& quantity : tables.quantities()) {
            for (const auto& from : quantity.units) {
                for (const auto& to : quantity.units) {
                    (void)tables.convert(1.5, from.name, to.name);
                }
            }
        }
        for (const auto& system : tables.systems()) {
            for (const auto& parameter : tables.parameters()) {
                (void)system.unitOf(parameter.name);
            }
        }
    } catch (const kt500::simulator::UnitTablesError&) {
    }
    return 0;
}
