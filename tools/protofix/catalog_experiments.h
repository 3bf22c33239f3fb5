// The experiments that find what each key of a section's example table goes with: the library run
// on the section's examples, one value changed at a time. Serialize of the record and of the F5
// text come first, and their outputs give the values that deserialize then tries.
#ifndef PROTOFIX_TOOL_CATALOG_EXPERIMENTS_H
#define PROTOFIX_TOOL_CATALOG_EXPERIMENTS_H

#include "catalog_facts.h"
#include "inputs.h"
#include "section_table.h"

#include <string>

namespace protofix::tool {

// The facts of the section, from its examples in examplesDir: its table, and its record and its
// F5 text when it has them. False, with failure saying which, when one does not read.
bool GatherFacts(const Section& section, const std::string& examplesDir, SectionFacts& facts,
                 Failure& failure);

}  // namespace protofix::tool

#endif
