// "HealthMail" through the request API: F5 text only, minutes in the text, seconds in the table.
#include "events_support.h"

#include <string>
#include <vector>

using events_support::F5Buffer;
using events_support::Written;

namespace {

TEST(HealthMailPacket, MinutesBecomeSeconds) {
    const std::pair<const char*, const char*> cases[] = {
        {R"({"HealthMail":{"En":1,"Interval":2}})",
         R"({"HealthReport":{"Enable":true,"Interval":120}})"},
        {R"({"HealthMail":{"En":2,"Interval":-3}})",
         R"({"HealthReport":{"Enable":false,"Interval":-180}})"},
        {R"({"HealthMail":{"Interval":40000000}})", R"({"HealthReport":{"Interval":2400000000}})"},
        {R"({"HealthMail":{"En":null},"Other":1})", "null"},
    };
    for (const auto& [f5, table] : cases) {
        SCOPED_TRACE(f5);
        const support::Envelope envelope = support::Packet("HealthMail", f5, PROTOFIX_MODE_TEXT);
        EXPECT_TRUE(envelope.result());
        EXPECT_EQ(envelope.table(), support::ParseJson(table));
    }
}

// Seconds become whole minutes, truncated toward zero; a table without an object "HealthReport"
// leaves the values and still writes the text again; a text without the member gets it.
TEST(HealthMailParse, SecondsBecomeMinutes) {
    const char* const old = R"({ "HealthMail" : { "En" : 0, "Interval" : 5, "To" : "ops" } })";
    const char* const same = R"({"HealthMail":{"En":0,"Interval":5,"To":"ops"}})";
    const char* const cases[][3] = {
        {old, R"({"HealthReport":{"Enable":true,"Interval":90}})",
         R"({"HealthMail":{"En":1,"Interval":1,"To":"ops"}})"},
        {old, R"({"HealthReport":{"Interval":-90}})",
         R"({"HealthMail":{"En":0,"Interval":-1,"To":"ops"}})"},
        {old, R"({"HealthReport":{"Enable":false,"Interval":59}})",
         R"({"HealthMail":{"En":0,"Interval":0,"To":"ops"}})"},
        {old, R"({"Enable":true,"Interval":600})", same},
        {old, R"({"HealthReport":7})", same},
        {old, "[1]", same},
        {R"({"X":1})", R"({"HealthReport":{"Enable":true}})", R"({"HealthMail":{"En":1},"X":1})"},
    };
    for (const auto& [f5, table, merged] : cases) {
        SCOPED_TRACE(table);
        F5Buffer buffer(f5);
        ASSERT_EQ(buffer.Merge("HealthMail", table), 1);
        EXPECT_EQ(buffer.Text(), Written(merged));
    }
}

// Text mode only: the record mode is refused in both directions with the buffer as it was.
TEST(HealthMailRefusals, RecordMode) {
    const std::string f5 = R"({"HealthMail":{"En":1}})";
    EXPECT_FALSE(support::Packet("HealthMail", f5.c_str(), PROTOFIX_MODE_RECORD).result());
    F5Buffer buffer(f5);
    const std::vector<char> before = buffer.bytes;
    EXPECT_EQ(
        buffer.Merge("HealthMail", R"({"HealthReport":{"Enable":false}})", PROTOFIX_MODE_RECORD),
        -1);
    EXPECT_EQ(buffer.bytes, before);
}

}  // namespace
