// "NAS", "RemoteStorageLimit", "StorageGroup" and "StorageGlobal" through the request API.
#include "request_support.h"

#include <algorithm>
#include <string>
#include <vector>

using support::CopyOf;
using support::F5Buffer;
using support::Packet;
using support::Parse;
using support::ParseJson;
using support::SameBytes;
using support::SetText;
using support::Zeroed;

namespace {

// A record whose every field holds a value of its own.
std::unique_ptr<KZDEV_NAS_CFG> Filled() {
    auto cfg = Zeroed<KZDEV_NAS_CFG>();
    cfg->leadingWord = 0xFEEDu;
    cfg->bEnable = 0;
    SetText(cfg->szAddress, "old");
    cfg->wPort = 1;
    SetText(cfg->szDirectory, "olddir");
    SetText(cfg->szUserName, "olduser");
    SetText(cfg->szPassword, "oldpw");
    cfg->nFileLength = 5;
    cfg->nInterval = 6;
    for (auto& channel : cfg->stChnTime)
        for (auto& day : channel)
            for (KZ_NAS_TSECT& s : day) s = {{9, 1, 2, 3, 4, 5, 6}, 1, 1, 1, {7}};
    cfg->byProtocol = 2;
    cfg->reserved[1] = 0x33;
    SetText(cfg->szSubDirectory, "oldsub");
    return cfg;
}

// 7 days of 2 upload sections, all "text".
Json::Value UploadSchedule(const char* text) {
    Json::Value schedule(Json::arrayValue);
    for (int d = 0; d < KZ_WEEK_DAYS; ++d)
        for (int s = 0; s < KZ_NAS_DAY_SECTIONS; ++s) schedule[d][s] = text;
    return schedule;
}

// ---- NAS ----------------------------------------------------------------------------------------

TEST(NasPacket, KeysInTheFirstElement) {
    struct Case {
        unsigned char enable, protocol;
        const char *enableKey, *protocolWord;
    };
    const Case cases[] = {{1, 0, "true", "FTP"},
                          {2, 1, "false", "SMB"},
                          {0, 2, "false", "NFS"},
                          {1, 3, "true", "ISCSI"},
                          {1, 7, "true", "FTP"}};
    for (const Case& c : cases) {
        auto cfg = Filled();
        cfg->bEnable = c.enable;
        cfg->byProtocol = c.protocol;
        support::FillText(cfg->szAddress, 'a');  // no NUL: read to the width
        cfg->wPort = 65535;
        const Json::Value expected = ParseJson(
            std::string(R"([{"Enable":)") + c.enableKey +
            R"(,"Address":"aaaaaaaaaaaaaaaa","Port":65535,"Password":"oldpw","UserName":"olduser",)"
            R"("Directory":"olddir","Protocol":")" +
            c.protocolWord + R"(","SubDirectory":"oldsub"}])");
        const support::Envelope envelope = Packet("NAS", cfg.get());
        EXPECT_TRUE(envelope.result());
        EXPECT_EQ(envelope.table(), expected) << int(c.protocol);
    }
}

// The keys of the object, or of the array's first element; only the object gives the file limits.
TEST(NasParse, ObjectOrFirstElement) {
    const std::string keys = R"("Enable":true,"Address":"0123456789abcdefghij","Port":70000,
        "Password":"p","UserName":"u","Directory":"d","Protocol":"ISCSI","SubDirectory":"s",
        "FileLength":300,"Interval":-2)";
    const auto withKeys = [](KZDEV_NAS_CFG& e) {
        e.bEnable = 1;
        SetText(e.szAddress, "0123456789abcde");
        e.wPort = 4464;  // 70000, low 16 bits
        SetText(e.szPassword, "p");
        SetText(e.szUserName, "u");
        SetText(e.szDirectory, "d");
        e.byProtocol = 3;
        SetText(e.szSubDirectory, "s");
    };
    struct Case {
        std::string table;
        void (*change)(KZDEV_NAS_CFG&);
    };
    const Case cases[] = {
        {"{" + keys + "}",
         [](KZDEV_NAS_CFG& e) {
             e.nFileLength = 300;
             e.nInterval = -2;
         }},
        {"[{" + keys + "}, 5]", nullptr},
        {R"({"Protocol":"ftp","Enable":null,"Port":null})", nullptr},
        {R"([{"Protocol":"SMB"}])", [](KZDEV_NAS_CFG& e) { e.byProtocol = 1; }},
        {R"({"Enable":0,"Address":""})",
         [](KZDEV_NAS_CFG& e) {
             e.bEnable = 0;
             SetText(e.szAddress, "");
         }},
        {"[]", nullptr},
        {"[5]", nullptr},
        {R"("FTP")", nullptr},
        {"7", nullptr},
    };
    for (const Case& c : cases) {
        auto cfg = Filled();
        auto expected = CopyOf(*cfg);
        const bool hasKeys = c.table.find("ISCSI") != std::string::npos;
        if (hasKeys) withKeys(*expected);
        if (c.change != nullptr) c.change(*expected);
        EXPECT_EQ(Parse("NAS", c.table, cfg.get()), 1) << c.table;
        EXPECT_TRUE(SameBytes(*cfg, *expected)) << c.table;
    }
}

