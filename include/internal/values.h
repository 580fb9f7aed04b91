// The two reserved doubles shared by all numeric and date text.  Both are
// compared with exact equality, so their bit patterns are part of the
// interface and are pinned here at compile time.
#pragma once

#include <bit>
#include <cstdint>

namespace vl {

inline constexpr double MISSING_VALUE = -1.23456789e-300;
inline constexpr double DIV_ZERO_VALUE = 1.23456789e290;

static_assert(std::bit_cast<uint64_t>(MISSING_VALUE) == 0x81AA74FE1C132C0Eull);
static_assert(std::bit_cast<uint64_t>(DIV_ZERO_VALUE) == 0x7C29562E7A40495Full);

// White space of the library's texts: space, tab, line feed, carriage return.
constexpr bool is_space(char c) noexcept { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
constexpr bool is_digit(char c) noexcept { return c >= '0' && c <= '9'; }

}  // namespace vl
