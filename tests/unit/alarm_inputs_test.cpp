// "Alarm" and "NetAlarm" through the request API, in record mode and in F5 text mode.
#include "events_support.h"

#include <string>
#include <vector>

using events_support::F5Buffer;
using events_support::Written;
using support::Packet;
using support::Parse;
using support::ParseJson;
using support::SameBytes;
using support::Zeroed;

namespace {

// What each section writes of its record but the linkage keys: "Enable" is on only at 1 (NetAlarm:
// at any non-zero), a sensor type other than 0 or 1 writes no key, the schedule is written day by
// day; the conflict record's older linkage is widened without its PTZ links or a schedule.
TEST(EventRecordPacket, OwnKeysBySection) {
    const char* const cases[][4] = {
        {"Alarm", "KZDEV_ALARMIN_CFG", R"({"enable":2,"sensorType":2,"timeSections":[
            ["1 00:00:00-23:59:59"],["0 00:00:00-00:00:00","0 08:05:00-17:00:00"]]})",
         R"({"Enable":false,"SensorType":null,"EventHandler":{"TimeSection":[
            ["1 00:00:00-23:59:59","0 00:00:00-00:00:00"],[null,"0 08:05:00-17:00:00"]]}})"},
        {"Alarm", "KZDEV_ALARMIN_CFG", R"({"enable":1})", R"({"Enable":true,"SensorType":"NC"})"},
        {"NetAlarm", "KZDEV_ALARMIN_CFG", R"({"enable":2,"sensorType":1})",
         R"({"Enable":true,"SensorType":"NO"})"},
        {"NetAlarm", "KZDEV_ALARMIN_CFG", R"({"sensorType":9})",
         R"({"Enable":false,"SensorType":null})"},
        {"StorageLowSpace", "KZDEV_STORAGE_ALARM_CFG",
         R"({"lowSpace":{"enable":2,"lowerLimit":200}})", R"({"Enable":false,"LowerLimit":200})"},
        {"LossDetect", "KZDEV_LOSS_DETECT_CFG", R"({"enable":2})", R"({"Enable":false})"},
        {"BlindDetect", "KZDEV_BLIND_DETECT_CFG", R"({"enable":2})", R"({"Enable":false})"},
        {"NetAbort", "KZDEV_NETABORT_CFG", R"({"enable":2})", R"({"Enable":false})"},
        {"IPConflict", "KZDEV_CONFLICT_CFG", R"({"enable":1,"handler":{"actionFlags":6,
            "ptzLinks":[{},{},{"type":1,"value":7}],"recordLatch":12,"attachmentType":1,
            "recordChannels":[0,0,1,0,0,0,0,0,0,0,0,0,0,0,0,1],"tourChannels":[1]}})",
         R"({"Enable":true,"EventHandler":{"PtzLinkEnable":true,"PtzLink":null,
            "TimeSection":null,"RecordChannels":[2,15],"RecordLatch":12,
            "MailDetail":{"AttachmentType":"video"},"MonitorTour":[{"Channels":[0]}]}})"},
    };
    for (const auto& [section, type, fields, want] : cases) {
        const std::vector<unsigned char> record = view::Bytes(type, fields);
        events_support::ExpectMembers(Packet(section, record.data()).table(), ParseJson(want),
                                      std::string(section) + fields);
    }
}

