// What all fuzz targets share: the state of a run with one thread, put back before every input, and the judgement of
// the places where the program would have ended its process.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace lintara::fuzz {

/// How an end of the process is taken.
enum class Ends {
    kOnlyTold,  ///< it is a finding unless its message is one that a user is told; see harness.cpp
    kAll,       ///< it is what this input asks for
};

/// Opens the streams of thread 0 on /dev/null, silences the standard output and the error stream, and remembers the
/// defaults of the settings. Called first by every target; later calls do nothing.
void Prepare();

/// Puts all settings and per-thread state back to what they were at the start.
void ResetRun();

/// Runs one input. A finding aborts on the stack of the function that ended the process, behind its messages.
///
/// @return whether it came to its end; false when the process would have ended
bool RunGuarded(Ends ends, const std::function<void()>& input);

/// A file in memory that has a path, as the loaders want one.
class MemoryFile {
  public:
    explicit MemoryFile(const char* name);
    ~MemoryFile();
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    /// Replaces the content.
    void Write(const void* data, std::size_t size);
    const std::string& Path() const { return path_; }

  private:
    int file_;
    std::string path_;
};

/// Loads the two files into a fresh store, touches all that it holds, and holds it against one whose reads are fetched
/// gap by gap.
void LoadAndWalk(const std::string& gap_path, const std::string& contig_path);

}  // namespace lintara::fuzz
