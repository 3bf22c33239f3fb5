// Why a conversion did not give what was asked, in terms a support engineer can act on: what an
// input that the section did not read looks like, which value raised the library's exception,
// and the reason for a refusal that the tool can see.
#ifndef PROTOFIX_TOOL_DIAGNOSIS_H
#define PROTOFIX_TOOL_DIAGNOSIS_H

#include "job.h"
#include "losses.h"
#include "schema.h"
#include "section_table.h"

#include <json/json.h>

#include <functional>
#include <optional>
#include <string>

namespace protofix::tool {

// The envelope that serialize prints: {"params":{"table":...},"result":...,...}.
bool IsEnvelope(const Json::Value& value);

// The part an input was given for: a table, a record or an F5 text.
enum class Role { kTable, kRecord, kF5 };

// What a JSON input looks like when the section read none of it: "a record of section Alarm in
// the named-field form (serialize reads it)", "the F5 text of section Alarm (--f5 takes it)",
// "the table of section Network", "a request envelope"; the hint in brackets only where the
// input was given for another part. Empty when it looks like none.
std::string DescribeInput(const Json::Value& input, const Section& wanted, Role role,
                          Knowledge& knowledge);

// The section's member of an F5 text (null when the text has none), and a member of the text
// that is the section's spelt otherwise ("alarm" for "Alarm"; empty when none is).
const Json::Value* F5Member(const Json::Value& document, const Section& section);
std::string MisspeltF5Member(const Json::Value& document, const Section& section);

// The value of the input that makes the conversion throw: the first leaf whose absence lets
// throws(input without it) answer false. A few runs of throws (one per halving of the leaves),
// then one to confirm; none when no single value is to blame. With the section's example, the
// search first leaves out the members the section does not have, when the input still throws
// without them: the runs then cost what the section's own keys cost.
std::optional<Path> FindCulprit(const Json::Value& input,
                                const std::function<bool(const Json::Value&)>& throws,
                                const Schema* example = nullptr);

// The message of a value of the wrong JSON kind: "NAME: a value of the wrong JSON kind for
// section X at PATH (a number was expected)"; what was expected is the kind the section's example
// holds there.
std::string WrongKind(const std::string& name, const Section& section,
                      const std::optional<Path>& at, const Schema& example);

// A reason for the section's refusal that the tool can tell from the job and the table (null
// when it is not a table); empty when it knows none.
std::string RefusalReason(const Section& section, const Job& job, const Json::Value* table);

// A copy of the value without what the paths name: a member is removed, an array element becomes
// null (so the elements after it keep their places).
Json::Value Without(const Json::Value& value, const std::vector<Path>& paths);

}  // namespace protofix::tool

#endif
