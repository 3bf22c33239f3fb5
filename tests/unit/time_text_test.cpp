// The time-section texts are written and read by hand; they must agree with the C library's
// formatter and scanner on the two forms for every input: the result, which fields are written
// and with what value. Compared here on exhaustive small ranges and millions of random and
// mutated texts.
#include <protofix/protofix.h>

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

namespace {

using C = CReqConfigProtocolFix;
using Fields = std::array<int, 7>;  // enable, begin h:m:s, end h:m:s

constexpr const char kNormalForm[] = "%d %02d:%02d:%02d-%02d:%02d:%02d";
constexpr const char kShortForm[] = "%02d:%02d:%02d-%02d:%02d:%02d";

tagKZ_TSECT SectOf(const Fields& f) { return {f[0], f[1], f[2], f[3], f[4], f[5], f[6]}; }
Fields FieldsOf(const tagKZ_TSECT& s) {
    return {s.enable,  s.beginHour, s.beginMinute, s.beginSecond,
            s.endHour, s.endMinute, s.endSecond};
}

// ---- the C library's own answers ---------------------------------------------------------------

// A start value that no two-character field can produce, so a field left alone shows as such.
constexpr int kUntouched = INT_MIN + 12345;
constexpr Fields kUntouchedFields = {kUntouched, kUntouched, kUntouched, kUntouched,
                                     kUntouched, kUntouched, kUntouched};

bool LibraryParse(const char* text, Fields& f, bool normal) {
    if (normal) {
        return std::sscanf(text, kNormalForm, &f[0], &f[1], &f[2], &f[3], &f[4], &f[5], &f[6]) == 7;
    }
    return std::sscanf(text, kShortForm, &f[1], &f[2], &f[3], &f[4], &f[5], &f[6]) == 6;
}

std::string LibraryText(const Fields& f, bool normal) {
    char text[128] = {};
    if (normal) {
        std::snprintf(text, sizeof text, kNormalForm, f[0], f[1], f[2], f[3], f[4], f[5], f[6]);
    } else {
        std::snprintf(text, sizeof text, kShortForm, f[1], f[2], f[3], f[4], f[5], f[6]);
    }
    return text;
}

// The record-type reading: the first value through a temporary, kept as a mask only when all
// seven were read (bit 0 to bit 2, bits 1-2 to bits 0-1, bit 4 to bit 3).
bool LibraryParseRecord(const char* text, Fields& f) {
    int n = 0;
    if (std::sscanf(text, kNormalForm, &n, &f[1], &f[2], &f[3], &f[4], &f[5], &f[6]) != 7) {
        return false;
    }
    const auto bits = static_cast<unsigned int>(n);
    f[0] = static_cast<int>(((bits & 1u) << 2) | ((bits >> 1) & 3u) | (((bits >> 4) & 1u) << 3));
    return true;
}

// Counts the disagreements on one text, in both forms; reports the first few.
class Differ {
public:
    void Parse(const std::string& text, const Fields& start) {
        for (const bool normal : {true, false}) {
            Fields expected = start;
            const bool library = LibraryParse(text.c_str(), expected, normal);
            tagKZ_TSECT sect = SectOf(start);
            const bool ours = normal ? C::ParseNormalTime(sect, text.c_str())
                                     : C::ParseNormalTimeEx(sect, text.c_str());
            Check(library == ours && expected == FieldsOf(sect), normal, text);
        }
        Fields expected = start;
        const bool library = LibraryParseRecord(text.c_str(), expected);
        tagKZ_TSECT sect = SectOf(start);
        const bool ours = C::ParseRecordTime(sect, text.c_str());
        Check(library == ours && expected == FieldsOf(sect), true, "record time " + text);
    }

    void Write(const Fields& f) {
        const tagKZ_TSECT sect = SectOf(f);
        Json::Value normal, span;
        C::PacketNormalTime(sect, normal);
        C::PacketNormalTimeEx(sect, span);
        Check(normal.asString() == LibraryText(f, true), true, LibraryText(f, true));
        Check(span.asString() == LibraryText(f, false), false, LibraryText(f, false));
    }

