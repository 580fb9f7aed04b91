// KELUTIL_Palette: the library's one logical palette, built from the
// colour table, and the drawing colour of an RGB under the colour type.

#include <algorithm>
#include <array>
#include <charconv>

#include "colour/colour.h"
#include "platform/platform.h"

namespace vl::colour {
namespace {

enum Operation : uint16_t {
    kBuild = VL_PALETTE_BUILD,
    kDelete = VL_PALETTE_DELETE,
    kSelect = VL_PALETTE_SELECT,
    kSelectDefault = VL_PALETTE_SELECT_DEFAULT,
    kType = VL_PALETTE_TYPE,
    kRefresh = VL_PALETTE_REFRESH,
    kHostColours = VL_PALETTE_HOST_COLOURS,
    kDrawingColour = VL_PALETTE_DRAWING_COLOUR,
    kSaveType = VL_PALETTE_SAVE_TYPE,
    kHandle = VL_PALETTE_HANDLE,
};

// KELUTIL_Color operations the palette reads the table through.
constexpr uint32_t kTableCount = VL_COLOR_COUNT, kTableRgb = VL_COLOR_RGB;

// Colour types.
constexpr int8_t kDefaultColours = 0, kPureColours = 1;
// The top byte of a palette-relative colour.
constexpr uint32_t kPaletteRelative = 0x02000000;

uint32_t table_rgb(uint32_t row) noexcept {
    uint32_t rgb = 0;
    KELUTIL_Color(nullptr, row, reinterpret_cast<intptr_t>(&rgb), kTableRgb);
    return rgb;
}

void build() noexcept {
    if (color_palette) return;
    // Every entry reserved; the table's rows first, 0 past its count, and
    // the rest left for the host.
    palette_entries.fill(PaletteEntry{0, 0, 0, kReservedEntry});
    for (uint32_t row = 0; row < kTableRows; ++row) palette_entries[row] = palette_entry(table_rgb(row));
    color_palette = gdi::create_palette(palette_entries);
}

void refresh() noexcept {
    const auto n = std::min<std::size_t>(static_cast<uint16_t>(KELUTIL_Color(nullptr, 0, 0, kTableCount)), kTableRows);
    for (uint32_t row = 0; row < n; ++row) palette_entries[row] = palette_entry(table_rgb(row));
    gdi::set_palette_entries(color_palette, 0, std::span(palette_entries).first(n));
}

// The host's colours go from entry 39 on, as many as the palette has room
// for.
void host_colours(VL_HDC dc, uint32_t count, const uint32_t* colours) noexcept {
    if (dc) gdi::select_palette(dc, nullptr);
    if (colours == nullptr) return;
    const std::size_t n = std::min<std::size_t>(count, kPaletteEntries - kHostColourEntry);
    for (std::size_t i = 0; i < n; ++i) palette_entries[kHostColourEntry + i] = palette_entry(colours[i]);
    gdi::set_palette_entries(color_palette, kHostColourEntry, std::span(palette_entries).subspan(kHostColourEntry, n));
}

void select(VL_HDC dc) noexcept {
    if (color_palette == nullptr) build();
    if (dc == nullptr) return;
    if (color_type == kDefaultColours)
        gdi::select_palette(dc, nullptr);
    else if (color_type == kPureColours)
        gdi::select_palette(dc, color_palette);
}

uint32_t drawing_colour(uint32_t rgb) noexcept {
    if (color_type == kPureColours) return (rgb & 0x00FFFFFF) | kPaletteRelative;
    return rgb;
}

void save_type(const char* path) noexcept {
    if (path == nullptr) return;
    std::array<char, 8> text{};
    std::to_chars(text.data(), text.data() + text.size() - 1, static_cast<int>(color_type));
    platform::write_private_profile_string("Color List2", "Color Type", text.data(), path);
}

}  // namespace
}  // namespace vl::colour

using namespace vl;
using namespace vl::colour;

extern "C" intptr_t VLAPI KELUTIL_Palette(VL_HDC dc, uint32_t operation, uint32_t count, intptr_t value) noexcept {
    switch (static_cast<uint16_t>(operation)) {
        case kBuild: build(); return 0;
        case kDelete:
            if (color_palette) gdi::delete_object(color_palette);
            color_palette = nullptr;
            return 0;
        case kSelect: select(dc); return 0;
        case kSelectDefault: gdi::select_palette(dc, nullptr); return 0;
        case kType: return color_type;
        case kRefresh: refresh(); return 0;
        case kHostColours:
            host_colours(dc, static_cast<uint16_t>(count), reinterpret_cast<const uint32_t*>(value));
            return 0;
        // Any colour type other than the pure colours draws with the RGB as
        // it stands.
        case kDrawingColour: return static_cast<int32_t>(drawing_colour(static_cast<uint32_t>(value)));
        case kSaveType: save_type(reinterpret_cast<const char*>(value)); return 0;
        case kHandle: return reinterpret_cast<intptr_t>(color_palette);
        default: return 0;
    }
}
