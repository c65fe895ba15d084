#include "kit/base/child.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <utility>

#include "kit/base/error.h"

namespace lintara::kit {

namespace {

/// Runs in the child between fork and exec: only calls that are safe there. The pipe tells the parent why exec failed.
[[noreturn]] void BecomeProgram(char* const* argv, int outFd, int errFd, int tellFd, pid_t parent) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    signal(SIGPIPE, SIG_DFL);
    if (getppid() != parent) _exit(127);
    int null = open("/dev/null", O_RDONLY);
    if (null >= 0) dup2(null, 0);
    if (dup2(outFd, 1) >= 0 && dup2(errFd, 2) >= 0) execvp(argv[0], argv);
    int reason = errno;
    ssize_t written = write(tellFd, &reason, sizeof reason);
    _exit(written > 0 ? 127 : 126);
}

/// A file descriptor until it is handed on or closed.
class Descriptor {
  public:
    explicit Descriptor(int fd = -1) : fd_(fd) {}
    ~Descriptor() { Close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int Get() const { return fd_; }
    int Release() { return std::exchange(fd_, -1); }
    void Set(int fd) {
        Close();
        fd_ = fd;
    }
    void Close() {
        if (fd_ >= 0) close(Release());
    }

  private:
    int fd_;
};

void OpenPipe(Descriptor& read_end, Descriptor& write_end) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw Error(fmt::format("cannot make a pipe: {}", std::strerror(errno)));
    read_end.Set(ends[0]);
    write_end.Set(ends[1]);
}

int OpenForWriting(const std::string& path) {
    int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (fd < 0) throw Error(fmt::format("cannot write {}: {}", path, std::strerror(errno)));
    return fd;
}

bool IsExecutable(const std::string& path) {
    return access(path.c_str(), X_OK) == 0 && !std::filesystem::is_directory(path);
}

}  // namespace

Child::Child(const std::vector<std::string>& argv, const std::string& outFile, const std::string& errFile) {
    std::vector<char*> words;
    for (const std::string& word : argv) words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    Descriptor out;
    Descriptor childs_out;
    if (outFile.empty()) {
        OpenPipe(out, childs_out);
    } else {
        childs_out.Set(OpenForWriting(outFile));
    }
    Descriptor err(OpenForWriting(errFile));
    Descriptor told;  // why the program could not be started
    Descriptor tell;
    OpenPipe(told, tell);
    pid_t parent = getpid();
    pid_ = fork();
    if (pid_ == 0) BecomeProgram(words.data(), childs_out.Get(), err.Get(), tell.Get(), parent);
    int reason = pid_ < 0 ? errno : 0;
    childs_out.Close();
    err.Close();
    tell.Close();
    if (pid_ > 0 && read(told.Get(), &reason, sizeof reason) != static_cast<ssize_t>(sizeof reason)) reason = 0;
    if (reason != 0) {
        if (pid_ > 0) waitpid(pid_, nullptr, 0);
        pid_ = -1;
        throw Error(fmt::format("cannot start {}: {}", argv[0], std::strerror(reason)));
    }
    outFd_ = out.Release();
}

Child::~Child() {
    if (outFd_ >= 0) close(outFd_);
    if (pid_ > 0) {
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
}

int Child::TakeOutFd() {
    int fd = outFd_;
    outFd_ = -1;
    return fd;
}

ChildEnd Child::Wait(const std::function<void()>& tick) {
    ChildEnd end;
    int status = 0;
    rusage usage{};
    while (true) {
        pid_t got = wait4(pid_, &status, tick ? WNOHANG : 0, &usage);
        if (got > 0) break;
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) throw Error(fmt::format("cannot wait for a child process: {}", std::strerror(errno)));
        tick();
        usleep(100'000);
    }
    pid_ = -1;
    if (WIFSIGNALED(status)) end.signal = WTERMSIG(status);
    if (WIFEXITED(status)) end.status = WEXITSTATUS(status);
    auto seconds = [](const timeval& t) {
        return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1e6;
    };
    end.cpu = seconds(usage.ru_utime) + seconds(usage.ru_stime);
    end.peakMemoryKb = usage.ru_maxrss;
    return end;
}

std::string EndWords(const std::string& program, const ChildEnd& end) {
    std::string name = std::filesystem::path(program).filename();
    if (end.signal != 0) return fmt::format("{} was ended by signal {} ({})", name, end.signal, strsignal(end.signal));
    return fmt::format("{} ended with status {}", name, end.status);
}

std::string FindProgram(const std::string& name) {
    if (name.find('/') != std::string::npos) return IsExecutable(name) ? name : "";
    std::error_code fault;
    std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", fault);
    if (!fault && IsExecutable((self.parent_path() / name).string())) return (self.parent_path() / name).string();
    const char* path = std::getenv("PATH");
    std::istringstream folders(path != nullptr ? path : "/usr/bin:/bin");
    for (std::string folder; std::getline(folders, folder, ':');) {
        std::string candidate = (folder.empty() ? "." : folder) + "/" + name;
        if (IsExecutable(candidate)) return candidate;
    }
    return "";
}

std::string CommandLine(const std::vector<std::string>& argv) {
    std::string line;
    for (const std::string& word : argv) {
        if (!line.empty()) line += ' ';
        bool plain = !word.empty() && word.find_first_of(" \t\n'\"\\$`*?[]()<>|&;#~!{}") == std::string::npos;
        if (plain) {
            line += word;
            continue;
        }
        line += '\'';
        for (char letter : word) line += letter == '\'' ? std::string("'\\''") : std::string(1, letter);
        line += '\'';
    }
    return line;
}

}  // namespace lintara::kit
