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

}  // namespace

int main() {
    RtspBothWays();
    StorageAndLanguage();
    CompressionWords();
    TimeSection();
    TitleAndTextHelpers();
    F5Text();
    if (failures != 0) return 1;
    std::printf("consumer: the installed package converts\n");
    return 0;
}
