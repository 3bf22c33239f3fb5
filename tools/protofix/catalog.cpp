// The section catalog: every section with its routines, modes and record, and what each key of
// its example table goes with in the F5 text and in the record. Those are found by running the
// library on the examples, one value changed at a time, and never written down by hand, so the
// catalog cannot drift from the code. What a section's code does that no example shows is in
// examples/<section>.notes, and what its round trip loses in examples/<section>.lost; both are
// printed as they stand.
#include "catalog.h"

#include "diagnosis.h"
#include "library.h"
#include "losses.h"
#include "section_table.h"

#include <describe/describe.h>
#include <protofix/protofix.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <functional>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace protofix::tool {
namespace {

// Equal values, numbers by value whatever their JSON integer kind: a change the experiments look
// for is any other difference, a flag's kind included.
bool SameValue(const Json::Value& a, const Json::Value& b) {
    if (a.isBool() || b.isBool()) return a.isBool() && b.isBool() && a.asBool() == b.asBool();
    if (a.isNumeric() && b.isNumeric()) return SameNumber(a, b);
    return a == b;
}

using protofix::describe::Descriptor;
using protofix::describe::Field;
using protofix::describe::Kind;

// ---- the library, run as the tool runs it with no request options ------------------------------

enum class Outcome { kConverted, kRefused, kRaised };

Converter ConverterOf(const Section& section, bool textMode) {
    return Converter(section.name, textMode, Settings());
}

// The library's answer, a JSON exception of it (a value of the wrong kind) as kRaised.
template <class Run>
Outcome Guarded(Run&& run) {
    try {
        return run() ? Outcome::kConverted : Outcome::kRefused;
    } catch (const Json::Exception&) {
        return Outcome::kRaised;
    }
}

// The table of the envelope when its result is true.
bool TableOf(const std::string& envelope, Json::Value& table) {
    bool result = false;
    Json::Value answered = EnvelopeTable(envelope, &result);
    if (result) table = std::move(answered);
    return result;
}

// Serialize: the record to the table of the envelope the library answers.
Outcome Packet(const Section& section, const Bytes& record, Json::Value& table) {
    return Guarded([&] { return TableOf(ConverterOf(section, false).Packet(record), table); });
}

// Serialize --f5: the same of the F5 text.
Outcome PacketText(const Section& section, const std::string& f5, Json::Value& table) {
    return Guarded([&] { return TableOf(ConverterOf(section, true).PacketText(f5), table); });
}

// Deserialize: the table onto the record.
Outcome Parse(const Section& section, const Json::Value& table, Bytes& record) {
    const std::string text = Json::FastWriter().write(table);
    return Guarded([&] { return ConverterOf(section, false).Parse(text, record) == 1; });
}

// Deserialize --f5: the table merged into the F5 text, read back as a document. The buffer has
// room for any merge of an example.
Outcome Merge(const Section& section, const Json::Value& table, const std::string& f5,
              Json::Value& merged) {
    F5Buffer buffer(8 * f5.size() + 4096);
    buffer.Load(f5);
    const std::string text = Json::FastWriter().write(table);
    const Outcome outcome =
        Guarded([&] { return ConverterOf(section, true).Merge(text, buffer) == 1; });
    if (outcome != Outcome::kConverted) return outcome;
    Json::Reader reader;
    return reader.parse(buffer.Text(), merged, false) ? Outcome::kConverted : Outcome::kRefused;
}

// ---- the values of a JSON text, one leaf at a time ---------------------------------------------

// A value that holds no other: a number, a text, true or false, null, an empty list or object.
struct Leaf {
    Path path;
    std::string key;  // the path with every index shown as [], "EventHandler.TimeSection[][]"
    Json::Value value;
};

void CollectLeaves(const Json::Value& value, Path& path, const std::string& key,
                   std::vector<Leaf>& leaves) {
    if (value.isObject() && !value.empty()) {
        for (const std::string& name : value.getMemberNames()) {
            path.emplace_back(name);
            CollectLeaves(value[name], path, key.empty() ? name : key + "." + name, leaves);
            path.pop_back();
        }
    } else if (value.isArray() && !value.empty()) {
        for (Json::ArrayIndex i = 0; i < value.size(); ++i) {
            path.emplace_back(i);
            CollectLeaves(value[i], path, key + "[]", leaves);
            path.pop_back();
        }
    } else {
        leaves.push_back({path, value.isArray() ? key + "[]" : key, value});
    }
}

std::vector<Leaf> LeavesOf(const Json::Value& value) {
    std::vector<Leaf> leaves;
    Path path;
    CollectLeaves(value, path, "", leaves);
    return leaves;
}

// Values a key was seen to take, by key: the other values of an enumeration, a number in the
// units of its field. A key's values in a changed output are tried as its changes in the other
// direction.
using Alternatives = std::map<std::string, std::vector<Json::Value>>;

// A few values are enough to reach every field a key fills.
constexpr std::size_t kAlternatives = 8;

void Remember(Alternatives& alternatives, const Leaf& leaf) {
    if (leaf.value.isNull()) return;
    std::vector<Json::Value>& values = alternatives[leaf.key];
    if (values.size() >= kAlternatives) return;
    for (const Json::Value& value : values) {
        if (SameValue(value, leaf.value)) return;
    }
    values.push_back(leaf.value);
}

// The keys whose leaves differ between two values, or that only one of them has; the values they
// have after are remembered.
std::set<std::string> ChangedKeys(const std::vector<Leaf>& before, const Json::Value& after,
                                  Alternatives& alternatives) {
    std::map<std::string, const Leaf*> old;
    for (const Leaf& leaf : before) old[FormatPath(leaf.path)] = &leaf;
    std::set<std::string> changed;
    for (const Leaf& leaf : LeavesOf(after)) {
        const auto found = old.find(FormatPath(leaf.path));
        if (found != old.end()) {
            const bool same = SameValue(found->second->value, leaf.value);
            old.erase(found);
            if (same) continue;
        }
        changed.insert(leaf.key);
        Remember(alternatives, leaf);
    }
    for (const auto& [path, leaf] : old) changed.insert(leaf->key);
    return changed;
}

Json::Value& At(Json::Value& root, const Path& path) {
    Json::Value* at = &root;
    for (const PathStep& step : path) {
        at = std::holds_alternative<std::string>(step) ? &(*at)[std::get<std::string>(step)]
                                                       : &(*at)[std::get<Json::ArrayIndex>(step)];
    }
    return *at;
}

// A character of a text changed into another of its kind: a digit into the next digit, a letter
// into the next letter, anything else into a letter.
char Another(char c) {
    if (c >= '0' && c <= '9') return c == '9' ? '0' : static_cast<char>(c + 1);
    if (c >= 'a' && c <= 'z') return c == 'z' ? 'a' : static_cast<char>(c + 1);
    if (c >= 'A' && c <= 'Z') return c == 'Z' ? 'A' : static_cast<char>(c + 1);
    return 'x';
}

// The characters of a text changed one at a time, up to this many.
constexpr std::size_t kTextPositions = 64;

// The values a leaf is changed into, one experiment each: a flag turned over, a number with its
// lowest bit turned over, a text with one character changed (each in turn, so that every field
// a text such as "1 08:00:00-18:00:00" fills is reached), an empty list given an element.
std::vector<Json::Value> OtherValues(const Json::Value& value) {
    std::vector<Json::Value> others;
    if (value.isBool()) {
        others.emplace_back(!value.asBool());
    } else if (value.isInt64()) {
        others.emplace_back(static_cast<Json::Int64>(value.asInt64() ^ 1));
    } else if (value.isUInt64()) {
        others.emplace_back(static_cast<Json::UInt64>(value.asUInt64() ^ 1u));
    } else if (value.isDouble()) {
        others.emplace_back(value.asDouble() + 1.0);
    } else if (value.isString()) {
        const std::string text = value.asString();
        if (text.empty()) others.emplace_back("x");
        for (std::size_t i = 0; i < std::min(text.size(), kTextPositions); ++i) {
            std::string other = text;
            other[i] = Another(text[i]);
            others.emplace_back(other);
        }
    } else if (value.isArray()) {
        Json::Value one(Json::arrayValue);
        one.append(0);
        others.push_back(one);
    }
    return others;
}

// Runs the experiment on each changed value of the leaf, then on the values the key was seen to
// take; when none changes anything, once more on the value without the leaf (a member removed, an
// element made null). The experiment answers whether the change showed; so does Vary, for any of
// them. The first leaf of a key (of a list's elements) is changed in every way, the others in the
// first and the last way only (a text's first and last character): the facts are the key's.
template <class Experiment>
bool Vary(const Json::Value& root, const Leaf& leaf, std::set<std::string>& varied,
          const Alternatives& alternatives, Experiment&& experiment) {
    std::vector<Json::Value> others = OtherValues(leaf.value);
    if (varied.insert(leaf.key).second) {
        const auto seen = alternatives.find(leaf.key);
        if (seen != alternatives.end()) {
            for (const Json::Value& value : seen->second) {
                if (!SameValue(value, leaf.value)) others.push_back(value);
            }
        }
    } else if (others.size() > 2) {
        others.erase(others.begin() + 1, others.end() - 1);
    }
    bool showed = false;
    for (const Json::Value& other : others) {
        Json::Value changedRoot = root;
        At(changedRoot, leaf.path) = other;
        if (experiment(changedRoot)) showed = true;
    }
    return showed || experiment(Without(root, {leaf.path}));
}

// ---- the fields of a record, one element at a time ---------------------------------------------

// One element of a field of the record, or of a record nested in it.
struct Element {
    std::string field;  // "handler.recordChannels[]", "timeSections[][].beginHour"
    std::size_t offset;
    std::size_t size;
    Kind kind;
};

// The parts of each nested record's element, by the element's name ("timeSections[][]"): its
// fields and the records nested in it, each name once.
using Parts = std::map<std::string, std::set<std::string>>;

// The elements of the record at base, whose fields are named after owner (the element of a
// nested record, or "" at the top).
void CollectElements(const Descriptor& descriptor, std::size_t base, const std::string& owner,
                     std::vector<Element>& elements, Parts& parts) {
    const std::string prefix = owner.empty() ? "" : owner + ".";
    for (const Field& field : descriptor.fields) {
        if (field.kind == Kind::Padding) continue;
        std::string name = prefix + field.name;
        if (field.kind == Kind::Reserved) {
            elements.push_back({name, base + field.offset, field.size, field.kind});
            continue;
        }
        std::size_t count = 1;
        for (const std::size_t extent : field.shape) {
            count *= extent;
            name += "[]";
        }
        if (!owner.empty()) parts[owner].insert(name);
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t at = base + field.offset + i * field.elementSize;
            if (field.kind == Kind::Record) {
                CollectElements(*field.record, at, name, elements, parts);
            } else {
                elements.push_back({name, at, field.elementSize, field.kind});
            }
        }
    }
}

