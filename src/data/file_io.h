// Reading whole stretches of an open file through the platform's _lread,
// for the section and package readers.
#pragma once

#include <cstdint>

#include "platform/platform.h"

namespace vl::data {

// Reads `count` bytes into `data` in pieces the 32-bit read takes; false
// on a short read.
bool read_exactly(platform::FileHandle file, void* data, uint64_t count) noexcept;

// Closes an _lopen handle on every road out.
class LFile {
  public:
    explicit LFile(const char* name) noexcept : h_(platform::file_lopen_read(name)) {}
    ~LFile() { platform::file_lclose(h_); }
    LFile(const LFile&) = delete;
    LFile& operator=(const LFile&) = delete;
    bool ok() const noexcept { return h_ != platform::kNoFile; }
    platform::FileHandle get() const noexcept { return h_; }

  private:
    platform::FileHandle h_;
};

}  // namespace vl::data
