// What the section readers share: the byte classes of the format and the
// section lookup in memory.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vl::data {

// Printing bytes are 33 to 126; every other byte counts as blank.
constexpr bool is_printing(unsigned char c) noexcept { return c >= 33 && c <= 126; }

// Section names are at most 119 bytes; longer ones match nothing.
constexpr std::size_t kSectionNameMax = 119;

// The body of a section inside a zero-terminated text, as the memory
// reader finds it.  False when there is no such section.
struct MemSection {
    const char* body;
    std::size_t length;
};
bool find_mem_section(const char* text, const char* name, MemSection& out) noexcept;

// A section name as a header spells it, kept up to the format's limit.
class SectionName {
  public:
    void clear() noexcept {
        len_ = 0;
        overflow_ = false;
    }
    void append(char c) noexcept {
        if (len_ < kSectionNameMax)
            bytes_[len_++] = c;
        else
            overflow_ = true;
    }
    std::size_t size() const noexcept { return len_; }
    char back() const noexcept { return len_ ? bytes_[len_ - 1] : '\0'; }
    // Compares as lstrcmpiA does: the name up to its first zero byte.
    bool equals(const char* name) const noexcept;

  private:
    char bytes_[kSectionNameMax + 1] = {};
    std::size_t len_ = 0;
    bool overflow_ = false;
};

}  // namespace vl::data
