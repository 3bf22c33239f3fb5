// The section catalog in Markdown (docs/sections.md).
#ifndef PROTOFIX_TOOL_CATALOG_H
#define PROTOFIX_TOOL_CATALOG_H

#include "inputs.h"

#include <ostream>
#include <string>

namespace protofix::tool {

// Per section its routines, modes, record type and size, the fields of its record and the keys
// of its example table, read from examplesDir.
bool WriteCatalog(const std::string& examplesDir, std::ostream& out, Failure& failure);

}  // namespace protofix::tool

#endif
