// "VideoColor", "VideoInOptions", "VideoStandard" and "MediaGlobal" through the request API.
#include "overlay_support.h"
#include "record_view.h"
#include "request_support.h"

#include <string>

using support::Packet;
using support::Parse;
using support::ParseJson;
using support::Zeroed;

namespace {

TEST(VideoStandard, BareWordBothWays) {
    const std::pair<unsigned int, const char*> packets[] = {
        {0, "\"PAL\""}, {1, "\"NTSC\""}, {2, "\"SECAM\""}, {3, "null"}};
    for (const auto& [code, word] : packets) {
        auto cfg = Zeroed<KZDEV_VIDEO_STANDARD_CFG>();
        cfg->videoStandard = code;
        const support::Envelope envelope = Packet("VideoStandard", cfg.get());
        EXPECT_TRUE(envelope.result()) << code;
        EXPECT_EQ(envelope.table(), ParseJson(word)) << code;
    }
    const std::pair<const char*, unsigned int> parses[] = {
        {"\"ntsc\"", 1}, {"\"Secam\"", 2}, {"\"pal\"", 0},
        {"\"PALX\"", 7}, {"1", 7},         {R"({"VideoStandard":"NTSC"})", 7}};
    for (const auto& [table, code] : parses) {
        auto cfg = Zeroed<KZDEV_VIDEO_STANDARD_CFG>();
        cfg->videoStandard = 7;
        EXPECT_EQ(Parse("VideoStandard", table, cfg.get()), 1) << table;
        EXPECT_EQ(cfg->videoStandard, code) << table;
    }
}

// Only an integer is read (a negative one fails the unsigned conversion); the byte keeps the low
// bits.
TEST(MediaGlobal, PacketLengthByte) {
    auto cfg = Zeroed<KZDEV_MEDIA_GLOBAL_CFG>();
    cfg->packetLength = 200;
    EXPECT_EQ(Packet("MediaGlobal", cfg.get()).table(), ParseJson(R"({"PacketLength":200})"));
    const std::pair<const char*, int> parses[] = {
        {R"({"PacketLength":300})", 44},       {R"({"PacketLength":12.0})", 12},
        {R"({"PacketLength":"12"})", 9},       {R"({"PacketLength":null})", 9},
        {R"({"PacketLength":3000000000})", 9}, {"[300]", 9}};
    for (const auto& [table, length] : parses) {
        cfg->packetLength = 9;
        EXPECT_EQ(Parse("MediaGlobal", table, cfg.get()), 1) << table;
        EXPECT_EQ(cfg->packetLength, length) << table;
    }
    EXPECT_THROW(Parse("MediaGlobal", R"({"PacketLength":-1})", cfg.get()), Json::Exception);
}

// ---- VideoColor ----------------------------------------------------------------------------------

TEST(VideoColorRecord, PacketBothPeriods) {
    view::ExpectPacket("KZDEV_VIDEO_COLOR_CFG", "VideoColor", R"({"color":[
        {"timeSection":{"enable":6,"beginHour":8,"endHour":18},"brightness":50,"contrast":60,"saturation":70,"hue":80},
        {"timeSection":{"beginHour":18,"endHour":8},"brightness":255,"contrast":0,"saturation":1,"hue":2}]})",
                       R"([
        {"Brightness":50,"Contrast":60,"Saturation":70,"Hue":80,"TimeSection":"1 08:00:00-18:00:00"},
        {"Brightness":255,"Contrast":0,"Saturation":1,"Hue":2,"TimeSection":"0 18:00:00-08:00:00"}])");
}

