// "MotionDetect", "LossDetect" and "BlindDetect" through the request API, in record mode and in
// F5 text mode; the motion grid in both directions of both.
#include "events_support.h"

#include <string>
#include <vector>

using events_support::F5Buffer;
using events_support::Patterned;
using events_support::TableOfF5;
using support::CopyOf;
using support::Packet;
using support::Parse;
using support::ParseJson;
using support::SameBytes;
using support::Zeroed;

namespace {

// The table's keys but "EventHandler", which is given apart.
Json::Value OwnKeys(Json::Value table, Json::Value* handler = nullptr) {
    table.removeMember("EventHandler", handler);
    return table;
}

// ---- record mode -------------------------------------------------------------------------------

// A row mask ORs each cell byte shifted to its column: a cell of 3 spills into the next column,
// column 31 makes the int negative; cells past the counts are not read, and the rows past the
// record's 32 do not exist.
TEST(MotionRecordPacket, GridRowsAsMasks) {
    struct Case {
        unsigned short rows, cols;
        const char* region;
    };
    const Case cases[] = {
        {2, 32, "[-2147483627, 7]"},  // 0x80000015
        {2, 4, "[5, 7]"},
        {0, 32, "null"},
        {40, 1,
         "[1, 3, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, "
         "0, 0, 0, 0]"},  // the 32 rows held
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::to_string(c.rows) + "x" + std::to_string(c.cols));
        auto cfg = Zeroed<KZDEV_MOTION_DETECT_CFG>();
        cfg->enable = 1;
        cfg->level = 65535;
        cfg->rows = c.rows;
        cfg->cols = c.cols;
        cfg->region[0][0] = cfg->region[0][2] = cfg->region[0][4] = cfg->region[0][31] = 1;
        cfg->region[1][0] = 3;
        cfg->region[1][2] = cfg->region[2][0] = 1;
        Json::Value expected = ParseJson(R"({"Enable":true,"Level":65535})");
        expected["Row"] = c.rows;
        expected["Col"] = c.cols;
        if (c.rows != 0) expected["Region"] = ParseJson(c.region);
        EXPECT_EQ(OwnKeys(Packet("MotionDetect", cfg.get()).table()), expected);
    }
}

// "Row" and "Col" keep 16 bits and then at most 32; "Level" keeps 16 bits (motion) or 8 (blind).
TEST(DetectionRecordParse, CountsAndLevels) {
    struct Case {
        const char* table;
        unsigned short rows, cols, level;
        unsigned char blindLevel;
    };
    const Case cases[] = {
        {R"({"Col":40,"Row":5,"Level":70000})", 5, 32, 4464, 112},
        {R"({"Col":-1,"Row":65538,"Level":300})", 2, 32, 300, 44},
        {R"({"Col":0,"Row":32,"Level":-1})", 32, 0, 65535, 255},
        {R"({"Col":null,"Level":null})", 9, 9, 9, 9},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.table);
        auto motion = Zeroed<KZDEV_MOTION_DETECT_CFG>();
        auto blind = Zeroed<KZDEV_BLIND_DETECT_CFG>();
        motion->rows = motion->cols = motion->level = blind->level = 9;
        ASSERT_EQ(Parse("MotionDetect", c.table, motion.get()), 1);
        ASSERT_EQ(Parse("BlindDetect", c.table, blind.get()), 1);
        EXPECT_EQ(std::vector<int>({motion->rows, motion->cols, motion->level, blind->level}),
                  std::vector<int>({c.rows, c.cols, c.level, c.blindLevel}));
    }
}

