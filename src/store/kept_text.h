// The text of a compressed gap file, kept while it is uncompressed for the count, so that it is uncompressed only once
// and the reads of a gap can be taken out of it when the gap is treated. It takes about as much memory as the reads in
// the store would.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace lintara {

/// A text that only grows, in pieces that never move.
class KeptText {
  public:
    void Append(const char* from, std::size_t size);

    /// Copies what stands from a place on. @return number of bytes, at most `size`; 0 at the end of the text
    std::size_t Copy(std::uint64_t place, char* to, std::size_t size) const;

    /// What stands from a place on, without a copy; null where it does not lie in one piece. kRecordSlack bytes behind
    /// it are readable.
    const char* Stretch(std::uint64_t place, std::uint64_t size) const;

    /// Forgets the text.
    void Clear();

    std::uint64_t size() const { return size_; }

  private:
    static constexpr std::size_t kPiece = 1 << 18;  // bytes
    std::vector<std::unique_ptr<char[]>> pieces_;   // all but the last are full
    std::uint64_t size_ = 0;
};

}  // namespace lintara
