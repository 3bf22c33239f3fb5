// The device's private client protocol and the devices it pulls streams from: "DVRIP_NET",
// "DVRIP_REGISTER", "DVRIP_TRANS" (the stream-transfer policy) and "RemoteDevice". Record mode
// only (the dispatch refuses the others); every routine refuses a null record before it writes.
#include "request/fields.h"

#include <protofix/ReqConfigProtocolFix.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <string>

using namespace protofix;

namespace {

// A presence-tested unsigned read, cut to the field's width.
template <class Field>
void ReadUnsigned(const Json::Value& v, Field& field) {
    if (Present(v)) field = Narrow<Field>(v.asUInt());
}

// The multicast address takes at most 15 bytes of the text, zero-filled after a shorter text;
// its 16th byte keeps what it held, so a text of 15 characters or more gets no new NUL.
constexpr std::size_t kMulticastAddressCopy = 15;

// The table's server address lands in the domain name as one block of 48 bytes from the start of
// the text: a shorter text brings its NUL. The block never reaches past the text's own storage.
constexpr std::size_t kRegisterAddressBlock = 48;

void CopyAddressBlock(const std::string& text, char (&domainName)[60]) {
    std::memcpy(domainName, text.c_str(), std::min(kRegisterAddressBlock, text.size() + 1));
}

}  // namespace

int CReqConfigProtocolFix::Packet_DVRIP_NET(Json::Value& table) {
    const auto* cfg = InputRecord<KZDEV_NET_CFG>();
    if (cfg == nullptr) return -1;
    table["TCPPort"] = Int(cfg->tcpPort);
    table["SSLPort"] = Int(cfg->sslPort);
    table["MaxConnections"] = Int(cfg->maxConnections);
    table["UDPPort"] = Int(cfg->udpPort);
    table["MCASTEnable"] = Flag(cfg->multicastEnable);
    // Read up to its NUL, with no width: a full address runs on into the fields after it.
    table["MCASTAddress"] = TextUpTo(cfg->multicastAddress, EndOf(cfg));
    table["MCASTPort"] = Int(cfg->multicastPort);
    return 1;
}

int CReqConfigProtocolFix::Parse_DVRIP_NET(Json::Value& table) {
    auto* cfg = OutputRecord<KZDEV_NET_CFG>();
    if (cfg == nullptr) return -1;
    const Json::Value& in = table;
    ReadUnsigned(Member(in, "TCPPort"), cfg->tcpPort);
    ReadUnsigned(Member(in, "SSLPort"), cfg->sslPort);
    ReadUnsigned(Member(in, "MaxConnections"), cfg->maxConnections);
    ReadUnsigned(Member(in, "UDPPort"), cfg->udpPort);
    ReadBool(Member(in, "MCASTEnable"), cfg->multicastEnable);
    const Json::Value& address = Member(in, "MCASTAddress");
    if (Present(address)) {
        const std::string text = address.asString();
        std::strncpy(cfg->multicastAddress, text.c_str(), kMulticastAddressCopy);
    }
    ReadUnsigned(Member(in, "MCASTPort"), cfg->multicastPort);
    return 1;
}

int CReqConfigProtocolFix::Packet_DVRIP_REGISTER(Json::Value& table) {
    const auto* cfg = InputRecord<KZDEV_REGISTER_SERVER>();
    if (cfg == nullptr) return -1;
    Json::Value& reg = table["RegisterServer"];
    reg["Enable"] = Flag(cfg->enable);
    PutText(reg["DeviceID"], cfg->deviceId);
    const unsigned int count = std::min<unsigned int>(cfg->serverCount, KZ_MAX_REGISTER_SERVERS);
    for (unsigned int i = 0; i < count; ++i) {
        const KZ_REGISTER_SERVER_ENTRY& server = cfg->servers[i];
        Json::Value& entry = reg["Servers"][i];
        entry["Port"] = Int(server.port);
        const char* address =
            server.addressKind == KZ_REGISTER_ADDRESS_DOMAIN ? server.domainName : server.ipAddress;
        entry["Address"] = TextUpTo(address, EndOf(cfg));
    }
    return 1;
}

