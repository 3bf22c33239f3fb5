// The request frame: envelope, dispatch by name, the mode gate and the base accessors.
#include "request_support.h"

#include <type_traits>
#include <vector>

using support::Info;

namespace {

// Serialize's text, its length checked against the text.
std::string TextOf(CReqConfigProtocolFix& request) {
    int len = -1;
    const char* text = request.Serialize(len);
    const std::string result = text != nullptr ? text : "(null)";
    EXPECT_EQ(len, text != nullptr ? static_cast<int>(result.size()) : -1);
    return result;
}

TEST(FrameEnvelope, NameThatMatchesNothingGivesTheBareEnvelope) {
    auto record = support::Zeroed<KZDEV_RTSP_CFG>();
    for (const char* name :
         {static_cast<const char*>(nullptr), "", "DDNS_", "Mulitcast", "RTSP "}) {
        PROTOCOL_FIX_INFO info = Info(name);
        info.channel = 7;
        info.input = info.output = record.get();
        CReqConfigProtocolFix request;
        request.SetRequestId(42);
        request.SetRequestInfo(info);
        SCOPED_TRACE(name ? name : "(null)");
        EXPECT_EQ(TextOf(request),
                  "{\"channel\":7,\"id\":42,\"params\":{\"table\":null},\"result\":false}\n");
        EXPECT_EQ(request.Deserialize("{\"Port\":554}", 12), 0);
    }
}

TEST(FrameEnvelope, FreshObjectIsIdle) {
    CReqConfigProtocolFix request;
    EXPECT_EQ(request.GetRespondTpye(), -1);
    EXPECT_EQ(request.GetLastErr(), 0u);
    EXPECT_EQ(TextOf(request),
              "{\"channel\":0,\"id\":0,\"params\":{\"table\":null},\"result\":false}\n");
    EXPECT_EQ(request.Deserialize("{}", 2), 0);
}

// The object keeps its own copy of the information; each Serialize replaces the text.
TEST(FrameEnvelope, CopiedRequestGivesSignedChannelUnsignedIdAndTable) {
    auto record = support::Zeroed<KZDEV_RTSP_CFG>();
    record->port = 554;
    PROTOCOL_FIX_INFO info = Info("RTSP");
    info.channel = -3;
    info.input = record.get();
    CReqConfigProtocolFix request;
    request.SetRequestId(0xFFFFFFFFu);
    request.SetRequestInfo(info);
    info.name = "NoSuchSection";
    info.channel = 5;
    EXPECT_EQ(TextOf(request),
              "{\"channel\":-3,\"id\":4294967295,\"params\":{\"table\":{\"Port\":554}},\"result\":"
              "true}\n");
    record->port = 80;
    EXPECT_EQ(TextOf(request),
              "{\"channel\":-3,\"id\":4294967295,\"params\":{\"table\":{\"Port\":80}},\"result\":"
              "true}\n");
}

TEST(FrameDispatch, NamesMatchWithoutRegardToCase) {
    auto net = support::Zeroed<KZDEV_NETWORK_CFG>();
    auto cfg = support::Zeroed<KZDEV_NET_CFG>();
    auto alarm = support::Zeroed<KZDEV_ALARMIN_CFG>();
    struct Case {
        const char* name;
        const void* record;
        const char* key;
    };  // key: only that section's
    const Case cases[] = {
        {"network", net.get(), "Hostname"},   {"NETWORK", net.get(), "Hostname"},
        {"MULTICAST", cfg.get(), "KZII"},     {"web", cfg.get(), "Port"},
        {"alarm", alarm.get(), "SensorType"}, {"NETALARM", alarm.get(), "SensorType"}};
    for (const Case& c : cases)
        EXPECT_TRUE(support::Packet(c.name, c.record).table().isMember(c.key)) << c.name;
}

// Invalid JSON gives 0 whatever the name, with the record untouched; the length argument is not
// used, the text is read to its NUL.
TEST(FrameDispatch, DeserializeReadsTheWholeTextOrNothing) {
    auto record = support::Zeroed<KZDEV_RTSP_CFG>();
    record->port = 7;
    for (const char* name : {"RTSP", "NoSuchSection", ""})
        for (const char* text : {"{", "", "[1,", "nul"})
            EXPECT_EQ(support::Parse(name, text, record.get()), 0) << name << " " << text;
    EXPECT_EQ(record->port, 7);
    PROTOCOL_FIX_INFO info = Info("RTSP");
    info.output = record.get();
    CReqConfigProtocolFix request;
    request.SetRequestInfo(info);
    EXPECT_EQ(request.Deserialize(nullptr, 0), 0);
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
    const Case cases[] = {{"Network", 1, true},    {"Web", -1, true},         {"Alarm", 2, true},
                          {"Multicast", 0, false}, {"Network_DNS", 0, false}, {"RTSP", 0, false},
                          {"IPv6", 0, false},      {"NetAlarm", 1, false},    {"Alarm", 0, false}};
    const auto before = support::CopyOf(*cfg);
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.name) + " mode " + std::to_string(c.mode));
        void* record = c.withRecord ? cfg.get() : nullptr;
        const support::Envelope envelope = support::Packet(c.name, record, c.mode);
        EXPECT_FALSE(envelope.result());
        EXPECT_TRUE(envelope.table().isNull());
        EXPECT_EQ(
            support::Parse(c.name, R"({"Port":1,"Enable":true})", record, sizeof *cfg, c.mode), -1);
        EXPECT_TRUE(support::SameBytes(*cfg, *before));
    }
}

