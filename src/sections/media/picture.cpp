// The picture of a channel: colour by time of day ("VideoColor", also between the earlier
// protocol's encode text and the table), the camera's front end ("VideoInOptions"), the analogue
// video standard ("VideoStandard") and the packet length ("MediaGlobal").
#include "request/f5_text.h"
#include "request/fields.h"

#include <protofix/ReqConfigProtocolFix.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>

using namespace protofix;

namespace {

// ---- VideoColor ----------------------------------------------------------------------------------

struct ColorKey {
    const char* key;
    unsigned char KZ_VIDEO_COLOR::*field;
};

constexpr ColorKey kColorKeys[] = {{"Brightness", &KZ_VIDEO_COLOR::brightness},
                                   {"Contrast", &KZ_VIDEO_COLOR::contrast},
                                   {"Saturation", &KZ_VIDEO_COLOR::saturation},
                                   {"Hue", &KZ_VIDEO_COLOR::hue}};

int PacketColorRecord(const KZDEV_VIDEO_COLOR_CFG* cfg, Json::Value& table) {
    if (cfg == nullptr) return -1;
    for (Json::ArrayIndex i = 0; i < KZ_VIDEO_COLOR_PERIODS; ++i) {
        const KZ_VIDEO_COLOR& color = cfg->color[i];
        Json::Value& period = table[i];
        for (const ColorKey& k : kColorKeys) period[k.key] = Int(color.*k.field);
        CReqConfigProtocolFix::PacketRecordTime(color.timeSection, period["TimeSection"]);
    }
    return 1;
}

// A missing "TimeSection" reads as an empty text, which leaves the time section as it was.
void ReadColor(const Json::Value& period, KZ_VIDEO_COLOR& color) {
    for (const ColorKey& k : kColorKeys) ReadInt(Member(period, k.key), color.*k.field);
    const std::string text = Member(period, "TimeSection").asString();
    CReqConfigProtocolFix::ParseRecordTime(color.timeSection, text.c_str());
}

// An object is the first period; an array gives its first two elements.
int ParseColorRecord(const Json::Value& table, KZDEV_VIDEO_COLOR_CFG* cfg) {
    if (cfg == nullptr) return -1;
    if (table.isObject()) {
        ReadColor(table, cfg->color[0]);
    } else if (table.isArray()) {
        const Json::ArrayIndex periods =
            std::min<Json::ArrayIndex>(table.size(), KZ_VIDEO_COLOR_PERIODS);
        for (Json::ArrayIndex i = 0; i < periods; ++i) ReadColor(table[i], cfg->color[i]);
    }
    return 1;
}

// The earlier text's one colour setting is the table's first period.
int PacketColorText(const char* text, Json::Value& table) {
    Json::Value document;
    if (!ReadF5Text(text, document)) return -1;
    const Json::Value& color = Path(document, {"Encode", "VideoColor"});
    for (const ColorKey& k : kColorKeys) {
        const Json::Value& value = Member(color, k.key);
        if (Present(value)) table[0][k.key] = value;
    }
    return 1;
}

void MergeColor(const Json::Value& period, Json::Value& document) {
    for (const ColorKey& k : kColorKeys) {
        const Json::Value& value = Member(period, k.key);
        if (!Present(value)) continue;
        if (Json::Value* target = PathToWrite(document, {"Encode", "VideoColor", k.key}))
            *target = value;
    }
}

// Every period of an array is merged in turn into the one colour setting, so a value of a later
// period wins.
void MergeColorText(const Json::Value& table, Json::Value& document) {
    if (table.isObject()) {
        MergeColor(table, document);
    } else if (table.isArray()) {
        for (const Json::Value& period : table) MergeColor(period, document);
    }
}

// ---- VideoInOptions ------------------------------------------------------------------------------

enum class OptionKind {
    Byte,          // integer both ways
    Short,         // integer both ways, 16 bits
    Flag,          // true when non-zero; read with asBool
    Flip,          // written as the integer, read with asBool
    Phase,         // written as the integer, read as a real whose integer part is kept
    Real,          // a float as a real
    WhiteBalance,  // the white-balance word
    SignalFormat,  // the signal-format word
};

struct OptionKey {
    const char* group;  // "NightOptions", "FlashControl", or null for the top level
    const char* key;
    std::size_t offset;
    OptionKind kind;
};

#define PROTOFIX_OPTION(group, key, field, kind) \
    { group, key, offsetof(KZDEV_VIDEOIN_OPTIONS_CFG, field), OptionKind::kind }

constexpr const char* kNight = "NightOptions";
constexpr const char* kFlash = "FlashControl";

// In the order the device writes them.
constexpr OptionKey kOptionKeys[] = {
    PROTOFIX_OPTION(nullptr, "Flip", flip, Flip),
    PROTOFIX_OPTION(nullptr, "IrisAuto", irisAuto, Flag),
    PROTOFIX_OPTION(nullptr, "Mirror", mirror, Flag),
    PROTOFIX_OPTION(nullptr, "ExternalSyncPhase", externalSyncPhase, Phase),
    PROTOFIX_OPTION(nullptr, "Backlight", backlight, Byte),
    PROTOFIX_OPTION(nullptr, "ExternalSync", externalSync, Short),
    PROTOFIX_OPTION(nullptr, "Rotate90", rotate90, Byte),
    PROTOFIX_OPTION(nullptr, "WideDynamicRange", wideDynamicRange, Byte),
    PROTOFIX_OPTION(nullptr, "SignalFormat", signalFormat, SignalFormat),
    PROTOFIX_OPTION(nullptr, "ExposureValue1", exposureValue1, Real),
    PROTOFIX_OPTION(nullptr, "ExposureValue2", exposureValue2, Real),
    PROTOFIX_OPTION(nullptr, "ExposureSpeed", exposureSpeed, Byte),
    PROTOFIX_OPTION(nullptr, "GainBlue", gainBlue, Byte),
    PROTOFIX_OPTION(nullptr, "GainGreen", gainGreen, Byte),
    PROTOFIX_OPTION(nullptr, "GainRed", gainRed, Byte),
    PROTOFIX_OPTION(nullptr, "WhiteBalance", whiteBalance, WhiteBalance),
    PROTOFIX_OPTION(kNight, "BrightnessThreshold", nightBrightnessThreshold, Byte),
    PROTOFIX_OPTION(kNight, "SunriseHour", sunriseHour, Byte),
    PROTOFIX_OPTION(kNight, "SunriseMinute", sunriseMinute, Byte),
    PROTOFIX_OPTION(kNight, "SunriseSecond", sunriseSecond, Byte),
    PROTOFIX_OPTION(kNight, "SunsetHour", sunsetHour, Byte),
    PROTOFIX_OPTION(kNight, "SunsetMinute", sunsetMinute, Byte),
    PROTOFIX_OPTION(kNight, "SunsetSecond", sunsetSecond, Byte),
    PROTOFIX_OPTION(kNight, "WideDynamicRange", nightWideDynamicRange, Byte),
    PROTOFIX_OPTION(kNight, "ExposureValue1", nightExposureValue1, Real),
    PROTOFIX_OPTION(kNight, "ExposureValue2", nightExposureValue2, Real),
    PROTOFIX_OPTION(kNight, "ExposureSpeed", nightExposureSpeed, Byte),
    PROTOFIX_OPTION(kNight, "GainBlue", nightGainBlue, Byte),
    PROTOFIX_OPTION(kNight, "GainGreen", nightGainGreen, Byte),
    PROTOFIX_OPTION(kNight, "GainRed", nightGainRed, Byte),
    PROTOFIX_OPTION(kNight, "WhiteBalance", nightWhiteBalance, WhiteBalance),
    PROTOFIX_OPTION(kNight, "Gain", nightGain, Byte),
    PROTOFIX_OPTION(kNight, "GainAuto", nightGainAuto, Byte),
    PROTOFIX_OPTION(kNight, "ReferenceLevel", nightReferenceLevel, Byte),
    PROTOFIX_OPTION(kFlash, "Mode", flashMode, Byte),
    PROTOFIX_OPTION(kFlash, "Pole", flashPole, Byte),
    PROTOFIX_OPTION(kFlash, "PreValue", flashPreValue, Byte),
    PROTOFIX_OPTION(kFlash, "Value", flashValue, Byte),
};

#undef PROTOFIX_OPTION

template <class Field>
Field Load(const unsigned char* at) {
    Field value;
    std::memcpy(&value, at, sizeof value);
    return value;
}

template <class Field>
void Store(unsigned char* at, Field value) {
    std::memcpy(at, &value, sizeof value);
}

Json::Value OptionValue(const unsigned char* at, OptionKind kind) {
    switch (kind) {
        case OptionKind::Short: return Int(Load<unsigned short>(at));
        case OptionKind::Flag: return *at != 0;
        case OptionKind::Real: return static_cast<double>(Load<float>(at));
        case OptionKind::WhiteBalance:
            return CReqConfigProtocolFix::ConvertWhiteBalanceToString(*at);
        case OptionKind::SignalFormat:
            return CReqConfigProtocolFix::ConvertSignalFormatToString(*at);
        case OptionKind::Byte:
        case OptionKind::Flip:
        case OptionKind::Phase: break;
    }
    return Int(*at);
}

void ReadOption(const Json::Value& value, unsigned char* at, OptionKind kind) {
    switch (kind) {
        case OptionKind::Byte: *at = Narrow<unsigned char>(value.asInt()); return;
        case OptionKind::Short: Store(at, Narrow<unsigned short>(value.asInt())); return;
        case OptionKind::Flag:
        case OptionKind::Flip: *at = value.asBool() ? 1 : 0; return;
        case OptionKind::Phase: *at = WholePart<unsigned char>(value.asDouble()); return;
        case OptionKind::Real: Store(at, static_cast<float>(value.asDouble())); return;
        case OptionKind::WhiteBalance:
            *at = CReqConfigProtocolFix::ConvertWhiteBalanceToByte(value.asString());
            return;
        case OptionKind::SignalFormat:
            *at = CReqConfigProtocolFix::ConvertSignalFormatToByte(value.asString());
            return;
    }
}

int PacketOptions(const KZDEV_VIDEOIN_OPTIONS_CFG* cfg, Json::Value& table) {
    if (cfg == nullptr) return -1;
    const auto* bytes = reinterpret_cast<const unsigned char*>(cfg);
    for (const OptionKey& k : kOptionKeys) {
        Json::Value& node = k.group != nullptr ? table[k.group][k.key] : table[k.key];
        node = OptionValue(bytes + k.offset, k.kind);
    }
    return 1;
}

int ParseOptions(const Json::Value& table, KZDEV_VIDEOIN_OPTIONS_CFG* cfg) {
    if (cfg == nullptr) return -1;
    if (!table.isObject()) return 1;
    auto* bytes = reinterpret_cast<unsigned char*>(cfg);
    for (const OptionKey& k : kOptionKeys) {
        const Json::Value& value =
            k.group != nullptr ? Path(table, {k.group, k.key}) : Member(table, k.key);
        if (Present(value)) ReadOption(value, bytes + k.offset, k.kind);
    }
    return 1;
}

// ---- VideoStandard -------------------------------------------------------------------------------

constexpr const char* kStandards[] = {"PAL", "NTSC", "SECAM"};  // KZ_VIDEO_STANDARD_*

}  // namespace

