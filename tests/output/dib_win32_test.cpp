// The DIB conversions, palettes and the bitmap file with real bitmaps,
// device contexts and files.

#include <windows.h>

#include <cstdlib>
#include <iterator>
#include <memory>
#include <sstream>
#include <tuple>
#include <utility>

#include "data/data_support.h"
#include "output/dib_layouts.h"
#include "vlcore.h"

namespace {

using vltest::DataRow;

uint32_t get32(const uint8_t* p) { return p[0] | p[1] << 8 | p[2] << 16 | uint32_t{p[3]} << 24; }
std::size_t row_bytes(unsigned bits, int width) { return (std::size_t{bits} * width + 31) / 32 * 4; }

// Colours that every depth of at least 4 bits holds exactly (the 16
// colours of the default palette); the 1-bit pattern uses black and white.
const COLORREF kColours[] = {RGB(0, 0, 0),   RGB(255, 255, 255), RGB(255, 0, 0),   RGB(0, 255, 0),
                             RGB(0, 0, 255), RGB(255, 255, 0),   RGB(0, 255, 255), RGB(128, 0, 0)};

COLORREF pattern(int x, int y, int depth) {
    if (depth == 1) return ((x + 2 * y) % 3 == 0) ? RGB(255, 255, 255) : RGB(0, 0, 0);
    return kColours[(x * 3 + y * 5) % std::size(kColours)];
}

constexpr int kWidth = 13, kHeight = 7;  // odd sizes, so rows need padding

// A bitmap of `depth` bits: monochrome and 32 bits as the device's own
// bitmaps, 4, 8 and 24 bits as DIB sections (a device bitmap of 4 or 8
// bits can't be selected to draw on) with the pattern's colours.
HBITMAP make_bitmap(int depth, int width, int height) {
    if (depth == 1 || depth == 32) return CreateBitmap(width, height, 1, depth, nullptr);
    struct {
        BITMAPINFOHEADER header;
        RGBQUAD colours[16];
    } info{};
    info.header = BITMAPINFOHEADER{40, width, height, 1, static_cast<WORD>(depth), BI_RGB, 0, 0, 0, 0, 0};
    if (depth <= 8) info.header.biClrUsed = 16;
    for (int i = 0; i < 16; ++i) {
        const COLORREF c = kColours[i % std::size(kColours)];
        info.colours[i] = RGBQUAD{GetBValue(c), GetGValue(c), GetRValue(c), 0};
    }
    void* bits = nullptr;
    return CreateDIBSection(nullptr, reinterpret_cast<BITMAPINFO*>(&info), DIB_RGB_COLORS, &bits, nullptr, 0);
}

// Every pixel of a bitmap, after drawing the pattern of `draw` on it
// unless that is 0, through a memory context that lets it go again.
std::vector<COLORREF> pixels_of(HBITMAP bitmap, int width, int height, int draw = 0) {
    std::vector<COLORREF> out;
    HDC dc = CreateCompatibleDC(nullptr);
    HGDIOBJ old = SelectObject(dc, bitmap);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            if (draw) SetPixel(dc, x, y, pattern(x, y, draw));
            out.push_back(GetPixel(dc, x, y) & 0xFFFFFF);
        }
    SelectObject(dc, old);
    DeleteDC(dc);
    return out;
}