TEST(NasTextPacket, MembersCopiedAsTheyStand) {
    struct Case {
        const char *f5, *table;
    };
    const Case cases[] = {
        {R"({"NAS":{"En":1,"Address":"10.1.1.1","Port":21,"Password":"p","UserName":"u","Directory":"/d",
            "Protocol":3,"FileLen":5,"Interval":9,"SubDirectory":"s"}})",
         R"([{"Enable":1,"Address":"10.1.1.1","Port":21,"Password":"p","UserName":"u","Directory":"/d",
            "Protocol":"ISCSI"}])"},
        {R"({"NAS":{"En":"yes","Port":"21","Protocol":1}})",
         R"([{"Enable":"yes","Port":"21","Protocol":"SMB"}])"},
        {R"({"NAS":{"Protocol":4,"UserName":null}})", "null"},
        {R"({"NAS":{"Protocol":-1}})", "null"},
        {R"({"NAS":[{"En":1}]})", "null"},
    };
    for (const Case& c : cases) {
        const support::Envelope envelope = Packet("NAS", c.f5, PROTOFIX_MODE_TEXT);
        EXPECT_TRUE(envelope.result()) << c.f5;
        EXPECT_EQ(envelope.table(), ParseJson(c.table)) << c.f5;
    }
}

void ExpectMerges(const char* section, const char* old, const char* table, const char* merged) {
    F5Buffer buffer(old, 4096);
    ASSERT_EQ(buffer.Merge(section, table), 1) << table;
    EXPECT_EQ(buffer.Document(), ParseJson(merged)) << table;
}

TEST(NasTextParse, MergesIntoTheNasMember) {
    const char* const old =
        R"({"NAS":{"En":0,"Port":1,"Protocol":0,"FileLen":1,"ChnTime":[1]},"X":2})";
    ExpectMerges(
        "NAS", old,
        R"({"Enable":true,"Address":"a","Port":8021,"Password":"p","UserName":"u","Directory":"d",
                     "Protocol":"NFS","SubDirectory":"s","FileLength":10,"Interval":20})",
        R"({"NAS":{"En":true,"Address":"a","Port":8021,"Password":"p","UserName":"u","Directory":"d",
                     "Protocol":2,"FileLen":10,"Interval":20,"ChnTime":[1]},"X":2})");
    ExpectMerges("NAS", old, R"([{"Enable":false,"Protocol":"nfs","FileLength":10,"Interval":3}])",
                 R"({"NAS":{"En":false,"Port":1,"Protocol":0,"FileLen":1,"ChnTime":[1]},"X":2})");
    ExpectMerges("NAS", old, R"("NFS")", old);
    ExpectMerges("NAS", "{}", R"([{"Protocol":"SMB"}])", R"({"NAS":{"Protocol":1}})");
    ExpectMerges("NAS", R"({"NAS":"off"})", R"({"Enable":true})", R"({"NAS":"off"})");
}

// ---- RemoteStorageLimit -----------------------------------------------------------------------

