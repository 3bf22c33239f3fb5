// "Encode" through the request API: the stream formats in record mode with the length checks, the
// snapshot formats, and the earlier protocol's encode text.
#include "overlay_support.h"
#include "request_support.h"

#include <algorithm>
#include <memory>
#include <vector>

using support::ParseJson;

namespace {

support::Envelope PacketEncode(void* input, int length, int standard = PROTOFIX_STANDARD_PAL,
                               int mode = PROTOFIX_MODE_RECORD) {
    PROTOCOL_FIX_INFO info = support::Info("Encode", mode);
    info.input = input;
    info.inputLength = length;
    info.videoStandard = standard;
    return support::Serialize(info);
}

int ParseEncode(const std::string& table, void* output, int length,
                int standard = PROTOFIX_STANDARD_PAL, int mode = PROTOFIX_MODE_RECORD) {
    PROTOCOL_FIX_INFO info = support::Info("Encode", mode);
    info.output = output;
    info.outputLength = length;
    info.videoStandard = standard;
    CReqConfigProtocolFix request;
    request.SetRequestInfo(info);
    return request.Deserialize(table.c_str(), 0);
}

constexpr int kRecord = static_cast<int>(sizeof(KZDEV_ENCODE_CFG));

// Known codes, a profile only where its code is 1..4, flags true only for 1, unknown codes as
// empty words and a 0 x 0 size; the quality range beside "Video".
TEST(EncodeRecordPacket, StreamEntries) {
    auto cfg = support::Zeroed<KZDEV_ENCODE_CFG>();
    cfg->mainFormat[0] = {1, 1, 25, 7, 18, 0x85, 4096, 2, 4, {}, 16, {}, 4, 8000, 50, {}};
    cfg->extraFormat[1] = {0, 0, 15, 5, 3, 40, 512, 1, 2, {}, 8, {}, 2, 16000, 30, {}};
    cfg->extraFormat[2] = {3, 2, 10, 10, 40, 3, 0, 0, 5, {}, 0, {}, 0, 0, 0, {}};
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
        "Video":{"Compression":"","Width":0,"Height":0,"BitRateControl":"","Quality":3,
                 "GOP":0,"BitRate":0,"FPS":10},
        "AudioEnable":false,"Audio":{"Compression":"","Frequency":0,"Depth":0}})"));
    EXPECT_EQ(table["MainFormat"].size(), 3u);
    EXPECT_EQ(table["ExtraFormat"].size(), 3u);
    // A zeroed format under PAL: code 0 is 704 x 576.
    EXPECT_EQ(PacketEncode(cfg.get(), kRecord).table()["MainFormat"][1]["Video"]["Height"], 576);
}

// A stored percentage is written as its level (0 when it is none); a snapshot rate -n as 1/n;
// "SnapEnable" only in the first entry.
TEST(EncodeRecordPacket, SnapshotEntries) {
    struct Case {
        unsigned char quality;
        int range, written;
    };
    const Case cases[] = {{50, 6, 3}, {100, 6, 6},    {10, 6, 1},          {11, 6, 0},
                          {9, 6, 9},  {0x85, 100, 5}, {0x80 | 50, 100, 50}};
    for (const Case& c : cases) {
        auto cfg = support::Zeroed<KZDEV_ENCODE_CFG>();
        cfg->snapFormat[1].quality = c.quality;
        const Json::Value video =
            PacketEncode(cfg.get(), kRecord).table()["SnapFormat"][1]["Video"];
        EXPECT_EQ(video["QualityRange"], c.range) << int(c.quality);
        EXPECT_EQ(video["Quality"], c.written) << int(c.quality);
    }
    auto cfg = support::Zeroed<KZDEV_ENCODE_CFG>();
    cfg->snapEnable = 3;
    cfg->snapFormat[0] = {0, 0, static_cast<unsigned char>(-5), 5, 17, 50, 0, 0, 0, {}, 0, {}, 0, 0,
                          0, {}};
    cfg->snapFormat[1].fps = 25;
    const Json::Value snaps = PacketEncode(cfg.get(), kRecord).table()["SnapFormat"];
    ASSERT_EQ(snaps.size(), 2u);
    EXPECT_TRUE(snaps[0]["Video"]["FPS"].isDouble());
    EXPECT_DOUBLE_EQ(snaps[0]["Video"]["FPS"].asDouble(), 0.2);
    EXPECT_EQ(snaps[0]["Video"]["Compression"], "MJPG");
    EXPECT_EQ(snaps[0]["Video"]["Width"], 1280);
    EXPECT_EQ(snaps[0]["SnapEnable"], true);
    EXPECT_DOUBLE_EQ(snaps[1]["Video"]["FPS"].asDouble(), 25.0);
    EXPECT_EQ(snaps[1].getMemberNames(), std::vector<std::string>{"Video"});
}

