// "Comm" and "Ptz" through the request API, Ptz in record mode and in F5 text mode.
#include "device_support.h"

#include <string>
#include <vector>

using device::ExpectPacket;
using device::ExpectParse;
using device::Request;
using support::ParseJson;

namespace {

Request Channel(int channel, int mode = PROTOFIX_MODE_RECORD) {
    return Request{mode, 0, channel, nullptr};
}

TEST(Comm, Packet) {
    const std::string full(16, 'p');
    const std::pair<std::string, std::string> cases[] = {
        {R"({"nProtocolNum":2,"szProtocolName":["ProtoD","ProtoP"],"nPortNum":3,"stAttr":[
             {"byDataBits":3,"byStopBits":0,"byParity":0,"byBaudRate":5,"byProtocol":1},
             {"byDataBits":0,"byStopBits":5,"byParity":9,"byBaudRate":12,"byProtocol":0},
             {"byDataBits":2,"byStopBits":2,"byParity":4,"byBaudRate":0,"byProtocol":9},
             {"byBaudRate":1}]})",
         R"([{"Attribute":[9600,8,"None","1"],"ProtocolName":"ProtoP"},
             {"Attribute":[115200,5,"None"],"ProtocolName":"ProtoD"},
             {"Attribute":[300,7,"Space","2"],"ProtocolName":""}])"},
        {R"({"nPortNum":1,"szProtocolName":[")" + full +
             R"("],"stAttr":[{"byStopBits":1,"byParity":3,"byBaudRate":9}]})",
         R"([{"Attribute":[115200,5,"Mark","1.5"],"ProtocolName":")" + full + R"("}])"},
        // A protocol index past the ten names of the list.
        {R"({"nPortNum":1,"stAttr":[{"byParity":2,"byBaudRate":8,"byProtocol":200}]})",
         R"([{"Attribute":[57600,5,"Even","1"],"ProtocolName":""}])"},
        {R"({"nPortNum":0})", "null"},
        {R"({"nPortNum":-3})", "null"},
    };
    for (const auto& [record, table] : cases) ExpectPacket("KZDEV_COMM_CFG", record, "Comm", table);
    // A port count past the record's capacity packs its 16 ports.
    const auto cfg = view::Bytes("KZDEV_COMM_CFG", R"({"nPortNum":40})");
    EXPECT_EQ(device::Packet("Comm", cfg.data(), Request{}).table().size(), 16u);
}

TEST(Comm, Parse) {
    const std::string seed =
        R"({"nProtocolNum":2,"szProtocolName":["ProtoD","ProtoP","Hidden"],"nPortNum":1,
        "stAttr":[{"byDataBits":1,"byStopBits":1,"byParity":1,"byBaudRate":1,"byProtocol":2}]})";
    const std::pair<const char*, const char*> cases[] = {
        {R"([{"Attribute":[14400,8,"Odd","1.5"]}])",
         R"({"stAttr":[{"byBaudRate":9,"byDataBits":3,"byParity":1,"byStopBits":1}]})"},
        {R"([{"Attribute":[300,4,"Space","2"],"ProtocolName":"protop"}])",
         R"({"stAttr":[{"byBaudRate":0,"byDataBits":255,"byParity":4,"byStopBits":2,"byProtocol":1}]})"},
        // Parity and stop-bit words are compared with their case; unknown words leave the field.
        {R"([{"Attribute":[57600,7,"odd","3"]}])",
         R"({"stAttr":[{"byBaudRate":8,"byDataBits":2}]})"},
        // Only the valid names are compared.
        {R"([{"ProtocolName":"hidden"}])", "{}"},
        {R"([{"ProtocolName":"PROTOX","Attribute":null}])", "{}"},
        {R"([[{"ProtocolName":"ProtoD"}]])", "{}"},
        {R"({"0":{"ProtocolName":"ProtoP"}})", "{}"},
        {"5", "{}"},
    };
    for (const auto& [table, changes] : cases)
        ExpectParse("KZDEV_COMM_CFG", seed, "Comm", table, changes);

    // A count past the list's capacity compares the ten names only, and 20 ports change 16.
    std::string table = "[", changes = R"({"stAttr":[)";
    for (int i = 0; i < 20; ++i)
        table += std::string(i ? "," : "") + R"({"Attribute":[2400,6],"ProtocolName":"x"})";
    for (int i = 0; i < 16; ++i)
        changes += std::string(i ? "," : "") + R"({"byBaudRate":3,"byDataBits":1})";
    ExpectParse("KZDEV_COMM_CFG", R"({"nProtocolNum":1000,"nPortNum":3})", "Comm", table + "]",
                changes + "]}");
}

