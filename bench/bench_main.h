// Shared by the benchmark programs.
#pragma once

namespace vlbench {

// After the run, print time(ours) / time(reference) and whether it stays
// within `target` (a ratio of 0.5 means "at least twice as fast"; 0 means
// no target, the ratio is only reported).
void compare(const char* ours, const char* reference, double target);

// Registers the comparison at static initialisation.
struct Compare {
    Compare(const char* ours, const char* reference, double target) { compare(ours, reference, target); }
};

}  // namespace vlbench
