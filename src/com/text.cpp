#include "com/text.h"

#include <array>
#include <cstdint>

#include "com/error.h"

namespace qv::text {
namespace {

// One decoded character: its code point and how many bytes it takes. A byte
// that does not start a well-formed sequence is one character of one byte
// whose value is the byte itself, with `valid` false.
struct Char {
  char32_t value;
  size_t size;
  bool valid;
};

constexpr bool IsContinuation(unsigned char c) { return (c & 0xC0) == 0x80; }

// Decodes the character starting at byte `i` of `s` (i < s.size()).
Char DecodeAt(std::string_view s, size_t i) {
  const auto byte = [&](size_t k) {
    return static_cast<unsigned char>(s[i + k]);
  };
  const unsigned char c = byte(0);
  const Char invalid{c, 1, false};
  if (c < 0x80) return {c, 1, true};
  size_t size;
  char32_t value;
  unsigned char lo = 0x80;  // allowed range of the second byte
  unsigned char hi = 0xBF;
  if (c >= 0xC2 && c <= 0xDF) {
    size = 2;
    value = c & 0x1F;
  } else if (c >= 0xE0 && c <= 0xEF) {
    size = 3;
    value = c & 0x0F;
    if (c == 0xE0) lo = 0xA0;  // overlong
    if (c == 0xED) hi = 0x9F;  // surrogates
  } else if (c >= 0xF0 && c <= 0xF4) {
    size = 4;
    value = c & 0x07;
    if (c == 0xF0) lo = 0x90;  // overlong
    if (c == 0xF4) hi = 0x8F;  // above U+10FFFF
  } else {
    return invalid;
  }
  if (i + size > s.size() || byte(1) < lo || byte(1) > hi) return invalid;
  for (size_t k = 1; k < size; ++k) {
    if (!IsContinuation(byte(k))) return invalid;
    value = (value << 6) | (byte(k) & 0x3F);
  }
  return {value, size, true};
}

void AppendUtf8(char32_t cp, std::string& out) {
  const auto put = [&](uint32_t v) { out.push_back(static_cast<char>(v)); };
  if (cp < 0x80) {
    put(cp);
  } else if (cp < 0x800) {
    put(0xC0 | (cp >> 6));
    put(0x80 | (cp & 0x3F));
  } else if (cp < 0x10000) {
    put(0xE0 | (cp >> 12));
    put(0x80 | ((cp >> 6) & 0x3F));
    put(0x80 | (cp & 0x3F));
  } else {
    put(0xF0 | (cp >> 18));
    put(0x80 | ((cp >> 12) & 0x3F));
    put(0x80 | ((cp >> 6) & 0x3F));
    put(0x80 | (cp & 0x3F));
  }
}

// Byte offset reached after skipping `n` characters from byte `from`
// (s.size() when the string ends first).
size_t Advance(std::string_view s, size_t from, size_t n) {
  size_t i = from;
  for (; n > 0 && i < s.size(); --n) {
    i += static_cast<unsigned char>(s[i]) < 0x80 ? 1 : DecodeAt(s, i).size;
  }
  return i;
}

// In Latin Extended-A the capital and small letter of a pair sit next to
// each other; in these ranges the capital has the even code point, in the
// others the odd one. U+0130, U+0131, U+0138, U+0149 and U+017F have no
// partner and lie outside all ranges.
bool IsEvenCapitalRange(char32_t cp) {
  return (cp >= 0x100 && cp <= 0x137 && cp != 0x130 && cp != 0x131) ||
         (cp >= 0x14A && cp <= 0x177);
}
bool IsOddCapitalRange(char32_t cp) {
  return (cp >= 0x139 && cp <= 0x148) || (cp >= 0x179 && cp <= 0x17E);
}

char32_t ToLower(char32_t cp) {
  if (cp >= 'A' && cp <= 'Z') return cp + 0x20;
  if (cp >= 0xC0 && cp <= 0xDE && cp != 0xD7) return cp + 0x20;
  if (cp == 0x178) return 0xFF;
  if (IsEvenCapitalRange(cp) && cp % 2 == 0) return cp + 1;
  if (IsOddCapitalRange(cp) && cp % 2 == 1) return cp + 1;
  return cp;
}

char32_t ToUpper(char32_t cp) {
  if (cp >= 'a' && cp <= 'z') return cp - 0x20;
  if (cp >= 0xE0 && cp <= 0xFE && cp != 0xF7) return cp - 0x20;
  if (cp == 0xFF) return 0x178;
  if (IsEvenCapitalRange(cp) && cp % 2 == 1) return cp - 1;
  if (IsOddCapitalRange(cp) && cp % 2 == 0) return cp - 1;
  return cp;
}

// Applies `map` to every character of `s`. All folded letters lie between
// U+0041 and U+017F and map to partners of the same encoded length, so the
// result is patched in place.
template <typename Map>
std::string MapCase(std::string_view s, Map map) {
  std::string out(s);
  size_t i = 0;
  while (i < out.size()) {
    const auto c = static_cast<unsigned char>(out[i]);
    if (c < 0x80) {
      out[i] = static_cast<char>(map(c));
      ++i;
      continue;
    }
    const Char ch = DecodeAt(s, i);
    if (ch.valid && ch.size == 2) {
      const char32_t mapped = map(ch.value);
      out[i] = static_cast<char>(0xC0 | (mapped >> 6));
      out[i + 1] = static_cast<char>(0x80 | (mapped & 0x3F));
    }
    i += ch.size;
  }
  return out;
}

char AsciiLower(char c) { return c >= 'A' && c <= 'Z' ? c + 0x20 : c; }

// Finds `find` in `s` from a byte offset on, in either compare mode. Text
// mode searches the lower-case forms, whose byte offsets equal the
// original's.
class Finder {
 public:
  Finder(std::string_view s, std::string_view find, CompareMode mode)
      : s_(s), find_(find) {
    if (mode == CompareMode::kText) {
      folded_s_ = LCase(s);
      folded_find_ = LCase(find);
      s_ = folded_s_;
      find_ = folded_find_;
    }
  }
  size_t Find(size_t from) const { return s_.find(find_, from); }

