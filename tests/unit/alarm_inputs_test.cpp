// "Alarm" and "NetAlarm" through the request API, in record mode and in F5 text mode.
#include "request_support.h"

#include <algorithm>
#include <vector>

using support::Packet;
using support::Parse;
using support::ParseJson;
using support::Zeroed;

namespace {

// The table without its "EventHandler", which the time-section test below looks at.
TEST(AlarmRecordPacket, EnableAndSensorTypeDifferBySection) {
    struct Case {
        const char* section;
        unsigned char enable, sensorType;
        const char* table;
    };
    const Case cases[] = {
        {"Alarm", 1, 2, R"({"Enable":true})"},
        {"Alarm", 2, 1, R"({"Enable":false,"SensorType":"NO"})"},
        {"NetAlarm", 2, 0, R"({"Enable":true,"SensorType":"NC"})"},
        {"NetAlarm", 0, 9, R"({"Enable":false})"},
    };
    for (const Case& c : cases) {
        auto cfg = Zeroed<KZDEV_ALARMIN_CFG>();
        cfg->enable = c.enable;
        cfg->sensorType = c.sensorType;
        Json::Value table = Packet(c.section, cfg.get()).table();
        EXPECT_TRUE(table["EventHandler"].isObject());
        table.removeMember("EventHandler");
        EXPECT_EQ(table, ParseJson(c.table)) << c.section << " enable " << int(c.enable);
    }
}

TEST(AlarmRecordPacket, TimeSectionsAndLinkageGoUnderEventHandler) {
    auto cfg = Zeroed<KZDEV_ALARMIN_CFG>();
    cfg->timeSections[0][0] = {1, 0, 0, 0, 23, 59, 59};
    cfg->timeSections[6][5] = {0, 8, 5, 0, 17, 0, 0};
    cfg->handler.actionFlags = EVENT_ACTION_RECORD;
    cfg->handler.recordChannels[3] = 1;
    const Json::Value handler = Packet("Alarm", cfg.get()).table()["EventHandler"];
    ASSERT_EQ(handler["TimeSection"].size(), 7u);
    for (const Json::Value& day : handler["TimeSection"]) ASSERT_EQ(day.size(), 6u);
    EXPECT_EQ(handler["TimeSection"][0][0], "1 00:00:00-23:59:59");
    EXPECT_EQ(handler["TimeSection"][3][2], "0 00:00:00-00:00:00");
    EXPECT_EQ(handler["TimeSection"][6][5], "0 08:05:00-17:00:00");
    EXPECT_EQ(handler["RecordEnable"], true);
    EXPECT_EQ(handler["RecordChannels"], ParseJson("[3]"));
}

// "SensorType" is compared without regard to case; any other word, or (NetAlarm) any value that
// is not a string, leaves the byte. (Alarm reads a non-string too: see the wrong-kind table.)
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
        auto cfg = Zeroed<KZDEV_ALARMIN_CFG>();
        cfg->enable = 5;
        cfg->sensorType = 7;
        EXPECT_EQ(Parse(c.section, c.table, cfg.get()), 1) << c.section << c.table;
        EXPECT_EQ(cfg->enable, c.enable) << c.section << c.table;
        EXPECT_EQ(cfg->sensorType, c.sensorType) << c.section << c.table;
    }
}

// Only string elements are read; a text that stops early sets what it has; a flag too large for
// an int fails the whole text (all zero).
TEST(AlarmRecordParse, TimeSectionsFromTheirText) {
    auto cfg = Zeroed<KZDEV_ALARMIN_CFG>();
    const tagKZ_TSECT nines = {9, 9, 9, 9, 9, 9, 9};
    cfg->timeSections[0][1] = cfg->timeSections[2][0] = nines;
    ASSERT_EQ(Parse("NetAlarm", R"({"EventHandler":{"TimeSection":[
        ["1 00:00:00-24:00:00", 5, "0 8:5:0-17:0:0"], ["99999999999 00:00:00-01:00:00"], ["1 06:30:00"]]}})",
                    cfg.get()),
              1);
    struct Case {
        int day, section;
        tagKZ_TSECT expect;
    };
    const Case cases[] = {{0, 0, {1, 0, 0, 0, 24, 0, 0}},
                          {0, 1, nines},
                          {0, 2, {0, 8, 5, 0, 17, 0, 0}},
                          {1, 0, {}},
                          {2, 0, {1, 6, 30, 0, 9, 9, 9}}};
    for (const Case& c : cases)
        EXPECT_TRUE(support::SameBytes(cfg->timeSections[c.day][c.section], c.expect))
            << c.day << c.section;
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
        EXPECT_TRUE(support::SameBytes(*cfg, *expected)) << section;
    }
}

// ---- F5 text mode ------------------------------------------------------------------------------