bool IsInteger(Kind kind) {
    switch (kind) {
        case Kind::Int8:
        case Kind::UInt8:
        case Kind::Int16:
        case Kind::UInt16:
        case Kind::Int32:
        case Kind::UInt32:
        case Kind::Int64:
        case Kind::UInt64: return true;
        default: return false;
    }
}

// The bits of an integer element, whatever its width.
std::uint64_t Bits(const unsigned char* at, std::size_t size) {
    switch (size) {
        case 1: return *at;
        case 2: {
            std::uint16_t v = 0;
            std::memcpy(&v, at, sizeof v);
            return v;
        }
        case 4: {
            std::uint32_t v = 0;
            std::memcpy(&v, at, sizeof v);
            return v;
        }
        default: {
            std::uint64_t v = 0;
            std::memcpy(&v, at, std::min(size, sizeof v));
            return v;
        }
    }
}

void StoreBits(unsigned char* at, std::size_t size, std::uint64_t value) {
    switch (size) {
        case 1: *at = static_cast<unsigned char>(value); break;
        case 2: {
            const auto v = static_cast<std::uint16_t>(value);
            std::memcpy(at, &v, sizeof v);
            break;
        }
        case 4: {
            const auto v = static_cast<std::uint32_t>(value);
            std::memcpy(at, &v, sizeof v);
            break;
        }
        default: std::memcpy(at, &value, std::min(size, sizeof value)); break;
    }
}

