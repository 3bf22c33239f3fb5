// The F5 text merge of the overlay sections, on a buffer of exactly its capacity on the heap.
#ifndef PROTOFIX_TESTS_OVERLAY_SUPPORT_H
#define PROTOFIX_TESTS_OVERLAY_SUPPORT_H

#include "request_support.h"

#include <algorithm>
#include <string>
#include <vector>

namespace overlay_support {

struct Merged {
    int result;
    std::string text;  // the buffer up to its NUL, never past its capacity
    bool unchanged;    // every byte of the buffer as it was
};

// Merges the table into the F5 text held in a buffer of capacity bytes (0: the text's length
// plus a generous margin).
inline Merged MergeF5(const char* section, const std::string& f5, const std::string& table,
                      std::size_t capacity = 0) {
    std::vector<char> buffer(capacity != 0 ? capacity : f5.size() + 512, '#');
    std::copy_n(f5.begin(), std::min(f5.size(), buffer.size()), buffer.begin());
    if (f5.size() < buffer.size()) buffer[f5.size()] = '\0';
    const std::vector<char> before = buffer;
    const int result = support::Parse(section, table, buffer.data(),
                                      static_cast<int>(buffer.size()), PROTOFIX_MODE_TEXT);
    return {result, std::string(buffer.data(), strnlen(buffer.data(), buffer.size())),
            buffer == before};
}

using support::Written;

// The write-back rule, for a table that merged into f5 gives merged: a text that does not parse,
// an empty one, or a merged text longer than the capacity is refused (-1) with the buffer as it
// was; a text exactly as long as the capacity loses its last character (the writer's newline);
// a capacity two longer holds the text and its NUL.
inline void ExpectCapacityRule(const char* section, const std::string& f5, const std::string& table,
                               const std::string& merged) {
    struct Case {
        std::string f5;
        std::size_t capacity;
        int result;
    };
    const Case cases[] = {
        {"{", 64, -1},
        {"", 64, -1},
        {f5, merged.size() - 1, -1},
        {f5, merged.size(), 1},
        {f5, merged.size() + 2, 1},
    };
    for (const Case& c : cases) {
        const Merged m = MergeF5(section, c.f5, table, c.capacity);
        EXPECT_EQ(m.result, c.result) << section << ' ' << c.f5 << " capacity " << c.capacity;
        EXPECT_EQ(m.unchanged, c.result == -1)
            << section << ' ' << c.f5 << " capacity " << c.capacity;
        if (c.result == 1) {
            EXPECT_EQ(m.text, merged.substr(0, c.capacity - 1))
                << section << " capacity " << c.capacity;
        }
    }
}

}  // namespace overlay_support

#endif
