// The device as a whole: "General" (name, address, local number), "Locales" (date and time format,
// daylight-saving time), "Language" and "AutoMaintain" (the reboot schedule). Record mode only.
//
// "General" and "Locales" have two sub-modes: 0 converts their plain fields; 1 converts the fields
// that the device keeps in its current configuration, and on the Packet side the device's current
// reply ({"params":{"table":...}}) is the base of the table, so every key that the section does
// not write goes back to the device as it came.
#include "request/f5_text.h"
#include "request/fields.h"

#include <protofix/ReqConfigProtocolFix.h>

#include <string>

using namespace protofix;

namespace {

constexpr int kPlainFields = 0;
constexpr int kMergedFields = 1;

// The device's current table becomes the output table. False when the reply is missing or does
// not parse; a reply without "params"."table" leaves the output table as it was.
bool TakeCurrentTable(const char* current, Json::Value& table) {
    if (current == nullptr) return false;
    Json::Value reply;
    if (!ParseText(current, reply)) return false;
    const Json::Value& base = Path(reply, {"params", "table"});
    if (Present(base)) table = base;
    return true;
}

// Packet side of a section with sub-modes. In sub-mode 1 the device's table is taken before the
// record is checked, so a missing record still leaves it in the envelope.
template <class Record, class Plain, class Merged>
int PacketBySubMode(const PROTOCOL_FIX_INFO& info, Json::Value& table, Plain plain, Merged merged) {
    if (info.subMode != kPlainFields && info.subMode != kMergedFields) return -1;
    if (info.subMode == kMergedFields && !TakeCurrentTable(info.current, table)) return -1;
    const auto* cfg = static_cast<const Record*>(info.input);
    if (cfg == nullptr) return -1;
    if (info.subMode == kPlainFields) {
        plain(*cfg, table);
    } else {
        merged(*cfg, table);
    }
    return 1;
}

template <class Record, class Plain, class Merged>
int ParseBySubMode(const PROTOCOL_FIX_INFO& info, const Json::Value& table, Plain plain,
                   Merged merged) {
    if (info.subMode != kPlainFields && info.subMode != kMergedFields) return -1;
    auto* cfg = static_cast<Record*>(info.output);
    if (cfg == nullptr) return -1;
    if (info.subMode == kPlainFields) {
        plain(table, *cfg);
    } else {
        merged(table, *cfg);
    }
    return 1;
}

// Writes table[object][key] into the merged table. The device's table may have another shape: a
// value that is not an object gets no member.
void WriteMerged(Json::Value& table, const char* object, const char* key,
                 const Json::Value& value) {
    Json::Value* parent = MemberToWrite(table, object);
    Json::Value* member = parent != nullptr ? MemberToWrite(*parent, key) : nullptr;
    if (member != nullptr) *member = value;
}

// A device integer, read only when it is one.
void ReadIfInt(const Json::Value& v, int& field) {
    if (v.isInt()) field = v.asInt();
}

// ---- General

void PacketGeneralNames(const KZDEV_GENERAL_CFG& cfg, Json::Value& table) {
    PutText(table["MachineName"], cfg.szMachineName);
    PutText(table["MachineAddress"], cfg.szMachineAddress);
}

void PacketGeneralLocalNo(const KZDEV_GENERAL_CFG& cfg, Json::Value& table) {
    if (Json::Value* localNo = MemberToWrite(table, "LocalNo")) *localNo = Int(cfg.wLocalNo);
}

void ParseGeneralNames(const Json::Value& table, KZDEV_GENERAL_CFG& cfg) {
    const Json::Value& name = Member(table, "MachineName");
    if (name.isString()) ReadText(name, cfg.szMachineName);
    const Json::Value& address = Member(table, "MachineAddress");
    if (address.isString()) ReadText(address, cfg.szMachineAddress);
}

// A "LocalNo" of 0 never reaches the record: the device sends 0 for "not set".
void ParseGeneralLocalNo(const Json::Value& table, KZDEV_GENERAL_CFG& cfg) {
    const Json::Value& localNo = Member(table, "LocalNo");
    if (Present(localNo) && localNo.asInt() != 0)
        cfg.wLocalNo = Narrow<unsigned short>(localNo.asUInt());
}

// ---- Locales

// Date parts by byDateFormat; the last one also serves every code above it.
constexpr const char* kDateFormats[] = {"yyyy-MM-dd", "MM-dd-yyyy", "dd-MM-yyyy"};
constexpr unsigned char kLastDateFormat = 2;

void PacketTimeFormat(const KZDEV_LOCALES_CFG& cfg, Json::Value& table) {
    std::string format =
        kDateFormats[cfg.byDateFormat < kLastDateFormat ? cfg.byDateFormat : kLastDateFormat];
    format += cfg.byTimeFormat != 0 ? " hh:mm:ss" : " HH:mm:ss";
    table["TimeFormat"] = format;
    table["DSTEnable"] = cfg.bDSTEnable != 0;
}

// The words are found anywhere in the text, with their case, in the order of the table.
void ParseTimeFormat(const Json::Value& table, KZDEV_LOCALES_CFG& cfg) {
    const std::string format = Member(table, "TimeFormat").asString();
    for (unsigned char code = 0; code <= kLastDateFormat; ++code) {
        if (format.find(kDateFormats[code]) != std::string::npos) {
            cfg.byDateFormat = code;
            break;
        }
    }
    if (format.find("HH") != std::string::npos) {
        cfg.byTimeFormat = 0;
    } else if (format.find("hh") != std::string::npos) {
        cfg.byTimeFormat = 1;
    }
    ReadBool(Member(table, "DSTEnable"), cfg.bDSTEnable);
}

struct DstPoint {
    const char* key;
    KZ_DST_POINT KZDEV_LOCALES_CFG::*point;
};
constexpr DstPoint kDstPoints[] = {{"DSTStart", &KZDEV_LOCALES_CFG::stDSTStart},
                                   {"DSTEnd", &KZDEV_LOCALES_CFG::stDSTEnd}};

// Both points by date when neither has a week, else both by week; a point by week goes out with
// year 0.
void PacketDstPoints(const KZDEV_LOCALES_CFG& cfg, Json::Value& table) {
    const bool byDate = cfg.stDSTStart.nWeek == 0 && cfg.stDSTEnd.nWeek == 0;
    for (const DstPoint& p : kDstPoints) {
        const KZ_DST_POINT& point = cfg.*p.point;
        WriteMerged(table, p.key, "Year", Int(byDate ? point.nYear : 0));
        WriteMerged(table, p.key, "Week", Int(byDate ? 0 : point.nWeek));
        WriteMerged(table, p.key, "Month", Int(point.nMonth));
        WriteMerged(table, p.key, "Day", Int(point.nDay));
        WriteMerged(table, p.key, "Hour", Int(point.nHour));
        WriteMerged(table, p.key, "Minute", Int(point.nMinute));
    }
}

// A table by week keeps the record's years (the Packet side writes them as 0); a table by date
// sets both weeks to 0.
void ParseDstPoints(const Json::Value& table, KZDEV_LOCALES_CFG& cfg) {
    const int weeks =
        Path(table, {"DSTStart", "Week"}).asInt() | Path(table, {"DSTEnd", "Week"}).asInt();
    for (const DstPoint& p : kDstPoints) {
        const Json::Value& in = Member(table, p.key);
        KZ_DST_POINT& point = cfg.*p.point;
        ReadIfInt(Member(in, weeks != 0 ? "Week" : "Year"), weeks != 0 ? point.nWeek : point.nYear);
    }
    if (weeks == 0) {
        cfg.stDSTStart.nWeek = 0;
        cfg.stDSTEnd.nWeek = 0;
    }
    for (const DstPoint& p : kDstPoints) {
        const Json::Value& in = Member(table, p.key);
        KZ_DST_POINT& point = cfg.*p.point;
        ReadIfInt(Member(in, "Month"), point.nMonth);
        ReadIfInt(Member(in, "Day"), point.nDay);
        ReadIfInt(Member(in, "Hour"), point.nHour);
        ReadIfInt(Member(in, "Minute"), point.nMinute);
    }
}

// ---- Language

// The device's language tokens, spelt as the device spells them; byLanguage indexes them.
constexpr const char* kLanguages[KZ_LANGUAGE_COUNT] = {
    "English",   "SimpChinese", "TradChinese", "Italian",  "Spanish", "Japanese",  "Russian",
    "French",    "German",      "Portugal",    "Turkey",   "Poland",  "Romanian",  "Hungarian",
    "Finnish",   "Estonian",    "Korean",      "Farsi",    "Dansk",   "Czechish",  "Bulgaria",
    "Slovakian", "Slovenia",    "Croatian",    "Dutch",    "Greek",   "Ukrainian", "Swedish",
    "Serbian",   "Vietnamese",  "Lithuanian",  "Filipino", "Arabic",  "Catalan",   "Latvian",
    "Thai",      "Hebrew",      "Bosnian",
};

// ---- AutoMaintain

constexpr unsigned char kRebootNever = 0;
constexpr unsigned char kRebootEveryDay = 1;
constexpr int kTableNever = -1;
constexpr int kTableEveryDay = 7;

}  // namespace

