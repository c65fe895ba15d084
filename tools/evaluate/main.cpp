#include <CLI/CLI.hpp>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "evaluate/evaluate.h"

int main(int argc, char** argv) {
    using namespace lintara::evaluate;
    CLI::App app{
        "Holds filled scaffolds against the true sequence of their gaps and counts the gaps that are exact, near "
        "(full, with at most 2 edits or 1 % of the true length), wrong, partly filled and open."};
    std::string contig_file;
    std::string truth_file;
    std::string per_gap_file;
    std::vector<std::string> filled_files;
    bool by_length = false;
    bool by_kind = false;
    int anchor = 31;
    app.add_option("-c,--contigs", contig_file, "contig file that was filled")->required();
    app.add_option("-T,--truth", truth_file, "truth table: gap, scaffold, contig, stated, true, kind, bases")
        ->required();
    app.add_option("FILE", filled_files, "files of filled scaffolds")->required();
    app.add_flag("--by-length", by_length, "print the counts for each class of true lengths too");
    app.add_flag("--by-kind", by_kind, "print the counts for each kind of gap too");
    app.add_option("--per-gap", per_gap_file, "write one row a gap to this file");
    app.add_option("--anchor", anchor, "length of an anchor in bases")->capture_default_str()->check(CLI::Range(8, 31));
    CLI11_PARSE(app, argc, argv);
    try {
        const Contigs contigs = ReadContigs(contig_file);
        const std::vector<TrueGap> truth = ReadTruth(truth_file);
        Filled filled;
        for (const std::string& file : filled_files) ReadFilled(file, filled);
        const std::vector<GapResult> results = Evaluate(contigs, truth, filled, anchor);
        PrintCounts(results, std::cout);
        if (by_length) PrintByLength(results, std::cout << "\n");
        if (by_kind) PrintByKind(results, std::cout << "\n");
        if (!std::cout.flush()) throw std::runtime_error("cannot write to the standard output");
        if (!per_gap_file.empty()) {
            std::ofstream out(per_gap_file);
            PrintPerGap(results, out);
            out.close();
            if (!out) throw std::runtime_error(per_gap_file + ": cannot be written");
        }
    } catch (const std::exception& error) {
        std::cerr << "lintara-evaluate: " << error.what() << std::endl;
        return 1;
    }
    return 0;
}
