// "Comm" and "Ptz" through the request API, Ptz in record mode and in F5 text mode.
#include "device_support.h"

#include <cstring>
#include <string>
#include <vector>

using device::Expected;
using device::Packet;
using device::Parse;
using device::Record;
using device::Request;
using device::View;
using support::ParseJson;

namespace {

Request Channel(int channel, int mode = PROTOFIX_MODE_RECORD) {
    return Request{mode, 0, channel, nullptr};
}

const std::string kCommSeed =
    R"({"nProtocolNum":2,"szProtocolName":["ProtoD","ProtoP","Hidden"],"nPortNum":1,
    "stAttr":[{"byDataBits":1,"byStopBits":1,"byParity":1,"byBaudRate":1,"byProtocol":2}]})";

TEST(Comm, PacketPorts) {
    const std::string full(16, 'p');
    struct Case {
        std::string record, table;
    };
    const Case cases[] = {
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
    for (const Case& c : cases) {
        const auto cfg = Record("KZDEV_COMM_CFG", c.record);
        const auto envelope = Packet("Comm", cfg.data());
        EXPECT_TRUE(envelope.result());
        EXPECT_EQ(envelope.table(), ParseJson(c.table)) << c.record;
    }
    // A port count past the record's capacity packs its 16 ports.
    const auto cfg = Record("KZDEV_COMM_CFG", R"({"nPortNum":40})");
    EXPECT_EQ(Packet("Comm", cfg.data()).table().size(), 16u);
}

TEST(Comm, ParseAttributesAndProtocol) {
    struct Case {
        const char* port;
        const char* changes;
    };
    const Case cases[] = {
        {R"({"Attribute":[14400,8,"Odd","1.5"]})",
         R"({"byBaudRate":9,"byDataBits":3,"byParity":1,"byStopBits":1})"},
        {R"({"Attribute":[300,4,"Space","2"],"ProtocolName":"protop"})",
         R"({"byBaudRate":0,"byDataBits":255,"byParity":4,"byStopBits":2,"byProtocol":1})"},
        // Parity and stop-bit words are compared with their case; unknown words leave the field.
        {R"({"Attribute":[57600,7,"odd","3"]})", R"({"byBaudRate":8,"byDataBits":2})"},
        {R"({"Attribute":[115200,5]})", R"({"byBaudRate":9,"byDataBits":0})"},
        // Only the valid names are compared.
        {R"({"ProtocolName":"hidden"})", "{}"},
        {R"({"ProtocolName":"PROTOX","Attribute":null})", "{}"},
        {R"([{"ProtocolName":"ProtoD"}])", "{}"},
    };
    for (const Case& c : cases) {
        auto record = Record("KZDEV_COMM_CFG", kCommSeed);
        EXPECT_EQ(Parse("Comm", std::string("[") + c.port + "]", record), 1) << c.port;
        EXPECT_EQ(
            View("KZDEV_COMM_CFG", record),
            Expected("KZDEV_COMM_CFG", kCommSeed, std::string(R"({"stAttr":[)") + c.changes + "]}"))
            << c.port;
    }
    for (const char* table : {"{}", R"({"0":{"ProtocolName":"ProtoP"}})", "null", "5"}) {
        auto record = Record("KZDEV_COMM_CFG", kCommSeed);
        EXPECT_EQ(Parse("Comm", table, record), 1) << table;
        EXPECT_EQ(View("KZDEV_COMM_CFG", record), Expected("KZDEV_COMM_CFG", kCommSeed, "{}"))
            << table;
    }
}

TEST(Comm, ParseTakesNoMorePortsThanTheRecordHolds) {
    // A count past the list's capacity compares the ten names only, and 20 ports change 16.
    std::string table = "[";
    for (int i = 0; i < 20; ++i)
        table += std::string(i ? "," : "") + R"({"Attribute":[2400,6],"ProtocolName":"x"})";
    table += "]";
    const std::string seed = R"({"nProtocolNum":1000,"nPortNum":3})";
    auto record = Record("KZDEV_COMM_CFG", seed);
    EXPECT_EQ(Parse("Comm", table, record), 1);
    std::string changes = R"({"stAttr":[)";
    for (int i = 0; i < 16; ++i)
        changes += std::string(i ? "," : "") + R"({"byBaudRate":3,"byDataBits":1})";
    EXPECT_EQ(View("KZDEV_COMM_CFG", record), Expected("KZDEV_COMM_CFG", seed, changes + "]}"));
}

const std::string kPtzSeed = R"({"nProtocolNum":3,"szProtocolName":["ProtoD","ProtoP","Matrix8"],
    "stAttr":[{"byAddress":1},{},{},{"byDataBits":3,"byStopBits":2,"byParity":2,"byBaudRate":4,"byProtocol":2,
    "byAddress":12,"byNumberInMatrix":3}]})";

