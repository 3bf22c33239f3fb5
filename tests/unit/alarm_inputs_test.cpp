// "Alarm" and "NetAlarm" through the request API, in record mode and in F5 text mode.
#include "request_support.h"

#include <algorithm>
#include <vector>

using support::Packet;
using support::Parse;
using support::ParseJson;
using support::Zeroed;

namespace {

const char* const kSections[] = {"Alarm", "NetAlarm"};

TEST(AlarmRecordPacket, EnableAndSensorTypeDifferBySection) {
    struct Case {
        const char* section;
        unsigned char enable, sensorType;
        bool expectEnable;
        const char* expectSensor;  // null: no key
    };
    const Case cases[] = {
        {"Alarm", 1, 0, true, "NC"},     {"Alarm", 2, 1, false, "NO"},  {"Alarm", 0, 2, false, nullptr},
        {"NetAlarm", 2, 0, true, "NC"},  {"NetAlarm", 255, 1, true, "NO"},
        {"NetAlarm", 0, 9, false, nullptr},
    };
    for (const Case& c : cases) {
        auto cfg = Zeroed<KZDEV_ALARMIN_CFG>();
        cfg->enable = c.enable;
        cfg->sensorType = c.sensorType;
        const support::Envelope envelope = Packet(c.section, cfg.get());
        ASSERT_TRUE(envelope.result());
        const Json::Value& table = envelope.table();
        EXPECT_EQ(table["Enable"], c.expectEnable) << c.section << int(c.enable);
        EXPECT_EQ(table.isMember("SensorType"), c.expectSensor != nullptr) << c.section;
        if (c.expectSensor) {
            EXPECT_EQ(table["SensorType"], c.expectSensor);
        }
        EXPECT_FALSE(table.isMember("Name"));
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

TEST(AlarmRecordParse, SensorTypeWords) {
    struct Case {
        const char* section;
        const char* value;  // JSON text of "SensorType"
        unsigned char expect;
    };
    const Case cases[] = {
        {"Alarm", R"("no")", 1},     {"Alarm", R"("Nc")", 0},       {"Alarm", R"("NO ")", 7},
        {"Alarm", "1", 7},           {"Alarm", "null", 7},          {"Alarm", "true", 7},
        {"NetAlarm", R"("NO")", 1},  {"NetAlarm", R"("nc")", 0},    {"NetAlarm", "1", 7},
        {"NetAlarm", "{}", 7},       {"NetAlarm", "[\"NO\"]", 7},
    };
    for (const Case& c : cases) {
        auto cfg = Zeroed<KZDEV_ALARMIN_CFG>();
        cfg->sensorType = 7;
        const std::string table = std::string(R"({"SensorType":)") + c.value + "}";
        EXPECT_EQ(Parse(c.section, table, cfg.get()), 1) << c.section << table;
        EXPECT_EQ(cfg->sensorType, c.expect) << c.section << table;
    }
}

TEST(AlarmRecordParse, EnableAndTimeSections) {
    auto cfg = Zeroed<KZDEV_ALARMIN_CFG>();
    cfg->enable = 5;
    cfg->timeSections[0][1] = {9, 9, 9, 9, 9, 9, 9};
    cfg->timeSections[2][0] = {9, 9, 9, 9, 9, 9, 9};
    ASSERT_EQ(Parse("NetAlarm", R"({"Enable":true,"EventHandler":{"TimeSection":[
        ["1 00:00:00-24:00:00", 5, "0 8:5:0-17:0:0"],
        ["99999999999 00:00:00-01:00:00"],
        ["1 06:30:00"]]}})", cfg.get()), 1);
    EXPECT_EQ(cfg->enable, 1);
    const tagKZ_TSECT full = {1, 0, 0, 0, 24, 0, 0};
    const tagKZ_TSECT untouched = {9, 9, 9, 9, 9, 9, 9};
    const tagKZ_TSECT loose = {0, 8, 5, 0, 17, 0, 0};
    const tagKZ_TSECT partial = {1, 6, 30, 0, 9, 9, 9};
    EXPECT_TRUE(support::SameBytes(cfg->timeSections[0][0], full));
    EXPECT_TRUE(support::SameBytes(cfg->timeSections[0][1], untouched));
    EXPECT_TRUE(support::SameBytes(cfg->timeSections[0][2], loose));
    EXPECT_TRUE(support::SameBytes(cfg->timeSections[2][0], partial));
    const tagKZ_TSECT zero = {};  // a flag too large for an int fails the whole text
    EXPECT_TRUE(support::SameBytes(cfg->timeSections[1][0], zero));

    ASSERT_EQ(Parse("NetAlarm", R"({"Enable":false})", cfg.get()), 1);
    EXPECT_EQ(cfg->enable, 0);
}

// Reading the time sections creates the table's "EventHandler", so the linkage runs and its
// clears apply even to a table that has none; the tour channels are kept.
TEST(AlarmRecordParse, TableWithoutEventHandlerStillClearsTheLinkageLists) {
    for (const char* section : kSections) {
        auto cfg = Zeroed<KZDEV_ALARMIN_CFG>();
        KZ_MSG_HANDLE_EX& h = cfg->handler;
        h.actionFlags = 0xFFFF;
        h.recordChannels[1] = h.alarmOutChannels[2] = h.snapshotChannels[3] = 1;
        h.snapshotChannels[20] = h.tourChannels[4] = 1;
        h.ptzLinks[5] = {1, 9};
        h.recordLatch = 30;
        cfg->timeSections[1][1] = {1, 2, 3, 4, 5, 6, 7};
        const auto before = support::CopyOf(*cfg);

        ASSERT_EQ(Parse(section, R"({"Enable":true})", cfg.get()), 1);
        EXPECT_EQ(h.recordChannels[1], 0);
        EXPECT_EQ(h.alarmOutChannels[2], 0);
        EXPECT_EQ(h.snapshotChannels[3], 0);
        EXPECT_EQ(h.ptzLinks[5].type, 0);
        EXPECT_EQ(h.ptzLinks[5].value, 0);
        EXPECT_EQ(h.snapshotChannels[20], 1);
        EXPECT_EQ(h.tourChannels[4], 1);
        EXPECT_EQ(h.actionFlags, 0xFFFFu);
        EXPECT_EQ(h.recordLatch, 30);
        EXPECT_TRUE(support::SameBytes(cfg->timeSections, before->timeSections));
    }
}

// ---- F5 text mode ------------------------------------------------------------------------------

const char kAlarmF5[] =
    R"({"Alarm":{"En":1,"Name":"door","SensorType":"NO","EventHandler":{"RecordEn":1,)"
    R"("Record":[{"En":0},{"En":1}],"TimeSection":[["1 00:00:00-23:59:59"]]}},"Other":{"x":1}})";

TEST(AlarmTextPacket, SectionMemberBecomesTheTable) {
    const support::Envelope envelope = Packet("Alarm", kAlarmF5, PROTOFIX_MODE_TEXT);
    ASSERT_TRUE(envelope.result());
    const Json::Value& table = envelope.table();
    EXPECT_EQ(table["Enable"], true);
    EXPECT_EQ(table["Name"], "door");
    EXPECT_EQ(table["SensorType"], "NO");
    EXPECT_EQ(table["EventHandler"]["RecordEnable"], true);
    EXPECT_EQ(table["EventHandler"]["RecordChannels"], ParseJson("[1]"));
    EXPECT_EQ(table["EventHandler"]["TimeSection"], ParseJson(R"([["1 00:00:00-23:59:59"]])"));
}

// The section's member becomes the table, its keys copied whatever their kind; a text that does
// not parse is refused with nothing written (table: null).
TEST(AlarmTextPacket, KeysCopiedWhateverTheirKind) {
    struct Case {
        const char* section;
        const char* f5;
        const char* table;
    };
    const Case cases[] = {
        {"Alarm", R"({"Alarm":{"En":2,"Name":7,"SensorType":["NC"]}})", R"({"Enable":false,"Name":7,"SensorType":["NC"]})"},
        {"Alarm", R"({"NetAlarm":{"En":1}})", R"({"Name":null,"SensorType":null})"},
        {"NetAlarm", R"({"NetAlarm":{"En":1,"Name":"gate"}})", R"({"Enable":true,"Name":"gate","SensorType":null})"},
        {"Alarm", "{", "null"},
        {"Alarm", "", "null"},
    };
    for (const Case& c : cases) {
        const support::Envelope envelope = Packet(c.section, c.f5, PROTOFIX_MODE_TEXT);
        EXPECT_EQ(envelope.result(), std::string(c.table) != "null") << c.f5;
        EXPECT_EQ(envelope.table(), ParseJson(c.table)) << c.f5;
    }
}

// An F5 buffer of exactly capacity bytes on the heap, holding text.
struct F5Buffer {
    F5Buffer(const std::string& text, std::size_t capacity) : bytes(capacity, '#') {
        std::copy_n(text.begin(), std::min(text.size(), capacity), bytes.begin());
        if (text.size() < capacity) bytes[text.size()] = '\0';
    }
    int Merge(const char* section, const std::string& table) {
        return Parse(section, table, bytes.data(), static_cast<int>(bytes.size()), PROTOFIX_MODE_TEXT);
    }
    std::string Text() const { return std::string(bytes.data(), strnlen(bytes.data(), bytes.size())); }
    std::vector<char> bytes;
};

std::string Written(const std::string& json) { return Json::FastWriter().write(ParseJson(json)); }

// Only the keys the table holds are merged, into the section's own member; nothing else of the
// device's text changes, and a table that is not an object leaves it as it was.
TEST(AlarmTextParse, TableMergesIntoTheSectionMember) {
    struct Case {
        const char* section;
        const char* old;
        const char* table;
        const char* merged;
    };
    const Case cases[] = {
        {"Alarm", R"({"Alarm":{"En":0,"Name":"old","SensorType":"NC","X":5},"Other":[1]})",
         R"({"Enable":true,"Name":"new","SensorType":"NO"})",
         R"({"Alarm":{"En":1,"Name":"new","SensorType":"NO","X":5},"Other":[1]})"},
        {"NetAlarm", R"({"Alarm":{"En":1}})", R"({"Enable":false,"Name":"n"})",
         R"({"Alarm":{"En":1},"NetAlarm":{"En":0,"Name":"n"}})"},
        {"Alarm", R"({"Other":{"k":"v"}})", R"({"Enable":null,"Name":null,"EventHandler":null})", R"({"Other":{"k":"v"}})"},
        {"Alarm", R"({"Other":{"k":"v"}})", "[1,2]", R"({"Other":{"k":"v"}})"},
        {"Alarm", R"({"Other":{"k":"v"}})", "5", R"({"Other":{"k":"v"}})"},
        {"Alarm", R"({"Other":{"k":"v"}})", "null", R"({"Other":{"k":"v"}})"},
    };
    for (const Case& c : cases) {
        F5Buffer buffer(c.old, 256);
        ASSERT_EQ(buffer.Merge(c.section, c.table), 1) << c.table;
        EXPECT_EQ(buffer.Text(), Written(c.merged)) << c.table;
    }
}

TEST(AlarmTextParse, EventHandlerMergesThroughTheLinkage) {
    F5Buffer buffer(R"({"Alarm":{"EventHandler":{"RecordEn":0,"Record":[{"En":1},{"En":0},{"En":0}],)"
                    R"("TourEn":1,"Tour":[{"En":1}]}}})",
                    1024);
    ASSERT_EQ(buffer.Merge("Alarm", R"({"EventHandler":{"RecordEnable":true,"RecordChannels":[2,9]}})"),
              1);
    const Json::Value handler = ParseJson(buffer.Text())["Alarm"]["EventHandler"];
    EXPECT_EQ(handler["RecordEn"], 1);
    EXPECT_EQ(handler["Record"], ParseJson(R"([{"En":0},{"En":0},{"En":1}])"));
    // A table without "MonitorTour" counts as having one with nothing on: the tour is cleared.
    EXPECT_EQ(handler["TourEn"], 0);
    EXPECT_EQ(handler["Tour"], ParseJson(R"([{"En":0}])"));
}

// The rewritten text is copied when the capacity holds it, as strncpy copies at most
// capacity - 1 characters; otherwise the buffer is left byte for byte.
TEST(AlarmTextParse, CapacityRule) {
    const std::string old = R"({"Alarm":{"En":0}})";
    const std::string table = R"({"Enable":true,"Name":"a longer name"})";
    const std::string merged = Written(R"({"Alarm":{"En":1,"Name":"a longer name"}})");
    struct Case {
        std::size_t capacity;
        int result;
        std::size_t copied;  // characters of the merged text in the buffer
        bool terminated;     // a NUL follows them
    };
    const Case cases[] = {
        {merged.size() + 2, 1, merged.size(), true},
        {merged.size() + 1, 1, merged.size(), false},      // no room left for the NUL
        {merged.size(), 1, merged.size() - 1, false},      // the closing newline is lost
        {merged.size() - 1, -1, 0, false},
        {old.size() + 1, -1, 0, false},
    };
    for (const Case& c : cases) {
        F5Buffer buffer(old, c.capacity);
        const std::vector<char> before = buffer.bytes;
        ASSERT_EQ(buffer.Merge("Alarm", table), c.result) << c.capacity;
        if (c.result == -1) {
            EXPECT_EQ(buffer.bytes, before) << c.capacity;
            continue;
        }
        EXPECT_EQ(std::string(buffer.bytes.data(), c.copied), merged.substr(0, c.copied));
        if (c.terminated) {
            EXPECT_EQ(buffer.bytes[c.copied], '\0');
        }
        // strncpy stops short of the last byte of the buffer, whatever it copies.
        EXPECT_EQ(buffer.bytes.back(), before.back()) << c.capacity;
    }
}

TEST(AlarmTextParse, UnreadableBufferRefusesAndStaysAsItWas) {
    struct Case {
        std::string text;
        std::size_t capacity;
    };
    const Case cases[] = {{"{\"Alarm\":", 64}, {"", 8}, {"{\"Alarm\":{}}", 5}};  // last: cut by capacity
    for (const Case& c : cases) {
        F5Buffer buffer(c.text, c.capacity);
        const std::vector<char> before = buffer.bytes;
        EXPECT_EQ(buffer.Merge("Alarm", R"({"Enable":true})"), -1) << c.text;
        EXPECT_EQ(buffer.bytes, before) << c.text;
    }
    EXPECT_EQ(Parse("Alarm", R"({"Enable":true})", nullptr, 100, PROTOFIX_MODE_TEXT), -1);
}

}  // namespace
