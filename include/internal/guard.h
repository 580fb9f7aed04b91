// The exception barrier at the export boundary.
//
// The library runs inside the host's process, so nothing thrown inside it may
// reach the host: every export is noexcept, and an export whose path can
// throw (an allocation, a filesystem call) runs that path through `guarded`,
// which turns any exception into the export's documented failure value.
// Code that can answer without throwing (from_chars, error_code overloads,
// fixed buffers) does so instead and needs no guard.
#pragma once

#include <type_traits>
#include <utility>

namespace vl {

// `body()`, or `failure` when it throws.
template <class Result, class Body>
Result guarded(Result failure, Body&& body) noexcept {
    try {
        return std::forward<Body>(body)();
    } catch (...) {
        return failure;
    }
}

// `body()` for entries that answer nothing; an exception ends the call.
template <class Body>
void guarded_void(Body&& body) noexcept {
    try {
        std::forward<Body>(body)();
    } catch (...) {
    }
}

}  // namespace vl
