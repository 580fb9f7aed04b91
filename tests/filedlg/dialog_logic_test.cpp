// What the file dialogs' hooks decide without the window system: comments
// read from real files, the Option button's names, the separators, the
// read-only labels and paths joined from a dialog's lists.

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "filedlg/dialogs.h"
#include "filedlg_rows.h"
#include "support.h"

namespace {

using namespace vl::filedlg;
using filedlg_test::Row;
namespace fs = std::filesystem;

class Comments : public ::testing::Test {
  protected:
    void SetUp() override {
        dir_ = fs::temp_directory_path() /
               ("vlcore_comment_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()));
        fs::create_directories(dir_);
    }
    void TearDown() override {
        std::error_code ignored;
        fs::remove_all(dir_, ignored);
    }
    std::string write(const std::string& bytes) {
        const fs::path file = dir_ / ("f" + std::to_string(count_++) + ".dat");
        std::ofstream(file, std::ios::binary) << bytes;
        return file.string();
    }
    fs::path dir_;
    int count_ = 0;
};

TEST_F(Comments, FromRealFiles) {
    filedlg_test::each_row("filedlg/file_comment.tsv", [this](const Row& row) {
        const std::string path =
            row.s(0) == "(none)" ? (dir_ / "missing.dat").string() : write(vltest::unescape(row.s(0)));
        vltest::Poisoned out(kHeadRoom + 8);
        const std::string expected = vltest::unescape(row.s(1));
        EXPECT_EQ(ReadFileComment(path.c_str(), std::span<char>(out.data(), kHeadRoom)), !expected.empty());
        filedlg_test::expect_written(out, expected);
    });
}

// A comment longer than the room is cut; room for nothing writes nothing;
// a directory or no path reads nothing.
TEST_F(Comments, RoomAndBadPaths) {
    const std::string path = write("#abcdef\n");
    for (const auto& [room, expected] :
         std::vector<std::pair<std::size_t, std::string>>{{4, "abc"}, {7, "abcdef"}, {8, "abcdef"}, {1, ""}}) {
        SCOPED_TRACE("room " + std::to_string(room));
        vltest::Poisoned out(room + 4);
        ReadFileComment(path.c_str(), std::span<char>(out.data(), room));
        filedlg_test::expect_written(out, expected);
    }
    vltest::Poisoned none(4);
    EXPECT_FALSE(ReadFileComment(path.c_str(), std::span<char>(none.data(), 0)));
    EXPECT_TRUE(none.clean_from(0));
    char out[kHeadRoom];
    EXPECT_FALSE(ReadFileComment(dir_.string().c_str(), out));
    EXPECT_STREQ(out, "");
    EXPECT_FALSE(ReadFileComment(nullptr, out));
    EXPECT_FALSE(ReadFileComment("", out));
}

TEST(DialogTables, OptionNames) {
    struct Case {
        const char* name;
        int32_t action;
        const char* after;
    };
    for (const Case& c :
         {Case{"IMPASCII", 101, "IMPASCII"}, Case{"impascii", 101, "IMPASCII"}, Case{"ExpAscii", 3006, "EXPASCII"},
          Case{"", 0, ""}, Case{"IMPASCII ", 0, "IMPASCII "}, Case{"other", 0, "OTHER"}}) {
        SCOPED_TRACE(c.name);
        std::string name = c.name;
        EXPECT_EQ(OptionActionOf(name.data()), c.action);
        EXPECT_EQ(name, c.after);
    }
    EXPECT_EQ(OptionActionOf(nullptr), 0);
}

TEST(DialogTables, Separators) {
    struct Case {
        const char* value;
        int32_t index;
    };
    for (const Case& c : {Case{"\t", 0}, Case{",", 1}, Case{" ", 2}, Case{",\t", 3}, Case{", ", 4}, Case{"TAB", -1},
                          Case{"", -1}, Case{";", -1}}) {
        SCOPED_TRACE(std::string("<") + c.value + ">");
        EXPECT_EQ(SeparatorIndex(c.value), c.index);
    }
    EXPECT_EQ(SeparatorIndex(nullptr), -1);
    EXPECT_STREQ(kSeparators[3].shown, ",TAB");
}

TEST(DialogTables, ReadOnlyLabels) {
    struct Case {
        const char* ext;
        int32_t label;
    };
    for (const Case& c : {Case{".VLP", 1126}, Case{".vld", 1126}, Case{".XLS", 1125}, Case{".xls", 1125},
                          Case{".DAT", 0}, Case{"", 0}, Case{".VL", 0}, Case{"VLP", 0}}) {
        SCOPED_TRACE(c.ext);
        EXPECT_EQ(ReadOnlyLabelOf(c.ext), c.label);
    }
    EXPECT_EQ(ReadOnlyLabelOf(nullptr), 0);
}

// A directory ending in a backslash, such as a drive root, gets no second
// one; a path that doesn't fit writes nothing.
TEST(DialogTables, JoinPath) {
    struct Case {
        const char* dir;
        const char* name;
        std::size_t room;
        const char* out;
    };
    for (const Case& c :
         {Case{"C:\\", "A.DAT", 20, "C:\\A.DAT"}, Case{"C:\\DATA", "A.DAT", 20, "C:\\DATA\\A.DAT"},
          Case{"C:\\DATA\\", "A.DAT", 20, "C:\\DATA\\A.DAT"}, Case{"C:\\DATA", "A.DAT", 14, "C:\\DATA\\A.DAT"},
          Case{"C:\\DATA", "A.DAT", 13, ""}, Case{"", "A", 4, "\\A"}}) {
        SCOPED_TRACE(std::string(c.dir) + " + " + c.name + " in " + std::to_string(c.room));
        vltest::Poisoned out(c.room + 4);
        EXPECT_EQ(JoinPath(c.dir, c.name, std::span<char>(out.data(), c.room)), *c.out != '\0');
        filedlg_test::expect_written(out, c.out);
    }
}

}  // namespace
