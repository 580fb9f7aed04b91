// The process-wide state of the colour subsystem, in one place, and the
// small pieces of arithmetic that the pens, brushes and palette share.

#include <algorithm>
#include <string_view>

#include "colour/colour.h"

namespace vl::colour {
namespace {

struct BuiltinRow {
    std::string_view name;
    uint8_t red, green, blue;
};

constexpr BuiltinRow kBuiltinRows[] = {
    {"Black", 0, 0, 0},
    {"Red", 255, 0, 0},
    {"Green", 0, 255, 0},
    {"Blue", 0, 0, 255},
    {"Cyan", 0, 255, 255},
    {"Magenta", 255, 0, 255},
    {"Yellow", 255, 255, 0},
    {"Dark Yellow", 128, 128, 0},
    {"Navy", 0, 0, 128},
    {"Purple", 128, 0, 128},
    {"Wine", 128, 0, 0},
    {"Olive", 0, 128, 0},
    {"Dark Cyan", 0, 128, 128},
    {"Royal", 0, 0, 160},
    {"Orange", 255, 128, 0},
    {"Violet", 128, 0, 255},
    {"Pink", 255, 0, 128},
    {"White", 255, 255, 255},
    {"Light Gray", 192, 192, 192},
    {"Gray", 128, 128, 128},
    {"LT Yellow", 255, 255, 128},
    {"LT Cyan", 128, 255, 255},
    {"LT Magenta", 255, 128, 255},
    {"Dark Gray", 64, 64, 64},
};
static_assert(std::size(kBuiltinRows) <= kTableRows);

uint8_t component(uint32_t rgb, int shift) noexcept { return static_cast<uint8_t>(rgb >> shift); }

uint32_t pack(int64_t red, int64_t green, int64_t blue) noexcept {
    return (static_cast<uint32_t>(red) & 0xFF) | (static_cast<uint32_t>(green) & 0xFF) << 8 |
           (static_cast<uint32_t>(blue) & 0xFF) << 16;
}

}  // namespace

ColorTable builtin_table() noexcept {
    ColorTable t;
    for (std::size_t i = 0; i < std::size(kBuiltinRows); ++i) {
        const BuiltinRow& r = kBuiltinRows[i];
        std::copy(r.name.begin(), r.name.end(), t.rows[i].name.begin());
        t.rows[i].rgb = pack(r.red, r.green, r.blue);
    }
    t.count = static_cast<int32_t>(std::size(kBuiltinRows));
    return t;
}

// The snapshot starts as the built-in table too, so that going back to the
// defaults before the host's first start gives the built-in colours
// rather than an empty table.
ColorTable color_table = builtin_table();
ColorTable color_defaults = builtin_table();
void* color_pen = nullptr;
void* color_brush = nullptr;

int32_t square_size = 600;
int32_t square_resolution = 300;
int32_t square_zoom = 100;

void* color_palette = nullptr;
PaletteEntries palette_entries{};
int8_t color_type = 0;

ColorTable color_work{};
uint16_t color_modified = 0;
std::array<uint32_t, kCustomColours> color_custom{};
ColorChooser color_chooser{};

int32_t line_width_units(int16_t width) noexcept {
    const double units = square_resolution * 0.013888888888888888 * (width * 0.002) * (square_zoom * 0.01) + 0.5;
    return static_cast<int32_t>(units);
}

// Percentages far outside 0 to 100 stay within 64 bits before the low 8
// bits are taken.
uint32_t lighten(uint32_t rgb, int32_t percent) noexcept {
    const double f = percent * 0.01;
    const float g = static_cast<float>(1.0 - f);
    auto shade = [&](int shift) {
        return static_cast<int64_t>(static_cast<float>(component(rgb, shift)) * g + f * 255);
    };
    return pack(shade(0), shade(8), shade(16));
}

uint32_t darken(uint32_t rgb, int32_t percent) noexcept {
    const double f = (100 - percent) * 0.01;
    auto shade = [&](int shift) { return static_cast<int64_t>(component(rgb, shift) * f); };
    return pack(shade(0), shade(8), shade(16));
}

PaletteEntry palette_entry(uint32_t rgb) noexcept {
    return {component(rgb, 0), component(rgb, 8), component(rgb, 16), kReservedEntry};
}

}  // namespace vl::colour