// The fields (by name, elements of an array under one name) whose bytes differ, and for an
// integer field the bits that differ.
using FieldBits = std::map<std::string, std::uint64_t>;

FieldBits ChangedFields(const std::vector<Element>& elements, const Bytes& a, const Bytes& b) {
    FieldBits changed;
    for (const Element& e : elements) {
        if (std::memcmp(a.data() + e.offset, b.data() + e.offset, e.size) == 0) continue;
        std::uint64_t& bits = changed[e.field];
        if (IsInteger(e.kind)) {
            bits |= Bits(a.data() + e.offset, e.size) ^ Bits(b.data() + e.offset, e.size);
        }
    }
    return changed;
}

// The elements of one field: every element of its arrays, and of the arrays of records it is in.
struct FieldElements {
    std::string field;
    std::vector<const Element*> elements;
};

std::vector<FieldElements> ByField(const std::vector<Element>& elements) {
    std::vector<FieldElements> fields;
    std::map<std::string, std::size_t> index;
    for (const Element& element : elements) {
        const auto found = index.emplace(element.field, fields.size());
        if (found.second) fields.push_back({element.field, {}});
        fields[found.first->second].elements.push_back(&element);
    }
    return fields;
}

// The record with the field changed in one way per experiment, in all its elements at once: each
// bit of an integer turned over in turn (a bit may be a flag of its own), the first character of
// a text, a real plus one. Reserved bytes are left alone. Each comes with the bit turned over
// (0 for a text or a real).
std::vector<std::pair<Bytes, std::uint64_t>> OtherRecords(const Bytes& record,
                                                          const FieldElements& field) {
    std::vector<std::pair<Bytes, std::uint64_t>> others;
    const Element& first = *field.elements.front();
    if (IsInteger(first.kind)) {
        for (unsigned bit = 0; bit < first.size * 8 && bit < 64; ++bit) {
            const std::uint64_t mask = std::uint64_t{1} << bit;
            Bytes other = record;
            for (const Element* e : field.elements) {
                unsigned char* at = other.data() + e->offset;
                StoreBits(at, e->size, Bits(at, e->size) ^ mask);
            }
            others.emplace_back(std::move(other), mask);
        }
    } else if (first.kind == Kind::Text) {
        Bytes other = record;
        for (const Element* e : field.elements) {
            unsigned char& c = other[e->offset];
            c = c == 0 ? 'x' : static_cast<unsigned char>(Another(static_cast<char>(c)));
        }
        others.emplace_back(std::move(other), 0);
    } else if (first.kind == Kind::Float || first.kind == Kind::Double) {
        Bytes other = record;
        for (const Element* e : field.elements) {
            unsigned char* at = other.data() + e->offset;
            if (e->kind == Kind::Float) {
                float v = 0;
                std::memcpy(&v, at, sizeof v);
                v += 1.0F;
                std::memcpy(at, &v, sizeof v);
            } else {
                double v = 0;
                std::memcpy(&v, at, sizeof v);
                v += 1.0;
                std::memcpy(at, &v, sizeof v);
            }
        }
        others.emplace_back(std::move(other), 0);
    }
    return others;
}

// ---- what each key of a section goes with -----------------------------------------------------

struct KeyFacts {
    std::set<std::string> f5Read;     // F5 keys that, changed, change the key (serialize --f5)
    std::set<std::string> f5Written;  // F5 keys that change when the key does (deserialize --f5)
    FieldBits fills;                  // record fields that change when the key does (deserialize)
    FieldBits writtenFrom;            // record fields that, changed, change the key (serialize)
    bool refused = false;             // deserialize refused (or raised) at every change of the key
};

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

void AddKeys(const std::vector<Leaf>& leaves, SectionFacts& facts) {
    for (const Leaf& leaf : leaves) {
        if (leaf.value.isBool()) facts.flags.insert(leaf.key);
        if (std::find(facts.keys.begin(), facts.keys.end(), leaf.key) == facts.keys.end()) {
            facts.keys.push_back(leaf.key);
        }
    }
}

bool Exists(const std::string& path) { return std::ifstream(path).good(); }

bool ReadJsonFile(const std::string& path, std::string& text, Json::Value& value,
                  Failure& failure) {
    return ReadInput(path, kDefaultMaxInput, text, failure) &&
           ParseJsonText(path, text, value, failure);
}

