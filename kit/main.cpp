// lintara-kit: command line. Each command is one function of its folder.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>
#include <exception>

#include "kit/assign/prepare.h"
#include "kit/base/child.h"
#include "kit/base/error.h"
#include "kit/check/check.h"
#include "kit/fill/fill.h"
#include "kit/report/report.h"
#include "kit/verify/verify.h"

namespace {

using namespace lintara::kit;

struct Arguments {
    FillOptions fill;
    PrepareOptions prepare;
    VerifyOptions verify;
    std::vector<std::string> checkFiles;
    std::string reportFolder;
};

/// CLI11 gathers several words behind one option unless it is told to take one at a time.
void AddFiles(CLI::App* app, const std::string& name, std::vector<std::string>& files, const std::string& help) {
    app->add_option(name, files, help)->type_name("FILE")->expected(1)->take_all();
}

CLI::App* AddFill(CLI::App& app, FillOptions& fill) {
    CLI::App* command =
        app.add_subcommand("fill", "Map read pairs, fill the gaps, and again while that gains something");
    command->add_option("-s,--scaffolds", fill.scaffolds, "scaffolds, FASTA, plain or gzip")
        ->required()
        ->type_name("FILE");
    AddFiles(command, "-1,--reads1", fill.reads1, "first mates, FASTQ; once for each library");
    AddFiles(command, "-2,--reads2", fill.reads2, "second mates, FASTQ; once for each library");
    AddFiles(command, "--bam", fill.bams, "instead of -1 and -2: BAM or CRAM mapped to the scaffolds; one round");
    command->add_option("-o,--out", fill.out, "output folder")->required()->type_name("OUT");
    command->add_option("-t,--threads", fill.threads, "threads")->check(CLI::Range(1, 1024))->capture_default_str();
    command->add_option("--rounds", fill.rounds, "most rounds")->check(CLI::Range(1, 1000))->capture_default_str();
    command->add_option("--mapper", fill.mapper, "mapper")
        ->check(CLI::IsMember({"bwa", "minimap2"}))
        ->capture_default_str();
    command->add_option("--min-gap", fill.minGap, "shortest run of N that is a gap")
        ->check(CLI::Range(1L, 1000000000L))
        ->capture_default_str();
    command->add_option("--core", fill.core, "the core program")->capture_default_str();
    command->add_flag("--resume", fill.resume, "go on after the last complete round in OUT");
    command->add_flag("--force", fill.force, "begin anew in an existing OUT");
    command->add_flag("--keep", fill.keep, "leave the working files in OUT/work");
    command->add_flag("--quiet", fill.quiet, "tell nothing but errors");
    return command;
}

CLI::App* AddPrepare(CLI::App& app, PrepareOptions& prepare) {
    CLI::App* command = app.add_subcommand("prepare", "Assign mapped reads to gaps and write the core program's input");
    command->add_option("-s,--scaffolds", prepare.scaffolds, "scaffolds, FASTA, plain or gzip")
        ->required()
        ->type_name("FILE");
    command->add_option("--bam", prepare.bams, "BAM or CRAM mapped to the scaffolds, sorted either way")
        ->required()
        ->type_name("FILE")
        ->expected(1)
        ->take_all();
    command->add_option("-o,--out", prepare.out, "output folder")->required()->type_name("DIR");
    command->add_option("--min-gap", prepare.minGap, "shortest run of N that is a gap")
        ->check(CLI::Range(1L, 1000000000L))
        ->capture_default_str();
    command->add_flag("--quiet", prepare.quiet, "tell nothing but errors");
    return command;
}

CLI::App* AddVerify(CLI::App& app, VerifyOptions& verify) {
    CLI::App* command = app.add_subcommand("verify", "Map the reads back and tell what supports each filled stretch");
    command->add_option("-s,--scaffolds", verify.scaffolds, "filled.fa")->required()->type_name("FILE");
    command->add_option("--bed", verify.bed, "filled.bed")->required()->type_name("FILE");
    AddFiles(command, "-1,--reads1", verify.reads1, "first mates, FASTQ; once for each library");
    AddFiles(command, "-2,--reads2", verify.reads2, "second mates, FASTQ; once for each library");
    command->add_option("--bam", verify.bam, "instead of -1 and -2: BAM or CRAM mapped to filled.fa")
        ->type_name("FILE");
    command->add_option("--mapper", verify.mapper, "mapper")
        ->check(CLI::IsMember({"bwa", "minimap2"}))
        ->capture_default_str();
    command->add_option("-t,--threads", verify.threads, "threads")->check(CLI::Range(1, 1024))->capture_default_str();
    command->add_option("-o,--out", verify.output, "table; the standard output without it")->type_name("FILE");
    command->add_flag("--mask", verify.mask, "turn stretches without support back to N");
    command->add_option("--mask-file", verify.maskFile, "where to write the masked scaffolds")->type_name("FILE");
    command->add_flag("--quiet", verify.quiet, "tell nothing but errors");
    return command;
}

}  // namespace

int main(int argc, char** argv) {
    // A child or a disk that goes away is told by the failing write, not by a signal.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    // Whoever started this may leave it ignored, and then the end of a child could not be learnt.
    std::signal(SIGCHLD, SIG_DFL);
    CLI::App app{"From scaffolds and read pairs to filled scaffolds, with evidence for every base.", "lintara-kit"};
    app.set_version_flag("--version", "lintara-kit " LINTARA_KIT_VERSION);
    app.require_subcommand(1);
    Arguments arguments;
    CLI::App* fill = AddFill(app, arguments.fill);
    CLI::App* prepare = AddPrepare(app, arguments.prepare);
    CLI::App* verify = AddVerify(app, arguments.verify);
    CLI::App* check = app.add_subcommand("check", "Tell what is wrong with scaffold, contig, gap and truth files");
    check->add_option("files", arguments.checkFiles, "files")->required()->type_name("FILE");
    CLI::App* report = app.add_subcommand("report", "Write the report of an output folder anew");
    report->add_option("out", arguments.reportFolder, "output folder of fill")->required()->type_name("OUT");
    CLI11_PARSE(app, argc, argv);
    try {
        if (*fill) {
            arguments.fill.command = CommandLine(std::vector<std::string>(argv, argv + argc));
            return RunFill(arguments.fill);
        }
        if (*prepare) return RunPrepare(arguments.prepare);
        if (*verify) return RunVerify(arguments.verify);
        if (*check) return RunCheck(arguments.checkFiles);
        if (*report) WriteReport(arguments.reportFolder);
        return 0;
    } catch (const Error& error) {
        std::fputs(fmt::format("lintara-kit: {}\n", error.what()).c_str(), stderr);
        return error.status;
    } catch (const std::exception& error) {
        std::fputs(fmt::format("lintara-kit: {}\n", error.what()).c_str(), stderr);
        return 1;
    }
}
