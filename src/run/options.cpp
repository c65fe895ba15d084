#include "run/options.h"

#include <charconv>
#include <cstdlib>
#include <iostream>

#include "run/settings.h"
#include "run/streams.h"

namespace lintara {

void usage() {
    std::cout << "Usage:\t\t" << PROGRAM << " [option]\n"
              << "Version:\t" << VERSION << "\n"
              << "Compile Date:\t" << __DATE__ << "\t" << __TIME__ << "\n"
              << "Author:\t" << AUTHOR << "\n"
              << "Contact:\t" << CONTACT << "\n"
              << "\t-g  <str>   gap file \n"
              << "\t-c  <str>   contig file in fasta\n"
              << "\t-s  <str>   scaffold file in fasta\n"
              << "\t-o  <str>   output directory\n"
              << "\t-k  <int>   kmer length(<=63), default=" << Kmer << "\n"
              << "\t-i  <int>   initSize, default=" << initSize << "\n"
              << "\t-M\t <float> overlap match ratio " << Match_ratio << "\n"
              << "\t-f  <float>   Load factor " << load_factor << "\n"
              << "\t-r  <int>   max read length " << ReadLen << "\n"
              << "\t-t  <int>\t thread number, default=" << threadNum << "\n"
              << "\t-a  <int>   the Min_overlap , default=" << Min_overlap << "\n"
              << "\t-e  <float> the false ratio , default=" << false_ratio << "\n"
              << "\t-h          this help\n\n"
              << "Example:\n"
              << "lintara -c yeast.scafasm.SCAF.contig -g gapread.fa(.gz) -m 5 -t 4 >gapSeq.fa 2>lintara.log\n"
              << "\n\n";
    CheckStandardOutput();
    std::exit(1);
}

int mGetOptions(int rgc, char** rgv) {
    int index = 1;
    for (; index < rgc && rgv[index][0] == '-'; index += 2) {
        const char letter = rgv[index][1];
        const char* value = index + 1 < rgc ? rgv[index + 1] : nullptr;
        const auto text = [value] { return value != nullptr ? value : (std::abort(), value); };
        const auto number = [&text] { return std::atoi(text()); };
        const auto fraction = [&text] { return std::atof(text()); };
        switch (letter) {
            case 'E':
                ECUTOFF = fraction();
                break;
            case 'M':
                Match_ratio = fraction();
                break;
            case 'a':
                Min_overlap = number();
                break;
            case 'c':
                contig_file = text();
                break;
            case 'e':
                false_ratio = fraction();
                break;
            case 'f':
                load_factor = static_cast<float>(fraction());
                break;
            case 'g':
                gap_file = text();
                break;
            case 'i':
                initSize = static_cast<std::uint64_t>(number());
                break;
            case 'k':
                Kmer = number();
                break;
            case 'm':
                Method = number();
                break;
            case 'n':
                GapId = number();
                break;
            case 'o':
                out_file = text();
                break;
            case 'r':
                ReadLen = number();
                break;
            case 's':
                StartId = number();
                break;
            case 't':
                threadNum = number();
                break;
            default:
                usage();
        }
    }
    return index;
}

void itostr(char* buf, int value) {
    *std::to_chars(buf, buf + 11, value).ptr = '\0';
}

}  // namespace lintara
