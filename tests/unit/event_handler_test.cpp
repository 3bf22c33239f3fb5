// The event linkage between its record, the table's "EventHandler" and the F5 "EventHandler".
#include <protofix/protofix.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

using C = CReqConfigProtocolFix;

Json::Value J(const std::string& text) {
    Json::Value value;
    EXPECT_TRUE(Json::Reader().parse(text, value, false)) << text;
    return value;
}

std::string Text(const Json::Value& value) { return Json::FastWriter().write(value); }

// The channels whose byte is set; a set byte must hold 1.
template <std::size_t N>
std::vector<int> Selected(const unsigned char (&channels)[N]) {
    std::vector<int> selected;
    for (std::size_t i = 0; i < N; ++i) {
        if (channels[i] == 0) continue;
        EXPECT_EQ(channels[i], 1) << "channel " << i;
        selected.push_back(static_cast<int>(i));
    }
    return selected;
}

TEST(EventHandlerBinaryPacket, EmptyRecordWritesNoChannelLists) {
    Json::Value handler;
    EXPECT_EQ(C::Packet_EventHandler_Binary(handler, nullptr), -1);
    EXPECT_TRUE(handler.isNull());

    auto rec = std::make_unique<KZ_MSG_HANDLE_EX>();
    EXPECT_EQ(C::Packet_EventHandler_Binary(handler, rec.get()), -1);
    EXPECT_EQ(Text(handler), Text(J(R"({"RecordEnable":false,"RecordLatch":0,"Dejitter":0,
        "AlarmOutEnable":false,"AlarmOutLatch":0,"PtzLinkEnable":false,"SnapshotEnable":false,
        "SnapshotPeriod":0,"TipEnable":false,"MailEnable":false,
        "MailDetail":{"AttachmentType":"picture","MaxSize":0,"MaxTimeLength":0},
        "MessageEnable":false,"BeepEnable":false,"VoiceEnable":false,"MatrixEnable":false,
        "LogEnable":false,"MMSEnable":false,"MonitorTour":[{"Enable":false}]})")));
}

TEST(EventHandlerBinaryPacket, WritesEveryKeyOfTheRecord) {
    auto rec = std::make_unique<KZ_MSG_HANDLE_EX>();
    rec->actionFlags = EVENT_ACTION_RECORD | EVENT_ACTION_ALARMOUT | EVENT_ACTION_SNAPSHOT |
                       EVENT_ACTION_TOUR | EVENT_ACTION_BEEP | 0x1u | 0x80000000u;
    rec->recordChannels[0] = rec->recordChannels[31] = 1;
    rec->recordChannels[5] = 2;  // only 1 selects
    rec->alarmOutChannels[3] = rec->snapshotChannels[20] = rec->tourChannels[16] = 1;
    rec->recordLatch = 10;
    rec->eventLatch = 5;
    rec->alarmOutLatch = -7;
    rec->ptzLinks[0] = {7, 1};  // unknown type before any name: empty
    rec->ptzLinks[1] = {KZ_PTZ_LINK_PRESET, 7};
    rec->ptzLinks[3] = {5, 9};  // unknown type: the name written before
    rec->ptzLinks[4] = {KZ_PTZ_LINK_NONE, 3};
    rec->ptzLinks[6] = {KZ_PTZ_LINK_PATTERN, 2};
    rec->ptzLinks[31] = {KZ_PTZ_LINK_TOUR, 1};
    rec->snapshotPeriod = 200;
    rec->messageToNet = 2;
    rec->matrixEnable = rec->logEnable = 1;
    rec->attachmentType = 1;
    rec->attachmentMaxSize = 4;
    rec->attachmentMaxTime = 30;
    rec->auxOutChannels[0] = rec->snapshotTimes = 1;
    rec->matrixMask = rec->actionMask = 3;

    Json::Value handler = J(R"({"TimeSection":[["1 00:00:00-24:00:00"]]})");
    EXPECT_EQ(C::Packet_EventHandler_Binary(handler, rec.get()), -1);
    EXPECT_EQ(Text(handler), Text(J(R"({"TimeSection":[["1 00:00:00-24:00:00"]],
        "RecordEnable":true,"RecordChannels":[0,31],"RecordLatch":10,"Dejitter":5,
        "AlarmOutEnable":true,"AlarmOutChannels":[3],"AlarmOutLatch":-7,"PtzLinkEnable":false,
        "PtzLink":[["",1,0,0,0],["Preset",7,0,0,1],["Preset",9,0,0,3],["Pattern",2,0,0,6],
                   ["Tour",1,0,0,31]],
        "SnapshotEnable":true,"SnapshotChannels":[20],"SnapshotPeriod":200,
        "TipEnable":false,"MailEnable":false,
        "MailDetail":{"AttachmentType":"video","MaxSize":4096,"MaxTimeLength":30},
        "MessageEnable":false,"BeepEnable":true,"VoiceEnable":false,"MatrixEnable":true,
        "LogEnable":true,"MMSEnable":false,"MonitorTour":[{"Enable":true,"Channels":[16]}]})")));
    EXPECT_EQ(handler["RecordChannels"][0].type(), Json::uintValue);
    EXPECT_EQ(handler["PtzLink"][1][4].type(), Json::uintValue);

    rec->attachmentType = 2;  // neither picture nor video: no type written
    Json::Value other;
    C::Packet_EventHandler_Binary(other, rec.get());
    EXPECT_FALSE(other["MailDetail"].isMember("AttachmentType"));
}

TEST(EventHandlerBinaryParse, ClearsListsUnconditionallyButTheTourOnlyWithMonitorTour) {
    for (const char* text : {"{}", R"({"RecordChannels":null,"MonitorTour":null})",
                             R"({"MonitorTour":{"Enable":false,"Channels":[]}})"}) {
        auto rec = std::make_unique<KZ_MSG_HANDLE_EX>();
        std::memset(rec.get(), 1, sizeof *rec);
        auto expected = std::make_unique<KZ_MSG_HANDLE_EX>();
        std::memcpy(expected.get(), rec.get(), sizeof *rec);
        std::memset(expected->recordChannels, 0, sizeof expected->recordChannels);
        std::memset(expected->alarmOutChannels, 0, sizeof expected->alarmOutChannels);
        std::memset(expected->ptzLinks, 0, sizeof expected->ptzLinks);
        std::memset(expected->snapshotChannels, 0, 16);  // channels 16 to 31 keep theirs

        Json::Value table = J(text);
        EXPECT_EQ(C::Parse_EventHandler_Binary(table, rec.get()), -1);
        EXPECT_EQ(std::memcmp(rec.get(), expected.get(), sizeof *rec), 0) << text;
    }
    Json::Value table;
    EXPECT_EQ(C::Parse_EventHandler_Binary(table, nullptr), -1);
}

TEST(EventHandlerBinaryParse, TakesChannelNumbersWithinEachList) {
    auto rec = std::make_unique<KZ_MSG_HANDLE_EX>();
    rec->snapshotChannels[25] = rec->tourChannels[4] = 1;
    Json::Value table = J(R"({"RecordChannels":[0,31,32,-1,5,5],"AlarmOutChannels":[7],
        "SnapshotChannels":[3,20,15,16,-1],"MonitorTour":[{"Channels":[31,-2,40]}]})");
    C::Parse_EventHandler_Binary(table, rec.get());
    EXPECT_EQ(Selected(rec->recordChannels), (std::vector<int>{0, 5, 31}));
    EXPECT_EQ(Selected(rec->alarmOutChannels), (std::vector<int>{7}));
    EXPECT_EQ(Selected(rec->snapshotChannels), (std::vector<int>{3, 15, 25}));
    EXPECT_EQ(Selected(rec->tourChannels), (std::vector<int>{31}));
}

TEST(EventHandlerBinaryParse, ReadsOnlyJsonBoolsAsFlags) {
    struct Case {
        const char* table;  // '$' stands for the value
        unsigned int bit;
        unsigned char KZ_MSG_HANDLE_EX::*byte;
    };
    const Case cases[] = {
        {R"({"RecordEnable":$})", EVENT_ACTION_RECORD, nullptr},
        {R"({"AlarmOutEnable":$})", EVENT_ACTION_ALARMOUT, nullptr},
        {R"({"PtzLinkEnable":$})", EVENT_ACTION_PTZ, nullptr},
        {R"({"SnapshotEnable":$})", EVENT_ACTION_SNAPSHOT, nullptr},
        {R"({"TipEnable":$})", EVENT_ACTION_TIP, nullptr},
        {R"({"MailEnable":$})", EVENT_ACTION_MAIL, nullptr},
        {R"({"BeepEnable":$})", EVENT_ACTION_BEEP, nullptr},
        {R"({"VoiceEnable":$})", EVENT_ACTION_VOICE, nullptr},
        {R"({"MonitorTour":[{"Enable":$}]})", EVENT_ACTION_TOUR, nullptr},
        {R"({"MessageEnable":$})", 0, &KZ_MSG_HANDLE_EX::messageToNet},
        {R"({"LogEnable":$})", 0, &KZ_MSG_HANDLE_EX::logEnable},
        {R"({"MMSEnable":$})", 0, &KZ_MSG_HANDLE_EX::mmsEnable},
        {R"({"MatrixEnable":$})", 0, &KZ_MSG_HANDLE_EX::matrixEnable},
    };
    for (const Case& c : cases) {
        for (const bool wasOn : {false, true}) {
            for (const std::string value : {"true", "false", "1", "\"true\""}) {
                const bool on = value == "true" || (value != "false" && wasOn);
                auto rec = std::make_unique<KZ_MSG_HANDLE_EX>();
                rec->actionFlags = wasOn ? ~0u : 0u;
                if (c.byte != nullptr) (*rec).*c.byte = wasOn ? 1 : 0;
                std::string text = c.table;
                text.replace(text.find('$'), 1, value);
                Json::Value table = J(text);
                C::Parse_EventHandler_Binary(table, rec.get());
                if (c.byte != nullptr) {
                    EXPECT_EQ((*rec).*c.byte, on ? 1 : 0) << text;
                    EXPECT_EQ(rec->actionFlags, wasOn ? ~0u : 0u) << text;
                } else {
                    EXPECT_EQ(rec->actionFlags, wasOn ? (on ? ~0u : ~c.bit) : (on ? c.bit : 0u))
                        << text;
                }
            }
        }
    }
}

TEST(EventHandlerBinaryParse, ReadsLatchesAndMailDetailIntoTheirWidths) {
    auto rec = std::make_unique<KZ_MSG_HANDLE_EX>();
    Json::Value table = J(R"({"RecordLatch":-5,"Dejitter":70000,"AlarmOutLatch":3,
                             "SnapshotPeriod":300})");
    C::Parse_EventHandler_Binary(table, rec.get());
    EXPECT_EQ(rec->recordLatch, -5);
    EXPECT_EQ(rec->eventLatch, 70000);
    EXPECT_EQ(rec->alarmOutLatch, 3);
    EXPECT_EQ(rec->snapshotPeriod, 300 - 256);
    table = J(R"({"RecordLatch":null})");
    C::Parse_EventHandler_Binary(table, rec.get());
    EXPECT_EQ(rec->recordLatch, -5);
    table = J(R"({"RecordLatch":"12"})");  // the JSON library's own conversion rule
    EXPECT_THROW(C::Parse_EventHandler_Binary(table, rec.get()), Json::LogicError);

    struct Case {
        const char* detail;
        int type, maxSize, maxTime;  // from 9, 9, 9
    };
    const Case cases[] = {
        {R"({"AttachmentType":"VIDEO"})", 1, 9, 9}, {R"({"AttachmentType":"Picture"})", 0, 9, 9},
        {R"({"AttachmentType":"audio"})", 9, 9, 9}, {R"({"AttachmentType":1})", 9, 9, 9},
        {R"({"MaxSize":5000})", 9, 4, 9},           {R"({"MaxSize":1023})", 9, 0, 9},
        {R"({"MaxSize":-1024})", 9, 255, 9},        {R"({"MaxSize":307200})", 9, 300 - 256, 9},
        {R"({"MaxTimeLength":257})", 9, 9, 1},      {R"({"MaxSize":null})", 9, 9, 9},
    };
    for (const Case& c : cases) {
        rec->attachmentType = rec->attachmentMaxSize = rec->attachmentMaxTime = 9;
        table = Json::Value();
        table["MailDetail"] = J(c.detail);
        C::Parse_EventHandler_Binary(table, rec.get());
        EXPECT_EQ(rec->attachmentType, c.type) << c.detail;
        EXPECT_EQ(rec->attachmentMaxSize, c.maxSize) << c.detail;
        EXPECT_EQ(rec->attachmentMaxTime, c.maxTime) << c.detail;
    }

    table = J(R"({"MailDetail":{"AttachmentType":"VIDEO","MaxSize":5000}})");
    C::Parse_EventHandler_Binary(table, rec.get());
    Json::Value handler;
    C::Packet_EventHandler_Binary(handler, rec.get());
    EXPECT_EQ(handler["MailDetail"]["MaxSize"], Json::Value(4096));
    EXPECT_EQ(handler["MailDetail"]["AttachmentType"], Json::Value("video"));
}

