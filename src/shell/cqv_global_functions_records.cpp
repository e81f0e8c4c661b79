// Record helpers of CQVGlobalFunctions: keys, emptying, copying and
// comparing on QvRecordset objects.
#include <algorithm>
#include <string>
#include <utility>

#include "com/error.h"
#include "com/text.h"
#include "datasource/qv_recordset.h"
#include "shell/cqv_global_functions.h"

namespace qv {
namespace {

using RsPtr = std::shared_ptr<ds::QvRecordset>;

constexpr char kLineBreak[] = "\r\n";

const RsPtr& Require(const RsPtr& rs) {
  if (!rs) throw Error::Runtime(err::kObjectVariableNotSet);
  return rs;
}

// Runs `op`, putting "CQVGlobalFunctions-><member>: " before the
// description of any error.
template <class Op>
auto Prefixed(const char* member, Op&& op) {
  try {
    return op();
  } catch (const Error& e) {
    throw e.WithDescriptionPrefix("CQVGlobalFunctions->" + std::string(member) +
                                  ": ");
  }
}

// Two values as text without regard to letter case; Null equals nothing.
bool SameText(const Variant& a, const Variant& b) {
  if (a.IsNull() || b.IsNull()) return false;
  return text::EqualsText(a.ToString(), b.ToString());
}

// The comparison of IsQvRsValuesEqual: a string element against the field
// without trailing blanks on either side; anything else by the automation
// `=` in text mode. Null equals only Null.
bool SameValue(const Variant& element, const Variant& field) {
  if (element.IsNull() || field.IsNull()) {
    return element.IsNull() && field.IsNull();
  }
  if (element.IsString()) {
    return text::EqualsText(text::RTrim(element.ToString()),
                            text::RTrim(field.ToString()));
  }
  return Equal(element, field, text::CompareMode::kText).value_or(false);
}

RsPtr RecordsetAt(const SafeArray& chain, int32_t index) {
  const ObjectPtr object = chain[index].ToObject();
  auto rs = std::dynamic_pointer_cast<ds::QvRecordset>(object);
  if (object && !rs) throw Error::Runtime(err::kTypeMismatch);
  return Require(rs);
}

void CopyCurrentRecord(ds::QvRecordset& dest, const ds::QvRecordset& src) {
  const int16_t count = src.getFieldCount();
  for (int16_t k = 0; k < count; ++k) {
    dest.setFieldValue(k, src.getFieldValue(k));
  }
}

}  // namespace

void CQVGlobalFunctions::ReadQvRsMembers(SafeArray& qvrs) {
  RsPtr key_source;
  try {
    if (qvrs.empty()) return;
    key_source = RecordsetAt(qvrs, qvrs.LBound());
    bool fixed = key_source->isBlockEmpty();
    int16_t n = key_source->getKeyCount();
    for (int32_t i = qvrs.LBound(); i < qvrs.UBound(); ++i) {
      if (!fixed) {
        key_source = RecordsetAt(qvrs, i);
        n = key_source->getKeyCount();
      }
      const RsPtr child = RecordsetAt(qvrs, i + 1);
      for (int16_t k = 0; k < n; ++k) {
        child->setFieldValue(k, key_source->getFieldValue(k));
      }
      if (!child->readBlock(n, true)) fixed = true;
    }
  } catch (const Error& e) {
    const std::string parent = key_source ? key_source->getTableName() : "";
    throw Error(e.number(), e.source(),
                "CQVGlobalFunctions->ReadQvRsMembers: " + e.description() +
                    kLineBreak + "Parent-QvRecordset: " + parent);
  }
}

void CQVGlobalFunctions::SetQvRsKeys(const RsPtr& qvrs, Variant& arrKeyValues,
                                     bool bReadBlock, bool bTestEqualKeys,
                                     int16_t iMaxCountKeys) {
  Prefixed("SetQvRsKeys", [&] {
    if (!arrKeyValues.IsArray()) {
      throw Error::Object1000("Parameter arrKeyValues is nicht vom Typ Array");
    }
    const SafeArray& keys = arrKeyValues.ToArray();
    int32_t n = std::min<int32_t>(Require(qvrs)->getKeyCount(),
                                  static_cast<int32_t>(keys.size()));
    if (iMaxCountKeys != -1) {
      if (iMaxCountKeys > n) {
        throw Error::Object1000(
            "Der im Parameter iMaxCountKeys übergebener Wert " +
            std::to_string(iMaxCountKeys) + kLineBreak +
            "ist größer als die Anzahl der Schlüssel in  QvRs oder "
            "arrKeyValues");
      }
      n = iMaxCountKeys;
    }
    bool unchanged = true;
    for (int16_t k = 0; k < n; ++k) {
      const Variant& key = keys[keys.LBound() + k];
      const Variant current = qvrs->getFieldValue(k);
      if (current.IsEmpty() || !SameText(current, key)) unchanged = false;
      qvrs->setFieldValue(k, key);
    }
    if (bReadBlock && (!bTestEqualKeys || !unchanged)) {
      qvrs->readBlock(static_cast<int16_t>(n), true);
    }
  });
}

void CQVGlobalFunctions::MakeQvRsEmpty(const RsPtr& qvrs, bool bClearVars,
                                       bool bSaveKeys) {
  Prefixed("MakeQvRsEmpty", [&] {
    Variant saved = Require(qvrs)->getKeyValues();
    const int16_t key_count = qvrs->getKeyCount();
    if (!qvrs->isBlockEmpty()) {
      for (int16_t k = 0; k < key_count; ++k) qvrs->setFieldValue(k, "");
      qvrs->readBlock(static_cast<int16_t>(key_count - 1), true);
    }
    if (bClearVars) qvrs->clearVars();
    if (bSaveKeys) SetQvRsKeys(qvrs, saved, false, false, key_count);
  });
}

void CQVGlobalFunctions::ClearVarsQvRs(const RsPtr& qvrs, bool bKeepKeys) {
  Variant saved = Require(qvrs)->getKeyValues();
  qvrs->clearVars();
  if (bKeepKeys) SetQvRsKeys(qvrs, saved, false, false, qvrs->getKeyCount());
}

void CQVGlobalFunctions::CopyQvRsValues(const RsPtr& QvRsDest,
                                        const RsPtr& QvRsSrc, bool bAll) {
  Prefixed("CopyQvRsValues", [&] {
    if (Require(QvRsDest)->getFieldCount() !=
        Require(QvRsSrc)->getFieldCount()) {
      throw Error::Object1000(
          std::string("Die beiden QvRecordsets QvRsDest und QvRsSrc haben "
                      "nicht") +
          kLineBreak + "dieselbe Anzahl an Feldern");
    }
    if (QvRsSrc->isBlockEmpty()) return;
    if (!bAll) {
      CopyCurrentRecord(*QvRsDest, *QvRsSrc);
      return;
    }
    for (QvRsSrc->moveFirst(); !QvRsSrc->isEOF(); QvRsSrc->moveNext()) {
      CopyCurrentRecord(*QvRsDest, *QvRsSrc);
      QvRsDest->insertRecord();
    }
  });
}

bool CQVGlobalFunctions::IsQvRsValuesEqual(const RsPtr& qvrs,
                                           const Variant& arrValues,
                                           int32_t lCountTest) {
  return Prefixed("IsQvRsValuesEqual", [&] {
    if (!arrValues.IsArray()) {
      throw Error::Object1000("Parameter arrValues muss ein Array sein.");
    }
    const SafeArray& values = arrValues.ToArray();
    int32_t n = std::min<int32_t>(Require(qvrs)->getFieldCount(),
                                  static_cast<int32_t>(values.size()));
    if (lCountTest != -1 && lCountTest < n) n = lCountTest;
    for (int32_t k = 0; k < n; ++k) {
      if (!SameValue(values[values.LBound() + k],
                     qvrs->getFieldValue(static_cast<int16_t>(k)))) {
        return false;
      }
    }
    return true;
  });
}

void CQVGlobalFunctions::AddRecordHelpers(Builder& builder) {
  using T = CQVGlobalFunctions;
  builder.Method("ReadQvRsMembers", &T::ReadQvRsMembers)
      .Method("SetQvRsKeys", &T::SetQvRsKeys,
              {Variant(false), Variant(false), Variant(int16_t{-1})})
      .Method("MakeQvRsEmpty", &T::MakeQvRsEmpty,
              {Variant(false), Variant(false)})
      .Method("ClearVarsQvRs", &T::ClearVarsQvRs)
      .Method("CopyQvRsValues", &T::CopyQvRsValues)
      .Method("IsQvRsValuesEqual", &T::IsQvRsValuesEqual,
              {Variant(int32_t{-1})});
}

}  // namespace qv
