// "ChannelTitle", "VideoWidget_OSD" and "VideoWidget_COVER" through the request API, and the
// sub-mode and null-record refusals of every overlay section.
#include "record_view.h"
#include "request_support.h"

#include <cstring>
#include <string>
#include <tuple>
#include <vector>

using support::Packet;
using support::Parse;
using support::ParseJson;

namespace {

// A mode the section does not take, or no record in a mode it takes, refuses with the record
// untouched.
TEST(MediaRefusals, WrongModeAndNullRecord) {
    constexpr unsigned kRecord = 1u << PROTOFIX_MODE_RECORD, kText = 1u << PROTOFIX_MODE_TEXT;
    const std::pair<const char*, unsigned> sections[] = {{"Encode", kRecord | kText},
                                                         {"VideoColor", kRecord | kText},
                                                         {"VideoInOptions", kRecord},
                                                         {"VideoStandard", kRecord},
                                                         {"MediaGlobal", kRecord},
                                                         {"ChannelTitle", kRecord},
                                                         {"VideoWidget_OSD", kRecord},
                                                         {"VideoWidget_COVER", kRecord},
                                                         {"VideoWidget_CHANNEL", kRecord},
                                                         {"VideoWaterMark", kRecord | kText},
                                                         {"VideoWidget", kText}};
    const std::string text = R"({"WaterMark":{"En":1},"Encode":{}})";  // parses in text mode
    for (const auto& [section, modes] : sections) {
        for (int mode : {PROTOFIX_MODE_RECORD, PROTOFIX_MODE_TEXT, 2}) {
            SCOPED_TRACE(std::string(section) + " mode " + std::to_string(mode));
            std::vector<char> record(2048, 0);  // big enough for every record of these sections
            std::memcpy(record.data(), text.c_str(), text.size() + 1);
            const std::vector<char> before = record;
            PROTOCOL_FIX_INFO info = support::Info(section, mode);
            info.input = (modes >> mode & 1u) != 0 ? nullptr : record.data();
            info.inputLength = static_cast<int>(record.size());
            EXPECT_FALSE(support::Serialize(info).result());
            EXPECT_EQ(Parse(section, R"({"Name":"x","Covers":null,"Enable":true,"String":"y"})",
                            info.input, 2048, mode),
                      -1);
            EXPECT_EQ(record, before);
        }
    }
}

// The buffer's capacity is the request's length: read up to the NUL or the length; written with
// at most length - 1 bytes and a NUL, the bytes past the length the caller's.
TEST(ChannelTitle, TheRequestLengthIsTheCapacity) {
    const std::tuple<std::string, int, const char*> packets[] = {
        {"Gate", 4, "Gate"},
        {"Gate", 3, "Gat"},
        {"Gate", 0, ""},
        {std::string("Ga\0t", 4), 4, "Ga"}};
    for (const auto& [bytes, length, name] : packets) {
        std::vector<char> buffer(bytes.begin(), bytes.end());  // four bytes, no NUL after them
        PROTOCOL_FIX_INFO info = support::Info("ChannelTitle");
        info.input = buffer.data();
        info.inputLength = length;
        EXPECT_EQ(support::Serialize(info).table(),
                  ParseJson(std::string(R"({"Name":")") + name + "\"}"))
            << length;
    }
    struct Case {
        const char* table;
        int length;
        std::string bytes;
    };
    const Case cases[] = {{R"({"Name":"Lobby"})", 8, std::string("Lobby\0##", 8)},
                          {R"({"Name":"Lobby"})", 4, std::string("Lob\0####", 8)},
                          {R"({"Name":"Lobby"})", 0, "########"},
                          {R"({"Name":7})", 8, "########"}};
    for (const Case& c : cases) {
        std::vector<char> buffer(static_cast<std::size_t>(c.length), '#');
        buffer.resize(8, '#');
        EXPECT_EQ(Parse("ChannelTitle", c.table, buffer.data(), c.length), 1) << c.table;
        EXPECT_EQ(std::string(buffer.data(), 8), c.bytes) << c.table << " length " << c.length;
    }
}

// Eight entries always; colour element k is byte k; blends true for any non-zero byte; the
// rectangle's unsigned values as signed integers.
TEST(VideoWidgetOsd, PacketWritesAllEightTitles) {
    auto cfg = view::Build(VIEW_OF(KZDEV_VIDEOWIDGET_OSD_CFG), R"({"title":[
        {"text":"Entrance","rect":[1,2,300,4294967295],"frontColor":[10,20,30,40],
         "backColor":[1,2,3,255],"previewBlend":2,"encodeBlend":0},{},{},{},{},{},{},
        {"encodeBlend":1}]})");
    support::FillText(cfg->title[7].text, 'x');
    const Json::Value titles = Packet("VideoWidget_OSD", cfg.get()).table()["CustomTitle"];
    ASSERT_EQ(titles.size(), 8u);
    EXPECT_EQ(titles[0],
              ParseJson(R"({"Text":"Entrance","Rect":[1,2,300,-1],"FrontColor":[10,20,30,40],
        "BackColor":[1,2,3,255],"PreviewBlend":true,"EncodeBlend":false})"));
    EXPECT_EQ(titles[6], ParseJson(R"({"Text":"","Rect":[0,0,0,0],"FrontColor":[0,0,0,0],
        "BackColor":[0,0,0,0],"PreviewBlend":false,"EncodeBlend":false})"));
    EXPECT_EQ(titles[7]["Text"].asString(), std::string(64, 'x'));
    EXPECT_EQ(titles[7]["EncodeBlend"], true);
}

