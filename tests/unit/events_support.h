// The F5 text buffer of the event sections' tests: a caller's buffer of exactly its capacity on
// the heap, so the sanitizers see any write past it.
#ifndef PROTOFIX_TESTS_EVENTS_SUPPORT_H
#define PROTOFIX_TESTS_EVENTS_SUPPORT_H

#include "record_view.h"
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

// The table holds what the expectation names: an object member that is null must be absent, an
// array element that is null is not looked at.
inline void ExpectMembers(const Json::Value& got, const Json::Value& want, const std::string& at) {
    if (!want.isObject() && !want.isArray()) {
        EXPECT_EQ(Json::FastWriter().write(got), Json::FastWriter().write(want)) << at;
        return;
    }
    for (auto it = want.begin(); it != want.end(); ++it) {
        const std::string name = want.isArray() ? std::to_string(it.index()) : it.name();
        if (it->isNull() && want.isObject())
            EXPECT_FALSE(got.isMember(name)) << at << "/" << name;
        else if (!it->isNull())
            ExpectMembers(want.isArray() ? got[it.index()] : got[name], *it, at + "/" + name);
    }
}

}  // namespace events_support

#endif
