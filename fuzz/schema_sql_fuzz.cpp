// The catalogue's reader of CREATE TABLE statements and the edits it makes
// to them (foreign keys added, removed, the table renamed).
#include <string>

#include "datasource/internal/schema_sql.h"
#include "datasource/internal/sql_tokenizer.h"
#include "fuzz_input.h"

namespace {

void CheckTokens(std::string_view sql) {
  for (const qv::ds::SqlToken& t : qv::ds::TokenizeSql(sql)) {
    qv::fuzz::Require(t.begin <= t.end && t.end <= sql.size(),
                      "token outside the text");
  }
}

void CheckEdits(std::string_view sql) {
  const qv::ds::CreateTableText parsed = qv::ds::ParseCreateTable(sql, "t");
  qv::fuzz::Require(parsed.name_begin <= parsed.name_end &&
                        parsed.name_end <= sql.size() &&
                        parsed.body_close < sql.size(),
                    "table offsets outside the text");
  for (const auto& item : parsed.items) {
    qv::fuzz::Require(item.begin <= item.end && item.end <= sql.size(),
                      "item outside the text");
  }
  const std::string renamed = qv::ds::RenameTable(sql, parsed, "x");
  const qv::ds::CreateTableText again = qv::ds::ParseCreateTable(renamed, "x");
  qv::fuzz::Require(again.items.size() == parsed.items.size(),
                    "renaming changed the items");
  qv::ds::AppendItem(sql, parsed, "CONSTRAINT \"c\" CHECK (1)");
  if (!parsed.items.empty()) qv::ds::RemoveItem(sql, parsed, 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view sql = qv::fuzz::AsText(data, size);
  CheckTokens(sql);
  qv::fuzz::ExpectOnlyErrors([&] { CheckEdits(sql); });
  qv::fuzz::ExpectOnlyErrors([&] { qv::ds::ColumnFromDeclaredType("c", sql); });
  return 0;
}
