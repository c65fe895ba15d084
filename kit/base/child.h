// Child processes: the mapper and the core program. A child dies with its parent, its error stream goes to a file, and
// its standard output to a file or into a pipe that the caller reads.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

namespace lintara::kit {

struct ChildEnd {
    int status = 0;  ///< exit status; 0 also when a signal ended it
    int signal = 0;  ///< signal that ended the child; 0: none
    double cpu = 0;  ///< user and system time, seconds
    long peakMemoryKb = 0;
    bool Good() const { return status == 0 && signal == 0; }
};

class Child {
  public:
    /// Starts argv[0] (looked up in PATH). An empty `outFile` means a pipe, see TakeOutFd(). Throws Error when the
    /// program cannot be started. The error stream goes to `errFile`.
    Child(const std::vector<std::string>& argv, const std::string& outFile, const std::string& errFile);
    /// Ends a child that nobody waited for.
    ~Child();
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    /// Reading end of the pipe; the caller owns it once taken. -1 when the output goes to a file.
    int TakeOutFd();
    /// With `tick`, calls it several times a second until the child ends. Throws Error when its end cannot be learnt.
    ChildEnd Wait(const std::function<void()>& tick = {});

  private:
    pid_t pid_ = -1;
    int outFd_ = -1;
};

/// Words for an abnormal end: "bwa ended with status 1", "lintara was ended by signal 9 (Killed)".
std::string EndWords(const std::string& program, const ChildEnd& end);

/// Path of an executable: `name` itself when it holds a '/', otherwise the one beside this program, or from PATH.
/// Empty when there is none.
std::string FindProgram(const std::string& name);

/// The command as one line for a shell.
std::string CommandLine(const std::vector<std::string>& argv);

}  // namespace lintara::kit
