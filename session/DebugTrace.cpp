#include "session/DebugTrace.h"

namespace kt500::session {

std::optional<TraceMessage> TraceFor(std::int16_t intDebugLevel, TraceKind kind,
                                     std::string_view strContent) {
    if (intDebugLevel != static_cast<std::int16_t>(kind)) {
        return std::nullopt;
    }
    std::string_view prefix;
    switch (kind) {
        case TraceKind::Request:
            prefix = "Request to BL: ";
            break;
        case TraceKind::Reply:
            prefix = "XML from BL: ";
            break;
        case TraceKind::ParameterXml:
            prefix = "Parameter XML file from BL: ";
            break;
        case TraceKind::SessionData:
            prefix = "Session data from BL: ";
            break;
        case TraceKind::RawData:
            prefix = "Raw data from BL: ";
            break;
    }
    return TraceMessage{"Debug level " + std::to_string(intDebugLevel),
                        std::string(prefix) + std::string(strContent)};
}

}  // namespace kt500::session
