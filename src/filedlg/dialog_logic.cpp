// What the file dialogs' hooks decide without the window system: the
// comment at a file's head, the Option button's action, the separators of
// an export, the read-only box's label and paths from a dialog's lists.

#include <algorithm>
#include <array>
#include <cstring>

#include "filedlg/dialogs.h"
#include "platform/platform.h"
#include "vlcore.h"

namespace vl::filedlg {
namespace {

struct OptionName {
    const char* name;
    int32_t action;
};
constexpr std::array<OptionName, 2> kOptionNames{{{"EXPASCII", kActionExportAscii}, {"IMPASCII", kActionImportAscii}}};

// Types whose files may be opened read-only, and the label each gives.
struct ReadOnlyType {
    const char* extension;
    int32_t label;
};
constexpr std::array<ReadOnlyType, 3> kReadOnlyTypes{
    {{".VLP", kStringReadOnly}, {".VLD", kStringReadOnly}, {".XLS", kStringNoUpdate}}};

// A comment shows only when the "#" and what follows have more than this.
constexpr std::size_t kShortestComment = 3;

}  // namespace

bool ReadFileComment(const char* path, std::span<char> out) noexcept {
    if (out.empty()) return false;
    out[0] = '\0';
    if (!path || !*path) return false;
    const platform::FileHandle file = platform::file_lopen_read(path);
    if (file == platform::kNoFile) return false;
    std::array<char, kHeadRoom> head{};
    const char* const line = KELUTIL_fgets(head.data(), kHeadRoom, file);
    platform::file_lclose(file);
    if (!line) return false;
    char* const hash = std::strchr(head.data(), '#');
    if (!hash || std::strlen(hash) <= kShortestComment) return false;
    if (char* end = std::strchr(hash, '\n'))
        *end = '\0';
    else if (char* cr = std::strchr(hash, '\r'))
        *cr = '\0';
    const std::size_t n = std::min(std::strlen(hash + 1), out.size() - 1);
    std::memcpy(out.data(), hash + 1, n);
    out[n] = '\0';
    return n > 0;
}

int32_t OptionActionOf(char* name) noexcept {
    if (!name) return 0;
    platform::upper_in_place(name, std::strlen(name));
    for (const OptionName& row : kOptionNames)
        if (platform::compare(name, row.name) == 0) return row.action;
    return 0;
}

int32_t SeparatorIndex(const char* value) noexcept {
    if (!value) return -1;
    for (std::size_t i = 0; i < kSeparators.size(); ++i)
        if (platform::compare(value, kSeparators[i].value) == 0) return static_cast<int32_t>(i);
    return -1;
}

int32_t ReadOnlyLabelOf(const char* extension) noexcept {
    if (!extension) return 0;
    for (const ReadOnlyType& row : kReadOnlyTypes)
        if (platform::compare_nocase(extension, row.extension) == 0) return row.label;
    return 0;
}

bool JoinPath(std::string_view dir, std::string_view name, std::span<char> out) noexcept {
    if (out.empty()) return false;
    out[0] = '\0';
    const bool separator = dir.empty() || dir.back() != '\\';
    const std::size_t total = dir.size() + (separator ? 1 : 0) + name.size();
    if (total + 1 > out.size()) return false;
    std::size_t at = 0;
    std::memcpy(out.data(), dir.data(), dir.size());
    at += dir.size();
    if (separator) out[at++] = '\\';
    std::memcpy(out.data() + at, name.data(), name.size());
    out[total] = '\0';
    return true;
}

}  // namespace vl::filedlg
