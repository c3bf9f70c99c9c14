// The trace levels of "Debug Level". Each level shows only its own kind of
// message, under its own header; a level outside 1 to 5 shows nothing.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kt500::session {

enum class TraceKind : std::int16_t {
    Request = 1,       // a request handed to the BL
    Reply = 2,         // a reply document, in Reply
    ParameterXml = 3,  // the parameter document at start-up
    SessionData = 4,   // the session data
    RawData = 5,       // a reply string as it arrived
};

struct TraceMessage {
    std::string header;
    std::string text;
};

// The message to show for this kind at this level, or nothing.
[[nodiscard]] std::optional<TraceMessage> TraceFor(std::int16_t intDebugLevel, TraceKind kind,
                                                   std::string_view strContent);

}  // namespace kt500::session
