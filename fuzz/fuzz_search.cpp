// Character, text and name searches on arbitrary text and flags.

#include "fuzz_support.h"
#include "text/text.h"
#include "vlcore.h"

using namespace vlfuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    if (size < 4) return 0;
    const auto ch = static_cast<int32_t>(static_cast<int16_t>(data[0] | data[1] << 8));
    const uint32_t flags = data[2];
    const uint32_t sis_flags = (data[3] & 1u ? 32768u : 0u) | (data[3] & 2u ? 16384u : 0u);
    std::string_view in(reinterpret_cast<const char*>(data) + 4, size - 4);
    Text text(take_text(in));
    Text needle(take_text(in));
    const char* end = text.data() + text.size();

    if (const char* hit = KELUTIL_strchr(text.data(), ch, flags)) require(hit >= text.data() && hit <= end);
    if (const char* hit = KELUTIL_string_in_string(needle.data(), text.data(), sis_flags))
        require(hit >= text.data() && hit + needle.size() <= end);
    (void)vl::text::str_prefix_cmpi(needle.data(), text.data());

    const VL_NAME_ROW table[] = {{1, needle.data()}, {2, "NAME"}, {0, nullptr}};
    const uint16_t id = KELUTIL_FindString(table, text.data());
    require(id == 1 || id == 2 || id == 32764);
    return 0;
}
