// Layout tests: a record's fixed positions as a table, checked in one loop.
#ifndef PROTOFIX_TESTS_LAYOUT_SUPPORT_H
#define PROTOFIX_TESTS_LAYOUT_SUPPORT_H

#include <gtest/gtest.h>

#include <cstddef>

namespace layout {

struct Position {
    const char* field;
    std::size_t actual;
    std::size_t expected;
};

template <std::size_t N>
void ExpectPositions(const Position (&positions)[N]) {
    for (const Position& p : positions) EXPECT_EQ(p.actual, p.expected) << p.field;
}

}  // namespace layout

#define AT(Record, field, offset) \
    layout::Position { #Record "." #field, offsetof(Record, field), offset }
#define SIZE(Record, bytes) \
    layout::Position { "sizeof " #Record, sizeof(Record), bytes }

#endif
