// The path registry: for each extension the directory last used for files
// of that kind and the file-type row last in use; and the small path tools
// of the file dialogs.

#include <algorithm>
#include <cstring>

#include "filedlg/filedlg.h"
#include "filedlg/filedlg_state.h"
#include "frame/frame.h"
#include "internal/host.h"
#include "platform/platform.h"
#include "vlcore.h"

namespace vl::filedlg {
namespace {

enum Operation : uint16_t {
    kFind = VL_PATH_FIND,
    kStore = VL_PATH_STORE,
    kRecordStartDir = VL_PATH_START_DIRECTORY,
    kEmpty = VL_PATH_EMPTY,
    kCount = VL_PATH_COUNT,
    kReadRow = VL_PATH_ROW,
    kRemember = VL_PATH_REMEMBER_TYPE,
};
constexpr int32_t kNoRow = -1;

using Key = std::array<char, kKeyRoom>;

// The caller's extension cut to its first three characters, in storage of
// our own: the host is shown this copy, never a row.
Key key_of(const char* ext) noexcept {
    Key key{};
    if (ext)
        for (std::size_t i = 0; i < kKeyChars && ext[i]; ++i) key[i] = ext[i];
    return key;
}

// A row's key of n characters answers to every key whose first n
// characters it equals, case aside; an empty row key answers to all.
bool matches_by_prefix(const Key& row, const Key& wanted) noexcept {
    for (std::size_t i = 0; row[i]; ++i)
        if (platform::upper(row[i]) != platform::upper(wanted[i])) return false;
    return true;
}

int32_t find(char* path, const Key& key) noexcept {
    auto& registry = path_registry;
    for (int32_t i = 0; i < registry.count; ++i) {
        const PathRow& row = registry.rows[static_cast<std::size_t>(i)];
        if (!matches_by_prefix(row.key, key)) continue;
        if (path) std::strcpy(path, row.path.data());
        return i;
    }
    // Nobody knows this extension: the host may name a directory, unless
    // the lookup only counts rows or a preset already chose the directory.
    if (path && !bPresetActive && frame::frame_state.lpfnFileHost)
        frame::frame_state.lpfnFileHost(nullptr, host::FDM_PATHQUERY, reinterpret_cast<VL_WPARAM>(path),
                                        reinterpret_cast<VL_LPARAM>(key.data()));
    return kNoRow;
}

void store(const char* path, const Key& key) noexcept {
    // A directory that doesn't fit a row would come back as another
    // directory; the registry keeps what it had instead.
    if (!path) return;
    const std::size_t length = std::strlen(path);
    if (length >= kPathRoom) return;
    auto& registry = path_registry;
    PathRow* target = nullptr;
    for (int32_t i = 0; i < registry.count && !target; ++i)
        if (platform::compare_nocase(registry.rows[static_cast<std::size_t>(i)].key.data(), key.data()) == 0)
            target = &registry.rows[static_cast<std::size_t>(i)];
    if (!target) {
        if (registry.count >= static_cast<int32_t>(kRegistryRows)) return;  // full: nothing is pushed out
        target = &registry.rows[static_cast<std::size_t>(registry.count++)];
        target->key = key;
        target->remembered = 0;
    }
    std::memcpy(target->path.data(), path, length + 1);
}

void record_start_dir() noexcept {
    // A directory that doesn't fit leaves the old one, as _getcwd does.
    std::array<char, kStartDirRoom> cwd{};
    if (platform::current_directory(cwd)) szStartDir = cwd;
}

int32_t read_row(char* path, char* ext, int32_t index) noexcept {
    if (index < 0 || index >= path_registry.count) return kNoRow;
    const PathRow& row = path_registry.rows[static_cast<std::size_t>(index)];
    if (path) std::strcpy(path, row.path.data());
    if (ext) std::strcpy(ext, row.key.data());
    return row.remembered;
}

void remember(const Key& key, int32_t value) noexcept {
    for (int32_t i = 0; i < path_registry.count; ++i) {
        PathRow& row = path_registry.rows[static_cast<std::size_t>(i)];
        if (matches_by_prefix(row.key, key)) row.remembered = static_cast<uint8_t>(value);
    }
}

template <std::size_t N>
void copy_into(std::array<char, N>& to, const char* from) noexcept {
    const std::size_t n = std::min(std::strlen(from), N - 1);
    std::memmove(to.data(), from, n);
    to[n] = '\0';
}

}  // namespace

void FileExtensionOf(char* out, char* spec) noexcept {
    if (!out || !spec) return;
    char* const dot = std::strchr(spec, '.');
    if (!dot || !dot[1]) return;
    // The cut is made in the caller's text, so both agree on the extension.
    if (std::strlen(dot + 1) > kKeyChars) dot[1 + kKeyChars] = '\0';
    std::memmove(out, dot + 1, std::strlen(dot + 1) + 1);
}

int32_t PathRootExists(const char* dir) noexcept {
    if (!dir) dir = "";
    if (platform::under_single_root(dir)) return 1;
    // 1. The root of the path: up to its first backslash, which a bare
    //    drive gets added.  No root of more than three characters is a
    //    drive, so the copy need not be longer.
    const char* const backslash = std::strchr(dir, '\\');
    const std::size_t length = backslash ? static_cast<std::size_t>(backslash - dir) : std::strlen(dir);
    // 2. Network paths, and no path at all, are not the drives' business.
    if (length == 0) return 1;
    if (length > 2) return 0;
    std::array<char, 4> root{};
    std::memcpy(root.data(), dir, length);
    root[length] = '\\';
    // 3. The drive roots, four characters an entry ("C:\" and a zero).
    std::array<char, 120> drives{};
    const uint32_t reply = platform::drive_strings(drives);
    if (reply < 4) return 0;
    // 4. A root that is one of them, case aside.
    const std::size_t written = std::min<std::size_t>(reply, drives.size());
    for (std::size_t at = 0; at + 4 <= written; at += 4)
        if (platform::compare_nocase(root.data(), drives.data() + at) == 0) return 1;
    return 0;
}

void PathRememberChoice(const char* file_name, int32_t filter_row) noexcept {
    if (!file_name) return;
    // 1. Only a name with an extension of at most three characters.
    const char* const dot = std::strrchr(file_name, '.');
    if (!dot || std::strlen(dot) >= 5) return;
    const Key ext = key_of(dot + 1);
    // 2. The directory for the extension.
    KELUTIL_PathControl(kStore, szCurrentDir.data(), const_cast<char*>(ext.data()), 0);
    // 3. The file-type row for it.
    KELUTIL_PathControl(kRemember, nullptr, const_cast<char*>(ext.data()), filter_row);
    // 4. Only the extension last used keeps a remembered row.
    if (platform::compare_nocase(szLastExt.data(), ext.data()) != 0) {
        const Key last = key_of(szLastExt.data());
        KELUTIL_PathControl(kRemember, nullptr, const_cast<char*>(last.data()), 0);
    }
    // 5. It is now the last one used.
    copy_into(szLastExt, ext.data());
}

}  // namespace vl::filedlg

