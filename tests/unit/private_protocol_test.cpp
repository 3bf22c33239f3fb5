// "DVRIP_NET", "DVRIP_REGISTER", "DVRIP_TRANS" and "RemoteDevice" through the request API, on
// records at their exact size on the heap.
#include "record_view.h"
#include "request_support.h"

#include <string>

using support::Packet;
using support::Parse;
using support::ParseJson;
using view::ExpectParse;

namespace {

TEST(DvripNet, PortsAndMulticast) {
    // A full multicast address is read on into the bytes after it.
    view::ExpectPacketHas(
        "KZDEV_NET_CFG", "DVRIP_NET",
        R"({"sslPort":65535,"multicastEnable":2,
        "multicastAddress":"2222222222222222","reserved5":[66,67]})",
        R"({"SSLPort":65535,"MCASTEnable":false,"MCASTAddress":"2222222222222222BC"})");

    // At most 15 bytes of the address, zero-filled; the 16th keeps its byte.
    const std::string seed = R"({"tcpPort":1,"multicastAddress":"XXXXXXXXXXXXXXXX"})";
    const char* cases[][2] = {
        {R"({"TCPPort":70000,"MCASTPort":65537,"MCASTAddress":"239.1.1.1"})",
         R"({"tcpPort":4464,"multicastPort":1,"multicastAddress":"239.1.1.1"})"},
        {R"({"MCASTAddress":"239.255.255.250.1","TCPPort":null})",
         R"({"multicastAddress":"239.255.255.250X"})"},
    };
    for (const auto& c : cases) {
        const auto out = ExpectParse(VIEW_OF(KZDEV_NET_CFG), seed, "DVRIP_NET", c[0], 1, c[1]);
        EXPECT_EQ(out->multicastAddress[15], 'X') << c[0];
    }
    // Ports are read as unsigned: a negative one is a value of the wrong kind.
    EXPECT_THROW(Parse("DVRIP_NET", R"({"TCPPort":-1})", support::Zeroed<KZDEV_NET_CFG>().get()),
                 Json::Exception);
}

TEST(DvripRegister, ServersBothWays) {
    view::ExpectPacketHas(
        "KZDEV_REGISTER_SERVER", "DVRIP_REGISTER",
        R"({"serverCount":2,"servers":[{"ipAddress":"10.0.0.5","domainName":"d"},
                              {"ipAddress":"10.0.0.6","addressKind":1,"domainName":"reg"},
                              {"ipAddress":"not counted"}]})",
        R"({"RegisterServer":{"Servers":[{"Address":"10.0.0.5"},{"Address":"reg"}]}})");
    view::ExpectPacket("KZDEV_REGISTER_SERVER", "DVRIP_REGISTER", "{}",
                       R"({"RegisterServer":{"Enable":false,"DeviceID":""}})");

    const std::string d59(59, 'd');
    const std::string seed = R"({"serverCount":1,"servers":[{"domainName":")" + d59 +
                             R"("},{"domainName":")" + d59 + R"("}]})";
    std::string eleven, ten;
    for (int i = 0; i < 11; ++i) {
        eleven += std::string(i ? "," : "") + R"({"Port":)" + std::to_string(7000 + i) + "}";
        if (i < 10)
            ten += std::string(i ? "," : "") + R"({"port":)" + std::to_string(7000 + i) + "}";
    }
    const std::string cases[][2] = {
        {"{}", R"({"serverCount":0})"},
        {R"({"RegisterServer":{"Servers":[)" + eleven + "]}}",
         R"({"serverCount":10,"servers":[)" + ten + "]}"},
        // The address lands in the domain name; the address kind is left.
        {R"({"RegisterServer":{"Servers":[{"Address":"abc"},{"Address":")" + std::string(50, 'e') +
             R"("}]}})",
         R"({"serverCount":2,"servers":[{"domainName":"abc"},{"domainName":")" +
             std::string(48, 'e') + std::string(11, 'd') + R"("}]})"},
    };
    for (const auto& c : cases) {
        const auto out =
            ExpectParse(VIEW_OF(KZDEV_REGISTER_SERVER), seed, "DVRIP_REGISTER", c[0], 1, c[1]);
        if (c[1].find("abc") == std::string::npos) continue;
        // A short text brings its NUL and no more: the rest of the 48-byte block keeps its bytes.
        EXPECT_EQ(std::string(out->servers[0].domainName, 60),
                  std::string("abc\0", 4) + std::string(55, 'd') + '\0');
    }
}

