// Files: reading line by line through zlib, which takes plain and gzip-compressed files alike, and writing under a
// temporary name, so that a file bears its final name only when it is complete.
#pragma once

#include <zlib.h>

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace lintara::kit {

/// Reads lines of a plain or gzip-compressed file. Throws Error when the file cannot be opened or is damaged.
class LineReader {
  public:
    explicit LineReader(const std::string& path);
    ~LineReader();
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;

    /// Next line without its line end; a carriage return in front of it goes too. False at the end of the file.
    bool Next(std::string& line);
    long Number() const { return number_; }  ///< number of the line last read, from 1
    const std::string& Path() const { return path_; }
    /// Bytes of the file, compressed ones if it is, that were read so far.
    long Offset() const { return gzoffset(file_); }

  private:
    bool Fill();

    std::string path_;
    gzFile file_ = nullptr;
    std::vector<char> buffer_;
    size_t begin_ = 0;
    size_t end_ = 0;
    long number_ = 0;
};

/// Writes PATH + ".tmp"; Commit() moves it to PATH. Without a Commit() the destructor removes the temporary file.
/// Every failure (also a full disk) throws Error with the path and the system's reason.
class AtomicFile {
  public:
    enum class Format { kPlain, kGzip, kBgzip };

    explicit AtomicFile(const std::string& path, Format format = Format::kPlain);
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    void Write(std::string_view text);
    void Commit();

  private:
    void Close(bool check);

    std::string path_;
    std::string temporary_;
    Format format_;
    std::FILE* plain_ = nullptr;
    gzFile gzip_ = nullptr;
    void* bgzip_ = nullptr;
};

/// Read pairs are read anew in each round: throws Error when a file cannot be read or is no file (a pipe, a folder),
/// and when the two mates of a library are one and the same file.
void CheckReadFiles(const std::vector<std::string>& reads1, const std::vector<std::string>& reads2);

/// Reads of a FASTQ file, judged by the bytes that its first ones take. 0: unknown.
long EstimateReads(const std::string& path);

/// Whole content of a plain file. Throws Error when it cannot be read.
std::string ReadWhole(const std::string& path);

/// The first bytes of a file as they stand in it, or all of one that has fewer. Throws Error when it cannot be read.
std::string FirstBytes(const std::string& path, size_t most);

/// Last lines of a text file (at most `lines`, without empty ones), joined by "; ". Empty when there are none.
std::string LastLines(const std::string& path, int lines);

/// Fields of a tab-separated line.
std::vector<std::string> SplitTabs(const std::string& line);

}  // namespace lintara::kit
