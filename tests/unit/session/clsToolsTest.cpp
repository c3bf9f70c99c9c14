#include "session/clsTools.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace kt500::session {
namespace {

TEST(clsToolsDeviceParameterXml, VariantsShareThePlainModelsDocumentsAndUnknownKeysKeepTheName) {
    // The Q variant uses the plain model's documents; PT keys drop their "_".
    // Applied in turn: a key without a document keeps the former name.
    clsTools tools;
    for (const auto& [key, file] : {std::pair{"KTQ500_5", ""},  // a revision 5 Q key has none
                                    {"KTQ500_7", "GUIInit_KT520_7.xml"},
                                    {"KTQ500_PT_6", "GUIInit_KT520PT_6.xml"},
                                    {"KT520_PT_4", "GUIInit_KT520PT_4.xml"},
                                    {"KT540_1.0", "GUIInit_KT540_1.0.xml"},
                                    {"KT520_6", "GUIInit_KT520_6.xml"},
                                    {"KTQ500_4", "GUIInit_KT520_6.xml"},
                                    {"kt520_7", "GUIInit_KT520_6.xml"},  // keys are case-sensitive
                                    {"", "GUIInit_KT520_6.xml"}}) {
        tools.setDeviceParameterXml(key);
        EXPECT_EQ(tools.DeviceParameterXml(), file) << key;
    }
}

TEST(clsToolsOldValues, FamiliesShareOneSlotPerKnownPage) {
    clsTools tools;
    tools.CurrentFrame = "HAoperationUnit";
    tools.set_old_values("snapshot");
    tools.CurrentFrame = "PAoperationUnit";
    EXPECT_EQ(tools.old_values(), "snapshot");
    tools.CurrentFrame = "HAhartConfiguration";  // the last of the 23 pages
    tools.set_old_values("last");
    EXPECT_EQ(tools.old_values(), "last");
    for (const char* dropped : {"HAmonitoringVariables", "HA"}) {  // "HA": an empty key
        tools.CurrentFrame = dropped;
        EXPECT_NO_THROW(tools.set_old_values("dropped"));
        EXPECT_EQ(tools.old_values(), "") << dropped;
    }
    for (const char* tooShort : {"H", ""}) {
        tools.CurrentFrame = tooShort;
        EXPECT_THROW(tools.set_old_values("x"), std::out_of_range) << tooShort;
    }
}

TEST(clsToolsValuesOk, OnlineStoresTheFirstSeventeenPagesOfflineAnswersTrue) {
    clsTools tools;
    tools.OnlineConf = true;
    EXPECT_FALSE(tools.ValuesOk("general", "1"));      // 18th page of the snapshot list
    EXPECT_TRUE(tools.ValuesOk("factoryReset", "1"));  // 17th
    EXPECT_TRUE(tools.ValuesOk("factoryReset", ""));
    EXPECT_FALSE(tools.ValuesOk("operationUnit", ""));  // nothing stored yet
    tools.OnlineConf = false;
    EXPECT_TRUE(tools.ValuesOk("noSuchPage", ""));
    EXPECT_TRUE(tools.ValuesOk("alertSettings", "0"));  // offline still stores
    tools.OnlineConf = true;
    EXPECT_FALSE(tools.ValuesOk("alertSettings", ""));
    tools.ValuesOk("alertSettings", "True");
    EXPECT_THROW(tools.ValuesOk("alertSettings", "yes"), std::invalid_argument);
    EXPECT_TRUE(tools.ValuesOk("alertSettings", ""));  // a failed conversion stores nothing
}

TEST(clsToolsCommunicationSign, OfflineIsDarkButRemembers) {
    clsTools tools;
    tools.OnlineConf = false;
    EXPECT_FALSE(tools.CommunicationSign("read", "1"));
    tools.OnlineConf = true;
    EXPECT_TRUE(tools.CommunicationSign("read", ""));
    EXPECT_FALSE(tools.CommunicationSign("write", ""));
    EXPECT_FALSE(tools.CommunicationSign("upload", "1"));  // an unknown action stores nothing
    EXPECT_FALSE(tools.CommunicationSign("upload", ""));
}

TEST(clsToolsBoolean, ConvertsLikeTheSystem) {
    EXPECT_TRUE(ToBoolean("TRUE"));
    EXPECT_FALSE(ToBoolean("false"));
    EXPECT_TRUE(ToBoolean(" -2 "));
    for (const char* bad : {"abc", " ", "1x"}) {
        EXPECT_THROW(ToBoolean(bad), std::invalid_argument) << bad;
    }
}

}  // namespace
}  // namespace kt500::session
