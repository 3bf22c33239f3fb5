// What is drawn over a channel's picture: its title text ("ChannelTitle"), the custom titles
// ("VideoWidget_OSD") and the privacy covers ("VideoWidget_COVER"). Record mode only; the
// rectangles pass through unscaled.
#include "request/fields.h"
#include "sections/media/overlay_fields.h"

#include <protofix/ReqConfigProtocolFix.h>

#include <algorithm>
#include <cstring>

using namespace protofix;
using namespace protofix::overlay;

namespace {

// ---- custom titles ----------------------------------------------------------------------------

void PacketTitle(const KZ_OSD_TITLE& title, Json::Value& entry) {
    PutText(entry["Text"], title.text);
    entry["Rect"] = RectArray(title.rect, LowInt<unsigned int>);
    entry["BackColor"] = ColourArray(ColourWord(title.backColor), kTitleColourOrder);
    entry["FrontColor"] = ColourArray(ColourWord(title.frontColor), kTitleColourOrder);
    entry["PreviewBlend"] = title.previewBlend != 0;
    entry["EncodeBlend"] = title.encodeBlend != 0;
}

void ParseTitle(const Json::Value& entry, KZ_OSD_TITLE& title) {
    ReadText(Member(entry, "Text"), title.text);
    ReadRect(Member(entry, "Rect"), title.rect, FromInt<unsigned int>());
    OrTitleColour(Member(entry, "BackColor"), title.backColor);
    OrTitleColour(Member(entry, "FrontColor"), title.frontColor);
    ReadBool(Member(entry, "PreviewBlend"), title.previewBlend);
    ReadBool(Member(entry, "EncodeBlend"), title.encodeBlend);
}

// ---- covers -----------------------------------------------------------------------------------

void PacketCover(const KZ_COVER& cover, Json::Value& entry) {
    entry["Rect"] = RectArray(cover.rect, LowInt<long long>);
    entry["PreviewBlend"] = Flag(cover.previewBlend);
    entry["EncodeBlend"] = Flag(cover.encodeBlend);
    entry["FrontColor"] = ColourArray(cover.frontColor, kCoverColourOrder);
}

void ParseCover(const Json::Value& entry, KZ_COVER& cover) {
    ReadRect(Member(entry, "Rect"), cover.rect, FromInt<long long>());
    ReadBool(Member(entry, "PreviewBlend"), cover.previewBlend);
    ReadBool(Member(entry, "EncodeBlend"), cover.encodeBlend);
    OrCoverColour(Member(entry, "FrontColor"), cover.frontColor);
}

// Elements of a table list; a value that is not an array has none.
Json::ArrayIndex ElementCount(const Json::Value& v) { return v.isArray() ? v.size() : 0; }

}  // namespace

// The title is a plain buffer of the caller's length: read up to its NUL, never past the length.
int CReqConfigProtocolFix::Packet_ChannelTitle(Json::Value& table) {
    const char* title = InputRecord<const char>();
    if (title == nullptr) return -1;
    packetStrToJsonNode(table["Name"], title, m_info.inputLength);
    return 1;
}

// At most outputLength - 1 bytes and a NUL; a "Name" that is not a string leaves the buffer.
int CReqConfigProtocolFix::Parse_ChannelTitle(Json::Value& table) {
    char* title = OutputRecord<char>();
    if (title == nullptr) return -1;
    parseJsonNodeToStr(Member(table, "Name"), title, m_info.outputLength);
    return 1;
}

// All eight titles, always.
int CReqConfigProtocolFix::Packet_VideoWidget_OSD(Json::Value& table) {
    const auto* cfg = InputRecord<const KZDEV_VIDEOWIDGET_OSD_CFG>();
    if (cfg == nullptr) return -1;
    Json::Value& titles = table["CustomTitle"];
    for (Json::ArrayIndex i = 0; i < KZ_MAX_OSD_TITLES; ++i) PacketTitle(cfg->title[i], titles[i]);
    return 1;
}

// The first eight entries of "CustomTitle" into the titles of the same index; the colours are
// OR-ed into the record's bytes, so a caller who wants the table's colours alone clears them.
int CReqConfigProtocolFix::Parse_VideoWidget_OSD(Json::Value& table) {
    auto* cfg = OutputRecord<KZDEV_VIDEOWIDGET_OSD_CFG>();
    if (cfg == nullptr) return -1;
    const Json::Value& titles = Member(table, "CustomTitle");
    const Json::ArrayIndex n = std::min<Json::ArrayIndex>(ElementCount(titles), KZ_MAX_OSD_TITLES);
    for (Json::ArrayIndex i = 0; i < n; ++i) ParseTitle(titles[i], cfg->title[i]);
    return 1;
}

// coverCount entries, none when it is 0. The record holds sixteen covers: a count above that
// writes those sixteen.
int CReqConfigProtocolFix::Packet_VideoWidget_COVER(Json::Value& table) {
    const auto* cfg = InputRecord<const KZDEV_VIDEOWIDGET_COVER_CFG>();
    if (cfg == nullptr) return -1;
    const int n = std::min<int>(cfg->coverCount, KZ_MAX_COVERS);
    for (int i = 0; i < n; ++i) {
        PacketCover(cfg->cover[i], table["Covers"][static_cast<Json::ArrayIndex>(i)]);
    }
    return 1;
}

// A null "Covers" clears every cover and the count. Otherwise the count becomes the smaller of
// maxCoverCount and the list's length, and that many covers are read (never more than sixteen);
// null entries leave their cover, and the colours are OR-ed as for the titles.
int CReqConfigProtocolFix::Parse_VideoWidget_COVER(Json::Value& table) {
    auto* cfg = OutputRecord<KZDEV_VIDEOWIDGET_COVER_CFG>();
    if (cfg == nullptr) return -1;
    const Json::Value& covers = Member(table, "Covers");
    if (!Present(covers)) {
        cfg->coverCount = 0;
        std::memset(cfg->cover, 0, sizeof cfg->cover);
        return 1;
    }
    const Json::ArrayIndex count =
        std::min<Json::ArrayIndex>(cfg->maxCoverCount, ElementCount(covers));
    cfg->coverCount = static_cast<unsigned char>(count);
    const Json::ArrayIndex n = std::min<Json::ArrayIndex>(count, KZ_MAX_COVERS);
    for (Json::ArrayIndex i = 0; i < n; ++i) {
        if (Present(covers[i])) ParseCover(covers[i], cfg->cover[i]);
    }
    return 1;
}
