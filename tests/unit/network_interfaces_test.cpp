// "Network", "Network_DNS", "RTSP", "Web", "Multicast" and "IPv6" through the request API.
#include "request_support.h"

using support::FillText;
using support::Packet;
using support::Parse;
using support::ParseJson;
using support::SetText;
using support::TextOf;
using support::Zeroed;

namespace {

std::unique_ptr<KZDEV_NETWORK_CFG> Interfaces(std::initializer_list<const char*> names) {
    auto cfg = Zeroed<KZDEV_NETWORK_CFG>();
    for (const char* name : names) SetText(cfg->interfaces[cfg->interfaceCount++].name, name);
    return cfg;
}

TEST(NetworkPacket, NoInterfaceGivesHostnameAndEmptyDefault) {
    auto cfg = Zeroed<KZDEV_NETWORK_CFG>();
    SetText(cfg->hostName, "recorder");
    EXPECT_EQ(Packet("Network", cfg.get()).table(),
              ParseJson(R"({"Hostname":"recorder","DefaultInterface":""})"));
}

TEST(NetworkPacket, InterfacesUnderTheirNames) {
    auto cfg = Interfaces({"eth0", "eth1"});
    FillText(cfg->hostName, 'h');  // full width, no NUL
    KZ_NET_INTERFACE& eth0 = cfg->interfaces[0];
    SetText(eth0.ipAddress, "10.0.0.2");
    SetText(eth0.subnetMask, "255.0.0.0");
    SetText(eth0.defaultGateway, "10.0.0.1");
    eth0.flags = 0xFD;  // enabled, no DHCP, other bits set
    eth0.isDefault = 1;
    KZ_NET_INTERFACE& eth1 = cfg->interfaces[1];
    eth1.flags = KZ_NET_INTERFACE_DHCP;
    eth1.isDefault = 2;  // any non-zero byte marks it, and the last one marked wins
    FillText(eth1.subnetMask, 'm');  // read up to its NUL, as the device does: into the gateway
    SetText(eth1.defaultGateway, "gw");
    EXPECT_EQ(Packet("Network", cfg.get()).table(), ParseJson(R"({
        "Hostname":"hhhhhhhhhhhhhhhh",
        "eth0":{"IPAddress":"10.0.0.2","SubnetMask":"255.0.0.0","DefaultGateway":"10.0.0.1",
                "Enable":true,"DhcpEnable":false},
        "eth1":{"IPAddress":"","SubnetMask":"mmmmmmmmmmmmmmmmgw","DefaultGateway":"gw","Enable":false,
                "DhcpEnable":true},
        "DefaultInterface":"eth1"})"));
}

// bond0's own byte decides only load balancing; otherwise the first interface's byte decides.
TEST(NetworkPacket, BondingOfBond0) {
    struct Case {
        unsigned char firstMode, bondMode;
        const char* bonding;  // expected "bond0" keys beyond the address keys
    };
    const Case cases[] = {
        {3, 1, R"({"Bonding":true,"Mode":"BalanceRR"})"}, {3, 2, R"({"Bonding":true,"Mode":"ActiveBackup"})"},
        {2, 3, R"({"Bonding":false})"},                   {0, 3, R"({})"},
        {1, 0, R"({})"},
    };
    for (const Case& c : cases) {
        auto cfg = Interfaces({"eth0", "BOND0"});
        cfg->interfaces[0].bondingMode = c.firstMode;
        cfg->interfaces[1].bondingMode = c.bondMode;
        const Json::Value table = Packet("Network", cfg.get()).table();
        Json::Value bonding(Json::objectValue);
        for (const char* key : {"Bonding", "Mode"}) {
            if (table["BOND0"].isMember(key)) bonding[key] = table["BOND0"][key];
        }
        EXPECT_EQ(bonding, ParseJson(c.bonding)) << int(c.firstMode) << "/" << int(c.bondMode);
    }
}

TEST(NetworkParse, AddressesHostnameFlagsAndDefault) {
    auto cfg = Interfaces({"eth0", "eth1", "eth2"});
    cfg->interfaces[0].flags = 0xF0;
    cfg->interfaces[1].flags = 0xF3;
    cfg->interfaces[1].isDefault = 1;
    cfg->interfaces[2].isDefault = 1;  // absent from the table: kept
    SetText(cfg->interfaces[1].defaultGateway, "192.168.100.100");
    ASSERT_EQ(Parse("Network", R"({
        "Hostname":"a-very-long-host-name",
        "DefaultInterface":"ETH0",
        "eth0":{"IPAddress":"192.168.1.2","SubnetMask":"255.255.255.255x","Enable":true,
                "DhcpEnable":true},
        "eth1":{"IPAddress":"10.1.2.3.4.5.6.7.8.9","DefaultGateway":null,"Enable":false}})",
                    cfg.get()),
              1);
    EXPECT_EQ(TextOf(cfg->hostName), "a-very-long-hos");
    const KZ_NET_INTERFACE& eth0 = cfg->interfaces[0];
    EXPECT_EQ(TextOf(eth0.ipAddress), "192.168.1.2");
    EXPECT_EQ(std::string(eth0.subnetMask, 16), "255.255.255.255x");  // no NUL
    EXPECT_EQ(eth0.flags, 0xF3);
    EXPECT_EQ(eth0.isDefault, 1);
    const KZ_NET_INTERFACE& eth1 = cfg->interfaces[1];
    EXPECT_EQ(std::string(eth1.ipAddress, 16), "10.1.2.3.4.5.6.7");
    EXPECT_EQ(TextOf(eth1.defaultGateway), "192.168.100.100");
    EXPECT_EQ(eth1.flags, 0xF2);
    EXPECT_EQ(eth1.isDefault, 0);
    EXPECT_EQ(cfg->interfaces[2].isDefault, 1);

    // Without "DefaultInterface" every interface of the table is unmarked.
    ASSERT_EQ(Parse("Network", R"({"eth0":{}})", cfg.get()), 1);
    EXPECT_EQ(cfg->interfaces[0].isDefault, 0);
}

