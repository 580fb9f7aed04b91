#include "interpreter.h"

#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <istream>
#include <ostream>

namespace host {
namespace {

std::string upper(std::string_view s) {
    std::string u(s);
    for (char& c : u) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return u;
}

// A failure inside an expression: its message.
struct Failure {
    std::string message;
};

// Brackets, arguments, signs and powers may nest this deep.  The parser
// recurses at each level, so a bound keeps a hostile line off the end of
// the stack; real scripts stay far below it.
constexpr int kMaxNesting = 256;
// Steps of one progress loop: the front end shows every one of them.
constexpr int kMaxProgressSteps = 1000;

// A whole text of decimal digits as an unsigned number, false when it is
// anything else or does not fit.
bool read_unsigned(std::string_view text, uint32_t& out) {
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, out);
    return !text.empty() && error == std::errc{} && stop == end;
}

// Recursive descent over the characters of one expression.
class Expression {
  public:
    Expression(const Library& vl, const std::map<std::string, double>& variables, std::string_view text)
        : vl_(vl), variables_(variables), text_(text) {}

    // The value, or a Failure in `failure` (then the value is meaningless).
    double evaluate(Failure& failure) {
        const double v = sum();
        skip();
        if (ok() && at_ < text_.size()) fail("unexpected '" + std::string(text_.substr(at_)) + "'");
        failure = failure_;
        return v;
    }

  private:
    // The table's functions take one to three arguments.
    using Arguments = std::array<double, 3>;

    bool ok() const { return failure_.message.empty(); }
    void fail(std::string message) {
        if (ok()) failure_.message = std::move(message);
    }
    void skip() {
        while (at_ < text_.size() && std::isspace(static_cast<unsigned char>(text_[at_]))) ++at_;
    }
    bool take(char c) {
        skip();
        if (at_ < text_.size() && text_[at_] == c) {
            ++at_;
            return true;
        }
        return false;
    }

    double sum() {
        double v = product();
        while (ok()) {
            if (take('+'))
                v += product();
            else if (take('-'))
                v -= product();
            else
                break;
        }
        return v;
    }
    double product() {
        double v = unary();
        while (ok()) {
            if (take('*')) {
                v *= unary();
            } else if (take('/')) {
                const double d = unary();
                if (d == 0.0) fail("division by zero");
                v = ok() ? v / d : 0.0;
            } else {
                break;
            }
        }
        return v;
    }
    // Every way of nesting passes through here: brackets and arguments
    // through sum(), signs directly, powers through their exponent.
    double unary() {
        if (depth_ == kMaxNesting) {
            fail("too deeply nested");
            return 0.0;
        }
        ++depth_;
        const double v = take('-') ? -unary() : take('+') ? unary() : power();
        --depth_;
        return v;
    }
    double power() {
        const double base = primary();
        if (!take('^')) return base;
        const double exponent = unary();
        return std::pow(base, exponent);
    }

    double primary() {
        skip();
        if (at_ >= text_.size()) {
            fail("missing value");
            return 0.0;
        }
        const char c = text_[at_];
        if (c == '(') {
            ++at_;
            const double v = sum();
            if (!take(')')) fail("missing ')'");
            return v;
        }
        if (c == '"') return date_literal();
        if (std::isdigit(static_cast<unsigned char>(c)) || c == '.') return number();
        if (std::isalpha(static_cast<unsigned char>(c)) || c == '_') return name();
        fail(std::string("unexpected '") + c + "'");
        return 0.0;
    }

    // Digits, point and exponent, read by the library's parser.
    double number() {
        const std::size_t start = at_;
        while (at_ < text_.size() && (std::isdigit(static_cast<unsigned char>(text_[at_])) || text_[at_] == '.')) ++at_;
        if (at_ < text_.size() && (text_[at_] == 'e' || text_[at_] == 'E')) {
            std::size_t e = at_ + 1;
            if (e < text_.size() && (text_[e] == '-' || text_[e] == '+')) ++e;
            if (e < text_.size() && std::isdigit(static_cast<unsigned char>(text_[e]))) {
                at_ = e;
                while (at_ < text_.size() && std::isdigit(static_cast<unsigned char>(text_[at_]))) ++at_;
            }
        }
        std::string digits(text_.substr(start, at_ - start));
        const double v = vl_.str2real(digits.data());
        if (v == VL_MISSING_VALUE) fail("bad number '" + digits + "'");
        return v;
    }

