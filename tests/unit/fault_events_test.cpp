// "StorageNotExist", "StorageLowSpace", "StorageFailure", "NetAbort", "IPConflict" and
// "MacConflict" through the request API, in record mode and in F5 text mode.
#include "events_support.h"

#include <string>
#include <vector>

using events_support::F5Buffer;
using events_support::Patterned;
using events_support::TableOfF5;
using events_support::Written;
using support::CopyOf;
using support::Packet;
using support::Parse;
using support::ParseJson;
using support::SameBytes;
using support::Zeroed;

namespace {

using Storage = KZDEV_STORAGE_ALARM_CFG;
const std::pair<const char*, KZ_STORAGE_EVENT Storage::*> kStorageBlocks[] = {
    {"StorageNotExist", &Storage::notExist},
    {"StorageLowSpace", &Storage::lowSpace},
    {"StorageFailure", &Storage::failure},
};

// ---- record mode -------------------------------------------------------------------------------

// The other two blocks keep every byte; "LowerLimit" keeps its low 8 bits (300 -> 44) and is
// read by the low-space section only.
TEST(StorageRecordParse, EachSectionChangesOnlyItsOwnBlock) {
    const char* const table = R"({"Enable":true,"LowerLimit":300,"EventHandler":{
        "TimeSection":[["1 00:00:00-24:00:00"]],"RecordEnable":true,"RecordChannels":[4]}})";
    for (const auto& [section, block] : kStorageBlocks) {
        SCOPED_TRACE(section);
        auto cfg = Patterned<Storage>();
        auto expected = CopyOf(*cfg);
        KZ_STORAGE_EVENT& e = (*expected).*block;
        e.enable = 1;
        if (block == &Storage::lowSpace) e.lowerLimit = 44;
        e.timeSections[0][0] = {1, 0, 0, 0, 24, 0, 0};
        std::memset(e.handler.recordChannels, 0, sizeof e.handler.recordChannels);
        std::memset(e.handler.alarmOutChannels, 0, sizeof e.handler.alarmOutChannels);
        std::memset(e.handler.snapshotChannels, 0, 16);
        std::memset(e.handler.ptzLinks, 0, sizeof e.handler.ptzLinks);
        e.handler.recordChannels[4] = 1;
        e.handler.actionFlags |= EVENT_ACTION_RECORD;
        ASSERT_EQ(Parse(section, table, cfg.get()), 1);
        EXPECT_TRUE(SameBytes(*cfg, *expected));
    }
}

// Reading the time sections gives the storage table an "EventHandler", so its linkage clears run
// even when the table has none; "NetAbort" tests for the "EventHandler" first and keeps its
// linkage whole. A table that is not an object changes nothing.
TEST(FaultRecordParse, TableWithoutEventHandler) {
    auto storage = Zeroed<Storage>();
    auto netAbort = Zeroed<KZDEV_NETABORT_CFG>();
    for (KZ_MSG_HANDLE_EX* h : {&storage->failure.handler, &netAbort->handler}) {
        h->recordChannels[1] = h->alarmOutChannels[2] = h->snapshotChannels[3] = 1;
        h->snapshotChannels[20] = 1;
        h->ptzLinks[5] = {1, 9};
    }
    auto storageBefore = CopyOf(*storage);
    auto netAbortBefore = CopyOf(*netAbort);
    ASSERT_EQ(Parse("StorageFailure", "[1]", storage.get()), 1);
    ASSERT_EQ(Parse("NetAbort", "[1]", netAbort.get()), 1);
    EXPECT_TRUE(SameBytes(*storage, *storageBefore));
    EXPECT_TRUE(SameBytes(*netAbort, *netAbortBefore));

    ASSERT_EQ(Parse("StorageFailure", R"({"Enable":true})", storage.get()), 1);
    ASSERT_EQ(Parse("NetAbort", R"({"Enable":true})", netAbort.get()), 1);
    KZ_STORAGE_EVENT& expected = storageBefore->failure;
    expected.enable = netAbortBefore->enable = 1;
    expected.handler.recordChannels[1] = expected.handler.alarmOutChannels[2] = 0;
    expected.handler.snapshotChannels[3] = 0;
    expected.handler.ptzLinks[5] = {0, 0};
    EXPECT_TRUE(SameBytes(*storage, *storageBefore));
    EXPECT_TRUE(SameBytes(*netAbort, *netAbortBefore));
}

// The linkage parse always runs, on the widened record; only the first 16 channels, the words and
// the single bytes come back. The PTZ block and the bytes past the last field never change.
TEST(ConflictRecordParse, OnlyTheOlderRecordsFieldsComeBack) {
    const char* const cases[][2] = {
        {"IPConflict", R"({"EventHandler":{"RecordChannels":[2,20],"SnapshotChannels":[3,15],
            "PtzLinkEnable":false,"PtzLink":[["Preset",7,0,0,1],["Tour",2,0,0,2]],"Dejitter":5}})"},
        {"MacConflict", R"({"Enable":false})"},
    };
    for (const auto& [section, table] : cases) {
        SCOPED_TRACE(section);
        auto cfg = Patterned<KZDEV_CONFLICT_CFG>();
        cfg->handler.actionFlags = EVENT_ACTION_PTZ | EVENT_ACTION_TOUR;
        auto expected = CopyOf(*cfg);
        KZ_MSG_HANDLE& e = expected->handler;
        for (int i = 0; i < KZ_MSG_HANDLE_CHANNELS; ++i)
            e.recordChannels[i] = e.alarmOutChannels[i] = e.snapshotChannels[i] = 0;
        if (std::string(section) == "IPConflict") {
            e.recordChannels[2] = e.snapshotChannels[3] = e.snapshotChannels[15] = 1;
            e.actionFlags = EVENT_ACTION_TOUR;
            e.eventLatch = 5;
        } else {
            expected->enable = 0;
        }
        ASSERT_EQ(Parse(section, table, cfg.get()), 1);
        EXPECT_TRUE(SameBytes(*cfg, *expected));
    }
}

