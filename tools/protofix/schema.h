// What the tool knows of a section's table and F5 text besides the library itself: the keys of
// the bundled examples (built into the tool), gathered as generalised paths ("EventHandler",
// "EventHandler/PtzLink/[]") with the kind of value found there.
#ifndef PROTOFIX_TOOL_SCHEMA_H
#define PROTOFIX_TOOL_SCHEMA_H

#include "section_table.h"

#include <json/json.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace protofix::tool {

// A path with every array index replaced by "[]", its steps joined by '\0'.
using Shape = std::string;
Shape ShapeChild(const Shape& parent, const std::string& member);
Shape ShapeElement(const Shape& parent);

// A kind of JSON value in words: "a number", "true or false", "a text", "an array", "an object",
// "null".
std::string KindName(Json::ValueType type);

class Schema {
public:
    // Adds every path of the value.
    void Add(const Json::Value& value) { Add(value, Shape()); }
    bool Knows(const Shape& shape) const { return m_kinds.count(shape) != 0; }
    // The kind of value at the path ("a number", "true or false", "a text", ...), or "" when
    // the path is not known.
    std::string KindAt(const Shape& shape) const;
    // The member names known under the path.
    std::vector<std::string> MembersOf(const Shape& shape) const;
    // Known paths shared with another value's paths, and that value's paths in all.
    std::size_t Shared(const Schema& other) const;
    std::size_t Size() const { return m_kinds.size(); }

private:
    void Add(const Json::Value& value, const Shape& shape);

    std::map<Shape, Json::ValueType> m_kinds;
    std::map<Shape, std::vector<std::string>> m_members;
};

// Whether a value has something at the path's shape ("[]" steps: in any element), and the member
// names found there.
bool ShapeOccurs(const Json::Value& value, const Shape& shape);
std::vector<std::string> MembersAt(const Json::Value& value, const Shape& shape);

// The examples built into the tool, parsed and gathered once per run of the tool (or of a batch):
// owned by the run, not global.
class Knowledge {
public:
    // The section's example of that kind ("table", "f5", "base"), parsed; null when there is none.
    const Json::Value& Example(const Section& section, const char* kind);
    // The paths of the section's example table (or F5 text, for "f5").
    const Schema& ExampleSchema(const Section& section, const char* kind);

private:
    std::map<std::string, std::unique_ptr<Json::Value>> m_examples;
    std::map<std::string, std::unique_ptr<Schema>> m_schemas;
};

}  // namespace protofix::tool

#endif
