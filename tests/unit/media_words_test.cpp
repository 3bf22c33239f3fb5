// Media and picture words: every code and word of each table, both standards of the image sizes,
// and the failure value of each converter.
#include "request_support.h"

#include <string>
#include <vector>

namespace {

using Fix = CReqConfigProtocolFix;

// A code table: the words of codes first..first+size-1.
struct Words {
    int first;
    std::vector<std::string> words;
};

TEST(MediaWords, CodesToWordsAndBack) {
    const Words profile{1, {"Baseline", "Main", "Extended", "High"}};
    const Words control{0, {"CBR", "VBR"}};
    const Words audio{0, {"G.711A", "PCM", "G.711Mu", "AMR", "AAC"}};
    for (std::size_t i = 0; i < 4; ++i) {
        const int code = profile.first + static_cast<int>(i);
        EXPECT_EQ(Fix::Video_H264(code), profile.words[i]);
        EXPECT_EQ(Fix::Video_H264(profile.words[i]), code);
    }
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(Fix::Video_BitRateControl(static_cast<int>(i)), control.words[i]);
        EXPECT_EQ(Fix::Video_BitRateControl(control.words[i]), static_cast<int>(i));
    }
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(Fix::Audio_Compression(static_cast<int>(i)), audio.words[i]);
        EXPECT_EQ(Fix::Audio_Compression(audio.words[i]), static_cast<int>(i));
    }
}

// Unknown codes give empty words (negative codes included); unknown words give -1, except audio,
// which reads an unknown word as its first code. Only the profile ignores case.
TEST(MediaWords, UnknownCodesAndWords) {
    for (int code : {-1, 0, 5, 1 << 30}) EXPECT_EQ(Fix::Video_H264(code), "") << code;
    for (int code : {-1, 2, 255}) EXPECT_EQ(Fix::Video_BitRateControl(code), "") << code;
    for (int code : {-1, 5}) EXPECT_EQ(Fix::Audio_Compression(code), "") << code;
    const std::pair<const char*, int> profiles[] = {
        {"high", 4}, {"bASELINE", 1}, {"", -1}, {"High ", -1}, {"H", -1}};
    for (const auto& [word, code] : profiles)
        EXPECT_EQ(Fix::Video_H264(std::string(word)), code) << word;
    for (const char* word : {"cbr", "", "CBR "})
        EXPECT_EQ(Fix::Video_BitRateControl(std::string(word)), -1) << word;
    for (const char* word : {"G711A", "aac", ""})
        EXPECT_EQ(Fix::Audio_Compression(std::string(word)), 0) << word;
}

TEST(MediaWords, VideoCompression) {
    const char* const words[] = {"MPEG4", "MS-MPEG4",  "MPEG2", "MPEG1", "H.263",
                                 "MJPG",  "FCC-MPEG4", "H.264", "H.265", "SVAC"};
    for (int code = 0; code < 10; ++code) {
        Json::Value target = 5;
        ConvertVideoCompressionEnumToJson(static_cast<tagNET_EM_VIDEO_COMPRESSION>(code), target);
        EXPECT_EQ(target, words[code]);
        EXPECT_EQ(ConvertVideoCompressionJsonToEnum(Json::Value(words[code])), code);
    }
    for (int code : {-1, 10, 255}) {
        Json::Value target = "kept";
        ConvertVideoCompressionEnumToJson(static_cast<tagNET_EM_VIDEO_COMPRESSION>(code), target);
        EXPECT_EQ(target, "kept") << code;
    }
    // Exact comparison; a number is compared as its text; null as the empty text.
    for (const Json::Value& word :
         {Json::Value("h.264"), Json::Value("H264"), Json::Value(7), Json::Value()})
        EXPECT_EQ(ConvertVideoCompressionJsonToEnum(word), -1) << word;
}

