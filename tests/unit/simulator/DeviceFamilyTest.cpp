// The device families as data. Run with KT500_REGENERATE_DEVICE_FILES=1 to rewrite the GUIInit and
// example files from the sources after a change of a source.
#include "session/clsTools.h"
#include "simulator/DeviceCatalogue.h"
#include "unit/simulator/SimulatedSession.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <set>

namespace kt500::simulator::testing {
namespace {

const std::filesystem::path kShare(KT500_SHARE_DIR);

// The GUIInit schema, which has no target namespace, as the control loads it.
const xml::SchemaCollection& guiInitSchema() {
    static const xml::SchemaCollection schemas = [] {
        xml::SchemaCollection collection;
        EXPECT_EQ(collection.add("", kShare / "schemas" / "KT500GUIInitSchema.xsd"), "");
        return collection;
    }();
    return schemas;
}

std::vector<std::string> attributes(const std::vector<xml::Node>& nodes, const char* name) {
    std::vector<std::string> values;
    for (const xml::Node& node : nodes) {
        values.push_back(node.attribute(name));
    }
    return values;
}

std::set<std::string> nameSet(const std::vector<xml::Node>& nodes) {
    const std::vector<std::string> names = attributes(nodes, "name");
    return {names.begin(), names.end()};
}

// The parameter document of a key, reparsed against the schemas.
xml::Document composed(const std::string& key) {
    const DeviceModel* model = DeviceCatalogue::find(key);
    EXPECT_NE(model, nullptr) << key;
    static const xml::SchemaCollection schemas = DeviceSchemas();
    const xml::LoadResult loaded =
        xml::Document::parse(Builder().build(*model).toXml(), {.schemas = &schemas});
    EXPECT_TRUE(loaded.ok()) << key << ": " << loaded.message();
    return loaded.ok() ? loaded.document->clone() : xml::Document::create("dtm");
}

struct Contents {
    std::set<std::string> parameters;
    std::set<std::string> groups;
    std::map<std::string, std::string> access;
    std::map<std::string, std::string> units;
    std::set<std::string> statuses;
};

Contents contentsOf(const std::string& key) {
    const xml::Document document = composed(key);
    const xml::XPath query(document, DeviceNamespaces());
    Contents c;
    for (const xml::Node& p : query.select("data:persistentData/data:parameters/data:parameter")) {
        c.parameters.insert(p.attribute("name"));
        c.access[p.attribute("name")] = p.attribute("access");
        c.units[p.attribute("name")] = p.attribute("unit");
    }
    c.groups = nameSet(query.select("data:requestGroups/data:requestGroup"));
    c.statuses = nameSet(query.select("data:deviceStatus/data:statusGroup/data:status"));
    return c;
}

// A generated file under share/ is what the sources give (or is rewritten).
void expectCurrent(const xml::Document& generated, const std::filesystem::path& file) {
    const std::string text = generated.toXml();
    if (std::getenv("KT500_REGENERATE_DEVICE_FILES") != nullptr) {
        ASSERT_EQ(generated.save(file), "");
    }
    std::ifstream in(file, std::ios::binary);
    const std::string committed((std::istreambuf_iterator<char>(in)),
                                std::istreambuf_iterator<char>());
    EXPECT_EQ(committed, text) << file << " is not what its family source gives; run the "
                               << "tests with KT500_REGENERATE_DEVICE_FILES=1";
}

// Frame tags of the form files: "HAoperationUnit", and the bare common pages.
std::set<std::string> frameTags() {
    std::set<std::string> tags;
    for (const char* file : {"common.xml", "kt520.xml", "kt540.xml", "pl500.xml"}) {
        const xml::LoadResult form = xml::Document::load(kShare / "forms" / file);
        EXPECT_TRUE(form.ok()) << file;
        const xml::XPath query(*form.document, xml::Namespaces::fromSelection(
                                                   "xmlns:f='x-schema:KT500FormSchema.xml'"));
        const auto frames = attributes(query.select("//f:control[@kind='fra']"), "tag");
        tags.insert(frames.begin(), frames.end());
    }
    return tags;
}

TEST(DeviceFamilyTest, EveryCatalogueKeyComposesADocumentThatHoldsTogether) {
    for (const DeviceModel& model : DeviceCatalogue::models()) {
        SCOPED_TRACE(model.key);
        const xml::Document document = composed(model.key);
        const xml::XPath query(document, DeviceNamespaces());
        const auto parameters = query.select("data:persistentData/data:parameters/data:parameter");
        std::set<std::string> names;
        for (const xml::Node& p : parameters) {
            EXPECT_TRUE(names.insert(p.attribute("name")).second) << p.attribute("name");
            EXPECT_EQ(p.attribute("value").find('{'), std::string::npos) << p.attribute("name");
        }
        std::set<std::string> used;
        std::set<std::string> groups;
        for (const xml::Node& group : query.select("data:requestGroups/data:requestGroup")) {
            EXPECT_TRUE(groups.insert(group.attribute("name")).second);
            EXPECT_GE(std::stoi(group.attribute("requestCount")), 1);
            for (const std::string& name :
                 attributes(query.select("data:includedParam", group), "name")) {
                EXPECT_EQ(names.count(name), 1U) << group.attribute("name") << " " << name;
                used.insert(name);
            }
        }
        EXPECT_EQ(used, names) << "every parameter travels in some group";
        for (const xml::Node& mapped : query.select("data:mappedParams/data:mappedParam")) {
            EXPECT_EQ(names.count(mapped.attribute("name")), 1U) << mapped.attribute("name");
            EXPECT_FALSE(query.select("data:mapping", mapped).empty()) << mapped.attribute("name");
        }
        // The groups that the control itself names for this family.
        for (const char* group :
             {"operationUnit", "positionerInformation", "monitoringVariables", "eventLog",
              "automaticTravelCalibration", "actuatorPressure", "pcbTemperature"}) {
            EXPECT_EQ(groups.count(group), 1U) << group;
        }
    }
}

// Each name is a parameter, group or status of the key's document; a
// leading '-' says the key must not have it.
TEST(DeviceFamilyTest, FamiliesRevisionsAndVariantsCarryTheNamesTheirPagesAndCommandsUse) {
    const std::map<std::string, std::string> names = {
        {"KT520_PT_7",
         "hartTag description deviceDate deviceDay deviceMonth message splitRangeLow "
         "splitRangeHigh actuatorFullStrokesLimit actuatorReversalsLimit valveFullStrokesLimit "
         "valveReversalsLimit flowVal00 flowVal10 -flowVal11 characterizationControl swRevision "
         "travelSetpoint useFixedAlertLimits actuatorType supplyPressure kt500SerialNumber "
         "deviceId travelDeviationTrendLimit loadFactorTrendLimit loadFactorVal19 deviationVal00 "
         "travelVal09 eventLogEvent00 eventLogTime19 stepTestTime49 stepTestTravel00 "
         "hysteresisTestSetpoint49 pressureSpan measuredTemperature stepResponseTest "
         "hysteresisTest testSettings stepTestValues hysteresisTestValues trimLoopCurrentSpan "
         "trimLoopCurrentZero manualPrestageTrim pressureSensorCalibration3 "
         "enterFixedAnalogChannelMode trimAnalogChannelGain exitFixedAnalogChannelMode "
         "travelSetpointAndActualTravel inputSignal resetDiagnostics loadFactor travelDeviation "
         "travelVsTime"},
        {"KT540_1.0",
         "targetMode flowVal20 inputValueRangeHigh outputValueUnit rcasInLimit "
         "travelDeviationAlarmLimit loadFactorWarningLimit lastSpOrTime49 lastPosition00 "
         "eventLogCount19 setpoint outputValue positioningValue testValues valveMetersAndLimits "
         "actuatorMetersAndLimits positioningValueAndValveTravel factoryReset "
         "pressureSensorCalibrationZero pressureSensorCalibrationSpan"},
        {"PL500_2",
         "deviceSerialNumber valveTestStrokeSize valveTestVal00 valveTestPos49 "
         "pneumaticsTestPos00 leakageMeasurementTime leakageStabilizingTime "
         "breakawayPressureVal19 leakageSignalVal00 loadFactorPLAlarmLimitHigh "
         "limitSupplyPressureAlarmLow pressureSetpointLowLimit valveTestIntervalD "
         "pneumaticsTimerD targetMode actualTravel monitoringSamplingRate counters"},
        {"KT520_7", "actuatorStrokesSinceReset resetOnlineAlerts statusDeviationAlert"},
        {"KT520_6", "-actuatorStrokesSinceReset -resetOnlineAlerts -statusDeviationAlert"},
        {"KT520_4", "-valveStyle"},
        {"KTQ500_PT_6", "positionTransmitterCalibration statusPositionTransmitter"},
        {"KTQ500_6", "-positionTransmitterCalibration"},
        {"PL500_1", "-counters"},
    };
    for (const auto& [key, list] : names) {
        const Contents c = contentsOf(key);
        for (std::string name : Words(list)) {
            const bool wanted = name[0] != '-';
            name.erase(0, wanted ? 0 : 1);
            EXPECT_EQ(c.parameters.count(name) + c.groups.count(name) + c.statuses.count(name) > 0,
                      wanted)
                << key << " " << name;
        }
    }
    // Access and unit changes between revisions.
    EXPECT_EQ(contentsOf("KT520_4").access.at("travelSensorMotion") + " " +
                  contentsOf("KT520_6").access.at("travelSensorMotion"),
              "read readWrite");
    const Contents one = contentsOf("PL500_1");
    const Contents two = contentsOf("PL500_2");
    for (const char* name : {"leakageSignalVal00", "valveTestStrokeSize"}) {
        EXPECT_EQ(one.units.at(name) + " " + two.units.at(name), "noUnit %") << name;
    }
}

// The GUIInit file the control loads for each device key that has one.
std::map<std::string, std::string> guiInitFileOfKey() {
    std::map<std::string, std::string> files;
    for (const DeviceModel& model : DeviceCatalogue::models()) {
        session::clsTools tools;
        tools.setDeviceParameterXml(model.key);
        if (!tools.DeviceParameterXml().empty()) {
            files.emplace(model.key, tools.DeviceParameterXml());
        }
    }
    return files;
}

TEST(DeviceFamilyTest, GuiInitFilesAreCurrentValidAndNameKnownPagesAndGroups) {
    std::set<std::string> published;
    for (const char* family : {"KT520", "KT540", "PL500"}) {
        const DeviceFamilySource& source = Builder().familyFor(family);
        for (const GuiInitFile& file : source.guiInitFiles()) {
            published.insert(file.fileName);
            expectCurrent(source.guiInitDocument(file.target), kShare / "guiinit" / file.fileName);
        }
    }
    std::set<std::string> loaded;
    for (const auto& [key, file] : guiInitFileOfKey()) {
        loaded.insert(file);
    }
    EXPECT_EQ(published, loaded) << "a file for each key, and only those the control loads";
    // The schema refuses what the tree and the toolbar cannot use.
    for (const char* bad :
         {"<dtm><treeView><branch name='a' offline='4'/></treeView><uploadGroups/></dtm>",
          "<dtm><treeView/><uploadGroups><uploadGroup name='uploadSome' count='1'>"
          "<requestGroup name='g'/></uploadGroup></uploadGroups></dtm>",
          "<dtm><treeView><branch name='a' offline='1'><node name='a' offline='1'/></branch>"
          "</treeView><uploadGroups/></dtm>"}) {
        EXPECT_FALSE(xml::Document::parse(bad, {.schemas = &guiInitSchema()}).ok()) << bad;
    }

    const std::set<std::string> tags = frameTags();
    const std::map<std::string, std::string> prefixes = {
        {"KT520", "HA"}, {"KTQ500", "HA"}, {"KT540", "PA"}, {"PL500", "PL"}};
    for (const auto& [key, fileName] : guiInitFileOfKey()) {
        SCOPED_TRACE(key + " " + fileName);
        const xml::LoadResult loaded =
            xml::Document::load(kShare / "guiinit" / fileName, {.schemas = &guiInitSchema()});
        ASSERT_TRUE(loaded.ok()) << loaded.message();
        const xml::XPath query(*loaded.document, {});
        const std::string prefix = prefixes.at(key.substr(0, key.find('_')));
        for (std::string page : attributes(query.select("treeView/branch/node"), "name")) {
            // The PROFIBUS positioner's class names the compare page in the
            // singular; the page is the one of the other families.
            if (prefix == "PA" && page == "compareConfiguration") {
                page = "compareConfigurations";
            }
            EXPECT_TRUE(tags.count(prefix + page) != 0 || tags.count(page) != 0) << page;
        }
        const Contents contents = contentsOf(key);
        const auto uploads = query.select("//uploadGroups/uploadGroup");
        EXPECT_EQ(
            attributes(uploads, "name"),
            (std::vector<std::string>{"uploadAll", "uploadIdentification", "uploadConfiguration",
                                      "uploadDiagnostics", "uploadOperation", "uploadAdvanced"}));
        for (const xml::Node& upload : uploads) {
            const auto children = upload.childElements();
            EXPECT_EQ(upload.attribute("count"), std::to_string(children.size()));
            for (const std::string& group : attributes(children, "name")) {
                EXPECT_EQ(contents.groups.count(group), 1U) << group;
            }
        }
        // The status tree reads the same statuses the parameter document has.
        EXPECT_EQ(nameSet(query.select("deviceStatus/statusGroup/status")), contents.statuses);
    }
}

TEST(DeviceFamilyTest, DefaultNodesOpenTheMonitoringPageOnlineAndTheOperationUnitOffline) {
    // Node index (1-based over branches and nodes) that navigation opens first.
    const std::vector<std::tuple<std::string, int>> online = {
        {"GUIInit_KT520_7.xml", 8},    {"GUIInit_KT520_4.xml", 8}, {"GUIInit_KT520PT_5.xml", 8},
        {"GUIInit_KT540_1.0.xml", 13}, {"GUIInit_PL500_1.xml", 8}, {"GUIInit_PL500_2.xml", 9}};
    for (const auto& [file, index] : online) {
        SCOPED_TRACE(file);
        const xml::LoadResult loaded = xml::Document::load(kShare / "guiinit" / file);
        ASSERT_TRUE(loaded.ok());
        for (const bool isOnline : {true, false}) {
            std::vector<std::string> order;
            for (const xml::Node& n : xml::XPath(*loaded.document, {})
                                          .select("treeView/branch | treeView/branch/node")) {
                const std::string o = n.attribute("offline");
                if (o == "1" || (isOnline ? o != "2" : o == "2")) {
                    order.push_back(n.attribute("name"));
                }
            }
            const std::size_t at = static_cast<std::size_t>(isOnline ? index : 2) - 1;
            ASSERT_LT(at, order.size());
            EXPECT_EQ(order[at], isOnline ? "monitoringVariables" : "operationUnit");
        }
    }
}

TEST(DeviceFamilyTest, ExampleDataFilesAreCurrentAndNameParametersOfTheirDevice) {
    for (const char* key : {"KT520_7", "KT520_PT_5", "KT540_1.0", "PL500_1", "PL500_2"}) {
        SCOPED_TRACE(key);
        const DeviceModel& model = *DeviceCatalogue::find(key);
        const std::filesystem::path file = kShare / "examples" / (std::string(key) + ".xml");
        expectCurrent(Builder().familyFor(model.deviceType).dataFile(model), file);
        const xml::LoadResult loaded = xml::Document::load(file);
        ASSERT_TRUE(loaded.ok()) << loaded.message();
        const xml::Node root = loaded.document->root();
        EXPECT_EQ(root.attribute("deviceType"), model.name);
        EXPECT_EQ(root.attribute("revision"), model.revision);
        const Contents contents = contentsOf(key);
        const auto replies = root.childElements("communicationResponse");
        EXPECT_GE(replies.size(), 5U);
        for (const xml::Node& reply : replies) {
            EXPECT_EQ(contents.groups.count(reply.attribute("name")), 1U);
            for (const xml::Node& item : reply.childElements("item")) {
                EXPECT_EQ(contents.parameters.count(item.attribute("name")), 1U)
                    << item.attribute("name");
                EXPECT_EQ(item.childElements().size(), 1U);
            }
        }
    }
}

}  // namespace
}  // namespace kt500::simulator::testing
