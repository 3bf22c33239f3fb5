// "General", "Locales", "Language" and "AutoMaintain" through the request API.
#include "device_support.h"

#include <string>
#include <vector>

using device::ExpectPacket;
using device::ExpectParse;
using device::Request;

namespace {

constexpr Request kMerged{PROTOFIX_MODE_RECORD, 1, 0, nullptr};

Request MergedInto(const char* current) { return Request{PROTOFIX_MODE_RECORD, 1, 0, current}; }

// Text mode (except Ptz), a sub-mode other than 0 and 1 (General and Locales only) and a null
// record are refused.
TEST(DeviceSections, Refusals) {
    struct Case {
        const char *section, *type;
        Request request;
        int result;
    };
    const Request text{PROTOFIX_MODE_TEXT, 0, 0, nullptr};
    const Case cases[] = {
        {"General", "KZDEV_GENERAL_CFG", text, -1},
        {"Locales", "KZDEV_LOCALES_CFG", text, -1},
        {"Language", "KZDEV_LOCALES_CFG", text, -1},
        {"AutoMaintain", "KZDEV_AUTOMAINTAIN_CFG", text, -1},
        {"Comm", "KZDEV_COMM_CFG", text, -1},
        {"General", "KZDEV_GENERAL_CFG", {PROTOFIX_MODE_RECORD, 2, 0, "{}"}, -1},
        {"Locales", "KZDEV_LOCALES_CFG", {PROTOFIX_MODE_RECORD, -1, 0, "{}"}, -1},
        {"Language", "KZDEV_LOCALES_CFG", {PROTOFIX_MODE_RECORD, 7, 0, nullptr}, 1},
        {"AutoMaintain", "KZDEV_AUTOMAINTAIN_CFG", {PROTOFIX_MODE_RECORD, 7, 0, nullptr}, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.section);
        std::vector<unsigned char> record = view::Bytes(c.type, "{}");
        EXPECT_EQ(device::Packet(c.section, record.data(), c.request).result(), c.result == 1);
        ExpectParse(c.type, "{}", c.section, R"("English")", "{}", c.request, c.result);
        for (const Request& request : {Request{}, MergedInto(R"({"params":{"table":{}}})")}) {
            EXPECT_FALSE(device::Packet(c.section, nullptr, request).result());
            EXPECT_EQ(device::Parse(c.section, "{}", nullptr, 4096, request), -1);
        }
    }
}

TEST(General, SubModes) {
    const std::string full(64, 'n');
    ExpectPacket("KZDEV_GENERAL_CFG",
                 R"({"szMachineName":")" + full + R"(","szMachineAddress":"hall 2","wLocalNo":9})",
                 "General", R"({"MachineName":")" + full + R"(","MachineAddress":"hall 2"})");
    // Only strings are copied, cut to 63 bytes; LocalNo is not read in sub-mode 0.
    ExpectParse(
        "KZDEV_GENERAL_CFG", R"({"szMachineName":"old","szMachineAddress":"kept"})", "General",
        R"({"MachineName":")" + std::string(70, 'x') + R"(","MachineAddress":5,"LocalNo":4})",
        R"({"szMachineName":")" + std::string(63, 'x') + R"("})");

    // Sub-mode 1: the device's table is the base, taken before the record is found missing.
    const std::string cfg = R"({"szMachineName":"not written","wLocalNo":65535})";
    const char* const current = R"({"params":{"table":{"MachineName":"dvr","LocalNo":3}},"id":4})";
    ExpectPacket("KZDEV_GENERAL_CFG", cfg, "General", R"({"MachineName":"dvr","LocalNo":65535})",
                 MergedInto(current));
    ExpectPacket("KZDEV_GENERAL_CFG", cfg, "General", R"({"LocalNo":65535})",
                 MergedInto(R"({"params":{}})"));
    ExpectPacket("KZDEV_GENERAL_CFG", cfg, "General", "[1,2]",
                 MergedInto(R"({"params":{"table":[1,2]}})"));
    ExpectPacket("KZDEV_GENERAL_CFG", cfg, "General", "null", MergedInto("{"), false);
    ExpectPacket("KZDEV_GENERAL_CFG", cfg, "General", "null", MergedInto(nullptr), false);
    const auto refused = device::Packet("General", nullptr, MergedInto(current));
    EXPECT_FALSE(refused.result());
    EXPECT_EQ(refused.table(), support::ParseJson(R"({"MachineName":"dvr","LocalNo":3})"));

    // A LocalNo of 0 is kept on purpose.
    for (const auto& [table, changes] :
         {std::pair<const char*, const char*>{R"({"LocalNo":0})", "{}"},
          {R"({"LocalNo":65537})", R"({"wLocalNo":1})"},
          {"[3]", "{}"}})
        ExpectParse("KZDEV_GENERAL_CFG", R"({"wLocalNo":7})", "General", table, changes, kMerged);
    std::vector<unsigned char> record = view::Bytes("KZDEV_GENERAL_CFG", "{}");
    EXPECT_THROW(device::Parse("General", R"({"LocalNo":-1})", record.data(),
                               static_cast<int>(record.size()), kMerged),
                 Json::LogicError);
}

TEST(Locales, TimeFormat) {
    ExpectPacket("KZDEV_LOCALES_CFG", R"({"byDateFormat":0,"byTimeFormat":0,"bDSTEnable":1})",
                 "Locales", R"({"TimeFormat":"yyyy-MM-dd HH:mm:ss","DSTEnable":true})");
    ExpectPacket("KZDEV_LOCALES_CFG", R"({"byDateFormat":1,"byTimeFormat":5,"bDSTEnable":2})",
                 "Locales", R"({"TimeFormat":"MM-dd-yyyy hh:mm:ss","DSTEnable":true})");
    ExpectPacket("KZDEV_LOCALES_CFG", R"({"byDateFormat":9,"stDSTStart":{"nWeek":1}})", "Locales",
                 R"({"TimeFormat":"dd-MM-yyyy HH:mm:ss","DSTEnable":false})");
    const std::pair<const char*, const char*> cases[] = {
        {R"({"TimeFormat":"yyyy-MM-dd hh:mm:ss"})", R"({"byDateFormat":0,"byTimeFormat":1})"},
        {R"({"TimeFormat":"dd-MM-yyyy HH:mm:ss","DSTEnable":true})",
         R"({"byDateFormat":2,"byTimeFormat":0,"bDSTEnable":1})"},
        {R"({"TimeFormat":"MM-dd-yyyy","DSTEnable":false})",
         R"({"byDateFormat":1,"bDSTEnable":0})"},
        // Substrings, searched in order and with their case.
        {R"({"TimeFormat":"MM-dd-yyyy-MM-dd hh HH"})", R"({"byDateFormat":0,"byTimeFormat":0})"},
        {R"({"TimeFormat":"YYYY-MM-DD Hh:mm"})", "{}"},
        {R"({"DSTStart":{"Year":2030,"Week":0},"DSTEnable":null})", "{}"},
    };
    for (const auto& [table, changes] : cases)
        ExpectParse("KZDEV_LOCALES_CFG",
                    R"({"byDateFormat":7,"byTimeFormat":7,"bDSTEnable":5,"byLanguage":3})",
                    "Locales", table, changes);
}

TEST(Locales, DaylightSavingPoints) {
    const Request merged = MergedInto(
        R"({"params":{"table":{"DSTEnable":true,"DSTStart":{"Year":1,"X":0},"DSTEnd":{"Week":9}}}})");
    // By date, the years go out; one point by week makes both by week, and both years go out as 0.
    ExpectPacket("KZDEV_LOCALES_CFG", R"({"bDSTEnable":0,"byDateFormat":1,
        "stDSTStart":{"nYear":2024,"nMonth":3,"nHour":2,"nMinute":4,"nDay":31},
        "stDSTEnd":{"nYear":2025,"nMonth":10,"nHour":3,"nMinute":30,"nDay":27}})",
                 "Locales", R"({"DSTEnable":true,
        "DSTStart":{"Year":2024,"Month":3,"Day":31,"Week":0,"Hour":2,"Minute":4,"X":0},
        "DSTEnd":{"Year":2025,"Month":10,"Day":27,"Week":0,"Hour":3,"Minute":30}})",
                 merged);
    ExpectPacket("KZDEV_LOCALES_CFG", R"({"stDSTStart":{"nYear":2024},
        "stDSTEnd":{"nYear":2024,"nMonth":10,"nWeek":-1,"nDay":6}})",
                 "Locales", R"({"DSTEnable":true,
        "DSTStart":{"Year":0,"Month":0,"Day":0,"Week":0,"Hour":0,"Minute":0,"X":0},
        "DSTEnd":{"Year":0,"Month":10,"Day":6,"Week":-1,"Hour":0,"Minute":0}})",
                 merged);
    // A point of another shape in the device's table is left as it is.
    ExpectPacket(
        "KZDEV_LOCALES_CFG", "{}", "Locales",
        R"({"DSTEnd":"off","DSTStart":{"Year":0,"Month":0,"Day":0,"Week":0,"Hour":0,"Minute":0}})",
        MergedInto(R"({"params":{"table":{"DSTEnd":"off"}}})"));

    const std::pair<const char*, const char*> cases[] = {
        // By week: the weeks are stored and the years kept.
        {R"({"DSTStart":{"Week":0,"Year":2030,"Month":3,"Day":0,"Hour":2,"Minute":0},
             "DSTEnd":{"Week":2,"Year":2031,"Month":10,"Day":6,"Hour":3,"Minute":15}})",
         R"({"stDSTStart":{"nMonth":3,"nWeek":0,"nDay":0,"nHour":2,"nMinute":0},
             "stDSTEnd":{"nMonth":10,"nWeek":2,"nDay":6,"nHour":3,"nMinute":15}})"},
        // By date: the years that are integers are stored and both weeks set to 0.
        {R"({"DSTStart":{"Year":2025,"Month":"4","Day":30},"DSTEnd":{"Year":"2026","Minute":59},
             "TimeFormat":"yyyy-MM-dd"})",
         R"({"stDSTStart":{"nYear":2025,"nWeek":0,"nDay":30},"stDSTEnd":{"nWeek":0,"nMinute":59}})"},
    };
    for (const auto& [table, changes] : cases)
        ExpectParse("KZDEV_LOCALES_CFG", R"({"byDateFormat":1,
        "stDSTStart":{"nYear":2020,"nMonth":1,"nHour":1,"nMinute":1,"nWeek":3,"nDay":1},
        "stDSTEnd":{"nYear":2021,"nMonth":2,"nHour":2,"nMinute":2,"nWeek":4,"nDay":2}})",
                    "Locales", table, changes, kMerged);
}

