// The pieces of Write64K and Read64K, watched at the transfer.

#include <string>
#include <vector>

#include "data/chunks.h"
#include "support.h"

namespace {

using vl::data::kReadPiece;
using vl::data::kWritePiece;
using vl::data::transfer_in_pieces;

struct PieceCase {
    const char* what;
    int32_t count;
    uint32_t piece;
    std::vector<uint32_t> lengths;
};

TEST(Pieces, Lengths) {
    const PieceCase cases[] = {
        {"write of 70000", 70000, kWritePiece, {32767, 32767, 4466}},
        {"read of 70000", 70000, kReadPiece, {65535, 4465}},
        {"write of exactly one piece", 32767, kWritePiece, {32767}},
        {"write one past a piece", 32768, kWritePiece, {32767, 1}},
        {"read of 65536", 65536, kReadPiece, {65535, 1}},
        {"count 0 is one empty transfer", 0, kWritePiece, {0}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        std::vector<uint32_t> seen, offsets;
        const int32_t r = transfer_in_pieces(c.count, c.piece, [&](uint32_t at, uint32_t length) {
            offsets.push_back(at);
            seen.push_back(length);
            return static_cast<int32_t>(length);
        });
        EXPECT_EQ(r, 0);
        EXPECT_EQ(seen, c.lengths);
        uint32_t at = 0;
        for (std::size_t i = 0; i < seen.size(); ++i) {
            EXPECT_EQ(offsets[i], at);
            at += seen[i];
        }
    }
}

TEST(Pieces, FirstShortPieceStops) {
    int calls = 0;
    // The second piece comes up one byte short.
    EXPECT_EQ(transfer_in_pieces(70000, kWritePiece,
                                 [&](uint32_t, uint32_t length) {
                                     return static_cast<int32_t>(++calls == 2 ? length - 1 : length);
                                 }),
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
