#include "kmer/open_matrix.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>

#include "kmer/diagonal.h"
#include "kmer/laid_reads.h"
#include "kmer/overlap_matrix.h"
#include "kmer/seed_words.h"
#include "kmer/shared_kmer.h"
#include "run/settings.h"

namespace lintara {

namespace {

const int MOST_READS = 65535;

}  // namespace

struct OpenMatrix::State {
    const std::vector<Read>* reads = nullptr;
    int method = 0;
    int type = 0;
    LaidReads whole{};  // the block as it was begun
    LaidReads cut{};    // the same behind the cuts at the edges; of no use when no inner read is cut
    PairFinder finder{};
    SampledWords samples{};
    bool may_be_cut = false;  // an inner read is longer than an edge
    std::unique_ptr<std::uint8_t[]> cells{};
    std::unique_ptr<std::uint8_t* []> rows {};
    std::size_t room = 0;                   // reads for which cells and rows are enough
    std::vector<std::uint8_t> settled{};    // by read: all its pairs are known
    std::vector<std::uint8_t> met{};        // by read: it needs no second look for the read that is being settled
    std::vector<std::uint64_t> partners{};  // by settled read, a bit for each read: a cell of the two may be above 0
    std::size_t partner_words = 0;          // of one read
    int anchor = -1;                        // the read whose line was asked for last; the pairs asked for overlap it

    /// The rows of num reads, with the cells of the first and the last read 0. The others are written by Release().
    void MakeCells(int num) {
        const std::size_t width = static_cast<std::size_t>(num);
        if (width > room) {
            rows.reset();
            cells.reset();
            rows.reset(detail::NewRows(width));
            cells.reset(detail::NewCells(width * width));
            room = width;
        }
        for (std::size_t i = 0; i < width; ++i) {
            rows[i] = cells.get() + i * width;
            rows[i][0] = rows[i][width - 1] = 0;
        }
        std::memset(rows[0], 0, width);
        std::memset(rows[width - 1], 0, width);
    }

    /// The block whose overlaps are sought.
    LaidReads& laid() { return may_be_cut ? cut : whole; }

    /// Whether the reads of an overlap, as overlap() gives it, share a k-mer. What was cut off counts too.
    bool ShareKmer(int one, int two, FoundOverlap overlap) {
        const LaidRead& left = laid().reads[overlap.length > 0 ? one : two];
        const LaidRead& right = laid().reads[overlap.length > 0 ? two : one];
        const int n = std::abs(overlap.length);
        return SurelyShareKey(left.bases + left.length - n, right.bases, n, overlap.equal) ||
               ShareKey(whole.reads[one], whole.reads[two], whole.plan.pattlen);
    }

    /// Writes the cells of two reads.
    /// @param overlap  overlap() of the two, the one of the lower number first
    /// @param share    they are known to share a k-mer
    void Settle(int a, int b, FoundOverlap overlap, bool share) {
        const int one = std::min(a, b);
        const int two = std::max(a, b);
        const int length1 = laid().reads[one].length;
        const int length2 = laid().reads[two].length;
        const int n = std::abs(overlap.length);
        const bool counts = n > 0 && n < length1 && n < length2 && (share || ShareKmer(one, two, overlap));
        detail::SettleCells(rows.get(), one, two, length1, length2, counts ? overlap.length : 0);
    }

    std::uint64_t* PartnersOf(int read) { return partners.data() + static_cast<std::size_t>(read) * partner_words; }

    void NotePartner(int read, int other) {
        const auto bit = static_cast<unsigned int>(other);
        PartnersOf(read)[bit / 64] |= std::uint64_t{1} << (bit % 64);
    }

    bool IsPartner(int read, int other) {
        const auto bit = static_cast<unsigned int>(other);
        return (PartnersOf(read)[bit / 64] >> (bit % 64) & 1) != 0;
    }

    /// Whether the cells of two reads need no look at their bases any more; the other is noted if one may be above 0.
    bool KnowsPair(int read, int other) {
        if (settled[other] != 0) {
            if (IsPartner(other, read)) NotePartner(read, other);
            return true;
        }
        if (rows[read][other] == OPEN_CELL) return false;
        NotePartner(read, other);
        return true;
    }

