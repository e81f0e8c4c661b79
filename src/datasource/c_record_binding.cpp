#include "datasource/c_record_binding.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <unordered_map>

#include "com/error.h"
#include "datasource/internal/field_value.h"

namespace qv::ds {
namespace {

struct Registry {
  std::mutex mutex;
  std::unordered_map<const void*, std::shared_ptr<const CRecordLayout>> records;
};

Registry& TheRegistry() {
  static Registry* registry = new Registry;  // never destroyed: used by statics
  return *registry;
}

bool SizeFits(int type, size_t size) {
  switch (type) {
    case kAdVarWChar:
    case kAdLongVarWChar:
      return size >= 1;
    case kAdSmallInt:
      return size == sizeof(int16_t);
    case kAdInteger:
    case kAdBoolean:
      return size == sizeof(int32_t);
    case kAdSingle:
      return size == sizeof(float);
    case kAdDouble:
    case kAdDate:
      return size == sizeof(double);
    default:
      return false;
  }
}

// Whether a structure member of C type `c_type` can hold a field of
// `field_type`.
bool CanHold(int c_type, int field_type) {
  switch (c_type) {
    case kAdVarWChar:
    case kAdLongVarWChar:
      return field_type == kAdVarWChar || field_type == kAdLongVarWChar;
    case kAdInteger:
      return field_type == kAdInteger || field_type == kAdSmallInt;
    case kAdDouble:
      return field_type == kAdDouble || field_type == kAdSingle;
    default:
      return field_type == c_type;
  }
}

// Length of the longest prefix of `s` of at most `max` bytes that does not
// end inside a UTF-8 sequence.
size_t CutAtCharacter(const std::string& s, size_t max) {
  if (s.size() <= max) return s.size();
  size_t n = max;
  while (n > 0 && (static_cast<unsigned char>(s[n]) & 0xC0) == 0x80) --n;
  return n;
}

template <class T>
void Store(char* at, T value) {
  std::memcpy(at, &value, sizeof value);
}

template <class T>
T Load(const char* at) {
  T value;
  std::memcpy(&value, at, sizeof value);
  return value;
}

void WriteMember(char* at, const QvCFieldLayout& f, const Variant& v) {
  const bool none = v.IsEmpty() || v.IsNull();
  switch (f.type) {
    case kAdVarWChar:
    case kAdLongVarWChar: {
      const std::string s = none ? std::string() : v.ToString();
      const size_t n = CutAtCharacter(s, f.size - 1);
      std::memcpy(at, s.data(), n);
      at[n] = '\0';
      break;
    }
    case kAdSmallInt:
      Store<int16_t>(at, none ? 0 : v.ToInteger());
      break;
    case kAdInteger:
      Store<int32_t>(at, none ? 0 : v.ToLong());
      break;
    case kAdBoolean:
      Store<int32_t>(at, !none && v.ToBoolean() ? -1 : 0);
      break;
    case kAdSingle:
      Store<float>(at, none ? 0.0f : v.ToSingle());
      break;
    case kAdDouble:
      Store<double>(at, none ? 0.0 : v.ToDouble());
      break;
    case kAdDate:
      Store<double>(at, none ? 0.0 : v.ToDate().serial);
      break;
    default:
      break;
  }
}

Variant ReadMember(const char* at, const QvCFieldLayout& f) {
  switch (f.type) {
    case kAdVarWChar:
    case kAdLongVarWChar:
      return Variant(std::string(at, strnlen(at, f.size)));
    case kAdSmallInt:
      return Variant(Load<int16_t>(at));
    case kAdInteger:
      return Variant(Load<int32_t>(at));
    case kAdBoolean:
      return Variant(Load<int32_t>(at) != 0);
    case kAdSingle:
      return Variant(Load<float>(at));
    case kAdDouble:
      return Variant(Load<double>(at));
    case kAdDate:
      return Variant(Date{Load<double>(at)});
    default:
      return Variant();
  }
}

}  // namespace

Variant CRecordPointer(const void* address) {
  return Variant(qv_c_record_pointer(address));
}

std::shared_ptr<const CRecordLayout> FindCRecord(const Variant& pointer) {
  if (!pointer.IsNumberType() || pointer.type() == VarType::kBoolean ||
      pointer.type() == VarType::kDate) {
    throw Error::Runtime(err::kTypeMismatch);
  }
  const double d = pointer.ToDouble();
  if (!(d >= 0 && d < 9007199254740992.0) || std::floor(d) != d) return nullptr;
  const void* address =
      reinterpret_cast<const void*>(static_cast<uintptr_t>(d));
  Registry& r = TheRegistry();
  std::lock_guard lock(r.mutex);
  const auto it = r.records.find(address);
  return it == r.records.end() ? nullptr : it->second;
}

std::unique_ptr<CRecordBinding> CRecordBinding::Bind(
    std::shared_ptr<const CRecordLayout> layout,
    const std::vector<ColumnDef>& fields) {
  auto binding = std::unique_ptr<CRecordBinding>(new CRecordBinding);
  for (const QvCFieldLayout& f : layout->fields) {
    int found = -1;
    for (size_t i = 0; i < fields.size() && found < 0; ++i) {
      if (EqualsNoCase(fields[i].name, f.name)) found = static_cast<int>(i);
    }
    if (found < 0 || !CanHold(f.type, fields[found].type)) return nullptr;
    binding->field_of_.push_back(found);
  }
  binding->layout_ = layout;
  return binding;
}

void CRecordBinding::CopyOut(std::span<const Variant> buffer) const {
  const std::shared_ptr<const CRecordLayout> layout = layout_.lock();
  if (!layout) return;
  char* base = static_cast<char*>(layout->address);
  for (size_t i = 0; i < field_of_.size(); ++i) {
    const QvCFieldLayout& f = layout->fields[i];
    try {
      WriteMember(base + f.offset, f, buffer[field_of_[i]]);
    } catch (const Error&) {  // a value the member cannot take: leave it empty
      WriteMember(base + f.offset, f, Variant());
    }
  }
}

void CRecordBinding::CopyIn(std::vector<Variant>& buffer) const {
  const std::shared_ptr<const CRecordLayout> layout = layout_.lock();
  if (!layout) return;
  const char* base = static_cast<const char*>(layout->address);
  for (size_t i = 0; i < field_of_.size(); ++i) {
    buffer[field_of_[i]] =
        ReadMember(base + layout->fields[i].offset, layout->fields[i]);
  }
}

}  // namespace qv::ds

