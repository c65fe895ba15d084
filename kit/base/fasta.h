// FASTA in the way a user wrote it: order, names, descriptions and the case of the bases are kept, so that they can be
// given back unchanged.
#pragma once

#include <string>
#include <vector>

#include "kit/base/file.h"

namespace lintara::kit {

struct FastaRecord {
    std::string name;         ///< first word of the header; may be empty and may occur twice
    std::string description;  ///< rest of the header behind the first white space; may be empty
    std::string sequence;     ///< bases as they stand, white space taken out
    long line = 0;            ///< line of the header, from 1
};

/// Reads a plain or gzip-compressed FASTA file. Throws Error with file, line and value when text stands in front of the
/// first header, when a sequence holds a character that is no letter, '-' or '*', or when the file has no record.
std::vector<FastaRecord> ReadFasta(const std::string& path);

/// Header (without '>') and sequence in lines of 80 columns.
void WriteFasta(AtomicFile& out, const std::string& name, const std::string& description, const std::string& sequence);

/// Number of an upper-case base: A 0, C 1, G 2, T 3; -1 for any other letter.
int BaseCode(char base);

/// Reverse complement of upper-case bases; every other letter becomes N.
std::string ReverseComplement(const std::string& bases);

std::string Upper(const std::string& bases);
std::string Lower(const std::string& bases);

}  // namespace lintara::kit