int CReqConfigProtocolFix::Packet_General(Json::Value& table) {
    return PacketBySubMode<KZDEV_GENERAL_CFG>(m_info, table, PacketGeneralNames,
                                              PacketGeneralLocalNo);
}

int CReqConfigProtocolFix::Parse_General(Json::Value& table) {
    return ParseBySubMode<KZDEV_GENERAL_CFG>(m_info, table, ParseGeneralNames, ParseGeneralLocalNo);
}

int CReqConfigProtocolFix::Packet_Locales(Json::Value& table) {
    return PacketBySubMode<KZDEV_LOCALES_CFG>(m_info, table, PacketTimeFormat, PacketDstPoints);
}

int CReqConfigProtocolFix::Parse_Locales(Json::Value& table) {
    return ParseBySubMode<KZDEV_LOCALES_CFG>(m_info, table, ParseTimeFormat, ParseDstPoints);
}

// The table itself is the language's name; an index past the list writes nothing.
int CReqConfigProtocolFix::Packet_Language(Json::Value& table) {
    const auto* cfg = InputRecord<KZDEV_LOCALES_CFG>();
    if (cfg == nullptr) return -1;
    if (cfg->byLanguage < KZ_LANGUAGE_COUNT) table = kLanguages[cfg->byLanguage];
    return 1;
}

