// ProfileDocument is the text of one INI file together with the rules by
// which the suite reads and edits it. The text is held decoded (UTF-8); the
// document remembers how the file was encoded (UTF-8 with or without a byte
// order mark, or Windows-1252) and which line end it uses, so that an edit
// touches only the lines it concerns and every other byte of the file comes
// back unchanged.
//
// Reading rules: a line whose first non-blank character is "[" starts a
// section, named by the text up to the next "]" (or the end of the line),
// trimmed. A line holding "=" is a key: the trimmed text before the first
// "=" is its name, the trimmed text after it its value, from which one pair
// of double quotes around the whole value is removed. Every other line
// (comments, blank lines, text without "=") is kept but means nothing. Keys
// before the first section belong to no section. Names compare without
// regard to letter case; the first matching section and, inside it, the
// first matching key count. Blanks are spaces and tabs; lines end with
// CR LF, LF or CR.
//
// A document is a value; it does no input or output and may be used from
// any thread, one thread at a time.
#ifndef QVGLOBAL_PLATFORM_INTERNAL_PROFILE_DOCUMENT_H_
#define QVGLOBAL_PLATFORM_INTERNAL_PROFILE_DOCUMENT_H_

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qv::platform::internal {

// One section as the reading rules see it: its name as written and its keys
// with their values, duplicates dropped (the first one counts).
struct ProfileSectionView {
  std::string name;
  std::vector<std::pair<std::string, std::string>> keys;
};

class ProfileDocument {
 public:
  // An empty document of a new file: UTF-8, CR LF line ends.
  ProfileDocument();
  // The document of a file's bytes.
  static ProfileDocument FromBytes(std::string bytes);

  // The file's bytes in the document's encoding. A Windows-1252 document
  // whose text holds a character that code page cannot hold, or whose bytes
  // in that code page would be valid UTF-8 (and so be read as UTF-8), is
  // written as UTF-8 (without a byte order mark) instead.
  std::string ToBytes() const&;
  // The same, taking the text over where it needs no encoding.
  std::string ToBytes() &&;

  // The sections in file order, each name once (the first occurrence).
  std::vector<ProfileSectionView> Sections() const;

  // Sets `key` in `section` to `value`: replaces the first matching key's
  // line, or adds the key after the last non-blank line of the first
  // matching section, or adds the section with the key at the end. Returns
  // false when the key's line already read exactly so (nothing changed).
  bool SetValue(std::string_view section, std::string_view key,
                std::string_view value);
  // Removes every line of the first matching section that holds `key`.
  // Returns false when there was none (the document is unchanged).
  bool DeleteKey(std::string_view section, std::string_view key);
  // Removes every section named `section`, from its header line up to the
  // next section. Returns false when there was none.
  bool DeleteSection(std::string_view section);

  const std::string& text() const { return text_; }

 private:
  struct Line {
    size_t begin;  // first byte of the line
    size_t end;    // one past its last byte before the line end
    size_t next;   // first byte of the following line
  };
  // The lines of one section: its header and the lines up to the next one.
  struct SectionRange {
    size_t header;  // line index of the header
    size_t end;     // line index of the next header (or the line count)
  };

  std::vector<Line> SplitLines() const;
  std::vector<SectionRange> FindSections(const std::vector<Line>& lines,
                                         std::string_view section) const;
  std::string_view Content(const Line& line) const;
  // Appends `line` and a line end, after giving an unterminated last line
  // its line end.
  void InsertLine(size_t at, std::string_view line);
  void EraseRange(size_t begin, size_t end);

  std::string text_;
  std::string eol_ = "\r\n";
  bool windows1252_ = false;
  bool bom_ = false;
};

// The reading rules applied to one line.
enum class ProfileLineKind { kSection, kKey, kOther };
struct ProfileLine {
  ProfileLineKind kind = ProfileLineKind::kOther;
  std::string_view name;   // section or key name, trimmed
  std::string_view value;  // key value, trimmed and unquoted
};
ProfileLine ClassifyProfileLine(std::string_view content);

}  // namespace qv::platform::internal

#endif  // QVGLOBAL_PLATFORM_INTERNAL_PROFILE_DOCUMENT_H_
