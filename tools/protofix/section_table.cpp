#include "section_table.h"

#include "names.h"

#include <describe/describe.h>

#include <json/json.h>
#include <protofix/protofix.h>

#include <algorithm>
#include <cctype>
#include <iomanip>
#include <iterator>
#include <string>

namespace protofix::tool {
namespace {

constexpr Section kSections[] = {
#define PROTOFIX_SECTION(name, suffix, record, modes) \
    {name, #suffix, #record, protofix::describe::kRecordSize<record>, (modes)},
#include <protofix/sections.def>
};

// The text-mode sections whose values live under a member not named like the section.
struct F5Member {
    const char* section;
    const char* member;
    const char* inner;  // a member of member, or null
};

constexpr F5Member kOtherF5Members[] = {
    {"VideoColor", "Encode", "VideoColor"}, {"VideoWaterMark", "WaterMark", nullptr},
    {"VideoWidget", "Encode", nullptr},     {"RecordSource", "Record", nullptr},
    {"RemoteStorageLimit", "NAS", nullptr},
};

}  // namespace

const Section* SectionsBegin() { return std::begin(kSections); }
const Section* SectionsEnd() { return std::end(kSections); }

const Section* FindSection(std::string_view name) {
    for (const Section& section : kSections) {
        if (SameIgnoringCase(section.name, name)) return &section;
    }
    return nullptr;
}

std::string UnknownSection(std::string_view name) {
    return "unknown section \"" + std::string(name) + "\"" + DidYouMean(name, SectionNames()) +
           "; 'protofix sections' lists them";
}

std::vector<std::string> SectionNames() {
    std::vector<std::string> names;
    for (const Section& section : kSections) names.emplace_back(section.name);
    return names;
}

std::vector<std::string> F5MemberPath(const Section& section) {
    if (!section.AcceptsText()) return {};
    for (const F5Member& member : kOtherF5Members) {
        if (std::string_view(member.section) != section.name) continue;
        std::vector<std::string> path{member.member};
        if (member.inner != nullptr) path.emplace_back(member.inner);
        return path;
    }
    return {section.name};
}

std::string LowerCaseName(const Section& section) {
    std::string lower = section.name;
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

std::string ExampleFile(const Section& section, const char* kind) {
    return LowerCaseName(section) + "." + kind + ".json";
}

std::string ModesText(const Section& section) {
    std::string text;
    if (section.AcceptsRecord()) text = "record";
    if (section.AcceptsText()) text += text.empty() ? "text" : ",text";
    return text.empty() ? "none" : text;
}

Json::Value ModesJson(const Section& section) {
    Json::Value modes(Json::arrayValue);
    if (section.AcceptsRecord()) modes.append("record");
    if (section.AcceptsText()) modes.append("text");
    return modes;
}

void ListSections(std::ostream& out) {
    const std::string kHeading[] = {"SECTION", "MODES", "RECORD", "SIZE"};
    std::size_t nameWidth = kHeading[0].size();
    std::size_t modesWidth = kHeading[1].size();
    std::size_t recordWidth = kHeading[2].size();
    for (const Section& section : kSections) {
        nameWidth = std::max(nameWidth, std::string_view(section.name).size());
        modesWidth = std::max(modesWidth, ModesText(section).size());
        recordWidth = std::max(recordWidth, std::string_view(section.record).size());
    }
    const auto line = [&](const std::string& name, const std::string& modes,
                          const std::string& record, const std::string& size) {
        out << std::left << std::setw(static_cast<int>(nameWidth)) << name << "  "
            << std::setw(static_cast<int>(modesWidth)) << modes << "  "
            << std::setw(static_cast<int>(recordWidth)) << record << "  " << size << '\n';
    };
    line(kHeading[0], kHeading[1], kHeading[2], kHeading[3]);
    for (const Section& section : kSections) {
        // A text-only section has no record: its type and size show as "-".
        line(section.name, ModesText(section), section.HasRecord() ? section.record : "-",
             section.HasRecord() ? std::to_string(section.recordSize) : "-");
    }
}

void ListSectionsJson(std::ostream& out) {
    Json::Value list(Json::arrayValue);
    for (const Section& section : kSections) {
        Json::Value entry;
        entry["name"] = section.name;
        entry["modes"] = ModesJson(section);
        entry["record"] = section.HasRecord() ? Json::Value(section.record) : Json::Value();
        entry["size"] = Json::Value(static_cast<Json::UInt64>(section.recordSize));
        entry["routines"] = Json::Value(Json::arrayValue);
        entry["routines"].append(std::string("Packet_") + section.suffix);
        entry["routines"].append(std::string("Parse_") + section.suffix);
        list.append(entry);
    }
    out << Json::FastWriter().write(list);
}

}  // namespace protofix::tool
