#include <csignal>
#include <exception>
#include <iostream>
#include <new>

#include "run/driver.h"

namespace {

// A worker that runs out of memory ends here too, since nothing catches above it.
[[noreturn]] void EndWithMessage() {
    try {
        if (const std::exception_ptr error = std::current_exception()) std::rethrow_exception(error);
    } catch (const std::bad_alloc&) {
        std::cerr << "Out of memory" << std::endl;
        std::_Exit(1);
    } catch (const std::exception& error) {
        std::cerr << "Unexpected fault: " << error.what() << std::endl;
    } catch (...) {
    }
    std::abort();
}

}  // namespace

int main(int argc, char** argv) {
    // A closed pipe and a file at its size limit are then failed writes, which are reported like a full disk.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    std::set_terminate(EndWithMessage);
    std::ios::sync_with_stdio(false);
    // Otherwise each message on the error stream would flush the standard output, unlocked, under a worker's hands.
    std::cerr.tie(nullptr);
    return lintara::Run(argc, argv);
}
