// Dates from arbitrary text: KELUTIL_str2date in every format and flag
// word, KELUTIL_str2time, and the custom pictures with the reading and
// printing by them.  Nothing may be read or written outside the buffers.

#include <cstring>
#include <string>

#include "datetime/custom.h"
#include "fuzz_support.h"
#include "vlcore.h"

using namespace vlfuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    if (size < 3) return 0;
    // A selector byte, a format byte, then the texts.
    const uint8_t selector = data[0], format = data[1];
    std::string_view in(reinterpret_cast<const char*>(data + 2), size - 2);
    switch (selector % 3) {
        case 0: {
            // A date in a format, with flags from the selector.
            constexpr uint32_t kFlags[] = {0, 128, 3, 4, 1024, 2048, 4096, 131, 1152};
            Text text(in);
            const std::string before(text.data(), text.size());
            (void)KELUTIL_str2date(text.data(), kFlags[(selector / 3) % 9], format % 24);
            require(before == std::string(text.data()));
            break;
        }
        case 1: {
            Text text(in);
            (void)KELUTIL_str2time(text.data(), format % 13);
            break;
        }
        default: {
            // A picture into a slot, then a text read and a date printed by it.
            const std::string_view picture = take_text(in);
            Text slot_picture(picture), text(in);
            const int slot = format & 1;
            KELUTIL_custom_date_format(slot, 0, slot_picture.data());
            vl::datetime::DateRecord record{};
            Text parse_text(in, vl::datetime::kPictureRoom);
            (void)vl::datetime::Custom_Parse(parse_text.data(), parse_text.size() + 1, static_cast<uint16_t>(19 + slot),
                                             record, (format >> 1) & 1);
            (void)KELUTIL_str2date(text.data(), 0, 19u + slot);
            char out[vl::datetime::kPictureRoom];
            const double value = 2415018.0 + static_cast<double>(selector) * 97.123 + format;
            KELUTIL_date2str(value, 19u + slot, out);
            require(std::strlen(out) < sizeof out);
            break;
        }
    }
    return 0;
}
