#include "data/table_name.h"

#include <cstdint>
#include <cstring>

#include "com/text.h"

namespace qv {
namespace {

// Names are folded and hashed eight bytes at a time: a table name takes one
// or two words instead of a loop over its characters.
constexpr uint64_t kSeed = 0x9e3779b97f4a7c15ull;
constexpr uint64_t kMultiplier = 0xbf58476d1ce4e5b9ull;
constexpr uint64_t kHighBits = 0x8080808080808080ull;

inline uint64_t Mix(uint64_t h, uint64_t word) {
  h = (h ^ word) * kMultiplier;
  return h ^ (h >> 31);
}

// Lower-cases the ASCII capitals among eight bytes that are all below 0x80:
// adding 0x3f sets a byte's high bit from 'A' up, adding 0x25 from '[' up,
// and no sum carries into the next byte.
inline uint64_t LowerAsciiWord(uint64_t word) {
  const uint64_t from_a = word + 0x3f3f3f3f3f3f3f3full;
  const uint64_t past_z = word + 0x2525252525252525ull;
  return word | (((from_a & ~past_z) & kHighBits) >> 2);
}

inline uint64_t Load32(const char* bytes) {
  uint32_t word;
  std::memcpy(&word, bytes, 4);
  return word;
}

inline uint64_t Byte(const char* bytes, size_t k) {
  return uint64_t{static_cast<unsigned char>(bytes[k])} << (8 * k);
}

// The last, partial word of a name (1 to 7 bytes): its bytes from the
// lowest up, the rest zero. Two overlapping loads instead of a loop over
// the bytes; where they overlap they put the same bytes in the same place.
inline uint64_t TailWord(const char* bytes, size_t count) {
  if (count >= 4) {
    return Load32(bytes) | (Load32(bytes + count - 4) << (8 * (count - 4)));
  }
  return Byte(bytes, 0) | Byte(bytes, count / 2) | Byte(bytes, count - 1);
}

}  // namespace

size_t TableNameKey::Hash(std::string_view normalized) {
  const size_t size = normalized.size();
  uint64_t h = kSeed ^ size;
  size_t i = 0;
  for (; i + 8 <= size; i += 8) {
    uint64_t word;
    std::memcpy(&word, normalized.data() + i, 8);
    h = Mix(h, word);
  }
  if (i < size) h = Mix(h, TailWord(normalized.data() + i, size - i));
  return static_cast<size_t>(h);
}

std::string NormalizeTableName(std::string_view name) {
  return text::LCase(text::Trim(name));
}

TableNameKey::TableNameKey(std::string_view name) {
  size_t first = 0;
  size_t last = name.size();
  while (first < last && name[first] == ' ') ++first;
  while (last > first && name[last - 1] == ' ') --last;
  const std::string_view trimmed = name.substr(first, last - first);
  const size_t size = trimmed.size();
  if (size <= kBufferSize) {
    uint64_t high = 0;
    uint64_t h = kSeed ^ size;
    size_t i = 0;
    for (; i + 8 <= size; i += 8) {
      uint64_t word;
      std::memcpy(&word, trimmed.data() + i, 8);
      high |= word;
      word = LowerAsciiWord(word);
      std::memcpy(buffer_.data() + i, &word, 8);
      h = Mix(h, word);
    }
    if (i < size) {
      uint64_t word = TailWord(trimmed.data() + i, size - i);
      high |= word;
      word = LowerAsciiWord(word);
      // i + 8 <= kBufferSize: the bytes past the name are not part of it.
      std::memcpy(buffer_.data() + i, &word, 8);
      h = Mix(h, word);
    }
    if ((high & kHighBits) == 0) {
      view_ = std::string_view(buffer_.data(), size);
      hash_ = static_cast<size_t>(h);
      return;
    }
  }
  fallback_ = text::LCase(trimmed);
  view_ = fallback_;
  hash_ = Hash(view_);
}

}  // namespace qv
