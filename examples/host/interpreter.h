// A very small script language run on the library, the way a host runs the
// lines its users type: statements cut with KELUTIL_next_token, numbers read
// with KELUTIL_str2real, functions evaluated through KelMath_function, names
// resolved through KELUTIL_Names, numbers and dates printed with
// KELUTIL_real2str and KELUTIL_date2str.
//
//   NAME = EXPR            assign a variable
//   type EXPR [, EXPR]...  print values ("*" format); a quoted text prints as it stands
//   format FORMAT EXPR     print a value by a format text (*3, .2, E*3, %8.3f ...)
//   date [FORMAT] EXPR     print a date value, by a date format (default 1)
//   names CLASS NAME       the host's number of a script name
//   progress N             N steps of a progress loop, shown by the front end
//
// Expressions: numbers, variables, + - * / ^, brackets, function calls of
// the library's table (SIN(x), TTABLE(p, n) ...), and "text" read as a date.
// Statements are separated by ';'.  A statement that cannot run fails with
// a message ("too deeply nested" past 256 levels of brackets, arguments,
// signs and powers); no line makes the interpreter throw or crash.
#pragma once

#include <functional>
#include <iosfwd>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "library.h"

namespace host {

class Interpreter {
  public:
    // Shows progress step `step` of `total` (1-based); answers false when
    // the user asked to stop.
    using Progress = std::function<bool(int step, int total)>;

    Interpreter(const Library& vl, Progress progress);

    // Runs one line; each line of output goes to `out`.  Answers 0, or 1
    // when a statement failed (its message is in `out`; the statements
    // behind it are not run).
    int run(std::string_view line, std::vector<std::string>& out);

  private:
    int statement(std::string_view text, std::vector<std::string>& out);
    std::string number_text(double value, const char* format = "*") const;

    const Library& vl_;
    Progress progress_;
    std::map<std::string, double> variables_;
};

// Runs each line of `in` and writes the transcript to `out` as the script
// window shows it: the line behind "> ", its output, then "#Command Error!"
// when it failed.  Lines may be of any length.
void transcript(Interpreter& interpreter, std::istream& in, std::ostream& out);

}  // namespace host
