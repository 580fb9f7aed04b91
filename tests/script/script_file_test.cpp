// The script window's files: New, Open, Save, Save As through the menu and
// the host's settings, round trips of the text, and files that can't be
// read or written.

#include <cstdio>
#include <fstream>
#include <iterator>

#include "script_window_support.h"

namespace {

using namespace scripttest;

constexpr char kOpenCommand[] = "Run.Section(File.VLX,ScriptOpen);";
constexpr char kSaveAsCommand[] = "Run.Section(File.VLX,ScriptSaveAs);";

std::string temp_path(const std::string& leaf) {
    char dir[MAX_PATH] = {};
    GetTempPathA(MAX_PATH, dir);
    return std::string(dir) + "vlcore_script_" + std::to_string(GetCurrentProcessId()) + "_" + leaf;
}

void write_file(const std::string& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::string read_file(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

class ScriptFileTest : public ScriptWindowTest {
  protected:
    void setting(const std::string& s) {
        EXPECT_EQ(KelText(nullptr, reinterpret_cast<intptr_t>(window_), reinterpret_cast<intptr_t>(s.c_str()), 2), 0);
    }
    void TearDown() override {
        for (const std::string& p : files_) std::remove(p.c_str());
        ScriptWindowTest::TearDown();
    }
    std::string file(const std::string& leaf) {
        files_.push_back(temp_path(leaf));
        return files_.back();
    }
    std::vector<std::string> files_;
};

// Open and Save by the host's settings bring a file back byte for byte.
TEST_F(ScriptFileTest, RoundTrips) {
    struct Row {
        const char* name;
        std::string bytes, shown;
    };
    const Row rows[] = {
        {"empty", "", ""},
        {"nine bytes", "x=1;y=2;\n", "x=1;y=2;\r\n"},
        {"nine bytes, no line feed", "123456789", "123456789"},
        {"CR LF", "a=1;\r\nb=2;\r\nc=a+b;\r\n", "a=1;\r\nb=2;\r\nc=a+b;\r\n"},
        {"LF only", "a=1;\nb=2;\nc=a+b;\n", "a=1;\r\nb=2;\r\nc=a+b;\r\n"},
        {"long", std::string(20000, 'q') + "\r\n", std::string(20000, 'q') + "\r\n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const std::string in = file("in.txt"), out = file("out.txt");
        write_file(in, row.bytes);
        set_text("old text");
        setting("O " + in);
        EXPECT_EQ(text(), row.shown);
        EXPECT_EQ(file_name(), in);
        EXPECT_EQ(word(kPosModified), 0);
        setting("S " + out);
        EXPECT_EQ(read_file(out), row.bytes);
        EXPECT_EQ(file_name(), out);
        EXPECT_EQ(word(kPosModified), 0);
    }
    EXPECT_TRUE(boxes_.seen.empty());
    EXPECT_TRUE(log_.executed.empty());
}

// Lines typed into a file with line feeds alone are written with line
// feeds alone.
TEST_F(ScriptFileTest, TypedLinesKeepTheFilesLineEnds) {
    const std::string path = file("lf.txt");
    write_file(path, "a=1;\n");
    setting("O " + path);
    caret(static_cast<int>(text().size()));
    command(571);  // a plain editor for the moment
    type("b=2;\r");
    EXPECT_EQ(word(kPosModified), 1);
    command(505);
    EXPECT_EQ(read_file(path), "a=1;\nb=2;\n");
    EXPECT_EQ(word(kPosModified), 0);
}

TEST_F(ScriptFileTest, MenuSaveUsesTheNameOfTheLastSave) {
    const std::string path = file("named.txt");
    type("x=1;");
    setting("S " + path);
    type("y");
    command(505);
    EXPECT_EQ(read_file(path), "x=1;y");
    EXPECT_TRUE(log_.executed.empty());
}

TEST_F(ScriptFileTest, SaveWithoutANameAsksTheHost) {
    type("x");
    command(505);
    ASSERT_EQ(log_.executed.size(), 1u);
    EXPECT_EQ(log_.executed[0], kSaveAsCommand);
    command(506);
    ASSERT_EQ(log_.executed.size(), 2u);
    EXPECT_EQ(log_.executed[1], kSaveAsCommand);
    EXPECT_EQ(file_name(), "<none>");
}

// The host's script answers Save As with setting S and a name; meanwhile
// the host's window takes no input, and a second Save As from the menu
// does nothing.
TEST_F(ScriptFileTest, HostAnswersSaveAsWithAName) {
    const std::string path = file("chosen.txt");
    bool owner_enabled = true;
    log_.during = [&](const std::string& command_text) {
        if (command_text != kSaveAsCommand) return;
        owner_enabled = IsWindowEnabled(owner_) != FALSE;
        command(506);
        setting("S " + path);
    };
    type("z=26;");
    command(506);
    log_.during = nullptr;
    EXPECT_EQ(log_.executed.size(), 1u);
    EXPECT_FALSE(owner_enabled);
    EXPECT_TRUE(IsWindowEnabled(owner_));
    EXPECT_EQ(read_file(path), "z=26;");
    EXPECT_EQ(file_name(), path);
    EXPECT_EQ(word(kPosModified), 0);
}

TEST_F(ScriptFileTest, OpenWithoutANameAsksTheHost) {
    const std::string path = file("open.txt");
    write_file(path, "opened;\r\n");
    log_.during = [&](const std::string& command_text) {
        if (command_text != kOpenCommand) return;
        command(502);  // busy: nothing more goes to the host
        setting("O " + path);
    };
    command(502);
    log_.during = nullptr;
    ASSERT_EQ(log_.executed.size(), 1u);
    EXPECT_EQ(log_.executed[0], kOpenCommand);
    EXPECT_EQ(text(), "opened;\r\n");
    EXPECT_EQ(file_name(), path);
}

TEST_F(ScriptFileTest, OpenWithoutANameAsksAboutUnsavedTextFirst) {
    type("unsaved");
    boxes_.yes_no = IDNO;
    command(502);
    ASSERT_EQ(boxes_.seen.size(), 1u);
    EXPECT_EQ(boxes_.seen[0].text, "Save Changes? ");
    EXPECT_EQ(word(kPosModified), 0);
    ASSERT_EQ(log_.executed.size(), 1u);
    EXPECT_EQ(log_.executed[0], kOpenCommand);
}

TEST_F(ScriptFileTest, NewAsksFromTheMenuNotFromTheHost) {
    const std::string path = file("new.txt");
    type("keep me");
    setting("S " + path);
    type("!");
    boxes_.yes_no = IDYES;
    command(500);
    ASSERT_EQ(boxes_.seen.size(), 1u);
    EXPECT_EQ(read_file(path), "keep me!");  // Yes saved under the known name
    EXPECT_EQ(text(), "");
    EXPECT_EQ(file_name(), "<none>");
    type("again");
    setting("N");
    EXPECT_EQ(boxes_.seen.size(), 1u);
    EXPECT_EQ(text(), "");
    EXPECT_EQ(word(kPosModified), 0);
}

TEST_F(ScriptFileTest, NoAnswerDropsTheMarkOnly) {
    type("draft");
    boxes_.yes_no = IDNO;
    command(500);
    EXPECT_EQ(boxes_.seen.size(), 1u);
    EXPECT_EQ(text(), "");
    EXPECT_TRUE(log_.executed.empty());
}

// A file that can't be read: no message, the text stays, the new name
// stays.
TEST_F(ScriptFileTest, UnreadableFileKeepsTheText) {
    type("precious");
    const std::string missing = temp_path("no_such_dir\\missing.txt");
    setting("O " + missing);
    EXPECT_EQ(text(), "precious");
    EXPECT_EQ(file_name(), missing);
    EXPECT_TRUE(boxes_.seen.empty());
}

// A file that can't be written: no message, the host is asked for another
// name, the text and the name stay.
TEST_F(ScriptFileTest, UnwritableFileGoesToSaveAs) {
    type("precious");
    const std::string bad = temp_path("no_such_dir\\out.txt");
    setting("S " + bad);
    ASSERT_EQ(log_.executed.size(), 1u);
    EXPECT_EQ(log_.executed[0], kSaveAsCommand);
    EXPECT_EQ(text(), "precious");
    EXPECT_EQ(file_name(), bad);
    EXPECT_EQ(word(kPosModified), 1);
    EXPECT_TRUE(boxes_.seen.empty());
}

// A file larger than the window takes is refused with a message; the
// window keeps its text and its name.
TEST_F(ScriptFileTest, TooLargeFileIsRefused) {
    const std::string small = file("small.txt"), large = file("large.txt");
    write_file(small, "small;\r\n");
    setting("O " + small);
    write_file(large, std::string(40000, 'L'));
    setting("O " + large);
    EXPECT_EQ(text(), "small;\r\n");
    EXPECT_EQ(file_name(), small);
    ASSERT_EQ(boxes_.seen.size(), 1u);
    EXPECT_EQ(boxes_.seen[0].text, "The file is too large for the script window.");
    // Exactly the largest size is taken.
    write_file(large, std::string(32767, 'L'));
    setting("O " + large);
    EXPECT_EQ(text().size(), 32767u);
    EXPECT_EQ(boxes_.seen.size(), 1u);
}

TEST_F(ScriptFileTest, NameLongerThanTheBlockIsCut) {
    const std::string name(300, 'n');
    setting("O " + name);
    EXPECT_EQ(file_name(), name.substr(0, 265));
}

TEST_F(ScriptFileTest, HostErrorDuringAFileCommandChangesNothing) {
    log_.answer = 1;
    type("x");
    command(506);
    ASSERT_EQ(log_.executed.size(), 1u);
    EXPECT_EQ(text(), "x");  // the answer to a host command doesn't count
    EXPECT_TRUE(IsWindowEnabled(owner_));
}

}  // namespace
