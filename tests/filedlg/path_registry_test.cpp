// The path registry and path splitting, as the host sees them.

#include <optional>
#include <string>

#include "filedlg_rows.h"
#include "support.h"
#include "vlcore.h"

namespace {

using filedlg_test::expect_written;
using filedlg_test::Row;
constexpr std::size_t kPathRoom = 267, kKeyRoom = 5;

TEST(SeparatePath, SplitsAtTheLastBackslashOrColon) {
    filedlg_test::each_row("filedlg/separate_path.tsv", [](const Row& row) {
        const std::string path = row.s(0);
        vltest::Poisoned dir(path.size() + 5), name(path.size() + 5), ext(path.size() + 5);
        KELUTIL_SeparatePath(path.c_str(), dir.data(), name.data(), ext.data());
        expect_written(dir, row.s(1));
        expect_written(name, row.s(2));
        expect_written(ext, row.s(3));
        // The directory may go over the path itself, with no extension asked.
        std::string in_place = path;
        vltest::Poisoned name2(path.size() + 1);
        KELUTIL_SeparatePath(in_place.data(), in_place.data(), name2.data(), nullptr);
        EXPECT_STREQ(in_place.data(), row.c(1));
        EXPECT_EQ(name2.text(), row.s(2));
    });
}

// What the file callback was last asked, and what it writes.
struct {
    int count = 0;
    VL_WPARAM path = 0;
    std::string key;
    std::optional<std::string> answer;
} g_host;

VL_LRESULT VLAPI file_host(VL_HWND window, VL_UINT message, VL_WPARAM path, VL_LPARAM key) {
    EXPECT_EQ(window, nullptr);
    EXPECT_EQ(message, 4143u);
    g_host = {g_host.count + 1, path, reinterpret_cast<const char*>(key), g_host.answer};
    if (g_host.answer) std::strcpy(reinterpret_cast<char*>(path), g_host.answer->c_str());
    return 12345;  // not to be read
}

TEST(PathRegistry, Operations) {
    KELUTIL_PathControl(3, nullptr, nullptr, 0);
    filedlg_test::each_row("filedlg/path_registry.tsv", [](const Row& row) {
        if (row.s(0) == "host") {
            g_host.answer = row.null(2) ? std::nullopt : std::optional(row.s(2));
            KELUTIL_Main(nullptr, 0, reinterpret_cast<intptr_t>(row.s(1) == "on" ? &file_host : nullptr), 6);
            return;
        }
        const uint32_t op = static_cast<uint32_t>(row.n(0));
        const bool outputs = (op & 0xFFFF) == 0 || (op & 0xFFFF) == 5;
        vltest::Poisoned path(kPathRoom), ext(kKeyRoom);
        std::string path_in = row.s(2), ext_in = row.s(1);
        char* const path_arg = row.null(2) ? nullptr : outputs ? path.data() : path_in.data();
        char* const ext_arg = row.null(1) ? nullptr : (op & 0xFFFF) == 5 ? ext.data() : ext_in.data();
        g_host.count = 0;
        EXPECT_EQ(KELUTIL_PathControl(op, path_arg, ext_arg, row.n(3)), row.n(4));
        if (path_arg == path.data()) expect_written(path, row.s(5));
        if (ext_arg == ext.data()) expect_written(ext, row.s(6));
        ASSERT_EQ(g_host.count, row.s(7).empty() ? 0 : 1);
        if (g_host.count) {
            EXPECT_EQ(g_host.key, row.s(7));
            EXPECT_EQ(g_host.path, reinterpret_cast<VL_WPARAM>(path_arg));
        }
    });
    KELUTIL_Main(nullptr, 0, 0, 6);
    KELUTIL_PathControl(3, nullptr, nullptr, 0);
}

}  // namespace
