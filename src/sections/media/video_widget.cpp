// The combined widget section ("VideoWidget"): the channel title, the time title, the covers and
// the custom titles of a channel together, between the table and the "Encode" member of the F5
// text of earlier-protocol devices. F5 text mode only.
//
//   table                                   F5 text, under "Encode"
//   "ChannelTitle" / "TimeTitle"            "ChnTitle" / "TimeTitle"
//     "FrontColor", "BackColor" [r,g,b,a]     {"Red","Green","Blue","Alpha"}
//     "Rect" [l,t,r,b]                        {"Left","Top","Right","Bottom"}
//     "EncodeBlend" bool                      "Show"
//   "Covers"[i]                             "Covers"."CoverBlock"[i]
//     "Rect", "EncodeBlend", "PreviewBlend"   the same keys
//   "CustomTitle"[i]                        "UserDefinedOSD"."OSDs"[i]
//     "FrontColor", "BackColor", "Rect",      the same keys
//     "EncodeBlend", "PreviewBlend"
//
// Colour and rectangle values are integers on both sides; a flag is a boolean in the table and
// 1 or 0 in the F5 text (a flag that the F5 text holds as a boolean stays a boolean). The merge
// writes only into the objects and lists that the device's text already has, and never makes a
// list longer: the text describes what the device has.
#include "request/f5_text.h"
#include "request/fields.h"
#include "sections/media/overlay_fields.h"

#include <protofix/ReqConfigProtocolFix.h>

#include <algorithm>
#include <cstddef>

using namespace protofix;
using namespace protofix::overlay;

