// "Network", "Network_DNS", "RTSP", "Web", "Multicast" and "IPv6" through the request API, on
// records at their exact size on the heap, built and compared through their named-field view.
#include "record_view.h"
#include "request_support.h"

#include <map>
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
    struct Case {
        const char *type, *section;
        std::string record, table;
    };
    const Case cases[] = {
        {"KZDEV_NETWORK_CFG", "Network", R"({"hostName":"recorder"})",
         R"({"Hostname":"recorder","DefaultInterface":""})"},
        // Flag bits beyond the two are ignored, any non-zero byte marks the default and the last
        // one marked wins, and a full subnet mask reads on into the gateway as the device does.
        {"KZDEV_NETWORK_CFG", "Network",
         R"({"hostName":"hhhhhhhhhhhhhhhh","interfaceCount":2,"interfaces":[
             {"name":"eth0","ipAddress":"10.0.0.2","subnetMask":"255.0.0.0","defaultGateway":"10.0.0.1",
              "flags":253,"isDefault":1},
             {"name":"eth1","subnetMask":"mmmmmmmmmmmmmmmm","defaultGateway":"gw","flags":2,
              "isDefault":2}]})",
         R"({"Hostname":"hhhhhhhhhhhhhhhh","DefaultInterface":"eth1",
             "eth0":{"IPAddress":"10.0.0.2","SubnetMask":"255.0.0.0","DefaultGateway":"10.0.0.1",
                     "Enable":true,"DhcpEnable":false},
             "eth1":{"IPAddress":"","SubnetMask":"mmmmmmmmmmmmmmmmgw","DefaultGateway":"gw","Enable":false,
                     "DhcpEnable":true}})"},
        {"KZDEV_DNS_CFG", "Network_DNS",
         R"({"primaryDns":"8.8.8.8","secondaryDns":"9999999999999999"})",
         R"({"DnsServers":["8.8.8.8","9999999999999999"]})"},
        {"KZDEV_RTSP_CFG", "RTSP", R"({"port":65535})", R"({"Port":65535})"},
        {"KZDEV_NET_CFG", "Multicast", R"({"multicastEnable":2,"multicastPort":40000,
             "multicastAddress":"2222222222222222"})",
         R"({"KZII":[{"Enable":true,"MulticastAddr":"2222222222222222","Port":40000}]})"},
        {"KZDEV_IPV6_CFG", "IPv6", R"({"linkLocalAddress":"fe80::1","ipAddress":")" + a40 + R"(",
             "prefix":4294967295,"dhcpEnable":2,"defaultGateway":"2001:db8::1",
             "alternateDns":"2001:db8::53"})",
         R"({"Enable":true,"eth0":{"LinkLocalAddress":"fe80::1","IPAddress":")" + a40 + R"(",
             "Prefix":4294967295,"DhcpEnable":false,"DefaultGateway":"2001:db8::1","DnsServerEnable":true,
             "DnsServers":["","2001:db8::53"]}})"},
    };
    for (const Case& c : cases) view::ExpectPacket(c.type, c.section, c.record, c.table);
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

