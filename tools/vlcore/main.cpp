// vlcore: the library's entries from the command line.
//
//   vlcore tokens TEXT     the tokens of a script line, one per line
//   vlcore number TEXT     what the number parsers read from TEXT
//   vlcore eval [--deg|--grad] NAME ARG...   a row of the function table
//   vlcore random SEED COUNT [uniform|normal|poisson MEAN]   a random stream
//   vlcore format FORMAT VALUE...    each value printed by a format text
//   vlcore sprintf FORMAT VALUE...   each value printed by a %W.PC format
//   vlcore section FILE [NAME [KEY]]  a section of a file, or one entry
//   vlcore package FILE [NAME]        the members of a package, or one member
//   vlcore names CLASS [NAME]         the names of a class, or one name's id
//   vlcore date VALUE [FORMAT]        a date value printed by a date format
//   vlcore parsedate TEXT [FORMAT]    a date read from text, and printed back
//   vlcore time VALUE [FORMAT]        the time in a value printed by a time format
//   vlcore open [FILTER]              the open dialog (Windows): the name chosen
//   vlcore save NAME                  the save dialog (Windows): the path chosen
//   vlcore printers                   the printers the library sees, the default marked
//   vlcore print FILE                 a text file printed through the printer device
//   vlcore console [SCRIPT]           the script window (Windows build)
//
// Missing, extra, empty or unreadable arguments, numbers out of their
// range and texts longer than the entries' room end with a message and
// status 2 before any entry is called.

#include <cctype>
#include <charconv>
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "vlcore.h"

#ifdef _WIN32
#include <windows.h>
int cmd_console(int argc, char** argv);
#endif

