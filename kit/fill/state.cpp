#include "kit/fill/state.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace lintara::kit {

long Piece::Size() const {
    if (kind == PieceKind::kContig) return span.Length();
    if (kind == PieceKind::kFill) return static_cast<long>(bases.size());
    return length;
}

State StartState(const std::vector<FastaRecord>& records, long minGap) {
    State state;
    for (size_t s = 0; s < records.size(); ++s) {
        const std::string& text = records[s].sequence;
        long size = static_cast<long>(text.size());
        ScaffoldState scaffold;
        long at = 0;
        auto addContig = [&](long end) {
            if (end <= at) return;
            Piece contig;
            contig.span = {at, end};
            scaffold.pieces.push_back(std::move(contig));
        };
        for (const Span& run : FindRuns(text, minGap)) {
            addContig(run.start);
            GapRecord gap;
            gap.scaffold = static_cast<int>(s);
            gap.span = run;
            gap.atEnd = run.start == 0 || run.end == size;
            if (gap.atEnd) gap.reason = "the gap lies at the end of its scaffold";
            state.gaps.push_back(std::move(gap));
            Piece open;
            open.kind = PieceKind::kOpen;
            open.gap = static_cast<int>(state.gaps.size());
            open.length = run.Length();
            scaffold.pieces.push_back(std::move(open));
            at = run.end;
        }
        addContig(size);
        for (size_t i = 0; i < scaffold.pieces.size(); ++i) {
            if (scaffold.pieces[i].kind != PieceKind::kOpen) continue;
            bool shortBefore = i > 0 && scaffold.pieces[i - 1].Size() < kLeastContig;
            bool shortAfter = i + 1 < scaffold.pieces.size() && scaffold.pieces[i + 1].Size() < kLeastContig;
            GapRecord& gap = state.gaps[static_cast<size_t>(scaffold.pieces[i].gap) - 1];
            if (!gap.atEnd && (shortBefore || shortAfter)) gap.reason = "a contig beside the gap is a single base";
        }
        state.scaffolds.push_back(std::move(scaffold));
    }
    return state;
}

namespace {

bool IsOpen(const Piece& piece) {
    return piece.kind == PieceKind::kOpen;
}

/// Bases between this open piece (or the scaffold's begin) and the next one, walking from `from` by `step`.
long StretchLength(const std::vector<Piece>& pieces, size_t from, int step) {
    long length = 0;
    for (long i = static_cast<long>(from); i >= 0 && i < static_cast<long>(pieces.size()); i += step) {
        if (IsOpen(pieces[static_cast<size_t>(i)])) break;
        length += pieces[static_cast<size_t>(i)].Size();
    }
    return length;
}

std::string UpperText(const Piece& piece, const FastaRecord& record) {
    if (piece.kind == PieceKind::kFill) return piece.bases;
    if (IsOpen(piece)) return std::string(static_cast<size_t>(piece.length), 'N');
    return Upper(
        record.sequence.substr(static_cast<size_t>(piece.span.start), static_cast<size_t>(piece.span.Length())));
}

void Trim(State& state, bool freshOnly) {
    for (ScaffoldState& scaffold : state.scaffolds) {
        std::vector<Piece>& pieces = scaffold.pieces;
        // Both ends of a stretch are trimmed by its length before this round's trimming.
        std::vector<std::pair<bool, bool>> trims(pieces.size());
        for (size_t i = 0; i < pieces.size(); ++i) {
            if (!IsOpen(pieces[i])) continue;
            size_t left = i;
            while (left > 0 && !IsOpen(pieces[left - 1])) --left;
            size_t right = i + 1;
            while (right < pieces.size() && !IsOpen(pieces[right])) ++right;
            long before = i == 0 ? 0 : StretchLength(pieces, i - 1, -1);
            long after = StretchLength(pieces, i + 1, 1);
            before -= pieces[i].trimLeft + (left > 0 ? pieces[left - 1].trimRight : 0);
            after -= pieces[i].trimRight + (right < pieces.size() ? pieces[right].trimLeft : 0);
            trims[i] = {before > kTrimAbove, after > kTrimAbove};
        }
        for (size_t i = 0; i < pieces.size(); ++i) {
            if (trims[i].first && (!freshOnly || pieces[i].trimLeft == 0)) pieces[i].trimLeft += kTrim;
            if (trims[i].second && (!freshOnly || pieces[i].trimRight == 0)) pieces[i].trimRight += kTrim;
        }
    }
}

}  // namespace

