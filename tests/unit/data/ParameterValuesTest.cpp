#include "data/ParameterValues.h"
#include "unit/data/DataTestSupport.h"

#include <QLocale>

#include <gtest/gtest.h>

#include <array>

namespace kt500::data {
namespace {

using form::ControlKind;
using testing::TestUserControl;

// The KT520 pages used here: operation unit, valve related configuration.
constexpr int kOperationUnit = 7;
constexpr int kValveConfiguration = 8;

// A session whose translations are the text keys themselves.
simulator::SessionOptions Keys(const std::string& deviceKey) {
    simulator::SessionOptions options = testing::SessionOf(deviceKey);
    options.language = "9999";
    return options;
}

// Sets the default locale for the life of the guard.
struct LocaleGuard {
    explicit LocaleGuard(QLocale::Language language) { QLocale::setDefault(QLocale(language)); }
    ~LocaleGuard() { QLocale::setDefault(saved); }
    QLocale saved;
};

// The valveStyle list of the valve page, with two entries.
form::Control& ValveStyle(TestUserControl& uc,
                          const std::string& name = "comHAValveRelatedConfiguration",
                          const std::string& frame = "fraKT520", int page = kValveConfiguration) {
    form::Control& list = uc.addField(ControlKind::ComboBox, name, 0, frame, page, "valveStyle");
    for (const auto& [text, data] : {std::pair{"first", 0}, std::pair{"second", 1}}) {
        list.addItem(text);
        list.setItemData(list.newIndex(), data);
    }
    return list;
}

// The date fields of the operation unit page.
std::array<form::Control*, 3> DateFields(TestUserControl& uc) {
    const auto field = [&uc](ControlKind kind, const char* name, int index, const char* tag) {
        return &uc.addField(kind, name, index, "fraKT520", kOperationUnit, tag);
    };
    return {field(ControlKind::ComboBox, "comHAOperationUnit", 0, "deviceDay"),
            field(ControlKind::ComboBox, "comHAOperationUnit", 1, "deviceMonth"),
            field(ControlKind::TextBox, "txtHAOperationUnit", 2, "deviceYear")};
}

void SetLive(TestUserControl& uc, const std::string& name, const std::string& attribute,
             const std::string& value) {
    uc.ParameterNodeByName(name).setAttribute(attribute, value);
}

TEST(FetchValueByTagTest, FieldOnTheFamilysPagesElseTheDocument) {
    TestUserControl uc(Keys("KT520_7"));
    form::Form& form = uc.form();
    form::Control& field = form.control("txtHAOperationUnit", 0);  // hartTag
    field.setText("TAG-7");
    // Outside the family's pages a field does not count.
    form.setContainer(field, &form.control("fraCommon", 1));
    EXPECT_EQ(uc.values.FetchValueByTag("hartTag", false), "PV-101");
    // A field in a frame inside the page counts.
    form::Control& group =
        form.add(ControlKind::Frame, "fraHAGroup", -1, &form.control("fraKT520", kOperationUnit));
    form.setContainer(field, &group);
    EXPECT_EQ(uc.values.FetchValueByTag("hartTag", false), "TAG-7");
    // The manufacturer is always the data set's.
    form.control("lblHAPositionerInformation", 0).setCaption("Shown");
    EXPECT_EQ(uc.values.FetchValueByTag("manufacturer", false), "Ravik Automation");

    // A list box gives its item data or text, nothing without an entry.
    form::Control& list = ValveStyle(uc);
    list.setListIndex(-1);
    EXPECT_EQ(uc.values.FetchValueByTag("valveStyle", true), "");
    list.setListIndex(1);
    EXPECT_EQ(uc.values.FetchValueByTag("valveStyle", false), "1");
    EXPECT_EQ(uc.values.FetchValueByTag("valveStyle", true), "second");

    // Without a page field an empty document value is 0, except for strings.
    form.remove(form.control("txtHAHartConfiguration", 0));  // pollingAddress
    SetLive(uc, "pollingAddress", "value", "");
    EXPECT_EQ(uc.values.FetchValueByTag("pollingAddress", false), "0");
    form.remove(field);
    SetLive(uc, "hartTag", "value", "");
    EXPECT_EQ(uc.values.FetchValueByTag("hartTag", false), "");
    EXPECT_EQ(uc.values.FetchValueByTag("noSuchParameter", false), "");
}

TEST(FillListsTest, MappedParamsOnFamilyAndCommonPagesAndTheClasssDateSelectors) {
    TestUserControl uc(Keys("KT520_7"));
    form::Control& page = ValveStyle(uc);
    form::Control& common = ValveStyle(uc, "comCommon", "fraCommon", 1);
    form::Control& other = ValveStyle(uc, "comOther", "fraConfirmation", 1);
    uc.values.FillMappedParams();
    for (const form::Control* list : {&page, &common}) {
        ASSERT_EQ(list->listCount(), 2);
        EXPECT_EQ(list->list(1), "rotaryValve");
        EXPECT_EQ(list->itemData(1), 1);
    }
    EXPECT_EQ(other.list(0), "first");

    const auto [day, month, year] = DateFields(uc);
    uc.values.FillDateFields();
    ASSERT_EQ(day->listCount(), 31);
    EXPECT_EQ(day->itemData(30), 30);
    EXPECT_EQ(month->listCount(), 12);

    TestUserControl pl500(Keys("PL500_2"));
    form::Control& plDay =
        pl500.addField(ControlKind::ComboBox, "comPLParams", 0, "fraPL500", 0, "deviceDay");
    pl500.values.FillDateFields();  // no month selector on the page: the day alone
    EXPECT_EQ(plDay.listCount(), 31);
    TestUserControl kt540(Keys("KT540_1.0"));
    EXPECT_NO_THROW(kt540.values.FillDateFields());
}

// --- SetItemValueToGUI ---

class SetItemValueTest : public ::testing::Test {
protected:
    TestUserControl uc{Keys("KT520_7")};
    form::Control& hartTag = uc.form().control("txtHAOperationUnit", 0);
    void offline(const std::string& name, const std::string& value, std::int16_t sync = 1) {
        uc.values.SetItemValueToGUI({}, name, value, "noUnit", sync);
    }
};

TEST_F(SetItemValueTest, FloatRoundedToDecimalsWithTheLocalesSign) {
    const struct {
        QLocale::Language language;
        std::string value;
        std::string decimals;
        std::string shown;
    } cases[] = {
        {QLocale::English, "12.345", "2", "12.35"},
        {QLocale::German, "12.345", "2", "12,35"},
        {QLocale::German, "12,345", "1", "12,3"},
        {QLocale::English, "2.5", "", "3"},
        {QLocale::English, "-2.5", "0", "-3"},
        {QLocale::English, "1.04", "1", "1"},
        {QLocale::English, "1000000.5", "1", "1000000.5"},
        {QLocale::English, "  ", "1", ""},
    };
    form::Control& tightShutOff = uc.form().control("txtHAPositionControl", 6);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.value + " decimals '" + c.decimals + "'");
        const LocaleGuard locale{c.language};
        SetLive(uc, "tightShutOff", "decimals", c.decimals);
        tightShutOff.setText("5");
        offline("tightShutOff", c.value);
        EXPECT_EQ(tightShutOff.text(), c.shown);
    }
    EXPECT_THROW(offline("tightShutOff", "abc"), std::invalid_argument);
}

