// Requests built from real groups of the KT520_7 parameter document, as the
// BL receives them (a recording connection stands in for the BL). The
// identification's write is in the scenarios send_online and send_offline,
// the toolbar and progress bar of a running read in the scenario upload.
#include "data/Requests.h"
#include "devices/MemberMissing.h"
#include "support/RecordingServices.h"
#include "unit/data/DataTestSupport.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace kt500::data {
namespace {

using form::ControlKind;
using test::AddConfirmationRow;
using testing::TestUserControl;

// A request as the BL sees it, in one canonical form for comparing.
std::string Canonical(const std::string& strXml) {
    xml::LoadResult parsed = xml::Document::parse(strXml);
    EXPECT_TRUE(parsed.ok()) << parsed.message() << "\n" << strXml;
    return parsed.ok() ? parsed.document->root().toXml() : std::string();
}

std::string Request(const std::string& name, const std::string& access, const std::string& items) {
    return Canonical(
        "<dtm xmlns='x-schema:QDLCommunicationSchema.xml'><communicationRequest name='" + name +
        "' access='" + access + "'>" + items + "</communicationRequest></dtm>");
}

std::string Item(const std::string& name, const std::string& type, const std::string& value = {},
                 const std::string& unit = "noUnit") {
    return "<item name='" + name + "' unit='" + unit + "'><" + type + ">" + value + "</" + type +
           "></item>";
}

class RequestsTest : public ::testing::Test {
protected:
    explicit RequestsTest(simulator::SessionOptions options = {}) : uc(options) {
        recorder->accepts = true;
        uc.controlDouble = recorder;
    }

    // The text of the one request the BL received.
    std::string sent() const {
        EXPECT_EQ(log->size(), 1U);
        const std::string call = log->empty() ? std::string() : log->back();
        return call.substr(std::min(call.find('<'), call.size()));
    }

    void textField(const std::string& name, int index, int page, const std::string& tag,
                   const std::string& text) {
        uc.addField(ControlKind::TextBox, name, index, "fraKT520", page, tag).setText(text);
    }

    void listField(const std::string& name, int index, int page, const std::string& tag,
                   int selected) {
        form::Control& field =
            uc.addField(ControlKind::ComboBox, name, index, "fraKT520", page, tag);
        for (int entry = 0; entry < 2; ++entry) {
            field.addItem(std::to_string(entry + 1));
            field.setItemData(entry, entry);
        }
        field.setListIndex(selected);
    }

