// The example host's interpreter on arbitrary lines against the library
// linked in.  One interpreter takes all the lines of an input, so variables
// carry from line to line.  Every line runs or fails with a message; each
// line lies in a heap block of exactly its size.

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "fuzz_support.h"
#include "interpreter.h"

using namespace vlfuzz;

namespace {

const host::Library& started_library() {
    static host::Library vl;
    vl.bind_linked();
    require(vl.main(nullptr, 6000, reinterpret_cast<intptr_t>(""), 0) != 0);
    return vl;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    static const host::Library& vl = started_library();
    // A front end that stops a long loop part of the way.
    host::Interpreter interpreter(vl, [](int step, int total) {
        require(step >= 1 && step <= total);
        return step < 100;
    });
    std::string_view in(reinterpret_cast<const char*>(data), size);
    while (!in.empty()) {
        const std::size_t end = std::min(in.find('\n'), in.size());
        auto line = std::make_unique<char[]>(end);
        std::memcpy(line.get(), in.data(), end);
        in.remove_prefix(std::min(end + 1, in.size()));
        std::vector<std::string> out;
        const int result = interpreter.run(std::string_view(line.get(), end), out);
        require(result == 0 || (result == 1 && !out.empty()));
    }
    return 0;
}
