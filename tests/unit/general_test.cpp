// "General", "Locales", "Language" and "AutoMaintain" through the request API.
#include "device_support.h"

#include <string>
#include <vector>

using device::Expected;
using device::Packet;
using device::Parse;
using device::Record;
using device::Request;
using device::View;
using support::ParseJson;

namespace {

constexpr Request kMerged{PROTOFIX_MODE_RECORD, 1, 0, nullptr};

Request MergedInto(const char* current) {
    Request request = kMerged;
    request.current = current;
    return request;
}

// Every device section refuses the modes it does not take, a null record, and (General, Locales)
// a sub-mode other than 0 and 1; Language and AutoMaintain do not read the sub-mode.
TEST(DeviceSections, Refusals) {
    struct Case {
        const char* section;
        const char* type;
        Request request;
        int result;
    };
    const Case cases[] = {
        {"General", "KZDEV_GENERAL_CFG", {PROTOFIX_MODE_TEXT, 0, 0, nullptr}, -1},
        {"Locales", "KZDEV_LOCALES_CFG", {PROTOFIX_MODE_TEXT, 0, 0, nullptr}, -1},
        {"Language", "KZDEV_LOCALES_CFG", {PROTOFIX_MODE_TEXT, 0, 0, nullptr}, -1},
        {"AutoMaintain", "KZDEV_AUTOMAINTAIN_CFG", {PROTOFIX_MODE_TEXT, 0, 0, nullptr}, -1},
        {"Comm", "KZDEV_COMM_CFG", {PROTOFIX_MODE_TEXT, 0, 0, nullptr}, -1},
        {"Ptz", "KZDEV_PTZ_CFG", {2, 0, 0, nullptr}, -1},
        {"General", "KZDEV_GENERAL_CFG", {PROTOFIX_MODE_RECORD, 2, 0, "{}"}, -1},
        {"Locales", "KZDEV_LOCALES_CFG", {PROTOFIX_MODE_RECORD, -1, 0, "{}"}, -1},
        {"Language", "KZDEV_LOCALES_CFG", {PROTOFIX_MODE_RECORD, 7, 0, nullptr}, 1},
        {"AutoMaintain", "KZDEV_AUTOMAINTAIN_CFG", {PROTOFIX_MODE_RECORD, 7, 0, nullptr}, 1},
    };
    for (const Case& c : cases) {
        std::vector<unsigned char> record = Record(c.type, "{}");
        const std::vector<unsigned char> before = record;
        EXPECT_EQ(Packet(c.section, record.data(), c.request).result(), c.result == 1) << c.section;
        EXPECT_EQ(Parse(c.section, R"("English")", record, c.request), c.result) << c.section;
        EXPECT_EQ(record, before) << c.section;
    }
    for (const char* section : {"General", "Locales", "Language", "AutoMaintain", "Comm", "Ptz"}) {
        for (const Request& request : {Request{}, MergedInto(R"({"params":{"table":{}}})")}) {
            EXPECT_FALSE(Packet(section, nullptr, request).result()) << section;
            EXPECT_EQ(Parse(section, "{}", nullptr, 4096, request), -1) << section;
        }
    }
}

TEST(General, PlainFields) {
    const std::string full(64, 'n');
    const auto cfg =
        Record("KZDEV_GENERAL_CFG",
               R"({"szMachineName":")" + full + R"(","szMachineAddress":"hall 2","wLocalNo":9})");
    EXPECT_EQ(Packet("General", cfg.data()).table(),
              ParseJson(R"({"MachineName":")" + full + R"(","MachineAddress":"hall 2"})"));

    // Only strings are copied, cut to 63 bytes and cleared behind; LocalNo is not read here.
    const std::string seed =
        R"({"szMachineName":"old name that is long","szMachineAddress":"kept","wLocalNo":9})";
    auto record = Record("KZDEV_GENERAL_CFG", seed);
    EXPECT_EQ(Parse("General", R"({"MachineName":"dvr","MachineAddress":5,"LocalNo":4})", record),
              1);
    EXPECT_EQ(View("KZDEV_GENERAL_CFG", record),
              Expected("KZDEV_GENERAL_CFG", seed, R"({"szMachineName":"dvr"})"));
    EXPECT_EQ(std::string(record.begin(), record.begin() + 64), "dvr" + std::string(61, '\0'));
    EXPECT_EQ(Parse("General", R"({"MachineName":")" + std::string(70, 'x') + R"("})", record), 1);
    EXPECT_EQ(View("KZDEV_GENERAL_CFG", record)["szMachineName"].asString(), std::string(63, 'x'));
}

TEST(General, LocalNoMergedIntoTheDeviceTable) {
    struct Case {
        const char* current;
        bool result;
        const char* table;
    };
    const Case cases[] = {
        {R"({"params":{"table":{"MachineName":"dvr","LocalNo":3,"Other":[1]}},"id":4})", true,
         R"({"MachineName":"dvr","LocalNo":65535,"Other":[1]})"},
        {R"({"params":{}})", true, R"({"LocalNo":65535})"},
        {R"({"params":{"table":null}})", true, R"({"LocalNo":65535})"},
        {R"({"params":{"table":[1,2]}})", true, "[1,2]"},
        {"{", false, "null"},
        {nullptr, false, "null"},
    };
    const auto cfg =
        Record("KZDEV_GENERAL_CFG", R"({"szMachineName":"not written","wLocalNo":65535})");
    for (const Case& c : cases) {
        const auto envelope = Packet("General", cfg.data(), MergedInto(c.current));
        EXPECT_EQ(envelope.result(), c.result) << (c.current ? c.current : "null");
        EXPECT_EQ(envelope.table(), ParseJson(c.table)) << (c.current ? c.current : "null");
    }
    // The device's table is taken before the record is found missing.
    const auto refused =
        Packet("General", nullptr, MergedInto(R"({"params":{"table":{"LocalNo":3}}})"));
    EXPECT_FALSE(refused.result());
    EXPECT_EQ(refused.table(), ParseJson(R"({"LocalNo":3})"));
}

TEST(General, ParseLocalNo) {
    struct Case {
        const char* table;
        int localNo;
    };
    const Case cases[] = {
        {R"({"LocalNo":0})", 7},       {R"({"LocalNo":65537})", 1},
        {R"({"LocalNo":12})", 12},     {"{}", 7},
        {R"({"MachineName":"x"})", 7}, {"[3]", 7},
    };
    for (const Case& c : cases) {
        auto record = Record("KZDEV_GENERAL_CFG", R"({"wLocalNo":7})");
        EXPECT_EQ(Parse("General", c.table, record, kMerged), 1) << c.table;
        EXPECT_EQ(View("KZDEV_GENERAL_CFG", record),
                  Expected("KZDEV_GENERAL_CFG", "{}",
                           R"({"wLocalNo":)" + std::to_string(c.localNo) + "}"))
            << c.table;
    }
    auto record = Record("KZDEV_GENERAL_CFG", "{}");
    EXPECT_THROW(Parse("General", R"({"LocalNo":-1})", record, kMerged), Json::LogicError);
}

TEST(Locales, PacketTimeFormat) {
    struct Case {
        const char* record;
        const char* table;
    };
    const Case cases[] = {
        {R"({"byDateFormat":0,"byTimeFormat":0,"bDSTEnable":1})",
         R"({"TimeFormat":"yyyy-MM-dd HH:mm:ss","DSTEnable":true})"},
        {R"({"byDateFormat":1,"byTimeFormat":5,"bDSTEnable":2})",
         R"({"TimeFormat":"MM-dd-yyyy hh:mm:ss","DSTEnable":true})"},
        {R"({"byDateFormat":2,"byTimeFormat":1})",
         R"({"TimeFormat":"dd-MM-yyyy hh:mm:ss","DSTEnable":false})"},
        {R"({"byDateFormat":9,"stDSTStart":{"nWeek":1}})",
         R"({"TimeFormat":"dd-MM-yyyy HH:mm:ss","DSTEnable":false})"},
    };
    for (const Case& c : cases) {
        const auto cfg = Record("KZDEV_LOCALES_CFG", c.record);
        EXPECT_EQ(Packet("Locales", cfg.data()).table(), ParseJson(c.table)) << c.record;
    }
}

TEST(Locales, ParseTimeFormat) {
    const std::string seed = R"({"byDateFormat":7,"byTimeFormat":7,"bDSTEnable":5,"byLanguage":3})";
    struct Case {
        const char* table;
        const char* changes;
    };
    const Case cases[] = {
        {R"({"TimeFormat":"yyyy-MM-dd hh:mm:ss"})", R"({"byDateFormat":0,"byTimeFormat":1})"},
        {R"({"TimeFormat":"dd-MM-yyyy HH:mm:ss","DSTEnable":true})",
         R"({"byDateFormat":2,"byTimeFormat":0,"bDSTEnable":1})"},
        {R"({"TimeFormat":"MM-dd-yyyy","DSTEnable":false})",
         R"({"byDateFormat":1,"bDSTEnable":0})"},
        // Substrings, searched in order and with their case.
        {R"({"TimeFormat":"MM-dd-yyyy-MM-dd hh HH"})", R"({"byDateFormat":0,"byTimeFormat":0})"},
        {R"({"TimeFormat":"YYYY-MM-DD Hh:mm"})", "{}"},
        {R"({"TimeFormat":20})", "{}"},
        {R"({"DSTStart":{"Year":2030,"Week":0},"DSTEnable":null})", "{}"},
    };
    for (const Case& c : cases) {
        auto record = Record("KZDEV_LOCALES_CFG", seed);
        EXPECT_EQ(Parse("Locales", c.table, record), 1) << c.table;
        EXPECT_EQ(View("KZDEV_LOCALES_CFG", record), Expected("KZDEV_LOCALES_CFG", seed, c.changes))
            << c.table;
    }
}

TEST(Locales, PacketDaylightSavingPointsIntoTheDeviceTable) {
    const char* current =
        R"({"params":{"table":{"TimeFormat":"yyyy-MM-dd HH:mm:ss","DSTEnable":true,
        "DSTStart":{"Year":1,"Extra":"kept"},"DSTEnd":{"Week":9}}}})";
    struct Case {
        const char* record;
        const char* table;
    };
    const Case cases[] = {
        {R"({"bDSTEnable":0,"byDateFormat":1,
             "stDSTStart":{"nYear":2024,"nMonth":3,"nHour":2,"nMinute":0,"nWeek":0,"nDay":31},
             "stDSTEnd":{"nYear":2025,"nMonth":10,"nHour":3,"nMinute":30,"nWeek":0,"nDay":27}})",
         R"({"TimeFormat":"yyyy-MM-dd HH:mm:ss","DSTEnable":true,
             "DSTStart":{"Year":2024,"Month":3,"Day":31,"Week":0,"Hour":2,"Minute":0,"Extra":"kept"},
             "DSTEnd":{"Year":2025,"Month":10,"Day":27,"Week":0,"Hour":3,"Minute":30}})"},
        // One point by week makes both by week, and both years go out as 0.
        {R"({"stDSTStart":{"nYear":2024,"nMonth":3,"nHour":2,"nMinute":0,"nWeek":0,"nDay":0},
             "stDSTEnd":{"nYear":2024,"nMonth":10,"nHour":3,"nMinute":0,"nWeek":-1,"nDay":6}})",
         R"({"TimeFormat":"yyyy-MM-dd HH:mm:ss","DSTEnable":true,
             "DSTStart":{"Year":0,"Month":3,"Day":0,"Week":0,"Hour":2,"Minute":0,"Extra":"kept"},
             "DSTEnd":{"Year":0,"Month":10,"Day":6,"Week":-1,"Hour":3,"Minute":0}})"},
    };
    for (const Case& c : cases) {
        const auto cfg = Record("KZDEV_LOCALES_CFG", c.record);
        const auto envelope = Packet("Locales", cfg.data(), MergedInto(current));
        EXPECT_TRUE(envelope.result());
        EXPECT_EQ(envelope.table(), ParseJson(c.table)) << c.record;
    }
    // A point of another shape in the device's table is left as it is.
    const auto cfg = Record("KZDEV_LOCALES_CFG", R"({"stDSTStart":{"nMonth":4}})");
    const auto envelope =
        Packet("Locales", cfg.data(), MergedInto(R"({"params":{"table":{"DSTEnd":"off"}}})"));
    EXPECT_EQ(envelope.table(), ParseJson(R"({"DSTEnd":"off",
        "DSTStart":{"Year":0,"Month":4,"Day":0,"Week":0,"Hour":0,"Minute":0}})"));
}