void TrimForNextRound(State& state) {
    Trim(state, false);
}

void TrimFreshEnds(State& state) {
    Trim(state, true);
}

Layout LayoutOf(const State& state, const std::vector<FastaRecord>& records, std::vector<PiecePlace>& places) {
    Layout layout;
    places.clear();
    for (size_t s = 0; s < state.scaffolds.size(); ++s) {
        const std::vector<Piece>& pieces = state.scaffolds[s].pieces;
        Sequence sequence;
        sequence.name = "s" + std::to_string(s + 1);
        std::vector<std::pair<size_t, Span>> opens;
        long hide = 0;  // bases to hide at the begin of what comes next
        for (size_t i = 0; i < pieces.size(); ++i) {
            if (!IsOpen(pieces[i])) {
                sequence.text += UpperText(pieces[i], records[s]);
                continue;
            }
            long start = static_cast<long>(sequence.text.size());
            if (hide > 0) opens.back().second.end += hide;
            for (long k = 0; hide > 0 && k < hide; ++k)
                sequence.text[static_cast<size_t>(opens.back().second.end - 1 - k)] = 'N';
            for (long k = 1; k <= pieces[i].trimLeft; ++k) sequence.text[static_cast<size_t>(start - k)] = 'N';
            sequence.text.append(static_cast<size_t>(pieces[i].length), 'N');
            opens.push_back({i, {start - pieces[i].trimLeft, start + pieces[i].length}});
            hide = pieces[i].trimRight;
        }
        if (hide > 0) {
            for (long k = 0; k < hide; ++k) sequence.text[static_cast<size_t>(opens.back().second.end + k)] = 'N';
            opens.back().second.end += hide;
        }
        long size = static_cast<long>(sequence.text.size());
        for (size_t g = 0; g < opens.size(); ++g) {
            long leftStart = g == 0 ? 0 : opens[g - 1].second.end;
            long rightEnd = g + 1 == opens.size() ? size : opens[g + 1].second.start;
            const Span& span = opens[g].second;
            if (span.start - leftStart < kLeastContig || rightEnd - span.end < kLeastContig) continue;
            sequence.gaps.push_back({++layout.gapCount, span, leftStart, rightEnd});
            places.push_back({static_cast<int>(s), opens[g].first});
        }
        layout.sequences.push_back(std::move(sequence));
    }
    return layout;
}