TEST_F(SetItemValueTest, ListWithoutEntryKeepsTheSelectionAndDeviceTypeErrorsShowUnknown) {
    form::Control& list = ValveStyle(uc);
    list.setListIndex(1);
    offline("valveStyle", "7");
    EXPECT_EQ(list.listIndex(), 1);
    offline("valveStyle", "0");
    EXPECT_EQ(list.listIndex(), 0);

    form::Control& label = uc.addField(ControlKind::Label, "lblHAPositionerInformation", 1,
                                       "fraKT520", 9, "deviceType");
    offline("deviceType", "ErrNoType");
    EXPECT_EQ(label.caption(), "Unknown");
    offline("deviceType", "232");
    EXPECT_EQ(label.caption(), "232");
}

TEST_F(SetItemValueTest, OfflineStateColoursTheFieldAndItsMark) {
    form::Control& mark = uc.form().control("imgHAOperationUnit", 0);  // hartTag's row
    form::Control& otherPage =
        uc.addField(ControlKind::Image, "imgHAAlertSettings", 0, "fraKT520", 3, "hartTag");
    otherPage.setVisible(false);
    offline("hartTag", "PV-1", 0);
    EXPECT_EQ(hartTag.text(), "PV-1");
    EXPECT_EQ(hartTag.foreColor(), devices::ColorChanged);
    EXPECT_TRUE(mark.visible());
    EXPECT_FALSE(otherPage.visible());
    offline("hartTag", "PV-2", 1);
    EXPECT_EQ(hartTag.foreColor(), devices::ColorSynchronised);
    EXPECT_FALSE(mark.visible());

    // A reply brings the value and leaves colour and mark to the group's close.
    hartTag.setForeColor(devices::ColorChanged);
    const xml::Document reply =
        test::Parsed("<item name='hartTag' unit='noUnit'><stringVal>PV-3</stringVal></item>");
    uc.values.SetItemValueToGUI(reply.root(), "", "", "", 0);
    EXPECT_EQ(hartTag.text(), "PV-3");
    EXPECT_EQ(hartTag.foreColor(), devices::ColorChanged);
}