// ---- F5 text mode ------------------------------------------------------------------------------

// Each section reads its own member: "En" is on only at 1; "LowerLimit" is the low-space key and
// is copied whatever it holds (null when absent).
TEST(FaultTextPacket, SectionMemberBecomesTheTable) {
    const std::string f5 =
        R"({"StorageNotExist":{"En":1},"StorageLowSpace":{"En":0,"LowerLimit":15},
        "StorageFailure":{"En":2,"LowerLimit":3},"NetAbort":{"En":1},"IPConflict":{"LowerLimit":3},
        "MacConflict":{"En":1,"EventHandler":{"RecordEn":1,"Record":[{"En":0},{"En":1}]}}})";
    const std::pair<const char*, const char*> cases[] = {
        {"StorageNotExist", R"({"Enable":true})"},
        {"StorageLowSpace", R"({"Enable":false,"LowerLimit":15})"},
        {"StorageFailure", R"({"Enable":false})"},
        {"NetAbort", R"({"Enable":true})"},
        {"IPConflict", "null"},  // nothing written: the table stays as Serialize made it
    };
    for (const auto& [section, table] : cases)
        EXPECT_EQ(TableOfF5(section, f5), ParseJson(table)) << section;
    EXPECT_EQ(TableOfF5("StorageLowSpace", "{}"), ParseJson(R"({"LowerLimit":null})"));
    const Json::Value table = TableOfF5("MacConflict", f5);
    EXPECT_EQ(table["Enable"], true);
    EXPECT_EQ(table["EventHandler"]["RecordChannels"], ParseJson("[1]"));
}

// The table's keys go into the section's own member (made when the text has none); the rest of
// the text is kept. The F5 linkage of a conflict section is not held to 16 channels.
TEST(FaultTextParse, TableMergesIntoTheSectionMember) {
    const char* const old = R"({"StorageLowSpace":{"En":1,"LowerLimit":10},"NetAbort":{"En":0}})";
    const char* const table = R"({"Enable":false,"LowerLimit":300,"Name":"x"})";
    const char* const cases[][3] = {
        {"StorageLowSpace", table,
         R"({"StorageLowSpace":{"En":0,"LowerLimit":300},"NetAbort":{"En":0}})"},
        {"StorageFailure", table,
         R"({"StorageLowSpace":{"En":1,"LowerLimit":10},"NetAbort":{"En":0},"StorageFailure":{"En":0}})"},
        {"NetAbort", R"({"Enable":true})",
         R"({"StorageLowSpace":{"En":1,"LowerLimit":10},"NetAbort":{"En":1}})"},
    };
    for (const auto& [section, table, merged] : cases) {
        F5Buffer buffer(old);
        ASSERT_EQ(buffer.Merge(section, table), 1) << section;
        EXPECT_EQ(buffer.Document(), ParseJson(merged)) << section;
    }
    std::string records = R"({"En":0})";
    for (int i = 1; i < 20; ++i) records += R"(,{"En":0})";
    F5Buffer linkage(R"({"IPConflict":{"EventHandler":{"Record":[)" + records + "]}}}");
    ASSERT_EQ(linkage.Merge("IPConflict", R"({"EventHandler":{"RecordChannels":[1,17]}})"), 1);
    const Json::Value record = linkage.Document()["IPConflict"]["EventHandler"]["Record"];
    EXPECT_EQ(record[1]["En"], 1);
    EXPECT_EQ(record[17]["En"], 1);
}

// Null buffers and a merged text the buffer cannot hold are refused; a refused merge leaves the
// buffer byte for byte.
TEST(EventRefusals, BuffersAndCapacity) {
    for (const char* section :
         {"StorageNotExist", "StorageLowSpace", "StorageFailure", "NetAbort", "IPConflict",
          "MacConflict", "LossDetect", "MotionDetect", "BlindDetect"}) {
        SCOPED_TRACE(section);
        for (int mode : {PROTOFIX_MODE_RECORD, PROTOFIX_MODE_TEXT}) {
            EXPECT_FALSE(Packet(section, nullptr, mode).result()) << mode;
            EXPECT_EQ(Parse(section, "{}", nullptr, 100, mode), -1) << mode;
        }
        const std::string merged = Written(std::string(R"({"X":1,")") + section + R"(":{"En":1}})");
        for (std::size_t capacity : {merged.size() - 1, merged.size() + 2}) {
            F5Buffer buffer(R"({"X":1})", capacity);
            const std::vector<char> before = buffer.bytes;
            const bool fits = capacity > merged.size();
            EXPECT_EQ(buffer.Merge(section, R"({"Enable":true})"), fits ? 1 : -1) << capacity;
            EXPECT_EQ(fits ? buffer.Text() : std::string(), fits ? merged : std::string());
            EXPECT_TRUE(fits || buffer.bytes == before) << capacity;
        }
    }
}

}  // namespace
