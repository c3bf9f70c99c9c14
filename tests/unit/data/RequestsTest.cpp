// Requests built from real groups of the KT520_7 parameter document, as the
// BL receives them (a recording connection stands in for the BL).
#include "data/ParameterDocument.h"
#include "data/Requests.h"
#include "devices/MemberMissing.h"
#include "support/RecordingServices.h"
#include "support/TestUserControl.h"
#include "xml/XPath.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace kt500::data {
namespace {

using form::ControlKind;
using testing::TestUserControl;

constexpr const char* Head = "<dtm xmlns='x-schema:QDLCommunicationSchema.xml'>";

// A request as the BL sees it, in one canonical form for comparing.
std::string Canonical(const std::string& strXml) {
    xml::LoadResult parsed = xml::Document::parse(strXml);
    EXPECT_TRUE(parsed.ok()) << parsed.message() << "\n" << strXml;
    return parsed.ok() ? parsed.document->root().toXml() : std::string();
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
        if (log->empty()) {
            return {};
        }
        const std::string& call = log->back();
        const std::string::size_type start = call.find('<');
        return start == std::string::npos ? std::string() : call.substr(start);
    }

    std::string request(const std::string& name, const std::string& access,
                        const std::string& items) const {
        return Canonical(std::string(Head) + "<communicationRequest name='" + name + "' access='" +
                         access + "'>" + items + "</communicationRequest></dtm>");
    }

    // A confirmation row as the edit of a page leaves it.
    void markChanged(const std::string& name, const std::string& page, bool checked = true) {
        form::ListViewModel& rows = uc.form().control("lsvConfirmation").listView();
        const int row = rows.add(name);
        rows.setSubItem(row, 3, name);
        rows.setSubItem(row, 4, page);
        rows.setChecked(row, checked);
    }

    form::Control& textField(const std::string& name, int index, int page, const std::string& tag,
                             const std::string& text) {
        form::Control& field =
            uc.addField(ControlKind::TextBox, name, index, "fraKT520", page, tag);
        field.setText(text);
        return field;
    }

    form::Control& listField(const std::string& name, int index, int page, const std::string& tag,
                             int entries, int selected) {
        form::Control& field =
            uc.addField(ControlKind::ComboBox, name, index, "fraKT520", page, tag);
        for (int entry = 0; entry < entries; ++entry) {
            field.addItem(std::to_string(entry + 1));
            field.setItemData(entry, entry);
        }
        field.setListIndex(selected);
        return field;
    }

    xml::Node dataFileNode(const std::string& query) {
        const xml::XPath xpath(*uc.xmlDataFile(), xml::Namespaces::fromSelection(
                                                      ParameterDocument::SelectionNamespaces));
        return xpath.selectSingle(query);
    }

    std::shared_ptr<testing::CallLog> log = std::make_shared<testing::CallLog>();
    std::shared_ptr<testing::RecordingControl> recorder =
        std::make_shared<testing::RecordingControl>(log);
    TestUserControl uc;
};

