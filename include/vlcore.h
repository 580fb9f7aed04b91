/*
 * vlcore.h - the public interface of VLCORE, Vorlan's shared utility library.
 *
 * One header for C and C++, for the Windows DLL (VLCORE.dll) and the native
 * shared library (libvlcore.so).  Every entry is exported by its exact name;
 * on Windows each also has a fixed ordinal.
 *
 * Conventions
 *  - Texts are zero-terminated single-byte strings.  Output buffers belong
 *    to the caller, who gives room for the longest result; most entries
 *    take no size.  Entries that change a text in place take `char *`.
 *  - Arguments documented as N bits wide are passed as 32-bit integers; the
 *    entry uses the low N bits only.
 *  - Failures are reported by the result alone, as each entry documents.
 *    No entry throws: a lack of memory on the way gives the entry's failure
 *    result, and a settings file that can't be read for want of memory reads
 *    as a missing one (defaults answer).
 *  - All calls come from one thread: results kept in static storage and the
 *    shared scanner state are not re-entrant.
 */
#ifndef VLCORE_H
#define VLCORE_H

#include <stddef.h>
#include <stdint.h>

#ifdef _WIN32
#include <windows.h>
#define VLAPI WINAPI
typedef HWND VL_HWND;
typedef HGLOBAL VL_HGLOBAL;
typedef WPARAM VL_WPARAM;
typedef LPARAM VL_LPARAM;
typedef LRESULT VL_LRESULT;
typedef UINT VL_UINT;
#else
#define VLAPI
typedef struct VL_HWND__ *VL_HWND;
typedef struct VL_HGLOBAL__ *VL_HGLOBAL;
typedef uintptr_t VL_WPARAM;
typedef intptr_t VL_LPARAM;
typedef intptr_t VL_LRESULT;
typedef unsigned int VL_UINT;
#endif

/* No exception ever leaves an entry: in C++ every entry is declared
 * noexcept, so a host may call it from code that must not throw. */
#ifdef __cplusplus
#define VL_NOEXCEPT noexcept
#else
#define VL_NOEXCEPT
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ------------------------------------------------------------------------
 * Reserved values
 * --------------------------------------------------------------------- */

/* The missing value: "no value at all".  Parsers answer it on failure and
 * printers show it as "--".  Compare with ==. */
#define VL_MISSING_VALUE (-1.23456789e-300)
/* Printed as "/0"; the library never produces it itself. */
#define VL_DIV_ZERO_VALUE (1.23456789e290)

/* A host function shaped like a window procedure: window, message, first
 * and second value.  The library calls the host through it. */
typedef VL_LRESULT(VLAPI *VL_HOSTPROC)(VL_HWND window, VL_UINT message, VL_WPARAM first, VL_LPARAM second);

/* One row of a name table: the host's number for a name (low 16 bits) and
 * the name.  A table ends with a row whose name is null. */
typedef struct VL_NAME_ROW {
    uint32_t id;
    const char *name;
} VL_NAME_ROW;

/* ------------------------------------------------------------------------
 * Library entry
 * --------------------------------------------------------------------- */

/* KELUTIL_Main's operations and answers. */
#define VL_MAIN_START 0
#define VL_MAIN_END 1
#define VL_MAIN_SETTINGS_CHANGED 2
#define VL_MAIN_QUERY 3
#define VL_MAIN_LANGUAGE 4
#define VL_MAIN_MODULE 5
#define VL_MAIN_SET_FILE_CALLBACK 6
#define VL_MAIN_VERSION 3783       /* the answer of a start and of a query */
#define VL_MAIN_NEWEST_HOST 6100   /* a host version above it starts nothing */

/* Start-up and control.  `version` and `operation` use their low 16 bits.
 *   0 start:  `value` is the path of the host's settings file (const char *);
 *             takes the default printer (KELUTIL_PrinterDC 11);
 *             answers 3783, or 0 when version > 6100 (nothing is started).
 *   1 end:    deletes the library's palette; answers 0.
 *   2 settings changed: reloads the regional settings and follows a
 *             changed default printer (KELUTIL_PrinterDC 7); answers 0.
 *   3 query:  answers 3783.
 *   4 language flag: 1 when the regional language name begins with "H".
 *   5 module handle: the handle the library was loaded under (on 64-bit
 *             targets the whole handle, hence the pointer-sized result).
 *   6 set file callback: `value` is a VL_HOSTPROC or 0; answers 0.
 * Any other operation does nothing and answers 0. */
uintptr_t VLAPI KELUTIL_Main(VL_HWND window, uint32_t version, intptr_t value, uint32_t operation) VL_NOEXCEPT;

/* ------------------------------------------------------------------------
 * Tokens and string search
 * --------------------------------------------------------------------- */

/* Copies the next script token of `text` into `token` (room: strlen(text)+1)
 * and answers the position behind it and the white space after it.  A token
 * is a word, a number with its exponent, one operator character (+ - / = ^)
 * or a bracketed or quoted stretch, whose outer brackets are dropped.  A
 * semicolon is never consumed: at ';' the token is empty and the position
 * unchanged. */
char *VLAPI KELUTIL_next_token(char *token, const char *text) VL_NOEXCEPT;
/* Like KELUTIL_next_token but words end only at white space. */
char *VLAPI KELUTIL_next_word(char *word, const char *text) VL_NOEXCEPT;
/* Finds the first of `separators` (in their own order) that occurs in
 * `text`, copies the text in front of it to `token` and answers the position
 * behind it; null when none occurs (`token` untouched). */
char *VLAPI get_next_token_sep(char *token, const char *text, const char *separators) VL_NOEXCEPT;
/* As get_next_token_sep, but when no separator occurs `token` receives the
 * whole text and the answer is the text's terminator; never null. */
char *VLAPI KELUTIL_next_token_sep(char *token, const char *text, const char *separators) VL_NOEXCEPT;

/* Flags of KELUTIL_strchr (low 8 bits used). */
#define VL_STRCHR_PLAIN 1      /* plain search; without it brackets and quotes hide their contents */
#define VL_STRCHR_LAST 2       /* plain: last occurrence */
#define VL_STRCHR_INSIDE 4     /* plain: ignore runs of `ch` at both ends */
#define VL_STRCHR_TRIM 16      /* plain: ignore white space at both ends */
#define VL_STRCHR_UPPER 32     /* also accept the upper-case form of `ch` */
/* Searches `text` for `ch` (16-bit signed; characters compare sign-extended,
 * so a `ch` of 0x80 to 0xFF never matches).  A null text answers null; a
 * `ch` of 0 finds the terminator in the forward searches. */
char *VLAPI KELUTIL_strchr(const char *text, int32_t ch, uint32_t flags) VL_NOEXCEPT;
#define VL_INSIDE_TRIM_LEADING 0  /* mode: leading white space goes too; any other mode keeps it */

/* Unwraps one enclosing bracket pair or pair of quotes, in place, after
 * trimming trailing white space (and leading white space when `mode` is 0).
 * Answers the inner text, inside the same buffer. */
char *VLAPI KELUTIL_str_inside(char *text, uint32_t mode) VL_NOEXCEPT;
/* Removes every white space character, in place. */
void VLAPI KELUTIL_strip(char *text) VL_NOEXCEPT;
/* The id of a name that a table does not hold (KELUTIL_FindString,
 * KELUTIL_Names). */
#define VL_NO_NAME 32764

/* Answers the id (16 bits) of the row whose name equals `name` exactly, or
 * 32764 when there is none. */
uint16_t VLAPI KELUTIL_FindString(const VL_NAME_ROW *table, const char *name) VL_NOEXCEPT;

#define VL_SIS_EXACT 32768     /* compare bytes exactly instead of case-blind */
#define VL_SIS_PREFIX 16384    /* test only at the start of `text` */
/* Finds `needle` in `text`; null when absent or `text` is empty. */
char *VLAPI KELUTIL_string_in_string(const char *needle, const char *text, uint32_t flags) VL_NOEXCEPT;
/* Puts `count` copies of `ch` (8 bits) in front of `text`, which is first
 * cut to 119 characters; the buffer must hold `count` more.  Answers 1 for
 * a null text, else 0. */
int32_t VLAPI KELUTIL_prepend_string(char *text, uint32_t ch, int32_t count) VL_NOEXCEPT;
/* Turns the escapes \0 \xHH \d(8) \n \r \t into bytes, in place.  Answers
 * the length of the result, which may hold zero bytes. */
int32_t VLAPI KELUTIL_str2ascii(char *text) VL_NOEXCEPT;
/* Splits a trailing number of up to three digits from a name: `stem`
 * receives the name without it ("Data12" -> "Data", 12).  Answers 0 when the
 * text ends in no digit. */
int32_t VLAPI KELUTIL_End_Number(char *stem, const char *text) VL_NOEXCEPT;
#define VL_ARGS_STRIP_SPACE 1  /* flags: remove all white space first */

/* Splits a comma list in place: turns up to `max` commas into terminators
 * and points `slots` (room for max+1) at the pieces.  Flag bit 0 strips all
 * white space first.  Answers the number of pieces, 0 for a null or empty
 * text. */
int32_t VLAPI KELUTIL_GetParsedArguments(char *text, char **slots, int32_t max, uint32_t flags) VL_NOEXCEPT;

/* ------------------------------------------------------------------------
 * Number parsing
 * --------------------------------------------------------------------- */

/* Decimal integer with optional sign; stops at white space.  Wraps in 32
 * bits.  Answers 0 for a bad number (then KELUTIL_cvtstr2int answers 0). */
int32_t VLAPI KELUTIL_str2int(const char *text) VL_NOEXCEPT;
/* 1 with *out set for a good integer, 0 with *out untouched. */
int32_t VLAPI KELUTIL_cvtstr2int(const char *text, int32_t *out) VL_NOEXCEPT;
/* Reads a real number ("-1.5e3", ".5", "2E", "").  The text is cut in place
 * while it is read and restored on success.  Answers VL_MISSING_VALUE on a
 * bad number.  The double is formed as numbers have always been read, not
 * correctly rounded: integer part and fraction apart, added, then one
 * multiplication by the runtime's pow(10.0, exponent) ("8e23" gives
 * 8.000000000000001e+23). */
double VLAPI KELUTIL_str2real(char *text) VL_NOEXCEPT;
/* 1 with *out set, or 0 with *out untouched (the text may then stay cut at
 * its 'e' or '.'). */
int32_t VLAPI KELUTIL_cvtstr2real(char *text, double *out) VL_NOEXCEPT;
/* Hexadecimal digits with optional '-', no "0x" prefix; stops at the first
 * other character.  Upper-cases the text in place.  Never fails. */
