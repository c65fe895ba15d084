// Runs of `fill` that something befalls: children that fail, a kill at each step, a full disk.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>
#include <set>

#include "kit/base/child.h"
#include "support.h"

namespace lintara::kit {
namespace {

class Faults : public test::FillTest {
  protected:
    void SetUp() override {
        FillTest::SetUp();
        if (IsSkipped()) return;
        core_ = (std::filesystem::path(LINTARA_KIT_BINARY).parent_path() / "lintara").string();
        bwa_ = FindProgram("bwa");
    }
    /// An undisturbed run, with which the others are compared.
    void MakeWhole() const {
        if (Exists("whole")) return;
        std::filesystem::create_directory(Path("whole"));
        ASSERT_EQ(Fill("whole/out"), 0) << Err();
    }
    /// A program in the place of `real`: counts its calls that hold `word`, and does `act` in call `nth` instead.
    std::string Stand(const std::string& name, const std::string& real, const std::string& word, int nth,
                      const std::string& act) const {
        // Only one at a time, since all count their calls in one file.
        std::filesystem::remove_all(Path("bin"));
        std::filesystem::create_directories(Path("bin"));
        return Script("bin/" + name, "case \"$*\" in *" + word + "*)\n  echo x >>" + Path("calls") +
                                         "\n  if [ $(wc -l <" + Path("calls") + ") -eq " + std::to_string(nth) +
                                         " ]; then\n    " + act + "\n  fi;;\nesac\nexec " + real + " \"$@\"\n");
    }
    std::string WithStand() const { return "PATH=" + Path("bin") + ":$PATH"; }
    void Clean(const std::string& out) const {
        std::filesystem::remove_all(Path(out));
        std::filesystem::remove(Path("calls"));
        std::filesystem::create_directories(Path(out).substr(0, Path(out).rfind('/')));
    }
    void ExpectResumes(const std::string& out) const {
        MakeWhole();
        ASSERT_EQ(Fill(out, "--resume"), 0) << Err();
        ExpectSame(out, "whole/out");
    }
    /// Calls of a child with `word` that an undisturbed run makes.
    int Calls(const std::string& name, const std::string& real, const std::string& word, const std::string& more) {
        Clean("x/out");
        Stand(name, real, word, 0, ":");
        EXPECT_EQ(Fill("x/out", more, WithStand()), 0) << Err();
        return static_cast<int>(Lines("calls").size());
    }