TEST(Ptz, RecordModeByChannel) {
    const auto cfg = Record("KZDEV_PTZ_CFG", kPtzSeed);
    const auto envelope = Packet("Ptz", cfg.data(), Channel(3));
    EXPECT_TRUE(envelope.result());
    EXPECT_EQ(envelope.table(), ParseJson(R"({"Address":12,"NumberInMatrixs":3,
        "Attribute":[4800,8,"Even","2"],"ProtocolName":"Matrix8"})"));
    EXPECT_TRUE(Packet("Ptz", cfg.data(), Channel(15)).result());
    for (int channel : {-1, -2, 16}) {
        const auto refused = Packet("Ptz", cfg.data(), Channel(channel));
        EXPECT_FALSE(refused.result()) << channel;
        EXPECT_TRUE(refused.table().isNull()) << channel;
    }

    struct Case {
        const char* table;
        int channel;
        int result;
        const char* changes;
    };
    const Case cases[] = {
        {R"({"Address":300,"NumberInMatrixs":7,"Attribute":[1200,6,"Mark","1"],"ProtocolName":"protop"})",
         1, 1,
         R"({"stAttr":[{},{"byAddress":44,"byNumberInMatrix":7,"byBaudRate":2,"byDataBits":1,"byParity":3,
             "byStopBits":0,"byProtocol":1}]})"},
        {R"({"Address":5})", 16, -1, "{}"},
        {R"({"Address":5})", -1, -1, "{}"},
        // The shape is tested before the channel.
        {R"([{"Address":5}])", 16, 1, "{}"},
        {R"({"ProtocolName":"unknown","Attribute":null})", 0, 1, "{}"},
    };
    for (const Case& c : cases) {
        auto record = Record("KZDEV_PTZ_CFG", kPtzSeed);
        EXPECT_EQ(Parse("Ptz", c.table, record, Channel(c.channel)), c.result) << c.table;
        EXPECT_EQ(View("KZDEV_PTZ_CFG", record), Expected("KZDEV_PTZ_CFG", kPtzSeed, c.changes))
            << c.table;
    }
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
        {R"({"Other":{}})", 0, true, "null"},
        {R"({"Ptz":)", 0, false, "null"},
    };
    for (const Case& c : cases) {
        const auto envelope = Packet("Ptz", c.f5, Channel(c.channel, PROTOFIX_MODE_TEXT));
        EXPECT_EQ(envelope.result(), c.result) << c.f5;
        EXPECT_EQ(envelope.table(), ParseJson(c.table)) << c.f5;
    }
    EXPECT_FALSE(Packet("Ptz", nullptr, Channel(0, PROTOFIX_MODE_TEXT)).result());
}

// The F5 buffer at its exact capacity on the heap.
struct Buffer {
    std::vector<char> bytes;
    Buffer(const std::string& text, std::size_t capacity) : bytes(capacity, '\0') {
        std::memcpy(bytes.data(), text.data(), std::min(text.size(), capacity));
    }
    int Merge(const std::string& table, int channel) {
        return Parse("Ptz", table, bytes.data(), static_cast<int>(bytes.size()),
                     Channel(channel, PROTOFIX_MODE_TEXT));
    }
    std::string Text() const {
        return std::string(bytes.data(), strnlen(bytes.data(), bytes.size()));
    }
};

TEST(Ptz, TextModeMerge) {
    const std::string f5 =
        R"({"Ptz":{"DecProName":["ProtoD","ProtoP"],"ProName":1,"Address":1,"MartixID":0,
        "BaudBase":5,"DataBits":3,"StopBits":0,"Parity":0},"Other":[1]})";
    struct Case {
        const char* table;
        const char* document;
    };
    const Case cases[] = {
        {R"({"Address":9,"NumberInMatrixs":4,"Attribute":[19200,7,"Mark","2"],"ProtocolName":"protod"})",
         R"({"Ptz":{"DecProName":["ProtoD","ProtoP"],"ProName":0,"Address":9,"MartixID":4,"BaudBase":6,
             "DataBits":2,"StopBits":2,"Parity":3},"Other":[1]})"},
        {R"({"Attribute":[14400,8,"odd","1.25"],"ProtocolName":"ProtoV"})",
         R"({"Ptz":{"DecProName":["ProtoD","ProtoP"],"ProName":1,"Address":1,"MartixID":0,"BaudBase":9,
             "DataBits":3,"StopBits":0,"Parity":0},"Other":[1]})"},
        {"{}", nullptr},
    };
    for (const Case& c : cases) {
        Buffer buffer(f5, 512);
        EXPECT_EQ(buffer.Merge(c.table, 2), 1) << c.table;
        EXPECT_EQ(ParseJson(buffer.Text()), ParseJson(c.document ? c.document : f5)) << c.table;
    }
    // No "Ptz" is added to a text that has none unless a member is written; one of another kind
    // takes nothing.
    Buffer none(R"({"Other":1})", 64);
    EXPECT_EQ(none.Merge(R"({"ProtocolName":"ProtoD"})", 0), 1);
    EXPECT_EQ(ParseJson(none.Text()), ParseJson(R"({"Other":1})"));
    EXPECT_EQ(none.Merge(R"({"Address":3})", 0), 1);
    EXPECT_EQ(ParseJson(none.Text()), ParseJson(R"({"Other":1,"Ptz":{"Address":3}})"));
    Buffer other(R"({"Ptz":[1]})", 64);
    EXPECT_EQ(other.Merge(R"({"Address":3})", 0), 1);
    EXPECT_EQ(ParseJson(other.Text()), ParseJson(R"({"Ptz":[1]})"));
}

TEST(Ptz, TextModeMergeRefusals) {
    const std::string f5 = R"({"Ptz":{"Address":1}})";
    struct Case {
        std::string text;
        std::size_t capacity;
        const char* table;
        int channel;
    };
    const Case cases[] = {
        {f5, 64, R"({"Address":2})", -1},
        {f5, 64, R"([{"Address":2}])", 0},
        {f5, 64, "5", 0},
        {R"({"Ptz":)", 64, R"({"Address":2})", 0},
    };
    for (const Case& c : cases) {
        Buffer buffer(c.text, c.capacity);
        const std::vector<char> before = buffer.bytes;
        EXPECT_EQ(buffer.Merge(c.table, c.channel), -1) << c.table << " " << c.capacity;
        EXPECT_EQ(buffer.bytes, before) << c.table;
    }
    EXPECT_EQ(Parse("Ptz", "{}", nullptr, 64, Channel(0, PROTOFIX_MODE_TEXT)), -1);
}

}  // namespace
