// The worker threads: each takes one scaffold at a time from the shared iterator, treats its gaps in order and writes
// the scaffold. The unit of parallel work is the scaffold, so its contigs may be cut without a lock.
#pragma once

#include <pthread.h>

#include <map>
#include <string>

#include "store/gap.h"

namespace lintara {

/// The store, loaded before the workers start.
extern Scaf* scaffolds;
extern std::map<int, int>& scafid;  ///< scaffold id to index in scaffolds; ascending id is the order of work
extern std::map<int, int>::iterator scafidItr;  ///< the next scaffold to treat; guarded by myMutex

/// Held to move scafidItr, to take turns at a scaffold that several scaffold ids share, to write one gap record to the
/// standard output, and to read GapId after a scaffold; and by the main thread until all workers are started.
extern pthread_mutex_t myMutex;

/// Counters, one entry a thread, indexed by threadId.
extern int* total_gap_num;     ///< gaps with reads that were treated
extern int* total_gap_length;  ///< sum of their gap_length, bases
extern int* no_read_gap;       ///< gaps without reads met
extern int* fill_num;          ///< gaps counted as filled, fully or partly
extern int* fill_len;          ///< bases filled; a merge without reads counts as one
extern int* full_fill_num;     ///< gaps counted as filled completely

/// Entry of a worker thread; ends by pthread_exit. The store, scafidItr and all per-thread state must be in place.
///
/// @param threadId_p  points to the int threadId, 0-based
void* fill_gap_by_type(void* threadId_p);

/// Treats the gaps of one scaffold in order: picks the strategy by size class, reports each outcome, moves the
/// counters.
///
/// @param scaf_id      scaffold id, for the gap records
/// @param scaffold     its contigs may be shortened or cleared where edges overlap
/// @param gap_id_seq   out: gap index to the text between contig i and contig i + 1; a gap passed over by -n or -s has
///                     no entry
void FillGaps(int scaf_id, Scaf& scaffold, std::map<int, std::string>& gap_id_seq, int threadId);

}  // namespace lintara
