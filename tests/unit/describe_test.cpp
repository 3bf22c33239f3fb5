// Record descriptors and the named-field view of records.
#include "describe/describe.h"

#include <protofix/protofix.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <set>
#include <string>

namespace protofix::describe {
namespace {

Json::Value Parse(const std::string& text) {
    Json::Value value;
    std::string errors;
    std::unique_ptr<Json::CharReader> reader(Json::CharReaderBuilder().newCharReader());
    EXPECT_TRUE(reader->parse(text.data(), text.data() + text.size(), &value, &errors)) << text;
    return value;
}

const Descriptor& Describe(const char* name) {
    const Descriptor* descriptor = FindDescriptor(name);
    EXPECT_NE(descriptor, nullptr) << name;
    static const Descriptor none;
    return descriptor != nullptr ? *descriptor : none;
}

// A record of exact size whose bytes all differ from their neighbours and are never zero, so
// that every text fills its width and every integer carries high bits.
std::unique_ptr<unsigned char[]> Varied(std::size_t size) {
    auto bytes = std::make_unique<unsigned char[]>(size);
    for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<unsigned char>(1 + (i * 97 + 13) % 255);
    }
    return bytes;
}

void ZeroPadding(const Descriptor& descriptor, unsigned char* record) {
    for (const Field& field : descriptor.fields) {
        if (field.kind == Kind::Padding) {
            std::memset(record + field.offset, 0, field.size);
        } else if (field.kind == Kind::Record) {
            for (std::size_t at = 0; at < field.size; at += field.elementSize) {
                ZeroPadding(*field.record, record + field.offset + at);
            }
        }
    }
}

TEST(DescribeLayout, FieldsAndPaddingCoverEveryByteOnce) {
    ASSERT_FALSE(AllDescriptors().empty());
    for (const Descriptor* descriptor : AllDescriptors()) {
        SCOPED_TRACE(descriptor->name);
        std::size_t end = 0;
        std::set<std::string> names;
        for (const Field& field : descriptor->fields) {
            SCOPED_TRACE(field.name);
            EXPECT_EQ(field.offset, end) << "gap or overlap";
            std::size_t elements = 1;
            for (std::size_t extent : field.shape) {
                elements *= extent;
            }
            EXPECT_GT(field.size, 0u);
            EXPECT_EQ(field.size, elements * field.elementSize);
            if (field.kind == Kind::Padding) {
                EXPECT_TRUE(field.name.empty());
            } else {
                EXPECT_TRUE(names.insert(field.name).second) << "named twice";
            }
            if (field.kind == Kind::Record) {
                ASSERT_NE(field.record, nullptr);
                EXPECT_EQ(field.elementSize, field.record->size);
                EXPECT_EQ(FindDescriptor(field.record->name), field.record) << "not listed";
            }
            end = field.offset + field.size;
        }
        EXPECT_EQ(end, descriptor->size);
    }
}

// Every record of the section table, and the records that no section names yet.
TEST(DescribeLayout, EveryRecordIsFoundByNameAtItsSize) {
    const struct {
        const char* name;
        std::size_t size;
    } records[] = {
#define PROTOFIX_SECTION(name, suffix, record, modes) {#record, kRecordSize<record>},
#include <protofix/sections.def>
        {"KZ_MSG_HANDLE", sizeof(KZ_MSG_HANDLE)},
        {"KZDEV_ALARMIN_CFG", sizeof(KZDEV_ALARMIN_CFG)},
    };
    for (const auto& record : records) {
        if (record.size != 0) {  // a text-only section has no record
            EXPECT_EQ(Describe(record.name).size, record.size) << record.name;
        }
    }
    EXPECT_EQ(FindDescriptor("KZDEV_UNKNOWN_CFG"), nullptr);
}

TEST(DescribeLayout, KnownPositions) {
    const struct {
        const char* record;
        const char* field;
        std::size_t offset, size;
        Kind kind;
        std::size_t elementSize;
        std::vector<std::size_t> shape;
    } cases[] = {
        {"KZ_MSG_HANDLE_EX", "alarmOutChannels", 8, 32, Kind::UInt8, 1, {32}},
        {"KZ_MSG_HANDLE_EX", "ptzLinks", 144, 256, Kind::Record, 8, {32}},
        {"KZ_MSG_HANDLE_EX", "attachmentMaxTime", 480, 1, Kind::UInt8, 1, {}},
        {"KZ_MSG_HANDLE_EX", "reservedTail", 481, 475, Kind::Reserved, 1, {475}},
        {"KZ_MSG_HANDLE", "recordLatch", 44, 4, Kind::Int32, 4, {}},
        {"KZ_MSG_HANDLE", "attachmentMaxTime", 240, 1, Kind::UInt8, 1, {}},
        {"KZDEV_NET_CFG", "sslPort", 30, 2, Kind::UInt16, 2, {}},
        {"KZDEV_NET_CFG", "multicastEnable", 1624, 1, Kind::UInt8, 1, {}},
        {"KZDEV_NET_CFG", "pppoePassword", 1940, 32, Kind::Text, 32, {}},
        {"KZDEV_NETWORK_CFG", "interfaceCount", 32, 4, Kind::UInt32, 4, {}},
        {"KZDEV_NETWORK_CFG", "interfaces", 36, 1504, Kind::Record, 188, {8}},
        {"KZ_NET_INTERFACE", "name", 124, 64, Kind::Text, 64, {}},
        {"KZDEV_IPV6_CFG", "dhcpEnable", 128, 1, Kind::UInt8, 1, {}},
        {"KZDEV_ALARMIN_CFG", "timeSections", 4, 1176, Kind::Record, 28, {7, 6}},
        {"KZDEV_ALARMIN_CFG", "handler", 1180, 956, Kind::Record, 956, {}},
    };
    EXPECT_EQ(Describe("KZ_MSG_HANDLE_EX").size, 956u);
    EXPECT_EQ(Describe("KZDEV_NET_CFG").size, 1972u);
    EXPECT_EQ(Describe("KZDEV_ALARMIN_CFG").size, 2136u);
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.record) + "." + c.field);
        const Descriptor& descriptor = Describe(c.record);
        auto field = std::find_if(descriptor.fields.begin(), descriptor.fields.end(),
                                  [&](const Field& f) { return f.name == c.field; });
        ASSERT_NE(field, descriptor.fields.end());
        EXPECT_EQ(field->offset, c.offset);
        EXPECT_EQ(field->size, c.size);
        EXPECT_EQ(field->kind, c.kind);
        EXPECT_EQ(field->elementSize, c.elementSize);
        EXPECT_EQ(field->shape, c.shape);
    }
}

