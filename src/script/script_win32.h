// The script window on the window system: its record in the window's extra
// bytes, the module state shared by all script windows, and the routines
// that the window procedure, the edit procedure and the file commands share.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

#include "script/script.h"
#include "vlcore.h"

namespace vl::script {

// The script window record.  The host may hold the window handle only and
// reads the fields at these positions.  On 32-bit targets the layout is the
// tabled one of 24 bytes; on 64-bit targets the handles and procedures take
// a whole pointer each and the words follow in the same order.
#pragma pack(push, 2)
struct ScriptRecord {
    HGLOBAL hFileName;
    WNDPROC lpfnEditProc;
    uint16_t wTabChars;
    uint16_t wLeftMargin;
    uint16_t wTopMargin;
    uint16_t wModified;
    uint16_t wExecute;
    VL_HOSTPROC lpfnHost;
    uint16_t wSpare;
};
#pragma pack(pop)

#ifdef _WIN64
static_assert(offsetof(ScriptRecord, hFileName) == 0);
static_assert(offsetof(ScriptRecord, lpfnEditProc) == 8);
static_assert(offsetof(ScriptRecord, wTabChars) == 16);
static_assert(offsetof(ScriptRecord, wLeftMargin) == 18);
static_assert(offsetof(ScriptRecord, wTopMargin) == 20);
static_assert(offsetof(ScriptRecord, wModified) == 22);
static_assert(offsetof(ScriptRecord, wExecute) == 24);
static_assert(offsetof(ScriptRecord, lpfnHost) == 26);
static_assert(sizeof(ScriptRecord) == 36);
#else
static_assert(offsetof(ScriptRecord, hFileName) == 0);
static_assert(offsetof(ScriptRecord, lpfnEditProc) == 4);
static_assert(offsetof(ScriptRecord, wTabChars) == 8);
static_assert(offsetof(ScriptRecord, wLeftMargin) == 10);
static_assert(offsetof(ScriptRecord, wTopMargin) == 12);
static_assert(offsetof(ScriptRecord, wModified) == 14);
static_assert(offsetof(ScriptRecord, wExecute) == 16);
static_assert(offsetof(ScriptRecord, lpfnHost) == 18);
static_assert(sizeof(ScriptRecord) == 24);
#endif

constexpr int kRecordBytes = sizeof(ScriptRecord);

// Positions of the fields, for GetWindowWord / GetWindowLongPtrA.
enum RecordField : int {
    kFileName = offsetof(ScriptRecord, hFileName),
    kEditProc = offsetof(ScriptRecord, lpfnEditProc),
    kTabChars = offsetof(ScriptRecord, wTabChars),
    kLeftMargin = offsetof(ScriptRecord, wLeftMargin),
    kTopMargin = offsetof(ScriptRecord, wTopMargin),
    kModified = offsetof(ScriptRecord, wModified),
    kExecute = offsetof(ScriptRecord, wExecute),
    kHost = offsetof(ScriptRecord, lpfnHost),
};

uint16_t record_word(HWND window, RecordField field);
void set_record_word(HWND window, RecordField field, uint16_t value);
LONG_PTR record_pointer(HWND window, RecordField field);
void set_record_pointer(HWND window, RecordField field, LONG_PTR value);

// Module state, one copy for all script windows.
struct ScriptState {
    HACCEL hScriptAccel = nullptr;
    uint8_t bScriptFont = 0;
    char szScriptTitle[kTitleRoom] = {};
    bool bScriptBusy = false;
};
extern ScriptState script_state;

HWND script_edit(HWND window);
// Sends SWM_EXECUTE with a text, SWM_CLOSED with null; answers the host.
LRESULT ScriptNotify(HWND window, const char* text);
void ScriptAppendText(const char* text, HWND edit);
// The first `length` characters in a fresh block, left locked; null when
// no block can be had.
HGLOBAL ScriptGetText(HWND edit, uint32_t length, char** out);
void ScriptSetText(HWND edit, HGLOBAL block);
int32_t ScriptFileCommand(HWND window, const char* name, uint32_t code);
void ScriptPrint(HWND window, int dialog);
void ScriptCreateEdit(HWND window);
int32_t ScriptTabFactor(HWND edit);

}  // namespace vl::script
