// The simulated connection's requests and replies: uploads in requestCount
// pieces, writes, offline writes, error answers and malformed requests.
#include "simulator/DeviceFamilySource.h"
#include "unit/simulator/SimulatedSession.h"
#include "xml/XPath.h"

#include <gtest/gtest.h>

#include <set>

namespace kt500::simulator::testing {
namespace {

xml::Namespaces DataNamespaces() {
    return xml::Namespaces::fromSelection("xmlns:data='x-schema:QDLDatafileSchema.xml'");
}

// The upload groups of the GUIInit document the family publishes for a key.
std::vector<std::string> UploadedGroups(const std::string& deviceKey) {
    const DeviceModel& model = *DeviceCatalogue::find(deviceKey);
    const ParameterDocumentBuilder builder(std::filesystem::path(KT500_SHARE_DIR) / "devices");
    const xml::Document guiInit =
        builder.familyFor(model.deviceType).guiInitDocument({model.deviceType, model.revision});
    const xml::XPath query(guiInit, {});
    std::vector<std::string> groups;
    std::set<std::string> seen;
    for (const xml::Node& group : query.select("//uploadGroups/uploadGroup/requestGroup")) {
        if (seen.insert(group.attribute("name")).second) {
            groups.push_back(group.attribute("name"));
        }
    }
    return groups;
}

class UploadTest : public ::testing::TestWithParam<std::string> {};

TEST_P(UploadTest, EveryUploadGroupAnswersInRequestCountPiecesWithOneFinalReply) {
    SimulatedSession session(GetParam());
    const std::vector<std::string> groups = UploadedGroups(GetParam());
    ASSERT_GT(groups.size(), 5U);
    // A chain: all requests are posted at once and the device works them off.
    for (const std::string& group : groups) {
        ASSERT_TRUE(session.post(session.readRequest(group))) << group;
    }
    session.clock().settle();

    const xml::XPath query(*session.control().parameterDocument(), DataNamespaces());
    std::size_t position = 0;
    for (const std::string& group : groups) {
        const std::vector<SinkEvent> replies = session.sink.replies(group);
        const int requestCount = std::stoi(
            query.selectSingle("data:requestGroups/data:requestGroup[@name='" + group + "']")
                .attribute("requestCount"));
        ASSERT_EQ(replies.size(), static_cast<std::size_t>(std::max(requestCount, 1))) << group;
        std::set<std::string> answered;
        for (std::size_t i = 0; i < replies.size(); ++i) {
            EXPECT_TRUE(replies[i].valid) << replies[i].text;
            EXPECT_EQ(replies[i].reply.responseStatus, "ok") << group;
            EXPECT_EQ(replies[i].reply.isFinal, i + 1 == replies.size()) << group;
            for (const MessageItem& item : replies[i].reply.items) {
                EXPECT_TRUE(answered.insert(item.name).second) << group << " " << item.name;
                EXPECT_EQ(item.unit, session.dataSet(item.name, "unit")) << item.name;
                EXPECT_EQ(item.type, session.dataSet(item.name, "type")) << item.name;
                if (!session.control().dynamics()->value(item.name)) {
                    EXPECT_EQ(item.value, session.dataSet(item.name, "value")) << item.name;
                }
            }
        }
        const std::string request = session.readRequest(group);
        for (const std::string& name : answered) {
            EXPECT_NE(request.find("name='" + name + "'"), std::string::npos);
        }
        std::size_t asked = 0;
        for (auto at = request.find("<item "); at != std::string::npos;
             at = request.find("<item ", at + 1)) {
            ++asked;
        }
        EXPECT_EQ(answered.size(), asked) << group << ": every item asked for comes back";
        // The groups are answered in the order they were posted.
        const auto first = std::find_if(
            session.sink.events.begin(), session.sink.events.end(), [&](const SinkEvent& event) {
                return event.kind == "reply" && event.reply.name == group;
            });
        const auto index = static_cast<std::size_t>(first - session.sink.events.begin());
        EXPECT_GE(index, position) << group;
        position = index;
    }
}

INSTANTIATE_TEST_SUITE_P(Families, UploadTest,
                         ::testing::Values("KT520_7", "KT540_1.0", "PL500_2", "KT520_PT_4"),
                         [](const auto& info) {
                             std::string name = info.param;
                             std::replace(name.begin(), name.end(), '.', '_');
                             return name;
                         });

TEST(SimulatedControlTest, PiecesTakeTheBusTimeOfTheProtocol) {
    SimulatedSession hart("KT520_7", false);
    ASSERT_TRUE(hart.post(hart.readRequest("travelDeviation")));  // 41 items: 6 pieces
    hart.clock().advance(299);
    EXPECT_TRUE(hart.sink.replies("travelDeviation").empty());
    hart.clock().advance(1);
    EXPECT_EQ(hart.sink.replies("travelDeviation").size(), 1U);
    hart.clock().settle();
    const std::vector<SinkEvent> pieces = hart.sink.replies("travelDeviation");
    ASSERT_EQ(pieces.size(), 6U);
    EXPECT_EQ(pieces.back().time, 6 * 300);

    SimulatedSession pa("KT540_1.0", false);
    ASSERT_TRUE(pa.post(pa.readRequest("operationUnit")));
    pa.clock().settle();
    ASSERT_EQ(pa.sink.replies("operationUnit").size(), 1U);
    EXPECT_LT(pa.sink.replies("operationUnit")[0].time, 300);
}

TEST(SimulatedControlTest, WriteChangesTheDeviceAndSynchronisesTheDataSet) {
    SimulatedSession session;
    session.control().setDeviceValue("description", "old");
    ASSERT_TRUE(session.post(
        session.writeRequest("operationUnit", {{"description", "Bypass"}, {"deviceDay", "3"}})));
    // Nothing changes on the sink before the device answers.
    EXPECT_TRUE(session.sink.replies("operationUnit").empty());
    session.clock().settle();
    const std::vector<SinkEvent> replies = session.sink.replies("operationUnit");
    ASSERT_EQ(replies.size(), 1U);
    EXPECT_TRUE(replies[0].valid);
    EXPECT_EQ(replies[0].reply.access, "write");
    EXPECT_EQ(replies[0].reply.responseStatus, "ok");
    EXPECT_TRUE(replies[0].reply.isFinal);
    ASSERT_EQ(replies[0].reply.items.size(), 2U);
    EXPECT_EQ(replies[0].reply.items[0].value, "Bypass");
    EXPECT_EQ(session.control().deviceValue("description"), "Bypass");
    EXPECT_EQ(session.control().deviceValue("deviceDay"), "3");
    EXPECT_EQ(session.dataSet("description", "value"), "Bypass");
    EXPECT_EQ(session.dataSet("description", "synchronised"), "1");
    // A later read gives the device's value.
    session.post(session.readRequest("operationUnit"));
    session.clock().settle();
    EXPECT_EQ(session.sink.replies("operationUnit").back().reply.items[1].value, "Bypass");
}

TEST(SimulatedControlTest, WriteInAnotherUnitIsStoredInTheDevicesUnit) {
    SimulatedSession session;
    // supplyPressure is kept in bar gauge; a write in psi is converted.
    const std::string unit = session.dataSet("supplyPressure", "unit");
    ASSERT_EQ(unit, "barG");
    std::string request =
        session.writeRequest("assemblyRelatedConfiguration", {{"supplyPressure", "72.5"}});
    request.replace(request.find("unit=\"barG\""), 11, "unit=\"psiG\"");
    ASSERT_TRUE(session.post(request));
    session.clock().settle();
    const std::vector<SinkEvent> replies = session.sink.replies("assemblyRelatedConfiguration");
    ASSERT_EQ(replies.size(), 1U);
    ASSERT_EQ(replies[0].reply.responseStatus, "ok") << replies[0].text;
    EXPECT_EQ(replies[0].reply.items[0].unit, "barG");
    EXPECT_NEAR(std::stod(*session.control().deviceValue("supplyPressure")), 5.0, 0.01);
}

TEST(SimulatedControlTest, RefusedWritesChangeNothing) {
    SimulatedSession session;
    const std::string dayBefore = *session.control().deviceValue("deviceDay");
    const struct {
        std::string group;
        std::vector<std::pair<std::string, std::string>> values;
        std::string errorCode;
    } cases[] = {
        {"operationUnit", {{"description", "fits"}, {"deviceDay", "31"}}, "outOfRange"},
        {"operationUnit", {{"deviceDay", "-1"}}, "outOfRange"},
        {"operationUnit", {{"deviceDay", "2.5"}}, "invalidValue"},
        {"operationUnit", {{"deviceDay", "twelve"}}, "invalidValue"},
        {"operationUnit", {{"deviceDay", ""}}, "invalidValue"},
        {"operationUnit", {{"hartTag", "NINECHARS"}}, "invalidValue"},
        {"positionerInformation", {{"manufacturer", "Other"}}, "invalidValue"},
    };
    for (const auto& c : cases) {
        session.sink.events.clear();
        ASSERT_TRUE(session.post(session.writeRequest(c.group, c.values)));
        session.clock().settle();
        const std::vector<SinkEvent> replies = session.sink.replies(c.group);
        ASSERT_EQ(replies.size(), 1U) << c.values.back().first;
        EXPECT_TRUE(replies[0].valid);
        EXPECT_TRUE(replies[0].reply.isFinal);
        EXPECT_EQ(replies[0].reply.responseStatus, "failed");
        EXPECT_EQ(replies[0].reply.errorCode, c.errorCode) << c.values.back().first;
        ASSERT_EQ(replies[0].reply.items.size(), 1U) << "the refused item is named";
        EXPECT_EQ(replies[0].reply.items[0].name, c.values.back().first);
    }
    EXPECT_EQ(session.control().deviceValue("deviceDay"), dayBefore);
    EXPECT_EQ(session.control().deviceValue("description"), "Feed pump valve");
    EXPECT_EQ(session.dataSet("description", "value"), "Feed pump valve");
}

TEST(SimulatedControlTest, WriteOfflineChangesTheDataSetOnlyAndAnswersAtOnce) {
    SimulatedSession session("KT520_7", false);
    ASSERT_TRUE(session.post(session.writeRequest(
        "operationUnit", {{"hartTag", "FV-7"}, {"deviceDay", "99"}}, "writeOffline")));
    EXPECT_EQ(session.clock().advance(0), 1U);
    const std::vector<SinkEvent> replies = session.sink.replies("operationUnit");
    ASSERT_EQ(replies.size(), 1U);
    EXPECT_TRUE(replies[0].valid);
    EXPECT_TRUE(replies[0].reply.isFinal);
    EXPECT_EQ(replies[0].reply.access, "writeOffline");
    EXPECT_EQ(replies[0].reply.responseStatus, "local");
    EXPECT_EQ(session.dataSet("hartTag", "value"), "FV-7");
    EXPECT_EQ(session.dataSet("hartTag", "synchronised"), "0");
    EXPECT_EQ(session.dataSet("deviceDay", "value"), "99");
    EXPECT_EQ(session.control().deviceValue("hartTag"), "PV-101");
    EXPECT_EQ(session.clock().pending(), 0U);
}

TEST(SimulatedControlTest, UnknownGroupsAndItemsGetErrorReplies) {
    SimulatedSession session("KT520_7", false);
    ASSERT_TRUE(session.post(
        "<dtm xmlns='x-schema:QDLCommunicationSchema.xml'><communicationRequest name='noSuchGroup' "
        "access='read'/></dtm>"));
    ASSERT_TRUE(session.post(
        "<dtm xmlns='x-schema:QDLCommunicationSchema.xml'><communicationRequest "
        "name='operationUnit' access='read'><item name='hartTag' unit='noUnit'><stringVal/></item>"
        "<item name='ghost' unit='%'><floatVal/></item></communicationRequest></dtm>"));
    session.clock().settle();
    const std::vector<SinkEvent> unknown = session.sink.replies("noSuchGroup");
    ASSERT_EQ(unknown.size(), 1U);
    EXPECT_TRUE(unknown[0].valid);
    EXPECT_EQ(unknown[0].reply.responseStatus, "failed");
    EXPECT_EQ(unknown[0].reply.errorCode, "unknownRequest");
    const std::vector<SinkEvent> missing = session.sink.replies("operationUnit");
    ASSERT_EQ(missing.size(), 1U);
    EXPECT_TRUE(missing[0].valid);
    EXPECT_TRUE(missing[0].reply.isFinal);
    EXPECT_EQ(missing[0].reply.errorCode, "missingItems");
    ASSERT_EQ(missing[0].reply.items.size(), 1U);
    EXPECT_EQ(missing[0].reply.items[0].name, "ghost");
}

TEST(SimulatedControlTest, MalformedRequestsAreRefusedAndLeaveNothingPending) {
    SimulatedSession session("KT520_7", false);
    const char* malformed[] = {
        "",
        "<dtm/>",
        "not xml at all",
        "<dtm xmlns='x-schema:QDLCommunicationSchema.xml'/>",
        "<dtm xmlns='x-schema:QDLCommunicationSchema.xml'><communicationRequest "
        "name='operationUnit'"
        " access='upload'/></dtm>",
        "<dtm xmlns='x-schema:QDLCommunicationSchema.xml'><communicationRequest name='a b'"
        " access='read'/></dtm>",
        "<dtm xmlns='x-schema:QDLCommunicationSchema.xml'><communicationRequest "
        "name='operationUnit'"
        " access='read'><item name='hartTag' unit='noUnit'/></communicationRequest></dtm>",
        "<dtm xmlns='x-schema:QDLCommunicationSchema.xml'><communicationResponse name='x' "
        "access='read' responseStatus='ok' isFinal='1' errorCode=''/></dtm>",
        "<!DOCTYPE dtm [<!ENTITY e 'x'>]><dtm xmlns='x-schema:QDLCommunicationSchema.xml'>"
        "<communicationRequest name='&e;' access='read'/></dtm>",
    };
    for (const char* request : malformed) {
        EXPECT_FALSE(session.post(request)) << request;
    }
    EXPECT_EQ(session.clock().pending(), 0U);
    // A request for another connection fails at interface level.
    bool accepted = true;
    EXPECT_THROW(session.control().PostRequest(2, session.readRequest("operationUnit"), accepted),
                 std::invalid_argument);
}

TEST(SimulatedControlTest, CancelRequestsDropsPendingRepliesAndFreesTheBus) {
    SimulatedSession session("KT520_7", false);
    session.post(session.readRequest("travelDeviation"));
    session.post(session.readRequest("loadFactor"));
    session.clock().advance(650);
    ASSERT_EQ(session.sink.replies("travelDeviation").size(), 2U);
    bool success = false;
    session.control().CancelRequests(SimulatedControl::kConnectionId, success);
    EXPECT_TRUE(success);
    session.clock().settle();
    EXPECT_EQ(session.sink.replies("travelDeviation").size(), 2U);
    EXPECT_TRUE(session.sink.replies("loadFactor").empty());
    // The next request starts at once, not behind the cancelled ones.
    session.post(session.readRequest("operationUnit"));
    const auto start = session.clock().now();
    session.clock().settle();
    EXPECT_EQ(session.sink.replies("operationUnit").back().time, start + 300);
}

TEST(SimulatedControlTest, StatusIsPushedAfterConnectingAndOnRequest) {
    SimulatedSession session("PL500_2");
    session.clock().advance(1000);
    std::vector<SinkEvent> pushes = session.sink.replies("deviceStatus");
    ASSERT_EQ(pushes.size(), 1U);
    EXPECT_TRUE(pushes[0].valid) << pushes[0].text;
    EXPECT_NE(pushes[0].text.find("<statusGroup"), std::string::npos);
    const xml::XPath query(*session.control().parameterDocument(), DataNamespaces());
    EXPECT_EQ(pushes[0].reply.items.size(),
              query.select("data:deviceStatus/data:statusGroup/data:status").size());
    for (const MessageItem& item : pushes[0].reply.items) {
        EXPECT_EQ(item.value, "0");
    }
    // A read of the status answers with the same form.
    ASSERT_TRUE(session.post(
        "<dtm xmlns='x-schema:QDLCommunicationSchema.xml'><communicationRequest name='deviceStatus'"
        " access='read'/></dtm>"));
    session.clock().advance(300);
    pushes = session.sink.replies("deviceStatus");
    ASSERT_EQ(pushes.size(), 2U);
    EXPECT_EQ(pushes[1].reply.items.size(), pushes[0].reply.items.size());

    // Offline sessions get no push.
    SimulatedSession offline("PL500_2", false);
    offline.clock().settle();
    EXPECT_TRUE(offline.sink.events.empty());
}

}  // namespace
}  // namespace kt500::simulator::testing
