#include "datasource/internal/statement_cache.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <algorithm>
#include <mutex>
#include <unordered_map>

#include "datasource/db_connection.h"
#include "datasource/internal/db_handle.h"
#include "datasource/internal/engine_error.h"

namespace qv::ds {
namespace {

// The caches of each connection, so that closing one can release them.
struct Registry {
  std::mutex mutex;
  std::unordered_map<const DbConnection*, std::vector<StatementCache*>> caches;
};

Registry& TheRegistry() {
  static Registry* registry = new Registry;  // never destroyed: used by statics
  return *registry;
}

}  // namespace

StatementCache::StatementCache(DbConnection& con) : con_(con) {
  Registry& r = TheRegistry();
  std::lock_guard lock(r.mutex);
  r.caches[&con_].push_back(this);
}

StatementCache::~StatementCache() {
  Clear();
  Registry& r = TheRegistry();
  std::lock_guard lock(r.mutex);
  auto it = r.caches.find(&con_);
  if (it == r.caches.end()) return;
  std::erase(it->second, this);
  if (it->second.empty()) r.caches.erase(it);
}

void StatementCache::Clear() {
  slots_.clear();
  handle_ = nullptr;
}

SQLite::Statement* StatementCache::Find(size_t slot) {
  const void* handle = DbHandle(con_).getHandle();
  if (handle != handle_) {
    Clear();
    handle_ = handle;
  }
  if (slot >= slots_.size() || !slots_[slot]) return nullptr;
  slots_[slot]->tryReset();  // a failed last run must not fail this one
  return slots_[slot].get();
}

SQLite::Statement& StatementCache::Prepare(size_t slot,
                                           const std::string& sql) {
  if (slot >= slots_.size()) slots_.resize(slot + 1);
  try {
    slots_[slot] = std::make_unique<SQLite::Statement>(DbHandle(con_), sql);
  } catch (...) {
    RethrowAsDbError("QvRecordset", con_.Path());
  }
  return *slots_[slot];
}

void ReleaseCachedStatements(const DbConnection& con) {
  Registry& r = TheRegistry();
  std::lock_guard lock(r.mutex);
  auto it = r.caches.find(&con);
  if (it == r.caches.end()) return;
  for (StatementCache* cache : it->second) cache->Clear();
}

}  // namespace qv::ds
