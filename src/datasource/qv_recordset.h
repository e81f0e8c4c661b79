// QvRecordset is the record set over one logical table of a database: the
// object through which every part of the library reads and writes table
// data. Its fields are the table's key fields (first) and data fields; a
// record buffer holds the values of the current record; a block holds the
// records whose leading keys equal the buffer's, in block order ("OrderNum"
// where the table has it, then the key). Writes go through to the file at
// once. Record sets of one connection can be linked parent to child: moving
// in the parent narrows the child to the records of the parent's current
// record, re-read lazily when the child is next used.
//
// Ownership: a record set shares its connection; a child holds its parent,
// a parent knows its children only weakly (no reference cycle). The block
// is a snapshot: writes through other record sets show after the next read.
// A rollback on the connection makes the block be read again when the
// record set is next used: records it took back are gone from it too.
//
// Errors: qv::Error. Wrong field positions and ordinals raise 9, a value
// that does not fit its column 13 or 6 (or the adapter's constraint error
// for text that is too long), database failures the adapter's errors
// (datasource/db_error.h), and misuse (not open, no current record, unknown
// field name) object error 1000 with source "QvRecordset.<member>".
// Threads: a record set is used by the thread that uses its connection, one
// call at a time; it takes no locks of its own. Its prepared statements are
// registered with their connection in a process-wide map under a mutex (so that
// closing the connection releases them), and the C record layouts
// (c_record_binding.h) are a process-wide registry under its own mutex.
#ifndef QVGLOBAL_DATASOURCE_QV_RECORDSET_H_
#define QVGLOBAL_DATASOURCE_QV_RECORDSET_H_

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "com/class_info.h"
#include "com/object.h"
#include "com/variant.h"
#include "datasource/ado_types.h"

namespace qv::ds {

class CRecordBinding;
class DbConnection;
class RecordBlock;
class RecordWriter;
class StatementCache;
class RecordsetLayout;

class QvRecordset : public qv::Dispatchable<QvRecordset> {
 public:
  QvRecordset();
  ~QvRecordset() override;
  QvRecordset(const QvRecordset&) = delete;
  QvRecordset& operator=(const QvRecordset&) = delete;

  // Opens the table `name` (a pair x/x_t or a plain table) and stands on
  // its first record. False, never an error, when it cannot be opened.
  bool openTable(std::shared_ptr<DbConnection> con, const std::string& name);
  // The table name as opened ("" before).
  const std::string& getTableName() const { return table_name_; }

  // Links this record set to `parent` (and registers it as the parent's
  // child); nullptr unlinks. From now on the record set shows the records
  // of the parent's current record.
  void setParent(std::shared_ptr<QvRecordset> parent);
  void addChild(std::shared_ptr<QvRecordset> child);
  std::shared_ptr<QvRecordset> getParent() const { return parent_; }

  // Stores the position (block key count, key values of the current record)
  // in `pos`; loadIterPos reads the block again and finds the record: false
  // when it no longer exists (the record set then stands on the block's
  // first record) or `pos` holds no position.
  void saveIterPos(qv::Variant& pos);
  bool loadIterPos(const qv::Variant& pos);
  // Empties the application's clipboard when it holds a record set whose
  // table name equals this one's exactly (letter case significant).
  void clearClipboard();

  // C callers (datasource/c_record_binding.h): the table of the structure
  // that `ptr` designates ("" when none is registered), and binding this
  // open record set to it (false when not possible).
  std::string tableNameFromCPointer(qv::Variant& ptr);
  bool attachCPointer(qv::Variant& ptr);

  int16_t getKeyCount() const;
  int16_t getFieldCount() const;
  std::string getFieldName(int16_t pos) const;
  int16_t getFieldIndex(const std::string& name) const;  // -1 when none
  qv::Variant getFieldValue(int16_t pos) const;
  void setFieldValue(int16_t pos, qv::Variant v);
  qv::Variant getValue(const std::string& field) const;
  void setValue(const std::string& field, qv::Variant v);
  qv::Variant getKeyValues()
      const;         // array (lbound 0) of the buffer's key values
  void clearVars();  // every buffer field -> Empty

