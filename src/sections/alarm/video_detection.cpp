// Video detection of one channel: "MotionDetect" (motion in the cells of a grid), "LossDetect"
// (the signal is lost) and "BlindDetect" (the camera is covered). An enable flag, a schedule and
// a linkage each; motion and blind detection add a sensitivity level, motion detection its grid.
// One code for the three, in record mode and in F5 text mode.
#include "sections/alarm/event_sections.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>

using namespace protofix;
using namespace protofix::events;

namespace {

template <class Cfg>
constexpr bool kHasGrid = std::is_same_v<Cfg, KZDEV_MOTION_DETECT_CFG>;
template <class Cfg>
constexpr bool kHasLevel = !std::is_same_v<Cfg, KZDEV_LOSS_DETECT_CFG>;

template <class Cfg>
constexpr const char* kMember = "";
template <>
constexpr const char* kMember<KZDEV_MOTION_DETECT_CFG> = "MotionDetect";
template <>
constexpr const char* kMember<KZDEV_LOSS_DETECT_CFG> = "LossDetect";
template <>
constexpr const char* kMember<KZDEV_BLIND_DETECT_CFG> = "BlindDetect";

// A row of the grid is a 32-bit mask: bit c set when column c detects.
constexpr int kMaskBits = 32;
// "Row" and "Col" of the table are limited to the grid the record holds.
constexpr unsigned short kGridLimit = 32;
static_assert(kGridLimit == KZ_MOTION_ROWS && kGridLimit == KZ_MOTION_COLS, "a square grid");
// An F5 row text is fetched into a buffer of this size.
constexpr int kF5RowText = 128;

// The grid cells the record holds, whatever its counts say.
int RowsHeld(const KZDEV_MOTION_DETECT_CFG& cfg) { return std::min<int>(cfg.rows, KZ_MOTION_ROWS); }
int ColsHeld(const KZDEV_MOTION_DETECT_CFG& cfg) { return std::min<int>(cfg.cols, KZ_MOTION_COLS); }

// A row mask of the table by its 32 bits: a negative int (column 31 set) and an unsigned int
// above the int range are the same mask. Other kinds convert as the JSON library converts them
// (null: 0).
std::uint32_t RowMask(const Json::Value& row) {
    if (row.isUInt()) return row.asUInt();
    return static_cast<std::uint32_t>(row.asInt());
}

Json::Value MaskValue(std::uint32_t mask) { return Int(Narrow<int>(mask)); }

// ---- record mode -------------------------------------------------------------------------------

// Each cell byte is shifted to its column and OR-ed in, so a cell value other than 0 or 1 spills
// into the columns above it (and out of the 32-bit mask).
void PutRegion(const KZDEV_MOTION_DETECT_CFG& cfg, Json::Value& table) {
    const int rows = RowsHeld(cfg);
    if (rows <= 0) return;  // no "Region" at all
    Json::Value& region = table["Region"];
    for (int r = 0; r < rows; ++r) {
        std::uint32_t mask = 0;
        for (int c = 0; c < ColsHeld(cfg); ++c)
            mask |= static_cast<std::uint32_t>(cfg.region[r][c]) << c;
        region[r] = MaskValue(mask);
    }
}

template <class Cfg>
int PacketRecord(Cfg* cfg, Json::Value& table) {
    if (cfg == nullptr) return -1;
    table["Enable"] = Flag(cfg->enable);
    if constexpr (kHasGrid<Cfg>) {
        table["Col"] = Int(cfg->cols);
        table["Row"] = Int(cfg->rows);
    }
    if constexpr (kHasLevel<Cfg>) table["Level"] = Int(cfg->level);
    if constexpr (kHasGrid<Cfg>) PutRegion(*cfg, table);
    Json::Value& handler = table["EventHandler"];
    PutSchedule(cfg->timeSections, handler);
    CReqConfigProtocolFix::Packet_EventHandler_Binary(handler, &cfg->handler);
    return 1;
}

// "Row" and "Col": 16 bits of the value, then at most 32.
void ReadGridSize(const Json::Value& v, unsigned short& field) {
    if (Present(v)) field = std::min<unsigned short>(Narrow<unsigned short>(v.asInt()), kGridLimit);
}

// Cells within the counts are set from the row masks (a missing row reads as 0); the others keep
// what they held.
void ReadRegion(const Json::Value& region, KZDEV_MOTION_DETECT_CFG& cfg) {
    if (!region.isArray() || cfg.rows == 0) return;
    for (int r = 0; r < RowsHeld(cfg); ++r) {
        const std::uint32_t mask = RowMask(Element(region, static_cast<Json::ArrayIndex>(r)));
        for (int c = 0; c < ColsHeld(cfg); ++c) cfg.region[r][c] = (mask >> c) & 1u;
    }
}

// Without an "EventHandler" the schedule and the linkage are left as they were.
template <class Cfg>
int ParseRecord(Json::Value& table, Cfg* cfg) {
    if (cfg == nullptr) return -1;
    ReadBool(Member(table, "Enable"), cfg->enable);
    if constexpr (kHasGrid<Cfg>) {
        ReadGridSize(Member(table, "Col"), cfg->cols);
        ReadGridSize(Member(table, "Row"), cfg->rows);
    }
    if constexpr (kHasLevel<Cfg>) ReadInt(Member(table, "Level"), cfg->level);
    if constexpr (kHasGrid<Cfg>) ReadRegion(Member(table, "Region"), *cfg);

    const TableHandler handler(table);
    if (!handler.present()) return 1;
    ReadSchedule(Member(handler.get(), "TimeSection"), cfg->timeSections);
    CReqConfigProtocolFix::Parse_EventHandler_Binary(handler.get(), &cfg->handler);
    return 1;
}

// ---- F5 text mode ------------------------------------------------------------------------------

// An F5 row is a text of '0' and '1' read from its end: the k-th character from the end is
// column k. Anything but '1' leaves the column clear; characters past the 32nd from the end name
// no column of the mask.
std::uint32_t F5RowMask(const Json::Value& row) {
    char text[kF5RowText];
    std::memset(text, 0, sizeof text);
    parseJsonNodeToStr(Member(row, "En"), text, kF5RowText);
    const int length = static_cast<int>(strnlen(text, sizeof text));
    std::uint32_t mask = 0;
    for (int k = 0; k < std::min(length, kMaskBits); ++k) {
        if (text[length - 1 - k] == '1') mask |= 1u << k;
    }
    return mask;
}

template <class Cfg>
void PacketOwnKeys(const Json::Value& section, Json::Value& table) {
    if constexpr (kHasLevel<Cfg>) {
        if (Present(Member(section, "Level"))) table["Level"] = Member(section, "Level");
    }
    if constexpr (kHasGrid<Cfg>) {
        for (const char* key : {"Col", "Row"}) {
            if (Present(Member(section, key))) table[key] = Member(section, key);
        }
        const Json::Value& region = Member(section, "Region");
        if (!region.isArray()) return;
        for (Json::ArrayIndex r = 0; r < region.size(); ++r)
            table["Region"][r] = MaskValue(F5RowMask(region[r]));
    }
}

// Writes the table's row masks into "Region"[r]."En" of the section's member as texts of w
// characters, column 0 last; w is the table's "Col", or 32 when that is 0 or less. Each row text
// is written between quotes, so the merged text is longer than the rows written so far: answers
// false as soon as they are more than the buffer's capacity holds. The rows after that are still
// read (a row of the wrong kind throws, as it would have), but none is written.
bool MergeRegion(const Json::Value& table, Json::Value& document, int capacity) {
    const char* const member = kMember<KZDEV_MOTION_DETECT_CFG>;
    const Json::Value& region = Member(table, "Region");
    if (!region.isArray()) return true;
    const int col = Member(table, "Col").asInt();
    const std::size_t width = col > 0 ? static_cast<std::size_t>(col) : kMaskBits;
    const std::size_t room = capacity > 0 ? static_cast<std::size_t>(capacity) : 0;
    std::size_t least = 0;  // the least length of the merged text so far
    std::string row;
    for (Json::ArrayIndex r = 0; r < region.size(); ++r) {
        const std::uint32_t mask = RowMask(region[r]);
        Json::Value* rows = SectionKey(document, member, "Region");
        Json::Value* element = rows ? ElementToWrite(*rows, r) : nullptr;
        Json::Value* en = element ? MemberToWrite(*element, "En") : nullptr;
        if (en == nullptr) continue;
        least += width + 2;
        if (least > room) {
            while (++r < region.size()) RowMask(region[r]);
            return false;
        }
        row.assign(width, '0');
        for (std::size_t k = 0; k < std::min<std::size_t>(width, kMaskBits); ++k) {
            if (((mask >> k) & 1u) != 0) row[width - 1 - k] = '1';
        }
        *en = row;
    }
    return true;
}

template <class Cfg>
bool MergeOwnKeys(const Json::Value& table, Json::Value& document, int capacity) {
    const char* const member = kMember<Cfg>;
    if constexpr (kHasLevel<Cfg>) CopyToSection(table, document, member, "Level");
    if constexpr (kHasGrid<Cfg>) {
        CopyToSection(table, document, member, "Col");
        CopyToSection(table, document, member, "Row");
        return MergeRegion(table, document, capacity);
    }
    return true;
}

// ---- both modes --------------------------------------------------------------------------------

// The request's buffers hold the section's record in record mode and the device's F5 text in
// text mode (the dispatch has refused every other mode).
template <class Cfg>
int PacketDetection(const PROTOCOL_FIX_INFO& info, Json::Value& table) {
    if (info.mode == PROTOFIX_MODE_TEXT)
        return PacketF5Section(info, kMember<Cfg>, table, PacketOwnKeys<Cfg>);
    return PacketRecord(static_cast<Cfg*>(info.input), table);
}

template <class Cfg>
int ParseDetection(const PROTOCOL_FIX_INFO& info, Json::Value& table) {
    if (info.mode == PROTOFIX_MODE_TEXT) {
        return MergeF5Section(info, kMember<Cfg>, table,
                              [&](const Json::Value& in, Json::Value& document) {
                                  return MergeOwnKeys<Cfg>(in, document, info.outputLength);
                              });
    }
    return ParseRecord(table, static_cast<Cfg*>(info.output));
}

}  // namespace

int CReqConfigProtocolFix::Packet_MotionDetect(Json::Value& table) {
    return PacketDetection<KZDEV_MOTION_DETECT_CFG>(m_info, table);
}
int CReqConfigProtocolFix::Parse_MotionDetect(Json::Value& table) {
    return ParseDetection<KZDEV_MOTION_DETECT_CFG>(m_info, table);
}
int CReqConfigProtocolFix::Packet_LossDetect(Json::Value& table) {
    return PacketDetection<KZDEV_LOSS_DETECT_CFG>(m_info, table);
}
int CReqConfigProtocolFix::Parse_LossDetect(Json::Value& table) {
    return ParseDetection<KZDEV_LOSS_DETECT_CFG>(m_info, table);
}
int CReqConfigProtocolFix::Packet_BlindDetect(Json::Value& table) {
    return PacketDetection<KZDEV_BLIND_DETECT_CFG>(m_info, table);
}
int CReqConfigProtocolFix::Parse_BlindDetect(Json::Value& table) {
    return ParseDetection<KZDEV_BLIND_DETECT_CFG>(m_info, table);
}
