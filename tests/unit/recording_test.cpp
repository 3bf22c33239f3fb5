// "Record" and "RecordSource" through the request API, in record mode and in F5 text mode.
#include "request_support.h"

#include <algorithm>
#include <string>
#include <vector>

using support::CopyOf;
using support::F5Buffer;
using support::Packet;
using support::Parse;
using support::ParseJson;
using support::SameBytes;
using support::Zeroed;

namespace {

// A record whose every field, the untouched ones included, holds a value of its own.
std::unique_ptr<KZDEV_RECORD_CFG> Filled() {
    auto cfg = Zeroed<KZDEV_RECORD_CFG>();
    cfg->nReserved = 77;
    for (int d = 0; d < KZ_WEEK_DAYS; ++d)
        for (int s = 0; s < KZ_DAY_SECTIONS; ++s) cfg->stSect[d][s] = {3, d, s, 1, 2, 3, 4};
    cfg->byPreRecord = 9;
    cfg->byReserved = 0xAB;
    cfg->byVideoStream = 2;
    cfg->reserved[0] = 0xCD;
    return cfg;
}

// 7 days of 6 sections, all "text", with the given entries replaced.
Json::Value Schedule(const char* text) {
    Json::Value schedule(Json::arrayValue);
    for (int d = 0; d < KZ_WEEK_DAYS; ++d)
        for (int s = 0; s < KZ_DAY_SECTIONS; ++s) schedule[d][s] = text;
    return schedule;
}

TEST(RecordPacket, ScheduleAsFlagsAndPreRecord) {
    auto cfg = Zeroed<KZDEV_RECORD_CFG>();
    cfg->byPreRecord = 200;
    cfg->byVideoStream = 1;
    cfg->stSect[0][0] = {6, 8, 0, 0, 18, 0, 0};  // a mask is written as 1
    cfg->stSect[6][5] = {-1, 0, 0, 0, 24, 0, 0};
    cfg->stSect[3][2] = {0, 7, 5, 9, 7, 30, 0};
    Json::Value expected(Json::objectValue);
    expected["PreRecord"] = 200;
    expected["TimeSection"] = Schedule("0 00:00:00-00:00:00");
    expected["TimeSection"][0][0] = "1 08:00:00-18:00:00";
    expected["TimeSection"][6][5] = "1 00:00:00-24:00:00";
    expected["TimeSection"][3][2] = "0 07:05:09-07:30:00";
    const support::Envelope envelope = Packet("Record", cfg.get());
    EXPECT_TRUE(envelope.result());
    EXPECT_EQ(envelope.table(), expected);
}

// Only a stream index of 0 to 3 gives "VideoStream"; another leaves the table null, and succeeds.
TEST(RecordSourcePacket, StreamNameByIndex) {
    struct Case {
        unsigned char stream;
        const char* table;
    };
    const Case cases[] = {{0, R"({"VideoStream":"Main"})"},
                          {1, R"({"VideoStream":"Extra1"})"},
                          {3, R"({"VideoStream":"Extra3"})"},
                          {4, "null"},
                          {7, "null"}};
    for (const Case& c : cases) {
        auto cfg = Filled();
        cfg->byVideoStream = c.stream;
        const support::Envelope envelope = Packet("RecordSource", cfg.get());
        EXPECT_TRUE(envelope.result()) << int(c.stream);
        EXPECT_EQ(envelope.table(), ParseJson(c.table)) << int(c.stream);
    }
}

// Each section changes only its own fields; masks from the text's value (bit 0 to bit 2, bits 1
// and 2 to bits 0 and 1, bit 4 to bit 3).
TEST(RecordParse, PreRecordAndScheduleOnly) {
    auto cfg = Filled();
    auto expected = CopyOf(*cfg);
    expected->byPreRecord = 44;                         // 300, low 8 bits
    expected->stSect[0][0] = {5, 0, 0, 0, 23, 59, 59};  // 3 -> mask 5
    expected->stSect[0][2] = {8, 1, 2, 3, 4, 5, 6};     // 16 -> mask 8
    expected->stSect[1][0] = {0, 6, 0, 0, 7, 0, 0};     // 8 -> mask 0
    expected->stSect[2][5] = {4, 8, 5, 0, 17, 0, 0};    // 1 -> mask 4, narrow input digits
    expected->stSect[2][1] = {3, 6, 5, 0, 2, 3, 4};     // stops after the begin: mask untouched
    ASSERT_EQ(Parse("Record", R"({"PreRecord":300,"VideoStream":"Main","TimeSection":[
        ["3 00:00:00-23:59:59", 1, "16 01:02:03-04:05:06", null],
        ["8 06:00:00-07:00:00"],
        [[], "1 06:05:00", {}, true, "x", "1 8:5:0-17:0:0"]]})",
                    cfg.get()),
              1);
    EXPECT_TRUE(SameBytes(*cfg, *expected));
}

