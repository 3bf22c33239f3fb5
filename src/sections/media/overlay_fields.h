// Field rules of the overlay records: colour words and rectangles, between the records and the
// table's four-element arrays.
#ifndef PROTOFIX_SECTIONS_MEDIA_OVERLAY_FIELDS_H
#define PROTOFIX_SECTIONS_MEDIA_OVERLAY_FIELDS_H

#include "request/fields.h"

#include <json/json.h>

#include <cstdint>

namespace protofix::overlay {

// Byte k of a colour word is bits 8k..8k+7, the order in which the word lies in the record.
inline unsigned int ColourByte(std::uint32_t word, int k) { return (word >> (8 * k)) & 0xFFu; }

// A colour held as four bytes (the custom titles) as a word, and back.
inline std::uint32_t ColourWord(const unsigned char (&bytes)[4]) {
    return static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8 |
           static_cast<std::uint32_t>(bytes[2]) << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
}
inline void StoreColour(std::uint32_t word, unsigned char (&bytes)[4]) {
    for (int k = 0; k < 4; ++k) bytes[k] = static_cast<unsigned char>(ColourByte(word, k));
}

// The table's colour array: element i is byte byteOf[i] of the word. The device writes the
// elements from the last down to the first.
inline Json::Value ColourArray(std::uint32_t word, const int (&byteOf)[4]) {
    Json::Value colour;
    for (int i = 3; i >= 0; --i) {
        colour[i] = Int(ColourByte(word, byteOf[i]));
    }
    return colour;
}

// Titles and the channel widget: element k is byte k.
constexpr int kTitleColourOrder[4] = {0, 1, 2, 3};
// Covers: elements 0 and 2 are bytes 2 and 0.
constexpr int kCoverColourOrder[4] = {2, 1, 0, 3};

// Colours, rectangles: a table array is read only when it has at least four elements.
inline bool HasFour(const Json::Value& v) { return v.isArray() && v.size() >= 4; }

inline std::uint32_t Bits(const Json::Value& v) { return static_cast<std::uint32_t>(v.asInt()); }

// A title colour OR-ed into its word, which is not cleared first: element 0 whole (a value above
// 255 runs into the next bytes), elements 1 and 2 by their low byte into bytes 1 and 2, element 3
// whole shifted into byte 3.
inline void OrTitleColour(const Json::Value& v, std::uint32_t& word) {
    if (!HasFour(v)) return;
    word |= Bits(v[0]) | (Bits(v[1]) & 0xFFu) << 8 | (Bits(v[2]) & 0xFFu) << 16 | Bits(v[3]) << 24;
}
inline void OrTitleColour(const Json::Value& v, unsigned char (&bytes)[4]) {
    std::uint32_t word = ColourWord(bytes);
    OrTitleColour(v, word);
    StoreColour(word, bytes);
}

// A cover colour OR-ed into its word, not cleared first: elements 0, 1, 2 and 3 whole, shifted
// by 16, 8, 0 and 24 bits.
inline void OrCoverColour(const Json::Value& v, std::uint32_t& word) {
    if (!HasFour(v)) return;
    word |= Bits(v[0]) << 16 | Bits(v[1]) << 8 | Bits(v[2]) | Bits(v[3]) << 24;
}

// A rectangle (left, top, right, bottom) as the table's array, each value as put(value).
template <class Coordinate, class Put>
Json::Value RectArray(const Coordinate (&rect)[4], Put put) {
    Json::Value array;
    for (Json::ArrayIndex i = 0; i < 4; ++i) array[i] = put(rect[i]);
    return array;
}

// The table's rectangle into the record when it has four elements, each read as read(element);
// the four are read before any is stored.
template <class Coordinate, class Read>
void ReadRect(const Json::Value& v, Coordinate (&rect)[4], Read read) {
    if (!HasFour(v)) return;
    Coordinate values[4];
    for (Json::ArrayIndex i = 0; i < 4; ++i) values[i] = read(v[i]);
    for (int i = 0; i < 4; ++i) rect[i] = values[i];
}

// Rectangle values: the low 32 bits as a signed integer; asInt into the field's width.
template <class Coordinate>
Json::Value LowInt(Coordinate value) {
    return Int(Narrow<int>(value));
}

template <class Coordinate>
struct FromInt {
    Coordinate operator()(const Json::Value& v) const { return Narrow<Coordinate>(v.asInt()); }
};

}  // namespace protofix::overlay

#endif
