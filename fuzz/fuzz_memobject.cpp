// Command sequences on memory objects and the multi-line operations.

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "fuzz_support.h"
#include "vlcore.h"

using namespace vlfuzz;

namespace {

void memobject_commands(std::string_view in) {
    VL_HGLOBAL slot = nullptr;
    static constexpr uint32_t kCommands[] = {0, 4096, 4097, 4098, 4100, 4101, 4099, 7};
    while (in.size() >= 4) {
        const uint32_t command = kCommands[static_cast<uint8_t>(in[0]) % 8];
        const uint32_t index = static_cast<uint8_t>(in[1]) | static_cast<uint32_t>(static_cast<uint8_t>(in[2])) << 8;
        const std::size_t len = static_cast<uint8_t>(in[3]) * 64u + static_cast<uint8_t>(in[3]) % 7;
        in.remove_prefix(4);
        std::string bytes(in.substr(0, len));
        in.remove_prefix(std::min(len, in.size()));
        switch (command) {
            case 0:
                // A create over a live object would leave it to the caller.
                if (slot) KELUTIL_MemObject(&slot, 4100, 0, nullptr, 0);
                KELUTIL_MemObject(&slot, command, index, nullptr, index);
                break;
            case 4096: {
                auto item = std::make_unique<char[]>(bytes.size() + 1);
                std::memcpy(item.get(), bytes.data(), bytes.size());
                item[bytes.size()] = '\0';
                KELUTIL_MemObject(&slot, command, index, item.get(), static_cast<uint32_t>(bytes.size() + 1));
                break;
            }
            case 4097: {
                auto out = std::make_unique<char[]>(len ? len : 1);
                const uint16_t n = KELUTIL_MemObject(&slot, command, index, out.get(), static_cast<uint32_t>(len));
                require(n <= len);
                break;
            }
            case 4098: {
                Text t(bytes);
                KELUTIL_MemObject(&slot, command, index, t.data(), 0);
                break;
            }
            default: KELUTIL_MemObject(&slot, command, index, nullptr, index); break;
        }
    }
    if (slot) require(KELUTIL_MemObject(&slot, 4100, 0, nullptr, 0) == 1 && slot == nullptr);
}

void multiline(std::string_view in) {
    // Operation 1 may add a byte per line: room for it.
    Text text(in, in.size() + 2);
    uint16_t lines = 0;
    KELUTIL_MultiLineControl(text.data(), &lines, 0);
    require(lines >= 1);
    auto line = std::make_unique<char[]>(text.size() + 1);
    char* p = text.data();
    for (uint16_t i = 0; i < lines && p; ++i) {
        p = KELUTIL_MultiLineControl(line.get(), p, 2);
        require(p >= text.data() && p <= text.data() + text.size());
        require(std::strlen(line.get()) <= text.size());
    }
    KELUTIL_MultiLineControl(text.data(), nullptr, 1);
    require(std::strlen(text.data()) <= text.size() + lines);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    if (size < 1) return 0;
    const std::string_view in(reinterpret_cast<const char*>(data) + 1, size - 1);
    if (data[0] & 1)
        memobject_commands(in);
    else
        multiline(in);
    return 0;
}