TEST(RecordParse, TablesThatChangeNothing) {
    for (const char* table : {"[1]", R"("Main")", "{}", R"({"PreRecord":null,"TimeSection":null})",
                              R"({"TimeSection":{"0":["1 00:00:00-01:00:00"]}})",
                              R"({"TimeSection":"1 00:00:00-01:00:00"})"}) {
        auto cfg = Filled();
        auto before = CopyOf(*cfg);
        EXPECT_EQ(Parse("Record", table, cfg.get()), 1) << table;
        EXPECT_TRUE(SameBytes(*cfg, *before)) << table;
    }
}

// "VideoStream" is only a presence test: the names are compared with the text of the whole
// table, which the JSON library does not give for an object.
TEST(RecordSourceParse, ComparesWithTheWholeTable) {
    for (const char* table : {"{}", R"({"VideoStream":null})", R"(["Extra1"])", R"("Extra1")"}) {
        auto cfg = Filled();
        auto before = CopyOf(*cfg);
        EXPECT_EQ(Parse("RecordSource", table, cfg.get()), 1) << table;
        EXPECT_TRUE(SameBytes(*cfg, *before)) << table;
    }
    auto cfg = Filled();
    auto before = CopyOf(*cfg);
    EXPECT_THROW(Parse("RecordSource", R"({"VideoStream":"Extra1"})", cfg.get()), Json::LogicError);
    EXPECT_TRUE(SameBytes(*cfg, *before));
}

// ---- F5 text mode ------------------------------------------------------------------------------

// One scratch section for all entries: "0 8:5:0" reaches only the flag and the begin, and keeps
// the end of the entry before; entries that are not strings are not written.
TEST(RecordTextPacket, PreRecAndSchedule) {
    const char* const f5 = R"({"Record":{"PreRec":5,"Stream":1,"TimeSection":[
        ["2 08:00:00-18:00:00", "0 8:5:0", 3, "16 01:02:03-04:05:06"], "bad", [null, "9 00:00:00-24:00:00"]]}})";
    const Json::Value expected = ParseJson(R"({"PreRecord":5,"TimeSection":[
        ["1 08:00:00-18:00:00", "0 08:05:00-18:00:00", null, "1 01:02:03-04:05:06"], null,
        [null, "1 00:00:00-24:00:00"]]})");
    const support::Envelope envelope = Packet("Record", f5, PROTOFIX_MODE_TEXT);
    EXPECT_TRUE(envelope.result());
    EXPECT_EQ(envelope.table(), expected);
}

TEST(RecordTextPacket, StreamAndEmptyTexts) {
    struct Case {
        const char* section;
        const char* f5;
        bool result;
        const char* table;
    };
    const Case cases[] = {
        {"RecordSource", R"({"Record":{"Stream":2,"PreRec":1}})", true,
         R"({"VideoStream":"Extra2"})"},
        {"RecordSource", R"({"Record":{"Stream":4}})", true, "null"},
        {"RecordSource", R"({"Record":{"Stream":null}})", true, "null"},
        {"RecordSource", R"({"Record":[0]})", true, "null"},
        {"Record", R"({"Other":{"PreRec":1}})", true, "null"},
        {"Record", R"([{"Record":{"PreRec":1}}])", true, "null"},
        {"Record", "{", false, "null"},
        {"RecordSource", "", false, "null"},
    };
    for (const Case& c : cases) {
        const support::Envelope envelope = Packet(c.section, c.f5, PROTOFIX_MODE_TEXT);
        EXPECT_EQ(envelope.result(), c.result) << c.f5;
        EXPECT_EQ(envelope.table(), ParseJson(c.table)) << c.f5;
    }
}

