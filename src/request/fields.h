// The field rules shared by every section: how a key of the table is tested, read into a record
// field and written from one. Section code reads as a list of keys over these helpers.
#ifndef PROTOFIX_REQUEST_FIELDS_H
#define PROTOFIX_REQUEST_FIELDS_H

#include <protofix/request.h>

#include <json/json.h>

#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <string>
#include <type_traits>

namespace protofix {

// ---- kind tests -------------------------------------------------------------------------------
// The table that Serialize hands a Packet routine starts null, and the routine's own kind tests
// count it as an object and as an array: the devices' tables were first defined against a JSON
// library in which a null value counted as both. Only a Packet routine's tests of the table it is
// building use these two; a value read from a device table or an F5 text that is absent or null
// fails isObject() / isArray().
inline bool IsObjectOrNull(const Json::Value& v) { return v.isNull() || v.isObject(); }
inline bool IsArrayOrNull(const Json::Value& v) { return v.isNull() || v.isArray(); }

// ---- shapes -----------------------------------------------------------------------------------
// A table of the wrong shape is not an error: a key looked up in a value that is not an object,
// or an element taken from a value that is not an array, reads as absent (null). The reads never
// create a member and never throw; only value conversions (asInt of a string, ...) do.
const Json::Value& Member(const Json::Value& v, const char* key);
const Json::Value& Member(const Json::Value& v, const std::string& key);
// The member itself, or null when the value is not an object or has no such member: a member
// that is present and null is told apart from an absent one.
const Json::Value* FindMember(const Json::Value& v, const std::string& key);
const Json::Value& Element(const Json::Value& v, Json::ArrayIndex index);
// A path of keys, each looked up by Member: Path(t, {"EventHandler", "TimeSection"}).
const Json::Value& Path(const Json::Value& v, std::initializer_list<const char*> keys);

// Writing into a document that goes back to the device: the member (created when missing) of a
// value that is an object or null, or the element (the array grown to it) of a value that is an
// array or null. Null when the value has another kind: nothing is written into it, and the value
// is kept as the device gave it.
Json::Value* MemberToWrite(Json::Value& v, const char* key);
Json::Value* MemberToWrite(Json::Value& v, const std::string& key);
Json::Value* ElementToWrite(Json::Value& v, Json::ArrayIndex index);

// The writing twin of Path: each key through MemberToWrite. Null when a value on the way has
// another kind; the members on the way are created only when they are missing.
inline Json::Value* PathToWrite(Json::Value& v, std::initializer_list<const char*> keys) {
    Json::Value* at = &v;
    for (const char* key : keys) {
        if (at == nullptr) break;
        at = MemberToWrite(*at, key);
    }
    return at;
}

// A key is present when its value is not null.
inline bool Present(const Json::Value& v) { return !v.isNull(); }

// The platform's comparison without regard to case (ASCII letters, whatever the locale): 0 when
// equal, else the sign of the first difference.
int _stricmp(const char* a, const char* b);

// The platform's bounded formatting: at most size - 1 characters and a NUL.
template <class... Args>
int _snprintf(char* buffer, std::size_t size, const char* format, Args... args) {
    return std::snprintf(buffer, size, format, args...);
}

// Equality of two words without regard to case, as the device compares names and words.
inline bool SameWord(const char* a, const char* b) { return _stricmp(a, b) == 0; }
inline bool SameWord(const std::string& a, const char* b) { return SameWord(a.c_str(), b); }

// ---- narrowing --------------------------------------------------------------------------------
// An integer into a field of another width keeps its low bits: through the unsigned type of the
// field's width, so the conversion is defined for every value.
template <class Field, class Value>
Field Narrow(Value value) {
    static_assert(std::is_integral_v<Field> && std::is_integral_v<Value>, "integer fields only");
    using Unsigned = std::make_unsigned_t<Field>;
    return static_cast<Field>(static_cast<Unsigned>(value));
}

// A real into an integer field: its integer part, of which the field keeps its low bits as it
// keeps those of an integer. A value that is not finite gives 0.
template <class Field>
Field WholePart(double value) {
    if (!std::isfinite(value)) return 0;
    // The remainder of the integer part by 2^16 keeps every bit a field of up to 16 bits holds,
    // whatever the magnitude, and fits an int exactly.
    static_assert(sizeof(Field) <= 2, "fields of up to 16 bits");
    return Narrow<Field>(static_cast<int>(std::fmod(std::trunc(value), 65536.0)));
}

// ---- record to table --------------------------------------------------------------------------
// A flag is true exactly when the field holds 1.
template <class Field>
Json::Value Flag(Field field) {
    return Json::Value(field == 1);
}

// A signed JSON integer of any integer field (an unsigned 16-bit port is widened).
template <class Field>
Json::Value Int(Field field) {
    return Json::Value(static_cast<Json::Int>(field));
}

inline Json::Value UInt(unsigned int field) { return Json::Value(static_cast<Json::UInt>(field)); }

// A text field, read up to its first NUL and never past its width.
template <std::size_t N>
void PutText(Json::Value& node, const char (&field)[N]) {
    packetStrToJsonNode(node, field, static_cast<int>(N));
}

// A text field as a string: up to its first NUL, never past its width.
template <std::size_t N>
std::string TextOf(const char (&field)[N]) {
    const void* nul = std::memchr(field, '\0', N);
    return std::string(field, nul != nullptr ? static_cast<const char*>(nul) - field
                                             : static_cast<std::ptrdiff_t>(N));
}

// A text that the device reads up to its NUL with no width: the read stops at the end of the
// record, so it gives the same text wherever it is within the record's bounds.
std::string TextUpTo(const char* text, const void* recordEnd);

template <class Record>
const void* EndOf(const Record* record) {
    return record + 1;
}

// ---- table to record --------------------------------------------------------------------------
// Presence-tested reads: a null value leaves the field as it was.
template <class Field>
void ReadInt(const Json::Value& v, Field& field) {
    if (Present(v)) field = Narrow<Field>(v.asInt());
}

template <class Field>
void ReadBool(const Json::Value& v, Field& field) {
    if (Present(v)) field = v.asBool() ? 1 : 0;
}

// A text field is cleared over its whole width, then takes at most width - 1 bytes and a NUL.
template <std::size_t N>
void ReadText(const Json::Value& v, char (&field)[N]) {
    if (!Present(v)) return;
    std::memset(field, 0, N);
    parseJsonNodeToStr(v, field, static_cast<int>(N));
}

// Sets or clears the bits of mask in flags.
template <class Flags>
void SetBits(Flags& flags, unsigned int mask, bool on) {
    flags = on ? Narrow<Flags>(flags | mask) : Narrow<Flags>(flags & ~mask);
}

}  // namespace protofix

#endif
