// Exactly sized heap copies of fuzzer input.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

namespace vlfuzz {

// A zero-terminated copy of `bytes` (cut at the first zero) in a heap block
// of exactly strlen + 1 + extra bytes.
class Text {
  public:
    explicit Text(std::string_view bytes, std::size_t extra = 0)
        : len_(strnlen(bytes.data(), bytes.size())), buf_(std::make_unique<char[]>(len_ + 1 + extra)) {
        std::memcpy(buf_.get(), bytes.data(), len_);
        buf_[len_] = '\0';
    }
    char* data() { return buf_.get(); }
    std::size_t size() const { return len_; }

  private:
    std::size_t len_;
    std::unique_ptr<char[]> buf_;
};

// Splits the input at its first zero byte: a text and the rest.
inline std::string_view take_text(std::string_view& in) {
    const std::size_t n = strnlen(in.data(), in.size());
    std::string_view head = in.substr(0, n);
    in.remove_prefix(n < in.size() ? n + 1 : n);
    return head;
}

inline void require(bool ok) {
    if (!ok) std::abort();
}

}  // namespace vlfuzz