// The fields that a record's named-field view names, written onto the record's bytes.
bool ReadRecord(const std::string& path, const Descriptor& descriptor, Bytes& record,
                Failure& failure) {
    std::string text;
    Json::Value view;
    if (!ReadJsonFile(path, text, view, failure)) return false;
    std::string error;
    if (!protofix::describe::FromJson(descriptor, view, record.data(), error)) {
        failure = {kBadInput, path + ": not a view of " + descriptor.name + ": " + error};
        return false;
    }
    return true;
}

// The bases a table is read onto: zero bytes, then (for a key that changed no field there) bytes
// of a pattern, so that a key whose every value reads as the zero of its field ("IPC" as device
// class 0) shows too; both with the fields the example's .base.json names.
constexpr unsigned char kPattern = 0xa5;

struct Bases {
    Bytes zero;
    Bytes patterned;
};

// Deserialize: each key of the table changed in turn (but those in skip), read onto a base, and
// the fields that come out otherwise. Answers what the unchanged table gives on zero bytes.
Outcome ParseExperiments(const Section& section, const std::vector<Element>& elements,
                         const Bases& bases, const Json::Value& table,
                         const std::set<std::string>& skip, const Alternatives& alternatives,
                         SectionFacts& facts) {
    Bytes reference = bases.zero;
    const Outcome outcome = Parse(section, table, reference);
    if (outcome != Outcome::kConverted) return outcome;
    Bytes patternedReference = bases.patterned;
    const bool patterned = Parse(section, table, patternedReference) == Outcome::kConverted;
    std::set<std::string> varied;
    std::set<std::string> variedOnPattern;
    for (const Leaf& leaf : LeavesOf(table)) {
        if (skip.count(leaf.key) != 0) continue;
        KeyFacts& kf = facts.byKey[leaf.key];
        bool converted = false;
        // On the patterned base the bits that differ are the pattern's: only the field counts.
        const auto onto = [&](const Bytes& base, const Bytes& before, bool withBits) {
            return [&, withBits](const Json::Value& changed) {
                Bytes bytes = base;
                if (Parse(section, changed, bytes) != Outcome::kConverted) return false;
                converted = true;
                const FieldBits fields = ChangedFields(elements, before, bytes);
                for (const auto& [field, bits] : fields) kf.fills[field] |= withBits ? bits : 0;
                return !fields.empty();
            };
        };
        if (!Vary(table, leaf, varied, alternatives, onto(bases.zero, reference, true)) &&
            patterned) {
            Vary(table, leaf, variedOnPattern, alternatives,
                 onto(bases.patterned, patternedReference, false));
        }
        if (!converted) kf.refused = true;
    }
    return outcome;
}

// Serialize: each field of the example record changed in turn, and the keys that come out
// otherwise.
void PacketExperiments(const Section& section, const std::vector<Element>& elements,
                       const Bytes& record, Alternatives& alternatives, SectionFacts& facts) {
    Json::Value written;
    if (Packet(section, record, written) != Outcome::kConverted) return;
    const std::vector<Leaf> writtenLeaves = LeavesOf(written);
    for (const FieldElements& field : ByField(elements)) {
        for (const auto& [other, bits] : OtherRecords(record, field)) {
            Json::Value changed;
            if (Packet(section, other, changed) != Outcome::kConverted) continue;
            for (const std::string& key : ChangedKeys(writtenLeaves, changed, alternatives)) {
                facts.byKey[key].writtenFrom[field.field] |= bits;
            }
        }
    }
}

// The top-level member of the F5 text a key belongs to.
std::string MemberOf(const std::string& key) { return key.substr(0, key.find_first_of(".[")); }

// Serialize --f5: a value of the F5 text changed, and the table keys that come out otherwise.
bool ReadF5Leaf(const Section& section, const Json::Value& document, const Leaf& leaf,
                const std::vector<Leaf>& tableLeaves, std::set<std::string>& varied,
                const Alternatives& f5Alternatives, Alternatives& tableAlternatives,
                SectionFacts& facts) {
    return Vary(document, leaf, varied, f5Alternatives, [&](const Json::Value& changed) {
        Json::Value out;
        const std::string text = Json::FastWriter().write(changed);
        if (PacketText(section, text, out) != Outcome::kConverted) return false;
        const std::set<std::string> keys = ChangedKeys(tableLeaves, out, tableAlternatives);
        for (const std::string& key : keys) facts.byKey[key].f5Read.insert(leaf.key);
        return !keys.empty();
    });
}

