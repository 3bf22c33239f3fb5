// "WLan" through the request API, on records at their exact size on the heap.
#include "record_view.h"
#include "request_support.h"

#include <string>

namespace {

TEST(Wlan, PacketWritesTheWordsOfTheIndexes) {
    const std::string s36(36, 's'), k32(32, 'k');
    const std::string cases[][2] = {
        // Indexes out of their tables write ""; a full network name and a full last key read on
        // into the next field.
        {R"({"disabled":1,"ssid":")" + s36 + R"(","linkMode":2,"encryption":12,"keyType":-1,
             "keyId":-1,"keys":["","","",")" +
             k32 + R"("],"keyFlag":65})",
         R"({"Enable":false,"SSID":")" + s36 + R"(\u0002","Encryption":"","KeyType":"","KeyID":-1,
             "Keys":["","","",")" +
             k32 + R"(A"],"KeyFlag":true})"},
        {R"({"disabled":-1,"linkMode":3,"encryption":2,"keyType":0})",
         R"({"Enable":false,"LinkMode":"","Encryption":"WEP-OPEN","KeyType":"Hex"})"},
    };
    for (const auto& c : cases)
        view::ExpectPacketHas("KZDEV_WLAN_INFO", "WLan", c[0], R"({"wlan0":)" + c[1] + "}");
}

// Every field is set from the table: a word that is none of its table's (compared exactly) stores
// one past the last index.
TEST(Wlan, ParseStoresOnePastTheLastIndexWhenUnknown) {
    const std::string seed = R"({"ssid":"old","linkMode":1,"encryption":1,"keyType":1,"keyId":3,
        "keys":["a","b","c","d"],"keyFlag":1})";
    // A missing text is the empty text.
    const std::string unknown = R"({"disabled":1,"ssid":"","linkMode":3,"encryption":12,
        "keyType":2,"keyId":0,"keys":["","","",""],"keyFlag":0})";
    const std::string cases[][2] = {
        {"{}", unknown},
        {R"({"wlan0":{"Enable":true,"SSID":")" + std::string(40, 'n') +
             R"(","LinkMode":"Ad-hoc","Encryption":"Off","KeyType":"Hex","KeyID":2,
             "Keys":["x",5,")" +
             std::string(33, 'y') + R"("],"KeyFlag":true}})",
         R"({"disabled":0,"ssid":")" + std::string(35, 'n') +
             R"(","linkMode":1,"encryption":0,"keyType":0,"keyId":2,
             "keys":["x","b",")" +
             std::string(31, 'y') + R"(",""],"keyFlag":1})"},
        {R"({"wlan0":{"Enable":false,"LinkMode":"auto","Encryption":"wpa2-psk-aes",
             "KeyType":"ASCII ","KeyFlag":false,"Keys":"x"}})",
         unknown},
    };
    for (const auto& c : cases)
        view::ExpectParse(VIEW_OF(KZDEV_WLAN_INFO), seed, "WLan", c[0], 1, c[1]);
}

}  // namespace
