// The named-field view of a record as the tool prints it: members in the record's field order,
// arrays of numbers and small flat objects on one line, everything else indented by two spaces.
#ifndef PROTOFIX_TOOL_VIEW_FORMAT_H
#define PROTOFIX_TOOL_VIEW_FORMAT_H

#include <describe/describe.h>

#include <json/json.h>

#include <string>

namespace protofix::tool {

// The view as JSON text ending in a newline, members in the record's field order: on one line as
// the compact writer writes it, or indented. Members that the descriptor does not name follow the
// named ones in the view's own order.
std::string FormatView(const protofix::describe::Descriptor& descriptor, const Json::Value& view,
                       bool pretty);

// Any JSON value in the indented layout, members in the value's own order (the writer's order).
std::string FormatPretty(const Json::Value& value);

// A JSON value as the compact writer writes it, or indented; ends in a newline.
std::string FormatJson(const Json::Value& value, bool pretty);
// A JSON text of the library as it is (with a newline at its end), or indented.
std::string FormatJsonText(const std::string& text, bool pretty);

}  // namespace protofix::tool

#endif
