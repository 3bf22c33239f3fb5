// Alarm inputs: "Alarm" (a local input) and "NetAlarm" (an input raised over the network). One
// code for both, in record mode and in F5 text mode; the differences are in AlarmInput.
#include "request/f5_text.h"
#include "request/fields.h"

#include <protofix/ReqConfigProtocolFix.h>

using namespace protofix;

namespace {

struct AlarmInput {
    const char* member;         // the section's member in the F5 text
    bool enableWhenNonZero;     // record to table: "Enable" true for any non-zero byte, else for 1
    bool sensorTypeStringOnly;  // table to record: "SensorType" read only when it is a string
};

constexpr AlarmInput kAlarm{"Alarm", false, false};
constexpr AlarmInput kNetAlarm{"NetAlarm", true, true};

constexpr unsigned char kNormallyClosed = 0;
constexpr unsigned char kNormallyOpen = 1;

int PacketRecord(const AlarmInput& input, KZDEV_ALARMIN_CFG* cfg, Json::Value& table) {
    if (cfg == nullptr) return -1;
    table["Enable"] = input.enableWhenNonZero ? cfg->enable != 0 : cfg->enable == 1;
    if (cfg->sensorType == kNormallyOpen) table["SensorType"] = "NO";
    if (cfg->sensorType == kNormallyClosed) table["SensorType"] = "NC";

    Json::Value& handler = table["EventHandler"];
    for (int d = 0; d < KZ_WEEK_DAYS; ++d) {
        for (int s = 0; s < KZ_DAY_SECTIONS; ++s) {
            CReqConfigProtocolFix::PacketNormalTime(cfg->timeSections[d][s],
                                                    handler["TimeSection"][d][s]);
        }
    }
    CReqConfigProtocolFix::Packet_EventHandler_Binary(handler, &cfg->handler);
    return 1;
}

int PacketText(const AlarmInput& input, const char* text, Json::Value& table) {
    Json::Value document;
    if (!ReadF5Text(text, document)) return -1;
    const Json::Value& alarm = Member(document, input.member);

    if (Present(Member(alarm, "En"))) table["Enable"] = Member(alarm, "En").asInt() == 1;
    table["Name"] = Member(alarm, "Name");
    table["SensorType"] = Member(alarm, "SensorType");
    // Only an object converts: the device's value of another kind says nothing of the linkage.
    const Json::Value& handler = Member(alarm, "EventHandler");
    if (handler.isObject()) CReqConfigProtocolFix::Packet_EventHandler_F5(table["EventHandler"], handler);
    return 1;
}

void ReadSensorType(const AlarmInput& input, const Json::Value& v, unsigned char& sensorType) {
    if (!Present(v) || (input.sensorTypeStringOnly && !v.isString())) return;
    const std::string word = v.asString();
    if (SameWord(word, "NC")) {
        sensorType = kNormallyClosed;
    } else if (SameWord(word, "NO")) {
        sensorType = kNormallyOpen;
    }
}

int ParseRecord(const AlarmInput& input, Json::Value& table, KZDEV_ALARMIN_CFG* cfg) {
    if (cfg == nullptr) return -1;
    const Json::Value& in = table;
    ReadBool(Member(in, "Enable"), cfg->enable);
    ReadSensorType(input, Member(in, "SensorType"), cfg->sensorType);

    // The time sections are reached through the table's creating accessors, so a table without
    // an "EventHandler" has one (of null time sections) afterwards, and the linkage below runs
    // with its clears. The device's readers rely on that order. A table, or an "EventHandler",
    // of another kind than an object gets no member: its linkage is left as it was.
    Json::Value* handler = MemberToWrite(table, "EventHandler");
    Json::Value* sections = handler != nullptr ? MemberToWrite(*handler, "TimeSection") : nullptr;
    for (int d = 0; sections != nullptr && d < KZ_WEEK_DAYS; ++d) {
        const Json::Value& day = Element(*sections, static_cast<Json::ArrayIndex>(d));
        for (int s = 0; s < KZ_DAY_SECTIONS; ++s) {
            const Json::Value& text = Element(day, static_cast<Json::ArrayIndex>(s));
            if (text.isString()) {
                CReqConfigProtocolFix::ParseNormalTime(cfg->timeSections[d][s], text.asCString());
            }
        }
    }
    if (handler != nullptr && handler->isObject()) {
        CReqConfigProtocolFix::Parse_EventHandler_Binary(*handler, &cfg->handler);
    }
    return 1;
}

// Merges the table into the section's member of the F5 document. The member is created only
// when a key is written into it; a member, or a document, of another kind is left as it was.
void MergeText(const AlarmInput& input, const Json::Value& table, Json::Value& document) {
    if (!table.isObject()) return;
    const auto member = [&]() { return MemberToWrite(document, input.member); };
    const auto put = [&](const char* key, const Json::Value& value) {
        Json::Value* alarm = member();
        Json::Value* slot = alarm != nullptr ? MemberToWrite(*alarm, key) : nullptr;
        if (slot != nullptr) *slot = value;
    };
    if (Present(Member(table, "Enable"))) put("En", Member(table, "Enable").asBool() ? 1 : 0);
    if (Present(Member(table, "Name"))) put("Name", Member(table, "Name"));
    if (Present(Member(table, "SensorType"))) put("SensorType", Member(table, "SensorType"));
    const Json::Value& handler = Member(table, "EventHandler");
    if (!handler.isObject()) return;
    Json::Value* alarm = member();
    Json::Value* f5 = alarm != nullptr ? MemberToWrite(*alarm, "EventHandler") : nullptr;
    if (f5 != nullptr) CReqConfigProtocolFix::Parse_EventHandler_F5(handler, *f5);
}

// The request's buffers hold the section's record in record mode and the device's F5 text in
// text mode (the dispatch has refused every other mode).
int PacketAlarmInput(const AlarmInput& input, const PROTOCOL_FIX_INFO& info, Json::Value& table) {
    if (info.mode == PROTOFIX_MODE_TEXT) {
        return PacketText(input, static_cast<const char*>(info.input), table);
    }
    return PacketRecord(input, static_cast<KZDEV_ALARMIN_CFG*>(info.input), table);
}

int ParseAlarmInput(const AlarmInput& input, const PROTOCOL_FIX_INFO& info, Json::Value& table) {
    if (info.mode == PROTOFIX_MODE_TEXT) {
        return MergeIntoF5Buffer(static_cast<char*>(info.output), info.outputLength,
                                 [&](Json::Value& document) { MergeText(input, table, document); });
    }
    return ParseRecord(input, table, static_cast<KZDEV_ALARMIN_CFG*>(info.output));
}

}  // namespace

int CReqConfigProtocolFix::Packet_Alarm(Json::Value& table) { return PacketAlarmInput(kAlarm, m_info, table); }
int CReqConfigProtocolFix::Parse_Alarm(Json::Value& table) { return ParseAlarmInput(kAlarm, m_info, table); }
int CReqConfigProtocolFix::Packet_NetAlarm(Json::Value& table) {
    return PacketAlarmInput(kNetAlarm, m_info, table);
}
int CReqConfigProtocolFix::Parse_NetAlarm(Json::Value& table) { return ParseAlarmInput(kNetAlarm, m_info, table); }