// Serialize --f5: each value of the example F5 text changed in turn, and the table keys that
// come out otherwise. Deserialize --f5: each key of the table it gives changed in turn, merged into
// the same text, and the F5 keys that come out otherwise; then the F5 values that changed nothing
// once more, as the merges wrote them. The table the F5 text gives is left in table.
void F5Experiments(const Section& section, const std::string& f5, const Json::Value& document,
                   Alternatives& tableAlternatives, Json::Value& table, SectionFacts& facts) {
    if (PacketText(section, f5, table) != Outcome::kConverted) return;
    facts.f5Run = true;
    const std::vector<Leaf> tableLeaves = LeavesOf(table);
    AddKeys(tableLeaves, facts);

    std::vector<std::string> order;
    std::set<std::string> read;
    std::vector<const Leaf*> unread;
    std::set<std::string> varied;
    const Alternatives none;
    const std::vector<Leaf> documentLeaves = LeavesOf(document);
    for (const Leaf& leaf : documentLeaves) {
        if (std::find(order.begin(), order.end(), leaf.key) == order.end()) {
            order.push_back(leaf.key);
        }
        if (ReadF5Leaf(section, document, leaf, tableLeaves, varied, none, tableAlternatives,
                       facts)) {
            read.insert(leaf.key);
        } else {
            unread.push_back(&leaf);
        }
    }

    Alternatives f5Alternatives;
    Json::Value merged;
    if (Merge(section, table, f5, merged) == Outcome::kConverted) {
        const std::vector<Leaf> mergedLeaves = LeavesOf(merged);
        varied.clear();
        for (const Leaf& leaf : tableLeaves) {
            Vary(table, leaf, varied, tableAlternatives, [&](const Json::Value& changed) {
                Json::Value out;
                if (Merge(section, changed, f5, out) != Outcome::kConverted) return false;
                const std::set<std::string> keys = ChangedKeys(mergedLeaves, out, f5Alternatives);
                for (const std::string& key : keys) {
                    facts.byKey[leaf.key].f5Written.insert(key);
                    read.insert(key);
                }
                return !keys.empty();
            });
        }
    }
    varied.clear();
    for (const Leaf* leaf : unread) {
        if (f5Alternatives.count(leaf->key) != 0 &&
            ReadF5Leaf(section, document, *leaf, tableLeaves, varied, f5Alternatives,
                       tableAlternatives, facts)) {
            read.insert(leaf->key);
        }
    }

    std::set<std::string> membersRead;
    for (const std::string& key : read) membersRead.insert(MemberOf(key));
    for (const std::string& key : order) {
        const std::string member = MemberOf(key);
        if (membersRead.count(member) == 0) {
            if (std::find(facts.f5Members.begin(), facts.f5Members.end(), member) ==
                facts.f5Members.end()) {
                facts.f5Members.push_back(member);
            }
        } else if (read.count(key) == 0) {
            facts.f5Unread.push_back(key);
        }
    }
}

// The experiments of a section on its examples: serialize of the record first and of the F5
// text, whose outputs give the values that deserialize then tries.
bool GatherFacts(const Section& section, const std::string& examplesDir, SectionFacts& facts,
                 Failure& failure) {
    const auto path = [&](const char* kind) {
        return examplesDir + "/" + ExampleFile(section, kind);
    };
    std::string text;
    Json::Value table;
    if (!ReadJsonFile(path("table"), text, table, failure)) return false;
    facts.sources.push_back(ExampleFile(section, "table"));
    AddKeys(LeavesOf(table), facts);
    Alternatives alternatives;

    const Descriptor* descriptor = protofix::describe::FindDescriptor(section.record);
    const bool record = descriptor != nullptr && section.AcceptsRecord() && Exists(path("record"));
    std::vector<Element> elements;
    Bases bases{Bytes(section.recordSize, 0), Bytes(section.recordSize, kPattern)};
    if (record) {
        CollectElements(*descriptor, 0, "", elements, facts.parts);
        Bytes example(section.recordSize, 0);
        if (!ReadRecord(path("record"), *descriptor, example, failure)) return false;
        if (Exists(path("base")) &&
            (!ReadRecord(path("base"), *descriptor, bases.zero, failure) ||
             !ReadRecord(path("base"), *descriptor, bases.patterned, failure))) {
            return false;
        }
        facts.sources.push_back(ExampleFile(section, "record"));
        facts.recordRun = true;
        PacketExperiments(section, elements, example, alternatives, facts);
    }

    Json::Value f5Table;
    if (section.AcceptsText() && Exists(path("f5"))) {
        Json::Value document;
        if (!ReadJsonFile(path("f5"), text, document, failure)) return false;
        F5Experiments(section, text, document, alternatives, f5Table, facts);
        if (facts.f5Run) facts.sources.push_back(ExampleFile(section, "f5"));
    }

    if (record) {
        switch (ParseExperiments(section, elements, bases, table, {}, alternatives, facts)) {
            case Outcome::kConverted: break;
            case Outcome::kRefused: facts.tableNotRead = "the section refuses it"; break;
            case Outcome::kRaised:
                facts.tableNotRead = "reading it raises (a value of the wrong JSON kind)";
                break;
        }
        if (facts.f5Run && facts.tableNotRead.empty()) {
            std::set<std::string> seen;
            for (const Leaf& leaf : LeavesOf(table)) seen.insert(leaf.key);
            ParseExperiments(section, elements, bases, f5Table, seen, alternatives, facts);
        }
    }
    return true;
}

// ---- how the facts read ------------------------------------------------------------------------

std::string Code(const std::string& text) { return "`" + text + "`"; }

// A key as the catalog shows it; "(table)" for a table that is a single value.
std::string KeyName(const std::string& key) { return key.empty() ? "(table)" : key; }

std::string Hex(std::uint64_t bits) {
    std::ostringstream out;
    out << "0x" << std::hex << bits;
    return out.str();
}

// The fields by name, a nested record's element named whole when every part of it is there.
std::vector<std::string> WholeNames(const FieldBits& fields, const Parts& parts) {
    std::set<std::string> names;
    for (const auto& [field, bits] : fields) names.insert(field);
    // The deepest elements first, so that their owners can be named whole in turn.
    std::vector<std::string> owners;
    for (const auto& [owner, members] : parts) owners.push_back(owner);
    std::sort(owners.begin(), owners.end(), [](const std::string& a, const std::string& b) {
        return std::count(a.begin(), a.end(), '.') > std::count(b.begin(), b.end(), '.');
    });
    for (const std::string& owner : owners) {
        const std::set<std::string>& members = parts.at(owner);
        if (std::includes(names.begin(), names.end(), members.begin(), members.end())) {
            for (const std::string& member : members) names.erase(member);
            names.insert(owner);
        }
    }
    return std::vector<std::string>(names.begin(), names.end());
}

// The bits of each field that the keys fill, all keys together.
std::map<std::string, std::uint64_t> FilledBits(const SectionFacts& facts) {
    std::map<std::string, std::uint64_t> all;
    for (const auto& [key, kf] : facts.byKey) {
        for (const auto& [field, bits] : kf.fills) all[field] |= bits;
    }
    return all;
}

