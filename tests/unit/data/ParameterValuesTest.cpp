#include "data/ParameterValues.h"
#include "support/TestUserControl.h"

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

// Restores the locale that a test changed.
class LocaleGuard {
public:
    explicit LocaleGuard(const QLocale& locale) { QLocale::setDefault(locale); }
    ~LocaleGuard() { QLocale::setDefault(m_saved); }
    LocaleGuard(const LocaleGuard&) = delete;
    LocaleGuard& operator=(const LocaleGuard&) = delete;

private:
    QLocale m_saved;
};

form::Control& AddList(TestUserControl& uc, const std::string& name, int index,
                       const std::string& frame, int frameIndex, const std::string& tag) {
    form::Control& list = uc.addField(ControlKind::ComboBox, name, index, frame, frameIndex, tag);
    for (const auto& [text, data] : {std::pair{"first", 0}, std::pair{"second", 1}}) {
        list.addItem(text);
        list.setItemData(list.newIndex(), data);
    }
    return list;
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
    form::Control& box = form.control("chkResetDiagnostics", 0);
    box.setValue(1);
    EXPECT_EQ(uc.values.FetchValueByTag(box.tag(), false), "1");

    // A list box gives its item data or text, nothing without an entry.
    form::Control& list = AddList(uc, "comHAValveRelatedConfiguration", 0, "fraKT520",
                                  kValveConfiguration, "valveStyle");
    list.setListIndex(-1);
    EXPECT_EQ(uc.values.FetchValueByTag("valveStyle", false), "");
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
    form::Control& page = AddList(uc, "comHAValveRelatedConfiguration", 0, "fraKT520",
                                  kValveConfiguration, "valveStyle");
    form::Control& common = AddList(uc, "comCommon", 0, "fraCommon", 1, "valveStyle");
    form::Control& other = AddList(uc, "comOther", 0, "fraConfirmation", 1, "valveStyle");
    uc.values.FillMappedParams();
    for (const form::Control* list : {&page, &common}) {
        ASSERT_EQ(list->listCount(), 2);
        EXPECT_EQ(list->list(0), "linearValve");
        EXPECT_EQ(list->list(1), "rotaryValve");
        EXPECT_EQ(list->itemData(1), 1);
    }
    EXPECT_EQ(other.list(0), "first");

    form::Control& day = uc.addField(ControlKind::ComboBox, "comHAOperationUnit", 0, "fraKT520",
                                     kOperationUnit, "deviceDay");
    form::Control& month = uc.addField(ControlKind::ComboBox, "comHAOperationUnit", 1, "fraKT520",
                                       kOperationUnit, "deviceMonth");
    uc.values.FillDateFields();
    ASSERT_EQ(day.listCount(), 31);
    EXPECT_EQ(day.list(30), "31");
    EXPECT_EQ(day.itemData(30), 30);
    ASSERT_EQ(month.listCount(), 12);
    EXPECT_EQ(month.itemData(0), 0);

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
    form::Control& tightShutOff = uc.form().control("txtHAPositionControl", 6);
    void offline(const std::string& name, const std::string& value, std::int16_t sync = 1) {
        uc.values.SetItemValueToGUI({}, name, value, "noUnit", sync);
    }
};

TEST_F(SetItemValueTest, FloatRoundedToDecimalsWithTheLocalesSign) {
    struct Case {
        QLocale::Language language;
        std::string value;
        std::string decimals;
        std::string shown;
    };
    const Case cases[] = {
        {QLocale::English, "12.345", "2", "12.35"},
        {QLocale::German, "12.345", "2", "12,35"},
        {QLocale::German, "12,345", "1", "12,3"},
        {QLocale::English, "2.5", "", "3"},
        {QLocale::English, "-2.5", "0", "-3"},
        {QLocale::English, "1.04", "1", "1"},
        {QLocale::English, "1000000.5", "1", "1000000.5"},
        {QLocale::English, "  ", "1", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.value + " decimals '" + c.decimals + "'");
        const LocaleGuard locale{QLocale(c.language)};
        SetLive(uc, "tightShutOff", "decimals", c.decimals);
        tightShutOff.setText("5");
        offline("tightShutOff", c.value);
        EXPECT_EQ(tightShutOff.text(), c.shown);
    }
    EXPECT_THROW(offline("tightShutOff", "abc"), std::invalid_argument);
}

TEST_F(SetItemValueTest, ListWithoutEntryKeepsTheSelectionAndDeviceTypeErrorsShowUnknown) {
    form::Control& list = AddList(uc, "comHAValveRelatedConfiguration", 0, "fraKT520",
                                  kValveConfiguration, "valveStyle");
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
    mark.setVisible(false);
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
    xml::LoadResult reply = xml::Document::parse(
        "<item name='hartTag' unit='noUnit'><stringVal>PV-3</stringVal></item>");
    uc.values.SetItemValueToGUI(reply.document->root(), "", "", "", 0);
    EXPECT_EQ(hartTag.text(), "PV-3");
    EXPECT_EQ(hartTag.foreColor(), devices::ColorChanged);
}

