// Media and picture words: every code and word of each table, the failure value of each way, and
// the image sizes under both standards.
#include "request_support.h"

#include <string>
#include <utility>
#include <vector>

namespace {

using Fix = CReqConfigProtocolFix;

enum Kind { kProfile, kControl, kAudio, kCompression, kBalance, kSignal };

// The word of a code; for video compression "kept" when the target is left as it was.
std::string Word(Kind kind, int code) {
    const auto byte = static_cast<unsigned char>(code);
    Json::Value target = "kept";
    switch (kind) {
        case kProfile: return Fix::Video_H264(code);
        case kControl: return Fix::Video_BitRateControl(code);
        case kAudio: return Fix::Audio_Compression(code);
        case kBalance: return Fix::ConvertWhiteBalanceToString(byte);
        case kSignal: return Fix::ConvertSignalFormatToString(byte);
        case kCompression: break;
    }
    ConvertVideoCompressionEnumToJson(static_cast<tagNET_EM_VIDEO_COMPRESSION>(code), target);
    return target.asString();
}

int Code(Kind kind, const std::string& word) {
    switch (kind) {
        case kProfile: return Fix::Video_H264(word);
        case kControl: return Fix::Video_BitRateControl(word);
        case kAudio: return Fix::Audio_Compression(word);
        case kBalance: return Fix::ConvertWhiteBalanceToByte(word);
        case kSignal: return Fix::ConvertSignalFormatToByte(word);
        case kCompression: break;
    }
    return ConvertVideoCompressionJsonToEnum(Json::Value(word));
}

// One converter each way: the words of codes first, first + 1, ...; then codes and words outside
// the table (or matched in another case) with what they give.
struct Converter {
    Kind kind;
    int first;
    std::vector<std::string> words;
    std::vector<std::pair<int, std::string>> otherCodes;
    std::vector<std::pair<std::string, int>> otherWords;
};

TEST(MediaWords, EveryCodeAndWordBothWays) {
    // clang-format off
    const Converter converters[] = {
        {kProfile, 1, {"Baseline", "Main", "Extended", "High"}, {{-1, ""}, {0, ""}, {5, ""}, {1 << 30, ""}},
         {{"high", 4}, {"bASELINE", 1}, {"", -1}, {"High ", -1}, {"H", -1}}},
        {kControl, 0, {"CBR", "VBR"}, {{-1, ""}, {2, ""}}, {{"cbr", -1}, {"", -1}, {"CBR ", -1}}},
        {kAudio, 0, {"G.711A", "PCM", "G.711Mu", "AMR", "AAC"}, {{-1, ""}, {5, ""}},
         {{"G711A", 0}, {"aac", 0}, {"", 0}}},
        {kCompression, 0, {"MPEG4", "MS-MPEG4", "MPEG2", "MPEG1", "H.263", "MJPG", "FCC-MPEG4", "H.264", "H.265", "SVAC"},
         {{-1, "kept"}, {10, "kept"}}, {{"h.264", -1}, {"H264", -1}}},
        {kBalance, 0, {"Disable", "Auto", "Custom", "Sunny", "Cloudy", "Home", "Office", "Night", "HighColorTemperature",
                       "LowColorTemperature", "AutoColorTemperature", "CustomColorTemperature"},
         {{12, "Disable"}, {255, "Disable"}}, {{"night", 0}, {"", 0}, {"Night ", 0}}},
        {kSignal, 0, {"Inside", "BT656", "720p", "1080p", "1080i", "1080sF"}, {{6, "Inside"}, {255, "Inside"}},
         {{"4K", 0}, {"1080P", 0}, {"bt656", 0}}},
    };
    // clang-format on
    for (const Converter& c : converters) {
        SCOPED_TRACE(c.kind);
        for (std::size_t i = 0; i < c.words.size(); ++i) {
            EXPECT_EQ(Word(c.kind, c.first + static_cast<int>(i)), c.words[i]);
            EXPECT_EQ(Code(c.kind, c.words[i]), c.first + static_cast<int>(i));
        }
        for (const auto& [code, word] : c.otherCodes) EXPECT_EQ(Word(c.kind, code), word) << code;
        for (const auto& [word, code] : c.otherWords) EXPECT_EQ(Code(c.kind, word), code) << word;
    }
    // A number is compared as its text, null as the empty text.
    EXPECT_EQ(ConvertVideoCompressionJsonToEnum(Json::Value(7)), -1);
    EXPECT_EQ(ConvertVideoCompressionJsonToEnum(Json::Value()), -1);
}

// Known words are translated, anything else copied (numbers keep their kind); null returns 0
// with the target untouched; the target may be the value itself.
TEST(MediaWords, AudioFormatsOfTheEarlierProtocol) {
    struct Case {
        bool toTable;
        Json::Value in, out;
    };
    // clang-format off
    const Case cases[] = {{true, "G711A", "G.711A"}, {true, "G711U", "G.711Mu"}, {true, "AAC", "AAC"},
                          {true, "G.711A", "G.711A"}, {true, 5, 5}, {false, "G.711A", "G711A"},
                          {false, "G.711Mu", "G711U"}, {false, "G711U", "G711U"}, {false, "g.711a", "g.711a"}};
    // clang-format on
    const auto convert = [](bool toTable, const Json::Value& in, Json::Value& out) {
        return toTable ? Fix::ConvertAudioFormatF5ToF6(in, out)
                       : Fix::ConvertAudioFormatF6ToF5(in, out);
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.in.toStyledString());
        Json::Value out = "old", same = c.in;
        EXPECT_EQ(convert(c.toTable, c.in, out), 1);
        EXPECT_EQ(out, c.out);
        convert(c.toTable, same, same);
        EXPECT_EQ(same, c.out);
        Json::Value kept = "old";
        EXPECT_EQ(convert(c.toTable, Json::Value(), kept), 0);
        EXPECT_EQ(kept, "old");
    }
}

