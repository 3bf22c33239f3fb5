// The section catalog in Markdown (docs/sections.md): the list of the sections, then per section
// its routines, modes and record, its notes, the table of its keys and the fields of its records.
#include "catalog.h"

#include "catalog_experiments.h"
#include "catalog_facts.h"
#include "catalog_notes.h"
#include "section_table.h"

#include <describe/describe.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace protofix::tool {
namespace {

using protofix::describe::Descriptor;
using protofix::describe::Field;
using protofix::describe::Kind;

std::string Code(const std::string& text) { return "`" + text + "`"; }

// A key as the catalog shows it; "(table)" for a table that is a single value.
std::string KeyName(const std::string& key) { return key.empty() ? "(table)" : key; }

std::string Hex(std::uint64_t bits) {
    std::ostringstream out;
    out << "0x" << std::hex << bits;
    return out.str();
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
    for (const std::string& key : facts.keys) {
        const KeyFacts& kf = FactsOf(facts, key);
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

}  // namespace protofix::tool
