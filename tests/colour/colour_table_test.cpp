// KELUTIL_Color: the table, its lookups, editing, and the settings file.

#include <string>

#include "colour/colour_support.h"
#include "data/data_support.h"

namespace {

using namespace vltest;
using namespace vltest::colour_op;

TEST_F(ColourTable, AnswersOfSingleCalls) {
    vltest::for_each_row("colour/colour_calls.tsv", [](const vltest::DataRow& row) {
        if (row[0] != "-") colour(kSetCount, 0, static_cast<intptr_t>(row.n(0)));
        const std::string& arg = row[3];
        const std::string text = arg.starts_with('"') ? arg.substr(1, arg.size() - 2) : "";
        uint32_t rgb = 0xCCCCCCCC;
        vltest::Poisoned name(40);
        const intptr_t value = arg == "&rgb"          ? reinterpret_cast<intptr_t>(&rgb)
                               : arg == "&name"       ? reinterpret_cast<intptr_t>(name.data())
                               : arg == "null"        ? 0
                               : arg.starts_with('"') ? text_arg(text.c_str())
                                                      : static_cast<intptr_t>(row.n(3));
        EXPECT_EQ(colour(static_cast<uint32_t>(row.n(1)), static_cast<uint32_t>(row.n(2)), value), row.n(4));
        if (arg == "&rgb") {
            EXPECT_EQ(rgb, row.n(5));
        } else if (arg == "&name") {
            EXPECT_EQ(name.text(), row[5]);
            EXPECT_TRUE(name.clean_from(row[5].size() + 1)) << "only the name and its terminator";
        }
    });
}

// ---- The settings file ---------------------------------------------------------

TEST_F(ColourTable, SavesTheTableRowByRowAndLoadsItBack) {
    ScratchFile file("colours.ini", "[Color List]\nOld=1 2 3\n[Other]\nkeep=yes\n");
    EXPECT_EQ(colour(kSave, 0, text_arg(file.path())), 24);
    const std::string text = file.read();
    for (const char* kept : {"[Color List]", "Dark Yellow=128 128 0", "keep=yes"})
        EXPECT_NE(text.find(kept), std::string::npos) << kept << " in " << text;
    EXPECT_EQ(text.find("Old="), std::string::npos) << "the section is rewritten: " << text;
    EXPECT_LT(text.find("Black=0 0 0"), text.find("Dark Gray=64 64 64")) << "rows in order";

    colour(kSetCount, 0, 2);
    EXPECT_EQ(colour(kLoad, 0, text_arg(file.path())), 0);
    EXPECT_EQ(listing(current_colours()), listing(vltest::builtin_colours())) << "the same table comes back";

    colour(kSetCount, 0, 0);
    EXPECT_EQ(colour(kSave, 0, text_arg(file.path())), 0);
    EXPECT_EQ(file.read().find("Black="), std::string::npos) << "an empty table removes the section";
    EXPECT_EQ(colour(kSave, 0, 0), 0) << "no file, nothing written";
}

TEST_F(ColourTable, LoadsTheUsersList) {
    vltest::for_each_row("colour/colour_lists.tsv", [](const vltest::DataRow& row) {
        colour(kSetRgb, 1, 0x0000FE);  // the string table renames, only a file recolours
        const std::string before = listing(current_colours());
        ScratchFile file("load.ini", vltest::unescape(row[0]));
        EXPECT_EQ(colour(kLoad, 0, text_arg(file.path())), row.n(1));
        EXPECT_EQ(listing(current_colours()), row[2] == "unchanged" ? before : row[2]);
        colour(kDefaults);
        EXPECT_EQ(listing(current_colours()), before) << "the snapshot is the table before";
    });
    const std::string before = listing(current_colours()), missing = ScratchFile("gone.ini").path();
    EXPECT_EQ(colour(kLoad, 0, text_arg(missing.c_str())), 0) << "no file";
    EXPECT_EQ(listing(current_colours()), before) << "no file, no list";
}

// The names come from the string table at every load; the snapshot is
// taken before they are put back.
TEST_F(ColourTable, LoadPutsTheBuiltInNamesBack) {
    for (uint32_t i = 0; i < 24; ++i) colour(kSetName, i, text_arg(("Ink" + std::to_string(i)).c_str()));
    colour(kLoad, 0, 0);
    EXPECT_EQ(listing(current_colours()), listing(builtin_colours()));
    colour(kDefaults);
    EXPECT_EQ(current_colours().at(0).name, "Ink0");
}

}  // namespace
