#include "document/check/draft.h"

#include <algorithm>

namespace reedid::document::check {

void Draft::Write(size_t at, std::initializer_list<int> bytes) {
  for (const int byte : bytes) bytes_[at++] = static_cast<uint8_t>(byte);
}

void Draft::Fill(size_t at, size_t count, uint8_t byte) {
  std::fill_n(bytes_.begin() + static_cast<std::ptrdiff_t>(at), count, byte);
}

void Draft::Cut(const CtaBlock& cta, size_t at, size_t count) {
  const auto from = bytes_.begin() + static_cast<std::ptrdiff_t>(at);
  const auto end = bytes_.begin() + static_cast<std::ptrdiff_t>(cta.at + kBlockSize - 1);
  std::fill(std::copy(from + static_cast<std::ptrdiff_t>(count), end, from), end, uint8_t{0});
  bytes_[cta.at + 2] = static_cast<uint8_t>(bytes_[cta.at + 2] - count);
}

void Draft::CutListByte(const DataBlock& block, size_t payloadAt, size_t at) {
  if (block.bytes.size() == payloadAt + 1) return CutDataBlock(block);
  --bytes_[block.at];  // the length stands in its low bits
  Cut(view_.ctas[block.cta], at, 1);
}

std::vector<Patch> Draft::Changes() const {
  std::vector<Patch> changes;
  const auto before = view_.image.span();
  for (size_t at = 0; at < bytes_.size(); ++at) {
    if (bytes_[at] == before[at]) continue;
    if (changes.empty() || changes.back().at + changes.back().bytes.size() != at) changes.push_back({at, {}});
    changes.back().bytes.push_back(bytes_[at]);
  }
  return changes;
}

}  // namespace reedid::document::check