// The address always lands in the domain name and the address kind is left as the caller set it.
int CReqConfigProtocolFix::Parse_DVRIP_REGISTER(Json::Value& table) {
    auto* cfg = OutputRecord<KZDEV_REGISTER_SERVER>();
    if (cfg == nullptr) return -1;
    const Json::Value& reg = Member(table, "RegisterServer");
    ReadBool(Member(reg, "Enable"), cfg->enable);
    ReadText(Member(reg, "DeviceID"), cfg->deviceId);

    const Json::Value& servers = Member(reg, "Servers");
    const unsigned int count =
        servers.isArray() ? std::min<unsigned int>(servers.size(), KZ_MAX_REGISTER_SERVERS) : 0u;
    cfg->serverCount = Narrow<unsigned char>(count);
    for (unsigned int i = 0; i < count; ++i) {
        const Json::Value& server = Element(servers, i);
        KZ_REGISTER_SERVER_ENTRY& entry = cfg->servers[i];
        ReadUnsigned(Member(server, "Port"), entry.port);
        const Json::Value& address = Member(server, "Address");
        if (Present(address)) CopyAddressBlock(address.asString(), entry.domainName);
    }
    return 1;
}

namespace {

// The strategies by code; "None" stands for a disabled policy whatever the strategy.
constexpr const char* kStrategies[] = {"Quality", "Fluency", "AutoAdapt"};
constexpr const char kNoPolicy[] = "None";

}  // namespace

int CReqConfigProtocolFix::Packet_StreamPolicy(Json::Value& policy,
                                               KZDEV_TRANSFER_STRATEGY_CFG& cfg) {
    const auto strategy = static_cast<unsigned int>(cfg.strategy);
    if (strategy < std::size(kStrategies)) policy = kStrategies[strategy];
    if (cfg.enable == 0) policy = kNoPolicy;
    return 1;
}

int CReqConfigProtocolFix::Parse_StreamPolicy(const Json::Value& policy,
                                              KZDEV_TRANSFER_STRATEGY_CFG& cfg) {
    const std::string word = policy.asString();
    if (SameWord(word, kNoPolicy)) {
        cfg.enable = 0;
        return 1;
    }
    for (std::size_t code = 0; code < std::size(kStrategies); ++code) {
        if (SameWord(word, kStrategies[code])) {
            cfg.enable = 1;
            cfg.strategy = static_cast<int>(code);
            return 1;
        }
    }
    cfg.enable = 0;
    cfg.strategy = KZ_TRANSFER_QUALITY;
    return 1;
}

int CReqConfigProtocolFix::Packet_DVRIP_StreamPolicy(Json::Value& table) {
    auto* cfg = InputRecord<KZDEV_TRANSFER_STRATEGY_CFG>();
    if (cfg == nullptr) return -1;
    return Packet_StreamPolicy(table["StreamPolicy"], *cfg);
}

int CReqConfigProtocolFix::Parse_DVRIP_StreamPolicy(Json::Value& table) {
    auto* cfg = OutputRecord<KZDEV_TRANSFER_STRATEGY_CFG>();
    if (cfg == nullptr) return -1;
    return Parse_StreamPolicy(Member(table, "StreamPolicy"), *cfg);
}