// Checks the 40-byte header a DIB was made with.
void expect_header(const uint8_t* dib, int width, int height, unsigned bits) {
    const BITMAPINFOHEADER want{40, width, height, 1, static_cast<WORD>(bits), 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(std::memcmp(dib, &want, 16), 0) << "size 40, " << width << " x " << height << ", 1 plane, " << bits;
}

// The colour of pixel (x, y) of a DIB with a 40-byte header, decoded by
// hand from its bytes (bottom row first) and its RGB colour table.
COLORREF dib_pixel(const uint8_t* dib, int x, int y) {
    const int bits = dib[14] | dib[15] << 8;
    const auto* pixels = static_cast<const uint8_t*>(FindDIBBits(const_cast<uint8_t*>(dib)));
    const uint8_t* line = pixels + row_bytes(bits, static_cast<int32_t>(get32(dib + 4))) *
                                       static_cast<std::size_t>(static_cast<int32_t>(get32(dib + 8)) - 1 - y);
    if (bits == 24) return RGB(line[3 * x + 2], line[3 * x + 1], line[3 * x]);
    const unsigned index = (line[x * bits / 8] >> (8 - bits - x * bits % 8)) & ((1u << bits) - 1);
    const uint8_t* quad = dib + 40 + 4 * index;
    return RGB(quad[2], quad[1], quad[0]);
}

// A DIB block held locked, and unlocked and freed at the end.
struct Unlock {
    void operator()(uint8_t* p) const {
        HGLOBAL h = GlobalHandle(p);
        GlobalUnlock(h), GlobalFree(h);
    }
};
using Dib = std::unique_ptr<uint8_t, Unlock>;
Dib lock(HGLOBAL h) { return Dib(h ? static_cast<uint8_t*>(GlobalLock(h)) : nullptr); }

// --------------------------------------------------------------------------
// Bitmap -> DIB -> bitmap

TEST(DibWin32, BitmapToDibKeepsEveryPixel) {
    vltest::for_each_row("output/dib_depths.tsv", [](const DataRow& row) {
        const auto depth = static_cast<int>(row.n(1));
        const auto bits = static_cast<unsigned>(row.n(3));
        HBITMAP source = make_bitmap(depth, kWidth, kHeight);
        ASSERT_NE(source, nullptr);
        const auto original = pixels_of(source, kWidth, kHeight, depth);
        // The drawing itself holds the pattern, or the test proves nothing.
        for (int p = 0; p < kWidth * kHeight; ++p)
            ASSERT_EQ(original[p], pattern(p % kWidth, p / kWidth, depth)) << "drawn pixel " << p;

        const Dib dib = lock(KELUTIL_BitmapToDIB(source, nullptr, static_cast<uint32_t>(row.n(2))));
        DeleteObject(source);
        ASSERT_NE(dib.get(), nullptr);
        expect_header(dib.get(), kWidth, kHeight, bits);
        EXPECT_EQ(PaletteSize(dib.get()), row.n(4));
        EXPECT_GE(GlobalSize(GlobalHandle(dib.get())), 40 + row.n(4) + row_bytes(bits, kWidth) * kHeight);
        for (int p = 0; p < kWidth * kHeight; ++p)
            ASSERT_EQ(dib_pixel(dib.get(), p % kWidth, p / kWidth), original[p]) << "DIB pixel " << p;

        // Without a colour table the DIB gives the same picture back.
        if (bits != 24) return;
        HBITMAP back = DIBToBitmap(GlobalHandle(dib.get()), nullptr);
        ASSERT_NE(back, nullptr);
        BITMAP facts{};
        ASSERT_NE(GetObjectA(back, sizeof facts, &facts), 0);
        EXPECT_EQ(std::pair(facts.bmWidth, facts.bmHeight), std::pair(LONG{kWidth}, LONG{kHeight}));
        EXPECT_EQ(pixels_of(back, kWidth, kHeight), original);
        DeleteObject(back);
    });
}

TEST(DibWin32, BitmapToDibRefusals) {
    EXPECT_EQ(KELUTIL_BitmapToDIB(nullptr, nullptr, 0), nullptr) << "null bitmap";
    HBITMAP source = make_bitmap(24, 3, 2);
    ASSERT_NE(source, nullptr);
    pixels_of(source, 3, 2, 24);
    for (uint32_t bits : {2u, 3u, 5u, 7u}) EXPECT_EQ(KELUTIL_BitmapToDIB(source, nullptr, bits), nullptr) << bits;
    // A palette that is not a bitmap: GetObject reads no BITMAP.
    HPALETTE stock = static_cast<HPALETTE>(GetStockObject(DEFAULT_PALETTE));
    EXPECT_EQ(KELUTIL_BitmapToDIB(reinterpret_cast<HBITMAP>(stock), nullptr, 0), nullptr) << "not a bitmap";
    // An explicit palette works as the default one does.
    const Dib dib = lock(KELUTIL_BitmapToDIB(source, stock, 24));
    ASSERT_NE(dib.get(), nullptr);
    EXPECT_EQ(dib_pixel(dib.get(), 0, 0), pattern(0, 0, 24));
    DeleteObject(source);
}

// --------------------------------------------------------------------------
// DIBs built by hand

// A DIB block: a 40-byte header (or a 12-byte one), `table` at the start
// of the room its colour count takes, zeroed pixels.
HGLOBAL hand_dib(bool info, int width, int height, uint16_t bits, const std::vector<uint8_t>& table,
                 uint32_t clr_used = 0) {
    std::vector<uint8_t> b(info ? 40 : 12);
    if (info)
        *reinterpret_cast<BITMAPINFOHEADER*>(b.data()) = {40, width, height, 1, bits, BI_RGB, 0, 0, 0, clr_used, 0};
    else
        *reinterpret_cast<BITMAPCOREHEADER*>(b.data()) = {12, static_cast<WORD>(width), static_cast<WORD>(height), 1,
                                                          bits};
    const std::size_t header = b.size();
    b.resize(header + PaletteSize(b.data()) + row_bytes(bits, width) * height);
    std::copy(table.begin(), table.end(), b.begin() + static_cast<std::ptrdiff_t>(header));
    HGLOBAL h = GlobalAlloc(GMEM_MOVEABLE, b.size());
    std::memcpy(GlobalLock(h), b.data(), b.size());
    GlobalUnlock(h);
    return h;
}

// A colour table of blue, green, red (and a reserved byte with `quads`).
std::vector<uint8_t> rgb_table(const std::vector<COLORREF>& colours, bool quads) {
    std::vector<uint8_t> t;
    for (COLORREF c : colours) {
        t.insert(t.end(), {GetBValue(c), GetGValue(c), GetRValue(c)});
        if (quads) t.push_back(0);
    }
    return t;
}

// A palette's entries as colours, their flags in the top byte.
std::vector<COLORREF> colours_of(HPALETTE palette) {
    std::vector<PALETTEENTRY> entries(GetPaletteEntries(palette, 0, 0, nullptr));
    if (!entries.empty()) GetPaletteEntries(palette, 0, static_cast<UINT>(entries.size()), entries.data());
    std::vector<COLORREF> out;
    for (const auto& e : entries) out.push_back(RGB(e.peRed, e.peGreen, e.peBlue) | COLORREF{e.peFlags} << 24);
    return out;
}

TEST(DibWin32, CreateDibPaletteTakesTheColourTable) {
    vltest::for_each_row("output/dib_palettes.tsv", [](const DataRow& row) {
        const bool info = row.n(1) == 40;
        std::vector<COLORREF> table;  // no flags
        for (int i = 0; i < row.n(4); ++i) table.push_back(RGB(i, 255 - i, (i * 7) & 255));
        HGLOBAL h = hand_dib(info, 4, 2, static_cast<uint16_t>(row.n(2)), rgb_table(table, info),
                             static_cast<uint32_t>(row.n(3)));
        HPALETTE palette = CreateDIBPalette(h);
        ASSERT_NE(palette, nullptr);
        EXPECT_EQ(colours_of(palette), table);
        DeleteObject(palette);
        GlobalFree(h);
    });
}

TEST(DibWin32, CreateDibPaletteRefusals) {
    EXPECT_EQ(CreateDIBPalette(nullptr), nullptr) << "null handle";
    HGLOBAL true_colour = hand_dib(true, 3, 2, 24, {});
    EXPECT_EQ(CreateDIBPalette(true_colour), nullptr) << "24-bit";
    GlobalFree(true_colour);
    // The colour table must lie in the block: exactly there, one byte short.
    HGLOBAL exact = hand_dib(true, 0, 0, 4, rgb_table(std::vector<COLORREF>(16, RGB(10, 20, 30)), true));
    ASSERT_EQ(GlobalSize(exact), 40u + 64);
    HPALETTE palette = CreateDIBPalette(exact);
    EXPECT_EQ(colours_of(palette).size(), 16u) << "table fits exactly";
    DeleteObject(palette);
    HGLOBAL shorter = GlobalReAlloc(exact, 40 + 63, GMEM_MOVEABLE);
    ASSERT_NE(shorter, nullptr);
    // GlobalSize may round a block up; only a block that is really short
    // must be refused.
    EXPECT_TRUE(GlobalSize(shorter) >= 40 + 64 || !CreateDIBPalette(shorter)) << "one byte short";
    GlobalFree(shorter);
}

TEST(DibWin32, DibToBitmapTakesColourTablesAsPaletteIndices) {
    // Entry j of a colour table holds index n - 1 - j % n of the palette,
    // with n 4, or 2 for a table of two entries (an index past the table's
    // own size is read differently by different systems); pixel (x, y) takes
    // entry (x + 2y) % `used`.  A 32-bit DIB has no table: its pixels hold
    // the colours the indices would pick.
    const std::vector<COLORREF> colours = {RGB(0, 0, 255), RGB(255, 255, 0), RGB(255, 0, 0), RGB(0, 255, 0)};
    struct {
        WORD version, count;
        PALETTEENTRY entries[4];
    } logical{0x300, 4, {}};
    for (int i = 0; i < 4; ++i)
        logical.entries[i] = {GetRValue(colours[i]), GetGValue(colours[i]), GetBValue(colours[i]), 0};
    HPALETTE own = CreatePalette(reinterpret_cast<LOGPALETTE*>(&logical));
    ASSERT_NE(own, nullptr);
    const auto defaults = colours_of(static_cast<HPALETTE>(GetStockObject(DEFAULT_PALETTE)));
    ASSERT_GE(defaults.size(), 4u);
    const int width = 5, height = 3;
    vltest::for_each_row("output/dib_indices.tsv", [&](const DataRow& row) {
        const auto bits = static_cast<uint16_t>(row.n(2));
        const HPALETTE palette = row[4] == "own" ? own : nullptr;
        std::vector<uint8_t> indices;
        const int n = bits == 1 ? 2 : 4;
        for (int j = 0; bits <= 8 && j < (1 << bits); ++j) indices.insert(indices.end(), {uint8_t(n - 1 - j % n), 0});
        HGLOBAL h = hand_dib(row.n(1) == 40, width, height, bits, indices);
        auto* pixels = static_cast<uint8_t*>(FindDIBBits(GlobalLock(h)));
        std::vector<COLORREF> want;
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                const int entry = (x + 2 * y) % static_cast<int>(row.n(3)), index = n - 1 - entry % n;
                want.push_back(palette ? colours[index] : defaults[index] & 0xFFFFFF);
                uint8_t* line = pixels + row_bytes(bits, width) * (height - 1 - y);
                if (bits == 32)
                    std::memcpy(line + 4 * x, rgb_table({want.back()}, true).data(), 4);
                else
                    line[x * bits / 8] |= static_cast<uint8_t>(entry << (8 - bits - x * bits % 8));
            }
        GlobalUnlock(h);
        HBITMAP bitmap = DIBToBitmap(h, palette);
        ASSERT_NE(bitmap, nullptr);
        EXPECT_EQ(pixels_of(bitmap, width, height), want);
        DeleteObject(bitmap);
        GlobalFree(h);
    });
    DeleteObject(own);
}