TEST(DescribeView, RoundTripKeepsEveryByte) {
    for (const Descriptor* descriptor : AllDescriptors()) {
        SCOPED_TRACE(descriptor->name);
        auto source = Varied(descriptor->size);
        ZeroPadding(*descriptor, source.get());
        auto target = std::make_unique<unsigned char[]>(descriptor->size);
        const Json::Value view = ToJson(*descriptor, source.get());
        std::string error;
        ASSERT_TRUE(FromJson(*descriptor, view, target.get(), error)) << error;
        EXPECT_EQ(std::memcmp(source.get(), target.get(), descriptor->size), 0);
        EXPECT_EQ(ToJson(*descriptor, target.get()), view);
    }
}

TEST(DescribeView, ValuesShapesAndLeftOutBytes) {
    auto alarm = std::make_unique<KZDEV_ALARMIN_CFG>();
    alarm->sensorType = 1;
    alarm->timeSections[6][5].endHour = -1;
    alarm->handler.actionMask = 0xFFFFFFFFu;
    alarm->handler.reservedTail[474] = 7;
    std::memset(reinterpret_cast<unsigned char*>(alarm.get()) + 2, 0xFF, 2);  // padding
    const Json::Value view = ToJson(Describe("KZDEV_ALARMIN_CFG"), alarm.get());

    EXPECT_EQ(view.getMemberNames(),
              (std::vector<std::string>{"enable", "handler", "sensorType", "timeSections"}));
    EXPECT_EQ(view["sensorType"], Json::Value(Json::UInt(1)));
    ASSERT_EQ(view["timeSections"].size(), 7u);
    ASSERT_EQ(view["timeSections"][6].size(), 6u);
    EXPECT_EQ(view["timeSections"][6][5]["endHour"], Json::Value(-1));
    EXPECT_EQ(view["timeSections"][6][4]["endHour"], Json::Value(0));
    const Json::Value& handler = view["handler"];
    EXPECT_EQ(handler["actionMask"], Json::Value(Json::UInt(0xFFFFFFFFu)));
    EXPECT_EQ(handler["ptzLinks"].size(), 32u);
    EXPECT_FALSE(handler.isMember("reservedBlock"));
    ASSERT_EQ(handler["reservedTail"].size(), 475u);
    EXPECT_EQ(handler["reservedTail"][474], Json::Value(Json::UInt(7)));
    EXPECT_EQ(handler["reservedTail"][0], Json::Value(Json::UInt(0)));
}

