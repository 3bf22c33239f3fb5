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
    const Json::Value& alarm = static_cast<const Json::Value&>(document)[input.member];

    if (Present(alarm["En"])) table["Enable"] = alarm["En"].asInt() == 1;
    table["Name"] = alarm["Name"];
    table["SensorType"] = alarm["SensorType"];
    if (Present(alarm["EventHandler"])) {
        CReqConfigProtocolFix::Packet_EventHandler_F5(table["EventHandler"], alarm["EventHandler"]);
    }
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
    ReadBool(in["Enable"], cfg->enable);
    ReadSensorType(input, in["SensorType"], cfg->sensorType);

    // The time sections are reached through the table's creating accessors, so a table without
    // an "EventHandler" has one (of null time sections) afterwards, and the linkage below runs
    // with its clears. The device's readers rely on that order.
    Json::Value& sections = table["EventHandler"]["TimeSection"];
    for (int d = 0; d < KZ_WEEK_DAYS; ++d) {
        for (int s = 0; s < KZ_DAY_SECTIONS; ++s) {
            const Json::Value& text = sections[d][s];
            if (text.isString()) {
                CReqConfigProtocolFix::ParseNormalTime(cfg->timeSections[d][s], text.asCString());
            }
        }
    }
    if (Present(in["EventHandler"])) {
        CReqConfigProtocolFix::Parse_EventHandler_Binary(table["EventHandler"], &cfg->handler);
    }
    return 1;
}

// Merges the table into the section's member of the F5 document.
void MergeText(const AlarmInput& input, const Json::Value& table, Json::Value& document) {
    if (!IsObjectOrNull(table)) return;
    if (Present(table["Enable"])) document[input.member]["En"] = table["Enable"].asBool() ? 1 : 0;
    if (Present(table["Name"])) document[input.member]["Name"] = table["Name"];
    if (Present(table["SensorType"])) document[input.member]["SensorType"] = table["SensorType"];
    if (Present(table["EventHandler"])) {
        CReqConfigProtocolFix::Parse_EventHandler_F5(table["EventHandler"],
                                                     document[input.member]["EventHandler"]);
    }
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
