// The mapper as a child: its index, and its SAM stream read by a function of the caller.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "kit/assign/insert_size.h"
#include "kit/base/child.h"

namespace lintara::kit {

class Mapper {
  public:
    Mapper() = default;
    /// @param kind     bwa or minimap2
    /// @param program  its path
    Mapper(std::string kind, std::string program, int threads)
        : kind_(std::move(kind)), program_(std::move(program)), threads_(threads) {}

    /// Indexes the FASTA file where the mapper needs that. Throws Error when it fails.
    double Index(const std::string& reference);
    /// Maps one file of single reads, or two of pairs; `insert` spares the mapper its own estimate. `read` takes the
    /// stream's file descriptor. Throws Error with the mapper's last words from `messages`.
    /// @return processor time of the mapper, seconds; so does Index()
    double Map(const std::string& reference, const std::vector<std::string>& reads, const InsertSize& insert,
               const std::string& messages, const std::function<void(int)>& read);
    /// What the mapper says of its version; scratch files go to `folder`.
    std::string Version(const std::string& folder) const;
    /// Commands since the last call.
    std::vector<std::string> TakeCommands();
    /// Warnings of the mapper since the last call, each once.
    std::vector<std::string> TakeWarnings();

  private:
    void NoteWarnings(const std::string& messages);
    bool IsBwa() const { return kind_ == "bwa"; }

    std::string kind_;
    std::string program_;
    int threads_ = 1;
    std::vector<std::string> commands_;
    std::vector<std::string> warnings_;
};

}  // namespace lintara::kit
