// The notes of a section, printed in the catalog as they stand: what the section's code does that
// no example shows (examples/<section>.notes, Markdown), and what its round trip through the
// record loses (examples/<section>.lost, a line "field: why" per field, "# ..." a comment).
#ifndef PROTOFIX_TOOL_CATALOG_NOTES_H
#define PROTOFIX_TOOL_CATALOG_NOTES_H

#include "inputs.h"
#include "section_table.h"

#include <string>
#include <vector>

namespace protofix::tool {

// A line of a .lost file: "field: why", or a comment ("# ...") about the lines after it; the
// comment lines one after another (blank lines between them aside) are one comment.
struct LostLine {
    std::string field;  // "" for a comment
    std::string text;
};

// The section's notes and the lines of its .lost file.
struct SectionNotes {
    std::string notesFile;           // "" when the section has none
    std::vector<std::string> notes;  // its lines, Markdown, the blank ones at its end dropped
    std::string lostFile;
    std::vector<LostLine> lost;
};

// Those of the section that the examples directory holds; none when it holds no such file. False,
// with failure saying which, when one does not read or a .lost line is neither a field nor a
// comment.
bool ReadNotes(const Section& section, const std::string& examplesDir, SectionNotes& notes,
               Failure& failure);

}  // namespace protofix::tool

#endif
