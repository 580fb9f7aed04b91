// The DIB headers of output/dib_layouts.tsv as blocks, and the rows of
// the data files, for the tests of the arithmetic and of the exports alike.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "support.h"

namespace dibtest {

// The row's number in field `i`, decimal or 0x hex ("-" reads as 0).
inline int64_t field(const std::vector<std::string>& row, std::size_t i) {
    return row.at(i) == "-" ? 0 : std::stoll(row.at(i), nullptr, 0);
}

inline void put(std::vector<uint8_t>& b, std::size_t at, uint32_t v, int bytes) {
    for (int i = 0; i < bytes; ++i) b[at + i] = static_cast<uint8_t>(v >> (8 * i));
}

// A poisoned block of `size` bytes (at least the header) holding the row's
// header: the 40-byte form for size 40, the 12-byte form's fields for any
// other size.
inline std::vector<uint8_t> block(const std::vector<std::string>& row, std::size_t size) {
    std::vector<uint8_t> b(std::max<std::size_t>(size, 40), vltest::kPoison);
    const auto f = [&](std::size_t i) { return static_cast<uint32_t>(field(row, i)); };
    put(b, 0, f(1), 4);
    if (f(1) == 40) {
        put(b, 4, f(4), 4), put(b, 8, f(5), 4), put(b, 12, 1, 2), put(b, 14, f(2), 2);
        put(b, 16, f(6), 4), put(b, 20, f(7), 4), put(b, 32, f(3), 4);
    } else {
        put(b, 4, f(4), 2), put(b, 6, f(5), 2), put(b, 8, 1, 2), put(b, 10, f(2), 2);
    }
    b.resize(size);
    return b;
}

// Calls `check` with every row of the data file `name` under output/,
// each row named in the failures it has.
template <typename Check>
void for_each_row(const std::string& name, Check check) {
    const vltest::DataTable table("output/" + name);
    ASSERT_GT(table.size(), 0u) << name;
    for (std::size_t i = 0; i < table.size(); ++i) {
        SCOPED_TRACE(vltest::row_label(name, i, table.row(i)));
        check(table.row(i));
    }
}

}  // namespace dibtest
