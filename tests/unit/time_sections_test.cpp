// Time sections between their record and the device's texts, and the two day-numbering schemes.
#include <protofix/protofix.h>

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <tuple>
#include <utility>

namespace {

using C = CReqConfigProtocolFix;
using Fields = std::array<int, 7>;  // enable, begin h:m:s, end h:m:s
constexpr int U = -7;               // a field the call must leave as it was

Fields FieldsOf(const tagKZ_TSECT& s) {
    return {s.enable,  s.beginHour, s.beginMinute, s.beginSecond,
            s.endHour, s.endMinute, s.endSecond};
}

TEST(TimeSectionParse, WritesTheFieldsConvertedAndTellsWhetherAllWere) {
    using Case = std::tuple<bool (*)(tagKZ_TSECT&, const char*), const char*, bool, Fields>;
    const Case cases[] = {
        {&C::ParseNormalTime, "1 00:00:00-24:00:00", true, {1, 0, 0, 0, 24, 0, 0}},
        {&C::ParseNormalTime, "0 8:5:0-17:0:0", true, {0, 8, 5, 0, 17, 0, 0}},
        {&C::ParseNormalTime, "1 25:61:00-00:00:00", true, {1, 25, 61, 0, 0, 0, 0}},
        {&C::ParseNormalTime, "1 00:00:00", false, {1, 0, 0, 0, U, U, U}},
        {&C::ParseNormalTime, nullptr, false, {U, U, U, U, U, U, U}},
        {&C::ParseNormalTimeEx, "08:30:00-17:00:00", true, {U, 8, 30, 0, 17, 0, 0}},
        {&C::ParseNormalTimeEx, "08:30:00-17:00", false, {U, 8, 30, 0, 17, 0, U}},
        {&C::ParseNormalTimeEx, nullptr, false, {U, U, U, U, U, U, U}},
        // Value n as a mask: bit 0 -> bit 2, bits 1-2 -> bits 0-1, bit 4 -> bit 3, others dropped.
        {&C::ParseRecordTime, "3 01:02:03-04:05:06", true, {5, 1, 2, 3, 4, 5, 6}},
        {&C::ParseRecordTime, "8 01:02:03-04:05:06", true, {0, 1, 2, 3, 4, 5, 6}},
        {&C::ParseRecordTime, "16 01:02:03-04:05:06", true, {8, 1, 2, 3, 4, 5, 6}},
        {&C::ParseRecordTime, "63 01:02:03-04:05:06", true, {15, 1, 2, 3, 4, 5, 6}},
        {&C::ParseRecordTime, "3 01:02:03", false, {U, 1, 2, 3, U, U, U}},
    };
    for (const auto& [parse, text, ok, after] : cases) {
        auto sect = std::make_unique<tagKZ_TSECT>(tagKZ_TSECT{U, U, U, U, U, U, U});
        EXPECT_EQ(parse(*sect, text), ok) << testing::PrintToString(text);
        EXPECT_EQ(FieldsOf(*sect), after) << testing::PrintToString(text);
    }
}

TEST(TimeSectionPacket, FormatsTwoDigitTimes) {
    using Case = std::tuple<int (*)(const tagKZ_TSECT&, Json::Value&), tagKZ_TSECT, const char*>;
    const Case cases[] = {
        {&C::PacketNormalTime, {0, 8, 5, 0, 17, 0, 0}, "0 08:05:00-17:00:00"},
        {&C::PacketNormalTimeEx, {9, 8, 30, 0, 17, 5, 9}, "08:30:00-17:05:09"},
        {&C::PacketRecordTime, {6, 1, 2, 3, 4, 5, 6}, "1 01:02:03-04:05:06"},  // read back: mask 4
        {&C::PacketRecordTime, {0, 1, 2, 3, 4, 5, 6}, "0 01:02:03-04:05:06"},
    };
    for (const auto& [packet, sect, text] : cases) {
        Json::Value node;
        EXPECT_EQ(packet(*std::make_unique<tagKZ_TSECT>(sect), node), 1) << text;
        EXPECT_EQ(node, Json::Value(text));
    }
}

TEST(TimeSectionDays, ConvertBetweenTheTwoSchemesBothWays) {
    const std::pair<int, int> pairs[] = {{0, -1}, {1, 7}, {2, 0}, {3, 1}, {8, 6}};  // scheme 2, 3
    for (const auto& [two, three] : pairs) {
        EXPECT_EQ(C::DateFix_2To3(two), three) << two;
        EXPECT_EQ(C::DateFix_3To2(three), two) << three;
    }
}

}  // namespace
