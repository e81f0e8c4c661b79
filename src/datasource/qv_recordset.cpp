#include "datasource/qv_recordset.h"

#include <SQLiteCpp/Statement.h>

#include <algorithm>

#include "com/error.h"
#include "com/safe_array.h"
#include "datasource/c_record_binding.h"
#include "datasource/db_connection.h"
#include "datasource/internal/engine_error.h"
#include "datasource/internal/field_value.h"
#include "datasource/internal/record_block.h"
#include "datasource/internal/record_writer.h"
#include "datasource/internal/recordset_layout.h"
#include "datasource/internal/statement_cache.h"

namespace qv::ds {
namespace {

std::string Source(const char* member) {
  return std::string("QvRecordset.") + member;
}

}  // namespace

QvRecordset::QvRecordset() : rows_(std::make_unique<RecordBlock>()) {}

QvRecordset::~QvRecordset() = default;

void QvRecordset::Reset() {
  binding_.reset();
  writer_.reset();
  statements_.reset();
  layout_.reset();
  con_.reset();
  table_name_.clear();
  rows_->Clear();
  buffer_.clear();
  state_ = BlockState::kLoaded;
  pos_ = 0;
  block_n_ = 0;
  block_keys_.clear();
}

bool QvRecordset::openTable(std::shared_ptr<DbConnection> con,
                            const std::string& name) {
  Reset();
  try {
    if (!con || con->State() != DbConnection::kStateOpen) return false;
    std::optional<RecordsetLayout> layout = RecordsetLayout::Read(*con, name);
    if (!layout) return false;
    con_ = std::move(con);
    table_name_ = name;
    layout_ = std::make_unique<RecordsetLayout>(std::move(*layout));
    statements_ = std::make_unique<StatementCache>(*con_);
    writer_ = std::make_unique<RecordWriter>(*con_, *layout_, table_name_);
    statements_->Get(
        0, [&] { return layout_->SelectSql(0, false); });  // checks the SQL
    buffer_.assign(static_cast<size_t>(layout_->field_count()), Variant());
    state_ = parent_ ? BlockState::kStale : BlockState::kWholeTable;
    buffer_filled_ = false;
    return true;
  } catch (...) {
    Reset();
    return false;
  }
}

void QvRecordset::RequireOpen(const char* member) const {
  if (!IsOpen())
    throw Error(err::kObjectError1000, Source(member),
                "the record set is not open");
}

void QvRecordset::RequireRecord(const char* member) const {
  RequireOpen(member);
  EnsureBlock();
  if (!OnRecord()) {
    throw Error(err::kObjectError1000, Source(member),
                "no current record in table '" + table_name_ + "'");
  }
}

int QvRecordset::CheckedField(int pos, const char* member) const {
  if (pos < 0 || pos >= getFieldCount()) {
    throw Error(err::kSubscriptOutOfRange, Source(member),
                RuntimeErrorText(err::kSubscriptOutOfRange));
  }
  return pos;
}

int QvRecordset::FieldByName(const std::string& name,
                             const char* member) const {
  const int pos = IsOpen() ? layout_->FieldIndex(name) : -1;
  if (pos < 0) {
    throw Error(
        err::kObjectError1000, Source(member),
        "field '" + name + "' not found in table '" + table_name_ + "'");
  }
  return pos;
}

// ---------------------------------------------------------------------------
// Lazy reading
// ---------------------------------------------------------------------------

void QvRecordset::EnsureBuffer() const {
  if (state_ == BlockState::kStale) {
    Narrow();
  } else if (state_ == BlockState::kWholeTable && !buffer_filled_) {
    LoadFirstRecord();
  }
}

void QvRecordset::EnsureBlock() const {
  switch (state_) {
    case BlockState::kLoaded:
      return;
    case BlockState::kStale:
      Narrow();
      return;
    case BlockState::kWholeTable:
      Load();
      pos_ = 0;
      if (!buffer_filled_) FillBuffer();
      return;
    case BlockState::kReload:
      Load();
      pos_ = rows_->FindKeys(reload_keys_);
      if (pos_ < 0) pos_ = rows_->size();
      return;
  }
}

void QvRecordset::Load() const {
  try {
    SQLite::Statement& s = statements_->Get(static_cast<size_t>(block_n_), [&] {
      return layout_->SelectSql(block_n_, false);
    });
    BindParams(s, block_keys_);
    rows_->Load(s, layout_->read_kinds());
  } catch (...) {
    rows_->Clear();
    state_ = BlockState::kLoaded;
    pos_ = 0;
    RethrowAsDbError(Source("readBlock"), con_->Path());
  }
  state_ = BlockState::kLoaded;
}

void QvRecordset::LoadFirstRecord() const {
  const auto slot = static_cast<size_t>(layout_->key_count()) + 1;
  try {
    SQLite::Statement& s =
        statements_->Get(slot, [&] { return layout_->SelectSql(0, true); });
    rows_->Load(s, layout_->read_kinds());
  } catch (...) {
    RethrowAsDbError(Source("readBlock"), con_->Path());
  }
  if (!rows_->empty()) {
    const auto row = rows_->Row(0);
    std::copy(row.begin(), row.end(), buffer_.begin());
  }
  buffer_filled_ = true;
  CopyOut();
}

void QvRecordset::Narrow() const {
  std::vector<Variant> keys;
  const bool on_record = parent_->IsOpen() && parent_->CurrentKeys(keys);
  const int m = std::min(static_cast<int>(keys.size()), layout_->key_count());
  std::copy(keys.begin(), keys.begin() + m, buffer_.begin());
  block_n_ = m;
  block_keys_.assign(keys.begin(), keys.begin() + m);
  if (on_record) {
    Load();
  } else {
    rows_->Clear();
  }
  state_ = BlockState::kLoaded;
  pos_ = 0;
  if (rows_->empty()) {
    ClearBeyond(m);
  } else {
    FillBuffer();
  }
}

bool QvRecordset::OnRecord() const { return pos_ >= 0 && pos_ < rows_->size(); }

bool QvRecordset::CurrentKeys(std::vector<Variant>& keys) const {
  EnsureBlock();
  const auto n = static_cast<size_t>(layout_->key_count());
  if (OnRecord()) {
    const auto row = rows_->Row(pos_);
    keys.assign(row.begin(), row.begin() + static_cast<ptrdiff_t>(n));
    return true;
  }
  keys.assign(buffer_.begin(), buffer_.begin() + static_cast<ptrdiff_t>(n));
  return false;
}

void QvRecordset::StandOn(int32_t pos) const {
  pos_ = pos;
  if (OnRecord()) FillBuffer();
  MarkChildrenStale();
}

void QvRecordset::FillBuffer() const {
  if (!OnRecord()) return;
  const auto row = rows_->Row(pos_);
  std::copy(row.begin(), row.end(), buffer_.begin());
  CopyOut();
}

void QvRecordset::ClearBeyond(int n) const {
  std::fill(buffer_.begin() + n, buffer_.end(), Variant());
  CopyOut();
}

void QvRecordset::CopyOut() const {
  if (binding_) binding_->CopyOut(buffer_);
}

void QvRecordset::MarkChildrenStale() const {
  for (const std::weak_ptr<QvRecordset>& weak : children_) {
    const std::shared_ptr<QvRecordset> child = weak.lock();
    // A stale record set's descendants are stale already.
    if (!child || !child->IsOpen() || child->state_ == BlockState::kStale)
      continue;
    child->state_ = BlockState::kStale;
    child->MarkChildrenStale();
  }
}

// ---------------------------------------------------------------------------
// Parent and children
// ---------------------------------------------------------------------------

void QvRecordset::setParent(std::shared_ptr<QvRecordset> parent) {
  for (QvRecordset* p = parent.get(); p; p = p->parent_.get()) {
    if (p == this) {
      throw Error(err::kInvalidProcedureCall, Source("setParent"),
                  "a record set cannot be its own parent or ancestor");
    }
  }
  if (state_ == BlockState::kStale && parent_ != parent)
    Narrow();  // keeps its block
  if (parent_ && parent_ != parent) {
    std::erase_if(parent_->children_,
                  [this](const std::weak_ptr<QvRecordset>& w) {
                    const auto c = w.lock();
                    return !c || c.get() == this;
                  });
  }
  parent_ = std::move(parent);
  if (!parent_) return;
  const bool known =
      std::any_of(parent_->children_.begin(), parent_->children_.end(),
                  [this](const std::weak_ptr<QvRecordset>& w) {
                    return w.lock().get() == this;
                  });
  if (!known) {
    std::erase_if(parent_->children_, [](const std::weak_ptr<QvRecordset>& w) {
      return w.expired();
    });
    parent_->children_.push_back(getRecordset());
  }
  if (IsOpen()) {
    state_ = BlockState::kStale;
    MarkChildrenStale();
  }
}

void QvRecordset::addChild(std::shared_ptr<QvRecordset> child) {
  if (!child || child.get() == this) return;
  child->setParent(getRecordset());
}

std::shared_ptr<QvRecordset> QvRecordset::getRecordset() {
  return std::static_pointer_cast<QvRecordset>(shared_from_this());
}

// ---------------------------------------------------------------------------
// Fields and the record buffer
// ---------------------------------------------------------------------------

int16_t QvRecordset::getKeyCount() const {
  return IsOpen() ? static_cast<int16_t>(layout_->key_count()) : 0;
}

int16_t QvRecordset::getFieldCount() const {
  return IsOpen() ? static_cast<int16_t>(layout_->field_count()) : 0;
}

std::string QvRecordset::getFieldName(int16_t pos) const {
  return layout_->fields()[CheckedField(pos, "getFieldName")].name;
}

int32_t QvRecordset::getFieldType(int16_t pos) const {
  return layout_->fields()[CheckedField(pos, "getFieldType")].type;
}

int16_t QvRecordset::getFieldIndex(const std::string& name) const {
  return IsOpen() ? static_cast<int16_t>(layout_->FieldIndex(name)) : -1;
}

Variant QvRecordset::getFieldValue(int16_t pos) const {
  const int field = CheckedField(pos, "getFieldValue");
  EnsureBuffer();
  return buffer_[field];
}

void QvRecordset::setFieldValue(int16_t pos, Variant v) {
  const int field = CheckedField(pos, "setFieldValue");
  if (v.IsObject() || v.IsArray()) {
    throw Error(err::kTypeMismatch, Source("setFieldValue"),
                RuntimeErrorText(err::kTypeMismatch));
  }
  EnsureBuffer();
  buffer_[field] = std::move(v);
}

Variant QvRecordset::getValue(const std::string& field) const {
  const int pos = FieldByName(field, "getValue");
  EnsureBuffer();
  return buffer_[pos];
}

void QvRecordset::setValue(const std::string& field, Variant v) {
  setFieldValue(static_cast<int16_t>(FieldByName(field, "setValue")),
                std::move(v));
}

Variant QvRecordset::getKeyValues() const {
  if (!IsOpen()) return Variant(SafeArray());
  EnsureBuffer();
  return Variant(SafeArray(std::vector<Variant>(
      buffer_.begin(), buffer_.begin() + layout_->key_count())));
}

void QvRecordset::clearVars() {
  if (!IsOpen()) return;
  EnsureBuffer();
  std::fill(buffer_.begin(), buffer_.end(), Variant());
}

// ---------------------------------------------------------------------------
// Blocks and moving
// ---------------------------------------------------------------------------

bool QvRecordset::readBlock(int16_t n, bool reread) {
  RequireOpen("readBlock");
  if (n < 0 || n > layout_->key_count()) {
    throw Error(err::kInvalidProcedureCall, Source("readBlock"),
                "key count " + std::to_string(n) + " out of range 0 to " +
                    std::to_string(layout_->key_count()) + " for table '" +
                    table_name_ + "'");
  }
  if (state_ == BlockState::kStale) {  // the buffer was not used since: take
                                       // the parent's keys
    std::vector<Variant> keys;
    if (parent_->IsOpen()) parent_->CurrentKeys(keys);
    const size_t m = std::min(keys.size(), buffer_.size());
    std::copy(keys.begin(), keys.begin() + static_cast<ptrdiff_t>(m),
              buffer_.begin());
  }
  const bool same = !reread && state_ == BlockState::kLoaded && block_n_ == n &&
                    std::equal(block_keys_.begin(), block_keys_.end(),
                               buffer_.begin(), KeyEquals);
  if (!same) {
    block_n_ = n;
    block_keys_.assign(buffer_.begin(), buffer_.begin() + n);
    Load();
  }
  pos_ = 0;
  if (rows_->empty()) {
    ClearBeyond(n);
  } else {
    FillBuffer();
  }
  MarkChildrenStale();
  return !rows_->empty();
}

bool QvRecordset::isBlockEmpty() const {
  if (!IsOpen()) return true;
  EnsureBlock();
  return rows_->empty();
}

int32_t QvRecordset::getRecordCount() const {
  if (!IsOpen()) return 0;
  EnsureBlock();
  return rows_->size();
}

bool QvRecordset::isEOF() const {
  if (!IsOpen()) return true;
  EnsureBlock();
  return rows_->empty() || pos_ >= rows_->size();
}

bool QvRecordset::isBOF() const {
  if (!IsOpen()) return true;
  EnsureBlock();
  return rows_->empty() || pos_ < 0;
}

void QvRecordset::moveFirst() {
  if (!IsOpen()) return;
  EnsureBlock();
  StandOn(0);
}

void QvRecordset::moveNext() {
  if (!IsOpen()) return;
  EnsureBlock();
  if (pos_ < rows_->size()) StandOn(pos_ + 1);
}

void QvRecordset::movePrevious() {
  if (!IsOpen()) return;
  EnsureBlock();
  if (pos_ >= 0 && !rows_->empty()) StandOn(pos_ - 1);
}

void QvRecordset::moveLast() {
  if (!IsOpen()) return;
  EnsureBlock();
  StandOn(std::max(rows_->size() - 1, 0));
}

void QvRecordset::moveTo(int32_t ordinal) {
  if (IsOpen()) EnsureBlock();
  if (!IsOpen() || ordinal < 0 || ordinal >= rows_->size()) {
    throw Error(err::kSubscriptOutOfRange, Source("moveTo"),
                RuntimeErrorText(err::kSubscriptOutOfRange));
  }
  StandOn(ordinal);
}

int32_t QvRecordset::getPosition() const {
  if (!IsOpen()) return -1;
  EnsureBlock();
  return OnRecord() ? pos_ : -1;
}

bool QvRecordset::findKey(const std::string& column, const Variant& value) {
  const int field = FieldByName(column, "findKey");
  EnsureBlock();
  const int row = rows_->FindValue(field, value);
  if (row < 0) return false;
  StandOn(row);
  return true;
}

Variant QvRecordset::getBlockValue(int32_t ordinal, int16_t field) const {
  const int f = CheckedField(field, "getBlockValue");
  EnsureBlock();
  if (ordinal < 0 || ordinal >= rows_->size()) {
    throw Error(err::kSubscriptOutOfRange, Source("getBlockValue"),
                RuntimeErrorText(err::kSubscriptOutOfRange));
  }
  return rows_->At(ordinal, f);
}

}  // namespace qv::ds
