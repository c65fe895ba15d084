#include "store/kept_text.h"

#include <algorithm>
#include <cstring>

#include "store/gap_record.h"

namespace lintara {

void KeptText::Append(const char* from, std::size_t size) {
    while (size > 0) {
        const std::size_t used = size_ % kPiece;
        if (used == 0) pieces_.push_back(std::make_unique_for_overwrite<char[]>(kPiece + kRecordSlack));
        const std::size_t count = std::min(size, kPiece - used);
        std::memcpy(pieces_.back().get() + used, from, count);
        size_ += count;
        from += count;
        size -= count;
    }
}

std::size_t KeptText::Copy(std::uint64_t place, char* to, std::size_t size) const {
    std::size_t copied = 0;
    while (copied < size && place < size_) {
        const std::size_t used = place % kPiece;
        const std::size_t count = std::min<std::uint64_t>({size - copied, kPiece - used, size_ - place});
        std::memcpy(to + copied, pieces_[place / kPiece].get() + used, count);
        copied += count;
        place += count;
    }
    return copied;
}

const char* KeptText::Stretch(std::uint64_t place, std::uint64_t size) const {
    const std::size_t used = place % kPiece;
    if (place > size_ || size > size_ - place || size > kPiece - used || place / kPiece >= pieces_.size())
        return nullptr;
    return pieces_[place / kPiece].get() + used;
}

void KeptText::Clear() {
    pieces_.clear();
    pieces_.shrink_to_fit();
    size_ = 0;
}

}  // namespace lintara
