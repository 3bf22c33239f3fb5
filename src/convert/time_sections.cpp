// Time sections between their record and the device's texts, and the two day-numbering schemes.
//
// The texts are the C library's "%d %02d:%02d:%02d-%02d:%02d:%02d" (the normal form) and
// "%02d:%02d:%02d-%02d:%02d:%02d" (the short form), written and read here by hand, byte for byte
// as the C library's formatter and scanner do, without their cost of interpreting a format.
#include "request/fields.h"

#include <protofix/ReqConfigProtocolFix.h>

#include <climits>
#include <cstddef>
#include <cstdint>

namespace {

// ---- reading, as the C library's scanner reads the forms ---------------------------------------

bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// A number as the scanner stores one into an int: the digits' value held within the range of a
// long (a longer one stops at its bounds), then the int keeps its low bits.
int StoredValue(bool negative, unsigned long long magnitude, bool saturated) {
    constexpr auto kLongMax = static_cast<unsigned long long>(LONG_MAX);
    long value = 0;
    if (!negative) {
        value = saturated || magnitude > kLongMax ? LONG_MAX : static_cast<long>(magnitude);
    } else if (saturated || magnitude > kLongMax + 1u) {
        value = LONG_MIN;
    } else {
        value = magnitude == kLongMax + 1u ? LONG_MIN : -static_cast<long>(magnitude);
    }
    return protofix::Narrow<int>(value);
}

// A cursor through the text, one directive of the form at a time.
class Scanner {
public:
    explicit Scanner(const char* text) : at_(text) {}

    // "%d" (width 0: no width) or "%2d": blanks skipped, a sign, then digits up to the width;
    // at least one digit, or nothing is stored and the scan stops.
    bool Number(int width, int& field) {
        while (IsBlank(*at_)) ++at_;
        const char* p = at_;
        std::size_t left = width == 0 ? SIZE_MAX : static_cast<std::size_t>(width);
        const bool negative = *p == '-';
        if (*p == '-' || *p == '+') {
            ++p;
            --left;
        }
        if (left == 0 || !IsDigit(*p)) return false;
        unsigned long long magnitude = 0;
        bool saturated = false;
        for (; left != 0 && IsDigit(*p); ++p, --left) {
            const auto digit = static_cast<unsigned long long>(*p - '0');
            saturated = saturated || magnitude > (ULLONG_MAX - digit) / 10u;
            if (!saturated) magnitude = magnitude * 10u + digit;
        }
        at_ = p;
        field = StoredValue(negative, magnitude, saturated);
        return true;
    }

    // A character of the form other than a blank matches itself only.
    bool Literal(char c) {
        if (*at_ != c) return false;
        ++at_;
        return true;
    }