// An object is the first period; an array gives at most two; the flag of the time section is read
// as a record-type mask; a missing or bad time section leaves it.
TEST(VideoColorRecord, ParsePeriods) {
    const std::string nines = R"({"timeSection":{"enable":9,"beginHour":9,"beginMinute":9,
        "beginSecond":9,"endHour":9,"endMinute":9,"endSecond":9},"brightness":9,"contrast":9,
        "saturation":9,"hue":9})";
    const std::pair<const char*, const char*> cases[] = {
        {R"([{"Brightness":1,"TimeSection":"3 00:00:00-23:59:59"},{"Hue":300,"TimeSection":"bad"},{"Contrast":5}])",
         R"([{"timeSection":{"enable":5,"beginHour":0,"beginMinute":0,"beginSecond":0,"endHour":23,
             "endMinute":59,"endSecond":59},"brightness":1},{"hue":44}])"},
        {R"({"Contrast":7,"Saturation":null,"TimeSection":"16 01:00:00-02:00:00"})",
         R"([{"timeSection":{"enable":8,"beginHour":1,"beginMinute":0,"beginSecond":0,"endHour":2,
             "endMinute":0,"endSecond":0},"contrast":7}])"},
        {R"([{"Brightness":2}])", R"([{"brightness":2}])"},
        {"[]", "[]"},
        {"7", "[]"},
    };
    for (const auto& [table, changes] : cases) {
        view::ExpectParse(VIEW_OF(KZDEV_VIDEO_COLOR_CFG),
                          R"({"color":[)" + nines + "," + nines + "]}", "VideoColor", table, 1,
                          std::string(R"({"color":)") + changes + "}");
    }
}

// The earlier text's colour setting is the first period, present values only.
TEST(VideoColorText, PacketFromTheEarlierText) {
    const std::pair<const char*, const char*> cases[] = {
        {R"({"Encode":{"VideoColor":{"Brightness":50,"Hue":null,"Gamma":3,"Contrast":"60"}}})",
         R"([{"Brightness":50,"Contrast":"60"}])"},
        {R"({"Encode":{}})", "null"},
    };
    for (const auto& [f5, table] : cases) {
        const support::Envelope envelope = Packet("VideoColor", f5, PROTOFIX_MODE_TEXT);
        EXPECT_TRUE(envelope.result()) << f5;
        EXPECT_EQ(envelope.table(), ParseJson(table)) << f5;
    }
    EXPECT_FALSE(Packet("VideoColor", "{", PROTOFIX_MODE_TEXT).result());
}

// Every period of an array is merged in turn into the one setting; a value of another kind on
// the way is left alone.
TEST(VideoColorText, ParseIntoTheEarlierText) {
    struct Case {
        const char *old, *table, *merged;
    };
    const Case cases[] = {
        {R"({"Encode":{"VideoColor":{"Brightness":1,"Gamma":3}}})",
         R"([{"Brightness":10,"Contrast":20},{"Brightness":30,"Hue":null}])",
         R"({"Encode":{"VideoColor":{"Brightness":30,"Contrast":20,"Gamma":3}}})"},
        {"{}", R"({"Saturation":5,"TimeSection":"1 00:00:00-23:59:59"})",
         R"({"Encode":{"VideoColor":{"Saturation":5}}})"},
        {R"({"Encode":[]})", R"({"Saturation":5})", R"({"Encode":[]})"},
        {R"({"A":1})", "[]", R"({"A":1})"},
    };
    for (const Case& c : cases) {
        const overlay_support::Merged merged =
            overlay_support::MergeF5("VideoColor", c.old, c.table);
        EXPECT_EQ(merged.result, 1) << c.table;
        EXPECT_EQ(merged.text, support::Written(c.merged)) << c.table;
    }
    overlay_support::ExpectCapacityRule(
        "VideoColor", "{}", R"({"Brightness":100})",
        support::Written(R"({"Encode":{"VideoColor":{"Brightness":100}}})"));
}

// ---- VideoInOptions ------------------------------------------------------------------------------

