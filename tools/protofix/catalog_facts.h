// What each key of a section's example table goes with, as the experiments on the examples find it
// (catalog_experiments.h), and how those facts read in the catalog.
#ifndef PROTOFIX_TOOL_CATALOG_FACTS_H
#define PROTOFIX_TOOL_CATALOG_FACTS_H

#include "catalog_record.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace protofix::tool {

// What a key of the table goes with.
struct KeyFacts {
    std::set<std::string> f5Read;     // F5 keys that, changed, change the key (serialize --f5)
    std::set<std::string> f5Written;  // F5 keys that change when the key does (deserialize --f5)
    FieldBits fills;                  // record fields that change when the key does (deserialize)
    FieldBits writtenFrom;            // record fields that, changed, change the key (serialize)
    bool refused = false;             // deserialize refused (or raised) at every change of the key
};

// What the keys of a section's table go with, and what of its examples nothing goes with.
struct SectionFacts {
    std::vector<std::string> sources;  // the example files the facts come from
    std::vector<std::string> keys;     // the table's keys, in the order met
    std::set<std::string> flags;       // the keys that hold true or false
    std::map<std::string, KeyFacts> byKey;
    bool recordRun = false;    // the record's experiments ran
    bool f5Run = false;        // the F5 text's experiments ran
    std::string tableNotRead;  // why the example table gives no record to compare; "" if it does
    std::vector<std::string> f5Unread;   // F5 keys of the members read that change no table key
    std::vector<std::string> f5Members;  // members of the F5 text of which nothing is read
    Parts parts;                         // the nested records of the record, for naming them whole
};

// The facts of the key; none for a key that no experiment reached.
const KeyFacts& FactsOf(const SectionFacts& facts, const std::string& key);

// The fields by name, a nested record's element named whole when every part of it is there.
std::vector<std::string> WholeNames(const FieldBits& fields, const Parts& parts);

// The bits of each field that the keys fill, all keys together.
std::map<std::string, std::uint64_t> FilledBits(const SectionFacts& facts);

// The bits a key owns in a field, worth naming when the field is a set of flags: the key is true
// or false, turning it over turns over those bits, turning over those bits in the record turns it
// over, and other keys own other bits of the field. Zero otherwise.
std::uint64_t OwnBits(const KeyFacts& kf, bool isFlag, const std::string& field,
                      const std::map<std::string, std::uint64_t>& filledBits);

}  // namespace protofix::tool

#endif
