// Allocation failure at the export boundary.
//
// This program replaces the global allocator, which the shared library then
// uses too, with one that can be told to fail on the N-th allocation.  Each
// row drives an export that allocates through N = 0, 1, 2, ... until a call
// runs without a failed allocation: every failing call must answer the
// export's documented failure, and the call after it, with memory, must
// answer as it always does.  An exception that escaped would end the
// program; a leak on the failing road shows under the sanitizers' build.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <new>
#include <string>
#include <vector>

#include "vlcore.h"

namespace {

// -1: never fail; else the number of allocations still to succeed.
long allocations_left = -1;
bool failed_one = false;
long allocations_made = 0;

void* allocate(std::size_t size) {
    ++allocations_made;
    if (allocations_left == 0) {
        failed_one = true;
        throw std::bad_alloc();
    }
    if (allocations_left > 0) --allocations_left;
    if (void* p = std::malloc(size ? size : 1)) return p;
    throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return allocate(size);
    } catch (...) {
        return nullptr;
    }
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept { return operator new(size, tag); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t) noexcept { std::free(p); }

namespace {

// What a row's call answered.
enum class Outcome { kSucceeded, kFailed, kWrong };

const char* name_of(Outcome o) {
    return o == Outcome::kSucceeded ? "success" : o == Outcome::kFailed ? "the documented failure" : "a wrong answer";
}

struct Row {
    const char* door;                // the export and what it is given
    std::function<Outcome()> call;   // makes its inputs, calls, judges the answer
};

// A file in the temporary directory, written before the rows run.
std::string temp_file(const char* name, const std::string& text) {
    const auto path = (std::filesystem::temp_directory_path() / name).string();
    FILE* f = std::fopen(path.c_str(), "wb");
    std::fwrite(text.data(), 1, text.size(), f);
    std::fclose(f);
    return path;
}

std::string settings_path, sections_path;
VL_HGLOBAL memory_object = nullptr;

// A text of the block and the block freed.
std::string take_block(VL_HGLOBAL block) {
    const char* p = static_cast<const char*>(vl_global_lock(block));
    std::string text = p ? p : "";
    vl_global_unlock(block);
    vl_global_free(block);
    return text;
}

const std::vector<Row>& rows() {
    static const std::vector<Row> table = {
        {"KELUTIL_GetPrivateProfileReal of a value in a settings file",
         [] {
             const double v = KELUTIL_GetPrivateProfileReal("Numbers", "half", -7.0, settings_path.c_str());
             return v == 0.5 ? Outcome::kSucceeded : v == -7.0 ? Outcome::kFailed : Outcome::kWrong;
         }},
        {"KELUTIL_Color 0 loads the colour list of a settings file",
         [] {
             KELUTIL_Color(nullptr, 0, 0, 19);  // no rows: a count left unchanged shows
             KELUTIL_Color(nullptr, 0, reinterpret_cast<intptr_t>(settings_path.c_str()), 0);
             char name[28] = {};
             const int32_t count = KELUTIL_Color(nullptr, 0, 0, 3);
             KELUTIL_Color(nullptr, 1, reinterpret_cast<intptr_t>(name), 15);
             uint32_t sky = 0;
             KELUTIL_Color(nullptr, 1, reinterpret_cast<intptr_t>(&sky), 6);
             const bool listed = count == 2 && std::strcmp(name, "Sky") == 0;
             if (listed && sky == (135u | 206u << 8 | 235u << 16)) return Outcome::kSucceeded;
             // Without memory for the key list the count stays as it was; a
             // value that can't be read is as a value that is missing.
             return count == 0 || listed ? Outcome::kFailed : Outcome::kWrong;
         }},
        {"KELUTIL_GetFileSection of the last section of a file",
         [] {
             VL_HGLOBAL block = KELUTIL_GetFileSection(sections_path.c_str(), "two");
             if (!block) return Outcome::kFailed;
             return take_block(block) == "b=2\n" ? Outcome::kSucceeded : Outcome::kWrong;
         }},
        {"KELUTIL_GetMemSectionEntry of a key, into a poisoned buffer",
         [] {
             char out[16];
             std::memset(out, 0xCC, sizeof out);
             const int32_t r = KELUTIL_GetMemSectionEntry("two", "b", "none", out, sizeof out, "[one]\na=1\n[two]\nb=2\n");
             if (r == 0) return std::strcmp(out, "2") == 0 ? Outcome::kSucceeded : Outcome::kWrong;
             return r == 1 && static_cast<unsigned char>(out[0]) == 0xCC ? Outcome::kFailed : Outcome::kWrong;
         }},
        {"KELUTIL_MultiLineControl 1 reverses three lines, the text kept without memory",
         [] {
             char text[64] = "the first line\nthe second line\nthe third line";
             KELUTIL_MultiLineControl(text, nullptr, 1);
             if (std::strcmp(text, "the third line\r\nthe second line\r\nthe first line") == 0) return Outcome::kSucceeded;
             return std::strcmp(text, "the first line\nthe second line\nthe third line") == 0 ? Outcome::kFailed : Outcome::kWrong;
         }},
        {"KelMath_Inverse 1 on a copy of a 2 x 2 matrix",
         [] {
             double m[4] = {4, 7, 2, 6};
             const int32_t r = KelMath_Inverse(2, m, 1);
             const bool kept = m[0] == 4 && m[1] == 7 && m[2] == 2 && m[3] == 6;
             if (r == 0) return std::abs(m[0] - 0.6) < 1e-12 && std::abs(m[1] + 0.7) < 1e-12 ? Outcome::kSucceeded : Outcome::kWrong;
             return r != 0 && kept ? Outcome::kFailed : Outcome::kWrong;
         }},
        {"KELUTIL_str2date of a date in a text too long for the stack",
         [] {
             // The same date, short, read beforehand with memory to spare.
             static const double expected = [] {
                 char short_text[] = "Jan 2, 2003";
                 return KELUTIL_str2date(short_text, 0, 0);
             }();
             char text[200] = "Jan 2, 2003";
             std::memset(text + 11, ' ', 150);
             const double v = KELUTIL_str2date(text, 0, 0);
             return v == expected ? Outcome::kSucceeded : v == VL_MISSING_VALUE ? Outcome::kFailed : Outcome::kWrong;
         }},
        {"KELUTIL_MultiFile 3 makes a list of two rows from a text",
         [] {
             char text[] = "c:\\a.txt\rc:\\b.txt";
             char row[266];
             const int32_t r = KELUTIL_MultiFile(nullptr, text, 2, 3);
             KELUTIL_MultiFile(nullptr, row, 1, 2);
             if (r == 0) return std::strcmp(row, "c:\\b.txt") == 0 ? Outcome::kSucceeded : Outcome::kWrong;
             return r == 1 && std::strcmp(row, "error") == 0 ? Outcome::kFailed : Outcome::kWrong;
         }},
        {"KELUTIL_MemObject 0 creates an object",
         [] {
             const uint16_t r = KELUTIL_MemObject(&memory_object, 0, 1, nullptr, 0);
             if (r == 1 && memory_object) {
                 KELUTIL_MemObject(&memory_object, 4100, 0, nullptr, 0);
                 return memory_object ? Outcome::kWrong : Outcome::kSucceeded;
             }
             return r == 0 && !memory_object ? Outcome::kFailed : Outcome::kWrong;
         }},
    };
    return table;
}

class AllocationFailure : public ::testing::TestWithParam<std::size_t> {
  protected:
    static void SetUpTestSuite() {
        settings_path = temp_file("vlcore_alloc_settings.ini",
                                  "[Numbers]\nhalf=0.5\n[Color List]\nInk=0 0 0\nSky=135 206 235\n");
        sections_path = temp_file("vlcore_alloc_sections.txt", "[one]\na=1\n[two]\nb=2\n");
    }
};

TEST_P(AllocationFailure, EveryFailingCallAnswersItsFailureAndTheNextCallWorks) {
    const Row& row = rows()[GetParam()];
    SCOPED_TRACE(row.door);
    bool allocated = false;
    for (long n = 0; n < 10000; ++n) {
        allocations_made = 0;
        failed_one = false;
        allocations_left = n;
        const Outcome failing = row.call();
        allocations_left = -1;
        allocated = allocated || allocations_made > 0;
        if (!failed_one) {
            EXPECT_EQ(failing, Outcome::kSucceeded) << "with memory enough, after " << n << " allocations";
            break;
        }
        EXPECT_EQ(failing, Outcome::kFailed)
            << "allocation " << n + 1 << " failed and the call answered " << name_of(failing);
        const Outcome next = row.call();
        EXPECT_EQ(next, Outcome::kSucceeded) << "the call after allocation " << n + 1 << " failed answered "
                                             << name_of(next);
    }
    EXPECT_TRUE(allocated) << "the row never allocates, so it tests nothing";
}

INSTANTIATE_TEST_SUITE_P(Exports, AllocationFailure, ::testing::Range<std::size_t>(0, rows().size()),
                         [](const auto& info) { return "row" + std::to_string(info.param); });

}  // namespace
