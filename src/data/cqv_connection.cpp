#include "data/cqv_connection.h"

#include <limits>
#include <utility>
#include <vector>

#include "com/class_factory.h"
#include "com/dispatch.h"
#include "com/error.h"
#include "com/text.h"
#include "data/cqv_rs_with_bookmark.h"
#include "data/internal/column_descriptor.h"
#include "data/internal/table_schema.h"
#include "datasource/db_catalog.h"
#include "datasource/db_connection.h"
#include "datasource/qv_recordset.h"
#include "datasource/record_clipboard.h"
#include "datasource/version_table.h"

namespace qv {

QV_REGISTER_CLASS(CQvConnection);

namespace {

constexpr int32_t kFirstTableVersion = 100;
constexpr std::string_view kDataSourceKey = "Data Source=";

std::string VersionRow(const std::string& normalized_name) {
  return normalized_name + "_t";
}

}  // namespace

template <class Key>
CQvRSwithBookMark* CQvConnection::findEntry(const Key& name) const {
  const EntryPtr* entry = index_.Find(name);
  return entry ? entry->get() : nullptr;
}

CQvConnection::CQvConnection()
    : m_conConnection(std::make_shared<ds::DbConnection>()),
      spare_recordset_(std::make_shared<ds::QvRecordset>()) {}

CQvConnection::~CQvConnection() {
  try {
    if (m_conConnection &&
        m_conConnection->State() != ds::DbConnection::kStateClosed) {
      m_conConnection->Close();
    }
  } catch (...) {
    // Ending the connection goes on whatever the database says.
  }
  emptyApplicationClipboard();
  index_.Clear();
  table_cache_.RemoveAll();
  table_order_.RemoveAll();
}

void CQvConnection::addRef() {
  if (reference_count_ == std::numeric_limits<int16_t>::max()) {
    throw Error::Runtime(err::kOverflow);
  }
  ++reference_count_;
}

bool CQvConnection::release() {
  if (reference_count_ < 1) {
    throw ConnectionError(QvConnectionErrorAlreadyReleased, "release",
                          "instance already released");
  }
  return --reference_count_ == 0;
}

std::shared_ptr<ds::QvRecordset> CQvConnection::getTable(
    const std::string& sTablename, bool bWithParent) {
  catchUpWithRollback();
  // A connection the container has closed hands out nothing; an answer of
  // "no such table" would hide the caller's mistake.
  if (!m_conConnection ||
      m_conConnection->State() == ds::DbConnection::kStateClosed) {
    throw ConnectionError(QvConnectionErrorAlreadyReleased, "getTable",
                          "instance already released: table '" +
                              NormalizeTableName(sTablename) +
                              "' not available (Path: " + Datasource() + ")");
  }
  if (const EntryPtr* entry = index_.FindAsWritten(sTablename)) {
    return (*entry)->m_QvRecordset;
  }
  std::string name = NormalizeTableName(sTablename);
  auto rs = std::make_shared<ds::QvRecordset>();
  if (!rs->openTable(m_conConnection, name)) return nullptr;
  addEntry(name, rs);
  if (bWithParent) linkParents(name, rs);
  return rs;
}

std::shared_ptr<ds::QvRecordset> CQvConnection::getCTable(
    Variant& vUglyPointerToC, bool bWithParent) {
  std::string name = spare_recordset_->tableNameFromCPointer(vUglyPointerToC);
  std::shared_ptr<ds::QvRecordset> rs = getTable(name, bWithParent);
  if (rs && !rs->attachCPointer(vUglyPointerToC)) return nullptr;
  return rs;
}

std::string CQvConnection::Datasource() const {
  if (!m_conConnection) throw Error::Runtime(err::kObjectVariableNotSet);
  for (const std::string& piece :
       text::Split(m_conConnection->ConnectionString(), ";")) {
    size_t pos = piece.find(kDataSourceKey);
    if (pos != std::string::npos) {
      return text::LCase(
          std::string_view(piece).substr(pos + kDataSourceKey.size()));
    }
  }
  return "";
}

QvTableAge CQvConnection::getConnectionAge(int32_t lVer) {
  return getTableAge("qvversions", lVer);
}

void CQvConnection::setConnectionVersion(int32_t lVer) {
  SafeArray no_columns;
  convertTable("qvversions", lVer, no_columns);
}

QvTableAge CQvConnection::getTableAge(const std::string& sTablename,
                                      int32_t lVer) {
  int32_t stored = getTableVersion(sTablename);
  if (stored < lVer) {
    // A table older than the version table counts as version 100 from now.
    if (stored == 0) {
      setTableVersion(VersionRow(NormalizeTableName(sTablename)),
                      kFirstTableVersion);
    }
    return QvTableAgeOlder;
  }
  return stored == lVer ? QvTableAgeCorrect : QvTableAgeNewer;
}

void CQvConnection::convertTable(const std::string& sTablename, int32_t lVer,
                                 SafeArray& Param) {
  const std::string name = NormalizeTableName(sTablename);
  if (Param.empty()) {
    setTableVersion(VersionRow(name), lVer);
    return;
  }
  ds::DbConnection& con = connection();
  {
    ds::DbConnection::Transaction transaction(con);
    if (!std::make_shared<ds::QvRecordset>()->openTable(m_conConnection,
                                                        name)) {
      throw ConnectionError(QvConnectionErrorOpenToConvert, "convertTable",
                            "can't open old table for: '" + name + "'");
    }
    TableSchema schema(con);
    schema.AddDataColumns(
        name, ParseColumnDescriptor(Param, DescriptorKind::kConvert));
    schema.DropRecordTemplates(name);
    if (!std::make_shared<ds::QvRecordset>()->openTable(m_conConnection,
                                                        name)) {
      throw ConnectionError(QvConnectionErrorOpenToConvert, "convertTable",
                            "can't open new table '" + name + "'");
    }
    schema.CheckIntegrity(name);
    setTableVersion(VersionRow(name), lVer);
    transaction.Commit();
  }
  noteSchemaChange(name);
  refreshCached(name);
}

void CQvConnection::clearClipboards() {
  forEachEntry(
      [](CQvRSwithBookMark& entry) { entry.m_QvRecordset->clearClipboard(); });
}

int32_t CQvConnection::getTableVersion(const std::string& sTablename) {
  if (!m_conConnection) return 0;
  return ds::ReadTableVersion(*m_conConnection,
                              VersionRow(NormalizeTableName(sTablename)));
}

void CQvConnection::saveIterPos() {
  forEachEntry([](CQvRSwithBookMark& entry) {
    entry.m_QvRecordset->saveIterPos(entry.m_BookMark);
  });
}

bool CQvConnection::loadIterPos() {
  bool all_positioned = true;
  forEachEntry([&](CQvRSwithBookMark& entry) {
    if (!entry.m_QvRecordset->loadIterPos(entry.m_BookMark)) {
      all_positioned = false;
    }
  });
  return all_positioned;
}

int32_t CQvConnection::getConnectionVersion() {
  return getTableVersion("qvversions");
}

void CQvConnection::addTable(const std::string& sTablename, int32_t lVer,
                             const Variant& vKey, const Variant& vData,
                             bool bIsNumeric) {
  const std::string name = NormalizeTableName(sTablename);
  const TableLayout layout = ReadNewTableLayout(name, vKey, vData, bIsNumeric);
  ds::DbConnection& con = connection();
  ds::DbConnection::Transaction transaction(con);
  TableSchema(con).CreateTablePair(name, layout);
  setTableVersion(VersionRow(name), lVer);
  transaction.Commit();
  noteSchemaChange(name);
}

void CQvConnection::setChild(const std::string& sParent,
                             const std::string& sChild) {
  TableSchema(connection())
      .Relate(NormalizeTableName(sParent), NormalizeTableName(sChild));
}

void CQvConnection::delChild(const std::string& sParent,
                             const std::string& sChild) {
  TableSchema(connection())
      .Unrelate(NormalizeTableName(sParent), NormalizeTableName(sChild));
}

int32_t CQvConnection::getDatabaseSize() {
  return getTableVersion("qvDatabaseSize");
}

void CQvConnection::setDatabaseSize(int32_t lSize) {
  SafeArray no_columns;
  convertTable("qvDatabaseSize", lSize, no_columns);
}

ds::DbConnection& CQvConnection::connection() const {
  if (!m_conConnection) throw Error::Runtime(err::kObjectVariableNotSet);
  return *m_conConnection;
}

void CQvConnection::setTableVersion(const std::string& sRow, int32_t lVer) {
  ds::WriteTableVersion(connection(), sRow, lVer);
}

void CQvConnection::addEntry(const std::string& name,
                             std::shared_ptr<ds::QvRecordset> rs) {
  auto entry = std::make_shared<CQvRSwithBookMark>();
  entry->m_QvRecordset = std::move(rs);
  table_cache_.Add(Variant(name), Variant(entry));
  table_order_.Add(Variant(table_order_.Count() + 1), Variant(entry));
  index_.Insert(name, std::move(entry));
}

void CQvConnection::linkParents(const std::string& name,
                                const std::shared_ptr<ds::QvRecordset>& rs) {
  ds::DbCatalog catalog(connection());
  for (const ds::ForeignKeyDef& key : catalog.ForeignKeys(name)) {
    const std::string parent = text::LCase(key.related_table);
    if (parent.empty()) continue;
    CQvRSwithBookMark* parent_entry = findEntry(parent);
    if (!parent_entry) {
      throw ConnectionError(
          QvConnectionErrorParentTableNotFound, "getTable",
          "parent table: '" + parent + "' for table: '" + name + "' not found");
    }
    parent_entry->m_QvRecordset->addChild(rs);
    rs->setParent(parent_entry->m_QvRecordset);
  }
}

void CQvConnection::refreshCached(const std::string& name) {
  if (CQvRSwithBookMark* entry = findEntry(name)) {
    entry->m_QvRecordset->openTable(m_conConnection, name);
  }
}

void CQvConnection::noteSchemaChange(const std::string& name) {
  if (m_conConnection && m_conConnection->TransactionDepth() > 0)
    changed_in_transaction_.push_back(name);
}

void CQvConnection::catchUpWithRollback() {
  // On getTable's hot path: nothing to do unless a rollback happened or
  // layout changes of a transaction are remembered.
  if (!m_conConnection || (m_conConnection->Rollbacks() == rollbacks_seen_ &&
                           changed_in_transaction_.empty())) {
    return;
  }
  if (m_conConnection->Rollbacks() != rollbacks_seen_) {
    rollbacks_seen_ = m_conConnection->Rollbacks();
    for (const std::string& name : changed_in_transaction_) {
      CQvRSwithBookMark* entry = findEntry(name);
      if (entry && !entry->m_QvRecordset->openTable(m_conConnection, name))
        forgetTable(name);
    }
  }
  if (m_conConnection->TransactionDepth() == 0) changed_in_transaction_.clear();
}

void CQvConnection::forgetTable(const std::string& name) {
  const EntryPtr* found = index_.Find(name);
  if (!found) return;
  const EntryPtr gone = *found;
  if (std::shared_ptr<ds::RecordClipboard> clipboard =
          ds::CurrentRecordClipboard();
      clipboard && clipboard->HeldRecordset() == gone->m_QvRecordset) {
    clipboard->ReleaseRecordset();
  }
  // The order list's keys run 1, 2, 3 ... without gaps: number it anew.
  std::vector<EntryPtr> order;
  for (const Dictionary::Entry& item : table_order_.entries()) {
    auto entry = item.second.ToObjectAs<CQvRSwithBookMark>();
    if (entry != gone) order.push_back(std::move(entry));
  }
  table_cache_.Remove(Variant(name));
  table_order_.RemoveAll();
  for (EntryPtr& entry : order)
    table_order_.Add(Variant(table_order_.Count() + 1), Variant(entry));
  index_.Clear();
  for (const Dictionary::Entry& item : table_cache_.entries()) {
    index_.Insert(item.first.ToString(),
                  item.second.ToObjectAs<CQvRSwithBookMark>());
  }
}

template <class F>
void CQvConnection::forEachEntry(F&& f) const {
  for (const Dictionary::Entry& item : table_cache_.entries()) {
    auto entry = item.second.ToObjectAs<CQvRSwithBookMark>();
    if (entry && entry->m_QvRecordset) f(*entry);
  }
}

void CQvConnection::emptyApplicationClipboard() noexcept {
  forEachEntry([](CQvRSwithBookMark& entry) {
    ds::EmptyRecordClipboardOf(entry.m_QvRecordset->getTableName());
  });
}

ClassInfo CQvConnection::BuildClassInfo() {
  using T = CQvConnection;
  return ClassBuilder<T>("CQvConnection")
      .Field("m_conConnection", &T::m_conConnection)
      .Method("addRef", &T::addRef)
      .Method("release", &T::release)
      .Method("getTable", &T::getTable, {Variant(false)})
      .Method("getCTable", &T::getCTable, {Variant(false)})
      .Get("Datasource", &T::Datasource)
      .Method("getConnectionAge", &T::getConnectionAge)
      .Method("setConnectionVersion", &T::setConnectionVersion)
      .Method("getTableAge", &T::getTableAge)
      .Method("convertTable", &T::convertTable)
      .Method("clearClipboards", &T::clearClipboards)
      .Method("getTableVersion", &T::getTableVersion)
      .Method("saveIterPos", &T::saveIterPos)
      .Method("loadIterPos", &T::loadIterPos)
      .Method("getConnectionVersion", &T::getConnectionVersion)
      .Method("addTable", &T::addTable)
      .Method("setChild", &T::setChild)
      .Method("delChild", &T::delChild)
      .Method("getDatabaseSize", &T::getDatabaseSize)
      .Method("setDatabaseSize", &T::setDatabaseSize)
      .Build();
}

}  // namespace qv
