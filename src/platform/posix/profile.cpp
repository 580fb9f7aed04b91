// Native INI settings files.
//
// Callers were written against the Windows profile calls and sometimes depend
// on their exact answers: how a truncated list is terminated, which of two
// duplicate keys is seen, when the default stands in.  So the reader follows
// the Windows model literally: every line of a section is an entry (comments
// and lines without '=' included, they just never show up in listings), the
// first matching section and entry win, and results are first built the way
// the wide-character call builds them and then handed out the way the
// single-byte call copies them.
//
// The writer edits the file in place instead of regenerating it, so comments,
// blank lines and line endings the user chose survive a settings change.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "internal/guard.h"
#include "platform/platform.h"

namespace vl::platform {
namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

// Ctrl-Z counts as a blank: old editors left it at the end of the file.
bool is_blank(char c) noexcept { return c == ' ' || (c >= '\t' && c <= '\r') || c == '\x1a'; }

std::string_view trim_left(std::string_view s) noexcept {
    while (!s.empty() && is_blank(s.front())) s.remove_prefix(1);
    return s;
}

std::string_view trim_right(std::string_view s) noexcept {
    while (!s.empty() && is_blank(s.back())) s.remove_suffix(1);
    return s;
}

std::string_view trim(std::string_view s) noexcept { return trim_right(trim_left(s)); }

char fold(char c) noexcept { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

bool same_name(std::string_view a, std::string_view b) noexcept {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (fold(a[i]) != fold(b[i])) return false;
    }
    return true;
}

// ---- Reading the file -------------------------------------------------------

enum class Opened { kFile, kMissing, kFailed };

// A file that doesn't exist yet is an empty profile (writing will create
// it); one that can't be reached at all - missing directory, no permission,
// a directory - is a failure, which the callers answer differently.
Opened read_file(const char* path, std::string& text) {
    text.clear();
    if (path == nullptr) return Opened::kMissing;
    const int fd = ::open(path, O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        if (errno != ENOENT) return Opened::kFailed;
        std::error_code ec;
        std::filesystem::path dir = std::filesystem::path(path).parent_path();
        if (dir.empty()) dir = ".";
        return std::filesystem::is_directory(dir, ec) ? Opened::kMissing : Opened::kFailed;
    }
    struct stat st {};
    Opened result = Opened::kFile;
    if (::fstat(fd, &st) != 0 || S_ISDIR(st.st_mode)) {
        result = Opened::kFailed;
    } else {
        char chunk[8192];
        for (;;) {
            const ssize_t got = ::read(fd, chunk, sizeof chunk);
            if (got == 0) break;
            if (got < 0) {
                if (errno == EINTR) continue;
                result = Opened::kFailed;
                break;
            }
            text.append(chunk, static_cast<std::size_t>(got));
        }
    }
    ::close(fd);
    return result;
}

bool write_file(const char* path, std::string_view text) {
    const int fd = ::open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (fd < 0) return false;
    bool ok = true;
    while (!text.empty()) {
        const ssize_t put = ::write(fd, text.data(), text.size());
        if (put < 0) {
            if (errno == EINTR) continue;
            ok = false;
            break;
        }
        text.remove_prefix(static_cast<std::size_t>(put));
    }
    return ::close(fd) == 0 && ok;
}

// ---- Parsing ------------------------------------------------------------------

enum class Kind { kBlank, kHeader, kEntry };

struct Line {
    Kind kind = Kind::kBlank;
    std::size_t begin = 0;   // first byte of the line
    std::size_t end = 0;     // one past the content (terminator excluded)
    std::size_t next = 0;    // one past the terminator
    std::string_view name;   // section name or key
    bool has_value = false;  // a line without '=' is an entry with no value
    std::string_view value;
};

struct Section {
    std::string_view name;
    std::size_t header = kNone;  // line index; the part before the first header has none
    std::vector<std::size_t> entries;
    std::size_t last = kNone;  // last non-blank line belonging to the section
};

struct Profile {
    std::string text;
    std::size_t body = 0;  // after a UTF-8 signature
    std::vector<Line> lines;
    std::vector<Section> sections;  // sections[0]: the lines before any header

