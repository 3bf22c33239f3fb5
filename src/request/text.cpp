// The library's text helpers between JSON strings and the fixed text fields of the records.
// The device-side local code page is UTF-8, so the code-page conversions copy bytes.
#include "request/fields.h"

#include <protofix/request.h>

#include <cstring>
#include <string>

namespace {

// Length of the text in a field of size bytes: up to the first NUL, never past the field.
std::size_t BoundedLength(const char* buf, int size) {
    if (buf == nullptr || size <= 0) return 0;
    const void* nul = std::memchr(buf, '\0', static_cast<std::size_t>(size));
    return nul ? static_cast<std::size_t>(static_cast<const char*>(nul) - buf)
               : static_cast<std::size_t>(size);
}

// Copies at most size - 1 bytes of text and a NUL; nothing when the field has no room at all.
void CopyTerminated(const std::string& text, char* buf, int size, bool wholeCharacters) {
    if (buf == nullptr || size <= 0) return;
    std::size_t n = text.size();
    const auto room = static_cast<std::size_t>(size - 1);
    if (n > room) {
        n = room;
        // Back up over UTF-8 continuation bytes so that no character is cut in two.
        if (wholeCharacters) {
            while (n > 0 && (static_cast<unsigned char>(text[n]) & 0xC0u) == 0x80u) --n;
        }
    }
    std::memcpy(buf, text.data(), n);
    buf[n] = '\0';
}

}  // namespace

namespace protofix {

namespace {

int FoldAscii(char c) {
    const auto u = static_cast<unsigned char>(c);
    return (u >= 'A' && u <= 'Z') ? u - 'A' + 'a' : u;
}

}  // namespace

int _stricmp(const char* a, const char* b) {
    for (;; ++a, ++b) {
        const int ca = FoldAscii(*a);
        const int cb = FoldAscii(*b);
        if (ca != cb || ca == 0) return ca - cb;
    }
}

std::string TextUpTo(const char* text, const void* recordEnd) {
    const auto* end = static_cast<const char*>(recordEnd);
    if (text == nullptr || text >= end) return std::string();
    return std::string(text, BoundedLength(text, static_cast<int>(end - text)));
}

}  // namespace protofix

void parseJsonNodeToStr(const Json::Value& node, char* buf, int size) {
    if (!node.isString()) return;
    CopyTerminated(node.asString(), buf, size, false);
}

void packetStrToJsonNode(Json::Value& node, const char* buf, int size) {
    node = Json::Value(buf != nullptr ? std::string(buf, BoundedLength(buf, size)) : std::string());
}

void GetJsonString(const Json::Value& node, char* buf, int size, bool convert) {
    if (!node.isString()) return;
    const std::string text = node.asString();
    CopyTerminated(convert ? ConvertUtf8ToAnsi(text) : text, buf, size, false);
}

void SetJsonString(Json::Value& node, const char* text, bool /*convert: UTF-8 both sides*/) {
    node = Json::Value(text != nullptr ? text : "");
}

std::string ConvertUtf8ToAnsi(const std::string& text) { return text; }

// The node's text by the JSON library's own conversion (a number gives its digits).
void CRequest::parseUtf8JasonToAssic(Json::Value& node, char* buf, int size) {
    CopyTerminated(ConvertUtf8ToAnsi(node.asString()), buf, size, true);
}

void CRequest::packetAssicToUtf8Jason(Json::Value& node, char* buf, int size) {
    packetStrToJsonNode(node, buf, size);
}
