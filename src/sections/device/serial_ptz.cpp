// Serial links: "Comm" (the device's serial ports, record mode) and "Ptz" (the decoder link of the
// request's channel, in record mode and in the F5 text of earlier-protocol devices). Both give a
// port as "Attribute" [baud rate, data bits, parity, stop bits] and a protocol chosen by name.
#include "request/f5_text.h"
#include "request/fields.h"

#include <protofix/ReqConfigProtocolFix.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>

using namespace protofix;

namespace {

// Baud codes 0 to 9; the last rate is also what every other code gives.
constexpr int kBaudRates[] = {300, 600, 1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200};
constexpr int kBaudCodes = sizeof kBaudRates / sizeof kBaudRates[0];
constexpr const char* kParityWords[] = {"None", "Odd", "Even", "Mark", "Space"};
constexpr const char* kStopBitsWords[] = {"1", "1.5", "2"};
constexpr int kDataBitsBase = 5;

template <std::size_t N>
const char* WordOf(const char* const (&words)[N], int code) {
    return code >= 0 && code < static_cast<int>(N) ? words[code] : nullptr;
}

// The code of a word compared with its case; -1 for another word.
template <std::size_t N>
int CodeOf(const char* const (&words)[N], const std::string& word) {
    for (std::size_t i = 0; i < N; ++i) {
        if (word == words[i]) return static_cast<int>(i);
    }
    return -1;
}

// ---- the port's attributes, between their codes and the "Attribute" array

int BaudRateOf(int code) {
    return code >= 0 && code < kBaudCodes ? kBaudRates[code] : kBaudRates[kBaudCodes - 1];
}

// Any rate that is not one of the first nine, 115200 included, is the last code.
int BaudCodeAt(const Json::Value& attribute) {
    const int rate = Element(attribute, 0).asInt();
    const int* found = std::find(kBaudRates, kBaudRates + kBaudCodes - 1, rate);
    return static_cast<int>(found - kBaudRates);
}

// Wraps rather than overflows: the record keeps the low 8 bits.
int DataBitsOf(int code) {
    return static_cast<int>(static_cast<unsigned int>(code) + kDataBitsBase);
}
int DataBitsAt(const Json::Value& attribute) {
    return static_cast<int>(static_cast<unsigned int>(Element(attribute, 1).asInt()) -
                            kDataBitsBase);
}

// Every parity code beyond the words is written as no parity.
const char* ParityWordOf(int code) {
    const char* word = WordOf(kParityWords, code);
    return word != nullptr ? word : kParityWords[0];
}
int ParityAt(const Json::Value& attribute) {
    return CodeOf(kParityWords, Element(attribute, 2).asString());
}

// Null for a code beyond the words: then no stop bits are written.
const char* StopBitsWordOf(int code) { return WordOf(kStopBitsWords, code); }
int StopBitsAt(const Json::Value& attribute) {
    return CodeOf(kStopBitsWords, Element(attribute, 3).asString());
}

void PacketAttribute(const KZ_SERIAL_ATTR& attr, Json::Value& attribute) {
    attribute[0] = BaudRateOf(attr.byBaudRate);
    attribute[1] = DataBitsOf(attr.byDataBits);
    attribute[2] = ParityWordOf(attr.byParity);
    if (const char* stop = StopBitsWordOf(attr.byStopBits)) attribute[3] = stop;
}

// Only when the table has an "Attribute"; unknown parity and stop-bits words leave their fields.
void ParseAttribute(const Json::Value& attribute, KZ_SERIAL_ATTR& attr) {
    if (!Present(attribute)) return;
    attr.byBaudRate = Narrow<unsigned char>(BaudCodeAt(attribute));
    attr.byDataBits = Narrow<unsigned char>(DataBitsAt(attribute));
    const int parity = ParityAt(attribute);
    if (parity >= 0) attr.byParity = Narrow<unsigned char>(parity);
    const int stop = StopBitsAt(attribute);
    if (stop >= 0) attr.byStopBits = Narrow<unsigned char>(stop);
}

// ---- the protocol, by name from the record's list

// An index past the list's capacity names no protocol: the name is written empty.
template <std::size_t N>
void PacketProtocolName(const char (&names)[N][KZ_PROTOCOL_NAME_LEN], unsigned char protocol,
                        Json::Value& node) {
    if (protocol < N) {
        PutText(node, names[protocol]);
    } else {
        node = "";
    }
}

// The first of the record's valid names that equals the table's name without regard to case.
template <std::size_t N>
void ParseProtocolName(const Json::Value& name, int count,
                       const char (&names)[N][KZ_PROTOCOL_NAME_LEN], unsigned char& protocol) {
    if (!Present(name) || count == 0) return;
    const std::string wanted = name.asString();
    const int valid = std::min(count, static_cast<int>(N));
    for (int i = 0; i < valid; ++i) {
        if (SameWord(wanted,
                     std::string(names[i], strnlen(names[i], KZ_PROTOCOL_NAME_LEN)).c_str())) {
            protocol = Narrow<unsigned char>(i);
            return;
        }
    }
}

template <std::size_t N>
void PacketPort(const char (&names)[N][KZ_PROTOCOL_NAME_LEN], const KZ_SERIAL_ATTR& attr,
                Json::Value& port) {
    PacketAttribute(attr, port["Attribute"]);
    PacketProtocolName(names, attr.byProtocol, port["ProtocolName"]);
}

template <std::size_t N>
void ParsePort(const Json::Value& port, int count, const char (&names)[N][KZ_PROTOCOL_NAME_LEN],
               KZ_SERIAL_ATTR& attr) {
    ParseAttribute(Member(port, "Attribute"), attr);
    ParseProtocolName(Member(port, "ProtocolName"), count, names, attr.byProtocol);
}

// ---- Ptz

constexpr int kNoChannel = -1;

bool PtzChannel(int channel) { return channel >= 0 && channel < KZ_MAX_SERIAL_PORTS; }

// The older "Ptz" object of the F5 text into the table.
void PacketPtzText(const Json::Value& document, Json::Value& table) {
    const Json::Value& ptz = Member(document, "Ptz");
    const Json::Value& names = Member(ptz, "DecProName");
    const Json::Value& index = Member(ptz, "ProName");
    if (names.isArray() && Present(index)) {
        table["ProtocolName"] = Element(names, static_cast<Json::ArrayIndex>(index.asInt()));
    }
    if (Present(Member(ptz, "Address"))) table["Address"] = Member(ptz, "Address");
    if (Present(Member(ptz, "MartixID"))) table["NumberInMatrixs"] = Member(ptz, "MartixID");
    const Json::Value& baud = Member(ptz, "BaudBase");
    if (Present(baud)) table["Attribute"][0] = BaudRateOf(baud.asInt());
    const Json::Value& dataBits = Member(ptz, "DataBits");
    if (Present(dataBits)) table["Attribute"][1] = DataBitsOf(dataBits.asInt());
    const Json::Value& stopBits = Member(ptz, "StopBits");
    if (Present(stopBits)) {
        if (const char* stop = StopBitsWordOf(stopBits.asInt())) table["Attribute"][3] = stop;
    }
    const Json::Value& parity = Member(ptz, "Parity");
    if (Present(parity)) table["Attribute"][2] = ParityWordOf(parity.asInt());
}

// The document's "Ptz", made when the first member is written into it; a "Ptz" of another kind
// takes nothing.
class PtzMembers {
public:
    explicit PtzMembers(Json::Value& document) : m_document(document) {}
    void Set(const char* key, const Json::Value& value) {
        if (!m_looked) {
            m_ptz = MemberToWrite(m_document, "Ptz");
            m_looked = true;
        }
        Json::Value* member = m_ptz != nullptr ? MemberToWrite(*m_ptz, key) : nullptr;
        if (member != nullptr) *member = value;
    }

private:
    Json::Value& m_document;
    Json::Value* m_ptz = nullptr;
    bool m_looked = false;
};

// The table into the older "Ptz" object, each member only when its key is in the table.
void MergePtzText(const Json::Value& table, Json::Value& document) {
    PtzMembers ptz(document);
    if (Present(Member(table, "Address"))) ptz.Set("Address", Member(table, "Address"));
    if (Present(Member(table, "NumberInMatrixs")))
        ptz.Set("MartixID", Member(table, "NumberInMatrixs"));
    const Json::Value& attribute = Member(table, "Attribute");
    if (Present(attribute)) {
        ptz.Set("BaudBase", BaudCodeAt(attribute));
        ptz.Set("DataBits", DataBitsAt(attribute));
        const int parity = ParityAt(attribute);
        if (parity >= 0) ptz.Set("Parity", parity);
        const int stop = StopBitsAt(attribute);
        if (stop >= 0) ptz.Set("StopBits", stop);
    }
    const Json::Value& name = Member(table, "ProtocolName");
    const Json::Value& names = Path(document, {"Ptz", "DecProName"});
    if (Present(name) && names.isArray()) {
        const std::string wanted = name.asString();
        for (Json::ArrayIndex i = 0; i < names.size(); ++i) {
            if (names[i].isString() && SameWord(wanted, names[i].asCString())) {
                ptz.Set("ProName", static_cast<Json::Int>(i));
                break;
            }
        }
    }
}

}  // namespace

