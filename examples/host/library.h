// The library as a host sees it: loaded by name at run time, its entries
// found by their export names.  A host that links against the import
// library needs none of this; loading by name is what a host does that
// must start without the library, or picks one of several.
#pragma once

#include <string>

#include "vlcore.h"

namespace host {

struct Library {
    decltype(&KELUTIL_Main) main = nullptr;
    decltype(&KELUTIL_next_token) next_token = nullptr;
    decltype(&KELUTIL_str2real) str2real = nullptr;
    decltype(&KELUTIL_real2str) real2str = nullptr;
    decltype(&KELUTIL_str2date) str2date = nullptr;
    decltype(&KELUTIL_date2str) date2str = nullptr;
    decltype(&KelMath_function) math = nullptr;
    decltype(&KELUTIL_Names) names = nullptr;

    // The module, opaque here: a HMODULE or a dlopen handle.
    void* module = nullptr;
    std::string error;

    // Loads `name` (VLCORE.dll, libvlcore.so) and finds every entry above;
    // false with `error` set when the library or an entry is missing.
    bool load(const char* name);
    // An entry by export name, or null.
    void* entry(const char* export_name) const;
    // Takes the entries of a library linked into the program itself (the
    // host's tests and fuzzing); nothing is loaded.
    void bind_linked() {
        main = &KELUTIL_Main;
        next_token = &KELUTIL_next_token;
        str2real = &KELUTIL_str2real;
        real2str = &KELUTIL_real2str;
        str2date = &KELUTIL_str2date;
        date2str = &KELUTIL_date2str;
        math = &KelMath_function;
        names = &KELUTIL_Names;
    }
    ~Library();
};

}  // namespace host