    std::string_view eol() const {
        const std::size_t at = text.find_first_of("\r\n");
        if (at == std::string::npos) return "\r\n";
        if (text[at] == '\n') return "\n";
        return text.compare(at, 2, "\r\n") == 0 ? "\r\n" : "\r";
    }
};

Line parse_line(std::string_view text, std::size_t begin) {
    Line line;
    line.begin = begin;
    std::size_t end = text.find_first_of("\r\n", begin);
    if (end == std::string_view::npos) end = text.size();
    line.end = end;
    line.next = end;
    if (line.next < text.size()) {
        line.next += (text[end] == '\r' && end + 1 < text.size() && text[end + 1] == '\n') ? 2 : 1;
    }
    const std::string_view content = trim(text.substr(begin, end - begin));
    if (content.empty()) return line;
    if (content.front() == '[') {
        // The last ']' closes the name, so "[a]b]" is section "a]b"; an
        // unclosed bracket makes the line an ordinary entry.
        const std::size_t close = content.rfind(']');
        if (close != std::string_view::npos) {
            line.kind = Kind::kHeader;
            line.name = trim(content.substr(1, close - 1));
            return line;
        }
    }
    line.kind = Kind::kEntry;
    const std::size_t eq = content.find('=');
    if (eq == std::string_view::npos) {
        line.name = content;
    } else {
        line.name = trim_right(content.substr(0, eq));
        line.has_value = true;
        line.value = trim_left(content.substr(eq + 1));
    }
    return line;
}

void parse(Profile& p) {
    const std::string_view text = p.text;
    p.body = text.starts_with("\xEF\xBB\xBF") ? 3 : 0;
    p.sections.assign(1, Section{});
    for (std::size_t at = p.body; at < text.size();) {
        const Line line = parse_line(text, at);
        at = line.next;
        const std::size_t index = p.lines.size();
        p.lines.push_back(line);
        if (line.kind == Kind::kHeader) {
            p.sections.push_back(Section{line.name, index, {}, index});
        } else if (line.kind == Kind::kEntry) {
            p.sections.back().entries.push_back(index);
            p.sections.back().last = index;
        }
    }
}

Opened load(const char* path, Profile& p) {
    const Opened opened = read_file(path, p.text);
    if (opened != Opened::kFailed) parse(p);
    return opened;
}

// Lookups trim the caller's names; listings and deletions compare them as
// given.  Odd, but that is how the Windows calls answer.
const Section* find_section(const Profile& p, std::string_view name) {
    for (const Section& s : p.sections) {
        if (same_name(s.name, name)) return &s;
    }
    return nullptr;
}

const Line* find_entry(const Profile& p, const Section& s, std::string_view key) {
    for (std::size_t i : s.entries) {
        if (same_name(p.lines[i].name, key)) return &p.lines[i];
    }
    return nullptr;
}

// ---- Building answers ---------------------------------------------------------
// Each builder returns exactly the characters the caller will see before the
// final terminator (which may include the zeros separating list items).

// Copies a value or default into `size` characters, dropping one pair of
// enclosing quotes.  When the closing quote was cut off, the last kept
// character goes instead - callers have always seen that, so keep it.
std::string copy_entry(std::string_view value, std::size_t size) {
    bool quoted = false;
    if (value.size() > 1 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front()) {
        quoted = true;
        value.remove_prefix(1);
    }
    std::string out(value.substr(0, size - 1));
    if (quoted && size >= value.size() && !out.empty()) out.pop_back();
    return out;
}

std::string list_keys(const Section& s, const Profile& p, std::size_t size) {
    std::string out;
    std::size_t left = size;
    for (std::size_t i : s.entries) {
        if (left <= 2) break;
        const Line& e = p.lines[i];
        if (e.name.starts_with(';') || !e.has_value) continue;
        const std::string_view name = e.name.substr(0, left - 2);
        out.append(name);
        out.push_back('\0');
        left -= name.size() + 1;
        if (left < 2) break;
    }
    // Ran out of room: the cut name keeps its own zero, the count doesn't.
    if (left <= 1 && !out.empty()) out.resize(size - 2);
    return out;
}

std::string list_sections(const Profile& p, std::size_t size) {
    std::string out;
    if (size == 1) return out;
    std::size_t room = size - 1;
    for (const Section& s : p.sections) {
        if (s.name.empty()) continue;
        if (s.name.size() + 1 >= room) {
            out.append(s.name.substr(0, room - 1));
            out.resize(size - 2);
            return out;
        }
        out.append(s.name);
        out.push_back('\0');
        room -= s.name.size() + 1;
    }
    return out;
}

std::string read_value(const char* section, const char* key, const char* def, std::size_t size, const char* path) {
    Profile p;
    const Opened opened = load(path, p);
    if (section == nullptr) return opened == Opened::kFailed ? std::string() : list_sections(p, size);

    // Trailing spaces (only spaces) of the default go, its first character stays.
    std::string_view fallback = def != nullptr ? def : "";
    while (fallback.size() > 1 && fallback.back() == ' ') fallback.remove_suffix(1);

    if (opened == Opened::kFailed) return std::string(fallback.substr(0, size - 1));
    if (key == nullptr) {
        std::string keys;
        for (const Section& s : p.sections) {
            if (same_name(s.name, section)) {
                keys = list_keys(s, p, size);
                break;
            }
        }
        return (keys.empty() || keys.front() == '\0') ? copy_entry(fallback, size) : keys;
    }
    if (*key == '\0') return copy_entry(fallback, size);
    const Section* s = find_section(p, trim(section));
    const Line* e = s != nullptr ? find_entry(p, *s, trim(key)) : nullptr;
    return copy_entry(e != nullptr && e->has_value ? e->value : fallback, size);
}

uint32_t deliver(const std::string& text, std::span<char> out) {
    // Only the answer and one zero are written; the rest of `out` is left alone.
    std::memcpy(out.data(), text.data(), text.size());
    out[text.size()] = '\0';
    return static_cast<uint32_t>(text.size());
}

uint32_t digit_value(char c) noexcept {
    if (c >= '0' && c <= '9') return static_cast<uint32_t>(c - '0');
    if (c >= 'a' && c <= 'z') return static_cast<uint32_t>(c - 'a' + 10);
    if (c >= 'A' && c <= 'Z') return static_cast<uint32_t>(c - 'A' + 10);
    return 36;
}

// Decimal unless prefixed 0x, 0o or 0b; digits stop at the first stranger and
// the total wraps at 32 bits, so "12abc" is 12 and "4294967295" is -1.
int32_t parse_int(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size() && static_cast<unsigned char>(text[i]) <= ' ') ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
    uint32_t base = 10;
    if (i + 1 < text.size() && text[i] == '0') {
        const char kind = text[i + 1];
        base = kind == 'x' ? 16 : kind == 'o' ? 8 : kind == 'b' ? 2 : 10;
        if (base != 10) i += 2;
    }
    uint32_t total = 0;
    for (; i < text.size() && digit_value(text[i]) < base; ++i) total = total * base + digit_value(text[i]);
    return static_cast<int32_t>(negative ? 0u - total : total);
}

