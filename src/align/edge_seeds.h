// Overlaps of one sequence with many: of an edge, or of what was grown from it, with read after read.
//
// Stands in place of the text search of each seed in overlap_before_len(), overlap_after_len() and forward_overlap().
// The edge's stretches of a seed's length lie in a hash table by their first place, so that a read's seed is one look,
// and the edge's own few seeds are sought in a read all at once. Order of seeds and stages, and so every result, is
// that of the plain finders, which are asked wherever settings or lengths are beyond the tables.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace lintara {

class EdgeSeeds {
  public:
    /// @param edge  outlives this and does not change meanwhile
    explicit EdgeSeeds(const std::string& edge);

    const std::string& Edge() const { return edge_; }

    /// Whether the tables stand for the search of seeds by this method in and from that text.
    bool Covers(const std::string& text, int method) const;

    /// Bases of a seed.
    int Length() const { return length_; }

    /// Leftmost place in the edge of the seed that begins at `seed`, or -1.
    int PlaceOf(const char* seed) const;

    static const int MOST_SEEDS = 8;
    using Places = std::array<int, MOST_SEEDS>;

    /// Leftmost place in a text of each of the edge's own seeds, or -1.
    void PlacesIn(const std::string& text, Places& places) const;

  private:
    void FillTable() const;
    void FillSamples();

    const std::string& edge_;
    int length_ = 0;
    int number_ = 0;                          // the edge's own seeds; 0 where nothing is covered
    mutable int plain_searches_ = 0;          // before the table is worth its making
    mutable unsigned int shift_ = 0;          // bits of a hash beyond a slot's number
    mutable std::vector<int> slots_{};        // by hash, then the next free one: place of a stretch, or -1
    std::array<std::uint32_t, 256> samples_;  // by 4 bases: where the seeds have them, 4 bits a seed
};

/// The finders of align/overlap.h with an edge in place of a sequence.
int forward_overlap(const EdgeSeeds& str1, const std::string& str2, int method, double match_ratio);
int overlap_before_len(const EdgeSeeds& before, const std::string& str, int method, int& before_len,
                       double match_ratio);
int overlap_after_len(const std::string& str, const EdgeSeeds& after, int method, int& after_len, double match_ratio);

}  // namespace lintara