// The checks count bytes: the streams need 409, the snapshots 464 to be written and 465 to be
// read. Each buffer is exactly as long as the length given.
TEST(EncodeRecordLengths, PacketAndParse) {
    struct Packet {
        int length;
        bool result, streams, snaps;
    };
    for (const Packet& c : {Packet{408, false, false, false}, Packet{409, false, true, false},
                            Packet{463, false, true, false}, Packet{464, true, true, true}}) {
        std::vector<unsigned char> record(c.length);
        const support::Envelope envelope = PacketEncode(record.data(), c.length);
        EXPECT_EQ(envelope.result(), c.result) << c.length;
        EXPECT_EQ(envelope.table().isMember("ExtraFormat"), c.streams) << c.length;
        EXPECT_EQ(envelope.table().isMember("SnapFormat"), c.snaps) << c.length;
    }
    const std::string table =
        R"({"ExtraFormat":[{"VideoEnable":true}],"SnapFormat":[{"SnapEnable":true,"Video":{"FPS":2}}]})";
    struct Parse {
        int length, result;
        unsigned char videoEnable, snapEnable, fps;
    };
    for (const Parse& c : {Parse{408, -1, 0, 9, 9}, Parse{409, -1, 1, 9, 9},
                           Parse{464, -1, 1, 9, 9}, Parse{465, 1, 1, 1, 2}}) {
        std::vector<unsigned char> bytes(c.length);
        auto* record = reinterpret_cast<KZDEV_ENCODE_CFG*>(bytes.data());
        const bool snapInBuffer = c.length >= 417;
        if (snapInBuffer) record->snapEnable = record->snapFormat[0].fps = 9;
        EXPECT_EQ(ParseEncode(table, record, c.length), c.result) << c.length;
        EXPECT_EQ(record->extraFormat[0].videoEnable, c.videoEnable) << c.length;
        if (!snapInBuffer) continue;
        EXPECT_EQ(record->snapEnable, c.snapEnable) << c.length;
        EXPECT_EQ(record->snapFormat[0].fps, c.fps) << c.length;
    }
}

