// The pieces of Write64K and Read64K, watched at the transfer.  The lengths
// are in chunks.tsv.

#include <sstream>
#include <string>
#include <vector>

#include "data/chunks.h"
#include "data/data_support.h"
#include "support.h"

namespace {

using vl::data::kReadPiece;
using vl::data::kWritePiece;
using vl::data::transfer_in_pieces;

TEST(Pieces, Lengths) {
    vltest::each_case("data/chunks.tsv", "pieces", [](const vltest::Case& c) {
        std::vector<uint32_t> want, seen;
        std::istringstream lengths(*c.text(2));
        for (uint32_t n; lengths >> n;) want.push_back(n);
        const auto piece = *c.text(1) == "write" ? kWritePiece : kReadPiece;
        uint32_t next = 0;  // each piece starts where the last one ended
        const auto transfer = [&](uint32_t at, uint32_t length) {
            EXPECT_EQ(at, next);
            next += length;
            seen.push_back(length);
            return static_cast<int32_t>(length);
        };
        EXPECT_EQ(transfer_in_pieces(static_cast<int32_t>(c.number(0)), piece, transfer), 0);
        EXPECT_EQ(seen, want);
    });
}

TEST(Pieces, FirstShortPieceStops) {
    int calls = 0;
    // The second piece comes up one byte short.
    EXPECT_EQ(transfer_in_pieces(
                  70000, kWritePiece,
                  [&](uint32_t, uint32_t length) { return static_cast<int32_t>(++calls == 2 ? length - 1 : length); }),
              1);
    EXPECT_EQ(calls, 2);
    // Counts compare in 16 bits: 65536 more bytes than asked looks complete.
    calls = 0;
    EXPECT_EQ(transfer_in_pieces(10, kReadPiece, [&](uint32_t, uint32_t) { return ++calls, 10 + 65536; }), 0);
    // A failed piece is short even where 16 bits would see 65535.
    EXPECT_EQ(transfer_in_pieces(65535, kReadPiece, [](uint32_t, uint32_t) { return -1; }), 1);
    EXPECT_EQ(transfer_in_pieces(-1, kReadPiece, [](uint32_t, uint32_t) { return 0; }), 1);
}

}  // namespace
