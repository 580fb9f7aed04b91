// KELUTIL_3Dsquare drawing into a real bitmap, read back pixel by pixel.

#include <windows.h>

#include <algorithm>
#include <vector>

#include "colour/colour_support.h"

namespace {

// A 32-bit top-down picture of 240 x 240 pixels in a memory context.
class Canvas : public ::testing::Test {
  protected:
    static constexpr int kSide = 240;
    void SetUp() override {
        dc_ = CreateCompatibleDC(nullptr);
        ASSERT_NE(dc_, nullptr);
        BITMAPINFO info{};
        info.bmiHeader = {sizeof info.bmiHeader, kSide, -kSide, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        void* bits = nullptr;
        bitmap_ = CreateDIBSection(dc_, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        ASSERT_NE(bitmap_, nullptr);
        pixels_ = static_cast<uint32_t*>(bits);
        old_ = SelectObject(dc_, bitmap_);
    }
    void TearDown() override {
        SelectObject(dc_, GetStockObject(BLACK_PEN));
        SelectObject(dc_, GetStockObject(BLACK_BRUSH));
        SelectObject(dc_, old_);
        DeleteObject(bitmap_);
        DeleteDC(dc_);
    }
    // The pixel as 0x00BBGGRR.
    uint32_t at(int x, int y) const {
        GdiFlush();
        const uint32_t p = pixels_[y * kSide + x];
        return vltest::rgb_of(p >> 16 & 0xFF, p >> 8 & 0xFF, p & 0xFF);
    }
    int32_t draw(RECT r, uint32_t flags, int32_t value) { return KELUTIL_3Dsquare(dc_, value, &r, nullptr, flags); }
    HGDIOBJ current(UINT type) const { return GetCurrentObject(dc_, type); }
    HDC dc_ = nullptr;
    HBITMAP bitmap_ = nullptr;
    HGDIOBJ old_ = nullptr;
    uint32_t* pixels_ = nullptr;
};

TEST_F(Canvas, DrawingsReadBackPixelByPixel) {
    vltest::for_each_row("colour/square_pixels.tsv", [&](const vltest::DataRow& row) {
        const std::vector<int32_t> f = row.ints(0, 10);
        GdiFlush();
        std::fill_n(pixels_, kSide * kSide, 0xFF00FFu);  // magenta either way round
        SetViewportOrgEx(dc_, f[6], f[6], nullptr);
        EXPECT_EQ(draw({f[2], f[3], f[4], f[5]}, static_cast<uint32_t>(f[0]), f[1]), 0);
        POINT origin{};
        GetViewportOrgEx(dc_, &origin);
        EXPECT_EQ(origin.x, f[6]) << "the context's mapping is restored";
        SetViewportOrgEx(dc_, 0, 0, nullptr);
        EXPECT_EQ(at(f[7], f[8]), static_cast<uint32_t>(f[9]));
    });
}

TEST_F(Canvas, WhatStaysSelected) {
    EXPECT_EQ(draw({0, 0, 100, 100}, 0x8001, 0x0000FF), 0);
    EXPECT_EQ(current(OBJ_BRUSH), GetStockObject(BLACK_BRUSH)) << "the made brush is let go";
    EXPECT_EQ(current(OBJ_PEN), GetStockObject(NULL_PEN));
    EXPECT_EQ(draw({0, 0, 100, 100}, 0x4001, 0), 0);
    EXPECT_EQ(current(OBJ_BRUSH), GetStockObject(LTGRAY_BRUSH)) << "a stock fill stays";
    EXPECT_EQ(draw({0, 0, 100, 100}, 0x4001, GRAY_BRUSH), 0);
    EXPECT_EQ(current(OBJ_BRUSH), GetStockObject(GRAY_BRUSH));
    EXPECT_EQ(draw({0, 0, 100, 100}, 0x0802, 0x00FF00), 0);
    EXPECT_EQ(current(OBJ_PEN), GetStockObject(BLACK_PEN)) << "the made pen is let go";
}

}  // namespace