// The table's flag goes to the F5 text as a record-type mask (1 becomes 4); a text that does not
// scan keeps the scratch section of the entry before.
TEST(RecordTextParse, MergesPreRecordAndSchedule) {
    struct Case {
        const char *section, *old, *table, *merged;
    };
    const Case cases[] = {
        {"Record",
         R"({"Record":{"PreRec":1,"Stream":0,"TimeSection":[["0 00:00:00-00:00:00"]]},"X":[1]})",
         R"({"PreRecord":7,"VideoStream":"Extra1","TimeSection":[["1 08:00:00-18:00:00",5,"bad"],[],["3 01:00:00-02:00:00"]]})",
         R"({"Record":{"PreRec":7,"Stream":0,"TimeSection":[["4 08:00:00-18:00:00",null,"4 08:00:00-18:00:00"],
             null,["5 01:00:00-02:00:00"]]},"X":[1]})"},
        {"Record", R"({"X":1})", R"({"PreRecord":300})", R"({"Record":{"PreRec":300},"X":1})"},
        {"Record", R"({"Record":5})", R"({"PreRecord":3,"TimeSection":[["1 00:00:00-01:00:00"]]})",
         R"({"Record":5})"},
        {"Record", R"({"Record":{"TimeSection":{"a":1}}})",
         R"({"TimeSection":[["1 00:00:00-01:00:00"]]})", R"({"Record":{"TimeSection":{"a":1}}})"},
        {"Record", R"({"X":1})", R"([{"PreRecord":3}])", R"({"X":1})"},
        {"RecordSource", R"({"Record":{"Stream":0,"PreRec":2}})",
         R"({"VideoStream":"extra2","PreRecord":9})", R"({"Record":{"Stream":2,"PreRec":2}})"},
        {"RecordSource", R"({"Record":{"Stream":0}})", R"({"VideoStream":"Extra9"})",
         R"({"Record":{"Stream":0}})"},
        {"RecordSource", "[1]", R"({"VideoStream":"Main"})", "[1]"},
        {"RecordSource", "{}", R"({"VideoStream":"MAIN"})", R"({"Record":{"Stream":0}})"},
    };
    for (const Case& c : cases) {
        F5Buffer buffer(c.old, 512);
        ASSERT_EQ(buffer.Merge(c.section, c.table), 1) << c.table;
        EXPECT_EQ(buffer.Document(), ParseJson(c.merged)) << c.table;
    }
}

// The rewritten text is copied when the capacity holds it, at most capacity - 1 characters;
// otherwise, or when the buffer does not parse, the buffer is left byte for byte.
TEST(RecordTextParse, CapacityRule) {
    const std::string merged = Json::FastWriter().write(ParseJson(R"({"Record":{"Stream":1}})"));
    struct Case {
        const char* old;
        std::size_t capacity;
        int result;
    };
    const Case cases[] = {{"{}", merged.size(), 1},
                          {"{}", merged.size() - 1, -1},
                          {R"({"Record":)", 64, -1},
                          {"", 64, -1}};
    for (const Case& c : cases) {
        F5Buffer buffer(c.old, c.capacity);
        const std::vector<char> before = buffer.bytes;
        ASSERT_EQ(buffer.Merge("RecordSource", R"({"VideoStream":"Extra1"})"), c.result)
            << c.capacity;
        if (c.result == -1) {
            EXPECT_EQ(buffer.bytes, before) << c.capacity;
            continue;
        }
        EXPECT_EQ(std::string(buffer.bytes.data(), c.capacity - 1),
                  merged.substr(0, c.capacity - 1));
        EXPECT_EQ(buffer.bytes.back(), '#');  // no terminator
    }
}

}  // namespace
