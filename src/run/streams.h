// The three output streams that each worker thread owns. They are arrays with one entry a thread, indexed by the
// 0-based threadId; since no thread touches another's entry, nothing here is locked.
#pragma once

#include <cstddef>
#include <fstream>
#include <string>

namespace lintara {

extern std::ofstream* logFile;  ///< log.threadN: which case was taken for each gap
extern std::ofstream* fout;     ///< seq.threadN: the filled scaffolds
extern std::ofstream* snp;      ///< snp.threadN: the consensus columns

/// Opens a stream for writing with truncation, so that only whole lines get into the file until it is flushed or closed
/// by CloseStream(): a killed run leaves no half of a line. A failure is the stream's fail state.
void OpenStream(std::ofstream& stream, const std::string& path);

/// stream.write(), without most of what a stream does around each single write.
void WriteText(std::ostream& stream, const char* text, std::size_t size);

/// Writes what is left and closes a stream that OpenStream() has opened.
void CloseStream(std::ofstream& stream);

/// Makes the calling thread the owner of the three streams at threadId: when it ends the process through exit(), what
/// it has written so far is flushed.
void OwnStreams(int threadId);

/// Ends the process when a write to one of the three streams at threadId has failed, see FailedWrite(). Called after
/// each gap and scaffold and when the streams are closed, so that a full disk never passes in silence.
void CheckStreams(int threadId);

/// Flushes the standard output and ends the process when that or an earlier write failed.
void CheckStandardOutput();

/// Writes "Failed to write " and the name to the error stream and ends the process with exit status 1.
[[noreturn]] void FailedWrite(const std::string& name);

}  // namespace lintara
