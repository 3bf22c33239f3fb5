// The fields of a record, one element at a time: the elements of the record and of the records
// nested in it, the fields whose bytes differ between two records, and each field changed in turn.
#ifndef PROTOFIX_TOOL_CATALOG_RECORD_H
#define PROTOFIX_TOOL_CATALOG_RECORD_H

#include "library.h"

#include <describe/describe.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace protofix::tool {

// One element of a field of the record, or of a record nested in it.
struct Element {
    std::string field;  // "handler.recordChannels[]", "timeSections[][].beginHour"
    std::size_t offset;
    std::size_t size;
    protofix::describe::Kind kind;
};

// The parts of each nested record's element, by the element's name ("timeSections[][]"): its
// fields and the records nested in it, each name once.
using Parts = std::map<std::string, std::set<std::string>>;

// The elements of the record at base, whose fields are named after owner (the element of a
// nested record, or "" at the top).
void CollectElements(const protofix::describe::Descriptor& descriptor, std::size_t base,
                     const std::string& owner, std::vector<Element>& elements, Parts& parts);

// The fields (by name, elements of an array under one name) whose bytes differ, and for an
// integer field the bits that differ.
using FieldBits = std::map<std::string, std::uint64_t>;

// Those of record b against record a.
FieldBits ChangedFields(const std::vector<Element>& elements, const Bytes& a, const Bytes& b);

// The elements of one field: every element of its arrays, and of the arrays of records it is in.
struct FieldElements {
    std::string field;
    std::vector<const Element*> elements;
};

// The elements by field, the fields in the order of the record.
std::vector<FieldElements> ByField(const std::vector<Element>& elements);

// The record with the field changed in one way per experiment, in all its elements at once: each
// bit of an integer turned over in turn (a bit may be a flag of its own), the first character of
// a text, a real plus one. Reserved bytes are left alone. Each comes with the bit turned over
// (0 for a text or a real).
std::vector<std::pair<Bytes, std::uint64_t>> OtherRecords(const Bytes& record,
                                                          const FieldElements& field);

}  // namespace protofix::tool

#endif
