// The bundled examples' tables, F5 texts and base records, built into the tool: what a section's
// table and F5 text look like, for telling one input from another and for suggestions.
#ifndef PROTOFIX_TOOL_EXAMPLES_DATA_H
#define PROTOFIX_TOOL_EXAMPLES_DATA_H

#include <cstddef>
#include <string_view>

namespace protofix::tool {

struct EmbeddedExample {
    const char* file;  // "alarm.f5.json"
    const char* text;
};

// Generated at build time from examples/ (cmake/embed-examples.cmake).
extern const EmbeddedExample kEmbeddedExamples[];
extern const std::size_t kEmbeddedExampleCount;

// The text of the example file of that name; empty when there is none.
std::string_view EmbeddedExampleText(std::string_view file);

}  // namespace protofix::tool

#endif