    double date_literal() {
        const std::size_t close = text_.find('"', at_ + 1);
        if (close == std::string_view::npos) {
            fail("missing '\"'");
            return 0.0;
        }
        std::string date(text_.substr(at_ + 1, close - at_ - 1));
        at_ = close + 1;
        const double v = vl_.str2date(date.data(), 0, 0);
        if (v == VL_MISSING_VALUE) fail("no date in \"" + date + "\"");
        return v;
    }

    double name() {
        const std::size_t start = at_;
        while (at_ < text_.size() && (std::isalnum(static_cast<unsigned char>(text_[at_])) || text_[at_] == '_')) ++at_;
        const std::string word(text_.substr(start, at_ - start));
        if (!take('(')) {
            const auto found = variables_.find(upper(word));
            if (found == variables_.end()) fail("no variable " + word);
            return found == variables_.end() ? 0.0 : found->second;
        }
        Arguments args = {};
        int count = 0;
        if (!take(')')) {
            do {
                const double v = sum();
                if (count < static_cast<int>(args.size())) args[count] = v;
                ++count;
            } while (ok() && take(','));
            if (!take(')')) fail("missing ')'");
        }
        return ok() ? call(upper(word), args, count) : 0.0;
    }

    double call(const std::string& name, Arguments& args, int count) {
        std::string key = name;
        uint16_t row = 0;
        const int32_t wanted = vl_.math(0, VL_MATH_FIND, key.data(), &row, 0);
        if (wanted == 0) {
            fail("no function " + name);
            return 0.0;
        }
        // The entry reads as many doubles as the row wants: never more
        // than there is room for.
        if (wanted > static_cast<int32_t>(args.size())) {
            fail(name + " takes more arguments than this host passes");
            return 0.0;
        }
        if (wanted != count) {
            fail(name + " takes " + std::to_string(wanted) + (wanted == 1 ? " argument" : " arguments"));
            return 0.0;
        }
        double value = 0.0;
        if (vl_.math(0, (static_cast<uint32_t>(row) << 16) | VL_MATH_EVAL, args.data(), &value, 0) != 0)
            fail(name + " failed");
        return value;
    }

    const Library& vl_;
    const std::map<std::string, double>& variables_;
    std::string_view text_;
    std::size_t at_ = 0;
    int depth_ = 0;
    Failure failure_;
};

// The next token of `text` by the library's rules, and the rest.
std::string_view token(const Library& vl, std::string_view text, std::string& word) {
    std::string copy(text);
    std::vector<char> buffer(copy.size() + 1);
    const char* rest = vl.next_token(buffer.data(), copy.c_str());
    word = buffer.data();
    return text.substr(static_cast<std::size_t>(rest - copy.c_str()));
}

// Splits at `separator` where it stands outside quotes and brackets.
std::vector<std::string_view> split(std::string_view line, char separator) {
    std::vector<std::string_view> out;
    char quote = 0;
    int depth = 0;
    std::size_t start = 0;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (quote) {
            if (c == quote) quote = 0;
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '(') {
            ++depth;
        } else if (c == ')') {
            --depth;
        } else if (c == separator && depth == 0) {
            out.push_back(line.substr(start, i - start));
            start = i + 1;
        }
    }
    out.push_back(line.substr(start));
    return out;
}

std::string_view trim(std::string_view s) {
    while (!s.empty() && std::isspace(static_cast<unsigned char>(s.front()))) s.remove_prefix(1);
    while (!s.empty() && std::isspace(static_cast<unsigned char>(s.back()))) s.remove_suffix(1);
    return s;
}

}  // namespace

Interpreter::Interpreter(const Library& vl, Progress progress) : vl_(vl), progress_(std::move(progress)) {
    variables_["PI"] = 3.14159265358979323846;
}

std::string Interpreter::number_text(double value, const char* format) const {
    char text[VL_FORMAT_ROOM];
    vl_.real2str(value, text, format);
    return text;
}