// The bits a key owns in a field, worth naming when the field is a set of flags: the key is true
// or false, turning it over turns over those bits, turning over those bits in the record turns it
// over, and other keys own other bits of the field. Zero otherwise.
std::uint64_t OwnBits(const KeyFacts& kf, bool isFlag, const std::string& field,
                      const std::map<std::string, std::uint64_t>& filledBits) {
    if (!isFlag) return 0;
    const auto fills = kf.fills.find(field);
    const auto from = kf.writtenFrom.find(field);
    const auto all = filledBits.find(field);
    if (fills == kf.fills.end() || from == kf.writtenFrom.end() || all == filledBits.end()) {
        return 0;
    }
    const std::uint64_t bits = fills->second;
    return bits != 0 && from->second == bits && (all->second & ~bits) != 0 ? bits : 0;
}

std::string BitsText(std::uint64_t bits) {
    return ((bits & (bits - 1)) == 0 ? " (bit " : " (bits ") + Hex(bits) + ")";
}

std::string FieldList(const std::vector<std::string>& names,
                      const std::function<std::uint64_t(const std::string&)>& bitsOf) {
    std::string text;
    for (const std::string& name : names) {
        if (!text.empty()) text += ", ";
        text += Code(name);
        const std::uint64_t bits = bitsOf(name);
        if (bits != 0) text += BitsText(bits);
    }
    return text;
}

std::string RecordCell(const SectionFacts& facts, const KeyFacts& kf, bool isFlag,
                       const std::map<std::string, std::uint64_t>& filledBits) {
    if (!kf.fills.empty()) {
        return FieldList(WholeNames(kf.fills, facts.parts), [&](const std::string& field) {
            return OwnBits(kf, isFlag, field, filledBits);
        });
    }
    std::string text = kf.refused ? "none: the table does not convert when it changes" : "-";
    if (!kf.writtenFrom.empty()) {
        text = "not read back; written from " +
               FieldList(WholeNames(kf.writtenFrom, facts.parts),
                         [](const std::string&) { return std::uint64_t{0}; });
    }
    return text;
}

std::string F5Cell(const KeyFacts& kf) {
    std::set<std::string> all = kf.f5Read;
    all.insert(kf.f5Written.begin(), kf.f5Written.end());
    std::string text;
    for (const std::string& key : all) {
        if (!text.empty()) text += ", ";
        text += Code(key);
        const bool read = kf.f5Read.count(key) != 0;
        const bool written = kf.f5Written.count(key) != 0;
        if (!written) text += " (serialize only)";
        if (!read) text += " (deserialize only)";
    }
    return text.empty() ? "-" : text;
}

// A Markdown table cell holds no bar: each is escaped.
std::string Cell(const std::string& text) {
    std::string out;
    for (const char c : text) {
        if (c == '|') out += '\\';
        out += c;
    }
    return out;
}

// ---- the notes of a section --------------------------------------------------------------------

// A line of a .lost file: "field: why", or a comment ("# ...") about the lines after it; the
// comment lines one after another (blank lines between them aside) are one comment.
struct LostLine {
    std::string field;  // "" for a comment
    std::string text;
};

void AddLost(std::vector<LostLine>& lost, LostLine line) {
    if (line.field.empty() && !lost.empty() && lost.back().field.empty()) {
        lost.back().text += " " + line.text;
    } else {
        lost.push_back(std::move(line));
    }
}

bool ReadLines(const std::string& path, std::vector<std::string>& lines, Failure& failure) {
    std::string text;
    if (!ReadInput(path, kDefaultMaxInput, text, failure)) return false;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines.push_back(line);
    }
    return true;
}

bool ReadLost(const std::string& path, std::vector<LostLine>& lost, Failure& failure) {
    std::vector<std::string> lines;
    if (!ReadLines(path, lines, failure)) return false;
    for (const std::string& line : lines) {
        if (line.empty()) continue;
        if (line[0] == '#') {
            const std::size_t start = line.find_first_not_of("# ");
            AddLost(lost, {"", start == std::string::npos ? "" : line.substr(start)});
            continue;
        }
        const std::size_t colon = line.find(':');
        if (colon == std::string::npos) {
            failure = {kBadInput,
                       path + ": a line is neither \"field: why\" nor a comment: " + line};
            return false;
        }
        const std::size_t start = line.find_first_not_of(' ', colon + 1);
        AddLost(lost,
                {line.substr(0, colon), start == std::string::npos ? "" : line.substr(start)});
    }
    return true;
}

struct SectionNotes {
    std::string notesFile;           // "" when the section has none
    std::vector<std::string> notes;  // its lines, Markdown
    std::string lostFile;
    std::vector<LostLine> lost;
};

bool ReadNotes(const Section& section, const std::string& examplesDir, SectionNotes& notes,
               Failure& failure) {
    const std::string lower = LowerCaseName(section);
    if (Exists(examplesDir + "/" + lower + ".notes")) {
        notes.notesFile = lower + ".notes";
        if (!ReadLines(examplesDir + "/" + notes.notesFile, notes.notes, failure)) return false;
        while (!notes.notes.empty() && notes.notes.back().empty()) notes.notes.pop_back();
    }
    if (Exists(examplesDir + "/" + lower + ".lost")) {
        notes.lostFile = lower + ".lost";
        if (!ReadLost(examplesDir + "/" + notes.lostFile, notes.lost, failure)) return false;
    }
    return true;
}

// ---- Markdown ----------------------------------------------------------------------------------

