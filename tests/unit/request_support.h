// Calls through the public request API, as a client library makes them.
#ifndef PROTOFIX_TESTS_REQUEST_SUPPORT_H
#define PROTOFIX_TESTS_REQUEST_SUPPORT_H

#include <protofix/protofix.h>

#include <gtest/gtest.h>
#include <json/json.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace support {

inline Json::Value ParseJson(const std::string& text) {
    Json::Value value;
    Json::Reader reader;
    EXPECT_TRUE(reader.parse(text, value, false)) << text;
    return value;
}

inline PROTOCOL_FIX_INFO Info(const char* name, int mode = PROTOFIX_MODE_RECORD) {
    PROTOCOL_FIX_INFO info;
    std::memset(&info, 0, sizeof info);
    info.name = name;
    info.mode = mode;
    return info;
}

// The envelope that Serialize gives for the info, as text and parsed.
struct Envelope {
    std::string text;
    Json::Value root;
    bool result() const { return root["result"].asBool(); }
    const Json::Value& table() const { return root["params"]["table"]; }
};

inline Envelope Serialize(const PROTOCOL_FIX_INFO& info, unsigned int id = 0) {
    CReqConfigProtocolFix request;
    request.SetRequestId(id);
    request.SetRequestInfo(info);
    int len = -1;
    const char* text = request.Serialize(len);
    EXPECT_NE(text, nullptr);
    if (text == nullptr) return {};
    EXPECT_EQ(static_cast<std::size_t>(len), std::strlen(text));
    return {text, ParseJson(text)};
}

// Serializes a record (or, in text mode, an F5 text) of the named section.
inline Envelope Packet(const char* name, const void* input, int mode = PROTOFIX_MODE_RECORD) {
    PROTOCOL_FIX_INFO info = Info(name, mode);
    info.input = const_cast<void*>(input);
    return Serialize(info);
}

// Deserializes a table into the output (record, or F5 text buffer of outputLength bytes).
inline int Parse(const char* name, const std::string& table, void* output, int outputLength,
                 int mode = PROTOFIX_MODE_RECORD) {
    PROTOCOL_FIX_INFO info = Info(name, mode);
    info.output = output;
    info.outputLength = outputLength;
    CReqConfigProtocolFix request;
    request.SetRequestInfo(info);
    return request.Deserialize(table.c_str(), static_cast<int>(table.size()));
}

template <class Record>
int Parse(const char* name, const std::string& table, Record* record) {
    return Parse(name, table, record, static_cast<int>(sizeof(Record)));
}

// A record at its exact size on the heap, zero-filled, so the sanitizers see any overrun.
template <class Record>
std::unique_ptr<Record> Zeroed() {
    auto record = std::make_unique<Record>();
    std::memset(record.get(), 0, sizeof(Record));
    return record;
}

template <class Record>
std::unique_ptr<Record> CopyOf(const Record& record) {
    auto copy = std::make_unique<Record>();
    std::memcpy(copy.get(), &record, sizeof(Record));
    return copy;
}

template <class Record>
bool SameBytes(const Record& a, const Record& b) {
    return std::memcmp(&a, &b, sizeof(Record)) == 0;
}

// Fills a text field to its last byte, with no NUL.
template <std::size_t N>
void FillText(char (&field)[N], char c) {
    std::memset(field, c, N);
}

template <std::size_t N>
void SetText(char (&field)[N], const char* text) {
    std::memset(field, 0, N);
    std::strncpy(field, text, N);
}

template <std::size_t N>
std::string TextOf(const char (&field)[N]) {
    return std::string(field, strnlen(field, N));
}

// A caller's F5 text buffer of exactly its capacity on the heap: the text (cut to the capacity;
// NUL-terminated when shorter), the bytes past it '#', so the sanitizers see any write past it.
struct F5Buffer {
    F5Buffer(const std::string& text, std::size_t capacity) : bytes(capacity, '#') {
        std::copy_n(text.begin(), std::min(text.size(), capacity), bytes.begin());
        if (text.size() < capacity) bytes[text.size()] = '\0';
    }
    explicit F5Buffer(const std::string& text) : F5Buffer(text, text.size() + 4096) {}
    // Deserializes the table of the section into the buffer (in text mode unless told).
    int Merge(const char* section, const std::string& table, int mode = PROTOFIX_MODE_TEXT) {
        return Parse(section, table, bytes.data(), static_cast<int>(bytes.size()), mode);
    }
    std::string Text() const {
        return std::string(bytes.data(), strnlen(bytes.data(), bytes.size()));
    }
    Json::Value Document() const { return ParseJson(Text()); }
    std::vector<char> bytes;
};

// The compact writer's text of a JSON text: what a merge writes back.
inline std::string Written(const std::string& json) {
    return Json::FastWriter().write(ParseJson(json));
}

}  // namespace support

#endif
