// The form files that ship load into one form and hold what the session
// start reaches for.
#include "FormTestSupport.h"
#include "simulator/DeviceCatalogue.h"
#include "simulator/DeviceFamilySource.h"
#include "xml/XPath.h"

#include <gtest/gtest.h>

#include <iterator>
#include <set>
#include <sstream>

namespace kt500::form::test {
namespace {

std::vector<std::string> words(const std::string& text) {
    std::istringstream in(text);
    return {std::istream_iterator<std::string>(in), std::istream_iterator<std::string>()};
}

class ShippedForms : public ::testing::Test {
protected:
    void SetUp() override {
        FormLoader(schemaFile()).load(form, FormLoader::standardFiles(shareDir() / "forms"));
    }
    // "name" is a plain control, "name:i" element i of an array.
    const Control* find(const std::string& word) {
        const auto colon = word.find(':');
        return form.find(word.substr(0, colon),
                         colon == std::string::npos ? -1 : std::stoi(word.substr(colon + 1)));
    }
    Form form;
};

TEST_F(ShippedForms, FamilyFrameArraysAreCompleteAndTagged) {
    const struct {
        const char* array;
        int count;
        const char* prefix;
    } families[] = {{"fraKT520", 26, "HA"}, {"fraKT540", 31, "PA"}, {"fraPL500", 20, "PL"}};
    for (const auto& f : families) {
        const ControlArray& frames = form.array(f.array);
        ASSERT_EQ(frames.count(), static_cast<std::size_t>(f.count)) << f.array;
        EXPECT_EQ(frames.indices().back(), f.count - 1);
        for (int i : frames.indices()) {
            EXPECT_EQ(frames[i].kind(), ControlKind::Frame);
            EXPECT_FALSE(frames[i].visible());
            if (!frames[i].tag().empty()) {
                EXPECT_EQ(frames[i].tag().substr(0, 2), f.prefix) << frames[i].displayName();
            }
        }
    }
    EXPECT_EQ(form.control("fraKT520", 7).tag(), "HAoperationUnit");
}

TEST_F(ShippedForms, StartUpControlsArePresentAndPagesFitTheUserControl) {
    const ToolbarModel& toolbar = form.control("smuiDTM", 1).toolbar();
    EXPECT_FALSE(toolbar.item("stop").enabled);
    EXPECT_EQ(toolbar.item("hideTree").style, ToolbarItemStyle::Check);
    for (const std::string& word :
         words("treeNavigation tmrIconBlink fraProgress ProgressBar1 comFlowModification:0 "
               "comFlowModification:1 comSelectLanguage cmdTranslate fraSettingsLanguage "
               "fraSettingsUnit TreeView3 lsvConfirmation imgLockedDataset lblLockedDataset "
               "imgToolbar:4 mnuPopupItem:0 cmdStartTest:0 cmdPLStartTest:0 cmdPLSetTestSettings:1 "
               "cmdHAMonitoring:0 cmdPAMonitoring:0 cmdPLMonitoring:0 cmdHAFlowModification:0 "
               "cmdPAFlowModification:0 chkPLParams:9 chkPLParams:10 lblHAMonitoringSettings:6 "
               "lblPAMonValue:6 lblPLParams:11 dirOpenFile filOpenFile cmdSend:8 "
               "chkFlowModification cmdReload:23 cmdHAFlowModification:5 lblHAFlowModification:15 "
               "cmdPAFlowModification:5 lblPAFlowModification:11 txtPAFlowModification:20 "
               "lblPAFlowModificationPoint:20")) {
        EXPECT_NE(find(word), nullptr) << word;
    }
    EXPECT_TRUE(Form::isInside(form.control("TreeView3"), form.control("fraCommon", 4)));
    EXPECT_TRUE(form.control("lsvConfirmation").listView().checkBoxes());

    for (const Control* c : form.controls()) {
        if (c->kind() == ControlKind::Frame && c->container() == nullptr) {
            EXPECT_GE(c->left(), 0) << c->displayName();
            EXPECT_LE(c->left() + c->width(), Form::kUserControlWidth) << c->displayName();
            EXPECT_LE(c->top() + c->height(), Form::kUserControlHeight) << c->displayName();
        }
    }
}

// The value holders of the page that a frame element is.
std::set<std::string> fieldTagsOn(const Form& form, const Control& page) {
    std::set<std::string> tags;
    for (const Control* c : form.controls()) {
        const ControlKind kind = c->kind();
        const bool holdsValue = kind == ControlKind::TextBox || kind == ControlKind::ComboBox ||
                                kind == ControlKind::CheckBox || kind == ControlKind::Label;
        if (holdsValue && !c->tag().empty() && Form::isInside(*c, page)) {
            tags.insert(c->tag());
        }
    }
    return tags;
}

TEST_F(ShippedForms, EveryParameterOfAHartPageGroupHasAFieldOnItsPage) {
    // Trend, log and test value pages put their groups into charts and lists.
    const std::set<std::string> chartPages{"travelDeviation", "travelVsTime",
                                           "loadFactor",      "eventLog",
                                           "stepTestValues",  "hysteresisTestValues"};
    // Parameters shown elsewhere: the supply pressure on the load factor and
    // trim pages only, the device id decoded by the device class.
    const std::set<std::string> shownElsewhere{"supplyPressure", "deviceId"};
    EXPECT_EQ(form.control("txtLoadFactor", 0).tag(), "supplyPressure");
    EXPECT_EQ(form.control("lblHAPositionerInformation", 14).tag(), "");

    const simulator::ParameterDocumentBuilder builder(shareDir() / "devices");
    const auto selection = xml::Namespaces::fromSelection(
        "xmlns:data='x-schema:QDLDatafileSchema.xml' "
        "xmlns:typeInfo='x-schema:QDLDeviceTypeInfoSchema.xml'");
    int models = 0;
    for (const simulator::DeviceModel& model : simulator::DeviceCatalogue::models()) {
        if (builder.familyFor(model.deviceType).prefix() != "HA") {
            continue;
        }
        ++models;
        const xml::Document document = builder.build(model);
        const xml::XPath query(document, selection);
        for (int i : form.array("fraKT520").indices()) {
            const Control& page = form.control("fraKT520", i);
            const std::string group = page.tag().substr(2);
            if (chartPages.count(group) != 0) {
                continue;
            }
            const std::set<std::string> tags = fieldTagsOn(form, page);
            for (const xml::Node& param :
                 query.select("//data:requestGroups/data:requestGroup[@name = '" + group +
                              "']/data:includedParam")) {
                const std::string name = param.attribute("name");
                EXPECT_TRUE(tags.count(name) != 0 || shownElsewhere.count(name) != 0)
                    << model.key << ": " << name << " has no field on " << page.displayName();
            }
        }
    }
    EXPECT_EQ(models, 12);
}

TEST_F(ShippedForms, OnlyPressuresAndTemperaturesHaveATaggedUnitLabel) {
    // A tagged unit label makes a value travel converted to the device, so
    // no other parameter may have one. "supplyPressure" is shown twice, the
    // temperature's coefficient has its own unit label.
    std::multiset<std::string> unitTags;
    for (const Control* c : form.controls()) {
        const std::string& tag = c->tag();
        if (c->kind() == ControlKind::Label && c->name() != "lblTimeStamp" && tag.size() > 6 &&
            tag.rfind("HA", 0) == 0 && tag.compare(tag.size() - 4, 4, "Unit") == 0) {
            unitTags.insert(tag);
        }
    }
    EXPECT_EQ(unitTags, (std::multiset<std::string>{
                            "HAactuatorPressureUnit", "HAmeasuredTemperatureUnit",
                            "HAmeasuredTemperatureUnit", "HApcbTemperatureUnit",
                            "HApressureSpanUnit", "HAsupplyPressureUnit", "HAsupplyPressureUnit"}));
    // "supplyPressure" takes the last label with its tag.
    const Control* last = nullptr;
    for (const Control* c : form.controls()) {
        if (c->kind() == ControlKind::Label && c->tag() == "HAsupplyPressureUnit") {
            last = c;
        }
    }
    EXPECT_EQ(last, &form.control("lblHAManualPrestageTrim", 2));
}

TEST_F(ShippedForms, TimeStampsLieOnTheirPages) {
    // Element n lies on fraKT520 n, 30 + n on fraKT540 n, 70 + n on fraPL500 n.
    for (int i : form.array("lblTimeStamp").indices()) {
        const Control& stamp = form.control("lblTimeStamp", i);
        const Control& page = i < 30   ? form.control("fraKT520", i)
                              : i < 70 ? form.control("fraKT540", i - 30)
                                       : form.control("fraPL500", i - 70);
        EXPECT_EQ(stamp.tag(), page.tag());
        EXPECT_TRUE(Form::isInside(stamp, page)) << i;
    }
}

}  // namespace
}  // namespace kt500::form::test
