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

struct StorageBlock {
    const char* section;
    KZ_STORAGE_EVENT KZDEV_STORAGE_ALARM_CFG::*block;
};
const StorageBlock kStorageBlocks[] = {
    {"StorageNotExist", &KZDEV_STORAGE_ALARM_CFG::notExist},
    {"StorageLowSpace", &KZDEV_STORAGE_ALARM_CFG::lowSpace},
    {"StorageFailure", &KZDEV_STORAGE_ALARM_CFG::failure},
};

// The table without its "EventHandler", which is returned apart.
Json::Value WithoutHandler(Json::Value table, Json::Value& handler) {
    handler = table["EventHandler"];
    table.removeMember("EventHandler");
    return table;
}

// ---- record mode -------------------------------------------------------------------------------

TEST(StorageRecordPacket, EachSectionWritesItsOwnBlock) {
    auto cfg = Zeroed<KZDEV_STORAGE_ALARM_CFG>();
    cfg->notExist.enable = 1;
    cfg->notExist.lowerLimit = 9;  // the low-space block's key only
    cfg->notExist.timeSections[0][0] = {1, 8, 0, 0, 18, 0, 0};
    cfg->notExist.handler.recordChannels[1] = 1;
    cfg->lowSpace.enable = 2;
    cfg->lowSpace.lowerLimit = 44;
    cfg->lowSpace.timeSections[0][0] = {1, 1, 2, 3, 4, 5, 6};
    cfg->lowSpace.handler.recordChannels[2] = 1;
    cfg->failure.enable = 1;
    cfg->failure.timeSections[6][5] = {0, 0, 0, 0, 24, 0, 0};
    cfg->failure.handler.recordChannels[31] = 1;
    struct Case {
        const char* section;
        const char* table;
        const char *day0, *day6;
        const char* channels;
    };
    const Case cases[] = {
        {"StorageNotExist", R"({"Enable":true})", "1 08:00:00-18:00:00", "0 00:00:00-00:00:00",
         "[1]"},
        {"StorageLowSpace", R"({"Enable":false,"LowerLimit":44})", "1 01:02:03-04:05:06",
         "0 00:00:00-00:00:00", "[2]"},
        {"StorageFailure", R"({"Enable":true})", "0 00:00:00-00:00:00", "0 00:00:00-24:00:00",
         "[31]"},
    };
    for (const Case& c : cases) {
        Json::Value handler;
        EXPECT_EQ(WithoutHandler(Packet(c.section, cfg.get()).table(), handler), ParseJson(c.table))
            << c.section;
        ASSERT_EQ(handler["TimeSection"].size(), 7u) << c.section;
        EXPECT_EQ(handler["TimeSection"][6].size(), 6u) << c.section;
        EXPECT_EQ(handler["TimeSection"][0][0], c.day0) << c.section;
        EXPECT_EQ(handler["TimeSection"][6][5], c.day6) << c.section;
        EXPECT_EQ(handler["RecordChannels"], ParseJson(c.channels)) << c.section;
    }
}

// The other two blocks keep every byte; "LowerLimit" keeps its low 8 bits (300 -> 44) and is
// read by the low-space section only.
TEST(StorageRecordParse, EachSectionChangesOnlyItsOwnBlock) {
    const char* const table = R"({"Enable":true,"LowerLimit":300,"EventHandler":{
        "TimeSection":[["1 00:00:00-24:00:00"]],"RecordEnable":true,"RecordChannels":[4]}})";
    for (const StorageBlock& own : kStorageBlocks) {
        auto cfg = Patterned<KZDEV_STORAGE_ALARM_CFG>();
        auto before = CopyOf(*cfg);
        ASSERT_EQ(Parse(own.section, table, cfg.get()), 1) << own.section;
        for (const StorageBlock& other : kStorageBlocks) {
            if (other.block != own.block) {
                EXPECT_TRUE(SameBytes((*cfg).*other.block, (*before).*other.block))
                    << own.section << " " << other.section;
            }
        }
        const KZ_STORAGE_EVENT& event = (*cfg).*own.block;
        EXPECT_EQ(event.enable, 1) << own.section;
        const bool lowSpace = own.block == &KZDEV_STORAGE_ALARM_CFG::lowSpace;
        EXPECT_EQ(event.lowerLimit, lowSpace ? 44 : ((*before).*own.block).lowerLimit)
            << own.section;
        EXPECT_TRUE(SameBytes(event.timeSections[0][0], tagKZ_TSECT{1, 0, 0, 0, 24, 0, 0}))
            << own.section;
        EXPECT_TRUE(SameBytes(event.timeSections[0][1], ((*before).*own.block).timeSections[0][1]))
            << own.section;
        const std::vector<unsigned char> channels(event.handler.recordChannels,
                                                  event.handler.recordChannels + 32);
        std::vector<unsigned char> expected(32, 0);
        expected[4] = 1;
        EXPECT_EQ(channels, expected) << own.section;
        EXPECT_NE(event.handler.actionFlags & EVENT_ACTION_RECORD, 0u) << own.section;
    }
}