    /// Settles all pairs of a read that share a k-mer, and notes them; both reads' cells that are still open afterwards
    /// are 0.
    void SettlePartners(int read) {
        if (settled[read] != 0) return;
        settled[read] = 1;
        finder.Enter(read);
        // The edges' cells are the caller's, and may be anything.
        for (int edge = 0; edge < whole.start; ++edge) NotePartner(read, edge);
        for (int edge = whole.end; edge < whole.num(); ++edge) NotePartner(read, edge);
        const LaidRead& given = whole.reads[read];
        const auto settle_unseen = [&](int other) {
            if (KnowsPair(read, other)) return;
            Settle(read, other, finder.OverlapWithEntered(other), false);
            NotePartner(read, other);
        };
        if (!samples.Covers(given)) {
            for (int other = whole.start; other < whole.end; ++other) settle_unseen(other);
            return;
        }
        met.assign(whole.reads.size(), 0);
        samples.EachLead(read, given, may_be_cut ? nullptr : &finder.entered_places(), [&](int other, int shift) {
            if (met[other] != 0) return true;
            if (!KnowsPair(read, other)) {
                Diagonal diagonal;
                LayUnder(given, whole.reads[other], shift, whole.longest, diagonal);
                if (!samples.ShareKeyOn(given, whole.reads[other], diagonal)) return false;
                // Behind cuts the diagonal is another one.
                const FoundOverlap overlap =
                    may_be_cut ? finder.OverlapWithEntered(other) : finder.OverlapWithEntered(other, diagonal);
                Settle(read, other, overlap, true);
                NotePartner(read, other);
            }
            met[other] = 1;
            return true;
        });
        for (const int other : samples.strange()) settle_unseen(other);
    }

    bool IsInner(int read) const { return read >= whole.start && read < whole.end; }

    void SettleRow(int read) {
        if (!IsInner(read)) return;
        SettlePartners(read);
        std::uint8_t* row = rows[read];
        for (int i = whole.start, end = whole.end; i < end; ++i) row[i] = row[i] == OPEN_CELL ? 0 : row[i];
    }

    void SettleColumn(int read) {
        if (!IsInner(read)) return;
        SettlePartners(read);
        std::uint8_t* const* from = rows.get();
        for (int i = whole.start, end = whole.end; i < end; ++i) {
            std::uint8_t& cell = from[i][read];
            if (cell == OPEN_CELL) cell = 0;
        }
    }

    void SettlePair(int a, int b) {
        if (!IsInner(a) || !IsInner(b)) return;
        const int one = a < b ? a : b;
        const int two = a < b ? b : a;
        if (settled[one] != 0 || settled[two] != 0) {
            if (rows[one][two] == OPEN_CELL) rows[one][two] = 0;
            if (rows[two][one] == OPEN_CELL) rows[two][one] = 0;
            return;
        }
        Diagonal diagonal;
        if (GuessSharedKey(one, two, diagonal)) {
            Settle(one, two, finder.Overlap(one, two, diagonal), true);
        } else {
            Settle(one, two, finder.Overlap(one, two), false);
        }
    }

    /// Where a read stands by its overlap with the anchor: base 0 of it under this base of the anchor.
    /// @return whether they overlap
    bool PlaceAtAnchor(int read, int& place) const {
        const int right = rows[anchor][read];
        const int left = rows[read][anchor];
        if (right != 0 && right != OPEN_CELL) {
            place = whole.reads[anchor].length - right;
            return true;
        }
        place = left - whole.reads[read].length;
        return left != 0 && left != OPEN_CELL;
    }

