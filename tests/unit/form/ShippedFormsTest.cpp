// The form files that ship load into one form and hold what the session
// start reaches for.
#include "FormTestSupport.h"

#include <gtest/gtest.h>

#include <iterator>
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
    EXPECT_EQ(form.control("fraPL500", 17).tag(), "");
}

TEST_F(ShippedForms, ToolbarHoldsEveryCommandAndStatusItem) {
    const ToolbarModel& toolbar = form.control("smuiDTM", 1).toolbar();
    for (const std::string& key :
         words("send uploadCurrent uploadAll uploadIdentification uploadConfiguration "
               "uploadDiagnostics uploadOperation uploadAdvanced hideTree settings stop open save "
               "offlineConf undoCurrentPage undoAll help imgDtmStatus strDtmStatus deviceType "
               "revision imgHeaderStatus strHeaderStatus")) {
        EXPECT_NE(toolbar.find(key), nullptr) << key;
    }
    EXPECT_FALSE(toolbar.item("stop").enabled);
    EXPECT_EQ(toolbar.item("hideTree").style, ToolbarItemStyle::Check);
}

TEST_F(ShippedForms, StartUpControlsArePresentAndPagesFitTheUserControl) {
    // "name" is a plain control, "name:i" element i of an array.
    for (const std::string& word :
         words("treeNavigation tmrIconBlink fraProgress ProgressBar1 comFlowModification:0 "
               "comFlowModification:1 comSelectLanguage cmdTranslate fraSettingsLanguage "
               "fraSettingsUnit TreeView3 lsvConfirmation imgLockedDataset lblLockedDataset "
               "imgToolbar:4 mnuPopupItem:0 cmdStartTest:0 cmdPLStartTest:0 cmdPLSetTestSettings:1 "
               "cmdHAMonitoring:0 cmdPAMonitoring:0 cmdPLMonitoring:0 cmdHAFlowModification:0 "
               "cmdPAFlowModification:0 chkPLParams:9 chkPLParams:10 lblHAMonitoringSettings:6 "
               "lblPAMonValue:6 lblPLParams:11 dirOpenFile filOpenFile cmdSend:8")) {
        const auto colon = word.find(':');
        const int index = colon == std::string::npos ? -1 : std::stoi(word.substr(colon + 1));
        EXPECT_NE(form.find(word.substr(0, colon), index), nullptr) << word;
    }
    EXPECT_TRUE(Form::isInside(form.control("comSelectLanguage"), form.control("fraCommon", 0)));
    EXPECT_TRUE(Form::isInside(form.control("TreeView3"), form.control("fraCommon", 4)));
    EXPECT_TRUE(form.control("lsvConfirmation").listView().checkBoxes());
    EXPECT_EQ(form.control("fraCommon", 4).tag(), "status");

    for (const Control* c : form.controls()) {
        if (c->kind() == ControlKind::Frame && c->container() == nullptr) {
            EXPECT_GE(c->left(), 0) << c->displayName();
            EXPECT_LE(c->left() + c->width(), Form::kUserControlWidth) << c->displayName();
            EXPECT_LE(c->top() + c->height(), Form::kUserControlHeight) << c->displayName();
        }
    }
}

}  // namespace
}  // namespace kt500::form::test
