// The script window's decisions that need no window system: what one Enter
// key makes of the text in front of the caret, how a settings text of the
// host reads, the tab arithmetic, the file text and the printed page.
//
// Choices of this library where the behaviour is open:
//  - Tab factor: a dialog base of 0, or a factor that comes out as 0, gives
//    a factor of 1, so that neither division of the tab settings can trap.
//  - A settings token or caption is cut to 79 characters, what its buffer
//    of 80 holds.
//  - A script file is taken into the window only up to 32767 bytes, the
//    last position the edit control's 16-bit selection reaches; a larger
//    file is refused with a message, and the window keeps its text and its
//    name, so a later Save can't overwrite the large file with the old text.
//  - KelText codes 2, 14 and 20 act on windows of the script window's class
//    only: any other handle, a dead one or null changes nothing.
//  - A file whose lines end in a line feed alone (no carriage return in it
//    at all) is shown with carriage return and line feed, the only line
//    break the edit control draws, and written back with line feeds alone:
//    such a file comes back byte for byte.  Every other file is shown and
//    written byte for byte.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "vlcore.h"

namespace vl::script {

// ---- Numbers of the interface ----------------------------------------------

// KelText codes.
enum KelTextCode : uint32_t {
    kLoadAccelerators = VL_TEXT_LOAD_ACCELERATORS,
    kCreateWindow = VL_TEXT_CREATE_WINDOW,
    kSetting = VL_TEXT_SETTING,
    kFreeAccelerators = VL_TEXT_FREE_ACCELERATORS,
    kAppendText = VL_TEXT_APPEND,
    kSetModified = VL_TEXT_SET_MODIFIED,
    kQueryFont = VL_TEXT_QUERY_FONT,
};

// Menu commands, and the edit control's identifier.
enum Command : uint32_t {
    kCmdNew = 500,
    kCmdOpen = 502,
    kCmdSave = 505,
    kCmdSaveAs = 506,
    kCmdPrint = 508,
    kCmdHide = 509,
    kCmdUndo = 510,
    kCmdCut = 511,
    kCmdCopy = 512,
    kCmdPaste = 513,
    kCmdDelete = 514,
    kCmdExecution = 571,
};
constexpr int kEditId = VL_SCRIPT_EDIT_ID;

// Internal codes of the file command, beside New, Open, Save and Save As.
constexpr uint32_t kFileSaveCheck = 17;
constexpr uint32_t kFileFreeName = 40;

// Strings of the library's table.
constexpr uint32_t kStrOpenCommand = 10000;
constexpr uint32_t kStrSaveAsCommand = 10001;
constexpr uint32_t kStrSaveQuestion = 21020;
constexpr uint32_t kStrQuestionCaption = 21021;
constexpr uint32_t kStrTitle = 21022;
constexpr uint32_t kStrFileTooLarge = 21023;

// Defaults of a new window.
constexpr uint16_t kDefaultTabChars = 15;
constexpr uint16_t kDefaultLeftMargin = 0;
constexpr uint16_t kDefaultTopMargin = 75;

// Window styles: the script window (popup, caption, system menu, sizing
// frame; hidden) and its edit control (child, visible, border, both scroll
// bars, multi-line, scrolling by itself both ways).
constexpr uint32_t kScriptWindowStyle = 0x80CC0000;
constexpr uint32_t kEditStyle = 0x50B000C4;

// Messages of the window's own, fixed texts.
inline constexpr char kOutOfMemoryText[] = "Out of local memory";
inline constexpr char kPrintAbortedText[] = "Printing is aborted";
inline constexpr char kPrintJobFailedText[] = "Unable to start print job";
inline constexpr char kPrintDocumentName[] = "Vorlan Script Window";

// The text that marks a failed command.
inline constexpr std::string_view kCommandError = "#Command Error!\r\n";

// The name block's size, and the room of a settings token.
constexpr std::size_t kNameBlockSize = 266;
constexpr std::size_t kTokenRoom = 80;
constexpr std::size_t kTitleRoom = 50;

// Where the edit control's 16-bit positions end; ScriptAppendText's "end".
constexpr uint32_t kTextEnd = 32767;

// ---- One Enter key -----------------------------------------------------------

// True for the characters that hold a line open: ; [ { < ( and line feed.
bool holds_line_open(int32_t ch) noexcept;

// What ScriptGetCurrentLine takes from the text.  `text` holds the first e
// characters of the edit control, `s` and `e` the selection (16-bit
// positions, s <= e).
struct CurrentLine {
    std::string command;  // the text the host gets
    int32_t last = 0;     // character in front of the caret, sign-extended; 10 at the start; 0 for a selection
    bool selection = false;
};
CurrentLine current_line(std::string_view text, uint16_t s, uint16_t e);

// What MyEditProc does with Enter.
enum class EnterAction {
    kRunSelection,  // the selected text goes to the host; the caret goes to the end
    kLineBreak,     // only a line break; nothing goes to the host
    kRunLine,       // semicolon and line break, then the line goes to the host
};
EnterAction enter_action(const CurrentLine& line) noexcept;

// ---- Settings of KelText code 2 -----------------------------------------------

enum class SettingKind {
    kNone,  // a first letter outside the table, or no text
    kExecute,
    kLeftMargin,
    kTopMargin,
    kNew,
    kOpen,
    kPrintDialog,
    kPrintCurrent,
    kSave,
    kTabColumns,
    kTabUnits,
    kCaption,
};
struct Setting {
    SettingKind kind = SettingKind::kNone;
    int32_t number = 0;  // E: 1 or 0; M and T: the integer read
    std::string text;    // O and S: the rest, whole; W: the caption token
};
Setting parse_setting(const char* text);

// ---- Tabs ----------------------------------------------------------------------

// Dialog units per character column: (4 x average width) / base, truncated.
int32_t tab_factor(int32_t average_width, int32_t base) noexcept;
struct TabStop {
    int32_t stop;        // in dialog units, for EM_SETTABSTOPS
    uint16_t tab_chars;  // the new wTabChars
};
// Setting T (n in dialog units) or TC (n in character columns).
TabStop tab_stop(int32_t n, bool in_columns, int32_t factor) noexcept;

// ---- Script files ----------------------------------------------------------------

// Open reads at least 32000 bytes: a file of under 10 bytes counts as that.
uint32_t open_read_size(uint32_t file_size) noexcept;
// Largest file the window takes.
constexpr uint32_t kMaxScriptFile = kTextEnd;

struct EditText {
    std::string text;
    bool lf_only = false;  // written back with line feeds alone
};
// The bytes read from a file as they go into the edit control: up to the
// first zero byte, as the read block ends there.
EditText edit_text_from_file(std::string_view bytes);
// The edit control's text as it goes into the file.
std::string file_text_from_edit(std::string_view text, bool lf_only);

// ---- Printing ---------------------------------------------------------------------

// Characters of one line that reach the page.
constexpr std::size_t kPrintLineRoom = 128;
std::string_view printed_line(std::string_view line) noexcept;
// 12 points at the printer's vertical resolution (LOGPIXELSY).
int32_t print_font_height(int32_t pixels_per_inch) noexcept;

struct PageLayout {
    int32_t line_height;     // tmHeight + tmExternalLeading, at least 1
    int32_t tab_distance;    // tmAveCharWidth x wTabChars
    int32_t lines_per_page;  // VERTRES / line height - 1, at least 1
};
PageLayout page_layout(int32_t tm_height, int32_t tm_external_leading, int32_t tm_ave_char_width, uint16_t tab_chars,
                       int32_t vertres) noexcept;

// Where each line goes: place 1 is the first line position of a page
// (position 0 stays blank); after a page's last line a new page begins.
class PagePlacer {
  public:
    explicit PagePlacer(int32_t lines_per_page) noexcept : lines_per_page_(lines_per_page) {}
    int32_t place() const noexcept { return place_; }
    int32_t y(int32_t line_height) const noexcept { return place_ * line_height; }
    // Moves past the line just drawn; true when the page is full and the
    // next line starts a new page.
    bool advance() noexcept {
        if (++place_ <= lines_per_page_) return false;
        place_ = 1;
        return true;
    }

  private:
    int32_t lines_per_page_;
    int32_t place_ = 1;
};

}  // namespace vl::script
