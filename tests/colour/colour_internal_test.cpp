// The built-in table, the colour arithmetic behind the pens and brushes,
// and the entries the palette is built from, on every build.

#include <string>
#include <vector>

#include "colour/colour.h"
#include "colour/colour_support.h"

namespace {

using vl::colour::palette_entries;
using vltest::rgb_of;

// The palette's entries as 0x00BBGGRR, their flags in the top byte.
std::vector<uint32_t> entries() {
    std::vector<uint32_t> out;
    for (const auto& e : palette_entries) out.push_back(rgb_of(e.red, e.green, e.blue) | uint32_t{e.flags} << 24);
    return out;
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
    vltest::for_each_row("colour/shades.tsv", [](const vltest::DataRow& row) {
        const auto rgb = static_cast<uint32_t>(row.n(1));
        const auto percent = static_cast<int32_t>(row.n(2));
        EXPECT_EQ(row[0] == "lighter" ? vl::colour::lighten(rgb, percent) : vl::colour::darken(rgb, percent), row.n(3));
    });
}

using PaletteEntries = vltest::ColourTable;

TEST_F(PaletteEntries, HoldTheTableThenTheHostColours) {
    KELUTIL_Palette(nullptr, 1, 0, 0);
    KELUTIL_Palette(nullptr, 0, 0, 0);
    constexpr uint32_t kFlag = 1u << 24;  // every entry is reserved
    std::vector<uint32_t> want(vl::colour::kPaletteEntries, kFlag);
    for (std::size_t i = 0; const auto& r : vltest::builtin_colours()) want[i++] = r.rgb | kFlag;
    EXPECT_EQ(entries(), want);

    const uint32_t host[3] = {0x0A0B0C, 0x0D0E0F, 0x111213};
    KELUTIL_Palette(nullptr, 7, 2, reinterpret_cast<intptr_t>(host));
    want[39] = host[0] | kFlag, want[40] = host[1] | kFlag;
    EXPECT_EQ(entries(), want) << "from entry 39 on, only `count` colours are taken";

    uint32_t many[30];
    for (uint32_t i = 0; i < 30; ++i) many[i] = 0x010101 * (i + 1);
    KELUTIL_Palette(nullptr, 7, 30, reinterpret_cast<intptr_t>(many));
    for (std::size_t i = 39; i < want.size(); ++i) want[i] = many[i - 39] | kFlag;
    EXPECT_EQ(entries(), want) << "the last entry takes the 25th colour, no more fit";

    vltest::colour(vltest::colour_op::kSetRgb, 0, 0x332211);
    vltest::colour(vltest::colour_op::kSetCount, 0, 40);
    KELUTIL_Palette(nullptr, 6, 0, 0);
    want[0] = 0x332211 | kFlag, want[39] = kFlag;
    EXPECT_EQ(entries(), want) << "a refresh over 40 rows puts row 39 back, past the table the host's colours stay";
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
