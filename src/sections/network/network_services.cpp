// Network services: "DDNS", "AccessFilter", "Email", "AlarmServer", "PPPoE" and "NTP". Record mode
// only (the dispatch refuses the others); every routine refuses a null record before it writes.
#include "request/fields.h"

#include <protofix/ReqConfigProtocolFix.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <string>
#include <utility>

using namespace protofix;

namespace {

// The entries of an array that a record of capacity entries takes; a value that is not an array
// has none.
unsigned int ArrayCount(const Json::Value& v, unsigned int capacity) {
    return v.isArray() ? std::min(v.size(), capacity) : 0u;
}

// A text copied without clearing the field first: the bytes after the new NUL keep their values.
template <std::size_t N>
void CopyText(const Json::Value& v, char (&field)[N]) {
    if (Present(v)) parseJsonNodeToStr(v, field, static_cast<int>(N));
}

// A text read with a bound wider than its field, as the device reads it: an unterminated field
// runs on into the fields after it, but the read stops at the end of the record.
void PutTextRunOn(Json::Value& node, const char* field, std::size_t bound, const void* recordEnd) {
    const auto room = static_cast<std::size_t>(static_cast<const char*>(recordEnd) - field);
    packetStrToJsonNode(node, field, static_cast<int>(std::min(bound, room)));
}

// ---- DDNS -------------------------------------------------------------------------------------

// The device reads the account's user name and password with the width of a host name.
constexpr std::size_t kDdnsAccountBound = 256;
// The password's first bytes are cleared before the copy, which is bounded narrower than its field.
constexpr std::size_t kDdnsPasswordCleared = 16;
constexpr int kDdnsPasswordBound = 32;
// A default host name that is no longer in use has its first bytes cleared.
constexpr std::size_t kDdnsDefaultHostNameCleared = 16;

// The provider that older records name "TORVA DDNS" is "KZDDNS" on the device.
constexpr const char kOldProvider[] = "TORVA DDNS";
constexpr const char kProvider[] = "KZDDNS";

void PacketDdnsServer(const KZ_DDNS_SERVER& s, const void* recordEnd, Json::Value& entry) {
    entry["Enable"] = Flag(s.enable);
    PutText(entry["Address"], s.address);
    entry["Port"] = Int(s.port);
    PutTextRunOn(entry["UserName"], s.userName, kDdnsAccountBound, recordEnd);
    PutTextRunOn(entry["Password"], s.password, kDdnsAccountBound, recordEnd);
    entry["KeepAlive"] = UInt(static_cast<unsigned int>(s.keepAlive) / 60u);
    PutText(entry["HostName"], s.hostName);

    Json::Value& defaultHost = entry["DefaultHostName"];
    if (s.defaultHostNameInUse == 1) {
        PutText(defaultHost["HostName"], s.defaultHostName);
        defaultHost["Enable"] = true;
    } else {
        defaultHost["Enable"] = false;
        defaultHost["HostName"] = "";
    }

    // The provider is taken from its 32 bytes, whether or not they hold a NUL.
    std::string protocol(s.protocol, strnlen(s.protocol, sizeof s.protocol));
    if (SameWord(protocol, kOldProvider)) protocol = kProvider;
    SetJsonString(entry["Protocol"], protocol.c_str(), true);
    PutText(entry["EmailAddress"], s.emailAddress);
}

void ParseDdnsServer(const Json::Value& entry, KZ_DDNS_SERVER& s) {
    ReadBool(Member(entry, "Enable"), s.enable);
    ReadText(Member(entry, "Address"), s.address);
    ReadInt(Member(entry, "Port"), s.port);
    CopyText(Member(entry, "UserName"), s.userName);

    const Json::Value& password = Member(entry, "Password");
    if (Present(password)) {
        std::memset(s.password, 0, kDdnsPasswordCleared);
        parseJsonNodeToStr(password, s.password, kDdnsPasswordBound);
    }

    const Json::Value& keepAlive = Member(entry, "KeepAlive");
    if (Present(keepAlive))
        s.keepAlive = Narrow<int>(static_cast<unsigned int>(keepAlive.asInt()) * 60u);
    ReadText(Member(entry, "HostName"), s.hostName);

    const Json::Value& protocol = Member(entry, "Protocol");
    CopyText(protocol, s.protocol);
    if (protocol.isString() && SameWord(protocol.asString(), kOldProvider)) {
        std::memcpy(s.protocol, kProvider, sizeof kProvider);
    }

    const Json::Value& defaultHost = Member(entry, "DefaultHostName");
    if (Present(defaultHost)) {
        if (Member(defaultHost, "Enable").asBool()) {
            s.defaultHostNameInUse = 1;
            std::memset(s.defaultHostName, 0, sizeof s.defaultHostName);
            parseJsonNodeToStr(Member(defaultHost, "HostName"), s.defaultHostName,
                               sizeof s.defaultHostName);
        } else {
            s.defaultHostNameInUse = 0;
            std::memset(s.defaultHostName, 0, kDdnsDefaultHostNameCleared);
        }
    }
    ReadText(Member(entry, "EmailAddress"), s.emailAddress);
}

// ---- AccessFilter -----------------------------------------------------------------------------

using AddressList = char[KZ_MAX_IP_FILTER_ADDRESSES][16];

// Always an array, empty when the list has no address.
void PacketAddressList(Json::Value& list, const AddressList& addresses, unsigned int count) {
    list = Json::Value(Json::arrayValue);
    count = std::min(count, static_cast<unsigned int>(KZ_MAX_IP_FILTER_ADDRESSES));
    for (unsigned int k = 0; k < count; ++k) PutText(list[k], addresses[k]);
}

// The count is reset whether or not the table has the list; the addresses are written over
// without clearing.
void ParseAddressList(const Json::Value& list, AddressList& addresses, unsigned int& count) {
    count = 0;
    if (!Present(list)) return;
    count = ArrayCount(list, KZ_MAX_IP_FILTER_ADDRESSES);
    for (unsigned int k = 0; k < count; ++k) {
        parseJsonNodeToStr(list[k], addresses[k], sizeof addresses[k]);
    }
}

}  // namespace

