// "Record" and "RecordSource" through the request API, in record mode and in F5 text mode.
#include "overlay_support.h"

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
    for (auto& day : cfg->stSect)
        for (tagKZ_TSECT& s : day) s = {3, 9, 8, 1, 2, 3, 4};
    cfg->byPreRecord = 9;
    cfg->byReserved = 0xAB;
    cfg->byVideoStream = 2;
    cfg->reserved[0] = 0xCD;
    return cfg;
}

// Every one of the 42 entries is written; only a stream index below 4 gives "VideoStream".
TEST(RecordPacket, ScheduleAndStream) {
    auto cfg = Zeroed<KZDEV_RECORD_CFG>();
    cfg->byPreRecord = 200;
    cfg->stSect[6][5] = {6, 8, 0, 0, 18, 0, 0};
    Json::Value expected(Json::objectValue);
    expected["PreRecord"] = 200;
    for (int d = 0; d < KZ_WEEK_DAYS; ++d)
        for (int s = 0; s < KZ_DAY_SECTIONS; ++s)
            expected["TimeSection"][d][s] = "0 00:00:00-00:00:00";
    expected["TimeSection"][6][5] = "1 08:00:00-18:00:00";
    EXPECT_EQ(Packet("Record", cfg.get()).table(), expected);
    for (const auto& [stream, table] : {std::pair<int, const char*>{0, R"({"VideoStream":"Main"})"},
                                        {3, R"({"VideoStream":"Extra3"})"},
                                        {4, "null"}}) {
        SCOPED_TRACE(stream);
        cfg->byVideoStream = static_cast<unsigned char>(stream);
        const support::Envelope envelope = Packet("RecordSource", cfg.get());
        EXPECT_TRUE(envelope.result());
        EXPECT_EQ(envelope.table(), ParseJson(table));
    }
}

// Each section changes only its own fields; entries that are not strings, missing days, keys of
// another shape and tables that are not objects change nothing.
TEST(RecordParse, OwnFieldsOnly) {
    const auto filled = Filled();
    auto changed = CopyOf(*filled);
    changed->byPreRecord = 44;                      // 300, low 8 bits
    changed->stSect[0][2] = {5, 1, 2, 3, 4, 5, 6};  // flag 3 to mask 5
    changed->stSect[1][0] = {4, 6, 0, 0, 7, 0, 0};
    struct Case {
        const char* section;
        const char* table;
        const KZDEV_RECORD_CFG* expected;
    };
    const Case cases[] = {
        {"Record", R"({"PreRecord":300,"VideoStream":"Main","TimeSection":[
            [1, null, "3 01:02:03-04:05:06", [], {}, true], ["1 06:00:00-07:00:00"]]})",
         changed.get()},
        {"Record", "[1]", filled.get()},
        {"Record", R"({"PreRecord":null,"TimeSection":{"0":["1 00:00:00-01:00:00"]}})",
         filled.get()},
        {"Record", R"({"TimeSection":"1 00:00:00-01:00:00"})", filled.get()},
        {"RecordSource", R"("Extra1")", filled.get()},
        {"RecordSource", R"({"VideoStream":null})", filled.get()},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.table);
        auto cfg = CopyOf(*filled);
        EXPECT_EQ(Parse(c.section, c.table, cfg.get()), 1);
        EXPECT_TRUE(SameBytes(*cfg, *c.expected));
    }
    // The names are compared with the text of the whole table, which an object does not give.
    auto cfg = CopyOf(*filled);
    EXPECT_THROW(Parse("RecordSource", R"({"VideoStream":"Extra1"})", cfg.get()), Json::LogicError);
    EXPECT_TRUE(SameBytes(*cfg, *filled));
}

// One scratch section for all entries, never cleared: "0 8:5:0" keeps the end of the entry before.
TEST(RecordTextPacket, FromTheOlderText) {
    struct Case {
        const char *section, *f5;
        bool result;
        const char* table;
    };
    const Case cases[] = {
        {"Record", R"({"Record":{"PreRec":5,"Stream":1,"TimeSection":[
            ["2 08:00:00-18:00:00", "0 8:5:0", 3], "bad", [null, "9 00:00:00-24:00:00"]]}})",
         true, R"({"PreRecord":5,"TimeSection":[["1 08:00:00-18:00:00", "0 08:05:00-18:00:00"],
            null, [null, "1 00:00:00-24:00:00"]]})"},
        {"Record", R"([{"Record":{"PreRec":1}}])", true, "null"},
        {"RecordSource", R"({"Record":{"Stream":2,"PreRec":1}})", true,
         R"({"VideoStream":"Extra2"})"},
        {"RecordSource", R"({"Record":{"Stream":4}})", true, "null"},
        {"RecordSource", R"({"Record":[0]})", true, "null"},
        {"Record", "{", false, "null"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.f5);
        const support::Envelope envelope = Packet(c.section, c.f5, PROTOFIX_MODE_TEXT);
        EXPECT_EQ(envelope.result(), c.result);
        EXPECT_EQ(envelope.table(), ParseJson(c.table));
    }
}

// The flag goes to the older text as a mask (1 becomes 4); "PreRec" is not cut to 8 bits; a text
// that does not scan keeps the scratch section of the entry before.
TEST(RecordTextParse, MergesIntoTheOlderText) {
    struct Case {
        const char *section, *old, *table, *merged;
    };
    const Case cases[] = {
        {"Record",
         R"({"Record":{"PreRec":1,"Stream":0,"TimeSection":[["0 00:00:00-00:00:00"]]},"X":[1]})",
         R"({"PreRecord":300,"VideoStream":"Extra1","TimeSection":[["1 08:00:00-18:00:00",5,"bad"],[],["3 01:00:00-02:00:00"]]})",
         R"({"Record":{"PreRec":300,"Stream":0,"TimeSection":[["4 08:00:00-18:00:00",null,"4 08:00:00-18:00:00"],
             null,["5 01:00:00-02:00:00"]]},"X":[1]})"},
        {"Record", R"({"Record":5})", R"({"PreRecord":3,"TimeSection":[["1 00:00:00-01:00:00"]]})",
         R"({"Record":5})"},
        {"Record", R"({"Record":{"TimeSection":{"a":1}}})",
         R"({"TimeSection":[["1 00:00:00-01:00:00"]]})", R"({"Record":{"TimeSection":{"a":1}}})"},
        {"Record", R"({"X":1})", R"([{"PreRecord":3}])", R"({"X":1})"},
        {"RecordSource", R"({"Record":{"Stream":0,"PreRec":2}})",
         R"({"VideoStream":"extra2","PreRecord":9})", R"({"Record":{"Stream":2,"PreRec":2}})"},
        {"RecordSource", R"({"Record":{"Stream":1}})", R"({"VideoStream":"Extra9"})",
         R"({"Record":{"Stream":1}})"},
        {"RecordSource", "{}", R"({"VideoStream":"MAIN"})", R"({"Record":{"Stream":0}})"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.table);
        F5Buffer buffer(c.old, 512);
        ASSERT_EQ(buffer.Merge(c.section, c.table), 1);
        EXPECT_EQ(buffer.Document(), ParseJson(c.merged));
    }
}

TEST(RecordTextParse, CapacityRule) {
    overlay_support::ExpectCapacityRule("RecordSource", "{}", R"({"VideoStream":"Extra1"})",
                                        support::Written(R"({"Record":{"Stream":1}})"));
}

}  // namespace
