// The package reader on arbitrary package files.

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "fuzz_support.h"
#include "platform/platform.h"
#include "vlcore.h"

using namespace vlfuzz;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    static const std::string path =
        (std::filesystem::temp_directory_path() / ("vlcore_fuzz_package_" + std::to_string(::getpid()))).string();
    std::string_view in(reinterpret_cast<const char*>(data), size);
    Text name(take_text(in));
    {
        std::ofstream f(path, std::ios::binary | std::ios::trunc);
        f.write(in.data(), static_cast<std::streamsize>(in.size()));
    }
    uint32_t got = 0xDEADBEEF;
    VL_HGLOBAL h = KELUTIL_GetFileFromPackage(path.c_str(), name.data(), &got);
    if (!h) {
        require(got == 0xDEADBEEF);
        return 0;
    }
    // The member lies inside the file, so it is no larger than the file.
    require(got > 0 && got <= in.size() && vl::platform::mem_size(h) >= got);
    vl::platform::mem_free(h);
    return 0;
}
