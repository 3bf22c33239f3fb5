// "DDNS", "AccessFilter", "Email", "AlarmServer", "PPPoE" and "NTP" through the request API, on
// records at their exact size on the heap.
#include "record_view.h"
#include "request_support.h"

#include <string>
#include <vector>

using support::Packet;
using support::Parse;
using view::ExpectParse;

namespace {

// Every section of the family refuses the text mode and a null record, in both directions, before
// it writes anything.
TEST(NetworkFamily, RefusesTextModeAndNullRecords) {
    std::vector<unsigned char> record(20000, 0x41);
    const std::vector<unsigned char> before = record;
    for (const char* name : {"Network", "Network_DNS", "RTSP", "Web", "Multicast", "IPv6", "DDNS",
                             "AccessFilter", "Email", "AlarmServer", "PPPoE", "NTP", "DVRIP_NET",
                             "DVRIP_REGISTER", "DVRIP_TRANS", "RemoteDevice", "WLan"}) {
        for (const auto& [output, mode] : {std::pair<void*, int>{record.data(), 1}, {nullptr, 0}}) {
            SCOPED_TRACE(std::string(name) + " mode " + std::to_string(mode));
            const support::Envelope envelope = Packet(name, output, mode);
            EXPECT_TRUE(!envelope.result() && envelope.table().isNull());
            EXPECT_EQ(Parse(name, R"({"Enable":true,"Port":1,"StreamPolicy":"Quality","wlan0":{}})",
                            output, 20000, mode),
                      -1);
        }
    }
    EXPECT_EQ(record, before);
}

TEST(NetworkServices, PacketWritesTheDeviceTable) {
    const std::string k64u(64, 'u'), k64p(64, 'p'), r128(128, 'r');
    const std::string ntp = R"({"ipAddress":"1.1.1.1","domainName":"pool","addressType":)";
    const std::string cases[][4] = {
        {"KZDEV_MULTI_DDNS_CFG", "DDNS", "{}", "null"},
        // The old provider name (whole), minutes of keep-alive rounded down (unsigned), the user
        // name and the password read on into the fields after them with the width of a host name.
        {"KZDEV_MULTI_DDNS_CFG", "DDNS",
         R"({"serverCount":3,"servers":[{"keepAlive":-60,"protocol":"TORVA DDNS2"},
             {"protocol":"torva ddns","keepAlive":119,"defaultHostNameInUse":1,"defaultHostName":"d"},
             {"enable":2,"protocol":")" +
             std::string(32, 'P') + R"(","address":")" + std::string(256, 'a') +
             R"(","userName":")" + k64u + R"(","password":")" + k64p + R"(","keepAlive":1094795585,
             "defaultHostNameInUse":2,"defaultHostName":"unused"}]})",
         R"([{"Protocol":"TORVA DDNS2","KeepAlive":71582787},
             {"Protocol":"KZDDNS","KeepAlive":1,"DefaultHostName":{"Enable":true,"HostName":"d"}},
             {"Enable":false,"Protocol":")" +
             std::string(32, 'P') + R"(","Address":")" + std::string(256, 'a') +
             R"(","UserName":")" + k64u + k64p + R"(AAAA\u0002unused","Password":")" + k64p +
             R"(AAAA\u0002unused","KeepAlive":18246593,
             "DefaultHostName":{"Enable":false,"HostName":""}}])"},
        {"KZDEV_IPIFILTER_CFG", "AccessFilter",
         R"({"listType":1,"bannedCount":1,"bannedAddresses":["1111111111111111"]})",
         R"({"Type":"BannedList","TrustList":[],"BannedList":["1111111111111111"]})"},
        {"KZDEV_IPIFILTER_CFG", "AccessFilter", R"({"enable":2,"listType":2})",
         R"({"Enable":false,"Type":null,"TrustList":[],"BannedList":[]})"},
        // Only the receivers that are set; a full third one reads on into the title.
        {"KZDEV_MAIL_CFG", "Email",
         R"({"secureMode":1,"receivers":["","b@x",")" + r128 + R"("],"title":"T",
             "anonymous":1,"enable":2,"sendInterval":65535})",
         R"({"Enable":false,"SslEnable":true,"TlsEnable":false,"Anonymous":true,
             "Receivers":[null,"b@x",")" +
             r128 + R"(T"],"SendInterv":65535})"},
        {"KZDEV_NET_CFG", "PPPoE",
         R"({"pppoeEnable":2,"pppoePassword":")" + k64p.substr(32) + R"("})",
         R"({"Enable":false,"Password":")" + k64p.substr(32) + R"("})"},
        {"KZDEV_NTP_CFG", "NTP", ntp + "1}", R"({"Address":"pool"})"},
        {"KZDEV_NTP_CFG", "NTP", ntp + "2}", R"({"Address":""})"},
    };
    for (const auto& c : cases) view::ExpectPacketHas(c[0].c_str(), c[1].c_str(), c[2], c[3]);
}

