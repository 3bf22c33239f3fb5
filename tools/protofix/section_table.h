// The sections the tool knows: sections.def expanded once, with each record's size.
#ifndef PROTOFIX_TOOL_SECTION_TABLE_H
#define PROTOFIX_TOOL_SECTION_TABLE_H

#include "inputs.h"

#include <protofix/info.h>

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>

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

// "record", "text" or "record,text".
std::string ModesText(const Section& section);

// One line per section, in table order, under a heading: name, modes, record, size.
void ListSections(std::ostream& out);

// Every section, in table order.
const Section* SectionsBegin();
const Section* SectionsEnd();

// The section catalog in Markdown: per section its routines, modes, record type and size, the
// fields of its record and the keys of its example table, read from examplesDir.
bool WriteCatalog(const std::string& examplesDir, std::ostream& out, Failure& failure);

}  // namespace protofix::tool

#endif
