// The colour subsystem: the table of named colours, the palette built from
// it, and the thin window-system half that turns colours into pens,
// brushes, combo box items and palettes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "vlcore.h"

namespace vl::colour {

// ---- The colour table --------------------------------------------------------

constexpr std::size_t kNameRoom = VL_COLOR_NAME_ROOM;  // name bytes of a row, terminator included
constexpr std::size_t kTableRows = VL_COLOR_ROWS;

struct color_entry {
    std::array<char, kNameRoom> name{};
    uint32_t rgb = 0;  // 0x00BBGGRR
};

struct ColorTable {
    std::array<color_entry, kTableRows> rows{};
    int32_t count = 0;
};

// The table the library starts with: 24 rows, their names as the string
// table gives them at load.
ColorTable builtin_table() noexcept;

// The live table, and the snapshot that "back to the defaults" returns to.
// color_table.count is the table's `color_count`.
extern ColorTable color_table;
extern ColorTable color_defaults;

// The one pen and the one brush that KELUTIL_Color holds for the host;
// null when none is held.  Opaque here, GDI objects on Windows.
extern void* color_pen;
extern void* color_brush;

// The scaling of the bevelled square routine: the size behind all bevel
// widths, and dots per inch and zoom in percent for line widths.
extern int32_t square_size;
extern int32_t square_resolution;
extern int32_t square_zoom;

// A line width in 1/500 point turned into device units at the current
// resolution and zoom.
int32_t line_width_units(int16_t width) noexcept;

// The colours of the shaded brushes and pens: `percent` toward white or
// toward black, each component by itself, low 8 bits kept.
uint32_t lighten(uint32_t rgb, int32_t percent) noexcept;
uint32_t darken(uint32_t rgb, int32_t percent) noexcept;

// ---- The palette ---------------------------------------------------------------

constexpr std::size_t kPaletteEntries = 64;
constexpr uint16_t kPaletteVersion = 0x300;
constexpr uint8_t kReservedEntry = 1;  // the flags byte of every entry
// The first entry that host colours go to: they take row 39's place.
constexpr std::size_t kHostColourEntry = 39;

struct PaletteEntry {
    uint8_t red = 0, green = 0, blue = 0, flags = 0;
};
using PaletteEntries = std::array<PaletteEntry, kPaletteEntries>;

// `color_palette` is the system palette (null natively and when the system
// refused it); `palette_entries` what the library last put into it.
extern void* color_palette;
extern PaletteEntries palette_entries;
extern int8_t color_type;

PaletteEntry palette_entry(uint32_t rgb) noexcept;

// ---- The Colour dialog ---------------------------------------------------------
// The dialog edits a working copy of the table; the table itself changes
// only when the user confirms an edit with OK.

// The characters of a name that the dialog's name box gives a row.
constexpr std::size_t kDialogNameChars = 24;
constexpr std::size_t kCustomColours = 16;
// The list box's answer when no row is selected (LB_ERR).
constexpr int32_t kNoRow = -1;

// `color_work.count` is the dialog's `color_work_count`.
extern ColorTable color_work;
// Set by Update, Add and Delete; cleared when the dialog opens.
extern uint16_t color_modified;
// The custom colours the system colour chooser offers.
extern std::array<uint32_t, kCustomColours> color_custom;

// The system colour chooser's record, field by field (CHOOSECOLORA; the
// layout is checked against the system's where the dialog is built).
struct ColorChooser {
    uint32_t size = 0;
    void* owner = nullptr;
    void* instance = nullptr;
    uint32_t result = 0;  // 0x00BBGGRR
    uint32_t* custom = nullptr;
    uint32_t flags = 0;
    intptr_t custom_data = 0;
    void* hook = nullptr;
    const char* template_name = nullptr;
};
constexpr uint32_t kChooserFullOpen = 2;
extern ColorChooser color_chooser;

// Opening: the custom colours become a gray ramp from 255 down to 15, and
// the chooser's record points at them with `owner` as its owner.
void reset_chooser(void* owner) noexcept;
// Step 0: the working copy takes the table's rows; step 2 gives them back.
void load_work() noexcept;
void commit_work() noexcept;
bool has_work_row(int32_t row) noexcept;
// Step 3 without its list: a new empty last row, or kNoRow when all 40
// are in use.
int32_t add_work_row() noexcept;
// Step 5 without its list: the name cut to kDialogNameChars characters and
// each number to its low 8 bits.  A row that does not exist is left alone.
void update_work_row(int32_t row, std::string_view name, uint32_t red, uint32_t green, uint32_t blue) noexcept;
// Step 6 without its list: the rows behind `row` move down by one.
// Refused (false) for a row that does not exist and for the only row left,
// so that the list always keeps a row to select.
bool delete_work_row(int32_t row) noexcept;
// Steps 7 and 8: false when the row does not exist.
bool work_rgb(int32_t row, uint32_t& rgb) noexcept;
bool set_work_rgb(int32_t row, uint32_t rgb) noexcept;

// The dialog and the question after it, with the window system; natively
// the dialog ends at once as cancelled (2) and the question is never asked.
namespace dialog {
// DialogBoxParamA of dialog 32002 over `owner`: 1 after OK with an edit,
// 2 otherwise, -1 when the dialog could not be made.
intptr_t run(void* owner) noexcept;
// The message box "Do you want to save ...?": true for Yes.
bool ask_to_save() noexcept;
}  // namespace dialog

// ---- The window system ---------------------------------------------------------
// Natively these make nothing, select nothing and add nothing.
namespace gdi {

// Stock objects by the numbers GetStockObject takes.
constexpr int kBlackBrush = 4;
constexpr int kHollowBrush = 5;
constexpr int kBlackPen = 7;
constexpr int kNullPen = 8;
constexpr int kDefaultPalette = 15;

void* create_pen(int32_t width, uint32_t colour) noexcept;
void* create_solid_brush(uint32_t colour) noexcept;
void select(VL_HDC dc, void* object) noexcept;
void select_stock(VL_HDC dc, int stock) noexcept;
void delete_object(void* object) noexcept;
// CB_ADDSTRING.
void add_combo_item(void* combo, const char* text) noexcept;

// Drawing with the pen and brush selected; points and rectangles in
// logical units.
struct Point {
    int32_t x, y;
};
struct Rect {
    int32_t left, top, right, bottom;
};
void rectangle(VL_HDC dc, const Rect& r) noexcept;
void polygon(VL_HDC dc, std::span<const Point> points) noexcept;
void move_to(VL_HDC dc, Point p) noexcept;
void line_to(VL_HDC dc, Point p) noexcept;
// LPtoDP of two points; natively they stay as they are.
void to_device(VL_HDC dc, std::span<Point, 2> points) noexcept;
// SaveDC, then one logical unit a pixel with both origins at 0, 0.
void begin_device_units(VL_HDC dc) noexcept;
void end_device_units(VL_HDC dc) noexcept;
// GetStockObject: the object itself.
void* stock(int number) noexcept;

void* create_palette(const PaletteEntries& entries) noexcept;
void set_palette_entries(void* palette, std::size_t first, std::span<const PaletteEntry> entries) noexcept;
// Selects `palette` (null: the default stock palette) in the foreground
// and realises it when the context gave a previous one back.
void select_palette(VL_HDC dc, void* palette) noexcept;

}  // namespace gdi
}  // namespace vl::colour