TEST(Locales, ParseDaylightSavingPoints) {
    const std::string seed = R"({"byDateFormat":1,
        "stDSTStart":{"nYear":2020,"nMonth":1,"nHour":1,"nMinute":1,"nWeek":3,"nDay":1},
        "stDSTEnd":{"nYear":2021,"nMonth":2,"nHour":2,"nMinute":2,"nWeek":4,"nDay":2}})";
    struct Case {
        const char* table;
        const char* changes;
    };
    const Case cases[] = {
        // By week: the weeks are stored and the years kept.
        {R"({"DSTStart":{"Week":0,"Year":2030,"Month":3,"Day":0,"Hour":2,"Minute":0},
             "DSTEnd":{"Week":2,"Year":2031,"Month":10,"Day":6,"Hour":3,"Minute":15}})",
         R"({"stDSTStart":{"nMonth":3,"nWeek":0,"nDay":0,"nHour":2,"nMinute":0},
             "stDSTEnd":{"nMonth":10,"nWeek":2,"nDay":6,"nHour":3,"nMinute":15}})"},
        // By date: the years that are integers are stored and both weeks set to 0.
        {R"({"DSTStart":{"Year":2025,"Month":"4","Day":30},"DSTEnd":{"Year":"2026","Week":0,"Minute":59},
             "TimeFormat":"yyyy-MM-dd"})",
         R"({"stDSTStart":{"nYear":2025,"nWeek":0,"nDay":30},"stDSTEnd":{"nWeek":0,"nMinute":59}})"},
        {"{}", R"({"stDSTStart":{"nWeek":0},"stDSTEnd":{"nWeek":0}})"},
    };
    for (const Case& c : cases) {
        auto record = Record("KZDEV_LOCALES_CFG", seed);
        EXPECT_EQ(Parse("Locales", c.table, record, kMerged), 1) << c.table;
        EXPECT_EQ(View("KZDEV_LOCALES_CFG", record), Expected("KZDEV_LOCALES_CFG", seed, c.changes))
            << c.table;
    }
}