std::string KindName(const Field& field) {
    switch (field.kind) {
        case Kind::Int8: return "int8";
        case Kind::UInt8: return "uint8";
        case Kind::Int16: return "int16";
        case Kind::UInt16: return "uint16";
        case Kind::Int32: return "int32";
        case Kind::UInt32: return "uint32";
        case Kind::Int64: return "int64";
        case Kind::UInt64: return "uint64";
        case Kind::Float: return "float";
        case Kind::Double: return "double";
        case Kind::Text: return "char[" + std::to_string(field.elementSize) + "]";
        case Kind::Reserved: return "reserved";
        case Kind::Padding: return "padding";
        case Kind::Record: return field.record->name;
    }
    return "?";
}

std::string TypeText(const Field& field) {
    std::string text = KindName(field);
    if (field.kind == Kind::Reserved) return "reserved bytes";
    for (const std::size_t extent : field.shape) text += "[" + std::to_string(extent) + "]";
    return text;
}

// The record and the records nested in it, each once, outermost first.
void CollectRecords(const Descriptor& descriptor, std::vector<const Descriptor*>& records) {
    if (std::find(records.begin(), records.end(), &descriptor) != records.end()) return;
    records.push_back(&descriptor);
    for (const Field& field : descriptor.fields) {
        if (field.kind == Kind::Record) CollectRecords(*field.record, records);
    }
}

void WriteFields(const Descriptor& descriptor, std::ostream& out) {
    out << "\n`" << descriptor.name << "`, " << descriptor.size << " bytes:\n\n"
        << "| Field | Offset | Type | Bytes |\n|---|---|---|---|\n";
    for (const Field& field : descriptor.fields) {
        if (field.kind == Kind::Padding) continue;
        out << "| `" << field.name << "` | " << field.offset << " | " << TypeText(field) << " | "
            << field.size << " |\n";
    }
}

std::string CodeList(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) text += (text.empty() ? "" : ", ") + Code(name);
    return text;
}

void WriteKeys(const SectionFacts& facts, std::ostream& out) {
    std::vector<std::string> sources;
    for (const std::string& file : facts.sources) sources.push_back("examples/" + file);
    out << "\nKeys, found by running the library on " << CodeList(sources) << ":\n\n";
    if (!facts.tableNotRead.empty()) {
        out << "The example table is not read into the record: " << facts.tableNotRead
            << ". No key is shown filling a field.\n\n";
    }
    const bool f5 = facts.f5Run;
    const bool record = facts.recordRun;
    out << "| Table key |" << (f5 ? " F5 key |" : "") << (record ? " Record field |" : "")
        << "\n|---|" << (f5 ? "---|" : "") << (record ? "---|" : "") << "\n";
    const std::map<std::string, std::uint64_t> filledBits = FilledBits(facts);
    static const KeyFacts kNone;
    for (const std::string& key : facts.keys) {
        const auto found = facts.byKey.find(key);
        const KeyFacts& kf = found != facts.byKey.end() ? found->second : kNone;
        out << "| " << Cell(Code(KeyName(key))) << " |";
        if (f5) out << " " << Cell(F5Cell(kf)) << " |";
        if (record) {
            out << " " << Cell(RecordCell(facts, kf, facts.flags.count(key) != 0, filledBits))
                << " |";
        }
        out << "\n";
    }
    if (!facts.f5Unread.empty()) {
        out << "\nKeys of the example F5 text that change no table key, and that no table key "
               "changes: "
            << CodeList(facts.f5Unread) << ".\n";
    }
    if (!facts.f5Members.empty()) {
        out << "\nMembers of the F5 text that the section does not read: "
            << CodeList(facts.f5Members) << ".\n";
    }
}

void WriteNotes(const SectionNotes& notes, std::ostream& out) {
    if (!notes.notesFile.empty()) {
        out << "\nNotes (`examples/" << notes.notesFile << "`):\n\n";
        for (const std::string& line : notes.notes) out << line << "\n";
    }
    if (notes.lostFile.empty()) return;
    out << "\nWhat a round trip through the record loses (`examples/" << notes.lostFile << "`):\n";
    // A comment is a paragraph; the lines after it, a list.
    bool inComment = false;
    bool inList = false;
    for (const LostLine& line : notes.lost) {
        if (line.field.empty()) {
            out << "\n" << line.text;
            inComment = true;
            inList = false;
            continue;
        }
        if (!inList) out << (inComment ? "\n\n" : "\n");
        out << "- " << Code(line.field) << ": " << line.text << "\n";
        inComment = false;
        inList = true;
    }
    if (inComment) out << "\n";
}

bool WriteSection(const Section& section, const std::string& examplesDir, std::ostream& out,
                  Failure& failure) {
    SectionFacts facts;
    SectionNotes notes;
    if (!GatherFacts(section, examplesDir, facts, failure) ||
        !ReadNotes(section, examplesDir, notes, failure)) {
        return false;
    }
    out << "\n## " << section.name << "\n\n"
        << "- Routines: `Packet_" << section.suffix << "`, `Parse_" << section.suffix << "`\n"
        << "- Modes: " << ModesText(section) << "\n";
    if (section.HasRecord()) {
        out << "- Record: `" << section.record << "`, " << section.recordSize << " bytes\n";
    } else {
        out << "- Record: none (F5 text only)\n";
    }
    WriteNotes(notes, out);
    WriteKeys(facts, out);
    const Descriptor* descriptor = protofix::describe::FindDescriptor(section.record);
    if (descriptor != nullptr) {
        std::vector<const Descriptor*> records;
        CollectRecords(*descriptor, records);
        for (const Descriptor* record : records) WriteFields(*record, out);
    }
    return true;
}

// ---- JSON --------------------------------------------------------------------------------------

