// Time sections between their record and the device's texts, and the two day-numbering schemes.
#include <protofix/protofix.h>

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <utility>

namespace {

using C = CReqConfigProtocolFix;
using Fields = std::array<int, 7>;  // enable, begin h:m:s, end h:m:s
constexpr int kUnset = -7;
constexpr Fields kAllUnset = {kUnset, kUnset, kUnset, kUnset, kUnset, kUnset, kUnset};

std::unique_ptr<tagKZ_TSECT> Sect(const Fields& f) {
    return std::make_unique<tagKZ_TSECT>(tagKZ_TSECT{f[0], f[1], f[2], f[3], f[4], f[5], f[6]});
}

Fields FieldsOf(const tagKZ_TSECT& s) {
    return {s.enable,  s.beginHour, s.beginMinute, s.beginSecond,
            s.endHour, s.endMinute, s.endSecond};
}

struct ParseCase {
    const char* text;
    bool ok;
    Fields after;  // starting from kAllUnset
};

TEST(TimeSectionNormal, ParsesAllSevenOrStopsWhereTheTextFails) {
    const ParseCase cases[] = {
        {"1 00:00:00-24:00:00", true, {1, 0, 0, 0, 24, 0, 0}},
        {"0 8:5:0-17:0:0", true, {0, 8, 5, 0, 17, 0, 0}},
        {"1 25:61:00-00:00:00", true, {1, 25, 61, 0, 0, 0, 0}},  // no range check
        {"1 00:00:00", false, {1, 0, 0, 0, kUnset, kUnset, kUnset}},
        // The width 2 ends the hour after "12", so the ':' does not match the '3'.
        {"2 123:00:00-01:00:00", false, {2, 12, kUnset, kUnset, kUnset, kUnset, kUnset}},
        {"x 00:00:00-01:00:00", false, kAllUnset},
        {"", false, kAllUnset},
        {nullptr, false, kAllUnset},
    };
    for (const ParseCase& c : cases) {
        auto sect = Sect(kAllUnset);
        EXPECT_EQ(C::ParseNormalTime(*sect, c.text), c.ok) << (c.text ? c.text : "null");
        EXPECT_EQ(FieldsOf(*sect), c.after) << (c.text ? c.text : "null");
    }
}

TEST(TimeSectionNormal, PacksTwoDigitTimesAndRoundTrips) {
    Json::Value node;
    EXPECT_EQ(C::PacketNormalTime(*Sect({1, 0, 0, 0, 23, 59, 59}), node), 1);
    EXPECT_EQ(node, Json::Value("1 00:00:00-23:59:59"));

    auto sect = Sect(kAllUnset);
    ASSERT_TRUE(C::ParseNormalTime(*sect, "0 8:5:0-17:0:0"));
    C::PacketNormalTime(*sect, node);
    EXPECT_EQ(node, Json::Value("0 08:05:00-17:00:00"));
}

TEST(TimeSectionShort, LeavesTheFlagAlone) {
    const ParseCase cases[] = {
        {"08:30:00-17:00:00", true, {kUnset, 8, 30, 0, 17, 0, 0}},
        {"08:30:00-17:00", false, {kUnset, 8, 30, 0, 17, 0, kUnset}},
        {"1 08:30:00-17:00:00", false, {kUnset, 1, kUnset, kUnset, kUnset, kUnset, kUnset}},
        {nullptr, false, kAllUnset},
    };
    for (const ParseCase& c : cases) {
        auto sect = Sect(kAllUnset);
        EXPECT_EQ(C::ParseNormalTimeEx(*sect, c.text), c.ok) << (c.text ? c.text : "null");
        EXPECT_EQ(FieldsOf(*sect), c.after) << (c.text ? c.text : "null");
    }
    Json::Value node;
    EXPECT_EQ(C::PacketNormalTimeEx(*Sect({9, 8, 30, 0, 17, 5, 9}), node), 1);
    EXPECT_EQ(node, Json::Value("08:30:00-17:05:09"));
}

TEST(TimeSectionRecord, MapsTheTextValueToARecordTypeMask) {
    // n bit 0 -> bit 2, bits 1 and 2 -> bits 0 and 1, bit 4 -> bit 3, bit 3 and above dropped.
    const std::pair<int, int> cases[] = {{3, 5}, {8, 0}, {16, 8}, {1, 4}, {2, 1}, {4, 2},
                                         {7, 7}, {31, 15}, {32, 0}, {-1, 15}, {0, 0}};
    for (const auto& [n, mask] : cases) {
        auto sect = Sect(kAllUnset);
        const std::string text = std::to_string(n) + " 01:02:03-04:05:06";
        EXPECT_TRUE(C::ParseRecordTime(*sect, text.c_str())) << n;
        EXPECT_EQ(FieldsOf(*sect), (Fields{mask, 1, 2, 3, 4, 5, 6})) << n;
    }
    auto sect = Sect(kAllUnset);
    EXPECT_FALSE(C::ParseRecordTime(*sect, "3 01:02:03"));
    EXPECT_EQ(FieldsOf(*sect), (Fields{kUnset, 1, 2, 3, kUnset, kUnset, kUnset}));
    EXPECT_FALSE(C::ParseRecordTime(*sect, nullptr));
}

TEST(TimeSectionRecord, PacksTheMaskAsOneOrZeroSoItDoesNotRoundTrip) {
    const std::pair<int, const char*> packed[] = {
        {6, "1 01:02:03-04:05:06"}, {-1, "1 01:02:03-04:05:06"}, {0, "0 01:02:03-04:05:06"}};
    for (const auto& [mask, text] : packed) {
        Json::Value node;
        EXPECT_EQ(C::PacketRecordTime(*Sect({mask, 1, 2, 3, 4, 5, 6}), node), 1);
        EXPECT_EQ(node, Json::Value(text)) << mask;
    }
    for (const int mask : {1, 4}) {  // both come back as 4
        Json::Value node;
        auto sect = Sect({mask, 1, 2, 3, 4, 5, 6});
        C::PacketRecordTime(*sect, node);
        ASSERT_TRUE(C::ParseRecordTime(*sect, node.asCString()));
        EXPECT_EQ(sect->enable, 4) << mask;
    }
}

TEST(TimeSectionDays, ConvertBetweenTheTwoSchemes) {
    const std::pair<int, int> pairs[] = {{0, -1}, {1, 7}, {2, 0}, {3, 1}, {8, 6}};  // scheme 2, 3
    for (const auto& [two, three] : pairs) {
        EXPECT_EQ(C::DateFix_2To3(two), three) << two;
        EXPECT_EQ(C::DateFix_3To2(three), two) << three;
    }
    for (int day = 0; day <= 8; ++day) EXPECT_EQ(C::DateFix_3To2(C::DateFix_2To3(day)), day);
    for (int day = -1; day <= 7; ++day) EXPECT_EQ(C::DateFix_2To3(C::DateFix_3To2(day)), day);
    EXPECT_EQ(C::DateFix_2To3(100), 98);  // no range check
    EXPECT_EQ(C::DateFix_3To2(-5), -3);
}

}  // namespace