 private:
  std::string folded_s_;
  std::string folded_find_;
  std::string_view s_;
  std::string_view find_;
};

// Code points of Windows-1252 bytes 0x80 to 0x9F.
constexpr std::array<char16_t, 32> kCp1252High = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr std::string_view kUtf8Bom = "\xEF\xBB\xBF";

}  // namespace

size_t Len(std::string_view s) {
  size_t count = 0;
  for (size_t i = 0; i < s.size(); i = Advance(s, i, 1)) ++count;
  return count;
}

std::string Left(std::string_view s, size_t n) {
  return std::string(s.substr(0, Advance(s, 0, n)));
}

std::string Right(std::string_view s, size_t n) {
  const size_t len = Len(s);
  if (n >= len) return std::string(s);
  return std::string(s.substr(Advance(s, 0, len - n)));
}

std::string Mid(std::string_view s, size_t start,
                std::optional<size_t> length) {
  if (start == 0) throw Error::Runtime(err::kInvalidProcedureCall);
  const size_t begin = Advance(s, 0, start - 1);
  if (!length) return std::string(s.substr(begin));
  return std::string(s.substr(begin, Advance(s, begin, *length) - begin));
}

std::string LCase(std::string_view s) { return MapCase(s, ToLower); }

std::string UCase(std::string_view s) { return MapCase(s, ToUpper); }

std::string ToLowerAscii(std::string_view s) {
  std::string out(s);
  for (char& c : out) c = AsciiLower(c);
  return out;
}

bool EqualsText(std::string_view a, std::string_view b) {
  // Folding keeps byte lengths, so strings of different length differ.
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (static_cast<unsigned char>(a[i]) >= 0x80 ||
        static_cast<unsigned char>(b[i]) >= 0x80) {
      // All before i was ASCII, so i starts a character in both.
      return LCase(a.substr(i)) == LCase(b.substr(i));
    }
    if (AsciiLower(a[i]) != AsciiLower(b[i])) return false;
  }
  return true;
}

int Compare(std::string_view a, std::string_view b, CompareMode mode) {
  const int c =
      mode == CompareMode::kText ? LCase(a).compare(LCase(b)) : a.compare(b);
  return (c > 0) - (c < 0);
}

bool Equals(std::string_view a, std::string_view b, CompareMode mode) {
  return mode == CompareMode::kText ? EqualsText(a, b) : a == b;
}

std::string Trim(std::string_view s) { return LTrim(RTrim(s)); }

std::string LTrim(std::string_view s) {
  const size_t first = s.find_first_not_of(' ');
  return first == std::string_view::npos ? "" : std::string(s.substr(first));
}

std::string RTrim(std::string_view s) {
  const size_t last = s.find_last_not_of(' ');
  return last == std::string_view::npos ? ""
                                        : std::string(s.substr(0, last + 1));
}

std::vector<std::string> Split(std::string_view s, std::string_view delim,
                               CompareMode mode) {
  std::vector<std::string> parts;
  if (s.empty()) return parts;
  if (delim.empty()) {
    parts.emplace_back(s);
    return parts;
  }
  const Finder finder(s, delim, mode);
  size_t from = 0;
  for (size_t at = finder.Find(0); at != std::string_view::npos;
       at = finder.Find(from)) {
    parts.emplace_back(s.substr(from, at - from));
    from = at + delim.size();
  }
  parts.emplace_back(s.substr(from));
  return parts;
}

std::string Replace(std::string_view s, std::string_view find,
                    std::string_view repl, CompareMode mode) {
  if (find.empty()) return std::string(s);
  const Finder finder(s, find, mode);
  std::string out;
  size_t from = 0;
  for (size_t at = finder.Find(0); at != std::string_view::npos;
       at = finder.Find(from)) {
    out.append(s.substr(from, at - from)).append(repl);
    from = at + find.size();
  }
  out.append(s.substr(from));
  return out;
}

size_t InStr(std::string_view s, std::string_view find, size_t start1,
             CompareMode mode) {
  if (start1 == 0) throw Error::Runtime(err::kInvalidProcedureCall);
  const size_t begin = Advance(s, 0, start1 - 1);
  if (begin == s.size()) return 0;  // start beyond the end, or s empty
  if (find.empty()) return start1;
  const size_t at = Finder(s, find, mode).Find(begin);
  if (at == std::string_view::npos) return 0;
  return start1 + Len(s.substr(begin, at - begin));
}

bool IsValidUtf8(std::string_view s) {
  for (size_t i = 0; i < s.size();) {
    const Char ch = DecodeAt(s, i);
    if (!ch.valid) return false;
    i += ch.size;
  }
  return true;
}

std::string FromWindows1252(std::string_view bytes) {
  std::string out;
  out.reserve(bytes.size());
  for (char b : bytes) {
    const auto c = static_cast<unsigned char>(b);
    if (c >= 0x80 && c <= 0x9F) {
      AppendUtf8(kCp1252High[c - 0x80], out);
    } else {
      AppendUtf8(c, out);
    }
  }
  return out;
}

std::string DecodeFileText(std::string_view bytes) {
  if (!IsValidUtf8(bytes)) return FromWindows1252(bytes);
  if (bytes.starts_with(kUtf8Bom)) bytes.remove_prefix(kUtf8Bom.size());
  return std::string(bytes);
}

}  // namespace qv::text
