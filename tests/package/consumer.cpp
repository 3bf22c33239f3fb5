// Uses the installed library as a client library would. Each public header is included on its
// own and something of each is used: a function of every header that declares functions (the
// request class, the request base and its text helpers, the video compression words), a record
// or value of the headers that hold only records and constants.
#include <protofix/ReqConfigProtocolFix.h>
#include <protofix/export.h>
#include <protofix/info.h>
#include <protofix/protofix.h>
#include <protofix/records/alarm.h>
#include <protofix/records/device.h>
#include <protofix/records/media.h>
#include <protofix/records/network.h>
#include <protofix/records/overlay.h>
#include <protofix/records/storage.h>
#include <protofix/request.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

namespace {

int failures = 0;

void Expect(bool ok, const char* what) {
    if (!ok) {
        std::fprintf(stderr, "consumer: %s\n", what);
        ++failures;
    }
}

PROTOCOL_FIX_INFO RecordInfo(const char* name, void* record, int length) {
    PROTOCOL_FIX_INFO info;
    std::memset(&info, 0, sizeof info);
    info.mode = PROTOFIX_MODE_RECORD;
    info.name = name;
    info.input = record;
    info.inputLength = length;
    info.output = record;
    info.outputLength = length;
    return info;
}

// records/network.h, through the request class: one section each way.
void RtspBothWays() {
    auto rtsp = std::make_unique<KZDEV_RTSP_CFG>();
    rtsp->port = 554;
    PROTOCOL_FIX_INFO info = RecordInfo("RTSP", rtsp.get(), sizeof(KZDEV_RTSP_CFG));
    info.channel = 1;
    CReqConfigProtocolFix request;
    request.SetRequestInfo(info);
    int len = 0;
    const std::string envelope = request.Serialize(len);
    const std::string expected =
        "{\"channel\":1,\"id\":0,\"params\":{\"table\":{\"Port\":554}},\"result\":true}\n";
    Expect(envelope == expected && len == static_cast<int>(expected.size()),
           "RTSP: unexpected envelope");
    Expect(request.Deserialize("{\"Port\":8554}", 0) == 1 && rtsp->port == 8554,
           "RTSP: the table did not reach the record");
}

// records/storage.h and records/device.h: a flag and a language name into their records.
void StorageAndLanguage() {
    auto group = std::make_unique<KZDEV_STORAGEGROUP_CFG>();
    CReqConfigProtocolFix request;
    request.SetRequestInfo(RecordInfo("StorageGroup", group.get(), sizeof(KZDEV_STORAGEGROUP_CFG)));
    Expect(request.Deserialize("[{\"OverWrite\":true}]", 0) == 1 && group->byOverWrite == 1,
           "StorageGroup: OverWrite did not reach the record");

    auto locales = std::make_unique<KZDEV_LOCALES_CFG>();
    request.SetRequestInfo(RecordInfo("Language", locales.get(), sizeof(KZDEV_LOCALES_CFG)));
    Expect(request.Deserialize("\"German\"", 0) == 1 && locales->byLanguage != 0,
           "Language: a language other than the first left the index at 0");
}

// records/media.h: every compression code to its word and back, and a word no code has.
void CompressionWords() {
    for (int code = EM_VIDEO_COMPRESSION_MPEG4; code <= EM_VIDEO_COMPRESSION_SVAC; ++code) {
        Json::Value word;
        ConvertVideoCompressionEnumToJson(static_cast<tagNET_EM_VIDEO_COMPRESSION>(code), word);
        Expect(word.isString() && ConvertVideoCompressionJsonToEnum(word) == code,
               "a compression code does not come back from its word");
    }
    Expect(ConvertVideoCompressionJsonToEnum(Json::Value("mpeg4")) == -1,
           "a compression word is compared without regard to case");
    Expect(CReqConfigProtocolFix::Video_H264(CReqConfigProtocolFix::Video_H264(4)) == 4,
           "the H.264 profile 4 does not come back from its word");
}

// records/alarm.h: a time section read from its text and written back.
void TimeSection() {
    tagKZ_TSECT sect;
    std::memset(&sect, 0, sizeof sect);
    Expect(CReqConfigProtocolFix::ParseNormalTime(sect, "1 08:30:00-17:00:00"),
           "a time section text was not read");
    Json::Value text;
    CReqConfigProtocolFix::PacketNormalTime(sect, text);
    Expect(text.asString() == "1 08:30:00-17:00:00", "a time section does not come back");
}

// records/overlay.h and request.h: the channel title through the text helpers' capacity rule.
void TitleAndTextHelpers() {
    auto title = std::make_unique<KZ_CHANNEL_TITLE>();
    std::memset(title->name, 'x', sizeof title->name);
    parseJsonNodeToStr(Json::Value("Lobby"), title->name, static_cast<int>(sizeof title->name));
    Expect(std::strcmp(title->name, "Lobby") == 0, "parseJsonNodeToStr did not write the text");

    char four[4];
    parseJsonNodeToStr(Json::Value("abcdef"), four, static_cast<int>(sizeof four));
    Expect(std::memcmp(four, "abc", 4) == 0, "parseJsonNodeToStr did not keep size - 1 bytes");

    Json::Value node;
    packetStrToJsonNode(node, title->name, static_cast<int>(sizeof title->name));
    Expect(node.asString() == "Lobby", "packetStrToJsonNode did not read up to the NUL");

    char copy[8] = {};
    CRequest::parseUtf8JasonToAssic(node, copy, static_cast<int>(sizeof copy));
    Expect(std::strcmp(copy, "Lobby") == 0, "parseUtf8JasonToAssic did not copy the text");
    Expect(ConvertUtf8ToAnsi("caf\xc3\xa9") == "caf\xc3\xa9", "ConvertUtf8ToAnsi changed the text");
}

// info.h and the text mode: a table merged into an F5 text in the caller's buffer.
void F5Text() {
    char buffer[256] = "{\"Alarm\":{\"En\":1,\"Name\":\"door\"}}";
    PROTOCOL_FIX_INFO info;
    std::memset(&info, 0, sizeof info);
    info.mode = PROTOFIX_MODE_TEXT;
    info.name = "Alarm";
    info.output = buffer;
    info.outputLength = static_cast<int>(sizeof buffer);
    CReqConfigProtocolFix request;
    request.SetRequestInfo(info);
    Expect(request.Deserialize("{\"Enable\":false}", 0) == 1, "Alarm: the F5 merge refused");
    Json::Value document;
    Expect(Json::Reader().parse(buffer, document) && document["Alarm"]["En"] == 0 &&
               document["Alarm"]["Name"] == "door",
           "Alarm: the F5 text was not merged");
    // The base class's interface, through the request.
    IPDU& pdu = request;
    Expect(pdu.GetLastErr() == 0, "a fresh request reports an error");
}

// The rules the headers state for an engineer who embeds the library, through the install: an
// exception of JsonCpp caught across the library's boundary among them.
void HeaderRules() {
    // Text-mode Serialize reads the F5 text to its NUL whatever inputLength says, and lets
    // JsonCpp's exceptions out.
    const char* f5 = "{\"Alarm\":{\"En\":1}}";
    PROTOCOL_FIX_INFO info;
    std::memset(&info, 0, sizeof info);
    info.mode = PROTOFIX_MODE_TEXT;
    info.name = "Alarm";
    info.input = const_cast<char*>(f5);
    info.inputLength = 1;
    CReqConfigProtocolFix request;
    request.SetRequestInfo(info);
    int len = 0;
    const std::string envelope = request.Serialize(len);
    Expect(envelope.find("\"Enable\":true") != std::string::npos,
           "Serialize stopped at inputLength in text mode");
    const char* wrongKind = "{\"Alarm\":{\"En\":\"yes\"}}";
    info.input = const_cast<char*>(wrongKind);
    request.SetRequestInfo(info);
    bool threw = false;
    try {
        request.Serialize(len);
    } catch (const Json::LogicError&) {
        threw = true;
    }
    Expect(threw, "Serialize did not throw Json::LogicError for an F5 value of the wrong kind");

    // The capacity rule: a merged text exactly as long as the capacity loses its newline and
    // gets no NUL from the library; the last byte of the capacity is never written.
    const std::string merged = "{\"Alarm\":{\"En\":0}}\n";
    const int capacity = static_cast<int>(merged.size());
    std::string buffer = "{\"Alarm\":{\"En\":1}}";
    buffer.resize(static_cast<std::size_t>(capacity) + 4, '#');
    buffer[static_cast<std::size_t>(capacity) - 1] = '\0';
    std::memset(&info, 0, sizeof info);
    info.mode = PROTOFIX_MODE_TEXT;
    info.name = "Alarm";
    info.output = &buffer[0];
    info.outputLength = capacity;
    request.SetRequestInfo(info);
    Expect(request.Deserialize("{\"Enable\":false}", 0) == 1 &&
               buffer.compare(0, merged.size() - 1, merged, 0, merged.size() - 1) == 0 &&
               buffer[static_cast<std::size_t>(capacity) - 1] == '\0' &&
               buffer[static_cast<std::size_t>(capacity)] == '#',
           "the F5 text at the capacity did not come back as the capacity rule says");
    info.outputLength = capacity - 1;
    request.SetRequestInfo(info);
    Expect(request.Deserialize("{\"Enable\":true}", 0) == -1 &&
               buffer.compare(0, merged.size() - 1, merged, 0, merged.size() - 1) == 0,
           "an F5 text longer than the capacity was not refused with the buffer kept");

    // An envelope is not a table: nothing of it reaches the record.
    auto group = std::make_unique<KZDEV_STORAGEGROUP_CFG>();
    request.SetRequestInfo(RecordInfo("StorageGroup", group.get(), sizeof(KZDEV_STORAGEGROUP_CFG)));
    Expect(request.Deserialize("{\"channel\":0,\"id\":0,\"params\":{\"table\":[{\"OverWrite\":true}"
                               "]},\"result\":true}",
                               0) == 1 &&
               group->byOverWrite == 0,
           "an envelope given to Deserialize reached the record");

    // RemoteStorageLimit's Serialize writes the enable words of its input record.
    auto nas = std::make_unique<KZDEV_NAS_CFG>();
    nas->stChnTime[0][0][0].byFlag2 = 1;
    request.SetRequestInfo(RecordInfo("RemoteStorageLimit", nas.get(), sizeof(KZDEV_NAS_CFG)));
    request.Serialize(len);
    Expect(nas->stChnTime[0][0][0].stSect.enable == 1,
           "RemoteStorageLimit did not set an upload section's enable word from its flags");
}

}  // namespace

int main() {
    RtspBothWays();
    StorageAndLanguage();
    CompressionWords();
    TimeSection();
    TitleAndTextHelpers();
    F5Text();
    HeaderRules();
    if (failures != 0) return 1;
    std::printf("consumer: the installed package converts\n");
    return 0;
}