using namespace vl;
using namespace vl::filedlg;

extern "C" int32_t VLAPI KELUTIL_PathControl(uint32_t operation, char* path, char* ext, int32_t value) noexcept {
    const uint16_t op = static_cast<uint16_t>(operation);
    if (op > kRemember) return kNoRow;
    // The key is taken before anything else, so that ext may be an output.
    const Key key = key_of(op == kReadRow ? nullptr : ext);
    switch (op) {
        case kFind: return find(path, key);
        case kStore: store(path, key); return kNoRow;
        case kRecordStartDir: record_start_dir(); return kNoRow;
        case kEmpty: path_registry = PathRegistry{}; return kNoRow;
        case kCount: return path_registry.count;
        case kReadRow: return read_row(path, ext, value);
        case kRemember: remember(key, value); return kNoRow;
        default: return kNoRow;
    }
}

extern "C" void VLAPI KELUTIL_SeparatePath(const char* path, char* dir, char* name, char* ext) noexcept {
    if (!path) return;
    // 1. Back from the end, whole characters at a time, to the last
    //    backslash or colon.
    const char* separator = nullptr;
    for (const char* at = path + std::strlen(path); at > path;) {
        at = platform::char_prev(path, at);
        if (*at == '\\' || *at == ':') {
            separator = at;
            break;
        }
    }
    const char* const from = separator ? separator : path;
    const char* const dot = std::strrchr(from, '.');
    const char* const last = separator ? separator + 1 : path;
    const std::size_t dir_length = separator ? static_cast<std::size_t>(last - path) : 0;
    // 2. The extension with its dot; without one the caller's text stays.
    //    The outputs are written back to front, so that `dir` may be the
    //    path itself.
    if (ext && dot) std::memmove(ext, dot, std::strlen(dot) + 1);
    // 3. and 4. The directory keeps its separator.
    if (name) std::memmove(name, last, std::strlen(last) + 1);
    if (dir) {
        std::memmove(dir, path, dir_length);
        dir[dir_length] = '\0';
    }
}
