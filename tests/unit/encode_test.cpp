// "Encode" through the request API: the stream and snapshot formats in record mode with the length
// checks, and the earlier protocol's encode text.
#include "overlay_support.h"
#include "record_view.h"

#include <vector>

using support::ParseJson;

namespace {

const auto kView = VIEW_OF(KZDEV_ENCODE_CFG);
constexpr int kRecord = static_cast<int>(sizeof(KZDEV_ENCODE_CFG));

support::Envelope PacketEncode(const void* input, int length, int standard = PROTOFIX_STANDARD_PAL,
                               int mode = PROTOFIX_MODE_RECORD) {
    PROTOCOL_FIX_INFO info = support::Info("Encode", mode);
    info.input = const_cast<void*>(input);
    info.inputLength = length;
    info.videoStandard = standard;
    return support::Serialize(info);
}

int ParseEncode(const std::string& table, void* output, int length, int standard) {
    PROTOCOL_FIX_INFO info = support::Info("Encode");
    info.output = output;
    info.outputLength = length;
    info.videoStandard = standard;
    CReqConfigProtocolFix request;
    request.SetRequestInfo(info);
    return request.Deserialize(table.c_str(), 0);
}

// Known codes, a profile only where its code is 1..4, flags true only for 1, unknown codes as
// empty words and a 0 x 0 size; the quality range beside "Video"; a snapshot's stored percentage
// as its level (0 when it is none), a rate -n as 1/n, "SnapEnable" only in the first entry.
TEST(EncodeRecord, Packet) {
    auto cfg = view::Build(kView, R"({"snapEnable":3,"mainFormat":[{"videoEnable":1,
        "bitRateControl":1,"fps":25,"compression":7,"imageSize":18,"quality":133,"bitRate":4096,
        "audioEnable":2,"audioCompression":4,"depth":16,"profile":4,"frequency":8000,"gop":50}],
        "extraFormat":[{},{"fps":15,"compression":5,"imageSize":3,"quality":40,"bitRate":512,
        "audioEnable":1,"audioCompression":2,"depth":8,"profile":2,"frequency":16000,"gop":30},
        {"videoEnable":3,"bitRateControl":2,"fps":10,"compression":10,"imageSize":40,"quality":3,
        "audioCompression":5}],"snapFormat":[{"fps":251,"compression":5,"imageSize":17,"quality":50},
        {"fps":25}]})");
    const Json::Value table = PacketEncode(cfg.get(), kRecord, PROTOFIX_STANDARD_NTSC).table();
    EXPECT_EQ(table["MainFormat"][0], ParseJson(R"({"VideoEnable":true,"QualityRange":100,
        "Video":{"Compression":"H.264","Width":1920,"Height":1080,"BitRateControl":"VBR","Quality":5,
                 "GOP":50,"BitRate":4096,"FPS":25,"Profile":"High"},
        "AudioEnable":false,"Audio":{"Compression":"AAC","Frequency":8000,"Depth":16}})"));
    EXPECT_EQ(table["ExtraFormat"][1], ParseJson(R"({"VideoEnable":false,"QualityRange":6,
        "Video":{"Compression":"MJPG","Width":352,"Height":240,"BitRateControl":"CBR","Quality":40,
                 "GOP":30,"BitRate":512,"FPS":15,"Profile":"Main"},
        "AudioEnable":true,"Audio":{"Compression":"G.711Mu","Frequency":16000,"Depth":8}})"));
    EXPECT_EQ(table["ExtraFormat"][2], ParseJson(R"({"VideoEnable":false,"QualityRange":6,
        "Video":{"Compression":"","Width":0,"Height":0,"BitRateControl":"","Quality":3,"GOP":0,
                 "BitRate":0,"FPS":10},
        "AudioEnable":false,"Audio":{"Compression":"","Frequency":0,"Depth":0}})"));
    EXPECT_EQ(table["SnapFormat"], ParseJson(R"([{"SnapEnable":true,"Video":{"Compression":"MJPG",
        "Width":1280,"Height":720,"QualityRange":6,"Quality":3,"FPS":0.2}},
        {"Video":{"Compression":"MPEG4","Width":704,"Height":480,"QualityRange":6,"Quality":0,"FPS":25.0}}])"));
    EXPECT_EQ(table["MainFormat"].size(), 3u);
    // A zeroed format under PAL: code 0 is 704 x 576.
    EXPECT_EQ(PacketEncode(cfg.get(), kRecord).table()["MainFormat"][1]["Video"]["Height"], 576);
    const int qualities[][3] = {{50, 6, 3}, {100, 6, 6},    {10, 6, 1},     {11, 6, 0},
                                {9, 6, 9},  {0x85, 100, 5}, {0xB2, 100, 50}};
    for (const auto& [quality, range, level] : qualities) {
        cfg->snapFormat[1].quality = static_cast<unsigned char>(quality);
        const Json::Value video =
            PacketEncode(cfg.get(), kRecord).table()["SnapFormat"][1]["Video"];
        EXPECT_EQ(video["QualityRange"], range) << quality;
        EXPECT_EQ(video["Quality"], level) << quality;
    }
}