int32_t VLAPI KELUTIL_hexstr2int(char *text) VL_NOEXCEPT;

/* ------------------------------------------------------------------------
 * Mathematics
 *
 * Failure of the mathematical routines is a process-wide flag that only
 * KelMath_function clears (on entry) and returns; the other entries show a
 * failure by their documented failure value.  Results of the special
 * functions are good to about seven significant figures.
 * --------------------------------------------------------------------- */

/* Operations of KelMath_function (low 16 bits of `code`). */
#define VL_MATH_FIND 0         /* input: name (upper case); output: uint16_t row; answers the argument count or 0 */
#define VL_MATH_EVAL 1         /* code = row << 16 | 1; input: double or doubles; output: double; answers the flag */
#define VL_MATH_SEED 10        /* input: double seed; answers 1 when it truncates to 0 or below */
#define VL_MATH_UNIFORM 11     /* output: double in [0, 1) */
#define VL_MATH_NORMAL 12      /* output: double, standard normal */
#define VL_MATH_POISSON 15     /* input: double mean; output: double, a whole number */
#define VL_MATH_CUM_GAUSS 20   /* input/output: double */
#define VL_MATH_GAUSS_INV 21   /* input/output: double */
#define VL_MATH_TABLE_SIZE 25  /* output: double, 44.0 (the end row included) */
#define VL_MATH_SHOW_NAME 26   /* input: double row, replaced by its argument count; output: text */
#define VL_MATH_NAME 27        /* as 26 */
#define VL_MATH_HELP 28        /* input: double row; output: text of at least 266 bytes */
#define VL_MATH_PREC 100       /* input: two doubles x, p; output: double */
/* Angle units (low 16 bits of `unit`, read by VL_MATH_EVAL only); any other
 * value means radians. */
#define VL_MATH_DEGREES 1
#define VL_MATH_GRADS 2

/* The named function table: find, evaluate, list and describe its rows, and
 * reach the generators.  `reserved` is ignored.  Any other operation
 * answers the low 16 bits of `code`.
 * Beyond the table's own rules: a row number outside the table fails
 * (VL_MATH_EVAL: 0.0 and 1; 26 to 28: empty text, argument count 0);
 * ROUND whose scaled value leaves the 32-bit range gives 0.0 and MOD with
 * an argument outside that range gives 1.0, both with the flag set; a
 * double that is NaN or outside the 32-bit range truncates to -2147483648
 * wherever an integer is taken from it. */
int32_t VLAPI KelMath_function(int32_t reserved, uint32_t code, void *input, void *output, uint32_t unit) VL_NOEXCEPT;

/* Gamma, beta and error functions. */
double VLAPI gammln_export(double x) VL_NOEXCEPT;                                    /* ln gamma(x); 0.0 for x <= 0 */
int32_t VLAPI ln_gamma_export_ptr(double x, double *out) VL_NOEXCEPT;                /* always 0 */
double VLAPI error_func_export(double x) VL_NOEXCEPT;                                /* erf(x) */
int32_t VLAPI error_func_export_ptr(double *value) VL_NOEXCEPT;                      /* *value = erf(*value); 0 */
double VLAPI incomp_beta_export(const double *x_a_b) VL_NOEXCEPT;                    /* I_x(a, b); 0.0 on failure */
int32_t VLAPI incomp_beta_export_ptr(const double *x_a_b, double *out) VL_NOEXCEPT;  /* always 0 */
/* Upper tail of chi-square with df degrees of freedom at x; 1.0 for x < 0 or
 * df <= 0.  Always 0. */
int32_t VLAPI chisquare_prob_Q_export_ptr(double *out, double x, double df) VL_NOEXCEPT;
/* Binomial coefficient n over k, rounded; arguments are not checked. */
int32_t VLAPI bico_export_ptr(int32_t n, int32_t k, double *out) VL_NOEXCEPT;

/* Distributions and their inverses.  The `_ptr` forms answer 0 and hand the
 * value over through `out`, unless noted. */
double VLAPI t_dist_export(const double *p_n) VL_NOEXCEPT;           /* t with P(T <= t) = p, |t| <= 636 */
int32_t VLAPI t_dist_export_ptr(const double *p_n, double *out) VL_NOEXCEPT;
/* f with P(F <= f) = p for m and n degrees of freedom.  0.0 on failure: n or
 * m not above 0, p outside 0 to 1, or no convergence within 1000 Newton
 * rounds. */
double VLAPI F_dist_export(const double *p_m_n) VL_NOEXCEPT;
int32_t VLAPI F_dist_export_ptr(const double *p_m_n, double *out) VL_NOEXCEPT;
/* x with P(chi-square <= x) = p for df degrees of freedom, found by Newton's
 * method from 2.0.  When that search strays into a tail (always so with
 * many degrees of freedom) it is run again from the Wilson-Hilferty
 * approximation; -1.0 when neither settles within 80 rounds, so a result
 * other than -1.0 always meets the tolerance. */
double VLAPI Chisqr_dist_export(const double *p_df) VL_NOEXCEPT;
int32_t VLAPI Chisqr_dist_export_ptr(const double *p_df, double *out) VL_NOEXCEPT;
double VLAPI cum_gauss_export(double x) VL_NOEXCEPT;                 /* erf(x / sqrt 2), -1 to 1 */
int32_t VLAPI norm_prob_export_ptr(double x, double *out) VL_NOEXCEPT;
double VLAPI gauss_inv_export(double p) VL_NOEXCEPT;                 /* normal quantile; 0.0 on failure */
double VLAPI inv_prob_export(double y) VL_NOEXCEPT;                  /* inverse of cum_gauss; 0.0 on failure */
int32_t VLAPI inv_prob_export_ptr(double y, double *out) VL_NOEXCEPT;
double VLAPI inv_erf_export(double y) VL_NOEXCEPT;                   /* inverse of erf; 0.0 on failure */
/* height * exp(-t^2), t = ln(x / center) / (width * sqrt 2).  Answers 1 with
 * VL_MISSING_VALUE in *out when x, center or width is not above 0. */
int32_t VLAPI lognorm_prob_export_ptr(double x, double center, double width, double height, double *out) VL_NOEXCEPT;
/* height * P(K = trunc k) for a Poisson mean.  Answers 1 (out untouched)
 * when mean is not above 0; 0.0 for k < 0. */
int32_t VLAPI poisson_prob_ptr(double k, double mean, double height, double *out) VL_NOEXCEPT;
/* x_y_out[2] = direction of (x_y_out[0], x_y_out[1]) in radians, 0 to 2 pi
 * (straight down is -pi/2).  Answers 1 good, 0 for (0, 0) with -1.0. */
int32_t VLAPI angle_export_ptr(double *x_y_out) VL_NOEXCEPT;

/* Random deviates from the one process-wide generator.  A negative *idum
 * restarts it from that seed and is set to 1.  A restart from a value
 * above 54773 (or a seed above 2147428874) leaves the generator in a state
 * that draws values below 0: a failed draw gives -1.0, the normal deviate
 * gives 0.0 and the Poisson deviate -1.0, until the next good restart. */
double VLAPI ran1_export(int32_t *idum) VL_NOEXCEPT;                       /* uniform in [0, 1) */
double VLAPI gasdevex_export(int32_t *idum, uint32_t reset) VL_NOEXCEPT;   /* bit 0 of reset drops the spare deviate, gives 0.0 */
int32_t VLAPI ran1_dev_export_ptr(int32_t seed, double *out) VL_NOEXCEPT;  /* the seed is copied, never changed; 0 */
int32_t VLAPI norm_dev_export_ptr(int32_t seed, double *out) VL_NOEXCEPT;  /* as above, normal deviate; 0 */

/* Matrix inverse and sorting. */
#define VL_INVERSE_MAX 128
#define VL_INVERSE_ON_COPY 1   /* mode: leave the matrix untouched unless it succeeds */
/* Inverts the n x n row-major matrix in place (n: low 16 bits).  Answers 0,
 * 1 for n above 128 or no memory for the copy, 3 when singular (a pivot
 * below 1e-18 in magnitude). */
int32_t VLAPI KelMath_Inverse(uint32_t n, double *matrix, uint32_t mode) VL_NOEXCEPT;
#define VL_SORT_ASCENDING 0x20 /* flags: ascending; without it descending */
/* Sorts n keys and moves each tag with its key; not stable but
 * deterministic.  Answers 0, or 1 when its stack of ranges overflowed (the
 * arrays then hold a permutation, not fully sorted). */
int32_t VLAPI KelMath_Sort(uint32_t n, int32_t *tags, double *keys, uint32_t flags) VL_NOEXCEPT;

/* ------------------------------------------------------------------------
 * Text data and memory
 *
 * Blocks that these entries hand out are movable, zero-filled memory
 * blocks, unlocked; the caller frees them (GlobalFree, natively
 * vl_global_free).  File handles travel in a 32-bit slot: Windows handles
 * under Windows, POSIX descriptors natively, -1 for failure.
 * --------------------------------------------------------------------- */

/* KELUTIL_Names' operations, and the message it sends a window. */
#define VL_NAMES_LOOKUP 0
#define VL_NAMES_FILL_CLASSES 1
#define VL_NAMES_SEND_TO_WINDOW 2
#define VL_NAMES_TO_HOST 6
#define VL_NAMES_IDLE_BIT 2       /* other operations with this bit do nothing */
#define VL_NAMES_CLASSES 103      /* classes 0 to 102 */
#define VL_SWM_EXECUTE 1024       /* a script line for the host (also the script window's) */

/* The host's name tables.  `argument` by operation:
 *   1        fills the table of name classes (class and argument ignored);
 *            KELUTIL_Main's start does it.  Answers 0.
 *   2        `argument` is a VL_HWND *: sends "type NAME" (SWM_EXECUTE) for
 *            each name of the class, in table order, to that window.
 *            Answers 1 and sends nothing when the window is null or dead;
 *            natively there are no windows, so it always answers 1.
 *   6        `argument` is a VL_HOSTPROC (or 0): calls it with
 *            (0, 1024, 0, "type NAME") for each name.  Answers 0.
 *   other operations with bit 1 (value 2) set do nothing and answer 0;
 *   all others (0 is the plain lookup) look up the name text `argument`
 *   exactly, case counting, and answer its id or 32764.
 * Classes run from 0 to 102; a class without table, or above 102, finds
 * and lists nothing. */
int32_t VLAPI KELUTIL_Names(uint32_t class_index, intptr_t argument, uint32_t operation) VL_NOEXCEPT;

