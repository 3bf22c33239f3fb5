// What the alarm-input, fault-event and video-detection sections share: the arming schedule under
// "EventHandler"."TimeSection", and the F5 text frame of a section that keeps its values in one
// member of the device's text ("En", its own keys, "EventHandler").
#ifndef PROTOFIX_SECTIONS_ALARM_EVENT_SECTIONS_H
#define PROTOFIX_SECTIONS_ALARM_EVENT_SECTIONS_H

#include "request/f5_text.h"
#include "request/fields.h"

#include <protofix/ReqConfigProtocolFix.h>

namespace protofix::events {

using Schedule = tagKZ_TSECT[KZ_WEEK_DAYS][KZ_DAY_SECTIONS];

// ---- the schedule ------------------------------------------------------------------------------

// "EventHandler"."TimeSection": 7 days of 6 texts in the normal form.
inline void PutSchedule(const Schedule& schedule, Json::Value& handler) {
    Json::Value& days = handler["TimeSection"];
    for (int d = 0; d < KZ_WEEK_DAYS; ++d) {
        Json::Value& day = days[d];
        for (int s = 0; s < KZ_DAY_SECTIONS; ++s) {
            CReqConfigProtocolFix::PacketNormalTime(schedule[d][s], day[s]);
        }
    }
}

// A time section is read only from a string; any other element leaves it as it was.
inline void ReadTimeSection(const Json::Value* text, tagKZ_TSECT& section) {
    if (text != nullptr && text->isString()) {
        CReqConfigProtocolFix::ParseNormalTime(section, text->asCString());
    }
}

// Reads the time sections of a "TimeSection" value without changing the table.
inline void ReadSchedule(const Json::Value& days, Schedule& schedule) {
    for (int d = 0; d < KZ_WEEK_DAYS; ++d) {
        for (int s = 0; s < KZ_DAY_SECTIONS; ++s) {
            ReadTimeSection(&Element(Element(days, d), s), schedule[d][s]);
        }
    }
}

// Reads the time sections as the device's readers reach them: through the table's creating
// accessors, so that afterwards an object table has an "EventHandler" (of null time sections
// when it had none) and the linkage that follows runs with its clears. A value of another kind
// on the way gets nothing created in it.
inline void ReadScheduleReaching(Json::Value& table, Schedule& schedule) {
    Json::Value* handler = MemberToWrite(table, "EventHandler");
    Json::Value* days = handler ? MemberToWrite(*handler, "TimeSection") : nullptr;
    if (days == nullptr) return;
    for (int d = 0; d < KZ_WEEK_DAYS; ++d) {
        Json::Value* day = ElementToWrite(*days, d);
        if (day == nullptr) continue;
        for (int s = 0; s < KZ_DAY_SECTIONS; ++s)
            ReadTimeSection(ElementToWrite(*day, s), schedule[d][s]);
    }
}

// The table's "EventHandler" to hand to the linkage parse; a local null when it has none. Only an
// object converts: a value of another kind says nothing of the linkage, so the record's linkage
// keeps what it holds (none of the linkage's clears run on its account).
class TableHandler {
public:
    explicit TableHandler(Json::Value& table)
        : handler_(Member(table, "EventHandler").isObject() ? &table["EventHandler"] : &absent_) {}
    TableHandler(const TableHandler&) = delete;
    TableHandler& operator=(const TableHandler&) = delete;
    bool present() const { return handler_ != &absent_; }
    Json::Value& get() const { return *handler_; }

private:
    Json::Value absent_;
    Json::Value* handler_;
};

// ---- the F5 text -------------------------------------------------------------------------------

// Serialize side: the section's member S of the caller's F5 text. "Enable" from S."En", then
// own(S, table) for the section's own keys, then S."EventHandler" through the linkage. -1 for a
// text that is missing or does not parse; 1 otherwise, also when the text has no such member.
template <class Own>
int PacketF5Section(const PROTOCOL_FIX_INFO& info, const char* member, Json::Value& table,
                    Own&& own) {
    Json::Value document;
    if (!ReadF5Text(static_cast<const char*>(info.input), document)) return -1;
    const Json::Value& section = Member(document, member);
    const Json::Value& en = Member(section, "En");
    if (Present(en)) table["Enable"] = en.asInt() == 1;
    own(section, table);
    // As on the record path, only an object converts.
    const Json::Value& handler = Member(section, "EventHandler");
    if (handler.isObject())
        CReqConfigProtocolFix::Packet_EventHandler_F5(table["EventHandler"], handler);
    return 1;
}

// The key of the section's member in the F5 document, created (with the member) for writing;
// null when the document or the member is of another kind, and then nothing is written.
inline Json::Value* SectionKey(Json::Value& document, const char* member, const char* key) {
    Json::Value* section = MemberToWrite(document, member);
    return section ? MemberToWrite(*section, key) : nullptr;
}

// A table key that is present is copied as it is into the section's member.
inline void CopyToSection(const Json::Value& table, Json::Value& document, const char* member,
                          const char* key) {
    const Json::Value& value = Member(table, key);
    if (!Present(value)) return;
    if (Json::Value* slot = SectionKey(document, member, key)) *slot = value;
}

// Deserialize side: merges the table into the section's member of the F5 text in the output
// buffer and writes the text back under the capacity rule. A table that is not an object changes
// nothing (the text is still written again). own(table, document) merges the section's own keys
// between "Enable" and "EventHandler"; it answers false when it already knows that the merged text
// cannot fit the buffer, and the call then answers -1 with the buffer as it was.
template <class Own>
int MergeF5Section(const PROTOCOL_FIX_INFO& info, const char* member, const Json::Value& table,
                   Own&& own) {
    char* buffer = static_cast<char*>(info.output);
    Json::Value document;
    if (!ReadF5Buffer(buffer, info.outputLength, document)) return -1;
    bool fits = true;
    if (table.isObject()) {
        const Json::Value& enable = Member(table, "Enable");
        if (Present(enable)) {
            if (Json::Value* en = SectionKey(document, member, "En")) *en = enable.asBool() ? 1 : 0;
        }
        fits = own(table, document);
        // The device's linkage is rewritten only from an object: nothing of it is lost to a
        // value of another kind.
        const Json::Value& handler = Member(table, "EventHandler");
        if (handler.isObject()) {
            Json::Value* f5 = SectionKey(document, member, "EventHandler");
            if (f5 != nullptr && IsObjectOrNull(*f5))
                CReqConfigProtocolFix::Parse_EventHandler_F5(handler, *f5);
        }
    }
    return fits ? WriteF5Buffer(document, buffer, info.outputLength) : -1;
}

}  // namespace protofix::events

#endif
