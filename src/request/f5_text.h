// The round trip of the F5 text of earlier-protocol devices: parse the caller's text, let the
// section read or edit the document, write it back with the compact writer.
#ifndef PROTOFIX_REQUEST_F5_TEXT_H
#define PROTOFIX_REQUEST_F5_TEXT_H

#include <json/json.h>

#include <type_traits>

namespace protofix {

// Json::Reader::parse of [begin, end) without comments, read in place; false also for a text
// the reader refuses by throwing (nested deeper than it allows).
bool ParseText(const char* begin, const char* end, Json::Value& value);

// The same for a NUL-terminated text; false for a null one.
bool ParseText(const char* text, Json::Value& value);

// Serialize side: the caller's NUL-terminated F5 text. False for a null or unparsable text.
bool ReadF5Text(const char* text, Json::Value& document);

// Deserialize side: the F5 text in the caller's buffer of capacity bytes, read up to its NUL and
// never past the capacity. False for a null buffer or an unparsable text.
bool ReadF5Buffer(const char* buffer, int capacity, Json::Value& document);

// Writes the document back into the buffer when the capacity holds the written text: at most
// capacity - 1 characters are copied as strncpy copies them, so a text exactly as long as the
// capacity loses its last character (the writer's closing newline). -1 when it does not fit, and
// then the buffer is left as it was.
int WriteF5Buffer(const Json::Value& document, char* buffer, int capacity);

// The whole Deserialize side: read the buffer, let edit(document) merge the table into it, write
// it back. -1 with the buffer unchanged when the text is missing, does not parse or does not fit.
// An edit that answers a bool answers false when it already knows that the merged text cannot fit
// the buffer: the write-back is then not attempted.
template <class Edit>
int MergeIntoF5Buffer(char* buffer, int capacity, Edit&& edit) {
    Json::Value document;
    if (!ReadF5Buffer(buffer, capacity, document)) return -1;
    if constexpr (std::is_void_v<decltype(edit(document))>) {
        edit(document);
    } else if (!edit(document)) {
        return -1;
    }
    return WriteF5Buffer(document, buffer, capacity);
}

}  // namespace protofix

#endif
