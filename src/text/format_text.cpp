// A caller's format text for one double, read here instead of being handed
// to the runtime's sprintf: a stray conversion such as %s or %n in a
// user's format would read or write memory that was never passed.

#include <algorithm>

#include "internal/values.h"
#include "text/digits.h"

namespace vl::text {
namespace {

// Widths and precisions are read with saturation: any that passes this is
// too long for the result anyway.
constexpr int32_t kNumberCap = 100000;

int32_t read_count(std::string_view format, std::size_t& i) noexcept {
    int32_t n = 0;
    for (; i < format.size() && is_digit(format[i]); ++i) n = std::min(n * 10 + (format[i] - '0'), kNumberCap);
    return n;
}

// Reads the conversion that starts behind a '%' at `i`; answers false for
// anything but flags, width, precision, an optional 'l' and f F e E g G.
bool read_conversion(std::string_view format, std::size_t& i, Conversion& conv) noexcept {
    // 1. Flags, in any order and number.
    for (; i < format.size(); ++i) {
        const char c = format[i];
        if (c == '-')
            conv.left = true;
        else if (c == '+')
            conv.plus = true;
        else if (c == ' ')
            conv.space = true;
        else if (c == '#')
            conv.alternate = true;
        else if (c == '0')
            conv.zero = true;
        else
            break;
    }
    // 2. Width, and a precision behind a point (a bare point means 0).
    conv.width = read_count(format, i);
    if (i < format.size() && format[i] == '.') {
        ++i;
        conv.precision = read_count(format, i);
    }
    // 3. A long mark changes nothing for a double.
    if (i < format.size() && format[i] == 'l') ++i;
    // 4. The conversion letter.
    if (i >= format.size()) return false;
    const char letter = format[i++];
    if (std::string_view("fFeEgG").find(letter) == std::string_view::npos) return false;
    conv.letter = letter;
    return true;
}

}  // namespace

bool format_one_double(std::string_view format, double value, std::string_view suffix, std::span<char> out) noexcept {
    const std::size_t room = std::min(out.size(), kFormatLimit + 1);
    if (room == 0) return false;
    std::size_t len = 0;
    auto put = [&](std::string_view piece) {
        if (len + piece.size() + 1 > room) return false;
        std::copy(piece.begin(), piece.end(), out.data() + len);
        len += piece.size();
        return true;
    };
    bool converted = false;
    for (std::size_t i = 0; i < format.size();) {
        // 1. Literal text up to the next '%'.
        const std::size_t pct = std::min(format.find('%', i), format.size());
        if (!put(format.substr(i, pct - i))) return false;
        if (pct == format.size()) break;
        i = pct + 1;
        // 2. "%%" is a literal percent sign.
        if (i < format.size() && format[i] == '%') {
            if (!put("%")) return false;
            ++i;
            continue;
        }
        // 3. The one conversion; a second one or a foreign one ends the work.
        Conversion conv;
        if (converted || !read_conversion(format, i, conv)) return false;
        const int32_t n = convert(value, conv, out.subspan(len, room - len));
        if (n < 0) return false;
        len += static_cast<std::size_t>(n);
        converted = true;
    }
    // 4. The suffix behind it all, and the terminator.
    if (!put(suffix)) return false;
    out[len] = '\0';
    return true;
}

}  // namespace vl::text