namespace {

enum class Form { Colour, Rect, Flag };

struct Key {
    const char* table;
    const char* f5;
    Form form;
};

// The F5 members of a colour and of a rectangle, in the order of the table's array.
constexpr const char* kColourParts[4] = {"Red", "Green", "Blue", "Alpha"};
constexpr const char* kRectParts[4] = {"Left", "Top", "Right", "Bottom"};

const char* const* PartsOf(Form form) { return form == Form::Colour ? kColourParts : kRectParts; }

constexpr Key kTitleKeys[] = {{"FrontColor", "FrontColor", Form::Colour},
                              {"BackColor", "BackColor", Form::Colour},
                              {"Rect", "Rect", Form::Rect},
                              {"EncodeBlend", "Show", Form::Flag}};
constexpr Key kCoverKeys[] = {{"Rect", "Rect", Form::Rect},
                              {"EncodeBlend", "EncodeBlend", Form::Flag},
                              {"PreviewBlend", "PreviewBlend", Form::Flag}};
constexpr Key kCustomTitleKeys[] = {{"FrontColor", "FrontColor", Form::Colour},
                                    {"BackColor", "BackColor", Form::Colour},
                                    {"Rect", "Rect", Form::Rect},
                                    {"EncodeBlend", "EncodeBlend", Form::Flag},
                                    {"PreviewBlend", "PreviewBlend", Form::Flag}};

struct KeySet {
    const Key* begin;
    const Key* end;
};
template <std::size_t N>
constexpr KeySet Keys(const Key (&keys)[N]) {
    return {keys, keys + N};
}

// A title: one object on each side.
struct Title {
    const char* table;
    const char* f5;
};
constexpr Title kTitles[] = {{"ChannelTitle", "ChnTitle"}, {"TimeTitle", "TimeTitle"}};

// A list: a table array, and an F5 array inside a group object.
struct List {
    const char* table;
    const char* f5Group;
    const char* f5List;
    KeySet keys;
};
constexpr List kLists[] = {{"Covers", "Covers", "CoverBlock", Keys(kCoverKeys)},
                           {"CustomTitle", "UserDefinedOSD", "OSDs", Keys(kCustomTitleKeys)}};

// ---- F5 text to table -------------------------------------------------------------------------

// The keys of one F5 object into the table's entry. A colour or a rectangle is converted when
// the F5 value is an object (a member it lacks reads 0); a flag when it is present (1 is on).
void PacketEntry(const Json::Value& f5, KeySet keys, Json::Value& entry) {
    for (const Key* key = keys.begin; key != keys.end; ++key) {
        const Json::Value& from = Member(f5, key->f5);
        if (key->form == Form::Flag) {
            if (Present(from)) entry[key->table] = from.asInt() == 1;
            continue;
        }
        if (!from.isObject()) continue;
        Json::Value& to = entry[key->table];
        const char* const* parts = PartsOf(key->form);
        for (Json::ArrayIndex i = 0; i < 4; ++i) to[i] = Int(Member(from, parts[i]).asInt());
    }
}

int PacketWidget(const char* text, Json::Value& table) {
    Json::Value document;
    if (!ReadF5Text(text, document)) return -1;
    const Json::Value& encode = Member(document, "Encode");
    for (const Title& title : kTitles) {
        const Json::Value& f5 = Member(encode, title.f5);
        if (!f5.isObject()) continue;
        Json::Value& entry = table[title.table] = Json::Value(Json::objectValue);
        PacketEntry(f5, Keys(kTitleKeys), entry);
    }
    // Every element of an F5 list gives the table's element of the same index.
    for (const List& list : kLists) {
        const Json::Value& f5 = Path(encode, {list.f5Group, list.f5List});
        if (!f5.isArray()) continue;
        Json::Value& entries = table[list.table] = Json::Value(Json::arrayValue);
        for (Json::ArrayIndex i = 0; i < f5.size(); ++i) {
            Json::Value& entry = entries[i] = Json::Value(Json::objectValue);
            PacketEntry(f5[i], list.keys, entry);
        }
    }
    return 1;
}

// ---- table into F5 text -----------------------------------------------------------------------

// The member of an object when it is present and of the kind wanted; null otherwise. Never
// creates a member.
Json::Value* ExistingObject(Json::Value& v, const char* key) {
    if (!v.isObject() || !v.isMember(key)) return nullptr;
    Json::Value& member = v[key];
    return member.isObject() ? &member : nullptr;
}
Json::Value* ExistingArray(Json::Value& v, const char* key) {
    if (!v.isObject() || !v.isMember(key)) return nullptr;
    Json::Value& member = v[key];
    return member.isArray() ? &member : nullptr;
}

// The table's entry into one F5 object. A colour or a rectangle is written when the table's
// array has at least four elements, a flag when the table's value is present; a colour or a
// rectangle that the F5 text holds as a value of another kind is left as it is.
void MergeEntry(const Json::Value& entry, KeySet keys, Json::Value& f5) {
    for (const Key* key = keys.begin; key != keys.end; ++key) {
        const Json::Value& from = Member(entry, key->table);
        if (key->form == Form::Flag) {
            if (!Present(from)) continue;
            Json::Value* to = MemberToWrite(f5, key->f5);
            const bool on = from.asBool();
            if (to != nullptr) *to = to->isBool() ? Json::Value(on) : Json::Value(on ? 1 : 0);
            continue;
        }
        if (!HasFour(from)) continue;
        Json::Value* to = MemberToWrite(f5, key->f5);
        if (to == nullptr) continue;
        const char* const* parts = PartsOf(key->form);
        for (Json::ArrayIndex i = 0; i < 4; ++i) {
            if (Json::Value* part = MemberToWrite(*to, parts[i])) *part = Int(from[i].asInt());
        }
    }
}

void MergeWidget(const Json::Value& table, Json::Value& document) {
    if (!table.isObject()) return;
    Json::Value* encode = ExistingObject(document, "Encode");
    if (encode == nullptr) return;
    for (const Title& title : kTitles) {
        if (Json::Value* f5 = ExistingObject(*encode, title.f5)) {
            MergeEntry(Member(table, title.table), Keys(kTitleKeys), *f5);
        }
    }
    // Element i of a table list goes into element i of the F5 list, while both have one.
    for (const List& list : kLists) {
        Json::Value* group = ExistingObject(*encode, list.f5Group);
        Json::Value* f5 = group != nullptr ? ExistingArray(*group, list.f5List) : nullptr;
        const Json::Value& entries = Member(table, list.table);
        if (f5 == nullptr || !entries.isArray()) continue;
        const Json::ArrayIndex n = std::min(entries.size(), f5->size());
        for (Json::ArrayIndex i = 0; i < n; ++i) {
            Json::Value& element = (*f5)[i];
            if (element.isObject()) MergeEntry(entries[i], list.keys, element);
        }
    }
}

}  // namespace

int CReqConfigProtocolFix::Packet_VideoWidget(Json::Value& table) {
    return PacketWidget(InputRecord<const char>(), table);
}

int CReqConfigProtocolFix::Parse_VideoWidget(Json::Value& table) {
    return MergeIntoF5Buffer(OutputRecord<char>(), m_info.outputLength,
                             [&](Json::Value& document) { MergeWidget(table, document); });
}