int CReqConfigProtocolFix::Packet_MULTI_DDNS(Json::Value& table) {
    const auto* cfg = InputRecord<KZDEV_MULTI_DDNS_CFG>();
    if (cfg == nullptr) return -1;
    const unsigned int count =
        std::min(cfg->serverCount, static_cast<unsigned int>(KZ_MAX_DDNS_SERVERS));
    for (unsigned int i = 0; i < count; ++i)
        PacketDdnsServer(cfg->servers[i], EndOf(cfg), table[i]);
    return 1;
}

int CReqConfigProtocolFix::Parse_MULTI_DDNS(Json::Value& table) {
    auto* cfg = OutputRecord<KZDEV_MULTI_DDNS_CFG>();
    if (cfg == nullptr) return -1;
    const Json::Value& in = table;
    cfg->serverCount = ArrayCount(in, KZ_MAX_DDNS_SERVERS);
    for (unsigned int i = 0; i < cfg->serverCount; ++i) {
        const Json::Value& entry = Element(in, i);
        if (Present(entry)) ParseDdnsServer(entry, cfg->servers[i]);
    }
    return 1;
}

int CReqConfigProtocolFix::Packet_IpFilter(Json::Value& table) {
    const auto* cfg = InputRecord<KZDEV_IPIFILTER_CFG>();
    if (cfg == nullptr) return -1;
    table["Enable"] = Flag(cfg->enable);
    if (cfg->listType == KZ_IPFILTER_TRUST_LIST) table["Type"] = "TrustList";
    if (cfg->listType == KZ_IPFILTER_BANNED_LIST) table["Type"] = "BannedList";
    PacketAddressList(table["TrustList"], cfg->trustedAddresses, cfg->trustedCount);
    PacketAddressList(table["BannedList"], cfg->bannedAddresses, cfg->bannedCount);
    return 1;
}

int CReqConfigProtocolFix::Parse_IpFilter(Json::Value& table) {
    auto* cfg = OutputRecord<KZDEV_IPIFILTER_CFG>();
    if (cfg == nullptr) return -1;
    const Json::Value& in = table;
    ReadBool(Member(in, "Enable"), cfg->enable);
    const Json::Value& type = Member(in, "Type");
    if (Present(type)) {
        const std::string word = type.asString();
        if (SameWord(word, "TrustList")) cfg->listType = KZ_IPFILTER_TRUST_LIST;
        if (SameWord(word, "BannedList")) cfg->listType = KZ_IPFILTER_BANNED_LIST;
    }
    ParseAddressList(Member(in, "TrustList"), cfg->trustedAddresses, cfg->trustedCount);
    ParseAddressList(Member(in, "BannedList"), cfg->bannedAddresses, cfg->bannedCount);
    return 1;
}

