// The command line: the commands and their options, checked in the tool's words, and the job
// they make with its inputs read.
#ifndef PROTOFIX_TOOL_CLI_H
#define PROTOFIX_TOOL_CLI_H

#include "job.h"

#include <cstddef>
#include <string>

namespace protofix::tool {

// What the command line asks for.
struct Invocation {
    enum What { kHelp, kJob, kSections, kBatch } what = kJob;
    std::string help;  // kHelp: the text to print (help or version)
    Job job;           // kJob
    bool strict = false;
    // kSections
    bool markdown = false;
    bool json = false;
    bool catalog = false;  // --json with --examples: the catalog as JSON
    std::string examples = "examples";
    // kBatch
    std::string requests;  // a file, or "-" for standard input
    std::size_t maxInput = kDefaultMaxInput;
};

// Parses the arguments and reads the inputs they name into the job. False, with the failure's
// one line, for a usage or input error.
bool ParseCommandLine(int argc, char** argv, Invocation& invocation, Failure& failure);

}  // namespace protofix::tool

#endif
