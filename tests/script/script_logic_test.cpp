// The script window's decisions without a window: the Enter key's command,
// settings, tabs, file text and the printed page.

#include <map>
#include <string>

#include "script/script.h"
#include "support.h"

namespace {

using namespace vl::script;

std::string field(const std::string& s) { return s == "<>" ? std::string() : vltest::unescape(s); }

TEST(ScriptEnter, EveryRowOfTheLineTable) {
    const std::map<std::string, EnterAction> actions = {
        {"run", EnterAction::kRunLine}, {"break", EnterAction::kLineBreak}, {"selection", EnterAction::kRunSelection}};
    vltest::for_each_row("script/current_line.tsv", [&](const vltest::DataRow& row) {
        const std::string text = field(row[0]);
        const CurrentLine line = current_line(text, static_cast<uint16_t>(row.n(1)), static_cast<uint16_t>(row.n(2)));
        EXPECT_EQ(line.command, field(row[3]));
        EXPECT_EQ(line.last, row.n(4));
        EXPECT_EQ(line.selection, row.n(5) != 0);
        ASSERT_EQ(actions.count(row[6]), 1u);
        EXPECT_EQ(enter_action(line), actions.at(row[6]));
    });
}

TEST(ScriptEnter, OnlyTheSixCharactersHoldALineOpen) {
    for (int c = -128; c < 256; ++c) {
        const bool open = c == ';' || c == '[' || c == '{' || c == '<' || c == '(' || c == '\n';
        EXPECT_EQ(holds_line_open(c), open) << c;
    }
}

TEST(ScriptSettings, EveryRowOfTheSettingsTable) {
    const std::map<std::string, SettingKind> kinds = {{"none", SettingKind::kNone},
                                                      {"execute", SettingKind::kExecute},
                                                      {"left", SettingKind::kLeftMargin},
                                                      {"top", SettingKind::kTopMargin},
                                                      {"new", SettingKind::kNew},
                                                      {"open", SettingKind::kOpen},
                                                      {"dialog", SettingKind::kPrintDialog},
                                                      {"current", SettingKind::kPrintCurrent},
                                                      {"save", SettingKind::kSave},
                                                      {"columns", SettingKind::kTabColumns},
                                                      {"units", SettingKind::kTabUnits},
                                                      {"caption", SettingKind::kCaption}};
    vltest::for_each_row("script/settings.tsv", [&](const vltest::DataRow& row) {
        const std::string text = field(row[0]);
        const Setting setting = parse_setting(text.c_str());
        ASSERT_EQ(kinds.count(row[1]), 1u);
        EXPECT_EQ(setting.kind, kinds.at(row[1]));
        EXPECT_EQ(setting.number, row.n(2));
        EXPECT_EQ(setting.text, field(row[3]));
    });
}

TEST(ScriptSettings, NullTextAndOverlongCaption) {
    EXPECT_EQ(parse_setting(nullptr).kind, SettingKind::kNone);
    const std::string long_word(200, 'c');
    const Setting caption = parse_setting(("W " + long_word).c_str());
    EXPECT_EQ(caption.kind, SettingKind::kCaption);
    EXPECT_EQ(caption.text, std::string(79, 'c'));
    const Setting save = parse_setting(("S " + long_word).c_str());
    EXPECT_EQ(save.text, long_word);  // the rest is used whole
}

TEST(ScriptTabs, FactorAndStops) {
    struct Row {
        int32_t average, base, factor;
    };
    for (const Row r : {Row{5, 8, 2}, Row{7, 8, 3}, Row{8, 6, 5}, Row{8, 0, 1}, Row{1, 8, 1}, Row{0, 8, 1}}) {
        EXPECT_EQ(tab_factor(r.average, r.base), r.factor) << r.average << "/" << r.base;
    }
    struct Stop {
        int32_t n;
        bool columns;
        int32_t factor, stop;
        uint16_t chars;
    };
    for (const Stop s : {Stop{60, false, 2, 60, 30}, Stop{30, true, 2, 60, 30}, Stop{61, false, 2, 61, 30},
                         Stop{60, false, 0, 60, 60}, Stop{0, true, 3, 0, 0}, Stop{7, false, 8, 7, 0}}) {
        const TabStop t = tab_stop(s.n, s.columns, s.factor);
        EXPECT_EQ(t.stop, s.stop) << s.n << (s.columns ? " columns" : " units") << " factor " << s.factor;
        EXPECT_EQ(t.tab_chars, s.chars) << s.n << (s.columns ? " columns" : " units") << " factor " << s.factor;
    }
}

TEST(ScriptFiles, ReadSize) {
    for (const auto& [size, read] : {std::pair<uint32_t, uint32_t>{0, 32000}, {9, 32000}, {10, 10}, {32767, 32767}})
        EXPECT_EQ(open_read_size(size), read) << size;
}

TEST(ScriptFiles, TextOfTheWindowAndBack) {
    struct Row {
        std::string file, edit;
        bool lf_only;
    };
    const Row rows[] = {
        {"", "", false},
        {"123456789", "123456789", false},
        {"a=1;\r\nb=2;\r\n", "a=1;\r\nb=2;\r\n", false},
        {"a=1;\nb=2;\n", "a=1;\r\nb=2;\r\n", true},
        {"\n\n", "\r\n\r\n", true},
        {"a\r\nb\n", "a\r\nb\n", false},
        {"a\rb", "a\rb", false},
        {std::string("ab\0cd", 5), "ab", false},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(vltest::row_label("file text", 0, {r.file}));
        const EditText text = edit_text_from_file(r.file);
        EXPECT_EQ(text.text, r.edit);
        EXPECT_EQ(text.lf_only, r.lf_only);
        // Every file without a zero byte comes back as it was.
        if (r.file.find('\0') == std::string::npos) {
            EXPECT_EQ(file_text_from_edit(text.text, text.lf_only), r.file);
        }
    }
    // Lines typed into a window whose file had line feeds alone.
    EXPECT_EQ(file_text_from_edit("a\r\nb\r\nc", true), "a\nb\nc");
    EXPECT_EQ(file_text_from_edit("a\r", true), "a\r");
}

TEST(ScriptPrinting, LinesAreCutAt128) {
    for (const std::size_t length : {0u, 1u, 127u, 128u, 129u, 200u}) {
        std::string line;
        for (std::size_t i = 0; i < length; ++i) line += static_cast<char>('a' + i % 26);
        EXPECT_EQ(printed_line(line), line.substr(0, 128)) << length;
    }
}

TEST(ScriptPrinting, TwelvePointFont) {
    for (const auto& [dpi, height] : {std::pair{72, 12}, {96, 16}, {150, 25}, {200, 33}, {300, 50}, {600, 100}, {0, 0}})
        EXPECT_EQ(print_font_height(dpi), height) << dpi;
}

TEST(ScriptPrinting, PageLayout) {
    const PageLayout a = page_layout(50, 2, 30, 15, 3300);
    EXPECT_EQ(a.line_height, 52);
    EXPECT_EQ(a.tab_distance, 450);
    EXPECT_EQ(a.lines_per_page, 3300 / 52 - 1);
    const PageLayout none = page_layout(0, 0, 0, 15, 100);
    EXPECT_EQ(none.line_height, 1);
    EXPECT_EQ(none.lines_per_page, 99);
    const PageLayout tall = page_layout(200, 0, 10, 4, 300);
    EXPECT_EQ(tall.lines_per_page, 1);  // 300 / 200 - 1 is 0: one line a page all the same
}

// A page of 50 lines: the 51st starts a new page at the first position,
// with the blank position 0 above it; a text that fills its last page
// still breaks behind it.
TEST(ScriptPrinting, PagesOfFiftyLines) {
    struct Row {
        int lines, breaks;
    };
    for (const Row r : {Row{0, 0}, Row{1, 0}, Row{49, 0}, Row{50, 1}, Row{51, 1}, Row{100, 2}, Row{120, 2}}) {
        PagePlacer placer(50);
        int breaks = 0;
        for (int line = 0; line < r.lines; ++line) {
            EXPECT_EQ(placer.place(), line % 50 + 1) << "line " << line;
            EXPECT_EQ(placer.y(20), (line % 50 + 1) * 20) << "line " << line;
            breaks += placer.advance() ? 1 : 0;
        }
        EXPECT_EQ(breaks, r.breaks) << r.lines << " lines";
    }
}

}  // namespace
