// What a value loses on its way through a section: the value given is compared with the value the
// section gives back, as the device reads them (numbers by value, a flag by its truth, a time
// section by its numbers, channel lists as sets, PTZ links by their channel). One walk of the two
// trees.
#ifndef PROTOFIX_TOOL_LOSSES_H
#define PROTOFIX_TOOL_LOSSES_H

#include "schema.h"

#include <json/json.h>

#include <string>
#include <variant>
#include <vector>

namespace protofix::tool {

// One step of a path into a JSON value: a member name or an array index.
using PathStep = std::variant<std::string, Json::ArrayIndex>;
using Path = std::vector<PathStep>;

// "eth0.IPAddress", "EventHandler.PtzLink[0]", "[\"a.b\"]" for a key that is not a plain word;
// "(table)" for the whole value.
std::string FormatPath(const Path& path);
// The path as a JSON array of member names and indices.
Json::Value PathJson(const Path& path);

struct Loss {
    enum Kind {
        kChanged,  // given back with another meaning (a number narrowed, a text cut, ...)
        kAbsent,   // not given back
    };
    Kind kind = kChanged;
    Path path;
    Shape shape;  // the path's shape, for what the examples know of it
    Json::Value before;
    Json::Value after;   // null when absent
    bool known = false;  // kAbsent: the section's example has a value at this shape
};

// How a list of PTZ links is read: by the record ("Alarm" and the other event sections in record
// mode) or by the merge into an F5 text, which passes over entries shorter than five.
enum class LinkReading { kRecord, kF5 };

// The table given against the table given back. A null, an empty list and an empty object given
// hold nothing to lose; what only the table given back holds is not a loss; a value not given back
// is one loss with all below it. The schema tells which absent values are of a shape the section
// knows.
std::vector<Loss> CompareTables(const Json::Value& before, const Json::Value& after,
                                const Schema& known, LinkReading links);

// Every value of an F5 text against the text after its round trip, in place.
std::vector<Loss> CompareTexts(const Json::Value& before, const Json::Value& after);

// Equal as the device reads them.
bool SameMeaning(const Json::Value& a, const Json::Value& b);
// Two numbers equal by value, whatever their JSON integer kind.
bool SameNumber(const Json::Value& a, const Json::Value& b);

// The value as compact JSON on one line.
std::string Compact(const Json::Value& value);
// The same, cut to about 80 characters; a cut value ends in "..." and says how long it was.
std::string Brief(const Json::Value& value);

}  // namespace protofix::tool

#endif
