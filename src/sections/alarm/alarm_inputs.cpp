// Alarm inputs: "Alarm" (a local input) and "NetAlarm" (an input raised over the network). One
// code for both, in record mode and in F5 text mode; the differences are in AlarmInput.
#include "sections/alarm/event_sections.h"

#include <string>

using namespace protofix;
using namespace protofix::events;

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
    PutSchedule(cfg->timeSections, handler);
    CReqConfigProtocolFix::Packet_EventHandler_Binary(handler, &cfg->handler);
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

// The time sections are read before the "EventHandler" is tested, through the table's creating
// accessors: a table without one has one (of null time sections) afterwards, and the linkage
// runs with its clears. The device's readers rely on that order.
int ParseRecord(const AlarmInput& input, Json::Value& table, KZDEV_ALARMIN_CFG* cfg) {
    if (cfg == nullptr) return -1;
    ReadBool(Member(table, "Enable"), cfg->enable);
    ReadSensorType(input, Member(table, "SensorType"), cfg->sensorType);
    ReadScheduleReaching(table, cfg->timeSections);
    const TableHandler handler(table);
    if (handler.present())
        CReqConfigProtocolFix::Parse_EventHandler_Binary(handler.get(), &cfg->handler);
    return 1;
}

// The request's buffers hold the section's record in record mode and the device's F5 text in
// text mode (the dispatch has refused every other mode).
int PacketAlarmInput(const AlarmInput& input, const PROTOCOL_FIX_INFO& info, Json::Value& table) {
    if (info.mode == PROTOFIX_MODE_TEXT) {
        // "Name" and "SensorType" are copied whatever their kind, null included.
        return PacketF5Section(info, input.member, table,
                               [](const Json::Value& alarm, Json::Value& out) {
                                   out["Name"] = Member(alarm, "Name");
                                   out["SensorType"] = Member(alarm, "SensorType");
                               });
    }
    return PacketRecord(input, static_cast<KZDEV_ALARMIN_CFG*>(info.input), table);
}

int ParseAlarmInput(const AlarmInput& input, const PROTOCOL_FIX_INFO& info, Json::Value& table) {
    if (info.mode == PROTOFIX_MODE_TEXT) {
        return MergeF5Section(info, input.member, table,
                              [&](const Json::Value& in, Json::Value& document) {
                                  CopyToSection(in, document, input.member, "Name");
                                  CopyToSection(in, document, input.member, "SensorType");
                                  return true;
                              });
    }
    return ParseRecord(input, table, static_cast<KZDEV_ALARMIN_CFG*>(info.output));
}

}  // namespace

int CReqConfigProtocolFix::Packet_Alarm(Json::Value& table) {
    return PacketAlarmInput(kAlarm, m_info, table);
}
int CReqConfigProtocolFix::Parse_Alarm(Json::Value& table) {
    return ParseAlarmInput(kAlarm, m_info, table);
}
int CReqConfigProtocolFix::Packet_NetAlarm(Json::Value& table) {
    return PacketAlarmInput(kNetAlarm, m_info, table);
}
int CReqConfigProtocolFix::Parse_NetAlarm(Json::Value& table) {
    return ParseAlarmInput(kNetAlarm, m_info, table);
}