// One "CustomTitle" entry parsed into title 0 of the seed: colours OR-ed into the bytes there
// (element 0 whole, 1 and 2 by their low byte, 3 cut at 32 bits); short arrays skipped.
TEST(VideoWidgetOsd, ParseOneTitle) {
    const std::pair<const char*, const char*> cases[] = {
        {R"({"FrontColor":[1,2,3,4]})", R"({"frontColor":[17,2,3,4]})"},
        {R"({"BackColor":[511,258,259,260]})", R"({"backColor":[255,3,3,4]})"},
        {R"({"BackColor":[-1,0,0,0]})", R"({"backColor":[255,255,255,255]})"},
        {R"({"Rect":[-2,6,7,8,9]})", R"({"rect":[4294967294,6,7,8]})"},
        {R"({"Text":"Hall","PreviewBlend":7,"EncodeBlend":false})",
         R"({"text":"Hall","previewBlend":1,"encodeBlend":0})"},
        {R"({"FrontColor":[1,2,3],"Rect":[5,6,7],"Text":null,"PreviewBlend":null})", "{}"},
        {R"({"Rect":{"0":5,"1":6,"2":7,"3":8}})", "{}"},
    };
    for (const auto& [entry, changes] : cases) {
        view::ExpectParse(VIEW_OF(KZDEV_VIDEOWIDGET_OSD_CFG),
                          R"({"title":[{"frontColor":[16,0,0,0],"rect":[1,2,3,4],"text":"old",
                              "previewBlend":9,"encodeBlend":9}]})",
                          "VideoWidget_OSD", std::string(R"({"CustomTitle":[)") + entry + "]}", 1,
                          std::string(R"({"title":[)") + changes + "]}");
    }
}

TEST(VideoWidgetOsd, ParseTakesAtMostEightEntries) {
    std::string ten;
    for (int i = 0; i < 10; ++i)
        ten += (i ? ",{\"Text\":\"t" : "[{\"Text\":\"t") + std::to_string(i) + "\"}";
    const std::pair<std::string, int> cases[] = {{ten + "]", 8},
                                                 {R"([{"Text":"t0"},{"Text":"t1"}])", 2},
                                                 {"null", 0},
                                                 {R"({"Text":"t0"})", 0}};
    for (const auto& [titles, filled] : cases) {
        auto cfg = support::Zeroed<KZDEV_VIDEOWIDGET_OSD_CFG>();
        ASSERT_EQ(Parse("VideoWidget_OSD", R"({"CustomTitle":)" + titles + "}", cfg.get()), 1);
        for (int i = 0; i < KZ_MAX_OSD_TITLES; ++i) {
            EXPECT_EQ(support::TextOf(cfg->title[i].text),
                      i < filled ? "t" + std::to_string(i) : "")
                << titles << " title " << i;
        }
    }
}