// Each section's enable word is set in the caller's record from its flags before it is written.
TEST(RemoteStorageLimitPacket, EnableFromTheFlags) {
    auto cfg = Zeroed<KZDEV_NAS_CFG>();
    cfg->nFileLength = 1024;
    cfg->nInterval = -3;
    struct Case {
        int c, d, s;
        unsigned char flag0, flag1, flag2;
        int enableBefore, enableAfter;
        const char* text;
    };
    const Case cases[] = {
        {0, 0, 0, 0, 1, 0, 0, 1, "1 08:00:00-18:00:00"},
        {0, 0, 1, 0, 5, 0, 0, 5, "1 08:00:00-18:00:00"},
        {1, 6, 1, 1, 0, 0, 0, 1, "1 08:00:00-18:00:00"},
        {15, 3, 0, 0, 7, 2, 0, 1, "1 08:00:00-18:00:00"},
        {2, 2, 0, 0, 0, 0, 9, 0, "0 08:00:00-18:00:00"},
    };
    for (const Case& c : cases) {
        KZ_NAS_TSECT& section = cfg->stChnTime[c.c][c.d][c.s];
        section = {{c.enableBefore, 8, 0, 0, 18, 0, 0}, c.flag0, c.flag1, c.flag2, {}};
    }
    auto expected = CopyOf(*cfg);
    Json::Value table(Json::arrayValue);
    for (int ch = 0; ch < KZ_NAS_CHANNELS; ++ch)
        table[0]["Channels"][ch]["TimeSchedule"] = UploadSchedule("0 00:00:00-00:00:00");
    table[0]["FileLength"] = 1024;
    table[0]["Interval"] = -3;
    for (const Case& c : cases) {
        expected->stChnTime[c.c][c.d][c.s].stSect.enable = c.enableAfter;
        table[0]["Channels"][c.c]["TimeSchedule"][c.d][c.s] = c.text;
    }
    const support::Envelope envelope = Packet("RemoteStorageLimit", cfg.get());
    EXPECT_TRUE(envelope.result());
    EXPECT_EQ(envelope.table(), table);
    EXPECT_TRUE(SameBytes(*cfg, *expected));
}

TEST(RemoteStorageLimitParse, SchedulesFlagsAndLimits) {
    std::string twenty = R"([{"FileLength":7,"Interval":8,"Channels":[)";
    for (int c = 0; c < 20; ++c)
        twenty += std::string(c ? "," : "") + R"({"TimeSchedule":[["1 01:00:00-02:00:00"]]})";
    twenty += "]}]";
    struct Case {
        std::string table;
        int result;
        void (*change)(KZDEV_NAS_CFG&);
    };
    const Case cases[] = {
        {twenty, 1,
         [](KZDEV_NAS_CFG& e) {
             e.nFileLength = 7;
             e.nInterval = 8;
             for (auto& channel : e.stChnTime)
                 channel[0][0] = {{4, 1, 0, 0, 2, 0, 0}, 1, 0, 0, {7}};
         }},
        // Null channels are skipped; a mask of 0 clears every flag; a text that does not scan
        // still sets the flags from the enable word it leaves.
        {R"([{"Channels":[null,{"TimeSchedule":[[null,"8 03:00:00-04:00:00"],["x"]]}]}])", 1,
         [](KZDEV_NAS_CFG& e) {
             e.stChnTime[1][0][1] = {{0, 3, 0, 0, 4, 0, 0}, 0, 0, 0, {7}};
             e.stChnTime[1][1][0] = {{9, 1, 2, 3, 4, 5, 6}, 1, 0, 0, {7}};
         }},
        {R"([{"Channels":{"0":{"TimeSchedule":[["1 01:00:00-02:00:00"]]}},"FileLength":null}])", 1,
         nullptr},
        {"[]", 1, nullptr},
        {R"({"Channels":[],"FileLength":7})", -1, nullptr},
        {R"("x")", -1, nullptr},
    };
    for (const Case& c : cases) {
        auto cfg = Filled();
        auto expected = CopyOf(*cfg);
        if (c.change != nullptr) c.change(*expected);
        EXPECT_EQ(Parse("RemoteStorageLimit", c.table, cfg.get()), c.result) << c.table;
        EXPECT_TRUE(SameBytes(*cfg, *expected)) << c.table;
    }
}