TEST(SetItemValuePL500Test, TwoPartTestScheduleGoesToItsFields) {
    TestUserControl uc(Keys("PL500_2"));
    const auto field = [&](ControlKind kind, const char* name, int index) -> form::Control& {
        form::Control& control = uc.addField(kind, name, index, "fraPL500", 13, "");
        if (kind == ControlKind::ComboBox) {
            control.addItem("0");
            control.addItem("1");
        }
        return control;
    };
    form::Control& count = field(ControlKind::TextBox, "txtPLParams", 19);
    form::Control& unit = field(ControlKind::ComboBox, "comPLParams", 14);
    form::Control& onOff = field(ControlKind::ComboBox, "comPLParams", 13);
    const auto interval = [&uc](const char* hours) {
        uc.values.SetItemValueToGUI({}, "valveTestInterval", hours, "h", 1);
    };
    interval("720");
    EXPECT_EQ(count.text(), "30");  // whole days count in days
    EXPECT_EQ(unit.listIndex(), 1);
    EXPECT_EQ(onOff.listIndex(), 1);
    interval("30");
    EXPECT_EQ(count.text(), "30");
    EXPECT_EQ(unit.listIndex(), 0);
    interval("0");
    EXPECT_EQ(onOff.listIndex(), 0);

    // The time to the next test in days, hours and minutes.
    std::vector<form::Control*> labels;
    for (const int index : {27, 28, 29}) {
        labels.push_back(&field(ControlKind::Label, "lblPLParams", index));
    }
    uc.values.SetItemValueToGUI({}, "valveTestNextTestTime", "49.5", "h", 1);
    EXPECT_EQ(labels[0]->caption() + " " + labels[1]->caption() + " " + labels[2]->caption(),
              "2 1 30");
}

// --- LoadPagesFromDocument ---

class LoadPagesFromDocumentTest : public ::testing::Test {
protected:
    // A GUIInit document with one branch of these nodes (name, offline).
    void guiInit(const std::vector<std::pair<std::string, std::string>>& nodes) {
        std::string text = "<dtm><treeView><branch name='b' offline='1'>";
        for (const auto& [name, offline] : nodes) {
            text += "<node name='" + name + "' offline='" + offline + "'/>";
            uc.form().control("treeNavigation").tree().add("", name, name, "start");
        }
        test::SetGuiInit(uc, text + "</branch></treeView></dtm>");
    }
    std::string icon(const std::string& page) {
        return uc.form().control("treeNavigation").tree().node(page).image;
    }
    TestUserControl uc{Keys("KT520_7")};
};

TEST_F(LoadPagesFromDocumentTest, PageStatesFromTheValuesStates) {
    // The parameters of hartConfiguration, in order.
    const std::array<const char*, 4> names = {"pollingAddress", "loopCurrentMode",
                                              "numberOfPreambles", "burstMode"};
    const struct {
        const char* value;  // of every parameter
        std::array<const char*, 4> synchronised;
        const char* state;
    } cases[] = {
        {"1", {"1", "1", "1", "1"}, "read"},   {"1", {"1", "0", "1", "1"}, "changed"},
        {"1", {"2", "0", "1", "1"}, "error"},  {"1", {"2", "1", "1", "1"}, "error"},
        {"", {"0", "0", "0", "0"}, "notRead"},
    };
    guiInit({{"hartConfiguration", "1"},
             {"resetDiagnostics", "1"},
             {"temperatureSensorCalibration", "1"}});
    for (const auto& c : cases) {
        for (std::size_t i = 0; i < names.size(); ++i) {
            SetLive(uc, names[i], "value", c.value);
            SetLive(uc, names[i], "synchronised", c.synchronised[i]);
        }
        uc.values.LoadPagesFromDocument();
        EXPECT_EQ(icon("hartConfiguration"), c.state) << c.state;
        // A group without parameters has nothing to read: it takes no tick.
        EXPECT_EQ(icon("resetDiagnostics"), "start");
        // Nor does a calibration page, whose values the calibration reads.
        EXPECT_EQ(icon("temperatureSensorCalibration"), "start");
    }
    // A change on such a page still shows.
    SetLive(uc, "measuredTemperature", "synchronised", "0");
    uc.values.LoadPagesFromDocument();
    EXPECT_EQ(icon("temperatureSensorCalibration"), "changed");
}

