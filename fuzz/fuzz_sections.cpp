// Fuzz target: whatever a device sends, every section converts without reading or writing outside
// the caller's record or F5 buffer, and the request keeps its promises on every input.
//
// Input: three control bytes, then the device's text. Byte 0 picks the section; byte 1 the
// direction, the mode (record, text, or one the section refuses), the channel (0, 1, -1, 16), the
// video standard, the sub-mode and whether a current reply is given; byte 2 the capacity of the
// F5 buffer, smaller or larger than its text. The text is split at its first NUL: before it, the
// table (Deserialize), the F5 text or the record bytes (Serialize); after it, the F5 text that a
// text-mode Deserialize merges into, the record bytes it starts from, and the current reply.
#include "fuzz_input.h"

#include <protofix/protofix.h>

#include <json/json.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

using protofix::fuzz::Input;

// Bytes after the capacity that a text-mode Deserialize must never write.
constexpr std::size_t kGuard = 16;
constexpr unsigned char kGuardByte = 0xA5;

[[noreturn]] void Broken(const char* invariant) {
    std::fprintf(stderr, "invariant broken: %s\n", invariant);
    std::abort();
}

PROTOCOL_FIX_INFO InfoOf(const Input& in) {
    PROTOCOL_FIX_INFO info;
    std::memset(&info, 0, sizeof info);
    info.name = in.section->name;
    info.mode = in.mode;
    info.channel = in.channel;
    info.videoStandard = in.standard;
    info.subMode = in.subMode;
    info.current = in.current.empty() ? nullptr : in.current.c_str();
    return info;
}

// Serialize: the envelope always parses back, with the four members and "result" false for a
// mode the section refuses.
void CheckSerialize(const Input& in) {
    const std::string input = in.Serialized();
    std::vector<char> buffer(input.begin(), input.end());
    if (in.mode == PROTOFIX_MODE_TEXT) buffer.push_back('\0');
    PROTOCOL_FIX_INFO info = InfoOf(in);
    info.input = buffer.empty() ? nullptr : buffer.data();
    info.inputLength = static_cast<int>(buffer.size());
    info.output = info.input;  // "VideoInOptions" takes its record from here
    CReqConfigProtocolFix request;
    request.SetRequestInfo(info);
    int len = -1;
    const char* envelope = nullptr;
    try {
        envelope = request.Serialize(len);
    } catch (const Json::Exception&) {
        return;  // a value of the F5 text read as another kind: the library's own answer
    } catch (...) {
        Broken("only the JSON library's exceptions leave Serialize");
    }
    if (envelope == nullptr || len < 0 || std::strlen(envelope) != static_cast<std::size_t>(len)) {
        Broken("Serialize returns the envelope and its length");
    }
    Json::Value root;
    Json::Reader reader;
    if (!reader.parse(envelope, envelope + len, root, false) || !root.isObject() ||
        !root["result"].isBool() || !root["params"].isObject() ||
        !root["params"].isMember("table") || root["channel"] != Json::Value(in.channel)) {
        Broken("the envelope parses back with its four members");
    }
    if (!in.Accepted() && root["result"].asBool()) Broken("a refused mode gives \"result\" false");
}

// Deserialize: nothing but the JSON library's exceptions; in text mode, -1 leaves the buffer
// byte for byte, and no answer writes at or past the capacity.
void CheckDeserialize(const Input& in) {
    const bool text = in.mode == PROTOFIX_MODE_TEXT;
    const std::size_t capacity = text ? in.Capacity() : in.section->recordSize;
    std::vector<unsigned char> buffer(capacity + kGuard, kGuardByte);
    if (text) {
        std::memcpy(buffer.data(), in.f5.data(), std::min(in.f5.size(), capacity));
        if (in.f5.size() < capacity) buffer[in.f5.size()] = 0;
    } else {
        for (std::size_t i = 0; i < capacity; ++i) {
            buffer[i] = in.f5.empty() ? 0 : static_cast<unsigned char>(in.f5[i % in.f5.size()]);
        }
    }
    const std::vector<unsigned char> before = buffer;
    PROTOCOL_FIX_INFO info = InfoOf(in);
    info.output = capacity == 0 ? nullptr : buffer.data();
    info.outputLength = static_cast<int>(capacity);
    CReqConfigProtocolFix request;
    request.SetRequestInfo(info);
    int result = 0;
    try {
        result = request.Deserialize(in.table.c_str(), static_cast<int>(in.table.size()));
    } catch (const Json::Exception&) {
        if (text && buffer != before)
            Broken("a text-mode Deserialize that throws leaves the buffer");
        return;
    } catch (...) {
        Broken("only the JSON library's exceptions leave Deserialize");
    }
    if (result != 1 && result != 0 && result != -1) Broken("Deserialize answers 1, 0 or -1");
    if (!in.Accepted() && result == 1) Broken("a refused mode is not converted");
    if (text && result != 1 && buffer != before) Broken("a refusal leaves the F5 buffer unchanged");
    for (std::size_t i = capacity; i < buffer.size(); ++i) {
        if (buffer[i] != kGuardByte) Broken("nothing is written at or past the capacity");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input in;
    if (!in.Read(data, size)) return 0;
    if (in.toTable) {
        CheckSerialize(in);
    } else {
        CheckDeserialize(in);
    }
    return 0;
}