// Reading the time sections gives an object table an "EventHandler", so the storage linkage runs
// with its clears even when the table has none. "NetAbort" tests for the "EventHandler" first and
// keeps its linkage whole. A table that is not an object changes nothing.
TEST(FaultRecordParse, TableWithoutEventHandler) {
    auto storage = Zeroed<KZDEV_STORAGE_ALARM_CFG>();
    auto netAbort = Zeroed<KZDEV_NETABORT_CFG>();
    for (KZ_MSG_HANDLE_EX* h : {&storage->failure.handler, &netAbort->handler}) {
        h->recordChannels[1] = h->alarmOutChannels[2] = h->snapshotChannels[3] = 1;
        h->snapshotChannels[20] = h->tourChannels[4] = 1;
        h->ptzLinks[5] = {1, 9};
        h->recordLatch = 30;
    }
    storage->failure.timeSections[1][1] = {1, 2, 3, 4, 5, 6, 7};

    auto storageBefore = CopyOf(*storage);
    auto netAbortBefore = CopyOf(*netAbort);
    for (const char* notAnObject : {"[1]", "5", "\"text\""}) {
        ASSERT_EQ(Parse("StorageFailure", notAnObject, storage.get()), 1) << notAnObject;
        ASSERT_EQ(Parse("NetAbort", notAnObject, netAbort.get()), 1) << notAnObject;
    }
    EXPECT_TRUE(SameBytes(*storage, *storageBefore));
    EXPECT_TRUE(SameBytes(*netAbort, *netAbortBefore));

    ASSERT_EQ(Parse("StorageFailure", R"({"Enable":true})", storage.get()), 1);
    ASSERT_EQ(Parse("NetAbort", R"({"Enable":true})", netAbort.get()), 1);
    KZ_STORAGE_EVENT& expected = storageBefore->failure;
    expected.enable = 1;
    expected.handler.recordChannels[1] = expected.handler.alarmOutChannels[2] = 0;
    expected.handler.snapshotChannels[3] = 0;
    expected.handler.ptzLinks[5] = {0, 0};
    EXPECT_TRUE(SameBytes(*storage, *storageBefore));
    netAbortBefore->enable = 1;
    EXPECT_TRUE(SameBytes(*netAbort, *netAbortBefore));

    ASSERT_EQ(Parse("NetAbort", R"({"EventHandler":{"RecordChannels":[7]}})", netAbort.get()), 1);
    EXPECT_EQ(netAbort->handler.recordChannels[1], 0);
    EXPECT_EQ(netAbort->handler.recordChannels[7], 1);
}

