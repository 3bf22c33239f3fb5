#include "request/f5_text.h"

#include <cstring>
#include <string>

namespace protofix {

namespace {

bool ParseDocument(const std::string& text, Json::Value& document) {
    Json::Reader reader;
    return reader.parse(text, document, false);
}

}  // namespace

bool ReadF5Text(const char* text, Json::Value& document) {
    return text != nullptr && ParseDocument(text, document);
}

bool ReadF5Buffer(const char* buffer, int capacity, Json::Value& document) {
    if (buffer == nullptr) return false;
    const std::size_t room = capacity > 0 ? static_cast<std::size_t>(capacity) : 0;
    const void* nul = std::memchr(buffer, '\0', room);
    const std::size_t length = nul ? static_cast<std::size_t>(static_cast<const char*>(nul) - buffer)
                                   : room;
    return ParseDocument(std::string(buffer, length), document);
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
