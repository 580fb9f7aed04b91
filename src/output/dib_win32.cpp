// Conversions between the window system's bitmaps and DIBs, palettes of
// DIBs and of the system, and the bitmap file.  The DIB layout itself is
// read through output/dib.h.

#include <windows.h>

#include <algorithm>
#include <cstring>

#include "output/dib.h"
#include "platform/platform.h"
#include "vlcore.h"

namespace vl::output {
namespace {

constexpr UINT kBlockFlags = GMEM_MOVEABLE | GMEM_ZEROINIT;  // 0x42
// How DIBToBitmap has CreateDIBitmap read the colour table of a DIB: as
// 16-bit indices into the palette selected on the screen's context, which
// is the palette the caller passes or else the context's own default one,
// realized either way.  The caller picks the colours of a DIB of 8 bits or
// fewer with that palette; the RGB values of a table that
// KELUTIL_BitmapToDIB made are not read as colours.  DIBs of more bits have
// no colour table and keep their colours.
constexpr UINT kDibColorUse = DIB_PAL_COLORS;

// The bitmap of the picture under way, between the two calls of
// KELUTIL_BitmapFile.  One picture at a time.
HBITMAP hBitmapFileImage = nullptr;

constexpr int32_t kFinishPicture = 0x2000, kAreaGiven = 0x4000, kMonochrome = 0x100;
constexpr int kDefaultPictureSide = 200;

// A palette block as CreatePalette takes it, built from `entries` filled
// by `fill(index, entry)`; null without memory.
template <typename Fill>
HPALETTE make_palette(uint32_t entries, Fill fill) {
    HGLOBAL block = GlobalAlloc(kBlockFlags, logical_palette_size(entries));
    if (!block) return nullptr;
    auto* pal = static_cast<LOGPALETTE*>(GlobalLock(block));
    if (!pal) {
        GlobalFree(block);
        return nullptr;
    }
    pal->palVersion = kPaletteVersion;
    pal->palNumEntries = static_cast<WORD>(entries);
    for (uint32_t i = 0; i < entries; ++i) fill(i, pal->palPalEntry[i]);
    HPALETTE palette = CreatePalette(pal);
    GlobalUnlock(block);
    GlobalFree(block);
    return palette;
}

}  // namespace
}  // namespace vl::output

using namespace vl;
using namespace vl::output;

