// Recording of one channel: "Record" (the weekly schedule and the pre-record length) and
// "RecordSource" (the recorded stream). Both convert the same record, each only its own fields, in
// record mode and in the F5 text mode, where the values live in the text's "Record" object as
// "PreRec", "TimeSection" and "Stream".
#include "request/f5_text.h"
#include "request/fields.h"
#include "sections/storage/text_mode.h"

#include <protofix/ReqConfigProtocolFix.h>

#include <string>

using namespace protofix;
using namespace protofix::storage;

namespace {

// The stream names, indexed by byVideoStream and by the F5 "Stream".
constexpr const char* kVideoStreams[] = {"Main", "Extra1", "Extra2", "Extra3"};
constexpr unsigned int kVideoStreamCount = sizeof kVideoStreams / sizeof kVideoStreams[0];

// The string of schedule entry [d][s] of a value, or null when there is none.
const Json::Value& ScheduleEntry(const Json::Value& schedule, int d, int s) {
    return Element(Element(schedule, static_cast<Json::ArrayIndex>(d)),
                   static_cast<Json::ArrayIndex>(s));
}

// ---- Record -----------------------------------------------------------------------------------

int PacketRecordCfg(const KZDEV_RECORD_CFG* cfg, Json::Value& table) {
    if (cfg == nullptr) return -1;
    if (!IsObjectOrNull(table)) return 1;
    table["PreRecord"] = Int(cfg->byPreRecord);
    Json::Value& schedule = table["TimeSection"];
    for (int d = 0; d < KZ_WEEK_DAYS; ++d) {
        for (int s = 0; s < KZ_DAY_SECTIONS; ++s) {
            CReqConfigProtocolFix::PacketRecordTime(cfg->stSect[d][s], schedule[d][s]);
        }
    }
    return 1;
}

int PacketRecordText(const char* text, Json::Value& table) {
    Json::Value document;
    if (!ReadF5Text(text, document)) return -1;
    const Json::Value& record = Member(document, "Record");
    const Json::Value& preRec = Member(record, "PreRec");
    if (Present(preRec)) table["PreRecord"] = preRec.asInt();

    // One scratch section for the whole schedule, as the device reads it: a text that matches
    // only in part keeps the values of the entry before in the fields it does not reach.
    tagKZ_TSECT scratch = {};
    const Json::Value& schedule = Member(record, "TimeSection");
    Json::Value* written = nullptr;  // the table's "TimeSection", made at its first entry
    for (int d = 0; d < KZ_WEEK_DAYS; ++d) {
        for (int s = 0; s < KZ_DAY_SECTIONS; ++s) {
            const Json::Value& entry = ScheduleEntry(schedule, d, s);
            if (!entry.isString()) continue;
            CReqConfigProtocolFix::ParseNormalTime(scratch, entry.asCString());
            if (written == nullptr) written = &table["TimeSection"];
            CReqConfigProtocolFix::PacketRecordTime(scratch, (*written)[d][s]);
        }
    }
    return 1;
}

int ParseRecordCfg(const Json::Value& table, KZDEV_RECORD_CFG* cfg) {
    if (cfg == nullptr) return -1;
    if (!table.isObject()) return 1;
    ReadInt(Member(table, "PreRecord"), cfg->byPreRecord);
    const Json::Value& schedule = Member(table, "TimeSection");
    if (!Present(schedule)) return 1;
    for (int d = 0; d < KZ_WEEK_DAYS; ++d) {
        for (int s = 0; s < KZ_DAY_SECTIONS; ++s) {
            const Json::Value& entry = ScheduleEntry(schedule, d, s);
            if (entry.isString())
                CReqConfigProtocolFix::ParseRecordTime(cfg->stSect[d][s], entry.asCString());
        }
    }
    return 1;
}

// The table's schedule goes into the F5 text as record-type masks in the normal form: the
// table's flag 1 is written as 4 there.
void MergeRecord(const Json::Value& table, Json::Value& document) {
    const Json::Value& preRecord = Member(table, "PreRecord");
    if (Present(preRecord)) WriteAt(document, preRecord.asInt(), "Record", "PreRec");
    const Json::Value& schedule = Member(table, "TimeSection");
    if (!Present(schedule)) return;
    tagKZ_TSECT scratch = {};
    // The F5 "TimeSection", reached at the first string entry (null: of another kind on the way).
    Json::Value* written = nullptr;
    bool reached = false;
    for (int d = 0; d < KZ_WEEK_DAYS; ++d) {
        for (int s = 0; s < KZ_DAY_SECTIONS; ++s) {
            const Json::Value& entry = ScheduleEntry(schedule, d, s);
            if (!entry.isString()) continue;
            CReqConfigProtocolFix::ParseRecordTime(scratch, entry.asCString());
            if (!reached) {
                written = ToWrite(document, "Record", "TimeSection");
                reached = true;
            }
            if (Json::Value* section = written ? ToWrite(*written, d, s) : nullptr) {
                CReqConfigProtocolFix::PacketNormalTime(scratch, *section);
            }
        }
    }
}

// ---- RecordSource -----------------------------------------------------------------------------

int PacketSourceCfg(const KZDEV_RECORD_CFG* cfg, Json::Value& table) {
    if (cfg == nullptr) return -1;
    if (!IsObjectOrNull(table) || cfg->byVideoStream >= kVideoStreamCount) return 1;
    table["VideoStream"] = kVideoStreams[cfg->byVideoStream];
    return 1;
}

int PacketSourceText(const char* text, Json::Value& table) {
    Json::Value document;
    if (!ReadF5Text(text, document)) return -1;
    const Json::Value& stream = Path(document, {"Record", "Stream"});
    if (!Present(stream)) return 1;
    const unsigned int index = stream.asUInt();
    if (index < kVideoStreamCount) table["VideoStream"] = kVideoStreams[index];
    return 1;
}

// "VideoStream" only tells that the table names a stream: the device compares the names with the
// text of the whole table, and the JSON library refuses to give an object as text, which passes
// out to the caller. Kept as the device's readers expect.
int ParseSourceCfg(const Json::Value& table, KZDEV_RECORD_CFG* cfg) {
    if (cfg == nullptr) return -1;
    if (!table.isObject() || !Present(Member(table, "VideoStream"))) return 1;
    const std::string whole = table.asString();
    for (unsigned int i = 0; i < kVideoStreamCount; ++i) {
        if (SameWord(whole, kVideoStreams[i])) {
            cfg->byVideoStream = Narrow<unsigned char>(i);
            return 1;
        }
    }
    return 1;
}

void MergeSource(const Json::Value& table, Json::Value& document) {
    const Json::Value& stream = Member(table, "VideoStream");
    if (!Present(stream)) return;
    const std::string name = stream.asString();
    for (unsigned int i = 0; i < kVideoStreamCount; ++i) {
        if (!SameWord(name, kVideoStreams[i])) continue;
        WriteAt(document, UInt(i), "Record", "Stream");
        return;
    }
}

}  // namespace

int CReqConfigProtocolFix::Packet_Record(Json::Value& table) {
    return PacketInMode<const KZDEV_RECORD_CFG>(m_info, PacketRecordCfg, PacketRecordText, table);
}
int CReqConfigProtocolFix::Parse_Record(Json::Value& table) {
    return ParseInMode<KZDEV_RECORD_CFG>(m_info, ParseRecordCfg, MergeRecord, table);
}
int CReqConfigProtocolFix::Packet_RecordSource(Json::Value& table) {
    return PacketInMode<const KZDEV_RECORD_CFG>(m_info, PacketSourceCfg, PacketSourceText, table);
}
int CReqConfigProtocolFix::Parse_RecordSource(Json::Value& table) {
    return ParseInMode<KZDEV_RECORD_CFG>(m_info, ParseSourceCfg, MergeSource, table);
}
