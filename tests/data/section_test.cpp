// Section files on disk and sections of texts in memory.  The cases are in
// sections.tsv.

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

// The body of a section of a file, up to the first zero of its block.
std::optional<std::string> file_text(const ScratchFile& f, const char* name) {
    VL_HGLOBAL h = KELUTIL_GetFileSection(f.path(), name);
    return h ? std::optional<std::string>(vltest::take_block(h).c_str()) : std::nullopt;
}

// The body by pointer and length, checked against the copying form, which
// gives the same body with a zero behind it and writes nothing more.
std::optional<std::string> mem_section(const std::string& text, const char* name) {
    uint16_t length = 0xCCCC;
    const char* p = KELUTIL_GetMemSectionPtr(text.c_str(), name, &length);
    const std::size_t copied = p ? length + 1u : 0u;
    vltest::Poisoned copy(copied + 8);
    EXPECT_EQ(KELUTIL_GetMemSection(text.c_str(), name, nullptr), copied);
    EXPECT_EQ(KELUTIL_GetMemSection(text.c_str(), name, copy.data()), copied);
    EXPECT_TRUE(copy.clean_from(copied));
    if (!p) {
        EXPECT_EQ(length, 0xCCCC);
        return std::nullopt;
    }
    EXPECT_GE(p, text.c_str());
    EXPECT_EQ(std::string(copy.data(), copied), std::string(p, length) + '\0');
    return std::string(p, length);
}

TEST(Sections, Cases) {
    ScratchFile f("section");
    for (const auto& c : vltest::cases("data/sections.tsv")) {
        if (c.kind == "filename") continue;  // FileSectionFilename.Store
        SCOPED_TRACE(c.kind + ": " + c.what);
        const std::string text = c.text(0).value();
        if (c.kind == "file") {
            f.write(text);
            EXPECT_EQ(file_text(f, c.c_str(1)), c.text(2));
        } else if (c.kind == "mem") {
            EXPECT_EQ(mem_section(text, c.c_str(1)), c.text(2));
        } else {
            ASSERT_EQ(c.kind, "entry");
            const auto size = static_cast<uint32_t>(c.number(4));
            vltest::Poisoned out(size + 8);
            EXPECT_EQ(KELUTIL_GetMemSectionEntry(c.c_str(1), c.c_str(2), c.c_str(3), out.data(), size, text.c_str()),
                      c.number(5));
            const std::string want = c.text(6).value();
            EXPECT_EQ(std::string(out.data(), out.untouched_from()), want);
            EXPECT_TRUE(out.clean_from(want.size()));
        }
    }
}

TEST(FileSection, BlockIsBodyPlusOneZeroFilled) {
    const ScratchFile f("block", "a=1\n[One]\nx\n[Three]\nw\n");
    VL_HGLOBAL h = KELUTIL_GetFileSection(f.path(), "Three");
    ASSERT_NE(h, nullptr);
    // The body, then zeros up to its length plus one; Windows may round a
    // block up, and the bytes behind the text are zero too.
    const std::string block = vltest::take_block(h);
    ASSERT_GE(block.size(), 3u);
    EXPECT_EQ(block.substr(0, 3), std::string("w\n\0", 3));
    EXPECT_TRUE(std::all_of(block.begin() + 2, block.end(), [](char c) { return c == 0; }));
#ifndef _WIN32
    EXPECT_EQ(block.size(), 3u);
#endif
}

TEST(FileSection, NameLimits) {
    const std::string n119(119, 'n'), n120(120, 'n');
    const ScratchFile file("names", "[" + n119 + "]\nx\n[" + n120 + "]\ny\n[Z]\nz\n");
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

TEST(MemSection, BodyLimit) {
    const std::string fits = std::string(65533, 'x') + "\n", over = std::string(65535, 'x') + "\n";
    EXPECT_EQ(mem_section("[A]\n" + fits, "A"), fits);
    EXPECT_EQ(mem_section("[A]\n" + over, "A"), std::nullopt);
}

TEST(FileSectionFilename, Store) {
    vltest::each_case("data/sections.tsv", "filename", [](const vltest::Case& c) {
        const char* got = KELUTIL_GetFileSection_Filename(c.c_str(0), static_cast<uint32_t>(c.number(1)));
        EXPECT_EQ(got ? std::optional<std::string>(got) : std::nullopt, c.text(2));
    });
}

// ---- Generated files against a line model ----------------------------------

bool printing(char c) { return static_cast<unsigned char>(c) >= 33 && static_cast<unsigned char>(c) <= 126; }

// A header line: blanks, "[name]", blanks, and a line feed.
struct Header {
    std::size_t start, body;  // where its line starts, and the next one
    std::string name;
};

std::vector<Header> headers_of(const std::string& s) {
    std::vector<Header> out;
    for (std::size_t at = 0, lf; at < s.size() && (lf = s.find('\n', at)) != std::string::npos; at = lf + 1) {
        std::size_t i = at;
        while (i < lf && !printing(s[i])) ++i;
        const std::size_t close = s.find(']', i);
        if (i == lf || s[i] != '[' || close > lf || std::any_of(&s[close + 1], &s[lf], printing)) continue;
        out.push_back({at, lf + 1, s.substr(i + 1, close - i - 1)});
    }
    return out;
}

std::string collapse(const std::string& name) {
    std::string out;
    for (char c : name)
        if (printing(c) || (!out.empty() && out.back() != ' ')) out += printing(c) ? c : ' ';
    return out;
}

bool same_name(const std::string& a, const std::string& b) {
    return std::ranges::equal(a, b,
                              [](unsigned char x, unsigned char y) { return std::toupper(x) == std::toupper(y); });
}

// The file reader stops looking at a byte 255; the body runs to the next
// header, or to the end of the file when that header is the last line.
std::optional<std::string> model_file(const std::string& contents, const std::string& name) {
    const std::string seen = contents.substr(0, contents.find('\xFF'));
    bool found = name.empty();
    std::size_t start = 0, end = contents.size();
    for (const Header& h : headers_of(seen)) {
        if (found) {
            end = h.body < seen.size() ? h.start : contents.size();
            break;
        }
        if (same_name(h.name, name)) {
            found = true;
            start = h.body;
        }
    }
    if (!found || end <= start) return std::nullopt;
    return std::string(contents.substr(start, end - start).c_str());
}

// The memory reader collapses blanks in names; the body runs to the next
// header, or to the last line feed.
std::optional<std::string> model_mem(const std::string& text, const std::string& name) {
    const auto headers = headers_of(text);
    const auto h = std::ranges::find_if(headers, [&](const Header& h) { return same_name(collapse(h.name), name); });
    if (h == headers.end()) return std::nullopt;
    const std::size_t end = h + 1 != headers.end() ? (h + 1)->start : text.rfind('\n') + 1;
    return text.substr(h->body, end - h->body);
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
            s += std::string("[") + kHeads[rng() % 4] + "]";
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
            EXPECT_EQ(file_text(f, name), model_file(doc, name));
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
            EXPECT_EQ(file_text(f, name), model_file(doc, name));
        }
    }
}

}  // namespace
