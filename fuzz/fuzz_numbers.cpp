// The number parsers on arbitrary text: nothing outside the buffer, and a
// successful real leaves its text exactly as it was.

#include <string>

#include "fuzz_support.h"
#include "vlcore.h"

using namespace vlfuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    Text text(bytes);
    const std::string before(text.data(), text.size());

    int32_t out = 0;
    const int32_t n = KELUTIL_str2int(text.data());
    require(KELUTIL_cvtstr2int(text.data(), &out) == 1 ? out == n : n == 0);

    double value = 0;
    if (KELUTIL_cvtstr2real(text.data(), &value)) require(before == std::string(text.data(), text.size()));

    Text again(bytes);
    (void)KELUTIL_str2real(again.data());
    Text hex(bytes);
    (void)KELUTIL_hexstr2int(hex.data());
    return 0;
}
