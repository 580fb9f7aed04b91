// The file type table: what the file dialogs list under "List Files of
// &Type:", the filter strings built from it, and fitting a file name to a
// type.

#include <algorithm>
#include <cstring>
#include <new>
#include <string>

#include "filedlg/filedlg.h"
#include "filedlg/filedlg_state.h"
#include "platform/platform.h"
#include "vlcore.h"

namespace vl::filedlg {
namespace {

enum Operation : uint16_t {
    kSelect = VL_TYPE_SELECT,
    kSelected = VL_TYPE_SELECTED,
    kSetDescription = VL_TYPE_SET_DESCRIPTION,
    kGetDescription = VL_TYPE_DESCRIPTION,
    kGetExtension = VL_TYPE_EXTENSION,
    kSetExtension = VL_TYPE_SET_EXTENSION,
    kFindExtension = VL_TYPE_FIND_EXTENSION,
};
constexpr int32_t kRejected = 1;

// A name part longer than this gets no extension appended, so that name
// and extension stay within a file name of 266 characters.
constexpr std::size_t kLongestNameToExtend = 262;

// The work block of the filter: the token, then the description.
constexpr std::size_t kTokenRoom = 267;
constexpr std::size_t kWorkRoom = 506;

template <std::size_t N>
void set_text(std::array<char, N>& to, const char* from, std::size_t most) noexcept {
    const std::size_t n = from ? std::min(std::strlen(from), most) : 0;
    if (n) std::memmove(to.data(), from, n);
    to[n] = '\0';
}

FileTypeRow& row_at(int32_t row) noexcept { return file_type_table.rows[static_cast<std::size_t>(row)]; }

// A row's extension without its dot.
const char* bare_extension(int32_t row) noexcept {
    const char* e = row_at(row).extension.data();
    return *e == '.' ? e + 1 : e;
}

int32_t find_extension(const char* text) noexcept {
    if (!text) return 0;
    const int32_t rows = std::min(file_type_table.selected_row, kFileTypeRows);
    for (int32_t r = 1; r <= rows; ++r)
        if (platform::compare_nocase(text, row_at(r).extension.data()) == 0) return r;
    return 0;
}

// A pair of zero-terminated texts into the filter at `at`, when it fits
// with room left for the zero that ends the filter.
bool append_pair(std::span<char> filter, std::size_t& at, std::string_view label, std::string_view pattern) noexcept {
    if (at + label.size() + pattern.size() + 3 > filter.size()) return false;
    for (std::string_view part : {label, pattern}) {
        std::memcpy(filter.data() + at, part.data(), part.size());
        at += part.size();
        filter[at++] = '\0';
    }
    filter[at] = '\0';
    return true;
}

}  // namespace

int32_t FileTypeBuildFilter(std::span<char> filter, uint32_t flags) noexcept {
    if (filter.empty()) return 1;
    const bool ignore_remembered = (flags & kIgnoreRemembered) != 0;
    // 1. The work block.
    const platform::MemHandle block = platform::mem_alloc(platform::kMemMoveableZeroInit, kWorkRoom);
    if (!block) return 1;
    char* const work = static_cast<char*>(platform::mem_lock(block));
    const auto finish = [block](int32_t result) {
        platform::mem_unlock(block);
        platform::mem_free(block);
        return result;
    };
    if (!work) return finish(1);
    char* const token = work;
    char* const description = work + kTokenRoom;
    // 2. A label and a pattern for each described row; the last row of the
    //    table never shows.  A row that doesn't fit the filter ends it as an
    //    empty row does.
    std::size_t at = 0;
    int32_t taken = 0;
    for (int32_t row = 1; row < kFileTypeRows; ++row) {
        KELUTIL_Fdlog_Str(description, row, kGetDescription);
        const char* const rest = KELUTIL_next_token(token, description);
        if (!*token) break;
        if (!append_pair(filter, at, token, rest)) break;
        char* const dot = std::strchr(description + (rest - description), '.');
        if (!dot) return finish(1);
        KELUTIL_Fdlog_Str(dot, row, kSetExtension);
        ++taken;
    }
    // 3. The filter's closing zero.
    filter[at] = '\0';
    int32_t show = 1;
    // 4. The row to show first: the preset's extension, else the first row
    //    whose extension the registry knows beyond its first row.
    for (int32_t r = 1; r <= taken; ++r) {
        const char* const ext = bare_extension(r);
        if (bExtPreset) {
            if (!szLastExt[0]) {
                set_text(szLastExt, ext, kPathRoom - 1);
                break;
            }
            if (platform::compare_nocase(ext, szLastExt.data()) == 0) {
                show = r;
                break;
            }
            continue;
        }
        if (r == 1 && !ignore_remembered) set_text(szLastExt, ext, kPathRoom - 1);
        // A lookup only reads the extension.
        const int32_t k = KELUTIL_PathControl(VL_PATH_FIND, nullptr, const_cast<char*>(ext), 0);
        if (k > 0 && !ignore_remembered) {
            set_text(szLastExt, ext, kPathRoom - 1);
            const bool same =
                k == r || (k <= kFileTypeRows &&
                           platform::compare_nocase(row_at(k).extension.data(), row_at(r).extension.data()) == 0);
            show = same ? k : r;
            break;
        }
    }
    if (!ignore_remembered && !bPresetActive) {
        // 5. The dialog opens in the directory of its extension; the host
        //    may be asked.
        KELUTIL_PathControl(VL_PATH_FIND, szCurrentDir.data(), szLastExt.data(), 0);
    } else if (!bExtPreset) {
        // 6. The extension of the row shown, with its dot.
        set_text(szLastExt, row_at(show).extension.data(), kPathRoom - 1);
    }
    // 7. The preset's extension has been used.
    bExtPreset = false;
    return finish(show);
}

void FilterFromSpec(std::span<char> filter, const char* spec) noexcept {
    if (filter.empty()) return;
    std::size_t at = 0;
    filter[0] = '\0';
    try {
        std::string token;
        for (const char* p = spec ? spec : ""; *p;) {
            token.assign(std::strlen(p) + 1, '\0');
            const char* const next = KELUTIL_next_token(token.data(), p);
            // A character the tokenizer stops at, such as a semicolon, ends
            // the list as its end does.
            std::string_view pattern(token.c_str());
            if (pattern.empty() || next == p) break;
            pattern = pattern.substr(0, kSpecFilterRoom);
            if (!append_pair(filter, at, pattern, pattern)) break;
            p = next;
        }
    } catch (const std::bad_alloc&) {
        // Without memory for a token the filter ends with the pairs so far.
    }
    filter[at] = '\0';
}

bool FitNameToType(int32_t selection, std::span<char> name, bool replace) noexcept {
    // 2. The extension of the chosen row.
    std::array<char, kExtensionRoom> ext{};
    if (selection >= 0 && selection < kFileTypeRows) KELUTIL_Fdlog_Str(ext.data(), selection + 1, kGetExtension);
    // 3. It becomes the last one used.
    const char* const bare = ext[0] == '.' ? ext.data() + 1 : ext.data();
    set_text(szLastExt, bare, kPathRoom - 1);
    // 4. A row for all files, or one with no extension, changes no name.
    if (*bare == '*' || !ext[0]) return false;
    // 5. and 6. A name the dialog holds, fitted to the extension.
    //    A name that the extension might no longer fit is left as typed.
    if (name.empty() || !name[0]) return false;
    if (strnlen(name.data(), name.size()) + std::strlen(ext.data()) >= name.size()) return false;
    check_extension(name.data(), ext.data(), replace ? 1 : 0);
    return true;
}

}  // namespace vl::filedlg

