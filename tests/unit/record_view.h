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

// Expects in the value what the partial names: an object's members as given (a null one absent),
// an array of the partial's length with its elements as given, any other value equal.
inline void ExpectHas(const Json::Value& v, const Json::Value& partial,
                      const std::string& at = "") {
    if (partial.isObject()) {
        ASSERT_TRUE(v.isObject()) << at << " " << v;
        for (auto it = partial.begin(); it != partial.end(); ++it) {
            if (it->isNull()) {
                EXPECT_FALSE(v.isMember(it.name())) << at << "/" << it.name();
            } else {
                ExpectHas(v[it.name()], *it, at + "/" + it.name());
            }
        }
    } else if (partial.isArray()) {
        ASSERT_TRUE(v.isArray()) << at << " " << v;
        ASSERT_EQ(v.size(), partial.size()) << at;
        for (Json::ArrayIndex i = 0; i < partial.size(); ++i)
            ExpectHas(v[i], partial[i], at + "/" + std::to_string(i));
    } else {
        EXPECT_EQ(v, partial) << at;
    }
}

// Packs a zero record of the named type with the fields that the view names set: the table must
// hold what the partial names.
inline void ExpectPacketHas(const char* type, const char* section, const std::string& fields,
                            const std::string& partial) {
    SCOPED_TRACE(std::string(section) + " " + fields);
    const std::vector<unsigned char> record = Bytes(type, fields);
    ExpectHas(support::Packet(section, record.data()).table(), support::ParseJson(partial));
}

// As ExpectParse, on a record of the named type.
inline void ExpectParseAs(const char* type, const std::string& seed, const char* section,
                          const std::string& table, int result, const std::string& changes) {
    std::vector<unsigned char> record = Bytes(type, seed);
    const auto& descriptor = *protofix::describe::FindDescriptor(type);
    Json::Value expected = protofix::describe::ToJson(descriptor, record.data());
    Overlay(expected, support::ParseJson(changes));
    EXPECT_EQ(support::Parse(section, table, record.data(), static_cast<int>(record.size())),
              result)
        << section << " " << table;
    EXPECT_EQ(protofix::describe::ToJson(descriptor, record.data()), expected)
        << section << " " << table;
}

}  // namespace view

#endif
