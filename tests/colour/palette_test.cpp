// KELUTIL_Palette as every build has it, and the colour steps of
// KELUTIL_Main.

#include <string>

#include "colour/colour_support.h"
#include "data/data_support.h"
#include "support.h"
#include "vlcore.h"

namespace {

using namespace vltest::colour_op;
using vltest::colour;
using vltest::ColourTable;
using vltest::ScratchFile;
using vltest::text_arg;

constexpr uint32_t kBuild = 0, kDelete = 1, kSelect = 2, kSaveType = 11, kHandle = 12;

intptr_t palette(uint32_t operation, intptr_t value = 0, uint32_t count = 0) {
    return KELUTIL_Palette(nullptr, operation, count, value);
}

// Natively there is no system palette to hold.
#ifdef _WIN32
constexpr bool kHasPalette = true;
#else
constexpr bool kHasPalette = false;
#endif

using Palette = ColourTable;

TEST_F(Palette, AnswersOfTheOperations) {
    const uint32_t colours[2] = {0x010203, 0x040506};
    vltest::for_each_row("palette_calls.tsv", [&](const vltest::DataRow& row) {
        const intptr_t value = row[1] == "&colours" ? reinterpret_cast<intptr_t>(colours) : row.n(1);
        EXPECT_EQ(palette(static_cast<uint32_t>(row.n(0)), value, static_cast<uint32_t>(row.n(2))), row.n(3));
    });
}

TEST_F(Palette, IsBuiltOnceAndDeleted) {
    palette(kDelete);
    EXPECT_EQ(palette(kHandle), 0);
    palette(kBuild);
    const intptr_t first = palette(kHandle);
    EXPECT_EQ(first != 0, kHasPalette);
    palette(kBuild);
    EXPECT_EQ(palette(kHandle), first) << "a second build keeps the palette";
    palette(kDelete);
    EXPECT_EQ(palette(kHandle), 0);
    EXPECT_EQ(palette(kSelect), 0);
    EXPECT_EQ(palette(kHandle) != 0, kHasPalette) << "selecting builds it again";
    colour(kEnd);
    EXPECT_EQ(palette(kHandle), 0) << "the table's end deletes it";
}

TEST_F(Palette, SavesTheColourType) {
    ScratchFile file("type.ini", "[Color List2]\nColor Type=7\n");
    EXPECT_EQ(palette(kSaveType, text_arg(file.path())), 0);
    const std::string text = file.read();
    EXPECT_NE(text.find("Color Type=0"), std::string::npos) << text;
    EXPECT_EQ(text.find("Color Type=7"), std::string::npos) << text;
    EXPECT_EQ(palette(kSaveType, 0), 0) << "no file";
}

// ---- KELUTIL_Main ----------------------------------------------------------------

TEST_F(ColourTable, MainStartLoadsTheColoursAndEndDeletesThePalette) {
    ScratchFile file("host.ini", "[Color List]\nInk=1 2 3\nPaper=250 250 240\n");
    EXPECT_EQ(KELUTIL_Main(nullptr, 6101, text_arg(file.path()), 0), 0u);
    EXPECT_EQ(colour(kCount), 24) << "a newer host starts nothing";
    EXPECT_EQ(KELUTIL_Main(nullptr, 6100, text_arg(file.path()), 0), 3783u);
    EXPECT_EQ(colour(kCount), 2);
    EXPECT_EQ(colour(kByName, 0, text_arg("paper")), 2);
    EXPECT_EQ(palette(kHandle) != 0, kHasPalette) << "the loaded list has a palette";
    EXPECT_EQ(KELUTIL_Main(nullptr, 6100, 0, 1), 0u);
    EXPECT_EQ(palette(kHandle), 0);
    EXPECT_EQ(colour(kCount), 2) << "the end leaves the table";
}

}  // namespace
