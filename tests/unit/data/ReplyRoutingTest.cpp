#include "data/ReplyRouting.h"

#include "devices/clsKT520.h"
#include "simulator/CommunicationMessages.h"
#include "support/TestUserControl.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace kt500::data {
namespace {

using form::ControlKind;
using testing::TestUserControl;

constexpr int kOperationUnit = 7;
constexpr int kAlertSettings = 3;
constexpr int kTestSettings = 17;
// Elements above those of the form files, for the fields a test adds.
constexpr int kFree = 90;

// What Reply was given: the root, the responses' names, and whether a data
// file was being replayed at the time.
struct SeenReply {
    std::string root;
    std::vector<std::string> responses;
    bool importing;
};

class RecordingKT520 final : public devices::clsKT520 {
public:
    explicit RecordingKT520(std::vector<SeenReply>& seen) : m_seen(seen) {}
    void Reply(xml::Document& xmlDoc) override {
        SeenReply reply{xmlDoc.root().name(), {}, userControl().tools().ImportFromFile};
        for (const xml::Node& response : xmlDoc.root().childElements("communicationResponse")) {
            reply.responses.push_back(response.attribute("name"));
        }
        m_seen.push_back(reply);
        if (!failOn.empty() && reply.responses == std::vector<std::string>{failOn}) {
            throw std::runtime_error("Reply failed");
        }
    }
    std::string failOn;

private:
    std::vector<SeenReply>& m_seen;
};

struct Session {
    Session() { control.setDeviceClass(std::make_unique<RecordingKT520>(seen)); }
    RecordingKT520& device() { return static_cast<RecordingKT520&>(control.deviceClass()); }

