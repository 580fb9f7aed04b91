// Section readers against a plain memchr line scan of the same bytes.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "bench_main.h"
#include "vlcore.h"

namespace {

constexpr std::size_t kFileBytes = 256u << 20;
constexpr std::size_t kPiece = 256 * 1024;

// A 256 MB section file in the temporary directory: many sections of
// entries, the sought one last.  Made once, removed at exit.
class BigFile {
  public:
    BigFile() {
        path_ = (std::filesystem::temp_directory_path() / "vlcore_bench_sections.ini").string();
        std::ofstream out(path_, std::ios::binary | std::ios::trunc);
        std::string chunk;
        std::size_t written = 0;
        for (int section = 0; written < kFileBytes; ++section) {
            chunk = "[Section " + std::to_string(section) + "]\r\n";
            for (int k = 0; k < 200; ++k)
                chunk += "Key" + std::to_string(k) + " = value number " + std::to_string(section * 200 + k) + "\r\n";
            out.write(chunk.data(), static_cast<std::streamsize>(chunk.size()));
            written += chunk.size();
        }
        const std::string last = "[Last]\r\nanswer = 42\r\n";
        out.write(last.data(), static_cast<std::streamsize>(last.size()));
        size_ = written + last.size();
    }
    ~BigFile() {
        std::error_code ec;
        std::filesystem::remove(path_, ec);
    }
    const char* path() const { return path_.c_str(); }
    std::size_t size() const { return size_; }

  private:
    std::string path_;
    std::size_t size_ = 0;
};

const BigFile& big_file() {
    static const BigFile f;
    return f;
}

void free_block(VL_HGLOBAL h) {
#ifdef _WIN32
    GlobalFree(h);
#else
    vl_global_free(h);
#endif
}

void BM_KELUTIL_GetFileSection_last(benchmark::State& state) {
    const BigFile& f = big_file();
    for (auto _ : state) {
        VL_HGLOBAL h = KELUTIL_GetFileSection(f.path(), "Last");
        if (!h) state.SkipWithError("section not found");
        free_block(h);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(f.size()));
}
BENCHMARK(BM_KELUTIL_GetFileSection_last)->Unit(benchmark::kMillisecond);

// The same file read in the same pieces, its lines found with memchr.
void BM_memchr_file_lines(benchmark::State& state) {
    const BigFile& f = big_file();
    std::vector<char> buf(kPiece);
    for (auto _ : state) {
        std::FILE* in = std::fopen(f.path(), "rb");
        if (!in) {
            state.SkipWithError("cannot open");
            break;
        }
        std::setvbuf(in, nullptr, _IONBF, 0);
        std::size_t lines = 0, n;
        while ((n = std::fread(buf.data(), 1, buf.size(), in)) > 0) {
            const char* p = buf.data();
            const char* end = p + n;
            while (const void* lf = std::memchr(p, '\n', static_cast<std::size_t>(end - p))) {
                ++lines;
                p = static_cast<const char*>(lf) + 1;
            }
        }
        std::fclose(in);
        benchmark::DoNotOptimize(lines);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(f.size()));
}
BENCHMARK(BM_memchr_file_lines)->Unit(benchmark::kMillisecond);

// A key of three base-36 digits.
std::string key36(int k) {
    constexpr char kDigits[] = "0123456789abcdefghijklmnopqrstuvwxyz";
    return {kDigits[k / 1296 % 36], kDigits[k / 36 % 36], kDigits[k % 36]};
}

// A section of 10 000 entries in memory, short enough for the 16-bit body
// of the memory readers; the key sought is the last one.
const std::string& big_section() {
    static const std::string text = [] {
        std::string s = "[Other]\nx = 1\n[Data]\n";
        for (int k = 0; k < 10000; ++k) s += key36(k) + "=" + std::to_string(k % 10) + "\n";
        s += "[After]\ny = 2\n";
        return s;
    }();
    return text;
}

void BM_KELUTIL_GetMemSectionEntry(benchmark::State& state) {
    const std::string& text = big_section();
    char out[64];
    for (auto _ : state) {
        KELUTIL_GetMemSectionEntry("Data", key36(9999).c_str(), "", out, sizeof out, text.c_str());
        benchmark::DoNotOptimize(out);
    }
    if (std::strcmp(out, "9") != 0) state.SkipWithError("wrong value");
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}
BENCHMARK(BM_KELUTIL_GetMemSectionEntry);

void BM_memchr_section_lines(benchmark::State& state) {
    const std::string& text = big_section();
    for (auto _ : state) {
        std::size_t lines = 0;
        const char* p = text.data();
        const char* end = p + text.size();
        while (const void* lf = std::memchr(p, '\n', static_cast<std::size_t>(end - p))) {
            ++lines;
            p = static_cast<const char*>(lf) + 1;
        }
        benchmark::DoNotOptimize(lines);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}
BENCHMARK(BM_memchr_section_lines);

const vlbench::Compare kFileSection("BM_KELUTIL_GetFileSection_last", "BM_memchr_file_lines", 2.0);
const vlbench::Compare kSectionEntry("BM_KELUTIL_GetMemSectionEntry", "BM_memchr_section_lines", 0);

}  // namespace
