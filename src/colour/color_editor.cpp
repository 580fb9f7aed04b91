// The Colour dialog's edits on its working copy of the colour table: the
// steps of the dialog with the list box and edit boxes taken away.
//
// Choices of this library where the dialog sets no rule:
//  - Delete of the only row left is refused (the dialog beeps): an empty
//    list would leave the steps that start from the selected row without
//    a row.
//  - A name longer than the name box gives is cut to 24 characters; the
//    row's 28 bytes are never overrun.
//  - At 40 rows Add only beeps.

#include <algorithm>

#include "colour/colour.h"

namespace vl::colour {
namespace {

// The gray ramp of the custom colours falls by 16 a step.
constexpr uint32_t kRampStep = 16;

uint32_t pack(uint32_t red, uint32_t green, uint32_t blue) noexcept {
    return (red & 0xFF) | (green & 0xFF) << 8 | (blue & 0xFF) << 16;
}

color_entry& work_row(int32_t row) noexcept { return color_work.rows[static_cast<std::size_t>(row)]; }

// Rows at and past the count read as empty, so a row added later starts
// from nothing.
void copy_rows(ColorTable& to, const ColorTable& from) noexcept {
    const int32_t count = std::clamp<int32_t>(from.count, 0, static_cast<int32_t>(kTableRows));
    to.count = count;
    for (std::size_t i = 0; i < kTableRows; ++i)
        to.rows[i] = static_cast<int32_t>(i) < count ? from.rows[i] : color_entry{};
}

}  // namespace

void reset_chooser(void* owner) noexcept {
    for (std::size_t i = 0; i < kCustomColours; ++i) {
        const uint32_t gray = 255 - kRampStep * static_cast<uint32_t>(i);
        color_custom[i] = pack(gray, gray, gray);
    }
    color_chooser = ColorChooser{};
    color_chooser.size = sizeof(ColorChooser);
    color_chooser.owner = owner;
    color_chooser.custom = color_custom.data();
    color_chooser.flags = kChooserFullOpen;
}

void load_work() noexcept { copy_rows(color_work, color_table); }

void commit_work() noexcept { copy_rows(color_table, color_work); }

bool has_work_row(int32_t row) noexcept { return row >= 0 && row < color_work.count; }

int32_t add_work_row() noexcept {
    if (color_work.count >= static_cast<int32_t>(kTableRows)) return kNoRow;
    const int32_t row = color_work.count++;
    work_row(row) = color_entry{};
    return row;
}

void update_work_row(int32_t row, std::string_view name, uint32_t red, uint32_t green, uint32_t blue) noexcept {
    if (!has_work_row(row)) return;
    color_entry& entry = work_row(row);
    entry.name.fill('\0');
    const std::size_t n = std::min({name.size(), kDialogNameChars, kNameRoom - 1});
    std::copy_n(name.begin(), n, entry.name.begin());
    entry.rgb = pack(red, green, blue);
}

bool delete_work_row(int32_t row) noexcept {
    if (!has_work_row(row) || color_work.count <= 1) return false;
    const auto first = color_work.rows.begin();
    std::move(first + row + 1, first + color_work.count, first + row);
    work_row(--color_work.count) = color_entry{};
    return true;
}

bool work_rgb(int32_t row, uint32_t& rgb) noexcept {
    if (!has_work_row(row)) return false;
    rgb = work_row(row).rgb;
    return true;
}

bool set_work_rgb(int32_t row, uint32_t rgb) noexcept {
    if (!has_work_row(row)) return false;
    work_row(row).rgb = rgb;
    return true;
}

}  // namespace vl::colour