TEST(Language, TheTableIsTheName) {
    struct Case {
        int index;
        const char* table;
    };
    const Case packets[] = {{0, R"("English")"},   {9, R"("Portugal")"},  {18, R"("Dansk")"},
                            {19, R"("Czechish")"}, {22, R"("Slovenia")"}, {29, R"("Vietnamese")"},
                            {37, R"("Bosnian")"},  {38, "null"},          {255, "null"}};
    for (const Case& c : packets) {
        const auto cfg =
            Record("KZDEV_LOCALES_CFG", R"({"byLanguage":)" + std::to_string(c.index) + "}");
        const auto envelope = Packet("Language", cfg.data());
        EXPECT_TRUE(envelope.result()) << c.index;
        EXPECT_EQ(envelope.table(), ParseJson(c.table)) << c.index;
    }
    const Case parses[] = {
        {0, R"("eNgLiSh")"}, {37, R"("BOSNIAN")"}, {10, R"("turkey")"}, {5, R"("Portuguese")"},
        {5, "12"},           {5, "null"},          {5, R"("English ")"}};
    for (const Case& c : parses) {
        auto record = Record("KZDEV_LOCALES_CFG", R"({"byLanguage":5})");
        EXPECT_EQ(Parse("Language", c.table, record), 1) << c.table;
        EXPECT_EQ(View("KZDEV_LOCALES_CFG", record),
                  Expected("KZDEV_LOCALES_CFG", "{}",
                           R"({"byLanguage":)" + std::to_string(c.index) + "}"))
            << c.table;
    }
    auto record = Record("KZDEV_LOCALES_CFG", "{}");
    EXPECT_THROW(Parse("Language", R"({"Language":"English"})", record), Json::LogicError);
}