TEST(DescribeView, TextIsBoundedByItsWidth) {
    const Descriptor& dns = Describe("KZDEV_DNS_CFG");
    auto record = std::make_unique<KZDEV_DNS_CFG>();
    std::memset(record->primaryDns, 'a', sizeof record->primaryDns);
    std::memcpy(record->secondaryDns, "8.8\0garbage", 12);
    Json::Value view = ToJson(dns, record.get());
    EXPECT_EQ(view["primaryDns"].asString(), std::string(16, 'a'));
    EXPECT_EQ(view["secondaryDns"].asString(), "8.8");

    // A text may fill its whole width; a shorter one is followed by zeros to the end of it.
    std::string error;
    ASSERT_TRUE(FromJson(dns, Parse(R"({"primaryDns":"0123456789abcdef","secondaryDns":"1.1"})"),
                         record.get(), error))
        << error;
    EXPECT_EQ(std::memcmp(record->primaryDns, "0123456789abcdef", 16), 0);
    EXPECT_EQ(std::memcmp(record->secondaryDns, "1.1\0\0\0\0\0\0\0\0\0\0\0\0\0", 16), 0);
}

TEST(DescribeView, WritesOnlyWhatTheViewNames) {
    std::string error;
    auto alarm = std::make_unique<KZDEV_ALARMIN_CFG>();
    std::memset(alarm.get(), 0xAB, sizeof *alarm);
    auto expected = std::make_unique<KZDEV_ALARMIN_CFG>(*alarm);
    expected->timeSections[0][1].enable = 1;
    expected->handler.ptzLinks[0].type = 2;
    expected->handler.reservedBlock[1] = 9;
    ASSERT_TRUE(FromJson(Describe("KZDEV_ALARMIN_CFG"),
                         Parse(R"({"timeSections":[[{},{"enable":1}]],
                                   "handler":{"ptzLinks":[{"type":2}],"reservedBlock":[171,9]}})"),
                         alarm.get(), error))
        << error;
    EXPECT_EQ(std::memcmp(alarm.get(), expected.get(), sizeof *alarm), 0);

    auto network = std::make_unique<KZDEV_NETWORK_CFG>();
    std::memset(network.get(), 0xCD, sizeof *network);
    auto expectedNetwork = std::make_unique<KZDEV_NETWORK_CFG>(*network);
    expectedNetwork->leadingWord = -2147483647 - 1;
    expectedNetwork->interfaceCount = 4294967295u;
    std::memset(expectedNetwork->interfaces[1].name, 0, 64);
    std::memcpy(expectedNetwork->interfaces[1].name, "eth1", 4);
    expectedNetwork->interfaces[1].flags = 255;
    ASSERT_TRUE(FromJson(Describe("KZDEV_NETWORK_CFG"),
                         Parse(R"({"leadingWord":-2147483648,"interfaceCount":4294967295,
                                   "interfaces":[{},{"name":"eth1","flags":255}]})"),
                         network.get(), error))
        << error;
    EXPECT_EQ(std::memcmp(network.get(), expectedNetwork.get(), sizeof *network), 0);
}