TEST(EventHandlerBinaryParse, PtzEntriesCarryTypeValueAndChannelOver) {
    auto rec = std::make_unique<KZ_MSG_HANDLE_EX>();
    for (KZ_PTZ_LINK& link : rec->ptzLinks) link = {9, 9};
    Json::Value table = J(R"({"PtzLink":[
        ["Pattern",5,0,0,1], ["Tour",9,0,0,1], [null,null,null,null,4], ["preset",1,0,0,6],
        ["Preset",7,0,0,-1], ["None",2], ["Preset",8,0,0,31], "junk",
        ["Preset",7,0,0,2], ["Tour",3,0,0,40]]})");
    C::Parse_EventHandler_Binary(table, rec.get());
    for (int i = 0; i < KZ_MSG_HANDLE_EX_CHANNELS; ++i) {
        KZ_PTZ_LINK expected = {0, 0};
        if (i == 1 || i == 4) expected = {KZ_PTZ_LINK_TOUR, 9};
        if (i == 2) expected = {KZ_PTZ_LINK_PRESET, 7};
        if (i == 6) expected = {KZ_PTZ_LINK_NONE, 1};  // names are case-sensitive
        if (i == 31) expected = {KZ_PTZ_LINK_PRESET, 8};
        EXPECT_EQ(rec->ptzLinks[i].type, expected.type) << i;
        EXPECT_EQ(rec->ptzLinks[i].value, expected.value) << i;
    }
    EXPECT_TRUE(Selected(rec->tourChannels).empty());  // channel -1 wrote nowhere before the links
}

