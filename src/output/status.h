// The status window's texts and bar arithmetic, apart from the dialog, so
// they are tested without a window system.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vl::output {

// The line status_to_host sends: "ty -q " and the text, cut to the 119
// characters that its buffer of 120 holds.
constexpr std::size_t kHostLineRoom = 120;
std::string host_status_line(std::string_view text);

// The title of the no-dialog road: "TITLE... Hit ESC to abort!".
std::string no_dialog_title(const char* title);

// The right edge of the bar inside [left, right) for `percent` (16 bits);
// above 100 counts as 100.
int32_t bar_right_edge(int32_t left, int32_t right, uint16_t percent) noexcept;

}  // namespace vl::output
