// The piecewise transfers of Write64K and Read64K, apart from the file
// calls so that the pieces can be watched.
#pragma once

#include <cstdint>

namespace vl::data {

constexpr uint32_t kWritePiece = 32767;
constexpr uint32_t kReadPiece = 65535;

// Moves `count` bytes in pieces of at most `piece` through
// `transfer(offset, length)`, which answers the bytes moved or -1.  A
// count of 0 makes one empty transfer.  Answers 0, or 1 at the first piece
// whose count differs from its length in 16 bits (and at a failed one,
// which the 16-bit comparison could take for a full 65535-byte piece); a
// negative count answers 1 without transfer.
template <class Transfer>
int32_t transfer_in_pieces(int32_t count, uint32_t piece, Transfer&& transfer) {
    if (count < 0) return 1;
    uint32_t done = 0;
    const auto total = static_cast<uint32_t>(count);
    do {
        const uint32_t left = total - done;
        const uint32_t length = left < piece ? left : piece;
        const int32_t moved = transfer(done, length);
        if (moved < 0 || static_cast<uint16_t>(moved) != static_cast<uint16_t>(length)) return 1;
        done += length;
    } while (done < total);
    return 0;
}

}  // namespace vl::data
