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

// A record of the named type, zero but for the fields that the view sets.
inline std::vector<unsigned char> Record(const char* type, const std::string& fields) {
    return view::Bytes(type, fields);
}

inline Json::Value View(const char* type, const std::vector<unsigned char>& record) {
    return protofix::describe::ToJson(*protofix::describe::FindDescriptor(type), record.data());
}

// The view of the record built from seed with the view of changes written over it.
inline Json::Value Expected(const char* type, const std::string& seed, const std::string& changes) {
    std::vector<unsigned char> record = Record(type, seed);
    std::string error;
    EXPECT_TRUE(protofix::describe::FromJson(*protofix::describe::FindDescriptor(type),
                                             support::ParseJson(changes), record.data(), error))
        << error;
    return View(type, record);
}

struct Request {
    int mode = PROTOFIX_MODE_RECORD;
    int subMode = 0;
    int channel = 0;
    const char* current = nullptr;
};

inline PROTOCOL_FIX_INFO InfoOf(const char* section, const Request& request) {
    PROTOCOL_FIX_INFO info = support::Info(section, request.mode);
    info.subMode = request.subMode;
    info.channel = request.channel;
    info.current = request.current;
    return info;
}

inline support::Envelope Packet(const char* section, const void* input,
                                const Request& request = {}) {
    PROTOCOL_FIX_INFO info = InfoOf(section, request);
    info.input = const_cast<void*>(input);
    return support::Serialize(info);
}

inline int Parse(const char* section, const std::string& table, void* output, int outputLength,
                 const Request& request = {}) {
    PROTOCOL_FIX_INFO info = InfoOf(section, request);
    info.output = output;
    info.outputLength = outputLength;
    CReqConfigProtocolFix conversion;
    conversion.SetRequestInfo(info);
    return conversion.Deserialize(table.c_str(), 0);
}

inline int Parse(const char* section, const std::string& table, std::vector<unsigned char>& record,
                 const Request& request = {}) {
    return Parse(section, table, record.data(), static_cast<int>(record.size()), request);
}

}  // namespace device

#endif
