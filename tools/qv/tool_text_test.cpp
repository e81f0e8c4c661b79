#include "qv/tool_text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace qv::tool {
namespace {

TEST(ToolTextTest, ControlsAndBrokenBytesAreEscaped) {
  struct Case {
    std::string in, out, out_keeping_lines;
  };
  const std::vector<Case> cases = {
      {"Raum 1", "Raum 1", "Raum 1"},
      {"Wärme – ✓ 𝄞", "Wärme – ✓ 𝄞", "Wärme – ✓ 𝄞"},
      {"C:\\Projekte", "C:\\Projekte", "C:\\Projekte"},
      {"\x1b[2J\x07", "\\x1b[2J\\x07", "\\x1b[2J\\x07"},
      {std::string("a\0b", 3), "a\\x00b", "a\\x00b"},
      {"a\tb\x7f", "a\\tb\\x7f", "a\\tb\\x7f"},
      {"1\r\n2\n3\r", "1\\r\\n2\\n3\\r", "1\r\n2\n3\\r"},
      // C1 controls: CSI (U+009B) and NEL (U+0085); U+00A0 is text.
      {"\xc2\x9b"
       "31m\xc2\x85\xc2\xa0",
       "\\u009b31m\\u0085\xc2\xa0", "\\u009b31m\\u0085\xc2\xa0"},
      // Windows-1252 bytes, a cut sequence, an overlong "/" and a surrogate.
      {"\xe4x\xe2\x82", "\\xe4x\\xe2\\x82", "\\xe4x\\xe2\\x82"},
      {"\xc0\xaf\xed\xa0\x80", "\\xc0\\xaf\\xed\\xa0\\x80",
       "\\xc0\\xaf\\xed\\xa0\\x80"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.out);
    EXPECT_EQ(EscapeControls(c.in), c.out);
    EXPECT_EQ(EscapeControlsKeepLines(c.in), c.out_keeping_lines);
  }
}

}  // namespace
}  // namespace qv::tool
