// Tables of the wrong shape: a key of a value that is not an object, or an element of a value that
// is not an array, reads as absent. No section throws for the shape of what a device sends.
#include "request_support.h"

#include <describe/describe.h>

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

using support::ParseJson;

// Values of another kind than the object or array that the place holds.
const char* const kWrongShapes[] = {"[]", "[1]", "5", "\"x\"", "true"};
// Values that are not of the wrong shape but an empty or absent one: they must not throw either.
const char* const kEmptyShapes[] = {"null", "{}"};

std::string Substitute(std::string text, const std::string& value) {
    return text.replace(text.find('@'), 1, value);
}

std::size_t RecordSize(const std::string& section) {
#define PROTOFIX_SECTION(name, suffix, record, modes) \
    if (section == name) return protofix::describe::kRecordSize<record>;
#include <protofix/sections.def>
    return 0;
}

// A record full of one byte, exactly sized on the heap; the Network record names two interfaces
// (the table selects them by name) and marks neither as the default.
std::vector<unsigned char> BaseRecord(const std::string& section) {
    std::vector<unsigned char> bytes(RecordSize(section), 0x11);
    if (section == "Network") {
        KZDEV_NETWORK_CFG cfg;
        std::memcpy(&cfg, bytes.data(), sizeof cfg);
        cfg.interfaceCount = 2;
        support::SetText(cfg.interfaces[0].name, "eth0");
        support::SetText(cfg.interfaces[1].name, "bond0");
        cfg.interfaces[0].isDefault = cfg.interfaces[1].isDefault = 0;
        std::memcpy(bytes.data(), &cfg, sizeof cfg);
    }
    return bytes;
}

struct Outcome {
    int result;
    std::vector<unsigned char> bytes;
};

Outcome ParseRecord(const char* section, const std::string& table) {
    const std::vector<unsigned char> base = BaseRecord(section);
    auto record = std::make_unique<unsigned char[]>(base.size());
    std::memcpy(record.get(), base.data(), base.size());
    const int result = support::Parse(section, table, record.get(), static_cast<int>(base.size()));
    return {result, std::vector<unsigned char>(record.get(), record.get() + base.size())};
}

Outcome MergeText(const char* section, const std::string& f5, const std::string& table) {
    const std::string text = Json::FastWriter().write(ParseJson(f5));
    std::vector<unsigned char> buffer(text.size() + 1024, 0);
    std::memcpy(buffer.data(), text.data(), text.size());
    const int result = support::Parse(section, table, buffer.data(),
                                      static_cast<int>(buffer.size()), PROTOFIX_MODE_TEXT);
    return {result, buffer};
}

// What a wrong shape at '@' must give: the record or F5 text left as it was, or what the same
// table gives with '@' null (the place read as absent, and the section's stated handling of that).
enum class Expect { Unchanged, AsAbsent };

struct Case {
    const char* section;
    int mode;
    const char* table;  // '@' is the place of the wrong shape
    int result;
    Expect expect;
};

// The F5 text that the text-mode cases merge into.
constexpr const char* kAlarmF5 =
    R"({"Alarm":{"En":0,"Name":"door","EventHandler":{"RecordEn":1,"Record":[{"En":1},{"En":0}],)"
    R"("PtzLinkEn":0,"PtzLink":[{"Type":"Preset","Value":3},{"Type":"None","Value":0}],)"
    R"("TourEn":1,"Tour":[{"En":1},{"En":0}]}},)"
    R"("NetAlarm":{"En":1,"EventHandler":{"TourEn":1,"Tour":[{"En":1}]}}})";