// Known words are translated, anything else copied (numbers keep their kind); null returns 0
// with the target untouched; the target may be the value itself.
TEST(MediaWords, AudioFormatsOfTheEarlierProtocol) {
    struct Case {
        bool toTable;
        Json::Value in;
        Json::Value out;
    };
    const Case cases[] = {
        {true, "G711A", "G.711A"},
        {true, "G711U", "G.711Mu"},
        {true, "AAC", "AAC"},
        {true, "G.711A", "G.711A"},
        {true, 5, 5},
        {false, "G.711A", "G711A"},
        {false, "G.711Mu", "G711U"},
        {false, "G711U", "G711U"},
        {false, "g.711a", "g.711a"},
    };
    for (const Case& c : cases) {
        Json::Value out = "old";
        const int r = c.toTable ? Fix::ConvertAudioFormatF5ToF6(c.in, out)
                                : Fix::ConvertAudioFormatF6ToF5(c.in, out);
        EXPECT_EQ(r, 1) << c.in;
        EXPECT_EQ(out, c.out) << c.in;
        Json::Value same = c.in;
        c.toTable ? Fix::ConvertAudioFormatF5ToF6(same, same)
                  : Fix::ConvertAudioFormatF6ToF5(same, same);
        EXPECT_EQ(same, c.out) << c.in;
    }
    Json::Value out = "old";
    EXPECT_EQ(Fix::ConvertAudioFormatF5ToF6(Json::Value(), out), 0);
    EXPECT_EQ(Fix::ConvertAudioFormatF6ToF5(Json::Value(), out), 0);
    EXPECT_EQ(out, "old");
}

// Unknown codes give the first word, unknown words the first code; comparisons are exact.
TEST(MediaWords, WhiteBalanceAndSignalFormat) {
    const char* const balance[] = {"Disable",
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
    const char* const signal[] = {"Inside", "BT656", "720p", "1080p", "1080i", "1080sF"};
    for (unsigned char code = 0; code < 12; ++code) {
        EXPECT_EQ(Fix::ConvertWhiteBalanceToString(code), balance[code]);
        EXPECT_EQ(Fix::ConvertWhiteBalanceToByte(balance[code]), code);
    }
    for (unsigned char code = 0; code < 6; ++code) {
        EXPECT_EQ(Fix::ConvertSignalFormatToString(code), signal[code]);
        EXPECT_EQ(Fix::ConvertSignalFormatToByte(signal[code]), code);
    }
    for (int code : {12, 255})
        EXPECT_EQ(Fix::ConvertWhiteBalanceToString(static_cast<unsigned char>(code)), "Disable");
    for (int code : {6, 255})
        EXPECT_EQ(Fix::ConvertSignalFormatToString(static_cast<unsigned char>(code)), "Inside");
    for (const char* word : {"night", "", "Night "})
        EXPECT_EQ(Fix::ConvertWhiteBalanceToByte(word), 0) << word;
    for (const char* word : {"4K", "1080P", "bt656"})
        EXPECT_EQ(Fix::ConvertSignalFormatToByte(word), 0) << word;
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

TEST(MediaWords, ImageSizesUnderBothStandards) {
    for (int code = 0; code <= 32; ++code) {
        const Size& s = kSizes[code];
        for (int standard : {0, 1}) {
            const int height = standard == 0 ? s.palHeight : s.ntscHeight;
            int size = -7;
            Fix::Video_WHTo_ImageSize(size, standard, s.width, height);
            EXPECT_EQ(size, code) << standard;
            int width = -1, h = -1;
            Fix::Video_ImageSize_ToWH(code, standard, width, h);
            EXPECT_EQ(width, s.width) << code;
            // Code 28 always gives its PAL size.
            EXPECT_EQ(h, code == 28 ? 576 : height) << code << " standard " << standard;
        }
    }
}

TEST(MediaWords, ImageSizeEdges) {
    struct Case {
        int standard, width, height, expected;
    };
    const Case toCode[] = {
        {2, 704, 576, -7},  {-1, 352, 480, -7}, {2, 1920, 1080, 18},  // no standard row for 2
        {0, 1280, 721, -7}, {0, 704, 480, -7},  {1, 960, 576, -7},   {1, 960, 480, 28},
    };
    for (const Case& c : toCode) {
        int size = -7;
        Fix::Video_WHTo_ImageSize(size, c.standard, c.width, c.height);
        EXPECT_EQ(size, c.expected) << c.standard << " " << c.width << "x" << c.height;
    }
    // Any standard but 0 reads the NTSC heights; unknown codes write nothing.
    int width = 0, height = 0;
    Fix::Video_ImageSize_ToWH(0, 2, width, height);
    EXPECT_EQ(height, 480);
    Fix::Video_ImageSize_ToWH(3, -1, width, height);
    EXPECT_EQ(height, 240);
    for (int code : {33, -1, 255}) {
        width = height = -3;
        Fix::Video_ImageSize_ToWH(code, 0, width, height);
        EXPECT_EQ(width, -3) << code;
        EXPECT_EQ(height, -3) << code;
    }
}

}  // namespace
