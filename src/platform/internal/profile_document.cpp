#include "platform/internal/profile_document.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <optional>
#include <unordered_map>
#include <utility>

#include "com/text.h"

namespace qv::platform::internal {
namespace {

constexpr std::string_view kUtf8Bom = "\xEF\xBB\xBF";

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

std::string_view TrimBlanks(std::string_view s) {
  while (!s.empty() && IsBlank(s.front())) s.remove_prefix(1);
  while (!s.empty() && IsBlank(s.back())) s.remove_suffix(1);
  return s;
}

bool IsEol(char c) { return c == '\r' || c == '\n'; }

// Most files are plain ASCII; this loop is far quicker than decoding them.
bool IsAscii(std::string_view bytes) {
  uint64_t any = 0;
  size_t i = 0;
  for (; i + 8 <= bytes.size(); i += 8) {
    uint64_t word;
    std::memcpy(&word, bytes.data() + i, 8);
    any |= word;
  }
  for (; i < bytes.size(); ++i) any |= static_cast<unsigned char>(bytes[i]);
  return (any & 0x8080808080808080ull) == 0;
}

// The section name of a header line; nothing for any other line.
std::optional<std::string_view> HeaderName(std::string_view content) {
  size_t i = 0;
  while (i < content.size() && IsBlank(content[i])) ++i;
  if (i == content.size() || content[i] != '[') return std::nullopt;
  return ClassifyProfileLine(content).name;
}

// Encodes UTF-8 text as Windows-1252, the reverse of text::FromWindows1252
// (decoding a file and encoding it again gives back its exact bytes);
// nothing when the text holds a character that code page cannot hold.
std::optional<std::string> ToWindows1252(std::string_view utf8) {
  // The UTF-8 form of each byte 0x80 to 0xFF, as the decoder gives it.
  static const std::unordered_map<std::string, char> kBytes = [] {
    std::unordered_map<std::string, char> bytes;
    for (int b = 0x80; b <= 0xFF; ++b) {
      const char c = static_cast<char>(b);
      bytes.emplace(text::FromWindows1252(std::string_view(&c, 1)), c);
    }
    return bytes;
  }();
  std::string out;
  out.reserve(utf8.size());
  for (size_t i = 0; i < utf8.size();) {
    const auto lead = static_cast<unsigned char>(utf8[i]);
    if (lead < 0x80) {
      out.push_back(utf8[i++]);
      continue;
    }
    const size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    const auto it = kBytes.find(std::string(utf8.substr(i, size)));
    if (it == kBytes.end()) return std::nullopt;
    out.push_back(it->second);
    i += size;
  }
  return out;
}

// The line end that follows byte `i` of `text` (where a line ends), or an
// empty view at the end of the text.
std::string_view EolAt(std::string_view text, size_t i) {
  if (i >= text.size()) return {};
  if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') {
    return text.substr(i, 2);
  }
  return text.substr(i, 1);
}

}  // namespace

ProfileLine ClassifyProfileLine(std::string_view content) {
  ProfileLine line;
  const std::string_view trimmed = TrimBlanks(content);
  if (trimmed.starts_with('[')) {
    std::string_view name = trimmed.substr(1);
    name = name.substr(0, name.find(']'));
    line.kind = ProfileLineKind::kSection;
    line.name = TrimBlanks(name);
    return line;
  }
  const size_t eq = content.find('=');
  if (eq == std::string_view::npos) return line;
  line.kind = ProfileLineKind::kKey;
  line.name = TrimBlanks(content.substr(0, eq));
  std::string_view value = TrimBlanks(content.substr(eq + 1));
  if (value.size() >= 2 && value.front() == '"' && value.back() == '"') {
    value = value.substr(1, value.size() - 2);
  }
  line.value = value;
  return line;
}

ProfileDocument::ProfileDocument() = default;

ProfileDocument ProfileDocument::FromBytes(std::string bytes) {
  ProfileDocument doc;
  if (IsAscii(bytes) || text::IsValidUtf8(bytes)) {
    doc.bom_ = bytes.starts_with(kUtf8Bom);
    if (doc.bom_) bytes.erase(0, kUtf8Bom.size());
    doc.text_ = std::move(bytes);
  } else {
    doc.windows1252_ = true;
    doc.text_ = text::FromWindows1252(bytes);
  }
  for (size_t i = 0; i < doc.text_.size(); ++i) {
    if (IsEol(doc.text_[i])) {
      doc.eol_ = std::string(EolAt(doc.text_, i));
      break;
    }
  }
  return doc;
}

std::string ProfileDocument::ToBytes() && {
  if (!windows1252_ && !bom_) return std::move(text_);
  return std::as_const(*this).ToBytes();
}

std::string ProfileDocument::ToBytes() const& {
  if (windows1252_) {
    // A file is read as UTF-8 when its bytes are valid UTF-8; an edit that
    // removes the last byte that made them invalid would change what the
    // rest of the file reads as (a leading "ï»¿" would become a byte order
    // mark, "Ã¤" an "ä"). Such bytes are written as UTF-8 instead (for
    // ASCII text both encodings give the same bytes).
    std::optional<std::string> bytes = ToWindows1252(text_);
    if (bytes && !text::IsValidUtf8(*bytes)) return *std::move(bytes);
    return text_;
  }
  return bom_ ? std::string(kUtf8Bom) + text_ : text_;
}

