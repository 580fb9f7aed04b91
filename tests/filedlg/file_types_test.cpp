// The file type table and fitting file names to an extension, as the host
// sees them.

#include <string>

#include "filedlg_rows.h"
#include "support.h"
#include "vlcore.h"

namespace {

using filedlg_test::Row;

void clear_table() {
    for (int32_t r = 1; r <= 25; ++r) {
        KELUTIL_Fdlog_Str(nullptr, r, 19);
        KELUTIL_Fdlog_Str(nullptr, r, 22);
    }
    KELUTIL_Fdlog_Str(nullptr, 1, 17);
}

TEST(FileTypes, Operations) {
    clear_table();
    filedlg_test::each_row("filedlg/file_types.tsv", [](const Row& row) {
        const uint32_t op = static_cast<uint32_t>(row.n(0));
        if (op == 19 || op == 22 || op == 23) {
            std::string text = row.s(3);
            EXPECT_EQ(KELUTIL_Fdlog_Str(row.null(3) ? nullptr : text.data(), row.n(1), op), row.n(2));
            return;
        }
        vltest::Poisoned out(op == 21 ? 5 : 120);  // the whole room of the text
        EXPECT_EQ(KELUTIL_Fdlog_Str(out.data(), row.n(1), op), row.n(2));
        filedlg_test::expect_written(out, op == 20 || op == 21 ? row.s(3) : "(untouched)");
    });
    clear_table();
}

TEST(CheckExtension, FitsANameToAnExtension) {
    filedlg_test::each_row("filedlg/check_extension.tsv", [](const Row& row) {
        const std::string path = row.s(0), ext = row.s(1), result = row.s(3);
        auto buffer = vltest::writable(path, ext.size() + 8);
        check_extension(buffer.data(), ext.c_str(), row.n(2));
        EXPECT_EQ(std::string(buffer.data()), result);
        const std::size_t end = std::max(result.size(), path.size()) + 1;
        for (std::size_t i = end; i < buffer.size(); ++i)
            EXPECT_EQ(static_cast<unsigned char>(buffer[i]), vltest::kPoison) << "byte " << i << " written";
    });
}

TEST(CheckExtension, NullTextsAreLeftAlone) {
    check_extension(nullptr, ".DAT", 1);
    char name[] = "A.TXT";
    check_extension(name, nullptr, 1);
    EXPECT_STREQ(name, "A.TXT");
}

}  // namespace