// The checks count bytes: the streams need 409, the snapshots 464 to be written and 465 to be
// read. Each buffer is exactly as long as the length given.
TEST(EncodeRecord, Lengths) {
    const int packets[][4] = {{408, 0, 0, 0}, {409, 0, 1, 0}, {463, 0, 1, 0}, {464, 1, 1, 1}};
    for (const auto& [length, result, streams, snaps] : packets) {
        const std::vector<unsigned char> record(length);
        const support::Envelope envelope = PacketEncode(record.data(), length);
        EXPECT_EQ(envelope.result(), result != 0) << length;
        EXPECT_EQ(envelope.table().isMember("ExtraFormat"), streams != 0) << length;
        EXPECT_EQ(envelope.table().isMember("SnapFormat"), snaps != 0) << length;
    }
    const std::string table =
        R"({"ExtraFormat":[{"VideoEnable":true}],"SnapFormat":[{"SnapEnable":true,"Video":{"FPS":2}}]})";
    const int parses[][5] = {
        {408, -1, 0, 9, 9}, {409, -1, 1, 9, 9}, {464, -1, 1, 9, 9}, {465, 1, 1, 1, 2}};
    for (const auto& [length, result, videoEnable, snapEnable, fps] : parses) {
        std::vector<unsigned char> bytes(length);
        auto* record = reinterpret_cast<KZDEV_ENCODE_CFG*>(bytes.data());
        if (length >= 417) record->snapEnable = record->snapFormat[0].fps = 9;
        EXPECT_EQ(ParseEncode(table, record, length, PROTOFIX_STANDARD_PAL), result) << length;
        EXPECT_EQ(record->extraFormat[0].videoEnable, videoEnable) << length;
        if (length < 417) continue;
        EXPECT_EQ(record->snapEnable, snapEnable) << length;
        EXPECT_EQ(record->snapFormat[0].fps, fps) << length;
    }
}

// Parses the table into the record built from the seed: the record's view must be the seed's with
// the changes laid over it.
void ExpectParse(const std::string& seed, const std::string& table, const std::string& changes,
                 int standard = PROTOFIX_STANDARD_PAL) {
    auto cfg = view::Build(kView, seed);
    Json::Value expected = view::Of(kView, *cfg);
    view::Overlay(expected, ParseJson(changes));
    EXPECT_EQ(ParseEncode(table, cfg.get(), kRecord, standard), 1) << table;
    EXPECT_EQ(view::Of(kView, *cfg), expected) << table;
}

