// "WLan" through the request API, on records at their exact size on the heap.
#include "record_view.h"
#include "request_support.h"

#include <string>

using support::Packet;
using support::ParseJson;
using view::ExpectParse;

namespace {

TEST(Wlan, PacketWritesTheWordsOfTheIndexes) {
    struct Case {
        std::string record, wlan0;
    };
    const Case cases[] = {
        // Indexes out of their tables write ""; a full network name and a full last key read on into the
        // next field.
        {R"({"disabled":1,"ssid":")" + std::string(36, 's') +
             R"(","linkMode":2,"encryption":12,"keyType":-1,
             "keyId":-1,"keys":["","","",")" +
             std::string(32, 'k') + R"("],"keyFlag":65})",
         R"({"Enable":false,"SSID":")" + std::string(36, 's') +
             R"(\u0002","LinkMode":"Infrastructure","Encryption":"",
             "KeyType":"","KeyID":-1,"Keys":["","","",")" +
             std::string(32, 'k') + R"(A"],"KeyFlag":true})"},
        {R"({"disabled":-1,"linkMode":3,"encryption":2,"keyType":0})",
         R"({"Enable":false,"SSID":"","LinkMode":"","Encryption":"WEP-OPEN","KeyType":"Hex","KeyID":0,
             "Keys":["","","",""],"KeyFlag":false})"},
    };
    for (const Case& c : cases) {
        const auto cfg = view::Build(VIEW_OF(KZDEV_WLAN_INFO), c.record);
        EXPECT_EQ(Packet("WLan", cfg.get()).table(), ParseJson(R"({"wlan0":)" + c.wlan0 + "}"))
            << c.record;
    }
}

// Every field is set from the table: a word that is none of its table's (compared exactly) stores
// one past the last index.
TEST(Wlan, ParseStoresOnePastTheLastIndexWhenUnknown) {
    const std::string seed = R"({"ssid":"old","linkMode":1,"encryption":1,"keyType":1,"keyId":3,
        "keys":["a","b","c","d"],"keyFlag":1})";
    struct Case {
        std::string table, changes;
    };
    const Case cases[] = {
        // A missing text is the empty text.
        {"{}", R"({"disabled":1,"ssid":"","linkMode":3,"encryption":12,"keyType":2,"keyId":0,
             "keys":["","","",""],"keyFlag":0})"},
        {R"({"wlan0":{"Enable":true,"SSID":")" + std::string(40, 'n') +
             R"(","LinkMode":"Ad-hoc","Encryption":"WPA2-PSK-AES",
             "KeyType":"Hex","KeyID":2,"Keys":["x",5,")" +
             std::string(33, 'y') + R"("],"KeyFlag":true}})",
         R"({"disabled":0,"ssid":")" + std::string(35, 'n') +
             R"(","linkMode":1,"encryption":11,"keyType":0,"keyId":2,
             "keys":["x","b",")" +
             std::string(31, 'y') + R"(",""],"keyFlag":1})"},
        {R"({"wlan0":{"Enable":false,"LinkMode":"auto","Encryption":"wpa2-psk-aes","KeyType":"ASCII ","KeyFlag":false,
             "Keys":"x"}})",
         R"({"disabled":1,"ssid":"","linkMode":3,"encryption":12,"keyType":2,"keyId":0,"keys":["","","",""],
             "keyFlag":0})"},
        {R"({"wlan0":{"Enable":true,"LinkMode":"Infrastructure","Encryption":"Off","KeyType":"ASCII"}})",
         R"({"disabled":0,"ssid":"","linkMode":2,"encryption":0,"keyType":1,"keyId":0,"keys":["","","",""],
             "keyFlag":0})"},
    };
    for (const Case& c : cases)
        ExpectParse(VIEW_OF(KZDEV_WLAN_INFO), seed, "WLan", c.table, 1, c.changes);
}

}  // namespace
