// The simulated connection's requests and replies: uploads in requestCount
// pieces, writes, offline writes, error answers and malformed requests.
#include "unit/simulator/SimulatedSession.h"

#include <gtest/gtest.h>

#include <set>

namespace kt500::simulator::testing {
namespace {

// The upload groups of the GUIInit document the family publishes for a key.
std::vector<std::string> UploadedGroups(const std::string& deviceKey) {
    const DeviceModel& model = *DeviceCatalogue::find(deviceKey);
    const xml::Document guiInit =
        Builder().familyFor(model.deviceType).guiInitDocument({model.deviceType, model.revision});
    std::vector<std::string> groups;
    std::set<std::string> seen;
    for (const xml::Node& group :
         xml::XPath(guiInit, {}).select("//uploadGroups/uploadGroup/requestGroup")) {
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
    for (const std::string& group : groups) {
        ASSERT_TRUE(session.post(session.readRequest(group))) << group;
    }
    session.clock().settle();

    std::size_t position = 0;
    for (const std::string& group : groups) {
        const std::vector<SinkEvent> replies = session.sink.replies(group);
        const int requestCount = std::stoi(
            session.query()
                .selectSingle("data:requestGroups/data:requestGroup[@name='" + group + "']")
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
        // Every item asked for comes back, and nothing else.
        const std::string request = session.readRequest(group);
        std::set<std::string> asked;
        for (auto at = request.find("<item name='"); at != std::string::npos;
             at = request.find("<item name='", at + 1)) {
            asked.insert(request.substr(at + 12, request.find('\'', at + 12) - at - 12));
        }
        EXPECT_EQ(answered, asked) << group;
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
                         ::testing::Values("KT520_7", "KT540_1.0", "PL500_2", "KT520_PT_4"));

// Cancelling a chain of queued requests is shown by the upload scenario.
TEST(SimulatedControlTest, PiecesTakeTheBusTimeAndCancelDropsTheRest) {
    SimulatedSession hart("KT520_7", false);
    ASSERT_TRUE(hart.post(hart.readRequest("travelDeviation")));  // 41 items: 6 pieces of 300 ms
    hart.clock().advance(299);
    EXPECT_TRUE(hart.sink.replies("travelDeviation").empty());
    hart.clock().advance(351);
    ASSERT_EQ(hart.sink.replies("travelDeviation").size(), 2U);
    bool success = false;
    hart.control().CancelRequests(SimulatedControl::kConnectionId, success);
    EXPECT_TRUE(success);
    hart.clock().settle();
    EXPECT_EQ(hart.sink.replies("travelDeviation").size(), 2U);
    // The next request starts at once, not behind the cancelled ones.
    hart.post(hart.readRequest("travelDeviation"));
    const auto start = hart.clock().now();
    hart.clock().settle();
    const std::vector<SinkEvent> pieces = hart.sink.replies("travelDeviation");
    ASSERT_EQ(pieces.size(), 8U);
    EXPECT_EQ(pieces.back().time, start + 6 * 300);

    SimulatedSession pa("KT540_1.0", false);
    ASSERT_TRUE(pa.post(pa.readRequest("operationUnit")));
    pa.clock().settle();
    ASSERT_EQ(pa.sink.replies("operationUnit").size(), 1U);
    EXPECT_LT(pa.sink.replies("operationUnit")[0].time, 300);
}

// That a write reaches the device and a read gives the device's value is
// shown by the send_online and reload scenarios.
TEST(SimulatedControlTest, WriteAnswersWithTheValuesAndSynchronisesTheDataSet) {
    SimulatedSession session;
    ASSERT_TRUE(session.post(
        session.writeRequest("operationUnit", {{"description", "Bypass"}, {"deviceDay", "3"}})));
    EXPECT_TRUE(session.sink.replies("operationUnit").empty()) << "not before the device answers";
    session.clock().settle();
    const CommunicationReply reply = session.sink.single("operationUnit");
    EXPECT_EQ(reply.access + " " + reply.responseStatus, "write ok");
    ASSERT_EQ(reply.items.size(), 2U);
    EXPECT_EQ(reply.items[0].value + " " + reply.items[1].value, "Bypass 3");
    EXPECT_EQ(session.dataSet("description", "value") + " " +
                  session.dataSet("description", "synchronised"),
              "Bypass 1");

    // A write in another unit is stored in the device's unit (bar gauge).
    std::string request =
        session.writeRequest("assemblyRelatedConfiguration", {{"supplyPressure", "72.5"}});
    request.replace(request.find("unit=\"barG\""), 11, "unit=\"psiG\"");
    ASSERT_TRUE(session.post(request));
    session.clock().settle();
    const CommunicationReply converted = session.sink.single("assemblyRelatedConfiguration");
    ASSERT_EQ(converted.responseStatus, "ok");
    EXPECT_EQ(converted.items[0].unit, "barG");
    EXPECT_NEAR(std::stod(*session.control().deviceValue("supplyPressure")), 5.0, 0.01);
}

TEST(SimulatedControlTest, RefusedWritesChangeNothingAndNameTheItem) {
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
        SCOPED_TRACE(c.values.back().first + "=" + c.values.back().second);
        session.sink.events.clear();
        ASSERT_TRUE(session.post(session.writeRequest(c.group, c.values)));
        session.clock().settle();
        const CommunicationReply reply = session.sink.single(c.group);
        EXPECT_EQ(reply.responseStatus + " " + reply.errorCode, "failed " + c.errorCode);
        ASSERT_EQ(reply.items.size(), 1U);
        EXPECT_EQ(reply.items[0].name, c.values.back().first);
    }
    EXPECT_EQ(session.control().deviceValue("deviceDay"), dayBefore);
    EXPECT_EQ(session.control().deviceValue("description"), "Feed pump valve");
    EXPECT_EQ(session.dataSet("description", "value"), "Feed pump valve");
}

// That the device keeps its own value is shown by the send_offline scenario.
TEST(SimulatedControlTest, WriteOfflineIsUncheckedUnsynchronisedAndAnsweredAtOnce) {
    SimulatedSession session("KT520_7", false);
    ASSERT_TRUE(session.post(session.writeRequest(
        "operationUnit", {{"hartTag", "FV-7"}, {"deviceDay", "99"}}, "writeOffline")));
    EXPECT_EQ(session.clock().advance(0), 1U);
    const CommunicationReply reply = session.sink.single("operationUnit");
    EXPECT_EQ(reply.access + " " + reply.responseStatus, "writeOffline local");
    EXPECT_EQ(
        session.dataSet("hartTag", "synchronised") + " " + session.dataSet("deviceDay", "value"),
        "0 99");
}

TEST(SimulatedControlTest, UnknownGroupsAndItemsGetErrorReplies) {
    SimulatedSession session("KT520_7", false);
    ASSERT_TRUE(session.post(Request("noSuchGroup", "read")));
    ASSERT_TRUE(session.post(
        "<dtm xmlns='x-schema:QDLCommunicationSchema.xml'><communicationRequest "
        "name='operationUnit' access='read'><item name='hartTag' unit='noUnit'><stringVal/></item>"
        "<item name='ghost' unit='%'><floatVal/></item></communicationRequest></dtm>"));
    session.clock().settle();
    const CommunicationReply unknown = session.sink.single("noSuchGroup");
    EXPECT_EQ(unknown.responseStatus + " " + unknown.errorCode, "failed unknownRequest");
    const CommunicationReply missing = session.sink.single("operationUnit");
    EXPECT_EQ(missing.errorCode, "missingItems");
    ASSERT_EQ(missing.items.size(), 1U);
    EXPECT_EQ(missing.items[0].name, "ghost");
}

TEST(SimulatedControlTest, MalformedRequestsAreRefused) {
    SimulatedSession session("KT520_7", false);
    const std::string open = "<dtm xmlns='x-schema:QDLCommunicationSchema.xml'>";
    const std::string malformed[] = {
        "",
        "<dtm/>",
        "not xml at all",
        "<dtm xmlns='x-schema:QDLCommunicationSchema.xml'/>",
        Request("operationUnit", "upload"),
        Request("a b", "read"),
        open +
            "<communicationRequest name='operationUnit' access='read'><item name='hartTag' "
            "unit='noUnit'/></communicationRequest></dtm>",
        open +
            "<communicationResponse name='x' access='read' responseStatus='ok' isFinal='1' "
            "errorCode=''/></dtm>",
        "<!DOCTYPE dtm [<!ENTITY e 'x'>]>" + open +
            "<communicationRequest name='&e;' access='read'/></dtm>",
    };
    for (const std::string& request : malformed) {
        EXPECT_FALSE(session.post(request)) << request;
    }
    // A request for another connection fails at interface level.
    bool accepted = true;
    EXPECT_THROW(session.control().PostRequest(2, session.readRequest("operationUnit"), accepted),
                 std::invalid_argument);
}

// The push one second after an online session opens is shown by the time
// scenario.
TEST(SimulatedControlTest, StatusPushAndReadListEveryStatusAndOfflineGetsNoPush) {
    SimulatedSession session("PL500_2");
    session.clock().advance(1000);
    ASSERT_TRUE(session.post(Request("deviceStatus", "read")));
    session.clock().advance(300);
    const std::vector<SinkEvent> replies = session.sink.replies("deviceStatus");
    ASSERT_EQ(replies.size(), 2U);
    for (const SinkEvent& reply : replies) {
        EXPECT_EQ(reply.reply.items.size(),
                  session.query().select("data:deviceStatus/data:statusGroup/data:status").size());
    }
    SimulatedSession offline("PL500_2", false);
    offline.clock().settle();
    EXPECT_TRUE(offline.sink.events.empty());
}

}  // namespace
}  // namespace kt500::simulator::testing