/* KELUTIL_MemObject's commands. */
#define VL_MEMOBJ_CREATE 0
#define VL_MEMOBJ_ADD 4096
#define VL_MEMOBJ_READ 4097
#define VL_MEMOBJ_FIND 4098
#define VL_MEMOBJ_FREE 4100
#define VL_MEMOBJ_NUMBERING 4101
#define VL_MEMOBJ_HANDLE_BIT 4096  /* commands with it answer 0 for a null handle */
#define VL_MEMOBJ_ITEMS 500

/* Memory objects: up to 500 byte strings in one movable block, known by
 * the handle in `*slot`, which an add may replace.  `command` uses its low
 * 16 bits, `index` its low 16 bits.
 *   0     create; `index` is the first base, `size` (low 16 bits) the
 *         second base.  Answers 1, or 0 without memory.
 *   4096  add `size` bytes of `data`; answers the item's number (old count
 *         plus the second base when numbering 2 is on, else the first
 *         base), 0 on failure.  When the block can't grow, *slot becomes
 *         null.  The block never passes 65535 bytes: an add that would
 *         carry it there is refused with 0 and changes nothing.
 *   4097  read item `index` as text into `data` of `size` bytes: copies
 *         its length plus one bytes, at most `size` (then unterminated).
 *         An `index` that names no item copies nothing and answers 0.
 *   4098  find the text `data` among the items, case ignored; answers its
 *         number in the first numbering, or 0.
 *   4100  free the object, *slot becomes null; answers 1.
 *   4101  numbering: `index` non-zero with a second base chooses the
 *         second numbering for adds; answers 0.
 * Commands with bit 4096 answer 0 at once for a null handle. */
uint16_t VLAPI KELUTIL_MemObject(VL_HGLOBAL *slot, uint32_t command, uint32_t index, void *data, uint32_t size) VL_NOEXCEPT;

/* KELUTIL_MultiLineControl's operations. */
#define VL_LINES_COUNT 0
#define VL_LINES_REVERSE 1
#define VL_LINES_NEXT 2

/* Lines of a text, ended by line feeds.  `operation` in 16 bits:
 *   0  `second` is a uint16_t * receiving the number of lines (a last line
 *      without line feed counts, so "" has 1).  Answers null.
 *   1  reverses the order of the lines of `first` in place, joining them
 *      with CR LF and no line end at the close; the buffer needs one more
 *      byte per line that ended in a bare line feed.  At most 500 lines of
 *      239 characters: a longer text is left as it is.  Answers null.
 *   2  copies the next line of the text `second` (char *) into `first`,
 *      without its line end, and answers the text behind it (its
 *      terminator when it was the last line); null for a null text.
 *   other operations answer null. */
char *VLAPI KELUTIL_MultiLineControl(char *first, void *second, uint32_t operation) VL_NOEXCEPT;

/* Copies `count` bytes upward, one at a time: note the order, source
 * first.  Overlapping ranges repeat the source as a forward copy does.
 * Answers 0. */
int32_t VLAPI KELUTIL_MemCopy(const void *source, void *target, int32_t count) VL_NOEXCEPT;
/* 0 when the `count` bytes are equal or `count` is 0, else 1. */
int32_t VLAPI KELUTIL_StructCompare(const void *first, const void *second, uint32_t count) VL_NOEXCEPT;
/* Transposes `rows` x `columns` items of `item_size` bytes in place (rows
 * and columns in 16 bits).  Answers 0; 1 when no work memory is to be had,
 * also when the array's size overflows. */
int32_t VLAPI KELUTIL_RowColChange(void *data, uint32_t rows, uint32_t columns, uint32_t item_size) VL_NOEXCEPT;

/* Section files: "[name]" header lines divide a text.  Names compare with
 * case ignored.
 *
 * KELUTIL_GetFileSection: the body of section `name` of file `path` (the
 * whole file for a null `name`, the text in front of the first header for
 * ""), as a block of body length plus one bytes holding the zero-ended
 * text.  A byte 255 reads as the end of the file.  Null when anything
 * fails, when the body is empty, and for a `name` longer than 119 bytes;
 * headers whose names pass 119 bytes match nothing. */
VL_HGLOBAL VLAPI KELUTIL_GetFileSection(const char *path, const char *name) VL_NOEXCEPT;
/* KELUTIL_GetFileSection_Filename's operations. */
#define VL_SECTION_NAME_SET_BASE 0
#define VL_SECTION_NAME_COMPOSE 1
#define VL_SECTION_NAME_BASE 2
#define VL_SECTION_NAME_LAST 3

/* A base path and a name composed behind it, each kept up to 259
 * characters.  `operation` in 16 bits: 0 stores `text` as the base, 1
 * composes the base and `text`, 2 answers the base, 3 the last composed
 * text; others answer null.  A null `text`, or one that would pass 259
 * characters, answers null and keeps what was stored. */
const char *VLAPI KELUTIL_GetFileSection_Filename(const char *text, uint32_t operation) VL_NOEXCEPT;
/* The body of section `name` inside `text`, and its length in `*length`;
 * the last line of the text counts only with its line feed.  Null when
 * there is no such section (`*length` untouched), also for a body longer
 * than 65535 bytes. */
char *VLAPI KELUTIL_GetMemSectionPtr(const char *text, const char *name, uint16_t *length) VL_NOEXCEPT;
/* Body length plus one (0 when the section is absent or its body longer
 * than 65534 bytes); with a `dst`, copies the body there, zero-ended. */
uint16_t VLAPI KELUTIL_GetMemSection(const char *text, const char *name, char *dst) VL_NOEXCEPT;
/* The value of `key = value` in section `section` of `text`, into `out` of
 * `size` bytes (low 16 bits); `default_value` when the key is absent.  A
 * null `key` lists the keys instead, each zero-ended and a further zero
 * behind the last; a key that would not leave room for that zero is cut.
 * Answers 0; 1 when the section is missing, when no work memory is to be
 * had, and when the value or default does not fit in `size` bytes with its
 * terminator (`out` untouched in all three).  A key of the text that does
 * not fit in `size` bytes never matches. */
int32_t VLAPI KELUTIL_GetMemSectionEntry(const char *section, const char *key, const char *default_value, char *out,
                                         uint32_t size, const char *text) VL_NOEXCEPT;

/* A member of a package file: a block holding its data, not terminated,
 * and its size in `*size`.  0 on every failure, `*size` untouched: no
 * member of that name (case ignored, names at most 16 bytes), a size of 0,
 * data lying outside the package. */
VL_HGLOBAL VLAPI KELUTIL_GetFileFromPackage(const char *package, const char *name, uint32_t *size) VL_NOEXCEPT;
/* Copies a file over an existing target.  With `keep_attributes` 0 the
 * copy loses a read-only mark.  Answers 0 or the system error code. */
uint32_t VLAPI KELUTIL_CopyFile(const char *source, const char *target, uint32_t keep_attributes) VL_NOEXCEPT;
/* Access, share and disposition of KELUTIL_32FileOpen and _32FileCreate,
 * with the values of CreateFileA on every target. */
#define VL_FILE_READ 0x80000000u
#define VL_FILE_WRITE 0x40000000u
#define VL_FILE_SHARE_READ_WRITE 3
#define VL_FILE_CREATE_NEW 1
#define VL_FILE_CREATE_ALWAYS 2
#define VL_FILE_OPEN_EXISTING 3
#define VL_FILE_OPEN_ALWAYS 4
#define VL_FILE_TRUNCATE_EXISTING 5

/* CreateFileA with the given access, share and disposition; -1 on failure. */
int32_t VLAPI KELUTIL_32FileOpen(const char *name, uint32_t access, uint32_t share, uint32_t disposition) VL_NOEXCEPT;
/* Opens a file emptied, creating it when missing; -1 on failure. */
int32_t VLAPI KELUTIL_32FileCreate(const char *name, uint32_t access, uint32_t share) VL_NOEXCEPT;
/* -1 when the file can't be opened for reading; otherwise another value,
 * which is no open handle. */
int32_t VLAPI KELUTIL_32FileTest(const char *name) VL_NOEXCEPT;
/* One write; answers the bytes written. */
uint32_t VLAPI KELUTIL_32WriteFile(int32_t file, const void *data, uint32_t count) VL_NOEXCEPT;
/* Writes `count` bytes; answers the bytes written (-1 on failure). */
int32_t VLAPI KELUTIL_HugeWrite(int32_t file, const void *data, int32_t count) VL_NOEXCEPT;
/* Write in pieces of 32767 bytes, read in pieces of 65535; 0, or 1 on the
 * first short piece.  A count of 0 transfers nothing and answers 0; a
 * negative count answers 1. */
int32_t VLAPI Write64K(int32_t file, const void *data, int32_t count) VL_NOEXCEPT;
int32_t VLAPI Read64K(int32_t file, void *data, int32_t count) VL_NOEXCEPT;
/* Reads one line, line end included, into `buffer` of `size` bytes (low 16
 * bits), zero-ended.  Answers `buffer`, or null when the file ended before
 * any byte (`buffer` then holds "") and for a `size` of 0 (nothing
 * written). */
char *VLAPI KELUTIL_fgets(char *buffer, uint32_t size, int32_t file) VL_NOEXCEPT;
/* The size of an open file (low 32 bits); 0 on failure. */
uint32_t VLAPI KELUTIL_JustFileSize(int32_t file) VL_NOEXCEPT;
/* The size of a named file; 0 when it can't be opened. */
uint32_t VLAPI KELUTIL_FileSizeFromName(const char *name) VL_NOEXCEPT;

/* ------------------------------------------------------------------------
 * Number formatting
 *
 * All digits are made by the library itself, never by the C runtime's
 * printf, so every target prints the same text: correctly rounded digits
 * (ties to even, as a standard printf rounds) and exponents without a plus
 * sign or leading zeros.
 * --------------------------------------------------------------------- */

/* Room for any result of a "*" or "." format (prefix included). */
#define VL_REAL2STR_SHORT_ROOM 40
/* Room for any result of KELUTIL_real2str and KELUTIL_sprintf. */
#define VL_FORMAT_ROOM 120

