// Splits SQL text into tokens (words, quoted names, strings, numbers and
// single punctuation characters), skipping blanks and comments. Enough to
// read the CREATE TABLE statements the engine keeps; it does not validate.
// Internal to src/datasource/.
// Threads: a tokenizer is a local value; it keeps no shared state.
#ifndef QVGLOBAL_DATASOURCE_INTERNAL_SQL_TOKENIZER_H_
#define QVGLOBAL_DATASOURCE_INTERNAL_SQL_TOKENIZER_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace qv::ds {

struct SqlToken {
  enum class Kind { kWord, kQuotedName, kString, kPunct };
  Kind kind;
  size_t begin, end;  // offsets of the token in the text
  std::string text;   // quotes removed and doubled quotes undone

  bool IsPunct(char c) const {
    return kind == Kind::kPunct && text.size() == 1 && text[0] == c;
  }
  // A bare word equal to `keyword` without regard to ASCII case.
  bool IsKeyword(std::string_view keyword) const;
  // A name: a bare word or a quoted name.
  bool IsName() const {
    return kind == Kind::kWord || kind == Kind::kQuotedName;
  }
};

std::vector<SqlToken> TokenizeSql(std::string_view sql);

}  // namespace qv::ds

#endif  // QVGLOBAL_DATASOURCE_INTERNAL_SQL_TOKENIZER_H_