TEST(NetworkServices, ListsStopAtTheRecordsCapacity) {
    auto ddns = support::Zeroed<KZDEV_MULTI_DDNS_CFG>();
    ddns->serverCount = 12;
    EXPECT_EQ(Packet("DDNS", ddns.get()).table().size(), 10u);

    auto filter = support::Zeroed<KZDEV_IPIFILTER_CFG>();
    filter->trustedCount = 600;
    support::SetText(filter->trustedAddresses[511], "10.0.1.255");
    const Json::Value table = Packet("AccessFilter", filter.get()).table();
    ASSERT_EQ(table["TrustList"].size(), 512u);
    EXPECT_EQ(table["TrustList"][511], "10.0.1.255");

    Json::Value in;
    for (int k = 0; k < 600; ++k)
        in["BannedList"][k] = "10.0." + std::to_string(k / 256) + "." + std::to_string(k % 256);
    ASSERT_EQ(Parse("AccessFilter", Json::FastWriter().write(in), filter.get()), 1);
    EXPECT_EQ(filter->bannedCount, 512u);
    EXPECT_EQ(support::TextOf(filter->bannedAddresses[511]), "10.0.1.255");
    EXPECT_EQ(filter->trustedCount, 0u);
}

// ReportWeekDay in the other day numbering; days outside 0 to 8 write none.
TEST(AlarmServer, ReportDayBothWays) {
    const int packets[][3] = {{0, 3, -1}, {1, 0, -1}, {1, 1, 7},   {1, 2, 0},
                              {1, 8, 6},  {1, 9, 99}, {1, -1, 99}, {2, 5, 3}};  // 99: none
    for (const auto& [reportEnable, reportDay, weekDay] : packets) {
        auto cfg = support::Zeroed<KZDEV_ALARMCENTER_CFG>();
        cfg->reportEnable = reportEnable;
        cfg->reportDay = reportDay;
        cfg->reportHour = -1;  // the hour is signed: "%d:0:0"
        const Json::Value table = Packet("AlarmServer", cfg.get()).table();
        EXPECT_EQ(table.get("ReportWeekDay", 99).asInt(), weekDay) << reportEnable << reportDay;
        EXPECT_EQ(table["ReportTime"], "-1:0:0");
    }

    const std::string seed =
        R"({"port":1,"address":"old","reportEnable":1,"reportDay":5,"reportHour":6})";
    const char* parses[][2] = {
        {R"({"ReportWeekDay":-1})", R"({"reportEnable":0,"reportDay":0})"},
        {R"({"ReportWeekDay":7})", R"({"reportEnable":1,"reportDay":1})"},
        {R"({"ReportWeekDay":9})", R"({"reportEnable":1,"reportDay":11})"},
        {R"({"ReportWeekDay":0,"ReportTime":"8:30:00"})", R"({"reportDay":2,"reportHour":8})"},
        {R"({"ReportWeekDay":6,"ReportTime":"08:30"})", R"({"reportDay":8})"},
        {R"({"ReportTime":8})", "{}"},
        {R"({"Address":"192.168.100.200.1","Port":65536})",
         R"({"address":"192.168.100.200","port":0})"},
    };
    for (const auto& c : parses)
        ExpectParse(VIEW_OF(KZDEV_ALARMCENTER_CFG), seed, "AlarmServer", c[0], 1, c[1]);
}

