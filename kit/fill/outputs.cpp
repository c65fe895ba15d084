#include "kit/fill/outputs.h"

#include <fmt/format.h>

#include <algorithm>
#include <unordered_set>

namespace lintara::kit {

namespace {

constexpr long kColumns = 80;

struct GapSums {
    long filled = 0;
    long open = 0;
    long known = 0;  ///< filled bases whose support is known
    long support = 0;
    int least = -1;
};

std::vector<GapSums> SumGaps(const State& state) {
    std::vector<GapSums> sums(state.gaps.size());
    for (const ScaffoldState& scaffold : state.scaffolds) {
        for (const Piece& piece : scaffold.pieces) {
            if (piece.kind == PieceKind::kContig) continue;
            GapSums& sum = sums[static_cast<size_t>(piece.gap) - 1];
            if (piece.kind == PieceKind::kOpen) {
                sum.open += piece.length;
                continue;
            }
            sum.filled += piece.Size();
            for (int support : piece.support) {
                if (support < 0) continue;
                ++sum.known;
                sum.support += support;
                sum.least = sum.least < 0 ? support : std::min(sum.least, support);
            }
        }
    }
    return sums;
}

std::string Outcome(const GapSums& sum) {
    if (sum.open == 0) return sum.filled > 0 ? "closed" : "merged";
    return sum.filled > 0 ? "extended" : "open";
}

void WriteSequences(const State& state, const std::vector<FastaRecord>& records, const std::string& out) {
    AtomicFile fasta(out + "/filled.fa");
    AtomicFile index(out + "/filled.fa.fai");
    std::unordered_set<std::string> names;
    long offset = 0;
    for (size_t s = 0; s < records.size(); ++s) {
        std::string text;
        for (const Piece& piece : state.scaffolds[s].pieces) text += PieceText(piece, records[s]);
        WriteFasta(fasta, records[s].name, records[s].description, text);
        long head = static_cast<long>(records[s].name.size() + records[s].description.size()) + 2 +
                    (records[s].description.empty() ? 0 : 1);
        long size = static_cast<long>(text.size());
        offset += head;
        // As samtools does it: an empty sequence and one whose name was there before cannot be looked up.
        if (size > 0 && names.insert(records[s].name).second) {
            long width = std::min(size, kColumns);
            index.Write(fmt::format("{}\t{}\t{}\t{}\t{}\n", records[s].name, size, offset, width, width + 1));
        }
        offset += size + (size + kColumns - 1) / kColumns;
    }
    fasta.Commit();
    index.Commit();
}

/// Fills are components of their own, named by their gap and their number within it.
void WriteAgp(const State& state, const std::vector<FastaRecord>& records, const std::string& out) {
    AtomicFile agp(out + "/filled.agp");
    AtomicFile fills(out + "/fills.fa");
    agp.Write("##agp-version\t2.1\n");
    std::vector<int> numbers(state.gaps.size(), 0);
    for (size_t s = 0; s < records.size(); ++s) {
        long at = 1;
        int part = 0;
        for (const Piece& piece : state.scaffolds[s].pieces) {
            std::string head = fmt::format("{}\t{}\t{}\t{}", records[s].name, at, at + piece.Size() - 1, ++part);
            at += piece.Size();
            if (piece.kind == PieceKind::kOpen) {
                agp.Write(fmt::format("{}\tN\t{}\tscaffold\tyes\tpaired-ends\n", head, piece.length));
            } else if (piece.kind == PieceKind::kContig) {
                agp.Write(
                    fmt::format("{}\tW\t{}\t{}\t{}\t+\n", head, records[s].name, piece.span.start + 1, piece.span.end));
            } else {
                std::string name = fmt::format("gap{}.{}", piece.gap, ++numbers[static_cast<size_t>(piece.gap) - 1]);
                agp.Write(fmt::format("{}\tW\t{}\t1\t{}\t+\n", head, name, piece.Size()));
                WriteFasta(fills, name, "", Lower(piece.bases));
            }
        }
    }
    fills.Commit();
    agp.Commit();
}

std::string Mean(long sum, long count) {
    return count == 0 ? "." : fmt::format("{:.2f}", static_cast<double>(sum) / static_cast<double>(count));
}

void WriteBed(const State& state, const std::vector<FastaRecord>& records, const std::string& out) {
    AtomicFile bed(out + "/filled.bed");
    for (size_t s = 0; s < records.size(); ++s) {
        long at = 0;
        for (const Piece& piece : state.scaffolds[s].pieces) {
            long start = at;
            at += piece.Size();
            if (piece.kind != PieceKind::kFill) continue;
            long known = 0;
            long sum = 0;
            for (int support : piece.support) {
                known += support >= 0;
                sum += std::max(support, 0);
            }
            bed.Write(fmt::format("{}\t{}\t{}\tgap{}\t{}\t{}\t{}\n", records[s].name, start, at, piece.gap, piece.round,
                                  piece.strategy, Mean(sum, known)));
        }
    }
    bed.Commit();
}

void WriteColumns(const State& state, const std::string& out) {
    AtomicFile file(out + "/columns.tsv.gz", AtomicFile::Format::kGzip);
    file.Write("gap\tposition\tsupport\tdepth\n");
    std::vector<long> positions(state.gaps.size(), 0);
    for (const ScaffoldState& scaffold : state.scaffolds) {
        for (const Piece& piece : scaffold.pieces) {
            if (piece.kind != PieceKind::kFill) continue;
            long& position = positions[static_cast<size_t>(piece.gap) - 1];
            for (size_t i = 0; i < piece.bases.size(); ++i, ++position) {
                if (piece.support[i] < 0) continue;
                file.Write(fmt::format("{}\t{}\t{}\t{}\n", piece.gap, position, piece.support[i], piece.depth[i]));
            }
        }
    }
    file.Commit();
}

void WriteGapTable(const State& state, const std::vector<FastaRecord>& records, const std::string& out) {
    AtomicFile table(out + "/gaps.tsv");
    table.Write(
        "gap\tscaffold\tstart\tend\tstated\toutcome\tfilled\topen\tround\tstrategy\treads\treason\tleast_support\t"
        "mean_support\n");
    std::vector<GapSums> sums = SumGaps(state);
    for (size_t g = 0; g < state.gaps.size(); ++g) {
        const GapRecord& gap = state.gaps[g];
        const GapSums& sum = sums[g];
        table.Write(fmt::format("{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}\t{}\n", g + 1,
                                records[static_cast<size_t>(gap.scaffold)].name, gap.span.start, gap.span.end,
                                gap.span.Length(), Outcome(sum), sum.filled, sum.open, gap.round, gap.strategy,
                                gap.reads, gap.reason, sum.least < 0 ? "." : std::to_string(sum.least),
                                Mean(sum.support, sum.known)));
    }
    table.Commit();
}

}  // namespace

std::string OutcomeOf(const State& state, int gap) {
    return Outcome(SumGaps(state)[static_cast<size_t>(gap) - 1]);
}

OutcomeCounts CountOutcomes(const State& state) {
    OutcomeCounts counts;
    for (const GapSums& sum : SumGaps(state)) {
        std::string outcome = Outcome(sum);
        counts.closed += outcome == "closed";
        counts.merged += outcome == "merged";
        counts.extended += outcome == "extended";
        counts.open += outcome == "open";
        counts.filledBases += sum.filled;
    }
    return counts;
}

void WriteOutputs(const State& state, const std::vector<FastaRecord>& records, const std::string& out) {
    WriteSequences(state, records, out);
    WriteAgp(state, records, out);
    WriteBed(state, records, out);
    WriteColumns(state, out);
    WriteGapTable(state, records, out);
}

}  // namespace lintara::kit
