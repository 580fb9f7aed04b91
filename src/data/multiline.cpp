// KELUTIL_MultiLineControl: counting, taking and reversing the lines of a
// text whose lines end in line feeds.

#include <array>
#include <cstring>
#include <string>

#include "vlcore.h"

namespace vl::data {
namespace {

constexpr uint16_t kCountLines = VL_LINES_COUNT;
constexpr uint16_t kReverseLines = VL_LINES_REVERSE;
constexpr uint16_t kNextLine = VL_LINES_NEXT;
constexpr std::size_t kMaxLines = 500;
constexpr std::size_t kLineRoom = 240;

uint16_t count_lines(const char* text) {
    // 1. Line feeds, found with the plain search.
    uint32_t feeds = 0;
    const char* last = nullptr;
    for (const char* p = text; (p = KELUTIL_strchr(p, '\n', VL_STRCHR_PLAIN)) != nullptr; ++p) {
        ++feeds;
        last = p;
    }
    // 2. A last line without line feed counts too, the empty one included.
    const bool ends_in_feed = last && last[1] == '\0';
    return static_cast<uint16_t>(ends_in_feed ? feeds : feeds + 1);
}

// The line at `text` without its line end, and where the next one starts.
struct Line {
    std::size_t length;
    const char* next;
};
Line next_line(const char* text) {
    if (const char* lf = std::strchr(text, '\n')) {
        std::size_t n = static_cast<std::size_t>(lf - text);
        if (n > 0 && text[n - 1] == '\r') --n;
        return {n, lf + 1};
    }
    std::size_t n = std::strlen(text);
    const char* end = text + n;
    while (n > 0 && text[n - 1] == '\r') --n;
    return {n, end};
}

void reverse_lines(char* text) {
    // 1. Take the lines, as many as operation 0 counts, each as operation 2
    //    gives it; a text beyond 500 lines or 239 characters stays as it is.
    const uint16_t count = count_lines(text);
    if (count > kMaxLines) return;
    std::array<Line, kMaxLines> lines{};
    std::array<const char*, kMaxLines> starts{};
    const char* p = text;
    for (uint16_t i = 0; i < count; ++i) {
        starts[i] = p;
        lines[i] = next_line(p);
        if (lines[i].length >= kLineRoom) return;
        p = lines[i].next;
    }
    // 2. Keep them apart from the text, which is rebuilt in place.
    std::string kept;
    try {
        kept.reserve(static_cast<std::size_t>(p - text));
        for (uint16_t i = 0; i < count; ++i) kept.append(starts[i], lines[i].length).push_back('\0');
    } catch (...) {
        return;
    }
    // 3. Last line first, CR LF behind all but the last one written.
    char* out = text;
    std::size_t at = kept.size();
    for (uint16_t i = count; i-- > 0;) {
        at -= lines[i].length + 1;
        std::memcpy(out, kept.data() + at, lines[i].length);
        out += lines[i].length;
        if (i > 0) {
            *out++ = '\r';
            *out++ = '\n';
        }
    }
    *out = '\0';
}

char* take_line(char* buffer, char* text) {
    buffer[0] = '\0';
    if (!text) return nullptr;
    const Line line = next_line(text);
    std::memcpy(buffer, text, line.length);
    buffer[line.length] = '\0';
    return text + (line.next - text);
}

}  // namespace
}  // namespace vl::data

using namespace vl::data;

extern "C" char* VLAPI KELUTIL_MultiLineControl(char* first, void* second, uint32_t operation) noexcept {
    switch (static_cast<uint16_t>(operation)) {
        case kCountLines:
            if (first && second) {
                const uint16_t n = count_lines(first);
                std::memcpy(second, &n, sizeof n);
            }
            return nullptr;
        case kReverseLines:
            if (first) reverse_lines(first);
            return nullptr;
        case kNextLine: return first ? take_line(first, static_cast<char*>(second)) : nullptr;
        default: return nullptr;
    }
}
