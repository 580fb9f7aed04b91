// Helpers of the data and platform tests: blocks, handles, scratch files
// and case tables, the same on both builds.
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "support.h"
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

inline std::string read_file(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

// Test programs may run side by side, natively and under Wine.
inline const unsigned scratch_tag = std::random_device{}();
inline int scratch_count = 0;

// A file in the temporary directory that goes away with the test.
class ScratchFile {
  public:
    explicit ScratchFile(std::string_view stem, std::string_view contents = {})
        : path_((std::filesystem::temp_directory_path() / ("vlcore_" + std::to_string(scratch_tag) + "_" +
                                                           std::string(stem) + "_" + std::to_string(++scratch_count)))
                    .string()) {
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
        std::ofstream(path_, std::ios::binary | std::ios::trunc).write(contents.data(), std::ssize(contents));
    }
    std::string read() const { return read_file(path_); }
    const char* path() const { return path_.c_str(); }

  private:
    std::string path_;
};

// A row of a case table: its kind, its name, then its fields.  Fields are
// written with C escapes (\n \r \t \0 \\ \xHH), "(none)" stands for a null
// pointer or no answer, and "@name" for the contents of an earlier row
// "text <tab> name <tab> contents".
struct Case {
    std::string kind, what;
    std::vector<std::optional<std::string>> fields;

    // An empty last field has no tab behind it, so it may be missing.
    const std::optional<std::string>& text(std::size_t i) const {
        static const std::optional<std::string> empty = "";
        return i < fields.size() ? fields[i] : empty;
    }
    const char* c_str(std::size_t i) const {
        return i >= fields.size() ? "" : fields[i] ? fields[i]->c_str() : nullptr;
    }
    long long number(std::size_t i) const {
        const std::string& field = fields.at(i).value();
        std::size_t used = 0;
        const long long n = std::stoll(field, &used, 0);
        if (used != field.size()) ADD_FAILURE() << "not a whole number: " << field;
        return n;
    }
};

// The rows of a case table under tests/, "text" rows taken in.
inline std::vector<Case> cases(std::string_view file) {
    std::map<std::string, std::string, std::less<>> named;
    std::vector<Case> out;
    for (const auto& row : DataTable(file)) {
        Case c{row[0], row.size() > 1 ? row[1] : "", {}};
        for (std::size_t i = 2; i < row.size(); ++i) {
            if (row[i] == "(none)")
                c.fields.emplace_back();
            else if (row[i].starts_with('@'))
                c.fields.emplace_back(named.at(row[i].substr(1)));
            else
                c.fields.emplace_back(unescape(row[i]));
        }
        if (c.kind == "text")
            named[c.what] = c.text(0).value_or("");
        else
            out.push_back(std::move(c));
    }
    return out;
}

// Runs `check` on the rows of one kind, each under a trace naming it.
template <class Check>
void each_case(std::string_view file, std::string_view kind, Check check) {
    std::size_t seen = 0;
    for (const Case& c : cases(file)) {
        if (c.kind != kind) continue;
        ++seen;
        SCOPED_TRACE(c.kind + ": " + c.what);
        check(c);
    }
    EXPECT_GT(seen, 0u) << "no rows of kind " << kind << " in " << file;
}

}  // namespace vltest
