// Replies from bytes: any text the BL hands to IQDLGuiEvent_CommunicationEvent
// must be taken without failing. A reply that is not a communication
// document the schema accepts shows the parse failure under the name of the
// routine that read it; one that is goes on to the device class, whose
// failures the event shows and survives. An empty event is no reply and
// shows nothing. What the reply sets going (the next
// group of a chain) plays out before the next input.
#include "FuzzSession.h"

#include "xml/Document.h"

#include <cstdint>
#include <cstdlib>
#include <string>

KT500_FUZZ_START_SESSION_FIRST

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kt500::app::ControlSession& session = kt500::fuzz::StartedSession();
    const std::string reply(reinterpret_cast<const char*>(data), size);
    kt500::host::RavikKT500& control = session.control();

    (void)control.IQDLGuiEvent_CommunicationEvent(reply);

    kt500::xml::ParseOptions options;
    options.schemas = control.communicationSchemas();
    if (reply.empty()) {
        if (!session.dialogs().takeBoxes().empty()) {
            std::abort();  // an empty event showed a box
        }
    } else if (!kt500::xml::Document::parse(reply, options).ok()) {
        bool shown = false;
        for (const auto& box : session.dialogs().takeBoxes()) {
            shown = shown || (box.header == "ItemListFromReply" &&
                              box.text == control.Translate("parseFailed"));
        }
        if (!shown) {
            std::abort();  // a reply that does not parse went by unreported
        }
    }
    kt500::fuzz::Forget(session);
    return 0;
}
