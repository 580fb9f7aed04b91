#include "library.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace host {

void* Library::entry(const char* export_name) const {
    if (!module) return nullptr;
#ifdef _WIN32
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(module), export_name));
#else
    return dlsym(module, export_name);
#endif
}

bool Library::load(const char* name) {
#ifdef _WIN32
    module = LoadLibraryA(name);
#else
    module = dlopen(name, RTLD_NOW | RTLD_LOCAL);
#endif
    if (!module) {
        error = std::string("cannot load ") + name;
        return false;
    }
    // Each pointer takes the type of the header's declaration, so a host
    // built against one header calls every entry the way it is declared.
    const auto find = [this](auto& slot, const char* export_name) {
        slot = reinterpret_cast<std::remove_reference_t<decltype(slot)>>(entry(export_name));
        if (!slot && error.empty()) error = std::string("no entry ") + export_name;
    };
    find(main, "KELUTIL_Main");
    find(next_token, "KELUTIL_next_token");
    find(str2real, "KELUTIL_str2real");
    find(real2str, "KELUTIL_real2str");
    find(str2date, "KELUTIL_str2date");
    find(date2str, "KELUTIL_date2str");
    find(math, "KelMath_function");
    find(names, "KELUTIL_Names");
    return error.empty();
}

Library::~Library() {
    if (!module) return;
#ifdef _WIN32
    FreeLibrary(static_cast<HMODULE>(module));
#else
    dlclose(module);
#endif
}

}  // namespace host
