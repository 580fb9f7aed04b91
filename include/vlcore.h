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

/* Start-up and control.  `version` and `operation` use their low 16 bits.
 *   0 start:  `value` is the path of the host's settings file (const char *);
 *             answers 3783, or 0 when version > 6100 (nothing is started).
 *   1 end:    deletes the library's palette; answers 0.
 *   2 settings changed: reloads the regional settings; answers 0.
 *   3 query:  answers 3783.
 *   4 language flag: 1 when the regional language name begins with "H".
 *   5 module handle: the handle the library was loaded under (on 64-bit
 *             targets the whole handle, hence the pointer-sized result).
 *   6 set file callback: `value` is a VL_HOSTPROC or 0; answers 0.
 * Any other operation does nothing and answers 0. */
uintptr_t VLAPI KELUTIL_Main(VL_HWND window, uint32_t version, intptr_t value, uint32_t operation);

/* ------------------------------------------------------------------------
 * Tokens and string search
 * --------------------------------------------------------------------- */

/* Copies the next script token of `text` into `token` (room: strlen(text)+1)
 * and answers the position behind it and the white space after it.  A token
 * is a word, a number with its exponent, one operator character (+ - / = ^)
 * or a bracketed or quoted stretch, whose outer brackets are dropped.  A
 * semicolon is never consumed: at ';' the token is empty and the position
 * unchanged. */
char *VLAPI KELUTIL_next_token(char *token, const char *text);
/* Like KELUTIL_next_token but words end only at white space. */
char *VLAPI KELUTIL_next_word(char *word, const char *text);
/* Finds the first of `separators` (in their own order) that occurs in
 * `text`, copies the text in front of it to `token` and answers the position
 * behind it; null when none occurs (`token` untouched). */
char *VLAPI get_next_token_sep(char *token, const char *text, const char *separators);
/* As get_next_token_sep, but when no separator occurs `token` receives the
 * whole text and the answer is the text's terminator; never null. */
char *VLAPI KELUTIL_next_token_sep(char *token, const char *text, const char *separators);

/* Flags of KELUTIL_strchr (low 8 bits used). */
#define VL_STRCHR_PLAIN 1      /* plain search; without it brackets and quotes hide their contents */
#define VL_STRCHR_LAST 2       /* plain: last occurrence */
#define VL_STRCHR_INSIDE 4     /* plain: ignore runs of `ch` at both ends */
#define VL_STRCHR_TRIM 16      /* plain: ignore white space at both ends */
#define VL_STRCHR_UPPER 32     /* also accept the upper-case form of `ch` */
/* Searches `text` for `ch` (16-bit signed; characters compare sign-extended,
 * so a `ch` of 0x80 to 0xFF never matches).  A null text answers null; a
 * `ch` of 0 finds the terminator in the forward searches. */
char *VLAPI KELUTIL_strchr(const char *text, int32_t ch, uint32_t flags);
/* Unwraps one enclosing bracket pair or pair of quotes, in place, after
 * trimming trailing white space (and leading white space when `mode` is 0).
 * Answers the inner text, inside the same buffer. */
char *VLAPI KELUTIL_str_inside(char *text, uint32_t mode);
/* Removes every white space character, in place. */
void VLAPI KELUTIL_strip(char *text);
/* Answers the id (16 bits) of the row whose name equals `name` exactly, or
 * 32764 when there is none. */
uint16_t VLAPI KELUTIL_FindString(const VL_NAME_ROW *table, const char *name);

#define VL_SIS_EXACT 32768     /* compare bytes exactly instead of case-blind */
#define VL_SIS_PREFIX 16384    /* test only at the start of `text` */
/* Finds `needle` in `text`; null when absent or `text` is empty. */
char *VLAPI KELUTIL_string_in_string(const char *needle, const char *text, uint32_t flags);
/* Puts `count` copies of `ch` (8 bits) in front of `text`, which is first
 * cut to 119 characters; the buffer must hold `count` more.  Answers 1 for
 * a null text, else 0. */
int32_t VLAPI KELUTIL_prepend_string(char *text, uint32_t ch, int32_t count);
/* Turns the escapes \0 \xHH \d(8) \n \r \t into bytes, in place.  Answers
 * the length of the result, which may hold zero bytes. */
int32_t VLAPI KELUTIL_str2ascii(char *text);
/* Splits a trailing number of up to three digits from a name: `stem`
 * receives the name without it ("Data12" -> "Data", 12).  Answers 0 when the
 * text ends in no digit. */
int32_t VLAPI KELUTIL_End_Number(char *stem, const char *text);
/* Splits a comma list in place: turns up to `max` commas into terminators
 * and points `slots` (room for max+1) at the pieces.  Flag bit 0 strips all
 * white space first.  Answers the number of pieces, 0 for a null or empty
 * text. */
int32_t VLAPI KELUTIL_GetParsedArguments(char *text, char **slots, int32_t max, uint32_t flags);

/* ------------------------------------------------------------------------
 * Number parsing
 * --------------------------------------------------------------------- */

/* Decimal integer with optional sign; stops at white space.  Wraps in 32
 * bits.  Answers 0 for a bad number (then KELUTIL_cvtstr2int answers 0). */
int32_t VLAPI KELUTIL_str2int(const char *text);
/* 1 with *out set for a good integer, 0 with *out untouched. */
int32_t VLAPI KELUTIL_cvtstr2int(const char *text, int32_t *out);
/* Reads a real number ("-1.5e3", ".5", "2E", "")  The text is cut in place
 * while it is read and restored on success.  Answers VL_MISSING_VALUE on a
 * bad number. */
double VLAPI KELUTIL_str2real(char *text);
/* 1 with *out set, or 0 with *out untouched (the text may then stay cut at
 * its 'e' or '.'). */
int32_t VLAPI KELUTIL_cvtstr2real(char *text, double *out);
/* Hexadecimal digits with optional '-', no "0x" prefix; stops at the first
 * other character.  Upper-cases the text in place.  Never fails. */
int32_t VLAPI KELUTIL_hexstr2int(char *text);

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