// Unknown words store the failure values as bytes; the range bit of the quality stays; "Profile"
// is read for main streams only; a size needs both keys, and one with no row stores code 0.
TEST(EncodeRecordParse, StreamEntries) {
    auto cfg = support::Zeroed<KZDEV_ENCODE_CFG>();
    cfg->mainFormat[0].quality = 0x85;
    cfg->mainFormat[0].profile = cfg->extraFormat[0].profile = 3;
    cfg->mainFormat[0].audioCompression = cfg->extraFormat[0].audioCompression = 3;
    cfg->mainFormat[1].imageSize = cfg->mainFormat[2].imageSize = cfg->extraFormat[2].imageSize = 9;
    cfg->mainFormat[2].gop = 7;
    auto expected = support::CopyOf(*cfg);
    const KZ_VIDEOENC_OPT parsed = {1, 255, 25, 255, 17, 0x80 | 90, 70000 & 0xFFFF, 0,
                                    0, {},  16, {},  4,  16000,     300 & 0xFF,     {}};
    expected->mainFormat[0] = expected->extraFormat[0] = parsed;
    expected->extraFormat[0].profile = 3;
    expected->extraFormat[0].quality = 90;
    expected->mainFormat[1].imageSize = 0;
    expected->extraFormat[1].imageSize = 1;
    expected->extraFormat[2].imageSize = 0;
    const std::string entry =
        R"({"VideoEnable":true,"Video":{"Compression":"h.264","Width":1280,"Height":720,
        "BitRateControl":"cbr","Quality":90,"BitRate":70000,"FPS":25,"GOP":300,"Profile":"high","QualityRange":6},
        "AudioEnable":false,"Audio":{"Compression":"G711A","Frequency":16000,"Depth":16}})";
    const std::string table = R"({"MainFormat":[)" + entry + R"(,{"Video":{"Width":0,"Height":0}},
        {"Video":{"Width":1920,"GOP":null}}],"ExtraFormat":[)" +
                              entry + R"(,{"Video":{"Width":352,"Height":480}},
        {"Video":{"Width":704,"Height":576}}]})";
    ASSERT_EQ(ParseEncode(table, cfg.get(), kRecord, PROTOFIX_STANDARD_NTSC), 1);
    EXPECT_TRUE(support::SameBytes(*cfg, *expected));
}

// The record's quality byte decides how the number is read; rates below one a second are stored
// as -n; a missing "SnapEnable" (or one only in the second entry) turns snapshots off.
TEST(EncodeRecordParse, SnapshotEntries) {
    struct Fps {
        double rate;
        signed char stored;
    };
    for (const Fps& c : {Fps{0.2, -5}, Fps{0.3, -3}, Fps{0.5, -2}, Fps{0, 0}, Fps{-2, 0}, Fps{1, 1},
                         Fps{30.7, 30}, Fps{300, 44}}) {
        auto cfg = support::Zeroed<KZDEV_ENCODE_CFG>();
        cfg->snapFormat[1].fps = 99;
        const std::string table =
            R"({"SnapFormat":[{},{"Video":{"FPS":)" + std::to_string(c.rate) + "}}]}";
        ASSERT_EQ(ParseEncode(table, cfg.get(), kRecord), 1);
        EXPECT_EQ(static_cast<signed char>(cfg->snapFormat[1].fps), c.stored) << c.rate;
    }
    struct Quality {
        unsigned char before;
        int value;
        unsigned char after;
    };
    for (const Quality& c :
         {Quality{50, 7, 50}, Quality{50, 2, 30}, Quality{11, 1, 10}, Quality{50, 0, 50},
          Quality{0x85, 90, 0x80 | 90}, Quality{5, 3, 3}, Quality{9, 200, 200 & 0x7F}}) {
        auto cfg = support::Zeroed<KZDEV_ENCODE_CFG>();
        cfg->snapFormat[0].quality = c.before;
        const std::string table =
            R"({"SnapFormat":[{"Video":{"Quality":)" + std::to_string(c.value) + "}}]}";
        ASSERT_EQ(ParseEncode(table, cfg.get(), kRecord), 1);
        EXPECT_EQ(cfg->snapFormat[0].quality, c.after) << int(c.before) << " " << c.value;
    }
    for (const char* table : {R"({"SnapFormat":[{"Video":{}},{"SnapEnable":1}]})", "{}"}) {
        auto cfg = support::Zeroed<KZDEV_ENCODE_CFG>();
        cfg->snapEnable = 1;
        ASSERT_EQ(ParseEncode(table, cfg.get(), kRecord), 1);
        EXPECT_EQ(cfg->snapEnable, 0) << table;
    }
}

