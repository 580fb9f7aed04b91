// KELUTIL_3Dsquare: small three-dimensional boxes and a diamond, and the
// scaling that turns line widths into device units.  The geometry is
// worked out here; only the drawing itself goes to the window system.

#include <array>
#include <cstring>

#include "colour/colour.h"

namespace vl::colour {
namespace {

using gdi::Point;
using gdi::Rect;

constexpr uint32_t kModeMask = VL_SQUARE_MODE_BITS;
constexpr uint32_t kSwapEdges = VL_SQUARE_SWAP_EDGES;
constexpr uint32_t kFramed = VL_SQUARE_FRAMED;
constexpr uint32_t kOutlineColour = VL_SQUARE_OUTLINE_COLOUR;
constexpr uint32_t kCommand = VL_SQUARE_COMMAND;
constexpr uint32_t kGrowOutward = VL_SQUARE_OUTWARD;
constexpr uint32_t kStockFill = VL_SQUARE_STOCK_FILL;
constexpr uint32_t kSolidFill = VL_SQUARE_COLOUR_FILL;

enum Mode : uint32_t { kFlat = VL_SQUARE_FLAT, kOutlined = VL_SQUARE_OUTLINED, kRaised = VL_SQUARE_PANEL, kBevelled = VL_SQUARE_BEVELLED, kDiamond = VL_SQUARE_DIAMOND };

enum Command : uint32_t { kSetScaling = VL_SQUARE_SET_SCALE, kSize = VL_SQUARE_SIZE, kResolution = VL_SQUARE_RESOLUTION, kZoom = VL_SQUARE_ZOOM, kLineWidth = VL_SQUARE_TO_DEVICE };

// Stock objects beyond those of the colour table.
constexpr int kWhiteBrush = 0, kLightGrayBrush = 1, kDarkGrayBrush = 3, kWhitePen = 6;
constexpr uint32_t kFrameGray = 0x7F7F7F;

int32_t scaled(double factor) noexcept { return static_cast<int32_t>(square_size * factor + 0.5); }

void inflate(Rect& r, int32_t by) noexcept {
    r.left -= by;
    r.top -= by;
    r.right += by;
    r.bottom += by;
}

int32_t command(uint32_t which, int32_t value, const void* rect, void* out_rect) noexcept {
    switch (which) {
        case kSetScaling: {
            // Zero and null leave a value alone, so each can be set by itself.
            if (value != 0) square_size = value;
            uint16_t v = 0;
            if (rect) {
                std::memcpy(&v, rect, sizeof v);
                square_resolution = v;
            }
            if (out_rect) {
                std::memcpy(&v, out_rect, sizeof v);
                square_zoom = v;
            }
            return 0;
        }
        case kSize: return square_size;
        case kResolution: return square_resolution;
        case kZoom: return square_zoom;
        case kLineWidth: return line_width_units(static_cast<int16_t>(value));
        default: return 0;
    }
}

void raised(VL_HDC dc, const Rect& rect, Rect& out, uint32_t flags) noexcept {
    const auto d = static_cast<int16_t>(scaled(0.02));
    Rect a = rect, b = rect;
    if (flags & kGrowOutward)
        inflate(b, d);
    else
        inflate(a, -d);
    // 1. The lit face.
    gdi::select_stock(dc, kWhiteBrush);
    gdi::select_stock(dc, gdi::kNullPen);
    gdi::rectangle(dc, b);
    // 2. The face proper.
    gdi::select_stock(dc, kLightGrayBrush);
    gdi::rectangle(dc, {a.left, a.top, b.right, b.bottom});
    // 3. The shadow along the bottom and the right.
    gdi::select_stock(dc, kDarkGrayBrush);
    const Point shadow[] = {{a.left - d, a.bottom + d}, {a.left, a.bottom},       {a.right, a.bottom},
                            {a.right, a.top},           {a.right + d, a.top - d}, {a.right + d, a.bottom + d}};
    gdi::polygon(dc, shadow);
    // 4. The outline.
    gdi::select_stock(dc, gdi::kBlackPen);
    gdi::select_stock(dc, gdi::kHollowBrush);
    gdi::rectangle(dc, {a.left - d, a.top - d, a.right + d + 1, a.bottom + d + 1});
    // 5.
    if (flags & kGrowOutward) {
        out = b;
        inflate(out, -scaled(0.00909090909090909));
    } else {
        out = a;
    }
}

void bevelled(VL_HDC dc, Rect& out, uint32_t flags) noexcept {
    const auto d = static_cast<int16_t>(scaled(0.01));
    inflate(out, -d);
    const Rect r = out;
    // 1. The face, in the brush chosen.
    gdi::select_stock(dc, gdi::kNullPen);
    gdi::rectangle(dc, {r.left, r.top, r.right + d, r.bottom + d});
    // 2.
    gdi::select_stock(dc, kWhitePen);
    if (flags & kFramed) {
        // 3. to 5. A white frame and a gray one beside it.
        gdi::rectangle(dc, {r.left + d, r.top + d, r.right, r.bottom});
        void* gray = gdi::create_pen(1, kFrameGray);
        gdi::select(dc, gray);
        gdi::rectangle(dc, {r.left, r.top, r.right - d, r.bottom - d});
        gdi::select_stock(dc, gdi::kBlackPen);
        if (gray) gdi::delete_object(gray);
        return;
    }
    const std::array<Point, 3> upper = {{{r.left, r.bottom - d}, {r.left, r.top}, {r.right, r.top}}};
    const std::array<Point, 3> lower = {{{r.left + d, r.bottom}, {r.right, r.bottom}, {r.right, r.top}}};
    auto corner = [dc](const std::array<Point, 3>& p) {
        gdi::move_to(dc, p[0]);
        gdi::line_to(dc, p[1]);
        gdi::line_to(dc, p[2]);
    };
    // 3. The light corner, 4. the dark one.
    const bool swapped = (flags & kSwapEdges) != 0;
    corner(swapped ? lower : upper);
    gdi::select_stock(dc, gdi::kBlackPen);
    corner(swapped ? upper : lower);
}

void diamond(VL_HDC dc, const Rect& out, uint32_t flags) noexcept {
    // 1. and 2. Its size in pixels, whatever the mapping.
    std::array<Point, 2> q = {{{out.left, out.top}, {out.right, out.bottom}}};
    gdi::to_device(dc, q);
    const auto h = static_cast<int16_t>((q[1].x - q[0].x) / 2);
    // 3.
    const Point p0{q[0].x + h, q[0].y}, p1{q[0].x, q[0].y + h}, p2{q[0].x + h, q[0].y + 2 * h},
        p3{q[0].x + 2 * h, q[0].y + h};
    const bool swapped = (flags & kSwapEdges) != 0;
    // 4.
    gdi::begin_device_units(dc);
    // 5.
    gdi::select_stock(dc, kWhitePen);
    const Point shape[] = {p0, p1, p2, p3};
    gdi::polygon(dc, shape);
    // 6. The dark edges.
    gdi::select_stock(dc, gdi::kBlackPen);
    gdi::move_to(dc, p2);
    gdi::line_to(dc, swapped ? p1 : p3);
    gdi::line_to(dc, p0);
    // 7. The light edge.
    gdi::select_stock(dc, kWhitePen);
    gdi::move_to(dc, p2);
    gdi::line_to(dc, swapped ? p3 : p1);
    // 8.
    gdi::end_device_units(dc);
}

int32_t draw(VL_HDC dc, int32_t value, const Rect* rect, Rect* out_rect, uint32_t flags) noexcept {
    // 1.
    Rect own{};
    Rect& out = out_rect ? *out_rect : own;
    out = *rect;
    // 2. and 3. The fill.
    gdi::select_stock(dc, gdi::kHollowBrush);
    void* made = nullptr;
    if (flags & kStockFill) {
        gdi::select_stock(dc, value == 0 ? kLightGrayBrush : value);
    } else if (flags & kSolidFill) {
        made = gdi::create_solid_brush(static_cast<uint32_t>(value));
        gdi::select(dc, made);
    }
    // 4.
    bool deflate = true;
    switch (flags & kModeMask) {
        case kFlat:
            gdi::select_stock(dc, gdi::kNullPen);
            gdi::rectangle(dc, *rect);
            break;
        case kOutlined: {
            void* pen = (flags & kOutlineColour) ? gdi::create_pen(1, static_cast<uint32_t>(value)) : nullptr;
            if (pen)
                gdi::select(dc, pen);
            else
                gdi::select_stock(dc, gdi::kBlackPen);
            gdi::rectangle(dc, *rect);
            if (pen) {
                gdi::select_stock(dc, gdi::kBlackPen);
                gdi::delete_object(pen);
            }
            break;
        }
        case kRaised:
            raised(dc, *rect, out, flags);
            deflate = false;
            break;
        case kBevelled: bevelled(dc, out, flags); break;
        case kDiamond: diamond(dc, out, flags); break;
        default: break;
    }
    // 5. The inner rectangle.
    if (deflate) inflate(out, -scaled(0.011111111111111112));
    // 6.
    if (made) {
        gdi::select_stock(dc, gdi::kBlackBrush);
        gdi::delete_object(made);
    }
    // 7.
    return 0;
}

}  // namespace
}  // namespace vl::colour

using namespace vl::colour;

extern "C" int32_t VLAPI KELUTIL_3Dsquare(VL_HDC dc, int32_t value, void* rect, void* out_rect, uint32_t flags) noexcept {
    if (flags & kCommand) return command(static_cast<uint16_t>(flags), value, rect, out_rect);
    // Without a rectangle there is nothing to draw or to hand back.
    if (rect == nullptr) return 0;
    return draw(dc, value, static_cast<const gdi::Rect*>(rect), static_cast<gdi::Rect*>(out_rect), flags);
}
