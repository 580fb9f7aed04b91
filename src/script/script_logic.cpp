// The script window's platform-free decisions.

#include <algorithm>
#include <cstring>
#include <vector>

#include "platform/platform.h"
#include "script/script.h"
#include "vlcore.h"

namespace vl::script {

bool holds_line_open(int32_t ch) noexcept {
    switch (ch) {
        case ';':
        case '[':
        case '{':
        case '<':
        case '(':
        case '\n': return true;
        default: return false;
    }
}

CurrentLine current_line(std::string_view text, uint16_t s, uint16_t e) {
    CurrentLine line;
    // The copy holds at most e characters; a shorter one ends where the
    // control's text ended.
    const std::size_t end = std::min<std::size_t>(e, text.size());
    const std::size_t start_sel = std::min<std::size_t>(s, end);
    if (s != e) {
        line.selection = true;
        line.command.assign(text.substr(start_sel, end - start_sel));
        return line;
    }
    // Back from the caret to just behind the nearest line feed; a line feed
    // at position 0 stays part of the command.
    std::size_t start = end;
    while (start > 0 && text[start - 1] != '\n') --start;
    if (start == 1 && text[0] == '\n') start = 0;
    line.command.assign(text.substr(start, end - start));
    line.last = end == 0 ? '\n' : static_cast<int32_t>(static_cast<signed char>(text[end - 1]));
    return line;
}

EnterAction enter_action(const CurrentLine& line) noexcept {
    if (line.selection) return EnterAction::kRunSelection;
    if (holds_line_open(line.last)) return EnterAction::kLineBreak;
    return EnterAction::kRunLine;
}

namespace {

// The first token of `text`, cut to the buffer's 79 characters, and the
// rest behind it.
std::string next_token(const char* text, const char** rest) {
    std::vector<char> token(std::strlen(text) + 1, '\0');
    *rest = KELUTIL_next_token(token.data(), text);
    std::string out(token.data());
    if (out.size() > kTokenRoom - 1) out.resize(kTokenRoom - 1);
    return out;
}

}  // namespace

Setting parse_setting(const char* text) {
    Setting setting;
    if (!text) return setting;
    const char* rest = nullptr;
    std::string token = next_token(text, &rest);
    if (!rest) rest = "";
    platform::upper_in_place(token.data(), token.size());
    if (token.empty()) return setting;
    const char second = token.size() > 1 ? token[1] : '\0';
    switch (token[0]) {
        case 'E':
            setting.kind = SettingKind::kExecute;
            setting.number = rest[0] == '1' ? 1 : 0;
            break;
        case 'M':
            if (rest[0] == 'L' || rest[0] == 'l') {
                setting.kind = SettingKind::kLeftMargin;
                setting.number = KELUTIL_str2int(rest + 1);
            } else {
                setting.kind = SettingKind::kTopMargin;
                setting.number = KELUTIL_str2int(rest);
            }
            break;
        case 'N': setting.kind = SettingKind::kNew; break;
        case 'O':
            setting.kind = SettingKind::kOpen;
            setting.text = rest;
            break;
        case 'P': setting.kind = second == 'D' ? SettingKind::kPrintDialog : SettingKind::kPrintCurrent; break;
        case 'S':
            setting.kind = SettingKind::kSave;
            setting.text = rest;
            break;
        case 'T':
            setting.kind = second == 'C' ? SettingKind::kTabColumns : SettingKind::kTabUnits;
            setting.number = KELUTIL_str2int(rest);
            break;
        case 'W': {
            setting.kind = SettingKind::kCaption;
            const char* after = nullptr;
            setting.text = next_token(rest, &after);
            break;
        }
        default: break;
    }
    return setting;
}

int32_t tab_factor(int32_t average_width, int32_t base) noexcept {
    if (base == 0) return 1;
    const int64_t factor = (4 * static_cast<int64_t>(average_width)) / base;
    return factor == 0 ? 1 : static_cast<int32_t>(factor);
}

TabStop tab_stop(int32_t n, bool in_columns, int32_t factor) noexcept {
    if (factor == 0) factor = 1;
    if (in_columns) return {static_cast<int32_t>(static_cast<int64_t>(n) * factor), static_cast<uint16_t>(n)};
    return {n, static_cast<uint16_t>(n / factor)};
}

uint32_t open_read_size(uint32_t file_size) noexcept { return file_size < 10 ? 32000u : file_size; }

EditText edit_text_from_file(std::string_view bytes) {
    const std::size_t zero = bytes.find('\0');
    if (zero != std::string_view::npos) bytes = bytes.substr(0, zero);
    EditText out;
    out.lf_only = bytes.find('\n') != std::string_view::npos && bytes.find('\r') == std::string_view::npos;
    if (!out.lf_only) {
        out.text.assign(bytes);
        return out;
    }
    out.text.reserve(bytes.size() + bytes.size() / 8);
    for (const char c : bytes) {
        if (c == '\n') out.text += '\r';
        out.text += c;
    }
    return out;
}

std::string file_text_from_edit(std::string_view text, bool lf_only) {
    if (!lf_only) return std::string(text);
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
        out += text[i];
    }
    return out;
}

std::string_view printed_line(std::string_view line) noexcept { return line.substr(0, kPrintLineRoom); }

int32_t print_font_height(int32_t pixels_per_inch) noexcept {
    return static_cast<int32_t>(pixels_per_inch * 12 * 0.013888888888888888);
}

PageLayout page_layout(int32_t tm_height, int32_t tm_external_leading, int32_t tm_ave_char_width, uint16_t tab_chars,
                       int32_t vertres) noexcept {
    PageLayout layout{};
    layout.line_height = std::max(1, tm_height + tm_external_leading);
    layout.tab_distance = tm_ave_char_width * tab_chars;
    layout.lines_per_page = std::max(1, vertres / layout.line_height - 1);
    return layout;
}

}  // namespace vl::script
