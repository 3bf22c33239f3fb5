// One request of the tool, with its inputs already read, and what it answers. The command line
// makes one job of its arguments; a batch makes one of each line.
#ifndef PROTOFIX_TOOL_JOB_H
#define PROTOFIX_TOOL_JOB_H

#include "inputs.h"

#include <protofix/info.h>

#include <json/json.h>

#include <cstddef>
#include <string>
#include <vector>

namespace protofix::tool {

enum class Command { kSerialize, kDeserialize, kRoundtrip, kView };

// An input of a job: its text, and the name messages give it (the file's path, "<stdin>", or
// "line 3 "table"" in a batch). Not given when the name is empty.
struct Source {
    std::string name;
    std::string text;
    const Json::Value* json = nullptr;  // the text already parsed, when the caller holds it
    bool Given() const { return !name.empty(); }
};

// The source's JSON: parsed from its text (with the location of an error), or copied from what
// the caller parsed already.
inline bool ParseSource(const Source& source, Json::Value& value, Failure& failure) {
    if (source.json == nullptr) return ParseJsonText(source.name, source.text, value, failure);
    value = *source.json;
    return true;
}

// F5 buffer capacity when none is given: this, or more to hold the F5 text and its NUL.
constexpr int kDefaultCapacity = 65536;

struct Job {
    Command command = Command::kSerialize;
    std::string section;
    Source input;    // the record (serialize, view) or the table (deserialize, roundtrip)
    Source f5;       // the device's F5 text: text mode when given
    Source base;     // the record deserialize starts from
    Source current;  // the device's current reply, read in sub-mode 1
    int channel = 0;
    unsigned int id = 0;
    int standard = PROTOFIX_STANDARD_PAL;
    int subMode = 0;
    int capacity = 0;                                // of the F5 buffer; 0: as the F5 text needs
    std::size_t largestCapacity = kDefaultMaxInput;  // what a buffer may take: the input limit
    bool hex = false;        // serialize: the record is given in hex; deserialize, view: print hex
    bool tableOnly = false;  // serialize: the table, not the envelope around it
    bool raw = false;        // time sections of a record view as their seven numbers
    bool pretty = false;     // indent the JSON printed
    bool addMember = false;  // a merge may add the section's member to an F5 text without one
    bool json = false;       // roundtrip: the losses as JSON
    bool print = true;       // make the text the command line prints (a batch does not)
    std::vector<std::string> without;  // view: top-level fields left out
    std::vector<std::string> given;    // the request options given: "--standard", ...

    bool TextMode() const { return f5.Given(); }
};

// What a job answers: the exit status, its output (when it converted), warnings and, when it did
// not convert, one line saying why.
struct Result {
    Status status = kConverted;
    // The output's name in a batch result ("envelope", "table", "record", "f5", "losses"), the
    // output as JSON, and as the command line prints it (ending in a newline).
    std::string outputName;
    Json::Value output;
    std::string printed;
    std::vector<std::string> warnings;
    std::string error;

    static Result Failed(Status status, std::string error) {
        Result result;
        result.status = status;
        result.error = std::move(error);
        return result;
    }
};

}  // namespace protofix::tool

#endif
