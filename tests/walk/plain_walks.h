// The three long-step walks once more, each as one plain loop with its exits spelled out: a second writing to hold the
// walks against on random blocks. It shares with them the selectors and the checks, and nothing else.
#pragma once

#include <cstdint>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

#include "run/settings.h"
#include "run/streams.h"
#include "store/gap.h"
#include "walk/candidates.h"
#include "walk/end_select.h"
#include "walk/position_check.h"

namespace lintara::testing {

inline int PlainStopjum(int gapsize) {
    if (ReadLen == Min_overlap) return std::numeric_limits<int>::min();
    return static_cast<int>(static_cast<double>(gapsize) / static_cast<double>(ReadLen - Min_overlap));
}

inline std::vector<int> PlainRow(std::uint8_t** matrix, int num, int at, int without) {
    std::vector<int> accept;
    for (int i = 0; i < num; ++i) {
        if (static_cast<int>(matrix[at][i]) >= Min_overlap && i != without) accept.push_back(i);
    }
    return accept;
}

inline std::vector<int> PlainColumn(std::uint8_t** matrix, int num, int at, int without) {
    std::vector<int> accept;
    for (int i = 0; i < num; ++i) {
        if (static_cast<int>(matrix[i][at]) >= Min_overlap && i != without) accept.push_back(i);
    }
    return accept;
}

inline bool PlainForward(std::vector<Read>& reads, std::vector<int>& starts, std::uint8_t**& matrix, int num, int pos,
                         bool& cycled, bool& ER, int threadId) {
    std::ofstream& log = logFile[threadId];
    const int gapsize = reads[num - 1].pos;
    const int stopjum = PlainStopjum(gapsize);
    int count = 0;
    int jum = 1;
    int LateAcceptSize = 0;
    bool changenode = false;
    bool OneAccept = false;
    bool FullCleanZero = false;
    bool noreadbreak = false;
    bool normal_end = false;
    int start = pos;
    cycled = false;
    SHORTOVERLAP[threadId] = false;
    log << "start forward assembly...\n";
    while (count < num) {
        bool repeated = false;
        for (int a : starts) repeated = repeated || a == start;
        if (repeated) {
            log << "start repeat in the nodes!\t" << start << "\n";
            cycled = true;
            break;
        }
        if (starts.size() == 1 && start != num - 1) reads[start].pos = 0 - static_cast<int>(matrix[starts[0]][start]);
        starts.push_back(start);
        if (start == num - 1) break;
        if (static_cast<int>(starts.size()) >= stopjum && jum == 1) jum = 0;
        std::vector<int> accept = PlainRow(matrix, num, start, -1);
        bool containlast = false;
        for (int a : accept) containlast = containlast || a == num - 1;
        if (containlast) {
            log << "Meet last read!\n";
            int lastsupport = 0;
            for (int a : accept) lastsupport += matrix[a][num - 1] != 0 ? 1 : 0;
            if (lastsupport > 0.9 * static_cast<double>(accept.size())) {
                log << "Accept the last!\t" << lastsupport << "\t" << accept.size() << "\n";
                starts.push_back(num - 1);
                break;
            }
        }
        if (accept.empty() && starts.size() == 1) {
            log << "Before ERgap!\n";
            ER = true;
        }
        clean_accept(accept, matrix, threadId);
        if (accept.size() > 4 && gapsize > ReadLen) PosCleanAccept(start, accept, reads, matrix, threadId);

        if (accept.empty()) {
            if (!(LateAcceptSize > 1 && (jum != 0 || starts.size() == 2))) {
                normal_end = true;
                break;
            }
            log << "change other node!\n";
            const int nowtest = starts[starts.size() - 2];
            const int oldtest = starts[starts.size() - 1];
            accept = PlainRow(matrix, num, nowtest, oldtest);
            if (accept.size() == 1) {
                start = accept[0];
            } else {
                changenode = false;
                start = get_last(nowtest, accept, reads, matrix, jum, changenode, FullCleanZero, threadId);
                log << "Get a new start " << start << "\n";
                if (jum == 2) jum = 1;
            }
            if (start == -1) {
                normal_end = true;
                break;
            }
            accept = PlainRow(matrix, num, start, -1);
            if (accept.size() > 9 && gapsize > ReadLen) PosCleanAccept(start, accept, reads, matrix, threadId);
            log << "new start accept size: " << accept.size() << "\n";
            if (accept.empty()) {
                normal_end = true;
                break;
            }
            if (accept.size() == 1 && accept[0] == oldtest) {
                log << "new start is meaningless, not change the node\n";
                noreadbreak = true;
                break;
            }
            starts.pop_back();
            matrix[nowtest][oldtest] = 0;
            continue;
        }

        if (accept.size() == 1) {
            LateAcceptSize = 1;
            if (OneAccept || !ForwardPosCheck(start, accept[0], reads, matrix)) break;
            OneAccept = true;
            start = accept[0];
            continue;
        }

        const int nowstart = start;
        changenode = false;
        start = get_last(start, accept, reads, matrix, jum, changenode, FullCleanZero, threadId);
        if (jum == 2) jum = 1;
        while (!SHORTOVERLAP[threadId] && changenode && starts.size() > 1 && accept.size() != 2 && gapsize > ReadLen) {
            log << "cycle node!\n";
            changenode = false;
            starts.pop_back();
            const int prev = starts.back();
            matrix[prev][nowstart] = 0;
            accept = PlainRow(matrix, num, prev, -1);
            if (accept.size() == 1) {
                start = accept[0];
                changenode = false;
                accept.clear();
                break;
            }
            if (accept.empty()) {
                noreadbreak = true;
                start = -1;
                break;
            }
            clean_accept(accept, matrix, threadId);
            start = get_last(prev, accept, reads, matrix, jum, changenode, FullCleanZero, threadId);
            if (jum == 2) jum = 1;
            if (start == -1) break;
            if (changenode) noreadbreak = false;
        }
        if (changenode) {
            noreadbreak = false;
            break;
        }
        if (start == -1 && accept.size() < 3) {
            noreadbreak = true;
            break;
        }
        if (FullCleanZero) noreadbreak = false;
        LateAcceptSize = static_cast<int>(accept.size());
        if (LateAcceptSize > 1) OneAccept = false;
        if (start == -1) break;
        count = count + 1;
    }
    if (normal_end && !FullCleanZero) noreadbreak = true;
    if (matrix[starts.back()][num - 1] > Min_overlap && static_cast<int>(starts.size()) > stopjum) {
        starts.push_back(num - 1);
    }
    log << "Forward from " << pos << " start vector get finished, with size " << starts.size() << "\n";
    return noreadbreak;
}

inline bool PlainReward(std::vector<Read>& reads, std::vector<int>& ends, std::uint8_t**& matrix, int num, int pos,
                        bool& ER, int threadId) {
    std::ofstream& log = logFile[threadId];
    const int gapsize = reads[num - 1].pos;
    const int stopjum = PlainStopjum(gapsize);
    int count = 0;
    int jum = 1;
    int LateAcceptSize = 0;
    bool changenode = false;
    bool OneAccept = false;
    bool FullCleanZero = false;
    bool noreadbreak = false;
    bool normal_end = false;
    int end = pos;
    const auto clean_positions = [&](std::vector<int>& accept, int at) {
        if (accept.size() > 4 && gapsize > ReadLen) PosCleanAccept(accept, at, reads, matrix, threadId);
    };
    const auto select = [&](int at, std::vector<int>& accept) {
        const int first = get_first(at, accept, reads, matrix, jum, changenode, FullCleanZero, threadId);
        if (jum == 2) jum = 1;
        return first;
    };
    SHORTOVERLAP[threadId] = false;
    log << "start reward assembly...\t" << num << "\n";
    while (count < num) {
        bool repeated = false;
        for (int a : ends) repeated = repeated || a == end;
        if (repeated) {
            log << "end repeat exists in the nodes!\t" << end << "\n";
            break;
        }
        ends.push_back(end);
        if (static_cast<int>(ends.size()) >= stopjum && jum == 1) jum = 0;
        if (end == 0) break;
        std::vector<int> accept = PlainColumn(matrix, num, end, -1);
        if (accept.empty() && ends.size() == 1) {
            log << "After ER!\n";
            ER = true;
        }
        clean_accept(accept, matrix, threadId);
        if (accept.size() > 4 && gapsize > ReadLen) {
            PosCleanAccept(accept, end, reads, matrix, threadId);
            if (accept.empty()) {
                log << "Position filter all!\n";
                break;
            }
        }

        if (accept.empty()) {
            if (!(LateAcceptSize > 1 && (jum != 0 || ends.size() < 5))) {
                normal_end = true;
                break;
            }
            const int nowtest = ends[ends.size() - 2];
            const int oldtest = ends[ends.size() - 1];
            log << "change other node!\t" << oldtest << "\t" << nowtest << "\n";
            accept = PlainColumn(matrix, num, nowtest, oldtest);
            clean_positions(accept, nowtest);
            if (accept.size() == 1) {
                end = accept[0];
            } else {
                if (accept.size() >= 2) log << "accept size: " << accept.size() << "\n";
                changenode = false;
                end = select(nowtest, accept);
                log << "Get a new end: " << end << "\n";
            }
            if (end == -1) {
                normal_end = true;
                break;
            }
            accept = PlainColumn(matrix, num, end, -1);
            clean_positions(accept, end);
            log << "new end accept size: " << accept.size() << "\n";
            if (accept.empty()) {
                normal_end = true;
                break;
            }
            if (accept.size() == 1 && accept[0] == oldtest) {
                log << "new end is meaningless, not change the node\n";
                noreadbreak = true;
                break;
            }
            ends.pop_back();
            log << "change the node!\n";
            matrix[oldtest][nowtest] = 0;
            continue;
        }

        if (accept.size() == 1) {
            const int nowend = accept[0];
            if (LateAcceptSize > 3 && (jum != 0 || ends.size() == 2)) {
                log << "change other node!\n";
                const int nowtest = ends[ends.size() - 2];
                const int oldtest = ends[ends.size() - 1];
                accept = PlainColumn(matrix, num, nowtest, oldtest);
                clean_positions(accept, end);
                if (accept.size() > 2) {
                    changenode = false;
                    log << "accept size: " << accept.size() << " for id: " << nowtest << "\n";
                    end = select(nowtest, accept);
                    log << "Get a new end " << end << "\n";
                } else {
                    end = -1;
                }
                if (!accept.empty() && end != -1) {
                    accept = PlainColumn(matrix, num, end, -1);
                    clean_positions(accept, end);
                    log << "new end accept size: " << accept.size() << "\n";
                    if (accept.size() > 1) {
                        ends.pop_back();
                        log << "change the node!\n";
                        matrix[oldtest][nowtest] = 0;
                        continue;
                    }
                    log << "change node is useless, not change!\n";
                }
            }
            LateAcceptSize = 1;
            if (OneAccept) break;
            if (end != -1 && !RewardPosCheck(end, nowend, reads, matrix)) break;
            OneAccept = true;
            end = nowend;
            count = count + 1;
            continue;
        }

        if (accept.size() == 2 && ends.size() == 1) {
            if (!FullCleanZero) noreadbreak = true;
            break;
        }
        const int nowend = end;
        changenode = false;
        end = select(end, accept);
        log << "get end " << end << "\n";
        while (!SHORTOVERLAP[threadId] && changenode && ends.size() > 1 && accept.size() != 2 && gapsize > ReadLen) {
            log << "cycle node!\n";
            changenode = false;
            ends.pop_back();
            const int prev = ends.back();
            matrix[nowend][prev] = 0;
            accept = PlainColumn(matrix, num, prev, -1);
            clean_accept(accept, matrix, threadId);
            if (accept.size() == 1) {
                const bool fits = RewardPosCheck(accept[0], prev, reads, matrix);
                end = fits ? accept[0] : -1;
                changenode = !fits;
                if (!fits) noreadbreak = false;
                continue;
            }
            if (accept.empty()) {
                end = -1;
                noreadbreak = true;
                continue;
            }
            end = select(prev, accept);
            if (changenode) noreadbreak = false;
        }
        if (changenode) {
            noreadbreak = false;
            break;
        }
        if (end == -1 && accept.size() < 3) {
            noreadbreak = true;
            break;
        }
        if (FullCleanZero) noreadbreak = false;
        LateAcceptSize = static_cast<int>(accept.size());
        if (LateAcceptSize > 1) OneAccept = false;
        if (end == -1) break;
        count = count + 1;
    }
    if (normal_end && !FullCleanZero) noreadbreak = true;
    if (FullCleanZero) noreadbreak = false;
    if (matrix[0][ends.back()] > Min_overlap && static_cast<int>(ends.size()) > stopjum && noreadbreak) {
        ends.push_back(0);
    }
    log << "Reward from " << pos << " end vector get finished, with size " << ends.size() << "no read: " << noreadbreak
        << "\n";
    return noreadbreak;
}

inline void PlainResumedReward(std::vector<Read>& reads, std::vector<int>& ends, std::uint8_t**& matrix, int num,
                               int pos, const std::string& drop_seq, bool cycled, int threadId) {
    std::ofstream& log = logFile[threadId];
    const int gapsize = reads[num - 1].pos;
    const int stopjum = PlainStopjum(gapsize);
    int jum = 1;
    int LateAcceptSize = 0;
    bool changenode = false;
    bool OneAccept = false;
    bool FullCleanZero = false;
    int end = pos;
    const auto clean_positions = [&](std::vector<int>& accept, int at) {
        if (accept.size() > 9 && 2 * ReadLen < gapsize) PosCleanAccept(accept, at, reads, matrix, threadId);
    };
    const auto select = [&](int at, std::vector<int>& accept) {
        return get_first(at, accept, reads, matrix, jum, changenode, drop_seq, cycled, FullCleanZero, threadId);
    };
    log << "start continued reward assembly...\t" << num << "\n";
    while (static_cast<int>(ends.size()) < num) {
        bool repeated = false;
        for (int a : ends) repeated = repeated || a == end;
        if (repeated) {
            log << "end repeat exists in the nodes!\t" << end << "\n";
            break;
        }
        ends.push_back(end);
        if (end == 0) break;
        // One step less is expected than of the first walk, and the path has to be longer than that.
        if (static_cast<std::int64_t>(ends.size()) > std::int64_t{stopjum} - 1 && jum == 1) jum = 0;
        std::vector<int> accept = PlainColumn(matrix, num, end, -1);
        clean_accept(accept, matrix, threadId);
        const std::size_t cleaned = accept.size();
        clean_positions(accept, end);
        if (accept.empty() && cleaned > 0) {
            log << "Position filter all!\n";
            break;
        }
        if (accept.empty()) {
            if (LateAcceptSize < 2 || jum == 0) break;
            log << "change other node!\n";
            const int nowtest = ends[ends.size() - 2];
            const int oldtest = ends[ends.size() - 1];
            accept = PlainColumn(matrix, num, nowtest, oldtest);
            clean_positions(accept, nowtest);
            if (accept.size() == 1) {
                end = accept[0];
            } else {
                changenode = false;
                end = select(nowtest, accept);
                if (jum == 2) jum = 1;
            }
            log << "Get a new end " << end << "\n";
            if (end == -1) break;
            accept = PlainColumn(matrix, num, end, -1);
            if (accept.size() > 9 && gapsize > ReadLen) PosCleanAccept(accept, end, reads, matrix, threadId);
            log << "new end accept size: " << accept.size() << "\n";
            if (accept.size() <= 1) {
                log << "change node is useless, not change!\n";
                break;
            }
            ends.pop_back();
            matrix[oldtest][nowtest] = 0;
            log << "change the node!\n";
            continue;
        }
        if (accept.size() == 1) {
            LateAcceptSize = 1;
            if (OneAccept || !RewardPosCheck(end, accept[0], reads, matrix)) break;
            OneAccept = true;
            end = accept[0];
            continue;
        }
        const int nowend = end;
        changenode = false;
        end = select(end, accept);
        log << "get end " << end << "\n";
        while (changenode && ends.size() > 1) {
            log << "cycle node!\n";
            changenode = false;
            ends.pop_back();
            const int prev = ends.back();
            matrix[nowend][prev] = 0;
            accept = PlainColumn(matrix, num, prev, -1);
            clean_accept(accept, matrix, threadId);
            if (accept.size() > 1) {
                end = select(prev, accept);
            } else {
                end = accept.empty() ? -1 : accept[0];
            }
        }
        LateAcceptSize = static_cast<int>(accept.size());
        if (LateAcceptSize > 1) OneAccept = false;
        if (end == -1) break;
    }
    if (!ends.empty() && matrix[0][ends.back()] > Min_overlap) ends.push_back(0);
    log << "Reward from " << pos << " end vector get finished, with size " << ends.size() << "\n";
}

}  // namespace lintara::testing
