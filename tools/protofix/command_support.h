// What the commands share: the refusals every section explains alike, the warnings of options
// that made no difference, and the F5 text that lacks the section's member.
#ifndef PROTOFIX_TOOL_COMMAND_SUPPORT_H
#define PROTOFIX_TOOL_COMMAND_SUPPORT_H

#include "job.h"
#include "library.h"
#include "losses.h"
#include "schema.h"
#include "section_table.h"

#include <functional>
#include <initializer_list>
#include <string>

namespace protofix::tool {

inline Result Failed(const Failure& failure) {
    return Result::Failed(failure.status, failure.message);
}

// The refusal that the section's accepted modes explain; empty when they explain none.
std::string ModeRefusal(const Job& job, const Section& section);

// A section's refusal of its input: what refused, and the reason the tool can see.
Result Refused(const Job& job, const Section& section, const std::string& what,
               const Json::Value* table);

// The request options given that change nothing: sameAs(converter without the option) is true.
void WarnUnusedOptions(const Job& job, const Section& section, const Converter& converter,
                       std::initializer_list<const char*> candidates,
                       const std::function<bool(const Converter&)>& sameAs,
                       std::vector<std::string>& warnings);

// An F5 text without the section's member: what follows from it ("section X reads nothing of
// it", "the merge would add one"), then what the text is.
Result NoMember(const Source& f5, const Section& section, const Json::Value& document,
                const std::string& consequence, Knowledge& knowledge);

// The F5 buffer's capacity for the job: --capacity, or the default or more to hold the text and its
// NUL. False, with why, when --capacity does not hold the text.
bool BufferCapacity(const Job& job, std::size_t& capacity, Result& failure);

// The loss report of roundtrip: one line (or, with --json, one element) per loss, its kind said
// by label(i) ("not read by the section", ...) when it is not a change; exit 1 when anything is
// lost, with what says of what and through what ("values do not survive ...").
struct LossReport {
    std::string nothingLost;                        // the line when nothing is lost
    std::function<std::string(std::size_t)> label;  // the text of an absent value's loss
    std::function<std::string(std::size_t)> kind;   // its "loss" member in JSON
    std::function<std::string(std::size_t)> error;  // the message for so many losses
};
void ReportLosses(const Job& job, const std::vector<Loss>& losses, const LossReport& report,
                  Result& result);

// Deserialize and roundtrip of a table; roundtrip of an F5 text alone when no table is given.
Result DeserializeJob(const Job& job, const Section& section, Knowledge& knowledge);
Result RoundtripTableJob(const Job& job, const Section& section, Knowledge& knowledge);
Result RoundtripJob(const Job& job, const Section& section, Knowledge& knowledge);

}  // namespace protofix::tool

#endif
