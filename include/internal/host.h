// What passes between the library and the host application: the message
// numbers the library sends, the script texts it sends, and the shape of a
// host callback.  The numbers and texts are part of the interface; the host
// depends on them as they stand.
#pragma once

#include <cstdint>

#include "vlcore.h"

namespace vl::host {

// Messages the library sends to the host, named as the host knows them.
constexpr uint32_t SWM_EXECUTE = VL_SWM_EXECUTE;      // second value: script text, good during the call
constexpr uint32_t SWM_QUERYSAVE = VL_SWM_QUERYSAVE;  // non-zero answer: ask the user nothing
constexpr uint32_t SWM_CLOSED = VL_SWM_CLOSED;        // the script window is going away
constexpr uint32_t FDM_OPTION = VL_FD_OPTION_MESSAGE; // first value: command text
constexpr uint32_t FDM_PATHQUERY = VL_PATH_ASK_HOST;  // first: caller's path buffer, second: extension key
// The status window's line without a dialog: second value "ty -q TEXT...".
constexpr uint32_t STATUS_LINE = VL_STATUS_LINE_MESSAGE;

// Script lines the library hands to the host's interpreter.
inline constexpr const char kTypeName[] = "type %s";
inline constexpr const char kStatusType[] = "ty -q ";
inline constexpr const char kScriptOpen[] = "Run.Section(File.VLX,ScriptOpen);";
inline constexpr const char kScriptSaveAs[] = "Run.Section(File.VLX,ScriptSaveAs);";
inline constexpr const char kWorksheetEditAscii[] = "worksheet -edit ascii";

// A host function: window, message, first value, second value.
using HostProc = VL_HOSTPROC;

}  // namespace vl::host
