#include "run/streams.h"

#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <mutex>

#include "run/settings.h"

namespace lintara {

std::ofstream* logFile = nullptr;
std::ofstream* fout = nullptr;
std::ofstream* snp = nullptr;

namespace {

thread_local int owned = -1;

// exit() runs this on the thread that called it, so no other worker's stream is touched.
void FlushOwnedStreams() {
    if (owned < 0 || logFile == nullptr) return;
    logFile[owned].flush();
    fout[owned].flush();
    snp[owned].flush();
}

}  // namespace

void OwnStreams(int threadId) {
    static std::once_flag registered;
    std::call_once(registered, [] { std::atexit(FlushOwnedStreams); });
    owned = threadId;
}

void FailedWrite(const std::string& name) {
    std::cerr << "Failed to write " + name + "\n" << std::flush;
    // Other workers may still be at work and more data may wait for the stream that failed: tear nothing down.
    _exit(1);
}

void CheckStreams(int threadId) {
    const std::string number = std::to_string(threadId + 1);
    if (!logFile[threadId]) FailedWrite(out_file + "/Log/log.thread" + number);
    if (!fout[threadId]) FailedWrite(out_file + "/FilledScaf/seq.thread" + number);
    if (!snp[threadId]) FailedWrite(out_file + "/Snp/snp.thread" + number);
}

void CheckStandardOutput() {
    if (!std::cout.flush()) FailedWrite("the standard output");
}

}  // namespace lintara
