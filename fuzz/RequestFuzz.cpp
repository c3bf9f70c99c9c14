// Requests from bytes: PostRequest must refuse or accept any input without
// failing, and every reply the simulated device then delivers must be a
// reply document that the communication schema accepts, each request ending
// with at most one final reply.
#include "services/IQDLGuiEvent.h"
#include "simulator/BuiltInBL.h"
#include "simulator/CommunicationMessages.h"
#include "xml/Document.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string_view>

namespace {

// The share folder of the source tree, unless
// KT500_SHARE_DIR names another one.
std::filesystem::path shareDir() {
    const char* share = std::getenv("KT500_SHARE_DIR");
    return share != nullptr ? std::filesystem::path(share)
                            : std::filesystem::path(KT500_DEFAULT_SHARE_DIR);
}

class CheckingSink final : public kt500::services::IQDLGuiEvent {
public:
    explicit CheckingSink(const kt500::xml::SchemaCollection& schema) : m_schema(schema) {}

    bool IQDLGuiEvent_UpdateSessionData(const std::string&) override { return true; }
    bool IQDLGuiEvent_CommunicationEvent(const std::string& reply) override {
        const kt500::xml::LoadResult loaded =
            kt500::xml::Document::parse(reply, {.schemas = &m_schema});
        if (!loaded.ok()) {
            std::abort();  // the BL sent a reply the schema refuses
        }
        if (loaded.document->root()
                .firstChildElement("communicationResponse")
                .attribute("isFinal") == "1") {
            ++finals;
        }
        return true;
    }
    void IQDLGuiEvent_ReadyForAutoAction(bool) override {}
    void IQDLGuiEvent_AutoActionComplete(bool) override {}
    void IQDLGuiEvent_AutoActionStopped(bool) override {}
    void IQDLGuiEvent_OnLockDataSet(const std::string&, const std::string&) override {}
    bool IQDLGuiEvent_OnUnlockDataSet(const std::string&, const std::string&) override {
        return true;
    }
    void IQDLGuiEvent_OnParameterChanged(const std::string&, const std::string&) override {}

    int finals = 0;

private:
    const kt500::xml::SchemaCollection& m_schema;
};

kt500::simulator::SessionOptions offline() {
    kt500::simulator::SessionOptions options;
    options.online = false;
    return options;
}

struct Session {
    Session()
        : schema(kt500::simulator::LoadCommunicationSchema(shareDir())),
          bl(offline(), shareDir()),
          sink(schema) {
        std::int32_t id = 0;
        std::string sessionData;
        kt500::xml::Node parameters;
        std::shared_ptr<kt500::services::IDtmLanguage> language;
        bool locked = false;
        bool success = false;
        bl.control()->OpenConnection(sink, "", id, sessionData, parameters, language, locked,
                                     success);
        if (!success) {
            std::abort();
        }
    }

    kt500::xml::SchemaCollection schema;
    kt500::simulator::BuiltInBL bl;
    CheckingSink sink;
};

Session& session() {
    static Session instance;
    return instance;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string request(reinterpret_cast<const char*>(data), size);
    Session& s = session();
    s.sink.finals = 0;
    bool accepted = false;
    s.bl.control()->PostRequest(kt500::simulator::SimulatedControl::kConnectionId, request,
                                accepted);
    s.bl.clock().settle();
    if (s.sink.finals != (accepted ? 1 : 0) || s.bl.clock().pending() != 0) {
        std::abort();  // a request ends with exactly one final reply, a refusal with none
    }
    return 0;
}
