// The values of a JSON text, one leaf at a time: the leaves of a table or an F5 text, the keys whose
// leaves differ between two of them, and each leaf changed in turn.
#ifndef PROTOFIX_TOOL_CATALOG_LEAVES_H
#define PROTOFIX_TOOL_CATALOG_LEAVES_H

#include "losses.h"

#include <json/json.h>

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace protofix::tool {

// A value that holds no other: a number, a text, true or false, null, an empty list or object.
struct Leaf {
    Path path;
    std::string key;  // the path with every index shown as [], "EventHandler.TimeSection[][]"
    Json::Value value;
};

// The leaves of the value, member by member and element by element.
std::vector<Leaf> LeavesOf(const Json::Value& value);

// Values a key was seen to take, by key: the other values of an enumeration, a number in the
// units of its field. A key's values in a changed output are tried as its changes in the other
// direction.
using Alternatives = std::map<std::string, std::vector<Json::Value>>;

// The keys whose leaves differ between two values, or that only one of them has; the values they
// have after are remembered.
std::set<std::string> ChangedKeys(const std::vector<Leaf>& before, const Json::Value& after,
                                  Alternatives& alternatives);

// A character of a text changed into another of its kind: a digit into the next digit, a letter
// into the next letter, anything else into a letter.
char Another(char c);

// Runs the experiment on each changed value of the leaf, then on the values the key was seen to
// take; when none changes anything, once more on the value without the leaf (a member removed, an
// element made null). The experiment answers whether the change showed; so does Vary, for any of
// them. The first leaf of a key (of a list's elements) is changed in every way, the others in the
// first and the last way only (a text's first and last character): the facts are the key's.
bool Vary(const Json::Value& root, const Leaf& leaf, std::set<std::string>& varied,
          const Alternatives& alternatives,
          const std::function<bool(const Json::Value&)>& experiment);

}  // namespace protofix::tool

#endif
