// The event linkage between its record, the table's "EventHandler" and the F5 "EventHandler",
// through the "Alarm" section, which carries it in both modes.
#include "request_support.h"

#include <cstddef>
#include <cstring>
#include <utility>
#include <vector>

using support::Packet;
using support::Parse;
using support::ParseJson;

namespace {

using C = CReqConfigProtocolFix;

// Compared as written text, so an int and a uint of the same value are alike.
std::string Text(const Json::Value& value) { return Json::FastWriter().write(value); }
std::string Text(const char* json) { return Text(ParseJson(json)); }

// The table's "EventHandler" for the record, less the seven days of time sections that the
// section writes ahead of the linkage and the linkage leaves in place.
Json::Value RecordPacket(const KZDEV_ALARMIN_CFG& cfg) {
    Json::Value handler = Packet("Alarm", &cfg).table()["EventHandler"], days;
    EXPECT_TRUE(handler.removeMember("TimeSection", &days) && days.size() == 7u);
    return handler;
}

// {"EventHandler":handler}, a table of the section; in the F5 text, the member of its "Alarm".
std::string Wrapped(const std::string& handler) { return R"({"EventHandler":)" + handler + "}"; }
std::string F5Text(const char* f5) { return R"({"Alarm":)" + Wrapped(f5) + "}"; }

Json::Value F5Packet(const char* f5) {
    return Packet("Alarm", F5Text(f5).c_str(), PROTOFIX_MODE_TEXT).table()["EventHandler"];
}

// The F5 "EventHandler" after the table's is merged into it, in a buffer of ample capacity.
Json::Value F5Parse(const char* handler, const char* f5) {
    std::vector<char> buffer(4096, '\0');
    F5Text(f5).copy(buffer.data(), buffer.size() - 1);
    EXPECT_EQ(Parse("Alarm", Wrapped(handler), buffer.data(), 4096, PROTOFIX_MODE_TEXT), 1);
    return ParseJson(buffer.data())["Alarm"]["EventHandler"];
}

TEST(EventHandlerBinaryPacket, EmptyRecordWritesNoChannelLists) {
    auto cfg = support::Zeroed<KZDEV_ALARMIN_CFG>();
    cfg->handler.attachmentType = 2;  // neither picture nor video: no type
    const Json::Value handler = RecordPacket(*cfg);
    for (const char* key : {"RecordChannels", "AlarmOutChannels", "SnapshotChannels", "PtzLink"})
        EXPECT_FALSE(handler.isMember(key)) << key;
    EXPECT_EQ(Text(handler["MonitorTour"]), Text(R"([{"Enable":false}])"));
    EXPECT_EQ(Text(handler["MailDetail"]), Text(R"({"MaxSize":0,"MaxTimeLength":0})"));
}

TEST(EventHandlerBinaryPacket, WritesEveryKeyOfTheRecord) {
    auto cfg = support::Zeroed<KZDEV_ALARMIN_CFG>();
    KZ_MSG_HANDLE_EX& rec = cfg->handler;
    rec.actionFlags = EVENT_ACTION_RECORD | EVENT_ACTION_ALARMOUT | EVENT_ACTION_SNAPSHOT |
                      EVENT_ACTION_TOUR | EVENT_ACTION_BEEP | 0x80000001u;
    rec.recordChannels[0] = rec.recordChannels[31] = 1;
    rec.recordChannels[5] = rec.messageToNet = 2;  // only 1 selects, only 1 is on
    rec.alarmOutChannels[3] = rec.snapshotChannels[20] = rec.tourChannels[16] = 1;
    rec.recordLatch = 10;
    rec.eventLatch = 5;
    rec.alarmOutLatch = -7;
    // Type 0 is skipped; an unknown type (7, 5) keeps the name written before it, empty at first.
    const std::pair<int, KZ_PTZ_LINK> links[] = {{0, {7, 1}}, {1, {1, 7}}, {3, {5, 9}},
                                                 {4, {0, 3}}, {6, {3, 2}}, {31, {2, 1}}};
    for (const auto& [channel, link] : links) rec.ptzLinks[channel] = link;
    rec.snapshotPeriod = 200;
    rec.matrixEnable = rec.logEnable = rec.attachmentType = 1;
    rec.attachmentMaxSize = 4;
    rec.attachmentMaxTime = 30;

    EXPECT_EQ(Text(RecordPacket(*cfg)), Text(R"({"RecordEnable":true,"RecordChannels":[0,31],
        "RecordLatch":10,"Dejitter":5,"AlarmOutEnable":true,"AlarmOutChannels":[3],
        "AlarmOutLatch":-7,"PtzLinkEnable":false,
        "PtzLink":[["",1,0,0,0],["Preset",7,0,0,1],["Preset",9,0,0,3],["Pattern",2,0,0,6],
                   ["Tour",1,0,0,31]],
        "SnapshotEnable":true,"SnapshotChannels":[20],"SnapshotPeriod":200,
        "TipEnable":false,"MailEnable":false,
        "MailDetail":{"AttachmentType":"video","MaxSize":4096,"MaxTimeLength":30},
        "MessageEnable":false,"BeepEnable":true,"VoiceEnable":false,"MatrixEnable":true,
        "LogEnable":true,"MMSEnable":false,"MonitorTour":[{"Enable":true,"Channels":[16]}]})"));
}

TEST(EventHandlerBinaryParse, ReadsTheTableIntoTheRecord) {
    auto cfg = support::Zeroed<KZDEV_ALARMIN_CFG>();
    KZ_MSG_HANDLE_EX& rec = cfg->handler;
    rec.actionFlags = ~(EVENT_ACTION_RECORD | EVENT_ACTION_ALARMOUT | EVENT_ACTION_PTZ |
                        EVENT_ACTION_SNAPSHOT | EVENT_ACTION_TIP | EVENT_ACTION_BEEP);
    rec.snapshotChannels[25] = rec.tourChannels[4] = 1;  // kept: beyond 15, no "MonitorTour"
    auto want = support::CopyOf(rec);
    // What the table turns off or replaces: flags, stale channels and PTZ links.
    rec.logEnable = rec.matrixEnable = 1;
    rec.recordChannels[9] = rec.alarmOutChannels[9] = rec.snapshotChannels[9] = 1;
    rec.ptzLinks[9] = {KZ_PTZ_LINK_PRESET, 9};
    Json::Value table = ParseJson(R"({"RecordEnable":true,"RecordChannels":[31,32,-1,5],
        "RecordLatch":-5,"Dejitter":70000,"AlarmOutEnable":true,"AlarmOutChannels":[7],
        "AlarmOutLatch":3,"PtzLinkEnable":true,"PtzLink":[["Pattern",5,0,0,1],["Tour",9,0,0,1],
            [null,null,null,null,4],["preset",1,0,0,6],["Preset",8,0,0,-1],["Preset",7,0,0,2],
            [null,null,null,null,31],["Tour",3,0,0,40]],
        "SnapshotEnable":true,"SnapshotChannels":[3,20,15,16,-1],"SnapshotPeriod":300,
        "TipEnable":true,"MailEnable":false,"MessageEnable":true,"BeepEnable":true,
        "VoiceEnable":false,"LogEnable":false,"MMSEnable":true,"MatrixEnable":false,
        "MailDetail":{"AttachmentType":"VIDEO","MaxSize":5000,"MaxTimeLength":257}})");
    EXPECT_EQ(Parse("Alarm", Wrapped(Text(table)), cfg.get()), 1);
    want->actionFlags = ~(EVENT_ACTION_MAIL | EVENT_ACTION_VOICE);
    want->recordChannels[5] = want->recordChannels[31] = want->alarmOutChannels[7] = 1;
    want->snapshotChannels[3] = want->snapshotChannels[15] = 1;
    want->ptzLinks[1] = want->ptzLinks[4] = {KZ_PTZ_LINK_TOUR, 9};  // [4] reuses type and value
    want->ptzLinks[6] = {KZ_PTZ_LINK_NONE, 1};                      // names are case-sensitive
    want->ptzLinks[2] = want->ptzLinks[31] = {KZ_PTZ_LINK_PRESET, 7};
    want->recordLatch = -5;
    want->eventLatch = 70000;
    want->alarmOutLatch = 3;
    want->snapshotPeriod = 300 - 256;
    want->messageToNet = want->mmsEnable = want->attachmentType = want->attachmentMaxTime = 1;
    want->attachmentMaxSize = 4;
    EXPECT_TRUE(support::SameBytes(rec, *want));

