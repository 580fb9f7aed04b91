// KELUTIL_Color: the host's door to the colour table.  Everything but the
// pens, brushes and combo box items is table logic and the settings file.

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <string_view>

#include "colour/colour.h"
#include "platform/platform.h"

namespace vl::colour {
namespace {

enum Operation : uint16_t {
    kLoad = VL_COLOR_LOAD,
    kEnd = VL_COLOR_DELETE_PALETTE,
    kEdit = VL_COLOR_DIALOG,
    kCount = VL_COLOR_COUNT,
    kMakePen = VL_COLOR_MAKE_PEN,
    kReleasePen = VL_COLOR_DROP_PEN,
    kRgbOf = VL_COLOR_RGB,
    kFillCombo = VL_COLOR_FILL_COMBO,
    kStockPen = VL_COLOR_STOCK_PEN,
    kMakeBrush = VL_COLOR_MAKE_BRUSH,
    kLighterBrush = VL_COLOR_LIGHTER_BRUSH,
    kReleaseBrush = VL_COLOR_DROP_BRUSH,
    kDarkerBrush = VL_COLOR_DARKER_BRUSH,
    kDarkerPen = VL_COLOR_DARKER_PEN,
    kNumberOfName = VL_COLOR_FIND_NAME,
    kNameOf = VL_COLOR_NAME,
    kNumberOfRgb = VL_COLOR_FIND_RGB,
    kNearest = VL_COLOR_NEAREST,
    kRgbCyclic = VL_COLOR_RGB_WRAPPED,
    kSetCount = VL_COLOR_SET_COUNT,
    kSetRgb = VL_COLOR_SET_RGB,
    kSetName = VL_COLOR_SET_NAME,
    kSave = VL_COLOR_SAVE,
    kCapacity = VL_COLOR_ROOM,
    kDefaults = VL_COLOR_RESTORE,
};

constexpr const char* kSection = "Color List";
constexpr uint32_t kFirstNameString = 101;
constexpr uint32_t kTransparentString = 28000;
constexpr std::size_t kKeyListRoom = 1000;
constexpr std::size_t kValueRoom = 120;
// The farthest two colours can be is 3 * 255 * 255 = 195075.
constexpr int32_t kFarther = 260100;

// KELUTIL_Palette operations the table calls on.
constexpr uint32_t kPaletteBuild = VL_PALETTE_BUILD, kPaletteDelete = VL_PALETTE_DELETE, kPaletteRefresh = VL_PALETTE_REFRESH, kPaletteColour = VL_PALETTE_DRAWING_COLOUR;
// KELUTIL_3Dsquare's command that turns a line width into device units.
constexpr uint32_t kLineWidth = VL_SQUARE_TO_DEVICE;

ColorTable& table = color_table;

void set_name(color_entry& row, std::string_view name) noexcept {
    row.name.fill('\0');
    const std::size_t n = std::min(name.size(), kNameRoom - 1);
    std::copy_n(name.begin(), n, row.name.begin());
}

// Rows at and past the count of a copied table read as empty.
void copy_table(ColorTable& to, const ColorTable& from) noexcept {
    to.count = from.count;
    for (std::size_t i = 0; i < kTableRows; ++i)
        to.rows[i] = static_cast<int32_t>(i) < from.count ? from.rows[i] : color_entry{};
}

bool in_table(uint32_t number) noexcept { return static_cast<int64_t>(number) < table.count; }

// 5. "R G B" of the settings file: two tokens and the rest, each cut to a
//    byte.
uint32_t read_rgb(const char* text) noexcept {
    std::array<char, kValueRoom> token{};
    const char* rest = KELUTIL_next_token(token.data(), text);
    const int32_t red = KELUTIL_str2int(token.data());
    rest = KELUTIL_next_token(token.data(), rest);
    const int32_t green = KELUTIL_str2int(token.data());
    const int32_t blue = KELUTIL_str2int(rest);
    return (static_cast<uint32_t>(red) & 0xFF) | (static_cast<uint32_t>(green) & 0xFF) << 8 |
           (static_cast<uint32_t>(blue) & 0xFF) << 16;
}

int32_t load(const char* path) noexcept {
    // 1. The snapshot keeps the names as built in, before the string table
    //    and the file have their say.
    copy_table(color_defaults, table);
    // 2. The names in the user's language.
    for (int32_t row = 0; row < table.count; ++row) {
        std::array<char, kValueRoom> text{};
        if (platform::load_string(kFirstNameString + static_cast<uint32_t>(row), text) == 0) break;
        set_name(table.rows[static_cast<std::size_t>(row)], text.data());
    }
    // 3. The user's own list, if the settings file has one.  No file name
    //    means no list: a null name would reach the system's own profile.
    std::array<char, kKeyListRoom> keys{};
    const uint32_t got = path ? platform::private_profile_string(kSection, nullptr, "", keys, path) : 0;
    if (got < 3) return static_cast<int32_t>(got);
    // 4. and 5. One row a key, as far as the table has room; each value is
    //    read by the full key, even when the row's name had to be cut.
    int32_t count = 0;
    for (const char* key = keys.data(); *key != '\0' && count < static_cast<int32_t>(kTableRows);
         key += std::strlen(key) + 1) {
        color_entry& row = table.rows[static_cast<std::size_t>(count++)];
        set_name(row, key);
        std::array<char, kValueRoom> value{};
        platform::private_profile_string(kSection, key, "", value, path);
        row.rgb = read_rgb(value.data());
    }
    table.count = count;
    // 6. The palette follows the loaded list.
    return static_cast<int32_t>(KELUTIL_Palette(nullptr, kPaletteBuild, 0, reinterpret_cast<intptr_t>(path)));
}

int32_t save(const char* path) noexcept {
    if (path == nullptr) return 0;
    platform::write_private_profile_string(kSection, nullptr, nullptr, path);
    for (int32_t i = 0; i < table.count; ++i) {
        const color_entry& row = table.rows[static_cast<std::size_t>(i)];
        std::array<char, 16> value{};
        char* end = value.data();
        for (int shift : {0, 8, 16}) {
            if (shift) *end++ = ' ';
            end = std::to_chars(end, value.data() + value.size() - 1, (row.rgb >> shift) & 0xFF).ptr;
        }
        platform::write_private_profile_string(kSection, row.name.data(), value.data(), path);
    }
    return table.count;
}

// The Colour dialog; only an OK after an edit leads to the question, and
// only Yes writes the file and brings the palette up to the new table.
void edit(void* owner, const char* path) noexcept {
    if (dialog::run(owner) != 1) return;
    if (!dialog::ask_to_save()) return;
    save(path);
    KELUTIL_Palette(nullptr, kPaletteRefresh, 0, 0);
}

// Stores the RGB of a row, or 0; 1 when there is none to give.
int32_t give_rgb(uint32_t number, intptr_t value) noexcept {
    auto* out = reinterpret_cast<uint32_t*>(value);
    if (out == nullptr) return 1;
    *out = in_table(number) ? table.rows[number].rgb : 0;
    return in_table(number) ? 0 : 1;
}

// The cyclic operations take the number modulo the count; an empty table
// has no row to wrap onto.
bool wrap(uint32_t& number) noexcept {
    if (table.count <= 0) return false;
    number %= static_cast<uint32_t>(table.count);
    return true;
}

uint32_t rgb_or_black(uint32_t number) noexcept { return in_table(number) ? table.rows[number].rgb : 0; }

uint32_t drawing_colour(uint32_t rgb) noexcept {
    return static_cast<uint32_t>(KELUTIL_Palette(nullptr, kPaletteColour, 0, static_cast<int32_t>(rgb)));
}

void release_pen(VL_HDC dc) noexcept {
    if (dc) gdi::select_stock(dc, gdi::kBlackPen);
    if (color_pen) gdi::delete_object(color_pen);
    color_pen = nullptr;
}

void hold_pen(VL_HDC dc, void* pen) noexcept {
    color_pen = pen;
    if (pen) gdi::select(dc, pen);
}

void hold_brush(VL_HDC dc, void* brush) noexcept {
    color_brush = brush;
    if (brush) gdi::select(dc, brush);
}

int32_t make_pen(VL_HDC dc, uint32_t number, intptr_t width) noexcept {
    // 1. No context, no pen; a pen made before goes first.
    if (dc == nullptr) return 0;
    if (color_pen) release_pen(dc);
    // 2. The row's colour, black for a number the table lacks.
    const uint32_t rgb = rgb_or_black(number);
    // 3. The bevelled square routine knows the device's resolution and zoom.
    const int16_t units =
        width == 0
            ? 0
            : static_cast<int16_t>(KELUTIL_3Dsquare(dc, static_cast<int32_t>(width), nullptr, nullptr, kLineWidth));
    // 4. Made in the palette's drawing colour, held and selected.
    hold_pen(dc, gdi::create_pen(units, drawing_colour(rgb)));
    return 0;
}

int32_t make_darker_pen(VL_HDC dc, uint32_t number, intptr_t percent) noexcept {
    if (percent == 0) return make_pen(dc, number, 0);
    if (dc == nullptr) return 0;
    if (color_pen) release_pen(dc);
    hold_pen(dc, gdi::create_pen(0, darken(rgb_or_black(number), static_cast<int32_t>(percent))));
    return 0;
}

int32_t stock_pen(VL_HDC dc, uint32_t which) noexcept {
    if (color_pen) release_pen(dc);
    if (dc == nullptr) return 1;
    gdi::select_stock(dc, static_cast<uint16_t>(which) == 0 ? gdi::kNullPen : gdi::kBlackPen);
    return 0;
}

int32_t make_brush(VL_HDC dc, uint32_t number) noexcept {
    if (!in_table(number)) {
        gdi::select_stock(dc, gdi::kHollowBrush);
        color_brush = nullptr;
        return 0;
    }
    hold_brush(dc, gdi::create_solid_brush(drawing_colour(table.rows[number].rgb)));
    return 0;
}

int32_t release_brush(VL_HDC dc) noexcept {
    gdi::select_stock(dc, gdi::kBlackBrush);
    if (color_brush) gdi::delete_object(color_brush);
    color_brush = nullptr;
    return 0;
}

int32_t fill_combo(void* combo) noexcept {
    for (int32_t i = 0; i < table.count; ++i)
        gdi::add_combo_item(combo, table.rows[static_cast<std::size_t>(i)].name.data());
    std::array<char, kValueRoom> transparent{};
    platform::load_string(kTransparentString, transparent);
    gdi::add_combo_item(combo, transparent.data());
    return 0;
}

int32_t number_of_name(const char* name) noexcept {
    if (name == nullptr) return 0;
    for (int32_t i = 0; i < table.count; ++i)
        if (platform::compare_nocase(table.rows[static_cast<std::size_t>(i)].name.data(), name) == 0) return i + 1;
    return 0;
}

int32_t name_of(uint32_t number, intptr_t value) noexcept {
    auto* out = reinterpret_cast<char*>(value);
    if (out == nullptr) return 1;
    if (!wrap(number)) {
        *out = '\0';
        return 1;
    }
    std::memcpy(out, table.rows[number].name.data(), std::strlen(table.rows[number].name.data()) + 1);
    return 0;
}

int32_t number_of_rgb(uint32_t rgb) noexcept {
    for (int32_t i = 0; i < table.count; ++i)
        if (table.rows[static_cast<std::size_t>(i)].rgb == rgb) return i + 1;
    return 0;
}

int32_t nearest(uint32_t rgb) noexcept {
    int32_t best = 0, best_distance = kFarther;
    for (int32_t i = 0; i < table.count; ++i) {
        const uint32_t row = table.rows[static_cast<std::size_t>(i)].rgb;
        int32_t distance = 0;
        for (int shift : {0, 8, 16}) {
            const int32_t d = static_cast<int32_t>((row >> shift) & 0xFF) - static_cast<int32_t>((rgb >> shift) & 0xFF);
            distance += d * d;
        }
        if (distance < best_distance) best = i, best_distance = distance;
    }
    return best;
}

}  // namespace
}  // namespace vl::colour