TEST(EventHandlerF5Packet, ConvertsTheF5ObjectKeyByKey) {
    const Json::Value f5 = J(R"({"TimeSection":[["1 00:00:00-24:00:00"]],
        "RecordEn":1,"Record":[{"En":1},{"En":0},{"En":1}],"RecordLatch":10,
        "AlarmOutEn":2,"AlarmOut":[{"En":0},{}],"AlarmOutLatch":5,
        "PtzLinkEn":1,"PtzLink":[{"Type":"Preset","Value":3},{"Type":"None","Value":4},{"Type":5},
                                 {"Type":"Tour","Value":"x"}],
        "SnapshotEn":1,"Snapshot":[{"En":0},{"En":1}],"SnapshotPeriod":3,"SnapshotTimes":2,
        "TipEn":1,"MailEn":0,"MessageToNetEn":1,"BeepEn":1,"VoiceEn":0,"LogEn":1,"MMSEn":1,
        "MatrixEn":1,"EventLatch":7,"TourEn":1,"Tour":[{"En":0},{"En":0},{"En":1}]})");
    Json::Value handler = J(R"({"RecordChannels":[9],"AlarmOutChannels":[9],
        "SnapshotChannels":[9],"MonitorTour":[{"Channels":[8]}]})");
    EXPECT_EQ(C::Packet_EventHandler_F5(handler, f5), -1);
    EXPECT_EQ(Text(handler), Text(J(R"({"TimeSection":[["1 00:00:00-24:00:00"]],
        "RecordEnable":true,"RecordChannels":[0,2],"RecordLatch":10,
        "AlarmOutEnable":false,"AlarmOutChannels":[],"AlarmOutLatch":5,
        "PtzLinkEnable":true,"PtzLink":[["Preset",3,0,0,0],["None",0],null,["Tour",null,0,0,3]],
        "SnapshotEnable":true,"SnapshotChannels":[9,1],"SnapshotPeriod":3,"SnapshotTimes":2,
        "TipEnable":true,"MailEnable":false,"MessageEnable":true,"BeepEnable":true,
        "VoiceEnable":false,"LogEnable":true,"MMSEnable":true,"MatrixEnable":true,
        "Dejitter":7,"MonitorTour":[{"Enable":true,"Channels":[8,2]}]})")));
}