TEST(Ddns, ParseKeepsTheDevicesBoundsAndClears) {
    const std::string seed = R"({"serverCount":3,"servers":[{"userName":"uuuuuuuu","password":")" +
                             std::string(40, 'p') + R"(","defaultHostNameInUse":1,
                             "defaultHostName":")" +
                             std::string(30, 'h') + R"(","keepAlive":5},{},{}]})";
    std::string table = R"([{"UserName":"ab","Password":"xy","KeepAlive":2,"Protocol":"Torva DDNS",
        "DefaultHostName":{"Enable":false,"HostName":"ignored"}},null,{"Password":")" +
                        std::string(40, 'q') + R"("},
        {"DefaultHostName":{"Enable":true,"HostName":")" +
                        std::string(70, 'x') + R"("}},{"KeepAlive":-1})";
    for (int i = 5; i < 12; ++i) table += R"(,{"Port":)" + std::to_string(i) + "}";
    table += "]";
    const auto cfg = ExpectParse(
        VIEW_OF(KZDEV_MULTI_DDNS_CFG), seed, "DDNS", table, 1,
        R"({"serverCount":10,"servers":[{"userName":"ab","password":"xy","keepAlive":120,
            "protocol":"KZDDNS","defaultHostNameInUse":0,"defaultHostName":""},{},
            {"password":")" +
            std::string(31, 'q') + R"("},{"defaultHostNameInUse":1,"defaultHostName":")" +
            std::string(59, 'x') + R"("},{"keepAlive":-60},
            {"port":5},{"port":6},{"port":7},{"port":8},{"port":9}]})");
    // The user name is written over, the password's first 16 bytes and the default host name's
    // first 16 bytes are cleared: what lies after them stays.
    const KZ_DDNS_SERVER& s = cfg->servers[0];
    EXPECT_EQ(std::string(s.userName, 8), std::string("ab\0uuuuu", 8));
    EXPECT_EQ(std::string(s.password, 40),
              std::string("xy") + std::string(14, '\0') + std::string(24, 'p'));
    EXPECT_EQ(std::string(s.defaultHostName, 30), std::string(16, '\0') + std::string(14, 'h'));
    // An object is not a list, whatever its size.
    ExpectParse(VIEW_OF(KZDEV_MULTI_DDNS_CFG), seed, "DDNS", R"({"0":{"Port":1}})", 1,
                R"({"serverCount":0})");
}

TEST(AccessFilter, ParseResetsBothCounts) {
    const std::string seed = R"({"listType":1,"bannedCount":2,"bannedAddresses":["1.1.1.1","2"],
        "trustedCount":3,"trustedAddresses":["3.3.3.3","4.4.4.4","5.5.5.5"]})";
    const char* cases[][2] = {
        {"{}", R"({"trustedCount":0,"bannedCount":0})"},
        {R"({"Type":"trustlist","TrustList":["9.9.9.9",7,"10.10.10.10.10.10"]})",
         R"({"listType":0,"trustedCount":3,"bannedCount":0,
             "trustedAddresses":["9.9.9.9","4.4.4.4","10.10.10.10.10."]})"},
        {R"({"Type":"Other","BannedList":"1.2.3.4"})", R"({"trustedCount":0,"bannedCount":0})"},
        {R"({"Type":"BANNEDLIST","BannedList":["6.6.6.6"]})",
         R"({"trustedCount":0,"bannedCount":1,"bannedAddresses":["6.6.6.6"]})"},
    };
    for (const auto& c : cases)
        ExpectParse(VIEW_OF(KZDEV_IPIFILTER_CFG), seed, "AccessFilter", c[0], 1, c[1]);
}