// Unknown words store the failure values as bytes; the range bit of the quality stays; "Profile"
// is read for main streams only; a size needs both keys, and one with no row stores code 0.
TEST(EncodeRecord, ParseStreams) {
    const std::string entry =
        R"({"VideoEnable":true,"Video":{"Compression":"h.264","Width":1280,"Height":720,
        "BitRateControl":"cbr","Quality":90,"BitRate":70000,"FPS":25,"GOP":300,"Profile":"high","QualityRange":6},
        "AudioEnable":false,"Audio":{"Compression":"G711A","Frequency":16000,"Depth":16}})";
    const std::string parsed = R"("videoEnable":1,"bitRateControl":255,"fps":25,"compression":255,
        "imageSize":17,"bitRate":4464,"audioEnable":0,"audioCompression":0,"depth":16,
        "frequency":16000,"gop":44)";
    ExpectParse(
        R"({"mainFormat":[{"quality":133,"profile":3,"audioCompression":3},{"imageSize":9},
                    {"imageSize":9,"gop":7}],"extraFormat":[{"profile":3,"audioCompression":3},{},
                    {"imageSize":9}]})",
        R"({"MainFormat":[)" + entry + R"(,{"Video":{"Width":0,"Height":0}},
                    {"Video":{"Width":1920,"GOP":null}}],"ExtraFormat":[)" +
            entry +
            R"(,{"Video":{"Width":352,"Height":480}},{"Video":{"Width":704,"Height":576}}]})",
        R"({"mainFormat":[{"quality":218,"profile":4,)" + parsed +
            R"(},{"imageSize":0}],"extraFormat":[{"quality":90,"profile":3,)" + parsed +
            R"(},{"imageSize":1},{"imageSize":0}]})",
        PROTOFIX_STANDARD_NTSC);
}

// Rates below one a second are stored as -n; the record's quality byte decides how the number is
// read; a missing "SnapEnable" (or one only in the second entry) turns snapshots off.
TEST(EncodeRecord, ParseSnapshots) {
    const std::pair<const char*, int> rates[] = {{"0.2", 251}, {"0.3", 253}, {"0.5", 254},
                                                 {"0", 0},     {"-2", 0},    {"1", 1},
                                                 {"30.7", 30}, {"300", 44}};
    for (const auto& [rate, stored] : rates) {
        ExpectParse(R"({"snapFormat":[{},{"fps":99}]})",
                    R"({"SnapFormat":[{},{"Video":{"FPS":)" + std::string(rate) + "}}]}",
                    R"({"snapFormat":[{},{"fps":)" + std::to_string(stored) + "}]}");
    }
    const int qualities[][3] = {{50, 7, 50},         {50, 2, 30},           {11, 1, 10},
                                {50, 0, 50},         {0x85, 90, 0x80 | 90}, {5, 3, 3},
                                {9, 200, 200 & 0x7F}};
    for (const auto& [before, value, after] : qualities) {
        ExpectParse(R"({"snapFormat":[{"quality":)" + std::to_string(before) + "}]}",
                    R"({"SnapFormat":[{"Video":{"Quality":)" + std::to_string(value) + "}}]}",
                    R"({"snapFormat":[{"quality":)" + std::to_string(after) + "}]}");
    }
    for (const char* table : {R"({"SnapFormat":[{"Video":{}},{"SnapEnable":1}]})", "{}"})
        ExpectParse(R"({"snapEnable":1})", table, R"({"snapEnable":0})");
}

// ---- the earlier protocol's text -----------------------------------------------------------------

