#include "com/class_info.h"

#include <bit>
#include <cstring>

namespace qv {
namespace {

// Member names are looked up on every call by name, so the hash and the
// comparison fold ASCII letters eight bytes at a time instead of making a
// lower-case copy. Bytes outside ASCII are left as they are.
constexpr uint64_t kOnes = 0x0101010101010101ULL;

uint64_t LowerAscii8(uint64_t w) {
  const uint64_t low7 = w & (0x7F * kOnes);
  const uint64_t at_least_a = low7 + (0x80 - 'A') * kOnes;
  const uint64_t above_z = low7 + (0x80 - 'Z' - 1) * kOnes;
  const uint64_t upper = at_least_a & ~above_z & ~w & (0x80 * kOnes);
  return w | (upper >> 2);  // 0x80 >> 2 is the case bit 0x20
}

uint64_t Load64(const char* p) {
  uint64_t w;
  std::memcpy(&w, p, 8);
  return w;
}

uint64_t Load32(const char* p) {
  uint32_t w;
  std::memcpy(&w, p, 4);
  return w;
}

// A name of fewer than 8 bytes packed into one word. Every byte is loaded
// straight from the name: assembling a word in memory byte by byte and
// reading it back would stall on store forwarding.
uint64_t SmallWord(std::string_view s) {
  const size_t n = s.size();
  if (n >= 4) return Load32(s.data()) | (Load32(s.data() + n - 4) << 32);
  if (n == 0) return 0;
  auto byte = [&s](size_t i) {
    return static_cast<uint64_t>(static_cast<uint8_t>(s[i]));
  };
  return byte(0) | (byte(n / 2) << 8) | (byte(n - 1) << 16);
}

// Calls f with the offsets of the 8-byte words that cover a name of at least
// 8 bytes; the last word ends with the name and may overlap the one before.
// Names of one length are always cut the same way.
template <class F>
void ForEachWordOffset(size_t n, F f) {
  size_t i = 0;
  for (; i + 8 < n; i += 8) f(i);
  f(n - 8);
}

// Hash of a name without regard to ASCII letter case.
uint64_t NameHash(std::string_view s) {
  uint64_t h = 0x9E3779B97F4A7C15ULL ^ s.size();
  auto mix = [&h](uint64_t word) {
    h = (h ^ LowerAscii8(word)) * 0xFF51AFD7ED558CCDULL;
    h ^= h >> 32;
  };
  if (s.size() < 8) {
    mix(SmallWord(s));
  } else {
    ForEachWordOffset(s.size(), [&](size_t i) { mix(Load64(s.data() + i)); });
  }
  return h;
}

// Equality of names without regard to ASCII letter case.
bool NameEqual(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  if (a.size() < 8) {
    return LowerAscii8(SmallWord(a)) == LowerAscii8(SmallWord(b));
  }
  uint64_t differ = 0;
  ForEachWordOffset(a.size(), [&](size_t i) {
    differ |=
        LowerAscii8(Load64(a.data() + i)) ^ LowerAscii8(Load64(b.data() + i));
  });
  return differ == 0;
}

// Equality of names as spelt (no case folding).
bool SameSpelling(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  if (a.size() < 8) return SmallWord(a) == SmallWord(b);
  uint64_t differ = 0;
  ForEachWordOffset(a.size(), [&](size_t i) {
    differ |= Load64(a.data() + i) ^ Load64(b.data() + i);
  });
  return differ == 0;
}

}  // namespace

const Accessor& MemberInfo::For(InvokeKind kind) const {
  switch (kind) {
    case InvokeKind::kMethod:
      return method;
    case InvokeKind::kGet:
      return get;
    case InvokeKind::kLet:
      return let;
    case InvokeKind::kSet:
      return set;
  }
  return method;
}

std::string MemberInfo::KindsText() const {
  std::string text;
  auto add = [&text](const Accessor& a, const char* word) {
    if (!a) return;
    if (!text.empty()) text += "/";
    text += word;
  };
  add(method, "method");
  add(get, "get");
  add(let, "let");
  add(set, "set");
  return text;
}

const MemberInfo* ClassInfo::Find(std::string_view name) const {
  const MemberInfo* last = last_found_.member.load(std::memory_order_relaxed);
  if (last != nullptr && SameSpelling(last->name, name)) return last;
  if (slots_.empty()) return nullptr;
  const size_t mask = slots_.size() - 1;
  for (size_t i = NameHash(name) & mask;; i = (i + 1) & mask) {
    const uint32_t slot = slots_[i];
    if (slot == 0) return nullptr;
    const MemberInfo& member = members_[slot - 1];
    if (NameEqual(member.name, name)) {
      last_found_.member.store(&member, std::memory_order_relaxed);
      return &member;
    }
  }
}

bool EventInfo::IsByRef(size_t index) const {
  return index < param_types.size() && param_types[index].ends_with('&');
}

const EventInfo* ClassInfo::FindEvent(std::string_view name) const {
  for (const EventInfo& event : events_) {
    if (NameEqual(event.name, name)) return &event;
  }
  return nullptr;
}

const MemberInfo* ClassInfo::FindById(int32_t id) const {
  if (id < 1 || id > static_cast<int32_t>(members_.size())) return nullptr;
  return &members_[static_cast<size_t>(id - 1)];
}

MemberInfo& ClassInfo::Upsert(std::string_view name) {
  if (const MemberInfo* found = Find(name)) {
    return members_[static_cast<size_t>(found - members_.data())];
  }
  // Adding may move the members: forget the one found last.
  last_found_.member.store(nullptr, std::memory_order_relaxed);
  MemberInfo& member = members_.emplace_back();
  member.name = std::string(name);
  member.id = static_cast<int32_t>(members_.size());
  if (members_.size() * 2 > slots_.size()) {
    Reindex();
  } else {
    Place(members_.size());
  }
  return member;
}

void ClassInfo::Place(size_t position) {
  const size_t mask = slots_.size() - 1;
  size_t i = NameHash(members_[position - 1].name) & mask;
  while (slots_[i] != 0) i = (i + 1) & mask;
  slots_[i] = static_cast<uint32_t>(position);
}

void ClassInfo::Reindex() {
  slots_.assign(std::bit_ceil(members_.size() * 4), 0);
  for (size_t position = 1; position <= members_.size(); ++position) {
    Place(position);
  }
}

}  // namespace qv
