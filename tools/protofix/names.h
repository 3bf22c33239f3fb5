// Names compared as a person types them: without regard to case, or one letter off.
#ifndef PROTOFIX_TOOL_NAMES_H
#define PROTOFIX_TOOL_NAMES_H

#include <string>
#include <string_view>
#include <vector>

namespace protofix::tool {

// Equal without regard to ASCII case, as the device compares section names.
bool SameIgnoringCase(std::string_view a, std::string_view b);

// The candidate a mistyped name most likely means: one equal to it without regard to case, else
// the nearest within one edit (a letter added, dropped, changed or two swapped) for a name of up
// to four letters and two edits for a longer one, ignoring case. Empty when none is that near or
// two are equally near.
std::string Suggest(std::string_view name, const std::vector<std::string>& candidates);

// " (did you mean "X"?)" for the suggestion of Suggest, or "" when there is none.
std::string DidYouMean(std::string_view name, const std::vector<std::string>& candidates);

}  // namespace protofix::tool

#endif
