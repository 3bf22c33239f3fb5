// "ChannelTitle", "VideoWidget_OSD" and "VideoWidget_COVER" through the request API, and the
// mode and null-record refusals of every overlay section.
#include "request_support.h"

#include <cstring>
#include <string>
#include <vector>

using support::CopyOf;
using support::Packet;
using support::Parse;
using support::ParseJson;
using support::SameBytes;
using support::SetText;
using support::Zeroed;

namespace {

// ---- refusals -------------------------------------------------------------------------------

// A mode the section does not accept, or no record, refuses with the record untouched.
TEST(OverlayRefusals, WrongModeAndNullRecord) {
    struct Case {
        const char* section;
        int mode;
        bool nullRecord;
    };
    const Case cases[] = {
        {"ChannelTitle", PROTOFIX_MODE_TEXT, false},
        {"ChannelTitle", PROTOFIX_MODE_RECORD, true},
        {"VideoWidget_OSD", PROTOFIX_MODE_TEXT, false},
        {"VideoWidget_OSD", PROTOFIX_MODE_RECORD, true},
        {"VideoWidget_COVER", PROTOFIX_MODE_TEXT, false},
        {"VideoWidget_COVER", PROTOFIX_MODE_RECORD, true},
        {"VideoWidget_CHANNEL", PROTOFIX_MODE_TEXT, false},
        {"VideoWidget_CHANNEL", PROTOFIX_MODE_RECORD, true},
        {"VideoWaterMark", 2, false},
        {"VideoWaterMark", PROTOFIX_MODE_RECORD, true},
        {"VideoWaterMark", PROTOFIX_MODE_TEXT, true},
        {"VideoWidget", PROTOFIX_MODE_RECORD, false},
        {"VideoWidget", PROTOFIX_MODE_TEXT, true},
        {"VideoWidget", -1, false},
    };
    // Big enough for every overlay record; a text that parses in text mode.
    const std::string kText = R"({"WaterMark":{"En":1},"Encode":{}})";
    const std::string kTable = R"({"Name":"x","Covers":null,"Enable":true,"String":"y"})";
    for (const Case& c : cases) {
        std::vector<char> record(2048, 0);
        std::memcpy(record.data(), kText.c_str(), kText.size() + 1);
        const std::vector<char> before = record;
        void* target = c.nullRecord ? nullptr : record.data();
        PROTOCOL_FIX_INFO info = support::Info(c.section, c.mode);
        info.input = target;
        info.inputLength = static_cast<int>(record.size());
        EXPECT_FALSE(support::Serialize(info).result()) << c.section << " mode " << c.mode;
        EXPECT_EQ(Parse(c.section, kTable, target, static_cast<int>(record.size()), c.mode), -1)
            << c.section << " mode " << c.mode;
        EXPECT_EQ(record, before) << c.section << " mode " << c.mode;
    }
}

// ---- ChannelTitle ----------------------------------------------------------------------------

// The buffer's capacity is the request's length: read up to the NUL or the length, written with
// at most length - 1 bytes and a NUL.
TEST(ChannelTitle, PacketReadsAtMostTheInputLength) {
    struct Case {
        const char* bytes;
        int length;
        const char* name;
    };
    const Case cases[] = {
        {"Gate", 4, "Gate"}, {"Gate", 3, "Gat"}, {"Gate", 0, ""}, {"Ga\0te", 4, "Ga"}};
    for (const Case& c : cases) {
        std::vector<char> buffer(c.bytes, c.bytes + 4);  // exactly four bytes, no NUL after them
        PROTOCOL_FIX_INFO info = support::Info("ChannelTitle");
        info.input = buffer.data();
        info.inputLength = c.length;
        const support::Envelope envelope = support::Serialize(info);
        EXPECT_TRUE(envelope.result());
        EXPECT_EQ(envelope.table(), ParseJson(std::string(R"({"Name":")") + c.name + "\"}"))
            << c.length;
    }
}

TEST(ChannelTitle, ParseWritesAtMostTheOutputLength) {
    struct Case {
        const char* table;
        int length;
        std::string bytes;
    };
    const Case cases[] = {
        {R"({"Name":"Lobby"})", 8, std::string("Lobby\0##", 8)},
        {R"({"Name":"Lobby"})", 4, std::string("Lob\0####", 8)},
        {R"({"Name":"Lobby"})", 0, "########"},
        {R"({"Name":7})", 8, "########"},
        {R"({"Title":"Lobby"})", 8, "########"},
    };
    for (const Case& c : cases) {
        std::vector<char> buffer(static_cast<std::size_t>(c.length), '#');
        buffer.resize(8, '#');  // bytes past the length are the caller's: checked unchanged
        EXPECT_EQ(Parse("ChannelTitle", c.table, buffer.data(), c.length), 1) << c.table;
        EXPECT_EQ(std::string(buffer.data(), 8), c.bytes) << c.table << " length " << c.length;
    }
}

// ---- VideoWidget_OSD -------------------------------------------------------------------------

void SetColour(unsigned char (&colour)[4], unsigned char b0, unsigned char b1, unsigned char b2,
               unsigned char b3) {
    colour[0] = b0;
    colour[1] = b1;
    colour[2] = b2;
    colour[3] = b3;
}

// Eight entries always; colour element k is byte k; blends true for any non-zero byte; the
// rectangle's unsigned values as signed integers.
TEST(VideoWidgetOsd, PacketWritesAllEightTitles) {
    auto cfg = Zeroed<KZDEV_VIDEOWIDGET_OSD_CFG>();
    KZ_OSD_TITLE& first = cfg->title[0];
    SetText(first.text, "Entrance");
    first.rect[0] = 1, first.rect[1] = 2, first.rect[2] = 300, first.rect[3] = 0xFFFFFFFFu;
    SetColour(first.frontColor, 10, 20, 30, 40);
    SetColour(first.backColor, 1, 2, 3, 255);
    first.previewBlend = 2;
    first.encodeBlend = 0;
    support::FillText(cfg->title[7].text, 'x');
    cfg->title[7].encodeBlend = 1;

    const Json::Value titles = Packet("VideoWidget_OSD", cfg.get()).table()["CustomTitle"];
    ASSERT_EQ(titles.size(), 8u);
    EXPECT_EQ(titles[0],
              ParseJson(R"({"Text":"Entrance","Rect":[1,2,300,-1],"FrontColor":[10,20,30,40],
        "BackColor":[1,2,3,255],"PreviewBlend":true,"EncodeBlend":false})"));
    const char* const empty =
        R"({"Text":"","Rect":[0,0,0,0],"FrontColor":[0,0,0,0],"BackColor":[0,0,0,0],
        "PreviewBlend":false,"EncodeBlend":false})";
    for (Json::ArrayIndex i = 1; i < 7; ++i) EXPECT_EQ(titles[i], ParseJson(empty)) << i;
    EXPECT_EQ(titles[7]["Text"].asString(), std::string(64, 'x'));
    EXPECT_EQ(titles[7]["EncodeBlend"], true);
}

