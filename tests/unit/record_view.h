// Records built and compared through their named-field view, at their exact size on the heap.
#ifndef PROTOFIX_TESTS_RECORD_VIEW_H
#define PROTOFIX_TESTS_RECORD_VIEW_H

#include "request_support.h"

#include "describe/describe.h"

#include <gtest/gtest.h>
#include <json/json.h>

#include <memory>
#include <string>
#include <vector>

namespace view {

// The view of a record type, by the type's name: VIEW_OF(KZDEV_NTP_CFG).
template <class Record>
struct Typed {
    const protofix::describe::Descriptor& descriptor;
};
#define VIEW_OF(Record) (view::Typed<Record>{*protofix::describe::FindDescriptor(#Record)})

// A zero record with the fields that the view names set.
template <class Record>
std::unique_ptr<Record> Build(Typed<Record> type, const std::string& fields) {
    auto record = support::Zeroed<Record>();
    std::string error;
    EXPECT_TRUE(protofix::describe::FromJson(type.descriptor, support::ParseJson(fields),
                                             record.get(), error))
        << error;
    return record;
}

// A zero record of the named type, at its exact size, with the fields that the view names set.
inline std::vector<unsigned char> Bytes(const char* type, const std::string& fields) {
    const auto& descriptor = *protofix::describe::FindDescriptor(type);
    std::vector<unsigned char> record(descriptor.size);
    std::string error;
    EXPECT_TRUE(
        protofix::describe::FromJson(descriptor, support::ParseJson(fields), record.data(), error))
        << error;
    return record;
}

template <class Record>
Json::Value Of(Typed<Record> type, const Record& record) {
    return protofix::describe::ToJson(type.descriptor, &record);
}

// Lays the changes over a view: the members and elements that they name are replaced, an
// unsigned field's number kept unsigned.
inline void Overlay(Json::Value& v, const Json::Value& changes) {
    if (!changes.isObject() && !changes.isArray()) {
        v = v.type() == Json::uintValue ? Json::Value(changes.asUInt()) : changes;
        return;
    }
    for (auto it = changes.begin(); it != changes.end(); ++it) {
        Overlay(changes.isArray() ? v[it.index()] : v[it.name()], *it);
    }
}

// Parses the table into a record built from the seed: the result must be as given and the whole
// record's view the seed's with the changes laid over it. Gives the record.
template <class Record>
std::unique_ptr<Record> ExpectParse(Typed<Record> type, const std::string& seed,
                                    const char* section, const std::string& table, int result,
                                    const std::string& changes) {
    auto record = Build(type, seed);
    Json::Value expected = Of(type, *record);
    Overlay(expected, support::ParseJson(changes));
    EXPECT_EQ(support::Parse(section, table, record.get()), result) << section << " " << table;
    EXPECT_EQ(Of(type, *record), expected) << section << " " << table;
    return record;
}

// Packs a zero record of the named type with the fields that the view names set: the table must
// be as given.
inline void ExpectPacket(const char* type, const char* section, const std::string& fields,
                         const std::string& table) {
    const std::vector<unsigned char> record = Bytes(type, fields);
    EXPECT_EQ(support::Packet(section, record.data()).table(), support::ParseJson(table))
        << section << " " << fields;
}

}  // namespace view

#endif
