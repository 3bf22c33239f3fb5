// "HealthMail" through the request API: F5 text only, minutes in the text, seconds in the table.
#include "events_support.h"

#include <string>
#include <vector>

using events_support::F5Buffer;
using events_support::TableOfF5;
using events_support::Written;
using support::Packet;
using support::Parse;
using support::ParseJson;

namespace {

TEST(HealthMailPacket, MinutesBecomeSeconds) {
    struct Case {
        const char* f5;
        const char* table;
    };
    const Case cases[] = {
        {R"({"HealthMail":{"En":1,"Interval":2}})",
         R"({"HealthReport":{"Enable":true,"Interval":120}})"},
        {R"({"HealthMail":{"En":2,"Interval":-3}})",
         R"({"HealthReport":{"Enable":false,"Interval":-180}})"},
        {R"({"HealthMail":{"Interval":40000000}})", R"({"HealthReport":{"Interval":2400000000}})"},
        {R"({"HealthMail":{"En":null},"Other":1})", "null"},
        {R"([1])", "null"},
    };
    for (const Case& c : cases) {
        const support::Envelope envelope = Packet("HealthMail", c.f5, PROTOFIX_MODE_TEXT);
        EXPECT_TRUE(envelope.result()) << c.f5;
        EXPECT_EQ(envelope.table(), ParseJson(c.table)) << c.f5;
    }
}

// Seconds become whole minutes, truncated toward zero; a table without "HealthReport" (or with one
// of another kind) leaves the values and still writes the text again.
TEST(HealthMailParse, SecondsBecomeMinutes) {
    const char* const old =
        R"({ "HealthMail" : { "En" : 0, "Interval" : 5, "To" : "ops" }, "X" : 1 })";
    struct Case {
        const char* table;
        const char* merged;
    };
    const Case cases[] = {
        {R"({"HealthReport":{"Enable":true,"Interval":90}})",
         R"({"HealthMail":{"En":1,"Interval":1,"To":"ops"},"X":1})"},
        {R"({"HealthReport":{"Interval":-90}})",
         R"({"HealthMail":{"En":0,"Interval":-1,"To":"ops"},"X":1})"},
        {R"({"HealthReport":{"Enable":false,"Interval":59}})",
         R"({"HealthMail":{"En":0,"Interval":0,"To":"ops"},"X":1})"},
        {R"({"Enable":true,"Interval":600})",
         R"({"HealthMail":{"En":0,"Interval":5,"To":"ops"},"X":1})"},
        {R"({"HealthReport":7})", R"({"HealthMail":{"En":0,"Interval":5,"To":"ops"},"X":1})"},
        {"[1]", R"({"HealthMail":{"En":0,"Interval":5,"To":"ops"},"X":1})"},
    };
    for (const Case& c : cases) {
        F5Buffer buffer(old);
        ASSERT_EQ(buffer.Merge("HealthMail", c.table), 1) << c.table;
        EXPECT_EQ(buffer.Text(), Written(c.merged)) << c.table;
    }
    F5Buffer none(R"({"X":1})");
    ASSERT_EQ(none.Merge("HealthMail", R"({"HealthReport":{"Enable":true}})"), 1);
    EXPECT_EQ(none.Text(), Written(R"({"HealthMail":{"En":1},"X":1})"));
}

// Only text mode; missing buffers, unreadable text and a text the buffer cannot hold are refused
// with the buffer as it was.
TEST(HealthMailRefusals, RecordModeBuffersAndCapacity) {
    const std::string f5 = R"({"HealthMail":{"En":1}})";
    for (int mode : {PROTOFIX_MODE_RECORD, 2}) {
        EXPECT_FALSE(Packet("HealthMail", f5.c_str(), mode).result()) << mode;
        F5Buffer buffer(f5);
        const std::vector<char> before = buffer.bytes;
        EXPECT_EQ(buffer.Merge("HealthMail", R"({"HealthReport":{"Enable":false}})", mode), -1)
            << mode;
        EXPECT_EQ(buffer.bytes, before) << mode;
    }
    EXPECT_FALSE(Packet("HealthMail", nullptr, PROTOFIX_MODE_TEXT).result());
    EXPECT_FALSE(Packet("HealthMail", "{\"HealthMail\":", PROTOFIX_MODE_TEXT).result());
    EXPECT_EQ(Parse("HealthMail", "{}", nullptr, 64, PROTOFIX_MODE_TEXT), -1);
    const std::string merged = Written(R"({"HealthMail":{"En":1,"Interval":100}})");
    for (const auto& [old, capacity] :
         {std::pair<std::string, std::size_t>{"{\"HealthMail\":", 64}, {f5, merged.size() - 1}}) {
        F5Buffer buffer(old, capacity);
        const std::vector<char> before = buffer.bytes;
        EXPECT_EQ(buffer.Merge("HealthMail", R"({"HealthReport":{"Interval":6000}})"), -1)
            << old << capacity;
        EXPECT_EQ(buffer.bytes, before) << old;
    }
}

}  // namespace