// One scratch section for every entry: a member that is missing keeps the entry before's value.
TEST(RemoteStorageLimitTextPacket, DayObjectsToSchedules) {
    const char* const f5 = R"({"NAS":{"FileLen":100,"Interval":"30","ChnTime":[
        [{"En0":1,"Time0":"08:00:00-18:00:00","En1":0}, {"Time1":"01:00:00-02:00:00"}],
        null, 5]}})";
    Json::Value channel0;
    channel0["TimeSchedule"] = UploadSchedule("0 01:00:00-02:00:00");
    channel0["TimeSchedule"][0][0] = "1 08:00:00-18:00:00";
    channel0["TimeSchedule"][0][1] = "0 08:00:00-18:00:00";
    channel0["TimeSchedule"][1][0] = "0 08:00:00-18:00:00";
    Json::Value table = ParseJson(R"([{"FileLength":100,"Interval":"30"}])");
    table[0]["Channels"][0] = channel0;
    table[0]["Channels"][1] = Json::Value();  // a JSON array holds only the elements set
    table[0]["Channels"][2]["TimeSchedule"] = UploadSchedule("0 01:00:00-02:00:00");
    const support::Envelope envelope = Packet("RemoteStorageLimit", f5, PROTOFIX_MODE_TEXT);
    EXPECT_TRUE(envelope.result());
    EXPECT_EQ(envelope.table(), table);

    EXPECT_EQ(Packet("RemoteStorageLimit", R"({"NAS":{"Interval":4,"ChnTime":{"0":[]}}})",
                     PROTOFIX_MODE_TEXT)
                  .table(),
              ParseJson(R"([{"Interval":4}])"));
    EXPECT_EQ(Packet("RemoteStorageLimit", R"({"NAS":{}})", PROTOFIX_MODE_TEXT).table(),
              Json::Value());
}

// The flag is written as the table gives it (no record-type mask); a text that does not scan
// keeps the scratch section of the entry before.
TEST(RemoteStorageLimitTextParse, SchedulesToDayObjects) {
    Json::Value merged = ParseJson(R"({"NAS":{"FileLen":300,"Interval":45,"ChnTime":[[]]},"Y":0})");
    Json::Value& days = merged["NAS"]["ChnTime"][0];
    for (int d = 0; d < KZ_WEEK_DAYS; ++d)
        days[d] = ParseJson(
            R"({"En0":2,"Time0":"01:00:00-02:00:00","En1":2,"Time1":"01:00:00-02:00:00"})");
    days[0] = ParseJson(
        R"({"En0":1,"Time0":"08:00:00-18:00:00","En1":1,"Time1":"08:00:00-18:00:00","X":1})");
    days[1]["En0"] = 1;
    days[1]["Time0"] = "08:00:00-18:00:00";
    ExpectMerges(
        "RemoteStorageLimit",
        R"({"NAS":{"ChnTime":[[{"En0":0,"Time0":"00:00:00-00:00:00","X":1}]],"FileLen":1},"Y":0})",
        R"([{"Channels":[{"TimeSchedule":[["1 08:00:00-18:00:00","bad"],[5,"2 01:00:00-02:00:00"]]}],
                     "FileLength":300,"Interval":45}])",
        Json::FastWriter().write(merged).c_str());
    ExpectMerges("RemoteStorageLimit", R"({"NAS":{"FileLen":1}})",
                 R"({"Channels":[{}],"FileLength":2})", R"({"NAS":{"FileLen":1}})");
    ExpectMerges("RemoteStorageLimit", R"({"NAS":{"ChnTime":"none"}})",
                 R"([{"Channels":[{"TimeSchedule":[["1 01:00:00-02:00:00"]]}]}])",
                 R"({"NAS":{"ChnTime":"none"}})");
}

// ---- StorageGroup and StorageGlobal -----------------------------------------------------------

