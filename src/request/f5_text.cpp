#include "request/f5_text.h"

#include <cstring>
#include <string>

namespace protofix {

bool ParseText(const char* begin, const char* end, Json::Value& value) {
    Json::Reader reader;
    try {
        return reader.parse(begin, end, value, false);
    } catch (const Json::Exception&) {
        // The reader refuses a text nested deeper than it allows by throwing: a text that does
        // not parse, like any other.
        return false;
    }
}

bool ParseText(const char* text, Json::Value& value) {
    return text != nullptr && ParseText(text, text + std::strlen(text), value);
}

bool ReadF5Text(const char* text, Json::Value& document) { return ParseText(text, document); }

bool ReadF5Buffer(const char* buffer, int capacity, Json::Value& document) {
    if (buffer == nullptr) return false;
    const std::size_t room = capacity > 0 ? static_cast<std::size_t>(capacity) : 0;
    const void* nul = std::memchr(buffer, '\0', room);
    const std::size_t length =
        nul ? static_cast<std::size_t>(static_cast<const char*>(nul) - buffer) : room;
    return ParseText(buffer, buffer + length, document);
}

int WriteF5Buffer(const Json::Value& document, char* buffer, int capacity) {
    Json::FastWriter writer;
    const std::string text = writer.write(document);
    if (capacity < 0 || static_cast<std::size_t>(capacity) < text.size()) return -1;
    // The writer's text is never empty, so capacity is at least 1 here.
    std::strncpy(buffer, text.c_str(), static_cast<std::size_t>(capacity) - 1);
    return 1;
}

}  // namespace protofix