// The image sizes by code: PAL and NTSC sizes (one size where they are the same).
struct Size {
    int width, palHeight, ntscHeight;
};
const Size kSizes[] = {
    {704, 576, 480},    {352, 576, 480},    {704, 288, 240},    {352, 288, 240},
    {176, 144, 120},    {640, 480, 480},    {320, 240, 240},    {480, 480, 480},
    {160, 128, 128},    {800, 592, 592},    {1024, 768, 768},   {1280, 800, 800},
    {1280, 1024, 1024}, {1600, 1024, 1024}, {1600, 1200, 1200}, {1920, 1200, 1200},
    {240, 192, 192},    {1280, 720, 720},   {1920, 1080, 1080}, {1280, 960, 960},
    {1872, 1408, 1408}, {3744, 1408, 1408}, {2048, 1536, 1536}, {2432, 2050, 2050},
    {1216, 1024, 1024}, {1408, 1024, 1024}, {3296, 2472, 2472}, {2560, 1920, 1920},
    {960, 576, 480},    {960, 720, 720},    {640, 360, 360},    {320, 180, 180},
    {160, 90, 90},
};

TEST(MediaWords, ImageSizes) {
    for (int code = 0; code <= 32; ++code) {
        const Size& s = kSizes[code];
        for (int standard : {0, 1}) {
            SCOPED_TRACE(std::to_string(code) + " standard " + std::to_string(standard));
            const int height = standard == 0 ? s.palHeight : s.ntscHeight;
            int size = -7, w = -1, h = -1;
            Fix::Video_WHTo_ImageSize(size, standard, s.width, height);
            EXPECT_EQ(size, code);
            Fix::Video_ImageSize_ToWH(code, standard, w, h);
            EXPECT_EQ(w, s.width);
            EXPECT_EQ(h, code == 28 ? 576 : height);  // code 28 always gives its PAL size
        }
    }
    // To a code: the standard-dependent rows need exactly 0 or 1, no row leaves the code. To a
    // size: any standard but 0 reads NTSC heights; an unknown code writes nothing.
    struct Case {
        int standard, width, height, code;
    };
    const Case toCode[] = {{2, 704, 576, -7},  {-1, 352, 480, -7}, {2, 1920, 1080, 18},
                           {0, 1280, 721, -7}, {0, 704, 480, -7},  {1, 960, 576, -7}};
    for (const Case& c : toCode) {
        int size = -7;
        Fix::Video_WHTo_ImageSize(size, c.standard, c.width, c.height);
        EXPECT_EQ(size, c.code) << c.standard << " " << c.width << "x" << c.height;
    }
    const Case toSize[] = {
        {2, 704, 480, 0}, {-1, 352, 240, 3}, {0, -3, -3, 33}, {0, -3, -3, -1}, {0, -3, -3, 255}};
    for (const Case& c : toSize) {
        int width = -3, height = -3;
        Fix::Video_ImageSize_ToWH(c.code, c.standard, width, height);
        EXPECT_EQ(width, c.width) << c.code;
        EXPECT_EQ(height, c.height) << c.code << " standard " << c.standard;
    }
}

}  // namespace
