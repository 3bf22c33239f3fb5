// The named-field view of a record as the tool prints it: members in the record's field order,
// arrays of numbers and small flat objects on one line, everything else indented by two spaces.
#ifndef PROTOFIX_TOOL_VIEW_FORMAT_H
#define PROTOFIX_TOOL_VIEW_FORMAT_H

#include <describe/describe.h>

#include <json/json.h>

#include <string>

namespace protofix::tool {

// The view as JSON text ending in a newline. Members that the descriptor does not name follow
// the named ones in the view's own order.
std::string FormatView(const protofix::describe::Descriptor& descriptor, const Json::Value& view);

// Any JSON value in the same layout, members in the value's own order (the writer's order).
std::string FormatPretty(const Json::Value& value);

}  // namespace protofix::tool

#endif
