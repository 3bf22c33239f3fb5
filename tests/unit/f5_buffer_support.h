// An F5 text buffer of exactly its capacity on the heap, for the text-mode tests of Deserialize.
#ifndef PROTOFIX_TESTS_F5_BUFFER_SUPPORT_H
#define PROTOFIX_TESTS_F5_BUFFER_SUPPORT_H

#include "request_support.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

namespace support {

// Holds text (cut to the capacity; NUL-terminated when shorter), the bytes past it '#'.
struct F5Buffer {
    F5Buffer(const std::string& text, std::size_t capacity) : bytes(capacity, '#') {
        std::copy_n(text.begin(), std::min(text.size(), capacity), bytes.begin());
        if (text.size() < capacity) bytes[text.size()] = '\0';
    }
    // Deserializes the table of the section into the buffer, in text mode.
    int Merge(const char* section, const std::string& table) {
        return Parse(section, table, bytes.data(), static_cast<int>(bytes.size()), PROTOFIX_MODE_TEXT);
    }
    std::string Text() const { return std::string(bytes.data(), strnlen(bytes.data(), bytes.size())); }
    Json::Value Document() const { return ParseJson(Text()); }
    std::vector<char> bytes;
};

}  // namespace support

#endif
