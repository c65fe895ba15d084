#include "kit/base/progress.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace lintara::kit {

namespace {

constexpr int kBarWidth = 30;

}  // namespace

Progress::Progress(bool quiet) : quiet_(quiet), terminal_(isatty(STDERR_FILENO) == 1) {}

void Progress::Begin(const std::string& stage, long total) {
    stage_ = stage;
    total_ = total;
    start_ = std::chrono::steady_clock::now();
    drawn_ = {};
    if (!quiet_ && terminal_) Draw(fmt::format("{} ...", stage_));
}

void Progress::At(long done) {
    if (quiet_ || !terminal_) return;
    auto now = std::chrono::steady_clock::now();
    if (now - drawn_ < std::chrono::milliseconds(100)) return;
    drawn_ = now;
    if (total_ <= 0) {
        Draw(fmt::format("{} {}", stage_, done));
        return;
    }
    int full = static_cast<int>(std::min(done, total_) * kBarWidth / total_);
    Draw(fmt::format("{} [{}{}] {} of {}", stage_, std::string(full, '#'), std::string(kBarWidth - full, '.'), done,
                     total_));
}

void Progress::End(const std::string& result) {
    if (quiet_) return;
    if (terminal_) Draw("");
    std::fputs(fmt::format("{}: {} ({:.1f} s)\n", stage_, result, Seconds()).c_str(), stderr);
    std::fflush(stderr);
}

void Progress::Warn(const std::string& message) {
    if (quiet_) return;
    if (terminal_) Draw("");
    std::fputs(fmt::format("lintara-kit: warning: {}\n", message).c_str(), stderr);
    std::fflush(stderr);
}

double Progress::Seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
}

void Progress::Draw(const std::string& text) {
    std::fputs(fmt::format("\r\033[K{}", text).c_str(), stderr);
    std::fflush(stderr);
}

}  // namespace lintara::kit
