// "Network", "Network_DNS", "RTSP", "Web", "Multicast" and "IPv6" through the request API, on
// records at their exact size on the heap, built and compared through their named-field view.
#include "record_view.h"
#include "request_support.h"

#include <string>

using support::Packet;
using support::ParseJson;
using view::ExpectParse;

namespace {

#define NET VIEW_OF(KZDEV_NETWORK_CFG)

// The "Bonding" and "Mode" keys that packing the "Network" record writes under the interface.
Json::Value PackedBonding(const void* cfg, const char* name) {
    const Json::Value nic = Packet("Network", cfg).table()[name];
    Json::Value bonding(Json::objectValue);
    for (const char* key : {"Bonding", "Mode"}) {
        if (nic.isMember(key)) bonding[key] = nic[key];
    }
    return bonding;
}

TEST(NetworkSections, PacketWritesTheDeviceTable) {
    const std::string a40(40, 'a');
    view::ExpectPacket("KZDEV_NETWORK_CFG", "Network", R"({"hostName":"recorder"})",
                       R"({"Hostname":"recorder","DefaultInterface":""})");
    const char* cases[][4] = {
        // Flag bits beyond the two are ignored, any non-zero byte marks the default and the last
        // one marked wins, and a full subnet mask reads on into the gateway as the device does.
        {"KZDEV_NETWORK_CFG", "Network",
         R"({"hostName":"hhhhhhhhhhhhhhhh","interfaceCount":2,"interfaces":[
             {"name":"eth0","flags":253,"isDefault":1},{"name":"eth1","subnetMask":"mmmmmmmmmmmmmmmm",
              "defaultGateway":"gw","flags":2,"isDefault":2}]})",
         R"({"Hostname":"hhhhhhhhhhhhhhhh","DefaultInterface":"eth1",
             "eth0":{"Enable":true,"DhcpEnable":false},
             "eth1":{"SubnetMask":"mmmmmmmmmmmmmmmmgw","Enable":false,"DhcpEnable":true}})"},
        {"KZDEV_DNS_CFG", "Network_DNS", R"({"primaryDns":"9999999999999999","secondaryDns":"8"})",
         R"({"DnsServers":["9999999999999999","8"]})"},
        {"KZDEV_RTSP_CFG", "RTSP", R"({"port":65535})", R"({"Port":65535})"},
        {"KZDEV_NET_CFG", "Multicast",
         R"({"multicastEnable":2,"multicastAddress":"2222222222222222"})",
         R"({"KZII":[{"Enable":true,"MulticastAddr":"2222222222222222"}]})"},
    };
    for (const auto& c : cases) view::ExpectPacketHas(c[0], c[1], c[2], c[3]);
    view::ExpectPacketHas(
        "KZDEV_IPV6_CFG", "IPv6",
        R"({"ipAddress":")" + a40 + R"(","prefix":4294967295,"dhcpEnable":2})",
        R"({"Enable":true,"eth0":{"IPAddress":")" + a40 +
            R"(","Prefix":4294967295,"DhcpEnable":false,"DnsServerEnable":true}})");
}

// bond0's own byte decides only load balancing; otherwise the first interface's byte decides.
TEST(NetworkPacket, BondingOfBond0) {
    const char* cases[][3] = {{"3", "1", R"({"Bonding":true,"Mode":"BalanceRR"})"},
                              {"3", "2", R"({"Bonding":true,"Mode":"ActiveBackup"})"},
                              {"2", "3", R"({"Bonding":false})"},
                              {"0", "3", "{}"},
                              {"1", "0", "{}"}};
    for (const auto& c : cases) {
        const std::string fields =
            std::string(R"({"interfaceCount":2,"interfaces":[{"name":"eth0","bondingMode":)") +
            c[0] + R"(},{"name":"BOND0","bondingMode":)" + c[1] + "}]}";
        EXPECT_EQ(PackedBonding(view::Bytes("KZDEV_NETWORK_CFG", fields).data(), "BOND0"),
                  ParseJson(c[2]))
            << fields;
    }
}

