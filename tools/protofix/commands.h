// The tool's conversions: a record or an F5 text to the request envelope (serialize), a table to a
// record or merged into an F5 text (deserialize), and the loss report of a table's round trip
// (roundtrip), each through CReqConfigProtocolFix.
#ifndef PROTOFIX_TOOL_COMMANDS_H
#define PROTOFIX_TOOL_COMMANDS_H

#include "inputs.h"

#include <ostream>
#include <string>
#include <vector>

namespace protofix::tool {

// F5 buffer capacity when --capacity is not given (raised to hold a longer F5 text and its NUL).
constexpr int kDefaultCapacity = 65536;

struct Options {
    std::string section;
    std::string input = kStandardInput;  // RECORD (serialize) or TABLE (deserialize, roundtrip)
    std::string f5;                      // --f5 OLD: text mode when not empty
    std::string base;                    // --base RECORD: the record deserialize starts from
    std::string current;                 // --current REPLY: the device's current reply
    int channel = 0;
    unsigned int id = 0;
    int standard = 0;  // PROTOFIX_STANDARD_PAL or PROTOFIX_STANDARD_NTSC
    int subMode = 0;
    int capacity = 0;                  // 0: not given
    std::size_t maxInput = kDefaultMaxInput;  // the largest input read
    bool hex = false;                  // serialize: RECORD is hex; deserialize: print hex
    bool pretty = false;               // indent the JSON printed
    bool tableOnly = false;            // serialize: print the table, not the whole envelope
    std::vector<std::string> without;  // view: top-level fields left out of the view
    bool raw = false;                  // time sections of the view as their seven numbers
    std::vector<std::string> given;    // the request options given: "--standard", ...
};

// What a command found worth saying besides its output: one line each, printed on standard error
// as warnings; --strict turns any of them into exit status 1.
using Warnings = std::vector<std::string>;

// Each writes its result on out and answers the exit status; when that is not kConverted,
// failure.message says why in one line. Serialize writes the envelope whenever the library gave
// one, so also when the section refused.
Status Serialize(const Options& options, std::ostream& out, Failure& failure, Warnings& warnings);
Status Deserialize(const Options& options, std::ostream& out, Failure& failure, Warnings& warnings);
// Lists, one line each, what of the table does not come back from the record (or the F5 text):
// kConverted when nothing is lost, kRefused when something is.
Status Roundtrip(const Options& options, std::ostream& out, Failure& failure, Warnings& warnings);
// Prints a record (its named-field view or its hex bytes) as the view, or as hex with --hex:
// no conversion runs.
Status View(const Options& options, std::ostream& out, Failure& failure);

}  // namespace protofix::tool

#endif