using namespace vl;
using namespace vl::filedlg;

extern "C" int32_t VLAPI KELUTIL_Fdlog_Str(char* text, int32_t row_value, uint32_t operation) noexcept {
    const int16_t row = static_cast<int16_t>(row_value);
    if (row > kFileTypeRows) return kRejected;
    // Rows are numbered from 1; the operations on a row refuse any other.
    const auto outside = [row] { return row < 1; };
    auto& table = file_type_table;
    switch (static_cast<uint16_t>(operation)) {
        case kSelect:
            if (outside()) return kRejected;
            table.selected_row = row;
            return 0;
        case kSelected: return table.selected_row > kFileTypeRows ? 0 : table.selected_row;
        case kSetDescription:
            if (outside()) return kRejected;
            set_text(row_at(row).description, text, kDescriptionRoom - 1);
            return 0;
        case kGetDescription:
            if (outside()) return kRejected;
            if (text) std::strcpy(text, row_at(row).description.data());
            return 0;
        case kGetExtension:
            if (outside()) return kRejected;
            if (text) std::strcpy(text, row_at(row).extension.data());
            return 0;
        case kSetExtension:
            if (outside()) return kRejected;
            set_text(row_at(row).extension, text, kExtensionChars);
            return 0;
        case kFindExtension: return find_extension(text);
        default: return 0;
    }
}

extern "C" void VLAPI check_extension(char* path, const char* ext, int32_t replace) noexcept {
    if (!path || !ext) return;
    // 1. The last part of the path, from its backslash on.
    char* const backslash = std::strrchr(path, '\\');
    char* const part = backslash ? backslash : path;
    const std::size_t part_length = std::strlen(part);
    const auto append = [&] {
        if (part_length <= kLongestNameToExtend) std::memmove(part + part_length, ext, std::strlen(ext) + 1);
    };
    // 2. Its last dot.
    char* const dot = std::strrchr(part, '.');
    // 3. A name without an extension gets this one.
    if (!dot) return append();
    // 4. It has this one already.
    if (platform::compare_nocase(dot, ext) == 0) return;
    // 5. An extension of the usual length is kept, or replaced on request.
    if (std::strlen(dot) == 4) {
        if (replace) std::memmove(dot, ext, std::strlen(ext) + 1);
        return;
    }
    // 6. A dot that starts no usual extension is part of the name.
    append();
}
