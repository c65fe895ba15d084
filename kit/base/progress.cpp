#include "kit/base/progress.h"

#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace lintara::kit {

namespace {

constexpr int kBarWidth = 30;

}  // namespace

Progress::Progress(bool quiet) : quiet_(quiet), terminal_(isatty(STDERR_FILENO) == 1) {}

Progress::~Progress() {
    if (standing_) Draw("");
}

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
    double share = static_cast<double>(std::clamp(done, 0L, total_)) / static_cast<double>(total_);
    size_t full = static_cast<size_t>(share * kBarWidth);
    Draw(fmt::format("{} [{}{}] {:.0f} %", stage_, std::string(full, '#'), std::string(kBarWidth - full, '.'),
                     100 * share));
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

/// A text that does not fit one line could not be wiped away, so that its begin is left out.
void Progress::Draw(const std::string& text) {
    winsize size{};
    size_t columns = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 10 ? size.ws_col : 80;
    std::string shown = text.size() < columns ? text : "..." + text.substr(text.size() - columns + 4);
    std::fputs(fmt::format("\r\033[K{}", shown).c_str(), stderr);
    standing_ = !text.empty();
    std::fflush(stderr);
}

}  // namespace lintara::kit