/* Prints `value` into `dst` under a format text: an optional prefix
 *   E  SI letters (k M G T P E, m, micro 0xB5, n p f a; "e21" beyond),
 *   P  power of ten ("1.5x10\+(3)", "10\+(3)" for an exact power),
 *   S  always exponent form,   ,  no effect,   D  date (see below),
 * then a body:
 *   *      automatic digits          *N   N significant digits (1..19)
 *   *N*    N (one digit) significant digits, trailing zeros removed
 *   .N     N decimals (".": none)
 *   other  a printf format for the double, white space removed first.
 * Fixed form lies strictly between two single-precision bounds, 1e-5 and
 * 1e12 for "*" and the "." forms, 0.001 and 10^N for "*N".  Exponents read
 * "E12", "E-6".  VL_DIV_ZERO_VALUE and NaN print "/0"; VL_MISSING_VALUE,
 * infinities and magnitudes above 1e290 print "--"; magnitudes below
 * 1e-290 count as zero, and zero prints "0" under "*" and "." bodies.
 * Answers `dst`.
 *
 * Room: a "*" or "." body writes fewer than VL_REAL2STR_SHORT_ROOM bytes;
 * a digit count written far beyond 19 (say "*40") that would make a longer
 * text prints "--" instead.  Any other body writes at most VL_FORMAT_ROOM
 * bytes: it is read by the library, not by the runtime, and may hold literal
 * text, "%%" and exactly one conversion f F e E g G with flags - + space # 0,
 * a width, a precision and an optional 'l'.  A body longer than 119
 * characters, with any other conversion, with a second one, or whose text
 * would pass 119 characters prints "--"; a body with no conversion is copied
 * as it stands.  A "D" format prints the value as a date by
 * KELUTIL_date2str, with the number behind the "D" as its format (0 when
 * none); it needs that entry's room, and the answer is still `dst`. */
char *VLAPI KELUTIL_real2str(double value, char *dst, const char *format) VL_NOEXCEPT;
/* `value` rounded to `places` decimals (16-bit signed; negative places round
 * to tens, hundreds...), halves away from zero.  The scaled value passes
 * through a 32-bit integer and loses its high bits beyond that range. */
double VLAPI KELUTIL_real2real(double value, int32_t places) VL_NOEXCEPT;
/* The decimal text of `value` in a static buffer of 30 bytes that the next
 * call overwrites. */
char *VLAPI KELUTIL_int2str(int32_t value) VL_NOEXCEPT;
/* The decimal text of `value` with '0' characters in front (in front of a
 * minus sign too) up to `width`; `dst` needs max(width, 11) + 1 bytes. */
void VLAPI KELUTIL_int2fixstr(int32_t value, int32_t width, char *dst) VL_NOEXCEPT;
/* Reads a real from `key` of `section` in the settings file `file`.  The
 * default travels as the text KELUTIL_real2str makes with "*", so it comes
 * back at that precision (VL_MISSING_VALUE comes back as 0).  A stored text
 * that is a bad number answers VL_MISSING_VALUE. */
double VLAPI KELUTIL_GetPrivateProfileReal(const char *section, const char *key, double def, const char *file) VL_NOEXCEPT;

/* ------------------------------------------------------------------------
 * Format-directed output
 * --------------------------------------------------------------------- */

/* Modes of KELUTIL_real_str (low 8 bits used): one form in bits 0-3 ... */
#define VL_REAL_FIXED 1      /* W is unused, P decimals */
#define VL_REAL_GENERAL 2    /* fixed while -4 < exponent <= P, else exponent form; any other form value acts so */
#define VL_REAL_EXPONENT 4   /* P decimals and "e<exponent>" */
#define VL_REAL_WIDTH 8      /* general with exponents -3..6, decimals worked out from W */
/* ... and flags. */
#define VL_REAL_TRIM 16      /* remove trailing zeros (and then a bare point) in front of the exponent */
#define VL_REAL_UPPER 128    /* "E" instead of "e" */
/* The longest text of KELUTIL_real_str, terminator included. */
#define VL_REAL_STR_ROOM 320

/* The library's own digit-row converter: `mode`, `width` W and `precision`
 * P use their low 8 bits.  The digits are the ones saved files have always
 * held, not correctly rounded ones: the mantissa is 10 to the fraction of
 * the runtime's log10 of the magnitude, rounded once by adding half a unit
 * of the last place (the runtime's pow), and at most 119 digits follow from
 * it by repeated multiplication by ten (9.5 with no decimals gives "9").
 * VL_REAL_TRIM trims whatever the digits are, so without a point it eats the
 * integer's zeros ("100" with P 0 gives "1", and "0" gives "").  With W
 * below 6 in the width form a negative count of decimals cuts the text in
 * front of its point, down to nothing; it never writes in front of `dst`.
 * Answers 0; answers 1 when no digit reaches the places asked for in fixed
 * form: `dst` then holds a zero text such as "0.00" without a sign.  Exponent
 * texts are "e5", "E-4".  Infinities and NaNs (outside the converter's
 * domain) print "--" and answer 0.  `dst` needs VL_REAL_STR_ROOM bytes for
 * arbitrary W and P; with P up to 100 and exponent or general forms the text
 * stays below VL_FORMAT_ROOM. */
int32_t VLAPI KELUTIL_real_str(double value, uint32_t mode, uint32_t width, uint32_t precision, char *dst) VL_NOEXCEPT;
/* Prints `value` by a format of the kind "%W.PC".  The first character is
 * skipped; W is read up to the first '.', P up to the first of G g F f E e
 * that occurs behind it (in that order of search), and that letter is the
 * conversion.  With nothing in front of the point the character right
 * behind it is the conversion ("%.2f" is general form, W 7, P 3).  f and F
 * print the whole format as KELUTIL_real2str prints an "other" body (without
 * removing white space) and answer the length; e and E use
 * KELUTIL_real_str's exponent form, anything else its general form, upper
 * case adds VL_REAL_UPPER, and the converter's answer is returned.
 * `dst` needs VL_FORMAT_ROOM bytes.  Outside these limits - a format empty,
 * longer than 119 characters, without a '.', without one of the six letters
 * behind it, refused by the format rules of KELUTIL_real2str, or a text
 * longer than 119 characters - `dst` receives "--" and the answer is -1. */
int32_t VLAPI KELUTIL_sprintf(char *dst, const char *format, double value) VL_NOEXCEPT;

/* ------------------------------------------------------------------------
 * Dates and times
 *
 * A date value is a double: one unit is one day, whole numbers fall on
 * midnight of local wall-clock time, 2415018.0 is 30 December 1899 in the
 * proleptic Gregorian calendar.  Records convert from 1757583.0 (31
 * December of year 99) to 5373483.0 (31 December 9999, 00:00:00).
 * --------------------------------------------------------------------- */

/* The fields of the C runtime's time record, in its order, except that
 * tm_year holds the full year (2024, not 124). */
typedef struct VL_DATE_RECORD {
    int32_t tm_sec;
    int32_t tm_min;
    int32_t tm_hour;
    int32_t tm_mday;   /* 1 to 31 */
    int32_t tm_mon;    /* 0 to 11 */
    int32_t tm_year;   /* full year; below 100 widened on the way to a value */
    int32_t tm_wday;   /* 0 Sunday */
    int32_t tm_yday;   /* 1-based from a value, 0-based from "now" */
    int32_t tm_isdst;
} VL_DATE_RECORD;

/* Flags of DateTime_CheckDate. */
#define VL_CHECK_FILL 1           /* the record becomes now; answers 1 */
#define VL_CHECK_REPAIR 2         /* bad month, day or year are taken from now */
#define VL_CHECK_CLEAR_TIME 16    /* time of day and tm_isdst become 0 */
#define VL_CHECK_MONTH_START 4096 /* day 16 or later moves to the 1st of the next month */
/* Tests month (0-11), day (1-31) and year (0-9999): 1 when all pass, 0
 * otherwise (also after repair).  VL_CHECK_FILL and VL_CHECK_MONTH_START
 * always answer 1. */
int32_t VLAPI DateTime_CheckDate(VL_DATE_RECORD *record, int32_t flags) VL_NOEXCEPT;

/* Modes of DateTime_CvtDouble (low 16 bits of `mode`). */
#define VL_CVT_TO_RECORD 0        /* value -> record; 1 when refused */
#define VL_CVT_SECONDS 1          /* answers value * 86400 clamped to 0..4294967295 */
#define VL_CVT_DAYS_TO_SECONDS 2  /* in place */
#define VL_CVT_SECONDS_TO_DAYS 3  /* in place */
#define VL_CVT_MARKER 4           /* value becomes the marker 0.666666 */
#define VL_CVT_TIME_ZONE 5        /* refresh the time zone */
#define VL_CVT_TO_VALUE 6         /* record -> value; 1 when refused */
#define VL_CVT_SET_SECONDS 7      /* value's seconds are kept, then as any other mode: */
                                  /* the seconds kept last, in days, into value */
#define VL_CVT_TO_VALUE_TOO 8     /* the same as VL_CVT_TO_VALUE */
/* Converts between date values, records and seconds; pointers a mode does
 * not use may be null.  Answers 0 for good, as each mode documents. */
int32_t VLAPI DateTime_CvtDouble(double *value, VL_DATE_RECORD *record, uint32_t mode) VL_NOEXCEPT;
/* Sets tm_sec, tm_min, tm_hour and tm_isdst to 0. */
void VLAPI DateTime_ResetTimeOfDay(VL_DATE_RECORD *record) VL_NOEXCEPT;

/* KELUTIL_date2str's formats and flags, and its questions (`out` null). */
#define VL_DATE_CUSTOM_FIRST 19    /* custom slot 0 */
#define VL_DATE_CUSTOM_SECOND 20   /* custom slot 1 */
#define VL_DATE_WEEKDAY_NUMBER 1024
#define VL_DATE_MONTH_NUMBER 2048
#define VL_DATE_LENGTH 4096
#define VL_DATE_STEP_STYLE 8192
#define VL_DATE_ASK_FULLEST 4096   /* answers VL_DATE_FULLEST */
#define VL_DATE_FULLEST 33292
#define VL_DATE_ASK_LANGUAGE 24576
#define VL_DATE_ASK_PART 28672     /* + n: 1 when format n prints a part of a date */
#define VL_DATE_RELOAD 32768       /* reloads the regional settings */
#define VL_DATE_ROOM 61

/* Prints a date value by a format (low 16 bits): 0 to 18 rows of the date
 * format table, 19 and 20 the custom slots, or a style word (high byte not
 * 0).  Flags 2048 (value is a month number), 1024 (a weekday number), 4096
 * (a length in days printed with its unit), 8192 (answer a style word for
 * a step of that length, print nothing).  Answers 0 when printing.  Room:
 * 61 bytes.  A date that cannot be printed shows as "--".
 * With `out` null the format asks: 4096 -> 33292, the fullest format word;
 * 24576 -> the language flag; 28672 + n -> 1 when format n prints a part of
 * a date, 0 for the whole-date rows; 32768 reloads the regional settings. */
uint16_t VLAPI KELUTIL_date2str(double value, uint32_t format, char *out) VL_NOEXCEPT;

