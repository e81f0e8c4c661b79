// QvRecordset, continued: writing records, saved positions, the clipboard,
// C record structures and the dispatch interface.
#include <algorithm>

#include "com/class_factory.h"
#include "com/dispatch.h"
#include "com/error.h"
#include "com/safe_array.h"
#include "com/text.h"
#include "datasource/c_record_binding.h"
#include "datasource/db_connection.h"
#include "datasource/internal/field_value.h"
#include "datasource/internal/record_block.h"
#include "datasource/internal/record_writer.h"
#include "datasource/internal/recordset_layout.h"
#include "datasource/qv_recordset.h"
#include "datasource/record_clipboard.h"

namespace qv::ds {

QV_REGISTER_CLASS(QvRecordset);

namespace {

// A saved position: [block key count, on a record, key values...].
constexpr int32_t kPosHeader = 2;

}  // namespace

// ---------------------------------------------------------------------------
// Writing
// ---------------------------------------------------------------------------

void QvRecordset::insertRecord() {
  RequireOpen("insertRecord");
  EnsureBuffer();
  if (binding_) binding_->CopyIn(buffer_);
  std::vector<Variant> values = buffer_;
  writer_->Insert(values);
  buffer_ = std::move(values);
  const int keys = layout_->key_count();
  reload_keys_.assign(buffer_.begin(), buffer_.begin() + keys);
  block_keys_.assign(buffer_.begin(), buffer_.begin() + block_n_);
  state_ = BlockState::kReload;
  MarkChildrenStale();
  CopyOut();
}

void QvRecordset::updateRecord() {
  RequireRecord("updateRecord");
  if (binding_) binding_->CopyIn(buffer_);
  const int keys = layout_->key_count();
  const auto row = rows_->Row(pos_);
  const std::vector<Variant> old_keys(row.begin(), row.begin() + keys);
  std::vector<Variant> values = buffer_;
  writer_->Update(old_keys, values);
  buffer_ = std::move(values);
  reload_keys_.assign(buffer_.begin(), buffer_.begin() + keys);
  block_keys_.assign(buffer_.begin(), buffer_.begin() + block_n_);
  state_ = BlockState::kReload;
  MarkChildrenStale();
  CopyOut();
}

void QvRecordset::deleteRecord() {
  RequireRecord("deleteRecord");
  const auto row = rows_->Row(pos_);
  writer_->Delete(row.first(static_cast<size_t>(layout_->key_count())));
  rows_->EraseRow(pos_);
  StandOn(pos_);
}

void QvRecordset::writeFieldByKeys(
    int16_t field, const std::vector<std::vector<Variant>>& keys,
    const std::vector<Variant>& values) {
  RequireOpen("writeFieldByKeys");
  const int f = CheckedField(field, "writeFieldByKeys");
  if (keys.size() != values.size() ||
      std::any_of(keys.begin(), keys.end(), [&](const std::vector<Variant>& k) {
        return static_cast<int>(k.size()) != layout_->key_count();
      })) {
    throw Error(err::kInvalidProcedureCall, "QvRecordset.writeFieldByKeys",
                RuntimeErrorText(err::kInvalidProcedureCall));
  }
  writer_->WriteField(f, keys, values);
  std::vector<Variant> current;
  const bool on_record = CurrentKeys(current);
  Load();
  StandOn(on_record ? std::max(rows_->FindKeys(current), 0) : rows_->size());
}

// ---------------------------------------------------------------------------
// Saved positions
// ---------------------------------------------------------------------------

void QvRecordset::saveIterPos(Variant& pos) {
  if (!IsOpen()) {
    pos = Variant();
    return;
  }
  std::vector<Variant> keys;
  const bool on_record = CurrentKeys(keys);
  std::vector<Variant> items{Variant(static_cast<int16_t>(block_n_)),
                             Variant(on_record)};
  items.insert(items.end(), keys.begin(), keys.end());
  pos = Variant(SafeArray(std::move(items)));
}

bool QvRecordset::loadIterPos(const Variant& pos) {
  if (!IsOpen() || !pos.IsArray()) return false;
  const SafeArray& saved = pos.ToArray();
  const int keys = layout_->key_count();
  if (static_cast<int>(saved.size()) != kPosHeader + keys) return false;
  const int32_t lb = saved.LBound();
  int32_t n = 0;
  bool on_record = false;
  try {
    n = saved[lb].ToLong();
    on_record = saved[lb + 1].ToBoolean();
  } catch (const Error&) {
    return false;
  }
  if (n < 0 || n > keys) return false;
  const auto first = saved.items().begin() + kPosHeader;
  std::copy(first, first + keys, buffer_.begin());
  block_n_ = n;
  block_keys_.assign(first, first + n);
  Load();
  if (!on_record) {
    StandOn(rows_->size());
    return true;
  }
  const int row = rows_->FindKeys(
      std::span<const Variant>(&*first, static_cast<size_t>(keys)));
  StandOn(std::max(row, 0));
  return row >= 0;
}

// ---------------------------------------------------------------------------
// Clipboard and C record structures
// ---------------------------------------------------------------------------

void QvRecordset::clearClipboard() { EmptyRecordClipboardOf(table_name_); }

std::string QvRecordset::tableNameFromCPointer(Variant& ptr) {
  const std::shared_ptr<const CRecordLayout> layout = FindCRecord(ptr);
  return layout ? layout->table : std::string();
}

bool QvRecordset::attachCPointer(Variant& ptr) {
  if (!IsOpen()) return false;
  std::shared_ptr<const CRecordLayout> layout;
  try {
    layout = FindCRecord(ptr);
  } catch (const Error&) {
    return false;
  }
  if (!layout ||
      !text::EqualsText(text::Trim(layout->table), text::Trim(table_name_))) {
    return false;
  }
  std::unique_ptr<CRecordBinding> binding =
      CRecordBinding::Bind(layout, layout_->fields());
  if (!binding) return false;
  binding_ = std::move(binding);
  EnsureBuffer();
  CopyOut();
  return true;
}

// ---------------------------------------------------------------------------
// Dispatch interface
// ---------------------------------------------------------------------------

ClassInfo QvRecordset::BuildClassInfo() {
  using R = QvRecordset;
  return ClassBuilder<R>("QvRecordset")
      .Method("openTable", &R::openTable)
      .Method("getTableName", [](R& self) { return self.getTableName(); })
      .Method("setParent", &R::setParent)
      .Method("addChild", &R::addChild)
      .Method("getParent", &R::getParent)
      .Method("saveIterPos", &R::saveIterPos)
      .Method("loadIterPos", &R::loadIterPos)
      .Method("clearClipboard", &R::clearClipboard)
      .Method("tableNameFromCPointer", &R::tableNameFromCPointer)
      .Method("attachCPointer", &R::attachCPointer)
      .Method("getKeyCount", &R::getKeyCount)
      .Method("getFieldCount", &R::getFieldCount)
      .Method("getFieldName", &R::getFieldName)
      .Method("getFieldIndex", &R::getFieldIndex)
      .Method("getFieldValue", &R::getFieldValue)
      .Method("setFieldValue", &R::setFieldValue)
      .Method("getValue", &R::getValue)
      .Method("setValue", &R::setValue)
      .Method("getKeyValues", &R::getKeyValues)
      .Method("clearVars", &R::clearVars)
      .Method("readBlock", &R::readBlock, {Variant(true)})
      .Method("isBlockEmpty", &R::isBlockEmpty)
      .Method("getRecordCount", &R::getRecordCount)
      .Method("isEOF", &R::isEOF)
      .Method("isBOF", &R::isBOF)
      .Method("moveFirst", &R::moveFirst)
      .Method("moveNext", &R::moveNext)
      .Method("movePrevious", &R::movePrevious)
      .Method("moveLast", &R::moveLast)
      .Method("moveTo", &R::moveTo)
      .Method("getPosition", &R::getPosition)
      .Method("findKey", &R::findKey)
      .Method("insertRecord", &R::insertRecord)
      .Method("updateRecord", &R::updateRecord)
      .Method("deleteRecord", &R::deleteRecord)
      .Method("getRecordset", &R::getRecordset)
      .Method("getConnection", &R::getConnection)
      .Method("getBlockValue", &R::getBlockValue)
      .Method("getFieldType", &R::getFieldType)
      .Build();
}

}  // namespace qv::ds
