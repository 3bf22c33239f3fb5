// Media and picture words: the codes of the encoder and picture records and the words the
// device's tables use for them. Pure functions over constant tables.
#include "request/fields.h"

#include <protofix/ReqConfigProtocolFix.h>

#include <cstddef>
#include <iterator>

namespace {

constexpr const char* kProfile[] = {"Baseline", "Main", "Extended", "High"};  // codes 1..4

constexpr const char* kBitRateControl[] = {"CBR", "VBR"};

constexpr const char* kAudioCompression[] = {"G.711A", "PCM", "G.711Mu", "AMR", "AAC"};

constexpr const char* kVideoCompression[] = {"MPEG4", "MS-MPEG4",  "MPEG2", "MPEG1", "H.263",
                                             "MJPG",  "FCC-MPEG4", "H.264", "H.265", "SVAC"};

constexpr const char* kWhiteBalance[] = {"Disable",
                                         "Auto",
                                         "Custom",
                                         "Sunny",
                                         "Cloudy",
                                         "Home",
                                         "Office",
                                         "Night",
                                         "HighColorTemperature",
                                         "LowColorTemperature",
                                         "AutoColorTemperature",
                                         "CustomColorTemperature"};

constexpr const char* kSignalFormat[] = {"Inside", "BT656", "720p", "1080p", "1080i", "1080sF"};

// The audio words of the earlier protocol and the table's words for the same formats.
constexpr const char* kAudioF5[] = {"G711A", "G711U"};
constexpr const char* kAudioF6[] = {"G.711A", "G.711Mu"};

// One resolution by image-size code. Rows that depend on the standard have a PAL and an NTSC
// height; the others have one height.
struct ImageSize {
    int width;
    int height;      // PAL, or the only height
    int ntscHeight;  // NTSC; equal to height for a row that does not depend on the standard
    bool byStandard;
};

constexpr ImageSize kImageSizes[] = {
    {704, 576, 480, true},     {352, 576, 480, true},     {704, 288, 240, true},      // 0..2
    {352, 288, 240, true},     {176, 144, 120, true},     {640, 480, 480, false},     // 3..5
    {320, 240, 240, false},    {480, 480, 480, false},    {160, 128, 128, false},     // 6..8
    {800, 592, 592, false},    {1024, 768, 768, false},   {1280, 800, 800, false},    // 9..11
    {1280, 1024, 1024, false}, {1600, 1024, 1024, false}, {1600, 1200, 1200, false},  // 12..14
    {1920, 1200, 1200, false}, {240, 192, 192, false},    {1280, 720, 720, false},    // 15..17
    {1920, 1080, 1080, false}, {1280, 960, 960, false},   {1872, 1408, 1408, false},  // 18..20
    {3744, 1408, 1408, false}, {2048, 1536, 1536, false}, {2432, 2050, 2050, false},  // 21..23
    {1216, 1024, 1024, false}, {1408, 1024, 1024, false}, {3296, 2472, 2472, false},  // 24..26
    {2560, 1920, 1920, false}, {960, 576, 480, true},     {960, 720, 720, false},     // 27..29
    {640, 360, 360, false},    {320, 180, 180, false},    {160, 90, 90, false},       // 30..32
};

// Code 28 is read by the standard but always written as its PAL size.
constexpr int kWrittenAsPal = 28;

template <std::size_t N>
std::string WordOf(const char* const (&words)[N], unsigned int code, const char* otherwise) {
    return code < N ? words[code] : otherwise;
}

// Index of the word in the table, compared exactly; -1 when it is none of them.
template <std::size_t N>
int IndexOf(const char* const (&words)[N], const std::string& word) {
    for (std::size_t i = 0; i < N; ++i) {
        if (word == words[i]) return static_cast<int>(i);
    }
    return -1;
}

// The word of the other protocol for a known word, or the value itself.
template <std::size_t N>
int Translate(const Json::Value& in, Json::Value& out, const char* const (&from)[N],
              const char* const (&to)[N]) {
    if (in.isNull()) return 0;
    const int at = IndexOf(from, in.asString());
    if (at >= 0) {
        out = to[at];
    } else {
        out = in;
    }
    return 1;
}

}  // namespace