    ~Differ() { EXPECT_EQ(failures_, 0); }

private:
    void Check(bool same, bool normal, const std::string& text) {
        if (same) return;
        if (++failures_ <= 10) {
            ADD_FAILURE() << (normal ? "normal" : "short") << " form differs on "
                          << testing::PrintToString(text);
        }
    }
    int failures_ = 0;
};

// ---- inputs -------------------------------------------------------------------------------------

// Every text of up to five characters over the characters that steer the scan.
TEST(TimeTextDiffers, NowhereOnEveryShortText) {
    const std::string alphabet = "07-+: \n\b/\xa0";
    Differ differ;
    std::vector<std::string> texts = {""};
    for (int length = 1; length <= 5; ++length) {
        std::vector<std::string> longer;
        for (const std::string& text : texts) {
            for (const char c : alphabet) longer.push_back(text + c);
        }
        for (const std::string& text : longer) differ.Parse(text, kUntouchedFields);
        texts.swap(longer);
    }
}

// Every field through -1000..1000 and the edges of an int, the others at a typical value; and
// every value a two-character field can hold at every position of a well-formed text.
TEST(TimeTextDiffers, NowhereOnSmallRangesOfEveryField) {
    Differ differ;
    const Fields typical = {1, 8, 30, 0, 17, 45, 59};
    for (std::size_t field = 0; field < typical.size(); ++field) {
        for (long long v = -1000; v <= 1000; ++v) {
            Fields f = typical;
            f[field] = static_cast<int>(v);
            differ.Write(f);
        }
        for (const int edge : {INT_MIN, INT_MIN + 1, -100000, 99999, INT_MAX}) {
            Fields f = typical;
            f[field] = edge;
            differ.Write(f);
        }
    }
    const std::string fieldTexts[] = {"",
                                      "0",
                                      "9",
                                      "00",
                                      "09",
                                      "99",
                                      "+0",
                                      "-0",
                                      "+9",
                                      "-9",
                                      "+",
                                      "-",
                                      " ",
                                      " 5",
                                      "\t7",
                                      "5 ",
                                      "a",
                                      "5a",
                                      "123",
                                      "--1",
                                      "+-1",
                                      "-+1",
                                      "- 1",
                                      "\x85"
                                      "5",
                                      "\b5",
                                      "/",
                                      ";",
                                      "\xff"};
    const std::vector<std::string> parts = {"1", " ",  "08", ":",  "30", ":", "00",
                                            "-", "17", ":",  "45", ":",  "59"};
    for (std::size_t part = 0; part < parts.size(); part += 2) {
        for (const std::string& replacement : fieldTexts) {
            std::string text;
            for (std::size_t i = 0; i < parts.size(); ++i)
                text += i == part ? replacement : parts[i];
            differ.Parse(text, kUntouchedFields);
            differ.Parse(text.substr(2), kUntouchedFields);
        }
    }
}

// The leading number has no width: every length of digits, with and without a sign, inside and
// past the ranges of an int and of a long.
TEST(TimeTextDiffers, NowhereOnLeadingNumbersOfAnyLength) {
    Differ differ;
    for (const char* sign : {"", "-", "+", " -", "\t+"}) {
        for (const char digit : std::string("0159")) {
            std::string number = sign;
            for (int length = 1; length <= 25; ++length) {
                number += digit;
                differ.Parse(number + " 01:02:03-04:05:06", kUntouchedFields);
            }
        }
    }
    for (const char* text : {"2147483647",
                             "2147483648",
                             "-2147483648",
                             "-2147483649",
                             "4294967296",
                             "4294967297",
                             "9223372036854775807",
                             "9223372036854775808",
                             "-9223372036854775807",
                             "-9223372036854775808",
                             "-9223372036854775809",
                             "18446744073709551615",
                             "18446744073709551616",
                             "-18446744073709551616",
                             "18446744073709551617",
                             "6442450943",
                             "4294967295",
                             "0000000000000000000000009223372036854775808",
                             "-0009223372036854775808",
                             "- 1",
                             "+ 1"}) {
        differ.Parse(std::string(text) + " 01:02:03-04:05:06", kUntouchedFields);
    }
}

// Millions of texts: well-formed ones of random values, mutated by replacing, inserting and
// deleting characters and splicing in long numbers, and texts of random characters; and random
// records written.
TEST(TimeTextDiffers, NowhereOnMillionsOfRandomAndMutatedTexts) {
    std::mt19937_64 random(20261123);
    const std::string alphabet = "0123456789-+: \t\n\v\f\rx\b\x0e\x1c\x1f/;\x80\x85\xa0\xff";
    const char* const numbers[] = {"99999999999", "2147483648", "-2147483649", "4294967297",
                                   "007",         "-",          "+",           ""};
    auto below = [&random](std::size_t n) {
        return static_cast<std::size_t>(random() % static_cast<unsigned long long>(n));
    };
    auto value = [&](void) -> int {
        switch (below(4)) {
            case 0: return static_cast<int>(below(100));
            case 1: return static_cast<int>(below(2000)) - 1000;
            case 2: return static_cast<int>(static_cast<unsigned int>(random()));
            default: return below(2) == 0 ? INT_MIN : INT_MAX;
        }
    };
    Differ differ;
    for (int round = 0; round < 1500000; ++round) {
        const Fields f = {value(), value(), value(), value(), value(), value(), value()};
        differ.Write(f);
        std::string text = LibraryText(f, below(2) == 0);
        for (std::size_t edits = below(5); edits > 0; --edits) {
            const std::size_t at = below(text.size() + 1);
            switch (below(4)) {
                case 0:
                    if (at < text.size()) text[at] = alphabet[below(alphabet.size())];
                    break;
                case 1: text.insert(at, 1, alphabet[below(alphabet.size())]); break;
                case 2:
                    if (at < text.size()) text.erase(at, 1 + below(3));
                    break;
                default: text.insert(at, numbers[below(std::size(numbers))]); break;
            }
        }
        differ.Parse(text, {value(), value(), value(), value(), value(), value(), value()});
        std::string noise(below(24), ' ');
        for (char& c : noise) c = alphabet[below(alphabet.size())];
        differ.Parse(noise, {value(), value(), value(), value(), value(), value(), value()});
    }
}

}  // namespace
