#include "datasource/internal/sql_tokenizer.h"

#include <gtest/gtest.h>

#include <string>

namespace qv::ds {
namespace {

// The tokens as "W:word Q:quoted S:string P:(", one blank between tokens.
std::string Render(std::string_view sql) {
  std::string out;
  for (const SqlToken& t : TokenizeSql(sql)) {
    static constexpr char kKinds[] = {'W', 'Q', 'S', 'P'};
    if (!out.empty()) out += ' ';
    out += kKinds[static_cast<int>(t.kind)];
    out += ':' + t.text;
  }
  return out;
}

TEST(SqlTokenizerTest, SplitsIntoTokens) {
  const struct {
    const char* sql;
    const char* tokens;
  } kCases[] = {
      {"CREATE TABLE \"a\"\"b\" (x INT)",
       "W:CREATE W:TABLE Q:a\"b P:( W:x W:INT P:)"},
      {"[r]]x] `n``m`", "Q:r P:] W:x P:] Q:n`m"},
      {"'it''s' -- bis zum Zeilenende\n, y", "S:it's P:, W:y"},
      {"a/* mitten */b /* offen", "W:a W:b"},
      {"CHECK (x>=-1.5)", "W:CHECK P:( W:x P:> P:= P:- W:1 P:. W:5 P:)"},
      {"Größe_1$ \t\r\n", "W:Größe_1$"},
      {"'offen", "S:offen"},
      {"", ""},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(Render(c.sql), c.tokens) << c.sql;
  }
}

TEST(SqlTokenizerTest, OffsetsCoverTheQuotes) {
  const std::vector<SqlToken> tokens = TokenizeSql("x \"a\"\"b\" 'c");
  ASSERT_EQ(tokens.size(), 3u);
  EXPECT_EQ(std::pair(tokens[1].begin, tokens[1].end), std::pair(2ul, 8ul));
  EXPECT_EQ(std::pair(tokens[2].begin, tokens[2].end), std::pair(9ul, 11ul));
  EXPECT_TRUE(tokens[0].IsKeyword("X"));
  EXPECT_FALSE(tokens[1].IsKeyword("a\"b"));  // a quoted name is no keyword
  EXPECT_TRUE(tokens[1].IsName());
  EXPECT_FALSE(tokens[2].IsName());
}

}  // namespace
}  // namespace qv::ds
