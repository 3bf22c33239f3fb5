// The device section tests: records built from their named-field view at their exact size on the
// heap, and requests with the sub-mode, the current reply and the channel set.
#ifndef PROTOFIX_TESTS_DEVICE_SUPPORT_H
#define PROTOFIX_TESTS_DEVICE_SUPPORT_H

#include "record_view.h"
#include "request_support.h"

#include "describe/describe.h"

#include <string>
#include <vector>

namespace device {

struct Request {
    int mode = PROTOFIX_MODE_RECORD;
    int subMode = 0;
    int channel = 0;
    const char* current = nullptr;
};

inline PROTOCOL_FIX_INFO InfoOf(const char* section, const Request& request, void* input) {
    PROTOCOL_FIX_INFO info = support::Info(section, request.mode);
    info.subMode = request.subMode;
    info.channel = request.channel;
    info.current = request.current;
    info.input = input;
    return info;
}

inline support::Envelope Packet(const char* section, const void* input, const Request& request) {
    return support::Serialize(InfoOf(section, request, const_cast<void*>(input)));
}

inline int Parse(const char* section, const std::string& table, void* output, int outputLength,
                 const Request& request) {
    PROTOCOL_FIX_INFO info = InfoOf(section, request, nullptr);
    info.output = output;
    info.outputLength = outputLength;
    CReqConfigProtocolFix conversion;
    conversion.SetRequestInfo(info);
    return conversion.Deserialize(table.c_str(), 0);
}

// Packs the record of the named type that the view builds: the result and table must be as given.
inline void ExpectPacket(const char* type, const std::string& fields, const char* section,
                         const std::string& table, const Request& request = {},
                         bool result = true) {
    SCOPED_TRACE(fields);
    const std::vector<unsigned char> record = view::Bytes(type, fields);
    const support::Envelope envelope = Packet(section, record.data(), request);
    EXPECT_EQ(envelope.result(), result);
    EXPECT_EQ(envelope.table(), support::ParseJson(table));
}

// Parses the table into the record built from the seed: the result must be as given and the
// record's view the seed's with the changes laid over it.
inline void ExpectParse(const char* type, const std::string& seed, const char* section,
                        const std::string& table, const std::string& changes,
                        const Request& request = {}, int result = 1) {
    SCOPED_TRACE(table);
    const auto& descriptor = *protofix::describe::FindDescriptor(type);
    std::vector<unsigned char> record = view::Bytes(type, seed);
    Json::Value expected = protofix::describe::ToJson(descriptor, record.data());
    view::Overlay(expected, support::ParseJson(changes));
    EXPECT_EQ(Parse(section, table, record.data(), static_cast<int>(record.size()), request),
              result);
    EXPECT_EQ(protofix::describe::ToJson(descriptor, record.data()), expected);
}

}  // namespace device

#endif