namespace {

/// A result held against the bases that were hidden beside its gap.
struct Change {
    bool any = false;      ///< the pieces take the open one's place
    bool gains = false;    ///< there are new bases, or the gap is gone
    long removeLeft = 0;   ///< bases of the stretch in front to take away
    long removeRight = 0;  ///< bases of the stretch behind
    std::vector<Piece> pieces;
};

Piece MakeFill(const GapResult& result, size_t from, size_t to, int gap, int round) {
    Piece fill;
    fill.kind = PieceKind::kFill;
    fill.gap = gap;
    fill.round = round;
    fill.strategy = result.strategy;
    fill.bases = result.text.substr(from, to - from);
    fill.support.assign(to - from, -1);
    fill.depth.assign(to - from, -1);
    for (size_t i = from; i < to; ++i) {
        if (i < result.support.size()) fill.support[i - from] = result.support[i];
        if (i < result.depth.size()) fill.depth[i - from] = result.depth[i];
    }
    return fill;
}

Piece MakeOpen(int gap, long length) {
    Piece open;
    open.kind = PieceKind::kOpen;
    open.gap = gap;
    open.length = std::max(1L, length);
    return open;
}

/// Number of first letters that two texts share.
size_t SharedFront(const std::string& a, const std::string& b) {
    size_t i = 0;
    while (i < a.size() && i < b.size() && a[i] == b[i]) ++i;
    return i;
}

size_t SharedBack(const std::string& a, const std::string& b) {
    size_t i = 0;
    while (i < a.size() && i < b.size() && a[a.size() - 1 - i] == b[b.size() - 1 - i]) ++i;
    return i;
}

/// The gap is gone: hidden bases that the text repeats stay what they were.
Change CloseGap(const GapResult& result, const std::string& hiddenLeft, const std::string& hiddenRight, int gap,
                int round) {
    Change change;
    change.any = change.gains = true;
    size_t front = result.cutBefore > 0 ? 0 : SharedFront(hiddenLeft, result.text);
    size_t back = result.cutAfter > 0 ? 0 : SharedBack(hiddenRight, result.text.substr(front));
    change.removeLeft = static_cast<long>(hiddenLeft.size() - front) + result.cutBefore;
    change.removeRight = static_cast<long>(hiddenRight.size() - back) + result.cutAfter;
    size_t end = result.text.size() - back;
    if (end > front) change.pieces.push_back(MakeFill(result, front, end, gap, round));
    return change;
}

/// N stay within the text: what grew from the two sides, and islands that are worth keeping.
Change ExtendGap(const GapResult& result, const std::string& hiddenLeft, const std::string& hiddenRight,
                 const Piece& open, int round) {
    Change change;
    const std::string& text = result.text;
    size_t prefix = text.find('N');
    size_t suffix = text.size() - 1 - text.rfind('N');
    // A side that did not grow beyond its hidden bases keeps these; what it repeats of them is hidden no longer.
    bool growsLeft = prefix > hiddenLeft.size();
    bool growsRight = suffix > hiddenRight.size();
    size_t front = growsLeft ? SharedFront(hiddenLeft, text.substr(0, prefix)) : 0;
    size_t back = growsRight ? SharedBack(hiddenRight, text.substr(text.size() - suffix)) : 0;
    if (growsLeft) {
        change.pieces.push_back(MakeFill(result, front, prefix, open.gap, round));
        change.removeLeft = static_cast<long>(hiddenLeft.size() - front);
    }
    long restored = growsLeft ? 0 : static_cast<long>(hiddenLeft.size()) - static_cast<long>(prefix);
    bool repeatsLeft = !growsLeft && prefix > 0 && SharedFront(hiddenLeft, text) >= prefix;
    bool repeatsRight = !growsRight && suffix > 0 && SharedBack(hiddenRight, text) >= suffix;
    size_t at = prefix;
    size_t stop = text.size() - suffix;
    long pending = -restored;
    bool islands = false;
    while (at < stop) {
        size_t end = at;
        bool isN = text[at] == 'N';
        while (end < stop && (text[end] == 'N') == isN) ++end;
        if (isN || static_cast<long>(end - at) < kLeastIsland) {
            pending += static_cast<long>(end - at);
        } else {
            islands = true;
            change.pieces.push_back(MakeOpen(open.gap, pending));
            change.pieces.push_back(MakeFill(result, at, end, open.gap, round));
            pending = 0;
        }
        at = end;
    }
    if (!growsRight) pending -= static_cast<long>(hiddenRight.size()) - static_cast<long>(suffix);
    change.pieces.push_back(MakeOpen(open.gap, pending));
    if (!growsLeft) {
        auto first = std::find_if(change.pieces.begin(), change.pieces.end(), IsOpen);
        first->trimLeft = open.trimLeft - (repeatsLeft ? static_cast<long>(prefix) : 0);
    }
    if (!growsRight) {
        change.pieces.back().trimRight = open.trimRight - (repeatsRight ? static_cast<long>(suffix) : 0);
    }
    if (growsRight) {
        change.pieces.push_back(MakeFill(result, text.size() - suffix, text.size() - back, open.gap, round));
        change.removeRight = static_cast<long>(hiddenRight.size() - back);
    }
    change.gains = growsLeft || growsRight || islands;
    change.any = change.gains || repeatsLeft || repeatsRight;
    return change;
}

void ShortenFill(Piece& piece, size_t from, size_t count) {
    piece.bases.erase(from, count);
    piece.support.erase(piece.support.begin() + static_cast<long>(from),
                        piece.support.begin() + static_cast<long>(from + count));
    piece.depth.erase(piece.depth.begin() + static_cast<long>(from),
                      piece.depth.begin() + static_cast<long>(from + count));
}

/// Takes `count` bases off the end of what stands in front; stops at an open piece.
void RemoveBack(std::vector<Piece>& pieces, long count) {
    while (count > 0 && !pieces.empty() && !IsOpen(pieces.back())) {
        Piece& last = pieces.back();
        long part = std::min(count, last.Size());
        count -= part;
        if (part == last.Size()) {
            pieces.pop_back();
        } else if (last.kind == PieceKind::kContig) {
            last.span.end -= part;
        } else {
            ShortenFill(last, last.bases.size() - static_cast<size_t>(part), static_cast<size_t>(part));
        }
    }
}

/// Takes up to `count` bases off the begin of a piece; returns how many went.
long RemoveFront(Piece& piece, long count) {
    long part = std::min(count, piece.Size());
    if (piece.kind == PieceKind::kContig) {
        piece.span.start += part;
    } else {
        ShortenFill(piece, 0, static_cast<size_t>(part));
    }
    return part;
}

std::string Stretch(const std::vector<Piece>& pieces, const FastaRecord& record, size_t from, int step, long count) {
    std::string text;
    for (long i = static_cast<long>(from); i >= 0 && i < static_cast<long>(pieces.size()); i += step) {
        if (static_cast<long>(text.size()) >= count || IsOpen(pieces[static_cast<size_t>(i)])) break;
        std::string part = UpperText(pieces[static_cast<size_t>(i)], record);
        text = step > 0 ? text + part : part + text;
    }
    size_t size = static_cast<size_t>(std::min(count, static_cast<long>(text.size())));
    return step > 0 ? text.substr(0, size) : text.substr(text.size() - size);
}

bool IsAllN(const std::string& text) {
    return !text.empty() && text.find_first_not_of('N') == std::string::npos;
}

Change JudgeResult(const GapResult& result, const std::vector<Piece>& pieces, size_t at, const FastaRecord& record,
                   int round) {
    const Piece& open = pieces[at];
    if (!result.known || IsAllN(result.text)) return {};
    std::string left = at == 0 ? "" : Stretch(pieces, record, at - 1, -1, open.trimLeft);
    std::string right = Stretch(pieces, record, at + 1, 1, open.trimRight);
    if (result.text.find('N') == std::string::npos) return CloseGap(result, left, right, open.gap, round);
    return ExtendGap(result, left, right, open, round);
}

void NoteOutcome(GapRecord& record, const GapResult& result, const Change& change, int round) {
    // What an earlier round has gained is told with that round's reads and reason, also when a later one gains nothing.
    if (record.round > 0 && !change.gains) return;
    record.reason = result.reason;
    record.reads = result.reads;
    if (result.strategy != "none") record.strategy = result.strategy;
    if (!change.gains) return;
    record.round = round;
    record.cut = record.cut || change.removeLeft > 0 || change.removeRight > 0;
}

}  // namespace