    // A blank of the form matches any run of blanks, none included.
    void Blanks() {
        while (IsBlank(*at_)) ++at_;
    }

private:
    const char* at_;
};

// "HH:MM:SS-HH:MM:SS" into the span, fields in order until one fails; true when all six were read.
bool ScanSpan(Scanner& scan, tagKZ_TSECT& sect) {
    return scan.Number(2, sect.beginHour) && scan.Literal(':') &&
           scan.Number(2, sect.beginMinute) && scan.Literal(':') &&
           scan.Number(2, sect.beginSecond) && scan.Literal('-') && scan.Number(2, sect.endHour) &&
           scan.Literal(':') && scan.Number(2, sect.endMinute) && scan.Literal(':') &&
           scan.Number(2, sect.endSecond);
}

// The normal form, its first value into flag and the span into the record: the values converted
// before a failure stay written. True only when all seven were converted.
bool ScanNormal(const char* text, int& flag, tagKZ_TSECT& sect) {
    if (text == nullptr) return false;
    Scanner scan(text);
    if (!scan.Number(0, flag)) return false;
    scan.Blanks();
    return ScanSpan(scan, sect);
}

// ---- writing, as the C library's formatter writes the forms -------------------------------------

// "%d", or "%02d" when two: at least two digits, a 0 before a single one (not before a sign).
char* PutNumber(char* out, int value, bool two) {
    if (value >= 0 && value < 100 && (two || value >= 10)) {  // the times' usual case
        *out++ = static_cast<char>('0' + value / 10);
        *out++ = static_cast<char>('0' + value % 10);
        return out;
    }
    unsigned int magnitude = static_cast<unsigned int>(value);
    if (value < 0) {
        *out++ = '-';
        magnitude = 0u - magnitude;
    }
    char digits[10];
    int count = 0;
    do {
        digits[count++] = static_cast<char>('0' + magnitude % 10u);
        magnitude /= 10u;
    } while (magnitude != 0u);
    if (two && count == 1 && value >= 0) *out++ = '0';
    while (count > 0) *out++ = digits[--count];
    return out;
}

// The longest text: seven numbers of eleven characters and six separators, well inside the
// 127 characters that the device's texts are bounded to.
constexpr std::size_t kTextBuffer = 128;

char* PutSpan(char* out, const tagKZ_TSECT& sect) {
    out = PutNumber(out, sect.beginHour, true);
    *out++ = ':';
    out = PutNumber(out, sect.beginMinute, true);
    *out++ = ':';
    out = PutNumber(out, sect.beginSecond, true);
    *out++ = '-';
    out = PutNumber(out, sect.endHour, true);
    *out++ = ':';
    out = PutNumber(out, sect.endMinute, true);
    *out++ = ':';
    return PutNumber(out, sect.endSecond, true);
}

void WriteNormal(int flag, const tagKZ_TSECT& sect, Json::Value& node) {
    char text[kTextBuffer];
    char* end = PutNumber(text, flag, false);
    *end++ = ' ';
    end = PutSpan(end, sect);
    node = Json::Value(text, end);
}

// The record-type mask of a recording section from the text's value n: bit 0 of n goes to bit 2,
// bits 1 and 2 to bits 0 and 1, bit 4 to bit 3; bit 3 and the higher bits are dropped.
int RecordTypeMask(int n) {
    const auto bits = static_cast<unsigned int>(n);
    return static_cast<int>(((bits & 0x1u) << 2) | ((bits >> 1) & 0x3u) |
                            (((bits >> 4) & 0x1u) << 3));
}

}  // namespace

bool CReqConfigProtocolFix::ParseNormalTime(tagKZ_TSECT& sect, const char* text) {
    return ScanNormal(text, sect.enable, sect);
}

int CReqConfigProtocolFix::PacketNormalTime(const tagKZ_TSECT& sect, Json::Value& node) {
    WriteNormal(sect.enable, sect, node);
    return 1;
}

bool CReqConfigProtocolFix::ParseNormalTimeEx(tagKZ_TSECT& sect, const char* text) {
    if (text == nullptr) return false;
    Scanner scan(text);
    return ScanSpan(scan, sect);
}

int CReqConfigProtocolFix::PacketNormalTimeEx(const tagKZ_TSECT& sect, Json::Value& node) {
    char text[kTextBuffer];
    char* end = PutSpan(text, sect);
    node = Json::Value(text, end);
    return 1;
}

bool CReqConfigProtocolFix::ParseRecordTime(tagKZ_TSECT& sect, const char* text) {
    int value = 0;
    if (!ScanNormal(text, value, sect)) return false;
    sect.enable = RecordTypeMask(value);
    return true;
}

// The mask is reduced to 1 or 0, so it does not survive a round trip (a mask of 1 comes back as 4).
int CReqConfigProtocolFix::PacketRecordTime(const tagKZ_TSECT& sect, Json::Value& node) {
    WriteNormal(sect.enable != 0 ? 1 : 0, sect, node);
    return 1;
}

int CReqConfigProtocolFix::DateFix_2To3(int day) {
    if (day == 0) return -1;
    if (day == 1) return 7;
    return protofix::Narrow<int>(static_cast<unsigned int>(day) - 2u);  // no range checked
}

int CReqConfigProtocolFix::DateFix_3To2(int day) {
    if (day == -1) return 0;
    if (day == 7) return 1;
    return protofix::Narrow<int>(static_cast<unsigned int>(day) + 2u);
}
