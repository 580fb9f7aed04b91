// KELUTIL_Palette as every build has it, and the colour steps of
// KELUTIL_Main.

#include <string>

#include "colour/colour_support.h"
#include "data/data_support.h"

namespace {

using namespace vltest;
using namespace vltest::colour_op;

constexpr uint32_t kSaveType = 11, kHandle = 12;

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
    intptr_t last = 0;
    for_each_row("colour/palette_calls.tsv", [&](const DataRow& row) {
        const intptr_t value = row[1] == "&colours" ? reinterpret_cast<intptr_t>(colours) : row.n(1);
        const intptr_t answer = palette(static_cast<uint32_t>(row.n(0)), value, static_cast<uint32_t>(row.n(2)));
        if (row[3] == "palette")
            EXPECT_EQ(answer != 0, kHasPalette);
        else
            EXPECT_EQ(answer, row[3] == "same" ? last : row.n(3));
        if (row.n(0) == kHandle) last = answer;
    });
}

TEST_F(Palette, SavesTheColourType) {
    ScratchFile file("type.ini", "[Color List2]\nColor Type=7\n");
    EXPECT_EQ(palette(kSaveType, text_arg(file.path())), 0);
    const std::string text = file.read();
    EXPECT_NE(text.find("Color Type=0"), std::string::npos) << text;
    EXPECT_EQ(text.find("Color Type=7"), std::string::npos) << text;
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