TEST(EventHandlerF5Packet, AbsentF5KeysReadAsZero) {
    Json::Value handler;
    C::Packet_EventHandler_F5(handler, J(R"({"Record":[],"Snapshot":[{"En":0}]})"));
    EXPECT_EQ(Text(handler), Text(J(R"({"TimeSection":null,"RecordEnable":false,
        "RecordLatch":null,"AlarmOutEnable":false,"AlarmOutLatch":null,"PtzLinkEnable":false,
        "SnapshotEnable":false,"SnapshotPeriod":null,"SnapshotTimes":null,"TipEnable":false,
        "MailEnable":false,"MessageEnable":false,"BeepEnable":false,"VoiceEnable":false,
        "LogEnable":false,"MMSEnable":false,"MatrixEnable":false,"Dejitter":0,
        "MonitorTour":[{"Enable":false}]})")));
}

TEST(EventHandlerF5Parse, MergesTheTableIntoTheF5Object) {
    Json::Value f5 = J(R"({"Record":[{"En":1},{"En":1},{"En":0}],"AlarmOut":[{"En":1},{"En":0}],
        "PtzLink":[{"Type":"Preset","Value":1},{"Type":"Tour","Value":2},
                   {"Type":"Pattern","Value":3},{"Type":"Preset","Value":4}],
        "Snapshot":[{"En":0},{"En":0}],"Tour":[{"En":1},{"En":0}],"TourEn":1,"Keep":"x"})");
    const Json::Value table = J(R"({"TimeSection":[["0 08:00:00-17:00:00"]],
        "RecordEnable":true,"RecordChannels":[2,3,-1],"RecordLatch":10,
        "AlarmOutEnable":false,"AlarmOutChannels":[0,1],"AlarmOutLatch":4,"PtzLinkEnable":true,
        "PtzLink":[["Tour",5,0,0,3],["Bogus",6,0,0,9],[null,7,0,0],["x",8,0,0,-1],[1,"v",0,0,1]],
        "SnapshotEnable":true,"SnapshotChannels":[1,2],"SnapshotPeriod":2,"SnapshotTimes":3,
        "TipEnable":true,"MailEnable":false,"MessageEnable":true,"BeepEnable":false,
        "VoiceEnable":true,"LogEnable":false,"MMSEnable":true,"MatrixEnable":false,"Dejitter":6,
        "MailDetail":{"MaxSize":1},"MonitorTour":[{"Enable":false,"Channels":[1,5]}]})");
    EXPECT_EQ(C::Parse_EventHandler_F5(table, f5), -1);
    EXPECT_EQ(Text(f5), Text(J(R"({"TimeSection":[["0 08:00:00-17:00:00"]],
        "RecordEn":1,"Record":[{"En":0},{"En":0},{"En":1}],"RecordLatch":10,
        "AlarmOutEn":0,"AlarmOut":[{"En":1},{"En":1}],"AlarmOutLatch":4,"PtzLinkEn":1,
        "PtzLink":[{"Type":"Preset","Value":1},{"Type":"x","Value":8},
                   {"Type":"None","Value":0},{"Type":"Tour","Value":5}],
        "SnapshotEn":1,"Snapshot":[{"En":0},{"En":1}],"SnapshotPeriod":2,"SnapshotTimes":3,
        "TipEn":1,"MailEn":0,"MessageToNetEn":1,"BeepEn":0,"VoiceEn":1,"LogEn":0,"MMSEn":1,
        "MatrixEn":0,"EventLatch":6,"TourEn":0,"Tour":[{"En":0},{"En":1}],"Keep":"x"})")));
}

