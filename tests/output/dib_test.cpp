// PaletteSize and FindDIBBits as a host calls them, on DIB blocks built
// by hand.

#include "output/dib_layouts.h"
#include "vlcore.h"

namespace {

using vltest::DataRow;

TEST(Dib, PaletteSizeAndPixelAddress) {
    vltest::for_each_row("output/dib_layouts.tsv", [](const DataRow& row) {
        auto b = dibtest::block(row, 2048);
        const auto before = b;
        EXPECT_EQ(PaletteSize(b.data()), row.n(8));
        EXPECT_EQ(static_cast<uint8_t*>(FindDIBBits(b.data())) - b.data(), row.n(9));
        EXPECT_EQ(b, before) << "the block was changed";
    });
    EXPECT_EQ(PaletteSize(nullptr), 0u);
    EXPECT_EQ(FindDIBBits(nullptr), nullptr);
}

TEST(Dib, ColourTableBytesPastThirtyTwoBits) {
    // 0x40000000 entries of 4 bytes are one byte more than 32 bits hold.
    const struct { uint32_t used, bytes; } rows[] = {{0x40000000u, 0xFFFFFFFFu}, {0x3FFFFFFFu, 0xFFFFFFFCu}};
    for (const auto& r : rows) {
        auto b = dibtest::block({{"", "40", "8", std::to_string(r.used), "1", "1", "0", "0"}}, 64);
        EXPECT_EQ(PaletteSize(b.data()), r.bytes) << r.used << " used";
    }
}

}  // namespace
