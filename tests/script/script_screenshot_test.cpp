// The script window as a person sees it: a few lines run, the screen
// captured to a PNG kept with the build, and the text area checked pixel by
// pixel.

#include <cstdlib>
#include <fstream>

#include "png_writer.h"
#include "script_window_support.h"

namespace {

using namespace scripttest;

struct Capture {
    int width = 0, height = 0;
    std::vector<uint8_t> rgb;  // top row first
    COLORREF at(int x, int y) const {
        const std::size_t i = (static_cast<std::size_t>(y) * width + x) * 3;
        return RGB(rgb[i], rgb[i + 1], rgb[i + 2]);
    }
};

Capture capture(const RECT& r) {
    Capture c;
    c.width = r.right - r.left;
    c.height = r.bottom - r.top;
    BITMAPINFO bi{};
    bi.bmiHeader.biSize = sizeof bi.bmiHeader;
    bi.bmiHeader.biWidth = c.width;
    bi.bmiHeader.biHeight = -c.height;
    bi.bmiHeader.biPlanes = 1;
    bi.bmiHeader.biBitCount = 32;
    bi.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    const HDC screen = GetDC(nullptr);
    const HDC memory = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateDIBSection(screen, &bi, DIB_RGB_COLORS, &bits, nullptr, 0);
    const HGDIOBJ old = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, c.width, c.height, screen, r.left, r.top, SRCCOPY);
    GdiFlush();
    const auto* px = static_cast<const uint8_t*>(bits);
    c.rgb.resize(static_cast<std::size_t>(c.width) * c.height * 3);
    for (std::size_t i = 0; i < static_cast<std::size_t>(c.width) * c.height; ++i) {
        c.rgb[i * 3] = px[i * 4 + 2];
        c.rgb[i * 3 + 1] = px[i * 4 + 1];
        c.rgb[i * 3 + 2] = px[i * 4];
    }
    SelectObject(memory, old);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    return c;
}

bool dark(COLORREF c) { return GetRValue(c) + GetGValue(c) + GetBValue(c) < 3 * 96; }

// Dark pixels in a band of rows of the capture, between two columns.
int dark_pixels(const Capture& c, int top, int bottom, int left, int right) {
    int count = 0;
    for (int y = top; y < bottom; ++y)
        for (int x = left; x < right; ++x) count += dark(c.at(x, y)) ? 1 : 0;
    return count;
}

TEST_F(ScriptWindowTest, ScreenshotOfAFewLinesRun) {
    log_.during = [this](const std::string& line) {
        const std::string echo = "=> " + line + "\r\n";
        KelText(nullptr, reinterpret_cast<intptr_t>(window_), reinterpret_cast<intptr_t>(echo.c_str()), 14);
    };
    MoveWindow(window_, 40, 40, 360, 240, TRUE);
    ShowWindow(window_, SW_SHOW);
    SetForegroundWindow(window_);
    type("a=1\r");
    type("b=a*2\r");
    type("type b\r");
    log_.during = nullptr;
    ASSERT_EQ(log_.executed.size(), 3u);

    RECT edit{};
    GetWindowRect(edit_, &edit);
    RECT window{};
    GetWindowRect(window_, &window);
    const HDC dc = GetDC(edit_);
    TEXTMETRICA tm{};
    GetTextMetricsA(dc, &tm);
    ReleaseDC(edit_, dc);
    const int line = tm.tmHeight + tm.tmExternalLeading;
    const int ex = edit.left - window.left, ey = edit.top - window.top;

    // The screen shows the window once the X server has drawn it.
    Capture shot;
    for (int tries = 0; tries < 100; ++tries) {
        RedrawWindow(window_, nullptr, nullptr,
                     RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
        pump();
        shot = capture(window);
        if (dark_pixels(shot, ey + 2, ey + 2 + line, ex + 2, ex + 60) > 0) break;
        Sleep(50);
    }
    ASSERT_EQ(shot.width, 360);
    ASSERT_EQ(shot.height, 240);

    const char* dir = std::getenv("VLCORE_ARTIFACTS");
    const std::string path = std::string(dir ? dir : ".") + "/script_window.png";
    ASSERT_TRUE(pngtest::write(path, static_cast<uint32_t>(shot.width), static_cast<uint32_t>(shot.height), shot.rgb))
        << path;
    std::ifstream png(path, std::ios::binary);
    std::vector<unsigned char> head(24);
    png.read(reinterpret_cast<char*>(head.data()), 24);
    ASSERT_TRUE(png);
    EXPECT_EQ(head[1], 'P');
    EXPECT_EQ((head[16] << 24) | (head[17] << 16) | (head[18] << 8) | head[19], 360);
    EXPECT_EQ((head[20] << 24) | (head[21] << 16) | (head[22] << 8) | head[23], 240);

    // Six lines of text: "a=1;", "=> a=1", ... each with dark glyphs at its
    // start, and white behind the short lines and below the last one.
    const COLORREF paper = GetSysColor(COLOR_WINDOW);
    for (int row = 0; row < 6; ++row) {
        const int top = ey + 2 + row * line;
        EXPECT_GT(dark_pixels(shot, top, top + line, ex + 2, ex + 80), 4) << "line " << row;
        EXPECT_EQ(shot.at(ex + 250, top + line / 2), paper) << "behind line " << row;
    }
    const int below = ey + 2 + 7 * line + line / 2;
    EXPECT_EQ(dark_pixels(shot, below, below + line, ex + 2, ex + 200), 0);
    EXPECT_EQ(shot.at(ex + 100, below), paper);
}

}  // namespace
