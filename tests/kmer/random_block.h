// Random blocks of reads that overlap: what the plain and the fast roads to the overlap matrix are compared on.
#pragma once

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "run/settings.h"
#include "store/gap.h"

namespace lintara::testing {

/// How the reads of a random block look.
struct BlockKind {
    int num = 40;              ///< reads
    int shortest = 20;         ///< bases
    int longest = 100;         ///< bases
    int genome = 250;          ///< bases that the reads are cut from
    int unit = 0;              ///< length of the unit that the genome repeats; 0: none
    double error = 0.01;       ///< share of bases that are replaced
    const char* others = "N";  ///< what a base may be replaced by beside other bases
};

inline int Uniform(std::mt19937& random, int low, int high) {
    return low + static_cast<int>(random() % static_cast<unsigned int>(high - low + 1));
}

inline std::string RandomGenome(std::mt19937& random, const BlockKind& kind) {
    std::string genome;
    for (int i = 0; i < kind.genome; ++i) {
        genome += kind.unit > 0 && i >= kind.unit && random() % 50 != 0 ? genome[i - kind.unit] : base[random() % 4];
    }
    return genome;
}

inline std::string ReadOf(std::mt19937& random, const std::string& genome, int length, const BlockKind& kind) {
    const std::string others = std::string("ACGT") + kind.others;
    length = std::min(length, static_cast<int>(genome.size()));
    std::string seq = genome.substr(Uniform(random, 0, static_cast<int>(genome.size()) - length), length);
    for (char& byte : seq) {
        if (random() % 10000 < kind.error * 10000) byte = others[random() % others.size()];
    }
    return seq;
}

/// A block whose first and last read are of edge_length bases from the ends of the genome, as a block with edges is.
inline std::vector<Read> RandomBlock(std::mt19937& random, const BlockKind& kind, int edge_length) {
    const std::string genome = RandomGenome(random, kind);
    std::vector<Read> reads;
    reads.emplace_back(genome.substr(0, edge_length), 0);
    for (int i = 2; i < kind.num; ++i) {
        reads.emplace_back(ReadOf(random, genome, Uniform(random, kind.shortest, kind.longest), kind), 0);
    }
    reads.emplace_back(genome.substr(genome.size() - std::min<std::size_t>(edge_length, genome.size())), 0);
    return reads;
}

}  // namespace lintara::testing