// The bonding code of "bond0" goes to every interface that the table names; packed again, the
// balancing modes all come out as "BalanceRR". Code 238 stands for the bytes kept.
TEST(NetworkParse, BondingCodeReachesEveryNamedInterface) {
    const std::pair<const char*, int> cases[] = {
        {R"({"Bonding":true,"Mode":"BalanceXOR"})", 1},
        {R"({"Bonding":true,"Mode":"broadcast"})", 3},
        {R"({"Bonding":false,"Mode":"BalanceRR"})", 2},
        {R"({"Bonding":true,"Mode":"RoundRobin"})", 238},
        {R"({"Mode":"BalanceRR"})", 238},
    };
    const std::map<int, const char*> packed = {{1, R"({"Bonding":true,"Mode":"BalanceRR"})"},
                                               {2, R"({"Bonding":false})"},
                                               {3, R"({"Bonding":true,"Mode":"ActiveBackup"})"},
                                               {238, "{}"}};
    for (const auto& [bond0, code] : cases) {
        const std::string mode = R"({"bondingMode":)" + std::to_string(code) + "}";
        const auto cfg =
            ExpectParse(NET, R"({"interfaceCount":3,"interfaces":[{"name":"eth0","bondingMode":238},
                {"name":"bond0","bondingMode":238},{"name":"eth1","bondingMode":238}]})",
                        "Network", std::string(R"({"eth0":{},"bond0":)") + bond0 + "}", 1,
                        R"({"interfaces":[)" + mode + "," + mode + "]}");
        EXPECT_EQ(PackedBonding(cfg.get(), "bond0"), ParseJson(packed.at(code))) << bond0;
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
    const std::map<std::string, std::pair<const char*, const char*>> seeds = {
        {"RTSP", {"KZDEV_RTSP_CFG", R"({"port":99})"}},
        {"Web", {"KZDEV_NET_CFG", net}},
        {"Multicast", {"KZDEV_NET_CFG", net}},
        {"IPv6", {"KZDEV_IPV6_CFG", R"({"linkLocalAddress":"link","ipAddress":"old","prefix":7,
             "preferredDns":"d0","alternateDns":"d1"})"}},
    };
    struct Case {
        const char *section, *table;
        int result;
        const char* changes;
    };  // to the seed's view
    const Case cases[] = {
        {"RTSP", R"({"Port":70000})", 1, R"({"port":4464})"},
        {"RTSP", "{}", -1, "{}"},
        {"RTSP", R"({"Port":null})", -1, "{}"},
        {"Web", "{}", 1, "{}"},
        {"Web", R"({"Port":true})", 1, R"({"httpPort":1})"},  // read by presence, not by kind
        {"Multicast", R"({"KZII":[null,{"Enable":true}]})", 1, "{}"},
        {"Multicast", R"({"KZII":{"Enable":true,"MulticastAddr":"239.1.1.1","Port":1}})", 1, "{}"},
        {"Multicast", R"({"KZII":[{"Enable":1,"MulticastAddr":239,"Port":70001}]})", 1,
         R"({"multicastEnable":1,"multicastAddress":"239","multicastPort":4465})"},
        // Cut to 15 bytes, never in the middle of a character.
        {"Multicast", R"({"KZII":[{"MulticastAddr":"abcdefghijklmn\u00e9z"}]})", 1,
         R"({"multicastAddress":"abcdefghijklmn"})"},
        {"Multicast", R"({"KZII":[{"MulticastAddr":"abcdefghijklm\u00e9z"}]})", 1,
         R"({"multicastAddress":"abcdefghijklm\u00e9"})"},
        {"IPv6", R"({"Enable":false,"eth0":{"IPAddress":"2001::2"}})", -1, "{}"},
        {"IPv6", R"({"eth0":{"IPAddress":"2001::2"}})", -1, "{}"},
        {"IPv6", R"({"Enable":true,"eth1":{"IPAddress":"2001::2"}})", 1, "{}"},
        {"IPv6", R"({"Enable":true,"ETH0":{"IPAddress":"2001::2","Prefix":64,"DhcpEnable":true,
             "DefaultGateway":"2001::1","LinkLocalAddress":"fe80::9","DnsServerEnable":true,
             "DnsServers":["::1","::2"]}})",
         1, R"({"ipAddress":"2001::2","prefix":64,"dhcpEnable":1,
             "defaultGateway":"2001::1","preferredDns":"::1","alternateDns":"::2"})"},
        {"IPv6",
         R"({"Enable":true,"eth0":{"DnsServerEnable":true,"DnsServers":["::1","::2","::3"]}})", 1,
         "{}"},
    };
    for (const Case& c : cases) {
        const auto& [type, seed] = seeds.at(c.section);
        std::vector<unsigned char> record = view::Bytes(type, seed);
        const auto& descriptor = *protofix::describe::FindDescriptor(type);
        Json::Value expected = protofix::describe::ToJson(descriptor, record.data());
        view::Overlay(expected, ParseJson(c.changes));
        EXPECT_EQ(
            support::Parse(c.section, c.table, record.data(), static_cast<int>(record.size())),
            c.result)
            << c.table;
        EXPECT_EQ(protofix::describe::ToJson(descriptor, record.data()), expected) << c.table;
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
    const Json::Value table =
        Packet("Network", view::Bytes("KZDEV_NETWORK_CFG", seed(1)).data()).table();
    EXPECT_TRUE(table.isMember(name));
    EXPECT_EQ(table["DefaultInterface"], name);
    ExpectParse(
        NET, seed(0), "Network",
        R"({"DefaultInterface":")" + name + R"(",")" + name + R"(":{"IPAddress":"10.0.0.1"}})", 1,
        R"({"interfaces":[{"ipAddress":"10.0.0.1","isDefault":1}]})");
}

}  // namespace
