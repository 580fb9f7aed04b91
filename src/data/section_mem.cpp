// Sections of a text in memory: KELUTIL_GetMemSectionPtr and
// KELUTIL_GetMemSection.

#include <cstring>

#include "data/section.h"
#include "platform/platform.h"
#include "vlcore.h"

namespace vl::data {

bool SectionName::equals(const char* name) const noexcept {
    if (overflow_) return false;
    char copy[kSectionNameMax + 1];
    std::memcpy(copy, bytes_, len_);
    copy[len_] = '\0';
    return platform::compare_nocase(copy, name) == 0;
}

bool find_mem_section(const char* text, const char* name, MemSection& out) noexcept {
    if (!text || !name || std::strlen(name) > kSectionNameMax) return false;
    enum class State { kLine, kName, kHeader } state = State::kLine;
    bool blank = true, found = false;
    const char* start = nullptr;
    const char* end = nullptr;
    SectionName header;
    for (const char* p = text; *p; ++p) {
        const auto c = static_cast<unsigned char>(*p);
        switch (state) {
            case State::kLine:
                // 1. Ordinary text: line feeds move the end once found.
                if (c == '\n') {
                    blank = true;
                    if (found) end = p + 1;
                } else if (c == '[' && blank) {
                    header.clear();
                    state = State::kName;
                } else if (is_printing(c)) {
                    blank = false;
                }
                break;
            case State::kName:
                // 2. The name: leading blanks dropped, runs of blanks one space.
                if (c == ']') {
                    state = State::kHeader;
                } else if (is_printing(c)) {
                    header.append(static_cast<char>(c));
                } else if (header.size() > 0 && header.back() != ' ') {
                    header.append(' ');
                }
                break;
            case State::kHeader:
                // 3. Behind the ']': only blanks up to the line feed make a header.
                if (c == '\n') {
                    if (blank) {
                        if (found) {
                            out = {start, static_cast<std::size_t>(end - start)};
                            return true;
                        }
                        if (header.equals(name)) {
                            found = true;
                            start = end = p + 1;
                        }
                    } else {
                        if (found) end = p + 1;
                        blank = true;
                    }
                    state = State::kLine;
                } else if (is_printing(c)) {
                    blank = false;
                }
                break;
        }
    }
    // 4. The end of the text: a last line without line feed stays outside.
    if (!found) return false;
    out = {start, static_cast<std::size_t>(end - start)};
    return true;
}

}  // namespace vl::data

using namespace vl::data;

namespace {
constexpr std::size_t kLongestMemBody = 0xFFFF;
}

extern "C" char* VLAPI KELUTIL_GetMemSectionPtr(const char* text, const char* name, uint16_t* length) noexcept {
    MemSection s{};
    if (!find_mem_section(text, name, s) || s.length > kLongestMemBody) return nullptr;
    if (length) *length = static_cast<uint16_t>(s.length);
    return const_cast<char*>(s.body);
}

extern "C" uint16_t VLAPI KELUTIL_GetMemSection(const char* text, const char* name, char* dst) noexcept {
    MemSection s{};
    // Length plus one must fit the 16-bit answer.
    if (!find_mem_section(text, name, s) || s.length >= kLongestMemBody) return 0;
    if (dst) {
        std::memcpy(dst, s.body, s.length);
        dst[s.length] = '\0';
    }
    return static_cast<uint16_t>(s.length + 1);
}
