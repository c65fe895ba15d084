#include <CLI/CLI.hpp>
#include <iostream>
#include <stdexcept>
#include <string>

#include "simulate/simulate.h"

int main(int argc, char** argv) {
    using namespace lintara::simulate;
    CLI::App app{
        "Simulates an input whose truth is known: writes contig.fa, gap.fa (or gap.fa.gz) and truth.tsv into a "
        "directory. The same seed and options give the same bytes. Shares are between 0 and 1."};
    Options o;
    std::string directory;
    std::string gap_lengths = "1-100:3,101-600:4,601-1499:2,1500-4000:1";
    std::string tandem_units = "1,2,3,4,5,6,7,9,12,15,21,33,45";
    app.option_defaults()->always_capture_default();
    app.add_option("DIRECTORY", directory, "where to write; made if there is none")->required();
    app.add_option("--seed", o.seed, "seed of the random numbers");
    app.add_flag("--interleave", o.interleave, "mix the records of the gap file");
    app.add_flag("--gzip", o.gzip, "compress the gap file");

    app.add_option("--scaffolds", o.scaffolds, "number of scaffolds")->group("Scaffolds");
    app.add_option("--gaps", o.gaps, "gaps of a scaffold, mean")->group("Scaffolds");
    app.add_option("--no-gaps", o.no_gaps, "share of scaffolds that are one contig")->group("Scaffolds");
    app.add_option("--contig", o.contig, "contig length, mean")->group("Scaffolds");
    app.add_option("--short-contigs", o.short_contigs, "share of contigs of 5 to 120 bases")->group("Scaffolds");
    app.add_option("--lower", o.lower, "share of contigs with a stretch in lower case")->group("Scaffolds");

    app.add_option("--gap-lengths", gap_lengths, "true gap lengths, LO-HI:WEIGHT,...")->group("Gaps");
    app.add_option("--overlaps", o.overlaps, "share of gaps whose contigs overlap")->group("Gaps");
    app.add_option("--zero", o.zero, "share of gaps of true length 0")->group("Gaps");
    app.add_option("--one", o.one, "share of the gaps below 60 bases that are stated as 1")->group("Gaps");
    app.add_option("--length-noise", o.length_noise, "relative standard deviation of the stated length")->group("Gaps");
    app.add_option("--tandem", o.tandem, "share of the longer gaps that hold a tandem repeat")->group("Gaps");
    app.add_option("--tandem-units", tandem_units, "unit lengths of tandem repeats, U,V,...")->group("Gaps");
    app.add_option("--dispersed", o.dispersed, "share of the longer gaps that hold a dispersed repeat")->group("Gaps");

    app.add_option("--no-reads", o.no_reads, "share of gaps without reads")->group("Reads");
    app.add_option("--read-length", o.read_length, "read length")->group("Reads");
    app.add_option("--long-reads", o.long_reads, "share of reads of 1.2 to 1.9 read lengths")->group("Reads");
    app.add_option("--short-reads", o.short_reads, "share of reads of half to one read length")->group("Reads");
    app.add_option("--coverage", o.coverage, "reads over each base")->group("Reads");
    app.add_option("--holes", o.holes, "share of gaps with a stretch of low coverage")->group("Reads");
    app.add_option("--error", o.error, "share of read bases that are replaced by another")->group("Reads");
    app.add_option("--n-rate", o.n_rate, "share of read bases that are replaced by N")->group("Reads");
    app.add_option("--wrong-reads", o.wrong_reads, "share of reads from elsewhere")->group("Reads");
    app.add_option("--position-noise", o.position_noise, "standard deviation of a read's position")->group("Reads");
    CLI11_PARSE(app, argc, argv);
    try {
        o.gap_lengths = ParseLengthClasses(gap_lengths);
        o.tandem_units = ParseUnits(tandem_units);
        const Totals totals = Simulate(o, directory);
        std::cout << "scaffolds\t" << totals.scaffolds << "\ngaps\t" << totals.gaps << "\ngaps with reads\t"
                  << totals.gaps_with_reads << "\nreads\t" << totals.reads << "\n";
        if (!std::cout.flush()) throw std::runtime_error("cannot write to the standard output");
    } catch (const std::exception& error) {
        std::cerr << "lintara-simulate: " << error.what() << std::endl;
        return 1;
    }
    return 0;
}