int CReqConfigProtocolFix::Packet_VideoColor(Json::Value& table) {
    if (m_info.mode == PROTOFIX_MODE_TEXT)
        return PacketColorText(static_cast<const char*>(m_info.input), table);
    return PacketColorRecord(InputRecord<KZDEV_VIDEO_COLOR_CFG>(), table);
}

int CReqConfigProtocolFix::Parse_VideoColor(Json::Value& table) {
    if (m_info.mode == PROTOFIX_MODE_TEXT) {
        return MergeIntoF5Buffer(static_cast<char*>(m_info.output), m_info.outputLength,
                                 [&](Json::Value& document) { MergeColorText(table, document); });
    }
    return ParseColorRecord(table, OutputRecord<KZDEV_VIDEO_COLOR_CFG>());
}

// The device reads the record to send from the output slot, where the other sections write.
int CReqConfigProtocolFix::Packet_VideoInOptions(Json::Value& table) {
    return PacketOptions(OutputRecord<KZDEV_VIDEOIN_OPTIONS_CFG>(), table);
}

int CReqConfigProtocolFix::Parse_VideoInOptions(Json::Value& table) {
    return ParseOptions(table, OutputRecord<KZDEV_VIDEOIN_OPTIONS_CFG>());
}

// The table is the bare word; another code writes nothing.
int CReqConfigProtocolFix::Packet_VideoStandard(Json::Value& table) {
    const auto* cfg = InputRecord<KZDEV_VIDEO_STANDARD_CFG>();
    if (cfg == nullptr) return -1;
    if (cfg->videoStandard < std::size(kStandards)) table = kStandards[cfg->videoStandard];
    return 1;
}

