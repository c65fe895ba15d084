#include <cstdlib>
#include <string>

#include "align/byte_scan.h"
#include "align/edge_align.h"
#include "align/search.h"

namespace lintara {

namespace {

const double kCovered = 0.7;

int Size(const std::string& seq) {
    return static_cast<int>(seq.size());
}

}  // namespace

bool overlap_ctg_edge(const std::string& ctg1, const std::string& ctg2, int& over1, int& over2, int& containing) {
    std::string overs1;
    std::string overs2;
    int score = 0;
    int start1 = 0;
    int start2 = 0;
    int end1 = 0;
    int end2 = 0;
    local_aligning(ctg1, ctg2, overs1, overs2, score, start1, start2, end1, end2);
    const double columns = static_cast<double>(overs1.size());
    if (start1 <= start2) {
        over2 = Size(ctg1) + end2 - end1;
        containing = columns / over2 >= kCovered ? 1 : 0;
        return false;
    }
    over1 = Size(ctg1) + start2 - start1;
    over2 = Size(ctg1) - end1 + end2;
    const double ratio = columns / over1;
    const double identity = detail::CountEqual(overs1.data(), overs2.data(), Size(overs1)) / columns;
    return identity >= kCovered && ratio >= kCovered;
}

namespace {

const int kPiece = 7;            // bases of a seed piece
const double kMostBroken = 0.2;  // largest share of broken pieces

// Share of the overlap that broken pieces stand for, `num` whole ones having been found.
double BrokenShare(int over, int num) {
    return static_cast<double>(over - num) / kPiece / (over - kPiece);
}

std::string Piece(const std::string& ctg, int start) {
    return ctg.substr(start, kPiece);
}

// Both edges were found: the pieces of ctg2's overlap must follow each other in ctg1.
bool PiecesAgree(const std::string& ctg1, const std::string& ctg2, int method, int pos1, int pos2, int& over1,
                 int& over2) {
    over1 = Size(ctg1) - pos2 + 1;
    over2 = pos1 + 8;
    if (std::abs(over1 - over2) > 10) return false;
    int num = 0;
    int oldpos = pos2 - 1;
    for (int i = 0; i <= over2 - kPiece; ++i) {
        const std::string piece = Piece(ctg2, i);
        const std::string text = ctg1.substr(oldpos);
        if (piece.size() > text.size()) break;
        const int found = string_match(piece, text, method);
        if (found < 0 || oldpos + found == 0) continue;
        ++num;
        oldpos += found;
    }
    return BrokenShare(over2, num) <= kMostBroken && num >= 4;
}

// Only the edge of ctg1 was found in ctg2: its pieces are followed to the left.
bool PiecesLeftward(const std::string& ctg1, const std::string& ctg2, int method, int pos1, int& over1, int& over2) {
    over1 = over2 = pos1 + 8;
    int num = 0;
    int oldpos = Size(ctg1);
    for (int i = pos1 + 1; i >= 0; --i) {
        const int nowpos = string_match(Piece(ctg2, i), ctg1.substr(0, oldpos), method);
        if (nowpos <= 0) continue;
        over1 = Size(ctg1) + i - nowpos;
        ++num;
        oldpos = nowpos + kPiece;
    }
    return BrokenShare(over2, num) <= kMostBroken && num >= 3;
}

// Only the edge of ctg2 was found in ctg1: the pieces of ctg1 are followed to the right.
bool PiecesRightward(const std::string& ctg1, const std::string& ctg2, int method, int pos2, int& over1, int& over2) {
    over1 = over2 = Size(ctg1) - pos2 + 1;
    int num = 0;
    int oldpos = 0;
    for (int i = pos2 - 1; i <= Size(ctg1) - kPiece; ++i) {
        const int found = string_match(Piece(ctg1, i), ctg2.substr(oldpos), method);
        if (found < 0 || oldpos + found == 0) continue;
        const int nowpos = oldpos + found;
        over2 = Size(ctg1) + nowpos - i;
        ++num;
        oldpos = nowpos;
    }
    return BrokenShare(over1, num) <= kMostBroken && num >= 3;
}

}  // namespace

bool overlap_ctg_edge2(const std::string& ctg1, const std::string& ctg2, int method, int& over1, int& over2) {
    if (ctg1.size() < 10 || ctg2.size() < 10) return false;
    const std::string edge1 = Piece(ctg1, Size(ctg1) - kPiece - 2);
    const std::string edge2 = Piece(ctg2, 2);
    const int pos1 = string_match(edge1, ctg2, method);
    const int pos2 = string_match(edge2, ctg1, method);
    if (pos1 >= 1 && pos2 >= 1) return PiecesAgree(ctg1, ctg2, method, pos1, pos2, over1, over2);
    if (pos1 >= 1) return PiecesLeftward(ctg1, ctg2, method, pos1, over1, over2);
    if (pos2 >= 1) return PiecesRightward(ctg1, ctg2, method, pos2, over1, over2);
    return false;
}

}  // namespace lintara