int CReqConfigProtocolFix::Packet_Email(Json::Value& table) {
    const auto* cfg = InputRecord<KZDEV_MAIL_CFG>();
    if (cfg == nullptr) return -1;
    table["Enable"] = Flag(cfg->enable);
    table["SslEnable"] = cfg->secureMode == KZ_MAIL_SECURE_SSL;
    table["TlsEnable"] = cfg->secureMode == KZ_MAIL_SECURE_TLS;
    PutText(table["Address"], cfg->address);
    table["Port"] = Int(cfg->port);
    PutText(table["UserName"], cfg->userName);
    PutText(table["Password"], cfg->password);
    table["Anonymous"] = Flag(cfg->anonymous);
    PutText(table["SendAddress"], cfg->sendAddress);
    // Only the receivers that are set; the second and third are read up to their NUL.
    if (cfg->receivers[0][0] != '\0') PutText(table["Receivers"][0], cfg->receivers[0]);
    for (Json::ArrayIndex k = 1; k < KZ_MAX_MAIL_RECEIVERS; ++k) {
        if (cfg->receivers[k][0] == '\0') continue;
        SetJsonString(table["Receivers"][k], TextUpTo(cfg->receivers[k], EndOf(cfg)).c_str(), true);
    }
    PutText(table["Title"], cfg->title);
    table["AttachEnable"] = Flag(cfg->attachEnable);
    table["SendInterv"] = Int(cfg->sendInterval);
    return 1;
}

// The keys are read in the device's order, and the first one missing ends the conversion with the
// fields after it untouched; the secure-connection keys alone may be missing.
int CReqConfigProtocolFix::Parse_Email(Json::Value& table) {
    auto* cfg = OutputRecord<KZDEV_MAIL_CFG>();
    if (cfg == nullptr) return -1;
    const Json::Value& in = table;
    const Json::Value* v = nullptr;
    const auto next = [&](const char* key) {
        v = &Member(in, key);
        return Present(*v);
    };

    if (!next("Enable")) return 1;
    ReadBool(*v, cfg->enable);
    const bool ssl = Member(in, "SslEnable").asBool();
    const bool tls = Member(in, "TlsEnable").asBool();
    cfg->secureMode = ssl ? KZ_MAIL_SECURE_SSL : tls ? KZ_MAIL_SECURE_TLS : KZ_MAIL_SECURE_NONE;
    if (!next("Address")) return 1;
    ReadText(*v, cfg->address);
    if (!next("Port")) return 1;
    ReadInt(*v, cfg->port);
    if (!next("UserName")) return 1;
    ReadText(*v, cfg->userName);
    if (!next("Password")) return 1;
    ReadText(*v, cfg->password);
    if (!next("Anonymous")) return 1;
    ReadBool(*v, cfg->anonymous);
    if (!next("SendAddress")) return 1;
    ReadText(*v, cfg->sendAddress);
    if (!next("Receivers") || !v->isArray()) return 1;
    // The first receiver is cleared even when the list has no first element; the others are
    // written over.
    std::memset(cfg->receivers[0], 0, sizeof cfg->receivers[0]);
    parseJsonNodeToStr(Element(*v, 0), cfg->receivers[0], sizeof cfg->receivers[0]);
    for (Json::ArrayIndex k = 1; k < KZ_MAX_MAIL_RECEIVERS; ++k) {
        GetJsonString(Element(*v, k), cfg->receivers[k], sizeof cfg->receivers[k], true);
    }
    if (!next("Title")) return 1;
    ReadText(*v, cfg->title);
    if (!next("AttachEnable")) return 1;
    ReadBool(*v, cfg->attachEnable);
    if (!next("SendInterv")) return 1;
    ReadInt(*v, cfg->sendInterval);
    return 1;
}

namespace {

// "ReportWeekDay" for no report.
constexpr int kNoReportDay = -1;

}  // namespace

