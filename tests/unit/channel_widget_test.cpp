// "VideoWidget_CHANNEL" and "VideoWaterMark" (record mode and F5 text mode) through the request API.
#include "overlay_support.h"
#include "request_support.h"

#include <string>

using overlay_support::MergeF5;
using overlay_support::Written;
using support::CopyOf;
using support::Packet;
using support::Parse;
using support::ParseJson;
using support::SameBytes;
using support::SetText;
using support::Zeroed;

namespace {

// ---- VideoWidget_CHANNEL ---------------------------------------------------------------------

// Colour element k is byte k of the word; the rectangle's low 32 bits as unsigned integers; the
// flags true for 1 only; the week day on the time title only.
TEST(ChannelWidget, PacketWritesBothTitles) {
    auto cfg = Zeroed<KZDEV_VIDEOWIDGET_CHANNEL_CFG>();
    cfg->titleFrontColor = 0x04030201u;
    cfg->titleBackColor = 0xFF000080u;
    cfg->titleRect[0] = 1, cfg->titleRect[1] = 2, cfg->titleRect[2] = -1,
    cfg->titleRect[3] = 0x100000005LL;
    cfg->titleEncodeBlend = 2;
    cfg->timeFrontColor = 0x000000FFu;
    cfg->timeRect[0] = 10, cfg->timeRect[1] = 20, cfg->timeRect[2] = 30, cfg->timeRect[3] = 40;
    cfg->timeEncodeBlend = 1;
    cfg->timeShowWeek = 1;
    EXPECT_EQ(Packet("VideoWidget_CHANNEL", cfg.get()).table(), ParseJson(R"({
        "ChannelTitle":{"BackColor":[128,0,0,255],"FrontColor":[1,2,3,4],"Rect":[1,2,4294967295,5],
                        "EncodeBlend":false},
        "TimeTitle":{"BackColor":[0,0,0,0],"FrontColor":[255,0,0,0],"Rect":[10,20,30,40],
                     "ShowWeek":true,"EncodeBlend":true}})"));
}

// Each case parses a table into a record that starts as the seed below.
TEST(ChannelWidget, Parse) {
    struct Case {
        const char* table;
        void (*expect)(KZDEV_VIDEOWIDGET_CHANNEL_CFG&);
    };
    const Case cases[] = {
        // OR-ed into the seed's 0x10, not cleared; element 0 whole, 1 and 2 by their low byte.
        {R"({"ChannelTitle":{"FrontColor":[1,2,3,4],"BackColor":[256,257,2,1]}})",
         [](KZDEV_VIDEOWIDGET_CHANNEL_CFG& c) {
             c.titleFrontColor = 0x04030211u;
             c.titleBackColor = 0x01020110u;
         }},
        {R"({"ChannelTitle":{"FrontColor":[1,2,3]},"TimeTitle":{"BackColor":[1,2,3]}})",
         [](KZDEV_VIDEOWIDGET_CHANNEL_CFG&) {}},
        // Without "TimeTitle", the channel title alone; its week day is not read.
        {R"({"ChannelTitle":{"Rect":[1,2,3,4294967295],"EncodeBlend":false,"ShowWeek":false}})",
         [](KZDEV_VIDEOWIDGET_CHANNEL_CFG& c) {
             c.titleRect[0] = 1, c.titleRect[1] = 2, c.titleRect[2] = 3,
             c.titleRect[3] = 4294967295LL;
             c.titleEncodeBlend = 0;
         }},
        {R"({"TimeTitle":{"Rect":[5,6,7,8],"ShowWeek":false,"EncodeBlend":0,"FrontColor":[0,0,0,1]}})",
         [](KZDEV_VIDEOWIDGET_CHANNEL_CFG& c) {
             c.timeRect[0] = 5, c.timeRect[1] = 6, c.timeRect[2] = 7, c.timeRect[3] = 8;
             c.timeShowWeek = 0, c.timeEncodeBlend = 0, c.timeFrontColor = 0x01000010u;
         }},
        {R"({"ChannelTitle":null,"TimeTitle":{"Rect":[5,6,7],"ShowWeek":null,"EncodeBlend":null}})",
         [](KZDEV_VIDEOWIDGET_CHANNEL_CFG&) {}},
        {R"({"ChannelTitle":[1,2],"TimeTitle":7})", [](KZDEV_VIDEOWIDGET_CHANNEL_CFG&) {}},
    };
    for (const Case& c : cases) {
        auto cfg = Zeroed<KZDEV_VIDEOWIDGET_CHANNEL_CFG>();
        std::memset(cfg->reserved1, 0x3C, sizeof cfg->reserved1);
        cfg->titleFrontColor = cfg->titleBackColor = cfg->timeFrontColor = cfg->timeBackColor =
            0x10;
        cfg->titleRect[3] = cfg->timeRect[3] = -9;
        cfg->titleEncodeBlend = cfg->timeEncodeBlend = cfg->timeShowWeek = 1;
        auto expected = CopyOf(*cfg);
        c.expect(*expected);
        ASSERT_EQ(Parse("VideoWidget_CHANNEL", c.table, cfg.get()), 1) << c.table;
        EXPECT_TRUE(SameBytes(*cfg, *expected)) << c.table;
    }
}

// The rectangle is read as unsigned: a negative value is a value of the wrong kind.
TEST(ChannelWidget, NegativeRectangleThrows) {
    auto cfg = Zeroed<KZDEV_VIDEOWIDGET_CHANNEL_CFG>();
    EXPECT_THROW(Parse("VideoWidget_CHANNEL", R"({"ChannelTitle":{"Rect":[-1,0,0,0]}})", cfg.get()),
                 Json::LogicError);
}

// ---- VideoWaterMark, record mode -------------------------------------------------------------

TEST(WatermarkRecord, Packet) {
    auto cfg = Zeroed<KZDEV_WATERMARK_CFG>();
    cfg->enable = 1;
    SetText(cfg->string, "cam 3");
    EXPECT_EQ(Packet("VideoWaterMark", cfg.get()).table(),
              ParseJson(R"({"Enable":true,"String":"cam 3"})"));
    cfg->enable = 2;  // true for 1 only
    support::FillText(cfg->string, 'w');
    EXPECT_EQ(Packet("VideoWaterMark", cfg.get()).table(),
              ParseJson(R"({"Enable":false,"String":")" + std::string(128, 'w') + "\"}"));
}

