// Where a run stands: each scaffold as a row of pieces. A piece is a stretch of the original scaffold, a filled
// stretch, or an open run of N; the pieces in their order are the scaffold as it is now. Rounds turn open pieces into
// filled ones. Trimming does not change pieces: it only hides bases beside an open piece from the mapper and the core
// program, so that they come back when the next round finds nothing better.
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "kit/assign/layout.h"

namespace lintara::kit {

enum class PieceKind { kContig, kFill, kOpen };

struct Piece {
    PieceKind kind = PieceKind::kContig;
    Span span;                 ///< kContig: interval of the original scaffold
    int gap = 0;               ///< kFill, kOpen: number of the original gap, from 1
    std::string bases;         ///< kFill: upper case
    std::vector<int> support;  ///< kFill: reads that show the base, -1: unknown; as long as `bases`
    std::vector<int> depth;    ///< kFill: reads over the base, -1: unknown
    int round = 0;             ///< kFill
    std::string strategy;      ///< kFill: small, middle or big
    long length = 0;           ///< kOpen: N; at least 1
    long trimLeft = 0;         ///< kOpen: bases hidden of the stretch in front of it
    long trimRight = 0;        ///< kOpen: bases hidden of the stretch behind it

    long Size() const;
};

/// What is known of one original gap.
struct GapRecord {
    int scaffold = 0;    ///< index
    Span span;           ///< interval in the original scaffold
    bool atEnd = false;  ///< a contig is missing on one side, so that it cannot be filled
    bool cut = false;    ///< bases of a flanking contig were taken away, since the contigs overlap
    int round = 0;       ///< last round that changed it; 0: none
    std::string strategy = "none";
    long reads = 0;      ///< assigned in the round that changed it last; in the last round if none did
    std::string reason;  ///< in plain words
};

struct ScaffoldState {
    std::vector<Piece> pieces;
};

struct State {
    int round = 0;        ///< last complete round
    bool gaining = true;  ///< false: the last round changed nothing
    std::vector<ScaffoldState> scaffolds;
    std::vector<GapRecord> gaps;  ///< gap g is at g - 1
};

/// What the core program made of one gap of a layout.
struct GapResult {
    int gap = 0;         ///< id in the layout
    bool known = false;  ///< false: the core program said nothing of it
    std::string text;    ///< upper case bases and N; empty: the contigs touch
    long cutBefore = 0;  ///< bases taken off the end of the contig in front
    long cutAfter = 0;   ///< bases taken off the begin of the contig behind
    std::string strategy = "none";
    std::string reason;
    long reads = 0;
    std::vector<int> support;  ///< per base of text, -1: unknown
    std::vector<int> depth;
};

/// Place of a layout's gap: the open piece that it stands for.
struct PiecePlace {
    int scaffold = 0;
    size_t piece = 0;
};

State StartState(const std::vector<FastaRecord>& records, long minGap);

/// Hides 10 more bases on each side of the open pieces, where what stands there is longer than 300 bases.
void TrimForNextRound(State& state);
/// Does so only on those sides where nothing is hidden yet.
void TrimFreshEnds(State& state);
inline constexpr long kTrim = 10;
inline constexpr long kTrimAbove = 300;

/// The scaffolds as they are now, named s1, s2 ..., with trimmed bases as N. `places` is indexed by gap id less 1.
Layout LayoutOf(const State& state, const std::vector<FastaRecord>& records, std::vector<PiecePlace>& places);

struct RoundGain {
    int gaps = 0;    ///< open pieces that changed
    long bases = 0;  ///< bases in new filled stretches
    int closed = 0;  ///< open pieces that are gone
    /// Numbers of the original gaps that changed; one with several open pieces more than once.
    std::vector<int> gained;
};

/// Puts the results of round `round` into the state. A result that gains nothing leaves its piece as it is.
RoundGain ApplyResults(State& state, const std::vector<FastaRecord>& records, const std::vector<PiecePlace>& places,
                       const std::vector<GapResult>& results, int round);

/// Islands of filled bases between N that are shorter than this are not kept: nothing can be built on them.
inline constexpr long kLeastIsland = 32;

nlohmann::json StateToJson(const State& state);
State StateFromJson(const nlohmann::json& json);

/// Text of a piece, contigs in their original case, filled bases in lower case.
std::string PieceText(const Piece& piece, const FastaRecord& record);

}  // namespace lintara::kit
