// "VideoWidget_CHANNEL" and "VideoWaterMark" (record mode and F5 text mode) through the request API.
#include "overlay_support.h"
#include "record_view.h"
#include "request_support.h"

#include <string>

using overlay_support::MergeF5;
using overlay_support::Written;
using support::Packet;
using support::Parse;
using support::ParseJson;

namespace {

// Colour element k is byte k of the word; the rectangle's low 32 bits as unsigned integers; the
// flags true for 1 only; the week day on the time title only.
TEST(ChannelWidget, PacketWritesBothTitles) {
    auto cfg = view::Build(VIEW_OF(KZDEV_VIDEOWIDGET_CHANNEL_CFG), R"({
        "titleFrontColor":67305985,"titleBackColor":4278190208,"titleRect":[1,2,-1,4294967301],
        "titleEncodeBlend":2,"timeFrontColor":255,"timeRect":[10,20,30,40],"timeEncodeBlend":1,
        "timeShowWeek":1})");
    EXPECT_EQ(Packet("VideoWidget_CHANNEL", cfg.get()).table(), ParseJson(R"({
        "ChannelTitle":{"BackColor":[128,0,0,255],"FrontColor":[1,2,3,4],"Rect":[1,2,4294967295,5],
                        "EncodeBlend":false},
        "TimeTitle":{"BackColor":[0,0,0,0],"FrontColor":[255,0,0,0],"Rect":[10,20,30,40],
                     "ShowWeek":true,"EncodeBlend":true}})"));
}

// A table parsed into the seed: colours OR-ed into the seed's 0x10, element 0 whole, 1 and 2 by
// their low byte; short arrays, nulls and values of another kind skipped; without "TimeTitle" the
// channel title alone, whose week day is not read.
TEST(ChannelWidget, Parse) {
    const std::pair<const char*, const char*> cases[] = {
        {R"({"ChannelTitle":{"FrontColor":[1,2,3,4],"BackColor":[256,257,2,1]}})",
         R"({"titleFrontColor":67306001,"titleBackColor":16908560})"},
        {R"({"ChannelTitle":{"Rect":[1,2,3,4],"EncodeBlend":false,"ShowWeek":false}})",
         R"({"titleRect":[1,2,3,4],"titleEncodeBlend":0})"},
        {R"({"TimeTitle":{"Rect":[5,6,7,8],"ShowWeek":false,"EncodeBlend":0,"FrontColor":[0,0,0,1]}})",
         R"({"timeRect":[5,6,7,8],"timeShowWeek":0,"timeEncodeBlend":0,"timeFrontColor":16777232})"},
        {R"({"ChannelTitle":{"FrontColor":[1,2,3]},"TimeTitle":{"BackColor":[1,2,3],"Rect":[5,6,7],
            "ShowWeek":null,"EncodeBlend":null}})",
         "{}"},
        {R"({"ChannelTitle":[1,2],"TimeTitle":7})", "{}"},
    };
    for (const auto& [table, changes] : cases) {
        view::ExpectParse(VIEW_OF(KZDEV_VIDEOWIDGET_CHANNEL_CFG), R"({"titleFrontColor":16,
            "titleBackColor":16,"timeFrontColor":16,"timeBackColor":16,"titleRect":[0,0,0,-9],
            "timeRect":[0,0,0,-9],"titleEncodeBlend":1,"timeEncodeBlend":1,"timeShowWeek":1})",
                          "VideoWidget_CHANNEL", table, 1, changes);
    }
    // The rectangle is read as unsigned: not sign-extended, and a negative value is of the wrong kind.
    auto cfg = support::Zeroed<KZDEV_VIDEOWIDGET_CHANNEL_CFG>();
    ASSERT_EQ(
        Parse("VideoWidget_CHANNEL", R"({"ChannelTitle":{"Rect":[0,0,0,4294967295]}})", cfg.get()),
        1);
    EXPECT_EQ(cfg->titleRect[3], 4294967295LL);
    EXPECT_THROW(Parse("VideoWidget_CHANNEL", R"({"ChannelTitle":{"Rect":[-1,0,0,0]}})", cfg.get()),
                 Json::LogicError);
}

// "Enable" true for 1 only; the string to its last byte.
TEST(WatermarkRecord, Packet) {
    auto cfg = support::Zeroed<KZDEV_WATERMARK_CFG>();
    cfg->enable = 1;
    support::SetText(cfg->string, "cam 3");
    EXPECT_EQ(Packet("VideoWaterMark", cfg.get()).table(),
              ParseJson(R"({"Enable":true,"String":"cam 3"})"));
    cfg->enable = 2;
    support::FillText(cfg->string, 'w');
    EXPECT_EQ(Packet("VideoWaterMark", cfg.get()).table(),
              ParseJson(R"({"Enable":false,"String":")" + std::string(128, 'w') + "\"}"));
}

// The table is an object, or an array whose element 0 is used; "String" sets the data type and
// is cut to 127 bytes.
TEST(WatermarkRecord, Parse) {
    const std::string cut = R"({"String":")" + std::string(130, 's') + "\"}";
    const std::pair<std::string, std::string> cases[] = {
        {R"([{"Enable":true,"String":"abc"}])", R"({"enable":1,"dataType":1,"string":"abc"})"},
        {R"({"Enable":false})", R"({"enable":0})"},
        {R"({"Enable":2,"String":null})", R"({"enable":1})"},
        {R"({"String":5})", R"({"dataType":1,"string":""})"},
        {R"([{"String":"first"},{"String":"second"}])", R"({"dataType":1,"string":"first"})"},
        {cut, R"({"dataType":1,"string":")" + std::string(127, 's') + "\"}"},
        {"[]", "{}"},
        {"[5]", "{}"},
        {R"("abc")", "{}"},
    };
    for (const auto& [table, changes] : cases) {
        view::ExpectParse(VIEW_OF(KZDEV_WATERMARK_CFG),
                          R"({"enable":9,"dataType":7,"string":"old"})", "VideoWaterMark", table, 1,
                          changes);
    }
}

TEST(WatermarkText, Packet) {
    const std::pair<const char*, const char*> cases[] = {
        {R"({"WaterMark":{"En":1,"String":"cam"}})", R"({"Enable":true,"String":"cam"})"},
        {R"({"WaterMark":[{"En":2,"String":7},{"En":1}]})", R"({"Enable":false,"String":7})"},
        {R"({"WaterMark":{"String":null}})", "null"},
        {R"({"WaterMark":[]})", "null"},
        {R"({"WaterMark":5,"En":1})", "null"},
    };
    for (const auto& [f5, table] : cases) {
        const support::Envelope envelope = Packet("VideoWaterMark", f5, PROTOFIX_MODE_TEXT);
        EXPECT_TRUE(envelope.result()) << f5;
        EXPECT_EQ(envelope.table(), ParseJson(table)) << f5;
    }
    EXPECT_FALSE(Packet("VideoWaterMark", "{", PROTOFIX_MODE_TEXT).result());
}

// The values go into the "WaterMark" object, or into every element of it; the rest of the text
// is kept.
TEST(WatermarkText, Merge) {
    struct Case {
        const char *f5, *table, *merged;
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
    overlay_support::ExpectCapacityRule("VideoWaterMark", R"({"WaterMark":{"En":0}})",
                                        R"({"Enable":true})", Written(R"({"WaterMark":{"En":1}})"));
}

}  // namespace