// Each case parses one "CustomTitle" entry into title 0, which starts as the seed below.
TEST(VideoWidgetOsd, ParseOneTitle) {
    struct Case {
        const char* entry;
        void (*expect)(KZ_OSD_TITLE&);
    };
    const Case cases[] = {
        // Colours OR-ed into the bytes already there: [0x10,0,0,0] | [1,2,3,4].
        {R"({"FrontColor":[1,2,3,4]})",
         [](KZ_OSD_TITLE& t) { SetColour(t.frontColor, 0x11, 2, 3, 4); }},
        // Element 0 whole runs into byte 1; elements 1 and 2 by their low byte; element 3 cut at 32 bits.
        {R"({"BackColor":[511,258,259,260]})",
         [](KZ_OSD_TITLE& t) { SetColour(t.backColor, 0xFF, 0x03, 0x03, 0x04); }},
        {R"({"BackColor":[-1,0,0,0]})",
         [](KZ_OSD_TITLE& t) { SetColour(t.backColor, 0xFF, 0xFF, 0xFF, 0xFF); }},
        {R"({"FrontColor":[1,2,3]})", [](KZ_OSD_TITLE&) {}},
        {R"({"Rect":[5,6,7,8]})",
         [](KZ_OSD_TITLE& t) { t.rect[0] = 5, t.rect[1] = 6, t.rect[2] = 7, t.rect[3] = 8; }},
        {R"({"Rect":[-2,6,7,8,9]})",
         [](KZ_OSD_TITLE& t) {
             t.rect[0] = 0xFFFFFFFEu, t.rect[1] = 6, t.rect[2] = 7, t.rect[3] = 8;
         }},
        {R"({"Rect":[5,6,7]})", [](KZ_OSD_TITLE&) {}},
        {R"({"Rect":{"0":5,"1":6,"2":7,"3":8}})", [](KZ_OSD_TITLE&) {}},
        {R"({"Text":"Hall"})", [](KZ_OSD_TITLE& t) { SetText(t.text, "Hall"); }},
        {R"({"Text":null,"PreviewBlend":null})", [](KZ_OSD_TITLE&) {}},
        {R"({"PreviewBlend":7,"EncodeBlend":false})",
         [](KZ_OSD_TITLE& t) { t.previewBlend = 1, t.encodeBlend = 0; }},
    };
    for (const Case& c : cases) {
        auto cfg = Zeroed<KZDEV_VIDEOWIDGET_OSD_CFG>();
        KZ_OSD_TITLE& title = cfg->title[0];
        SetColour(title.frontColor, 0x10, 0, 0, 0);
        title.rect[0] = 1, title.rect[1] = 2, title.rect[2] = 3, title.rect[3] = 4;
        support::FillText(title.text, 'o');
        title.previewBlend = title.encodeBlend = 9;
        title.reserved[5] = 0xAB;
        auto expected = CopyOf(*cfg);
        c.expect(expected->title[0]);
        ASSERT_EQ(Parse("VideoWidget_OSD", std::string(R"({"CustomTitle":[)") + c.entry + "]}",
                        cfg.get()),
                  1);
        EXPECT_TRUE(SameBytes(*cfg, *expected)) << c.entry;
    }
}

