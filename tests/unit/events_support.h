// The F5 text buffer of the event sections' tests: a caller's buffer of exactly its capacity on
// the heap, so the sanitizers see any write past it.
#ifndef PROTOFIX_TESTS_EVENTS_SUPPORT_H
#define PROTOFIX_TESTS_EVENTS_SUPPORT_H

#include "request_support.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace events_support {

using support::F5Buffer;
using support::Written;

// Serializes an F5 text of the section; the table, or null when refused.
inline Json::Value TableOfF5(const char* section, const std::string& f5) {
    const support::Envelope envelope = support::Packet(section, f5.c_str(), PROTOFIX_MODE_TEXT);
    return envelope.result() ? envelope.table() : Json::Value();
}

// A record of any type filled with a byte pattern that no conversion writes by chance.
template <class Record>
std::unique_ptr<Record> Patterned() {
    auto record = std::make_unique<Record>();
    auto* bytes = reinterpret_cast<unsigned char*>(record.get());
    for (std::size_t i = 0; i < sizeof(Record); ++i)
        bytes[i] = static_cast<unsigned char>(0xA0 + i % 7);
    return record;
}

}  // namespace events_support

#endif
