#include "data/HeldValues.h"

#include <gtest/gtest.h>

namespace kt500::data {
namespace {

// The device's own values: what it reported, then what it took in a write;
// a write it refused leaves the reported value.
TEST(HeldValuesTest, AWriteBecomesTheDevicesValueOnlyWhenTheDeviceTakesIt) {
    HeldValues held;
    EXPECT_EQ(held.find("hartTag"), nullptr);
    held.hold("hartTag", "PV-101", "noUnit");
    held.hold("supplyPressure", "6.0", "barG");

    held.sent("operationUnit", {{"hartTag", {"NEWTAG", "noUnit"}}});
    ASSERT_NE(held.find("hartTag"), nullptr);
    EXPECT_EQ(held.find("hartTag")->value, "PV-101");  // not before the reply
    held.written("operationUnit");
    EXPECT_EQ(held.find("hartTag")->value, "NEWTAG");

    held.sent("assemblyRelatedConfiguration", {{"supplyPressure", {"5.5", "barG"}}});
    held.notWritten("assemblyRelatedConfiguration");
    held.written("assemblyRelatedConfiguration");  // a late reply finds nothing pending
    EXPECT_EQ(held.find("supplyPressure")->value, "6.0");
    EXPECT_EQ(held.find("supplyPressure")->unit, "barG");
}

}  // namespace
}  // namespace kt500::data