TEST(Ptz, RecordModeByChannel) {
    const std::string seed = R"({"nProtocolNum":3,"szProtocolName":["ProtoD","ProtoP","Matrix8"],
    "stAttr":[{"byAddress":1},{},{},{"byDataBits":3,"byStopBits":2,"byParity":2,"byBaudRate":4,"byProtocol":2,
    "byAddress":12,"byNumberInMatrix":3}]})";
    ExpectPacket("KZDEV_PTZ_CFG", seed, "Ptz", R"({"Address":12,"NumberInMatrixs":3,
        "Attribute":[4800,8,"Even","2"],"ProtocolName":"Matrix8"})",
                 Channel(3));
    ExpectPacket(
        "KZDEV_PTZ_CFG", seed, "Ptz",
        R"({"Address":0,"NumberInMatrixs":0,"Attribute":[300,5,"None","1"],"ProtocolName":"ProtoD"})",
        Channel(15));
    for (int channel : {-1, 16})
        ExpectPacket("KZDEV_PTZ_CFG", seed, "Ptz", "null", Channel(channel), false);

    ExpectParse(
        "KZDEV_PTZ_CFG", seed, "Ptz",
        R"({"Address":300,"NumberInMatrixs":7,"Attribute":[1200,6,"Mark","1"],"ProtocolName":"protop"})",
        R"({"stAttr":[{},{"byAddress":44,"byNumberInMatrix":7,"byBaudRate":2,"byDataBits":1,"byParity":3,
             "byStopBits":0,"byProtocol":1}]})",
        Channel(1));
    for (int channel : {-1, 16})
        ExpectParse("KZDEV_PTZ_CFG", seed, "Ptz", R"({"Address":5})", "{}", Channel(channel), -1);
    // The shape is tested before the channel.
    ExpectParse("KZDEV_PTZ_CFG", seed, "Ptz", R"([{"Address":5}])", "{}", Channel(16), 1);
    ExpectParse("KZDEV_PTZ_CFG", seed, "Ptz", R"({"ProtocolName":"unknown","Attribute":null})",
                "{}", Channel(0));
}

TEST(Ptz, TextModePacket) {
    struct Case {
        const char* f5;
        int channel;
        bool result;
        const char* table;
    };
    const Case cases[] = {
        {R"({"Ptz":{"DecProName":["ProtoD","ProtoP"],"ProName":1,"Address":7,"MartixID":2,"BaudBase":5,
             "DataBits":3,"StopBits":1,"Parity":2},"Other":1})",
         40, true,
         R"({"ProtocolName":"ProtoP","Address":7,"NumberInMatrixs":2,"Attribute":[9600,8,"Even","1.5"]})"},
        {R"({"Ptz":{"BaudBase":12,"StopBits":5,"Parity":9}})", 0, true,
         R"({"Attribute":[115200,null,"None"]})"},
        {R"({"Ptz":{"DecProName":"ProtoD","ProName":0,"DataBits":0}})", 0, true,
         R"({"Attribute":[null,5]})"},
        {R"({"Ptz":{"DecProName":["ProtoD"],"ProName":4}})", 0, true, R"({"ProtocolName":null})"},
        {R"({"Ptz":{"Address":7}})", -1, true, "null"},
        {R"({"Ptz":)", 0, false, "null"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.f5);
        const auto envelope = device::Packet("Ptz", c.f5, Channel(c.channel, PROTOFIX_MODE_TEXT));
        EXPECT_EQ(envelope.result(), c.result);
        EXPECT_EQ(envelope.table(), ParseJson(c.table));
    }
    EXPECT_FALSE(device::Packet("Ptz", nullptr, Channel(0, PROTOFIX_MODE_TEXT)).result());
}

// Merges the table into the older text in a buffer of 512 bytes: the result, and the text after.
void ExpectMerge(const std::string& old, const char* table, int channel, int result,
                 const std::string& merged) {
    SCOPED_TRACE(old + " " + table);
    support::F5Buffer buffer(old, 512);
    std::vector<char> before = buffer.bytes;
    EXPECT_EQ(
        device::Parse("Ptz", table, buffer.bytes.data(), 512, Channel(channel, PROTOFIX_MODE_TEXT)),
        result);
    if (result == -1) {
        EXPECT_EQ(buffer.bytes, before);
    } else {
        EXPECT_EQ(buffer.Document(), ParseJson(merged));
    }
}

TEST(Ptz, TextModeMerge) {
    const std::string f5 =
        R"({"Ptz":{"DecProName":["ProtoD","ProtoP"],"ProName":1,"Address":1,"MartixID":0,
        "BaudBase":5,"DataBits":3,"StopBits":0,"Parity":0},"Other":[1]})";
    ExpectMerge(
        f5,
        R"({"Address":9,"NumberInMatrixs":4,"Attribute":[19200,7,"Mark","2"],"ProtocolName":"protod"})",
        2, 1,
        R"({"Ptz":{"DecProName":["ProtoD","ProtoP"],"ProName":0,"Address":9,"MartixID":4,"BaudBase":6,
             "DataBits":2,"StopBits":2,"Parity":3},"Other":[1]})");
    ExpectMerge(
        f5, R"({"Attribute":[14400,8,"odd","1.25"],"ProtocolName":"ProtoV"})", 2, 1,
        R"({"Ptz":{"DecProName":["ProtoD","ProtoP"],"ProName":1,"Address":1,"MartixID":0,"BaudBase":9,
             "DataBits":3,"StopBits":0,"Parity":0},"Other":[1]})");
    // No "Ptz" is added to a text that has none unless a member is written; one of another kind
    // takes nothing.
    ExpectMerge(R"({"Other":1})", R"({"ProtocolName":"ProtoD"})", 0, 1, R"({"Other":1})");
    ExpectMerge(R"({"Other":1})", R"({"Address":3})", 0, 1, R"({"Other":1,"Ptz":{"Address":3}})");
    ExpectMerge(R"({"Ptz":[1]})", R"({"Address":3})", 0, 1, R"({"Ptz":[1]})");
    // Refusals leave the buffer as it was.
    ExpectMerge(f5, R"({"Address":2})", -1, -1, "");
    ExpectMerge(f5, R"([{"Address":2}])", 0, -1, "");
    ExpectMerge(R"({"Ptz":)", R"({"Address":2})", 0, -1, "");
    EXPECT_EQ(device::Parse("Ptz", "{}", nullptr, 64, Channel(0, PROTOFIX_MODE_TEXT)), -1);
}

}  // namespace
