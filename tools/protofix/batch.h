// A fleet in one run: JSON Lines of requests in, one result line per request out, in order.
#ifndef PROTOFIX_TOOL_BATCH_H
#define PROTOFIX_TOOL_BATCH_H

#include "job.h"
#include "schema.h"

#include <cstddef>
#include <istream>
#include <ostream>
#include <string>

namespace protofix::tool {

// The result line of one request line (1-based number), without its newline: {"line":N,
// "exit":S, the output ("envelope", "table", "record", "f5" or "losses") when there is one,
// "warnings":[...] and "error" when it did not convert}. Answers the line's exit status. The
// input limit bounds a request's "capacity".
int BatchLine(const std::string& line, std::size_t number, std::size_t maxInput,
              Knowledge& knowledge, std::string& result);

// Reads the requests (a file, or "-" for standard input) and writes a result line for each,
// flushed as it is written; a blank line is passed over, a line longer than maxLine is an error
// result. Shows progress on progress when it is a terminal and the batch is long. Answers the
// highest exit status of its lines, or 2 when the requests cannot be read.
int RunBatch(const std::string& requests, std::size_t maxLine, std::ostream& out,
             std::ostream& progress);

}  // namespace protofix::tool

#endif