TEST(TableShapes, WrongShapesReadAsAbsent) {
    const Case cases[] = {
        {"Network", 0, "@", 1, Expect::Unchanged},
        {"Network", 0, R"({"eth0":@})", 1, Expect::Unchanged},
        {"Network", 0, R"({"bond0":@,"eth0":{}})", 1, Expect::Unchanged},
        {"Network_DNS", 0, "@", 1, Expect::Unchanged},
        {"Network_DNS", 0, R"({"eth0":@})", 1, Expect::Unchanged},
        {"Network_DNS", 0, R"({"DefaultInterface":"lan","lan":{"DnsServers":@}})", 1,
         Expect::Unchanged},
        {"RTSP", 0, "@", -1, Expect::Unchanged},
        {"Web", 0, "@", 1, Expect::Unchanged},
        {"Multicast", 0, "@", 1, Expect::Unchanged},
        {"Multicast", 0, R"({"KZII":@})", 1, Expect::Unchanged},
        {"Multicast", 0, R"({"KZII":[@]})", 1, Expect::Unchanged},
        {"IPv6", 0, "@", -1, Expect::Unchanged},
        {"IPv6", 0, R"({"Enable":true,"eth0":@})", 1, Expect::Unchanged},
        // The linkage converts from an object only: nothing of it is cleared for a value of another
        // kind, in every section of the family and on both paths.
        {"Alarm", 0, "@", 1, Expect::Unchanged},
        {"Alarm", 0, R"({"EventHandler":@})", 1, Expect::Unchanged},
        {"NetAlarm", 0, R"({"EventHandler":@})", 1, Expect::Unchanged},
        {"StorageFailure", 0, R"({"EventHandler":@})", 1, Expect::Unchanged},
        {"NetAbort", 0, R"({"EventHandler":@})", 1, Expect::Unchanged},
        {"MotionDetect", 0, R"({"EventHandler":@})", 1, Expect::Unchanged},
        {"Alarm", 0, R"({"EventHandler":{"TimeSection":@}})", 1, Expect::AsAbsent},
        {"Alarm", 0, R"({"EventHandler":{"TimeSection":[@,["1 00:00:00-23:59:59"]]}})", 1,
         Expect::AsAbsent},
        {"Alarm", 0, R"({"EventHandler":{"MailDetail":@}})", 1, Expect::AsAbsent},
        {"Alarm", 0, R"({"EventHandler":{"MonitorTour":[@]}})", 1, Expect::AsAbsent},
        {"Alarm", 0, R"({"EventHandler":{"PtzLink":@}})", 1, Expect::AsAbsent},
        {"Alarm", 0, R"({"EventHandler":{"PtzLink":[@,["Tour",2,0,0,1]]}})", 1, Expect::AsAbsent},
        {"Alarm", 1, "@", 1, Expect::Unchanged},
        {"Alarm", 1, R"({"EventHandler":@})", 1, Expect::Unchanged},
        {"NetAlarm", 1, R"({"Name":"gate","EventHandler":@})", 1, Expect::AsAbsent},
        {"StorageLowSpace", 1, R"({"EventHandler":@})", 1, Expect::Unchanged},
        {"Alarm", 1, R"({"EventHandler":{"MonitorTour":[@]}})", 1, Expect::AsAbsent},
        {"Alarm", 1, R"({"EventHandler":{"PtzLink":[@,["Tour",2,0,0,1]]}})", 1, Expect::AsAbsent},
    };
    for (const Case& c : cases) {
        const auto run = [&](const std::string& value) {
            const std::string table = Substitute(c.table, value);
            return c.mode == PROTOFIX_MODE_TEXT ? MergeText(c.section, kAlarmF5, table)
                                                : ParseRecord(c.section, table);
        };
        const Outcome untouched = c.mode == PROTOFIX_MODE_TEXT
                                      ? MergeText(c.section, kAlarmF5, "{}")
                                      : Outcome{0, BaseRecord(c.section)};
        const Outcome absent = run("null");
        for (const char* value : kWrongShapes) {
            SCOPED_TRACE(std::string(c.section) + " mode " + std::to_string(c.mode) + " " +
                         Substitute(c.table, value));
            Outcome outcome;
            ASSERT_NO_THROW(outcome = run(value));
            EXPECT_EQ(outcome.result, c.result);
            EXPECT_EQ(outcome.bytes,
                      c.expect == Expect::Unchanged ? untouched.bytes : absent.bytes);
        }
        for (const char* value : kEmptyShapes) {
            EXPECT_NO_THROW(run(value)) << Substitute(c.table, value);
        }
    }
}

