// The tool's conversions: a record or an F5 text to the request envelope (serialize), and a table
// to a record or merged into an F5 text (deserialize), each through CReqConfigProtocolFix.
#ifndef PROTOFIX_TOOL_COMMANDS_H
#define PROTOFIX_TOOL_COMMANDS_H

#include "inputs.h"

#include <ostream>
#include <string>

namespace protofix::tool {

// F5 buffer capacity when --capacity is not given (raised to hold a longer F5 text and its NUL).
constexpr int kDefaultCapacity = 65536;

struct Options {
    std::string section;
    std::string input = kStandardInput;  // RECORD (serialize) or TABLE (deserialize)
    std::string f5;                      // --f5 OLD: text mode when not empty
    std::string base;                    // --base RECORD: the record deserialize starts from
    std::string current;                 // --current REPLY: the device's current reply
    int channel = 0;
    unsigned int id = 0;
    int standard = 0;                    // PROTOFIX_STANDARD_PAL or PROTOFIX_STANDARD_NTSC
    int subMode = 0;
    int capacity = 0;                    // 0: not given
    bool hex = false;                    // serialize: RECORD is hex; deserialize: print hex
};

// Each writes its result on out and answers the exit status; when that is not kConverted,
// failure.message says why in one line. Serialize writes the envelope whenever the library gave
// one, so also when the section refused.
Status Serialize(const Options& options, std::ostream& out, Failure& failure);
Status Deserialize(const Options& options, std::ostream& out, Failure& failure);

}  // namespace protofix::tool

#endif
