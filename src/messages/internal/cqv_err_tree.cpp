#include "messages/internal/cqv_err_tree.h"

#include <cmath>

#include "com/safe_array.h"

namespace qv::internal {
namespace {

enum Sort { kEmpty, kNull, kNumber, kNaN, kText, kObject, kOther };

// A text that tells arrays apart by their bounds and every element.
std::string Fingerprint(const Variant& v) {
  if (!v.IsArray()) return v.Describe();
  const SafeArray& a = v.ToArray();
  std::string out = v.Describe() + "{";
  for (const Variant& item : a) out += Fingerprint(item) + "\x1f";
  return out + "}";
}

}  // namespace

CQvErrTree::FieldKey CQvErrTree::KeyOf(const Variant& v) {
  FieldKey key;
  if (v.IsEmpty()) {
    key.sort = kEmpty;
  } else if (v.IsNull()) {
    key.sort = kNull;
  } else if (v.IsNumberType()) {
    key.number = v.ToDouble();
    // NaN is unordered; all NaNs count as one value.
    key.sort = std::isnan(key.number) ? kNaN : kNumber;
    if (key.sort == kNaN) key.number = 0;
  } else if (const std::string* s = v.AsString()) {
    key.sort = kText;
    key.text = *s;
  } else if (v.IsObject()) {
    key.sort = kObject;
    key.object = v.ToObject().get();
  } else {
    key.sort = kOther;
    key.text = Fingerprint(v);
  }
  return key;
}

bool CQvErrTree::Insert(CQvErrMsg& msg) {
  MessageKey key{msg.m_eModul, msg.m_lNum, {}};
  const auto& fields = msg.m_colDbFieldList();
  key.fields.reserve(static_cast<size_t>(fields->Count()));
  for (int32_t i = 1; i <= fields->Count(); ++i) {
    key.fields.push_back(KeyOf(fields->Item(Variant(i))));
  }
  return seen_.insert(std::move(key)).second;
}

}  // namespace qv::internal