RoundGain ApplyResults(State& state, const std::vector<FastaRecord>& records, const std::vector<PiecePlace>& places,
                       const std::vector<GapResult>& results, int round) {
    RoundGain gain;
    std::vector<std::vector<const GapResult*>> byPiece(state.scaffolds.size());
    for (size_t s = 0; s < state.scaffolds.size(); ++s) byPiece[s].resize(state.scaffolds[s].pieces.size(), nullptr);
    for (const GapResult& result : results) {
        const PiecePlace& place = places[static_cast<size_t>(result.gap) - 1];
        byPiece[static_cast<size_t>(place.scaffold)][place.piece] = &result;
    }
    for (size_t s = 0; s < state.scaffolds.size(); ++s) {
        const std::vector<Piece>& pieces = state.scaffolds[s].pieces;
        std::vector<Piece> next;
        long remove = 0;
        for (size_t i = 0; i < pieces.size(); ++i) {
            const Piece& piece = pieces[i];
            if (!IsOpen(piece)) {
                next.push_back(piece);
                if (remove > 0) remove -= RemoveFront(next.back(), remove);
                if (next.back().Size() == 0) next.pop_back();
                continue;
            }
            remove = 0;
            const GapResult* result = byPiece[s][i];
            Change change;
            if (result != nullptr) {
                change = JudgeResult(*result, pieces, i, records[s], round);
                NoteOutcome(state.gaps[static_cast<size_t>(piece.gap) - 1], *result, change, round);
            }
            if (!change.any) {
                next.push_back(piece);
                continue;
            }
            gain.gaps += change.gains;
            if (change.gains) gain.gained.push_back(piece.gap);
            RemoveBack(next, change.removeLeft);
            remove = change.removeRight;
            bool open = false;
            for (Piece& part : change.pieces) {
                open = open || IsOpen(part);
                if (part.kind == PieceKind::kFill) gain.bases += part.Size();
                next.push_back(std::move(part));
            }
            gain.closed += !open;
        }
        state.scaffolds[s].pieces = std::move(next);
    }
    return gain;
}

