// Number printing with arbitrary format texts and doubles: nothing written
// outside a heap buffer of exactly the promised room, and a format holding a
// conversion other than one of f F e E g G never prints anything but "--",
// so a caller's %s or %n can never reach a runtime formatter.

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <string>

#include "fuzz_support.h"
#include "vlcore.h"

using namespace vlfuzz;

namespace {

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// True when `body` (white space already removed) holds a conversion the
// printer must refuse: a foreign letter, a '*' width, a lone '%' at the end,
// or more than one conversion.
bool must_refuse(const std::string& body) {
    int conversions = 0;
    for (std::size_t i = 0; i < body.size(); ++i) {
        if (body[i] != '%') continue;
        if (i + 1 < body.size() && body[i + 1] == '%') {
            ++i;
            continue;
        }
        std::size_t j = i + 1;
        while (j < body.size() && std::strchr("-+ #0", body[j]) && body[j]) ++j;
        while (j < body.size() && body[j] >= '0' && body[j] <= '9') ++j;
        if (j < body.size() && body[j] == '.') {
            ++j;
            while (j < body.size() && body[j] >= '0' && body[j] <= '9') ++j;
        }
        if (j < body.size() && body[j] == 'l') ++j;
        if (j >= body.size() || !std::strchr("fFeEgG", body[j]) || !body[j]) return true;
        ++conversions;
        i = j;
    }
    return conversions > 1;
}

double take_double(std::string_view& in) {
    double v = 0.0;
    if (in.size() >= sizeof v) {
        std::memcpy(&v, in.data(), sizeof v);
        in.remove_prefix(sizeof v);
    }
    return v;
}

// A heap buffer of exactly `size` bytes: AddressSanitizer sees any byte past.
std::unique_ptr<char[]> room(std::size_t size) { return std::make_unique<char[]>(size); }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    std::string_view in(reinterpret_cast<const char*>(data), size);
    const double value = take_double(in);
    const uint8_t mode = in.empty() ? 0 : static_cast<uint8_t>(in[0]);
    const uint8_t width = in.size() < 2 ? 0 : static_cast<uint8_t>(in[1]);
    const uint8_t precision = in.size() < 3 ? 0 : static_cast<uint8_t>(in[2]);
    in.remove_prefix(std::min<std::size_t>(3, in.size()));
    Text format(take_text(in));

    // 1. KELUTIL_real2str: "*" and "." bodies promise less room than others.
    const char* body = format.data();
    if (*body && std::strchr("EPS,D", *body)) ++body;
    const bool short_body = *body == '*' || *body == '.';
    // A date takes the room that date printing promises.
    constexpr std::size_t kDateRoom = 61;
    const bool date = format.data()[0] == 'D';
    const std::size_t promised = date ? kDateRoom : short_body ? VL_REAL2STR_SHORT_ROOM : VL_FORMAT_ROOM;
    auto dst = room(promised);
    KELUTIL_real2str(value, dst.get(), format.data());
    require(strnlen(dst.get(), promised) < promised);

    const bool printable = !std::isnan(value) && value != VL_DIV_ZERO_VALUE && value != VL_MISSING_VALUE &&
                           std::fabs(value) <= 1e290 && !date;
    if (printable && !short_body) {
        std::string stripped;
        for (const char* p = body; *p; ++p)
            if (!is_blank(*p)) stripped += *p;
        if (must_refuse(stripped)) require(std::strcmp(dst.get(), "--") == 0);
    }

    // 2. KELUTIL_sprintf on the same format.
    auto out = room(VL_FORMAT_ROOM);
    const int32_t result = KELUTIL_sprintf(out.get(), format.data(), value);
    require(strnlen(out.get(), VL_FORMAT_ROOM) < VL_FORMAT_ROOM);
    require(result >= -1);

    // 3. The digit-row converter with any mode, width and precision.
    auto row = room(VL_REAL_STR_ROOM);
    const int32_t r = KELUTIL_real_str(value, mode, width, precision, row.get());
    require(r == 0 || r == 1);
    require(strnlen(row.get(), VL_REAL_STR_ROOM) < VL_REAL_STR_ROOM);
    return 0;
}
