// Network interfaces and basic services: "Network", "Network_DNS", "RTSP", "Web", "Multicast" and
// "IPv6". Record mode only (the dispatch refuses the others); every routine refuses a null record.
#include "request/fields.h"

#include <protofix/ReqConfigProtocolFix.h>

#include <algorithm>
#include <cstring>
#include <string>

using namespace protofix;

namespace {

// Interfaces of the table that the caller's count names, never past the table's capacity.
unsigned int InterfaceCount(const KZDEV_NETWORK_CFG& cfg) {
    return std::min(cfg.interfaceCount, static_cast<unsigned int>(KZ_MAX_NET_INTERFACES));
}

// The interface's name is the key of its object, read within its width: a name that fills all 64
// bytes is a 64-character key.
std::string InterfaceName(const KZDEV_NETWORK_CFG& cfg, unsigned int i) {
    return TextOf(cfg.interfaces[i].name);
}

// The bonding of "bond0" as the table gives it; the first interface of the record decides every
// mode but load balancing, which is the device's way and is kept.
void PacketBonding(const KZDEV_NETWORK_CFG& cfg, const KZ_NET_INTERFACE& bond, Json::Value& obj) {
    if (bond.bondingMode == KZ_BONDING_BALANCE) {
        obj["Bonding"] = true;
        obj["Mode"] = "BalanceRR";
        return;
    }
    switch (cfg.interfaces[0].bondingMode) {
        case KZ_BONDING_ACTIVE_BACKUP:
            obj["Bonding"] = true;
            obj["Mode"] = "ActiveBackup";
            break;
        case KZ_BONDING_OFF: obj["Bonding"] = false; break;
        default: break;
    }
}

// The bonding code that the table's "bond0" gives every interface it names; 0 gives none.
unsigned char ParseBonding(const Json::Value& table) {
    const Json::Value& bond = Member(table, "bond0");
    if (!Present(bond) || !Present(Member(bond, "Bonding"))) return KZ_BONDING_NONE;
    if (!Member(bond, "Bonding").asBool()) return KZ_BONDING_OFF;
    const std::string mode = Member(bond, "Mode").asString();
    for (const char* balance : {"BalanceRR", "BalanceXOR", "BalanceTLB", "BalanceALB"}) {
        if (SameWord(mode, balance)) return KZ_BONDING_BALANCE;
    }
    for (const char* backup : {"Broadcast", "ActiveBackup"}) {
        if (SameWord(mode, backup)) return KZ_BONDING_ACTIVE_BACKUP;
    }
    return KZ_BONDING_NONE;
}

// An address of the interface keeps up to all 16 bytes of its text, with no room kept for a NUL.
void ReadAddress(const Json::Value& v, char (&field)[16]) {
    if (!Present(v)) return;
    const std::string text = v.asString();
    std::memset(field, 0, sizeof field);
    std::memcpy(field, text.data(), std::min(text.size(), sizeof field));
}

void ReadFlag(const Json::Value& v, unsigned char& flags, unsigned int bit) {
    if (Present(v)) SetBits(flags, bit, v.asBool());
}

}  // namespace

int CReqConfigProtocolFix::Packet_NetWork(Json::Value& table) {
    const auto* cfg = InputRecord<KZDEV_NETWORK_CFG>();
    if (cfg == nullptr) return -1;

    PutText(table["Hostname"], cfg->hostName);
    std::string defaultInterface;
    for (unsigned int i = 0; i < InterfaceCount(*cfg); ++i) {
        const KZ_NET_INTERFACE& nic = cfg->interfaces[i];
        const std::string name = InterfaceName(*cfg, i);
        if (nic.isDefault != 0) defaultInterface = name;
        // An interface named as another key of the table ("Hostname") finds a text there: its
        // keys are not written into it.
        Json::Value& obj = table[name];
        if (!IsObjectOrNull(obj)) continue;
        obj["IPAddress"] = TextUpTo(nic.ipAddress, EndOf(cfg));
        obj["SubnetMask"] = TextUpTo(nic.subnetMask, EndOf(cfg));
        obj["DefaultGateway"] = TextUpTo(nic.defaultGateway, EndOf(cfg));
        obj["Enable"] = (nic.flags & KZ_NET_INTERFACE_ENABLE) != 0;
        obj["DhcpEnable"] = (nic.flags & KZ_NET_INTERFACE_DHCP) != 0;
        if (SameWord(name, "bond0")) PacketBonding(*cfg, nic, obj);
    }
    table["DefaultInterface"] = defaultInterface;
    return 1;
}

