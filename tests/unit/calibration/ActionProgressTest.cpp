// The toolbar while an action owns the device: send and the whole upload
// band locked on every family, and given back by the mode's, the GUIInit
// document's and the role's rules.
#include "calibration/ActionProgress.h"

#include "support/TestUserControl.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace kt500::calibration {
namespace {

using testing::SessionOf;
using testing::TestUserControl;

constexpr const char* kBand[] = {"uploadCurrent",     "uploadAll",       "uploadIdentification",
                                 "uploadConfiguration", "uploadDiagnostics", "uploadOperation",
                                 "uploadAdvanced"};

class ActionProgressTest : public ::testing::TestWithParam<const char*> {
protected:
    ActionProgressTest() {
        uc.tools().ActorRole = "maintenance";
        uc.tools().OnlineConf = true;
        // The family's own GUIInit document offers its upload groups.
        std::ifstream file(std::string(KT500_SHARE_DIR) + "/guiinit/GUIInit_" + GetParam() +
                           ".xml");
        std::stringstream text;
        text << file.rdbuf();
        xml::LoadResult loaded = xml::Document::parse(text.str());
        if (!loaded.ok()) {
            throw std::runtime_error(loaded.message());
        }
        uc.tools().setRavikDTMParameters(
            std::make_unique<xml::Document>(std::move(*loaded.document)));
        uc.EnableUploadTools();
    }
    form::ToolbarModel& toolbar() { return uc.form().control("smuiDTM", 1).toolbar(); }

    TestUserControl uc{SessionOf(GetParam(), true)};
};

TEST_P(ActionProgressTest, TheLockTakesSendAndTheWholeUploadBand) {
    for (const char* key : kBand) {
        ASSERT_TRUE(toolbar().item(key).enabled) << key;
    }
    LockToolbar(uc);
    for (const char* key : kBand) {
        EXPECT_FALSE(toolbar().item(key).enabled) << key;
    }
    EXPECT_FALSE(toolbar().item("send").enabled);
    // What does not read or write the device stays.
    EXPECT_TRUE(toolbar().item("hideTree").enabled);
    EXPECT_TRUE(toolbar().item("help").enabled);

    UnlockUploadAndSend(uc);
    for (const char* key : kBand) {
        EXPECT_TRUE(toolbar().item(key).enabled) << key;
    }
    EXPECT_TRUE(toolbar().item("send").enabled);
}

TEST_P(ActionProgressTest, TheProgressOfAnActionLocksTooAndTheRestoreGivesBack) {
    ShowActionProgress(uc, "progressCalibrating");
    EXPECT_FALSE(toolbar().item("uploadAll").enabled);
    EXPECT_TRUE(uc.form().control("fraProgress").visible());
    toolbar().setEnabled("stop", true);
    toolbar().setEnabled("settings", false);
    EndActionProgress(uc);
    RestoreToolbar(uc);
    EXPECT_TRUE(toolbar().item("uploadAll").enabled);
    EXPECT_TRUE(toolbar().item("settings").enabled);
    EXPECT_FALSE(toolbar().item("stop").enabled);
    EXPECT_FALSE(uc.form().control("fraProgress").visible());
}

TEST_P(ActionProgressTest, TheRestoreKeepsTheRolesAndTheModesLimits) {
    uc.tools().ActorRole = "observer";
    LockToolbar(uc);
    UnlockUploadAndSend(uc);
    EXPECT_FALSE(toolbar().item("send").enabled);
    EXPECT_TRUE(toolbar().item("uploadAll").enabled);

    // Offline nothing reads the device.
    uc.tools().ActorRole = "maintenance";
    uc.tools().OnlineConf = false;
    UnlockUploadAndSend(uc);
    for (const char* key : kBand) {
        EXPECT_FALSE(toolbar().item(key).enabled) << key;
    }
    EXPECT_TRUE(toolbar().item("send").enabled);
}

INSTANTIATE_TEST_SUITE_P(EachFamily, ActionProgressTest,
                         ::testing::Values("KT520_7", "KT540_1.0", "PL500_2"),
                         [](const ::testing::TestParamInfo<const char*>& info) {
                             std::string name = info.param;
                             for (char& c : name) {
                                 if (c == '.') {
                                     c = '_';
                                 }
                             }
                             return name;
                         });

}  // namespace
}  // namespace kt500::calibration