TEST(DibWin32, DibToBitmapRefusals) {
    EXPECT_EQ(DIBToBitmap(nullptr, nullptr), nullptr) << "null handle";
    // 100 x 100 at 24 bits needs 40 + 30000 bytes.
    HGLOBAL h = hand_dib(true, 100, 100, 24, {});
    HGLOBAL shorter = GlobalReAlloc(h, 40 + 300, GMEM_MOVEABLE);
    ASSERT_NE(shorter, nullptr);
    EXPECT_EQ(DIBToBitmap(shorter, nullptr), nullptr) << "pixels beyond the block";
    GlobalFree(shorter);
}

// --------------------------------------------------------------------------
// System palette

TEST(DibWin32, SystemPaletteMirrorsTheSlots) {
    HDC screen = GetDC(nullptr);
    ASSERT_NE(screen, nullptr);
    int expected = GetDeviceCaps(screen, SIZEPALETTE);
    if (expected == 0) expected = GetDeviceCaps(screen, NUMCOLORS);
    ReleaseDC(nullptr, screen);
    HPALETTE palette = GetSystemPalette();
    // The run on a screen of 256 colours must meet a system palette.
    ASSERT_TRUE(expected > 0 || !std::getenv("VLCORE_TEST_PALETTE_SCREEN")) << "no palette on the palette screen";
    if (expected <= 0) {
        EXPECT_EQ(palette, nullptr) << "a device without palette size, " << expected;
        return;
    }
    // Entry i names slot i in its red and green bytes.
    std::vector<COLORREF> slots;
    for (int i = 0; i < expected; ++i) slots.push_back(static_cast<COLORREF>(i) | PC_EXPLICIT << 24);
    EXPECT_EQ(colours_of(palette), slots);
    DeleteObject(palette);
}