TEST(StorageGroup, OverWriteFlag) {
    for (const auto& [value, word] :
         {std::pair<unsigned char, const char*>{1, "true"}, {2, "false"}, {0, "false"}}) {
        auto cfg = Zeroed<KZDEV_STORAGEGROUP_CFG>();
        cfg->byOverWrite = value;
        EXPECT_EQ(Packet("StorageGroup", cfg.get()).table(),
                  ParseJson(std::string(R"([{"Name":"ReadWrite","OverWrite":)") + word + "}]"));
    }
    struct Case {
        const char* table;
        unsigned char overWrite;
    };
    const Case cases[] = {{R"({"OverWrite":true})", 1},     {R"([{"OverWrite":false}])", 0},
                          {R"({"OverWrite":1})", 5},        {R"({"OverWrite":"true"})", 5},
                          {R"([[{"OverWrite":true}]])", 5}, {"true", 5}};
    for (const Case& c : cases) {
        auto cfg = Zeroed<KZDEV_STORAGEGROUP_CFG>();
        cfg->leadingWord = 0xFFFFFFFFu;
        cfg->byOverWrite = 5;
        cfg->reserved[2] = 9;
        auto expected = CopyOf(*cfg);
        expected->byOverWrite = c.overWrite;
        EXPECT_EQ(Parse("StorageGroup", c.table, cfg.get()), 1) << c.table;
        EXPECT_TRUE(SameBytes(*cfg, *expected)) << c.table;
    }
}

TEST(StorageGlobal, FileHoldTimeOnly) {
    auto cfg = Zeroed<KZDEV_AUTOMAINTAIN_CFG>();
    cfg->leadingWord = 3;
    cfg->byAutoRebootDay = 2;
    cfg->byAutoRebootHour = 4;
    cfg->byFileHoldTime = 250;
    EXPECT_EQ(Packet("StorageGlobal", cfg.get()).table(), ParseJson(R"({"FileHoldTime":250})"));
    struct Case {
        const char* table;
        unsigned char hold;
    };
    const Case cases[] = {{R"({"FileHoldTime":300})", 44},
                          {R"({"FileHoldTime":-1})", 255},
                          {R"({"FileHoldTime":null,"AutoRebootDay":"Never"})", 250},
                          {"[30]", 250}};
    for (const Case& c : cases) {
        auto record = CopyOf(*cfg);
        auto expected = CopyOf(*cfg);
        expected->byFileHoldTime = c.hold;
        EXPECT_EQ(Parse("StorageGlobal", c.table, record.get()), 1) << c.table;
        EXPECT_TRUE(SameBytes(*record, *expected)) << c.table;
    }
}

// Record mode only for the last two; the null record is refused in every mode a section accepts.
TEST(StorageSections, RefusedRequests) {
    auto nas = Zeroed<KZDEV_NAS_CFG>();  // the largest of the records
    for (const char* section :
         {"Record", "RecordSource", "NAS", "RemoteStorageLimit", "StorageGroup", "StorageGlobal"}) {
        EXPECT_FALSE(Packet(section, nullptr).result()) << section;
        EXPECT_FALSE(Packet(section, nas.get(), 2).result()) << section;
        EXPECT_EQ(Parse(section, "[{}]", nullptr, 0), -1) << section;
        EXPECT_EQ(Parse(section, "[{}]", nas.get(), sizeof *nas, 2), -1) << section;
    }
    for (const char* section : {"Record", "RecordSource", "NAS", "RemoteStorageLimit"}) {
        EXPECT_FALSE(Packet(section, nullptr, PROTOFIX_MODE_TEXT).result()) << section;
        EXPECT_FALSE(Packet(section, "{", PROTOFIX_MODE_TEXT).result()) << section;
        EXPECT_EQ(Parse(section, "[{}]", nullptr, 64, PROTOFIX_MODE_TEXT), -1) << section;
    }
    for (const char* section : {"StorageGroup", "StorageGlobal"}) {
        EXPECT_FALSE(Packet(section, "{}", PROTOFIX_MODE_TEXT).result()) << section;
        F5Buffer buffer("{}", 64);
        const std::vector<char> before = buffer.bytes;
        EXPECT_EQ(buffer.Merge(section, R"({"OverWrite":true,"FileHoldTime":1})"), -1) << section;
        EXPECT_EQ(buffer.bytes, before) << section;
    }
    EXPECT_TRUE(SameBytes(*nas, *Zeroed<KZDEV_NAS_CFG>()));
}

}  // namespace