    std::shared_ptr<testing::CallLog> log = std::make_shared<testing::CallLog>();
    std::shared_ptr<testing::RecordingControl> recorder =
        std::make_shared<testing::RecordingControl>(log);
    TestUserControl uc;
};

TEST_F(RequestsTest, ReadListsTheGroupWithoutWriteOnlyParametersAndMarksThePageUnread) {
    uc.ParameterNodeByName("travelDeviationAlertTime").setAttribute("access", "write");
    AddConfirmationRow(uc, "loadFactorTrendLimit", "HAalertSettings");
    AddConfirmationRow(uc, "hartTag", "HAoperationUnit");
    uc.tools().ValuesOk("alertSettings", "1");
    uc.tools().DebugLevel = 1;
    form::Control& bar = uc.form().control("ProgressBar1");
    bar.setMax(5);

    uc.requests.SendRequest("alertSettings", "read");

    EXPECT_EQ(Canonical(sent()), Request("alertSettings", "read",
                                         Item("useFixedAlertLimits", "integerVal") +
                                             Item("travelDeviationTrendLimit", "floatVal") +
                                             Item("loadFactorTrendLimit", "floatVal") +
                                             Item("actuatorFullStrokesLimit", "floatVal") +
                                             Item("actuatorReversalsLimit", "floatVal") +
                                             Item("valveFullStrokesLimit", "floatVal") +
                                             Item("valveReversalsLimit", "floatVal")));
    EXPECT_TRUE(xml::Document::parse(sent(), {uc.communicationSchemas()}).ok());
    EXPECT_FALSE(uc.tools().ValuesOk("alertSettings", ""));
    // Only the rows of the page read again leave the confirmation list.
    EXPECT_EQ(test::ConfirmationTexts(uc), "hartTag");
    EXPECT_EQ(bar.max(), 15);  // ten times the group's requestCount of 1
    ASSERT_FALSE(uc.messages.empty());
    EXPECT_EQ(uc.messages.back().rfind("Debug level 1: Request to BL: <?xml", 0), 0U);
}

TEST_F(RequestsTest, ReadFailsOnARequestCountThatIsNoNumberAndEnablesTheTestKeyFigures) {
    uc.RequestGroupByName("alertSettings").setAttribute("requestCount", "many");
    EXPECT_THROW(uc.requests.SendRequest("alertSettings", "read"), std::invalid_argument);
    uc.tools().ReadGroup = true;  // a chain does not count again
    EXPECT_NO_THROW(uc.requests.SendRequest("alertSettings", "read"));
    uc.calls.clear();
    uc.requests.SendRequest("valveTest", "read");
    EXPECT_EQ(std::count(uc.calls.begin(), uc.calls.end(), "EnableTestKeyFigures 1"), 1);
}

// Writes: only changed writable parameters, with their page values in wire form.
struct WriteCase {
    const char* label;
    std::string access;
    std::string group;
    std::string expectedItems;
    bool sign;  // the blinking sign of the write is set
};

class RequestsWriteTest : public RequestsTest, public ::testing::WithParamInterface<WriteCase> {
protected:
    void SetUp() override {
        // alertSettings (fraKT520 3): an empty number, a decimal comma, an
        // unticked row and a value that is not a row at all.
        textField("txtHAAlertLimit", 0, 3, "travelDeviationTrendLimit", "");
        textField("txtHAAlertLimit", 1, 3, "loadFactorTrendLimit", "12,5");
        textField("txtHAAlertLimit", 2, 3, "travelDeviationAlertTime", "45");
        listField("comHAAlertSettings", 0, 3, "useFixedAlertLimits", 0);
        AddConfirmationRow(uc, "travelDeviationTrendLimit", "HAalertSettings");
        AddConfirmationRow(uc, "loadFactorTrendLimit", "HAalertSettings");
        AddConfirmationRow(uc, "useFixedAlertLimits", "HAalertSettings", false);
        // hartConfiguration (fraKT520 5): list boxes with and without a selection.
        listField("comHAHartConfiguration", 0, 5, "loopCurrentMode", -1);
        listField("comHAHartConfiguration", 1, 5, "burstMode", 1);
        AddConfirmationRow(uc, "loopCurrentMode", "HAhartConfiguration");
        AddConfirmationRow(uc, "burstMode", "HAhartConfiguration");
        // assemblyRelatedConfiguration (fraKT520 0): a pressure shown in kPa.
        uc.addField(ControlKind::Label, "lblHAAssemblyUnit", 0, "fraKT520", 0,
                    "HAsupplyPressureUnit")
            .setCaption("kPa");
        textField("txtHAAssembly", 0, 0, "supplyPressure", "612,5");
        AddConfirmationRow(uc, "supplyPressure", "HAassemblyRelatedConfiguration");
        // positionerInformation: a read-only parameter is never written.
        AddConfirmationRow(uc, "deviceId", "HApositionerInformation");
    }
};

TEST_P(RequestsWriteTest, SendsTheChangedValuesOfThePage) {
    const WriteCase& c = GetParam();
    uc.tools().CurrentFrame = "HA" + c.group;

    uc.requests.SendRequest(c.group, c.access);

    EXPECT_EQ(Canonical(sent()), Request(c.group, c.access, c.expectedItems));
    EXPECT_EQ(uc.tools().CommunicationSign("write", ""), c.sign);
    ASSERT_NE(uc.deviceClass().downLoadedXmlDoc(), nullptr);
    EXPECT_EQ(Canonical(uc.deviceClass().downLoadedXmlDoc()->toXml()), Canonical(sent()));
    EXPECT_FALSE(uc.form().control("fraProgress").visible());
}

INSTANTIATE_TEST_SUITE_P(
    Groups, RequestsWriteTest,
    ::testing::Values(
        WriteCase{"numbers", "write", "alertSettings",
                  Item("travelDeviationTrendLimit", "floatVal") +
                      Item("loadFactorTrendLimit", "floatVal", "12.5"),
                  true},
        WriteCase{"listBoxes", "writeOffline", "hartConfiguration",
                  Item("loopCurrentMode", "integerVal", "0") + Item("burstMode", "integerVal", "1"),
                  false},
        // The device takes pressures in barG, with "." as the decimal sign.
        WriteCase{"deviceUnits", "write", "assemblyRelatedConfiguration",
                  Item("supplyPressure", "floatVal", "6.125", "barG"), true},
        // Nothing changed: the request name and access word fill the item.
        WriteCase{"nothingChanged", "write", "positionerInformation",
                  "<item name='positionerInformation' unit=''><write/></item>", true}),
    [](const auto& info) { return std::string(info.param.label); });

TEST_F(RequestsTest, TestSettingsGoOutUnderTheNameOfTheTestAsADeviceAction) {
    for (const auto& [test, name] : {std::pair<std::int16_t, std::string>{1, "stepResponseTest"},
                                     {2, "hysteresisTest"},
                                     {0, "1"}}) {
        log->clear();
        uc.tools().CurrentAutoAction = 2;
        uc.tools().CurrentTest = test;
        uc.requests.SendRequest("testSettings", "write");
        ASSERT_EQ(log->size(), 1U);
        EXPECT_EQ(log->back().rfind("SendAutoAction 1 10000 ", 0), 0U) << log->back();
        // The whole group goes, changed or not, with the values of the page.
        EXPECT_EQ(Canonical(sent()),
                  Request(name, "write",
                          Item("testTime", "floatVal") + Item("startSetpoint", "floatVal") +
                              Item("setpointChange", "floatVal")));
    }
}

class RequestsRefusalTest : public RequestsTest, public ::testing::WithParamInterface<const char*> {
protected:
    RequestsRefusalTest() : RequestsTest(testing::SessionOf("KT520_7", true, GetParam())) {}
};

TEST_P(RequestsRefusalTest, ARefusedRequestGivesTheToolsBackAndReports) {
    recorder->accepts = false;
    const std::vector<form::Control*> resets = uc.form().elements("cmdResetDiagnostics");
    ASSERT_FALSE(resets.empty());
    for (form::Control* reset : resets) {
        reset->setEnabled(false);
    }
    uc.deviceClass().setCancelledGroups(std::string("Alert settings") +
                                        std::string(devices::Separator));
    uc.form().userControl().setMousePointer(11);  // a chain was running

    uc.requests.SendRequest("alertSettings", "read");

    const bool send = std::string(GetParam()) != "observer";
    EXPECT_FALSE(uc.tools().ShowProgressbar || uc.form().control("fraProgress").visible() ||
                 uc.form().control("ProgressBar1").visible());
    EXPECT_EQ(uc.form().userControl().mousePointer(), 0);
    const form::ToolbarModel& toolbar = uc.form().control("smuiDTM", 1).toolbar();
    EXPECT_FALSE(toolbar.item("stop").enabled);
    EXPECT_TRUE(toolbar.item("uploadCurrent").enabled);
    EXPECT_EQ(toolbar.item("send").enabled && toolbar.item("settings").enabled, send);
    for (const form::Control* reset : resets) {
        EXPECT_EQ(reset->enabled(), send) << reset->displayName();
    }
    EXPECT_TRUE(uc.deviceClass().CancelledGroups().empty());
    ASSERT_EQ(uc.messages.size(), 2U);
    EXPECT_NE(uc.messages[0].find("Alert settings"), std::string::npos);
    EXPECT_EQ(uc.messages[1], "RequestTemplate: " + uc.Translate("errRequestFailed"));
}

INSTANTIATE_TEST_SUITE_P(Roles, RequestsRefusalTest, ::testing::Values("maintenance", "observer"));

TEST(AutoActionRequestTest, IsAValidRequestWithoutItems) {
    TestUserControl uc;
    const xml::LoadResult parsed =
        xml::Document::parse(AutoActionRequest("valveTest"), {uc.communicationSchemas()});
    ASSERT_TRUE(parsed.ok()) << parsed.message();
    EXPECT_EQ(Canonical(parsed.document->root().toXml()), Request("valveTest", "write", ""));
}

}  // namespace
}  // namespace kt500::data
