// Where recordings are stored: "NAS" (the storage server), "RemoteStorageLimit" (its upload
// schedule and file limits), "StorageGroup" (overwriting full disks) and "StorageGlobal" (how long
// files are kept). The first two share one record and know the F5 text mode, where the values live
// in the text's "NAS" object; the device's table holds their keys in its first element.
#include "request/f5_text.h"
#include "request/fields.h"
#include "sections/storage/text_mode.h"

#include <protofix/ReqConfigProtocolFix.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

using namespace protofix;
using namespace protofix::storage;

namespace {

// The protocol words, indexed by byProtocol and by the F5 "Protocol".
constexpr const char* kProtocols[] = {"FTP", "SMB", "NFS", "ISCSI"};
constexpr int kProtocolCount = sizeof kProtocols / sizeof kProtocols[0];

// The protocol code of a word, compared exactly, case included; -1 for any other word.
int ProtocolCode(const std::string& word) {
    for (int i = 0; i < kProtocolCount; ++i) {
        if (word == kProtocols[i]) return i;
    }
    return -1;
}

// The keys of a storage table: the table itself when it is an object, its first element when it
// is an array; null (no keys) for any other table.
const Json::Value& StorageKeys(const Json::Value& table, bool& objectForm) {
    objectForm = table.isObject();
    if (objectForm) return table;
    return Element(table, 0);
}

// "En0", "Time1", ...: the members of an F5 day object for each upload section, made once for a
// whole schedule.
using DayMembers = std::array<std::string, KZ_NAS_DAY_SECTIONS>;
DayMembers DayMembersOf(const char* prefix) {
    DayMembers names;
    for (std::size_t s = 0; s < names.size(); ++s) {
        char name[64] = {};
        _snprintf(name, sizeof name, "%s%d", prefix, static_cast<int>(s));
        names[s] = name;
    }
    return names;
}

// ---- NAS --------------------------------------------------------------------------------------

int PacketNasCfg(const KZDEV_NAS_CFG* cfg, Json::Value& table) {
    if (cfg == nullptr) return -1;
    Json::Value& keys = table[0];
    keys["Enable"] = Flag(cfg->bEnable);
    PutText(keys["Address"], cfg->szAddress);
    keys["Port"] = Int(cfg->wPort);
    PutText(keys["Password"], cfg->szPassword);
    PutText(keys["UserName"], cfg->szUserName);
    PutText(keys["Directory"], cfg->szDirectory);
    keys["Protocol"] =
        cfg->byProtocol < kProtocolCount ? kProtocols[cfg->byProtocol] : kProtocols[0];
    PutText(keys["SubDirectory"], cfg->szSubDirectory);
    return 1;
}

int PacketNasText(const char* text, Json::Value& table) {
    Json::Value document;
    if (!ReadF5Text(text, document)) return -1;
    const Json::Value& nas = Member(document, "NAS");
    const auto copy = [&](const char* from, const char* to) {
        const Json::Value& value = Member(nas, from);
        if (Present(value)) table[0][to] = value;
    };
    copy("En", "Enable");
    for (const char* key : {"Address", "Port", "Password", "UserName", "Directory"}) copy(key, key);
    const Json::Value& protocol = Member(nas, "Protocol");
    if (Present(protocol)) {
        const int code = protocol.asInt();
        if (code >= 0 && code < kProtocolCount) table[0]["Protocol"] = kProtocols[code];
    }
    return 1;
}

// Every key is read only when present; the array form of the table never sets the file limits.
int ParseNasCfg(const Json::Value& table, KZDEV_NAS_CFG* cfg) {
    if (cfg == nullptr) return -1;
    bool objectForm = false;
    const Json::Value& keys = StorageKeys(table, objectForm);
    ReadText(Member(keys, "SubDirectory"), cfg->szSubDirectory);
    ReadBool(Member(keys, "Enable"), cfg->bEnable);
    ReadText(Member(keys, "Address"), cfg->szAddress);
    const Json::Value& port = Member(keys, "Port");
    if (Present(port)) cfg->wPort = Narrow<unsigned short>(port.asUInt());
    ReadText(Member(keys, "Password"), cfg->szPassword);
    ReadText(Member(keys, "UserName"), cfg->szUserName);
    ReadText(Member(keys, "Directory"), cfg->szDirectory);
    const Json::Value& protocol = Member(keys, "Protocol");
    if (Present(protocol)) {
        const int code = ProtocolCode(protocol.asString());
        if (code >= 0) cfg->byProtocol = Narrow<unsigned char>(code);
    }
    if (objectForm) {
        ReadInt(Member(keys, "FileLength"), cfg->nFileLength);
        ReadInt(Member(keys, "Interval"), cfg->nInterval);
    }
    return 1;
}

void MergeNas(const Json::Value& table, Json::Value& document) {
    bool objectForm = false;
    const Json::Value& keys = StorageKeys(table, objectForm);
    const auto copy = [&](const char* from, const char* to) {
        const Json::Value& value = Member(keys, from);
        if (Present(value)) WriteAt(document, value, "NAS", to);
    };
    copy("Enable", "En");
    copy("Address", "Address");
    const Json::Value& port = Member(keys, "Port");
    if (Present(port)) WriteAt(document, UInt(port.asUInt()), "NAS", "Port");
    for (const char* key : {"Password", "UserName", "Directory"}) copy(key, key);
    const Json::Value& protocol = Member(keys, "Protocol");
    if (Present(protocol)) {
        const int code = ProtocolCode(protocol.asString());
        if (code >= 0) WriteAt(document, code, "NAS", "Protocol");
    }
    if (objectForm) {
        copy("FileLength", "FileLen");
        copy("Interval", "Interval");
    }
}

// ---- RemoteStorageLimit -----------------------------------------------------------------------

// The enable word of each upload section is set from its flags in the caller's record before the
// section is written: the device's readers expect the record so.
int PacketLimitCfg(KZDEV_NAS_CFG* cfg, Json::Value& table) {
    if (cfg == nullptr) return -1;
    Json::Value& keys = table[0];
    Json::Value& channels = keys["Channels"];
    for (int c = 0; c < KZ_NAS_CHANNELS; ++c) {
        Json::Value& schedule = channels[c]["TimeSchedule"];
        for (int d = 0; d < KZ_WEEK_DAYS; ++d) {
            Json::Value& day = schedule[d];
            for (int s = 0; s < KZ_NAS_DAY_SECTIONS; ++s) {
                KZ_NAS_TSECT& section = cfg->stChnTime[c][d][s];
                section.stSect.enable =
                    section.byFlag2 != 0 || section.byFlag0 != 0 ? 1 : section.byFlag1;
                CReqConfigProtocolFix::PacketRecordTime(section.stSect, day[s]);
            }
        }
    }
    keys["FileLength"] = Int(cfg->nFileLength);
    keys["Interval"] = Int(cfg->nInterval);
    return 1;
}

// One scratch section for every channel and day, as the device reads the text: a member that is
// missing keeps the value of the entry before.
int PacketLimitText(const char* text, Json::Value& table) {
    Json::Value document;
    if (!ReadF5Text(text, document)) return -1;
    const Json::Value& nas = Member(document, "NAS");
    const Json::Value& fileLen = Member(nas, "FileLen");
    if (Present(fileLen)) table[0]["FileLength"] = fileLen;
    const Json::Value& interval = Member(nas, "Interval");
    if (Present(interval)) table[0]["Interval"] = interval;

    const Json::Value& channels = Member(nas, "ChnTime");
    if (!channels.isArray()) return 1;
    const DayMembers times = DayMembersOf("Time");
    const DayMembers enables = DayMembersOf("En");
    tagKZ_TSECT scratch = {};
    for (Json::ArrayIndex c = 0; c < channels.size(); ++c) {
        const Json::Value& channel = channels[c];
        if (!Present(channel)) continue;
        Json::Value& schedule = table[0]["Channels"][c]["TimeSchedule"];
        for (int d = 0; d < KZ_WEEK_DAYS; ++d) {
            const Json::Value& day = Element(channel, static_cast<Json::ArrayIndex>(d));
            Json::Value& row = schedule[d];
            for (std::size_t s = 0; s < times.size(); ++s) {
                if (const Json::Value* time = FindMember(day, times[s])) {
                    CReqConfigProtocolFix::ParseNormalTimeEx(scratch, time->asString().c_str());
                }
                if (const Json::Value* enable = FindMember(day, enables[s])) {
                    scratch.enable = enable->asInt();
                }
                CReqConfigProtocolFix::PacketNormalTime(scratch,
                                                        row[static_cast<Json::ArrayIndex>(s)]);
            }
        }
    }
    return 1;
}

int ParseLimitCfg(const Json::Value& table, KZDEV_NAS_CFG* cfg) {
    if (cfg == nullptr || !table.isArray()) return -1;
    const Json::Value& keys = Element(table, 0);
    const Json::Value& channels = Member(keys, "Channels");
    if (channels.isArray()) {
        const auto count = std::min<Json::ArrayIndex>(channels.size(), KZ_NAS_CHANNELS);
        for (Json::ArrayIndex c = 0; c < count; ++c) {
            if (!Present(channels[c])) continue;
            const Json::Value& schedule = Member(channels[c], "TimeSchedule");
            for (int d = 0; d < KZ_WEEK_DAYS; ++d) {
                for (int s = 0; s < KZ_NAS_DAY_SECTIONS; ++s) {
                    const Json::Value& text =
                        Element(Element(schedule, static_cast<Json::ArrayIndex>(d)),
                                static_cast<Json::ArrayIndex>(s));
                    if (!Present(text)) continue;
                    KZ_NAS_TSECT& section = cfg->stChnTime[c][d][s];
                    CReqConfigProtocolFix::ParseRecordTime(section.stSect, text.asString().c_str());
                    section.byFlag0 = section.stSect.enable != 0 ? 1 : 0;
                    section.byFlag1 = 0;
                    section.byFlag2 = 0;
                }
            }
        }
    }
    ReadInt(Member(keys, "FileLength"), cfg->nFileLength);
    ReadInt(Member(keys, "Interval"), cfg->nInterval);
    return 1;
}

// The least the merged F5 text grows by for each day object the merge writes: its braces and, for
// every upload section, "En<s>":<digit> and "Time<s>":"" (the span's own characters not counted).
constexpr std::size_t kLeastDayText =
    2 + KZ_NAS_DAY_SECTIONS * ((sizeof "\"En0\":0" - 1) + (sizeof "\"Time0\":\"\"" - 1));

// Each upload section of the table goes to the F5 day object as "En<s>" and "Time<s>". One
// scratch section serves every entry: a text that does not scan in full keeps the values of the
// entry before in what it does not reach. Answers false as soon as the day objects written are
// more than the buffer's capacity can hold: the merge stops there (the keys after the schedule
// are still read, as they would have been), and the whole text would not have fit.
bool MergeLimit(const Json::Value& table, Json::Value& document, int capacity) {
    const Json::Value& keys = Element(table, 0);
    const Json::Value& channels = Member(keys, "Channels");
    const DayMembers times = DayMembersOf("Time");
    const DayMembers enables = DayMembersOf("En");
    const std::size_t room = capacity > 0 ? static_cast<std::size_t>(capacity) : 0;
    std::size_t least = 0;  // the least length of the merged text so far
    tagKZ_TSECT scratch = {};
    for (Json::ArrayIndex c = 0; channels.isArray() && c < channels.size() && least <= room; ++c) {
        const Json::Value& schedule = Member(channels[c], "TimeSchedule");
        for (int d = 0; d < KZ_WEEK_DAYS && least <= room; ++d) {
            const Json::Value& texts = Element(schedule, static_cast<Json::ArrayIndex>(d));
            // Reaching the day object creates the path to it once, whatever its sections hold.
            Json::Value* day = ToWrite(document, "NAS", "ChnTime", static_cast<int>(c), d);
            if (day != nullptr) least += kLeastDayText;
            for (std::size_t s = 0; s < times.size(); ++s) {
                const Json::Value& text = Element(texts, static_cast<Json::ArrayIndex>(s));
                if (text.isString())
                    CReqConfigProtocolFix::ParseNormalTime(scratch, text.asCString());
                if (day == nullptr) continue;
                WriteAt(*day, scratch.enable, enables[s]);
                Json::Value span;
                CReqConfigProtocolFix::PacketNormalTimeEx(scratch, span);
                WriteAt(*day, span, times[s]);
            }
        }
    }
    const Json::Value& fileLength = Member(keys, "FileLength");
    if (Present(fileLength)) WriteAt(document, fileLength, "NAS", "FileLen");
    const Json::Value& interval = Member(keys, "Interval");
    if (Present(interval)) WriteAt(document, interval.asInt(), "NAS", "Interval");
    return least <= room;
}

}  // namespace

