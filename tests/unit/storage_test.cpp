// "NAS", "RemoteStorageLimit", "StorageGroup" and "StorageGlobal" through the request API.
#include "record_view.h"

#include <array>
#include <string>
#include <tuple>
#include <vector>

using support::CopyOf;
using support::F5Buffer;
using support::Packet;
using support::Parse;
using support::ParseJson;
using support::SameBytes;
using support::Zeroed;
using view::ExpectParse;

namespace {

const std::string kNasSeed = R"({"leadingWord":65261,"szAddress":"old","wPort":1,
    "szDirectory":"olddir","szUserName":"olduser","szPassword":"oldpw","nFileLength":5,
    "nInterval":6,"byProtocol":2,"reserved":[0,51],"szSubDirectory":"oldsub"})";

// A record whose every upload section holds flags 1, 1, 1 and a section of its own.
std::unique_ptr<KZDEV_NAS_CFG> Filled() {
    auto cfg = view::Build(VIEW_OF(KZDEV_NAS_CFG), kNasSeed);
    for (auto& channel : cfg->stChnTime)
        for (auto& day : channel)
            for (KZ_NAS_TSECT& s : day) s = {{9, 1, 2, 3, 4, 5, 6}, 1, 1, 1, {7}};
    return cfg;
}

void ExpectMerges(const char* section, const std::string& old, const char* table,
                  const std::string& merged) {
    SCOPED_TRACE(table);
    F5Buffer buffer(old, 4096);
    ASSERT_EQ(buffer.Merge(section, table), 1);
    EXPECT_EQ(buffer.Document(), ParseJson(merged));
}

// Keys in table[0]; "Enable" true only for 1; texts read to the field's width.
TEST(Nas, Packet) {
    const std::string address(16, 'a');
    for (const auto& [fields, keys] :
         {std::pair<const char*, const char*>{R"("bEnable":1,"byProtocol":3)",
                                              R"("Enable":true,"Protocol":"ISCSI")"},
          {R"("bEnable":2,"byProtocol":1)", R"("Enable":false,"Protocol":"SMB")"},
          {R"("byProtocol":2)", R"("Enable":false,"Protocol":"NFS")"},
          {R"("bEnable":1,"byProtocol":7)", R"("Enable":true,"Protocol":"FTP")"}})
        view::ExpectPacket("KZDEV_NAS_CFG", "NAS",
                           R"({"szAddress":")" + address + R"(","wPort":65535,)" + fields + "}",
                           R"([{"Address":")" + address +
                               R"(","Port":65535,"Password":"",)"
                               R"("UserName":"","Directory":"","SubDirectory":"",)" +
                               keys + "}]");
}

// The keys of the object, or of the array's first element; only the object gives the file limits.
TEST(Nas, Parse) {
    const std::string keys = R"("Enable":1,"Address":"0123456789abcdefghij","Port":70000,
        "Password":"p","UserName":"u","Directory":"d","Protocol":"ISCSI","SubDirectory":"s",
        "FileLength":300,"Interval":-2)";
    const std::string changed = R"({"bEnable":1,"szAddress":"0123456789abcde","wPort":4464,
        "szPassword":"p","szUserName":"u","szDirectory":"d","byProtocol":3,"szSubDirectory":"s")";
    const std::pair<std::string, std::string> cases[] = {
        {"{" + keys + "}", changed + R"(,"nFileLength":300,"nInterval":-2})"},
        {"[{" + keys + "}, 5]", changed + "}"},
        {R"({"Protocol":"ftp","Enable":null,"Port":null})", "{}"},
        {"[5]", "{}"},
        {"7", "{}"},
    };
    for (const auto& [table, changes] : cases)
        ExpectParse(VIEW_OF(KZDEV_NAS_CFG), kNasSeed, "NAS", table, 1, changes);
}

TEST(Nas, TextMode) {
    const std::pair<const char*, const char*> packets[] = {
        {R"({"NAS":{"En":1,"Address":"10.1.1.1","Port":"21","Password":"p","UserName":"u",
            "Directory":"/d","Protocol":3,"FileLen":5,"Interval":9,"SubDirectory":"s"}})",
         R"([{"Enable":1,"Address":"10.1.1.1","Port":"21","Password":"p","UserName":"u",
            "Directory":"/d","Protocol":"ISCSI"}])"},
        {R"({"NAS":{"Protocol":0}})", R"([{"Protocol":"FTP"}])"},
        {R"({"NAS":{"Protocol":4,"UserName":null}})", "null"},
        {R"({"NAS":{"Protocol":-1}})", "null"},
        {R"({"NAS":[{"En":1}]})", "null"},
    };
    for (const auto& [f5, table] : packets) {
        SCOPED_TRACE(f5);
        const support::Envelope envelope = Packet("NAS", f5, PROTOFIX_MODE_TEXT);
        EXPECT_TRUE(envelope.result());
        EXPECT_EQ(envelope.table(), ParseJson(table));
    }
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
    ExpectMerges("NAS", R"({"NAS":"off"})", R"({"Enable":true})", R"({"NAS":"off"})");
}