TEST(EventHandlerF5Parse, PtzResetWritesTheElementAtTheAlarmOutCount) {
    struct Case {
        const char* alarmOut;
        const char* before;
        const char* after;
    };
    const Case cases[] = {
        {"[0,1]", R"([{"Value":1},{"Value":2},{"Value":3},{"Value":4}])",
         R"([{"Value":1},{"Value":2},{"Type":"None","Value":0},{"Value":4}])"},
        {"[]", R"([{"Value":1},{"Value":2}])", R"([{"Type":"None","Value":0},{"Value":2}])"},
        {"[0,1,2,3,4]", R"([{"Value":1},{"Value":2},{"Value":3},{"Value":4}])",
         R"([{"Value":1},{"Value":2},{"Value":3},{"Value":4},null,{"Type":"None","Value":0}])"},
        {"[0]", "[]", "[]"},
    };
    for (const Case& c : cases) {
        Json::Value f5;
        f5["PtzLink"] = J(c.before);
        const Json::Value table = J(std::string(R"({"AlarmOutChannels":)") + c.alarmOut + "}");
        C::Parse_EventHandler_F5(table, f5);
        EXPECT_EQ(Text(f5["PtzLink"]), Text(J(c.after))) << c.alarmOut << " " << c.before;
    }
}