int CReqConfigProtocolFix::Parse_VideoStandard(Json::Value& table) {
    auto* cfg = OutputRecord<KZDEV_VIDEO_STANDARD_CFG>();
    if (cfg == nullptr) return -1;
    if (!table.isString()) return 1;
    const std::string word = table.asString();
    for (unsigned int code = 0; code < std::size(kStandards); ++code) {
        if (SameWord(word, kStandards[code])) {
            cfg->videoStandard = code;
            break;
        }
    }
    return 1;
}

int CReqConfigProtocolFix::Packet_MediaGlobal(Json::Value& table) {
    const auto* cfg = InputRecord<KZDEV_MEDIA_GLOBAL_CFG>();
    if (cfg == nullptr) return -1;
    table["PacketLength"] = Int(cfg->packetLength);
    return 1;
}

// Read only when it is an integer (a negative one fails the unsigned conversion, which throws).
int CReqConfigProtocolFix::Parse_MediaGlobal(Json::Value& table) {
    auto* cfg = OutputRecord<KZDEV_MEDIA_GLOBAL_CFG>();
    if (cfg == nullptr) return -1;
    const Json::Value& length = Member(table, "PacketLength");
    if (length.isInt()) cfg->packetLength = Narrow<unsigned char>(length.asUInt());
    return 1;
}