// The bonding code of "bond0" goes to every interface that the table names.
TEST(NetworkParse, BondingCodeReachesEveryNamedInterface) {
    struct Case {
        const char* bond0;
        unsigned char code;  // 0xEE: the byte is left as it was
    };
    const Case cases[] = {
        {R"({"Bonding":true,"Mode":"BalanceXOR"})", 1}, {R"({"Bonding":true,"Mode":"balancealb"})", 1},
        {R"({"Bonding":true,"Mode":"Broadcast"})", 3},  {R"({"Bonding":false,"Mode":"BalanceRR"})", 2},
        {R"({"Bonding":true,"Mode":"RoundRobin"})", 0xEE}, {R"({"Mode":"BalanceRR"})", 0xEE},
    };
    for (const Case& c : cases) {
        auto cfg = Interfaces({"eth0", "bond0", "eth1"});
        for (KZ_NET_INTERFACE& nic : cfg->interfaces) nic.bondingMode = 0xEE;
        const std::string table = std::string(R"({"eth0":{},"bond0":)") + c.bond0 + "}";
        ASSERT_EQ(Parse("Network", table, cfg.get()), 1);
        EXPECT_EQ(cfg->interfaces[0].bondingMode, c.code) << c.bond0;
        EXPECT_EQ(cfg->interfaces[1].bondingMode, c.code) << c.bond0;
        EXPECT_EQ(cfg->interfaces[2].bondingMode, 0xEE) << "eth1 is not in the table";
    }
}

TEST(NetworkParse, BalanceXorPacksAgainAsBalanceRR) {
    auto cfg = Interfaces({"eth0", "bond0"});
    ASSERT_EQ(Parse("Network", R"({"bond0":{"Bonding":true,"Mode":"BalanceXOR"}})", cfg.get()), 1);
    const Json::Value bond0 = Packet("Network", cfg.get()).table()["bond0"];
    EXPECT_EQ(bond0["Bonding"], true);
    EXPECT_EQ(bond0["Mode"], "BalanceRR");
}

TEST(NetworkDns, ServersGoOutAtTheTopAndComeBackFromTheInterface) {
    auto cfg = Zeroed<KZDEV_DNS_CFG>();
    SetText(cfg->primaryDns, "8.8.8.8");
    FillText(cfg->secondaryDns, '9');
    const Json::Value table = Packet("Network_DNS", cfg.get()).table();
    EXPECT_EQ(table, ParseJson(R"({"DnsServers":["8.8.8.8","9999999999999999"]})"));

    // The packed table has no servers under an interface: nothing comes back.
    auto back = Zeroed<KZDEV_DNS_CFG>();
    EXPECT_EQ(Parse("Network_DNS", Json::FastWriter().write(table), back.get()), 1);
    EXPECT_TRUE(support::SameBytes(*back, *Zeroed<KZDEV_DNS_CFG>()));
}

