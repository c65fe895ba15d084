#include "run/driver.h"

#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <iostream>
#include <limits>
#include <numeric>
#include <string>
#include <vector>

// Behind the headers above, which define the macro.
#ifdef __GLIBC__
#include <malloc.h>
#endif

#include "run/options.h"
#include "run/record_text.h"
#include "run/settings.h"
#include "run/streams.h"
#include "run/worker.h"
#include "store/gap_reads.h"
#include "store/load.h"

namespace lintara {

namespace {

double MinutesSince(std::time_t start) {
    return static_cast<double>(std::time(nullptr) - start) / 60.0;
}

void ReadOptions(int argc, char** argv) {
    const int index = mGetOptions(argc, argv);
    if (Method > 5) Method = 5;
    if (index != argc) {
        std::cerr << "Please check input!" << std::endl;
        std::exit(-1);
    }
    if (threadNum < 0) {
        std::cerr << "The thread number must not be negative: " << threadNum << std::endl;
        std::exit(-1);
    }
}

void LoadStore() {
    LoadGapPlaces(gap_file, contig_file, scaffolds, scafid);
    Loadcontigfile(contig_file, scaffolds, scafid);
    if (scafid.empty()) {
        std::cerr << "Fail to load gap and contig files" << std::endl;
        std::exit(-1);
    }
}

void AllocateThreadState() {
    const std::size_t size = static_cast<std::size_t>(threadNum);
    logFile = new std::ofstream[size];
    fout = new std::ofstream[size];
    snp = new std::ofstream[size];
    for (int** counter : {&total_gap_num, &total_gap_length, &no_read_gap, &fill_num, &fill_len, &full_fill_num}) {
        *counter = new int[size]();
    }
    SHORTOVERLAP = new bool[size]();
    initSizes = new std::uint64_t[size]();
}

void FreeThreadState() {
    for (int** counter : {&total_gap_num, &total_gap_length, &no_read_gap, &fill_num, &fill_len, &full_fill_num}) {
        delete[] * counter;
        *counter = nullptr;
    }
    delete[] SHORTOVERLAP;
    delete[] initSizes;
    SHORTOVERLAP = nullptr;
    initSizes = nullptr;
}

/// A directory that already exists is a failure too, so that a second run never overwrites the outputs of a first one.
void MakeOutputTree() {
    for (const char* name : {"/FilledScaf", "/Log", "/Snp"}) {
        const std::string path = out_file + name;
        if (mkdir(path.c_str(), 0777) != 0) {
            std::cerr << "Failed to create directory: " << path << std::endl;
            std::exit(2);
        }
    }
}

void OpenStreams() {
    for (int i = 0; i < threadNum; ++i) {
        char number[12];
        itostr(number, i + 1);
        OpenStream(logFile[i], out_file + "/Log/log.thread" + number);
        OpenStream(fout[i], out_file + "/FilledScaf/seq.thread" + number);
        OpenStream(snp[i], out_file + "/Snp/snp.thread" + number);
        if (!logFile[i] || !fout[i] || !snp[i]) {
            std::cerr << "Can't open output files!\n";
            std::exit(1);
        }
    }
}

/// Every block takes and frees the same few megabytes. By default the allocator hands them back to the system each
/// time, and the page faults and system calls of the next block cost more than the whole output; so each worker keeps
/// up to this much.
void KeepFreedMemory() {
#ifdef __GLIBC__
    mallopt(M_TRIM_THRESHOLD, 32 << 20);
    mallopt(M_MMAP_THRESHOLD, 16 << 20);
    mallopt(M_TOP_PAD, 1 << 20);
    // A single worker takes over the memory of the loading; it has no other thread to wait for.
    if (threadNum == 1) mallopt(M_ARENA_MAX, 1);
#endif
}

void RunWorkers() {
    const std::size_t size = static_cast<std::size_t>(threadNum);
    std::vector<pthread_t> threads(size);
    std::vector<int> threadId(size);
    std::vector<bool> started(size);
    // The workers wait at the top of their loop until the two messages stand, so that none of their own comes between.
    pthread_mutex_lock(&myMutex);
    for (std::size_t i = 0; i < size; ++i) {
        threadId[i] = static_cast<int>(i);
        started[i] = pthread_create(&threads[i], nullptr, fill_gap_by_type, &threadId[i]) == 0;
    }
    StreamText(std::cerr) << threadNum << " threads created!\n"
                          << "Waiting for threads to exit...\n";
    pthread_mutex_unlock(&myMutex);
    if (size > 0 && std::find(started.begin(), started.end(), true) == started.end()) {
        std::cerr << "No worker thread can be started!\n";
        std::exit(1);
    }
    // The workers that did start share out all scaffolds among them.
    for (std::size_t i = 0; i < size; ++i) {
        if (started[i]) pthread_join(threads[i], nullptr);
    }
    StreamText(std::cerr) << threadNum << " threads exited.\n";
}

int Sum(const int* counter) {
    // Unsigned, so that a total beyond the range of int wraps.
    return static_cast<int>(std::accumulate(counter, counter + threadNum, 0U));
}

/// Flushes every output, so that they are complete, and ends the process by SIGFPE with its default action.
[[noreturn]] void EndWithArithmeticFault() {
    for (int i = 0; i < threadNum; ++i) {
        logFile[i].flush();
        fout[i].flush();
        snp[i].flush();
        CheckStreams(i);
    }
    CheckStandardOutput();
    std::cerr << std::flush;
    std::signal(SIGFPE, SIG_DFL);
    std::raise(SIGFPE);
    _exit(128 + SIGFPE);
}

/// fillNum as a percentage of totalGapNum with two decimals, cut and not rounded.
double FillGapRatio(int fillNum, int totalGapNum) {
    // What the conversion to int gives on this platform for an infinite quotient, and for one beyond its range.
    const double beyond = std::numeric_limits<int>::min() / 100.0;
    if (totalGapNum == 0) return beyond;
    const double ratio = fillNum * 10000.0 / totalGapNum;
    return ratio < 2147483648.0 ? static_cast<int>(ratio) / 100.0 : beyond;
}

/// The quotient is an integer one: 0 with fullFillNum below fillNum, 100 when every filled gap is full.
double FullFillRatio(int fullFillNum, int fillNum) {
    return static_cast<int>(fullFillNum / fillNum * 10000.0) / 100.0;
}

void PrintTable() {
    const int totalGapNum = Sum(total_gap_num);
    const int totalGapLen = Sum(total_gap_length);
    const int noReadGapNum = Sum(no_read_gap);
    const int fillNum = Sum(fill_num);
    const int fillLen = Sum(fill_len);
    const int fullFillNum = Sum(full_fill_num);
    std::cerr << "All the scaffold gaps treat finished!\n\n";
    if (fillNum == 0) EndWithArithmeticFault();
    StreamText(std::cerr)
        << "totalGapNum\ttotalGapLen\tnoReadGap\tfillGapNum\tfillGapRatio\tfillLen\tfullFillNum\tfullFillRatio\t"
           "unfullfillNum\n"
        << totalGapNum << "\t" << totalGapLen << "\t" << noReadGapNum << "\t" << fillNum << "\t"
        << FillGapRatio(fillNum, totalGapNum) << "\t" << fillLen << "\t" << fullFillNum << "\t"
        << FullFillRatio(fullFillNum, fillNum) << "\t" << totalGapNum - fullFillNum << "\n";
}

void FreeStore() {
    for (scafidItr = scafid.begin(); scafidItr != scafid.end(); ++scafidItr) {
        scaffold_delete(scaffolds[scafidItr->second]);
    }
    delete[] scaffolds;
    scaffolds = nullptr;
    scafid.clear();
    CloseGapPlaces();
}

void CloseStreams() {
    for (int i = 0; i < threadNum; ++i) {
        for (std::ofstream* stream : {&logFile[i], &fout[i], &snp[i]}) CloseStream(*stream);
        CheckStreams(i);
    }
    delete[] logFile;
    delete[] fout;
    delete[] snp;
    logFile = fout = snp = nullptr;
}

}  // namespace

int Run(int argc, char** argv) {
    if (argc <= 1) usage();
    const std::time_t start = std::time(nullptr);
    ReadOptions(argc, argv);
    LoadStore();
    AllocateThreadState();
    MakeOutputTree();
    OpenStreams();
    StreamText(std::cerr) << "Load file and creat file using time: " << MinutesSince(start) << "min\n";
    scafidItr = scafid.begin();
    KeepFreedMemory();
    RunWorkers();
    PrintTable();
    FreeStore();
    CloseStreams();
    FreeThreadState();
    CheckStandardOutput();
    StreamText(std::cerr) << "All the gaps treated finish!\n"
                          << "Total used time: " << MinutesSince(start) << "min\n";
    return 0;
}

}  // namespace lintara
