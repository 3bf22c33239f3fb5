// What the recording and storage sections share between record mode and F5 text mode: the choice
// of the routine by the request's mode, and the places of the F5 document they write.
#ifndef PROTOFIX_SECTIONS_STORAGE_TEXT_MODE_H
#define PROTOFIX_SECTIONS_STORAGE_TEXT_MODE_H

#include "request/f5_text.h"
#include "request/fields.h"

#include <protofix/info.h>

#include <json/json.h>

#include <string>

namespace protofix::storage {

// The value at a path of keys and indices of an F5 document, created to be written; null when a
// value on the way has another kind. Nothing is created then: only a value that already is in the
// document can have another kind, and the path below a created value is all new.
inline Json::Value* ToWrite(Json::Value& v) { return &v; }

template <class... Rest>
Json::Value* ToWrite(Json::Value& v, const char* key, Rest... rest);
template <class... Rest>
Json::Value* ToWrite(Json::Value& v, const std::string& key, Rest... rest);
template <class... Rest>
Json::Value* ToWrite(Json::Value& v, int index, Rest... rest);

template <class... Rest>
Json::Value* ToWrite(Json::Value& v, const char* key, Rest... rest) {
    Json::Value* next = MemberToWrite(v, key);
    return next != nullptr ? ToWrite(*next, rest...) : nullptr;
}
template <class... Rest>
Json::Value* ToWrite(Json::Value& v, const std::string& key, Rest... rest) {
    Json::Value* next = MemberToWrite(v, key);
    return next != nullptr ? ToWrite(*next, rest...) : nullptr;
}
template <class... Rest>
Json::Value* ToWrite(Json::Value& v, int index, Rest... rest) {
    Json::Value* next = ElementToWrite(v, static_cast<Json::ArrayIndex>(index));
    return next != nullptr ? ToWrite(*next, rest...) : nullptr;
}

// Sets the value at the path when the path can be written.
template <class... Path>
void WriteAt(Json::Value& document, const Json::Value& value, Path... path) {
    if (Json::Value* at = ToWrite(document, path...)) *at = value;
}

// The request's buffers hold the section's record in record mode and the device's F5 text in
// text mode (the dispatch has refused every other mode).
template <class Record>
int PacketInMode(const PROTOCOL_FIX_INFO& info, int (*fromRecord)(Record*, Json::Value&),
                 int (*fromText)(const char*, Json::Value&), Json::Value& table) {
    if (info.mode == PROTOFIX_MODE_TEXT)
        return fromText(static_cast<const char*>(info.input), table);
    return fromRecord(static_cast<Record*>(info.input), table);
}

// intoText(table, document) merges the table into the F5 document; it may answer false when it
// already knows that the merged text cannot fit the buffer (see MergeIntoF5Buffer).
template <class Record, class IntoText>
int ParseInMode(const PROTOCOL_FIX_INFO& info, int (*intoRecord)(const Json::Value&, Record*),
                IntoText&& intoText, const Json::Value& table) {
    if (info.mode == PROTOFIX_MODE_TEXT) {
        return MergeIntoF5Buffer(static_cast<char*>(info.output), info.outputLength,
                                 [&](Json::Value& document) { return intoText(table, document); });
    }
    return intoRecord(table, static_cast<Record*>(info.output));
}

}  // namespace protofix::storage

#endif