    std::vector<SeenReply> seen;
    TestUserControl control;
};

std::string OperationUnitReply() {
    simulator::CommunicationReply reply;
    reply.name = "operationUnit";
    reply.items.push_back({"hartTag", "noUnit", "stringVal", "TAG"});
    return simulator::BuildReply(reply, {});
}

TEST(ItemListFromReplyTest, ReplyRunsOnTheReplyOrOnAnEmptyDocument) {
    const std::string good = OperationUnitReply();
    for (const std::string& reply :
         {good, std::string("<dtm"),
          // Well formed, but not a communication message.
          std::string("<dtm xmlns='x-schema:QDLCommunicationSchema.xml'><unknown/></dtm>")}) {
        SCOPED_TRACE(reply);
        Session s;
        // Raw data is traced at debug level five only.
        s.control.tools().DebugLevel = reply == good ? 5 : 4;
        s.control.replyRouting.ItemListFromReply(reply);
        ASSERT_EQ(s.seen.size(), 1U);
        EXPECT_EQ(s.seen[0].root, "dtm");
        if (reply == good) {
            EXPECT_EQ(s.control.messages,
                      std::vector<std::string>{"Debug level 5: Raw data from BL: " + reply});
            EXPECT_EQ(s.seen[0].responses, std::vector<std::string>{"operationUnit"});
        } else {
            EXPECT_EQ(s.control.messages,
                      std::vector<std::string>{"ItemListFromReply: " +
                                               s.control.Translate("parseFailed")});
            EXPECT_TRUE(s.seen[0].responses.empty());
        }
    }
}

TEST(ReplayDataFileTest, EachResponseAloneWhileImporting) {
    const std::string file =
        "<dtm deviceType='KT520' revision='7'>"
        "<communicationResponse name='operationUnit' access='read' isFinal='1'/>"
        "<requestGroups/>"
        "<communicationResponse name='alertSettings' access='read' isFinal='1'/></dtm>";
    xml::LoadResult loaded = xml::Document::parse(file);
    ASSERT_TRUE(loaded.ok());

    Session s;
    s.control.replyRouting.ReplayDataFile(*loaded.document);
    ASSERT_EQ(s.seen.size(), 2U);
    EXPECT_EQ(s.seen[0].responses, std::vector<std::string>{"operationUnit"});
    EXPECT_EQ(s.seen[1].responses, std::vector<std::string>{"alertSettings"});
    EXPECT_TRUE(s.seen[0].importing && s.seen[1].importing);
    EXPECT_FALSE(s.control.tools().ImportFromFile);

    // A failing response ends the replay, and the import with it.
    s.device().failOn = "operationUnit";
    EXPECT_THROW(s.control.replyRouting.ReplayDataFile(*loaded.document), std::runtime_error);
    EXPECT_FALSE(s.control.tools().ImportFromFile);
}

// --- Closing a group ---

form::ToolbarModel& Toolbar(TestUserControl& uc) {
    return uc.form().control("smuiDTM", 1).toolbar();
}

// The state of a running read: toolbar busy, hourglass, sign on.
void StartRead(TestUserControl& uc, bool blBarVisible) {
    form::ToolbarModel& toolbar = Toolbar(uc);
    toolbar.setEnabled("stop", true);
    for (const char* key : {"uploadCurrent", "send", "settings"}) {
        toolbar.setEnabled(key, false);
    }
    uc.form().userControl().setMousePointer(11);
    uc.form().control("ProgressBar1").setVisible(blBarVisible);
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

TEST(SetReadVariablesTest, AFinalReplyGivesTheToolbarBackOnlyAfterTheChain) {
    struct Case {
        const char* what;
        bool isFinal;
        bool barVisible;
        std::int16_t autoAction;
        const char* role;
        const char* state;
        std::vector<std::string> calls;
    };
    const std::string stamp = "UpdateGroupTimeStamp operationUnit";
    const std::string clear = "ClearChangedSigns operationUnit";
    const char* busy = "1000 11 111";
    const Case cases[] = {
        {"not final", false, false, 0, "maintenance", busy, {}},
        {"chain still counting", true, true, 0, "maintenance", busy, {stamp, clear}},
        {"during a device action", true, false, 1, "maintenance", busy, {clear}},
        {"last reply", true, false, 0, "maintenance", "0111 0 000", {stamp, clear}},
        {"last reply, observer", true, false, 0, "observer", "0100 0 000", {stamp, clear}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        TestUserControl uc(testing::SessionOf("KT520_7", true, c.role));
        StartRead(uc, c.barVisible);
        uc.tools().CurrentAutoAction = c.autoAction;
        uc.replyRouting.SetReadVariables("operationUnit", c.isFinal, "read", false);
        EXPECT_EQ(uc.calls, c.calls);
        EXPECT_EQ(uc.tools().ValuesOk("operationUnit", ""), c.isFinal);
        EXPECT_EQ(ReadState(uc), c.state);
    }

    TestUserControl uc;
    StartRead(uc, false);
    uc.replyRouting.SetReadVariables("alertSettings", true, "read", false);
    ASSERT_FALSE(uc.calls.empty());
    EXPECT_EQ(uc.calls.back(), "UpdateLimits");  // the alert limits update last
}

void AddRow(TestUserControl& uc, const std::string& name, const std::string& page, bool checked) {
    form::ListViewModel& rows = uc.form().control("lsvConfirmation").listView();
    const int row = rows.add(name);
    rows.setSubItem(row, 3, name);
    rows.setSubItem(row, 4, page);
    rows.setChecked(row, checked);
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

TEST(SetReadVariablesTest, SignsAndRowsByAccessAndError) {
    struct Case {
        const char* access;
        bool error;
        bool barVisible;
        bool signsCleared;
        std::vector<std::string> rowsLeft;
    };
    const Case cases[] = {
        // A read drops its own page's rows, checked or not.
        {"read", false, false, true, {"alertA", "alertB"}},
        {"read", true, false, false, {"alertA", "alertB"}},
        // A completed write takes every checked row.
        {"write", false, false, true, {"alertB"}},
        {"write", true, false, false, {"unitA", "alertA", "alertB"}},
        {"write", false, true, true, {"unitA", "alertA", "alertB"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.access) + " error " + std::to_string(c.error));
        TestUserControl uc;
        StartRead(uc, c.barVisible);
        const form::Control* signs[] = {
            &ChangedField(uc, ControlKind::TextBox, "txtHAOperationUnit", kFree, kOperationUnit,
                          "tagA"),
            &ChangedField(uc, ControlKind::Image, "imgHAOperationUnit", kFree, kOperationUnit,
                          "tagA")};
        AddRow(uc, "unitA", "HAoperationUnit", true);
        AddRow(uc, "alertA", "HAalertSettings", true);
        AddRow(uc, "alertB", "HAalertSettings", false);

        uc.replyRouting.SetReadVariables("operationUnit", true, c.access, c.error);

        for (const form::Control* sign : signs) {
            EXPECT_EQ(SignOn(*sign), !c.signsCleared) << sign->displayName();
        }
        std::vector<std::string> rows;
        for (const form::ListRow& row : uc.form().control("lsvConfirmation").listView().rows()) {
            rows.push_back(row.text);
        }
        EXPECT_EQ(rows, c.rowsLeft);
    }
}

// --- Progress ---

TEST(IncreaseProgressTest, TenStepsAReplyThenTheBarCloses) {
    struct Case {
        std::int16_t autoAction;
        bool visible;
        double max;
        double value;
        double valueAfter;
        bool visibleAfter;
    };
    const Case cases[] = {
        {0, true, 30, 5, 15, true},  {0, true, 30, 25, 29, false},  // the last step closes the bar
        {0, true, 0, 0, 0, false},   // a group with no requests: the first reply closes it
        {4, true, 30, 5, 15, true},  // results being read count as well
        {1, true, 30, 5, 5, true},   // a calibration leaves the bar alone
        {0, false, 30, 5, 5, false},
    };
    for (const Case& c : cases) {
        TestUserControl uc;
        uc.tools().CurrentAutoAction = c.autoAction;
        form::Control& bar = uc.form().control("ProgressBar1");
        form::Control& frame = uc.form().control("fraProgress");
        bar.setMax(c.max);
        bar.setValue(c.value);
        bar.setVisible(c.visible);
        frame.setVisible(c.visible);

        uc.replyRouting.IncreaseProgress();

        const std::string what = std::to_string(c.autoAction) + " " + std::to_string(c.value);
        EXPECT_EQ(bar.value(), c.valueAfter) << what;
        EXPECT_EQ(bar.visible(), c.visibleAfter) << what;
        EXPECT_EQ(frame.visible(), c.visibleAfter) << what;
    }
}

// --- Changed signs ---

TEST(ClearChangedSignsTest, OnlyTheGroupsFieldsThatNoUncheckedRowNames) {
    TestUserControl uc;
    uc.form().add(ControlKind::Frame, "fraKT520", kFree).setTag("HAtestValues");
    struct Field {
        ControlKind kind;
        const char* name;
        int page;
        const char* tag;
        bool cleared;
    };
    const Field fields[] = {
        {ControlKind::TextBox, "txtHATestSettings", kTestSettings, "stepSize", true},
        {ControlKind::Image, "imgHATestSettings", kTestSettings, "stepSize", true},
        {ControlKind::TextBox, "txtHATestValues", kFree, "testTime", true},
        // Still pending in an unchecked row.
        {ControlKind::TextBox, "txtHATestSettings", kTestSettings, "pending", false},
        {ControlKind::Image, "imgHATestSettings", kTestSettings, "pending", false},
        // Another group's page.
        {ControlKind::TextBox, "txtHAAlertLimit", kAlertSettings, "alertLimit", false},
    };
    std::vector<form::Control*> controls;
    for (const Field& f : fields) {
        const int index = kFree + static_cast<int>(controls.size());
        controls.push_back(&ChangedField(uc, f.kind, f.name, index, f.page, f.tag));
    }
    AddRow(uc, "pending", "HAtestSettings", false);

    uc.replyRouting.ClearChangedSigns("testValues");

    for (std::size_t i = 0; i < controls.size(); ++i) {
        EXPECT_EQ(SignOn(*controls[i]), !fields[i].cleared)
            << fields[i].name << " " << fields[i].tag;
    }
}

TEST(ChangeImageTest, TheMarksOfTheTagOnTheFamilysPages) {
    TestUserControl uc;
    form::Control& unitMark = uc.addField(ControlKind::Image, "imgHAOperationUnit", kFree,
                                          "fraKT520", kOperationUnit, "tagA");
    form::Control& alertMark = uc.addField(ControlKind::Image, "imgHAAlertSettings", kFree,
                                           "fraKT520", kAlertSettings, "tagA");
    form::Control& otherMark = uc.addField(ControlKind::Image, "imgHAOperationUnit", kFree + 1,
                                           "fraKT520", kOperationUnit, "tagB");
    for (const char* image : {"error", "changed"}) {
        uc.replyRouting.ChangeImage("tagA", "fraKT520", image);
        EXPECT_EQ(unitMark.picture(), image);
        EXPECT_EQ(alertMark.picture(), image);
        EXPECT_EQ(otherMark.picture(), "");
    }
    // Marks lie on the pages of the frame array named.
    uc.replyRouting.ChangeImage("tagA", "fraKT540", "error");
    EXPECT_EQ(unitMark.picture(), "changed");
}

}  // namespace
}  // namespace kt500::data
