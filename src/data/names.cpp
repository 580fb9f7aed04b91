// KELUTIL_Names: turns names of the host's script language into the
// numbers the host knows them by, and lists a class to the host.

#include "data/names.h"

#include <array>
#include <cstdio>

#include "data/data_state.h"
#include "internal/host.h"

namespace vl::data {
namespace {

#include "data/name_tables.inc"

constexpr uint16_t kNotFound = VL_NO_NAME;
constexpr uint32_t kFill = VL_NAMES_FILL_CLASSES;
constexpr uint32_t kListToWindow = VL_NAMES_SEND_TO_WINDOW;
constexpr uint32_t kListToFunction = VL_NAMES_TO_HOST;
constexpr uint32_t kReservedBit = VL_NAMES_IDLE_BIT;

const VL_NAME_ROW* table_of(uint32_t class_index) noexcept {
    return class_index < kNameClassCount ? name_pointer_table[class_index] : nullptr;
}

// Delivers "type NAME" for each row of the class, in row order.
template <class Deliver>
void list_class(const VL_NAME_ROW* rows, Deliver&& deliver) {
    if (!rows) return;
    for (const VL_NAME_ROW* row = rows; row->name; ++row) {
        // The longest name is far below the room; snprintf cuts anyway.
        std::array<char, 64> line{};
        std::snprintf(line.data(), line.size(), host::kTypeName, row->name);
        deliver(line.data());
    }
}

}  // namespace


}  // namespace vl::data

using namespace vl;
using namespace vl::data;

extern "C" int32_t VLAPI KELUTIL_Names(uint32_t class_index, intptr_t argument, uint32_t operation) noexcept {
    // 1. Filling the pointer table writes the same values every time.
    if (operation == kFill) {
        for (const ClassTable& t : kClassTables) name_pointer_table[t.class_index] = t.rows;
        return 0;
    }
    // 2. Listing to a window: a dead or missing window gets nothing.
    if (operation == kListToWindow) {
        const auto* slot = reinterpret_cast<const VL_HWND*>(argument);
        const VL_HWND window = slot ? *slot : nullptr;
        if (!window || !window_alive(window)) return 1;
        list_class(table_of(class_index), [window](const char* text) { send_to_window(window, text); });
        return 0;
    }
    // 3. Listing to a host function, shaped like a window procedure.
    if (operation == kListToFunction) {
        const auto proc = reinterpret_cast<VL_HOSTPROC>(argument);
        if (!proc) return 0;
        list_class(table_of(class_index), [proc](const char* text) {
            proc(nullptr, host::SWM_EXECUTE, 0, reinterpret_cast<VL_LPARAM>(text));
        });
        return 0;
    }
    // 4. The other operations with bit 1 are reserved.
    if (operation & kReservedBit) return 0;
    // 5. Everything else is a lookup, exact and case counting.
    const VL_NAME_ROW* rows = table_of(class_index);
    const auto* name = reinterpret_cast<const char*>(argument);
    if (!rows || !name) return kNotFound;
    return KELUTIL_FindString(rows, name);
}