    // Again with every flag an integer of the other value, a tour flag and an unknown word: the
    // non-bools are passed over and the rest is read as before.
    for (const std::string& key : table.getMemberNames()) {
        if (table[key].isBool()) table[key] = table[key].asBool() ? 0 : 1;
    }
    table["MonitorTour"] = ParseJson(R"([{"Enable":0,"Channels":[4]}])");
    table["MailDetail"]["AttachmentType"] = "audio";
    EXPECT_EQ(Parse("Alarm", Wrapped(Text(table)), cfg.get()), 1);
    EXPECT_TRUE(support::SameBytes(rec, *want));
}

TEST(EventHandlerF5Packet, ConvertsTheF5ObjectKeyByKey) {
    const Json::Value handler = F5Packet(R"({"TimeSection":[["1 00:00:00-24:00:00"]],
        "RecordEn":1,"Record":[{"En":1},{"En":0},{"En":1}],"RecordLatch":10,
        "AlarmOutEn":2,"AlarmOut":[],"AlarmOutLatch":5,
        "PtzLinkEn":1,"PtzLink":[{"Type":"Preset","Value":3.0},{"Type":"None","Value":4},{"Type":5},
                                 {"Type":"Tour","Value":"x"}],
        "SnapshotEn":1,"Snapshot":[{"En":0},{"En":1}],"SnapshotPeriod":3,"SnapshotTimes":2,
        "TipEn":1,"MailEn":0,"MessageToNetEn":1,"BeepEn":1,"VoiceEn":0,"LogEn":1,"MMSEn":1,
        "MatrixEn":1,"EventLatch":7,"TourEn":1,"Tour":[{"En":0},{},{"En":1}]})");
    EXPECT_EQ(Text(handler), Text(R"({"TimeSection":[["1 00:00:00-24:00:00"]],
        "RecordEnable":true,"RecordChannels":[0,2],"RecordLatch":10,
        "AlarmOutEnable":false,"AlarmOutLatch":5,
        "PtzLinkEnable":true,"PtzLink":[["Preset",3,0,0,0],["None",0],null,["Tour",null,0,0,3]],
        "SnapshotEnable":true,"SnapshotChannels":[1],"SnapshotPeriod":3,"SnapshotTimes":2,
        "TipEnable":true,"MailEnable":false,"MessageEnable":true,"BeepEnable":true,
        "VoiceEnable":false,"LogEnable":true,"MMSEnable":true,"MatrixEnable":true,
        "Dejitter":7,"MonitorTour":[{"Enable":true,"Channels":[2]}]})"));

    // Lists with elements, none on: record and alarm outputs are reset to empty arrays, while
    // snapshot and tour, only appended to, get no list.
    const Json::Value off =
        F5Packet(R"({"Record":[{}],"AlarmOut":[{}],"Snapshot":[{}],"Tour":[{}]})");
    EXPECT_EQ(Text(off["RecordChannels"]), Text("[]"));
    EXPECT_EQ(Text(off["AlarmOutChannels"]), Text("[]"));
    EXPECT_EQ(Text(off["MonitorTour"]), Text(R"([{"Enable":false}])"));
    EXPECT_FALSE(off.isMember("SnapshotChannels"));
}

