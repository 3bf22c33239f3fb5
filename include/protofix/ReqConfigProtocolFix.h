// The configuration protocol-fix request: converts one configuration section between the device's
// table, the library's records and the F5 text of earlier-protocol devices.
#ifndef PROTOFIX_REQCONFIGPROTOCOLFIX_H
#define PROTOFIX_REQCONFIGPROTOCOLFIX_H

#include <protofix/export.h>
#include <protofix/info.h>
#include <protofix/records/alarm.h>
#include <protofix/records/device.h>
#include <protofix/records/media.h>
#include <protofix/records/network.h>
#include <protofix/records/overlay.h>
#include <protofix/records/storage.h>
#include <protofix/request.h>

#include <json/json.h>

#include <string>

class PROTOFIX_API CReqConfigProtocolFix : public CRequest {
public:
    CReqConfigProtocolFix();
    ~CReqConfigProtocolFix() override;

    // Builds the section's table from info.input and wraps it in the request envelope
    // {"channel":C,"id":N,"params":{"table":...},"result":bool}. The text is owned by the object
    // and valid until the next Serialize or the object's end; len receives its byte length.
    //
    // Record mode: info.input must point to a whole record of the section's type (sections.def,
    // or protofix sections, gives it); inputLength is not checked but by the sections that say
    // so (PROTOCOL_FIX_INFO.inputLength).
    //
    // Text mode: info.input is the device's F5 text, read up to its NUL whatever inputLength
    // says, so it must be NUL-terminated. JsonCpp's exceptions pass out of Serialize as they do
    // out of Deserialize: a member of the wrong JSON kind where the section reads a value
    // throws Json::LogicError (an F5 text {"Alarm":{"En":"yes"}} does).
    //
    // "RemoteStorageLimit" writes its input record: each upload section's enable word
    // (stSect.enable) is set from its flags before it is written to the table, as the device's
    // readers expect. Its record must be writable, and two threads must not share one.
    char* Serialize(int& len) override;

    // Parses a table into info.output. 1 converted, -1 the section refused, 0 the text is not
    // JSON or no section has the name. len is not used: text is NUL-terminated. A table value
    // of the wrong JSON kind where the section reads a value throws Json::LogicError.
    //
    // The text is the bare table, the value of "params"."table" in a device reply, not the
    // envelope that Serialize returns. An envelope reads as a table of the wrong shape: none of
    // the values inside it reach the record, and most sections still answer 1.
    //
    // Record mode: info.output must point to a whole record of the section's type; outputLength
    // is not checked but by the sections that say so (PROTOCOL_FIX_INFO.outputLength).
    //
    // Text mode: info.output holds the device's F5 text, read up to its NUL and never past
    // outputLength bytes. The merged text (the compact writer's, which ends in a newline) is
    // written back only when it is at most outputLength bytes long; otherwise the answer is -1
    // and the buffer is left as it was. The copy keeps the device's capacity rule, strncpy of
    // outputLength - 1 characters: a text exactly outputLength bytes long comes back without its
    // newline and without a NUL, one of outputLength - 1 bytes without a NUL, and only a text at
    // least two bytes shorter than outputLength comes back terminated. Byte outputLength - 1 is
    // never written, so a caller who sets it to 0 beforehand always reads a terminated text;
    // otherwise read the result bounded by outputLength. Give the buffer room beyond the text
    // it holds for what the table adds (the tool gives 65536 bytes, or more for a longer text).
    int Deserialize(const char* text, int len) override;

    // Copies the request information; its pointers are borrowed until the next conversion returns.
    void SetRequestInfo(const PROTOCOL_FIX_INFO& info);

    // Time sections: the normal form "1 00:00:00-23:59:59" (flag, begin, end) and the short form
    // "08:30:00-17:00:00". The Parse converters answer true only when every value was read.
    static bool ParseNormalTime(tagKZ_TSECT& sect, const char* text);
    static int PacketNormalTime(const tagKZ_TSECT& sect, Json::Value& node);
    static bool ParseNormalTimeEx(tagKZ_TSECT& sect, const char* text);
    static int PacketNormalTimeEx(const tagKZ_TSECT& sect, Json::Value& node);
    // The normal form with the flag as a record-type mask.
    static bool ParseRecordTime(tagKZ_TSECT& sect, const char* text);
    static int PacketRecordTime(const tagKZ_TSECT& sect, Json::Value& node);
    // Day numbers between the two numbering schemes of the devices.
    static int DateFix_2To3(int day);
    static int DateFix_3To2(int day);

