#include "strategy/sequence.h"

#include <algorithm>
#include <utility>

#include "run/settings.h"
#include "strategy/slice.h"

namespace lintara {

namespace {

/// The columns of one trial overlap that are equal: the last `pos` bases of one sequence on the first of the other.
int EqualColumns(const std::string& sequence1, const std::string& sequence2, int pos) {
    const int start = static_cast<int>(sequence1.size()) - pos;
    int score = 0;
    for (int i = 0; i < pos; ++i) {
        if (sequence1[static_cast<std::size_t>(start + i)] == sequence2[static_cast<std::size_t>(i)]) ++score;
    }
    return score;
}

struct TrialOverlap {
    int pos = 0;    // length in bases
    int score = 0;  // equal columns
};

float Percent(const TrialOverlap& trial) {
    return static_cast<float>(trial.score) / static_cast<float>(trial.pos == 0 ? 1 : trial.pos);
}

}  // namespace

int n_num(const std::string& seq) {
    return static_cast<int>(std::count(seq.begin(), seq.end(), 'N'));
}

int ScreenReads(const std::string& Gapread) {
    for (const char c : Gapread) {
        if (alphabet[c] == 4) return 0;
    }
    return 1;
}

void SortReads(Gap& gap) {
    for (Len_t i = 0; i + 1 < gap.greadSum; ++i) {
        for (Len_t j = i + 1; j < gap.greadSum; ++j) {
            if (gap.position[i] > gap.position[j]) {
                std::swap(gap.position[i], gap.position[j]);
                std::swap(gap.reads[i], gap.reads[j]);
            }
        }
    }
}

void ToUp(std::string& read) {
    for (char& c : read) {
        const int code = alphabet[c];
        c = code < 4 ? base[code] : 'A';
    }
}

std::string ToLow(const std::string& seq) {
    std::string low(seq);
    for (char& c : low) c = sbase[alphabet[c]];
    return low;
}

int GetOverlapLen(const std::string& sequence1, const std::string& sequence2, int distance) {
    const int longest = static_cast<int>(std::min(sequence1.size(), sequence2.size()));
    TrialOverlap best;
    TrialOverlap second;
    for (int pos = OVERLAPLENCUTOFF; pos < DELTA - distance && pos <= longest; ++pos) {
        const TrialOverlap trial{pos, EqualColumns(sequence1, sequence2, pos)};
        if (trial.score >= best.score) {
            second = best;
            best = trial;
        } else if (trial.score >= second.score) {
            second = trial;
        }
    }
    // A repeat would place the sequences nearly as well a second time; such an overlap is not believed.
    const float maxPercent = Percent(best);
    const float secondPercent = Percent(second);
    if (!(maxPercent > OVERLAPPERCUTOFF)) return -1;
    if (!(SEC2FIR * maxPercent > secondPercent)) return -1;
    return best.pos;
}

void GetContigSeqInGap(std::string& contigSeqInGap, ContigInfo*& contigsInfo, int contigSum) {
    for (int i = 0; i < contigSum; ++i) {
        const std::string& contig = contigsInfo[i].contigSeq;
        const int distance = contigsInfo[i].startPos - static_cast<int>(contigSeqInGap.size());
        if (distance >= 0) {
            contigSeqInGap += Ns(distance) + contig;
            continue;
        }
        const int over = -distance < OVERLAPLENCUTOFF ? -1 : GetOverlapLen(contigSeqInGap, contig, distance);
        if (over <= 0) {
            contigSeqInGap += 'N' + contig;
        } else if (over <= static_cast<int>(contig.size())) {
            contigSeqInGap += contig.substr(static_cast<std::size_t>(over));
        }
        // An overlap longer than the contig: all of it is there already.
    }
}

void set_tmp_read(std::string& tmp1, std::string& tmp2, const std::string& contig1, const std::string& contig2,
                  int tmplen) {
    tmp1 = Tail(contig1, tmplen);
    tmp2 = FirstBases(contig2, tmplen);
    if (tmp1.size() > tmp2.size()) tmp1 = Tail(tmp1, static_cast<int>(tmp2.size()));
    if (tmp1.size() < tmp2.size()) tmp2 = FirstBases(tmp2, static_cast<int>(tmp1.size()));
    ToUp(tmp1);
    ToUp(tmp2);
}

std::string get_scaffold_seq(std::map<int, std::string>& gap_id_seq, const Scaf& scaffold) {
    std::string text = scaffold.contigs[0];
    for (Len_t i = 0; i < scaffold.gapSum; ++i) {
        text += ToLow(gap_id_seq[static_cast<int>(i)]);
        text += scaffold.contigs[i + 1];
    }
    return text;
}

}  // namespace lintara