const char* system_profile() {
    const char* path = std::getenv("VLCORE_PROFILE");
    return path != nullptr && *path != '\0' ? path : nullptr;
}

// ---- Editing ------------------------------------------------------------------

std::string_view section_span(const Profile& p, std::size_t index, std::size_t& begin) {
    const Section& s = p.sections[index];
    begin = s.header != kNone ? p.lines[s.header].begin : p.body;
    std::size_t end = p.text.size();
    if (index + 1 < p.sections.size()) end = p.lines[p.sections[index + 1].header].begin;
    return std::string_view(p.text).substr(begin, end - begin);
}

bool remove_section(Profile& p, const char* section) {
    for (std::size_t i = 0; i < p.sections.size(); ++i) {
        if (!same_name(p.sections[i].name, section)) continue;
        std::size_t begin = 0;
        const std::size_t length = section_span(p, i, begin).size();
        p.text.erase(begin, length);
        return length > 0;
    }
    return false;
}

// Unlike lookups, removal goes on to later sections of the same name.
bool remove_key(Profile& p, const char* section, const char* key) {
    for (const Section& s : p.sections) {
        if (!same_name(s.name, section)) continue;
        for (std::size_t i : s.entries) {
            const Line& e = p.lines[i];
            if (!same_name(e.name, key)) continue;
            p.text.erase(e.begin, e.next - e.begin);
            return true;
        }
    }
    return false;
}

