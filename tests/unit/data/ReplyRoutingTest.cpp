#include "data/ReplyRouting.h"

#include "devices/clsKT520.h"
#include "simulator/CommunicationMessages.h"
#include "unit/data/DataTestSupport.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace kt500::data {
namespace {

using form::ControlKind;
using test::AddConfirmationRow;
using testing::TestUserControl;

constexpr int kOperationUnit = 7;
constexpr int kAlertSettings = 3;
constexpr int kTestSettings = 17;
// Elements above those of the form files, for the fields a test adds.
constexpr int kFree = 90;

// The responses' names of each document given to Reply, and whether a data
// file was being replayed at the time.
struct SeenReply {
    std::vector<std::string> responses;
    bool importing;
};

class RecordingKT520 final : public devices::clsKT520 {
public:
    explicit RecordingKT520(std::vector<SeenReply>& seen) : m_seen(seen) {}
    void Reply(xml::Document& xmlDoc) override {
        SeenReply reply{{}, userControl().tools().ImportFromFile};
        for (const xml::Node& response : xmlDoc.root().childElements("communicationResponse")) {
            reply.responses.push_back(response.attribute("name"));
        }
        m_seen.push_back(reply);
        if (reply.responses == std::vector<std::string>{failOn}) {
            throw std::runtime_error("Reply failed");
        }
    }
    std::string failOn;

private:
    std::vector<SeenReply>& m_seen;
};

struct Session {
    Session() { control.setDeviceClass(std::make_unique<RecordingKT520>(seen)); }
    std::vector<SeenReply> seen;
    TestUserControl control;
};

// A document that fails to parse is in the scenario "time".
TEST(ItemListFromReplyTest, ReplyRunsOnTheReplyOrOnAnEmptyDocument) {
    simulator::CommunicationReply operationUnit;
    operationUnit.name = "operationUnit";
    operationUnit.items.push_back({"hartTag", "noUnit", "stringVal", "TAG"});
    const std::string good = simulator::BuildReply(operationUnit, {});
    for (const std::string& reply : {good, std::string("<dtm")}) {
        Session s;
        // Raw data is traced at debug level five only.
        s.control.tools().DebugLevel = reply == good ? 5 : 4;
        s.control.replyRouting.ItemListFromReply(reply);
        ASSERT_EQ(s.seen.size(), 1U);
        EXPECT_EQ(s.seen[0].responses, reply == good ? std::vector<std::string>{"operationUnit"}
                                                     : std::vector<std::string>{});
        EXPECT_EQ(s.control.messages,
                  std::vector<std::string>{
                      reply == good ? "Debug level 5: Raw data from BL: " + good
                                    : "ItemListFromReply: " + s.control.Translate("parseFailed")});
    }
}

TEST(ReplayDataFileTest, EachResponseAloneWhileImporting) {
    const xml::Document file = test::Parsed(
        "<dtm deviceType='KT520' revision='7'>"
        "<communicationResponse name='operationUnit' access='read' isFinal='1'/>"
        "<requestGroups/>"
        "<communicationResponse name='alertSettings' access='read' isFinal='1'/></dtm>");
    Session s;
    s.control.replyRouting.ReplayDataFile(file);
    ASSERT_EQ(s.seen.size(), 2U);
    EXPECT_EQ(s.seen[0].responses, std::vector<std::string>{"operationUnit"});
    EXPECT_EQ(s.seen[1].responses, std::vector<std::string>{"alertSettings"});
    EXPECT_TRUE(s.seen[0].importing && s.seen[1].importing);
    EXPECT_FALSE(s.control.tools().ImportFromFile);

    // A failing response ends the replay, and the import with it.
    static_cast<RecordingKT520&>(s.control.deviceClass()).failOn = "operationUnit";
    EXPECT_THROW(s.control.replyRouting.ReplayDataFile(file), std::runtime_error);
    EXPECT_FALSE(s.control.tools().ImportFromFile);
}

// --- Closing a group ---

form::ToolbarModel& Toolbar(TestUserControl& uc) {
    return uc.form().control("smuiDTM", 1).toolbar();
}

// The state of a running read: toolbar busy, hourglass, sign on.
// A read of operationUnit out at the BL; with blChainOpen another request
// of the same chain is still out as well.
void StartRead(TestUserControl& uc, bool blChainOpen) {
    Toolbar(uc).setEnabled("stop", true);
    for (const char* key : {"uploadCurrent", "send", "settings"}) {
        Toolbar(uc).setEnabled(key, false);
    }
    uc.form().userControl().setMousePointer(11);
    uc.form().control("ProgressBar1").setVisible(true);
    uc.tools().OpenRequests = {"operationUnit"};
    if (blChainOpen) {
        uc.tools().OpenRequests.emplace_back("positionerInformation");
    }
    uc.tools().ReadGroup = true;
    uc.tools().value_saved = true;
    uc.tools().CommunicationSign("read", "1");
    uc.tools().ValuesOk("operationUnit", "0");
}

// Enabled stop, uploadCurrent, send, settings; the pointer; ReadGroup,
// value_saved and the read sign.
std::string ReadState(TestUserControl& uc) {
    std::string state;
    for (const char* key : {"stop", "uploadCurrent", "send", "settings"}) {
        state += Toolbar(uc).item(key).enabled ? '1' : '0';
    }
    state += " " + std::to_string(uc.form().userControl().mousePointer()) + " ";
    for (const bool flag :
         {uc.tools().ReadGroup, uc.tools().value_saved, uc.tools().CommunicationSign("read", "")}) {
        state += flag ? '1' : '0';
    }
    return state;
}

// A page field with its changed sign on: a blue text or a visible mark.
form::Control& ChangedField(TestUserControl& uc, ControlKind kind, const std::string& name,
                            int index, int page, const std::string& tag) {
    form::Control& field = uc.addField(kind, name, index, "fraKT520", page, tag);
    if (kind == ControlKind::Image) {
        field.setVisible(true);
    } else {
        field.setForeColor(devices::ColorChanged);
    }
    return field;
}

bool SignOn(const form::Control& field) {
    return field.kind() == ControlKind::Image ? field.visible()
                                              : field.foreColor() == devices::ColorChanged;
}

// The close of a group: the toolbar given back after the chain's last reply,
// the changed signs cleared unless it failed, the rows it settled removed.
TEST(SetReadVariablesTest, AFinalReplyClosesTheGroupAndTheChainItsLast) {
    const std::string T = "UpdateGroupTimeStamp operationUnit";
    const std::string C = "ClearChangedSigns operationUnit";
    const char* busy = "1000 11 111";
    const struct {
        const char* access;
        bool isFinal;
        bool error;
        bool chainOpen;
        std::int16_t autoAction;
        bool observer;
        const char* state;
        std::vector<std::string> calls;
        const char* rowsLeft;  // of the rows u (this page), a and b (unchecked)
    } cases[] = {
        {"read", false, false, false, 0, false, busy, {}, "u a b"},
        // Another request of the chain still out, and a device action, keep
        // the tools busy; the bar's count decides nothing.
        {"read", true, false, true, 0, false, busy, {T, C}, "a b"},
        {"read", true, false, false, 1, false, busy, {C}, "a b"},
        // A read drops its own page's rows, checked or not.
        {"read", true, false, false, 0, false, "0111 0 000", {T, C}, "a b"},
        // An observer sends nothing but keeps the settings.
        {"read", true, false, false, 0, true, "0101 0 000", {T, C}, "a b"},
        {"read", true, true, false, 0, false, "0111 0 000", {T}, "a b"},
        // A completed write takes every checked row.
        {"write", true, false, false, 0, false, "0111 0 001", {T, C}, "b"},
        {"write", true, true, false, 0, false, "0111 0 001", {T}, "u a b"},
        {"write", true, false, true, 0, false, busy, {T, C}, "u a b"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(::testing::Message()
                     << c.access << " final " << c.isFinal << " error " << c.error << " chain "
                     << c.chainOpen << " action " << c.autoAction << " observer " << c.observer);
        TestUserControl uc(
            testing::SessionOf("KT520_7", true, c.observer ? "observer" : "maintenance"));
        StartRead(uc, c.chainOpen);
        uc.tools().CurrentAutoAction = c.autoAction;
        const form::Control* signs[] = {
            &ChangedField(uc, ControlKind::TextBox, "txtHAOperationUnit", kFree, kOperationUnit,
                          "tagA"),
            &ChangedField(uc, ControlKind::Image, "imgHAOperationUnit", kFree, kOperationUnit,
                          "tagA")};
        AddConfirmationRow(uc, "u", "HAoperationUnit");
        AddConfirmationRow(uc, "a", "HAalertSettings");
        AddConfirmationRow(uc, "b", "HAalertSettings", false);

        uc.replyRouting.SetReadVariables("operationUnit", c.isFinal, c.access, c.error);

        EXPECT_EQ(uc.calls, c.calls);
        EXPECT_EQ(uc.tools().ValuesOk("operationUnit", ""), c.isFinal);
        EXPECT_EQ(ReadState(uc), c.state);
        EXPECT_EQ(uc.form().control("ProgressBar1").visible(), std::string(c.state) == busy);
        for (const form::Control* sign : signs) {
            EXPECT_EQ(SignOn(*sign), !c.isFinal || c.error) << sign->displayName();
        }
        EXPECT_EQ(test::ConfirmationTexts(uc), c.rowsLeft);
    }

    TestUserControl uc;
    StartRead(uc, false);
    uc.replyRouting.SetReadVariables("alertSettings", true, "read", false);
    ASSERT_FALSE(uc.calls.empty());
    EXPECT_EQ(uc.calls.back(), "UpdateLimits");  // the alert limits update last
}

TEST(IncreaseProgressTest, TenStepsAReplyThenTheBarCloses) {
    // Device action, bar shown, its max and value; the value and shown after.
    const std::tuple<std::int16_t, bool, double, double, double, bool> cases[] = {
        {0, true, 30, 5, 15, true},  {0, true, 30, 25, 29, false},  // the last step closes the bar
        {0, true, 0, 0, 0, false},   // a group with no requests: the first reply closes it
        {4, true, 30, 5, 15, true},  // results being read count as well
        {1, true, 30, 5, 5, true},   // a calibration leaves the bar alone
        {0, false, 30, 5, 5, false},
    };
    for (const auto& [autoAction, visible, max, value, valueAfter, visibleAfter] : cases) {
        TestUserControl uc;
        uc.tools().CurrentAutoAction = autoAction;
        form::Control& bar = uc.form().control("ProgressBar1");
        form::Control& frame = uc.form().control("fraProgress");
        bar.setMax(max);
        bar.setValue(value);
        bar.setVisible(visible);
        frame.setVisible(visible);

        uc.replyRouting.IncreaseProgress();

        EXPECT_EQ(bar.value(), valueAfter) << autoAction << " " << value;
        EXPECT_EQ(bar.visible(), visibleAfter) << autoAction << " " << value;
        EXPECT_EQ(frame.visible(), visibleAfter) << autoAction << " " << value;
    }
}

TEST(ClearChangedSignsTest, OnlyTheGroupsFieldsThatNoUncheckedRowNames) {
    TestUserControl uc;
    uc.form().add(ControlKind::Frame, "fraKT520", kFree).setTag("HAtestValues");
    // Kind, name, page and tag of a changed field, and whether its sign goes.
    const std::tuple<ControlKind, const char*, int, const char*, bool> fields[] = {
        {ControlKind::TextBox, "txtHATestSettings", kTestSettings, "stepSize", true},
        {ControlKind::Image, "imgHATestSettings", kTestSettings, "stepSize", true},
        {ControlKind::TextBox, "txtHATestValues", kFree, "testTime", true},
        // Still pending in an unchecked row.
        {ControlKind::TextBox, "txtHATestSettings", kTestSettings, "pending", false},
        {ControlKind::Image, "imgHATestSettings", kTestSettings, "pending", false},
        // Another group's page.
        {ControlKind::TextBox, "txtHAAlertLimit", kAlertSettings, "alertLimit", false},
    };
    std::vector<std::pair<const form::Control*, bool>> controls;
    for (const auto& [kind, name, page, tag, cleared] : fields) {
        const int index = kFree + static_cast<int>(controls.size());
        controls.emplace_back(&ChangedField(uc, kind, name, index, page, tag), cleared);
    }
    AddConfirmationRow(uc, "pending", "HAtestSettings", false);

    uc.replyRouting.ClearChangedSigns("testValues");

    for (const auto& [control, cleared] : controls) {
        EXPECT_EQ(SignOn(*control), !cleared) << control->displayName() << " " << control->tag();
    }
}

TEST(ChangeImageTest, TheMarksOfTheTagOnTheFamilysPages) {
    TestUserControl uc;
    const auto mark = [&uc](const char* name, int index, int page, const char* tag) {
        return &uc.addField(ControlKind::Image, name, index, "fraKT520", page, tag);
    };
    const form::Control* unitMark = mark("imgHAOperationUnit", kFree, kOperationUnit, "tagA");
    const form::Control* alertMark = mark("imgHAAlertSettings", kFree, kAlertSettings, "tagA");
    const form::Control* otherMark = mark("imgHAOperationUnit", kFree + 1, kOperationUnit, "tagB");
    uc.replyRouting.ChangeImage("tagA", "fraKT520", "error");
    // Marks lie on the pages of the frame array named.
    uc.replyRouting.ChangeImage("tagA", "fraKT540", "changed");
    EXPECT_EQ(unitMark->picture(), "error");
    EXPECT_EQ(alertMark->picture(), "error");
    EXPECT_EQ(otherMark->picture(), "");
}

}  // namespace
}  // namespace kt500::data