// Every stream entry is written, absent values as null; the one audio format serves all streams
// (null without one); an earlier snapshot rate -n becomes 1/n.
TEST(EncodeText, Packet) {
    const std::pair<const char*, const char*> cases[] = {
        {R"({"Encode":{"Audio":{"Format":"G711U"},"MainFormat":[{"VideoEn":1,"AudioEn":2,
        "Video":{"Compression":"H.264","Width":1920,"Height":1080,"BitRateControl":"VBR","Quality":4,
                 "FPS":25,"GOP":50,"BitRate":4096,"Profile":"High"}}],
        "SnapFormat":[{"Video":{"Width":704,"Height":576,"Quality":3,"FPS":-4}}]}})",
         R"({"VideoEnable":true,"QualityRange":6,"AudioEnable":false,
        "Audio":{"Compression":"G.711Mu"},"Video":{"Compression":"H.264","Width":1920,"Height":1080,
        "BitRateControl":"VBR","Quality":4,"FPS":25,"GOP":50,"BitRate":4096}})"},
        {"{}", R"({"VideoEnable":false,"QualityRange":6,"AudioEnable":false,
        "Audio":{"Compression":null},"Video":{"Compression":null,"Width":null,"Height":null,
        "BitRateControl":null,"Quality":null,"FPS":null,"GOP":null,"BitRate":null}})"}};
    for (const auto& [f5, main] : cases) {
        const support::Envelope envelope = PacketEncode(f5, 0, 0, PROTOFIX_MODE_TEXT);
        ASSERT_TRUE(envelope.result());
        EXPECT_EQ(envelope.table()["MainFormat"][0], ParseJson(main));
        EXPECT_EQ(envelope.table()["ExtraFormat"][2]["Video"], ParseJson(cases[1].second)["Video"]);
        EXPECT_EQ(envelope.table()["ExtraFormat"][2]["Audio"],
                  envelope.table()["MainFormat"][0]["Audio"]);
    }
    EXPECT_EQ(PacketEncode(cases[0].first, 0, 0, PROTOFIX_MODE_TEXT).table()["SnapFormat"],
              ParseJson(R"([{"Video":{"Width":704,"Height":576,"QualityRange":6,"Quality":3,
        "FPS":0.25}},{"Video":{"Width":0,"Height":0,"QualityRange":6,"Quality":0,"FPS":0.0}}])"));
    EXPECT_FALSE(PacketEncode("{\"Encode\":", 0, 0, PROTOFIX_MODE_TEXT).result());
}

// Only present keys are merged, and only the keys the earlier text has a place for; nothing is
// created for an absent one, and a value of another kind on the way is left alone.
TEST(EncodeText, Merge) {
    const char* const cases[][3] = {
        {R"({"Encode":{"Audio":{"Format":"G711A"},"MainFormat":[{"VideoEn":0,"Video":{"FPS":25,"Own":1}}]},"Other":1})",
         R"({"MainFormat":[{"VideoEnable":true,"AudioEnable":false,"Audio":{"Compression":"G.711Mu"},
             "Video":{"FPS":12,"GOP":null,"Profile":"High","Width":1280}}],
             "SnapFormat":[null,{"Video":{"FPS":0.5,"Compression":"MJPG"}}]})",
         R"({"Encode":{"Audio":{"Format":"G711U"},"MainFormat":[{"VideoEn":1,"AudioEn":0,
             "Video":{"FPS":12,"Own":1,"Width":1280}}],"SnapFormat":[null,{"Video":{"FPS":0.5}}]},"Other":1})"},
        {R"({"Encode":{"Audio":{"Format":"G711A"}}})",
         R"({"ExtraFormat":[{"Audio":{"Compression":"AAC"}}]})",
         R"({"Encode":{"Audio":{"Format":"G711A"}}})"},
        {R"({"Encode":{"MainFormat":5}})",
         R"({"MainFormat":[{"VideoEnable":true}],"ExtraFormat":[null,{"AudioEnable":true}]})",
         R"({"Encode":{"MainFormat":5,"ExtraFormat":[null,{"AudioEn":1}]}})"},
        {R"({"Keep":[]})", "[1,2]", R"({"Keep":[]})"},
    };
    for (const auto& [f5, table, merged] : cases) {
        const overlay_support::Merged m = overlay_support::MergeF5("Encode", f5, table);
        EXPECT_EQ(m.result, 1) << table;
        EXPECT_EQ(m.text, support::Written(merged)) << table;
    }
    overlay_support::ExpectCapacityRule(
        "Encode", R"({"Encode":{}})", R"({"MainFormat":[{"VideoEnable":true}]})",
        support::Written(R"({"Encode":{"MainFormat":[{"VideoEn":1}]}})"));
}

}  // namespace