std::string CReqConfigProtocolFix::Video_H264(int profile) {
    return WordOf(kProfile, static_cast<unsigned int>(profile) - 1u, "");
}

int CReqConfigProtocolFix::Video_H264(const std::string& word) {
    for (std::size_t i = 0; i < std::size(kProfile); ++i) {
        if (protofix::SameWord(word, kProfile[i])) return static_cast<int>(i) + 1;
    }
    return -1;
}

std::string CReqConfigProtocolFix::Video_BitRateControl(int control) {
    return WordOf(kBitRateControl, static_cast<unsigned int>(control), "");
}

int CReqConfigProtocolFix::Video_BitRateControl(const std::string& word) {
    return IndexOf(kBitRateControl, word);
}

void CReqConfigProtocolFix::Video_WHTo_ImageSize(int& size, int standard, int width, int height) {
    for (std::size_t code = 0; code < std::size(kImageSizes); ++code) {
        const ImageSize& row = kImageSizes[code];
        if (row.width != width) continue;
        const bool matches =
            row.byStandard ? (standard == PROTOFIX_STANDARD_PAL && row.height == height) ||
                                 (standard == PROTOFIX_STANDARD_NTSC && row.ntscHeight == height)
                           : row.height == height;
        if (matches) {
            size = static_cast<int>(code);
            return;
        }
    }
}

void CReqConfigProtocolFix::Video_ImageSize_ToWH(int size, int standard, int& width, int& height) {
    const auto code = static_cast<unsigned int>(size);
    if (code >= std::size(kImageSizes)) return;
    const ImageSize& row = kImageSizes[code];
    width = row.width;
    // Any standard but PAL reads the NTSC height.
    height =
        standard == PROTOFIX_STANDARD_PAL || size == kWrittenAsPal ? row.height : row.ntscHeight;
}

std::string CReqConfigProtocolFix::Audio_Compression(int code) {
    return WordOf(kAudioCompression, static_cast<unsigned int>(code), "");
}

// An unknown word reads as the first code: this direction has no failure value.
int CReqConfigProtocolFix::Audio_Compression(const std::string& word) {
    const int code = IndexOf(kAudioCompression, word);
    return code < 0 ? 0 : code;
}

int CReqConfigProtocolFix::ConvertAudioFormatF5ToF6(const Json::Value& in, Json::Value& out) {
    return Translate(in, out, kAudioF5, kAudioF6);
}

int CReqConfigProtocolFix::ConvertAudioFormatF6ToF5(const Json::Value& in, Json::Value& out) {
    return Translate(in, out, kAudioF6, kAudioF5);
}

unsigned char CReqConfigProtocolFix::ConvertWhiteBalanceToByte(const std::string& word) {
    const int code = IndexOf(kWhiteBalance, word);
    return static_cast<unsigned char>(code < 0 ? 0 : code);
}

std::string CReqConfigProtocolFix::ConvertWhiteBalanceToString(unsigned char code) {
    return WordOf(kWhiteBalance, code, kWhiteBalance[0]);
}

unsigned char CReqConfigProtocolFix::ConvertSignalFormatToByte(const std::string& word) {
    const int code = IndexOf(kSignalFormat, word);
    return static_cast<unsigned char>(code < 0 ? 0 : code);
}

std::string CReqConfigProtocolFix::ConvertSignalFormatToString(unsigned char code) {
    return WordOf(kSignalFormat, code, kSignalFormat[0]);
}

void ConvertVideoCompressionEnumToJson(tagNET_EM_VIDEO_COMPRESSION code, Json::Value& target) {
    const auto index = static_cast<unsigned int>(code);
    if (index < std::size(kVideoCompression)) target = kVideoCompression[index];
}

int ConvertVideoCompressionJsonToEnum(const Json::Value& word) {
    return IndexOf(kVideoCompression, word.asString());
}
