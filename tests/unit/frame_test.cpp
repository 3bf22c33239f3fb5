// The request frame: envelope, dispatch by name, the mode gate and the base accessors.
#include "request_support.h"

#include <type_traits>
#include <vector>

using support::Info;

namespace {

const std::string kRefused = "{\"channel\":7,\"id\":42,\"params\":{\"table\":null},\"result\":false}\n";

TEST(FrameEnvelope, NameThatMatchesNothingGivesTheBareEnvelope) {
    auto record = support::Zeroed<KZDEV_RTSP_CFG>();
    for (const char* name : {static_cast<const char*>(nullptr), "", "DDNS_", "Mulitcast", "RTSP ",
                             "Network_", "Alarm\n"}) {
        PROTOCOL_FIX_INFO info = Info(name);
        info.channel = 7;
        info.input = record.get();
        CReqConfigProtocolFix request;
        request.SetRequestId(42);
        request.SetRequestInfo(info);
        int len = -1;
        const char* text = request.Serialize(len);
        ASSERT_NE(text, nullptr);
        EXPECT_EQ(std::string(text), kRefused) << (name ? name : "(null)");
        EXPECT_EQ(len, static_cast<int>(kRefused.size()));

        EXPECT_EQ(request.Deserialize("{\"Port\":554}", 12), 0);
    }
}

TEST(FrameEnvelope, FreshObjectIsIdle) {
    CReqConfigProtocolFix request;
    EXPECT_EQ(request.GetRespondTpye(), -1);
    EXPECT_EQ(request.GetLastErr(), 0u);
    int len = 0;
    EXPECT_EQ(std::string(request.Serialize(len)),
              "{\"channel\":0,\"id\":0,\"params\":{\"table\":null},\"result\":false}\n");
    EXPECT_EQ(request.Deserialize("{}", 2), 0);
}

TEST(FrameEnvelope, ConvertedSectionCarriesChannelIdAndTable) {
    auto record = support::Zeroed<KZDEV_RTSP_CFG>();
    record->port = 554;
    PROTOCOL_FIX_INFO info = Info("RTSP");
    info.channel = -3;
    info.input = record.get();
    CReqConfigProtocolFix request;
    request.SetRequestId(0xFFFFFFFFu);
    request.SetRequestInfo(info);
    int len = 0;
    const std::string expected =
        "{\"channel\":-3,\"id\":4294967295,\"params\":{\"table\":{\"Port\":554}},\"result\":true}\n";
    EXPECT_EQ(std::string(request.Serialize(len)), expected);
    EXPECT_EQ(len, static_cast<int>(expected.size()));

    // A second call replaces the text.
    record->port = 80;
    const char* second = request.Serialize(len);
    EXPECT_NE(std::string(second).find("{\"Port\":80}"), std::string::npos);
    EXPECT_EQ(len, static_cast<int>(std::strlen(second)));
}

TEST(FrameEnvelope, RequestInformationIsCopied) {
    auto record = support::Zeroed<KZDEV_RTSP_CFG>();
    record->port = 1;
    PROTOCOL_FIX_INFO info = Info("RTSP");
    info.input = record.get();
    CReqConfigProtocolFix request;
    request.SetRequestInfo(info);
    info.name = "NoSuchSection";
    int len = 0;
    EXPECT_NE(std::string(request.Serialize(len)).find("\"result\":true"), std::string::npos);
}

TEST(FrameDispatch, NamesMatchWithoutRegardToCase) {
    auto net = support::Zeroed<KZDEV_NETWORK_CFG>();
    auto cfg = support::Zeroed<KZDEV_NET_CFG>();
    auto alarm = support::Zeroed<KZDEV_ALARMIN_CFG>();
    auto ipv6 = support::Zeroed<KZDEV_IPV6_CFG>();
    auto dns = support::Zeroed<KZDEV_DNS_CFG>();
    struct Case {
        const char* name;
        const void* record;
        const char* key;  // a key that only the intended section writes
    };
    const Case cases[] = {
        {"network", net.get(), "Hostname"},     {"NETWORK", net.get(), "Hostname"},
        {"MULTICAST", cfg.get(), "KZII"},       {"web", cfg.get(), "Port"},
        {"ipv6", ipv6.get(), "eth0"},           {"network_dns", dns.get(), "DnsServers"},
        {"alarm", alarm.get(), "SensorType"},   {"NETALARM", alarm.get(), "SensorType"},
    };
    for (const Case& c : cases) {
        const support::Envelope envelope = support::Packet(c.name, c.record);
        EXPECT_TRUE(envelope.result()) << c.name;
        EXPECT_TRUE(envelope.table().isMember(c.key)) << c.name;
    }
}

TEST(FrameDispatch, DeserializeOfInvalidJsonIsZeroWhateverTheName) {
    auto record = support::Zeroed<KZDEV_RTSP_CFG>();
    record->port = 7;
    for (const char* name : {"RTSP", "Network", "NoSuchSection", ""}) {
        for (const char* text : {"{", "", "{\"Port\":}", "[1,", "nul"}) {
            EXPECT_EQ(support::Parse(name, text, record.get()), 0) << name << " " << text;
        }
    }
    EXPECT_EQ(record->port, 7);

    CReqConfigProtocolFix request;
    PROTOCOL_FIX_INFO info = Info("RTSP");
    info.output = record.get();
    request.SetRequestInfo(info);
    EXPECT_EQ(request.Deserialize(nullptr, 0), 0);
}

TEST(FrameDispatch, DeserializeTakesTheWholeTextWhateverTheLength) {
    auto record = support::Zeroed<KZDEV_RTSP_CFG>();
    PROTOCOL_FIX_INFO info = Info("RTSP");
    info.output = record.get();
    CReqConfigProtocolFix request;
    request.SetRequestInfo(info);
    EXPECT_EQ(request.Deserialize("{\"Port\":8554}", 0), 1);
    EXPECT_EQ(record->port, 8554);
}

// A mode the section does not accept, or a null record, refuses before anything is written.
TEST(FrameDispatch, RefusalsWriteNothing) {
    auto cfg = support::Zeroed<KZDEV_NET_CFG>();
    struct Case {
        const char* name;
        int mode;
        bool withRecord;
    };
    const Case cases[] = {
        {"Network", 1, true},  {"Web", -1, true},          {"Alarm", 2, true},
        {"Multicast", 0, false}, {"Network_DNS", 0, false}, {"RTSP", 0, false},
        {"IPv6", 0, false},    {"NetAlarm", 1, false},      {"Alarm", 0, false},
    };
    for (const Case& c : cases) {
        const support::Envelope envelope =
            support::Packet(c.name, c.withRecord ? cfg.get() : nullptr, c.mode);
        EXPECT_FALSE(envelope.result()) << c.name << " mode " << c.mode;
        EXPECT_TRUE(envelope.table().isNull()) << c.name << " mode " << c.mode;

        const auto before = support::CopyOf(*cfg);
        EXPECT_EQ(support::Parse(c.name, "{\"Port\":1,\"Enable\":true}",
                                 c.withRecord ? cfg.get() : nullptr, sizeof(KZDEV_NET_CFG), c.mode),
                  -1)
            << c.name << " mode " << c.mode;
        EXPECT_TRUE(support::SameBytes(*cfg, *before)) << c.name;
    }
}

TEST(FrameLayout, RequestInformationIsEightyPlainBytes) {
    static_assert(std::is_trivially_copyable_v<PROTOCOL_FIX_INFO>);
    static_assert(std::is_standard_layout_v<PROTOCOL_FIX_INFO>);
    EXPECT_EQ(sizeof(PROTOCOL_FIX_INFO), 80u);
    EXPECT_EQ(offsetof(PROTOCOL_FIX_INFO, mode), 0u);
    EXPECT_EQ(offsetof(PROTOCOL_FIX_INFO, name), 8u);
    EXPECT_EQ(offsetof(PROTOCOL_FIX_INFO, channel), 16u);
    EXPECT_EQ(offsetof(PROTOCOL_FIX_INFO, input), 24u);
    EXPECT_EQ(offsetof(PROTOCOL_FIX_INFO, inputLength), 32u);
    EXPECT_EQ(offsetof(PROTOCOL_FIX_INFO, output), 40u);
    EXPECT_EQ(offsetof(PROTOCOL_FIX_INFO, outputLength), 48u);
    EXPECT_EQ(offsetof(PROTOCOL_FIX_INFO, videoStandard), 52u);
    EXPECT_EQ(offsetof(PROTOCOL_FIX_INFO, subMode), 56u);
    EXPECT_EQ(offsetof(PROTOCOL_FIX_INFO, current), 64u);
    EXPECT_EQ(offsetof(PROTOCOL_FIX_INFO, reserved), 72u);
}

}  // namespace

