// The section catalog: in Markdown (docs/sections.md), and as JSON for a program to read. Every
// section with its routines, modes and record, and what each key of its example table goes with in
// the F5 text and in the record. Those are found by running the library on the examples, one value
// changed at a time, and never written down by hand, so the catalog cannot drift from the code.
// What a section's code does that no example shows is in examples/<section>.notes, and what its
// round trip loses in examples/<section>.lost; both are printed as they stand.
#ifndef PROTOFIX_TOOL_CATALOG_H
#define PROTOFIX_TOOL_CATALOG_H

#include "inputs.h"

#include <ostream>
#include <string>

namespace protofix::tool {

// Per section its routines, modes, record type and size, the fields of its record and the keys
// of its example table, read from examplesDir.
bool WriteCatalog(const std::string& examplesDir, std::ostream& out, Failure& failure);

// Every section as one element of a JSON array: name, routines, modes, record type and size, and
// per key of its example table the F5 keys and the record fields it goes with, found by running
// the library on the examples in examplesDir; then the section's notes and what its round trip
// loses. False, with failure saying which example did not read, when one is missing or invalid.
bool WriteSectionsJson(const std::string& examplesDir, std::ostream& out, Failure& failure);

}  // namespace protofix::tool

#endif