// "SensorType" is compared without regard to case; any other word, or (NetAlarm) any value that
// is not a string, leaves the byte.
TEST(AlarmRecordParse, EnableAndSensorType) {
    struct Case {
        const char* section;
        const char* table;
        unsigned char enable, sensorType;
    };
    const Case cases[] = {
        {"Alarm", R"({"Enable":true,"SensorType":"no"})", 1, 1},
        {"Alarm", R"({"Enable":false,"SensorType":"Nc"})", 0, 0},
        {"Alarm", R"({"SensorType":"NO "})", 5, 7},
        {"Alarm", R"({"SensorType":1})", 5, 7},
        {"NetAlarm", R"({"SensorType":"NO"})", 5, 1},
        {"NetAlarm", R"({"Enable":false,"SensorType":"nc"})", 0, 0},
        {"NetAlarm", R"({"SensorType":{}})", 5, 7},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.section) + c.table);
        auto cfg = Zeroed<KZDEV_ALARMIN_CFG>();
        cfg->enable = 5;
        cfg->sensorType = 7;
        EXPECT_EQ(Parse(c.section, c.table, cfg.get()), 1);
        EXPECT_EQ(cfg->enable, c.enable);
        EXPECT_EQ(cfg->sensorType, c.sensorType);
    }
}

// Only string elements are read; a text that stops early sets what it has; a flag too large for
// an int keeps its low 32 bits, as the C library's scanner stores it.
TEST(AlarmRecordParse, TimeSectionsFromTheirText) {
    auto cfg = Zeroed<KZDEV_ALARMIN_CFG>();
    const tagKZ_TSECT nines = {9, 9, 9, 9, 9, 9, 9};
    cfg->timeSections[0][1] = cfg->timeSections[2][0] = nines;
    ASSERT_EQ(Parse("NetAlarm", R"({"EventHandler":{"TimeSection":[
        ["1 00:00:00-24:00:00", 5, "0 8:5:0-17:0:0"], ["99999999999 00:00:00-01:00:00"], ["1 06:30:00"]]}})",
                    cfg.get()),
              1);
    const tagKZ_TSECT expected[][3] = {{{1, 0, 0, 0, 24, 0, 0}, nines, {0, 8, 5, 0, 17, 0, 0}},
                                       {{1215752191, 0, 0, 0, 1, 0, 0}},  // 99999999999 - 23 * 2^32
                                       {{1, 6, 30, 0, 9, 9, 9}}};
    for (int day = 0; day < 3; ++day)
        for (int s = 0; s < 3; ++s)
            EXPECT_TRUE(SameBytes(cfg->timeSections[day][s], expected[day][s])) << day << s;
}

// Reading the time sections creates the table's "EventHandler", so the linkage runs and its
// clears apply even to a table that has none; the tour channels, the snapshot channels past the
// sixteenth and all the rest are kept.
TEST(AlarmRecordParse, TableWithoutEventHandlerStillClearsTheLinkageLists) {
    for (const char* section : {"Alarm", "NetAlarm"}) {
        auto cfg = Zeroed<KZDEV_ALARMIN_CFG>();
        KZ_MSG_HANDLE_EX& h = cfg->handler;
        h.actionFlags = 0xFFFF;
        h.recordLatch = 30;
        h.snapshotChannels[20] = h.tourChannels[4] = 1;
        cfg->timeSections[1][1] = {1, 2, 3, 4, 5, 6, 7};
        auto expected = support::CopyOf(*cfg);
        expected->enable = 1;
        h.recordChannels[1] = h.alarmOutChannels[2] = h.snapshotChannels[3] = 1;
        h.ptzLinks[5] = {1, 9};
        ASSERT_EQ(Parse(section, R"({"Enable":true})", cfg.get()), 1);
        EXPECT_TRUE(SameBytes(*cfg, *expected)) << section;
    }
}

// ---- F5 text mode ------------------------------------------------------------------------------