TEST(EventHandlerF5Parse, MergesTheTableIntoTheF5Object) {
    const char* f5 = R"({"Record":[{"En":1},{"En":1},{"En":0}],
        "AlarmOut":[{"En":1},{"En":0}],"PtzLink":[{"Type":"Preset","Value":1},
            {"Type":"Tour","Value":2},{"Type":"Pattern","Value":3},{"Type":"Preset","Value":4}],
        "Snapshot":[{"En":0},{"En":0}],"Tour":[{"En":1},{"En":0}],"TourEn":1,"Keep":"x"})";
    // Two alarm outputs: the PTZ reset writes element 2 and no other.
    const char* table = R"({"TimeSection":[["0 08:00:00-17:00:00"]],
        "RecordEnable":true,"RecordChannels":[2,3,-1],"RecordLatch":10,
        "AlarmOutEnable":false,"AlarmOutChannels":[0,1],"AlarmOutLatch":4,"PtzLinkEnable":true,
        "PtzLink":[["Tour",5,0,0,3],["Bogus",6,0,0,9],[null,7,0,0],["x",8,0,0,-1],[1,"v",0,0,1]],
        "SnapshotEnable":true,"SnapshotChannels":[1,2],"SnapshotPeriod":2,"SnapshotTimes":3,
        "TipEnable":true,"MailEnable":false,"MessageEnable":true,"BeepEnable":false,
        "VoiceEnable":true,"LogEnable":false,"MMSEnable":true,"MatrixEnable":false,"Dejitter":6,
        "MailDetail":{"MaxSize":1},"MonitorTour":[{"Enable":false,"Channels":[1,5]}]})";
    EXPECT_EQ(Text(F5Parse(table, f5)), Text(R"({"TimeSection":[["0 08:00:00-17:00:00"]],
        "RecordEn":1,"Record":[{"En":0},{"En":0},{"En":1}],"RecordLatch":10,
        "AlarmOutEn":0,"AlarmOut":[{"En":1},{"En":1}],"AlarmOutLatch":4,"PtzLinkEn":1,
        "PtzLink":[{"Type":"Preset","Value":1},{"Type":"x","Value":8},
                   {"Type":"None","Value":0},{"Type":"Tour","Value":5}],
        "SnapshotEn":1,"Snapshot":[{"En":0},{"En":1}],"SnapshotPeriod":2,"SnapshotTimes":3,
        "TipEn":1,"MailEn":0,"MessageToNetEn":1,"BeepEn":0,"VoiceEn":1,"LogEn":0,"MMSEn":1,
        "MatrixEn":0,"EventLatch":6,"TourEn":0,"Tour":[{"En":0},{"En":1}],"Keep":"x"})"));
}

