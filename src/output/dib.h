// The arithmetic of device-independent bitmaps: header forms, colour
// counts, colour tables, rows and the bitmap file header.  Platform-free,
// so the Windows conversions and the native exports share one reading of
// a DIB.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace vl::output {

constexpr uint32_t kInfoHeaderSize = 40;  // BITMAPINFOHEADER
constexpr uint32_t kCoreHeaderSize = 12;  // BITMAPCOREHEADER
constexpr uint32_t kFileHeaderSize = 14;
constexpr uint16_t kBitmapFileType = 0x4D42;  // "BM"

// Offsets of the fields that count, in either header form.
namespace info {
constexpr std::size_t kSize = 0, kWidth = 4, kHeight = 8, kPlanes = 12, kBitCount = 14, kCompression = 16,
                      kSizeImage = 20, kClrUsed = 32;
}
namespace core {
constexpr std::size_t kWidth = 4, kHeight = 6, kPlanes = 8, kBitCount = 10;
}

uint16_t read_u16(const void* at) noexcept;
uint32_t read_u32(const void* at) noexcept;
void write_u16(void* at, uint16_t value) noexcept;
void write_u32(void* at, uint32_t value) noexcept;

// True for the 40-byte form; every other size field means the 12-byte one.
bool is_info_header(const void* dib) noexcept;
// 40 or 12: the size the header is read and skipped with.
uint32_t header_size(const void* dib) noexcept;
uint16_t bit_count(const void* dib) noexcept;
// DIBColorCount: entries of the colour table.
uint32_t color_count(const void* dib) noexcept;
// Bytes of one colour table entry: 4 with the 40-byte header, else 3.
uint32_t color_entry_size(const void* dib) noexcept;
// PaletteSize.  64 bits, so no count of a damaged header can wrap.
uint64_t color_table_size(const void* dib) noexcept;
// Header and colour table: where the pixels start.
uint64_t bits_offset(const void* dib) noexcept;

// Red, green and blue of colour table entry `index`, by the header's form.
struct Rgb {
    uint8_t red, green, blue;
};
Rgb color_entry(const void* dib, uint32_t index) noexcept;

// Bytes of one row: each row ends on a 4-byte boundary.
uint64_t row_size(uint32_t bits_per_pixel, uint32_t width) noexcept;
// Row size times the height of a 40-byte header (its magnitude, for a
// header that stands top-down).
uint64_t image_size(const void* dib) noexcept;

// True when a block of `block_size` bytes holds the whole DIB it starts
// with: header, colour table and, for pixels without compression, every
// row (with compression, biSizeImage bytes).  The conversions check this
// before they let the window system read a caller's block.
bool fits_in_block(const void* dib, std::size_t block_size) noexcept;

// The 14 bytes in front of a DIB in a bitmap file, for a DIB of a 40-byte
// header: type, file size, two reserved words, offset of the pixels.
std::array<uint8_t, kFileHeaderSize> file_header(const void* dib) noexcept;

// A logical palette block: version 0x300, count, then red, green, blue and
// flags per entry.
constexpr uint16_t kPaletteVersion = 0x300;
// One entry more than asked is room the block has always had.
constexpr std::size_t logical_palette_size(uint32_t entries) noexcept { return 8 + 4 * std::size_t{entries}; }
constexpr uint32_t kMaxPaletteEntries = 0xFFFF;  // the count is 16 bits

}  // namespace vl::output
