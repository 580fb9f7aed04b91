// The DIB arithmetic: colour tables, rows, block checks and the bitmap
// file header, on the headers of output/dib_layouts.tsv.

#include "output/dib.h"
#include "output/dib_layouts.h"

namespace {

using namespace vl::output;
using vltest::DataRow;

TEST(DibCore, LayoutsOfHeaders) {
    vltest::for_each_row("output/dib_layouts.tsv", [](const DataRow& row) {
        const auto exact = static_cast<std::size_t>(row.n(11));
        const auto dib = dibtest::block(row, exact + 1);
        EXPECT_EQ(header_size(dib.data()), row.n(1) == 40 ? 40u : 12u);
        EXPECT_EQ(color_table_size(dib.data()), static_cast<uint64_t>(row.n(8)));
        EXPECT_EQ(bits_offset(dib.data()), static_cast<uint64_t>(row.n(9)));
        // The block must hold what the header promises: exactly, not one
        // byte less, and never when empty.
        EXPECT_TRUE(fits_in_block(dib.data(), exact)) << "exact";
        EXPECT_FALSE(fits_in_block(dib.data(), exact - 1)) << "one byte short";
        EXPECT_TRUE(fits_in_block(dib.data(), exact + 1)) << "one byte more";
        EXPECT_FALSE(fits_in_block(dib.data(), 0)) << "empty";
        if (row[10] == "-") return;
        EXPECT_EQ(image_size(dib.data()), static_cast<uint64_t>(row.n(10)));
        const auto h = file_header(dib.data());
        EXPECT_EQ(h[0], 'B');
        EXPECT_EQ(h[1], 'M');
        EXPECT_EQ(read_u32(h.data() + 2), row.n(12)) << "file size";
        EXPECT_EQ(read_u32(h.data() + 6), 0u) << "reserved";
        EXPECT_EQ(read_u32(h.data() + 10), row.n(13)) << "pixel offset";
    });
}

TEST(DibCore, RowsEndOnFourBytes) {
    vltest::for_each_row("output/dib_rows.tsv", [](const DataRow& row) {
        EXPECT_EQ(row_size(static_cast<uint32_t>(row.n(0)), static_cast<uint32_t>(row.n(1))), row.n(2));
    });
}

}  // namespace
