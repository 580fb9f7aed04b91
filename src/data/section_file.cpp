// KELUTIL_GetFileSection: a section of a file on disk, found by a scan over
// large buffered pieces of the file and then read into a movable block.

#include <cstring>
#include <vector>

#include "data/file_io.h"
#include "data/section.h"
#include "platform/platform.h"
#include "internal/guard.h"
#include "vlcore.h"

namespace vl::data {
namespace {

constexpr std::size_t kPiece = 256 * 1024;
constexpr unsigned char kEndByte = 255;  // reads as the end of the file

// The file as a stream of pieces.  A piece ends early at a byte 255, which
// ends the stream as the end of the file does.
class PieceReader {
  public:
    explicit PieceReader(platform::FileHandle file) : file_(file), buf_(kPiece) {}
    // Loads the next piece; false at the end of the stream.
    bool next() noexcept {
        if (ended_) return false;
        base_ += len_;
        const int32_t got = platform::file_lread(file_, buf_.data(), static_cast<uint32_t>(buf_.size()));
        len_ = got > 0 ? static_cast<std::size_t>(got) : 0;
        const void* ff = len_ ? std::memchr(buf_.data(), kEndByte, len_) : nullptr;
        if (ff) {
            len_ = static_cast<std::size_t>(static_cast<const unsigned char*>(ff) - buf_.data());
            ended_ = true;
        } else if (len_ == 0) {
            ended_ = true;
        }
        return len_ > 0 || !ended_;
    }
    const unsigned char* data() const noexcept { return buf_.data(); }
    std::size_t size() const noexcept { return len_; }
    uint64_t base() const noexcept { return base_; }
    bool ended() const noexcept { return ended_; }

  private:
    platform::FileHandle file_;
    std::vector<unsigned char> buf_;
    std::size_t len_ = 0;
    uint64_t base_ = 0;
    bool ended_ = false;
};

struct Span64 {
    uint64_t start;
    uint64_t end;
};

// The scan of the table: finds `name` and the candidate end of its body.
// Answers false when the section was not found.
bool scan(PieceReader& in, const char* name, uint64_t file_size, Span64& out) {
    enum class State { kLine, kName, kHeader } state = State::kLine;
    bool blank = true;
    bool found = name[0] == '\0';  // the text in front of the first header
    uint64_t start = 0, end = 0;
    SectionName header;
    bool stop = false;
    while (!stop && in.next()) {
        const unsigned char* d = in.data();
        const std::size_t n = in.size();
        std::size_t i = 0;
        while (i < n && !stop) {
            const unsigned char c = d[i];
            switch (state) {
                case State::kLine:
                    // 1. Past the first printing byte of a line only its line
                    //    feed matters: jump there.
                    if (!blank) {
                        const void* lf = std::memchr(d + i, '\n', n - i);
                        if (!lf) {
                            i = n;
                            break;
                        }
                        i = static_cast<std::size_t>(static_cast<const unsigned char*>(lf) - d);
                        end = in.base() + i + 1;
                        blank = true;
                    } else if (c == '\n') {
                        end = in.base() + i + 1;
                    } else if (c == '[') {
                        header.clear();
                        state = State::kName;
                    } else if (is_printing(c)) {
                        blank = false;
                    }
                    ++i;
                    break;
                case State::kName:
                    // 2. Every byte up to the ']' is the name, unchanged.
                    if (c == ']') {
                        state = State::kHeader;
                    } else {
                        header.append(static_cast<char>(c));
                    }
                    ++i;
                    break;
                case State::kHeader:
                    // 3. Behind the ']' only blanks may stand before the line feed.
                    if (c != '\n') {
                        if (is_printing(c)) blank = false;
                        ++i;
                        break;
                    }
                    if (!blank) {
                        end = in.base() + i + 1;
                        blank = true;
                    } else if (found) {
                        // The next header ends the section, unless nothing
                        // follows it: then the section runs to the end.
                        stop = true;
                        bool more = i + 1 < n;
                        if (!more && !in.ended()) more = in.next() && in.size() > 0;
                        if (!more) end = file_size;
                        break;
                    } else if (header.equals(name)) {
                        found = true;
                        start = in.base() + i + 1;
                    }
                    state = State::kLine;
                    ++i;
                    break;
            }
        }
    }
    // 4. The end of the file, or a byte 255, closes the last section.
    if (!stop) end = file_size;
    if (!found) return false;
    out = {start, end};
    return true;
}

// A block of `count` plus one zero-filled bytes holding the file's bytes
// from `offset` on; null on a short read or without memory.
platform::MemHandle read_block(platform::FileHandle file, uint64_t offset, uint64_t count) {
    if (count >= SIZE_MAX) return nullptr;
    platform::MemHandle h = platform::mem_alloc(platform::kMemMoveableZeroInit, static_cast<std::size_t>(count + 1));
    if (!h) return nullptr;
    void* p = platform::mem_lock(h);
    const bool ok = p && platform::file_seek64(file, offset) && read_exactly(file, p, count);
    if (p) platform::mem_unlock(h);
    if (!ok) {
        platform::mem_free(h);
        return nullptr;
    }
    return h;
}

platform::MemHandle file_section(const char* path, const char* name) {
    // 1. Open the file and learn its size.
    LFile file(path);
    uint64_t size = 0;
    if (!file.ok() || !platform::file_size64(file.get(), size)) return nullptr;
    // 2. No name: the whole file.
    if (!name) return read_block(file.get(), 0, size);
    if (std::strlen(name) > kSectionNameMax) return nullptr;
    // 3. Find the section.
    Span64 body{};
    {
        PieceReader in(file.get());
        if (!scan(in, name, size, body)) return nullptr;
    }
    // 4. Only a body with bytes in it is handed over.
    if (body.end <= body.start) return nullptr;
    return read_block(file.get(), body.start, body.end - body.start);
}

}  // namespace
}  // namespace vl::data

extern "C" VL_HGLOBAL VLAPI KELUTIL_GetFileSection(const char* path, const char* name) noexcept {
    // Without memory for the reading buffer: no section.
    return vl::guarded<VL_HGLOBAL>(nullptr, [&] { return static_cast<VL_HGLOBAL>(vl::data::file_section(path, name)); });
}