TEST(VideoWidgetOsd, ParseTakesAtMostEightEntries) {
    struct Case {
        const char* titles;
        int filled;
    };
    const Case cases[] = {
        {R"([{"Text":"t0"},{"Text":"t1"},{"Text":"t2"},{"Text":"t3"},{"Text":"t4"},
             {"Text":"t5"},{"Text":"t6"},{"Text":"t7"},{"Text":"t8"},{"Text":"t9"}])",
         8},
        {R"([{"Text":"t0"},{"Text":"t1"}])", 2},
        {"[]", 0},
        {"null", 0},
        {R"({"Text":"t0"})", 0},
    };
    for (const Case& c : cases) {
        auto cfg = Zeroed<KZDEV_VIDEOWIDGET_OSD_CFG>();
        ASSERT_EQ(
            Parse("VideoWidget_OSD", std::string(R"({"CustomTitle":)") + c.titles + "}", cfg.get()),
            1);
        for (int i = 0; i < KZ_MAX_OSD_TITLES; ++i) {
            EXPECT_EQ(support::TextOf(cfg->title[i].text),
                      i < c.filled ? "t" + std::to_string(i) : "")
                << c.titles << " title " << i;
        }
    }
}

// ---- VideoWidget_COVER -----------------------------------------------------------------------

TEST(VideoWidgetCover, PacketWritesCoverCountEntries) {
    auto cfg = Zeroed<KZDEV_VIDEOWIDGET_COVER_CFG>();
    cfg->maxCoverCount = 1;  // not read on this side
    cfg->coverCount = 2;
    KZ_COVER& cover = cfg->cover[0];
    cover.rect[0] = -5, cover.rect[1] = 2, cover.rect[2] = 0x100000003LL, cover.rect[3] = 4;
    cover.frontColor = 0x281E140Au;  // bytes 10, 20, 30, 40
    cover.encodeBlend = 1;
    cover.previewBlend = 2;
    const Json::Value table = Packet("VideoWidget_COVER", cfg.get()).table();
    EXPECT_EQ(table, ParseJson(R"({"Covers":[
        {"Rect":[-5,2,3,4],"FrontColor":[30,20,10,40],"EncodeBlend":true,"PreviewBlend":false},
        {"Rect":[0,0,0,0],"FrontColor":[0,0,0,0],"EncodeBlend":false,"PreviewBlend":false}]})"));

    // No count: no "Covers" at all. A count above sixteen: the sixteen covers the record holds.
    cfg->coverCount = 0;
    EXPECT_EQ(Packet("VideoWidget_COVER", cfg.get()).table(), Json::Value());
    cfg->coverCount = 200;
    cfg->cover[15].encodeBlend = 1;
    const Json::Value all = Packet("VideoWidget_COVER", cfg.get()).table()["Covers"];
    ASSERT_EQ(all.size(), 16u);
    EXPECT_EQ(all[15]["EncodeBlend"], true);
}

