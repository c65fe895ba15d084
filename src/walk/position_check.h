// The judgement of a pick: does the read stand where its estimated position says, does the candidate set agree with
// it, and if not, how far does it disagree.
//
// Mind the sense of the Pass functions: true means that the pick did not pass and that there is work to do, false that
// the pick stands. Reads, matrix, accept and the words start, last, end and first are those of walk/candidates.h; in
// all functions accept holds the pick and the candidates that it was chosen from.
#pragma once

#include <cstdint>
#include <vector>

#include "store/gap.h"

namespace lintara {

/// Whether the estimated position of last lies within ReadLen/2, exclusive, of the start that its overlap with start
/// implies. Neither read may be -1.
bool ForwardPosCheck(int start, int last, const std::vector<Read>& reads, std::uint8_t**& matrix);

/// The same for first, held against its overlap with end.
bool RewardPosCheck(int end, int first, const std::vector<Read>& reads, std::uint8_t**& matrix);

/// Whether any other candidate disagrees with last: their overlap is shorter than the step's, or is not the one that
/// the two offsets from start imply (reads of equal length only). Both faults of one candidate count. Logs the count
/// and its quotient by the number of other candidates, which so may exceed 1.
///
/// @return true at once, without a log line, when a read is negative or there is no other candidate
bool IsForwardBreak(int start, int last, const std::vector<int>& accept, const std::vector<Read>& reads,
                    std::uint8_t**& matrix, int threadId);

/// The same for first and its offset from end.
bool IsRewardBreak(int end, int first, const std::vector<int>& accept, const std::vector<Read>& reads,
                   std::uint8_t**& matrix, int threadId);

/// Judges the longest step: whether the other candidates are compatible with last. Logs the count of those that are
/// not, and the measure to take.
///
/// A candidate is unaccepted when its overlap with last is not the one that the offsets imply, or when the two share no
/// exact overlap and no other candidate speaks for last against it. One unaccepted read longer than ReadLen counts for
/// nothing.
///
/// @param ratio  out: share of the other candidates that are unaccepted, 0..1; 0 when the one that is counts for
///               nothing; 1.0 on bad arguments
/// @return true when the pick fails. False without a log line when a read is negative or accept holds fewer than two
bool PassMinForward(int start, int last, const std::vector<int>& accept, const std::vector<Read>& reads,
                    std::uint8_t**& matrix, int threadId, double& ratio);

/// Judges the shortest step: a candidate is unaccepted when it differs from last in any base of their overlap, or has
/// no exact overlap with it; one of equal length without an overlap is always unaccepted. Otherwise as
/// PassMinForward().
bool PassMaxForward(int start, int last, const std::vector<int>& accept, const std::vector<Read>& reads,
                    std::uint8_t**& matrix, int threadId, double& ratio);

/// The reward twin of PassMinForward(), with a stricter verdict: any unaccepted candidate fails the pick, but for a
/// single long read among more than two candidates, or a lone disagreeing partner, which the caller's pair rule
/// decides.
bool PassMinReward(int end, int first, const std::vector<int>& accept, const std::vector<Read>& reads,
                   std::uint8_t**& matrix, int threadId, double& ratio);

/// The reward twin of PassMaxForward(); a candidate of equal length without an overlap is accepted when it equals
/// first. Bad arguments log "Error".
bool PassMaxReward(int end, int first, const std::vector<int>& accept, const std::vector<Read>& reads,
                   std::uint8_t**& matrix, int threadId, double& ratio);

/// Removes the candidates that differ from start in any base of their overlap.
///
/// @return true when accept is empty now and held more than one before
bool ForwardCleanAccept(int start, std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix);

/// The same for the overlaps with end.
bool RewardCleanAccept(int end, std::vector<int>& accept, const std::vector<Read>& reads, std::uint8_t**& matrix);

/// Whether first overlaps end with less than half of its length. The program does not call it.
bool RatioCheck(int end, int first, const std::vector<Read>& reads, std::uint8_t**& matrix);

}  // namespace lintara
