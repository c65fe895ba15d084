#include "support/program.h"

#include <sys/wait.h>
#include <unistd.h>

#include "support/thread_streams.h"

namespace lintara::testing {

ProgramResult RunCommand(const std::string& command, const std::string& directory) {
    const std::string line = command + " >" + directory + "/captured.out 2>" + directory + "/captured.err";
    const pid_t child = fork();
    if (child == 0) {
        execl("/bin/bash", "bash", "-c", line.c_str(), nullptr);
        _exit(127);
    }
    ProgramResult result;
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    result.out = FileText(directory + "/captured.out");
    result.err = FileText(directory + "/captured.err");
    return result;
}

}  // namespace lintara::testing
