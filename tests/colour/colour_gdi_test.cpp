// KELUTIL_Color and KELUTIL_Palette with the window system: real pens,
// brushes, a combo box and the palette, read back from the system.

#include <windows.h>

#include <string>
#include <vector>

#include "colour/colour_support.h"

namespace {

using namespace vltest;
using namespace vltest::colour_op;

class ColourGdi : public vltest::ColourTable {
  protected:
    void SetUp() override {
        ColourTable::SetUp();
        dc_ = CreateCompatibleDC(nullptr);
        ASSERT_NE(dc_, nullptr);
    }
    void TearDown() override {
        colour(kReleasePen, 0, 0, dc_);
        colour(kReleaseBrush, 0, 0, dc_);
        DeleteDC(dc_);
        uint16_t resolution = 300, zoom = 100;
        KELUTIL_3Dsquare(nullptr, 600, &resolution, &zoom, 0x1000);
        ColourTable::TearDown();
    }
    int32_t on_dc(uint32_t operation, uint32_t number = 0, intptr_t value = 0) {
        return colour(operation, number, value, dc_);
    }
    HGDIOBJ current(UINT type) const { return GetCurrentObject(dc_, type); }
    HDC dc_ = nullptr;
};

TEST_F(ColourGdi, PensAndBrushesTakeTheRowsColour) {
    for_each_row("colour/pens_brushes.tsv", [&](const DataRow& row) {
        const bool is_pen = row[0] == "pen";
        uint16_t resolution = static_cast<uint16_t>(row.n(7)), zoom = static_cast<uint16_t>(row.n(8));
        KELUTIL_3Dsquare(nullptr, 600, &resolution, &zoom, 0x1000);  // the scaling of pen widths
        on_dc(kPen, 7);
        const HGDIOBJ held = current(OBJ_PEN);
        EXPECT_EQ(on_dc(row.n(1), row.n(2), row.n(3)), 0);
        const HGDIOBJ made = current(is_pen ? OBJ_PEN : OBJ_BRUSH);
        EXPECT_EQ(GetObjectType(held) == 0, is_pen) << "every pen call lets the held pen go";
        EXPECT_EQ(row[6] == "-" ? made : GetStockObject(static_cast<int>(row.n(6))), made);
        EXPECT_EQ(colour(kPen, 3, 0, nullptr), 0) << "no context, nothing made";
        LOGPEN lp{};
        LOGBRUSH lb{};
        EXPECT_NE(is_pen ? GetObjectA(made, sizeof lp, &lp) : GetObjectA(made, sizeof lb, &lb), 0) << "still held";
        EXPECT_EQ(is_pen ? lp.lopnColor : lb.lbColor, row.n(4));
        EXPECT_EQ(is_pen ? lp.lopnWidth.x : static_cast<LONG>(lb.lbStyle), row.n(5));
        EXPECT_EQ(on_dc(is_pen ? kReleasePen : kReleaseBrush), 0);
        EXPECT_EQ(current(is_pen ? OBJ_PEN : OBJ_BRUSH), GetStockObject(is_pen ? BLACK_PEN : BLACK_BRUSH));
        EXPECT_EQ(GetObjectType(made) == 0, row[6] == "-") << "a released object is deleted, a stock one stays";
    });
}

TEST_F(ColourGdi, FillsAComboBoxWithTheNames) {
    HWND combo = CreateWindowExA(0, "COMBOBOX", "", WS_POPUP | CBS_DROPDOWNLIST, 0, 0, 200, 300, nullptr, nullptr,
                                 GetModuleHandleA(nullptr), nullptr);
    ASSERT_NE(combo, nullptr);
    auto items = [&] {  // apart by '|'
        std::string out;
        for (WPARAM i = 0; i < static_cast<WPARAM>(SendMessageA(combo, CB_GETCOUNT, 0, 0)); ++i) {
            char text[64] = {};
            SendMessageA(combo, CB_GETLBTEXT, i, reinterpret_cast<LPARAM>(text));
            out += text + std::string("|");
        }
        return out;
    };
    std::string names;
    for (const auto& r : builtin_colours()) names += r.name + "|";
    EXPECT_EQ(colour(kCombo, 0, 0, combo), 0);
    EXPECT_EQ(items(), names + "Transparent|");
    EXPECT_EQ(colour(kCount), 24) << "the count is left alone";

    SendMessageA(combo, CB_RESETCONTENT, 0, 0);
    colour(kSetCount, 0, 2);
    colour(kCombo, 0, 0, combo);
    EXPECT_EQ(items(), "Black|Red|Transparent|");
    DestroyWindow(combo);
}

std::vector<uint32_t> colours_of(HPALETTE palette) {
    PALETTEENTRY entries[64] = {};
    EXPECT_EQ(GetPaletteEntries(palette, 0, 64, entries), 64u);
    std::vector<uint32_t> out;
    for (const auto& e : entries) {
        EXPECT_EQ(e.peFlags, PC_RESERVED);
        out.push_back(rgb_of(e.peRed, e.peGreen, e.peBlue));
    }
    return out;
}

TEST_F(ColourGdi, PaletteHoldsTheTableAndTheHostsColours) {
    KELUTIL_Palette(nullptr, 1, 0, 0);
    KELUTIL_Palette(nullptr, 0, 0, 0);
    const auto handle = reinterpret_cast<HPALETTE>(KELUTIL_Palette(nullptr, 12, 0, 0));
    ASSERT_NE(handle, nullptr);
    EXPECT_EQ(GetObjectType(handle), static_cast<DWORD>(OBJ_PAL));

    std::vector<uint32_t> expected(64, 0);
    for (std::size_t i = 0; const auto& r : builtin_colours()) expected[i++] = r.rgb;
    EXPECT_EQ(colours_of(handle), expected);

    // Selecting, selecting the default and the host's colours all select
    // the default palette under colour type 0.
    const uint32_t host[2] = {0x0A0B0C, 0x0D0E0F};
    for (const uint32_t operation : {2u, 3u, 7u}) {
        SelectPalette(dc_, handle, FALSE);
        EXPECT_EQ(KELUTIL_Palette(dc_, operation, 2, reinterpret_cast<intptr_t>(host)), 0);
        EXPECT_EQ(GetCurrentObject(dc_, OBJ_PAL), GetStockObject(DEFAULT_PALETTE)) << operation;
    }
    colour(kSetRgb, 0, 0x332211);
    EXPECT_EQ(KELUTIL_Palette(nullptr, 6, 0, 0), 0);
    expected[0] = 0x332211;
    expected[39] = 0x0A0B0C;  // past the count the host's colours stay
    expected[40] = 0x0D0E0F;
    EXPECT_EQ(colours_of(handle), expected);

    KELUTIL_Palette(nullptr, 1, 0, 0);
    EXPECT_EQ(GetObjectType(handle), 0u) << "deleted";
}

}  // namespace
