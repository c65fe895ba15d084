#include "run/worker.h"

#include <vector>

#include "run/record_text.h"
#include "run/settings.h"
#include "run/streams.h"
#include "store/load.h"
#include "strategy/sequence.h"

namespace lintara {

Scaf* scaffolds = nullptr;
// Never freed, since other workers may still take scaffolds when one of them ends the process.
std::map<int, int>& scafid = *new std::map<int, int>;
std::map<int, int>::iterator scafidItr;
pthread_mutex_t myMutex = PTHREAD_MUTEX_INITIALIZER;

int* total_gap_num = nullptr;
int* total_gap_length = nullptr;
int* no_read_gap = nullptr;
int* fill_num = nullptr;
int* fill_len = nullptr;
int* full_fill_num = nullptr;

namespace {

// Ids that the contig file does not know share index 0, so one scaffold may come up several times. Its turns are taken
// in the order in which they were dealt, never two at once. All of this is guarded by myMutex.
pthread_cond_t turnFinished = PTHREAD_COND_INITIALIZER;
int turnsDealt = 0;
int turnsFinished = 0;

/// Deals the next scaffold under the lock, which is held on entry and released on return. Key 0, which the contig
/// loader may have inserted, is passed over.
///
/// @param turn  out: place in the queue for index 0
/// @return false when there is none left
bool TakeScaffold(int& scaf_id, int& num, int& turn) {
    while (scafidItr != scafid.end() && scafidItr->first == 0) ++scafidItr;
    if (scafidItr == scafid.end()) {
        pthread_mutex_unlock(&myMutex);
        return false;
    }
    scaf_id = scafidItr->first;
    num = scafidItr->second;
    ++scafidItr;
    if (num == 0) {
        turn = turnsDealt++;
        while (turnsFinished != turn) pthread_cond_wait(&turnFinished, &myMutex);
    }
    pthread_mutex_unlock(&myMutex);
    return true;
}

/// Writes the record of a scaffold without gaps. Its head differs on purpose: a capital, and the length behind a tab.
void WriteUngappedScaffold(int scaf_id, const Scaf& scaffold, int threadId) {
    const std::string& contig = scaffold.contigs[0];
    StreamText(fout[threadId]) << ">Scaffold" << scaf_id << "\t" << contig.size() << "\n" << contig << "\n";
}

void TreatScaffold(int scaf_id, Scaf& scaffold, int threadId) {
    LogText(threadId) << "Treat with scaffold " << scaf_id << " and " << scaffold.gapSum << " gaps in the scaffold\n";
    if (scaffold.gapSum == 0) {
        WriteUngappedScaffold(scaf_id, scaffold, threadId);
    } else {
        std::map<int, std::string> gap_id_seq;
        FillGaps(scaf_id, scaffold, gap_id_seq, threadId);
        StreamText(fout[threadId]) << ">scaffold" << scaf_id << "\n";
        std::string text = get_scaffold_seq(gap_id_seq, scaffold);
        text += '\n';
        WriteText(fout[threadId], text.data(), text.size());
    }
    LogText(threadId) << "Scaffold " << scaf_id << " finished!\n";
    CheckStreams(threadId);
}

}  // namespace

void* fill_gap_by_type(void* threadId_p) {
    const int threadId = *static_cast<int*>(threadId_p);
    OwnStreams(threadId);
    logFile[threadId] << "Start to fill the gaps by thread " << threadId << "\n";
    int scaf_id = 0;
    int num = 0;
    int turn = 0;
    pthread_mutex_lock(&myMutex);
    while (TakeScaffold(scaf_id, num, turn)) {
        Scaf& scaffold = scaffolds[num];
        TreatScaffold(scaf_id, scaffold, threadId);
        // A scaffold without gaps cannot have held the selected gap, so only the others look at the selector.
        const bool may_end = scaffold.gapSum != 0;
        // Scaffold ids that the contig file does not know share the first place; every other scaffold is done with.
        if (num != 0) scaffold_delete(scaffold);
        pthread_mutex_lock(&myMutex);
        if (num == 0) {
            ++turnsFinished;
            pthread_cond_broadcast(&turnFinished);
        }
        if (may_end && GapId == -2) {
            pthread_mutex_unlock(&myMutex);
            break;
        }
    }
    logFile[threadId] << "Thread " << threadId + 1 << " exits.\n";
    pthread_exit(nullptr);
}

}  // namespace lintara