TEST_F(SetItemValueTest, DeviceDateGoesToTheDateFieldsWithTheStateColour) {
    form::Control& day = uc.addField(ControlKind::ComboBox, "comHAOperationUnit", 0, "fraKT520",
                                     kOperationUnit, "deviceDay");
    form::Control& month = uc.addField(ControlKind::ComboBox, "comHAOperationUnit", 1, "fraKT520",
                                       kOperationUnit, "deviceMonth");
    form::Control& year = uc.addField(ControlKind::TextBox, "txtHAOperationUnit", 2, "fraKT520",
                                      kOperationUnit, "deviceYear");
    uc.values.FillDateFields();
    offline("deviceDate", "15.3.2024", 0);
    EXPECT_EQ(day.listIndex(), 14);
    EXPECT_EQ(month.listIndex(), 2);
    EXPECT_EQ(year.text(), "2024");
    EXPECT_EQ(month.foreColor(), devices::ColorChanged);
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
    uc.values.SetItemValueToGUI({}, "valveTestInterval", "720", "h", 1);
    EXPECT_EQ(count.text(), "30");  // whole days count in days
    EXPECT_EQ(unit.listIndex(), 1);
    EXPECT_EQ(onOff.listIndex(), 1);
    uc.values.SetItemValueToGUI({}, "valveTestInterval", "30", "h", 1);
    EXPECT_EQ(count.text(), "30");
    EXPECT_EQ(unit.listIndex(), 0);
    uc.values.SetItemValueToGUI({}, "valveTestInterval", "0", "h", 1);
    EXPECT_EQ(onOff.listIndex(), 0);

    std::string shown;
    std::vector<form::Control*> labels;
    for (const int index : {27, 28, 29}) {
        labels.push_back(&field(ControlKind::Label, "lblPLParams", index));
    }
    uc.values.SetItemValueToGUI({}, "valveTestNextTestTime", "49.5", "h", 1);
    for (const form::Control* label : labels) {
        shown += label->caption() + " ";
    }
    EXPECT_EQ(shown, "2 1 30 ");
}

// --- ApplyInitialValues ---

class ApplyInitialValuesTest : public ::testing::Test {
protected:
    TestUserControl uc{Keys("KT520_7")};

    // A GUIInit document with one branch of these nodes (name, offline).
    void guiInit(const std::vector<std::pair<std::string, std::string>>& nodes) {
        std::string text = "<dtm><treeView><branch name='b' offline='1'>";
        form::TreeModel& tree = uc.form().control("treeNavigation").tree();
        for (const auto& [name, offline] : nodes) {
            text += "<node name='" + name + "' offline='" + offline + "'/>";
            tree.add("", name, name, "start");
        }
        xml::LoadResult loaded = xml::Document::parse(text + "</branch></treeView></dtm>");
        uc.tools().setRavikDTMParameters(
            std::make_unique<xml::Document>(std::move(*loaded.document)));
    }
    std::string icon(const std::string& page) {
        return uc.form().control("treeNavigation").tree().node(page).image;
    }
};

TEST_F(ApplyInitialValuesTest, PageStatesFromTheValuesStates) {
    // The parameters of hartConfiguration, in order.
    const std::array<const char*, 4> names = {"pollingAddress", "loopCurrentMode",
                                              "numberOfPreambles", "burstMode"};
    struct Case {
        const char* name;
        std::array<const char*, 4> values;
        std::array<const char*, 4> synchronised;
        const char* state;
    };
    const Case cases[] = {
        {"all synchronised", {"0", "1", "5", "0"}, {"1", "1", "1", "1"}, "read"},
        {"one changed", {"0", "1", "5", "0"}, {"1", "0", "1", "1"}, "changed"},
        {"error then changed", {"0", "1", "5", "0"}, {"2", "0", "1", "1"}, "error"},
        {"error then synchronised", {"0", "1", "5", "0"}, {"2", "1", "1", "1"}, "error"},
        {"all empty and changed", {"", "", "", ""}, {"0", "0", "0", "0"}, "notRead"},
    };
    guiInit({{"hartConfiguration", "1"}, {"resetDiagnostics", "1"}});
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        for (std::size_t i = 0; i < names.size(); ++i) {
            SetLive(uc, names[i], "value", c.values[i]);
            SetLive(uc, names[i], "synchronised", c.synchronised[i]);
        }
        uc.values.ApplyInitialValues();
        EXPECT_EQ(icon("hartConfiguration"), c.state);
        // A group without parameters stays read.
        EXPECT_EQ(icon("resetDiagnostics"), "read");
    }
}

TEST_F(ApplyInitialValuesTest, NodesOfTheModeAndValuesOnThePage) {
    guiInit({{"operationUnit", "1"}, {"hartConfiguration", "3"}});
    uc.values.FillDateFields();  // the start-up fills them before the values come
    form::Control& field = uc.form().control("txtHAOperationUnit", 0);  // hartTag
    SetLive(uc, "hartTag", "synchronised", "0");

    uc.tools().OnlineConf = false;
    uc.values.ApplyInitialValues();
    EXPECT_EQ(field.text(), "PV-101");
    EXPECT_EQ(field.foreColor(), devices::ColorChanged);
    EXPECT_EQ(icon("operationUnit"), "changed");
    EXPECT_EQ(icon("hartConfiguration"), "start");  // online only
    uc.tools().OnlineConf = true;
    uc.values.ApplyInitialValues();
    EXPECT_EQ(icon("hartConfiguration"), "read");
}

TEST_F(ApplyInitialValuesTest, TimeStampInTheLocalesDateAndTime) {
    const LocaleGuard locale{QLocale(QLocale::German, QLocale::Germany)};
    form::Control& stamp = uc.addField(ControlKind::Label, "lblTimeStamp", 0, "fraKT520",
                                       kOperationUnit, "HAoperationUnit");
    for (xml::Node group : uc.parameterNode().firstChildElement("requestGroups").childElements()) {
        if (group.attribute("name") == "operationUnit") {
            group.setAttribute("lastUpdate", "2024-03-01 10:15:00");
        }
    }
    uc.values.UpdateGroupTimeStamp("operationUnit");
    EXPECT_EQ(stamp.caption(), "01.03.24 10:15:00");
    stamp.setCaption("kept");
    uc.values.UpdateGroupTimeStamp("hartAddress");  // no such group: nothing
    EXPECT_EQ(stamp.caption(), "kept");
}

}  // namespace
}  // namespace kt500::data
