#include "catalog_experiments.h"

#include "catalog_examples.h"
#include "catalog_leaves.h"
#include "catalog_library.h"

#include <describe/describe.h>

#include <algorithm>

namespace protofix::tool {
namespace {

using protofix::describe::Descriptor;

// The keys of the leaves, each once in the order met; those that hold true or false are flags.
void AddKeys(const std::vector<Leaf>& leaves, SectionFacts& facts) {
    for (const Leaf& leaf : leaves) {
        if (leaf.value.isBool()) facts.flags.insert(leaf.key);
        if (std::find(facts.keys.begin(), facts.keys.end(), leaf.key) == facts.keys.end()) {
            facts.keys.push_back(leaf.key);
        }
    }
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

}  // namespace

bool GatherFacts(const Section& section, const std::string& examplesDir, SectionFacts& facts,
                 Failure& failure) {
    const auto path = [&](const char* kind) {
        return ExamplePath(examplesDir, ExampleFile(section, kind));
    };
    std::string text;
    Json::Value table;
    if (!ReadJsonFile(path("table"), text, table, failure)) return false;
    facts.sources.push_back(ExampleFile(section, "table"));
    AddKeys(LeavesOf(table), facts);
    Alternatives alternatives;

    const Descriptor* descriptor = protofix::describe::FindDescriptor(section.record);
    const bool record =
        descriptor != nullptr && section.AcceptsRecord() && FileExists(path("record"));
    std::vector<Element> elements;
    Bases bases{Bytes(section.recordSize, 0), Bytes(section.recordSize, kPattern)};
    if (record) {
        CollectElements(*descriptor, 0, "", elements, facts.parts);
        Bytes example(section.recordSize, 0);
        if (!ReadRecord(path("record"), *descriptor, example, failure)) return false;
        if (FileExists(path("base")) &&
            (!ReadRecord(path("base"), *descriptor, bases.zero, failure) ||
             !ReadRecord(path("base"), *descriptor, bases.patterned, failure))) {
            return false;
        }
        facts.sources.push_back(ExampleFile(section, "record"));
        facts.recordRun = true;
        PacketExperiments(section, elements, example, alternatives, facts);
    }

    Json::Value f5Table;
    if (section.AcceptsText() && FileExists(path("f5"))) {
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

}  // namespace protofix::tool