TEST(DescribeView, RefusedViewsNameTheFieldAndLeaveTheRecord) {
    const struct {
        const char* record;
        std::string view;
        const char* error;
    } cases[] = {
        {"KZDEV_NETWORK_CFG", "[]", "KZDEV_NETWORK_CFG: expected an object"},
        {"KZDEV_NETWORK_CFG", "null", "KZDEV_NETWORK_CFG: expected an object"},
        {"KZDEV_NETWORK_CFG", R"({"hostname":"x"})",
         "hostname: unknown field of KZDEV_NETWORK_CFG"},
        {"KZDEV_ALARMIN_CFG", R"({"":0})", ": unknown field of KZDEV_ALARMIN_CFG"},
        {"KZDEV_NETWORK_CFG", R"({"hostName":5})", "hostName: expected a string"},
        {"KZDEV_NETWORK_CFG", R"({"hostName":"a\u0000b"})", "hostName: text contains a NUL byte"},
        {"KZDEV_NETWORK_CFG", R"({"interfaces":[{},{"name":")" + std::string(65, 'n') + R"("}]})",
         "interfaces[1].name: text longer than 64 bytes"},
        {"KZDEV_NETWORK_CFG", R"({"leadingWord":"5"})", "leadingWord: expected an integer"},
        {"KZDEV_NETWORK_CFG", R"({"leadingWord":1.0})", "leadingWord: expected an integer"},
        {"KZDEV_NETWORK_CFG", R"({"leadingWord":true})", "leadingWord: expected an integer"},
        {"KZDEV_NETWORK_CFG", R"({"leadingWord":2147483648})",
         "leadingWord: 2147483648 out of range -2147483648..2147483647"},
        {"KZDEV_NETWORK_CFG", R"({"leadingWord":-2147483649})",
         "leadingWord: -2147483649 out of range -2147483648..2147483647"},
        {"KZDEV_NETWORK_CFG", R"({"interfaceCount":-1})",
         "interfaceCount: -1 out of range 0..4294967295"},
        {"KZDEV_NETWORK_CFG", R"({"interfaceCount":18446744073709551615})",
         "interfaceCount: 18446744073709551615 out of range 0..4294967295"},
        {"KZDEV_RTSP_CFG", R"({"port":65536})", "port: 65536 out of range 0..65535"},
        {"KZDEV_NETWORK_CFG", R"({"interfaces":[{"flags":256}]})",
         "interfaces[0].flags: 256 out of range 0..255"},
        {"KZDEV_NETWORK_CFG", R"({"reserved":[1,2,-1]})", "reserved[2]: -1 out of range 0..255"},
        {"KZDEV_NETWORK_CFG", R"({"reserved":[0,0,0,0,0,0,0,0,0,0,0,0,0]})",
         "reserved: array longer than 12 elements"},
        {"KZDEV_NETWORK_CFG", R"({"interfaces":{}})", "interfaces: expected an array"},
        {"KZDEV_NETWORK_CFG", R"({"interfaces":[5]})", "interfaces[0]: expected an object"},
        {"KZDEV_NETWORK_CFG", R"({"interfaces":[{},{},{},{},{},{},{},{},{}]})",
         "interfaces: array longer than 8 elements"},
        {"KZDEV_ALARMIN_CFG", R"({"timeSections":[[],[],[],[],[],[],[],[]]})",
         "timeSections: array longer than 7 elements"},
        {"KZDEV_ALARMIN_CFG", R"({"timeSections":[[{},{},{},{},{},{},{}]]})",
         "timeSections[0]: array longer than 6 elements"},
        {"KZDEV_ALARMIN_CFG", R"({"timeSections":[[{"enable":1},{"begin":1}]]})",
         "timeSections[0][1].begin: unknown field of tagKZ_TSECT"},
        {"KZDEV_ALARMIN_CFG", R"({"sensorType":1,"handler":{"ptzLinks":[{"type":"x"}]}})",
         "handler.ptzLinks[0].type: expected an integer"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.view);
        const Descriptor& descriptor = Describe(c.record);
        auto record = Varied(descriptor.size);
        auto before = Varied(descriptor.size);
        std::string error;
        EXPECT_FALSE(FromJson(descriptor, Parse(c.view), record.get(), error));
        EXPECT_EQ(error, c.error);
        EXPECT_EQ(std::memcmp(record.get(), before.get(), descriptor.size), 0);
    }
}

}  // namespace
}  // namespace protofix::describe