// The F5 text given by the device may itself hold members of another kind: the merge writes
// nothing into them and keeps them as they are; Serialize reads them as absent.
TEST(TableShapes, F5TextOfTheWrongShape) {
    const char* const table = R"({"Enable":true,"EventHandler":{"RecordEnable":true}})";
    const char* const handlerOnly = R"({"EventHandler":{"RecordEnable":true}})";
    struct F5Case {
        const char* f5;
        const char* table;
    };
    const F5Case cases[] = {
        {"@", table},
        {R"({"Alarm":@,"Other":1})", table},
        {R"({"Alarm":{"En":1,"EventHandler":@}})", handlerOnly},
    };
    for (const F5Case& c : cases) {
        for (const char* value : kWrongShapes) {
            const std::string f5 = Substitute(c.f5, value);
            SCOPED_TRACE(f5);
            const std::string written = Json::FastWriter().write(ParseJson(f5));
            Outcome outcome;
            ASSERT_NO_THROW(outcome = MergeText("Alarm", f5, c.table));
            EXPECT_EQ(outcome.result, 1);
            EXPECT_EQ(std::string(reinterpret_cast<const char*>(outcome.bytes.data())), written);

            const support::Envelope envelope =
                support::Packet("Alarm", f5.c_str(), PROTOFIX_MODE_TEXT);
            EXPECT_TRUE(envelope.result());
            EXPECT_FALSE(envelope.table().isMember("EventHandler"));
        }
    }
}

// An interface named like another key of the table ("Hostname") is written only where the table
// holds an object: the host name stays, the other interfaces are written, nothing throws.
TEST(TableShapes, InterfaceNamedLikeAnotherKey) {
    auto cfg = support::Zeroed<KZDEV_NETWORK_CFG>();
    support::SetText(cfg->hostName, "nvr");
    cfg->interfaceCount = 2;
    support::SetText(cfg->interfaces[0].name, "Hostname");
    support::SetText(cfg->interfaces[0].ipAddress, "10.0.0.2");
    cfg->interfaces[0].isDefault = 1;
    support::SetText(cfg->interfaces[1].name, "eth0");
    support::Envelope envelope;
    ASSERT_NO_THROW(envelope = support::Packet("Network", cfg.get()));
    ASSERT_TRUE(envelope.result());
    EXPECT_EQ(envelope.table()["Hostname"], "nvr");
    EXPECT_EQ(envelope.table()["DefaultInterface"], "Hostname");
    EXPECT_TRUE(envelope.table()["eth0"].isObject());
}

// Value conversions keep the library's rules, whatever the shape rule reads as absent.
TEST(TableShapes, AbsentTableValueIsNotAnError) {
    auto rtsp = support::Zeroed<KZDEV_RTSP_CFG>();
    rtsp->port = 554;
    EXPECT_EQ(support::Parse("RTSP", R"({"port":80})", rtsp.get()), -1);
    EXPECT_EQ(support::Parse("RTSP", "[1]", rtsp.get()), -1);
    EXPECT_EQ(rtsp->port, 554);
    EXPECT_THROW(support::Parse("RTSP", R"({"Port":[1]})", rtsp.get()), Json::Exception);
}

// A text nested deeper than the parser allows is a text that does not parse: 0 for a table, -1
// with the buffer unchanged for an F5 text, never an exception.
TEST(TableShapes, NestingPastTheParsersLimitDoesNotParse) {
    const std::string deep = std::string(5000, '[') + std::string(5000, ']');
    auto rtsp = support::Zeroed<KZDEV_RTSP_CFG>();
    int result = 1;
    EXPECT_NO_THROW(result = support::Parse("RTSP", deep, rtsp.get()));
    EXPECT_EQ(result, 0);

    support::F5Buffer buffer(R"({"Alarm":)" + deep + "}", 20000);
    const std::vector<char> before = buffer.bytes;
    EXPECT_NO_THROW(result = buffer.Merge("Alarm", R"({"Enable":true})"));
    EXPECT_EQ(result, -1);
    EXPECT_EQ(buffer.bytes, before);
    EXPECT_FALSE(support::Packet("Alarm", (R"({"Alarm":)" + deep + "}").c_str(), PROTOFIX_MODE_TEXT)
                     .result());
}

}  // namespace
