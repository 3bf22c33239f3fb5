// One input of the fuzz target, read from the fuzzer's bytes (see fuzz_sections.cpp).
#ifndef PROTOFIX_FUZZ_INPUT_H
#define PROTOFIX_FUZZ_INPUT_H

#include <protofix/protofix.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>

namespace protofix::fuzz {

struct Section {
    const char* name;
    std::size_t recordSize;  // 0 for a section of F5 text only
    unsigned int modes;
};

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

// Control bytes before the text.
constexpr std::size_t kControlBytes = 3;

struct Input {
    const Section* section = nullptr;
    bool toTable = false;  // Serialize; else Deserialize
    int mode = PROTOFIX_MODE_RECORD;
    int channel = 0;
    int standard = PROTOFIX_STANDARD_PAL;
    int subMode = 0;
    int capacityShift = 0;  // the F5 buffer's capacity against its text's length and NUL
    std::string table;      // before the first NUL: the table, the F5 text or the record bytes
    std::string f5;         // after it: the F5 text merged into, or the record's starting bytes
    std::string current;    // the device's current reply, when one is given

    bool Read(const std::uint8_t* data, std::size_t size) {
        if (size < kControlBytes) return false;
        section = &kSections[data[0] % kSectionCount];
        const unsigned flags = data[1];
        toTable = (flags & 0x1u) != 0;
        const unsigned modePick = (flags >> 1) & 0x3u;
        mode = modePick == 0   ? PROTOFIX_MODE_RECORD
               : modePick == 1 ? PROTOFIX_MODE_TEXT
               : modePick == 2 ? 2
                               : -1;
        static constexpr int kChannels[] = {0, 1, -1, 16};
        channel = kChannels[(flags >> 3) & 0x3u];
        standard = (flags & 0x20u) != 0 ? PROTOFIX_STANDARD_NTSC : PROTOFIX_STANDARD_PAL;
        subMode = (flags & 0x40u) != 0 ? 1 : 0;
        capacityShift = static_cast<int>(data[2]) - 64;
        const std::string text(reinterpret_cast<const char*>(data + kControlBytes),
                               size - kControlBytes);
        const std::size_t nul = text.find('\0');
        table = text.substr(0, nul);
        f5 = nul == std::string::npos ? std::string() : text.substr(nul + 1);
        f5 = f5.substr(0, f5.find('\0'));
        if ((flags & 0x80u) != 0) current = "{\"params\":{\"table\":" + f5 + "}}";
        return true;
    }

    bool Accepted() const {
        return (mode == PROTOFIX_MODE_RECORD && (section->modes & PROTOFIX_ACCEPTS_RECORD) != 0) ||
               (mode == PROTOFIX_MODE_TEXT && (section->modes & PROTOFIX_ACCEPTS_TEXT) != 0);
    }

    // What Serialize reads: the F5 text, or the record bytes at the record's exact size.
    std::string Serialized() const {
        if (mode == PROTOFIX_MODE_TEXT) return table;
        std::string record(section->recordSize, '\0');
        std::copy_n(table.begin(), std::min(table.size(), record.size()), record.begin());
        return record;
    }

    // The F5 buffer's capacity: from far below the text's length to well above it, at least 1.
    std::size_t Capacity() const {
        const long long capacity = static_cast<long long>(f5.size()) + 1 + capacityShift * 8;
        return static_cast<std::size_t>(std::max(1LL, capacity));
    }
};

}  // namespace protofix::fuzz

#endif
