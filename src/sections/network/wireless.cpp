// The wireless interface: "WLan", under the table's "wlan0". Record mode only (the dispatch refuses
// the others); both routines refuse a null record before they write.
#include "request/fields.h"

#include <protofix/ReqConfigProtocolFix.h>

#include <cstddef>
#include <string>

using namespace protofix;

namespace {

// The words of the three enumerations, by index.
const char* const s_strLinkMode[] = {"Auto", "Ad-hoc", "Infrastructure"};
const char* const s_strEncryption[] = {"Off",      "On",           "WEP-OPEN",  "WEP-SHARED",
                                       "WPA-TKIP", "WPA-PSK-TKIP", "WPA2-TKIP", "WPA2-PSK-TKIP",
                                       "WPA-AES",  "WPA-PSK-AES",  "WPA2-AES",  "WPA2-PSK-AES"};
const char* const s_strKeyType[] = {"Hex", "ASCII"};

// The word at the index; an index outside the table (a negative one included) is "".
template <std::size_t N>
const char* WordAt(const char* const (&words)[N], int index) {
    const auto i = static_cast<unsigned int>(index);
    return i < N ? words[i] : "";
}

// The index of the word, compared exactly; a word that is none of them gives the table's size,
// one past its last index, which the device takes as unknown.
template <std::size_t N>
int IndexOf(const char* const (&words)[N], const std::string& word) {
    for (std::size_t i = 0; i < N; ++i) {
        if (word == words[i]) return static_cast<int>(i);
    }
    return static_cast<int>(N);
}

// The network name and the keys are read with no presence test: a missing one is the empty text,
// which the field takes. A value of another kind is no text and leaves the field.
template <std::size_t N>
void ReadWlanText(const Json::Value& v, char (&field)[N]) {
    static const Json::Value kEmptyText("");
    GetJsonString(v.isNull() ? kEmptyText : v, field, static_cast<int>(N), true);
}

}  // namespace

int CReqConfigProtocolFix::Packet_Wlan(Json::Value& table) {
    const auto* cfg = InputRecord<KZDEV_WLAN_INFO>();
    if (cfg == nullptr) return -1;
    Json::Value& wlan = table["wlan0"];
    wlan["Enable"] = cfg->disabled == 0;
    // The network name and the keys are read up to their NUL; a full one runs on into the next
    // field, never past the record.
    SetJsonString(wlan["SSID"], TextUpTo(cfg->ssid, EndOf(cfg)).c_str(), true);
    wlan["LinkMode"] = WordAt(s_strLinkMode, cfg->linkMode);
    wlan["Encryption"] = WordAt(s_strEncryption, cfg->encryption);
    wlan["KeyType"] = WordAt(s_strKeyType, cfg->keyType);
    wlan["KeyID"] = Int(cfg->keyId);
    for (Json::ArrayIndex k = 0; k < KZ_MAX_WLAN_KEYS; ++k) {
        SetJsonString(wlan["Keys"][k], TextUpTo(cfg->keys[k], EndOf(cfg)).c_str(), true);
    }
    wlan["KeyFlag"] = cfg->keyFlag != 0;
    return 1;
}

// Every field is set, present in the table or not: a missing flag reads as false, a missing word
// as "" (unknown), a missing number as 0, a missing text as "".
int CReqConfigProtocolFix::Parse_Wlan(Json::Value& table) {
    auto* cfg = OutputRecord<KZDEV_WLAN_INFO>();
    if (cfg == nullptr) return -1;
    const Json::Value& wlan = Member(table, "wlan0");
    cfg->disabled = Member(wlan, "Enable").asBool() ? 0 : 1;
    ReadWlanText(Member(wlan, "SSID"), cfg->ssid);
    cfg->linkMode = IndexOf(s_strLinkMode, Member(wlan, "LinkMode").asString());
    cfg->encryption = IndexOf(s_strEncryption, Member(wlan, "Encryption").asString());
    cfg->keyType = IndexOf(s_strKeyType, Member(wlan, "KeyType").asString());
    cfg->keyId = Member(wlan, "KeyID").asInt();
    const Json::Value& keys = Member(wlan, "Keys");
    for (Json::ArrayIndex k = 0; k < KZ_MAX_WLAN_KEYS; ++k) {
        ReadWlanText(Element(keys, k), cfg->keys[k]);
    }
    cfg->keyFlag = Member(wlan, "KeyFlag").asBool() ? 1 : 0;
    return 1;
}
