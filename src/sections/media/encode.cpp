// "Encode": the main, extra and snapshot stream formats of one channel, between the record and
// the table (record mode), and between the earlier protocol's encode text and the table (text
// mode).
#include "request/f5_text.h"
#include "request/fields.h"

#include <protofix/ReqConfigProtocolFix.h>

#include <iterator>

using namespace protofix;

namespace {

// The record lengths are checked against these byte counts, not against the record's size: the
// main and extra formats need 409 bytes, the snapshot formats 464 to be written into the table
// and 465 to be read from it.
constexpr int kStreamBytes = 409;
constexpr int kSnapPacketBytes = 464;
constexpr int kSnapParseBytes = 465;

// "QualityRange": a percentage when the quality byte has its top bit, else a level.
constexpr int kPercentRange = 100;
constexpr int kLevelRange = 6;
constexpr unsigned int kPercent = KZ_QUALITY_PERCENT;
constexpr unsigned int kValue = KZ_QUALITY_VALUE;

// The percentage of each snapshot quality level 1..6.
constexpr int kLevelPercent[] = {10, 30, 50, 60, 80, 100};

struct Stream {
    const char* key;  // the table's (and the F5 text's) list
    KZ_VIDEOENC_OPT (KZDEV_ENCODE_CFG::*formats)[KZ_ENCODE_MAIN_FORMATS];
    bool readsProfile;  // "Profile" is read for main streams only
};

static_assert(KZ_ENCODE_MAIN_FORMATS == KZ_ENCODE_EXTRA_FORMATS, "one shape for both lists");
constexpr Stream kStreams[] = {{"MainFormat", &KZDEV_ENCODE_CFG::mainFormat, true},
                               {"ExtraFormat", &KZDEV_ENCODE_CFG::extraFormat, false}};

constexpr const char* kSnapFormat = "SnapFormat";

// The "Video" keys the earlier protocol's stream entries share with the table.
constexpr const char* kF5VideoKeys[] = {"Compression", "Width", "Height", "BitRateControl",
                                        "Quality",     "FPS",   "GOP",    "BitRate"};
constexpr const char* kF5SnapKeys[] = {"Width", "Height", "FPS", "Quality"};

// ---- record to table ---------------------------------------------------------------------------

// An unknown code gives an empty word.
void PutCompression(unsigned char code, Json::Value& node) {
    node = "";
    ConvertVideoCompressionEnumToJson(static_cast<tagNET_EM_VIDEO_COMPRESSION>(code), node);
}

// An unknown code gives 0 x 0.
void PutSize(unsigned char code, int standard, Json::Value& video) {
    int width = 0;
    int height = 0;
    CReqConfigProtocolFix::Video_ImageSize_ToWH(code, standard, width, height);
    video["Width"] = width;
    video["Height"] = height;
}

int QualityRange(unsigned char quality) {
    return (quality & kPercent) != 0 ? kPercentRange : kLevelRange;
}

void PacketStream(const KZ_VIDEOENC_OPT& format, int standard, Json::Value& entry) {
    entry["VideoEnable"] = Flag(format.videoEnable);
    Json::Value& video = entry["Video"];
    PutCompression(format.compression, video["Compression"]);
    PutSize(format.imageSize, standard, video);
    video["BitRateControl"] = CReqConfigProtocolFix::Video_BitRateControl(format.bitRateControl);
    entry["QualityRange"] = QualityRange(format.quality);
    video["Quality"] = Int(format.quality & kValue);
    video["GOP"] = Int(format.gop);
    video["BitRate"] = Int(format.bitRate);
    video["FPS"] = Int(format.fps);
    const std::string profile = CReqConfigProtocolFix::Video_H264(format.profile);
    if (!profile.empty()) video["Profile"] = profile;
    entry["AudioEnable"] = Flag(format.audioEnable);
    Json::Value& audio = entry["Audio"];
    audio["Compression"] = CReqConfigProtocolFix::Audio_Compression(format.audioCompression);
    audio["Frequency"] = Int(format.frequency);
    audio["Depth"] = Int(format.depth);
}

// A snapshot quality stored as a percentage (top bit clear, yet 10 or more) is written as its
// level, 0 for a percentage that is no level's; otherwise the value itself.
int SnapQuality(unsigned char quality) {
    if ((quality & kPercent) == 0 && (quality & 0x7Eu) > 9) {
        for (std::size_t level = 0; level < std::size(kLevelPercent); ++level) {
            if (kLevelPercent[level] == quality) return static_cast<int>(level) + 1;
        }
        return 0;
    }
    return static_cast<int>(quality & kValue);
}

// The snapshot rate is signed: -n is one picture every n seconds, written as 1/n.
double SnapFps(unsigned char fps) {
    // The byte read as two's complement: 251 is -5.
    const int rate = fps < 128 ? static_cast<int>(fps) : static_cast<int>(fps) - 256;
    return rate < 0 ? 1.0 / -rate : rate;
}

void PacketSnap(const KZ_VIDEOENC_OPT& format, int standard, Json::Value& video) {
    PutCompression(format.compression, video["Compression"]);
    PutSize(format.imageSize, standard, video);
    video["QualityRange"] = QualityRange(format.quality);
    video["Quality"] = SnapQuality(format.quality);
    video["FPS"] = SnapFps(format.fps);
}

int PacketRecord(const KZDEV_ENCODE_CFG* cfg, int length, int standard, Json::Value& table) {
    if (cfg == nullptr || length < kStreamBytes) return -1;
    for (const Stream& stream : kStreams) {
        Json::Value& formats = table[stream.key];
        for (Json::ArrayIndex i = 0; i < KZ_ENCODE_MAIN_FORMATS; ++i) {
            PacketStream((cfg->*stream.formats)[i], standard, formats[i]);
        }
    }
    // The stream entries stay in the table of a refused record.
    if (length < kSnapPacketBytes) return -1;
    Json::Value& snaps = table[kSnapFormat];
    for (Json::ArrayIndex i = 0; i < KZ_ENCODE_SNAP_FORMATS; ++i) {
        PacketSnap(cfg->snapFormat[i], standard, snaps[i]["Video"]);
    }
    snaps[0]["SnapEnable"] = cfg->snapEnable != 0;
    return 1;
}

// ---- table to record ---------------------------------------------------------------------------

// An unknown word stores the converter's -1, truncated to the byte.
void ReadCompression(const Json::Value& video, unsigned char& compression) {
    const Json::Value& word = Member(video, "Compression");
    if (Present(word)) compression = Narrow<unsigned char>(ConvertVideoCompressionJsonToEnum(word));
}

// Read only when both are present; a size with no row stores code 0.
void ReadSize(const Json::Value& video, int standard, unsigned char& imageSize) {
    const Json::Value& width = Member(video, "Width");
    const Json::Value& height = Member(video, "Height");
    if (!Present(width) || !Present(height)) return;
    int code = 0;
    CReqConfigProtocolFix::Video_WHTo_ImageSize(code, standard, width.asInt(), height.asInt());
    imageSize = Narrow<unsigned char>(code);
}

void ReadStream(const Json::Value& entry, int standard, bool readsProfile,
                KZ_VIDEOENC_OPT& format) {
    if (!Present(entry)) return;
    ReadBool(Member(entry, "VideoEnable"), format.videoEnable);
    const Json::Value& video = Member(entry, "Video");
    if (Present(video)) {
        ReadCompression(video, format.compression);
        ReadSize(video, standard, format.imageSize);
        const Json::Value& control = Member(video, "BitRateControl");
        if (Present(control)) {
            format.bitRateControl = Narrow<unsigned char>(
                CReqConfigProtocolFix::Video_BitRateControl(control.asString()));
        }
        // The range bit stays: "QualityRange" is not read.
        const Json::Value& quality = Member(video, "Quality");
        if (Present(quality)) {
            format.quality =
                Narrow<unsigned char>((format.quality & kPercent) |
                                      (static_cast<unsigned int>(quality.asInt()) & kValue));
        }
        ReadInt(Member(video, "BitRate"), format.bitRate);
        ReadInt(Member(video, "FPS"), format.fps);
        ReadInt(Member(video, "GOP"), format.gop);
        const Json::Value& profile = Member(video, "Profile");
        if (readsProfile && Present(profile)) {
            format.profile =
                Narrow<unsigned char>(CReqConfigProtocolFix::Video_H264(profile.asString()));
        }
    }
    ReadBool(Member(entry, "AudioEnable"), format.audioEnable);
    const Json::Value& audio = Member(entry, "Audio");
    if (Present(audio)) {
        const Json::Value& compression = Member(audio, "Compression");
        if (Present(compression)) {
            format.audioCompression = Narrow<unsigned char>(
                CReqConfigProtocolFix::Audio_Compression(compression.asString()));
        }
        ReadInt(Member(audio, "Frequency"), format.frequency);
        ReadInt(Member(audio, "Depth"), format.depth);
    }
}

// A rate below one picture a second, 1/n, is stored as -n (rounded); 0 or less as 0.
signed char SnapFpsByte(double rate) {
    if (rate > 0 && rate < 1) return WholePart<signed char>(-(1.0 / rate + 0.5));
    if (rate >= 1) return WholePart<signed char>(rate);
    return 0;
}

// What the record already holds decides how the number is read: a record of percentages (top
// bit clear, yet 10 or more) reads a level 1..6 and ignores any other number; otherwise the
// number is the value, under the range bit kept.
void ReadSnapQuality(int value, unsigned char& quality) {
    if ((quality & kPercent) == 0 && (quality & 0x7Eu) > 9) {
        if (value >= 1 && value <= kLevelRange) {
            quality = Narrow<unsigned char>((quality & kPercent) |
                                            static_cast<unsigned int>(kLevelPercent[value - 1]));
        }
        return;
    }
    quality =
        Narrow<unsigned char>((quality & kPercent) | (static_cast<unsigned int>(value) & kValue));
}

void ReadSnap(const Json::Value& video, int standard, KZ_VIDEOENC_OPT& format) {
    if (!Present(video)) return;
    ReadCompression(video, format.compression);
    ReadSize(video, standard, format.imageSize);
    const Json::Value& fps = Member(video, "FPS");
    if (Present(fps)) format.fps = static_cast<unsigned char>(SnapFpsByte(fps.asDouble()));
    const Json::Value& quality = Member(video, "Quality");
    if (Present(quality)) ReadSnapQuality(quality.asInt(), format.quality);
}

int ParseRecord(const Json::Value& table, KZDEV_ENCODE_CFG* cfg, int length, int standard) {
    if (cfg == nullptr || length < kStreamBytes) return -1;
    for (const Stream& stream : kStreams) {
        const Json::Value& list = Member(table, stream.key);
        for (Json::ArrayIndex i = 0; i < KZ_ENCODE_MAIN_FORMATS; ++i) {
            ReadStream(Element(list, i), standard, stream.readsProfile, (cfg->*stream.formats)[i]);
        }
    }
    // One byte more than the other direction asks for; the stream formats stay filled.
    if (length < kSnapParseBytes) return -1;
    const Json::Value& snaps = Member(table, kSnapFormat);
    for (Json::ArrayIndex i = 0; i < KZ_ENCODE_SNAP_FORMATS; ++i) {
        ReadSnap(Member(Element(snaps, i), "Video"), standard, cfg->snapFormat[i]);
    }
    // Read with no presence test: a missing "SnapEnable" turns snapshots off.
    cfg->snapEnable = Narrow<unsigned char>(Path(Element(snaps, 0), {"SnapEnable"}).asInt());
    return 1;
}

// ---- the earlier protocol's text ---------------------------------------------------------------

// An earlier snapshot rate -n (one picture every n seconds) is the table's 1/n.
double OlderSnapFps(const Json::Value& fps) {
    if (fps.isInt() && fps.asInt() < 0) return 1.0 / -static_cast<double>(fps.asInt());
    return fps.asDouble();
}

// The earlier text has one audio format, which speaks for every stream; copied values keep their
// kind, absent ones are copied as null.
int PacketText(const char* text, Json::Value& table) {
    Json::Value document;
    if (!ReadF5Text(text, document)) return -1;
    const Json::Value& encode = Member(document, "Encode");
    const Json::Value& audioFormat = Path(encode, {"Audio", "Format"});
    for (const Stream& stream : kStreams) {
        const Json::Value& oldFormats = Member(encode, stream.key);
        Json::Value& formats = table[stream.key];
        for (Json::ArrayIndex i = 0; i < KZ_ENCODE_MAIN_FORMATS; ++i) {
            const Json::Value& old = Element(oldFormats, i);
            const Json::Value& oldVideo = Member(old, "Video");
            Json::Value& entry = formats[i];
            entry["VideoEnable"] = Member(old, "VideoEn").asInt() == 1;
            Json::Value& video = entry["Video"];
            for (const char* key : kF5VideoKeys) video[key] = Member(oldVideo, key);
            entry["QualityRange"] = kLevelRange;
            entry["AudioEnable"] = Member(old, "AudioEn").asInt() == 1;
            CReqConfigProtocolFix::ConvertAudioFormatF5ToF6(audioFormat,
                                                            entry["Audio"]["Compression"]);
        }
    }
    const Json::Value& snaps = Member(encode, kSnapFormat);
    Json::Value& snapFormats = table[kSnapFormat];
    for (Json::ArrayIndex i = 0; i < KZ_ENCODE_SNAP_FORMATS; ++i) {
        const Json::Value& old = Member(Element(snaps, i), "Video");
        Json::Value& video = snapFormats[i]["Video"];
        video["Width"] = Member(old, "Width").asInt();
        video["Height"] = Member(old, "Height").asInt();
        video["QualityRange"] = kLevelRange;
        video["Quality"] = Member(old, "Quality").asInt();
        video["FPS"] = OlderSnapFps(Member(old, "FPS"));
    }
    return 1;
}

// The member key of one stream entry of the earlier text (under group when not null), created
// only now that it is written; null when the text has a value of another kind on the way.
Json::Value* OlderEntryMember(Json::Value& document, const char* list, Json::ArrayIndex i,
                              const char* group, const char* key) {
    Json::Value* at = PathToWrite(document, {"Encode", list});
    if (at != nullptr) at = ElementToWrite(*at, i);
    if (at != nullptr && group != nullptr) at = MemberToWrite(*at, group);
    return at != nullptr ? MemberToWrite(*at, key) : nullptr;
}

void CopyInto(Json::Value* target, const Json::Value& value) {
    if (target != nullptr) *target = value;
}

// The table's present values into the earlier text; the first main stream's audio speaks for all.
void MergeText(const Json::Value& table, Json::Value& document) {
    const Json::Value& audio =
        Path(Element(Member(table, "MainFormat"), 0), {"Audio", "Compression"});
    if (Present(audio)) {
        if (Json::Value* format = PathToWrite(document, {"Encode", "Audio", "Format"})) {
            CReqConfigProtocolFix::ConvertAudioFormatF6ToF5(audio, *format);
        }
    }
    for (const Stream& stream : kStreams) {
        for (Json::ArrayIndex i = 0; i < KZ_ENCODE_MAIN_FORMATS; ++i) {
            const Json::Value& entry = Element(Member(table, stream.key), i);
            const Json::Value& videoEnable = Member(entry, "VideoEnable");
            if (Present(videoEnable)) {
                CopyInto(OlderEntryMember(document, stream.key, i, nullptr, "VideoEn"),
                         videoEnable.asBool() ? 1 : 0);
            }
            const Json::Value& audioEnable = Member(entry, "AudioEnable");
            if (Present(audioEnable)) {
                CopyInto(OlderEntryMember(document, stream.key, i, nullptr, "AudioEn"),
                         audioEnable.asBool() ? 1 : 0);
            }
            const Json::Value& video = Member(entry, "Video");
            for (const char* key : kF5VideoKeys) {
                const Json::Value& value = Member(video, key);
                if (Present(value))
                    CopyInto(OlderEntryMember(document, stream.key, i, "Video", key), value);
            }
        }
    }
    const Json::Value& snaps = Member(table, kSnapFormat);
    for (Json::ArrayIndex i = 0; i < KZ_ENCODE_SNAP_FORMATS; ++i) {
        const Json::Value& video = Member(Element(snaps, i), "Video");
        for (const char* key : kF5SnapKeys) {
            const Json::Value& value = Member(video, key);
            if (Present(value))
                CopyInto(OlderEntryMember(document, kSnapFormat, i, "Video", key), value);
        }
    }
}

}  // namespace

int CReqConfigProtocolFix::Packet_Encode(Json::Value& table) {
    if (m_info.mode == PROTOFIX_MODE_TEXT)
        return PacketText(static_cast<const char*>(m_info.input), table);
    return PacketRecord(InputRecord<KZDEV_ENCODE_CFG>(), m_info.inputLength, m_info.videoStandard,
                        table);
}

int CReqConfigProtocolFix::Parse_Encode(Json::Value& table) {
    if (m_info.mode == PROTOFIX_MODE_TEXT) {
        return MergeIntoF5Buffer(static_cast<char*>(m_info.output), m_info.outputLength,
                                 [&](Json::Value& document) { MergeText(table, document); });
    }
    return ParseRecord(table, OutputRecord<KZDEV_ENCODE_CFG>(), m_info.outputLength,
                       m_info.videoStandard);
}