int CReqConfigProtocolFix::Packet_NAS(Json::Value& table) {
    return PacketInMode<const KZDEV_NAS_CFG>(m_info, PacketNasCfg, PacketNasText, table);
}
int CReqConfigProtocolFix::Parse_NAS(Json::Value& table) {
    return ParseInMode<KZDEV_NAS_CFG>(m_info, ParseNasCfg, MergeNas, table);
}
int CReqConfigProtocolFix::Packet_RemoteStorageLimit(Json::Value& table) {
    return PacketInMode<KZDEV_NAS_CFG>(m_info, PacketLimitCfg, PacketLimitText, table);
}
int CReqConfigProtocolFix::Parse_RemoteStorageLimit(Json::Value& table) {
    const int capacity = m_info.outputLength;
    return ParseInMode<KZDEV_NAS_CFG>(
        m_info, ParseLimitCfg,
        [capacity](const Json::Value& in, Json::Value& document) {
            return MergeLimit(in, document, capacity);
        },
        table);
}

int CReqConfigProtocolFix::Packet_StorageGroup(Json::Value& table) {
    const auto* cfg = InputRecord<KZDEV_STORAGEGROUP_CFG>();
    if (cfg == nullptr) return -1;
    table[0]["Name"] = "ReadWrite";
    table[0]["OverWrite"] = Flag(cfg->byOverWrite);
    return 1;
}

int CReqConfigProtocolFix::Parse_StorageGroup(Json::Value& table) {
    auto* cfg = OutputRecord<KZDEV_STORAGEGROUP_CFG>();
    if (cfg == nullptr) return -1;
    bool objectForm = false;
    const Json::Value& overWrite = Member(StorageKeys(table, objectForm), "OverWrite");
    if (overWrite.isBool()) cfg->byOverWrite = overWrite.asBool() ? 1 : 0;
    return 1;
}

int CReqConfigProtocolFix::Packet_StorageGlobal(Json::Value& table) {
    const auto* cfg = InputRecord<KZDEV_AUTOMAINTAIN_CFG>();
    if (cfg == nullptr) return -1;
    table["FileHoldTime"] = Int(cfg->byFileHoldTime);
    return 1;
}

int CReqConfigProtocolFix::Parse_StorageGlobal(Json::Value& table) {
    auto* cfg = OutputRecord<KZDEV_AUTOMAINTAIN_CFG>();
    if (cfg == nullptr) return -1;
    ReadInt(Member(table, "FileHoldTime"), cfg->byFileHoldTime);
    return 1;
}
