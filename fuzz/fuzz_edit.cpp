// The in-place edits on arbitrary text.

#include <vector>

#include "fuzz_support.h"
#include "vlcore.h"

using namespace vlfuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    const uint32_t mode = data[0] & 1u;
    const int32_t count = static_cast<int8_t>(data[1]) % 64;
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 2, size - 2);
    {
        Text t(bytes);
        const char* inside = KELUTIL_str_inside(t.data(), mode);
        require(inside >= t.data() && inside <= t.data() + t.size());
    }
    {
        Text t(bytes);
        KELUTIL_strip(t.data());
        require(std::strlen(t.data()) <= t.size());
    }
    {
        // Room for the prepended characters in front of at most 119 kept.
        Text t(bytes, count > 0 ? static_cast<std::size_t>(count) : 0);
        require(KELUTIL_prepend_string(t.data(), data[0], count) == 0);
    }
    {
        Text t(bytes);
        const int32_t n = KELUTIL_str2ascii(t.data());
        require(n >= 0 && static_cast<std::size_t>(n) <= t.size() && t.data()[n] == '\0');
    }
    {
        Text t(bytes);
        Text stem(bytes);
        const int32_t n = KELUTIL_End_Number(stem.data(), t.data());
        require(n >= 0 && n <= 999);
    }
    {
        Text t(bytes);
        const int32_t max = data[1] % 8;
        std::vector<char*> slots(static_cast<std::size_t>(max) + 1);
        const int32_t n = KELUTIL_GetParsedArguments(t.data(), slots.data(), max, mode);
        require(n >= 0 && n <= max + 1);
        for (int32_t i = 0; i < n; ++i) require(slots[i] >= t.data() && slots[i] <= t.data() + t.size());
    }
    return 0;
}