    // The event linkage between its record, the table's "EventHandler" and the F5 "EventHandler".
    // The four JSON operations answer -1 on every path.
    static int Packet_EventHandler_Binary(Json::Value& handler, KZ_MSG_HANDLE_EX* rec);
    static int Parse_EventHandler_Binary(Json::Value& handler, KZ_MSG_HANDLE_EX* rec);
    static int Packet_EventHandler_F5(Json::Value& handler, const Json::Value& f5);
    static int Parse_EventHandler_F5(const Json::Value& handler, Json::Value& f5);
    // Between the 32-channel linkage record and the older 16-channel one (PTZ links not carried).
    static void Binary_HandleExToHandle(const KZ_MSG_HANDLE_EX& from, KZ_MSG_HANDLE& to);
    static void Binary_HandleToHandleEx(const KZ_MSG_HANDLE& from, KZ_MSG_HANDLE_EX& to);

    // The stream-transfer policy between its record and the table's "StreamPolicy" word.
    static int Packet_StreamPolicy(Json::Value& policy, KZDEV_TRANSFER_STRATEGY_CFG& cfg);
    static int Parse_StreamPolicy(const Json::Value& policy, KZDEV_TRANSFER_STRATEGY_CFG& cfg);

    // Media words: the codes of the encoder records and the words of the tables. The failure
    // values differ by converter and are kept: -1 for an unknown profile or bit-rate-control
    // word, 0 (a valid code) for an unknown audio, white-balance or signal-format word, an empty
    // string for an unknown profile, bit-rate-control or audio code.
    // Profile 1..4: "Baseline", "Main", "Extended", "High" (the word compared without regard to case).
    static std::string Video_H264(int profile);
    static int Video_H264(const std::string& word);
    // 0 "CBR", 1 "VBR".
    static std::string Video_BitRateControl(int control);
    static int Video_BitRateControl(const std::string& word);
    // Image-size code from width and height under the video standard (0 PAL, 1 NTSC); size is
    // left as it was when no row matches, so callers preset it.
    static void Video_WHTo_ImageSize(int& size, int standard, int width, int height);
    // Width and height of an image-size code; both left as they were for an unknown code.
    static void Video_ImageSize_ToWH(int size, int standard, int& width, int& height);
    // 0 "G.711A", 1 "PCM", 2 "G.711Mu", 3 "AMR", 4 "AAC".
    static std::string Audio_Compression(int code);
    static int Audio_Compression(const std::string& word);
    // The earlier protocol's audio words ("G711A", "G711U") to the table's and back; any other
    // value is copied. 0 (out untouched) when in is null, else 1. out may be in itself.
    static int ConvertAudioFormatF5ToF6(const Json::Value& in, Json::Value& out);
    static int ConvertAudioFormatF6ToF5(const Json::Value& in, Json::Value& out);
    // White balance 0..11 ("Disable" for a code above 11, 0 for an unknown word).
    static unsigned char ConvertWhiteBalanceToByte(const std::string& word);
    static std::string ConvertWhiteBalanceToString(unsigned char code);
    // Signal format 0..5 ("Inside" for a code above 5, 0 for an unknown word).
    static unsigned char ConvertSignalFormatToByte(const std::string& word);
    static std::string ConvertSignalFormatToString(unsigned char code);

private:
#define PROTOFIX_SECTION(name, suffix, record, modes) \
    int Packet_##suffix(Json::Value& table);          \
    int Parse_##suffix(Json::Value& table);
#include <protofix/sections.def>

    // Runs the section that the info names: Packet_<X> when toTable, else Parse_<X>. 0 when no
    // section has the name, -1 when the section does not accept the info's mode.
    int Dispatch(Json::Value& table, bool toTable);

    // The caller's records, typed; null when the caller gave none.
    template <class Record>
    Record* InputRecord() const {
        return static_cast<Record*>(m_info.input);
    }
    template <class Record>
    Record* OutputRecord() const {
        return static_cast<Record*>(m_info.output);
    }

    std::string m_output;
    unsigned long long m_spare[2];
    PROTOCOL_FIX_INFO m_info;
};

// Video compression words ("MPEG4" ... "SVAC") of tagNET_EM_VIDEO_COMPRESSION. The word of a
// code 0..9 is assigned to target, which another code leaves as it was; the code of a word,
// compared exactly, or -1.
PROTOFIX_API void ConvertVideoCompressionEnumToJson(tagNET_EM_VIDEO_COMPRESSION code,
                                                    Json::Value& target);
PROTOFIX_API int ConvertVideoCompressionJsonToEnum(const Json::Value& word);

#endif