int CReqConfigProtocolFix::Packet_Comm(Json::Value& table) {
    const auto* cfg = InputRecord<KZDEV_COMM_CFG>();
    if (cfg == nullptr) return -1;
    const int ports = std::min(cfg->nPortNum, KZ_MAX_SERIAL_PORTS);
    for (int i = 0; i < ports; ++i) PacketPort(cfg->szProtocolName, cfg->stAttr[i], table[i]);
    return 1;
}

// Ports past the record's capacity are ignored; the record's port count is not changed.
int CReqConfigProtocolFix::Parse_Comm(Json::Value& table) {
    auto* cfg = OutputRecord<KZDEV_COMM_CFG>();
    if (cfg == nullptr) return -1;
    if (!table.isArray()) return 1;
    const Json::ArrayIndex ports =
        std::min(table.size(), static_cast<Json::ArrayIndex>(KZ_MAX_SERIAL_PORTS));
    for (Json::ArrayIndex i = 0; i < ports; ++i) {
        ParsePort(Element(table, i), cfg->nProtocolNum, cfg->szProtocolName, cfg->stAttr[i]);
    }
    return 1;
}

int CReqConfigProtocolFix::Packet_Ptz(Json::Value& table) {
    if (m_info.mode == PROTOFIX_MODE_TEXT) {
        Json::Value document;
        if (!ReadF5Text(static_cast<const char*>(m_info.input), document)) return -1;
        if (m_info.channel != kNoChannel) PacketPtzText(document, table);
        return 1;
    }
    const auto* cfg = InputRecord<KZDEV_PTZ_CFG>();
    if (cfg == nullptr || !PtzChannel(m_info.channel)) return -1;
    const KZ_SERIAL_ATTR& attr = cfg->stAttr[m_info.channel];
    table["Address"] = Int(attr.byAddress);
    table["NumberInMatrixs"] = Int(attr.byNumberInMatrix);
    PacketPort(cfg->szProtocolName, attr, table);
    return 1;
}

int CReqConfigProtocolFix::Parse_Ptz(Json::Value& table) {
    if (m_info.mode == PROTOFIX_MODE_TEXT) {
        // Refused with the buffer as it was. The device reads the buffer first; a text that does
        // not parse answers -1 as well, so testing the table first changes nothing.
        if (!table.isObject() || m_info.channel == kNoChannel) return -1;
        return MergeIntoF5Buffer(static_cast<char*>(m_info.output), m_info.outputLength,
                                 [&](Json::Value& document) { MergePtzText(table, document); });
    }
    auto* cfg = OutputRecord<KZDEV_PTZ_CFG>();
    if (cfg == nullptr) return -1;
    if (!table.isObject()) return 1;
    if (!PtzChannel(m_info.channel)) return -1;
    KZ_SERIAL_ATTR& attr = cfg->stAttr[m_info.channel];
    ReadInt(Member(table, "Address"), attr.byAddress);
    ReadInt(Member(table, "NumberInMatrixs"), attr.byNumberInMatrix);
    ParsePort(table, cfg->nProtocolNum, cfg->szProtocolName, attr);
    return 1;
}
