// The Colour dialog's edits on its working copy, without the dialog: the
// copy in and out, Update, Add, Delete, the chooser's record, and what
// reaches the settings file and the palette after an OK.

#include <string>
#include <vector>

#include "colour/colour.h"
#include "colour/colour_support.h"
#include "data/data_support.h"

namespace {

using namespace vltest;
using namespace vltest::colour_op;
namespace vc = vl::colour;

std::string work_names() {
    std::string out;
    for (int32_t i = 0; i < vc::color_work.count; ++i)
        out += (i ? "|" : "") + std::string(vc::color_work.rows[static_cast<std::size_t>(i)].name.data());
    return out;
}

std::vector<ColourRow> work_rows() {
    std::vector<ColourRow> out;
    for (int32_t i = 0; i < vc::color_work.count; ++i) {
        const auto& row = vc::color_work.rows[static_cast<std::size_t>(i)];
        out.push_back({row.name.data(), row.rgb});
    }
    return out;
}

bool row_is_empty(const vc::color_entry& row) {
    for (char c : row.name)
        if (c != '\0') return false;
    return row.rgb == 0;
}

class ColourEditor : public vltest::ColourTable {
  protected:
    void SetUp() override {
        ColourTable::SetUp();
        vc::load_work();
    }
    void TearDown() override {
        vc::color_work = {};
        ColourTable::TearDown();
    }
};

TEST_F(ColourEditor, LoadCopiesTheTableAndCommitGivesItBack) {
    colour(kSetRgb, 30, 0x123456);  // a row past the count does not come along
    vc::load_work();
    EXPECT_EQ(listing(work_rows()), listing(builtin_colours()));
    EXPECT_TRUE(row_is_empty(vc::color_work.rows[30]));

    vc::update_work_row(0, "Ink", 1, 2, 3);
    EXPECT_EQ(listing(current_colours()), listing(builtin_colours())) << "the table waits for the commit";
    vc::commit_work();
    EXPECT_EQ(colour(kCount), 24);
    std::vector<ColourRow> want = builtin_colours();
    want[0] = {"Ink", 0x030201};
    EXPECT_EQ(listing(current_colours()), listing(want));
}

TEST_F(ColourEditor, UpdateCutsTheNameAndKeepsEightBitsOfEachNumber) {
    for_each_row("colour/editor_updates.tsv", [](const DataRow& row) {
        vc::load_work();
        vc::update_work_row(3, row[0], static_cast<uint32_t>(row.n(1)), static_cast<uint32_t>(row.n(2)),
                            static_cast<uint32_t>(row.n(3)));
        const vc::color_entry& entry = vc::color_work.rows[3];
        EXPECT_EQ(std::string(entry.name.data()), row[4]);
        for (std::size_t i = row[4].size(); i < entry.name.size(); ++i)
            EXPECT_EQ(entry.name[i], '\0') << "byte " << i << " behind the name";
        EXPECT_EQ(entry.rgb, static_cast<uint32_t>(row.n(5)));
        EXPECT_EQ(std::string(vc::color_work.rows[4].name.data()), "Cyan") << "the next row is not touched";
        EXPECT_EQ(vc::color_work.count, 24);
    });
}

TEST_F(ColourEditor, UpdateOfARowThatIsNotThereChangesNothing) {
    for (const int32_t row : {vc::kNoRow, 24, 39}) {
        vc::update_work_row(row, "Ghost", 9, 9, 9);
        EXPECT_EQ(listing(work_rows()), listing(builtin_colours())) << row;
        EXPECT_TRUE(row_is_empty(vc::color_work.rows[39])) << row;
    }
}

TEST_F(ColourEditor, AddMakesAnEmptyLastRowUpToForty) {
    vc::update_work_row(23, "Smoke", 9, 9, 9);
    for (int32_t want = 24; want < 40; ++want) {
        vc::color_work.rows[static_cast<std::size_t>(want)].rgb = 0xABCDEF;  // left over from a delete
        ASSERT_EQ(vc::add_work_row(), want);
        EXPECT_EQ(vc::color_work.count, want + 1);
        EXPECT_TRUE(row_is_empty(vc::color_work.rows[static_cast<std::size_t>(want)])) << want;
    }
    const std::string full = listing(work_rows());
    EXPECT_EQ(vc::add_work_row(), vc::kNoRow) << "the 41st row";
    EXPECT_EQ(vc::color_work.count, 40);
    EXPECT_EQ(listing(work_rows()), full) << "a refused Add changes nothing";
}

TEST_F(ColourEditor, DeleteMovesTheRowsBehindDown) {
    for_each_row("colour/editor_deletes.tsv", [](const DataRow& row) {
        const auto count = static_cast<int32_t>(row.n(0));
        colour(kSetCount, 0, count);
        for (int32_t i = 24; i < count; ++i) {
            const std::string name = "Row" + std::to_string(i);
            colour(kSetName, static_cast<uint32_t>(i), text_arg(name.c_str()));
        }
        vc::load_work();
        const std::string before = work_names();
        const auto selected = static_cast<int32_t>(row.n(1));
        EXPECT_EQ(vc::delete_work_row(selected), row.n(2) == 1);
        EXPECT_EQ(vc::color_work.count, count - static_cast<int32_t>(row.n(2)));
        if (row[3] != "-") {
            EXPECT_EQ(work_names(), row[3]);
        }
        EXPECT_TRUE(row_is_empty(vc::color_work.rows[static_cast<std::size_t>(vc::color_work.count)]) ||
                    vc::color_work.count == 40)
            << "the row freed at the end is empty";
        if (row.n(2) == 0) {
            EXPECT_EQ(work_names(), before) << "a refused Delete changes nothing";
        }
        reset_colour_table();
    });
}

TEST_F(ColourEditor, DeleteOfRowFiveBringsRowSixUp) {
    ASSERT_TRUE(vc::delete_work_row(5));
    const auto all = builtin_colours();
    EXPECT_EQ(std::string(vc::color_work.rows[5].name.data()), all[6].name);
    EXPECT_EQ(vc::color_work.rows[5].rgb, all[6].rgb);
    EXPECT_EQ(std::string(vc::color_work.rows[22].name.data()), all[23].name);
}

TEST_F(ColourEditor, GetAndSetTheSelectedRowsColour) {
    uint32_t rgb = 0xCCCCCCCC;
    EXPECT_TRUE(vc::work_rgb(13, rgb));
    EXPECT_EQ(rgb, 0xA00000u) << "Royal";
    EXPECT_TRUE(vc::set_work_rgb(13, 0x010203));
    EXPECT_TRUE(vc::work_rgb(13, rgb));
    EXPECT_EQ(rgb, 0x010203u);
    for (const int32_t row : {vc::kNoRow, 24}) {
        rgb = 0xCCCCCCCC;
        EXPECT_FALSE(vc::work_rgb(row, rgb)) << row;
        EXPECT_EQ(rgb, 0xCCCCCCCCu) << "nothing stored for row " << row;
        EXPECT_FALSE(vc::set_work_rgb(row, 0x111111)) << row;
    }
    EXPECT_TRUE(row_is_empty(vc::color_work.rows[24]));
}

TEST_F(ColourEditor, TheChooserOffersAGrayRamp) {
    int owner = 0;
    vc::color_chooser.result = 0x777777;
    vc::reset_chooser(&owner);
    EXPECT_EQ(vc::color_chooser.size, sizeof(vc::ColorChooser));
    EXPECT_EQ(vc::color_chooser.owner, &owner);
    EXPECT_EQ(vc::color_chooser.flags, 2u) << "the full chooser";
    EXPECT_EQ(vc::color_chooser.custom, vc::color_custom.data());
    EXPECT_EQ(vc::color_chooser.instance, nullptr);
    EXPECT_EQ(vc::color_chooser.hook, nullptr);
    EXPECT_EQ(vc::color_chooser.template_name, nullptr);
    EXPECT_EQ(vc::color_chooser.custom_data, 0);
    EXPECT_EQ(vc::color_custom.front(), 0xFFFFFFu);
    EXPECT_EQ(vc::color_custom.back(), 0x0F0F0Fu);
    for (std::size_t i = 1; i < vc::color_custom.size(); ++i)
        EXPECT_EQ(vc::color_custom[i - 1] - vc::color_custom[i], 0x101010u) << "step to entry " << i;
}

// The working copy after an OK goes to the table; saving writes it as the
// table's section and the palette's refresh takes its colours.
TEST_F(ColourEditor, AnEditedTableIsSavedAndRefreshesThePalette) {
    KELUTIL_Palette(nullptr, 0, 0, 0);
    vc::update_work_row(1, "Scarlet", 250, 20, 10);
    ASSERT_EQ(vc::add_work_row(), 24);
    vc::update_work_row(24, "Teal", 0, 128, 128);
    ASSERT_TRUE(vc::delete_work_row(0));
    vc::commit_work();

    ScratchFile file("edited.ini", "[Color List]\nOld=1 2 3\n[Color List2]\nColor Type=0\n");
    EXPECT_EQ(colour(kSave, 0, text_arg(file.path())), 24);
    const std::string text = file.read();
    EXPECT_EQ(text.find("Old="), std::string::npos) << text;
    EXPECT_NE(text.find("Color Type=0"), std::string::npos) << "the other section stays: " << text;
    EXPECT_LT(text.find("Scarlet=250 20 10"), text.find("Teal=0 128 128")) << text;
    EXPECT_EQ(text.find("Black="), std::string::npos) << "the deleted row is gone: " << text;

    const std::string edited = listing(current_colours());
    colour(kSetCount, 0, 1);
    EXPECT_EQ(colour(kLoad, 0, text_arg(file.path())), 0);
    EXPECT_EQ(listing(current_colours()), edited) << "read back as it was written";

    EXPECT_EQ(KELUTIL_Palette(nullptr, 6, 0, 0), 0);
    const auto& entries = vc::palette_entries;
    EXPECT_EQ(rgb_of(entries[0].red, entries[0].green, entries[0].blue), 0x0A14FAu) << "Scarlet";
    EXPECT_EQ(rgb_of(entries[23].red, entries[23].green, entries[23].blue), 0x808000u) << "Teal";
}

#ifndef _WIN32
// Natively there is no dialog: the edit ends as if cancelled.
TEST_F(ColourEditor, NativelyTheDialogEndsAsCancelled) {
    ScratchFile file("untouched.ini", "[Color List]\nOld=1 2 3\n");
    EXPECT_EQ(colour(kEdit, 0, text_arg(file.path())), 0);
    EXPECT_EQ(listing(current_colours()), listing(builtin_colours()));
    EXPECT_NE(file.read().find("Old=1 2 3"), std::string::npos);
}
#endif

}  // namespace
