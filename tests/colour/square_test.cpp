// KELUTIL_3Dsquare: its commands and the inner rectangles it hands back,
// on every build (drawing into no device context).

#include <string>
#include <vector>

#include "colour/colour_support.h"

namespace {

using Rect = std::vector<int32_t>;     // left, top, right, bottom
using Scaling = std::vector<int32_t>;  // bevel size, resolution, zoom

constexpr uint32_t kSet = 0x1000, kSize = 4097, kResolution = 4098, kZoom = 4099, kWidth = 4100;

int32_t command(uint32_t which, int32_t value = 0, void* rect = nullptr, void* out = nullptr) {
    return KELUTIL_3Dsquare(nullptr, value, rect, out, which);
}

Scaling scaling() { return {command(kSize), command(kResolution), command(kZoom)}; }

// Puts the scaling back as it is at load, whatever a test did.
class Square : public ::testing::Test {
  protected:
    void TearDown() override { set_scaling(600, 300, 100); }
    static void set_scaling(int32_t size, uint16_t resolution, uint16_t zoom) {
        command(kSet, size, &resolution, &zoom);
    }
};

TEST_F(Square, LineWidthsFollowTheScaling) {
    vltest::for_each_row("colour/square_widths.tsv", [](const vltest::DataRow& row) {
        const Scaling want = row.ints(0, 3);
        set_scaling(want[0], static_cast<uint16_t>(want[1]), static_cast<uint16_t>(want[2]));
        EXPECT_EQ(command(kWidth, static_cast<int32_t>(row.n(3))), row.n(4));
        EXPECT_EQ(scaling(), want);
    });
}

TEST_F(Square, EmptyArgumentsLeaveTheScalingAlone) {
    set_scaling(1200, 600, 200);
    EXPECT_EQ(command(kSet, 0, nullptr, nullptr), 0);
    EXPECT_EQ(scaling(), (Scaling{1200, 600, 200}));
    uint16_t zoom = 50;
    command(kSet, 0, nullptr, &zoom);
    EXPECT_EQ(scaling(), (Scaling{1200, 600, 50})) << "each value by itself";
    for (const uint32_t unknown : {4101u, 4352u, 0x1000u | 0x8000u}) EXPECT_EQ(command(unknown, 99), 0) << unknown;
    EXPECT_EQ(scaling(), (Scaling{1200, 600, 50})) << "unknown commands change nothing";
}

TEST_F(Square, HandsBackTheInnerRectangle) {
    vltest::for_each_row("colour/square_rectangles.tsv", [](const vltest::DataRow& row) {
        uint16_t keep_resolution = 300;
        command(kSet, static_cast<int32_t>(row.n(1)), &keep_resolution, nullptr);
        const auto flags = static_cast<uint32_t>(row.n(0));
        const Rect given = row.ints(2, 4), inner = row.ints(6, 4);
        Rect rect = given, out = {-1, -1, -1, -1};
        EXPECT_EQ(KELUTIL_3Dsquare(nullptr, 0, rect.data(), out.data(), flags), 0);
        EXPECT_EQ(out, inner);
        EXPECT_EQ(rect, given) << "the given rectangle stays";
        EXPECT_EQ(KELUTIL_3Dsquare(nullptr, 0, rect.data(), nullptr, flags), 0) << "no out rectangle";
        EXPECT_EQ(KELUTIL_3Dsquare(nullptr, 0, rect.data(), rect.data(), flags), 0);
        EXPECT_EQ(rect, inner) << "in place";
    });
    Rect out = {1, 2, 3, 4};
    EXPECT_EQ(KELUTIL_3Dsquare(nullptr, 0, nullptr, out.data(), 1), 0);
    EXPECT_EQ(out, (Rect{1, 2, 3, 4})) << "no rectangle, nothing handed back";
}

}  // namespace