std::vector<ProfileDocument::Line> ProfileDocument::SplitLines() const {
  // The next CR and the next LF are found with memchr-like searches, which
  // is many times quicker on large files than testing every byte.
  const std::string_view text(text_);
  std::vector<Line> lines;
  lines.reserve(text.size() / 32);
  size_t next_cr = text.find('\r'), next_lf = text.find('\n');
  for (size_t begin = 0; begin < text.size();) {
    if (next_cr != std::string_view::npos && next_cr < begin) {
      next_cr = text.find('\r', begin);
    }
    if (next_lf != std::string_view::npos && next_lf < begin) {
      next_lf = text.find('\n', begin);
    }
    const size_t end = std::min({next_cr, next_lf, text.size()});
    lines.push_back({begin, end, end + EolAt(text, end).size()});
    begin = lines.back().next;
  }
  return lines;
}

std::string_view ProfileDocument::Content(const Line& line) const {
  return std::string_view(text_).substr(line.begin, line.end - line.begin);
}

std::vector<ProfileDocument::SectionRange> ProfileDocument::FindSections(
    const std::vector<Line>& lines, std::string_view section) const {
  std::vector<SectionRange> found;
  for (size_t i = 0; i < lines.size(); ++i) {
    const std::optional<std::string_view> name = HeaderName(Content(lines[i]));
    if (!name) continue;
    if (!found.empty() && found.back().end == lines.size()) {
      found.back().end = i;
    }
    if (text::EqualsText(*name, section)) {
      found.push_back({i, lines.size()});
    }
  }
  return found;
}

std::vector<ProfileSectionView> ProfileDocument::Sections() const {
  std::vector<ProfileSectionView> sections;
  std::unordered_map<std::string, size_t> section_index;
  std::unordered_map<std::string, bool> seen_keys;  // of the current section
  ProfileSectionView* current = nullptr;
  for (const Line& l : SplitLines()) {
    const ProfileLine line = ClassifyProfileLine(Content(l));
    if (line.kind == ProfileLineKind::kSection) {
      const auto [it, added] =
          section_index.emplace(text::LCase(line.name), sections.size());
      current = nullptr;
      if (!added) continue;  // a later section of the same name is not read
      sections.push_back({std::string(line.name), {}});
      current = &sections.back();
      seen_keys.clear();
    } else if (line.kind == ProfileLineKind::kKey && current != nullptr &&
               seen_keys.emplace(text::LCase(line.name), true).second) {
      current->keys.emplace_back(line.name, line.value);
    }
  }
  return sections;
}

void ProfileDocument::InsertLine(size_t at, std::string_view line) {
  std::string insert;
  if (at > 0 && !IsEol(text_[at - 1])) insert = eol_;
  insert.append(line);
  insert.append(eol_);
  text_.insert(at, insert);
}

void ProfileDocument::EraseRange(size_t begin, size_t end) {
  text_.erase(begin, end - begin);
}

bool ProfileDocument::SetValue(std::string_view section, std::string_view key,
                               std::string_view value) {
  const std::vector<Line> lines = SplitLines();
  const std::vector<SectionRange> found = FindSections(lines, section);
  const auto key_line = [&](std::string_view name) {
    return std::string(name) + "=" + std::string(value);
  };
  if (found.empty()) {
    InsertLine(text_.size(), "[" + std::string(section) + "]");
    InsertLine(text_.size(), key_line(key));
    return true;
  }
  const SectionRange range = found.front();
  size_t last_filled = range.header;
  for (size_t i = range.header + 1; i < range.end; ++i) {
    const std::string_view content = Content(lines[i]);
    const ProfileLine line = ClassifyProfileLine(content);
    if (line.kind == ProfileLineKind::kKey &&
        text::EqualsText(line.name, key)) {
      const std::string replacement = key_line(line.name);
      if (content == replacement) return false;
      text_.replace(lines[i].begin, lines[i].end - lines[i].begin, replacement);
      return true;
    }
    if (!TrimBlanks(content).empty()) last_filled = i;
  }
  InsertLine(lines[last_filled].next, key_line(key));
  return true;
}

bool ProfileDocument::DeleteKey(std::string_view section,
                                std::string_view key) {
  const std::vector<Line> lines = SplitLines();
  const std::vector<SectionRange> found = FindSections(lines, section);
  if (found.empty()) return false;
  bool deleted = false;
  // From the back, so that the offsets of the lines before stay valid.
  for (size_t i = found.front().end; i-- > found.front().header + 1;) {
    const ProfileLine line = ClassifyProfileLine(Content(lines[i]));
    if (line.kind == ProfileLineKind::kKey &&
        text::EqualsText(line.name, key)) {
      EraseRange(lines[i].begin, lines[i].next);
      deleted = true;
    }
  }
  return deleted;
}

bool ProfileDocument::DeleteSection(std::string_view section) {
  const std::vector<Line> lines = SplitLines();
  const std::vector<SectionRange> found = FindSections(lines, section);
  for (auto it = found.rbegin(); it != found.rend(); ++it) {
    const size_t end =
        it->end == lines.size() ? text_.size() : lines[it->end].begin;
    EraseRange(lines[it->header].begin, end);
  }
  return !found.empty();
}

}  // namespace qv::platform::internal