TEST(EncodeRefusals, ModesAndMissingBuffers) {
    auto cfg = support::Zeroed<KZDEV_ENCODE_CFG>();
    EXPECT_FALSE(PacketEncode(cfg.get(), kRecord, 0, 2).result());
    EXPECT_FALSE(PacketEncode(nullptr, kRecord).result());
    EXPECT_FALSE(PacketEncode(nullptr, 0, 0, PROTOFIX_MODE_TEXT).result());
    EXPECT_EQ(ParseEncode(R"({"MainFormat":[{"VideoEnable":true}]})", cfg.get(), kRecord, 0, 2),
              -1);
    EXPECT_EQ(ParseEncode("{}", nullptr, kRecord), -1);
    EXPECT_EQ(cfg->mainFormat[0].videoEnable, 0);
}

// ---- the earlier protocol's text -----------------------------------------------------------------

// Every stream entry is written, absent values as null; the one audio format serves all streams;
// an earlier snapshot rate -n becomes 1/n.
TEST(EncodeTextPacket, EarlierTextBecomesTheTable) {
    const char* f5 =
        R"({"Encode":{"Audio":{"Format":"G711U"},"MainFormat":[{"VideoEn":1,"AudioEn":2,
        "Video":{"Compression":"H.264","Width":1920,"Height":1080,"BitRateControl":"VBR","Quality":4,
                 "FPS":25,"GOP":50,"BitRate":4096,"Profile":"High"}}],
        "SnapFormat":[{"Video":{"Width":704,"Height":576,"Quality":3,"FPS":-4}}]}})";
    const support::Envelope envelope =
        PacketEncode(const_cast<char*>(f5), 0, 0, PROTOFIX_MODE_TEXT);
    ASSERT_TRUE(envelope.result());
    const Json::Value& table = envelope.table();
    EXPECT_EQ(table["MainFormat"][0],
              ParseJson(R"({"VideoEnable":true,"QualityRange":6,"AudioEnable":false,
        "Audio":{"Compression":"G.711Mu"},"Video":{"Compression":"H.264","Width":1920,"Height":1080,
        "BitRateControl":"VBR","Quality":4,"FPS":25,"GOP":50,"BitRate":4096}})"));
    EXPECT_EQ(table["ExtraFormat"][2],
              ParseJson(R"({"VideoEnable":false,"QualityRange":6,"AudioEnable":false,
        "Audio":{"Compression":"G.711Mu"},"Video":{"Compression":null,"Width":null,"Height":null,
        "BitRateControl":null,"Quality":null,"FPS":null,"GOP":null,"BitRate":null}})"));
    EXPECT_EQ(
        table["SnapFormat"],
        ParseJson(R"([{"Video":{"Width":704,"Height":576,"QualityRange":6,"Quality":3,"FPS":0.25}},
        {"Video":{"Width":0,"Height":0,"QualityRange":6,"Quality":0,"FPS":0.0}}])"));
    // No audio format: the streams' audio compression is null.
    const Json::Value bare =
        PacketEncode(const_cast<char*>("{}"), 0, 0, PROTOFIX_MODE_TEXT).table();
    EXPECT_TRUE(bare["MainFormat"][1]["Audio"].isMember("Compression"));
    EXPECT_TRUE(bare["MainFormat"][1]["Audio"]["Compression"].isNull());
    EXPECT_FALSE(
        PacketEncode(const_cast<char*>("{\"Encode\":"), 0, 0, PROTOFIX_MODE_TEXT).result());
}

// Only present keys are merged, and only the keys the earlier text has a place for; nothing is
// created for an absent one, and a value of another kind on the way is left alone.
TEST(EncodeTextParse, TableMergesIntoTheEarlierText) {
    struct Case {
        const char *old, *table, *merged;
    };
    const Case cases[] = {
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
    for (const Case& c : cases) {
        support::F5Buffer buffer(c.old);
        EXPECT_EQ(buffer.Merge("Encode", c.table), 1) << c.table;
        EXPECT_EQ(buffer.Document(), ParseJson(c.merged)) << c.table;
    }
    overlay_support::ExpectCapacityRule(
        "Encode", R"({"Encode":{}})", R"({"MainFormat":[{"VideoEnable":true}]})",
        support::Written(R"({"Encode":{"MainFormat":[{"VideoEn":1}]}})"));
}

}  // namespace