// The report day goes to the table in the other numbering: 1 (every day) is 7, 2 to 8 are the
// weekdays 0 to 6; a day outside 0 to 8 writes no "ReportWeekDay".
int CReqConfigProtocolFix::Packet_AlarmServer(Json::Value& table) {
    const auto* cfg = InputRecord<KZDEV_ALARMCENTER_CFG>();
    if (cfg == nullptr) return -1;
    table["Enable"] = Flag(cfg->enable);
    PutText(table["Address"], cfg->address);
    table["Port"] = Int(cfg->port);
    if (cfg->reportEnable == 0) {
        table["ReportWeekDay"] = kNoReportDay;
    } else if (cfg->reportDay >= 0 && cfg->reportDay <= 8) {
        table["ReportWeekDay"] = DateFix_2To3(cfg->reportDay);
    }
    char time[32];
    _snprintf(time, sizeof time, "%d:0:0", cfg->reportHour);
    table["ReportTime"] = time;
    return 1;
}

int CReqConfigProtocolFix::Parse_AlarmServer(Json::Value& table) {
    auto* cfg = OutputRecord<KZDEV_ALARMCENTER_CFG>();
    if (cfg == nullptr) return -1;
    const Json::Value& in = table;
    ReadBool(Member(in, "Enable"), cfg->enable);
    ReadText(Member(in, "Address"), cfg->address);
    ReadInt(Member(in, "Port"), cfg->port);
    const Json::Value& day = Member(in, "ReportWeekDay");
    if (Present(day)) {
        const int n = day.asInt();
        cfg->reportEnable = n == kNoReportDay ? 0 : 1;
        cfg->reportDay = DateFix_3To2(n);
    }
    // Only a complete "H:M:S" sets the hour.
    const Json::Value& time = Member(in, "ReportTime");
    if (time.isString()) {
        int hour = 0;
        int minute = 0;
        int second = 0;
        if (std::sscanf(time.asCString(), "%d:%d:%d", &hour, &minute, &second) == 3) {
            cfg->reportHour = hour;
        }
    }
    return 1;
}

int CReqConfigProtocolFix::Packet_PPPoE(Json::Value& table) {
    const auto* cfg = InputRecord<KZDEV_NET_CFG>();
    if (cfg == nullptr) return -1;
    table["Enable"] = Flag(cfg->pppoeEnable);
    PutText(table["UserName"], cfg->pppoeUserName);
    PutText(table["Password"], cfg->pppoePassword);
    return 1;
}

int CReqConfigProtocolFix::Parse_PPPoE(Json::Value& table) {
    auto* cfg = OutputRecord<KZDEV_NET_CFG>();
    if (cfg == nullptr) return -1;
    const Json::Value& in = table;
    ReadBool(Member(in, "Enable"), cfg->pppoeEnable);
    ReadText(Member(in, "UserName"), cfg->pppoeUserName);
    ReadText(Member(in, "Password"), cfg->pppoePassword);
    return 1;
}

// The address type chooses which address the table carries; the table never sets the type.
int CReqConfigProtocolFix::Packet_NTP(Json::Value& table) {
    const auto* cfg = InputRecord<KZDEV_NTP_CFG>();
    if (cfg == nullptr) return -1;
    table["Enable"] = Flag(cfg->enable);
    table["TimeZone"] = Int(cfg->timeZone);
    if (cfg->addressType == KZ_NTP_ADDRESS_IP) {
        PutText(table["Address"], cfg->ipAddress);
    } else if (cfg->addressType == KZ_NTP_ADDRESS_DOMAIN) {
        PutText(table["Address"], cfg->domainName);
    } else {
        table["Address"] = "";
    }
    table["Port"] = Int(cfg->port);
    table["UpdatePeriod"] = Int(cfg->updatePeriod);
    return 1;
}

int CReqConfigProtocolFix::Parse_NTP(Json::Value& table) {
    auto* cfg = OutputRecord<KZDEV_NTP_CFG>();
    if (cfg == nullptr) return -1;
    const Json::Value& in = table;
    ReadBool(Member(in, "Enable"), cfg->enable);
    for (const auto& [key, field] : {std::pair<const char*, int*>{"TimeZone", &cfg->timeZone},
                                     {"Port", &cfg->port},
                                     {"UpdatePeriod", &cfg->updatePeriod}}) {
        const Json::Value& v = Member(in, key);
        if (v.isInt()) *field = v.asInt();
    }
    const Json::Value& address = Member(in, "Address");
    if (address.isString()) {
        if (cfg->addressType == KZ_NTP_ADDRESS_DOMAIN) {
            ReadText(address, cfg->domainName);
        } else {
            ReadText(address, cfg->ipAddress);
        }
    }
    return 1;
}
