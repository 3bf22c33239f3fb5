// The sections the tool knows: sections.def expanded once, with each record's size.
#ifndef PROTOFIX_TOOL_SECTION_TABLE_H
#define PROTOFIX_TOOL_SECTION_TABLE_H

#include "inputs.h"

#include <protofix/info.h>

#include <json/json.h>

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace protofix::tool {

struct Section {
    const char* name;        // as the device spells it
    const char* suffix;      // of its routines: Packet_<suffix>, Parse_<suffix>
    const char* record;      // type name of the mode-0 record; "void" for a text-only section
    std::size_t recordSize;  // 0 for a text-only section
    unsigned modes;          // PROTOFIX_ACCEPTS_RECORD and/or PROTOFIX_ACCEPTS_TEXT

    bool HasRecord() const { return recordSize != 0; }
    bool AcceptsRecord() const { return (modes & PROTOFIX_ACCEPTS_RECORD) != 0; }
    bool AcceptsText() const { return (modes & PROTOFIX_ACCEPTS_TEXT) != 0; }
};

// The section of that name, compared without regard to ASCII case as the device does; null when
// the table has none.
const Section* FindSection(std::string_view name);

// The message for a name no section has, with the name it most likely means.
std::string UnknownSection(std::string_view name);

// Every section's name, in table order.
std::vector<std::string> SectionNames();

// The member of the device's F5 text that holds the section's values, as a path of member names
// ({"Alarm"}, {"Encode", "VideoColor"}); empty for a section without a text mode.
std::vector<std::string> F5MemberPath(const Section& section);

// The section's name in lower case ("network_dns"): the names of its example files begin with it,
// and its heading in the catalog has it for anchor.
std::string LowerCaseName(const Section& section);

// The file name of the section's example of that kind ("table", "f5", "base", "record"):
// "alarm.f5.json".
std::string ExampleFile(const Section& section, const char* kind);

// "record", "text" or "record,text".
std::string ModesText(const Section& section);
// The same as a JSON array: [], ["record"], ["text"] or ["record","text"].
Json::Value ModesJson(const Section& section);

// One line per section, in table order, under a heading: name, modes, record, size.
void ListSections(std::ostream& out);

// The same as JSON: an array of {"name","modes","record","size","routines"}.
void ListSectionsJson(std::ostream& out);

// Every section, in table order.
const Section* SectionsBegin();
const Section* SectionsEnd();

}  // namespace protofix::tool

#endif