TEST(FrameLayout, RequestInformationIsEightyPlainBytes) {
    static_assert(std::is_trivially_copyable_v<PROTOCOL_FIX_INFO> &&
                  std::is_standard_layout_v<PROTOCOL_FIX_INFO>);
#define AT(field) offsetof(PROTOCOL_FIX_INFO, field)
    const std::vector<std::size_t> offsets = {
        AT(mode),        AT(name),    AT(channel),      AT(input),
        AT(inputLength), AT(output),  AT(outputLength), AT(videoStandard),
        AT(subMode),     AT(current), AT(reserved),     sizeof(PROTOCOL_FIX_INFO)};
#undef AT
    EXPECT_EQ(offsets, (std::vector<std::size_t>{0, 8, 16, 24, 32, 40, 48, 52, 56, 64, 72, 80}));
}

// A value of the wrong JSON kind where only its presence is tested: the library's exception
// passes out of Deserialize, and an F5 buffer is left as it was.
TEST(FrameDispatch, ValuesOfTheWrongKindPassTheLibraryException) {
    auto net = support::Zeroed<KZDEV_NETWORK_CFG>();
    net->interfaceCount = 1;
    support::SetText(net->interfaces[0].name, "eth0");
    auto rtsp = support::Zeroed<KZDEV_RTSP_CFG>();
    auto alarm = support::Zeroed<KZDEV_ALARMIN_CFG>();
    auto ipv6 = support::Zeroed<KZDEV_IPV6_CFG>();
    std::vector<char> text(64, '\0');
    std::strcpy(text.data(), R"({"Alarm":{"En":0}})");
    const std::vector<char> before = text;
    struct Case {
        const char* name;
        const char* table;
        void* output;
        int mode;
    };  // output: record or F5 text
    const Case cases[] = {{"Network", R"({"eth0":{"Enable":"yes"}})", net.get(), 0},
                          {"RTSP", R"({"Port":"554"})", rtsp.get(), 0},
                          {"Alarm", R"({"SensorType":{}})", alarm.get(), 0},
                          {"Alarm", R"({"Enable":"yes"})", alarm.get(), 0},
                          {"Alarm", R"({"EventHandler":{"RecordLatch":"x"}})", alarm.get(), 0},
                          {"Network", R"({"DefaultInterface":{}})", net.get(), 0},
                          {"IPv6", R"({"Enable":"yes"})", ipv6.get(), 0},
                          {"Alarm", R"({"Enable":"yes"})", text.data(), 1},
                          {"NetAlarm", R"({"Name":"n","Enable":[]})", text.data(), 1}};
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.name) + " " + c.table);
        EXPECT_THROW(support::Parse(c.name, c.table, c.output, c.mode == 1 ? 64 : 0, c.mode),
                     Json::Exception);
        EXPECT_EQ(text, before);
    }
}

}  // namespace

// Every record-mode section, on a record with no NUL byte anywhere (every text full to its last
// byte, counts at their largest): what it writes comes back without a read or write outside the
// record, which is exactly sized on the heap for the sanitizers.
template <class Record>
void RoundTripFullRecord(const char* name) {
    auto record = std::make_unique<Record>();
    std::memset(record.get(), 'A', sizeof(Record));
    PROTOCOL_FIX_INFO info = support::Info(name);
    info.input = record.get();
    info.inputLength = static_cast<int>(sizeof(Record));  // "Encode" refuses a shorter input
    info.output = record.get();  // "VideoInOptions" reads its record from the output slot
    const support::Envelope envelope = support::Serialize(info);
    EXPECT_TRUE(envelope.result()) << name;
    EXPECT_EQ(support::Parse(name, Json::FastWriter().write(envelope.table()), record.get()), 1)
        << name;
}

template <>
void RoundTripFullRecord<void>(const char*) {}  // a section of F5 text only has no record

TEST(FrameDispatch, FullRecordsStayWithinTheirBytes) {
#define PROTOFIX_SECTION(name, suffix, record, modes) RoundTripFullRecord<record>(name);
#include <protofix/sections.def>
}
