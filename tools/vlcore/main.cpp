// vlcore: the library's entries from the command line.
//
//   vlcore tokens TEXT     the tokens of a script line, one per line
//   vlcore number TEXT     what the number parsers read from TEXT

#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "vlcore.h"

namespace {

constexpr int kUsageError = 2;

int usage(const char* why = nullptr) {
    if (why) std::fprintf(stderr, "vlcore: %s\n", why);
    std::fputs(
        "usage: vlcore COMMAND ARGS...\n"
        "  tokens TEXT    split a script line into tokens\n"
        "  number TEXT    read TEXT as an integer, a real and a hexadecimal number\n",
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

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) return usage();
    const std::string_view cmd = argv[1];
    if (cmd == "-h" || cmd == "--help" || cmd == "help") {
        usage();
        return 0;
    }
    if (cmd == "tokens" || cmd == "number") {
        if (argc != 3) return usage(("'" + std::string(cmd) + "' takes exactly one TEXT argument").c_str());
        return cmd == "tokens" ? cmd_tokens(argv[2]) : cmd_number(argv[2]);
    }
    return usage(("unknown command '" + std::string(cmd) + "'").c_str());
}
