// Records as the tool reads and prints them: the named-field view of a section's record, or its
// raw bytes in hex.
#ifndef PROTOFIX_TOOL_RECORDS_H
#define PROTOFIX_TOOL_RECORDS_H

#include "job.h"
#include "library.h"
#include "section_table.h"

#include <describe/describe.h>

#include <string>
#include <vector>

namespace protofix::tool {

// The descriptor that gives the section's record its named-field view; null, with failure saying
// that only hex can carry this record, when there is none.
const describe::Descriptor* ViewOf(const Section& section, Failure& failure);

// Applies the record given to the bytes, which hold the section's record size: its raw bytes in
// hex when hexOnly is set or the text starts with a hex digit, else its named-field view.
bool ApplyRecord(const Section& section, const Source& source, bool hexOnly, Bytes& record,
                 Failure& failure);

// The record's named-field view, without the top-level fields named in without.
Json::Value RecordView(const Section& section, const Bytes& record, bool raw,
                       const std::vector<std::string>& without = {});

// The record as the command line prints it: hex bytes, or the view (compact or indented).
std::string PrintedRecord(const Section& section, const Bytes& record, const Job& job);

}  // namespace protofix::tool

#endif