// Cells within the counts take the bits of their row's mask; a missing row reads as 0; cells and
// rows past the counts keep their bytes (counts the table leaves over the grid are bounded by it). Without
// a "Region" array, or with no rows, nothing moves.
TEST(MotionRecordParse, MasksToCells) {
    const std::vector<unsigned char> kept(KZ_MOTION_COLS, 7);
    auto Cells = [](std::initializer_list<int> set, int cols) {
        std::vector<unsigned char> row(KZ_MOTION_COLS, 7);
        for (int c = 0; c < cols; ++c) row[c] = 0;
        for (int c : set) row[c] = 1;
        return row;
    };
    struct Case {
        const char* table;
        std::vector<unsigned char> row0, row1, row2;
    };
    const Case cases[] = {
        {R"({"Row":2,"Col":4,"Region":[5]})", Cells({0, 2}, 4), Cells({}, 4), kept},
        {R"({"Row":3,"Col":32,"Region":[-2147483648, 4294967295, 255]})", Cells({31}, 32),
         std::vector<unsigned char>(32, 1), Cells({0, 1, 2, 3, 4, 5, 6, 7}, 32)},
        {R"({"Row":1,"Col":3,"Region":[-1, 1]})", Cells({0, 1, 2}, 3), kept, kept},
        {R"({"Row":0,"Col":4,"Region":[5]})", kept, kept, kept},
        {R"({"Row":2,"Col":4,"Region":{"0":5}})", kept, kept, kept},
        {R"({"Region":[1]})", Cells({0}, 32), Cells({}, 32), Cells({}, 32)},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.table);
        auto cfg = Zeroed<KZDEV_MOTION_DETECT_CFG>();
        std::memset(cfg->region, 7, sizeof cfg->region);
        cfg->rows = cfg->cols = 1000;
        ASSERT_EQ(Parse("MotionDetect", c.table, cfg.get()), 1);
        for (int r = 0; r < 3; ++r)
            EXPECT_EQ(std::vector<unsigned char>(cfg->region[r], cfg->region[r] + KZ_MOTION_COLS),
                      r == 0   ? c.row0
                      : r == 1 ? c.row1
                               : c.row2)
                << r;
    }
}

// Without an "EventHandler" the schedule and the linkage stay whole (no clears); with one, only
// string time sections are read and the linkage converts even when "TimeSection" is absent.
TEST(DetectionRecordParse, ScheduleAndLinkage) {
    auto cfg = Patterned<KZDEV_LOSS_DETECT_CFG>();
    auto before = CopyOf(*cfg);
    ASSERT_EQ(Parse("LossDetect", R"({"Enable":true})", cfg.get()), 1);
    before->enable = 1;
    EXPECT_TRUE(SameBytes(*cfg, *before));

    ASSERT_EQ(Parse("LossDetect", R"({"EventHandler":{"RecordChannels":[3]}})", cfg.get()), 1);
    EXPECT_TRUE(SameBytes(cfg->timeSections, before->timeSections));
    EXPECT_EQ(cfg->handler.recordChannels[3] * 2 + cfg->handler.recordChannels[0], 2);

    ASSERT_EQ(
        Parse("LossDetect", R"({"EventHandler":{"TimeSection":[[5, "1 06:00:00-07:00:00"], "x"]}})",
              cfg.get()),
        1);
    before->timeSections[0][1] = {1, 6, 0, 0, 7, 0, 0};
    EXPECT_TRUE(SameBytes(cfg->timeSections, before->timeSections));
}

// ---- F5 text mode ------------------------------------------------------------------------------

// Row texts are read from their end: the k-th character from the end is column k, only '1' sets
// it, and characters past the 32nd from the end name no column.
TEST(MotionTextPacket, RowTextsToMasks) {
    const std::string f5 = R"({"MotionDetect":{"En":1,"Level":3,"Col":4,"Row":2,"Region":[
        {"En":"0011"},{"En":"1000"},{"En":""},{"En":5},{},7,{"En":"0011x"},
        {"En":"1)" + std::string(31, '0') +
                           R"("},{"En":"1)" + std::string(39, '0') + R"("}]},
        "BlindDetect":{"En":0,"Level":9,"Col":4,"EventHandler":{"TourEn":1}},
        "LossDetect":{"En":1,"Level":9}})";
    EXPECT_EQ(
        TableOfF5("MotionDetect", f5),
        ParseJson(
            R"({"Enable":true,"Level":3,"Col":4,"Row":2,"Region":[3,8,0,0,0,0,6,-2147483648,0]})"));
    Json::Value handler;
    EXPECT_EQ(OwnKeys(TableOfF5("BlindDetect", f5), &handler),
              ParseJson(R"({"Enable":false,"Level":9})"));
    EXPECT_EQ(handler["MonitorTour"], ParseJson(R"([{"Enable":true}])"));
    EXPECT_EQ(TableOfF5("LossDetect", f5), ParseJson(R"({"Enable":true})"));
    for (const char* region : {"[]", "{}", "null", "\"1\""}) {
        const std::string text = std::string(R"({"MotionDetect":{"Region":)") + region + "}}";
        EXPECT_EQ(TableOfF5("MotionDetect", text), Json::Value()) << region;  // nothing written
    }
}

