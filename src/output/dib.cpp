// DIB arithmetic and the two exports that are nothing else: PaletteSize and
// FindDIBBits.  Both read only the header of the caller's block.

#include "output/dib.h"

#include <cstring>

#include "vlcore.h"

namespace vl::output {

uint16_t read_u16(const void* at) noexcept {
    const auto* b = static_cast<const uint8_t*>(at);
    return static_cast<uint16_t>(b[0] | b[1] << 8);
}

uint32_t read_u32(const void* at) noexcept {
    const auto* b = static_cast<const uint8_t*>(at);
    return uint32_t{b[0]} | uint32_t{b[1]} << 8 | uint32_t{b[2]} << 16 | uint32_t{b[3]} << 24;
}

void write_u16(void* at, uint16_t value) noexcept {
    auto* b = static_cast<uint8_t*>(at);
    b[0] = static_cast<uint8_t>(value);
    b[1] = static_cast<uint8_t>(value >> 8);
}

void write_u32(void* at, uint32_t value) noexcept {
    auto* b = static_cast<uint8_t*>(at);
    for (int i = 0; i < 4; ++i) b[i] = static_cast<uint8_t>(value >> (8 * i));
}

bool is_info_header(const void* dib) noexcept { return read_u32(dib) == kInfoHeaderSize; }

uint32_t header_size(const void* dib) noexcept { return is_info_header(dib) ? kInfoHeaderSize : kCoreHeaderSize; }

uint16_t bit_count(const void* dib) noexcept {
    const auto* b = static_cast<const uint8_t*>(dib);
    return read_u16(b + (is_info_header(dib) ? info::kBitCount : core::kBitCount));
}

uint32_t color_count(const void* dib) noexcept {
    const auto* b = static_cast<const uint8_t*>(dib);
    if (is_info_header(dib)) {
        const uint32_t used = read_u32(b + info::kClrUsed);
        if (used != 0) return used;
    }
    switch (bit_count(dib)) {
        case 1: return 2;
        case 4: return 16;
        case 8: return 256;
        // The three colour masks, whatever the compression field says.
        case 16:
        case 32: return 3;
        default: return 0;
    }
}

uint32_t color_entry_size(const void* dib) noexcept { return is_info_header(dib) ? 4 : 3; }

uint64_t color_table_size(const void* dib) noexcept { return uint64_t{color_count(dib)} * color_entry_size(dib); }

uint64_t bits_offset(const void* dib) noexcept { return header_size(dib) + color_table_size(dib); }

Rgb color_entry(const void* dib, uint32_t index) noexcept {
    // Both forms store blue, green, red; only the entry width differs.
    const auto* e = static_cast<const uint8_t*>(dib) + header_size(dib) + uint64_t{index} * color_entry_size(dib);
    return {e[2], e[1], e[0]};
}

uint64_t row_size(uint32_t bits_per_pixel, uint32_t width) noexcept {
    return (uint64_t{bits_per_pixel} * width + 31) / 32 * 4;
}

uint64_t image_size(const void* dib) noexcept {
    const auto* b = static_cast<const uint8_t*>(dib);
    const auto width = static_cast<int32_t>(read_u32(b + info::kWidth));
    const auto height = static_cast<int32_t>(read_u32(b + info::kHeight));
    if (width <= 0) return 0;
    const uint64_t rows = height < 0 ? uint64_t{0} - static_cast<uint64_t>(int64_t{height}) : uint64_t(height);
    return row_size(bit_count(dib), static_cast<uint32_t>(width)) * rows;
}

bool fits_in_block(const void* dib, std::size_t block_size) noexcept {
    if (block_size < kCoreHeaderSize) return false;
    if (is_info_header(dib) && block_size < kInfoHeaderSize) return false;
    const auto* b = static_cast<const uint8_t*>(dib);
    uint64_t pixels = 0;
    if (!is_info_header(dib)) {
        pixels = row_size(bit_count(dib), read_u16(b + core::kWidth)) * read_u16(b + core::kHeight);
    } else if (const uint32_t c = read_u32(b + info::kCompression); c == 0 || c == 3) {
        // Plain rows, also behind the three colour masks.
        pixels = image_size(dib);
    } else {
        pixels = read_u32(b + info::kSizeImage);
    }
    return bits_offset(dib) + pixels <= block_size;
}

std::array<uint8_t, kFileHeaderSize> file_header(const void* dib) noexcept {
    std::array<uint8_t, kFileHeaderSize> h{};
    const uint64_t offset = kFileHeaderSize + header_size(dib) + 4 * uint64_t{color_count(dib)};
    const uint64_t size = kFileHeaderSize + header_size(dib) + color_table_size(dib) + image_size(dib);
    write_u16(h.data(), kBitmapFileType);
    write_u32(h.data() + 2, static_cast<uint32_t>(size));
    // Bytes 6 to 9 are the two reserved words, 0.
    write_u32(h.data() + 10, static_cast<uint32_t>(offset));
    return h;
}

}  // namespace vl::output

using namespace vl;

extern "C" {

uint32_t VLAPI PaletteSize(const void* dib) noexcept {
    if (!dib) return 0;
    const uint64_t size = output::color_table_size(dib);
    return size > UINT32_MAX ? UINT32_MAX : static_cast<uint32_t>(size);
}

void* VLAPI FindDIBBits(void* dib) noexcept {
    if (!dib) return nullptr;
    // Integer arithmetic: a damaged header may point far outside the block,
    // and the caller is the one who can tell.
    return reinterpret_cast<void*>(reinterpret_cast<uintptr_t>(dib) + static_cast<uintptr_t>(output::bits_offset(dib)));
}

}  // extern "C"
