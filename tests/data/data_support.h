// Helpers of the text data tests: blocks, handles and scratch files, the
// same on both builds.
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>

#include "vlcore.h"

#ifndef _WIN32
#include <unistd.h>
#endif

namespace vltest {

#ifdef _WIN32
inline void* block_lock(VL_HGLOBAL h) { return GlobalLock(h); }
inline void block_unlock(VL_HGLOBAL h) { GlobalUnlock(h); }
inline std::size_t block_size(VL_HGLOBAL h) { return GlobalSize(h); }
inline void block_free(VL_HGLOBAL h) { GlobalFree(h); }
inline void close_file(int32_t file) { CloseHandle(reinterpret_cast<HANDLE>(static_cast<intptr_t>(file))); }
#else
inline void* block_lock(VL_HGLOBAL h) { return vl_global_lock(h); }
inline void block_unlock(VL_HGLOBAL h) { vl_global_unlock(h); }
inline std::size_t block_size(VL_HGLOBAL h) { return vl_global_size(h); }
inline void block_free(VL_HGLOBAL h) { vl_global_free(h); }
inline void close_file(int32_t file) { ::close(file); }
#endif

constexpr uint32_t kGenericRead = 0x80000000u;
constexpr uint32_t kGenericWrite = 0x40000000u;

// The whole contents of a block, which the test then frees.
inline std::string take_block(VL_HGLOBAL h) {
    const std::size_t n = block_size(h);
    const auto* p = static_cast<const char*>(block_lock(h));
    std::string s(p, n);
    block_unlock(h);
    block_free(h);
    return s;
}

// A file in the temporary directory that goes away with the test.
class ScratchFile {
  public:
    explicit ScratchFile(std::string_view stem, std::string_view contents = {}) {
        path_ = (std::filesystem::temp_directory_path() /
                 ("vlcore_" + std::to_string(tag()) + "_" + std::string(stem) + "_" + std::to_string(++counter())))
                    .string();
        write(contents);
    }
    ~ScratchFile() {
        std::error_code ec;
        std::filesystem::permissions(path_, std::filesystem::perms::owner_write, std::filesystem::perm_options::add,
                                     ec);
        std::filesystem::remove(path_, ec);
    }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;
    void write(std::string_view contents) const {
        std::ofstream out(path_, std::ios::binary | std::ios::trunc);
        out.write(contents.data(), static_cast<std::streamsize>(contents.size()));
    }
    std::string read() const {
        std::ifstream in(path_, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }
    const char* path() const { return path_.c_str(); }

  private:
    // Test programs may run side by side, natively and under Wine.
    static unsigned tag() {
        static const unsigned t = std::random_device{}();
        return t;
    }
    static int& counter() {
        static int n = 0;
        return n;
    }
    std::string path_;
};

}  // namespace vltest
