// Fuzz target: whatever a device sends, every section converts without reading or writing outside
// the caller's record or F5 buffer. The first byte picks the section and the direction, the rest
// is the device's text (a table to Deserialize, or an F5 text or record bytes to Serialize).
#include <protofix/protofix.h>

#include <json/json.h>

#include <cstddef>
#include <cstdint>
#include <algorithm>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

namespace {

struct Section {
    const char* name;
    std::size_t recordSize;
    unsigned int modes;
};

// The size of a section's record; none for a section of F5 text only.
template <class Record>
constexpr std::size_t SizeOf() {
    if constexpr (std::is_void_v<Record>) {
        return 0;
    } else {
        return sizeof(Record);
    }
}

constexpr Section kSections[] = {
#define PROTOFIX_SECTION(name, suffix, record, modes) {name, SizeOf<record>(), modes},
#include <protofix/sections.def>
};
constexpr std::size_t kSectionCount = sizeof kSections / sizeof kSections[0];

// An F5 text of the kind earlier-protocol devices keep, with the lists the linkage merges into.
constexpr char kF5Text[] =
    R"({"Alarm":{"En":1,"EventHandler":{"Record":[{"En":1},{"En":0}],"AlarmOut":[{"En":0}],)"
    R"("Snapshot":[{"En":0}],"Tour":[{"En":1}],"PtzLink":[{"Type":"None","Value":0},{}]}},)"
    R"("NetAlarm":{"En":0}})";

void Run(const Section& section, bool textMode, bool toTable, const std::string& text) {
    PROTOCOL_FIX_INFO info;
    std::memset(&info, 0, sizeof info);
    info.name = section.name;
    info.mode = textMode ? PROTOFIX_MODE_TEXT : PROTOFIX_MODE_RECORD;

    // Buffers at their exact size, so the sanitizers see any overrun.
    std::vector<char> record(section.recordSize);
    std::vector<char> buffer;
    if (textMode) {
        const std::string& source = toTable ? text : std::string(kF5Text);
        buffer.assign(source.begin(), source.end());
        buffer.resize(source.size() + 1 + text.size() % 64);
    } else {
        const std::size_t n = std::min(record.size(), text.size());
        if (n > 0) std::memcpy(record.data(), text.data(), n);
    }
    void* target = textMode ? static_cast<void*>(buffer.data()) : static_cast<void*>(record.data());
    info.input = target;
    info.output = target;
    info.inputLength = static_cast<int>(textMode ? buffer.size() : record.size());
    info.outputLength = info.inputLength;

    CReqConfigProtocolFix request;
    request.SetRequestInfo(info);
    try {
        if (toTable) {
            int len = 0;
            request.Serialize(len);
        } else {
            request.Deserialize(text.c_str(), static_cast<int>(text.size()));
        }
    } catch (const Json::Exception&) {
        // A value of the wrong kind: the library's exception is the answer, not a fault.
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const unsigned int pick = data[0];
    const Section& section = kSections[(pick >> 2) % kSectionCount];
    const bool textMode = (pick & 1u) != 0 && (section.modes & PROTOFIX_ACCEPTS_TEXT) != 0;
    const bool toTable = (pick & 2u) != 0;
    // A record or F5 text to serialize goes as it is; a table stops at its first NUL, as a C text.
    std::string text(reinterpret_cast<const char*>(data + 1), size - 1);
    if (!toTable || textMode) text = text.c_str();
    Run(section, textMode, toTable, text);
    return 0;
}
