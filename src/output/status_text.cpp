// The status window's texts and bar arithmetic.

#include <algorithm>

#include "output/status.h"

namespace vl::output {

std::string host_status_line(std::string_view text) {
    std::string line = "ty -q ";
    line.append(text);
    if (line.size() > kHostLineRoom - 1) line.resize(kHostLineRoom - 1);
    return line;
}

std::string no_dialog_title(const char* title) { return std::string(title ? title : "") + "... Hit ESC to abort!"; }

int32_t bar_right_edge(int32_t left, int32_t right, uint16_t percent) noexcept {
    const int32_t counted = std::min<int32_t>(percent, 100);
    return static_cast<int32_t>(static_cast<double>(right - left) * counted * 0.01 + left);
}

}  // namespace vl::output
