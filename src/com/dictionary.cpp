#include "com/dictionary.h"

#include <functional>

#include "com/class_factory.h"
#include "com/dispatch.h"
#include "com/error.h"

namespace qv {

size_t Dictionary::KeyHash::operator()(const KeyRepr& k) const {
  size_t h = std::hash<int>()(k.kind);
  h ^= std::hash<double>()(k.number) + 0x9e3779b9 + (h << 6) + (h >> 2);
  h ^= std::hash<std::string>()(k.text) + 0x9e3779b9 + (h << 6) + (h >> 2);
  h ^= std::hash<const void*>()(k.object) + 0x9e3779b9 + (h << 6) + (h >> 2);
  return h;
}

Dictionary::KeyRepr Dictionary::Reduce(const Variant& key) const {
  KeyRepr r;
  if (key.IsEmpty()) return r;
  if (key.IsNull()) {
    r.kind = 1;
  } else if (const std::string* s = key.AsString()) {
    r.kind = 3;
    r.text = mode_ == text::CompareMode::kText ? text::LCase(*s) : *s;
  } else if (key.IsObject()) {
    r.kind = 4;
    r.object = key.ToObject().get();
  } else if (key.IsArray()) {
    throw Error::Runtime(err::kTypeMismatch);
  } else {
    r.kind = 2;
    r.number = key.ToDouble();
  }
  return r;
}

Dictionary::Dictionary(const Dictionary& other)
    : Dispatchable<Dictionary>(other),
      mode_(other.mode_),
      entries_(other.entries_) {
  Reindex();
}

Dictionary& Dictionary::operator=(const Dictionary& other) {
  if (this == &other) return *this;
  mode_ = other.mode_;
  entries_ = other.entries_;
  Reindex();
  return *this;
}

void Dictionary::Reindex() {
  index_.clear();
  for (auto it = entries_.begin(); it != entries_.end(); ++it) {
    index_.emplace(Reduce(it->first), it);
  }
}

void Dictionary::Add(const Variant& key, Variant item) {
  KeyRepr r = Reduce(key);
  if (index_.count(r)) throw Error::Runtime(err::kKeyAlreadyAssociated);
  entries_.emplace_back(key, std::move(item));
  index_.emplace(std::move(r), std::prev(entries_.end()));
}

bool Dictionary::Exists(const Variant& key) const {
  return index_.count(Reduce(key)) != 0;
}

const Variant* Dictionary::Find(const Variant& key) const {
  auto it = index_.find(Reduce(key));
  return it == index_.end() ? nullptr : &it->second->second;
}

Variant& Dictionary::Item(const Variant& key) {
  KeyRepr r = Reduce(key);
  auto it = index_.find(r);
  if (it != index_.end()) return it->second->second;
  entries_.emplace_back(key, Variant());
  index_.emplace(std::move(r), std::prev(entries_.end()));
  return entries_.back().second;
}

void Dictionary::Remove(const Variant& key) {
  auto it = index_.find(Reduce(key));
  if (it == index_.end()) throw Error::Runtime(err::kElementNotFound);
  entries_.erase(it->second);
  index_.erase(it);
}

void Dictionary::RemoveAll() {
  entries_.clear();
  index_.clear();
}

SafeArray Dictionary::Keys() const {
  SafeArray keys;
  for (const Entry& e : entries_) keys.Append(e.first);
  return keys;
}

SafeArray Dictionary::Items() const {
  SafeArray items;
  for (const Entry& e : entries_) items.Append(e.second);
  return items;
}

void Dictionary::SetCompareMode(text::CompareMode mode) {
  if (!entries_.empty()) throw Error::Runtime(err::kInvalidProcedureCall);
  mode_ = mode;
}

ClassInfo Dictionary::BuildClassInfo() {
  using D = Dictionary;
  auto put = [](D& d, Variant key, Variant item) {
    d.SetItem(key, std::move(item));
  };
  return ClassBuilder<D>("Dictionary")
      .Method("Add", [](D& d, Variant key,
                        Variant item) { d.Add(key, std::move(item)); })
      .Get("Count", &D::Count)
      .Method("Exists", [](D& d, Variant key) { return d.Exists(key); })
      .Method("Items", &D::Items)
      .Get("Item", [](D& d, Variant key) { return d.Item(key); })
      .Let("Item", put)
      .Set("Item", put)
      .Method("Keys", &D::Keys)
      .Method("Remove", [](D& d, Variant key) { d.Remove(key); })
      .Method("RemoveAll", &D::RemoveAll)
      .Get("CompareMode",
           [](D& d) { return static_cast<int32_t>(d.CompareMode()); })
      .Let("CompareMode",
           [](D& d, int32_t mode) {
             d.SetCompareMode(static_cast<text::CompareMode>(mode));
           })
      .Build();
}

namespace {
[[maybe_unused]] const bool kRegistered = RegisterClass(
    "Scripting.Dictionary",
    [] { return ObjectPtr(std::make_shared<Dictionary>()); },
    Dictionary::StaticClassInfo());
}  // namespace

}  // namespace qv
