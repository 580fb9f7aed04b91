// The colour subsystem's pens, brushes, combo box items and palette, made
// and selected with the window system.

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstddef>

#include "colour/colour.h"

namespace vl::colour::gdi {

void* create_pen(int32_t width, uint32_t colour) noexcept { return CreatePen(PS_SOLID, width, colour); }

void* create_solid_brush(uint32_t colour) noexcept { return CreateSolidBrush(colour); }

void select(VL_HDC dc, void* object) noexcept {
    if (dc) SelectObject(dc, static_cast<HGDIOBJ>(object));
}

void select_stock(VL_HDC dc, int stock) noexcept {
    if (dc) SelectObject(dc, GetStockObject(stock));
}

void delete_object(void* object) noexcept { DeleteObject(static_cast<HGDIOBJ>(object)); }

void add_combo_item(void* combo, const char* text) noexcept {
    SendMessageA(static_cast<HWND>(combo), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
}

namespace {

// The most corners a drawn polygon has: the bevel's shadow has six.
constexpr std::size_t kMostPolygonPoints = 8;

// The library's palette entries in the system's form.  No palette has more
// than kPaletteEntries entries, so the conversion needs no memory.
struct SystemEntries {
    std::array<PALETTEENTRY, kPaletteEntries> rows{};
    std::size_t count = 0;
};

SystemEntries system_entries(std::span<const PaletteEntry> entries) noexcept {
    SystemEntries out;
    out.count = std::min(entries.size(), out.rows.size());
    for (std::size_t i = 0; i < out.count; ++i)
        out.rows[i] = {entries[i].red, entries[i].green, entries[i].blue, entries[i].flags};
    return out;
}

// LOGPALETTE with room for the whole palette behind its header.
struct WholePalette {
    WORD palVersion;
    WORD palNumEntries;
    PALETTEENTRY palPalEntry[kPaletteEntries];
};
static_assert(offsetof(WholePalette, palPalEntry) == offsetof(LOGPALETTE, palPalEntry));

}  // namespace

void* create_palette(const PaletteEntries& entries) noexcept {
    // The logical palette record: version and count, then the entries.
    WholePalette record{};
    record.palVersion = kPaletteVersion;
    record.palNumEntries = static_cast<WORD>(kPaletteEntries);
    const SystemEntries converted = system_entries(entries);
    std::copy_n(converted.rows.begin(), converted.count, record.palPalEntry);
    return CreatePalette(reinterpret_cast<const LOGPALETTE*>(&record));
}

void set_palette_entries(void* palette, std::size_t first, std::span<const PaletteEntry> entries) noexcept {
    if (palette == nullptr || entries.empty()) return;
    const SystemEntries converted = system_entries(entries);
    SetPaletteEntries(static_cast<HPALETTE>(palette), static_cast<UINT>(first), static_cast<UINT>(converted.count),
                      converted.rows.data());
}

void select_palette(VL_HDC dc, void* palette) noexcept {
    if (dc == nullptr) return;
    HPALETTE chosen = palette ? static_cast<HPALETTE>(palette) : static_cast<HPALETTE>(GetStockObject(DEFAULT_PALETTE));
    if (SelectPalette(dc, chosen, FALSE)) RealizePalette(dc);
}

}  // namespace vl::colour::gdi

namespace vl::colour::gdi {

void rectangle(VL_HDC dc, const Rect& r) noexcept { Rectangle(dc, r.left, r.top, r.right, r.bottom); }

void polygon(VL_HDC dc, std::span<const Point> points) noexcept {
    // The bevelled shapes have a handful of corners; more are not drawn.
    std::array<POINT, kMostPolygonPoints> converted{};
    const std::size_t n = std::min(points.size(), converted.size());
    for (std::size_t i = 0; i < n; ++i) converted[i] = {points[i].x, points[i].y};
    Polygon(dc, converted.data(), static_cast<int>(n));
}

void move_to(VL_HDC dc, Point p) noexcept { MoveToEx(dc, p.x, p.y, nullptr); }

void line_to(VL_HDC dc, Point p) noexcept { LineTo(dc, p.x, p.y); }

void to_device(VL_HDC dc, std::span<Point, 2> points) noexcept {
    POINT converted[2] = {{points[0].x, points[0].y}, {points[1].x, points[1].y}};
    if (!LPtoDP(dc, converted, 2)) return;
    for (int i = 0; i < 2; ++i) points[static_cast<std::size_t>(i)] = {converted[i].x, converted[i].y};
}

void begin_device_units(VL_HDC dc) noexcept {
    SaveDC(dc);
    SetMapMode(dc, MM_TEXT);
    SetViewportOrgEx(dc, 0, 0, nullptr);
    SetWindowOrgEx(dc, 0, 0, nullptr);
}

void end_device_units(VL_HDC dc) noexcept { RestoreDC(dc, -1); }

void* stock(int number) noexcept { return GetStockObject(number); }

}  // namespace vl::colour::gdi