// The table is an object, or an array whose element 0 is used; "String" sets the data type.
TEST(WatermarkRecord, Parse) {
    struct Case {
        const char* table;
        unsigned int enable, dataType;
        const char* string;
    };
    const Case cases[] = {
        {R"([{"Enable":true,"String":"abc"}])", 1, 1, "abc"},
        {R"({"Enable":false})", 0, 7, "old"},
        {R"({"Enable":2,"String":null})", 1, 7, "old"},
        {R"({"String":5})", 9, 1, ""},
        {R"([{"String":"first"},{"String":"second"}])", 9, 1, "first"},
        {"[]", 9, 7, "old"},
        {"[5]", 9, 7, "old"},
        {R"("abc")", 9, 7, "old"},
    };
    for (const Case& c : cases) {
        auto cfg = Zeroed<KZDEV_WATERMARK_CFG>();
        cfg->enable = 9;
        cfg->dataType = 7;
        SetText(cfg->string, "old");
        ASSERT_EQ(Parse("VideoWaterMark", c.table, cfg.get()), 1) << c.table;
        EXPECT_EQ(cfg->enable, c.enable) << c.table;
        EXPECT_EQ(cfg->dataType, c.dataType) << c.table;
        EXPECT_EQ(support::TextOf(cfg->string), c.string) << c.table;
    }
    auto cfg = Zeroed<KZDEV_WATERMARK_CFG>();
    ASSERT_EQ(Parse("VideoWaterMark", R"({"String":")" + std::string(130, 's') + "\"}", cfg.get()),
              1);
    EXPECT_EQ(support::TextOf(cfg->string), std::string(127, 's'));
}

// ---- VideoWaterMark, F5 text mode ------------------------------------------------------------

TEST(WatermarkText, Packet) {
    struct Case {
        const char* f5;
        bool result;
        const char* table;
    };
    const Case cases[] = {
        {R"({"WaterMark":{"En":1,"String":"cam"}})", true, R"({"Enable":true,"String":"cam"})"},
        {R"({"WaterMark":[{"En":2,"String":7},{"En":1}]})", true, R"({"Enable":false,"String":7})"},
        {R"({"WaterMark":{"String":null}})", true, "null"},
        {R"({"WaterMark":[]})", true, "null"},
        {R"({"WaterMark":5,"En":1})", true, "null"},
        {"{", false, "null"},
    };
    for (const Case& c : cases) {
        const support::Envelope envelope = Packet("VideoWaterMark", c.f5, PROTOFIX_MODE_TEXT);
        EXPECT_EQ(envelope.result(), c.result) << c.f5;
        EXPECT_EQ(envelope.table(), ParseJson(c.table)) << c.f5;
    }
}

// The values go into the "WaterMark" object, or into every element of it; the rest of the text
// is kept.
TEST(WatermarkText, Merge) {
    struct Case {
        const char* f5;
        const char* table;
        const char* merged;
    };
    const Case cases[] = {
        {R"({"WaterMark":{"En":0,"String":"a","Keep":1}})", R"({"Enable":true,"String":"b"})",
         R"({"WaterMark":{"En":1,"String":"b","Keep":1}})"},
        {R"({"WaterMark":[{"En":1},{"En":1,"String":"x"},3]})", R"([{"Enable":false}])",
         R"({"WaterMark":[{"En":0},{"En":0,"String":"x"},3]})"},
        {R"({"Other":1})", R"({"String":"s"})", R"({"Other":1,"WaterMark":{"String":"s"}})"},
        {R"({"Other":1})", R"({"Keep":true})", R"({"Other":1})"},
        {R"({"WaterMark":5})", R"({"Enable":true})", R"({"WaterMark":5})"},
        {R"({"WaterMark":{"En":1}})", R"("text")", R"({"WaterMark":{"En":1}})"},
        {R"([1])", R"({"Enable":true})", R"([1])"},
    };
    for (const Case& c : cases) {
        const overlay_support::Merged merged = MergeF5("VideoWaterMark", c.f5, c.table);
        EXPECT_EQ(merged.result, 1) << c.f5 << c.table;
        EXPECT_EQ(merged.text, Written(c.merged)) << c.f5 << c.table;
    }
}

TEST(WatermarkText, MergeRefusals) {
    overlay_support::ExpectCapacityRule("VideoWaterMark", R"({"WaterMark":{"En":0}})",
                                        R"({"Enable":true})", Written(R"({"WaterMark":{"En":1}})"));
}

}  // namespace