    /// Whether two reads share a k-mer when they stand to each other as their overlaps with the anchor tell.
    /// @param diagonal  out: two under one
    bool GuessSharedKey(int one, int two, Diagonal& diagonal) const {
        const LaidRead& left = whole.reads[one];
        const LaidRead& right = whole.reads[two];
        int place1 = 0;
        int place2 = 0;
        if (anchor < 0 || may_be_cut || !samples.Covers(left) || !samples.Covers(right)) return false;
        if (!PlaceAtAnchor(one, place1) || !PlaceAtAnchor(two, place2)) return false;
        const int shift = place2 - place1;
        if (shift >= left.length || -shift >= right.length) return false;
        LayUnder(left, right, shift, whole.longest, diagonal);
        return samples.ShareKeyOn(left, right, diagonal);
    }
};

namespace {

thread_local OpenMatrix* open_matrix = nullptr;

}  // namespace

std::unique_ptr<OpenMatrix::State>& OpenMatrix::Spare() {
    thread_local std::unique_ptr<State> spare;
    return spare;
}

OpenMatrix::OpenMatrix() : state_(std::move(Spare())), outer_(open_matrix) {
    if (state_ == nullptr) state_ = std::make_unique<State>();
    open_matrix = this;
}

OpenMatrix::~OpenMatrix() {
    open_matrix = outer_;
    Spare() = std::move(state_);
}

bool OpenMatrix::Begin(const std::vector<Read>& reads, int method, int type) {
    const int num = static_cast<int>(reads.size());
    if (Kmer < 1 || num > MOST_READS || !WordsCover(reads, method, type)) return false;
    State& state = *state_;
    LaidReads& whole = state.whole;
    LayOut(reads, type, detail::PlanSeeds(method), whole);
    if (!CountsFit(whole)) return false;
    state.reads = &reads;
    state.method = method;
    state.type = type;
    state.may_be_cut = (whole.start > 0 && whole.reads.front().length < whole.longest) ||
                       (whole.end < num && whole.reads.back().length < whole.longest);
    state.finder.Begin(whole, method);
    state.MakeCells(num);
    if (type == 2 && ShareKey(whole.reads.front(), whole.reads.back(), whole.plan.pattlen)) state.rows[0][num - 1] = 1;
    return true;
}

void OpenMatrix::MeasureBeforeEdge(std::vector<int>& overlaps) {
    if (!state_->may_be_cut) state_->finder.OverlapBeforeEdge(overlaps);
}

void OpenMatrix::MeasureAfterEdge(std::vector<int>& overlaps) {
    State& state = *state_;
    const int edge = state.whole.num() - 1;
    const int length = static_cast<int>((*state.reads)[edge].seq.size());
    if (state.may_be_cut || length < state.whole.longest) return;
    if (length < state.whole.reads[edge].length) LayOutAgain(*state.reads, edge, state.whole);
    state.finder.OverlapAfterEdge(overlaps);
}

void OpenMatrix::Release() {
    State& state = *state_;
    if (state.may_be_cut) {
        LayOut(*state.reads, state.type, state.whole.plan, state.cut);
        state.finder.Begin(state.cut, state.method);
    }
    state.anchor = -1;
    state.samples.Index(state.whole);
    state.settled.assign(state.whole.reads.size(), 0);
    state.partner_words = state.whole.reads.size() / 64 + 1;
    state.partners.assign(state.whole.reads.size() * state.partner_words, 0);
    const int start = state.whole.start;
    const int end = state.whole.end;
    for (int i = start; i < end; ++i) {
        std::memset(state.rows[i] + start, OPEN_CELL, static_cast<std::size_t>(end - start));
        state.rows[i][i] = 0;
    }
}

std::uint8_t** OpenMatrix::cells() {
    return state_->rows.get();
}

namespace detail {

void SettlePair(const std::uint8_t* const* matrix, int a, int b) {
    if (open_matrix == nullptr || open_matrix->cells() != matrix) return;
    open_matrix->state_->SettlePair(a, b);
}

}  // namespace detail

Partners SettledPartners(const std::uint8_t* const* matrix, int read) {
    if (open_matrix == nullptr || open_matrix->cells() != matrix) return {};
    OpenMatrix::State& state = *open_matrix->state_;
    state.anchor = read;
    if (!state.IsInner(read)) return {};
    state.SettlePartners(read);
    return {state.PartnersOf(read), state.partner_words};
}

void SettleRow(const std::uint8_t* const* matrix, int read) {
    if (open_matrix != nullptr && open_matrix->cells() == matrix) open_matrix->state_->SettleRow(read);
}

void SettleColumn(const std::uint8_t* const* matrix, int read) {
    if (open_matrix != nullptr && open_matrix->cells() == matrix) open_matrix->state_->SettleColumn(read);
}

void SettleAll(const std::uint8_t* const* matrix, int num) {
    for (int read = 0; read < num; ++read) SettleRow(matrix, read);
}

}  // namespace lintara