// --------------------------------------------------------------------------
// Bitmap file

constexpr int32_t kFinish = VL_BITMAPFILE_FINISH, kArea = VL_BITMAPFILE_AREA;

// Phase two into a new file, opened as _lwrite takes it: the bytes written.
std::vector<uint8_t> finish(HDC dc, intptr_t bits, int32_t flags = kFinish) {
    const vltest::ScratchFile path("bitmap");
    const HFILE file = _lcreat(path.path(), 0);
    EXPECT_NE(file, HFILE_ERROR);
    EXPECT_EQ(KELUTIL_BitmapFile(file, dc, bits, flags), nullptr) << "phase two answers 0";
    _lclose(file);
    const std::string bytes = path.read();
    return {bytes.begin(), bytes.end()};
}

TEST(DibWin32, BitmapFileDefaultPictureIsWhite200) {
    RECT area;
    std::memset(&area, vltest::kPoison, sizeof area);
    HDC dc = KELUTIL_BitmapFile(0, nullptr, reinterpret_cast<intptr_t>(&area), 0);
    ASSERT_NE(dc, nullptr);
    EXPECT_EQ(std::vector<LONG>({area.left, area.top, area.right, area.bottom}), std::vector<LONG>({0, 0, 200, 200}));
    const auto b = finish(dc, 24);
    ASSERT_EQ(b.size(), 14 + 40 + 600 * 200u);  // rows of 600 bytes need no padding
    EXPECT_EQ(get32(b.data() + 2), b.size());
    for (std::size_t i = 54; i < b.size(); ++i) ASSERT_EQ(b[i], 0xFF) << "byte " << i;
    // Without an area the default picture comes all the same.
    dc = KELUTIL_BitmapFile(0, nullptr, 0, 0);
    ASSERT_NE(dc, nullptr);
    EXPECT_EQ(finish(dc, 24).size(), b.size());
}

