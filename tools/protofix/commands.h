// The tool's commands on one job: serialize (a record or an F5 text to the request envelope),
// deserialize (a table to a record, or merged into an F5 text), roundtrip (what a table, or an F5
// text, loses through the section) and view (a record's named fields), each through
// CReqConfigProtocolFix.
#ifndef PROTOFIX_TOOL_COMMANDS_H
#define PROTOFIX_TOOL_COMMANDS_H

#include "job.h"
#include "schema.h"

namespace protofix::tool {

// Runs the job. Nothing is printed: the result holds the output, the warnings and, when the job
// did not convert, the one line that says why. The library's exceptions are answered here; only
// an allocation failure passes.
Result RunJob(const Job& job, Knowledge& knowledge);

}  // namespace protofix::tool

#endif
