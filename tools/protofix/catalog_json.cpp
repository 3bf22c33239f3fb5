// The section catalog as JSON, for a program to read: the facts and the notes of every section.
#include "catalog.h"

#include "catalog_experiments.h"
#include "catalog_facts.h"
#include "catalog_notes.h"
#include "section_table.h"

#include <json/json.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace protofix::tool {
namespace {

template <class Container>
Json::Value Names(const Container& names) {
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
    for (const std::string& key : facts.keys) {
        const KeyFacts& kf = FactsOf(facts, key);
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
