// The F5 text merge of the text-mode sections, on a buffer of exactly its capacity on the heap.
#ifndef PROTOFIX_TESTS_OVERLAY_SUPPORT_H
#define PROTOFIX_TESTS_OVERLAY_SUPPORT_H

#include "request_support.h"

#include <string>
#include <vector>

namespace overlay_support {

struct Merged {
    int result;
    std::string text;  // the buffer up to its NUL, never past its capacity
    bool unchanged;    // every byte of the buffer as it was
};

// Merges the table into the F5 text held in a buffer of capacity bytes (0: a generous margin).
inline Merged MergeF5(const char* section, const std::string& f5, const std::string& table,
                      std::size_t capacity = 0) {
    support::F5Buffer buffer(f5, capacity != 0 ? capacity : f5.size() + 512);
    const std::vector<char> before = buffer.bytes;
    const int result = buffer.Merge(section, table);
    return {result, buffer.Text(), buffer.bytes == before};
}

using support::Written;

// The write-back rule, for a table that merged into f5 gives merged: a text that does not parse,
// an empty one, or a merged text longer than the capacity is refused (-1) with the buffer as it
// was; a text exactly as long as the capacity loses its last character (the writer's newline,
// and no terminator need follow);
// a capacity two longer holds the text and its NUL.
inline void ExpectCapacityRule(const char* section, const std::string& f5, const std::string& table,
                               const std::string& merged) {
    const std::pair<std::string, std::size_t> cases[] = {
        {"{", 64}, {"", 64}, {f5, merged.size() - 1}, {f5, merged.size()}, {f5, merged.size() + 2}};
    for (const auto& [text, capacity] : cases) {
        SCOPED_TRACE(std::string(section) + " " + text + " capacity " + std::to_string(capacity));
        const bool fits = !text.empty() && text != "{" && capacity >= merged.size();
        const Merged m = MergeF5(section, text, table, capacity);
        EXPECT_EQ(m.result, fits ? 1 : -1);
        EXPECT_EQ(m.unchanged, !fits);
        if (fits) {
            EXPECT_EQ(m.text.substr(0, capacity - 1), merged.substr(0, capacity - 1));
        }
    }
}

}  // namespace overlay_support

#endif