int CReqConfigProtocolFix::Parse_NetWork(Json::Value& table) {
    auto* cfg = OutputRecord<KZDEV_NETWORK_CFG>();
    if (cfg == nullptr) return -1;
    const Json::Value& in = table;

    ReadText(Member(in, "Hostname"), cfg->hostName);
    const unsigned char bonding = ParseBonding(in);
    const std::string defaultInterface = Member(in, "DefaultInterface").asString();
    // The caller names the interfaces beforehand: the names select the objects to read.
    for (unsigned int i = 0; i < InterfaceCount(*cfg); ++i) {
        KZ_NET_INTERFACE& nic = cfg->interfaces[i];
        const std::string name = InterfaceName(*cfg, i);
        const Json::Value& obj = Member(in, name);
        if (!Present(obj)) continue;
        if (bonding != KZ_BONDING_NONE) nic.bondingMode = bonding;
        nic.isDefault = SameWord(name, defaultInterface.c_str()) ? 1 : 0;
        ReadAddress(Member(obj, "IPAddress"), nic.ipAddress);
        ReadAddress(Member(obj, "SubnetMask"), nic.subnetMask);
        ReadAddress(Member(obj, "DefaultGateway"), nic.defaultGateway);
        ReadFlag(Member(obj, "DhcpEnable"), nic.flags, KZ_NET_INTERFACE_DHCP);
        ReadFlag(Member(obj, "Enable"), nic.flags, KZ_NET_INTERFACE_ENABLE);
    }
    return 1;
}

// The servers go to the top of the table but come back from inside the default interface's
// object: the device answers that way, so the two directions differ on purpose.
int CReqConfigProtocolFix::Packet_NetWork_DNS(Json::Value& table) {
    const auto* cfg = InputRecord<KZDEV_DNS_CFG>();
    if (cfg == nullptr) return -1;
    PutText(table["DnsServers"][0], cfg->primaryDns);
    PutText(table["DnsServers"][1], cfg->secondaryDns);
    return 1;
}

int CReqConfigProtocolFix::Parse_NetWork_DNS(Json::Value& table) {
    auto* cfg = OutputRecord<KZDEV_DNS_CFG>();
    if (cfg == nullptr) return -1;
    const Json::Value& in = table;

    std::string name = "eth0";
    if (Present(Member(in, "DefaultInterface"))) name = Member(in, "DefaultInterface").asString();
    const Json::Value& servers = Member(Member(in, name), "DnsServers");
    if (!servers.isArray()) return 1;
    // Written over without clearing: a shorter server keeps the old bytes after its NUL.
    const Json::Value& primary = Element(servers, 0);
    const Json::Value& secondary = Element(servers, 1);
    if (primary.isString()) parseJsonNodeToStr(primary, cfg->primaryDns, sizeof cfg->primaryDns);
    if (secondary.isString()) {
        parseJsonNodeToStr(secondary, cfg->secondaryDns, sizeof cfg->secondaryDns);
    }
    return 1;
}

int CReqConfigProtocolFix::Packet_RTSP(Json::Value& table) {
    const auto* cfg = InputRecord<KZDEV_RTSP_CFG>();
    if (cfg == nullptr) return -1;
    table["Port"] = Int(cfg->port);
    return 1;
}

// The one key of the section is required.
int CReqConfigProtocolFix::Parse_RTSP(Json::Value& table) {
    auto* cfg = OutputRecord<KZDEV_RTSP_CFG>();
    if (cfg == nullptr) return -1;
    const Json::Value& port = Member(table, "Port");
    if (!Present(port)) return -1;
    ReadInt(port, cfg->port);
    return 1;
}

int CReqConfigProtocolFix::Packet_Web(Json::Value& table) {
    const auto* cfg = InputRecord<KZDEV_NET_CFG>();
    if (cfg == nullptr) return -1;
    table["Port"] = Int(cfg->httpPort);
    return 1;
}

