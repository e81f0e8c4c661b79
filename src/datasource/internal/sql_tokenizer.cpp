#include "datasource/internal/sql_tokenizer.h"

#include "com/text.h"

namespace qv::ds {
namespace {

bool IsWordChar(char c) {
  const auto u = static_cast<unsigned char>(c);
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
         (c >= '0' && c <= '9') || c == '_' || c == '$' || u >= 0x80;
}

// Offset just after a comment starting at `i`, or `i` when there is none.
size_t SkipComment(std::string_view s, size_t i) {
  if (s.substr(i, 2) == "--") {
    const size_t eol = s.find('\n', i);
    return eol == std::string_view::npos ? s.size() : eol + 1;
  }
  if (s.substr(i, 2) == "/*") {
    const size_t close = s.find("*/", i + 2);
    return close == std::string_view::npos ? s.size() : close + 2;
  }
  return i;
}

// A quoted token from `i` (the opening quote) to its closing quote; a
// doubled closing quote stands for one.
SqlToken ReadQuoted(std::string_view s, size_t i, char close,
                    SqlToken::Kind kind) {
  SqlToken t{kind, i, s.size(), ""};
  size_t j = i + 1;
  while (j < s.size()) {
    if (s[j] == close) {
      if (close != ']' && j + 1 < s.size() && s[j + 1] == close) {
        t.text += close;
        j += 2;
        continue;
      }
      t.end = j + 1;
      return t;
    }
    t.text += s[j++];
  }
  return t;  // unterminated: runs to the end
}

}  // namespace

bool SqlToken::IsKeyword(std::string_view keyword) const {
  return kind == Kind::kWord &&
         text::ToLowerAscii(text) == text::ToLowerAscii(keyword);
}

std::vector<SqlToken> TokenizeSql(std::string_view s) {
  std::vector<SqlToken> tokens;
  size_t i = 0;
  while (i < s.size()) {
    const char c = s[i];
    if (c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f') {
      ++i;
      continue;
    }
    if (const size_t after = SkipComment(s, i); after != i) {
      i = after;
      continue;
    }
    SqlToken t;
    if (c == '"' || c == '`') {
      t = ReadQuoted(s, i, c, SqlToken::Kind::kQuotedName);
    } else if (c == '[') {
      t = ReadQuoted(s, i, ']', SqlToken::Kind::kQuotedName);
    } else if (c == '\'') {
      t = ReadQuoted(s, i, '\'', SqlToken::Kind::kString);
    } else if (IsWordChar(c)) {
      size_t j = i;
      while (j < s.size() && IsWordChar(s[j])) ++j;
      t = SqlToken{SqlToken::Kind::kWord, i, j,
                   std::string(s.substr(i, j - i))};
    } else {
      t = SqlToken{SqlToken::Kind::kPunct, i, i + 1, std::string(1, c)};
    }
    i = t.end;
    tokens.push_back(std::move(t));
  }
  return tokens;
}

}  // namespace qv::ds
