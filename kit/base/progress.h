// What a run tells on the error stream: on a terminal a bar for each stage that is drawn over and over, elsewhere one
// line a stage when it ends, nothing at all when quiet. Warnings appear in either case but quiet.
#pragma once

#include <chrono>
#include <string>

namespace lintara::kit {

class Progress {
  public:
    explicit Progress(bool quiet);
    /// A bar that stands, since its stage broke off, goes away.
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Begins a stage; `total` is the number of its steps, 0 when unknown.
    void Begin(const std::string& stage, long total = 0);
    void At(long done);
    /// True when At() can be seen, so that it pays to find out how far a stage is.
    bool Shown() const { return !quiet_ && terminal_; }
    /// Ends the stage, with what came of it.
    void End(const std::string& result);
    void Warn(const std::string& message);
    /// Seconds since Begin().
    double Seconds() const;

  private:
    void Draw(const std::string& text);

    bool quiet_;
    bool terminal_;
    bool standing_ = false;  ///< a bar is on the terminal
    std::string stage_;
    long total_ = 0;
    std::chrono::steady_clock::time_point start_;
    std::chrono::steady_clock::time_point drawn_;
};

}  // namespace lintara::kit
