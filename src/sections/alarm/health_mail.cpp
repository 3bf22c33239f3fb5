// "HealthMail": the device's periodic health report by mail. It has no record: both directions
// work on the device's F5 text, where the interval is in minutes; the table has it in seconds.
#include "request/f5_text.h"
#include "request/fields.h"

#include <protofix/ReqConfigProtocolFix.h>

using namespace protofix;

namespace {

constexpr Json::Int64 kSecondsPerMinute = 60;

}  // namespace

// "HealthMail" of the F5 text to "HealthReport" of the table. The interval in seconds is written
// as the exact product, even where an int cannot hold it.
int CReqConfigProtocolFix::Packet_HealthMail(Json::Value& table) {
    Json::Value document;
    if (!ReadF5Text(static_cast<const char*>(m_info.input), document)) return -1;
    const Json::Value& mail = Member(document, "HealthMail");
    const Json::Value& en = Member(mail, "En");
    if (Present(en)) table["HealthReport"]["Enable"] = en.asInt() == 1;
    const Json::Value& interval = Member(mail, "Interval");
    if (Present(interval)) table["HealthReport"]["Interval"] = interval.asInt() * kSecondsPerMinute;
    return 1;
}

// "HealthReport" of the table merged into "HealthMail" of the F5 text in the output buffer; the
// seconds become whole minutes, truncated toward zero.
int CReqConfigProtocolFix::Parse_HealthMail(Json::Value& table) {
    return MergeIntoF5Buffer(
        static_cast<char*>(m_info.output), m_info.outputLength, [&](Json::Value& document) {
            const Json::Value& report = Member(table, "HealthReport");
            const Json::Value& enable = Member(report, "Enable");
            const Json::Value& interval = Member(report, "Interval");
            Json::Value* mail = nullptr;
            if (Present(enable) || Present(interval)) mail = MemberToWrite(document, "HealthMail");
            if (mail == nullptr) return;
            if (Present(enable)) {
                if (Json::Value* en = MemberToWrite(*mail, "En")) *en = enable.asBool() ? 1 : 0;
            }
            if (Present(interval)) {
                if (Json::Value* minutes = MemberToWrite(*mail, "Interval"))
                    *minutes = interval.asInt() / static_cast<int>(kSecondsPerMinute);
            }
        });
}