    std::string core_;
    std::string bwa_;
};

TEST_F(Faults, MapperThatFailsIsToldWithItsLastWords) {
    Stand("bwa", bwa_, "mem", 1, "echo one >&2; echo two words >&2; exit 7");
    EXPECT_EQ(Fill("a", "--quiet", WithStand()), 1);
    EXPECT_EQ(Err(), "lintara-kit: bwa ended with status 7: one; two words\n");
    EXPECT_EQ(Files("a"), (std::vector<std::string>{"work"}));
}

TEST_F(Faults, IndexThatFailsIsTold) {
    Stand("bwa", bwa_, "index", 1, "echo no room >&2; exit 2");
    EXPECT_EQ(Fill("a", "--quiet", WithStand()), 1);
    EXPECT_EQ(Err(), "lintara-kit: bwa ended with status 2: no room\n");
}

TEST_F(Faults, ChildThatASignalEndsIsTold) {
    Stand("bwa", bwa_, "mem", 1, "kill -9 $$");
    EXPECT_EQ(Fill("a", "--quiet", WithStand()), 1);
    EXPECT_EQ(Err(), "lintara-kit: bwa was ended by signal 9 (Killed)\n");
    Script("core", "kill -SEGV $$");
    EXPECT_EQ(Fill("b", "--quiet --core " + Path("core")), 1);
    EXPECT_EQ(Err(), "lintara-kit: core was ended by signal 11 (Segmentation fault)\n");
}

TEST_F(Faults, MapperThatBreaksOffInTheMiddleIsTold) {
    // Half of its stream, in the middle of a record.
    Stand("bwa", bwa_, "mem", 1, bwa_ + " \"$@\" 2>/dev/null | head -c 40000; echo broke off >&2; exit 1");
    EXPECT_EQ(Fill("a", "--quiet", WithStand()), 1);
    EXPECT_EQ(Err(), "lintara-kit: bwa ended with status 1: broke off\n");
    // Without a word and with a good end the half record tells.
    Clean("a");
    Stand("bwa", bwa_, "mem", 1, bwa_ + " \"$@\" 2>/dev/null | head -n 100; printf 'p1\\t0\\ts1\\t7'; exit 0");
    EXPECT_EQ(Fill("a", "--quiet", WithStand()), 1);
    EXPECT_TRUE(Err().starts_with("lintara-kit: mapper: damaged or cut short behind record ")) << Err();
}

TEST_F(Faults, MapperWhoseStreamIsNoMappingDoesNotWaitForever) {
    // More than a pipe holds, so that a mapper that nobody reads any more would wait.
    Stand("bwa", bwa_, "mem", 1, "yes 'these are words' | head -c 3000000; exit 0");
    EXPECT_EQ(Fill("a", "--quiet", "timeout 20 env " + WithStand()), 1);
    EXPECT_EQ(Err(), "lintara-kit: mapper: this is no SAM, BAM or CRAM file\n");
    Clean("a");
    Stand("bwa", bwa_, "mem", 1,
          "printf '@SQ\\tSN:other\\tLN:5\\n'; yes 'r\t4\t*\t0\t0\t*\t*\t0\t0\tA\t*' | head -c 3000000; exit 0");
    EXPECT_EQ(Fill("a", "--quiet", "timeout 20 env " + WithStand()), 1);
    EXPECT_EQ(Err(), "lintara-kit: mapper: the reads are mapped to \"other\", which is no scaffold\n");
}

TEST_F(Faults, PairsThatDoNotMatchAreTheMappersFault) {
    Put("2.fq", "@other/2\nACGTACGTACGTACGTACGTACGTACGTACGT\n+\nIIIIIIIIIIIIIIIIIIIIIIIIIIIIIIII\n");
    EXPECT_EQ(Fill("a", "--quiet"), 1);
    EXPECT_TRUE(Err().starts_with("lintara-kit: bwa ended with status 1: ")) << Err();
    EXPECT_NE(Err().find("paired reads have different names"), std::string::npos) << Err();
}

TEST_F(Faults, FaultOfTheCoreInTheFirstRoundLeavesNoFile) {
    Script("core", "echo first >&2; echo gone wrong >&2; exit 3");
    EXPECT_EQ(Fill("a", "--quiet --core " + Path("core")), 1);
    EXPECT_EQ(Err(), "lintara-kit: core ended with status 3: first; gone wrong\n");
    EXPECT_EQ(Files("a"), (std::vector<std::string>{"work"}));
    Clean("b/out");
    EXPECT_EQ(Fill("b/out", "--quiet --core " + Path("core")), 1);
    ExpectResumes("b/out");
}

TEST_F(Faults, FaultOfTheCoreIsToldWhereTheEndOfChildrenIsIgnored) {
    Script("core", "echo gone wrong >&2; exit 3");
    EXPECT_EQ(Fill("a", "--quiet --core " + Path("core"), "env --ignore-signal=CHLD"), 1);
    EXPECT_EQ(Err(), "lintara-kit: core ended with status 3: gone wrong\n");
}

TEST_F(Faults, ArithmeticFaultOfTheCoreMeansThatNothingWasGained) {
    Script("core", "kill -FPE $$");
    EXPECT_EQ(Fill("a", "--core " + Path("core")), 0) << Err();
    EXPECT_EQ(Column("a", "outcome"), (std::vector<std::string>{"open", "open"}));
    for (const std::string& reason : Column("a", "reason")) EXPECT_NE(reason, "");
    EXPECT_EQ(ReadFasta(Path("a/filled.fa"))[0].sequence, scaffold_);
    EXPECT_EQ(nlohmann::json::parse(Get("a/run.json"))["rounds"].size(), 1U);
    EXPECT_FALSE(Exists("a/work"));
}

/// In each later call a child fails: what was gained before is written, told, and gone on with.
TEST_F(Faults, WhatWasGainedBeforeAFaultIsNotLost) {
    struct Case {
        std::string name;
        std::string real;
        std::string word;
        std::string more;
    };
    Clean("first/out");
    for (const Case& at : {Case{"bwa", bwa_, "mem", ""}, Case{"bwa", bwa_, "index", ""},
                           Case{"core", core_, "contig.fa", "--core " + Path("bin/core")}}) {
        int calls = Calls(at.name, at.real, at.word, at.more);
        ASSERT_GT(calls, 1) << at.name;
        for (int nth : std::set<int>{2, calls}) {
            Clean("x/out");
            Stand(at.name, at.real, at.word, nth, "echo last words >&2; exit 9");
            EXPECT_EQ(Fill("x/out", "--quiet " + at.more, WithStand()), 1) << at.name << nth;
            EXPECT_TRUE(Err().starts_with("lintara-kit: " + at.name + " ended with status 9: last words\n")) << Err();
            if (Exists("x/out/filled.fa")) {
                EXPECT_TRUE(Err().ends_with("what was gained before is in " + Path("x/out") + "\n")) << Err();
                EXPECT_EQ(nlohmann::json::parse(Get("x/out/run.json"))["fault"],
                          at.name + " ended with status 9: last words");
                EXPECT_EQ(Column("x/out", "outcome").at(0), "closed") << at.name << nth;
            }
            ExpectResumes("x/out");
        }
        // A fault behind the first round never loses what that round has closed.
        EXPECT_TRUE(Exists("x/out/filled.fa"));
    }
}

/// Runs lintara-kit and kills it in front of its `nth` call that makes a process or gives a file its name. False: it
/// ended before. `seen` counts such calls.
bool KillAt(const std::vector<std::string>& words, int nth, const std::string& messages, int& seen) {
    static const std::set<long> kSteps = {
#ifdef SYS_rename
        SYS_rename,
#endif
#ifdef SYS_fork
        SYS_fork,
#endif
#ifdef SYS_vfork
        SYS_vfork,
#endif
#ifdef SYS_unlink
        SYS_unlink, SYS_rmdir,
#endif
        SYS_clone,  SYS_renameat, SYS_renameat2, SYS_unlinkat};
    std::vector<char*> argv;
    for (const std::string& word : words) argv.push_back(const_cast<char*>(word.c_str()));
    argv.push_back(nullptr);
    pid_t child = fork();
    if (child == 0) {
        int err = open(messages.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
        dup2(err, 2);
        // A checker of leaks cannot work in a process that is traced.
        setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
        if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(126);
        execv(argv[0], argv.data());
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (!WIFSTOPPED(status)) return false;
    ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    int pass = 0;
    while (true) {
        ptrace(PTRACE_SYSCALL, child, nullptr, pass);
        waitpid(child, &status, 0);
        if (WIFEXITED(status) || WIFSIGNALED(status)) return false;
        pass = 0;
        if (WSTOPSIG(status) != (SIGTRAP | 0x80)) {
            pass = WSTOPSIG(status) == SIGTRAP ? 0 : WSTOPSIG(status);
            continue;
        }
        __ptrace_syscall_info info{};
        ptrace(static_cast<__ptrace_request>(PTRACE_GET_SYSCALL_INFO), child, sizeof info, &info);
        if (info.op != PTRACE_SYSCALL_INFO_ENTRY || kSteps.count(static_cast<long>(info.entry.nr)) == 0) continue;
        if (++seen < nth) continue;
        kill(child, SIGKILL);
        while (waitpid(child, &status, 0) == child && !WIFSIGNALED(status) && !WIFEXITED(status)) {
        }
        return true;
    }
}

bool CanTrace() {
    pid_t child = fork();
    if (child == 0) {
        if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(1);
        raise(SIGSTOP);
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (!WIFSTOPPED(status)) return false;
    ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
    waitpid(child, &status, 0);
    __ptrace_syscall_info info{};
    bool known = WIFSTOPPED(status) &&
                 ptrace(static_cast<__ptrace_request>(PTRACE_GET_SYSCALL_INFO), child, sizeof info, &info) > 0;
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    return known;
}

TEST_F(Faults, KilledAtAnyStepAndResumedGivesTheSameFiles) {
    if (!CanTrace()) GTEST_SKIP() << "processes cannot be traced here";
    std::vector<std::string> words = {
        LINTARA_KIT_BINARY, "fill", "-s",         Path("scaffolds.fa"), "-1", Path("1.fq"), "-2",
        Path("2.fq"),       "-o",   Path("x/out")};
    MakeWhole();
    // Some twenty steps, spread over the whole run, and the last ones.
    Clean("x/out");
    int steps = 0;
    ASSERT_FALSE(KillAt(words, std::numeric_limits<int>::max(), Path("err"), steps));
    ExpectSame("x/out", "whole/out");
    ASSERT_GT(steps, 30);
    int resumed = 0;
    for (int nth = 1; nth <= steps; nth += nth + 3 < steps ? std::min(1 + steps / 18, steps - 2 - nth) : 1) {
        Clean("x/out");
        int seen = 0;
        ASSERT_TRUE(KillAt(words, nth, Path("err"), seen)) << nth;
        ExpectNoHalfFile("x/out");
        ASSERT_EQ(Fill("x/out", "--resume"), 0) << Err();
        resumed += Err().find(" goes on after round ") != std::string::npos;
        ExpectSame("x/out", "whole/out");
        if (HasFailure()) FAIL() << "killed at step " << nth << " of " << steps;
    }
    EXPECT_GT(resumed, 5);
}

TEST_F(Faults, KilledInTheMiddleOfAMappingOrAFillAndResumed) {
    struct Case {
        std::string name;
        std::string real;
        std::string word;
        std::string more;
        std::string act;
    };
    for (const Case& at :
         {Case{"bwa", bwa_, "mem", "", bwa_ + " \"$@\" 2>/dev/null | head -c 70000; kill -9 $PPID; sleep 5"},
          Case{"core", core_, "contig.fa", "--core " + Path("bin/core"), core_ + " \"$@\"; kill -9 $PPID; sleep 5"}}) {
        for (int nth : {1, 2}) {
            Clean("x/out");
            Stand(at.name, at.real, at.word, nth, at.act);
            EXPECT_EQ(Fill("x/out", at.more, WithStand()), 128 + 9) << at.name << nth;
            ExpectNoHalfFile("x/out");
            ExpectResumes("x/out");
        }
    }
}

TEST_F(Faults, ChildrenDieWithTheKit) {
    Stand("bwa", bwa_, "mem", 1, "echo $$ >" + Path("pid") + "; kill -9 $PPID; exec sleep 60");
    EXPECT_EQ(Fill("a", "", WithStand()), 128 + 9);
    for (int i = 0; i < 50 && (!Exists("pid") || Get("pid").empty()); ++i) usleep(20000);
    pid_t mapper = static_cast<pid_t>(std::stol(Get("pid")));
    bool gone = false;
    for (int i = 0; i < 100 && !gone; ++i) {
        gone = kill(mapper, 0) != 0;
        // Where nobody reaps it, the process stays as a name.
        std::ifstream stat("/proc/" + std::to_string(mapper) + "/stat");
        std::string line;
        std::getline(stat, line);
        gone = gone || line.find(") Z ") != std::string::npos;
        if (!gone) usleep(20000);
    }
    EXPECT_TRUE(gone);
}

/// Runs lintara-kit in a child after `prepare`; its exit status, or 128 and more for a signal. -1: `prepare` failed.
template <typename Prepare>
int RunPrepared(const std::string& command, Prepare prepare) {
    pid_t child = fork();
    if (child == 0) {
        if (!prepare()) _exit(125);
        execl("/bin/sh", "sh", "-c", ("exec " + command).c_str(), static_cast<char*>(nullptr));
        _exit(126);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFSIGNALED(status)) return 128 + WTERMSIG(status);
    return WEXITSTATUS(status) == 125 ? -1 : WEXITSTATUS(status);
}

TEST_F(Faults, FileAtItsSizeLimitIsToldAndLeavesNoHalfFile) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "The limit hits the sanitizer's own files, too.";
#endif
    MakeWhole();
    std::string command = std::string(LINTARA_KIT_BINARY) + " " + FillWords("x/out", "--quiet") + " >" + Path("out");
    int failed = 0;
    int good = 0;
    for (long limit : {0L, 60L, 500L, 1000L, 2500L, 4000L, 9000L, 20000L, 60000L, 200000L, 5000000L}) {
        Clean("x/out");
        int status = RunPrepared(command + " 2>" + Path("err"), [&] {
            rlimit size{static_cast<rlim_t>(limit), static_cast<rlim_t>(limit)};
            return setrlimit(RLIMIT_FSIZE, &size) == 0;
        });
        ExpectNoHalfFile("x/out");
        if (status == 0) {
            ++good;
            ExpectSame("x/out", "whole/out");
            continue;
        }
        ++failed;
        EXPECT_EQ(status, 1) << limit << ": " << Err();
        EXPECT_TRUE(limit < 200 || Err().starts_with("lintara-kit: ")) << limit << ": " << Err();
        ExpectResumes("x/out");
    }
    EXPECT_GT(failed, 4);
    EXPECT_GT(good, 0);
}

TEST_F(Faults, FullDiskIsToldAndLeavesNoHalfFile) {
    MakeWhole();
    ASSERT_EQ(Shell("mkdir " + Path("disk") + " " + Path("copy")), 0);
    std::string command = std::string(LINTARA_KIT_BINARY) + " " + FillWords("disk/out", "--quiet") + " >" +
                          Path("out") + " 2>" + Path("err");
    // The disk goes away with the process that sees it, so that what it holds is copied first.
    command = "sh -c '" + command + "; status=$?; cp -r " + Path("disk/out") + " " + Path("copy") + "; exit $status'";
    int failed = 0;
    int good = 0;
    for (long pages = 1; pages <= 2048; pages += 1 + pages / 4) {
        std::filesystem::remove_all(Path("copy/out"));
        std::string room = "size=" + std::to_string(pages * 4096);
        int status = RunPrepared(command, [&] {
            return unshare(CLONE_NEWNS) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                   mount("tmpfs", Path("disk").c_str(), "tmpfs", 0, room.c_str()) == 0;
        });
        if (status == -1) GTEST_SKIP() << "no disk can be mounted here";
        ExpectNoHalfFile("copy/out");
        if (status == 0) {
            ++good;
            EXPECT_EQ(Err(), "");
            ExpectSame("copy/out", "whole/out");
            if (good == 2) break;
            continue;
        }
        ++failed;
        EXPECT_EQ(status, 1) << room << ": " << Err();
        EXPECT_TRUE(Err().starts_with("lintara-kit: ")) << room << ": " << Err();
        // A child says so in its own words, if there is room left for them.
        bool child = Err().find(" ended with status ") != std::string::npos;
        EXPECT_TRUE(child || Err().find("No space left on device") != std::string::npos) << room << ": " << Err();
    }
    EXPECT_GT(failed, 5);
    EXPECT_EQ(good, 2);
}

TEST_F(Faults, PrepareOnAFullDiskLeavesNoHalfFile) {
    std::string command = std::string(LINTARA_KIT_BINARY) + " prepare --quiet -s " + Path("scaffolds.fa") + " --bam " +
                          Path("reads.sam") + " -o " + Path("p") + " 2>" + Path("err");
    ASSERT_EQ(
        Shell("cd " + folder_ + " && { bwa index -p ix scaffolds.fa && bwa mem -v 1 ix 1.fq 2.fq >reads.sam; } 2>log"),
        0);
    int failed = 0;
    for (long limit : {100L, 2000L, 3000L, 5000L, 10000000L}) {
        std::filesystem::remove_all(Path("p"));
        int status = RunPrepared(command, [&] {
            rlimit size{static_cast<rlim_t>(limit), static_cast<rlim_t>(limit)};
            return setrlimit(RLIMIT_FSIZE, &size) == 0;
        });
        if (status == 0) continue;
        ++failed;
        EXPECT_EQ(status, 1);
        EXPECT_TRUE(Err().starts_with("lintara-kit: cannot write " + Path("p/"))) << limit << ": " << Err();
        EXPECT_TRUE(Err().ends_with(": File too large\n")) << limit << ": " << Err();
        for (const std::string& name : Files("p")) EXPECT_FALSE(name.ends_with(".tmp")) << name;
    }
    EXPECT_GT(failed, 1);
    EXPECT_LT(failed, 5);
}

}  // namespace
}  // namespace lintara::kit