TEST(NetworkParse, AddressesHostnameFlagsAndDefault) {
    const std::string seed = R"({"interfaceCount":3,"interfaces":[{"name":"eth0","flags":240},
        {"name":"eth1","defaultGateway":"192.168.100.100","flags":243,"isDefault":1},
        {"name":"eth2","isDefault":1}]})";
    // Addresses keep up to 16 bytes with no NUL, the other flag bits stay, eth2 is not in the table.
    ExpectParse(NET, seed, "Network", R"({"Hostname":"a-very-long-host-name",
        "DefaultInterface":"ETH0",
        "eth0":{"IPAddress":"192.168.1.2","SubnetMask":"255.255.255.255x","Enable":true,"DhcpEnable":true},
        "eth1":{"IPAddress":"10.1.2.3.4.5.6.7.8.9","DefaultGateway":null,"Enable":false}})",
                1,
                R"({"hostName":"a-very-long-hos","interfaces":[
        {"ipAddress":"192.168.1.2","subnetMask":"255.255.255.255x","flags":243,"isDefault":1},
        {"ipAddress":"10.1.2.3.4.5.6.7","flags":242,"isDefault":0}]})");
    // Without "DefaultInterface" every interface of the table is unmarked.
    ExpectParse(NET, seed, "Network", R"({"eth1":{}})", 1,
                R"({"interfaces":[{},{"isDefault":0}]})");
}

// The bonding code of "bond0" goes to every interface that the table names (not eth1 here); code
// 238 stands for the bytes kept.
TEST(NetworkParse, BondingCodeReachesEveryNamedInterface) {
    const std::pair<const char*, int> cases[] = {
        {R"({"Bonding":true,"Mode":"BalanceXOR"})", 1},
        {R"({"Bonding":true,"Mode":"broadcast"})", 3},
        {R"({"Bonding":false,"Mode":"BalanceRR"})", 2},
        {R"({"Bonding":true,"Mode":"RoundRobin"})", 238},
        {R"({"Mode":"BalanceRR"})", 238},
    };
    for (const auto& [bond0, code] : cases) {
        const std::string mode = R"({"bondingMode":)" + std::to_string(code) + "}";
        ExpectParse(NET, R"({"interfaceCount":3,"interfaces":[{"name":"eth0","bondingMode":238},
                {"name":"bond0","bondingMode":238},{"name":"eth1","bondingMode":238}]})",
                    "Network", std::string(R"({"eth0":{},"bond0":)") + bond0 + "}", 1,
                    R"({"interfaces":[)" + mode + "," + mode + "]}");
    }
}

// The servers come back from the default interface's object, not from the top where Packet puts
// them, and are written over without clearing the fields first.
TEST(NetworkDns, ParseReadsTheDefaultInterface) {
    const char* cases[][3] = {
        // all 16 bytes of each field
        {R"({"eth0":{"DnsServers":["1.2.3.4.5.6.7.8.9","2.2.2.2"]}})", "1.2.3.4.5.6.7.8",
         "2.2.2.2\0004.4.4.4"},
        {R"({"DefaultInterface":"eth1","eth0":{"DnsServers":["9.9.9.9"]},"eth1":{"DnsServers":[5,"6.6"]}})",
         "3.3.3.3.3.3.3.3", "6.6\0004.4.4.4.4.4"},
        {R"({"eth0":{"DnsServers":{"0":"1.1.1.1"}}})", "3.3.3.3.3.3.3.3", "4.4.4.4.4.4.4.4"},
        {R"({"DnsServers":["1.1.1.1","2.2.2.2"]})", "3.3.3.3.3.3.3.3", "4.4.4.4.4.4.4.4"},
    };
    for (const auto& c : cases) {
        auto cfg =
            view::Build(VIEW_OF(KZDEV_DNS_CFG),
                        R"({"primaryDns":"3.3.3.3.3.3.3.3","secondaryDns":"4.4.4.4.4.4.4.4"})");
        ASSERT_EQ(support::Parse("Network_DNS", c[0], cfg.get()), 1) << c[0];
        EXPECT_EQ(std::string(cfg->primaryDns, 16), std::string(c[1], 16)) << c[0];
        EXPECT_EQ(std::string(cfg->secondaryDns, 16), std::string(c[2], 16)) << c[0];
    }
}

