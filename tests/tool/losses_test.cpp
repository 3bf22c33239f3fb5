// Every loss the tool reports for the examples is confirmed by reading the merged F5 text back
// through the library itself: the value given does not come back there.
#include "commands.h"
#include "section_table.h"

#include <protofix/protofix.h>

#include <gtest/gtest.h>
#include <json/json.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

namespace {

using protofix::tool::Job;

std::string Slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

Json::Value Parse(const std::string& text) {
    Json::Value value;
    EXPECT_TRUE(Json::Reader().parse(text, value, false)) << text.substr(0, 80);
    return value;
}

std::string Example(const protofix::tool::Section& section, const char* kind) {
    return Slurp(std::string(PROTOFIX_EXAMPLES_DIR) + "/" +
                 protofix::tool::ExampleFile(section, kind));
}

// Through the library alone: the table merged into the F5 text, in a buffer of exact size on the
// heap, and the table that the merged text gives.
struct MergedBack {
    std::string merged;
    Json::Value table;
};

MergedBack MergeAndRead(const char* section, const std::string& table, const std::string& f5) {
    const std::size_t capacity = 4 * (f5.size() + table.size()) + 4096;
    auto buffer = std::make_unique<char[]>(capacity);
    std::memset(buffer.get(), 0, capacity);
    std::memcpy(buffer.get(), f5.c_str(), f5.size() + 1);
    PROTOCOL_FIX_INFO info;
    std::memset(&info, 0, sizeof info);
    info.mode = PROTOFIX_MODE_TEXT;
    info.name = section;
    info.output = buffer.get();
    info.outputLength = static_cast<int>(capacity);
    CReqConfigProtocolFix merge;
    merge.SetRequestInfo(info);
    EXPECT_EQ(merge.Deserialize(table.c_str(), 0), 1) << section;
    MergedBack back;
    back.merged = std::string(buffer.get(), strnlen(buffer.get(), capacity));
    info.input = back.merged.data();
    CReqConfigProtocolFix packet;
    packet.SetRequestInfo(info);
    int length = 0;
    const char* envelope = packet.Serialize(length);
    back.table = Parse(envelope)["params"]["table"];
    return back;
}

// The value at a path of member names and indices; null when it is not there.
Json::Value At(const Json::Value& value, const Json::Value& path) {
    const Json::Value* at = &value;
    for (const Json::Value& step : path) {
        if (step.isString() && at->isObject() && at->isMember(step.asString())) {
            at = &(*at)[step.asString()];
        } else if (step.isUInt() && at->isArray() && step.asUInt() < at->size()) {
            at = &(*at)[step.asUInt()];
        } else {
            return Json::Value();
        }
    }
    return *at;
}

// The PTZ link of a channel in a table given back: [type, value] of the entry that names the
// channel, or of the entry at that index when it names none.
Json::Value LinkOn(const Json::Value& links, int channel) {
    for (Json::ArrayIndex i = 0; i < links.size(); ++i) {
        const Json::Value& entry = links[i];
        const int named = entry.size() >= 5 ? entry[4].asInt() : static_cast<int>(i);
        if (named == channel && entry[0].asString() != "None") return entry;
    }
    return Json::Value();
}

bool DiffersBack(const Json::Value& before, const Json::Value& back, const Json::Value& path) {
    const bool link = path.size() >= 2 && path[path.size() - 2].asString() == "PtzLink";
    if (link) {
        Json::Value list = path;
        list.resize(path.size() - 1);
        const Json::Value entry = LinkOn(At(back, list), before[4].asInt());
        return entry.isNull() || entry[0] != before[0] || entry[1].asInt() != before[1].asInt();
    }
    const Json::Value after = At(back, path);
    if (after.isNull()) return true;
    if (before.isNumeric() && after.isNumeric()) return before.asDouble() != after.asDouble();
    return Json::FastWriter().write(before) != Json::FastWriter().write(after);
}

Job RoundtripJob(const protofix::tool::Section& section, const std::string& table,
                 const std::string& f5) {
    Job job;
    job.command = protofix::tool::Command::kRoundtrip;
    job.section = section.name;
    if (!table.empty()) job.input = {"table", table};
    job.f5 = {"f5", f5};
    job.json = true;
    return job;
}

void ExpectOnlyRealLosses(const protofix::tool::Section& section, const std::string& table,
                          const std::string& f5) {
    protofix::tool::Knowledge knowledge;
    const protofix::tool::Result result =
        protofix::tool::RunJob(RoundtripJob(section, table, f5), knowledge);
    ASSERT_TRUE(result.output.isArray()) << section.name << ": " << result.error;
    const Json::Value given = Parse(table);
    const MergedBack back = MergeAndRead(section.name, Json::FastWriter().write(given), f5);
    for (const Json::Value& loss : result.output) {
        const Json::Value& path = loss["path"];
        SCOPED_TRACE(std::string(section.name) + " " + Json::FastWriter().write(path));
        EXPECT_EQ(At(given, path), loss["before"]);
        EXPECT_TRUE(DiffersBack(loss["before"], back.table, path));
    }
}

TEST(ToolLosses, EveryReportedLossOfAnExampleIsReal) {
    int sections = 0;
    for (const auto* s = protofix::tool::SectionsBegin(); s != protofix::tool::SectionsEnd(); ++s) {
        if (!s->AcceptsText()) continue;
        ++sections;
        ExpectOnlyRealLosses(*s, Example(*s, "table"), Example(*s, "f5"));
    }
    EXPECT_EQ(sections, 21);
}

TEST(ToolLosses, TheAlarmChangeKeepsItsPtzLink) {
    const auto* alarm = protofix::tool::FindSection("Alarm");
    const std::string change = Slurp(std::string(PROTOFIX_EXAMPLES_DIR) + "/alarm.change.json");
    ExpectOnlyRealLosses(*alarm, change, Example(*alarm, "f5"));
    protofix::tool::Knowledge knowledge;
    const protofix::tool::Result result =
        protofix::tool::RunJob(RoundtripJob(*alarm, change, Example(*alarm, "f5")), knowledge);
    for (const Json::Value& loss : result.output) {
        EXPECT_NE(loss["path"][1].asString(), "PtzLink") << Json::FastWriter().write(loss);
    }
}

// The old text alone: each value said to come back otherwise does, through the library.
TEST(ToolLosses, EveryLossOfAnF5TextAloneIsReal) {
    for (const auto* s = protofix::tool::SectionsBegin(); s != protofix::tool::SectionsEnd(); ++s) {
        if (!s->AcceptsText()) continue;
        const std::string f5 = Example(*s, "f5");
        protofix::tool::Knowledge knowledge;
        const protofix::tool::Result result =
            protofix::tool::RunJob(RoundtripJob(*s, "", f5), knowledge);
        ASSERT_TRUE(result.output.isArray()) << s->name << ": " << result.error;
        PROTOCOL_FIX_INFO info;
        std::memset(&info, 0, sizeof info);
        info.mode = PROTOFIX_MODE_TEXT;
        info.name = s->name;
        std::string input = f5;
        info.input = input.data();
        CReqConfigProtocolFix packet;
        packet.SetRequestInfo(info);
        int length = 0;
        const Json::Value table = Parse(packet.Serialize(length))["params"]["table"];
        const Json::Value merged =
            Parse(MergeAndRead(s->name, Json::FastWriter().write(table), f5).merged);
        const Json::Value old = Parse(f5);
        for (const Json::Value& loss : result.output) {
            SCOPED_TRACE(std::string(s->name) + " " + Json::FastWriter().write(loss["path"]));
            EXPECT_EQ(At(old, loss["path"]), loss["before"]);
            EXPECT_TRUE(DiffersBack(loss["before"], merged, loss["path"]));
        }
    }
}

// Record's flags 1, 2 and 6 come back as 4: the tool names them.
TEST(ToolLosses, RecordFlagsComeBackAsFour) {
    const auto* record = protofix::tool::FindSection("Record");
    const std::string f5 =
        R"({"Record":{"PreRec":4,"TimeSection":[["1 08:00:00-18:00:00","2 00:00:00-01:00:00",)"
        R"("6 01:00:00-02:00:00","4 02:00:00-03:00:00","0 00:00:00-24:00:00","0 00:00:00-24:00:00"]]}})";
    protofix::tool::Knowledge knowledge;
    const protofix::tool::Result result =
        protofix::tool::RunJob(RoundtripJob(*record, "", f5), knowledge);
    EXPECT_EQ(result.status, protofix::tool::kRefused);
    std::vector<std::string> changed;
    for (const Json::Value& loss : result.output) {
        if (loss["path"][1].asString() != "TimeSection") continue;
        changed.push_back(loss["before"].asString());
        EXPECT_EQ(loss["after"].asString().substr(0, 2), "4 ");
    }
    EXPECT_EQ(changed, (std::vector<std::string>{"1 08:00:00-18:00:00", "2 00:00:00-01:00:00",
                                                 "6 01:00:00-02:00:00"}));
}

}  // namespace