TEST(NetworkDns, ParseReadsTheDefaultInterface) {
    struct Case {
        const char* table;
        const char* primary;    // whole 16 bytes as expected
        const char* secondary;
    };
    const Case cases[] = {
        {R"({"eth0":{"DnsServers":["1.1.1.1","2.2.2.2"]}})", "1.1.1.1\0" "3.3.3.3", "2.2.2.2\0" "4.4.4.4"},
        {R"({"DefaultInterface":"eth1","eth0":{"DnsServers":["9.9.9.9"]},"eth1":{"DnsServers":[5,"6.6"]}})",
         "3.3.3.3.3.3.3.3", "6.6\0" "4.4.4.4.4.4"},
        {R"({"eth0":{"DnsServers":{"0":"1.1.1.1"}}})", "3.3.3.3.3.3.3.3", "4.4.4.4.4.4.4.4"},
        {R"({"eth0":{"DnsServers":["1.2.3.4.5.6.7.8.9"]}})", "1.2.3.4.5.6.7.8", "4.4.4.4.4.4.4.4"},
    };
    for (const Case& c : cases) {
        auto cfg = Zeroed<KZDEV_DNS_CFG>();
        SetText(cfg->primaryDns, "3.3.3.3.3.3.3.3");
        SetText(cfg->secondaryDns, "4.4.4.4.4.4.4.4");
        ASSERT_EQ(Parse("Network_DNS", c.table, cfg.get()), 1) << c.table;
        EXPECT_EQ(std::string(cfg->primaryDns, 15), std::string(c.primary, 15)) << c.table;
        EXPECT_EQ(std::string(cfg->secondaryDns, 15), std::string(c.secondary, 15)) << c.table;
    }
}

TEST(NetworkPorts, RtspAndWeb) {
    auto rtsp = Zeroed<KZDEV_RTSP_CFG>();
    rtsp->port = 65535;
    EXPECT_EQ(Packet("RTSP", rtsp.get()).table(), ParseJson(R"({"Port":65535})"));
    auto net = Zeroed<KZDEV_NET_CFG>();
    net->httpPort = 8080;
    net->tcpPort = 1;
    EXPECT_EQ(Packet("Web", net.get()).table(), ParseJson(R"({"Port":8080})"));

    struct Case {
        const char* name;
        const char* table;
        int result;
        unsigned short port;
    };
    const Case cases[] = {
        {"RTSP", R"({"Port":554})", 1, 554},   {"RTSP", R"({"Port":70000})", 1, 4464},
        {"RTSP", R"({"Port":-1})", 1, 65535},  {"RTSP", R"({})", -1, 99},
        {"RTSP", R"({"Port":null})", -1, 99},  {"Web", R"({"Port":70000})", 1, 4464},
        {"Web", R"({})", 1, 99},               {"Web", R"({"Port":"81"})", -2, 0},
    };
    for (const Case& c : cases) {
        auto rtspOut = Zeroed<KZDEV_RTSP_CFG>();
        auto webOut = Zeroed<KZDEV_NET_CFG>();
        const bool isRtsp = std::string(c.name) == "RTSP";
        unsigned short& port = isRtsp ? rtspOut->port : webOut->httpPort;
        port = 99;
        const auto parse = [&] {
            return isRtsp ? Parse(c.name, c.table, rtspOut.get()) : Parse(c.name, c.table, webOut.get());
        };
        if (c.result == -2) {  // a string where a number is read: the library's exception
            EXPECT_THROW(parse(), Json::Exception);
            continue;
        }
        EXPECT_EQ(parse(), c.result) << c.name << c.table;
        EXPECT_EQ(port, c.port) << c.name << c.table;
    }
}

TEST(Multicast, PacketWritesTheFirstStream) {
    auto net = Zeroed<KZDEV_NET_CFG>();
    net->multicastEnable = 2;
    net->multicastPort = 40000;
    FillText(net->multicastAddress, '2');
    EXPECT_EQ(Packet("Multicast", net.get()).table(),
              ParseJson(R"({"KZII":[{"Enable":true,"MulticastAddr":"2222222222222222","Port":40000}]})"));
}