// A value of the wrong JSON kind where only its presence is tested: the library's exception
// passes out of Deserialize, and an F5 buffer is left as it was.
TEST(FrameDispatch, ValuesOfTheWrongKindPassTheLibraryException) {
    struct Case {
        const char* name;
        const char* table;
        int mode;
    };
    const Case cases[] = {
        {"Network", R"({"eth0":{"Enable":"yes"}})", 0}, {"Network", "[1,2]", 0},
        {"RTSP", R"({"Port":"554"})", 0},               {"Alarm", R"({"SensorType":{}})", 0},
        {"Alarm", R"({"Enable":"yes"})", 0},            {"Alarm", R"({"EventHandler":{"RecordLatch":"x"}})", 0},
        {"Alarm", R"({"Enable":"yes"})", 1},            {"NetAlarm", R"({"Name":"n","Enable":[]})", 1},
    };
    auto net = support::Zeroed<KZDEV_NETWORK_CFG>();
    net->interfaceCount = 1;
    support::SetText(net->interfaces[0].name, "eth0");
    auto rtsp = support::Zeroed<KZDEV_RTSP_CFG>();
    auto alarm = support::Zeroed<KZDEV_ALARMIN_CFG>();
    for (const Case& c : cases) {
        const std::string section = c.name;
        std::vector<char> text(64, '\0');
        std::strcpy(text.data(), R"({"Alarm":{"En":0}})");
        const std::vector<char> before = text;
        void* record = section == "Network" ? static_cast<void*>(net.get())
                       : section == "RTSP"  ? static_cast<void*>(rtsp.get())
                                            : static_cast<void*>(alarm.get());
        EXPECT_THROW(support::Parse(c.name, c.table, c.mode == 1 ? text.data() : record, c.mode == 1 ? 64 : 0,
                                    c.mode),
                     Json::Exception)
            << c.name << c.table;
        EXPECT_EQ(text, before) << c.name << c.table;
    }
}

// Every record-mode section, on a record with no NUL byte anywhere (every text full to its last
// byte, counts at their largest): what it writes comes back without a read or write outside the
// record, which is exactly sized on the heap for the sanitizers.
template <class Record>
void RoundTripFullRecord(const char* name) {
    auto record = std::make_unique<Record>();
    std::memset(record.get(), 'A', sizeof(Record));
    const support::Envelope envelope = support::Packet(name, record.get());
    EXPECT_TRUE(envelope.result()) << name;
    const std::string table = Json::FastWriter().write(envelope.table());
    EXPECT_EQ(support::Parse(name, table, record.get()), 1) << name;
}

template <>
void RoundTripFullRecord<void>(const char*) {}  // a section of F5 text only has no record

TEST(FrameDispatch, FullRecordsStayWithinTheirBytes) {
#define PROTOFIX_SECTION(name, suffix, record, modes) RoundTripFullRecord<record>(name);
#include <protofix/sections.def>
}
