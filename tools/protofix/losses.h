// What a table loses on its way through a section: the table given is compared with the table
// the section gives back after converting it into the record (or merging it into the F5 text).
#ifndef PROTOFIX_TOOL_LOSSES_H
#define PROTOFIX_TOOL_LOSSES_H

#include <json/json.h>

#include <functional>
#include <string>
#include <variant>
#include <vector>

namespace protofix::tool {

// One step of a path into a JSON value: a member name or an array index.
using PathStep = std::variant<std::string, Json::ArrayIndex>;
using Path = std::vector<PathStep>;

// "eth0.IPAddress", "EventHandler.PtzLink[0][1]", "[\"a.b\"]" for a key that is not a plain word;
// "(table)" for the whole table.
std::string FormatPath(const Path& path);

// A copy of the value without what the path names: a member is removed, an array element
// becomes null (so the elements after it keep their places).
Json::Value Without(const Json::Value& value, const Path& path);

struct Loss {
    enum Kind {
        kNotRead,         // the section does not read it: the table without it converts the same
        kNotWrittenBack,  // read, but the section does not give it back in the same place
        kChanged,         // given back with another value (a number narrowed, a text cut, ...)
    };
    Kind kind;
    Path path;
    Json::Value before;
    Json::Value after;  // null when it did not come back
};

// Walks the table given (before) against the table given back (after). For a value that did not
// come back, unread(path) says whether the section ignores it. A null value, an empty list or an
// empty object in the table given holds nothing to lose; members that only the table given back holds are not losses.
std::vector<Loss> FindLosses(const Json::Value& before, const Json::Value& after,
                             const std::function<bool(const Path&)>& unread);

// Equal as the device would read them: numbers by value, whatever their JSON integer kind.
bool SameValue(const Json::Value& a, const Json::Value& b);

// The value as compact JSON on one line.
std::string Compact(const Json::Value& value);
// The same, cut after about 80 characters with "..." for a message.
std::string Brief(const Json::Value& value);

}  // namespace protofix::tool

#endif
