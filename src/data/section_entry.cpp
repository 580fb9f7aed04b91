// KELUTIL_GetMemSectionEntry: "key = value" entries of a section in memory,
// and the list of a section's keys.

#include <cstring>
#include <string_view>
#include <vector>

#include "data/section.h"
#include "platform/platform.h"
#include "internal/guard.h"
#include "vlcore.h"

namespace vl::data {
namespace {

// The work buffer: collects key or value text with runs of blanks made one
// space, up to its size less the terminator.
class Collector {
  public:
    explicit Collector(std::size_t size) : buf_(size > 0 ? size : 1) {}
    void clear() noexcept {
        len_ = 0;
        overflow_ = false;
        space_ = false;
    }
    // A run of blanks is held back until text follows it, so that blanks
    // that are cut at the end never take room.
    void collect(unsigned char c) noexcept {
        if (!is_printing(c)) {
            space_ = true;
            return;
        }
        if (space_) {
            append(' ');
            space_ = false;
        }
        append(static_cast<char>(c));
    }
    void cut_trailing_blanks() noexcept { space_ = false; }
    bool empty() const noexcept { return len_ == 0 && !space_ && !overflow_; }
    bool overflow() const noexcept { return overflow_; }
    const char* c_str() noexcept {
        buf_[len_] = '\0';
        return buf_.data();
    }
    std::size_t size() const noexcept { return len_; }

  private:
    void append(char c) noexcept {
        if (len_ + 1 < buf_.size())
            buf_[len_++] = c;
        else
            overflow_ = true;
    }
    std::vector<char> buf_;
    std::size_t len_ = 0;
    bool overflow_ = false;
    bool space_ = false;
};

// Appends keys to `out` of `size` bytes, zero after each and a further zero
// behind the last, which always keeps its room.
class KeyList {
  public:
    KeyList(char* out, std::size_t size) : out_(out), room_(size) {}
    // False when fewer than 3 bytes remain: the listing is over.
    bool add(const char* key, std::size_t len) noexcept {
        if (room_ < 3) return false;
        if (len > room_ - 2) len = room_ - 2;
        std::memcpy(out_, key, len);
        out_[len] = '\0';
        out_ += len + 1;
        room_ -= len + 1;
        return true;
    }
    void close() noexcept {
        if (room_ >= 1) *out_ = '\0';
    }

  private:
    char* out_;
    std::size_t room_;
};

enum class State { kLineStart, kKey, kBeforeValue, kValue, kSkip };

bool copy_fitting(char* out, std::size_t size, const char* text, std::size_t len) noexcept {
    if (len + 1 > size) return false;
    std::memcpy(out, text, len);
    out[len] = '\0';
    return true;
}

int32_t entry(const char* section, const char* key, const char* default_value, char* out, std::size_t size,
              const char* text) {
    // 1. The section; without it nothing is written.
    MemSection s{};
    if (!find_mem_section(text, section, s) || s.length > 0xFFFF || !out) return 1;
    // 2. The work buffer.
    Collector work(size);
    KeyList list(out, size);
    State state = State::kLineStart;
    bool matched = false, listing_over = false;
    // 3. The body up to its end or the text's terminator.
    const auto* p = reinterpret_cast<const unsigned char*>(s.body);
    const auto* end = p + s.length;
    for (; p < end && *p && !listing_over; ++p) {
        const unsigned char c = *p;
        switch (state) {
            case State::kLineStart:
                if (!is_printing(c)) break;
                work.clear();
                state = State::kKey;
                [[fallthrough]];
            case State::kKey:
                if (c == '=') {
                    if (work.empty()) break;
                    work.cut_trailing_blanks();
                    if (!key) {
                        listing_over = !list.add(work.c_str(), work.size());
                        state = State::kSkip;
                    } else if (!work.overflow() && platform::compare_nocase(work.c_str(), key) == 0) {
                        matched = true;
                        state = State::kBeforeValue;
                    } else {
                        state = State::kSkip;
                    }
                } else if (c == '\n' || c == ';') {
                    state = State::kLineStart;
                } else {
                    work.collect(c);
                }
                break;
            case State::kBeforeValue:
                if (!is_printing(c) && c != '\n') break;
                work.clear();
                state = State::kValue;
                [[fallthrough]];
            case State::kValue:
                if (c == '\n' || c == ';') {
                    end = p;  // the value is complete: the scan ends
                } else {
                    work.collect(c);
                }
                break;
            case State::kSkip:
                if (c == '\n') state = State::kLineStart;
                break;
        }
        if (p == end) break;
    }
    // 4. The outcome: the key list, the value or the default.
    if (!key) {
        list.close();
        return 0;
    }
    if (matched) {
        if (state == State::kBeforeValue) work.clear();
        work.cut_trailing_blanks();
        if (work.overflow()) return 1;
        return copy_fitting(out, size, work.c_str(), work.size()) ? 0 : 1;
    }
    const char* def = default_value ? default_value : "";
    return copy_fitting(out, size, def, std::strlen(def)) ? 0 : 1;
}

}  // namespace
}  // namespace vl::data

extern "C" int32_t VLAPI KELUTIL_GetMemSectionEntry(const char* section, const char* key, const char* default_value,
                                                    char* out, uint32_t size, const char* text) noexcept {
    // Without work memory the answer is 1, as for a missing section.
    return vl::guarded(1, [&] { return vl::data::entry(section, key, default_value, out, static_cast<uint16_t>(size), text); });
}