namespace {

// "ProtocolType" by protocol code, 1 to 5; every other code is the device's own protocol.
constexpr const char* kRemoteProtocols[] = {"TorvaII", "TorvaQLMN", "TorvaCRX", "TorvaRtsp", "TS"};
constexpr const char kDefaultRemoteProtocol[] = "Torva";
constexpr const char kIpCamera[] = "IPC";

// The key of entry i: "uuid:%d" formatted into 64 bytes.
constexpr std::size_t kRemoteKeyBuffer = 64;
// A member name of the table is taken as its first 260 bytes, up to a NUL.
constexpr std::size_t kRemoteNameBuffer = 260;

const char* RemoteProtocolWord(int code) {
    const auto index = static_cast<unsigned int>(code) - 1u;
    return index < std::size(kRemoteProtocols) ? kRemoteProtocols[index] : kDefaultRemoteProtocol;
}

int RemoteProtocolCode(const std::string& word) {
    for (std::size_t i = 0; i < std::size(kRemoteProtocols); ++i) {
        if (SameWord(word, kRemoteProtocols[i])) return static_cast<int>(i) + 1;
    }
    return KZ_REMOTE_PROTOCOL_DEFAULT;
}

void PacketRemoteDevice(const KZ_REMOTE_DEVICE& device, Json::Value& obj) {
    obj["Enable"] = device.enable != 0;
    PutText(obj["Address"], device.address);
    obj["Port"] = Int(device.port);
    obj["ProtocolType"] = RemoteProtocolWord(device.protocolType);
    PutText(obj["UserName"], device.userName);
    PutText(obj["Password"], device.password);
    obj["DeviceClass"] = kIpCamera;
    PutText(obj["Name"], device.name);
}

void ParseRemoteDevice(const Json::Value& obj, KZ_REMOTE_DEVICE& device) {
    ReadBool(Member(obj, "Enable"), device.enable);
    ReadText(Member(obj, "Address"), device.address);
    ReadInt(Member(obj, "Port"), device.port);
    const Json::Value& protocol = Member(obj, "ProtocolType");
    if (Present(protocol)) device.protocolType = RemoteProtocolCode(protocol.asString());
    ReadText(Member(obj, "UserName"), device.userName);
    ReadText(Member(obj, "Password"), device.password);
    // Only an IP camera sets the class; another word leaves it.
    const Json::Value& deviceClass = Member(obj, "DeviceClass");
    if (Present(deviceClass) && SameWord(deviceClass.asString(), kIpCamera)) {
        device.deviceClass = KZ_REMOTE_CLASS_IPC;
    }
    ReadText(Member(obj, "Name"), device.name);
}

}  // namespace

int CReqConfigProtocolFix::Packet_RemoteDevice(Json::Value& table) {
    const auto* cfg = InputRecord<KZDEV_REMOTE_DEVICE_CFG>();
    if (cfg == nullptr) return -1;
    const int count = std::min(cfg->deviceCount, KZ_MAX_REMOTE_DEVICES);
    for (int i = 0; i < count; ++i) {
        char key[kRemoteKeyBuffer];
        _snprintf(key, sizeof key, "uuid:%d", i);
        PacketRemoteDevice(cfg->devices[i], table[key]);
    }
    return 1;
}

// Every member of the table counts, up to the capacity, whatever its name and even when it is not
// usable; the k-th member in the table's own order fills entry k.
int CReqConfigProtocolFix::Parse_RemoteDevice(Json::Value& table) {
    auto* cfg = OutputRecord<KZDEV_REMOTE_DEVICE_CFG>();
    if (cfg == nullptr) return -1;
    const Json::Value& in = table;
    const unsigned int members = in.isObject() ? in.size() : 0u;
    const int count =
        static_cast<int>(std::min(members, static_cast<unsigned int>(KZ_MAX_REMOTE_DEVICES)));
    cfg->deviceCount = count;

    int k = 0;
    for (auto it = in.begin(); k < count && it != in.end(); ++it, ++k) {
        const std::string name = it.name();
        const std::string key(name.c_str(),
                              strnlen(name.c_str(), std::min(name.size(), kRemoteNameBuffer)));
        const Json::Value& obj = Member(in, key);
        if (!Present(obj)) continue;
        ParseRemoteDevice(obj, cfg->devices[k]);
    }
    return 1;
}
