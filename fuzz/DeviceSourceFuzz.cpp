// Family sources from bytes: the parser must turn any input into a family
// or a DeviceSourceError, and a family that loads must compose every
// document of every model it declares.
#include "simulator/DeviceCatalogue.h"
#include "simulator/DeviceFamilySource.h"

#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    using kt500::simulator::DeviceFamilySource;
    try {
        const DeviceFamilySource source = DeviceFamilySource::parse(bytes, "fuzz.xml");
        for (const std::string& deviceType : source.deviceTypes()) {
            for (const std::string& revision : source.revisions()) {
                const kt500::simulator::DeviceModel model{deviceType + "_" + revision, deviceType,
                                                          revision, "1", deviceType};
                try {
                    (void)source.parameterDocument(model).toXml();
                    (void)source.dataFile(model).toXml();
                    (void)source.guiInitDocument({deviceType, revision}).toXml();
                } catch (const kt500::simulator::DeviceSourceError&) {
                    // A revision the model does not have.
                }
            }
        }
    } catch (const kt500::simulator::DeviceSourceError&) {
    }
    return 0;
}