extern "C" int qv_register_c_record(void* address, const char* table,
                                    const QvCFieldLayout* fields,
                                    size_t count) {
  using qv::ds::CRecordLayout;
  if (!address || !table || !*table || !fields || count == 0) return -1;
  auto layout = std::make_shared<CRecordLayout>();
  layout->address = address;
  layout->table = table;
  layout->names.reserve(count);
  for (size_t i = 0; i < count; ++i) {
    const QvCFieldLayout& f = fields[i];
    if (!f.name || !*f.name || !qv::ds::SizeFits(f.type, f.size)) return -1;
    layout->names.emplace_back(f.name);
  }
  for (size_t i = 0; i < count; ++i) {
    layout->fields.push_back(fields[i]);
    layout->fields.back().name = layout->names[i].c_str();
  }
  qv::ds::Registry& r = qv::ds::TheRegistry();
  std::lock_guard lock(r.mutex);
  r.records[address] = std::move(layout);
  return 0;
}

extern "C" int qv_unregister_c_record(void* address) {
  qv::ds::Registry& r = qv::ds::TheRegistry();
  std::lock_guard lock(r.mutex);
  return r.records.erase(address) == 1 ? 0 : -1;
}

extern "C" double qv_c_record_pointer(const void* address) {
  return static_cast<double>(reinterpret_cast<uintptr_t>(address));
}
