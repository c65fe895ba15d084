#include "run/settings.h"

namespace lintara {

std::string gap_file;
std::string contig_file;
std::string out_file;
int Kmer = 31;
std::uint64_t initSize = 1048576;
double Match_ratio = 0.97;
float load_factor = 0.75F;
int ReadLen = 100;
int threadNum = 1;
int Min_overlap = 30;
double false_ratio = 0.14;
double ECUTOFF = 0.6;
int Method = 5;
std::atomic<int> GapId{-1};
int StartId = -1;
int min_align = 8;
int ContigLen = 32;
int TELEN = 250;
int readLen = 100;
int IsGz = 0;
std::string gz_gap_file;

const char* PROGRAM = "Lintara";
const char* AUTHOR = "The Lintara developers";
const char* VERSION = "lintara 1.19";
const char* CONTACT = "lintara-users@example.org; lintara-devel@example.org";
const char* UPDATE = "multithread.";

bool* SHORTOVERLAP = nullptr;
std::uint64_t* initSizes = nullptr;

}  // namespace lintara
