#include "strategy/gap_size.h"

#include <algorithm>
#include <iterator>

#include "align/edge_seeds.h"
#include "align/search.h"
#include "run/record_text.h"
#include "run/settings.h"
#include "run/streams.h"
#include "strategy/slice.h"

namespace lintara {

namespace {

/// What the spanning reads of a block tell.
struct Estimates {
    std::vector<int> Len;         // one size a spanning read, in read order
    std::map<int, int> read_len;  // index of the read to its size
    std::map<int, int> freq;      // size to the number of reads that tell it
    int CheckLen = kUnknownSize;  // longest size
};

/// The sizes told most often and second most often. Among equal counts the longer size is the first.
struct Vote {
    int max_time = 0;
    int max_len = 0;
    int max2_time = 0;
    int max2_len = 0;
};

void DrawPlacement(const std::string& before_seq, const std::string& read, const std::string& after_seq, int over1,
                   int over2, int threadId) {
    const int edge = static_cast<int>(before_seq.size());
    const int read_at = std::max(edge - over1, 0);
    const int after_at = std::max(read_at + static_cast<int>(read.size()) - over2, 0);
    LogText(threadId) << before_seq << "\n"
                      << std::string(static_cast<std::size_t>(read_at), ' ') << read << "\n"
                      << std::string(static_cast<std::size_t>(after_at), ' ') << after_seq << "\n";
}

/// Lays every read over both edges and collects the sizes that the spanning ones tell.
Estimates CollectEstimates(std::vector<Read>& reads, std::map<int, int>& read, bool& Accept_Long, int threadId) {
    Estimates estimates;
    const std::string& before_seq = reads.front().seq;
    const std::string& after_seq = reads.back().seq;
    const EdgeSeeds before(before_seq);
    const EdgeSeeds after(after_seq);
    const int num = static_cast<int>(reads.size());
    for (int i = 1; i < num - 1; ++i) {
        std::string& read_seq = reads[static_cast<std::size_t>(i)].seq;
        int before_len = -1;
        const int over1 = overlap_before_len(before, read_seq, 5, before_len, 0.98);
        // A read that fails below stays trimmed, too.
        if (before_len >= 0) read_seq = Slice(read_seq, before_len, static_cast<int>(read_seq.size()));
        if (over1 <= Min_overlap) continue;
        int after_len = -1;
        const int over2 = overlap_after_len(read_seq, after, 5, after_len, 0.98);
        if (over2 <= Min_overlap) continue;
        if (after_len >= 0) DropEnd(read_seq, after_len);

        const int est_len = static_cast<int>(read_seq.size()) - over1 - over2;
        read[i] = static_cast<int>(before_seq.size()) - over1;
        if (!Accept_Long) {
            Accept_Long =
                LongCheck(Tail(before_seq, over1), FirstBases(after_seq, over2), read_seq, over1, over2, threadId);
        }
        estimates.CheckLen = std::max(estimates.CheckLen, est_len);
        DrawPlacement(before_seq, read_seq, after_seq, over1, over2, threadId);
        LogText(threadId) << "gap possible len: " << est_len << "\n";
        estimates.Len.push_back(est_len);
        estimates.read_len[i] = est_len;
    }
    return estimates;
}

/// The size told by one or two spanning reads.
int SizeOfFew(const Estimates& estimates, std::map<int, int>& read, bool Accept_Long, int threadId) {
    const std::vector<int>& Len = estimates.Len;
    if (Len.size() == 1 || (Len.size() == 2 && Len[0] == Len[1])) {
        std::erase_if(read, [&](const auto& entry) { return !estimates.read_len.contains(entry.first); });
        return Len[0];
    }
    if (Len.size() == 2 && Accept_Long) {
        const auto first = estimates.read_len.begin();
        read.erase(first->second != estimates.CheckLen ? first->first : std::next(first)->first);
        return estimates.CheckLen;
    }
    LogText(threadId) << "Too few long read cross over the short gap, try middle assemble\t" << Len.size() << "\n";
    read.clear();
    return kUnknownSize;
}

Vote CountVotes(const std::map<int, int>& freq, int threadId) {
    Vote vote;
    for (const auto& [len, times] : freq) {
        LogText(threadId) << len << "\t" << times << "\n";
        if (times > vote.max_time) {
            vote.max2_time = vote.max_time;
            vote.max2_len = vote.max_len;
            vote.max_time = times;
            vote.max_len = len;
            continue;
        }
        if (times > vote.max2_time && times < vote.max_time) {
            vote.max2_time = times;
            vote.max2_len = len;
        }
        if (times == vote.max2_time && len > vote.max2_len) vote.max2_len = len;
        if (times == vote.max_time) {
            vote.max2_time = vote.max_time;
            vote.max2_len = vote.max_len;
            vote.max_len = len;
        }
    }
    return vote;
}

bool ClearMajority(const Vote& vote, int CheckLen, bool Accept_Long) {
    if (!(vote.max_time * 0.5 >= vote.max2_time && vote.max2_time <= 2 && vote.max_time >= 2)) return false;
    return !Accept_Long || vote.max_len == CheckLen || 7 * vote.max2_time <= vote.max_time;
}

bool LongestMayDecide(const Vote& vote, int CheckLen, bool Accept_Long, int gapLen) {
    if (CheckLen != -1 && Accept_Long) return true;
    if (vote.max_len - vote.max2_len == 1) return true;
    return gapLen <= 10 && vote.max_len < 0 && CheckLen < 0;
}

/// Decides between the commonest and the longest size.
int Decide(const Vote& vote, const std::map<int, int>& freq, int CheckLen, int threadId) {
    const int support = freq.at(CheckLen);
    int result = CheckLen;
    if (support == 1 && freq.size() == 2 && vote.max_time >= 6) {
        LogText(threadId)
            << "Two possible gapsize, accept the longer one, but more support short one, accept shorter.\n";
        result = vote.max_len;
    } else {
        LogText(threadId) << "Accept the longer gap size, support read number is: " << support << "\n";
    }
    // One base apart: the runner-up is the winner with a base lost in sequencing.
    if (vote.max_len - vote.max2_len == 1) result = vote.max_len;
    return result;
}

/// Keeps only the reads that tell the accepted size.
void Prune(std::map<int, int>& read, Estimates& estimates, int result) {
    if (static_cast<int>(read.size()) == estimates.freq.at(result)) return;
    std::erase_if(estimates.read_len, [&](const auto& entry) { return entry.second != result; });
    std::erase_if(read, [&](const auto& entry) { return !estimates.read_len.contains(entry.first); });
}

}  // namespace

int GetGapLen(std::vector<Read>& reads, std::map<int, int>& read, bool& Accept_Long, int threadId) {
    const int num = static_cast<int>(reads.size());
    const int gapLen = reads.empty() ? 0 : reads.back().pos;
    LogText(threadId) << "Try to get the accurate gap size using read number: " << num << "\t" << gapLen << "\n";
    if (num < 3) {
        LogText(threadId) << "Too few long read for the small gap, try to use middle method\n";
        return kUnknownSize;
    }
    Estimates estimates = CollectEstimates(reads, read, Accept_Long, threadId);
    LogText(threadId) << "possible gap size number is: " << estimates.Len.size() << "\n";
    if (estimates.Len.size() < 3) return SizeOfFew(estimates, read, Accept_Long, threadId);

    for (const int len : estimates.Len) ++estimates.freq[len];
    const Vote vote = CountVotes(estimates.freq, threadId);
    int result = vote.max_len;
    if (!ClearMajority(vote, estimates.CheckLen, Accept_Long)) {
        if (!LongestMayDecide(vote, estimates.CheckLen, Accept_Long, gapLen)) {
            LogText(threadId) << "Gap length cannot decided!\n"
                              << vote.max2_time << "\t" << vote.max_time << "\t" << estimates.Len.size() << "\n";
            return kUnknownSize;
        }
        result = Decide(vote, estimates.freq, estimates.CheckLen, threadId);
    }
    Prune(read, estimates, result);
    return result;
}

bool LongCheck(const std::string& /*over_part_before*/, const std::string& /*over_part_after*/, const std::string& read,
               int over1, int over2, int threadId) {
    const int size = static_cast<int>(read.size());
    const int gaplen = size - over1 - over2;
    LogText(threadId) << "Now check gap size: " << gaplen << "\n";
    if (gaplen > 4) {
        LogText(threadId) << "Check whether exists more than once.\n";
        if (PattNum(Slice(read, over1, gaplen), read).size() > 1) {
            LogText(threadId) << "Gap sequence may exists more than one copy in the gap region! So accept longest\n";
            return true;
        }
    }
    if (size - 1 > over1) {
        const std::string str1 = Slice(read, 1, size);
        const std::string pattern = FirstBases(read, over1);
        const int pos = string_match(pattern, str1, 1);
        if (pos >= 0) {
            const int gaplen2 = size - 1 - pos - over1 - over2;
            LogText(threadId) << "Using before pattern: " << pattern << "\n"
                              << "When gap length is " << gaplen
                              << ", maybe other reads support gap length: " << gaplen2 << "\n";
            return true;
        }
    }
    if (size - 1 <= over2) return false;
    const std::string str2 = FirstBases(read, size - 1);
    const std::string pattern = Tail(read, over2);
    const int pos = string_match(pattern, str2, 1);
    if (pos < 0) return false;
    const int gaplen2 = pos - over1;
    LogText(threadId) << "Using after pattern: " << pattern << "\n"
                      << "When gap length is " << gaplen << ", maybe other reads support gap length: " << gaplen2
                      << "\n";
    return true;
}

char value_base(char seq_base, int posit, const std::map<int, int>& read, const std::vector<Read>& reads,
                int threadId) {
    if (seq_base != 'N') return seq_base;
    int count[5] = {0, 0, 0, 0, 0};
    int total = 0;
    for (const auto& [r, p] : read) {
        const std::string& read_seq = reads[static_cast<std::size_t>(r)].seq;
        if (posit < p || posit >= p + static_cast<int>(read_seq.size())) continue;
        ++count[alphabet[read_seq[static_cast<std::size_t>(posit - p)]]];
        ++total;
    }
    int highest = 0;
    char result = 'N';
    StreamText record(snp[threadId]);
    record << posit << "\t";
    for (int code = 0; code < 4; ++code) {
        record << count[code] << "\t";
        if (count[code] > highest) {
            highest = count[code];
            result = base[code];
        }
    }
    const double ratio = total == 0 ? 0.0 : static_cast<double>(highest) / total;
    record << result << "\t" << total << "\t" << ratio << "\n";
    return result;
}

bool ShortCheck(const std::vector<Read>& /*reads*/, const int& gapsize, const std::map<int, int>& /*read*/) {
    return gapsize < 0;
}

}  // namespace lintara
