// The one exception of lintara-kit: a fault that a user can understand and act on. main() prints its text behind
// "lintara-kit: " and ends with its status.
#pragma once

#include <stdexcept>
#include <string>

namespace lintara::kit {

struct Error : std::runtime_error {
    explicit Error(const std::string& message, int exitStatus = 1) : std::runtime_error(message), status(exitStatus) {}
    int status;  ///< exit status of the process
};

}  // namespace lintara::kit