/* KELUTIL_time2str's questions (`out` null). */
#define VL_TIME_SET_WRAP 0      /* `value` hours wrap the time of day; 0 switches it off */
#define VL_TIME_ASK_ROWS 4096   /* answers 10 */

/* Prints the time of day of a value, or a length of time in days, by a
 * time format (low 16 bits): rows 0 to 12, or a style word (high byte not
 * 0, low 8 bits used).  Answers 0.  With `out` null: format 0 sets the
 * wrapping period to `value` hours (0 switches it off), 4096 answers 10. */
int32_t VLAPI KELUTIL_time2str(double value, uint32_t format, char *out) VL_NOEXCEPT;
/* Reads a time text by a time format row (0 to 12) into days; the text is
 * cut in place.  An empty text answers VL_MISSING_VALUE. */
double VLAPI KELUTIL_str2time(char *text, uint32_t format) VL_NOEXCEPT;

/* KELUTIL_str2date's flags. */
#define VL_READ_NOW 3
#define VL_READ_MARKER 4
#define VL_READ_COMPACT 128
#define VL_READ_WEEKDAY 1024
#define VL_READ_MONTH 2048
#define VL_READ_LENGTH 4096

/* Reads a date from text.  `flags` (low 16 bits, bit 128 aside): 3 answers
 * now with its time of day, 4 the marker 0.666666, 1024 a weekday (0-6, or
 * the start of its name), 2048 a month (1-12, or the start of its name),
 * 4096 a length such as "3 weeks" in days; anything else reads a date by
 * `format` (0-18 the printing formats, 19 and 20 the custom slots, above
 * 20 format 0).  Day, month and year come in the order of the regional
 * picture, not guessed from their size; a missing year or day is today's,
 * a month may be named, a time may follow after a blank.  A text that
 * doesn't fit its format is read once more as a short date.  Bit 128 reads
 * the whole date compact (YYMMDD) or by the short picture.
 * Choices of this library: the caller's text is only read, never written;
 * a custom picture that names no day, month, year or time takes them from
 * today at midnight; a weekday or year format given a text with
 * delimiters (3/5/99) reads it as a short date.  Answers VL_MISSING_VALUE
 * for a text that gives no date. */
double VLAPI KELUTIL_str2date(char *text, uint32_t flags, uint32_t format) VL_NOEXCEPT;
/* The same as KELUTIL_str2date. */
double VLAPI KELUTIL_str2date_ex(char *text, uint32_t flags, uint32_t format) VL_NOEXCEPT;

/* KELUTIL_custom_date_format's operations. */
#define VL_CUSTOM_SET 0
#define VL_CUSTOM_GET 1
#define VL_CUSTOM_DEFAULTS 2
#define VL_CUSTOM_ASK_FIRST 256  /* answers VL_DATE_CUSTOM_FIRST */

/* The custom date formats 19 (slot 0) and 20 (slot 1).  A picture uses d
 * dd ddd dddd, M MM MMM MMMM, y yy yyyy, h hh H HH, m mm, s ss, t tt, text
 * in apostrophes, and "'.'#" to "'.'####" for decimals of the second.
 * Operations (low 16 bits): 0 sets the slot's picture from `text` (an
 * empty text sets the default, "M'-'d'-'yyyy" or "hh':'mm':'ss'.'####");
 * 1 copies the picture to `text` (61 bytes); 2 sets both defaults; 256
 * answers 19.  A picture with no date or time letter, longer than 60
 * characters or with more than four "#" leaves the slot as it was.
 * Answers 0 but for 256. */
uint16_t VLAPI KELUTIL_custom_date_format(int32_t slot, uint32_t operation, char *text) VL_NOEXCEPT;
/* Prints a date value by custom slot 0 or 1 into `out` (61 bytes).
 * Answers 0, or 1 when it can't (a date before 1601, a picture whose
 * fraction has no seconds to follow). */
int32_t VLAPI KELUTIL_date2str_custom(double value, int32_t slot, char *out) VL_NOEXCEPT;

/* KELUTIL_dateinc's operations, and the answers of VL_STEP_KIND. */
#define VL_STEP_DAYS 0
#define VL_STEP_CALENDAR 1
#define VL_STEP_SNAP 2
#define VL_STEP_KIND 3
#define VL_STEP_WEEKDAY 4
#define VL_STEP_READ_DAY 5
#define VL_STEP_MONTH_START 7
#define VL_STEP_MONTH_START_15 8
#define VL_STEP_IS_WEEK 16
#define VL_STEP_IS_MONTH 32
#define VL_STEP_IS_QUARTER 64

/* Moves dates.  Operations (low 16 bits):
 *  0 adds the step *(double *)argument, in days;
 *  1 steps in calendar units: a step of whole months (31 days each),
 *    quarters (91) or years (365) moves the month or year and keeps the day
 *    and time; other steps are added as days;
 *  2 snaps the step in *date to a whole count of a unit, and to exactly a
 *    week, month or quarter near one; 3 then answers 16, 32 or 64 for
 *    these (0 otherwise);
 *  4 moves to weekday `argument` (low byte, 0 Sunday) of the date's week;
 *  5 reads the text `argument`: a day of the month (1-31) or a weekday
 *    name sets it at midnight, anything else is read as a date;
 *  7 and 8 move to the 1st of the month, or of the next month when the day
 *    lies more than 17 (15) days past day `argument` or before it.
 * Choices of this library: a month, quarter or year step or a day that
 * lands on a day its month lacks stops at the month's last day (31 January
 * plus one month is the last day of February); a weekday move crossing a
 * month boundary lands in the neighbouring month; a record that gives no
 * date leaves *date as it was.  Answers 0, except for operation 3. */
int32_t VLAPI KELUTIL_dateinc(double *date, intptr_t argument, uint32_t operation) VL_NOEXCEPT;

/* ------------------------------------------------------------------------
 * Colour table, palette and bevelled squares
 *
 * A colour number is a row of the colour table, 0 to count - 1, passed in
 * the low 16 bits; the number `count` itself stands for "Transparent".  An
 * RGB value is 0x00BBGGRR.  The table has room for 40 rows.
 *
 * Natively there is no window system: no pen, brush or palette is made and
 * no device context or combo box is touched.  The operations that would
 * use one answer as on Windows when the system cannot make the object (0,
 * nothing held or selected); KELUTIL_Palette operation 12 answers 0.
 * --------------------------------------------------------------------- */
#ifndef VL_HDC_DEFINED
#define VL_HDC_DEFINED
#ifdef _WIN32
typedef HDC VL_HDC;
#else
typedef struct VL_HDC__ *VL_HDC;
#endif
#endif

/* KELUTIL_Color's operations. */
#define VL_COLOR_LOAD 0
#define VL_COLOR_DELETE_PALETTE 1
#define VL_COLOR_DIALOG 2
#define VL_COLOR_COUNT 3
#define VL_COLOR_MAKE_PEN 4
#define VL_COLOR_DROP_PEN 5
#define VL_COLOR_RGB 6
#define VL_COLOR_FILL_COMBO 7
#define VL_COLOR_STOCK_PEN 8
#define VL_COLOR_MAKE_BRUSH 9
#define VL_COLOR_LIGHTER_BRUSH 10
#define VL_COLOR_DROP_BRUSH 11
#define VL_COLOR_DARKER_BRUSH 12
#define VL_COLOR_DARKER_PEN 13
#define VL_COLOR_FIND_NAME 14
#define VL_COLOR_NAME 15
#define VL_COLOR_FIND_RGB 16
#define VL_COLOR_NEAREST 17
#define VL_COLOR_RGB_WRAPPED 18
#define VL_COLOR_SET_COUNT 19
#define VL_COLOR_SET_RGB 20
#define VL_COLOR_SET_NAME 21
#define VL_COLOR_SAVE 22
#define VL_COLOR_ROOM 23
#define VL_COLOR_RESTORE 24
#define VL_COLOR_ROWS 40
#define VL_COLOR_NAME_ROOM 28

/* The colour table.  `handle` is a device context (an HDC), or a window
 * for operations 2 and 7; `number` and `operation` use their low 16 bits;
 * `value` is a pointer or a number as the operation says.
 *   0  load: built-in names from the string table, then the section
 *      "Color List" of the settings file `value` (a key a row, "R G B" its
 *      value).  Answers the byte count of the key list when it is below 3
 *      (table unchanged), else 0 (the palette is built).  Keys past 40 are
 *      left out; names are cut to 27 characters, values read by the whole
 *      key.  A null path reads nothing.  The table as it stood before is
 *      the snapshot that operation 24 returns to (before the first load:
 *      the built-in table).
 *   1  deletes the palette.              3  the count.
 *   2  edits the table in the Colour dialog over the window `handle`; after
 *      OK with an edit (Update, Add or Delete) the table takes the edits
 *      and the question "Do you want to save ...?" follows; Yes saves into
 *      the settings file `value` as operation 22 does and refreshes the
 *      palette, No keeps the edits unsaved.  Answers 0.  In the dialog,
 *      Delete of the only row left and the 41st Add are refused with a
 *      beep, and a name is cut to 24 characters.  Natively there is no
 *      dialog: 0, nothing changed or saved.
 *   4  makes a pen (`value`: width in 1/500 point, 0 the thinnest; turned
 *      into device units by KELUTIL_3Dsquare command 4100) and selects it.
 *   5  selects the black pen, deletes the pen made.
 *   6  *(uint32_t *)value = RGB of `number`: 0; 1 for a null `value` or a
 *      number not below the count (0 is stored).
 *   7  adds the names and "Transparent" to the combo box `handle`.
 *   8  `number` 0 the null pen, else the black pen; 1 for a null `handle`.
 *   9  makes and selects a brush; for the number `count` and beyond the
 *      hollow brush.  10 and 12 brushes lighter / darker by `value`
 *      percent, 13 a darker pen (`value` 0: operation 4 with width 0).
 *   11 selects the black brush, deletes the brush made.
 *   14 number + 1 of the name `value` (any case); 0 when none (or null).
 *   15 copies the name of `number` modulo count into `value` (28 bytes);
 *      1 for a null `value`, and for an empty table (`value` gets "").
 *   16 number + 1 of the exact RGB `value`; 0 when none.
 *   17 number of the nearest RGB (first row on a tie; 0 for an empty table).
 *   18 as 6 with `number` modulo count; an empty table stores 0, answers 1.
 *   19 sets the count (held to 0..40).  20 sets the RGB and 21 the name
 *      (null: unchanged) of row `number`; rows above 39 are ignored.
 *   22 saves the table into the settings file `value` (the section is
 *      rewritten); answers the count, 0 for a null path (nothing written).
 *   23 answers 40.                       24 back to the snapshot.
 * Any other operation answers the operation itself. */
