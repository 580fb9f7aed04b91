// Native builds have no window system: no pen, brush, palette or combo box
// is ever made or filled, so the colour operations that need one find
// nothing held and draw nothing.

#include "colour/colour.h"

namespace vl::colour::gdi {

void* create_pen(int32_t /*width*/, uint32_t /*colour*/) noexcept { return nullptr; }
void* create_solid_brush(uint32_t /*colour*/) noexcept { return nullptr; }
void select(VL_HDC /*dc*/, void* /*object*/) noexcept {}
void select_stock(VL_HDC /*dc*/, int /*stock*/) noexcept {}
void delete_object(void* /*object*/) noexcept {}
void add_combo_item(void* /*combo*/, const char* /*text*/) noexcept {}
void* create_palette(const PaletteEntries& /*entries*/) noexcept { return nullptr; }
void set_palette_entries(void* /*palette*/, std::size_t /*first*/, std::span<const PaletteEntry> /*entries*/) noexcept {
}
void select_palette(VL_HDC /*dc*/, void* /*palette*/) noexcept {}

void rectangle(VL_HDC /*dc*/, const Rect& /*r*/) noexcept {}
void polygon(VL_HDC /*dc*/, std::span<const Point> /*points*/) noexcept {}
void move_to(VL_HDC /*dc*/, Point /*p*/) noexcept {}
void line_to(VL_HDC /*dc*/, Point /*p*/) noexcept {}
void to_device(VL_HDC /*dc*/, std::span<Point, 2> /*points*/) noexcept {}
void begin_device_units(VL_HDC /*dc*/) noexcept {}
void end_device_units(VL_HDC /*dc*/) noexcept {}
void* stock(int /*number*/) noexcept { return nullptr; }

}  // namespace vl::colour::gdi

namespace vl::colour::dialog {

// No dialog to show: the edit ends as a dialog closed without OK does.
intptr_t run(void* /*owner*/) noexcept { return 2; }
bool ask_to_save() noexcept { return false; }

}  // namespace vl::colour::dialog
