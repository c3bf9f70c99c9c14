#include "data/RoleRules.h"

#include <gtest/gtest.h>

#include <string>

namespace kt500::data {
namespace {

// Role words compare without regard to case; roles without limits (and an
// empty role) may everything.
TEST(RoleRulesTest, EachRoleMayWhatTheTableSays) {
    const Right rights[] = {Right::Send,       Right::OfflineConfiguration, Right::Upload,
                            Right::Settings,   Right::Monitoring,           Right::Test,
                            Right::PLTest,     Right::Calibration,          Right::ResetDiagnostics,
                            Right::FactoryReset};
    for (const auto& [role, allowed] :
         {std::pair{"observer", "0011100000"}, {"Observer", "0011100000"},
          {"operator", "1111110000"}, {"OPERATOR", "1111110000"}, {"maintenance", "1111111111"},
          {"planningEngineer", "1111111111"}, {"administrator", "1111111111"},
          {"oemService", "1111111111"}, {"", "1111111111"}}) {
        std::string got;
        for (const Right right : rights) {
            got += RoleAllows(role, right) ? '1' : '0';
        }
        EXPECT_EQ(got, allowed) << role;
    }
}

TEST(RoleRulesTest, ReadsTestsAndTheMonitorNeedTheDeviceAndTheDataSetItsAbsence) {
    session::clsTools tools;
    tools.ActorRole = "administrator";
    for (const bool online : {true, false}) {
        SCOPED_TRACE(online);
        tools.OnlineConf = online;
        EXPECT_EQ(Allows(tools, Right::Upload), online);
        EXPECT_EQ(Allows(tools, Right::Test), online);
        EXPECT_EQ(Allows(tools, Right::PLTest), online);
        EXPECT_EQ(Allows(tools, Right::Monitoring), online);
        EXPECT_EQ(Allows(tools, Right::OfflineConfiguration), !online);
        EXPECT_TRUE(Allows(tools, Right::Send));
        EXPECT_TRUE(Allows(tools, Right::Settings));
        EXPECT_TRUE(Allows(tools, Right::Calibration));
    }
    // The role's rule holds in either mode.
    tools.ActorRole = "observer";
    EXPECT_FALSE(Allows(tools, Right::OfflineConfiguration));
    EXPECT_FALSE(Allows(tools, Right::Send));
    EXPECT_TRUE(Allows(tools, Right::Settings));
}

}  // namespace
}  // namespace kt500::data