TEST(EventHandlerF5Parse, CreatesNoChannelListTheF5TextLacks) {
    Json::Value f5 = J(R"({"TourEn":1,"Tour":[{"En":1}]})");
    const Json::Value table = J(R"({"RecordChannels":[0],"AlarmOutChannels":[0],
        "PtzLink":[["Preset",1,0,0,0]],"SnapshotChannels":[0],"MonitorTour":{"Enable":false}})");
    C::Parse_EventHandler_F5(table, f5);
    for (const char* key : {"Record", "AlarmOut", "PtzLink", "Snapshot"}) {
        EXPECT_FALSE(f5.isMember(key)) << key;
    }
    EXPECT_EQ(Text(f5["Tour"]), Text(J(R"([{"En":1}])")));  // "MonitorTour" not an array
    EXPECT_EQ(f5["TourEn"], Json::Value(1));

    // An absent "MonitorTour" passes the array test: the tour is switched off and cleared.
    C::Parse_EventHandler_F5(J("{}"), f5);
    EXPECT_EQ(Text(f5["Tour"]), Text(J(R"([{"En":0}])")));
    EXPECT_EQ(f5["TourEn"], Json::Value(0));
}

// Offsets of the fields that the record conversions carry, with the bytes carried.
struct Carried {
    std::size_t ex, older, size;
};
#define PROTOFIX_CARRIED(field, size) \
    Carried { offsetof(KZ_MSG_HANDLE_EX, field), offsetof(KZ_MSG_HANDLE, field), size }
const Carried kCarried[] = {
    PROTOFIX_CARRIED(actionMask, 4),        PROTOFIX_CARRIED(actionFlags, 4),
    PROTOFIX_CARRIED(alarmOutLatch, 4),     PROTOFIX_CARRIED(recordLatch, 4),
    PROTOFIX_CARRIED(eventLatch, 4),        PROTOFIX_CARRIED(matrixMask, 4),
    PROTOFIX_CARRIED(alarmOutChannels, 16), PROTOFIX_CARRIED(recordChannels, 16),
    PROTOFIX_CARRIED(snapshotChannels, 16), PROTOFIX_CARRIED(tourChannels, 16),
    PROTOFIX_CARRIED(auxOutChannels, 16),   PROTOFIX_CARRIED(messageToNet, 1),
    PROTOFIX_CARRIED(mmsEnable, 1),         PROTOFIX_CARRIED(snapshotTimes, 1),
    PROTOFIX_CARRIED(matrixEnable, 1),      PROTOFIX_CARRIED(logEnable, 1),
    PROTOFIX_CARRIED(snapshotPeriod, 1),    PROTOFIX_CARRIED(attachmentType, 1),
    PROTOFIX_CARRIED(attachmentMaxSize, 1), PROTOFIX_CARRIED(attachmentMaxTime, 1),
};
#undef PROTOFIX_CARRIED

// Each source byte differs from its neighbours; every target byte starts as 0xEE.
template <class From, class To>
void ExpectOnlyCarriedBytesCopied(void (*convert)(const From&, To&), std::size_t Carried::*from,
                                  std::size_t Carried::*to) {
    auto source = std::make_unique<From>();
    auto target = std::make_unique<To>();
    auto* src = reinterpret_cast<unsigned char*>(source.get());
    auto* dst = reinterpret_cast<unsigned char*>(target.get());
    for (std::size_t i = 0; i < sizeof(From); ++i) src[i] = static_cast<unsigned char>(i * 7 + 1);
    std::memset(dst, 0xEE, sizeof(To));
    convert(*source, *target);
    std::vector<bool> written(sizeof(To), false);
    for (const Carried& c : kCarried) {
        EXPECT_EQ(std::memcmp(dst + c.*to, src + c.*from, c.size), 0) << "target offset " << c.*to;
        for (std::size_t i = 0; i < c.size; ++i) written[c.*to + i] = true;
    }
    for (std::size_t i = 0; i < sizeof(To); ++i) {
        if (!written[i]) {
            EXPECT_EQ(dst[i], 0xEE) << "target byte " << i << " not carried";
        }
    }
}

TEST(EventHandlerRecords, CarryTheFirstSixteenChannelsAndNoPtzLinks) {
    ExpectOnlyCarriedBytesCopied(&C::Binary_HandleExToHandle, &Carried::ex, &Carried::older);
    ExpectOnlyCarriedBytesCopied(&C::Binary_HandleToHandleEx, &Carried::older, &Carried::ex);
}

}  // namespace