// The section's own member becomes the table, its keys copied whatever their kind; a text that
// does not parse is refused with nothing written (table: null).
TEST(AlarmTextPacket, SectionMemberBecomesTheTable) {
    const char* const both =
        R"({"Alarm":{"En":2,"Name":7,"SensorType":["NC"]},"NetAlarm":{"En":1,"Name":"gate"}})";
    struct Case {
        const char* section;
        const char* f5;
        const char* table;
    };
    const Case cases[] = {
        {"Alarm", both, R"({"Enable":false,"Name":7,"SensorType":["NC"]})"},
        {"NetAlarm", both, R"({"Enable":true,"Name":"gate","SensorType":null})"},
        {"Alarm", R"({"NetAlarm":{"En":1}})", R"({"Name":null,"SensorType":null})"},
        {"Alarm", "{", "null"},
        {"Alarm", "", "null"},
    };
    for (const Case& c : cases) {
        const support::Envelope envelope = Packet(c.section, c.f5, PROTOFIX_MODE_TEXT);
        EXPECT_EQ(envelope.result(), std::string(c.table) != "null") << c.section << c.f5;
        EXPECT_EQ(envelope.table(), ParseJson(c.table)) << c.section << c.f5;
    }
    const char* const f5 =
        R"({"NetAlarm":{"EventHandler":{"RecordEn":1,"Record":[{"En":0},{"En":1}],)"
        R"("TimeSection":[["1 00:00:00-23:59:59"]]}}})";
    const Json::Value handler = Packet("NetAlarm", f5, PROTOFIX_MODE_TEXT).table()["EventHandler"];
    EXPECT_EQ(handler["RecordEnable"], true);
    EXPECT_EQ(handler["RecordChannels"], ParseJson("[1]"));
    EXPECT_EQ(handler["TimeSection"], ParseJson(R"([["1 00:00:00-23:59:59"]])"));
}

using support::F5Buffer;
using support::Written;

// Only the keys the table holds are merged, into the section's own member; the rest of the
// device's text is kept, and a table that is not an object leaves it as it was (written again).
TEST(AlarmTextParse, TableMergesIntoTheSectionMember) {
    struct Case {
        const char* section;
        const char* old;
        const char* table;
        const char* merged;
    };
    const Case cases[] = {
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
    for (const Case& c : cases) {
        F5Buffer buffer(c.old, 256);
        ASSERT_EQ(buffer.Merge(c.section, c.table), 1) << c.table;
        EXPECT_EQ(buffer.Text(), Written(c.merged)) << c.table;
    }
}

TEST(AlarmTextParse, EventHandlerMergesThroughTheLinkage) {
    F5Buffer buffer(
        R"({"Alarm":{"EventHandler":{"RecordEn":0,"Record":[{"En":1},{"En":0},{"En":0}],)"
        R"("TourEn":1,"Tour":[{"En":1}]}}})",
        1024);
    ASSERT_EQ(
        buffer.Merge("Alarm", R"({"EventHandler":{"RecordEnable":true,"RecordChannels":[2,9]}})"),
        1);
    const Json::Value handler = ParseJson(buffer.Text())["Alarm"]["EventHandler"];
    EXPECT_EQ(handler["RecordEn"], 1);
    EXPECT_EQ(handler["Record"], ParseJson(R"([{"En":0},{"En":0},{"En":1}])"));
    // A table without "MonitorTour" leaves the F5 tour keys as the device gave them.
    EXPECT_EQ(handler["TourEn"], 1);
    EXPECT_EQ(handler["Tour"], ParseJson(R"([{"En":1}])"));
}

// The rewritten text is copied when the capacity holds it, as strncpy copies at most
// capacity - 1 characters (never the last byte); otherwise the buffer is left byte for byte.
TEST(AlarmTextParse, CapacityRule) {
    const std::string merged = Written(R"({"Alarm":{"En":1,"Name":"a longer name"}})");
    struct Case {
        std::size_t capacity;
        int result;
        std::size_t copied;
        bool terminated;
    };
    const Case cases[] = {
        {merged.size() + 2, 1, merged.size(), true},
        {merged.size() + 1, 1, merged.size(), false},  // no room left for the NUL
        {merged.size(), 1, merged.size() - 1, false},  // the closing newline is lost
        {merged.size() - 1, -1, 0, false},
    };
    for (const Case& c : cases) {
        F5Buffer buffer(R"({"Alarm":{"En":0}})", c.capacity);
        const std::vector<char> before = buffer.bytes;
        ASSERT_EQ(buffer.Merge("Alarm", R"({"Enable":true,"Name":"a longer name"})"), c.result)
            << c.capacity;
        EXPECT_EQ(buffer.bytes == before, c.result == -1)
            << c.capacity;  // refused: byte for byte as it was
        EXPECT_EQ(std::string(buffer.bytes.data(), c.copied), merged.substr(0, c.copied))
            << c.capacity;
        EXPECT_TRUE(!c.terminated || buffer.bytes[c.copied] == '\0') << c.capacity;
        EXPECT_EQ(buffer.bytes.back(), before.back()) << c.capacity;
    }
}

TEST(AlarmTextParse, UnreadableBufferRefusesAndStaysAsItWas) {
    struct Case {
        std::string text;
        std::size_t capacity;
    };
    const Case cases[] = {
        {"{\"Alarm\":", 64}, {"", 8}, {"{\"Alarm\":{}}", 5}};  // last: cut by capacity
    for (const Case& c : cases) {
        F5Buffer buffer(c.text, c.capacity);
        const std::vector<char> before = buffer.bytes;
        EXPECT_EQ(buffer.Merge("Alarm", R"({"Enable":true})"), -1) << c.text;
        EXPECT_EQ(buffer.bytes, before) << c.text;
    }
    EXPECT_EQ(Parse("Alarm", R"({"Enable":true})", nullptr, 100, PROTOFIX_MODE_TEXT), -1);
}

}  // namespace