TEST(NetworkServices, ParseSetsOnlyWhatTheTableGives) {
    const char* net = R"({"httpPort":99,"multicastPort":99,"multicastAddress":"old"})";
    const char* ipv6 = R"({"ipAddress":"old","prefix":7,"preferredDns":"d0","alternateDns":"d1"})";
    const char* cases[][5] = {
        {"KZDEV_RTSP_CFG", "RTSP", R"({"Port":70000})", "1", R"({"port":4464})"},
        {"KZDEV_RTSP_CFG", "RTSP", "{}", "-1", "{}"},
        {"KZDEV_RTSP_CFG", "RTSP", R"({"Port":null})", "-1", "{}"},
        {"KZDEV_NET_CFG", "Web", "{}", "1", "{}"},
        {"KZDEV_NET_CFG", "Multicast", R"({"KZII":[null,{"Enable":true}]})", "1", "{}"},
        {"KZDEV_NET_CFG", "Multicast", R"({"KZII":{"Enable":true,"MulticastAddr":"239.1.1.1"}})",
         "1", "{}"},
        {"KZDEV_NET_CFG", "Multicast",
         R"({"KZII":[{"Enable":1,"MulticastAddr":239,"Port":70001}]})", "1",
         R"({"multicastEnable":1,"multicastAddress":"239","multicastPort":4465})"},
        // Cut to 15 bytes, never in the middle of a character.
        {"KZDEV_NET_CFG", "Multicast", R"({"KZII":[{"MulticastAddr":"abcdefghijklmn\u00e9z"}]})",
         "1", R"({"multicastAddress":"abcdefghijklmn"})"},
        {"KZDEV_NET_CFG", "Multicast", R"({"KZII":[{"MulticastAddr":"abcdefghijklm\u00e9z"}]})",
         "1", R"({"multicastAddress":"abcdefghijklm\u00e9"})"},
        {"KZDEV_IPV6_CFG", "IPv6", R"({"Enable":false,"eth0":{"IPAddress":"2001::2"}})", "-1",
         "{}"},
        {"KZDEV_IPV6_CFG", "IPv6", R"({"eth0":{"IPAddress":"2001::2"}})", "-1", "{}"},
        // Only "eth0" is read, in any case; its servers only when "DnsServerEnable" says so.
        {"KZDEV_IPV6_CFG", "IPv6",
         R"({"Enable":true,"eth1":{"IPAddress":"2001::2"},"eth0":{"DnsServers":["::1","::2"]}})",
         "1", "{}"},
        {"KZDEV_IPV6_CFG", "IPv6", R"({"Enable":true,"ETH0":{"IPAddress":"2001::2",
             "LinkLocalAddress":"fe80::9","DnsServerEnable":true,"DnsServers":["::1","::2"]}})",
         "1", R"({"ipAddress":"2001::2","preferredDns":"::1","alternateDns":"::2"})"},
        {"KZDEV_IPV6_CFG", "IPv6",
         R"({"Enable":true,"eth0":{"DnsServerEnable":true,"DnsServers":["::1","::2","::3"]}})", "1",
         "{}"},
    };
    for (const auto& c : cases) {  // a seed by the section's first letter
        const char* seed = c[1][0] == 'R' ? R"({"port":99})" : c[1][0] == 'I' ? ipv6 : net;
        view::ExpectParseAs(c[0], seed, c[1], c[2], std::stoi(c[3]), c[4]);
    }
}

// An interface name that fills its 64 bytes is a 64-character key, both ways, and is never read on
// into the next interface's entry.
TEST(NetworkNames, FullWidthNameIsTheKey) {
    const std::string name(64, 'n');
    const auto seed = [&](int isDefault) {
        return R"({"interfaceCount":2,"interfaces":[{"name":")" + name + R"(","isDefault":)" +
               std::to_string(isDefault) + R"(},{"name":"eth1","ipAddress":"10.0.0.2"}]})";
    };
    view::ExpectPacketHas("KZDEV_NETWORK_CFG", "Network", seed(1),
                          R"({"DefaultInterface":")" + name + R"(",")" + name + R"(":{}})");
    ExpectParse(
        NET, seed(0), "Network",
        R"({"DefaultInterface":")" + name + R"(",")" + name + R"(":{"IPAddress":"10.0.0.1"}})", 1,
        R"({"interfaces":[{"ipAddress":"10.0.0.1","isDefault":1}]})");
}

}  // namespace
