// Rows of the file dialogs' data files.  Their fields are full of paths,
// so a backslash is plain text; "{N*c}" stands for N copies of c, "(null)"
// for no text at all, and a field left out at the end of a row for an
// empty text.  Their expected values were worked out by hand from what the
// entries' comments in vlcore.h and filedlg.h promise.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "support.h"
#include "vlcore.h"

namespace filedlg_test {

class Row {
  public:
    explicit Row(const std::vector<std::string>& raw) {
        for (const std::string& field : raw) {
            std::string text;
            for (std::size_t at = 0; at < field.size(); ++at) {
                const std::size_t star = field.find('*', at);
                if (field[at] == '{' && star < field.size() - 2 && field[star + 2] == '}') {
                    text.append(std::stoul(field.substr(at + 1, star - at - 1)), field[star + 1]);
                    at = star + 2;
                } else {
                    text += field[at];
                }
            }
            fields_.push_back(field == "(null)" ? std::nullopt : std::optional(text));
        }
    }
    // The field as a text for an entry: null for "(null)".
    const char* c(std::size_t i) const { return i >= fields_.size() ? "" : fields_[i] ? fields_[i]->c_str() : nullptr; }
    std::string s(std::size_t i) const { return c(i) ? c(i) : ""; }
    bool null(std::size_t i) const { return !c(i); }
    int32_t n(std::size_t i) const { return static_cast<int32_t>(std::stoll(s(i), nullptr, 0)); }

  private:
    std::vector<std::optional<std::string>> fields_;
};

// What an entry wrote into a poisoned buffer: `expected`, or nothing at all
// for "(untouched)".
inline void expect_written(const vltest::Poisoned& buffer, const std::string& expected) {
    if (expected == "(untouched)") {
        EXPECT_TRUE(buffer.clean_from(0)) << "written: " << buffer.text();
        return;
    }
    EXPECT_EQ(buffer.text(), expected);
    EXPECT_TRUE(buffer.clean_from(expected.size() + 1)) << "written past the text";
}

// Runs `check` on every row of `file` (relative to tests/), each failure
// naming its row.
template <class Check>
void each_row(const char* file, Check check) {
    const vltest::DataTable table(file);
    EXPECT_GT(table.size(), 0u) << file;
    for (std::size_t i = 0; i < table.size(); ++i) {
        SCOPED_TRACE(vltest::row_label(file, i, table.row(i)));
        check(Row(table.row(i)));
    }
}

// The dialogs' state set back through the entries alone: no registry
// rows, no host, a zero option block, the save options and the
// multiple-file list as they start.
inline void reset_through_entries() {
    KELUTIL_PathControl(3, nullptr, nullptr, 0);
    KELUTIL_Main(nullptr, 0, 0, 6);
    VL_FILE_DIALOG_OPTIONS zero{};
    KELUTIL_FileDialog(nullptr, reinterpret_cast<char*>(&zero), nullptr, 8);
    KELUTIL_FileSaveAs(nullptr, nullptr, nullptr, 1280);
    char on[] = "\x01";
    KELUTIL_FileSaveAs(nullptr, on, nullptr, 1536);
    KELUTIL_MultiFile(nullptr, nullptr, 0, 0);
}

}  // namespace filedlg_test