Json::Value Names(const std::set<std::string>& names) {
    Json::Value list(Json::arrayValue);
    for (const std::string& name : names) list.append(name);
    return list;
}

Json::Value Names(const std::vector<std::string>& names) {
    Json::Value list(Json::arrayValue);
    for (const std::string& name : names) list.append(name);
    return list;
}

Json::Value Fields(const std::vector<std::string>& names,
                   const std::function<std::uint64_t(const std::string&)>& bitsOf) {
    Json::Value list(Json::arrayValue);
    for (const std::string& name : names) {
        Json::Value field;
        field["field"] = name;
        const std::uint64_t bits = bitsOf(name);
        if (bits != 0) field["bits"] = static_cast<Json::UInt64>(bits);
        list.append(field);
    }
    return list;
}

Json::Value SectionJson(const Section& section, const SectionFacts& facts,
                        const SectionNotes& notes) {
    Json::Value entry;
    entry["name"] = section.name;
    entry["routines"]["packet"] = std::string("Packet_") + section.suffix;
    entry["routines"]["parse"] = std::string("Parse_") + section.suffix;
    entry["modes"] = ModesJson(section);
    if (section.HasRecord()) {
        entry["record"]["type"] = section.record;
        entry["record"]["size"] = static_cast<Json::UInt64>(section.recordSize);
    } else {
        entry["record"] = Json::Value();
    }
    entry["examples"] = Names(facts.sources);
    if (!facts.tableNotRead.empty()) entry["tableNotRead"] = facts.tableNotRead;
    entry["keys"] = Json::Value(Json::arrayValue);
    const std::map<std::string, std::uint64_t> filledBits = FilledBits(facts);
    static const KeyFacts kNone;
    for (const std::string& key : facts.keys) {
        const auto found = facts.byKey.find(key);
        const KeyFacts& kf = found != facts.byKey.end() ? found->second : kNone;
        Json::Value row;
        row["table"] = key;
        if (facts.f5Run) {
            row["f5Read"] = Names(kf.f5Read);
            row["f5Written"] = Names(kf.f5Written);
        }
        if (facts.recordRun) {
            const bool isFlag = facts.flags.count(key) != 0;
            row["fills"] = Fields(WholeNames(kf.fills, facts.parts), [&](const std::string& field) {
                return OwnBits(kf, isFlag, field, filledBits);
            });
            row["writtenFrom"] = Fields(WholeNames(kf.writtenFrom, facts.parts),
                                        [](const std::string&) { return std::uint64_t{0}; });
            if (kf.refused) row["refusedWhenChanged"] = true;
        }
        entry["keys"].append(row);
    }
    if (facts.f5Run) {
        entry["f5Unread"] = Names(facts.f5Unread);
        entry["f5MembersUnread"] = Names(facts.f5Members);
    }
    std::string text;
    for (const std::string& line : notes.notes) text += line + "\n";
    entry["notes"] = text;
    entry["lost"] = Json::Value(Json::arrayValue);
    for (const LostLine& line : notes.lost) {
        Json::Value item;
        if (line.field.empty()) {
            item["comment"] = line.text;
        } else {
            item["field"] = line.field;
            item["why"] = line.text;
        }
        entry["lost"].append(item);
    }
    return entry;
}

}  // namespace

bool WriteCatalog(const std::string& examplesDir, std::ostream& out, Failure& failure) {
    out << "# Section catalog\n\n"
           "Generated by `protofix sections --markdown` from the section table, the record\n"
           "descriptors and the examples; `make catalog` writes it again.\n\n"
           "Each section's keys are found by running the library on its examples, one value\n"
           "changed at a time; `[]` stands for every element of a list.\n\n"
           "- **F5 key**: the keys of the F5 text whose change changes the table key\n"
           "  (`serialize --f5`) and that change when it changes (`deserialize --f5`); one marked\n"
           "  \"serialize only\" or \"deserialize only\" goes one way only.\n"
           "- **Record field**: the fields that change when the key changes (`deserialize`), a\n"
           "  nested record named whole when all of it changes. A key that is true or false and\n"
           "  owns some bits of a field that other keys share shows its bits. When no field\n"
           "  changes, \"not read back\" names the fields the key is written from (`serialize`);\n"
           "  \"-\" means no field changes either way.\n\n"
           "What the examples do not exercise does not show there: the notes of a section say\n"
           "what its code does beyond them.\n\n"
           "| Section | Modes | Record | Bytes |\n|---|---|---|---|\n";
    for (const Section* s = SectionsBegin(); s != SectionsEnd(); ++s) {
        out << "| [" << s->name << "](#" << LowerCaseName(*s) << ") | " << ModesText(*s) << " | "
            << (s->HasRecord() ? std::string("`") + s->record + "`" : std::string("-")) << " | "
            << (s->HasRecord() ? std::to_string(s->recordSize) : std::string("-")) << " |\n";
    }
    for (const Section* s = SectionsBegin(); s != SectionsEnd(); ++s) {
        if (!WriteSection(*s, examplesDir, out, failure)) return false;
    }
    return true;
}

bool WriteSectionsJson(const std::string& examplesDir, std::ostream& out, Failure& failure) {
    Json::Value sections(Json::arrayValue);
    for (const Section* s = SectionsBegin(); s != SectionsEnd(); ++s) {
        SectionFacts facts;
        SectionNotes notes;
        if (!GatherFacts(*s, examplesDir, facts, failure) ||
            !ReadNotes(*s, examplesDir, notes, failure)) {
            return false;
        }
        sections.append(SectionJson(*s, facts, notes));
    }
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "  ";
    out << Json::writeString(builder, sections) << "\n";
    return true;
}

}  // namespace protofix::tool