std::string PieceText(const Piece& piece, const FastaRecord& record) {
    if (piece.kind == PieceKind::kFill) return Lower(piece.bases);
    if (IsOpen(piece)) return std::string(static_cast<size_t>(piece.length), 'N');
    return record.sequence.substr(static_cast<size_t>(piece.span.start), static_cast<size_t>(piece.span.Length()));
}

nlohmann::json StateToJson(const State& state) {
    using nlohmann::json;
    json scaffolds = json::array();
    for (const ScaffoldState& scaffold : state.scaffolds) {
        json pieces = json::array();
        for (const Piece& piece : scaffold.pieces) {
            if (piece.kind == PieceKind::kContig) {
                pieces.push_back({"contig", piece.span.start, piece.span.end});
            } else if (piece.kind == PieceKind::kFill) {
                pieces.push_back(
                    {"fill", piece.gap, piece.bases, piece.round, piece.strategy, piece.support, piece.depth});
            } else {
                pieces.push_back({"open", piece.gap, piece.length, piece.trimLeft, piece.trimRight});
            }
        }
        scaffolds.push_back(std::move(pieces));
    }
    json gaps = json::array();
    for (const GapRecord& gap : state.gaps) {
        gaps.push_back({gap.scaffold, gap.span.start, gap.span.end, gap.atEnd, gap.cut, gap.round, gap.strategy,
                        gap.reads, gap.reason});
    }
    return {{"round", state.round}, {"gaining", state.gaining}, {"scaffolds", scaffolds}, {"gaps", gaps}};
}

State StateFromJson(const nlohmann::json& json) {
    State state;
    state.round = json.at("round");
    state.gaining = json.at("gaining");
    for (const auto& pieces : json.at("scaffolds")) {
        ScaffoldState scaffold;
        for (const auto& from : pieces) {
            Piece piece;
            std::string kind = from.at(0);
            if (kind == "contig") {
                piece.span = {from.at(1), from.at(2)};
            } else if (kind == "fill") {
                piece.kind = PieceKind::kFill;
                piece.gap = from.at(1);
                piece.bases = from.at(2);
                piece.round = from.at(3);
                piece.strategy = from.at(4);
                piece.support = from.at(5).get<std::vector<int>>();
                piece.depth = from.at(6).get<std::vector<int>>();
            } else {
                piece.kind = PieceKind::kOpen;
                piece.gap = from.at(1);
                piece.length = from.at(2);
                piece.trimLeft = from.at(3);
                piece.trimRight = from.at(4);
            }
            scaffold.pieces.push_back(std::move(piece));
        }
        state.scaffolds.push_back(std::move(scaffold));
    }
    for (const auto& from : json.at("gaps")) {
        GapRecord gap;
        gap.scaffold = from.at(0);
        gap.span = {from.at(1), from.at(2)};
        gap.atEnd = from.at(3);
        gap.cut = from.at(4);
        gap.round = from.at(5);
        gap.strategy = from.at(6);
        gap.reads = from.at(7);
        gap.reason = from.at(8);
        state.gaps.push_back(std::move(gap));
    }
    return state;
}

}  // namespace lintara::kit