// The record to send is read from the output slot; the input slot is not looked at.
TEST(VideoInOptions, PacketReadsTheOutputSlot) {
    auto cfg = view::Build(VIEW_OF(KZDEV_VIDEOIN_OPTIONS_CFG), R"({
        "flip":1,"irisAuto":2,"mirror":0,"externalSyncPhase":90,"backlight":3,"externalSync":1000,
        "rotate90":1,"wideDynamicRange":50,"signalFormat":4,"exposureValue1":0.5,"exposureValue2":40.25,
        "exposureSpeed":7,"gainBlue":10,"gainGreen":11,"gainRed":12,"whiteBalance":20,
        "nightBrightnessThreshold":30,"sunriseHour":6,"sunriseMinute":30,"sunriseSecond":15,"sunsetHour":18,
        "sunsetMinute":45,"sunsetSecond":0,"nightWideDynamicRange":5,"nightExposureValue1":1.5,
        "nightExposureValue2":2.0,"nightExposureSpeed":8,"nightGainBlue":20,"nightGainGreen":21,
        "nightGainRed":22,"nightWhiteBalance":7,"nightGain":60,"nightGainAuto":1,"nightReferenceLevel":40,
        "flashMode":2,"flashPole":1,"flashPreValue":3,"flashValue":4})");
    PROTOCOL_FIX_INFO info = support::Info("VideoInOptions");
    info.output = cfg.get();
    const support::Envelope envelope = support::Serialize(info);
    EXPECT_TRUE(envelope.result());
    EXPECT_EQ(envelope.table(),
              ParseJson(R"({"Flip":1,"IrisAuto":true,"Mirror":false,"ExternalSyncPhase":90,
        "Backlight":3,"ExternalSync":1000,"Rotate90":1,"WideDynamicRange":50,"SignalFormat":"1080i",
        "ExposureValue1":0.5,"ExposureValue2":40.25,"ExposureSpeed":7,"GainBlue":10,"GainGreen":11,"GainRed":12,
        "WhiteBalance":"Disable",
        "NightOptions":{"BrightnessThreshold":30,"SunriseHour":6,"SunriseMinute":30,"SunriseSecond":15,
            "SunsetHour":18,"SunsetMinute":45,"SunsetSecond":0,"WideDynamicRange":5,"ExposureValue1":1.5,
            "ExposureValue2":2.0,"ExposureSpeed":8,"GainBlue":20,"GainGreen":21,"GainRed":22,
            "WhiteBalance":"Night","Gain":60,"GainAuto":1,"ReferenceLevel":40},
        "FlashControl":{"Mode":2,"Pole":1,"PreValue":3,"Value":4}})"));
    info.output = nullptr;
    info.input = cfg.get();
    EXPECT_FALSE(support::Serialize(info).result());
}

// Flags read as booleans (the flip too), the sync phase as a real, unknown words as code 0; night
// and flash keys only inside their objects; null and unknown keys leave the record.
TEST(VideoInOptions, ParseKeys) {
    const char* const preset =
        R"({"backlight":4,"signalFormat":3,"nightWhiteBalance":5,"flashMode":6,"flashValue":2})";
    auto cfg = view::Build(VIEW_OF(KZDEV_VIDEOIN_OPTIONS_CFG), preset);
    auto expected = view::Build(VIEW_OF(KZDEV_VIDEOIN_OPTIONS_CFG), R"({
        "flip":1,"mirror":1,"irisAuto":0,"externalSyncPhase":3,"externalSync":4464,"signalFormat":0,
        "whiteBalance":7,"exposureValue1":0.75,"backlight":4,"nightWhiteBalance":0,"nightExposureValue2":-1.5,
        "nightGain":44,"sunsetHour":20,"flashMode":6,"flashValue":2,"flashPreValue":9})");
    ASSERT_EQ(
        Parse("VideoInOptions", R"({"Flip":true,"Mirror":1,"IrisAuto":false,"ExternalSyncPhase":3.9,
        "ExternalSync":70000,"SignalFormat":"4K","WhiteBalance":"Night","ExposureValue1":0.75,"Backlight":null,
        "Gain":5,"Mode":7,"NightOptions":{"WhiteBalance":"night","ExposureValue2":-1.5,"Gain":300,"SunsetHour":20},
        "FlashControl":{"PreValue":9,"Mode":null}})",
              cfg.get()),
        1);
    EXPECT_EQ(view::Of(VIEW_OF(KZDEV_VIDEOIN_OPTIONS_CFG), *cfg),
              view::Of(VIEW_OF(KZDEV_VIDEOIN_OPTIONS_CFG), *expected));
    auto unchanged = support::CopyOf(*expected);
    EXPECT_EQ(Parse("VideoInOptions", R"([{"Flip":false}])", expected.get()), 1);
    EXPECT_TRUE(support::SameBytes(*expected, *unchanged));
}

}  // namespace
