// The string table natively: the same texts the DLL carries as resources,
// generated at build time from resources/strings.tsv.

#include <algorithm>
#include <cstring>
#include <string_view>

#include "platform/platform.h"

namespace vl::platform {
namespace {

struct StringEntry {
    uint32_t id;
    std::string_view text;
};

constexpr StringEntry kStrings[] = {
#include "string_table.inc"
};

}  // namespace

int32_t load_string(uint32_t id, std::span<char> out) noexcept {
    if (out.empty()) return 0;
    const auto* it =
        std::find_if(std::begin(kStrings), std::end(kStrings), [id](const StringEntry& e) { return e.id == id; });
    if (it == std::end(kStrings)) {
        out[0] = '\0';
        return 0;
    }
    const std::size_t n = std::min(it->text.size(), out.size() - 1);
    std::memcpy(out.data(), it->text.data(), n);
    out[n] = '\0';
    return static_cast<int32_t>(n);
}

}  // namespace vl::platform
