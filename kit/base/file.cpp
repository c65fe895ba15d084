#include "kit/base/file.h"

#include <fmt/format.h>
#include <htslib/bgzf.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "kit/base/error.h"

namespace lintara::kit {

LineReader::LineReader(const std::string& path) : path_(path), buffer_(1 << 16) {
    errno = 0;
    file_ = gzopen(path.c_str(), "rb");
    if (file_ == nullptr) throw Error(fmt::format("cannot read {}: {}", path, std::strerror(errno)));
}

LineReader::~LineReader() {
    gzclose(file_);
}

bool LineReader::Fill() {
    errno = 0;
    int got = gzread(file_, buffer_.data(), static_cast<unsigned>(buffer_.size()));
    int fault = Z_OK;
    const char* words = gzerror(file_, &fault);
    if (got < 0 || (got == 0 && fault != Z_OK && fault != Z_STREAM_END)) {
        std::string reason = fault == Z_ERRNO ? std::strerror(errno) : words;
        if (fault == Z_BUF_ERROR) reason = "the compressed file is cut short";
        throw Error(fmt::format("cannot read {}: {}", path_, reason));
    }
    begin_ = 0;
    end_ = static_cast<size_t>(got);
    return got > 0;
}

bool LineReader::Next(std::string& line) {
    line.clear();
    bool any = false;
    while (begin_ < end_ || Fill()) {
        any = true;
        const char* from = buffer_.data() + begin_;
        const void* stop = std::memchr(from, '\n', end_ - begin_);
        if (stop != nullptr) {
            size_t length = static_cast<size_t>(static_cast<const char*>(stop) - from);
            line.append(from, length);
            begin_ += length + 1;
            break;
        }
        line.append(from, end_ - begin_);
        begin_ = end_;
    }
    if (!any) return false;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    ++number_;
    return true;
}

AtomicFile::AtomicFile(const std::string& path, Format format)
    : path_(path), temporary_(path + ".tmp"), format_(format) {
    errno = 0;
    bool open = false;
    if (format == Format::kPlain) {
        plain_ = std::fopen(temporary_.c_str(), "wb");
        open = plain_ != nullptr;
    } else if (format == Format::kGzip) {
        gzip_ = gzopen(temporary_.c_str(), "wb6");
        open = gzip_ != nullptr;
    } else {
        bgzip_ = bgzf_open(temporary_.c_str(), "w");
        open = bgzip_ != nullptr;
    }
    if (!open) throw Error(fmt::format("cannot write {}: {}", path, std::strerror(errno)));
}

void AtomicFile::Write(std::string_view text) {
    if (text.empty()) return;
    errno = 0;
    bool good = false;
    if (plain_ != nullptr) {
        good = std::fwrite(text.data(), 1, text.size(), plain_) == text.size();
    } else if (gzip_ != nullptr) {
        good = gzwrite(gzip_, text.data(), static_cast<unsigned>(text.size())) == static_cast<int>(text.size());
    } else {
        good = bgzf_write(static_cast<BGZF*>(bgzip_), text.data(), text.size()) == static_cast<ssize_t>(text.size());
    }
    if (!good) throw Error(fmt::format("cannot write {}: {}", path_, std::strerror(errno != 0 ? errno : EIO)));
}

void AtomicFile::Close(bool check) {
    errno = 0;
    bool good = true;
    if (plain_ != nullptr) {
        good = std::fflush(plain_) == 0;
        if (check && good) good = fsync(fileno(plain_)) == 0 || errno == EINVAL;
        good = std::fclose(plain_) == 0 && good;
    }
    if (gzip_ != nullptr) good = gzclose(gzip_) == Z_OK;
    if (bgzip_ != nullptr) good = bgzf_close(static_cast<BGZF*>(bgzip_)) == 0;
    plain_ = nullptr;
    gzip_ = nullptr;
    bgzip_ = nullptr;
    if (check && !good) {
        int reason = errno != 0 ? errno : EIO;
        unlink(temporary_.c_str());
        temporary_.clear();
        throw Error(fmt::format("cannot write {}: {}", path_, std::strerror(reason)));
    }
}

void AtomicFile::Commit() {
    Close(true);
    if (std::rename(temporary_.c_str(), path_.c_str()) != 0) {
        throw Error(fmt::format("cannot write {}: {}", path_, std::strerror(errno)));
    }
    temporary_.clear();
}

AtomicFile::~AtomicFile() {
    Close(false);
    if (!temporary_.empty()) unlink(temporary_.c_str());
}

void CheckReadFiles(const std::vector<std::string>& reads1, const std::vector<std::string>& reads2) {
    std::error_code ignored;
    for (const std::vector<std::string>* files : {&reads1, &reads2}) {
        for (const std::string& file : *files) {
            LineReader test(file);
            if (std::filesystem::is_regular_file(file, ignored)) continue;
            throw Error(fmt::format("cannot read {}: this is no file; reads are read more than once", file));
        }
    }
    for (size_t i = 0; i < std::min(reads1.size(), reads2.size()); ++i) {
        if (!std::filesystem::equivalent(reads1[i], reads2[i], ignored)) continue;
        throw Error(
            fmt::format("{} and {} are the same file: the two mates of a pair are needed", reads1[i], reads2[i]));
    }
}

long EstimateReads(const std::string& path) {
    constexpr long kLines = 40'000;
    std::error_code fault;
    double size = static_cast<double>(std::filesystem::file_size(path, fault));
    LineReader reader(path);
    std::string line;
    while (reader.Number() < kLines && reader.Next(line)) {
    }
    long reads = reader.Number() / 4;
    if (reader.Number() < kLines || fault || reader.Offset() <= 0) return reads;
    return static_cast<long>(static_cast<double>(reads) * size / static_cast<double>(reader.Offset()));
}

std::string ReadWhole(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw Error(fmt::format("cannot read {}: {}", path, std::strerror(errno)));
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

std::string FirstBytes(const std::string& path, size_t most) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw Error(fmt::format("cannot read {}: {}", path, std::strerror(errno)));
    std::string bytes(most, '\0');
    in.read(bytes.data(), static_cast<std::streamsize>(most));
    bytes.resize(static_cast<size_t>(in.gcount()));
    return bytes;
}

std::string LastLines(const std::string& path, int lines) {
    std::ifstream in(path);
    std::vector<std::string> kept;
    for (std::string line; std::getline(in, line);) {
        if (line.find_first_not_of(" \t\r") == std::string::npos) continue;
        kept.push_back(line);
        if (static_cast<int>(kept.size()) > lines) kept.erase(kept.begin());
    }
    std::string text;
    for (const std::string& line : kept) text += (text.empty() ? "" : "; ") + line;
    return text;
}

std::vector<std::string> SplitTabs(const std::string& line) {
    std::vector<std::string> fields;
    size_t from = 0;
    while (true) {
        size_t tab = line.find('\t', from);
        fields.push_back(line.substr(from, tab == std::string::npos ? tab : tab - from));
        if (tab == std::string::npos) return fields;
        from = tab + 1;
    }
}

}  // namespace lintara::kit