// Each section's enable word is set in the caller's record from its flags before it is written:
// 1 for a flag0 or flag2, else flag1 (0 clears it).
TEST(RemoteStorageLimit, PacketSetsTheEnableFromTheFlags) {
    auto cfg = view::Build(VIEW_OF(KZDEV_NAS_CFG), R"({"nFileLength":1024,"nInterval":-3})");
    auto expected = CopyOf(*cfg);
    Json::Value table = ParseJson(R"([{"FileLength":1024,"Interval":-3}])");
    for (int ch = 0; ch < KZ_NAS_CHANNELS; ++ch)
        for (int d = 0; d < KZ_WEEK_DAYS; ++d)
            for (int s = 0; s < KZ_NAS_DAY_SECTIONS; ++s)
                table[0]["Channels"][ch]["TimeSchedule"][d][s] = "0 00:00:00-00:00:00";
    for (const auto& [c, d, s, f0, f1, f2, enable] : {std::array<int, 7>{0, 0, 0, 0, 1, 0, 1},
                                                      {0, 0, 1, 0, 5, 0, 5},
                                                      {1, 6, 1, 1, 0, 0, 1},
                                                      {15, 3, 0, 0, 7, 2, 1},
                                                      {2, 2, 0, 0, 0, 0, 0}}) {
        const auto flag = [](int f) { return static_cast<unsigned char>(f); };
        cfg->stChnTime[c][d][s] = {{9, 8, 0, 0, 18, 0, 0}, flag(f0), flag(f1), flag(f2), {}};
        expected->stChnTime[c][d][s] = cfg->stChnTime[c][d][s];
        expected->stChnTime[c][d][s].stSect.enable = enable;
        table[0]["Channels"][c]["TimeSchedule"][d][s] =
            enable ? "1 08:00:00-18:00:00" : "0 08:00:00-18:00:00";
    }
    EXPECT_EQ(Packet("RemoteStorageLimit", cfg.get()).table(), table);
    EXPECT_TRUE(SameBytes(*cfg, *expected));
}

TEST(RemoteStorageLimit, Parse) {
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
        {R"({"Channels":[],"FileLength":7})", -1, nullptr},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.table);
        auto cfg = Filled();
        auto expected = CopyOf(*cfg);
        if (c.change != nullptr) c.change(*expected);
        EXPECT_EQ(Parse("RemoteStorageLimit", c.table, cfg.get()), c.result);
        EXPECT_TRUE(SameBytes(*cfg, *expected));
    }
}

// One scratch section for every entry: a member or an entry that is missing keeps the value of
// the entry before, and a channel that is not null is written even when it is not an array.
TEST(RemoteStorageLimit, TextPacket) {
    Json::Value table =
        ParseJson(R"([{"FileLength":100,"Interval":"30","Channels":[{},null,{}]}])");
    for (int c : {0, 2})
        for (int d = 0; d < KZ_WEEK_DAYS; ++d)
            for (int s = 0; s < KZ_NAS_DAY_SECTIONS; ++s)
                table[0]["Channels"][c]["TimeSchedule"][d][s] = "0 08:00:00-18:00:00";
    table[0]["Channels"][0]["TimeSchedule"][0][0] = "1 08:00:00-18:00:00";
    const char* const f5 = R"({"NAS":{"FileLen":100,"Interval":"30","ChnTime":[
        [{"En0":1,"Time0":"08:00:00-18:00:00","En1":0}], null, 5]}})";
    EXPECT_EQ(Packet("RemoteStorageLimit", f5, PROTOFIX_MODE_TEXT).table(), table);
    EXPECT_EQ(Packet("RemoteStorageLimit", R"({"NAS":{"Interval":4,"ChnTime":{"0":[]}}})",
                     PROTOFIX_MODE_TEXT)
                  .table(),
              ParseJson(R"([{"Interval":4}])"));
}