int CReqConfigProtocolFix::Parse_Language(Json::Value& table) {
    auto* cfg = OutputRecord<KZDEV_LOCALES_CFG>();
    if (cfg == nullptr) return -1;
    const std::string name = table.asString();
    for (unsigned char i = 0; i < KZ_LANGUAGE_COUNT; ++i) {
        if (SameWord(name, kLanguages[i])) {
            cfg->byLanguage = i;
            break;
        }
    }
    return 1;
}

// The record counts 0 never, 1 every day, 2 to 8 the weekdays; the table -1 never, 0 to 6 the
// weekdays, 7 every day.
int CReqConfigProtocolFix::Packet_AutoMaintain(Json::Value& table) {
    const auto* cfg = InputRecord<KZDEV_AUTOMAINTAIN_CFG>();
    if (cfg == nullptr) return -1;
    int day = cfg->byAutoRebootDay - 2;
    if (cfg->byAutoRebootDay == kRebootNever) day = kTableNever;
    if (cfg->byAutoRebootDay == kRebootEveryDay) day = kTableEveryDay;
    table["AutoRebootDay"] = day;
    table["AutoRebootHour"] = Int(cfg->byAutoRebootHour);
    return 1;
}

int CReqConfigProtocolFix::Parse_AutoMaintain(Json::Value& table) {
    auto* cfg = OutputRecord<KZDEV_AUTOMAINTAIN_CFG>();
    if (cfg == nullptr) return -1;
    const Json::Value& day = Member(table, "AutoRebootDay");
    if (Present(day)) {
        const int d = day.asInt();
        cfg->byAutoRebootDay = d == kTableNever ? kRebootNever
                               : d == kTableEveryDay
                                   ? kRebootEveryDay
                                   : Narrow<unsigned char>(static_cast<unsigned int>(d) + 2u);
    }
    ReadInt(Member(table, "AutoRebootHour"), cfg->byAutoRebootHour);
    return 1;
}