// The section's own member becomes the table, its keys copied whatever their kind; a text that
// does not parse is refused with nothing written (table: null).
TEST(AlarmTextPacket, SectionMemberBecomesTheTable) {
    const char* const both = R"({"Alarm":{"En":2,"Name":7,"SensorType":["NC"]},
        "NetAlarm":{"En":1,"Name":"gate","EventHandler":{"RecordEn":1}}})";
    const char* const cases[][3] = {
        {"Alarm", both, R"({"Enable":false,"Name":7,"SensorType":["NC"]})"},
        {"NetAlarm", both, R"({"Enable":true,"Name":"gate","SensorType":null})"},
        {"Alarm", R"({"NetAlarm":{"En":1}})", R"({"Name":null,"SensorType":null})"},
        {"Alarm", "{", "null"},
        {"Alarm", "", "null"},
    };
    for (const auto& [section, f5, table] : cases) {
        SCOPED_TRACE(std::string(section) + f5);
        const support::Envelope envelope = Packet(section, f5, PROTOFIX_MODE_TEXT);
        Json::Value got = envelope.table(), handler;
        got.removeMember("EventHandler", &handler);
        EXPECT_EQ(envelope.result(), std::string(table) != "null");
        EXPECT_EQ(got, ParseJson(table));
        EXPECT_EQ(handler["RecordEnable"].asBool(), std::string(section) == "NetAlarm");
    }
}

// Only the keys the table holds are merged, into the section's own member; the rest of the
// device's text is kept, and a table that is not an object leaves it as it was (written again).
TEST(AlarmTextParse, TableMergesIntoTheSectionMember) {
    const char* const cases[][4] = {
        {"Alarm",
         R"({"Alarm":{"En":0,"Name":"old","SensorType":"NC","X":5},"NetAlarm":{"En":1},"Other":[1]})",
         R"({"Enable":true,"Name":"new","SensorType":"NO"})",
         R"({"Alarm":{"En":1,"Name":"new","SensorType":"NO","X":5},"NetAlarm":{"En":1},"Other":[1]})"},
        {"NetAlarm", R"({"Alarm":{"En":1}})", R"({"Enable":false,"Name":"n"})",
         R"({"Alarm":{"En":1},"NetAlarm":{"En":0,"Name":"n"}})"},
        {"Alarm", R"({"Other":{"k":"v"}})", R"({"Enable":null,"Name":null,"EventHandler":null})",
         R"({"Other":{"k":"v"}})"},
        {"Alarm", R"({ "Other" : { "k" : "v" } })", "[1,2]", R"({"Other":{"k":"v"}})"},
    };
    for (const auto& [section, old, table, merged] : cases) {
        SCOPED_TRACE(table);
        F5Buffer buffer(old, 256);
        ASSERT_EQ(buffer.Merge(section, table), 1);
        EXPECT_EQ(buffer.Text(), Written(merged));
    }
}

// The rewritten text is copied when the capacity holds it, as strncpy copies at most
// capacity - 1 characters (never the last byte); otherwise the buffer is left byte for byte, as
// it is for a text that does not parse (the last one cut by the capacity).
TEST(AlarmTextParse, CapacityRuleAndUnreadableText) {
    const std::string old = R"({"Alarm":{"En":0}})";
    const std::string merged = Written(R"({"Alarm":{"En":1,"Name":"a longer name"}})");
    struct Case {
        std::string text;
        std::size_t capacity, copied;  // copied: of the merged text; 0 when refused
        bool terminated;
    };
    const Case cases[] = {
        {old, merged.size() + 2, merged.size(), true},
        {old, merged.size() + 1, merged.size(), false},  // no room left for the NUL
        {old, merged.size(), merged.size() - 1, false},  // the closing newline is lost
        {old, merged.size() - 1, 0, false},
        {R"({"Alarm":)", 64, 0, false},
        {"", 8, 0, false},
        {old, 5, 0, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text + " " + std::to_string(c.capacity));
        F5Buffer buffer(c.text, c.capacity);
        const std::vector<char> before = buffer.bytes;
        ASSERT_EQ(buffer.Merge("Alarm", R"({"Enable":true,"Name":"a longer name"})"),
                  c.copied ? 1 : -1);
        EXPECT_TRUE(c.copied != 0 || buffer.bytes == before);
        EXPECT_EQ(std::string(buffer.bytes.data(), c.copied), merged.substr(0, c.copied));
        EXPECT_TRUE(!c.terminated || buffer.bytes[c.copied] == '\0');
        EXPECT_EQ(buffer.bytes.back(), before.back());
    }
}

}  // namespace
