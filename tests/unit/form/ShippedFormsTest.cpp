// The form files that ship load into one form and hold what the session
// start reaches for.
#include "FormTestSupport.h"

#include <gtest/gtest.h>

namespace kt500::form::test {
namespace {

class ShippedForms : public ::testing::Test {
protected:
    void SetUp() override {
        FormLoader loader(schemaFile());
        loader.load(form, FormLoader::standardFiles(shareDir() / "forms"));
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
            const Control& frame = frames[i];
            EXPECT_EQ(frame.kind(), ControlKind::Frame);
            EXPECT_FALSE(frame.visible());
            if (!frame.tag().empty()) {
                EXPECT_EQ(frame.tag().substr(0, 2), f.prefix) << frame.displayName();
            }
        }
    }
    EXPECT_EQ(form.control("fraKT520", 7).tag(), "HAoperationUnit");
    EXPECT_EQ(form.control("fraKT540", 30).tag(), "PAfailSafeAction");
    EXPECT_EQ(form.control("fraPL500", 19).tag(), "PLhartConfiguration");
    EXPECT_EQ(form.control("fraPL500", 17).tag(), "");
}

TEST_F(ShippedForms, ToolbarHoldsEveryCommandAndStatusItem) {
    const Control& toolbar = form.control("smuiDTM", 1);
    for (const char* key : {"send",
                            "uploadCurrent",
                            "uploadAll",
                            "uploadIdentification",
                            "uploadConfiguration",
                            "uploadDiagnostics",
                            "uploadOperation",
                            "uploadAdvanced",
                            "hideTree",
                            "settings",
                            "stop",
                            "open",
                            "save",
                            "offlineConf",
                            "undoCurrentPage",
                            "undoAll",
                            "help",
                            "imgDtmStatus",
                            "strDtmStatus",
                            "deviceType",
                            "revision",
                            "imgHeaderStatus",
                            "strHeaderStatus"}) {
        EXPECT_NE(toolbar.toolbar().find(key), nullptr) << key;
    }
    EXPECT_FALSE(toolbar.toolbar().item("stop").enabled);
    EXPECT_EQ(toolbar.toolbar().item("hideTree").style, ToolbarItemStyle::Check);
    EXPECT_GE(toolbar.toolbar().bands().size(), 2U);
}

TEST_F(ShippedForms, StartUpControlsArePresent) {
    for (const auto& [name, index] :
         std::vector<std::pair<const char*, int>>{{"treeNavigation", -1},
                                                  {"tmrIconBlink", -1},
                                                  {"fraProgress", -1},
                                                  {"ProgressBar1", -1},
                                                  {"comFlowModification", 0},
                                                  {"comFlowModification", 1},
                                                  {"comSelectLanguage", -1},
                                                  {"cmdTranslate", -1},
                                                  {"fraSettingsLanguage", -1},
                                                  {"fraSettingsUnit", -1},
                                                  {"TreeView3", -1},
                                                  {"lsvConfirmation", -1},
                                                  {"imgLockedDataset", -1},
                                                  {"lblLockedDataset", -1},
                                                  {"imgToolbar", 4},
                                                  {"mnuPopupItem", 0},
                                                  {"cmdStartTest", 0},
                                                  {"cmdPLStartTest", 0},
                                                  {"cmdPLSetTestSettings", -1},
                                                  {"cmdHAMonitoring", 0},
                                                  {"cmdPAMonitoring", 0},
                                                  {"cmdPLMonitoring", 0},
                                                  {"cmdHAFlowModification", 0},
                                                  {"cmdPAFlowModification", 0},
                                                  {"chkPLParams", 9},
                                                  {"chkPLParams", 10},
                                                  {"lblHAMonitoringSettings", 6},
                                                  {"lblPAMonValue", 4},
                                                  {"lblPLParams", 9},
                                                  {"dirOpenFile", -1},
                                                  {"filOpenFile", -1},
                                                  {"cmdSend", 8}}) {
        EXPECT_NE(form.find(name, index), nullptr) << name << "(" << index << ")";
    }
    const Control& settings = form.control("fraCommon", 0);
    EXPECT_TRUE(Form::isInside(form.control("comSelectLanguage"), settings));
    EXPECT_TRUE(Form::isInside(form.control("TreeView3"), form.control("fraCommon", 4)));
    EXPECT_TRUE(form.control("lsvConfirmation").listView().checkBoxes());
    EXPECT_EQ(form.control("fraCommon", 4).tag(), "status");
}

TEST_F(ShippedForms, PagesStayInsideTheUserControl) {
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