TEST_F(RequestsTest, ReadListsTheGroupWithoutWriteOnlyParametersAndMarksThePageUnread) {
    uc.ParameterNodeByName("travelDeviationAlertTime").setAttribute("access", "write");
    markChanged("loadFactorTrendLimit", "HAalertSettings");
    markChanged("hartTag", "HAoperationUnit");
    uc.tools().ValuesOk("alertSettings", "1");
    uc.tools().DebugLevel = 1;
    form::Control& bar = uc.form().control("ProgressBar1");
    bar.setMax(5);

    uc.requests.SendRequest("alertSettings", "read");

    EXPECT_EQ(Canonical(sent()), request("alertSettings", "read",
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
    const form::ListViewModel& rows = uc.form().control("lsvConfirmation").listView();
    ASSERT_EQ(rows.count(), 1);
    EXPECT_EQ(rows.subItem(1, 3), "hartTag");
    EXPECT_EQ(bar.max(), 15);  // ten times the group's requestCount of 1
    EXPECT_TRUE(bar.visible() && uc.form().control("fraProgress").visible());
    EXPECT_TRUE(uc.tools().CommunicationSign("read", ""));
    const form::ToolbarModel& toolbar = uc.form().control("smuiDTM", 1).toolbar();
    EXPECT_TRUE(toolbar.item("stop").enabled && !toolbar.item("uploadCurrent").enabled);
    ASSERT_FALSE(uc.messages.empty());
    EXPECT_EQ(uc.messages.back().rfind("Debug level 1: Request to BL: <?xml", 0), 0U);
}

TEST_F(RequestsTest, ReadFailsOnARequestCountThatIsNoNumberAndOnTheTestKeyFigures) {
    dataFileNode("//data:requestGroups/data:requestGroup[@name = 'alertSettings']")
        .setAttribute("requestCount", "many");
    EXPECT_THROW(uc.requests.SendRequest("alertSettings", "read"), std::invalid_argument);
    uc.tools().ReadGroup = true;  // a chain does not count again
    EXPECT_NO_THROW(uc.requests.SendRequest("alertSettings", "read"));
    EXPECT_THROW(uc.requests.SendRequest("valveTest", "read"), devices::MemberMissing);
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
        listField("comHAAlertSettings", 0, 3, "useFixedAlertLimits", 2, 0);
        markChanged("travelDeviationTrendLimit", "HAalertSettings");
        markChanged("loadFactorTrendLimit", "HAalertSettings");
        markChanged("useFixedAlertLimits", "HAalertSettings", false);
        // hartConfiguration (fraKT520 5): list boxes with and without a selection.
        listField("comHAHartConfiguration", 0, 5, "loopCurrentMode", 2, -1);
        listField("comHAHartConfiguration", 1, 5, "burstMode", 2, 1);
        markChanged("loopCurrentMode", "HAhartConfiguration");
        markChanged("burstMode", "HAhartConfiguration");
        // assemblyRelatedConfiguration (fraKT520 0): a pressure shown in kPa.
        uc.addField(ControlKind::Label, "lblHAAssemblyUnit", 0, "fraKT520", 0,
                    "HAsupplyPressureUnit")
            .setCaption("kPa");
        textField("txtHAAssembly", 0, 0, "supplyPressure", "612,5");
        markChanged("supplyPressure", "HAassemblyRelatedConfiguration");
        // positionerInformation: a read-only parameter is never written.
        markChanged("deviceId", "HApositionerInformation");
        // operationUnit (fraKT520 7): the date fields and the identification.
        textField("txtHAOperationUnit", 0, 7, "hartTag", "PV-7");
        textField("txtHAOperationUnit", 1, 7, "description", "Pump 1");
        textField("txtHAOperationUnit", 2, 7, "", "2024");
        listField("comHAOperationUnit", 0, 7, "deviceDay", 31, 4);
        listField("comHAOperationUnit", 1, 7, "deviceMonth", 12, 2);
        markChanged("hartTag", "HAoperationUnit");
    }
};

TEST_P(RequestsWriteTest, SendsTheChangedValuesOfThePage) {
    const WriteCase& c = GetParam();
    uc.tools().CurrentFrame = "HA" + c.group;

    uc.requests.SendRequest(c.group, c.access);

    EXPECT_EQ(Canonical(sent()), request(c.group, c.access, c.expectedItems));
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
        // The device takes the identification and the date in one command.
        WriteCase{"identification", "write", "operationUnit",
                  Item("hartTag", "stringVal", "PV-7") +
                      Item("description", "stringVal", "Pump 1") +
                      Item("deviceDate", "stringVal", "5.3.2024"),
                  true},
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
                  request(name, "write",
                          Item("testTime", "floatVal") + Item("startSetpoint", "floatVal") +
                              Item("setpointChange", "floatVal")));
    }
}

struct RefusalCase {
    std::string role;
    bool sendEnabled;
};

class RequestsRefusalTest : public RequestsTest, public ::testing::WithParamInterface<RefusalCase> {
protected:
    RequestsRefusalTest() : RequestsTest(testing::SessionOf("KT520_7", true, GetParam().role)) {}
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
    uc.tools().ShowProgressbar = true;
    uc.form().userControl().setMousePointer(11);  // a chain was running

    uc.requests.SendRequest("alertSettings", "read");

    const bool send = GetParam().sendEnabled;
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

INSTANTIATE_TEST_SUITE_P(Roles, RequestsRefusalTest,
                         ::testing::Values(RefusalCase{"maintenance", true},
                                           RefusalCase{"observer", false}));

TEST_F(RequestsTest, EnablingKeepsTheRoleRulesAndLeavesRunningMonitoringAlone) {
    // An operator may reset the diagnostics but not calibrate.
    uc.tools().ActorRole = "operator";
    const std::vector<form::Control*> resets = uc.form().elements("cmdResetDiagnostics");
    const std::vector<form::Control*> calibrations =
        uc.form().elements("cmdHAAutoTravelCalibration");
    ASSERT_FALSE(resets.empty() || calibrations.empty());
    uc.requests.EnableDeviceActions(false);
    EXPECT_FALSE(uc.form().control("cmdHAMonitoring", 1).enabled());
    EXPECT_FALSE(uc.form().control("cmdStartTest", 1).enabled());
    EXPECT_FALSE(resets[0]->enabled());

    uc.tools().MonitoringFlag = true;
    uc.requests.EnableDeviceActions(true);
    EXPECT_FALSE(uc.form().control("cmdHAMonitoring", 0).enabled());
    EXPECT_TRUE(uc.form().control("cmdStartTest", 0).enabled());
    EXPECT_TRUE(uc.form().control("cmdStartTest", 1).enabled());
    for (const form::Control* reset : resets) {
        EXPECT_TRUE(reset->enabled()) << reset->displayName();
    }
    for (const form::Control* calibration : calibrations) {
        EXPECT_FALSE(calibration->enabled()) << calibration->displayName();
    }
}

TEST(AutoActionRequestTest, IsAValidRequestWithoutItems) {
    TestUserControl uc;
    const xml::LoadResult parsed =
        xml::Document::parse(AutoActionRequest("valveTest"), {uc.communicationSchemas()});
    ASSERT_TRUE(parsed.ok()) << parsed.message();
    const xml::Node request = parsed.document->root().firstChildElement("communicationRequest");
    EXPECT_EQ(request.attribute("name"), "valveTest");
    EXPECT_EQ(request.attribute("access"), "write");
    EXPECT_FALSE(request.firstChildElement());
}

}  // namespace
}  // namespace kt500::data
