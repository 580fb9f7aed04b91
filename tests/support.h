// Helpers shared by the test programs.
#pragma once

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace vltest {

constexpr unsigned char kPoison = 0xCC;

// A buffer filled with 0xCC, so a test sees exactly which bytes an entry
// wrote.
class Poisoned {
  public:
    explicit Poisoned(std::size_t size) : bytes_(size, static_cast<char>(kPoison)) {}
    char* data() { return bytes_.data(); }
    std::size_t size() const { return bytes_.size(); }
    // The text the entry wrote, up to its terminator.
    std::string text() const { return std::string(bytes_.data(), strnlen(bytes_.data(), bytes_.size())); }
    // Index of the first byte from `from` on that still holds the poison.
    std::size_t untouched_from(std::size_t from = 0) const {
        std::size_t i = from;
        while (i < bytes_.size() && static_cast<unsigned char>(bytes_[i]) != kPoison) ++i;
        return i;
    }
    // True when every byte from `from` on still holds the poison.
    bool clean_from(std::size_t from) const {
        for (std::size_t i = from; i < bytes_.size(); ++i)
            if (static_cast<unsigned char>(bytes_[i]) != kPoison) return false;
        return true;
    }

  private:
    std::vector<char> bytes_;
};

// A writable copy of a text with poison behind its terminator.
inline std::vector<char> writable(const std::string& s, std::size_t slack = 8) {
    std::vector<char> v(s.size() + 1 + slack, static_cast<char>(kPoison));
    std::memcpy(v.data(), s.c_str(), s.size() + 1);
    return v;
}

// Sets or (with null) removes an environment variable, on every target.
inline void set_env(const char* name, const char* value) {
#ifdef _WIN32
    _putenv_s(name, value ? value : "");
#else
    if (value)
        setenv(name, value, 1);
    else
        unsetenv(name);
#endif
}

inline uint64_t bits(double d) { return std::bit_cast<uint64_t>(d); }

}  // namespace vltest
