#include "section_table.h"

#include <describe/describe.h>
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

bool SameIgnoringCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return std::tolower(static_cast<unsigned char>(x)) ==
                      std::tolower(static_cast<unsigned char>(y));
           });
}

}  // namespace

const Section* SectionsBegin() { return std::begin(kSections); }
const Section* SectionsEnd() { return std::end(kSections); }

const Section* FindSection(std::string_view name) {
    for (const Section& section : kSections) {
        if (SameIgnoringCase(section.name, name)) return &section;
    }
    return nullptr;
}

std::string ModesText(const Section& section) {
    std::string text;
    if (section.AcceptsRecord()) text = "record";
    if (section.AcceptsText()) text += text.empty() ? "text" : ",text";
    return text.empty() ? "none" : text;
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

}  // namespace protofix::tool