TEST(Multicast, ParseOnlyAnArrayWithAFirstStream) {
    struct Case {
        const char* table;
        bool changes;
    };
    const Case cases[] = {
        {R"({})", false},
        {R"({"KZII":{"Enable":true,"MulticastAddr":"239.1.1.1","Port":1}})", false},
        {R"({"KZII":[null,{"Enable":true}]})", false},
        {R"({"KZII":[{"Enable":true,"MulticastAddr":"239.1.1.1","Port":70001}]})", true},
        {R"({"KZII":[{"Enable":1,"MulticastAddr":239,"Port":70001}]})", true},
    };
    for (const Case& c : cases) {
        auto net = Zeroed<KZDEV_NET_CFG>();
        SetText(net->multicastAddress, "old");
        ASSERT_EQ(Parse("Multicast", c.table, net.get()), 1) << c.table;
        if (!c.changes) {
            auto expected = Zeroed<KZDEV_NET_CFG>();
            SetText(expected->multicastAddress, "old");
            EXPECT_TRUE(support::SameBytes(*net, *expected)) << c.table;
            continue;
        }
        EXPECT_EQ(net->multicastEnable, 1);
        EXPECT_EQ(TextOf(net->multicastAddress).substr(0, 3), "239");  // a number gives its digits
        EXPECT_EQ(net->multicastPort, 4465);
    }
}

// The address is cut to 15 bytes and never in the middle of a character.
TEST(Multicast, LongAddressIsCutOnACharacterBoundary) {
    auto net = Zeroed<KZDEV_NET_CFG>();
    ASSERT_EQ(Parse("Multicast", R"({"KZII":[{"MulticastAddr":"abcdefghijklmn\u00e9z"}]})", net.get()), 1);
    EXPECT_EQ(TextOf(net->multicastAddress), "abcdefghijklmn");
    ASSERT_EQ(Parse("Multicast", R"({"KZII":[{"MulticastAddr":"abcdefghijklm\u00e9z"}]})", net.get()), 1);
    EXPECT_EQ(TextOf(net->multicastAddress), "abcdefghijklm\xc3\xa9");
}

TEST(IPv6, PacketWritesTheFirstInterface) {
    auto cfg = Zeroed<KZDEV_IPV6_CFG>();
    SetText(cfg->linkLocalAddress, "fe80::1");
    FillText(cfg->ipAddress, 'a');
    cfg->prefix = 0xFFFFFFFFu;
    cfg->dhcpEnable = 2;
    SetText(cfg->defaultGateway, "2001:db8::1");
    SetText(cfg->alternateDns, "2001:db8::53");
    EXPECT_EQ(Packet("IPv6", cfg.get()).table(), ParseJson(R"({"Enable":true,"eth0":{
        "LinkLocalAddress":"fe80::1","IPAddress":")" + std::string(40, 'a') + R"(",
        "Prefix":4294967295,"DhcpEnable":false,"DefaultGateway":"2001:db8::1",
        "DnsServerEnable":true,"DnsServers":["","2001:db8::53"]}})"));
}

TEST(IPv6, ParseNeedsEnableAndReadsOnlyEth0) {
    struct Case {
        const char* table;
        int result;
        const char* ip;
        unsigned int prefix;
        const char* dns0;
        const char* dns1;
    };
    const Case cases[] = {
        {R"({"Enable":false,"eth0":{"IPAddress":"2001::2"}})", -1, "old", 7, "d0", "d1"},
        {R"({"Enable":true,"eth1":{"IPAddress":"2001::2"}})", 1, "old", 7, "d0", "d1"},
        {R"({"Enable":true,"ETH0":{"IPAddress":"2001::2","Prefix":64,"LinkLocalAddress":"fe80::9",
             "DnsServerEnable":true,"DnsServers":["::1","::2"]}})", 1, "2001::2", 64, "::1", "::2"},
        {R"({"Enable":true,"eth0":{"DnsServerEnable":true,"DnsServers":["::1","::2","::3"]}})", 1, "old",
         7, "d0", "d1"},
        {R"({"Enable":true,"eth0":{"DnsServerEnable":true,"DnsServers":["::1"]}})", 1, "old", 7, "::1",
         "d1"},
    };
    for (const Case& c : cases) {
        auto cfg = Zeroed<KZDEV_IPV6_CFG>();
        SetText(cfg->linkLocalAddress, "link");
        SetText(cfg->ipAddress, "old");
        cfg->prefix = 7;
        SetText(cfg->preferredDns, "d0");
        SetText(cfg->alternateDns, "d1");
        EXPECT_EQ(Parse("IPv6", c.table, cfg.get()), c.result) << c.table;
        EXPECT_EQ(TextOf(cfg->ipAddress), c.ip) << c.table;
        EXPECT_EQ(cfg->prefix, c.prefix) << c.table;
        EXPECT_EQ(TextOf(cfg->preferredDns), c.dns0) << c.table;
        EXPECT_EQ(TextOf(cfg->alternateDns), c.dns1) << c.table;
        EXPECT_EQ(TextOf(cfg->linkLocalAddress), "link") << c.table;
    }
}

}  // namespace