TEST(EventHandlerF5Parse, PtzResetPastTheEndGrowsTheListAndANonArrayTourIsPassedOver) {
    const Json::Value f5 = F5Parse(R"({"AlarmOutChannels":[5,6],"MonitorTour":{}})",
                                   R"({"PtzLink":[{"Value":1}],"TourEn":1,"Tour":[{"En":1}]})");
    EXPECT_EQ(Text(f5["PtzLink"]), Text(R"([{"Value":1},null,{"Type":"None","Value":0}])"));
    EXPECT_EQ(Text(f5["Tour"]), Text(R"([{"En":1}])"));
}

// What the record conversions carry: W, a whole field; F, the first 16 bytes of a channel array.
// clang-format off
#define PROTOFIX_CARRIED(W, F)                                                                     \
    W(actionMask) W(actionFlags) W(alarmOutLatch) W(recordLatch) W(eventLatch) W(matrixMask)       \
    W(messageToNet) W(mmsEnable) W(snapshotTimes) W(matrixEnable) W(logEnable) W(snapshotPeriod)   \
    W(attachmentType) W(attachmentMaxSize) W(attachmentMaxTime)                                    \
    F(alarmOutChannels) F(recordChannels) F(snapshotChannels) F(tourChannels) F(auxOutChannels)
// clang-format on
#define PROTOFIX_WHOLE(f) want->f = from->f;
#define PROTOFIX_FIRST16(f) std::memcpy(want->f, from->f, KZ_MSG_HANDLE_CHANNELS);

// Every other byte of the target, the PTZ links included, keeps its 0xEE.
template <class From, class To>
void ExpectOnlyCarriedBytesCopied(void (*convert)(const From&, To&)) {
    auto from = std::make_unique<From>();
    auto* bytes = reinterpret_cast<unsigned char*>(from.get());
    for (std::size_t i = 0; i < sizeof(From); ++i) bytes[i] = static_cast<unsigned char>(i * 7 + 1);
    auto to = std::make_unique<To>();
    std::memset(to.get(), 0xEE, sizeof(To));
    auto want = support::CopyOf(*to);
    PROTOFIX_CARRIED(PROTOFIX_WHOLE, PROTOFIX_FIRST16)
    convert(*from, *to);
    EXPECT_TRUE(support::SameBytes(*to, *want));
}

TEST(EventHandlerRecords, CarryTheFirstSixteenChannelsAndNoPtzLinks) {
    ExpectOnlyCarriedBytesCopied(&C::Binary_HandleExToHandle);
    ExpectOnlyCarriedBytesCopied(&C::Binary_HandleToHandleEx);
}

}  // namespace