// Row masks become texts of "Col" characters (32 when "Col" is 0, negative or absent), column 0
// last; rows of the text that the table does not reach keep their text.
TEST(MotionTextParse, MasksToRowTexts) {
    const std::string zeros31(31, '0'), rest = R"(,{"En":"1"},{"En":"x"}])";
    const std::pair<const char*, std::string> cases[] = {
        {R"({"Col":4,"Region":[3,5]})", R"([{"En":"0011"},{"En":"0101"},{"En":"x"}])"},
        {R"({"Col":0,"Region":[1]})", R"([{"En":")" + zeros31 + R"(1"})" + rest},
        {R"({"Region":[-2147483648]})", R"([{"En":"1)" + zeros31 + R"("})" + rest},
        {R"({"Col":-3,"Region":[4294967295]})",
         R"([{"En":")" + std::string(32, '1') + "\"}" + rest},
        {R"({"Col":40,"Region":[-1]})",
         R"([{"En":")" + std::string(8, '0') + std::string(32, '1') + "\"}" + rest},
        {R"({"Col":2,"Region":[null,7,1,1]})",
         R"([{"En":"00"},{"En":"11"},{"En":"01"},{"En":"01"}])"},
        {R"({"Col":2,"Region":{"0":1}})", R"([{"En":"1111"})" + rest},
    };
    for (const auto& [table, region] : cases) {
        SCOPED_TRACE(table);
        F5Buffer buffer(
            R"({"MotionDetect":{"En":0,"Region":[{"En":"1111"},{"En":"1"},{"En":"x"}]},"X":1})");
        ASSERT_EQ(buffer.Merge("MotionDetect", table), 1);
        const Json::Value document = buffer.Document();
        EXPECT_EQ(document["MotionDetect"]["Region"], ParseJson(region));
        EXPECT_EQ(document["MotionDetect"]["Col"], ParseJson(table)["Col"]);
        EXPECT_EQ(document["X"], 1);
    }
}

// A row text as wide as the buffer can never be written back: refused with the buffer as it was
// (a "Col" in the billions included). A row that has nowhere to go writes nothing.
TEST(MotionTextParse, RowsWiderThanTheBuffer) {
    const char* const cases[][3] = {
        {R"({"MotionDetect":{}})", R"({"Col":200,"Region":[1]})", nullptr},
        {R"({"MotionDetect":{}})", R"({"Col":2000000000,"Region":[1]})", nullptr},
        {R"({"MotionDetect":{}})", R"({"Col":2000000000,"Region":[]})",
         R"({"MotionDetect":{"Col":2000000000}})"},
        {R"({"MotionDetect":{"Region":5}})", R"({"Col":2000000000,"Region":[1]})",
         R"({"MotionDetect":{"Col":2000000000,"Region":5}})"},
        {R"({"MotionDetect":{"Region":[3]}})", R"({"Col":2000000000,"Region":[1]})",
         R"({"MotionDetect":{"Col":2000000000,"Region":[3]}})"},
    };
    for (const auto& [old, table, merged] : cases) {
        SCOPED_TRACE(std::string(old) + table);
        F5Buffer buffer(old, 200);
        const std::vector<char> before = buffer.bytes;
        ASSERT_EQ(buffer.Merge("MotionDetect", table), merged ? 1 : -1);
        EXPECT_TRUE(merged ? buffer.Document() == ParseJson(merged) : buffer.bytes == before);
    }
}

// Each section merges its own keys, into a member made when the text has none.
TEST(DetectionTextParse, KeysBySection) {
    const char* const table = R"({"Enable":true,"Level":300,"Col":3,"Row":1,"Region":[6]})";
    const std::pair<const char*, const char*> cases[] = {
        {"BlindDetect", R"({"BlindDetect":{"En":1,"Level":300}})"},
        {"LossDetect", R"({"LossDetect":{"En":1}})"},
        {"MotionDetect",
         R"({"MotionDetect":{"En":1,"Level":300,"Col":3,"Row":1,"Region":[{"En":"110"}]}})"},
    };
    for (const auto& [section, merged] : cases) {
        F5Buffer buffer("{}");
        ASSERT_EQ(buffer.Merge(section, table), 1) << section;
        EXPECT_EQ(buffer.Document(), ParseJson(merged)) << section;
    }
}

}  // namespace
