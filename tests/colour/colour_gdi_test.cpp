// KELUTIL_Color and KELUTIL_Palette with the window system: real pens,
// brushes, a combo box and the palette, read back from the system.

#include <windows.h>

#include <string>
#include <utility>
#include <vector>

#include "colour/colour_support.h"
#include "support.h"
#include "vlcore.h"

namespace {

using namespace vltest::colour_op;
using vltest::colour;
using vltest::rgb_of;

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
        ColourTable::TearDown();
    }
    int32_t on_dc(uint32_t operation, uint32_t number = 0, intptr_t value = 0) {
        return colour(operation, number, value, dc_);
    }
    HGDIOBJ current(UINT type) const { return GetCurrentObject(dc_, type); }
    HPALETTE built_palette() {
        KELUTIL_Palette(nullptr, 1, 0, 0);
        KELUTIL_Palette(nullptr, 0, 0, 0);
        return reinterpret_cast<HPALETTE>(KELUTIL_Palette(nullptr, 12, 0, 0));
    }
    HDC dc_ = nullptr;
};

TEST_F(ColourGdi, PensAndBrushesTakeTheRowsColour) {
    vltest::for_each_row("pens_brushes.tsv", [&](const vltest::DataRow& row) {
        const bool is_pen = row[0] == "pen";
        EXPECT_EQ(on_dc(row.n(1), row.n(2), row.n(3)), 0);
        const HGDIOBJ made = current(is_pen ? OBJ_PEN : OBJ_BRUSH);
        LOGPEN lp{};
        LOGBRUSH lb{};
        EXPECT_NE(is_pen ? GetObjectA(made, sizeof lp, &lp) : GetObjectA(made, sizeof lb, &lb), 0);
        EXPECT_EQ(is_pen ? lp.lopnColor : lb.lbColor, row.n(4));
        EXPECT_EQ(is_pen ? lp.lopnWidth.x : static_cast<LONG>(lb.lbStyle), row.n(5));
        EXPECT_EQ(on_dc(is_pen ? kReleasePen : kReleaseBrush), 0);
        EXPECT_EQ(current(is_pen ? OBJ_PEN : OBJ_BRUSH), GetStockObject(is_pen ? BLACK_PEN : BLACK_BRUSH));
        EXPECT_EQ(GetObjectType(made), 0u) << "the released object is deleted";
    });
}

TEST_F(ColourGdi, ANewPenReplacesTheOldOne) {
    on_dc(kPen, 1);
    const HGDIOBJ first = current(OBJ_PEN);
    on_dc(kPen, 2);
    const HGDIOBJ second = current(OBJ_PEN);
    EXPECT_EQ(GetObjectType(first), 0u);
    EXPECT_EQ(colour(kPen, 3, 0, nullptr), 0) << "no context, nothing made";
    EXPECT_EQ(current(OBJ_PEN), second);
    EXPECT_EQ(GetObjectType(second), static_cast<DWORD>(OBJ_PEN)) << "the held pen stays";
}

TEST_F(ColourGdi, StockPens) {
    const std::pair<uint32_t, int> cases[] = {{0, NULL_PEN}, {5, BLACK_PEN}, {0x10000, NULL_PEN}};
    for (const auto& [number, stock] : cases) {
        on_dc(kPen, 1);
        const HGDIOBJ made = current(OBJ_PEN);
        EXPECT_EQ(on_dc(kStockPen, number), 0) << number;
        EXPECT_EQ(current(OBJ_PEN), GetStockObject(stock)) << number;
        EXPECT_EQ(GetObjectType(made), 0u) << number << ": the held pen is let go";
    }
    EXPECT_EQ(colour(kStockPen, 0, 0, nullptr), 1);
}

TEST_F(ColourGdi, TransparentIsTheHollowBrush) {
    EXPECT_EQ(on_dc(kBrush, 24), 0);
    EXPECT_EQ(current(OBJ_BRUSH), GetStockObject(HOLLOW_BRUSH));
    EXPECT_EQ(on_dc(kReleaseBrush), 0);
    EXPECT_EQ(current(OBJ_BRUSH), GetStockObject(BLACK_BRUSH));
}

TEST_F(ColourGdi, FillsAComboBoxWithTheNames) {
    HWND combo = CreateWindowExA(0, "COMBOBOX", "", WS_POPUP | CBS_DROPDOWNLIST, 0, 0, 200, 300, nullptr, nullptr,
                                 GetModuleHandleA(nullptr), nullptr);
    ASSERT_NE(combo, nullptr);
    auto items = [&] {
        std::vector<std::string> out;
        for (WPARAM i = 0; i < static_cast<WPARAM>(SendMessageA(combo, CB_GETCOUNT, 0, 0)); ++i) {
            char text[64] = {};
            SendMessageA(combo, CB_GETLBTEXT, i, reinterpret_cast<LPARAM>(text));
            out.push_back(text);
        }
        return out;
    };
    std::vector<std::string> names;
    for (const auto& r : vltest::builtin_colours()) names.push_back(r.name);
    names.push_back("Transparent");
    EXPECT_EQ(colour(kCombo, 0, 0, combo), 0);
    EXPECT_EQ(items(), names);
    EXPECT_EQ(colour(kCount), 24) << "the count is left alone";

    SendMessageA(combo, CB_RESETCONTENT, 0, 0);
    colour(kSetCount, 0, 2);
    colour(kCombo, 0, 0, combo);
    EXPECT_EQ(items(), (std::vector<std::string>{"Black", "Red", "Transparent"}));
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
    const HPALETTE handle = built_palette();
    ASSERT_NE(handle, nullptr);
    EXPECT_EQ(GetObjectType(handle), static_cast<DWORD>(OBJ_PAL));

    std::vector<uint32_t> expected(64, 0);
    for (std::size_t i = 0; const auto& r : vltest::builtin_colours()) expected[i++] = r.rgb;
    EXPECT_EQ(colours_of(handle), expected);

    const uint32_t host[2] = {0x0A0B0C, 0x0D0E0F};
    SelectPalette(dc_, handle, FALSE);
    EXPECT_EQ(KELUTIL_Palette(dc_, 7, 2, reinterpret_cast<intptr_t>(host)), 0);
    EXPECT_EQ(GetCurrentObject(dc_, OBJ_PAL), GetStockObject(DEFAULT_PALETTE)) << "host colours select the default";
    colour(kSetRgb, 0, 0x332211);
    EXPECT_EQ(KELUTIL_Palette(nullptr, 6, 0, 0), 0);
    expected[0] = 0x332211;
    expected[39] = 0x0A0B0C;  // past the count the host's colours stay
    expected[40] = 0x0D0E0F;
    EXPECT_EQ(colours_of(handle), expected);

    KELUTIL_Palette(nullptr, 1, 0, 0);
    EXPECT_EQ(GetObjectType(handle), 0u) << "deleted";
}

TEST_F(ColourGdi, SelectionTakesThePaletteOfTheColourType) {
    const HPALETTE library = built_palette();
    for (const uint32_t operation : {2u, 3u}) {
        SelectPalette(dc_, library, FALSE);
        EXPECT_EQ(KELUTIL_Palette(dc_, operation, 0, 0), 0);
        EXPECT_EQ(GetCurrentObject(dc_, OBJ_PAL), GetStockObject(DEFAULT_PALETTE)) << operation;
    }
}

}  // namespace
