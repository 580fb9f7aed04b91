// The DIB arithmetic: colour tables, rows, block checks and the bitmap
// file header, on the headers of output/dib_layouts.tsv.

#include "output/dib.h"
#include "output/dib_layouts.h"

namespace {

using namespace vl::output;
using dibtest::field;

TEST(DibCore, LayoutsOfHeaders) {
    dibtest::for_each_row("dib_layouts.tsv", [](const auto& row) {
        const auto exact = static_cast<std::size_t>(field(row, 11));
        const auto dib = dibtest::block(row, exact + 1);
        EXPECT_EQ(header_size(dib.data()), field(row, 1) == 40 ? 40u : 12u);
        EXPECT_EQ(color_table_size(dib.data()), static_cast<uint64_t>(field(row, 8)));
        EXPECT_EQ(bits_offset(dib.data()), static_cast<uint64_t>(field(row, 9)));
        // The block must hold what the header promises: exactly, not one
        // byte less, and never when empty.
        EXPECT_TRUE(fits_in_block(dib.data(), exact)) << "exact";
        EXPECT_FALSE(fits_in_block(dib.data(), exact - 1)) << "one byte short";
        EXPECT_TRUE(fits_in_block(dib.data(), exact + 1)) << "one byte more";
        EXPECT_FALSE(fits_in_block(dib.data(), 0)) << "empty";
        if (row.at(10) == "-") return;
        EXPECT_EQ(image_size(dib.data()), static_cast<uint64_t>(field(row, 10)));
        const auto h = file_header(dib.data());
        EXPECT_EQ(h[0], 'B');
        EXPECT_EQ(h[1], 'M');
        EXPECT_EQ(read_u32(h.data() + 2), field(row, 12)) << "file size";
        EXPECT_EQ(read_u32(h.data() + 6), 0u) << "reserved";
        EXPECT_EQ(read_u32(h.data() + 10), field(row, 13)) << "pixel offset";
    });
}

TEST(DibCore, RowsEndOnFourBytes) {
    const struct {
        uint32_t bits, width;
        uint64_t bytes;
    } rows[] = {{1, 32, 4},
                {1, 33, 8},
                {4, 8, 4},
                {4, 9, 8},
                {8, 4, 4},
                {8, 5, 8},
                {24, 1, 4},
                {24, 4, 12},
                {16, 3, 8},
                {24, 0, 0},
                {8, 0xFFFFFFFFu, 0x100000000u}};
    for (const auto& r : rows) EXPECT_EQ(row_size(r.bits, r.width), r.bytes) << r.bits << " bits x " << r.width;
}

}  // namespace