TEST_F(LoadPagesFromDocumentTest, NodesOfTheModeAndValuesOnThePage) {
    guiInit({{"operationUnit", "1"}, {"hartConfiguration", "3"}});
    uc.values.FillDateFields();  // the start-up fills them before the values come
    form::Control& field = uc.form().control("txtHAOperationUnit", 0);  // hartTag
    SetLive(uc, "hartTag", "synchronised", "0");

    uc.tools().OnlineConf = false;
    uc.values.LoadPagesFromDocument();
    EXPECT_EQ(field.text(), "PV-101");
    EXPECT_EQ(field.foreColor(), devices::ColorChanged);
    EXPECT_EQ(icon("operationUnit"), "changed");
    EXPECT_EQ(icon("hartConfiguration"), "start");  // online only
    uc.tools().OnlineConf = true;
    uc.values.LoadPagesFromDocument();
    EXPECT_EQ(icon("hartConfiguration"), "read");
}

// The groups of the live document are looked up by name from an index: the
// stamp is read afresh each time, and a group that comes with a new live
// document is found once the old one was forgotten.
TEST_F(LoadPagesFromDocumentTest, TimeStampFollowsTheLiveDocument) {
    const LocaleGuard locale{QLocale::German};
    // Two labels of the group: the one of the lower index shows the stamp.
    form::Control& later = uc.addField(ControlKind::Label, "lblTimeStamp", 3, "fraKT520",
                                       kOperationUnit, "HAoperationUnit");
    form::Control& stamp = uc.addField(ControlKind::Label, "lblTimeStamp", 1, "fraKT520",
                                       kOperationUnit, "HAoperationUnit");
    xml::Node groups = uc.parameterNode().firstChildElement("requestGroups");
    const auto setStamp = [&groups](const std::string& name, const std::string& text) {
        for (xml::Node group : groups.childElements()) {
            if (group.attribute("name") == name) {
                group.setAttribute("lastUpdate", text);
            }
        }
    };
    setStamp("operationUnit", "2024-03-01 10:15:00");
    uc.values.UpdateGroupTimeStamp("operationUnit");
    EXPECT_EQ(stamp.caption(), "01.03.24 10:15:00");
    EXPECT_EQ(later.caption(), "");
    // The same stamp in another locale is written anew, and back again.
    {
        const LocaleGuard english{QLocale::English};
        uc.values.UpdateGroupTimeStamp("operationUnit");
        EXPECT_EQ(stamp.caption(), "3/1/24 10:15:00 AM");
    }
    uc.values.UpdateGroupTimeStamp("operationUnit");
    EXPECT_EQ(stamp.caption(), "01.03.24 10:15:00");
    setStamp("operationUnit", "2024-03-02 11:00:00");
    uc.values.UpdateGroupTimeStamp("operationUnit");
    EXPECT_EQ(stamp.caption(), "02.03.24 11:00:00");
    setStamp("operationUnit", "");
    stamp.setCaption("kept");
    uc.values.UpdateGroupTimeStamp("operationUnit");  // an empty stamp: nothing
    EXPECT_EQ(stamp.caption(), "kept");
    uc.values.UpdateGroupTimeStamp("hartAddress");  // no such group: nothing
    EXPECT_EQ(stamp.caption(), "kept");

    // A group the live document gains, as a new document brings it.
    form::Control& added = uc.addField(ControlKind::Label, "lblTimeStamp", 2, "fraKT520",
                                       kOperationUnit, "HAaddedGroup");
    xml::Node group = groups.firstChildElement("requestGroup").cloneInto(groups);
    group.setAttribute("name", "addedGroup");
    group.setAttribute("lastUpdate", "2024-03-03 12:30:00");
    uc.values.ForgetLiveGroups();
    uc.values.UpdateGroupTimeStamp("addedGroup");
    EXPECT_EQ(added.caption(), "03.03.24 12:30:00");
}

}  // namespace
}  // namespace kt500::data