TEST(DvripTrans, StreamPolicyWords) {
    const std::pair<std::string, const char*> packs[] = {
        {"1,0", R"("Quality")"}, {"1,1", R"("Fluency")"}, {"2,2", R"("AutoAdapt")"},
        {"1,3", "null"},         {"1,-1", "null"},        {"0,1", R"("None")"},
        {"0,5", R"("None")"}};  // enable,strategy
    for (const auto& [record, policy] : packs)
        view::ExpectPacket(
            "KZDEV_TRANSFER_STRATEGY_CFG", "DVRIP_TRANS",
            R"({"enable":)" + record.substr(0, 1) + R"(,"strategy":)" + record.substr(2) + "}",
            std::string(R"({"StreamPolicy":)") + policy + "}");

    const char* parses[][2] = {
        {R"({"StreamPolicy":"none"})", R"({"enable":0})"},
        {R"({"StreamPolicy":"Quality"})", R"({"enable":1,"strategy":0})"},
        {R"({"StreamPolicy":"FLUENCY"})", R"({"enable":1,"strategy":1})"},
        {R"({"StreamPolicy":"autoadapt"})", R"({"enable":1,"strategy":2})"},
        {R"({"StreamPolicy":"Smooth"})", R"({"enable":0,"strategy":0})"},
        {"{}", R"({"enable":0,"strategy":0})"},
    };
    for (const auto& c : parses)
        ExpectParse(VIEW_OF(KZDEV_TRANSFER_STRATEGY_CFG),
                    R"({"leadingWord":9,"enable":1,"strategy":1})", "DVRIP_TRANS", c[0], 1, c[1]);
}

TEST(RemoteDevice, PacketKeysEntriesByIndex) {
    auto cfg = support::Zeroed<KZDEV_REMOTE_DEVICE_CFG>();
    cfg->deviceCount = 40;
    const char* words[] = {"Torva", "TorvaII", "TorvaQLMN", "TorvaCRX", "TorvaRtsp", "TS", "Torva"};
    for (int i = 0; i < 7; ++i) cfg->devices[i].protocolType = i;
    cfg->devices[31].protocolType = -1;
    cfg->devices[0].enable = 2;
    support::FillText(cfg->devices[0].password, 'p');  // runs into nothing: the bound is its width
    cfg->devices[0].deviceClass = 3;

    const Json::Value table = Packet("RemoteDevice", cfg.get()).table();
    ASSERT_EQ(table.size(), 32u);
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(table["uuid:" + std::to_string(i)]["ProtocolType"], words[i]) << i;
    EXPECT_EQ(table["uuid:31"]["ProtocolType"], "Torva");
    view::ExpectHas(
        table["uuid:0"],
        ParseJson(R"({"Enable":true,"Password":"pppppppppppppppp","DeviceClass":"IPC"})"));

    for (int count : {0, -1}) {
        cfg->deviceCount = count;
        EXPECT_TRUE(Packet("RemoteDevice", cfg.get()).table().isNull()) << count;
    }
}

TEST(RemoteDevice, ParseTakesMembersInTheTablesOrder) {
    // Forty members: the first 32 in the order of their names, whatever the names say.
    Json::Value table;
    for (int i = 0; i < 40; ++i)
        table["uuid:" + std::to_string(i)]["Name"] = "cam" + std::to_string(i);
    auto cfg = support::Zeroed<KZDEV_REMOTE_DEVICE_CFG>();
    ASSERT_EQ(Parse("RemoteDevice", Json::FastWriter().write(table), cfg.get()), 1);
    EXPECT_EQ(cfg->deviceCount, 32);
    const std::pair<int, const char*> order[] = {{0, "cam0"},   {1, "cam1"},  {2, "cam10"},
                                                 {11, "cam19"}, {12, "cam2"}, {13, "cam20"},
                                                 {23, "cam3"},  {31, "cam37"}};
    for (const auto& [k, name] : order) EXPECT_EQ(support::TextOf(cfg->devices[k].name), name) << k;

    const std::string seed =
        R"({"deviceCount":5,"devices":[{"name":"n0","deviceClass":7,"protocolType":3},
        {"name":"n1","deviceClass":7},{"name":"n2","deviceClass":7}]})";
    const char* cases[][2] = {
        {"{}", R"({"deviceCount":0})"},
        {"[1,2]", R"({"deviceCount":0})"},
        // A null member still counts; names need not be "uuid:%d".
        {R"({"a":{"Enable":true,"ProtocolType":"torvartsp","Password":"0123456789abcdefXYZ",
               "DeviceClass":"ipc","Name":"0123456789012345678901234567890123"},
             "b":null,"c":{"ProtocolType":"Torva","DeviceClass":"NVR","Enable":0}})",
         R"({"deviceCount":3,"devices":[{"enable":1,"protocolType":4,"password":"0123456789abcde",
             "deviceClass":0,"name":"0123456789012345678901234567890"},{},
             {"protocolType":0,"enable":0}]})"},
        {R"({"x":{"ProtocolType":"TS","Port":null}})",
         R"({"deviceCount":1,"devices":[{"protocolType":5}]})"},
    };
    for (const auto& c : cases)
        ExpectParse(VIEW_OF(KZDEV_REMOTE_DEVICE_CFG), seed, "RemoteDevice", c[0], 1, c[1]);
}

}  // namespace
