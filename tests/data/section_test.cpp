// Section files on disk and sections of texts in memory.

#include <algorithm>
#include <cctype>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "data/data_support.h"
#include "support.h"
#include "vlcore.h"

namespace {

using vltest::ScratchFile;

// The sample of the format: a text in front of the first header, a false
// header inside section One, and a last section.
const std::string kSample =
    "a=1\n[One]\nx = 5 ; five\ny =\n\n[Two] tail\nz\n[Three]\nw\n";

std::optional<std::string> file_section(const std::string& contents, const char* name) {
    ScratchFile f("section", contents);
    VL_HGLOBAL h = KELUTIL_GetFileSection(f.path(), name);
    if (!h) return std::nullopt;
    std::string block = vltest::take_block(h);
    return block;
}

// The block: body, then zeros up to body length plus one.
std::optional<std::string> file_text(const std::string& contents, const char* name) {
    auto block = file_section(contents, name);
    if (!block) return std::nullopt;
    return std::string(block->c_str());
}

std::optional<std::string> mem_section(const std::string& text, const char* name) {
    uint16_t length = 0xCCCC;
    const char* p = KELUTIL_GetMemSectionPtr(text.c_str(), name, &length);
    if (!p) {
        EXPECT_EQ(length, 0xCCCC);
        return std::nullopt;
    }
    EXPECT_GE(p, text.c_str());
    return std::string(p, length);
}

struct SectionCase {
    const char* what;
    std::string contents;
    const char* name;
    std::optional<std::string> body;
};

TEST(FileSection, Sample) {
    const SectionCase cases[] = {
        {"false header stays in the body", kSample, "one", "x = 5 ; five\ny =\n\n[Two] tail\nz\n"},
        {"empty name: the text in front", kSample, "", "a=1\n"},
        {"false header is no section", kSample, "Two", std::nullopt},
        {"last section", kSample, "Three", "w\n"},
        {"absent section", kSample, "Four", std::nullopt},
        {"last line without line feed", "[Three]\nw", "Three", "w"},
        {"whole file", kSample, nullptr, kSample},
        {"whole empty file", "", nullptr, ""},
        {"nothing in front of the first header", "[A]\nx\n", "", std::nullopt},
        {"empty body", "[A]\n[B]\nx\n", "A", std::nullopt},
        {"header as the last line runs the section on", "[A]\nx\n[B]\n", "A", "x\n[B]\n"},
        {"header with no line feed at the end", "[A]\nx\n[B]", "A", "x\n[B]"},
        {"header as the last line is no section", "[A]\nx\n[B]\n", "B", std::nullopt},
        {"blanks around the header", "  \t[A] \t\r\nx\r\n \t[B]\r\ny\r\n", "a", "x\r\n"},
        {"name bytes kept unchanged", "[ A ]\nx\n", " a ", "x\n"},
        {"name spans a line feed", "[A\nB]\nx\n", "A\nB", "x\n"},
        {"bracket behind text is no header", "q [A]\nx\n", "A", std::nullopt},
        {"byte 255 ends the scan, the body runs to the size", "[A]\nx\xFFy\n[B]\nz\n", "A",
         std::string("x\xFFy\n[B]\nz\n")},
        {"byte 255 behind the next header", "[A]\nx\n[B]\n\xFF", "A", std::string("x\n[B]\n\xFF")},
        {"byte 255 inside a name", "[A]\nx\n[B\xFF]\ny\n", "A", std::string("x\n[B\xFF]\ny\n")},
        {"section found behind a byte 255 is not", "\xFF[A]\nx\n", "A", std::nullopt},
        {"first of two equal headers", "[A]\n1\n[A]\n2\n", "A", "1\n"},
        {"text ends at a zero byte", std::string("[A]\nx\0y\n", 8), "A", "x"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(file_text(c.contents, c.name), c.body);
    }
}

TEST(FileSection, BlockIsBodyPlusOneZeroFilled) {
    auto block = file_section(kSample, "Three");
    ASSERT_TRUE(block);
    // Windows may round a block up; the bytes behind the text are zero.
    ASSERT_GE(block->size(), 3u);
    EXPECT_EQ(block->substr(0, 3), std::string("w\n\0", 3));
    EXPECT_TRUE(std::all_of(block->begin() + 2, block->end(), [](char c) { return c == 0; }));
#ifndef _WIN32
    EXPECT_EQ(block->size(), 3u);
#endif
}

TEST(FileSection, NameLimits) {
    const std::string n119(119, 'n'), n120(120, 'n');
    const std::string file = "[" + n119 + "]\nx\n[" + n120 + "]\ny\n[Z]\nz\n";
    EXPECT_EQ(file_text(file, n119.c_str()), "x\n");
    // A longer name is beyond the format: it matches nothing, but its header
    // still ends the section in front of it.
    EXPECT_EQ(file_text(file, n120.c_str()), std::nullopt);
    EXPECT_EQ(file_text(file, "Z"), "z\n");
}

TEST(FileSection, MissingFile) {
    EXPECT_EQ(KELUTIL_GetFileSection("/no/such/dir/file.ini", "A"), nullptr);
    EXPECT_EQ(KELUTIL_GetFileSection("/no/such/dir/file.ini", nullptr), nullptr);
}

TEST(MemSection, Sample) {
    const SectionCase cases[] = {
        {"false header stays in the body", kSample, "ONE", "x = 5 ; five\ny =\n\n[Two] tail\nz\n"},
        {"empty name finds no text in front", kSample, "", std::nullopt},
        {"empty name finds []", "x\n[]\ny\n", "", "y\n"},
        {"blank name is empty too", "[ \t]\ny\n", "", "y\n"},
        {"last section", kSample, "three", "w\n"},
        {"last line without line feed", "[Three]\nw", "Three", ""},
        {"header as the last line still ends it", "[A]\nx\n[B]\n", "A", "x\n"},
        {"header without line feed is no header", "[A]\nx\n[B]", "A", "x\n"},
        {"blanks collapse in names", "[  my \t  name]\nv\n", "my name", "v\n"},
        {"blank in front of ] leaves one space", "[my name \t]\nv\n", "my name ", "v\n"},
        {"blank in front of ] is needed", "[my name \t]\nv\n", "my name", std::nullopt},
        {"line feed inside a name is a blank", "[my\nname]\nv\n", "my name", "v\n"},
        {"byte 255 is a blank", "[A]\nx\xFFy\n[B]\n", "A", std::string("x\xFFy\n")},
        {"CR LF lines", "[A]\r\nx\r\n[B]\r\n", "A", "x\r\n"},
        {"empty text", "", "A", std::nullopt},
        {"empty body", "[A]\n[B]\n", "A", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(mem_section(c.contents, c.name), c.body);
    }
}

TEST(MemSection, CopyAndSize) {
    EXPECT_EQ(KELUTIL_GetMemSection(kSample.c_str(), "Three", nullptr), 3);
    EXPECT_EQ(KELUTIL_GetMemSection(kSample.c_str(), "Four", nullptr), 0);
    vltest::Poisoned dst(8);
    EXPECT_EQ(KELUTIL_GetMemSection(kSample.c_str(), "Three", dst.data()), 3);
    EXPECT_EQ(std::string(dst.data(), 3), std::string("w\n\0", 3));
    EXPECT_TRUE(dst.clean_from(3));
    vltest::Poisoned empty(4);
    EXPECT_EQ(KELUTIL_GetMemSection("[A]\n[B]\n", "A", empty.data()), 1);
    EXPECT_EQ(empty.data()[0], '\0');
    EXPECT_TRUE(empty.clean_from(1));
}

TEST(MemSection, BodyLimit) {
    const std::string fits = "[A]\n" + std::string(65533, 'x') + "\n";
    const std::string over = "[A]\n" + std::string(65535, 'x') + "\n";
    uint16_t length = 0;
    EXPECT_NE(KELUTIL_GetMemSectionPtr(fits.c_str(), "A", &length), nullptr);
    EXPECT_EQ(length, 65534);
    EXPECT_EQ(KELUTIL_GetMemSection(fits.c_str(), "A", nullptr), 65535);
    length = 7;
    EXPECT_EQ(KELUTIL_GetMemSectionPtr(over.c_str(), "A", &length), nullptr);
    EXPECT_EQ(length, 7);
    EXPECT_EQ(KELUTIL_GetMemSection(over.c_str(), "A", nullptr), 0);
}

// ---- Entries ----------------------------------------------------------------

struct EntryCase {
    const char* what;
    const char* key;
    uint32_t size;
    int32_t result;
    std::string out;  // the bytes written, terminators included; empty: none
};

void check_entry(const std::string& text, const char* section, const EntryCase& c) {
    SCOPED_TRACE(c.what);
    vltest::Poisoned out(c.size + 8);
    EXPECT_EQ(KELUTIL_GetMemSectionEntry(section, c.key, "dflt", out.data(), c.size, text.c_str()), c.result);
    EXPECT_EQ(std::string(out.data(), out.untouched_from()), c.out);
    EXPECT_TRUE(out.clean_from(c.out.size()));
}

TEST(MemSectionEntry, Sample) {
    using namespace std::string_literals;
    const EntryCase cases[] = {
        {"value with a comment", "x", 16, 0, "5\0"s},
        {"key case ignored", "X", 16, 0, "5\0"s},
        {"empty value is no default", "y", 16, 0, "\0"s},
        {"absent key gives the default", "q", 16, 0, "dflt\0"s},
        {"key of another section", "a", 16, 0, "dflt\0"s},
        {"the key list", nullptr, 16, 0, "x\0y\0\0"s},
        {"the key list, exact fit", nullptr, 5, 0, "x\0y\0\0"s},
        {"the key list, one byte short", nullptr, 4, 0, "x\0\0"s},
        {"the key list, empty room", nullptr, 0, 0, ""},
        {"default, exact fit", "q", 5, 0, "dflt\0"s},
        {"default, one byte short", "q", 4, 1, ""},
        {"value, exact fit", "x", 2, 0, "5\0"s},
        {"value, one byte short", "x", 1, 1, ""},
    };
    for (const auto& c : cases) check_entry(kSample, "One", c);
}

TEST(MemSectionEntry, StateMachine) {
    using namespace std::string_literals;
    const std::string text =
        "[S]\n"
        "  My   Key \t=  two   words  here ; note\n"
        "; old = 1\n"
        "noequals\n"
        "=lead\n"
        "== 3\n"
        "k=first\n"
        "k=second\n"
        "semi = a;b\n"
        "tabbed\t=\tv\t\n"
        "crlf = v2\r\n"
        "[T]\n"
        "t = 9\n";
    const EntryCase cases[] = {
        {"blanks collapse in keys and values", "my key", 32, 0, "two words here\0"s},
        {"a ; in key position only drops the text", "old", 32, 0, "1\0"s},
        {"a line with no = is no entry", "noequals", 32, 0, "dflt\0"s},
        {"an = with an empty buffer is skipped", "lead", 32, 0, "dflt\0"s},
        {"first key wins", "k", 32, 0, "first\0"s},
        {"; ends a value", "semi", 32, 0, "a\0"s},
        {"tabs are blanks", "tabbed", 32, 0, "v\0"s},
        {"CR in front of the line feed is cut", "crlf", 32, 0, "v2\0"s},
        {"the next section is outside", "t", 32, 0, "dflt\0"s},
        {"key too long for the buffer never matches", "my key", 6, 0, "dflt\0"s},
    };
    for (const auto& c : cases) check_entry(text, "s", c);
    // The list: "=lead" and "== 3" have no '=' behind a key, so no entry.
    vltest::Poisoned out(80);
    EXPECT_EQ(KELUTIL_GetMemSectionEntry("S", nullptr, "", out.data(), 72, text.c_str()), 0);
    const std::string want = "My Key\0old\0k\0k\0semi\0tabbed\0crlf\0\0"s;
    EXPECT_EQ(std::string(out.data(), want.size()), want);
    EXPECT_TRUE(out.clean_from(want.size()));
}

TEST(MemSectionEntry, ListCutsLongKeys) {
    using namespace std::string_literals;
    const std::string text = "[S]\nabcdef=1\ngh=2\n";
    struct Case {
        uint32_t size;
        std::string out;
    };
    const Case cases[] = {
        {11, "abcdef\0gh\0\0"s},   // exact fit
        {10, "abcdef\0g\0\0"s},    // one short: the last key is cut
        {8, "abcdef\0\0"s},        // 1 left after the first key: over
        {7, "abcde\0\0"s},         // the first key leaves room for the close
        {3, "a\0\0"s},
        {2, "\0"s},
        {1, "\0"s},
        {0, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.size);
        vltest::Poisoned out(c.size + 4);
        EXPECT_EQ(KELUTIL_GetMemSectionEntry("S", nullptr, nullptr, out.data(), c.size, text.c_str()), 0);
        EXPECT_EQ(std::string(out.data(), c.out.size()), c.out);
        EXPECT_TRUE(out.clean_from(c.out.size()));
    }
}

TEST(MemSectionEntry, MissingSectionWritesNothing) {
    vltest::Poisoned out(8);
    EXPECT_EQ(KELUTIL_GetMemSectionEntry("None", "x", "d", out.data(), 8, kSample.c_str()), 1);
    EXPECT_TRUE(out.clean_from(0));
}

TEST(FileSectionFilename, Store) {
    EXPECT_STREQ(KELUTIL_GetFileSection_Filename("C:\\A\\", 0), "C:\\A\\");
    EXPECT_STREQ(KELUTIL_GetFileSection_Filename("b.txt", 1), "C:\\A\\b.txt");
    EXPECT_STREQ(KELUTIL_GetFileSection_Filename(nullptr, 3), "C:\\A\\b.txt");
    EXPECT_STREQ(KELUTIL_GetFileSection_Filename(nullptr, 2), "C:\\A\\");
    EXPECT_EQ(KELUTIL_GetFileSection_Filename("x", 4), nullptr);
    // 259 characters fit, 260 do not; what was stored stays.
    const std::string base = "C:\\A\\";
    const std::string fits(259 - base.size(), 'f'), over(260 - base.size(), 'o');
    EXPECT_STREQ(KELUTIL_GetFileSection_Filename(fits.c_str(), 1), ("C:\\A\\" + fits).c_str());
    EXPECT_EQ(KELUTIL_GetFileSection_Filename(over.c_str(), 1), nullptr);
    EXPECT_STREQ(KELUTIL_GetFileSection_Filename(nullptr, 3), ("C:\\A\\" + fits).c_str());
    EXPECT_EQ(KELUTIL_GetFileSection_Filename(std::string(260, 'b').c_str(), 0), nullptr);
    EXPECT_STREQ(KELUTIL_GetFileSection_Filename(nullptr, 2), "C:\\A\\");
}

// ---- Generated files against a line model ----------------------------------

bool printing(char c) { return static_cast<unsigned char>(c) >= 33 && static_cast<unsigned char>(c) <= 126; }

struct Line {
    std::size_t start, feed;  // feed: position of the line feed, npos for none
};

std::vector<Line> lines_of(const std::string& s) {
    std::vector<Line> out;
    std::size_t at = 0;
    while (at < s.size()) {
        const std::size_t lf = s.find('\n', at);
        out.push_back({at, lf});
        if (lf == std::string::npos) break;
        at = lf + 1;
    }
    return out;
}

// The header name of a line, for lines with no '[' left open.
std::optional<std::string> header_of(const std::string& s, const Line& l) {
    if (l.feed == std::string::npos) return std::nullopt;
    std::size_t i = l.start;
    while (i < l.feed && !printing(s[i])) ++i;
    if (i == l.feed || s[i] != '[') return std::nullopt;
    const std::size_t close = s.find(']', i);
    if (close == std::string::npos || close > l.feed) return std::nullopt;
    for (std::size_t j = close + 1; j < l.feed; ++j)
        if (printing(s[j])) return std::nullopt;
    return s.substr(i + 1, close - i - 1);
}

std::string collapse(const std::string& name) {
    std::string out;
    for (char c : name) {
        if (printing(c))
            out += c;
        else if (!out.empty() && out.back() != ' ')
            out += ' ';
    }
    return out;
}

bool same_name(std::string a, std::string b) {
    auto up = [](std::string& s) {
        for (char& c : s) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    };
    up(a);
    up(b);
    return a == b;
}

std::optional<std::string> model_file(const std::string& contents, const std::string& name) {
    const std::string seen = contents.substr(0, contents.find('\xFF'));
    bool found = name.empty();
    std::size_t start = 0, end = contents.size();
    for (const Line& l : lines_of(seen)) {
        const auto h = header_of(seen, l);
        if (!h) continue;
        if (found) {
            end = l.feed + 1 < seen.size() ? l.start : contents.size();
            break;
        }
        if (same_name(*h, name)) {
            found = true;
            start = l.feed + 1;
        }
    }
    if (!found || end <= start) return std::nullopt;
    return std::string(contents.substr(start, end - start).c_str());
}

std::optional<std::string> model_mem(const std::string& text, const std::string& name) {
    bool found = false;
    std::size_t start = 0, end = 0;
    for (const Line& l : lines_of(text)) {
        const auto h = header_of(text, l);
        if (h && found) return text.substr(start, l.start - start);
        if (h && same_name(collapse(*h), name)) {
            found = true;
            start = end = l.feed + 1;
        } else if (found && l.feed != std::string::npos) {
            end = l.feed + 1;
        }
    }
    if (!found) return std::nullopt;
    return text.substr(start, end - start);
}

std::string generate(std::mt19937& rng) {
    static const char* const kHeads[] = {"A", "b", "C", "my  name"};
    static const char* const kBlanks[] = {"", " ", "\t", " \t "};
    static const char* const kBodies[] = {"k=v", "", "  text here", "x [A] y", "]", "v = 1 ; c"};
    const char* eol = (rng() % 2) ? "\r\n" : "\n";
    std::string s;
    const int lines = 1 + static_cast<int>(rng() % 7);
    for (int i = 0; i < lines; ++i) {
        if (rng() % 2) {
            s += kBlanks[rng() % 4];
            s += "[";
            s += kHeads[rng() % 4];
            s += "]";
            s += kBlanks[rng() % 4];
            if (rng() % 4 == 0) s += "tail";  // a false header
        } else {
            s += kBodies[rng() % 6];
        }
        if (i + 1 < lines || rng() % 3) s += (rng() % 4 == 0) ? "\n" : eol;
    }
    if (rng() % 6 == 0) s.insert(rng() % (s.size() + 1), 1, '\xFF');
    return s;
}

TEST(GeneratedSections, FileAndMemoryReadersFollowTheLineModel) {
    std::mt19937 rng(7);
    const char* const names[] = {"", "A", "B", "c", "my name", "D"};
    ScratchFile f("generated");
    for (int n = 0; n < 400; ++n) {
        const std::string doc = generate(rng);
        f.write(doc);
        for (const char* name : names) {
            SCOPED_TRACE("document <" + doc + "> name <" + name + ">");
            VL_HGLOBAL h = KELUTIL_GetFileSection(f.path(), name);
            const auto got = h ? std::optional<std::string>(vltest::take_block(h).c_str()) : std::nullopt;
            EXPECT_EQ(got, model_file(doc, name));
            EXPECT_EQ(mem_section(doc, name), model_mem(doc, name));
        }
    }
}

TEST(GeneratedSections, LongFilesAcrossReadPieces) {
    // Sections that straddle the reader's buffer boundaries at many offsets.
    std::mt19937 rng(11);
    ScratchFile f("long");
    for (int n = 0; n < 6; ++n) {
        std::string doc;
        while (doc.size() < 600000) doc += generate(rng) + "\n";
        doc += "[Last]\nfinal line\n";
        f.write(doc);
        for (const char* name : {"", "A", "b", "Last"}) {
            SCOPED_TRACE(std::string("name <") + name + ">");
            VL_HGLOBAL h = KELUTIL_GetFileSection(f.path(), name);
            const auto got = h ? std::optional<std::string>(vltest::take_block(h).c_str()) : std::nullopt;
            EXPECT_EQ(got, model_file(doc, name));
        }
    }
}

}  // namespace