extern "C" {

HPALETTE VLAPI CreateDIBPalette(HGLOBAL dib_handle) noexcept {
    // 1. No DIB, no palette.
    if (!dib_handle) return nullptr;
    // 2. Lock the DIB and count its colours; a block too short for what
    //    its header promises is not read.
    const std::size_t block_size = GlobalSize(dib_handle);
    const void* dib = GlobalLock(dib_handle);
    if (!dib) return nullptr;
    const uint32_t count = block_size >= kCoreHeaderSize ? color_count(dib) : 0;
    // 3. A DIB without colour table needs no palette.
    if (count == 0 || count > kMaxPaletteEntries || header_size(dib) + color_table_size(dib) > block_size) {
        GlobalUnlock(dib_handle);
        return nullptr;
    }
    // 4.-6. One palette entry per colour table entry, flags 0.
    HPALETTE palette = make_palette(count, [dib](uint32_t i, PALETTEENTRY& e) {
        const Rgb c = color_entry(dib, i);
        e = {c.red, c.green, c.blue, 0};
    });
    GlobalUnlock(dib_handle);
    return palette;
}

HBITMAP VLAPI DIBToBitmap(HGLOBAL dib_handle, HPALETTE palette) noexcept {
    // 1. No DIB, no bitmap.
    if (!dib_handle) return nullptr;
    // 2. Lock it, find its pixels and take the screen's context.
    const std::size_t block_size = GlobalSize(dib_handle);
    void* dib = GlobalLock(dib_handle);
    if (!dib) return nullptr;
    if (!fits_in_block(dib, block_size)) {
        GlobalUnlock(dib_handle);
        return nullptr;
    }
    const void* bits = FindDIBBits(dib);
    HDC screen = GetDC(nullptr);
    if (!screen) {
        GlobalUnlock(dib_handle);
        return nullptr;
    }
    // 3. The caller's palette in the foreground, realized either way.
    HPALETTE old_palette = palette ? SelectPalette(screen, palette, FALSE) : nullptr;
    RealizePalette(screen);
    // 4. The device-dependent bitmap, initialised from the pixels, its
    //    colour table taken as palette indices.
    HBITMAP bitmap = CreateDIBitmap(screen, static_cast<const BITMAPINFOHEADER*>(dib), CBM_INIT, bits,
                                    static_cast<const BITMAPINFO*>(dib), kDibColorUse);
    // 5. Put back what was replaced.
    if (old_palette) SelectPalette(screen, old_palette, FALSE);
    ReleaseDC(nullptr, screen);
    GlobalUnlock(dib_handle);
    return bitmap;
}

HGLOBAL VLAPI KELUTIL_BitmapToDIB(HBITMAP bitmap, HPALETTE palette, uint32_t bits) noexcept {
    // 1. No bitmap, no DIB; without a palette the default one.
    if (!bitmap) return nullptr;
    if (!palette) palette = static_cast<HPALETTE>(GetStockObject(DEFAULT_PALETTE));

    // 2. The bitmap's facts and the header asked for.  Depths above 8 are
    //    given as 24; depths that no DIB has (2, 3, 5...) make no DIB.
    BITMAP facts{};
    if (GetObjectA(bitmap, sizeof facts, &facts) == 0) return nullptr;
    const unsigned own_depth = unsigned{facts.bmPlanes} * facts.bmBitsPixel;
    unsigned depth = (bits & 0xFFFF) != 0 ? (bits & 0xFFFF) : own_depth;
    if (depth > 8) depth = 24;
    if (depth != 1 && depth != 4 && depth != 8 && depth != 24) return nullptr;
    BITMAPINFOHEADER header{};
    header.biSize = kInfoHeaderSize;
    header.biWidth = facts.bmWidth;
    header.biHeight = facts.bmHeight;
    header.biPlanes = 1;
    header.biBitCount = static_cast<WORD>(depth);

    // 3. The palette on the screen's context, in the foreground.
    HDC screen = GetDC(nullptr);
    if (!screen) return nullptr;
    HPALETTE old_palette = SelectPalette(screen, palette, FALSE);
    RealizePalette(screen);

    HGLOBAL result = nullptr;
    // 4. Room for the header and its colour table.
    const std::size_t table = static_cast<std::size_t>(color_table_size(&header));
    HGLOBAL block = GlobalAlloc(kBlockFlags, kInfoHeaderSize + table);
    if (block) {
        // 5. Let the window system complete the header.
        auto* info = static_cast<BITMAPINFO*>(GlobalLock(block));
        bool ok = info != nullptr;
        if (ok) {
            std::memcpy(info, &header, sizeof header);
            ok = GetDIBits(screen, bitmap, 0, static_cast<UINT>(facts.bmHeight), nullptr, info, DIB_RGB_COLORS) != 0;
            std::memcpy(&header, info, sizeof header);
            GlobalUnlock(block);
            // The pixels go behind the whole table that was made room for,
            // so a count of used colours that shortens it is dropped.
            if (color_table_size(&header) != table) header.biClrUsed = 0;
            ok = ok && color_table_size(&header) == table;
        }
        // 6. A size left open is worked out from the bitmap's own depth.
        if (ok && header.biSizeImage == 0) {
            const uint64_t own =
                row_size(own_depth, static_cast<uint32_t>(facts.bmWidth)) * static_cast<uint32_t>(facts.bmHeight);
            header.biSizeImage = static_cast<DWORD>(std::min<uint64_t>(own, UINT32_MAX));
        }
        // 7. Grow the block to hold the pixels: never less than the rows of
        //    the depth asked for, which GetDIBits will fill whatever the
        //    header says, and never a size beyond 32 bits.
        const uint64_t pixels = std::max<uint64_t>(header.biSizeImage, image_size(&header));
        ok = ok && kInfoHeaderSize + table + pixels <= UINT32_MAX;
        HGLOBAL grown =
            ok ? GlobalReAlloc(block, static_cast<SIZE_T>(kInfoHeaderSize + table + pixels), kBlockFlags) : nullptr;
        if (grown) {
            block = grown;
            // 8. The pixels, behind the colour table.
            auto* dib = static_cast<uint8_t*>(GlobalLock(block));
            ok = dib != nullptr;
            if (ok) {
                std::memcpy(dib, &header, sizeof header);
                ok = GetDIBits(screen, bitmap, 0, static_cast<UINT>(facts.bmHeight), dib + kInfoHeaderSize + table,
                               reinterpret_cast<BITMAPINFO*>(dib), DIB_RGB_COLORS) != 0;
                GlobalUnlock(block);
            }
            // 9. The block is the result.
            if (ok) result = block;
        }
        if (!result) GlobalFree(block);
    }
    // 10. The old palette back, in the background.
    SelectPalette(screen, old_palette, TRUE);
    RealizePalette(screen);
    ReleaseDC(nullptr, screen);
    return result;
}

HPALETTE VLAPI GetSystemPalette(void) noexcept {
    // 1. The screen's context.
    HDC screen = GetDC(nullptr);
    if (!screen) return nullptr;
    // 2. The size of the system palette, or the colours of the device.
    int entries = GetDeviceCaps(screen, SIZEPALETTE);
    if (entries == 0) entries = GetDeviceCaps(screen, NUMCOLORS);
    ReleaseDC(nullptr, screen);
    // A device of more colours than a palette can hold has no system
    // palette to mirror.
    if (entries <= 0 || static_cast<uint32_t>(entries) > kMaxPaletteEntries) return nullptr;
    // 3.-5. Entry i stands for the system palette's slot i.
    return make_palette(static_cast<uint32_t>(entries), [](uint32_t i, PALETTEENTRY& e) {
        e.peRed = static_cast<BYTE>(i);
        e.peGreen = static_cast<BYTE>(i >> 8);
        e.peBlue = 0;
        e.peFlags = PC_EXPLICIT;
    });
}

HDC VLAPI KELUTIL_BitmapFile(int32_t file, HDC dc, intptr_t area, int32_t flags) noexcept {
    const auto mode = static_cast<int16_t>(flags);
    if ((mode & kFinishPicture) == 0) {
        // Phase one.  1. The size of the picture.
        auto* rect = reinterpret_cast<RECT*>(area);
        int width = kDefaultPictureSide, height = kDefaultPictureSide;
        if ((mode & kAreaGiven) != 0) {
            if (!rect || rect->right < 1 || rect->bottom < 1) return nullptr;
            width = rect->right;
            height = rect->bottom;
        }
        // 2. A memory context like the screen.
        HDC screen = GetDC(nullptr);
        if (!screen) return nullptr;
        HDC memory = CreateCompatibleDC(screen);
        // 3. The bitmap: like the screen, or like the fresh memory context,
        //    which is monochrome.
        hBitmapFileImage = nullptr;
        if (memory)
            hBitmapFileImage = CreateCompatibleBitmap((mode & kMonochrome) != 0 ? memory : screen, width, height);
        ReleaseDC(nullptr, screen);
        // 4. Without a bitmap the user is told.
        if (!hBitmapFileImage) {
            MessageBoxA(nullptr, "Insufficient memory!", nullptr, MB_ICONHAND);
            if (memory) DeleteDC(memory);
            return nullptr;
        }
        // 5. A white picture.
        SelectObject(memory, hBitmapFileImage);
        PatBlt(memory, 0, 0, width, height, WHITENESS);
        // 6. The area the host draws in.
        if (rect) SetRect(rect, 0, 0, width, height);
        return memory;
    }

    // Phase two.  1. Deleting the context sets the bitmap free.
    DeleteDC(dc);
    // 2.-3. The DIB, and the bitmap is done with.
    HGLOBAL dib_handle =
        hBitmapFileImage ? KELUTIL_BitmapToDIB(hBitmapFileImage, nullptr, static_cast<uint32_t>(area)) : nullptr;
    if (hBitmapFileImage) DeleteObject(hBitmapFileImage);
    hBitmapFileImage = nullptr;
    // 4. Nothing to write.
    if (!dib_handle) return nullptr;
    // 5. Where the pixels start and how many bytes they take.
    const std::size_t block_size = GlobalSize(dib_handle);
    if (const void* dib = GlobalLock(dib_handle)) {
        const auto head = file_header(dib);
        const uint64_t body = std::min<uint64_t>(bits_offset(dib) + image_size(dib), block_size);
        // 6. The file header, then the DIB in one write.
        platform::file_lwrite(file, head.data(), kFileHeaderSize);
        KELUTIL_HugeWrite(file, dib, static_cast<int32_t>(body));
        GlobalUnlock(dib_handle);
    }
    // 7. The DIB is not kept.
    GlobalFree(dib_handle);
    return nullptr;
}

}  // extern "C"