// Inserts `text` as new lines after line `after` (or at the start of the body
// when there is none), terminating an unterminated last line first.
void insert_lines(Profile& p, std::size_t after, std::string_view text) {
    const std::string eol(p.eol());
    std::size_t at = p.body;
    if (after != kNone) {
        const Line& line = p.lines[after];
        at = line.next;
        if (line.next == line.end) {
            p.text.insert(at, eol);
            at += eol.size();
        }
    }
    p.text.insert(at, std::string(text) + eol);
}

// Returns false when nothing had to change.
bool set_value(Profile& p, std::string_view section, std::string_view key, std::string_view value) {
    const Section* s = find_section(p, section);
    if (s == nullptr) {
        if (!p.text.empty() && p.text.back() != '\n' && p.text.back() != '\r') p.text.append(p.eol());
        p.text.append("[").append(section).append("]").append(p.eol());
        p.text.append(key).append("=").append(value).append(p.eol());
        return true;
    }
    if (const Line* e = find_entry(p, *s, key)) {
        if (e->has_value && e->value == value) return false;
        // Keep the line's indentation and the key's spelling, replace the rest.
        const std::size_t keep = static_cast<std::size_t>(e->name.data() + e->name.size() - p.text.data());
        p.text.replace(keep, e->end - keep, std::string("=").append(value));
        return true;
    }
    insert_lines(p, s->last, std::string(key).append("=").append(value));
    return true;
}

// A read that failed on the way (no memory) answers the caller's default,
// as a profile that can't be reached does.
constexpr uint32_t kNotRead = UINT32_MAX;

uint32_t deliver_default(const char* def, std::span<char> out) noexcept {
    const std::size_t n = def != nullptr ? strnlen(def, out.size() - 1) : 0;
    if (n != 0) std::memcpy(out.data(), def, n);
    out[n] = '\0';
    return static_cast<uint32_t>(n);
}

bool write_profile(const char* section, const char* key, const char* value, const char* file) {
    Profile p;
    if (load(file, p) == Opened::kFailed) return false;
    bool changed = false;
    if (key == nullptr) {
        changed = remove_section(p, section);
    } else if (value == nullptr) {
        changed = remove_key(p, section, key);
    } else {
        changed = set_value(p, trim(section), trim(key), trim(value));
    }
    return !changed || write_file(file, p.text);
}

}  // namespace

uint32_t private_profile_string(const char* section, const char* key, const char* def, std::span<char> out,
                                const char* file) noexcept {
    if (out.empty()) return 0;
    const uint32_t n = guarded(kNotRead, [&] {
        return deliver(read_value(section, key, def, out.size(), file != nullptr ? file : system_profile()), out);
    });
    return n != kNotRead ? n : deliver_default(def, out);
}

uint32_t profile_string(const char* section, const char* key, const char* def, std::span<char> out) noexcept {
    return private_profile_string(section, key, def, out, system_profile());
}

int32_t profile_int(const char* section, const char* key, int32_t def) noexcept {
    // The number is read through a small buffer, as the Windows call does, so
    // absurdly long digit strings are cut before they are converted.
    char digits[30];
    if (profile_string(section, key, "", digits) == 0 || digits[0] == '\0') return def;
    return parse_int(digits);
}

bool write_private_profile_string(const char* section, const char* key, const char* value, const char* file) noexcept {
    if (file == nullptr) file = system_profile();
    if (section == nullptr || file == nullptr) return false;
    // The new text is made whole before the file is opened, so a failure on
    // the way leaves the file as it was.
    return guarded(false, [&] { return write_profile(section, key, value, file); });
}

}  // namespace vl::platform