  // Reads the block of the records whose first n keys equal the buffer's
  // and stands on its first record; true when the block is not empty. With
  // `reread` false a block already read for the same keys is not read again.
  bool readBlock(int16_t n, bool reread);
  bool isBlockEmpty() const;
  int32_t getRecordCount() const;  // of the current block
  bool isEOF() const;
  bool isBOF() const;
  void moveFirst();
  void moveNext();      // at the end: stays there
  void movePrevious();  // at the beginning: stays there
  void moveLast();
  void moveTo(int32_t ordinal);  // 0-based in the block; raises 9 outside
  int32_t getPosition() const;   // ordinal in the block, -1 off the block
  // Stands on the first record of the block whose field `column` equals
  // `value` (text without regard to letter case); false, without moving,
  // when there is none.
  bool findKey(const std::string& column, const qv::Variant& value);

  // Adds the buffer as a new record and stands on it (a numeric table's
  // last key, left Empty, gets one more than the largest among the records
  // with the same leading keys). The record's block is read again lazily.
  void insertRecord();
  // Writes the buffer over the current record (keys included).
  void updateRecord();
  // Deletes the current record, its data row and, through the relations,
  // its children; the next record becomes current.
  void deleteRecord();

  std::shared_ptr<QvRecordset> getRecordset();
  std::shared_ptr<DbConnection> getConnection() const { return con_; }

  // For data sets and other record-set users of the library:
  // field `field` of record `ordinal` of the current block, without moving.
  qv::Variant getBlockValue(int32_t ordinal, int16_t field) const;
  // The ADO type code of a field.
  int32_t getFieldType(int16_t pos) const;
  // Sets field `field` of each record keys[i] (all key values) to
  // values[i] in one transaction, then reads the block again, keeping the
  // current record.
  void writeFieldByKeys(int16_t field,
                        const std::vector<std::vector<qv::Variant>>& keys,
                        const std::vector<qv::Variant>& values);

  static qv::ClassInfo BuildClassInfo();

 private:
  // What the block needs before it can be used.
  enum class BlockState {
    kLoaded,      // rows_ hold the block
    kWholeTable,  // after opening: all records, not read yet
    kStale,       // the parent has moved: narrow to its current record
    kReload,      // written: read again and stand on reload_keys_
  };

  void Reset();
  bool IsOpen() const { return layout_ != nullptr; }
  void RequireOpen(const char* member) const;
  int CheckedField(int pos, const char* member) const;
  int FieldByName(const std::string& name, const char* member) const;

  // Brings the buffer up to date (the parent's narrowing, the first record
  // after opening) without reading a block that is not needed yet.
  // The const members are logically const: they may carry out a pending
  // read, which changes only the mutable state below.
  void EnsureBuffer() const;
  // Brings block and position up to date.
  void EnsureBlock() const;
  // Reads the block again after a rollback on the connection.
  void CatchUpWithRollback() const;
  void Narrow() const;
  // Reads the block of block_n_ and block_keys_.
  void Load() const;
  void LoadFirstRecord() const;
  // The keys of the current record; false (and the buffer's keys) when the
  // record set stands on no record.
  bool CurrentKeys(std::vector<Variant>& keys) const;
  bool OnRecord() const;
  void StandOn(int32_t pos) const;
  void FillBuffer() const;
  void ClearBeyond(int n) const;
  void MarkChildrenStale() const;
  void CopyOut() const;
  void RequireRecord(const char* member) const;

  std::shared_ptr<DbConnection> con_;
  std::string table_name_;
  std::unique_ptr<RecordsetLayout> layout_;
  std::unique_ptr<StatementCache> statements_;
  std::unique_ptr<RecordWriter> writer_;
  std::unique_ptr<RecordBlock> rows_;
  std::unique_ptr<CRecordBinding> binding_;

  mutable std::vector<Variant> buffer_;
  mutable BlockState state_ = BlockState::kLoaded;
  mutable bool buffer_filled_ =
      false;                 // kWholeTable: buffer holds the first record
  mutable int32_t pos_ = 0;  // -1 before the first record, size at the end
  mutable int block_n_ = 0;  // key count of the block
  mutable std::vector<Variant> block_keys_;
  mutable std::vector<Variant> reload_keys_;
  mutable uint64_t rollbacks_ = 0;  // the connection's count when last read

  std::shared_ptr<QvRecordset> parent_;
  std::vector<std::weak_ptr<QvRecordset>> children_;
};

}  // namespace qv::ds

#endif  // QVGLOBAL_DATASOURCE_QV_RECORDSET_H_
