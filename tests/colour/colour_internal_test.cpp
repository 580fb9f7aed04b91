// The built-in table, the colour arithmetic behind the pens and brushes,
// and the entries the palette is built from, on every build.

#include <string>
#include <vector>

#include "colour/colour.h"
#include "colour/colour_support.h"
#include "support.h"

namespace {

using vl::colour::palette_entries;
using vltest::rgb_of;

uint32_t entry_rgb(std::size_t i) {
    return rgb_of(palette_entries[i].red, palette_entries[i].green, palette_entries[i].blue);
}

// The fixture of the other tests writes the table from the data file, so
// only here is the library's own table held against it.
TEST(ColourTableAtLoad, IsTheBuiltInTable) {
    const vl::colour::ColorTable table = vl::colour::builtin_table();
    std::vector<vltest::ColourRow> rows;
    for (int32_t i = 0; i < table.count; ++i) rows.push_back({table.rows[i].name.data(), table.rows[i].rgb});
    EXPECT_EQ(vltest::listing(rows), vltest::listing(vltest::builtin_colours()));
}

TEST(ColourShades, LightenAndDarkenEachComponent) {
    vltest::for_each_row("shades.tsv", [](const vltest::DataRow& row) {
        const auto rgb = static_cast<uint32_t>(row.n(1));
        const auto percent = static_cast<int32_t>(row.n(2));
        EXPECT_EQ(row[0] == "lighter" ? vl::colour::lighten(rgb, percent) : vl::colour::darken(rgb, percent), row.n(3));
    });
}

using PaletteEntries = vltest::ColourTable;

TEST_F(PaletteEntries, HoldTheTableThenTheHostColours) {
    KELUTIL_Palette(nullptr, 1, 0, 0);
    KELUTIL_Palette(nullptr, 0, 0, 0);
    const auto rows = vltest::builtin_colours();
    for (std::size_t i = 0; i < vl::colour::kPaletteEntries; ++i) {
        EXPECT_EQ(entry_rgb(i), i < rows.size() ? rows[i].rgb : 0) << "entry " << i;
        EXPECT_EQ(palette_entries[i].flags, 1) << "entry " << i;
    }

    const uint32_t host[3] = {0x0A0B0C, 0x0D0E0F, 0x111213};
    KELUTIL_Palette(nullptr, 7, 2, reinterpret_cast<intptr_t>(host));
    EXPECT_EQ(entry_rgb(39), 0x0A0B0Cu);
    EXPECT_EQ(entry_rgb(40), 0x0D0E0Fu);
    EXPECT_EQ(entry_rgb(41), 0u) << "only `count` colours are taken";

    uint32_t many[30];
    for (uint32_t i = 0; i < 30; ++i) many[i] = 0x010101 * (i + 1);
    KELUTIL_Palette(nullptr, 7, 30, reinterpret_cast<intptr_t>(many));
    EXPECT_EQ(entry_rgb(63), 0x191919u) << "the last entry takes the 25th colour, no more fit";

    vltest::colour(vltest::colour_op::kSetRgb, 0, 0x332211);
    vltest::colour(vltest::colour_op::kSetCount, 0, 40);
    KELUTIL_Palette(nullptr, 6, 0, 0);
    EXPECT_EQ(entry_rgb(0), 0x332211u);
    EXPECT_EQ(entry_rgb(39), 0u) << "a refresh over 40 rows puts row 39 back";
    EXPECT_EQ(entry_rgb(40), 0x020202u) << "entries past the table keep the host's colours";
}

TEST_F(PaletteEntries, PureColoursAreRelativeToThePalette) {
    vl::colour::color_type = 1;
    EXPECT_EQ(KELUTIL_Palette(nullptr, 10, 0, 0x123456), 0x02123456);
    EXPECT_EQ(KELUTIL_Palette(nullptr, 10, 0, 0x7F123456), 0x02123456);
    EXPECT_EQ(KELUTIL_Palette(nullptr, 5, 0, 0), 1);
    vl::colour::color_type = 2;
    EXPECT_EQ(KELUTIL_Palette(nullptr, 10, 0, 0x123456), 0x123456) << "any other type keeps the RGB";
    vl::colour::color_type = 0;
}

}  // namespace
