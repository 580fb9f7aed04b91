// The section readers on arbitrary text: in memory, in a file, and the
// entry reader with its key listing.  The first byte chooses the reader.

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "fuzz_support.h"
#include "platform/platform.h"
#include "vlcore.h"

using namespace vlfuzz;

namespace {

const std::string& scratch_path() {
    static const std::string p =
        (std::filesystem::temp_directory_path() / ("vlcore_fuzz_sections_" + std::to_string(::getpid()))).string();
    return p;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    if (size < 3) return 0;
    const uint8_t selector = data[0];
    const uint32_t room = data[1];
    std::string_view in(reinterpret_cast<const char*>(data) + 2, size - 2);
    Text name(take_text(in));
    Text key(take_text(in));
    switch (selector % 3) {
        case 0: {
            Text text(in);
            uint16_t length = 0;
            const char* body = KELUTIL_GetMemSectionPtr(text.data(), name.data(), &length);
            if (body) require(body >= text.data() && body + length <= text.data() + text.size());
            const uint16_t n = KELUTIL_GetMemSection(text.data(), name.data(), nullptr);
            require((n == 0) == (body == nullptr) || length == 0xFFFF);
            if (n) {
                std::vector<char> dst(n);
                require(KELUTIL_GetMemSection(text.data(), name.data(), dst.data()) == n && dst[n - 1] == '\0');
            }
            break;
        }
        case 1: {
            Text text(in);
            // Exactly `room` bytes of output; a null key lists the keys.
            auto out = std::make_unique<char[]>(room ? room : 1);
            const char* k = (selector & 4) ? nullptr : key.data();
            const int32_t r = KELUTIL_GetMemSectionEntry(name.data(), k, "default", out.get(), room, text.data());
            require(r == 0 || r == 1);
            break;
        }
        default: {
            {
                std::ofstream f(scratch_path(), std::ios::binary | std::ios::trunc);
                f.write(in.data(), static_cast<std::streamsize>(in.size()));
            }
            VL_HGLOBAL h = KELUTIL_GetFileSection(scratch_path().c_str(), (selector & 4) ? nullptr : name.data());
            if (h) {
                const std::size_t n = vl::platform::mem_size(h);
                require(n >= 2 || (n >= 1 && (selector & 4)));
                require(n <= in.size() + 1);
                const auto* p = static_cast<const char*>(vl::platform::mem_lock(h));
                require(p[n - 1] == '\0');
                vl::platform::mem_unlock(h);
                vl::platform::mem_free(h);
            }
            break;
        }
    }
    return 0;
}
