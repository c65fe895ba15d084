// Runs the built program as a child and hands back what it left.
#pragma once

#include <string>

namespace lintara::testing {

struct ProgramResult {
    int status = 0;  ///< exit status; minus the signal's number when a signal ended the process
    std::string out;
    std::string err;
};

/// Runs a command line through bash. With "exec " in front of it, the status is that of the program itself.
///
/// @param directory  where the captured texts are put while it runs
ProgramResult RunCommand(const std::string& command, const std::string& directory);

}  // namespace lintara::testing
