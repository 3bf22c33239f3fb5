// Time sections between their record and the device's texts, and the two day-numbering schemes.
#include "request/fields.h"

#include <protofix/ReqConfigProtocolFix.h>

#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdio>
#include <cstdlib>

namespace {

// The normal form carries the flag before the span; the short form only the span.
constexpr const char kNormalForm[] = "%d %02d:%02d:%02d-%02d:%02d:%02d";
constexpr const char kShortForm[] = "%02d:%02d:%02d-%02d:%02d:%02d";

// The device's texts are formatted into a cleared 128-byte buffer, at most 127 characters.
constexpr std::size_t kTextBuffer = 128;

// The first value of the normal form has no width: one that an int cannot hold fails the whole
// text before the scan, which would otherwise overflow.
bool LeadingNumberFits(const char* text) {
    errno = 0;
    char* end = nullptr;
    const long long value = std::strtoll(text, &end, 10);
    return end == text || (errno == 0 && value >= INT_MIN && value <= INT_MAX);
}

// Scans the normal form with its first value into flag and the span into the record: the values
// converted before a failure stay written. True only when all seven were converted.
bool ScanNormal(const char* text, int& flag, tagKZ_TSECT& sect) {
    if (text == nullptr || !LeadingNumberFits(text)) return false;
    return std::sscanf(text, kNormalForm, &flag, &sect.beginHour, &sect.beginMinute,
                       &sect.beginSecond, &sect.endHour, &sect.endMinute, &sect.endSecond) == 7;
}

void WriteNormal(int flag, const tagKZ_TSECT& sect, Json::Value& node) {
    char text[kTextBuffer] = {};
    protofix::_snprintf(text, sizeof text, kNormalForm, flag, sect.beginHour, sect.beginMinute,
                        sect.beginSecond, sect.endHour, sect.endMinute, sect.endSecond);
    node = Json::Value(text);
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
    return std::sscanf(text, kShortForm, &sect.beginHour, &sect.beginMinute, &sect.beginSecond,
                       &sect.endHour, &sect.endMinute, &sect.endSecond) == 6;
}

int CReqConfigProtocolFix::PacketNormalTimeEx(const tagKZ_TSECT& sect, Json::Value& node) {
    char text[kTextBuffer] = {};
    protofix::_snprintf(text, sizeof text, kShortForm, sect.beginHour, sect.beginMinute,
                        sect.beginSecond, sect.endHour, sect.endMinute, sect.endSecond);
    node = Json::Value(text);
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
