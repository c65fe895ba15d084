// Included in front of every source of a fuzzing build. The program ends its process on faulty input through exit(); a
// fuzz target must outlive that, so exit() becomes an exception here, and a target may look at each end before it is
// thrown.
#pragma once

#include <cstdlib>

namespace lintara::fuzz {

/// Thrown in place of exit().
struct Ended {
    int status;
};

/// Called first with the status, on the stack of the function that ends the process; null: nothing is called.
inline void (*on_end)(int status) = nullptr;

}  // namespace lintara::fuzz

namespace std {
[[noreturn]] inline void lintara_ended(int status) {
    if (lintara::fuzz::on_end != nullptr) lintara::fuzz::on_end(status);
    throw lintara::fuzz::Ended{status};
}
}  // namespace std
using std::lintara_ended;

#define exit lintara_ended
