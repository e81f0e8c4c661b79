#include "com/class_info.h"

namespace qv {
namespace {

// Member names are ASCII; folding them into a small buffer keeps the lookup
// free of allocations.
constexpr size_t kMaxName = 96;

bool FoldName(std::string_view name, char* out) {
  if (name.size() > kMaxName) return false;
  for (size_t i = 0; i < name.size(); ++i) {
    const char c = name[i];
    out[i] = (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c;
  }
  return true;
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
  char folded[kMaxName];
  if (!FoldName(name, folded)) return nullptr;
  auto it = index_.find(std::string_view(folded, name.size()));
  return it == index_.end() ? nullptr : &members_[it->second];
}

const MemberInfo* ClassInfo::FindById(int32_t id) const {
  if (id < 1 || id > static_cast<int32_t>(members_.size())) return nullptr;
  return &members_[static_cast<size_t>(id - 1)];
}

MemberInfo& ClassInfo::Upsert(std::string_view name) {
  char folded[kMaxName];
  if (!FoldName(name, folded)) std::abort();  // a programming error
  const std::string key(folded, name.size());
  auto it = index_.find(key);
  if (it != index_.end()) return members_[it->second];
  index_.emplace(key, members_.size());
  MemberInfo& member = members_.emplace_back();
  member.name = std::string(name);
  member.id = static_cast<int32_t>(members_.size());
  return member;
}

}  // namespace qv