TEST(DibWin32, BitmapFileWritesTheDrawing) {
    vltest::for_each_row("output/dib_files.tsv", [](const DataRow& row) {
        const auto width = static_cast<int>(row.n(1)), height = static_cast<int>(row.n(2));
        const auto depth = static_cast<int>(row.n(5));
        const auto bits = static_cast<unsigned>(row.n(6));
        RECT area{vltest::kPoison, vltest::kPoison, width, height};
        HDC dc = KELUTIL_BitmapFile(0, nullptr, reinterpret_cast<intptr_t>(&area), static_cast<int32_t>(row.n(3)));
        ASSERT_NE(dc, nullptr);
        EXPECT_EQ(std::vector<LONG>({area.left, area.top, area.right, area.bottom}),
                  std::vector<LONG>({0, 0, width, height}));
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) SetPixel(dc, x, y, pattern(x, y, depth));
        const auto b = finish(dc, row.n(4), kFinish | 0x10000);
        const std::size_t offset = 14 + 40 + 4 * static_cast<std::size_t>(row.n(7));
        ASSERT_EQ(b.size(), offset + row_bytes(bits, width) * height);
        using Head = std::tuple<char, char, std::size_t, std::size_t, std::size_t>;  // "BM", size, 0, offset
        EXPECT_EQ(Head(b[0], b[1], get32(&b[2]), get32(&b[6]), get32(&b[10])), Head('B', 'M', b.size(), 0, offset));
        expect_header(&b[14], width, height, bits);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                ASSERT_EQ(dib_pixel(&b[14], x, y), pattern(x, y, depth)) << "pixel " << x << "," << y;
    });
}

TEST(DibWin32, BitmapFileExampleOfThreeByTwo) {
    RECT area{0, 0, 3, 2};
    HDC dc = KELUTIL_BitmapFile(0, nullptr, reinterpret_cast<intptr_t>(&area), kArea);
    ASSERT_NE(dc, nullptr);
    SetPixel(dc, 0, 1, RGB(0x10, 0x20, 0x30));  // bottom row, first pixel
    const auto b = finish(dc, 24);
    ASSERT_EQ(b.size(), 78u);
    vltest::for_each_row("output/dib_file_3x2.tsv", [&b](const DataRow& row) {
        std::istringstream hex(row[1]);
        for (auto [at, byte] = std::pair{static_cast<std::size_t>(row.n(0)), 0u}; hex >> std::hex >> byte; ++at)
            EXPECT_EQ(b.at(at), byte) << "byte " << at;
    });
}

TEST(DibWin32, BitmapFileRefusals) {
    // A size below one pixel makes no picture and leaves the area alone.
    for (RECT bad : {RECT{0, 0, 0, 5}, RECT{0, 0, 5, 0}, RECT{0, 0, -3, 4}}) {
        RECT area = bad;
        EXPECT_EQ(KELUTIL_BitmapFile(0, nullptr, reinterpret_cast<intptr_t>(&area), kArea), nullptr);
        EXPECT_EQ(std::memcmp(&area, &bad, sizeof area), 0);
    }
    EXPECT_EQ(KELUTIL_BitmapFile(0, nullptr, 0, kArea), nullptr) << "null area with a size asked for";
    // Without a picture under way, phase two writes nothing.
    EXPECT_EQ(finish(nullptr, 24).size(), 0u);
    // A picture whose depth makes no DIB writes nothing either.
    RECT area{0, 0, 4, 4};
    HDC dc = KELUTIL_BitmapFile(0, nullptr, reinterpret_cast<intptr_t>(&area), kArea);
    ASSERT_NE(dc, nullptr);
    EXPECT_EQ(finish(dc, 3).size(), 0u);
}

}  // namespace