TEST(AutoMaintain, RebootDayBetweenItsTwoNumberings) {
    struct Case {
        int day, hour;
        int tableDay;
    };
    const Case packets[] = {{0, 3, -1}, {1, 4, 7}, {2, 23, 0},
                            {5, 0, 3},  {8, 1, 6}, {200, 255, 198}};
    for (const Case& c : packets) {
        const auto cfg =
            Record("KZDEV_AUTOMAINTAIN_CFG", "{\"byAutoRebootDay\":" + std::to_string(c.day) +
                                                 ",\"byAutoRebootHour\":" + std::to_string(c.hour) +
                                                 ",\"byFileHoldTime\":30}");
        EXPECT_EQ(Packet("AutoMaintain", cfg.data()).table(),
                  ParseJson("{\"AutoRebootDay\":" + std::to_string(c.tableDay) +
                            ",\"AutoRebootHour\":" + std::to_string(c.hour) + "}"));
    }
    const std::string seed = R"({"byAutoRebootDay":4,"byAutoRebootHour":2,"byFileHoldTime":30})";
    struct ParseCase {
        const char* table;
        const char* changes;
    };
    const ParseCase parses[] = {
        {R"({"AutoRebootDay":7,"AutoRebootHour":5})",
         R"({"byAutoRebootDay":1,"byAutoRebootHour":5})"},
        {R"({"AutoRebootDay":3})", R"({"byAutoRebootDay":5})"},
        {R"({"AutoRebootDay":-1,"AutoRebootHour":260})",
         R"({"byAutoRebootDay":0,"byAutoRebootHour":4})"},
        {R"({"AutoRebootDay":300})", R"({"byAutoRebootDay":46})"},
        {R"({"AutoRebootDay":-2})", R"({"byAutoRebootDay":0})"},
        {R"({"AutoRebootDay":null,"FileHoldTime":1})", "{}"},
    };
    for (const ParseCase& c : parses) {
        auto record = Record("KZDEV_AUTOMAINTAIN_CFG", seed);
        EXPECT_EQ(Parse("AutoMaintain", c.table, record), 1) << c.table;
        EXPECT_EQ(View("KZDEV_AUTOMAINTAIN_CFG", record),
                  Expected("KZDEV_AUTOMAINTAIN_CFG", seed, c.changes))
            << c.table;
    }
}

}  // namespace
