// The DIB headers of output/dib_layouts.tsv as blocks, for the tests of
// the arithmetic and of the exports alike.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "support.h"

namespace dibtest {

inline void put(std::vector<uint8_t>& b, std::size_t at, uint32_t v, int bytes) {
    for (int i = 0; i < bytes; ++i) b[at + i] = static_cast<uint8_t>(v >> (8 * i));
}

// A poisoned block of `size` bytes (at least the header) holding the row's
// header: the 40-byte form for size 40, the 12-byte form's fields for any
// other size.
inline std::vector<uint8_t> block(const vltest::DataRow& row, std::size_t size) {
    std::vector<uint8_t> b(std::max<std::size_t>(size, 40), vltest::kPoison);
    const auto f = [&](std::size_t i) { return static_cast<uint32_t>(row.n(i)); };
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

}  // namespace dibtest