int CReqConfigProtocolFix::Parse_Web(Json::Value& table) {
    auto* cfg = OutputRecord<KZDEV_NET_CFG>();
    if (cfg == nullptr) return -1;
    ReadInt(Member(table, "Port"), cfg->httpPort);
    return 1;
}

// The multicast stream of the private protocol: element 0 of "KZII".
int CReqConfigProtocolFix::Packet_Mulitcast(Json::Value& table) {
    const auto* cfg = InputRecord<KZDEV_NET_CFG>();
    if (cfg == nullptr) return -1;
    Json::Value& stream = table["KZII"][0];
    stream["Enable"] = cfg->multicastEnable != 0;
    char address[sizeof cfg->multicastAddress];
    std::memcpy(address, cfg->multicastAddress, sizeof address);
    CRequest::packetAssicToUtf8Jason(stream["MulticastAddr"], address, sizeof address);
    stream["Port"] = Int(cfg->multicastPort);
    return 1;
}

int CReqConfigProtocolFix::Parse_Mulitcast(Json::Value& table) {
    auto* cfg = OutputRecord<KZDEV_NET_CFG>();
    if (cfg == nullptr) return -1;
    const Json::Value& stream = Element(Member(table, "KZII"), 0);
    if (!Present(stream)) return 1;

    ReadBool(Member(stream, "Enable"), cfg->multicastEnable);
    Json::Value address = Member(stream, "MulticastAddr");
    if (Present(address)) {
        CRequest::parseUtf8JasonToAssic(address, cfg->multicastAddress,
                                        sizeof cfg->multicastAddress);
    }
    ReadInt(Member(stream, "Port"), cfg->multicastPort);
    return 1;
}

// IPv6 of the first interface, under "eth0".
int CReqConfigProtocolFix::Packet_IPv6(Json::Value& table) {
    const auto* cfg = InputRecord<KZDEV_IPV6_CFG>();
    if (cfg == nullptr) return -1;
    table["Enable"] = true;
    Json::Value& nic = table["eth0"];
    PutText(nic["LinkLocalAddress"], cfg->linkLocalAddress);
    PutText(nic["IPAddress"], cfg->ipAddress);
    nic["Prefix"] = UInt(cfg->prefix);
    nic["DhcpEnable"] = Flag(cfg->dhcpEnable);
    PutText(nic["DefaultGateway"], cfg->defaultGateway);
    nic["DnsServerEnable"] = true;
    PutText(nic["DnsServers"][0], cfg->preferredDns);
    PutText(nic["DnsServers"][1], cfg->alternateDns);
    return 1;
}

namespace {

// The servers of an IPv6 interface: a list of more than two is not a valid answer and is ignored.
void ParseIPv6Servers(const Json::Value& nic, KZDEV_IPV6_CFG& cfg) {
    const Json::Value& servers = Member(nic, "DnsServers");
    if (!Member(nic, "DnsServerEnable").asBool() || !Present(servers)) return;
    if (!servers.isArray() || servers.size() > 2) return;
    ReadText(Element(servers, 0), cfg.preferredDns);
    ReadText(Element(servers, 1), cfg.alternateDns);
}

}  // namespace

int CReqConfigProtocolFix::Parse_IPv6(Json::Value& table) {
    auto* cfg = OutputRecord<KZDEV_IPV6_CFG>();
    if (cfg == nullptr) return -1;
    const Json::Value& in = table;
    if (!Member(in, "Enable").asBool()) return -1;

    // Enable is true, so the table is an object.
    for (const std::string& member : in.getMemberNames()) {
        if (!SameWord(member, "eth0")) continue;
        const Json::Value& nic = Member(in, member);
        ReadText(Member(nic, "IPAddress"), cfg->ipAddress);
        ReadInt(Member(nic, "Prefix"), cfg->prefix);
        ReadBool(Member(nic, "DhcpEnable"), cfg->dhcpEnable);
        ReadText(Member(nic, "DefaultGateway"), cfg->defaultGateway);
        ParseIPv6Servers(nic, *cfg);
    }
    return 1;
}