int32_t VLAPI KELUTIL_Color(void *handle, uint32_t number, intptr_t value, uint32_t operation) VL_NOEXCEPT;

/* KELUTIL_Palette's operations. */
#define VL_PALETTE_BUILD 0
#define VL_PALETTE_DELETE 1
#define VL_PALETTE_SELECT 2
#define VL_PALETTE_SELECT_DEFAULT 3
#define VL_PALETTE_TYPE 5
#define VL_PALETTE_REFRESH 6
#define VL_PALETTE_HOST_COLOURS 7
#define VL_PALETTE_DRAWING_COLOUR 10
#define VL_PALETTE_SAVE_TYPE 11
#define VL_PALETTE_HANDLE 12

/* The library's palette of 64 entries: the 40 table rows, then room for
 * the host's colours.  `operation` and `count` use their low 16 bits.
 *   0  builds the palette if there is none.   1  deletes it.
 *   2  builds it if needed; selects into `dc` (may be null) the default
 *      palette for colour type 0, the library's for type 1, and realises.
 *   3  selects the default palette into `dc` and realises it.
 *   5  the colour type: always 0, since no operation sets it.
 *   6  refreshes entries 0 to count - 1 from the table.
 *   7  `value` is a const uint32_t * of `count` RGB values: entries from 39
 *      on (at most 25 are taken); first selects the default palette into a
 *      non-null `dc`.
 *   10 the drawing colour of the RGB `value`: unchanged for type 0,
 *      0x02BBGGRR for type 1.
 *   11 writes the type as "Color Type" in "Color List2" of the settings
 *      file `value` (nothing for a null path).
 *   12 the palette handle (an HPALETTE), or 0.
 * Answers 0 apart from 5, 10 and 12; other operations do nothing. */
intptr_t VLAPI KELUTIL_Palette(VL_HDC dc, uint32_t operation, uint32_t count, intptr_t value) VL_NOEXCEPT;

#ifdef _WIN32
/* The dialog procedure of the Colour dialog (dialog 32002 of the library's
 * resources), which KELUTIL_Color operation 2 runs.  It answers
 * WM_INITDIALOG (1), WM_COMMAND (1) and WM_PAINT (0, after painting the
 * sample); any other message answers 0.  `second` is not used. */
INT_PTR VLAPI myColorDlg(HWND dialog, UINT message, WPARAM first, LPARAM second) VL_NOEXCEPT;
#endif

/* KELUTIL_3Dsquare's drawing modes, flags and commands. */
#define VL_SQUARE_FLAT 1
#define VL_SQUARE_OUTLINED 2
#define VL_SQUARE_PANEL 3
#define VL_SQUARE_BEVELLED 4
#define VL_SQUARE_DIAMOND 8
#define VL_SQUARE_MODE_BITS 0x000F
#define VL_SQUARE_SWAP_EDGES 0x0100
#define VL_SQUARE_FRAMED 0x0400
#define VL_SQUARE_OUTLINE_COLOUR 0x0800
#define VL_SQUARE_COMMAND 0x1000
#define VL_SQUARE_OUTWARD 0x2000
#define VL_SQUARE_STOCK_FILL 0x4000
#define VL_SQUARE_COLOUR_FILL 0x8000
#define VL_SQUARE_SET_SCALE 4096
#define VL_SQUARE_SIZE 4097
#define VL_SQUARE_RESOLUTION 4098
#define VL_SQUARE_ZOOM 4099
#define VL_SQUARE_TO_DEVICE 4100

/* Bevelled squares, and the scaling behind them and behind pen widths.
 * `rect` and `out_rect` point to rectangles of four int32_t, left, top,
 * right, bottom (a RECT); `out_rect` receives the usable inner rectangle,
 * or is null.  `flags`: drawing mode in the low 4 bits (1 flat box, 2
 * outlined box, 3 raised panel, 4 bevelled box, 8 diamond; others draw
 * nothing), 0x0100 swaps light and dark edges (4, 8), 0x0400 framed form
 * (4), 0x0800 outline in the colour `value` (2), 0x2000 the panel grows
 * outward from `rect` (3), 0x4000 fill with stock brush `value` (0: light
 * gray), 0x8000 fill with the colour `value`.  A drawing answers 0; a null
 * `rect` draws nothing and leaves `out_rect` alone.  Natively nothing is
 * drawn, but the inner rectangle is worked out all the same.
 * With 0x1000 in `flags` its low 16 bits are a command instead:
 *   4096  sets the bevel size from `value` (unless 0), the resolution from
 *         *(const uint16_t *)rect and the zoom from *(uint16_t *)out_rect
 *         (each unless null); answers 0.  Defaults: 600, 300, 100.
 *   4097, 4098, 4099  the size, the resolution, the zoom.
 *   4100  `value` (16 bits signed) in 1/500 point, in device units.
 *   any other: 0. */
int32_t VLAPI KELUTIL_3Dsquare(VL_HDC dc, int32_t value, void *rect, void *out_rect, uint32_t flags) VL_NOEXCEPT;

/* ------------------------------------------------------------------------
 * Printer device and status window
 * --------------------------------------------------------------------- */

/* The printer device block, shared with the host: the sizes of what it
 * holds (0 for none), a DEVNAMES record (four 16-bit offsets and flags, then
 * device, driver and port texts, offsets counted from the record's start)
 * and a DEVMODE record.  884 bytes; a host block passed to
 * KELUTIL_PrinterDC must have this size. */
#define VL_PRINTER_NAMES_ROOM 368
#define VL_PRINTER_MODE_ROOM 512
typedef struct VL_PRINTER_BLOCK {
    uint16_t wDevModeSize;
    uint16_t wDevNamesSize;
    unsigned char names[VL_PRINTER_NAMES_ROOM];
    unsigned char mode[VL_PRINTER_MODE_ROOM];
} VL_PRINTER_BLOCK;

/* KELUTIL_PrinterDC's operations. */
#define VL_PRINTER_DISPLAY_DC 0
#define VL_PRINTER_DISPLAY_IC 1
#define VL_PRINTER_PROFILE_DC 2
#define VL_PRINTER_BLOCK_DC 3
#define VL_PRINTER_BLOCK_IC 4
#define VL_PRINTER_SETUP 5
#define VL_PRINTER_OLD_DRIVER 6
#define VL_PRINTER_FOLLOW_DEFAULT 7
#define VL_PRINTER_PROFILE_IC 10
#define VL_PRINTER_TAKE_DEFAULT 11
#define VL_PRINTER_GET_ORIENTATION 12
#define VL_PRINTER_SET_ORIENTATION 13
#define VL_PRINTER_DEVICE_NAME 14
#define VL_PRINTER_PORT 15
#define VL_PRINTER_SET_COPIES 16
#define VL_PRINTER_TEXT_ROOM 240

/* Device and information contexts of the screen and the printer.  The low
 * 16 bits of `op` count; `block` depends on `op`:
 *   0, 1   a device / information context of the display;
 *   2, 10  the profile's printer ([windows] device=) into the library's
 *          block, and a device / information context for it, no device mode;
 *   3, 4   the same for `block` (a VL_PRINTER_BLOCK, null: the library's),
 *          with its device mode when it holds one; a block without names
 *          first drops its device mode and takes the profile's printer;
 *   5      the print setup dialog on `block` (null: the library's); null
 *          when cancelled, the block then unchanged; a changed printer
 *          sends WM_FONTCHANGE to `owner`;
 *   6      the old driver route: the driver's own setup, then a context;
 *   7      follows a changed default printer; answers null;
 *   11     takes the system's default printer, landscape; answers null;
 *   12     writes the orientation (sign-extended) to *(int32_t *)block;
 *   13     sets the orientation from *(int16_t *)block;
 *   14, 15 copies the device name / the port to `block` (room: 240 bytes);
 *   16     sets the copies from *(uint16_t *)block.
 * 8, 9 and codes above 16 answer null and do nothing; so do 12 to 16 with
 * a null `block`.  A device mode larger than the block's room is refused
 * with the old-driver warning and never copied in part.  A profile line
 * with fewer than two commas names no printer.
 * Natively there is no printer or display: every operation does its work
 * on the blocks and the profile (VLCORE_PROFILE), and those that give a
 * context answer null, as on a machine without the device; 5 and 11 find
 * no default printer. */
VL_HDC VLAPI KELUTIL_PrinterDC(VL_HWND owner, uint32_t op, void *block) VL_NOEXCEPT;

/* KELUTIL_Status's commands, flags, stop requests and the line message. */
#define VL_STATUS_OPEN 0
#define VL_STATUS_PROGRESS 1
#define VL_STATUS_POLL 2
#define VL_STATUS_CLOSE 3
#define VL_STATUS_BUTTON 4
#define VL_STATUS_RESET 5
#define VL_STATUS_SHOW 6
#define VL_STATUS_COMMAND_BITS 0xF
#define VL_STATUS_NO_DIALOG 4096
#define VL_STATUS_TITLE_ONLY 8192
#define VL_STATUS_END_BUTTON 16384
#define VL_STATUS_GO_ON 0
#define VL_STATUS_CANCEL 1
#define VL_STATUS_END 2
#define VL_STATUS_LINE_MESSAGE 1024

#ifdef _WIN32

/* Progress of a long operation of the host (low 4 bits of `command`):
 *   0 open dialog 200 owned by `window` with title `text` (or none); flags
 *     4096 no dialog, the line "ty -q TEXT... Hit ESC to abort!" goes to
 *     `window` as message 1024 instead; 8192 the title alone; 16384 an End
 *     button instead of Cancel.  Answers 1 when the dialog can't be made;
 *   1 progress: `value` percent (16 bits) in number and bar; 1 without a
 *     dialog;
 *   2 poll: takes one message of the dialog, ESC stops; answers the stop
 *     request (0 none, 1 Cancel or ESC, 2 End).  Without a dialog: looks
 *     for a key in the queue (removed with bit 1 of `value`; bit 0 answers
 *     0 always) and answers 1 for ESC;
 *   3 close (sends an empty line to `window`); 4 as a click of the button;
 *   5 clears the stop request; 6 ShowWindow with `text` read as the show
 *     command, e.g. (const char *)(intptr_t)SW_HIDE.
 * A status call before any dialog exists does nothing to a window and
 * answers as without a dialog.  Operations above 6 answer 0. */
int32_t VLAPI KELUTIL_Status(VL_HWND window, uint32_t command, int32_t value, const char *text) VL_NOEXCEPT;
#endif