// The keys form a chain: the first one missing ends the conversion.
TEST(Email, ParseStopsAtTheFirstMissingKey) {
    const std::string seed = R"({"address":"old","port":25,"userName":"old","password":"old",
        "sendAddress":"old","receivers":["r0","r1","r2"],"title":"old","secureMode":2,"sendInterval":5,
        "anonymous":1,"attachEnable":1})";
    const std::string head = R"("Address":"a","Port":70000,"UserName":"u","Password":"p",
        "Anonymous":true,"SendAddress":"s")";
    const std::string headChanges =
        R"("address":"a","port":4464,"userName":"u","password":"p","sendAddress":"s")";
    const std::string cases[][2] = {
        {R"({"SslEnable":true,"Address":"a"})", "{}"},
        {R"({"Enable":true,"Address":"a","UserName":"u"})",
         R"({"enable":1,"secureMode":0,"address":"a"})"},
        {R"({"Enable":true,"SslEnable":true,"TlsEnable":true,)" + head +
             R"(,"Receivers":["x"],"Title":"t","AttachEnable":false,"SendInterv":65537})",
         R"({"enable":1,"secureMode":1,)" + headChanges +
             R"(,"receivers":["x"],"title":"t","attachEnable":0,"sendInterval":1})"},
        {R"({"Enable":false,"TlsEnable":true,)" + head + R"(,"Receivers":"x","Title":"t"})",
         R"({"enable":0,"secureMode":2,)" + headChanges + "}"},
        {R"({"Enable":true,)" + head + R"(,"Receivers":[null,"y",")" + std::string(130, 'z') +
             R"("]})",
         R"({"enable":1,"secureMode":0,)" + headChanges + R"(,"receivers":["","y",")" +
             std::string(127, 'z') + R"("]})"},
    };
    for (const auto& c : cases) ExpectParse(VIEW_OF(KZDEV_MAIL_CFG), seed, "Email", c[0], 1, c[1]);
}

TEST(PppoeAndNtp, ParseReadsWhatIsThereOfTheRightKind) {
    const std::string pppoe = R"({"pppoeEnable":1,"pppoeUserName":"old","pppoePassword":"old"})";
    ExpectParse(VIEW_OF(KZDEV_NET_CFG), pppoe, "PPPoE",
                R"({"Password":")" + std::string(40, 'p') + R"("})", 1,
                R"({"pppoePassword":")" + std::string(31, 'p') + R"("})");
    ExpectParse(VIEW_OF(KZDEV_NET_CFG), pppoe, "PPPoE",
                R"({"Enable":null,"UserName":null,"Port":1})", 1, "{}");

    const std::string ntp = R"({"port":123,"ipAddress":"1.1.1.1","domainName":"old",
        "updatePeriod":60,"addressType":)";
    const char* cases[][3] = {
        {"0", R"({"Port":"123","TimeZone":-8,"UpdatePeriod":30.5,"Address":"time.example"})",
         R"({"timeZone":-8,"ipAddress":"time.example"})"},
        {"1", R"({"Address":"time.example"})", R"({"domainName":"time.example"})"},
        {"2", R"({"Address":"0123456789012345678901234567890123456789"})",
         R"({"ipAddress":"0123456789012345678901234567890"})"},
        {"1", R"({"Address":5,"AddressType":0})", "{}"},
    };
    for (const auto& c : cases)
        ExpectParse(VIEW_OF(KZDEV_NTP_CFG), ntp + c[0] + "}", "NTP", c[1], 1, c[2]);
}

}  // namespace
