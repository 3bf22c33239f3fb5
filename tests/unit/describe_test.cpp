// Record descriptors and the named-field view of records. Field offsets come from offsetof and
// are pinned by layout_test.cpp; here: coverage, names, the view and what it refuses.
#include "describe/describe.h"
#include "request_support.h"

#include <numeric>
#include <stdexcept>

namespace protofix::describe {
namespace {

const Descriptor& Describe(const std::string& name) {
    if (const Descriptor* found = FindDescriptor(name)) return *found;
    throw std::runtime_error("no descriptor for " + name);
}

// Exact size, no zero byte and none equal to its neighbour: every text fills its width.
std::unique_ptr<unsigned char[]> Varied(std::size_t size) {
    auto bytes = std::make_unique<unsigned char[]>(size);
    for (std::size_t i = 0; i < size; ++i) bytes[i] = 1 + (i * 97 + 13) % 255;
    return bytes;
}

void ZeroPadding(const Descriptor& descriptor, unsigned char* record) {
    for (const Field& f : descriptor.fields) {
        if (f.kind == Kind::Padding) std::memset(record + f.offset, 0, f.size);
        for (std::size_t at = 0; f.kind == Kind::Record && at < f.size; at += f.elementSize)
            ZeroPadding(*f.record, record + f.offset + at);
    }
}

TEST(DescribeLayout, FieldsAndPaddingCoverEveryByteOnce) {
    for (const Descriptor* descriptor : AllDescriptors()) {
        std::size_t end = 0;
        for (const Field& field : descriptor->fields) {
            SCOPED_TRACE(descriptor->name + "." + field.name);
            EXPECT_EQ(field.offset, end) << "gap or overlap";
            end = field.offset + field.size;
            // No member is wider than 4 bytes, so padding never is: a field listed as padding is.
            EXPECT_LT(field.kind == Kind::Padding ? field.size : 0, 4u) << "wider than alignment";
            EXPECT_EQ(field.size, std::accumulate(field.shape.begin(), field.shape.end(),
                                                  field.elementSize, std::multiplies<>()));
            EXPECT_TRUE(field.kind != Kind::Record ||
                        FindDescriptor(field.record->name) == field.record)
                << "not listed";
        }
        EXPECT_EQ(end, descriptor->size) << descriptor->name;
    }
}

// Every record of the section table, and the records that no section names yet.
TEST(DescribeLayout, EveryRecordIsFoundByNameAtItsSize) {
    const std::pair<const char*, std::size_t> records[] = {
#define PROTOFIX_SECTION(name, suffix, record, modes) {#record, kRecordSize<record>},
#include <protofix/sections.def>
        {"KZ_MSG_HANDLE", sizeof(KZ_MSG_HANDLE)}, {"KZDEV_ALARMIN_CFG", sizeof(KZDEV_ALARMIN_CFG)}};
    for (const auto& [name, size] : records) {
        EXPECT_EQ(size == 0 ? 0 : Describe(name).size, size) << name;  // 0: a text-only section
    }
    EXPECT_EQ(FindDescriptor("KZDEV_UNKNOWN_CFG"), nullptr);
}

// Both forms of the view: time sections as their seven numbers and as their text.
TEST(DescribeView, RoundTripKeepsEveryByte) {
    for (const TimeSections style : {TimeSections::Raw, TimeSections::Text}) {
        for (const Descriptor* descriptor : AllDescriptors()) {
            auto source = Varied(descriptor->size);
            auto target = std::make_unique<unsigned char[]>(descriptor->size);
            ZeroPadding(*descriptor, source.get());
            std::string error;
            ASSERT_TRUE(FromJson(*descriptor, ToJson(*descriptor, source.get(), style),
                                 target.get(), error))
                << descriptor->name << ": " << error;
            EXPECT_EQ(std::memcmp(source.get(), target.get(), descriptor->size), 0)
                << descriptor->name;
        }
    }
}

// A time section as its text: flag, begin and end, each number as the device's form writes it,
// and read back only when the whole text is one.
TEST(DescribeView, TimeSectionText) {
    const Descriptor& descriptor = Describe("KZDEV_ALARMIN_CFG");
    auto alarm = support::Zeroed<KZDEV_ALARMIN_CFG>();
    alarm->timeSections[0][0] = {1, 8, 0, 0, 18, 30, 5};
    alarm->timeSections[6][5] = {-3, 123, -4, 9, 0, 0, 2147483647};
    const Json::Value view = ToJson(descriptor, alarm.get(), TimeSections::Text);
    EXPECT_EQ(view["timeSections"][0][0], "1 08:00:00-18:30:05");
    EXPECT_EQ(view["timeSections"][6][5], "-3 123:-4:09-00:00:2147483647");
    EXPECT_EQ(ToJson(descriptor, alarm.get())["timeSections"][0][0]["endMinute"], 30);

    auto read = support::Zeroed<KZDEV_ALARMIN_CFG>();
    std::string error;
    ASSERT_TRUE(FromJson(descriptor, view, read.get(), error)) << error;
    EXPECT_TRUE(support::SameBytes(*read, *alarm));
    for (const char* bad : {"1 08:00:00", "1 08:00:00-18:00:00 ", "x 08:00:00-18:00:00", ""}) {
        const Json::Value partial =
            support::ParseJson(std::string(R"({"timeSections":[[")") + bad + R"("]]})");
        EXPECT_FALSE(FromJson(descriptor, partial, read.get(), error)) << bad;
        EXPECT_EQ(error, "timeSections[0][0]: expected a time section \"FLAG HH:MM:SS-HH:MM:SS\"");
    }
    EXPECT_TRUE(support::SameBytes(*read, *alarm));
}

// Writing: integers at the ends of their ranges, a short text zero-filled to its width, the rest
// untouched. Reading back what a round trip cannot show: signedness, where a text ends, a text
// that fills its width, an all-zero reserved stretch left out.
TEST(DescribeView, WritesOnlyNamedFieldsAndReadsThemBack) {
    const Descriptor& descriptor = Describe("KZDEV_NETWORK_CFG");
    auto network = std::make_unique<KZDEV_NETWORK_CFG>();
    std::memset(network.get(), 0xCD, sizeof *network);
    auto expected = std::make_unique<KZDEV_NETWORK_CFG>(*network);
    expected->leadingWord = -2147483647 - 1;
    expected->interfaceCount = 4294967295u;
    std::strncpy(expected->interfaces[1].name, "eth1", sizeof expected->interfaces[1].name);
    const Json::Value written = support::ParseJson(R"({"leadingWord":-2147483648,
        "interfaceCount":4294967295,"interfaces":[{},{"name":"eth1"}]})");
    std::string error;
    ASSERT_TRUE(FromJson(descriptor, written, network.get(), error)) << error;
    EXPECT_EQ(std::memcmp(network.get(), expected.get(), sizeof *network), 0);

    std::memset(network->reserved, 0, sizeof network->reserved);
    const Json::Value view = ToJson(descriptor, network.get());
    EXPECT_EQ(view["leadingWord"], Json::Value(-2147483647 - 1));
    EXPECT_EQ(view["interfaceCount"], Json::Value(Json::UInt(4294967295u)));
    EXPECT_EQ(view["interfaces"][1]["name"], "eth1");
    EXPECT_EQ(view["interfaces"][0]["name"], std::string(64, '\xCD'));  // full width
    EXPECT_FALSE(view.isMember("reserved"));
}

// Members are written in name order: rows that fail after a first write show the copy is kept.
TEST(DescribeView, RefusedViewNamesTheFieldAndLeavesTheRecord) {
    const std::string tooLong =
        R"({"interfaces":[{"flags":1},{"name":")" + std::string(65, 'n') + R"("}]})";
    const std::tuple<const char*, std::string, const char*> cases[] = {
        {"KZDEV_NETWORK_CFG", "[]", "KZDEV_NETWORK_CFG: expected an object"},
        {"KZDEV_ALARMIN_CFG", R"({"timeSections":[[{"enable":1},{"begin":1}]]})",
         "timeSections[0][1].begin: unknown field of tagKZ_TSECT"},
        {"KZDEV_NETWORK_CFG", R"({"hostName":5})", "hostName: expected a string"},
        {"KZDEV_NETWORK_CFG", R"({"hostName":"a\u0000b"})", "hostName: text contains a NUL byte"},
        {"KZDEV_NETWORK_CFG", tooLong, "interfaces[1].name: text longer than 64 bytes"},
        {"KZDEV_NETWORK_CFG", R"({"leadingWord":1.0})", "leadingWord: expected an integer"},
        {"KZDEV_RTSP_CFG", R"({"port":65536})", "port: 65536 out of range 0..65535"},
        {"KZDEV_NETWORK_CFG", R"({"leadingWord":2147483648})",  // read as unsigned
         "leadingWord: 2147483648 out of range -2147483648..2147483647"},
        {"KZDEV_RTSP_CFG", R"({"port":-1})", "port: -1 out of range 0..65535"},
        {"KZDEV_NETWORK_CFG", R"({"interfaces":{}})", "interfaces: expected an array"},
        {"KZDEV_ALARMIN_CFG", R"({"timeSections":[[{"enable":1}],[{},{},{},{},{},{},{}]]})",
         "timeSections[1]: array longer than 6 elements"},
    };
    for (const auto& [name, view, expected] : cases) {
        const Descriptor& descriptor = Describe(name);
        auto record = Varied(descriptor.size);
        std::string error;
        SCOPED_TRACE(view);
        EXPECT_FALSE(FromJson(descriptor, support::ParseJson(view), record.get(), error));
        EXPECT_EQ(error, expected);
        EXPECT_EQ(std::memcmp(record.get(), Varied(descriptor.size).get(), descriptor.size), 0);
    }
}

}  // namespace
}  // namespace protofix::describe
