// Session data from bytes: any text the BL hands to
// IQDLGuiEvent_UpdateSessionData must be taken without failing. A message
// that is not session data the schema accepts shows the parse failure and
// leaves the session as the last good message made it; one that is sets the
// role, mode and languages it names. Every input starts from the same
// session: the first message is sent again before it.
#include "FuzzSession.h"

#include "simulator/SessionOptions.h"
#include "xml/Document.h"
#include "xml/SchemaCollection.h"

#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

const kt500::xml::SchemaCollection& Schemas() {
    static const kt500::xml::SchemaCollection schemas = [] {
        kt500::xml::SchemaCollection s;
        if (!s.add("x-schema:QDLSessionDataSchema.xml",
                   kt500::fuzz::ShareDir() / "schemas" / "QDLSessionDataSchema.xml")
                 .empty()) {
            std::abort();
        }
        return s;
    }();
    return schemas;
}

}  // namespace

KT500_FUZZ_START_SESSION_FIRST

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kt500::app::ControlSession& session = kt500::fuzz::StartedSession();
    kt500::host::RavikKT500& control = session.control();
    static const std::string first =
        kt500::simulator::BuildSessionData(session.options(), "KT520", "7");
    (void)control.IQDLGuiEvent_UpdateSessionData(first);
    kt500::fuzz::Forget(session);
    const std::string role = control.tools().ActorRole;

    const std::string message(reinterpret_cast<const char*>(data), size);
    (void)control.IQDLGuiEvent_UpdateSessionData(message);

    const kt500::xml::LoadResult parsed = kt500::xml::Document::parse(message, {.schemas = &Schemas()});
    bool refused = false;
    for (const auto& box : session.dialogs().takeBoxes()) {
        refused = refused || (box.header == "GetSessionData" &&
                              box.text == control.Translate("parseFailed"));
    }
    if (refused == parsed.ok()) {
        std::abort();  // a good message refused, or a bad one taken
    }
    const std::string expectedRole =
        parsed.ok() ? parsed.document->root().firstChildElement().attribute("userRole") : role;
    if (control.tools().ActorRole != expectedRole) {
        std::abort();  // the role is not the one the last good message gave
    }
    kt500::fuzz::Forget(session);
    return 0;
}