// The table itself is the name; the device's spellings are kept.
TEST(Language, TheTableIsTheName) {
    for (const auto& [index, table] : {std::pair<int, const char*>{0, R"("English")"},
                                       {19, R"("Czechish")"},
                                       {37, R"("Bosnian")"},
                                       {38, "null"}})
        ExpectPacket("KZDEV_LOCALES_CFG", R"({"byLanguage":)" + std::to_string(index) + "}",
                     "Language", table);
    for (const auto& [table, changes] :
         {std::pair<const char*, const char*>{R"("eNgLiSh")", R"({"byLanguage":0})"},
          {R"("BOSNIAN")", R"({"byLanguage":37})"},
          {R"("Portuguese")", "{}"},
          {R"("English ")", "{}"}})
        ExpectParse("KZDEV_LOCALES_CFG", R"({"byLanguage":5})", "Language", table, changes);
    std::vector<unsigned char> record = view::Bytes("KZDEV_LOCALES_CFG", "{}");
    EXPECT_THROW(device::Parse("Language", R"({"Language":"English"})", record.data(),
                               static_cast<int>(record.size()), Request{}),
                 Json::LogicError);
}

TEST(AutoMaintain, RebootDayBetweenItsTwoNumberings) {
    for (const auto& [day, hour, tableDay] :
         {std::tuple<int, int, int>{0, 3, -1}, {1, 4, 7}, {2, 23, 0}, {200, 255, 198}})
        ExpectPacket("KZDEV_AUTOMAINTAIN_CFG",
                     "{\"byAutoRebootDay\":" + std::to_string(day) + ",\"byAutoRebootHour\":" +
                         std::to_string(hour) + ",\"byFileHoldTime\":30}",
                     "AutoMaintain",
                     "{\"AutoRebootDay\":" + std::to_string(tableDay) +
                         ",\"AutoRebootHour\":" + std::to_string(hour) + "}");
    const std::pair<const char*, const char*> parses[] = {
        {R"({"AutoRebootDay":7,"AutoRebootHour":5})",
         R"({"byAutoRebootDay":1,"byAutoRebootHour":5})"},
        {R"({"AutoRebootDay":3})", R"({"byAutoRebootDay":5})"},
        {R"({"AutoRebootDay":-1,"AutoRebootHour":260})",
         R"({"byAutoRebootDay":0,"byAutoRebootHour":4})"},
        {R"({"AutoRebootDay":300})", R"({"byAutoRebootDay":46})"},
        {R"({"AutoRebootDay":null,"FileHoldTime":1})", "{}"},
    };
    for (const auto& [table, changes] : parses)
        ExpectParse("KZDEV_AUTOMAINTAIN_CFG",
                    R"({"byAutoRebootDay":4,"byAutoRebootHour":2,"byFileHoldTime":30})",
                    "AutoMaintain", table, changes);
}

}  // namespace
