// qv::text holds the string helpers that every part of the library uses:
// character counting and slicing, letter-case folding, trimming, searching,
// splitting and replacing with the familiar automation semantics, and the
// decoding of text read from the suite's old files.
//
// All strings are UTF-8. "Characters" are code points; a byte that is not
// part of a valid UTF-8 sequence counts as one character and is passed
// through unchanged. Letter case is folded for ASCII and the accented Latin
// letters (Latin-1 Supplement and Latin Extended-A). Folding never changes
// the byte length of a string, so byte positions in a folded string are the
// positions in the original.
//
// The functions keep no state and are safe to call from any thread.
#ifndef QVGLOBAL_COM_TEXT_H_
#define QVGLOBAL_COM_TEXT_H_

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qv::text {

// How two strings are compared: byte for byte (code point order), or
// without regard to letter case.
enum class CompareMode { kBinary = 0, kText = 1 };

// Number of characters (code points) in `s`.
size_t Len(std::string_view s);

// The first `n` characters of `s` (all of it when shorter).
std::string Left(std::string_view s, size_t n);
// The last `n` characters of `s` (all of it when shorter).
std::string Right(std::string_view s, size_t n);
// The characters of `s` from the 1-based position `start` on, at most
// `length` of them (all the rest when `length` is not given). A start beyond
// the end gives "". Start 0 raises runtime error 5.
std::string Mid(std::string_view s, size_t start,
                std::optional<size_t> length = std::nullopt);

// Lower- and upper-case forms. Unfolded characters (ß, ı, İ, ĸ, ŉ, ſ and all
// outside the Latin ranges) stay as they are.
std::string LCase(std::string_view s);
std::string UCase(std::string_view s);
// Lower-cases the ASCII letters only; meant for identifiers.
std::string ToLowerAscii(std::string_view s);

// True when `a` and `b` are equal without regard to letter case.
bool EqualsText(std::string_view a, std::string_view b);
// -1, 0 or 1 as `a` sorts before, equal to or after `b`. Text mode compares
// the lower-case forms.
int Compare(std::string_view a, std::string_view b,
            CompareMode mode = CompareMode::kBinary);
bool Equals(std::string_view a, std::string_view b,
            CompareMode mode = CompareMode::kBinary);

// Remove blanks (U+0020 only; tabs and line breaks stay) from both ends, the
// left end or the right end.
std::string Trim(std::string_view s);
std::string LTrim(std::string_view s);
std::string RTrim(std::string_view s);

// Splits `s` at every occurrence of `delim`. An empty `s` gives no parts; an
// empty `delim` gives one part holding all of `s`. Delimiters at the ends or
// next to each other give empty parts.
std::vector<std::string> Split(std::string_view s, std::string_view delim,
                               CompareMode mode = CompareMode::kBinary);

// Replaces every occurrence of `find` in `s`, left to right and without
// overlap, by `repl`. An empty `find` leaves `s` unchanged.
std::string Replace(std::string_view s, std::string_view find,
                    std::string_view repl,
                    CompareMode mode = CompareMode::kBinary);

// The 1-based character position of the first `find` in `s` at or after the
// character position `start1`, 0 when there is none. When `start1` lies
// beyond the end of `s` (or `s` is empty) the result is 0; otherwise an empty
// `find` is found at `start1`. Start 0 raises runtime error 5.
size_t InStr(std::string_view s, std::string_view find, size_t start1 = 1,
             CompareMode mode = CompareMode::kBinary);

// True when `s` is well-formed UTF-8 (no overlong forms, no surrogates,
// nothing above U+10FFFF).
bool IsValidUtf8(std::string_view s);
// Decodes Windows-1252 bytes to UTF-8. The five bytes that code page leaves
// undefined (81, 8D, 8F, 90, 9D) become the code points of the same value.
std::string FromWindows1252(std::string_view bytes);
// Text read from a file: valid UTF-8 is returned as it is, without a leading
// byte order mark; anything else is decoded as Windows-1252.
std::string DecodeFileText(std::string_view bytes);

}  // namespace qv::text

#endif  // QVGLOBAL_COM_TEXT_H_