// The conflict record holds the older 16-channel linkage: its PTZ links are never written to the
// table, and channels 16 and above never come back from it.
TEST(ConflictRecordPacket, WidensTheOlderLinkageWithoutPtzLinks) {
    for (const char* section : {"IPConflict", "MacConflict"}) {
        auto cfg = Zeroed<KZDEV_CONFLICT_CFG>();
        cfg->enable = 1;
        KZ_MSG_HANDLE& h = cfg->handler;
        h.actionFlags = EVENT_ACTION_PTZ | EVENT_ACTION_RECORD;
        h.ptzLinks[2] = {KZ_PTZ_LINK_PRESET, 7};
        h.recordChannels[2] = h.recordChannels[15] = h.tourChannels[0] = 1;
        h.recordLatch = 12;
        h.attachmentType = 1;
        Json::Value handler;
        EXPECT_EQ(WithoutHandler(Packet(section, cfg.get()).table(), handler),
                  ParseJson(R"({"Enable":true})"));
        EXPECT_FALSE(handler.isMember("PtzLink")) << section;
        EXPECT_FALSE(handler.isMember("TimeSection")) << section;
        EXPECT_EQ(handler["PtzLinkEnable"], true) << section;
        EXPECT_EQ(handler["RecordEnable"], true) << section;
        EXPECT_EQ(handler["RecordChannels"], ParseJson("[2,15]")) << section;
        EXPECT_EQ(handler["RecordLatch"], 12) << section;
        EXPECT_EQ(handler["MailDetail"]["AttachmentType"], "video") << section;
        EXPECT_EQ(handler["MonitorTour"][0]["Channels"], ParseJson("[0]")) << section;
    }
}

// The linkage parse always runs, on the widened record; only the first 16 channels, the words and
// the single bytes come back. The PTZ block and the bytes past the last field never change.
TEST(ConflictRecordParse, OnlyTheOlderRecordsFieldsComeBack) {
    struct Case {
        const char* section;
        const char* table;
    };
    const Case cases[] = {
        {"IPConflict", R"({"EventHandler":{"RecordChannels":[2,20],"SnapshotChannels":[3,15],
            "PtzLinkEnable":false,"PtzLink":[["Preset",7,0,0,1],["Tour",2,0,0,2]],"Dejitter":5}})"},
        {"MacConflict", R"({"Enable":false})"},
    };
    for (const Case& c : cases) {
        auto cfg = Patterned<KZDEV_CONFLICT_CFG>();
        cfg->handler.actionFlags = EVENT_ACTION_PTZ | EVENT_ACTION_TOUR;
        auto expected = CopyOf(*cfg);
        KZ_MSG_HANDLE& e = expected->handler;
        for (int i = 0; i < KZ_MSG_HANDLE_CHANNELS; ++i)
            e.recordChannels[i] = e.alarmOutChannels[i] = e.snapshotChannels[i] = 0;
        if (std::string(c.section) == "IPConflict") {
            e.recordChannels[2] = e.snapshotChannels[3] = e.snapshotChannels[15] = 1;
            e.actionFlags = EVENT_ACTION_TOUR;
            e.eventLatch = 5;
        } else {
            expected->enable = 0;
        }
        ASSERT_EQ(Parse(c.section, c.table, cfg.get()), 1) << c.section;
        EXPECT_TRUE(SameBytes(*cfg, *expected)) << c.section;
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
    struct Case {
        const char* section;
        std::string f5;
        const char* table;
    };
    const Case cases[] = {
        {"StorageNotExist", f5, R"({"Enable":true})"},
        {"StorageLowSpace", f5, R"({"Enable":false,"LowerLimit":15})"},
        {"StorageFailure", f5, R"({"Enable":false})"},
        {"NetAbort", f5, R"({"Enable":true})"},
        {"IPConflict", f5, "null"},  // nothing written: the table stays as Serialize made it
        {"StorageLowSpace", R"({"StorageFailure":{"En":1}})", R"({"LowerLimit":null})"},
    };
    for (const Case& c : cases) {
        const support::Envelope envelope = Packet(c.section, c.f5.c_str(), PROTOFIX_MODE_TEXT);
        EXPECT_TRUE(envelope.result()) << c.section;
        EXPECT_EQ(envelope.table(), ParseJson(c.table)) << c.section;
    }
    const Json::Value table = TableOfF5("MacConflict", f5);
    EXPECT_EQ(table["Enable"], true);
    EXPECT_EQ(table["EventHandler"]["RecordEnable"], true);
    EXPECT_EQ(table["EventHandler"]["RecordChannels"], ParseJson("[1]"));
}