/* ------------------------------------------------------------------------
 * Device-independent bitmaps
 *
 * A DIB is one block: a header, a colour table, the pixels.  A header whose
 * first field (its size) is 40 is a BITMAPINFOHEADER with colour entries of
 * 4 bytes (blue, green, red, reserved); any other size is read as the
 * 12-byte BITMAPCOREHEADER with entries of 3 bytes (blue, green, red).
 * Colour count: a 40-byte header's biClrUsed when not 0, else by bits per
 * pixel 1 -> 2, 4 -> 16, 8 -> 256, 16 and 32 -> 3 (the colour masks,
 * whatever the compression), all others 0.
 * What these entries create is the caller's: palettes and bitmaps go with
 * DeleteObject, DIB blocks with GlobalFree.
 * --------------------------------------------------------------------- */

/* The size of the colour table in bytes: the count times 4 with a 40-byte
 * header, times 3 otherwise.  0 for a null DIB; a count so large that the
 * size passes 32 bits answers 0xFFFFFFFF. */
uint32_t VLAPI PaletteSize(const void *dib) VL_NOEXCEPT;
/* The address of the pixels: behind the header (40 bytes, or 12 for every
 * other size field, however large it claims to be) and the colour table.
 * Null for a null DIB. */
void *VLAPI FindDIBBits(void *dib) VL_NOEXCEPT;

#ifdef _WIN32
/* A palette of the DIB's colour table (flags 0), or null: for a null
 * handle, a DIB without colour table (more than 8 bits per pixel), and a
 * block shorter than its header and colour table. */
HPALETTE VLAPI CreateDIBPalette(HGLOBAL dib) VL_NOEXCEPT;
/* A bitmap compatible with the screen holding the DIB's picture, with
 * `palette` (or none) selected on the screen's context meanwhile.  The
 * colour table of a DIB of 8 bits or fewer is read as 16-bit indices into
 * that palette, or without one into the context's realized default
 * palette, so the pixels come out in the palette's colours, not in RGB
 * values of the table (a table as KELUTIL_BitmapToDIB makes it does not
 * give its own colours back).  DIBs of more bits have no colour table and
 * keep their colours.  Null for a null handle and for a block too short
 * for the pixels its header promises. */
HBITMAP VLAPI DIBToBitmap(HGLOBAL dib, HPALETTE palette) VL_NOEXCEPT;
/* A DIB of the bitmap with a 40-byte header, by `palette` (null: the
 * default palette), at `bits` per pixel (low 16 bits; 0: the bitmap's own
 * depth).  Depths above 8 are made as 24; depths 2, 3, 5, 6 and 7 make no
 * DIB.  Null also for a null bitmap, when the window system can't give
 * the pixels, and without memory.  The bitmap must not be selected into a
 * device context. */
HGLOBAL VLAPI KELUTIL_BitmapToDIB(HBITMAP bitmap, HPALETTE palette, uint32_t bits) VL_NOEXCEPT;
/* A palette whose entry i stands for slot i of the system palette
 * (PC_EXPLICIT), sized by the device; null on a device with more colours
 * than a palette holds (no system palette), or without memory. */
HPALETTE VLAPI GetSystemPalette(void) VL_NOEXCEPT;

#define VL_BITMAPFILE_FINISH 0x2000 /* phase two */
#define VL_BITMAPFILE_AREA 0x4000   /* phase one: size from area->right, area->bottom */
#define VL_BITMAPFILE_MONO 0x100    /* phase one: a monochrome picture */
/* A picture for a bitmap file, in two calls; `flags` is 16 bits signed.
 * Phase one (no VL_BITMAPFILE_FINISH): `area` is a RECT * (may be null
 * without VL_BITMAPFILE_AREA); the picture is 200 x 200, or right x bottom
 * of `area`.  Answers a memory device context holding a white picture and
 * writes 0, 0, width, height into `area`.  Answers 0 after the message
 * "Insufficient memory!" when no bitmap can be made, and 0 with no message
 * and `area` untouched when VL_BITMAPFILE_AREA gives a null area or a width
 * or height below 1.  One picture at a time: a new phase one abandons the
 * picture under way.
 * Phase two (VL_BITMAPFILE_FINISH): deletes `dc`, makes a DIB of the
 * picture at `area` bits per pixel (as KELUTIL_BitmapToDIB) and writes it
 * as a BMP file to the open `file` (a handle as _lwrite takes it; it stays
 * open): the 14-byte file header, then header, colour table and pixels.
 * Without a picture under way (phase one failed, or phase two came
 * already) nothing is written.  Write errors are not reported.  Answers 0. */
HDC VLAPI KELUTIL_BitmapFile(int32_t file, HDC dc, intptr_t area, int32_t flags) VL_NOEXCEPT;
#endif

/* ------------------------------------------------------------------------
 * File dialogs: path registry and file types
 *
 * The library remembers, for each file extension, the directory last used
 * for files of that kind, so that its file dialogs open where the user
 * left off; the host fills the registry at start and reads it out at the
 * end.  The file type table holds what the dialogs list as file types.
 * --------------------------------------------------------------------- */

/* Splits `path` at its last backslash or colon: `dir` gets everything
 * through the separator (empty when there is none), `name` what follows,
 * and `ext` (may be null) the last extension with its dot; `ext` keeps what
 * it held when the last part has no dot.  `path` is only read; `dir` may
 * be `path` itself.  Each output needs strlen(path)+1 bytes. */
void VLAPI KELUTIL_SeparatePath(const char *path, char *dir, char *name, char *ext) VL_NOEXCEPT;

/* KELUTIL_PathControl's operations, and the message of its file callback. */
#define VL_PATH_FIND 0
#define VL_PATH_STORE 1
#define VL_PATH_START_DIRECTORY 2
#define VL_PATH_EMPTY 3
#define VL_PATH_COUNT 4
#define VL_PATH_ROW 5
#define VL_PATH_REMEMBER_TYPE 6
#define VL_PATH_ROWS 25
#define VL_PATH_ROOM 267
#define VL_PATH_ASK_HOST 4143

/* The path registry: at most 25 rows, each an extension key (the first 3
 * characters of `ext`, compared without regard to case), a directory of at
 * most 266 characters and a remembered file-type row (0-255).  A lookup
 * takes the first row whose key begins the asked key: a row D answers to
 * DAT and DOC, a row with an empty key to everything.
 * Operations (`operation`, low 16 bits):
 *   0 finds the extension `ext`; copies the row's directory to `path`
 *     (267 bytes) when not null; answers the row number, or -1.  When no
 *     row matches and `path` is not null, the file callback of
 *     KELUTIL_Main operation 6 is sent message 4143 with window 0, `path`
 *     and the library's copy of the key, and may write a directory into
 *     `path`; its answer is not read and the result stays -1.
 *   1 stores the directory `path` for `ext`: in the row whose key is the
 *     same (case aside), else in a new row remembering 0.
 *     Choices of this library: with 25 rows in use a new extension is not
 *     stored; a null `path`, or one longer than 266 characters, changes
 *     nothing (a cut directory would name another one).
 *   2 records the working directory as the start-up directory (at most 119
 *     characters; a longer one or a failure leaves the old).  KELUTIL_Main's
 *     start does this.
 *   3 empties the registry.
 *   4 answers the count of rows.
 *   5 copies row `value` (0-based) out: its directory to `path` (267
 *     bytes) and its key to `ext` (4 bytes), each when not null; answers the
 *     remembered byte, 0 to 255.  Choice of this library: a row number that
 *     is not in use answers -1 and writes nothing.
 *   6 stores the low 8 bits of `value` as the remembered row of every row
 *     whose key begins `ext`.
 * Answers -1 apart from 0, 4 and 5; other operations do nothing.
 * Natively the start-up directory is the POSIX working directory. */
int32_t VLAPI KELUTIL_PathControl(uint32_t operation, char *path, char *ext, int32_t value) VL_NOEXCEPT;

/* KELUTIL_Fdlog_Str's operations. */
#define VL_TYPE_SELECT 17
#define VL_TYPE_SELECTED 18
#define VL_TYPE_SET_DESCRIPTION 19
#define VL_TYPE_DESCRIPTION 20
#define VL_TYPE_EXTENSION 21
#define VL_TYPE_SET_EXTENSION 22
#define VL_TYPE_FIND_EXTENSION 23
#define VL_TYPE_ROWS 25

/* The file type table: rows 1 to 25, each a description of at most 119
 * characters (a label token, quoted when it holds blanks, then the pattern,
 * as "\"Data files\" *.DAT") and an extension of at most 4 characters with
 * its dot, and the selected row (1 at load).  `row` uses its low 16 bits,
 * signed; a row above 25 answers 1 and changes nothing, whatever the
 * operation.  Operations (low 16 bits):
 *   17 makes `row` the selected row;
 *   18 answers the selected row;
 *   19 sets the description of `row` from `text` (null empties it; a longer
 *      text is cut to 119 characters);
 *   20 copies the description to `text` (120 bytes);
 *   21 copies the extension to `text` (5 bytes);
 *   22 sets the extension from `text` (null empties it; only the first 4
 *      characters stay);
 *   23 answers the first of rows 1 to the selected row whose extension is
 *      `text`, case aside, else 0 (also for a null `text`).
 * Choice of this library: 17 and 19 to 22 answer 1 and change nothing for a
 * row below 1.  The others answer 0; other operations do nothing. */
int32_t VLAPI KELUTIL_Fdlog_Str(char *text, int32_t row, uint32_t operation) VL_NOEXCEPT;

/* Fits the file name `path` (changed in place) to the extension `ext`,
 * given with its dot.  The last part of the path, from its last backslash
 * on (the backslash counted), decides: without a dot it gets `ext`
 * appended; one that ends in `ext` (case aside) stays; one whose last dot
 * starts an extension of 3 characters keeps it, or has it replaced by `ext`
 * when `replace` is not 0; any other gets `ext` appended, so A.B becomes
 * A.B.DAT.  Nothing is appended to a last part of more than 262
 * characters.  Room: strlen(path) + strlen(ext) + 1. */
void VLAPI check_extension(char *path, const char *ext, int32_t replace) VL_NOEXCEPT;

/* ------------------------------------------------------------------------
 * Script window
 *
 * The console in which the user types script lines for the host: a
 * top-level window of class VORLAN_SW with one multi-line edit control
 * (child id 4), a File/Edit/Hide menu and the accelerator table
 * "EDITMENU".  Enter in the edit control sends the line up to the caret
 * (or the selected text) to the host as SWM_EXECUTE (1024, second value
 * the text, good during the call); a non-zero answer adds
 * "#Command Error!\r\n" at the end of the text.  The host is told
 * SWM_QUERYSAVE (1035, callback only; non-zero: ask the user nothing)
 * before unsaved text would be given up, and SWM_CLOSED (1039) when the
 * window is destroyed.  Windows only.
 * --------------------------------------------------------------------- */
