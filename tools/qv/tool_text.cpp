#include "qv/tool_text.h"

#include <fmt/format.h>

namespace qv::tool {
namespace {

// Length of the well-formed UTF-8 sequence at s[i], 0 when there is none.
size_t SequenceLength(std::string_view s, size_t i) {
  const auto byte = [&](size_t k) { return static_cast<unsigned char>(s[k]); };
  const unsigned char lead = byte(i);
  size_t n = lead >= 0xF0 && lead <= 0xF4   ? 4
             : lead >= 0xE0 && lead <= 0xEF ? 3
             : lead >= 0xC2 && lead <= 0xDF ? 2
                                            : 0;
  if (n == 0 || i + n > s.size()) return 0;
  for (size_t k = 1; k < n; ++k) {
    if ((byte(i + k) & 0xC0) != 0x80) return 0;
  }
  // Overlong forms, surrogates and code points past U+10FFFF.
  const unsigned char second = byte(i + 1);
  if ((lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ||
      (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F)) {
    return 0;
  }
  return n;
}

std::string Escape(std::string_view s, bool keep_lines) {
  std::string out;
  out.reserve(s.size());
  for (size_t i = 0; i < s.size();) {
    const auto c = static_cast<unsigned char>(s[i]);
    if (keep_lines && c == '\n') {
      out += '\n';
      ++i;
    } else if (keep_lines && c == '\r' && i + 1 < s.size() &&
               s[i + 1] == '\n') {
      out += "\r\n";
      i += 2;
    } else if (c < 0x20 || c == 0x7F) {
      out += c == '\n'   ? std::string("\\n")
             : c == '\r' ? std::string("\\r")
             : c == '\t' ? std::string("\\t")
                         : fmt::format("\\x{:02x}", c);
      ++i;
    } else if (c < 0x80) {
      out += static_cast<char>(c);
      ++i;
    } else if (const size_t n = SequenceLength(s, i); n == 0) {
      out += fmt::format("\\x{:02x}", c);
      ++i;
    } else if (c == 0xC2 && static_cast<unsigned char>(s[i + 1]) < 0xA0) {
      out += fmt::format("\\u{:04x}", static_cast<unsigned char>(s[i + 1]));
      i += 2;
    } else {
      out.append(s.substr(i, n));
      i += n;
    }
  }
  return out;
}

}  // namespace

std::string EscapeControls(std::string_view text) {
  return Escape(text, false);
}

std::string EscapeControlsKeepLines(std::string_view text) {
  return Escape(text, true);
}

}  // namespace qv::tool
