// The gap file's records by stream extraction alone: the plain twin of GapFile.
#pragma once

#include <cstdlib>
#include <istream>
#include <string>

#include "store/gap_file.h"
#include "store/gzstream.h"

namespace lintara::testing {

class StreamGapFile {
  public:
    explicit StreamGapFile(const std::string& file) : in_(file.c_str(), 0, std::ios::in) {}

    bool ReadHeader(GapHeader& header) {
        SkipSpace();
        header_line_ = line_;
        std::string name;
        if (!(in_ >> name)) return false;
        header.marked = name[0] == '>';
        header.gap = std::atoi(name.c_str() + 1);
        SkipSpace();
        if (!(in_ >> header.length)) return false;
        SkipSpace();
        if (!(in_ >> header.position)) return false;
        SkipSpace();
        if (!(in_ >> header.scaffold)) return false;
        SkipSpace();
        return static_cast<bool>(in_ >> header.contig);
    }

    std::string ReadSequence() {
        std::string rest;
        std::string sequence;
        std::getline(in_, rest);
        std::getline(in_, sequence);
        line_ += 2;
        return sequence;
    }

    long HeaderLine() const { return header_line_; }

  private:
    void SkipSpace() {
        std::streambuf& from = *in_.rdbuf();
        for (int c = from.sgetc(); c == ' ' || (c >= '\t' && c <= '\r'); c = from.snextc()) {
            if (c == '\n') ++line_;
        }
    }

    igzstream in_;
    long line_ = 1;
    long header_line_ = 1;
};

}  // namespace lintara::testing
