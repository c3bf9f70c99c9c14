// The device families as data: every catalogue model composes a parameter
// document that validates and holds together, the GUIInit files and the
// example data files under share/ are what the family sources give, and the
// revision and variant differences land where the families need them.
//
// Run with KT500_REGENERATE_DEVICE_FILES=1 to rewrite the GUIInit and
// example files from the sources after a change of a source.
#include "simulator/DeviceCatalogue.h"
#include "simulator/DeviceFamilySource.h"
#include "xml/Document.h"
#include "xml/SchemaCollection.h"
#include "xml/XPath.h"

#include <gtest/gtest.h>
#include <libxml/xmlschemas.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <set>

namespace kt500::simulator {
namespace {

const std::filesystem::path kShare(KT500_SHARE_DIR);
constexpr const char* kSelection =
    "xmlns:data='x-schema:QDLDatafileSchema.xml' "
    "xmlns:typeInfo='x-schema:QDLDeviceTypeInfoSchema.xml'";

const ParameterDocumentBuilder& builder() {
    static const ParameterDocumentBuilder instance(kShare / "devices");
    return instance;
}

const xml::SchemaCollection& parameterSchemas() {
    static const xml::SchemaCollection schemas = [] {
        xml::SchemaCollection collection;
        EXPECT_EQ(collection.add("x-schema:QDLDeviceTypeInfoSchema.xml",
                                 kShare / "schemas" / "QDLDeviceTypeInfoSchema.xml"),
                  "");
        EXPECT_EQ(collection.add("x-schema:QDLDatafileSchema.xml",
                                 kShare / "schemas" / "QDLDatafileSchema.xml"),
                  "");
        return collection;
    }();
    return schemas;
}

// The GUIInit schema has no target namespace, which a schema collection
// (built from namespace imports) cannot hold: it is compiled here from its
// bytes and used directly. Returns the validation errors, one a line.
std::string guiInitErrors(const xml::Document& document) {
    std::ifstream in(kShare / "schemas" / "KT500GUIInitSchema.xsd", std::ios::binary);
    const std::string xsd((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::string errors;
    const auto collect = [](void* out, xmlErrorPtr error) {
        *static_cast<std::string*>(out) += std::string(error->message) + "";
    };
    xmlSchemaParserCtxtPtr parser =
        xmlSchemaNewMemParserCtxt(xsd.data(), static_cast<int>(xsd.size()));
    xmlSchemaSetParserStructuredErrors(parser, collect, &errors);
    xmlSchemaPtr schema = xmlSchemaParse(parser);
    xmlSchemaFreeParserCtxt(parser);
    if (schema == nullptr) {
        return "the schema does not compile: " + errors;
    }
    xmlSchemaValidCtxtPtr validation = xmlSchemaNewValidCtxt(schema);
    xmlSchemaSetValidStructuredErrors(validation, collect, &errors);
    if (xmlSchemaValidateDoc(validation, document.raw()) != 0 && errors.empty()) {
        errors = "invalid";
    }
    xmlSchemaFreeValidCtxt(validation);
    xmlSchemaFree(schema);
    return errors;
}

std::vector<std::string> attributes(const std::vector<xml::Node>& nodes, const char* name) {
    std::vector<std::string> values;
    for (const xml::Node& node : nodes) {
        values.push_back(node.attribute(name));
    }
    return values;
}

// The parameter document of a key, reparsed against the schemas.
xml::Document composed(const std::string& key) {
    const DeviceModel* model = DeviceCatalogue::find(key);
    EXPECT_NE(model, nullptr) << key;
    const xml::LoadResult loaded =
        xml::Document::parse(builder().build(*model).toXml(), {.schemas = &parameterSchemas()});
    EXPECT_TRUE(loaded.ok()) << key << ": " << loaded.message();
    return loaded.ok() ? loaded.document->clone() : xml::Document::create("dtm");
}

struct Contents {
    std::set<std::string> parameters;
    std::set<std::string> groups;
    std::map<std::string, std::string> access;
    std::set<std::string> statuses;
};

Contents contentsOf(const std::string& key) {
    const xml::Document document = composed(key);
    const xml::XPath query(document, xml::Namespaces::fromSelection(kSelection));
    Contents c;
    for (const xml::Node& p : query.select("data:persistentData/data:parameters/data:parameter")) {
        c.parameters.insert(p.attribute("name"));
        c.access[p.attribute("name")] = p.attribute("access");
    }
    for (const std::string& g :
         attributes(query.select("data:requestGroups/data:requestGroup"), "name")) {
        c.groups.insert(g);
    }
    for (const std::string& s :
         attributes(query.select("data:deviceStatus/data:statusGroup/data:status"), "name")) {
        c.statuses.insert(s);
    }
    return c;
}

// Keeps a generated file under share/ in step with the sources: rewrites it
// when asked to, and otherwise says whether the committed text is current.
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
        for (const std::string& tag : attributes(query.select("//f:control[@kind='fra']"), "tag")) {
            tags.insert(tag);
        }
    }
    return tags;
}

TEST(DeviceFamilyTest, EveryCatalogueKeyComposesADocumentThatHoldsTogether) {
    for (const DeviceModel& model : DeviceCatalogue::models()) {
        SCOPED_TRACE(model.key);
        const xml::Document document = composed(model.key);
        const xml::XPath query(document, xml::Namespaces::fromSelection(kSelection));
        const xml::Node published = query.selectSingle("typeInfo:device/typeInfo:publishedInfo");
        EXPECT_EQ(published.attribute("deviceTypeId"), model.deviceTypeId);
        EXPECT_EQ(published.attribute("name"), model.name);
        EXPECT_EQ(published.attribute("version"), model.revision);

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

TEST(DeviceFamilyTest, FamiliesCarryTheNamesTheirPagesAndCommandsUse) {
    const Contents kt520 = contentsOf("KT520_PT_7");
    for (const char* name : {"hartTag",
                             "description",
                             "deviceDate",
                             "deviceDay",
                             "deviceMonth",
                             "message",
                             "splitRangeLow",
                             "splitRangeHigh",
                             "actuatorFullStrokesLimit",
                             "actuatorReversalsLimit",
                             "valveFullStrokesLimit",
                             "valveReversalsLimit",
                             "flowVal00",
                             "flowVal10",
                             "characterizationControl",
                             "swRevision",
                             "travelSetpoint",
                             "useFixedAlertLimits",
                             "actuatorType",
                             "supplyPressure",
                             "kt500SerialNumber",
                             "deviceId",
                             "travelDeviationTrendLimit",
                             "loadFactorTrendLimit",
                             "loadFactorVal19",
                             "deviationVal00",
                             "travelVal09",
                             "eventLogEvent00",
                             "eventLogTime19",
                             "stepTestTime49",
                             "stepTestTravel00",
                             "hysteresisTestSetpoint49",
                             "pressureSpan",
                             "measuredTemperature"}) {
        EXPECT_EQ(kt520.parameters.count(name), 1U) << name;
    }
    EXPECT_EQ(kt520.parameters.count("flowVal11"), 0U);
    for (const char* group :
         {"stepResponseTest", "hysteresisTest", "testSettings", "stepTestValues",
          "hysteresisTestValues", "trimLoopCurrentSpan", "trimLoopCurrentZero",
          "manualPrestageTrim", "pressureSensorCalibration3", "enterFixedAnalogChannelMode",
          "trimAnalogChannelGain", "exitFixedAnalogChannelMode", "travelSetpointAndActualTravel",
          "inputSignal", "resetDiagnostics", "loadFactor", "travelDeviation", "travelVsTime"}) {
        EXPECT_EQ(kt520.groups.count(group), 1U) << group;
    }

    const Contents kt540 = contentsOf("KT540_1.0");
    for (const char* name :
         {"targetMode", "flowVal20", "inputValueRangeHigh", "outputValueUnit", "rcasInLimit",
          "travelDeviationAlarmLimit", "loadFactorWarningLimit", "lastSpOrTime49", "lastPosition00",
          "eventLogCount19", "setpoint", "outputValue", "positioningValue"}) {
        EXPECT_EQ(kt540.parameters.count(name), 1U) << name;
    }
    for (const char* group : {"testValues", "valveMetersAndLimits", "actuatorMetersAndLimits",
                              "positioningValueAndValveTravel", "factoryReset",
                              "pressureSensorCalibrationZero", "pressureSensorCalibrationSpan"}) {
        EXPECT_EQ(kt540.groups.count(group), 1U) << group;
    }

    const Contents pl500 = contentsOf("PL500_2");
    for (const char* name :
         {"deviceSerialNumber", "valveTestStrokeSize", "valveTestVal00", "valveTestPos49",
          "pneumaticsTestPos00", "leakageMeasurementTime", "leakageStabilizingTime",
          "breakawayPressureVal19", "leakageSignalVal00", "loadFactorPLAlarmLimitHigh",
          "limitSupplyPressureAlarmLow", "pressureSetpointLowLimit", "valveTestIntervalD",
          "pneumaticsTimerD", "targetMode", "actualTravel", "monitoringSamplingRate"}) {
        EXPECT_EQ(pl500.parameters.count(name), 1U) << name;
    }
}

TEST(DeviceFamilyTest, RevisionAndVariantDifferencesLiveInTheData) {
    const Contents seven = contentsOf("KT520_7");
    const Contents six = contentsOf("KT520_6");
    const Contents four = contentsOf("KT520_4");
    // Revision 7: counters since reset, the reset of the online alerts and
    // the deviation alert that "swRevision" and "travelSetpoint" govern.
    EXPECT_EQ(seven.parameters.count("actuatorStrokesSinceReset"), 1U);
    EXPECT_EQ(six.parameters.count("actuatorStrokesSinceReset"), 0U);
    EXPECT_EQ(seven.groups.count("resetOnlineAlerts"), 1U);
    EXPECT_EQ(six.groups.count("resetOnlineAlerts"), 0U);
    EXPECT_EQ(seven.statuses.count("statusDeviationAlert"), 1U);
    EXPECT_EQ(six.statuses.count("statusDeviationAlert"), 0U);
    // Revision 4: no valve style, the sensor motion read only.
    EXPECT_EQ(four.parameters.count("valveStyle"), 0U);
    EXPECT_EQ(four.access.at("travelSensorMotion"), "read");
    EXPECT_EQ(six.access.at("travelSensorMotion"), "readWrite");
    // The position transmitter variant and its calibration.
    const Contents pt = contentsOf("KTQ500_PT_6");
    EXPECT_EQ(pt.groups.count("positionTransmitterCalibration"), 1U);
    EXPECT_EQ(pt.statuses.count("statusPositionTransmitter"), 1U);
    EXPECT_EQ(contentsOf("KTQ500_6").groups.count("positionTransmitterCalibration"), 0U);
    // The PL500: revision 2 adds the counters and the trend limits.
    const Contents one = contentsOf("PL500_1");
    const Contents two = contentsOf("PL500_2");
    EXPECT_EQ(one.groups.count("counters"), 0U);
    EXPECT_EQ(two.groups.count("counters"), 1U);
    const xml::Document doc1 = composed("PL500_1");
    const xml::Document doc2 = composed("PL500_2");
    const auto unitOf = [](const xml::Document& d, const char* name) {
        return xml::XPath(d, xml::Namespaces::fromSelection(kSelection))
            .selectSingle(std::string("//data:parameter[@name='") + name + "']")
            .attribute("unit");
    };
    EXPECT_EQ(unitOf(doc1, "leakageSignalVal00"), "noUnit");
    EXPECT_EQ(unitOf(doc2, "leakageSignalVal00"), "%");
    EXPECT_EQ(unitOf(doc1, "valveTestStrokeSize"), "noUnit");
    EXPECT_EQ(unitOf(doc2, "valveTestStrokeSize"), "%");
}

// The GUIInit file of each device key, as the session's device key names it.
const std::map<std::string, std::string>& guiInitFileOfKey() {
    static const std::map<std::string, std::string> files = {
        {"KT520_7", "GUIInit_KT520_7.xml"},      {"KTQ500_7", "GUIInit_KT520_7.xml"},
        {"KT520_6", "GUIInit_KT520_6.xml"},      {"KTQ500_6", "GUIInit_KT520_6.xml"},
        {"KT520_5", "GUIInit_KT520_5.xml"},      {"KT520_4", "GUIInit_KT520_4.xml"},
        {"KT520_PT_7", "GUIInit_KT520PT_7.xml"}, {"KTQ500_PT_7", "GUIInit_KT520PT_7.xml"},
        {"KT520_PT_6", "GUIInit_KT520PT_6.xml"}, {"KTQ500_PT_6", "GUIInit_KT520PT_6.xml"},
        {"KT520_PT_5", "GUIInit_KT520PT_5.xml"}, {"KT520_PT_4", "GUIInit_KT520PT_4.xml"},
        {"PL500_1", "GUIInit_PL500_1.xml"},      {"PL500_2", "GUIInit_PL500_2.xml"},
        {"KT540_1.0", "GUIInit_KT540_1.0.xml"}};
    return files;
}

TEST(DeviceFamilyTest, GuiInitFilesAreCurrentValidAndNameKnownPagesAndGroups) {
    std::set<std::string> published;
    for (const char* family : {"KT520", "KT540", "PL500"}) {
        const DeviceFamilySource& source = builder().familyFor(family);
        for (const GuiInitFile& file : source.guiInitFiles()) {
            published.insert(file.fileName);
            expectCurrent(source.guiInitDocument(file.target), kShare / "guiinit" / file.fileName);
        }
    }
    std::set<std::string> expected;
    for (const auto& [key, file] : guiInitFileOfKey()) {
        expected.insert(file);
    }
    EXPECT_EQ(published, expected);
    // The schema refuses what the tree and the toolbar cannot use.
    for (const char* bad :
         {"<dtm><treeView><branch name='a' offline='4'/></treeView><uploadGroups/></dtm>",
          "<dtm><treeView/><uploadGroups><uploadGroup name='uploadSome' count='1'>"
          "<requestGroup name='g'/></uploadGroup></uploadGroups></dtm>",
          "<dtm><treeView><branch name='a' offline='1'><node name='a' offline='1'/></branch>"
          "</treeView><uploadGroups/></dtm>"}) {
        EXPECT_NE(guiInitErrors(*xml::Document::parse(bad).document), "") << bad;
    }

    const std::set<std::string> tags = frameTags();
    const std::map<std::string, std::string> prefixes = {
        {"KT520", "HA"}, {"KTQ500", "HA"}, {"KT540", "PA"}, {"PL500", "PL"}};
    for (const auto& [key, fileName] : guiInitFileOfKey()) {
        SCOPED_TRACE(key + " " + fileName);
        const xml::LoadResult loaded = xml::Document::load(kShare / "guiinit" / fileName);
        ASSERT_TRUE(loaded.ok()) << loaded.message();
        EXPECT_EQ(guiInitErrors(*loaded.document), "");
        const xml::XPath query(*loaded.document, {});
        const std::string prefix = prefixes.at(key.substr(0, key.find('_')));
        for (const std::string& page : attributes(query.select("treeView/branch/node"), "name")) {
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
        std::set<std::string> statuses;
        for (const std::string& s :
             attributes(query.select("deviceStatus/statusGroup/status"), "name")) {
            statuses.insert(s);
        }
        EXPECT_EQ(statuses, contents.statuses);
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
            for (const xml::Node& branch :
                 loaded.document->root().firstChildElement("treeView").childElements("branch")) {
                const auto shown = [&](const xml::Node& n) {
                    const std::string o = n.attribute("offline");
                    return o == "1" || (isOnline ? o != "2" : o == "2");
                };
                if (shown(branch)) {
                    order.push_back(branch.attribute("name"));
                }
                for (const xml::Node& node : branch.childElements("node")) {
                    if (shown(node)) {
                        order.push_back(node.attribute("name"));
                    }
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
        expectCurrent(builder().familyFor(model.deviceType).dataFile(model), file);
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
}  // namespace kt500::simulator