using namespace vl;
using namespace vl::colour;

extern "C" int32_t VLAPI KELUTIL_Color(void* handle, uint32_t number_arg, intptr_t value, uint32_t operation_arg) noexcept {
    const auto operation = static_cast<uint16_t>(operation_arg);
    uint32_t number = static_cast<uint16_t>(number_arg);
    auto* dc = static_cast<VL_HDC>(handle);
    switch (operation) {
        case kLoad: return load(reinterpret_cast<const char*>(value));
        case kEnd: KELUTIL_Palette(nullptr, kPaletteDelete, 0, 0); return 0;
        case kEdit: edit(handle, reinterpret_cast<const char*>(value)); return 0;
        case kCount: return table.count;
        case kMakePen: return make_pen(dc, number, value);
        case kReleasePen: release_pen(dc); return 0;
        case kRgbOf: return give_rgb(number, value);
        case kFillCombo: return fill_combo(handle);
        case kStockPen: return stock_pen(dc, number);
        case kMakeBrush: return make_brush(dc, number);
        case kLighterBrush:
            hold_brush(dc, gdi::create_solid_brush(lighten(rgb_or_black(number), static_cast<int32_t>(value))));
            return 0;
        case kReleaseBrush: return release_brush(dc);
        case kDarkerBrush:
            hold_brush(dc, gdi::create_solid_brush(darken(rgb_or_black(number), static_cast<int32_t>(value))));
            return 0;
        case kDarkerPen: return make_darker_pen(dc, number, value);
        case kNumberOfName: return number_of_name(reinterpret_cast<const char*>(value));
        case kNameOf: return name_of(number, value);
        case kNumberOfRgb: return number_of_rgb(static_cast<uint32_t>(value));
        case kNearest: return nearest(static_cast<uint32_t>(value));
        case kRgbCyclic:
            if (value && !wrap(number)) {
                *reinterpret_cast<uint32_t*>(value) = 0;
                return 1;
            }
            return give_rgb(number, value);
        // The table has room for 40 rows: counts and rows beyond that are
        // held to it rather than written past its end.
        case kSetCount: table.count = static_cast<int32_t>(std::clamp<intptr_t>(value, 0, kTableRows)); return 0;
        case kSetRgb:
            if (number < kTableRows) table.rows[number].rgb = static_cast<uint32_t>(value);
            return 0;
        case kSetName:
            if (number < kTableRows && value) set_name(table.rows[number], reinterpret_cast<const char*>(value));
            return 0;
        case kSave: return save(reinterpret_cast<const char*>(value));
        case kCapacity: return static_cast<int32_t>(kTableRows);
        case kDefaults: copy_table(table, color_defaults); return 0;
        default: return operation;
    }
}