// The flag is written as the table gives it (no mask); a text that does not scan, or an entry
// that is missing, keeps the scratch section of the entry before.
TEST(RemoteStorageLimit, TextParse) {
    Json::Value merged = ParseJson(R"({"NAS":{"FileLen":300,"Interval":45,"ChnTime":[[]]},"Y":0})");
    for (int d = 0; d < KZ_WEEK_DAYS; ++d)
        merged["NAS"]["ChnTime"][0][d] = ParseJson(
            R"({"En0":2,"Time0":"08:00:00-18:00:00","En1":2,"Time1":"08:00:00-18:00:00"})");
    merged["NAS"]["ChnTime"][0][0]["X"] = 1;
    ExpectMerges("RemoteStorageLimit",
                 R"({"NAS":{"ChnTime":[[{"En0":0,"X":1}]],"FileLen":1},"Y":0})",
                 R"([{"Channels":[{"TimeSchedule":[["2 08:00:00-18:00:00","bad"]]}],
                     "FileLength":300,"Interval":45}])",
                 Json::FastWriter().write(merged));
    ExpectMerges("RemoteStorageLimit", R"({"NAS":{"ChnTime":"none"}})",
                 R"([{"Channels":[{"TimeSchedule":[["1 01:00:00-02:00:00"]]}]}])",
                 R"({"NAS":{"ChnTime":"none"}})");
}

TEST(StorageGroupAndGlobal, OneFieldEach) {
    for (const auto& [value, word] : {std::pair<int, const char*>{1, "true"}, {2, "false"}}) {
        const auto cfg = view::Build(VIEW_OF(KZDEV_STORAGEGROUP_CFG),
                                     R"({"byOverWrite":)" + std::to_string(value) + "}");
        EXPECT_EQ(Packet("StorageGroup", cfg.get()).table(),
                  ParseJson(std::string(R"([{"Name":"ReadWrite","OverWrite":)") + word + "}]"));
    }
    const std::string group = R"({"leadingWord":4294967295,"byOverWrite":5,"reserved":[0,0,9]})";
    const std::pair<const char*, const char*> groups[] = {
        {R"({"OverWrite":true})", R"({"byOverWrite":1})"},
        {R"([{"OverWrite":false}])", R"({"byOverWrite":0})"},
        {R"({"OverWrite":1})", "{}"},
        {R"([[{"OverWrite":true}]])", "{}"},
        {"true", "{}"}};
    for (const auto& [table, changes] : groups)
        ExpectParse(VIEW_OF(KZDEV_STORAGEGROUP_CFG), group, "StorageGroup", table, 1, changes);

    const std::string global = R"({"leadingWord":3,"byAutoRebootDay":2,"byFileHoldTime":250})";
    EXPECT_EQ(
        Packet("StorageGlobal", view::Build(VIEW_OF(KZDEV_AUTOMAINTAIN_CFG), global).get()).table(),
        ParseJson(R"({"FileHoldTime":250})"));
    const std::pair<const char*, const char*> globals[] = {
        {R"({"FileHoldTime":300,"AutoRebootDay":7})", R"({"byFileHoldTime":44})"},
        {R"({"FileHoldTime":null})", "{}"}};
    for (const auto& [table, changes] : globals)
        ExpectParse(VIEW_OF(KZDEV_AUTOMAINTAIN_CFG), global, "StorageGlobal", table, 1, changes);
}

// A null record or text is refused in every mode a section takes; the last two take no text mode.
TEST(StorageSections, Refusals) {
    for (const char* section :
         {"Record", "RecordSource", "NAS", "RemoteStorageLimit", "StorageGroup", "StorageGlobal"}) {
        SCOPED_TRACE(section);
        EXPECT_FALSE(Packet(section, nullptr).result());
        EXPECT_EQ(Parse(section, "[{}]", nullptr, 0), -1);
        const bool text = section[0] == 'R' || section[0] == 'N';
        EXPECT_FALSE(Packet(section, text ? nullptr : "{}", PROTOFIX_MODE_TEXT).result());
        EXPECT_FALSE(Packet(section, "{", PROTOFIX_MODE_TEXT).result());
        EXPECT_EQ(Parse(section, "[{}]", nullptr, 64, PROTOFIX_MODE_TEXT), -1);
        F5Buffer buffer(text ? "{" : "{}", 64);
        const std::vector<char> before = buffer.bytes;
        EXPECT_EQ(buffer.Merge(section, R"([{"OverWrite":true,"FileHoldTime":1}])"), -1);
        EXPECT_EQ(buffer.bytes, before);
    }
}

}  // namespace