/* KelText's codes, the script window's messages to the host and the id of
 * its edit control. */
#define VL_TEXT_LOAD_ACCELERATORS 0
#define VL_TEXT_CREATE_WINDOW 1
#define VL_TEXT_SETTING 2
#define VL_TEXT_FREE_ACCELERATORS 3
#define VL_TEXT_APPEND 14
#define VL_TEXT_SET_MODIFIED 20
#define VL_TEXT_QUERY_FONT 30
#define VL_SWM_QUERYSAVE 1035
#define VL_SWM_CLOSED 1039
#define VL_SCRIPT_EDIT_ID 4

#ifdef _WIN32

/* The command entry.  `code` (32 bits; above 30 or not listed: 0):
 *   0  loads the accelerator table "EDITMENU"; answers its handle.
 *   1  creates the script window, hidden, owned by `window`; `value`'s low
 *      byte is a stock font number (0: the system font), `text` the host
 *      callback (a VL_HOSTPROC) or 0 to send to the owner instead.
 *      Answers the window handle, 0 when it can't be made.
 *   2  `value` the script window, `text` a setting (const char *):
 *      "E 1"/"E 0" execution on/off, "M L<n>" left and "M <n>" top print
 *      margin, "N" new text, "O [name]" open, "S [name]" save, "P" print,
 *      "PD" print with the dialog, "T <n>" tab stop in dialog units, "TC
 *      <n>" in character columns, "W <caption>".  Answers 0.
 *   3  frees the accelerator table.                     Answers 0.
 *   14 `value` the script window, `text` a text appended at the end.
 *   20 `window` the script window: its modified mark becomes `value`
 *      (low 16 bits).                                   Answers 0.
 *   30 the font number given to code 1.
 * The record in the window's extra bytes, at these positions (32-bit /
 * 64-bit): file name block 0/0, edit procedure 4/8, tab columns (16 bits)
 * 8/16, left margin 10/18, top margin 12/20, modified mark 14/22,
 * execution 16/24, host callback 18/26. */
intptr_t VLAPI KelText(VL_HWND window, intptr_t value, intptr_t text, uint32_t code) VL_NOEXCEPT;
/* The window procedure of class VORLAN_SW, and that of its edit control. */
LRESULT VLAPI EditWndProc(HWND window, UINT message, WPARAM first, LPARAM second) VL_NOEXCEPT;
LRESULT VLAPI MyEditProc(HWND edit, UINT message, WPARAM first, LPARAM second) VL_NOEXCEPT;
#endif

/* ------------------------------------------------------------------------
 * File dialogs: open, save and the multiple-file list
 * --------------------------------------------------------------------- */

/* The option block that host and dialogs share, one copy in the library:
 * the host writes it whole and reads it whole.  The layout is fixed (1052
 * bytes, 32-bit fields at the offsets given), on every target. */
typedef struct VL_FILE_DIALOG_OPTIONS {
    uint8_t reserved0[548];   /*    0: the host's, carried along unread */
    uint32_t dwReadOnly;      /*  548: read-only box of the last good open */
    uint8_t reserved1[8];     /*  552 */
    uint32_t dwIncludeHeader; /*  560: box "&Include Header" of an export */
    uint32_t dwExportSection; /*  564: box "&Export Section" of an export */
    char szSeparator[120];    /*  568: tab, ",", blank, ",\t" or ", " */
    char szOptionName[120];   /*  688: "IMPASCII" or "EXPASCII" shows the
                               *       Option button; made upper case */
    char szTitle[120];        /*  808: title of the next dialog */
    char szPartialLabel[120]; /*  928: label of the partial-import box;
                               *       empty hides it */
    uint32_t dwPartialImport; /* 1048: state of that box */
} VL_FILE_DIALOG_OPTIONS;

/* Flags of KELUTIL_FileDialog and KELUTIL_FileSaveAs. */
#define VL_FD_OPEN_FILE 0x0001   /* open: open the chosen file, answer its handle */
#define VL_FD_SET_OPTIONS 0x0008 /* open: block from `name`, callback `spec` */
#define VL_FD_DIRECTORY 0x0010   /* open: the directory into `name`; save: block from `name` */
#define VL_FD_GET_OPTIONS 0x0020 /* the block into `name` (1052 bytes) */
#define VL_FD_EXPORT 0x0080      /* save: the export dialog */
#define VL_FD_PRESET 0x0200      /* open: where the next dialog opens */
#define VL_FD_COMMENT 0x0400     /* save: 1024 read, 1280 set, 1536 enable */
#define VL_FD_NO_MEMORY 0x1000   /* nothing remembered decides the first view */
#define VL_FD_EXPLORER 0x2000    /* the platform's Explorer-style dialog */
#define VL_FD_NO_TITLE 0x8000    /* as `name`: the next open dialog keeps its template's title */
/* The comment commands of VL_FD_COMMENT, the Option button's message to its
 * callback, and the dialogs' answers. */
#define VL_FD_COMMENT_READ 1024
#define VL_FD_COMMENT_SET 1280
#define VL_FD_COMMENT_ENABLE 1536
#define VL_FD_OPTION_MESSAGE 4100
#define VL_FD_CHOSEN 0
#define VL_FD_NO_DRIVE 1
#define VL_FD_CANCELLED (-1)

/* The open dialog, or a command by `flags` (the first that applies):
 * `name` 0x8000: the next open dialog uses its template's title; 0.
 * 8: copies 1052 bytes from `name` into the option block, takes `spec` as
 *    the Option button's host callback (message 4100) and `owner` as its
 *    window; 0.
 * 0x20: copies the block to `name`; 0.
 * 0x10: the directory the next dialog opens in, into `name` (267 bytes);
 *    an empty `name` has the directory of the last extension looked up
 *    first (which may ask the file callback); 0.
 * 0x200: preset: `spec` (when not empty) becomes the next extension, and
 *    `name` (when not empty) the next directory; without a directory, a
 *    preset extension is looked up (nobody asked): 1 when not known, else 0.
 * Otherwise the dialog: `spec` is null (types from the file type table) or
 * a list of patterns apart by blanks, as "*.TXT *.DAT" (writable: an
 * extension of more than 3 characters is cut in it).  Answers -1 when the
 * user cancelled or the dialog failed (also when the file failed to open),
 * 1 when the chosen drive does not exist, 0 when a name was chosen, or with
 * flag 1 the file's handle opened for reading.  On 0 or a handle `name`
 * (at least 266 bytes) holds the name without directory, and the working
 * directory is the chosen one.  Natively there is no dialog: -1. */
int32_t VLAPI KELUTIL_FileDialog(VL_HWND owner, char *name, char *spec, uint32_t flags) VL_NOEXCEPT;

/* The save dialog, or a command by `flags` (the first that applies):
 * 0x400: the comment line of the save dialogs, by the low 16 bits: 1024
 *    copies it to `name` (120 bytes), 1280 sets it from `name` (null empties
 *    it; cut to 119 characters), 1536 makes the first byte at `name` (a
 *    signed number) the switch of the comment feature; 0.
 * 0x10: copies 1052 bytes from `name` into the option block; 0.
 * 0x20: copies the block to `name`; 0.
 * Otherwise the dialog, with `name` (at least 266 bytes) as the proposed
 * name, fitted to the type; `spec` as for KELUTIL_FileDialog.  Answers 0
 * when a name was chosen (`name` then holds the whole path; the working
 * directory stays), 1 when cancelled, failed, or the drive does not
 * exist.  Natively there is no dialog: 1. */
int32_t VLAPI KELUTIL_FileSaveAs(VL_HWND owner, char *name, char *spec, uint32_t flags) VL_NOEXCEPT;

/* The list of chosen files, one full path (at most 265 characters) a row.
 *   0 frees the list; 0.
 *   1 the multiple-file dialog on the patterns `text` (writable, as `spec`
 *     above): the user gathers files from any directories with Add File;
 *     OK makes them the list.  Answers the number of rows, or -1 when
 *     cancelled or failed (the list then stays as it was).  Natively -1.
 *   2 copies row `value` (from 0) to `text` (266 bytes); a row that is not
 *     in the list gives "error".  0.
 *   3 makes the list `value` rows cut from `text` at carriage returns
 *     (rows beyond the text are empty, longer rows cut to 265
 *     characters); 0.  Choice of this library: a `value` outside 0 to
 *     VL_FILE_LIST_ROWS answers 1 and keeps the old list; without memory
 *     for the rows it answers 1 and the list is empty.
 * Other operations answer `op` and do nothing. */
#define VL_FILE_LIST_ROWS 4096
/* KELUTIL_MultiFile's operations, and the room of a row. */
#define VL_FILE_LIST_FREE 0
#define VL_FILE_LIST_DIALOG 1
#define VL_FILE_LIST_ROW 2
#define VL_FILE_LIST_FROM_TEXT 3
#define VL_FILE_ROW_ROOM 266
int32_t VLAPI KELUTIL_MultiFile(VL_HWND owner, char *text, int32_t value, uint32_t op) VL_NOEXCEPT;

#ifdef _WIN32
/* The hooks of the library's file dialogs (their templates are resources
 * 3000 to 3003); the platform's dialog calls them. */
UINT_PTR VLAPI FileOpenHookProc(HWND dialog, UINT message, WPARAM first, LPARAM second) VL_NOEXCEPT;
UINT_PTR VLAPI MultiFileHookProc(HWND dialog, UINT message, WPARAM first, LPARAM second) VL_NOEXCEPT;
#endif

/* ------------------------------------------------------------------------
 * Movable memory blocks (native builds only)
 *
 * Entries that hand out blocks give handles of movable, zero-filled memory
 * blocks; on Windows they are GlobalAlloc blocks.  Natively these helpers
 * have the meaning of their Windows namesakes, so a caller can read and
 * free such blocks.
 * --------------------------------------------------------------------- */
#ifndef _WIN32
#define VL_GMEM_MOVEABLE 0x0002
#define VL_GMEM_ZEROINIT 0x0040
VL_HGLOBAL vl_global_alloc(uint32_t flags, size_t bytes);
void *vl_global_lock(VL_HGLOBAL block);
int vl_global_unlock(VL_HGLOBAL block);
size_t vl_global_size(VL_HGLOBAL block);
VL_HGLOBAL vl_global_free(VL_HGLOBAL block);
#endif

#ifdef __cplusplus
}
#endif

#endif /* VLCORE_H */