// The table's keys go into the section's own member (made when the text has none); the rest of
// the text is kept. A table, text or member of another kind is written again unchanged.
TEST(FaultTextParse, TableMergesIntoTheSectionMember) {
    const char* const old =
        R"({"StorageLowSpace":{"En":1,"LowerLimit":10,"X":1},"NetAbort":{"En":0}})";
    const char* const table = R"({"Enable":false,"LowerLimit":300,"Name":"x"})";
    struct Case {
        const char* section;
        const char* old;
        const char* table;
        const char* merged;
    };
    const Case cases[] = {
        {"StorageLowSpace", old, table,
         R"({"StorageLowSpace":{"En":0,"LowerLimit":300,"X":1},"NetAbort":{"En":0}})"},
        {"StorageFailure", old, table,
         R"({"StorageLowSpace":{"En":1,"LowerLimit":10,"X":1},"NetAbort":{"En":0},"StorageFailure":{"En":0}})"},
        {"NetAbort", old, R"({"Enable":true})",
         R"({"StorageLowSpace":{"En":1,"LowerLimit":10,"X":1},"NetAbort":{"En":1}})"},
        {"StorageLowSpace", old, R"({"Enable":null,"LowerLimit":null})", old},
        {"StorageLowSpace", old, "[1]", old},
        {"NetAbort", R"({"NetAbort":5})", R"({"Enable":true,"EventHandler":{}})",
         R"({"NetAbort":5})"},
        {"IPConflict", "[1,2]", R"({"Enable":true})", "[1,2]"},
        {"MacConflict", R"({"MacConflict":{"EventHandler":7}})",
         R"({"EventHandler":{"RecordEnable":true}})", R"({"MacConflict":{"EventHandler":7}})"},
    };
    for (const Case& c : cases) {
        F5Buffer buffer(c.old);
        ASSERT_EQ(buffer.Merge(c.section, c.table), 1) << c.section << c.table;
        EXPECT_EQ(buffer.Document(), ParseJson(c.merged)) << c.section << c.table;
    }
    F5Buffer linkage(
        R"({"IPConflict":{"EventHandler":{"RecordEn":0,"Record":[{"En":0},{"En":0}]}}})");
    ASSERT_EQ(linkage.Merge("IPConflict",
                            R"({"EventHandler":{"RecordEnable":true,"RecordChannels":[1,5]}})"),
              1);
    EXPECT_EQ(linkage.Document()["IPConflict"]["EventHandler"]["Record"],
              ParseJson(R"([{"En":0},{"En":1}])"));
}

// Every mode but record and text is refused, as are missing buffers, a text that does not parse
// and a merged text the buffer cannot hold; a refused merge leaves the buffer byte for byte.
TEST(EventRefusals, ModesBuffersAndCapacity) {
    for (const char* section :
         {"StorageNotExist", "StorageLowSpace", "StorageFailure", "NetAbort", "IPConflict",
          "MacConflict", "LossDetect", "MotionDetect", "BlindDetect"}) {
        auto storage = Zeroed<KZDEV_STORAGE_ALARM_CFG>();  // the largest of the records
        for (int mode : {-1, 2}) {
            EXPECT_FALSE(Packet(section, storage.get(), mode).result()) << section << mode;
            EXPECT_EQ(Parse(section, "{}", storage.get(), sizeof *storage, mode), -1)
                << section << mode;
        }
        for (int mode : {PROTOFIX_MODE_RECORD, PROTOFIX_MODE_TEXT}) {
            EXPECT_FALSE(Packet(section, nullptr, mode).result()) << section << mode;
            EXPECT_EQ(Parse(section, "{}", nullptr, 100, mode), -1) << section << mode;
        }
        EXPECT_FALSE(Packet(section, "{\"En\":", PROTOFIX_MODE_TEXT).result()) << section;
        const std::string merged = Written(std::string(R"({"X":1,")") + section + R"(":{"En":1}})");
        for (std::size_t capacity : {merged.size() - 1, std::size_t{4}}) {
            F5Buffer buffer(R"({"X":1})", capacity);
            const std::vector<char> before = buffer.bytes;
            EXPECT_EQ(buffer.Merge(section, R"({"Enable":true})"), -1) << section << capacity;
            EXPECT_EQ(buffer.bytes, before) << section << capacity;
        }
        F5Buffer fits(R"({"X":1})", merged.size() + 2);
        EXPECT_EQ(fits.Merge(section, R"({"Enable":true})"), 1) << section;
        EXPECT_EQ(fits.Text(), merged) << section;
    }
}

}  // namespace