int Interpreter::run(std::string_view line, std::vector<std::string>& out) {
    for (const std::string_view s : split(line, ';')) {
        const std::string_view text = trim(s);
        if (text.empty() || text.front() == '#') continue;
        if (statement(text, out) != 0) return 1;
    }
    return 0;
}

int Interpreter::statement(std::string_view text, std::vector<std::string>& out) {
    std::string word;
    std::string_view rest = token(vl_, text, word);
    const std::string command = upper(word);
    Failure failure;
    const auto value_of = [&](std::string_view expression) {
        return Expression(vl_, variables_, expression).evaluate(failure);
    };
    const auto failed = [&] {
        if (failure.message.empty()) return false;
        out.push_back("error: " + failure.message);
        return true;
    };

    if (command == "TYPE") {
        std::string line;
        for (std::string_view item : split(rest, ',')) {
            item = trim(item);
            if (!line.empty()) line += "  ";
            if (item.size() >= 2 && item.front() == '\'' && item.back() == '\'') {
                line += item.substr(1, item.size() - 2);
                continue;
            }
            const double v = value_of(item);
            if (failed()) return 1;
            line += number_text(v);
        }
        out.push_back(line);
        return 0;
    }
    if (command == "FORMAT") {
        std::string format;
        rest = token(vl_, rest, format);
        const double v = value_of(rest);
        if (failed()) return 1;
        out.push_back(number_text(v, format.c_str()));
        return 0;
    }
    if (command == "DATE") {
        uint32_t format = 1;
        std::string first;
        const std::string_view after = token(vl_, rest, first);
        if (!first.empty() && first.find_first_not_of("0123456789") == std::string::npos && !trim(after).empty()) {
            if (!read_unsigned(first, format)) {
                out.push_back("error: no date format " + first);
                return 1;
            }
            rest = after;
        }
        const double v = value_of(rest);
        if (failed()) return 1;
        // A format that only asks (a style word for a step) prints nothing.
        char printed[64] = "";
        vl_.date2str(v, format, printed);
        out.push_back(printed);
        return 0;
    }
    if (command == "NAMES") {
        std::string cls, name;
        rest = token(vl_, rest, cls);
        token(vl_, rest, name);
        uint32_t index = 0;
        if (!read_unsigned(cls, index) || name.empty()) {
            out.push_back("error: names CLASS NAME");
            return 1;
        }
        const int32_t id = vl_.names(index, reinterpret_cast<intptr_t>(name.c_str()), 0);
        out.push_back(name + (id == 32764 ? " is no name of class " + cls : " = " + std::to_string(id)));
        return id == 32764 ? 1 : 0;
    }
    if (command == "PROGRESS") {
        const double v = value_of(rest);
        if (failed()) return 1;
        if (!(v >= 0 && v <= kMaxProgressSteps)) {
            out.push_back("error: progress takes 0 to " + std::to_string(kMaxProgressSteps) + " steps");
            return 1;
        }
        const int total = static_cast<int>(v);
        for (int step = 1; step <= total; ++step)
            if (progress_ && !progress_(step, total)) {
                out.push_back("stopped at step " + std::to_string(step) + " of " + std::to_string(total));
                return 1;
            }
        out.push_back(std::to_string(total) + " steps done");
        return 0;
    }
    // NAME = EXPR
    std::string equals;
    const std::string_view expression = token(vl_, rest, equals);
    if (equals == "=" && !command.empty() && std::isalpha(static_cast<unsigned char>(command[0]))) {
        const double v = value_of(expression);
        if (failed()) return 1;
        variables_[command] = v;
        return 0;
    }
    out.push_back("error: unknown command '" + word + "'");
    return 1;
}

void transcript(Interpreter& interpreter, std::istream& in, std::ostream& out) {
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        // The line stands in the transcript before it runs: should the
        // host die on it, the transcript still names the line.
        out << "> " << line << '\n' << std::flush;
        std::vector<std::string> lines;
        const int result = interpreter.run(line, lines);
        for (const auto& text : lines) out << text << '\n';
        if (result != 0) out << "#Command Error!\n";
    }
    out << std::flush;
}

}  // namespace host
