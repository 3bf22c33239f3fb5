// The channel-name and time overlays of a channel ("VideoWidget_CHANNEL", record mode) and the
// video watermark ("VideoWaterMark", record mode and F5 text mode).
#include "request/f5_text.h"
#include "request/fields.h"
#include "sections/media/overlay_fields.h"

#include <protofix/ReqConfigProtocolFix.h>

#include <cstdint>

using namespace protofix;
using namespace protofix::overlay;

namespace {

// ---- channel widget ---------------------------------------------------------------------------

// One overlay of the channel widget: the title and the time share their colour, rectangle and
// blend fields; only the time has the week day.
struct WidgetOverlay {
    std::uint32_t& frontColor;
    std::uint32_t& backColor;
    long long (&rect)[4];
    unsigned char& encodeBlend;
    unsigned char* showWeek;  // null for the channel title
};

WidgetOverlay TitleOverlay(KZDEV_VIDEOWIDGET_CHANNEL_CFG& cfg) {
    return {cfg.titleFrontColor, cfg.titleBackColor, cfg.titleRect, cfg.titleEncodeBlend, nullptr};
}
WidgetOverlay TimeOverlay(KZDEV_VIDEOWIDGET_CHANNEL_CFG& cfg) {
    return {cfg.timeFrontColor, cfg.timeBackColor, cfg.timeRect, cfg.timeEncodeBlend,
            &cfg.timeShowWeek};
}

// The rectangle's low 32 bits as unsigned integers: the table's rectangle is read back as such.
Json::Value LowUInt(long long value) { return UInt(Narrow<unsigned int>(value)); }

void PacketOverlay(const WidgetOverlay& overlay, Json::Value& entry) {
    entry["BackColor"] = ColourArray(overlay.backColor, kTitleColourOrder);
    entry["FrontColor"] = ColourArray(overlay.frontColor, kTitleColourOrder);
    entry["Rect"] = RectArray(overlay.rect, LowUInt);
    if (overlay.showWeek != nullptr) entry["ShowWeek"] = Flag(*overlay.showWeek);
    entry["EncodeBlend"] = Flag(overlay.encodeBlend);
}

// The colours are OR-ed into their words, not cleared first.
void ParseOverlay(const Json::Value& entry, const WidgetOverlay& overlay) {
    OrTitleColour(Member(entry, "BackColor"), overlay.backColor);
    OrTitleColour(Member(entry, "FrontColor"), overlay.frontColor);
    ReadRect(Member(entry, "Rect"), overlay.rect,
             [](const Json::Value& v) { return static_cast<long long>(v.asUInt()); });
    if (overlay.showWeek != nullptr) ReadBool(Member(entry, "ShowWeek"), *overlay.showWeek);
    ReadBool(Member(entry, "EncodeBlend"), overlay.encodeBlend);
}

// ---- watermark --------------------------------------------------------------------------------

// The watermark of a table or an F5 text is an object, or an array whose element 0 is used;
// null for a value of any other kind.
const Json::Value* WatermarkOf(const Json::Value& v) {
    if (v.isObject()) return &v;
    if (v.isArray() && !v.empty()) return &v[0];
    return nullptr;
}

int PacketWatermarkRecord(const KZDEV_WATERMARK_CFG* cfg, Json::Value& table) {
    if (cfg == nullptr) return -1;
    table["Enable"] = Flag(cfg->enable);
    PutText(table["String"], cfg->string);
    return 1;
}

int ParseWatermarkRecord(const Json::Value& table, KZDEV_WATERMARK_CFG* cfg) {
    if (cfg == nullptr) return -1;
    const Json::Value* watermark = WatermarkOf(table);
    if (watermark == nullptr) return 1;
    ReadBool(Member(*watermark, "Enable"), cfg->enable);
    const Json::Value& text = Member(*watermark, "String");
    if (Present(text)) {
        cfg->dataType = 1;
        ReadText(text, cfg->string);
    }
    return 1;
}

int PacketWatermarkText(const char* text, Json::Value& table) {
    Json::Value document;
    if (!ReadF5Text(text, document)) return -1;
    const Json::Value* watermark = WatermarkOf(Member(document, "WaterMark"));
    if (watermark == nullptr) return 1;
    const Json::Value& enable = Member(*watermark, "En");
    if (Present(enable)) table["Enable"] = enable.asInt() == 1;
    const Json::Value& string = Member(*watermark, "String");
    if (Present(string)) table["String"] = string;
    return 1;
}

// The table's values into one watermark object of the F5 text (created when null; a value of
// another kind is left as it is).
void MergeWatermark(const Json::Value& watermark, Json::Value& f5) {
    const Json::Value& enable = Member(watermark, "Enable");
    if (Present(enable)) {
        if (Json::Value* en = MemberToWrite(f5, "En")) *en = enable.asBool() ? 1 : 0;
    }
    const Json::Value& string = Member(watermark, "String");
    if (Present(string)) {
        if (Json::Value* to = MemberToWrite(f5, "String")) *to = string;
    }
}

// The same values go into the F5 "WaterMark" object, or into every element of it when it is an
// array. A text without "WaterMark" gets one when the table has a value for it.
void MergeWatermarkText(const Json::Value& table, Json::Value& document) {
    const Json::Value* watermark = WatermarkOf(table);
    if (watermark == nullptr) return;
    if (!Present(Member(*watermark, "Enable")) && !Present(Member(*watermark, "String"))) return;
    Json::Value* f5 = MemberToWrite(document, "WaterMark");
    if (f5 == nullptr) return;
    if (f5->isArray()) {
        for (Json::Value& element : *f5) MergeWatermark(*watermark, element);
    } else {
        MergeWatermark(*watermark, *f5);
    }
}

}  // namespace

// The channel title, then the time title.
int CReqConfigProtocolFix::Packet_VideoWidget_CHANNEL(Json::Value& table) {
    auto* cfg = InputRecord<KZDEV_VIDEOWIDGET_CHANNEL_CFG>();
    if (cfg == nullptr) return -1;
    PacketOverlay(TitleOverlay(*cfg), table["ChannelTitle"]);
    PacketOverlay(TimeOverlay(*cfg), table["TimeTitle"]);
    return 1;
}

int CReqConfigProtocolFix::Parse_VideoWidget_CHANNEL(Json::Value& table) {
    auto* cfg = OutputRecord<KZDEV_VIDEOWIDGET_CHANNEL_CFG>();
    if (cfg == nullptr) return -1;
    const Json::Value& title = Member(table, "ChannelTitle");
    if (Present(title)) ParseOverlay(title, TitleOverlay(*cfg));
    const Json::Value& time = Member(table, "TimeTitle");
    if (Present(time)) ParseOverlay(time, TimeOverlay(*cfg));
    return 1;
}

int CReqConfigProtocolFix::Packet_VideoWaterMark(Json::Value& table) {
    if (m_info.mode == PROTOFIX_MODE_TEXT)
        return PacketWatermarkText(InputRecord<const char>(), table);
    return PacketWatermarkRecord(InputRecord<const KZDEV_WATERMARK_CFG>(), table);
}

int CReqConfigProtocolFix::Parse_VideoWaterMark(Json::Value& table) {
    if (m_info.mode == PROTOFIX_MODE_TEXT) {
        return MergeIntoF5Buffer(
            OutputRecord<char>(), m_info.outputLength,
            [&](Json::Value& document) { MergeWatermarkText(table, document); });
    }
    return ParseWatermarkRecord(table, OutputRecord<KZDEV_WATERMARK_CFG>());
}
