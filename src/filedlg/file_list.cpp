// The list of chosen files that the multiple-file dialog or a text makes,
// and the entry through which the host reads it.

#include <algorithm>
#include <cstring>
#include <string>

#include "filedlg/dialogs.h"
#include "filedlg/filedlg_state.h"
#include "internal/guard.h"
#include "platform/platform.h"
#include "vlcore.h"

namespace vl::filedlg {
namespace {

enum Operation : uint16_t {
    kFree = VL_FILE_LIST_FREE,
    kDialog = VL_FILE_LIST_DIALOG,
    kRow = VL_FILE_LIST_ROW,
    kFromText = VL_FILE_LIST_FROM_TEXT
};
constexpr char kNoSuchRow[] = "error";
constexpr int32_t kRefused = 1;

}  // namespace

void FileListFree() noexcept {
    if (hFileList) platform::mem_free(hFileList);
    hFileList = nullptr;
    nFileList = 0;
}

char* FileListReset(int32_t count) noexcept {
    FileListFree();
    if (count <= 0) return nullptr;
    hFileList = platform::mem_alloc(platform::kMemMoveableZeroInit, static_cast<std::size_t>(count) * kFileRowRoom);
    char* const rows = hFileList ? static_cast<char*>(platform::mem_lock(hFileList)) : nullptr;
    if (!rows) {
        // Without its block the list has no rows.
        FileListFree();
        return nullptr;
    }
    nFileList = count;
    return rows;
}

void FileListRelease() noexcept {
    if (hFileList) platform::mem_unlock(hFileList);
}

bool FileListFillFromText(const char* text, int32_t count) noexcept {
    // The text is copied first, as it may lie in the old list.  Without
    // memory for the copy the list ends empty, as without memory for rows.
    std::string whole, token;
    if (!guarded(false, [&] {
            whole = text ? text : "";
            token.resize(whole.size() + 1);
            return true;
        })) {
        FileListFree();
        return false;
    }
    const char* at = whole.c_str();
    return FileListFill(count, [&](int32_t, std::span<char> row) {
        // Rows past the text's end stay empty; no token is longer than the
        // text, so the room made above always holds it.
        at = KELUTIL_next_token_sep(token.data(), at, "\r");
        const std::size_t n = std::min(std::strlen(token.c_str()), row.size() - 1);
        std::memcpy(row.data(), token.c_str(), n);
        row[n] = '\0';
    });
}

void FileListRow(int32_t index, char* out) noexcept {
    if (!out) return;
    const char* const rows = (hFileList && index >= 0 && index < nFileList)
                                 ? static_cast<const char*>(platform::mem_lock(hFileList))
                                 : nullptr;
    if (!rows) {
        std::strcpy(out, kNoSuchRow);
        return;
    }
    std::strcpy(out, rows + static_cast<std::size_t>(index) * kFileRowRoom);
    platform::mem_unlock(hFileList);
}

}  // namespace vl::filedlg

using namespace vl;
using namespace vl::filedlg;

extern "C" int32_t VLAPI KELUTIL_MultiFile(VL_HWND owner, char* text, int32_t value, uint32_t operation) noexcept {
    const auto op = static_cast<uint16_t>(operation);
    switch (op) {
        case kFree: FileListFree(); return 0;
        case kDialog: {
            DialogView view;
            PrepareMulti(text, view);
            DialogChoice choice;
            return RunFileDialog(owner, view, choice) ? nFileList : -1;
        }
        case kRow: FileListRow(value, text); return 0;
        case kFromText:
            // A count the list can't hold leaves the old list as it was.
            if (value < 0 || value > kFileListRows) return kRefused;
            return FileListFillFromText(text, value) || value == 0 ? 0 : kRefused;
        default: return static_cast<int32_t>(op);
    }
}