// Each case parses a "Covers" list into a record whose covers all start as the seed below.
TEST(VideoWidgetCover, ParseCovers) {
    struct Case {
        unsigned char maxCount;
        const char* covers;
        unsigned char count;
        void (*expect)(KZDEV_VIDEOWIDGET_COVER_CFG&);
    };
    const Case cases[] = {
        // The count is the smaller of maxCoverCount and the list; covers past it are kept.
        {4, R"([{"EncodeBlend":false},{},{},{},{"EncodeBlend":false},{"EncodeBlend":false}])", 4,
         [](KZDEV_VIDEOWIDGET_COVER_CFG& c) { c.cover[0].encodeBlend = 0; }},
        {16, R"([{"Rect":[-1,2,3,4],"PreviewBlend":1}])", 1,
         [](KZDEV_VIDEOWIDGET_COVER_CFG& c) {
             c.cover[0].rect[0] = -1, c.cover[0].rect[1] = 2, c.cover[0].rect[2] = 3,
             c.cover[0].rect[3] = 4;
             c.cover[0].previewBlend = 1;
         }},
        {16, R"([{"Rect":[1,2,3]},null,{"EncodeBlend":null}])", 3,
         [](KZDEV_VIDEOWIDGET_COVER_CFG&) {}},
        // Colours: element 0 into byte 2, 2 into byte 0; OR-ed into the seed's 0x80 with no masking.
        {16, R"([{"FrontColor":[30,20,10,40]},{"FrontColor":[256,0,0,0]}])", 2,
         [](KZDEV_VIDEOWIDGET_COVER_CFG& c) {
             c.cover[0].frontColor = 0x281E148Au;
             c.cover[1].frontColor = 0x01000080u;
         }},
        {16, R"([{"FrontColor":[1,2,3]}])", 1, [](KZDEV_VIDEOWIDGET_COVER_CFG&) {}},
        // A list longer than the record: the count says so, the record takes sixteen.
        {40,
         R"([{},{},{},{},{},{},{},{},{},{},{},{},{},{},{},{"EncodeBlend":false},{"EncodeBlend":false},
                 {"EncodeBlend":false},{"EncodeBlend":false},{"EncodeBlend":false}])",
         20, [](KZDEV_VIDEOWIDGET_COVER_CFG& c) { c.cover[15].encodeBlend = 0; }},
        {16, "[]", 0, [](KZDEV_VIDEOWIDGET_COVER_CFG&) {}},
        {16, R"({"Rect":[1,2,3,4]})", 0, [](KZDEV_VIDEOWIDGET_COVER_CFG&) {}},
    };
    for (const Case& c : cases) {
        auto cfg = Zeroed<KZDEV_VIDEOWIDGET_COVER_CFG>();
        cfg->maxCoverCount = c.maxCount;
        cfg->coverCount = 9;
        cfg->reserved1[0] = 0x5A;
        for (KZ_COVER& cover : cfg->cover) {
            cover.rect[0] = 7, cover.rect[3] = 70;
            cover.frontColor = 0x80;
            cover.encodeBlend = 1;
            cover.reserved2[32] = 0xCD;
        }
        auto expected = CopyOf(*cfg);
        expected->coverCount = c.count;
        c.expect(*expected);
        ASSERT_EQ(
            Parse("VideoWidget_COVER", std::string(R"({"Covers":)") + c.covers + "}", cfg.get()),
            1);
        EXPECT_TRUE(SameBytes(*cfg, *expected)) << c.covers;
    }
}

// A missing or null "Covers" clears all sixteen covers and the count; the rest is kept.
TEST(VideoWidgetCover, NoCoversClearsThemAll) {
    for (const char* table : {"{}", R"({"Covers":null})", "[]"}) {
        auto cfg = Zeroed<KZDEV_VIDEOWIDGET_COVER_CFG>();
        std::memset(cfg.get(), 0x77, sizeof *cfg);
        auto expected = CopyOf(*cfg);
        expected->coverCount = 0;
        std::memset(expected->cover, 0, sizeof expected->cover);
        ASSERT_EQ(Parse("VideoWidget_COVER", table, cfg.get()), 1);
        EXPECT_TRUE(SameBytes(*cfg, *expected)) << table;
    }
}

}  // namespace