// "coverCount" entries (none and no key for 0, the sixteen the record holds above 16); colour
// element 0 from byte 2, 2 from byte 0; flags true for 1 only; the rectangle's low 32 bits.
TEST(VideoWidgetCover, PacketWritesCoverCountEntries) {
    auto cfg = view::Build(VIEW_OF(KZDEV_VIDEOWIDGET_COVER_CFG), R"({"maxCoverCount":1,
        "coverCount":2,"cover":[{"rect":[-5,2,4294967299,4],"frontColor":673059850,
        "encodeBlend":1,"previewBlend":2}]})");
    EXPECT_EQ(Packet("VideoWidget_COVER", cfg.get()).table(), ParseJson(R"({"Covers":[
        {"Rect":[-5,2,3,4],"FrontColor":[30,20,10,40],"EncodeBlend":true,"PreviewBlend":false},
        {"Rect":[0,0,0,0],"FrontColor":[0,0,0,0],"EncodeBlend":false,"PreviewBlend":false}]})"));
    cfg->coverCount = 0;
    EXPECT_EQ(Packet("VideoWidget_COVER", cfg.get()).table(), Json::Value());
    cfg->coverCount = 200;
    cfg->cover[15].encodeBlend = 1;
    const Json::Value all = Packet("VideoWidget_COVER", cfg.get()).table()["Covers"];
    ASSERT_EQ(all.size(), 16u);
    EXPECT_EQ(all[15]["EncodeBlend"], true);
}

// A "Covers" list parsed into covers that all start alike: the count is the smaller of
// maxCoverCount and the list, the record takes at most sixteen; colours OR-ed in, unmasked.
TEST(VideoWidgetCover, ParseCovers) {
    struct Case {
        int maxCount;
        const char* covers;
        const char* changes;
    };
    const Case cases[] = {
        {4, R"([{"EncodeBlend":false},{},{},{},{"EncodeBlend":false},{"EncodeBlend":false}])",
         R"({"coverCount":4,"cover":[{"encodeBlend":0}]})"},
        {16, R"([{"Rect":[-1,2,3,4],"PreviewBlend":1}])",
         R"({"coverCount":1,"cover":[{"rect":[-1,2,3,4],"previewBlend":1}]})"},
        {16, R"([{"Rect":[1,2,3],"FrontColor":[1,2,3]},null,{"EncodeBlend":null}])",
         R"({"coverCount":3})"},
        {16, R"([{"FrontColor":[30,20,10,40]},{"FrontColor":[256,0,0,0]}])",
         R"({"coverCount":2,"cover":[{"frontColor":673059978},{"frontColor":16777344}]})"},
        {40,
         R"([{},{},{},{},{},{},{},{},{},{},{},{},{},{},{},{"EncodeBlend":false},{"EncodeBlend":false},
             {"EncodeBlend":false},{"EncodeBlend":false},{"EncodeBlend":false}])",
         R"({"coverCount":20,"cover":[{},{},{},{},{},{},{},{},{},{},{},{},{},{},{},{"encodeBlend":0}]})"},
        {16, "[]", R"({"coverCount":0})"},
        {16, R"({"Rect":[1,2,3,4]})", R"({"coverCount":0})"},
    };
    std::string covers;
    for (int i = 0; i < 16; ++i)
        covers += R"(,{"rect":[7,0,0,70],"frontColor":128,"encodeBlend":1})";
    for (const Case& c : cases) {
        view::ExpectParse(VIEW_OF(KZDEV_VIDEOWIDGET_COVER_CFG),
                          R"({"coverCount":9,"maxCoverCount":)" + std::to_string(c.maxCount) +
                              R"(,"cover":[)" + covers.substr(1) + "]}",
                          "VideoWidget_COVER", std::string(R"({"Covers":)") + c.covers + "}", 1,
                          c.changes);
    }
}

// A missing or null "Covers" clears all sixteen covers and the count; the rest is kept.
TEST(VideoWidgetCover, NoCoversClearsThemAll) {
    for (const char* table : {"{}", R"({"Covers":null})", "[]"}) {
        auto cfg = support::Zeroed<KZDEV_VIDEOWIDGET_COVER_CFG>();
        std::memset(cfg.get(), 0x77, sizeof *cfg);
        auto expected = support::CopyOf(*cfg);
        expected->coverCount = 0;
        std::memset(expected->cover, 0, sizeof expected->cover);
        ASSERT_EQ(Parse("VideoWidget_COVER", table, cfg.get()), 1);
        EXPECT_TRUE(support::SameBytes(*cfg, *expected)) << table;
    }
}

}  // namespace
