#include "data/RoleRules.h"

#include <gtest/gtest.h>

#include <string>

namespace kt500::data {
namespace {

// The whole table: what each role may do, with the mode aside.
TEST(RoleRulesTest, EachRoleMayWhatTheTableSays) {
    const struct {
        Right right;
        bool observer;
        bool operator_;
    } table[] = {
        {Right::Send, false, true},
        {Right::OfflineConfiguration, false, true},
        {Right::Upload, true, true},
        {Right::Settings, true, true},
        {Right::Monitoring, true, true},
        {Right::Test, false, true},
        {Right::PLTest, false, false},
        {Right::Calibration, false, false},
        {Right::ResetDiagnostics, false, false},
        {Right::FactoryReset, false, false},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(static_cast<int>(row.right));
        EXPECT_EQ(RoleAllows("observer", row.right), row.observer);
        EXPECT_EQ(RoleAllows("Observer", row.right), row.observer);
        EXPECT_EQ(RoleAllows("operator", row.right), row.operator_);
        EXPECT_EQ(RoleAllows("OPERATOR", row.right), row.operator_);
        for (const char* role :
             {"maintenance", "planningEngineer", "administrator", "oemService", ""}) {
            EXPECT_TRUE(RoleAllows(role, row.right)) << role;
        }
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

TEST(RoleRulesTest, EnableCommandsSetsEveryElementAsTheRuleAllows) {
    form::Form form;
    auto add = [&](const char* name, int index) -> form::Control& {
        return form.add(form::ControlKind::CommandButton, name, index);
    };
    form::Control& reset0 = add("cmdResetDiagnostics", 0);
    form::Control& reset3 = add("cmdResetDiagnostics", 3);
    form::Control& start = add("cmdStartTest", 0);
    form::Control& plStart = add("cmdPLStartTest", 0);
    form::Control& plSettings = add("cmdPLSetTestSettings", 0);
    session::clsTools tools;
    tools.OnlineConf = true;
    tools.ActorRole = "operator";
    for (const Right right : {Right::ResetDiagnostics, Right::Test, Right::PLTest}) {
        EnableCommands(form, tools, right, true);
    }
    EXPECT_FALSE(reset0.enabled());
    EXPECT_FALSE(reset3.enabled());
    // An operator runs the positioners' tests, not the PL500's.
    EXPECT_TRUE(start.enabled());
    EXPECT_FALSE(plStart.enabled());
    EXPECT_FALSE(plSettings.enabled());
    tools.ActorRole = "maintenance";
    for (const Right right : {Right::ResetDiagnostics, Right::Test, Right::PLTest}) {
        EnableCommands(form, tools, right, true);
    }
    EXPECT_TRUE(reset0.enabled());
    EXPECT_TRUE(reset3.enabled());
    EXPECT_TRUE(start.enabled());
    EXPECT_TRUE(plStart.enabled());
    EXPECT_TRUE(plSettings.enabled());
    // Not wanted: off whatever the role.
    EnableCommands(form, tools, Right::Test, false);
    EXPECT_FALSE(start.enabled());
}

}  // namespace
}  // namespace kt500::data
