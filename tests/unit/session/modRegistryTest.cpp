#include "session/QtSettingsStore.h"
#include "session/modRegistry.h"
#include "support/MemorySettings.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

namespace kt500::session {
namespace {

using testing::MemoryStore;
using testing::RecordingOutput;

class modRegistryTest : public ::testing::Test {
protected:
    MemoryStore store;
    RecordingOutput output;
    modRegistry registry{store, output};
};

TEST_F(modRegistryTest, MissingOrEmptyValueIsWrittenBackWithItsDefault) {
    store.put("File Paths", "Install Path", "");
    store.put("File Paths", "Xml Datafile Path", "/data/");
    EXPECT_EQ(registry.ReadSetting("File Paths", "Xml Schema Path", "/opt/schemas/"),
              "/opt/schemas/");
    EXPECT_EQ(registry.ReadSetting("File Paths", "Install Path", "/inst/"), "/inst/");
    EXPECT_EQ(store.get("File Paths", "Install Path"), "/inst/");
    EXPECT_EQ(registry.ReadSetting("File Paths", "Xml Datafile Path", "/x/"), "/data/");
    EXPECT_EQ(store.writes, 2);
    EXPECT_TRUE(output.lines.empty());  // reads never log their failure
}

TEST_F(modRegistryTest, FailedWriteIsLoggedAndTheDefaultStands) {
    store.readOnly = true;
    EXPECT_EQ(registry.ReadSetting("File Paths", "Install Path", "/inst/"), "/inst/");
    ASSERT_EQ(output.lines.size(), 1U);
    EXPECT_EQ(output.lines[0],
              "CreateRegEntry - Error Creating Registry Key Entry: "
              "Key=Software\\Ravik Automation\\KT500 DTM\\File Paths\\Install Path DLL Returned=5");
}

TEST_F(modRegistryTest, DebugLevelRules) {
    // stored value, level read, whether "0" is written back
    const struct {
        const char* stored;
        int level;
        bool reset;
    } cases[] = {{"<missing>", 0, true}, {"", 0, true},   {"abc", 0, true},
                 {"3", 3, false},        {"7", 7, false},  // level 6 and above simply show nothing
                 {"99999", 0, true}};                      // beyond a 16-bit level
    for (const auto& c : cases) {
        MemoryStore fresh;
        if (std::string(c.stored) != "<missing>") {
            fresh.put("Debug", "Debug Level", c.stored);
        }
        EXPECT_EQ(modRegistry(fresh, output).ReadDebugLevel(), c.level) << c.stored;
        EXPECT_EQ(fresh.writes, c.reset ? 1 : 0) << c.stored;
        EXPECT_EQ(fresh.get("Debug", "Debug Level"), c.reset ? "0" : c.stored);
    }
}

TEST_F(modRegistryTest, ReadRoutineCutsAtZeroAndAt255) {
    registry.m_strKeyPath = std::string(modRegistry::KeyRoot) + "File Paths";
    store.put("File Paths", "A", std::string("abc\0def", 7));
    store.put("File Paths", "B", std::string(300, 'x'));
    std::string value = "unchanged";
    EXPECT_TRUE(registry.GetAppRegValue("A", RegString, value, true, false));
    EXPECT_EQ(value, "abc");
    EXPECT_TRUE(registry.GetAppRegValue("B", RegString, value, true, false));
    EXPECT_EQ(value.size(), 255U);
    value = "unchanged";
    EXPECT_FALSE(registry.GetAppRegValue("C", RegString, value, true, false));
    EXPECT_EQ(value, "unchanged");
    store.openFails = true;
    EXPECT_FALSE(registry.GetAppRegValue("A", RegString, value, true, false));
    // Both failures are logged, the read and the open.
    EXPECT_EQ(output.lines.size(), 2U);
}

TEST(QtSettingsStoreTest, WritesReadBackThroughIniFilesAndAnUnwritableStoreRunsOnDefaults) {
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    RecordingOutput output;
    for (int pass = 0; pass < 2; ++pass) {  // the second store reads what the first wrote
        QtSettingsStore store(dir.filePath("machine.conf"), dir.filePath("user.conf"));
        EXPECT_EQ(modRegistry(store, output)
                      .ReadSetting("File Paths", "Install Path", pass == 0 ? "/inst/" : "/other/"),
                  "/inst/");
    }
    EXPECT_TRUE(output.lines.empty());

    QtSettingsStore unwritable("/proc/kt500-no-such/machine.conf", "/proc/kt500-no-such/user.conf");
    EXPECT_EQ(modRegistry(unwritable, output).ReadSetting("File Paths", "Install Path", "/inst/"),
              "/inst/");
    EXPECT_EQ(output.lines.size(), 1U);
}

}  // namespace
}  // namespace kt500::session
