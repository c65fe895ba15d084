#include "kit/fill/mapper.h"

#include <fmt/format.h>
#include <signal.h>

#include <algorithm>

#include "kit/base/error.h"
#include "kit/base/file.h"

namespace lintara::kit {

namespace {

void ThrowIfBad(const std::string& program, const ChildEnd& end, const std::string& messages) {
    if (end.Good()) return;
    std::string words = LastLines(messages, 3);
    throw Error(EndWords(program, end) + (words.empty() ? "" : ": " + words));
}

}  // namespace

double Mapper::Index(const std::string& reference) {
    if (!IsBwa()) return 0;
    std::vector<std::string> command = {program_, "index", reference};
    commands_.push_back(CommandLine(command));
    std::string messages = reference + ".index.txt";
    Child child(command, reference + ".index.out", messages);
    ChildEnd end = child.Wait();
    ThrowIfBad(program_, end, messages);
    return end.cpu;
}

double Mapper::Map(const std::string& reference, const std::vector<std::string>& reads, const InsertSize& insert,
                   const std::string& messages, const std::function<void(int)>& read) {
    std::string threads = std::to_string(threads_);
    std::vector<std::string> command = {program_, "-ax", "sr", "-t", threads};
    if (IsBwa()) {
        // A fixed batch size makes the mapping the same with any number of threads.
        command = {program_, "mem", "-t", threads, "-K", "10000000", "-v", "1"};
        if (insert.pairs > 0) {
            command.insert(command.end(),
                           {"-I", fmt::format("{:.1f},{:.1f}", insert.median, std::max(insert.deviation, 1.0))});
        }
    }
    command.push_back(reference);
    command.insert(command.end(), reads.begin(), reads.end());
    commands_.push_back(CommandLine(command));
    Child child(command, "", messages);
    std::string broken;
    try {
        read(child.TakeOutFd());
    } catch (const Error& error) {
        broken = error.what();
    }
    ChildEnd end = child.Wait();
    // When our side broke off, the mapper's end is its consequence, unless it had a fault of its own.
    if (broken.empty() || (end.signal != SIGPIPE && !end.Good())) ThrowIfBad(program_, end, messages);
    if (!broken.empty()) throw Error(broken);
    NoteWarnings(messages);
    return end.cpu;
}

void Mapper::NoteWarnings(const std::string& messages) {
    LineReader reader(messages);
    for (std::string line; reader.Next(line);) {
        bool warns = line.starts_with("[W::") || line.starts_with("[WARNING]");
        if (warns && std::find(warnings_.begin(), warnings_.end(), line) == warnings_.end()) warnings_.push_back(line);
    }
}

std::vector<std::string> Mapper::TakeWarnings() {
    std::vector<std::string> warnings;
    warnings.swap(warnings_);
    return warnings;
}

std::string Mapper::Version(const std::string& folder) const {
    std::string out = folder + "/version.out";
    std::string err = folder + "/version.txt";
    std::vector<std::string> command = {program_};
    if (!IsBwa()) command.push_back("--version");
    Child child(command, out, err);
    child.Wait();
    std::string words = ReadWhole(IsBwa() ? err : out);
    size_t at = words.find("Version: ");
    at = at == std::string::npos ? 0 : at + 9;
    return words.substr(at, words.find('\n', at) - at);
}

std::vector<std::string> Mapper::TakeCommands() {
    std::vector<std::string> commands;
    commands.swap(commands_);
    return commands;
}

}  // namespace lintara::kit