namespace {

constexpr int kUsageError = 2;
// The longest format text the format entries read.
constexpr std::size_t kMaxFormat = VL_FORMAT_ROOM - 1;
// Room of the save dialog's name, terminator included.
constexpr std::size_t kSaveNameRoom = 266;
// The longest section name that can match, and the longest member name.
constexpr std::size_t kMaxSectionName = 119, kMaxMemberName = 16;
// Deviates of one 'random' command.
constexpr uint32_t kMaxRandomCount = 1000000;
// Date and time formats: the entries read 16 bits.
constexpr uint32_t kMaxDateFormat = 65535;

int usage(const char* why = nullptr) {
    if (why) std::fprintf(stderr, "vlcore: %s\n", why);
    std::fputs(
        "usage: vlcore COMMAND ARGS...\n"
        "  tokens TEXT    split a script line into tokens\n"
        "  number TEXT    read TEXT as an integer, a real and a hexadecimal number\n"
        "  eval [--deg|--grad] NAME ARG...\n"
        "                 evaluate a function of the table (SIN, TTABLE, INCBETA, ...)\n"
        "  random SEED COUNT [uniform|normal|poisson MEAN]\n"
        "                 COUNT deviates after seeding the generator with SEED\n"
        "  format FORMAT VALUE...\n"
        "                 print each VALUE by a format text (*, *3, *3*, .2, E*3, P*, S*, %8.3f)\n"
        "  sprintf FORMAT VALUE...\n"
        "                 print each VALUE by a %W.PC format (%7.3g, %10.4e, %8.3f)\n"
        "  section FILE [NAME [KEY]]\n"
        "                 print section NAME of FILE (all of it without NAME), or the value of KEY\n"
        "  package FILE [NAME]\n"
        "                 list the members of a package, or write member NAME to standard output\n"
        "  names CLASS [NAME]\n"
        "                 list the names of a class, or look NAME up in it\n"
        "  date VALUE [FORMAT]\n"
        "                 print a date value (2460374.5 is 5 March 2024, noon) by a date format,\n"
        "                 0 to 18 or a style word; without FORMAT all of 0 to 18\n"
        "  parsedate TEXT [FORMAT]\n"
        "                 read a date from TEXT by a date format (default 0, the short picture),\n"
        "                 print its value and the date read back by the same format\n"
        "  time VALUE [FORMAT]\n"
        "                 print the time of day in VALUE (or a length in days) by a time format,\n"
        "                 0 to 12; without FORMAT all of them\n"
        "  open [FILTER]  show the open dialog (Windows build): FILTER is a list of patterns\n"
        "                 such as \"*.DAT *.TXT\", without it the types Data, Text and All files\n"
        "  save NAME      show the save dialog (Windows build) proposing NAME\n"
        "  printers       list the printers the library sees; * marks the default\n"
        "  print FILE     print a text file on the default printer (Windows build)\n"
#ifdef _WIN32
        "  console [SCRIPT]\n"
        "                 open the script window; each line run comes back with its tokens\n"
#endif
        ,
        stderr);
    return kUsageError;
}

void print_quoted(const char* label, const char* text) { std::printf("%-8s <%s>\n", label, text); }

int cmd_tokens(const char* line) {
    std::vector<char> token(std::strlen(line) + 1);
    const char* p = line;
    int count = 0;
    while (*p) {
        p = KELUTIL_next_token(token.data(), p);
        if (token[0] == '\0') {
            // A semicolon ends a statement and is never part of a token.
            if (*p == ';') {
                std::printf("%3d  ;\n", ++count);
                ++p;
                while (*p == ' ' || *p == '\t' || *p == '\r' || *p == '\n') ++p;
                continue;
            }
            break;
        }
        std::printf("%3d  <%s>\n", ++count, token.data());
    }
    if (count == 0) std::puts("(no tokens)");
    return 0;
}

void print_real(const char* label, double v) {
    if (v == VL_MISSING_VALUE)
        std::printf("%-8s missing (not a number)\n", label);
    else
        std::printf("%-8s %.17g\n", label, v);
}

int cmd_number(const char* text) {
    print_quoted("text", text);
    int32_t i = 0;
    if (KELUTIL_cvtstr2int(text, &i))
        std::printf("%-8s %" PRId32 "\n", "integer", i);
    else
        std::printf("%-8s bad integer\n", "integer");
    std::vector<char> buf(text, text + std::strlen(text) + 1);
    print_real("real", KELUTIL_str2real(buf.data()));
    buf.assign(text, text + std::strlen(text) + 1);
    std::printf("%-8s %" PRId32 "\n", "hex", KELUTIL_hexstr2int(buf.data()));
    return 0;
}

// Reads a whole argument as a finite real number.
bool read_real(const char* text, double& out) {
    std::vector<char> buf(text, text + std::strlen(text) + 1);
    double v = 0.0;
    if (KELUTIL_cvtstr2real(buf.data(), &v) != 1 || !std::isfinite(v)) return false;
    out = v;
    return true;
}

// Reads a whole argument of decimal digits as a number from 0 to `max`.
bool read_count(std::string_view text, uint32_t max, uint32_t& out) {
    const char* end = text.data() + text.size();
    uint32_t v = 0;
    const auto [stop, error] = std::from_chars(text.data(), end, v);
    if (error != std::errc{} || stop != end || v > max) return false;
    out = v;
    return true;
}

std::string quoted(std::string_view what, const char* text) { return std::string(what) + " '" + text + "'"; }

int cmd_eval(int argc, char** argv) {
    uint32_t unit = 0;
    int i = 2;
    for (; i < argc && argv[i][0] == '-' && argv[i][1] == '-'; ++i) {
        const std::string_view opt = argv[i];
        if (opt == "--deg")
            unit = VL_MATH_DEGREES;
        else if (opt == "--grad")
            unit = VL_MATH_GRADS;
        else
            return usage(("unknown option '" + std::string(opt) + "'").c_str());
    }
    if (i >= argc) return usage("'eval' needs a function NAME");
    std::string name = argv[i++];
    for (char& c : name) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    uint16_t row = 0;
    const int32_t count = KelMath_function(0, VL_MATH_FIND, name.data(), &row, 0);
    if (count == 0) return usage(("no function named '" + name + "'").c_str());
    if (argc - i != count)
        return usage((name + " takes " + std::to_string(count) + " argument" + (count == 1 ? "" : "s")).c_str());
    double args[3] = {};
    for (int k = 0; k < count; ++k)
        if (!read_real(argv[i + k], args[k])) return usage(quoted("bad number", argv[i + k]).c_str());
    double value = 0.0;
    const int32_t flag = KelMath_function(0, (static_cast<uint32_t>(row) << 16) | VL_MATH_EVAL, args, &value, unit);
    std::printf("%-8s %.17g\n%-8s %" PRId32 "%s\n", "value", value, "flag", flag, flag ? " (failed)" : "");
    return 0;
}

int cmd_random(int argc, char** argv) {
    if (argc < 4 || argc > 6) return usage("'random' takes SEED COUNT [uniform|normal|poisson MEAN]");
    double seed = 0.0, mean = 0.0;
    uint32_t count = 0;
    if (!read_real(argv[2], seed)) return usage(quoted("bad SEED", argv[2]).c_str());
    if (!read_count(argv[3], kMaxRandomCount, count))
        return usage(("COUNT runs from 0 to " + std::to_string(kMaxRandomCount)).c_str());
    const std::string_view kind = argc > 4 ? argv[4] : "uniform";
    uint32_t operation = VL_MATH_UNIFORM;
    if (kind == "normal") {
        operation = VL_MATH_NORMAL;
    } else if (kind == "poisson") {
        if (argc != 6 || !read_real(argv[5], mean)) return usage("'poisson' needs a MEAN");
        operation = VL_MATH_POISSON;
    } else if (kind != "uniform" || argc == 6) {
        return usage(("unknown stream '" + std::string(kind) + "'").c_str());
    }
    if (KelMath_function(0, VL_MATH_SEED, &seed, nullptr, 0) != 0) return usage("SEED must be 1 or more");
    // A seed leaves the spare normal deviate in place: start the stream clean.
    int32_t idum = 1;
    gasdevex_export(&idum, 1);
    for (uint32_t k = 0; k < count; ++k) {
        double out = 0.0, in = mean;
        KelMath_function(0, operation, &in, &out, 0);
        std::printf("%.10f\n", out);
    }
    return 0;
}

// Prints each VALUE by `format`, one line each.  Values are read by the
// library's own parser; "missing" stands for the missing value.
int cmd_print(bool with_sprintf, const char* format, char** values, int count) {
    if (std::strlen(format) > kMaxFormat)
        return usage(("FORMAT is longer than " + std::to_string(kMaxFormat) + " characters").c_str());
    std::vector<double> numbers(static_cast<std::size_t>(count), VL_MISSING_VALUE);
    for (int i = 0; i < count; ++i)
        if (std::strcmp(values[i], "missing") != 0 && !read_real(values[i], numbers[i]))
            return usage(quoted("bad number", values[i]).c_str());
    for (int i = 0; i < count; ++i) {
        char out[VL_FORMAT_ROOM];
        if (with_sprintf) {
            const int32_t result = KELUTIL_sprintf(out, format, numbers[i]);
            std::printf("%-16s <%s>  (%" PRId32 ")\n", values[i], out, result);
        } else {
            std::printf("%-16s <%s>\n", values[i], KELUTIL_real2str(numbers[i], out, format));
        }
    }
    return 0;
}

// ---- Text data ----------------------------------------------------------

std::string block_text(VL_HGLOBAL h) {
#ifdef _WIN32
    const char* p = static_cast<const char*>(GlobalLock(h));
    std::string s = p ? std::string(p) : std::string();
    GlobalUnlock(h);
    GlobalFree(h);
#else
    const char* p = static_cast<const char*>(vl_global_lock(h));
    std::string s = p ? std::string(p) : std::string();
    vl_global_unlock(h);
    vl_global_free(h);
#endif
    return s;
}

int cmd_section(int argc, char** argv) {
    if (argc < 3 || argc > 5) return usage("'section' takes FILE [NAME [KEY]]");
    const char* name = argc > 3 ? argv[3] : nullptr;
    if (name && std::strlen(name) > kMaxSectionName)
        return usage(("NAME is longer than " + std::to_string(kMaxSectionName) + " characters").c_str());
    VL_HGLOBAL h = KELUTIL_GetFileSection(argv[2], name);
    if (!h) {
        std::fprintf(stderr, "vlcore: no %s%s in %s\n", name ? "section " : "text", name ? name : "", argv[2]);
        return 1;
    }
    const std::string body = block_text(h);
    if (argc < 5) {
        std::fputs(body.c_str(), stdout);
        return 0;
    }
    // The entry reader works on a text that holds the section's header.
    const std::string text = "[" + std::string(name) + "]\n" + body + "\n[]\n";
    std::vector<char> out(4096);
    if (KELUTIL_GetMemSectionEntry(name, argv[4], "", out.data(), static_cast<uint32_t>(out.size()), text.c_str())) {
        std::fprintf(stderr, "vlcore: the value of %s is longer than %zu bytes\n", argv[4], out.size() - 1);
        return 1;
    }
    std::printf("%s\n", out.data());
    return 0;
}

uint32_t le32(const unsigned char* p) { return p[0] | p[1] << 8 | p[2] << 16 | static_cast<uint32_t>(p[3]) << 24; }

int cmd_package(int argc, char** argv) {
    if (argc < 3 || argc > 4) return usage("'package' takes FILE [NAME]");
    if (argc == 4 && std::strlen(argv[3]) > kMaxMemberName)
        return usage(("NAME is longer than " + std::to_string(kMaxMemberName) + " characters").c_str());
    if (argc == 4) {
        uint32_t size = 0;
        VL_HGLOBAL h = KELUTIL_GetFileFromPackage(argv[2], argv[3], &size);
        if (!h) {
            std::fprintf(stderr, "vlcore: no member %s in %s\n", argv[3], argv[2]);
            return 1;
        }
#ifdef _WIN32
        const void* p = GlobalLock(h);
        std::fwrite(p, 1, size, stdout);
        GlobalUnlock(h);
        GlobalFree(h);
#else
        const void* p = vl_global_lock(h);
        std::fwrite(p, 1, size, stdout);
        vl_global_unlock(h);
        vl_global_free(h);
#endif
        return 0;
    }
    // The listing reads the directory itself: the library only fetches.
    std::FILE* f = std::fopen(argv[2], "rb");
    if (!f) return usage(("cannot open '" + std::string(argv[2]) + "'").c_str());
    unsigned char record[24];
    int status = 0;
    if (std::fread(record, 1, sizeof record, f) != sizeof record) {
        std::fprintf(stderr, "vlcore: %s has no package header\n", argv[2]);
        status = 1;
    } else {
        const auto count = static_cast<int32_t>(le32(record + 20));
        std::printf("%d member%s\n", count > 0 ? count : 0, count == 1 ? "" : "s");
        for (int32_t i = 0; i < count && std::fread(record, 1, sizeof record, f) == sizeof record; ++i) {
            char name[17] = {};
            std::memcpy(name, record, 16);
            std::printf("  %-16s %10" PRIu32 " bytes at %" PRIu32 "\n", name, le32(record + 20), le32(record + 16));
        }
    }
    std::fclose(f);
    return status;
}

std::vector<std::string>* g_names = nullptr;
VL_LRESULT VLAPI collect_name(VL_HWND, VL_UINT, VL_WPARAM, VL_LPARAM text) {
    g_names->emplace_back(reinterpret_cast<const char*>(text));
    return 0;
}

int cmd_names(int argc, char** argv) {
    if (argc < 3 || argc > 4) return usage("'names' takes CLASS [NAME]");
    uint32_t cls = 0;
    if (!read_count(argv[2], 102, cls)) return usage("CLASS runs from 0 to 102");
    KELUTIL_Names(0, 0, 1);
    if (argc == 4) {
        const int32_t id = KELUTIL_Names(cls, reinterpret_cast<intptr_t>(argv[3]), 0);
        if (id == 32764) {
            std::printf("%s: not a name of class %" PRIu32 "\n", argv[3], cls);
            return 1;
        }
        std::printf("%s = %d (0x%X)\n", argv[3], id, static_cast<unsigned>(id));
        return 0;
    }
    std::vector<std::string> lines;
    g_names = &lines;
    KELUTIL_Names(cls, reinterpret_cast<intptr_t>(&collect_name), 6);
    g_names = nullptr;
    if (lines.empty()) std::printf("class %" PRIu32 " has no names\n", cls);
    for (const auto& line : lines) {
        const char* name = line.c_str() + 5;  // behind "type "
        const int32_t id = KELUTIL_Names(cls, reinterpret_cast<intptr_t>(name), 0);
        std::printf("  %-20s 0x%04X\n", name, static_cast<unsigned>(id));
    }
    return 0;
}

// A date or a time by one format, or by every row of its table.
int cmd_date_time(int argc, char** argv, bool date) {
    if (argc != 3 && argc != 4)
        return usage(date ? "'date' takes a VALUE and an optional FORMAT"
                          : "'time' takes a VALUE and an optional FORMAT");
    double value = 0.0;
    if (!read_real(argv[2], value)) return usage(quoted("VALUE is no number:", argv[2]).c_str());
    uint32_t first = 0, last = date ? 18 : 12;
    if (argc == 4) {
        if (!read_count(argv[3], kMaxDateFormat, first))
            return usage(("FORMAT runs from 0 to " + std::to_string(kMaxDateFormat)).c_str());
        last = first;
    }
    for (uint32_t f = first; f <= last; ++f) {
        char out[128] = "";
        if (date)
            KELUTIL_date2str(value, f, out);
        else
            KELUTIL_time2str(value, f, out);
        std::printf("%5" PRIu32 "  %s\n", f, out);
    }
    return 0;
}

// A date read from text by a format, and the same date printed back.
int cmd_parsedate(int argc, char** argv) {
    if (argc != 3 && argc != 4) return usage("'parsedate' takes a TEXT and an optional FORMAT");
    uint32_t format = 0;
    if (argc == 4 && !read_count(argv[3], kMaxDateFormat, format))
        return usage(("FORMAT runs from 0 to " + std::to_string(kMaxDateFormat)).c_str());
    std::vector<char> text(argv[2], argv[2] + std::strlen(argv[2]) + 1);
    const double value = KELUTIL_str2date(text.data(), 0, format);
    if (value == VL_MISSING_VALUE) {
        std::printf("no date in \"%s\"\n", argv[2]);
        return 1;
    }
    char out[128] = "";
    KELUTIL_date2str(value, format, out);
    std::printf("%.8f  %s\n", value, out);
    return 0;
}

#ifdef _WIN32
// The file types the dialogs offer when no patterns are given.
void default_file_types() {
    int32_t row = 1;
    for (const char* description : {"Data *.DAT", "Text *.TXT", "\"All files\" *.*"})
        KELUTIL_Fdlog_Str(const_cast<char*>(description), row++, 19);
}
#endif

int cmd_file_dialog(int argc, char** argv, bool save) {
    if (save ? argc != 3 : argc > 3) return usage(save ? "'save' takes a NAME" : "'open' takes an optional FILTER");
    if (save && std::strlen(argv[2]) >= kSaveNameRoom)
        return usage(("NAME is longer than " + std::to_string(kSaveNameRoom - 1) + " characters").c_str());
#ifndef _WIN32
    std::fprintf(stderr, "vlcore: '%s' shows a dialog: run the Windows build (vlcore.exe under Wine)\n",
                 save ? "save" : "open");
    return 1;
#else
    default_file_types();
    std::vector<char> spec;
    if (!save && argc == 3) spec.assign(argv[2], argv[2] + std::strlen(argv[2]) + 1);
    std::vector<char> name(400, '\0');
    if (save) std::memcpy(name.data(), argv[2], std::strlen(argv[2]));
    const int32_t result = save ? KELUTIL_FileSaveAs(nullptr, name.data(), nullptr, 0)
                                : KELUTIL_FileDialog(nullptr, name.data(), spec.empty() ? nullptr : spec.data(), 0);
    const bool chosen = result == 0;
    std::printf("%-10s %" PRId32 " (%s)\n", "result", result,
                chosen ? "chosen"
                : save ? "cancelled"
                       : "cancelled or failed");
    if (!chosen) return 1;
    std::printf("%-10s %s\n", save ? "path" : "name", name.data());
    char dir[300] = "";
    KELUTIL_FileDialog(nullptr, dir, nullptr, 0x10);
    std::printf("%-10s %s\n", "directory", dir);
    if (save) {
        char comment[128] = "";
        KELUTIL_FileSaveAs(nullptr, comment, nullptr, 1024);
        std::printf("%-10s %s\n", "comment", comment);
    }
    return 0;
#endif
}

// The printer device's operations that the tool uses.
constexpr uint32_t kPrinterBlockDC = 3, kPrinterTakeDefault = 11, kPrinterDeviceName = 14, kPrinterPort = 15;

// The default printer as the library takes it at start-up: its device name
// and port, both empty when there is none.
void default_printer(std::string& device, std::string& port) {
    KELUTIL_PrinterDC(nullptr, kPrinterTakeDefault, nullptr);
    char text[240] = "";
    KELUTIL_PrinterDC(nullptr, kPrinterDeviceName, text);
    device = text;
    text[0] = '\0';
    KELUTIL_PrinterDC(nullptr, kPrinterPort, text);
    port = text;
}

int cmd_printers() {
    std::string device, port;
    default_printer(device, port);
    int count = 0;
#ifdef _WIN32
    DWORD needed = 0, returned = 0;
    const DWORD where = PRINTER_ENUM_LOCAL | PRINTER_ENUM_CONNECTIONS;
    EnumPrintersA(where, nullptr, 2, nullptr, 0, &needed, &returned);
    std::vector<BYTE> info(needed + 1);
    if (needed && EnumPrintersA(where, nullptr, 2, info.data(), needed, &needed, &returned)) {
        const auto* rows = reinterpret_cast<const PRINTER_INFO_2A*>(info.data());
        for (DWORD i = 0; i < returned; ++i, ++count)
            std::printf("%c %-24s driver %-16s port %s\n", device == rows[i].pPrinterName ? '*' : ' ',
                        rows[i].pPrinterName, rows[i].pDriverName, rows[i].pPortName);
    }
#else
    // Natively the library sees the profile's printer line only.
    if (!device.empty()) {
        std::printf("* %-24s port %s\n", device.c_str(), port.c_str());
        ++count;
    }
#endif
    if (count == 0) std::puts("no printers");
    return 0;
}

int cmd_print_file(const char* path) {
#ifdef _WIN32
    std::FILE* file = std::fopen(path, "rb");
    if (!file) {
        std::fprintf(stderr, "vlcore: cannot read %s\n", path);
        return 1;
    }
    std::vector<std::string> lines;
    std::string line;
    for (int c; (c = std::fgetc(file)) != EOF;) {
        if (c == '\n') {
            lines.push_back(line);
            line.clear();
        } else if (c == '\t') {
            line.append(8 - line.size() % 8, ' ');
        } else if (c != '\r') {
            line += static_cast<char>(c);
        }
    }
    if (!line.empty()) lines.push_back(line);
    std::fclose(file);

    std::string device, port;
    default_printer(device, port);
    HDC dc = KELUTIL_PrinterDC(nullptr, kPrinterBlockDC, nullptr);
    if (!dc) {
        std::fprintf(stderr, "vlcore: no printer device (default printer: %s)\n",
                     device.empty() ? "none" : device.c_str());
        return 1;
    }
    // 10-point fixed-pitch type and margins of half an inch.
    const int dpi_y = GetDeviceCaps(dc, LOGPIXELSY), dpi_x = GetDeviceCaps(dc, LOGPIXELSX);
    HFONT font = CreateFontA(-MulDiv(10, dpi_y, 72), 0, 0, 0, FW_NORMAL, 0, 0, 0, ANSI_CHARSET, 0, 0, 0,
                             FIXED_PITCH | FF_MODERN, "Courier New");
    const int left = dpi_x / 2, top = dpi_y / 2, bottom = GetDeviceCaps(dc, VERTRES) - dpi_y / 2;
    const std::string_view name = path;
    const std::string title(name.substr(name.find_last_of("/\\") + 1));
    DOCINFOA doc{};
    doc.cbSize = sizeof doc;
    doc.lpszDocName = title.c_str();
    int pages = 0;
    bool ok = StartDocA(dc, &doc) > 0;
    for (std::size_t i = 0; ok && (i < lines.size() || pages == 0);) {
        ok = StartPage(dc) > 0;
        HGDIOBJ old = SelectObject(dc, font);
        TEXTMETRICA metrics;
        GetTextMetricsA(dc, &metrics);
        const int step = metrics.tmHeight + metrics.tmExternalLeading;
        for (int y = top; ok && i < lines.size() && y + step <= bottom; y += step, ++i)
            TextOutA(dc, left, y, lines[i].c_str(), static_cast<int>(lines[i].size()));
        SelectObject(dc, old);
        ok = ok && EndPage(dc) > 0;
        ++pages;
    }
    ok = ok && EndDoc(dc) > 0;
    if (!ok) AbortDoc(dc);
    DeleteDC(dc);
    DeleteObject(font);
    if (!ok) {
        std::fprintf(stderr, "vlcore: the printer refused the job\n");
        return 1;
    }
    std::printf("printed %zu lines on %d page%s to %s (%s)\n", lines.size(), pages, pages == 1 ? "" : "s",
                device.c_str(), port.c_str());
    return 0;
#else
    (void)path;
    std::fputs("vlcore: printing needs the Windows build (vlcore.exe); natively there is no printer device\n", stderr);
    return 1;
#endif
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) return usage("no COMMAND");
    // No command reads anything from an empty text: it is a slip.
    for (int i = 1; i < argc; ++i)
        if (argv[i][0] == '\0') return usage(("argument " + std::to_string(i) + " is empty").c_str());
    const std::string_view cmd = argv[1];
    if (cmd == "-h" || cmd == "--help" || cmd == "help") {
        if (argc > 2) return usage(("'" + std::string(cmd) + "' takes no arguments").c_str());
        usage();
        return 0;
    }
    if (cmd == "tokens" || cmd == "number") {
        if (argc != 3) return usage(("'" + std::string(cmd) + "' takes exactly one TEXT argument").c_str());
        return cmd == "tokens" ? cmd_tokens(argv[2]) : cmd_number(argv[2]);
    }
    if (cmd == "eval") return cmd_eval(argc, argv);
    if (cmd == "random") return cmd_random(argc, argv);
    if (cmd == "format" || cmd == "sprintf") {
        if (argc < 4) return usage(("'" + std::string(cmd) + "' takes a FORMAT and at least one VALUE").c_str());
        return cmd_print(cmd == "sprintf", argv[2], argv + 3, argc - 3);
    }
    if (cmd == "section") return cmd_section(argc, argv);
    if (cmd == "package") return cmd_package(argc, argv);
    if (cmd == "names") return cmd_names(argc, argv);
    if (cmd == "parsedate") return cmd_parsedate(argc, argv);
    if (cmd == "date" || cmd == "time") return cmd_date_time(argc, argv, cmd == "date");
    if (cmd == "open" || cmd == "save") return cmd_file_dialog(argc, argv, cmd == "save");
    if (cmd == "printers") return argc == 2 ? cmd_printers() : usage("'printers' takes no arguments");
    if (cmd == "print") return argc == 3 ? cmd_print_file(argv[2]) : usage("'print' takes exactly one FILE");
#ifdef _WIN32
    if (cmd == "console") return cmd_console(argc, argv);
#endif
    return usage(("unknown command '" + std::string(cmd) + "'").c_str());
}
