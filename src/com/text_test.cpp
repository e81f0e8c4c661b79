#include "com/text.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "testing/expect_error.h"

namespace qv::text {
namespace {

using Parts = std::vector<std::string>;
constexpr CompareMode kBin = CompareMode::kBinary;
constexpr CompareMode kTxt = CompareMode::kText;

void ExpectError5(auto&& call) {
  EXPECT_TRUE(
      qv::testing::RaisesError(call, 5, "Invalid procedure call or argument"));
}

TEST(TextTest, LenLeftRightMidCountCodePoints) {
  EXPECT_EQ(Len(""), 0u);
  EXPECT_EQ(Len("Gr\u00fc\u00dfe \u20ac"), 7u);
  EXPECT_EQ(Len("a\xFFz"), 3u);  // a stray byte counts as one character
  EXPECT_EQ(Left("\u00c4rger", 2), "\u00c4r");
  EXPECT_EQ(Left("abc", 10), "abc");
  EXPECT_EQ(Right("Stra\u00dfe", 2), "\u00dfe");
  EXPECT_EQ(Right("abc", 0), "");
  EXPECT_EQ(Right("abc", 5), "abc");
  EXPECT_EQ(Mid("H\u00e4user", 2, 3), "\u00e4us");
  EXPECT_EQ(Mid("H\u00e4user", 3), "user");
  EXPECT_EQ(Mid("abc", 4), "");
  EXPECT_EQ(Mid("abc", 9, 2), "");
  EXPECT_EQ(Mid("abc", 2, 0), "");
  ExpectError5([] { Mid("abc", 0); });
}

TEST(TextTest, CaseFoldingOfLatinLetters) {
  const std::vector<std::pair<std::string, std::string>> upper_lower = {
      {"\u00c4\u00d6\u00dc\u00c9 ABC XYZ", "\u00e4\u00f6\u00fc\u00e9 abc xyz"},
      {"\u0178", "\u00ff"},
      // Latin Extended-A, capital even, small odd: Ā/ā, Č/č, Ķ/ķ, Ĳ/ĳ, then
      // Ŋ/ŋ, Ő/ő, Š/š, Ŷ/ŷ; capital odd, small even: Ĺ/ĺ, Ł/ł, Ň/ň, Ź/ź, Ž/ž.
      {"\u0100\u010c\u0136\u0132", "\u0101\u010d\u0137\u0133"},
      {"\u014a\u0150\u0160\u0176", "\u014b\u0151\u0161\u0177"},
      {"\u0139\u0141\u0147\u0179\u017d", "\u013a\u0142\u0148\u017a\u017e"},
  };
  for (const auto& [upper, lower] : upper_lower) {
    EXPECT_EQ(LCase(upper), lower);
    EXPECT_EQ(UCase(lower), upper);
  }
  // × and ÷ are not letters; ß has no single capital; the others have no
  // partner in this folding.
  for (const std::string same :
       {"\u00d7\u00f7\u00df", "\u0130\u0131\u0138\u0149\u017f"}) {
    EXPECT_EQ(LCase(same), same);
    EXPECT_EQ(UCase(same), same);
  }
  EXPECT_EQ(ToLowerAscii("\u00c4BC"), "\u00c4bc");
}

TEST(TextTest, CaseFoldingPairsAreMutual) {
  // Every letter that changes under one folding comes back under the other,
  // and folding keeps the byte length.
  int pairs = 0;
  for (char32_t cp = 0x20; cp <= 0x17F; ++cp) {
    std::string ch;
    if (cp < 0x80) {
      ch.push_back(static_cast<char>(cp));
    } else {
      ch.push_back(static_cast<char>(0xC0 | (cp >> 6)));
      ch.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    }
    const std::string lower = LCase(ch);
    const std::string upper = UCase(ch);
    EXPECT_EQ(lower.size(), ch.size());
    if (lower != ch) {
      ++pairs;
      EXPECT_EQ(UCase(lower), ch) << static_cast<int>(cp);
      EXPECT_EQ(upper, ch) << static_cast<int>(cp);
    }
    if (upper != ch) {
      EXPECT_EQ(LCase(upper), ch) << static_cast<int>(cp);
    }
  }
  // 26 ASCII, 30 Latin-1, Ÿ and 27 + 8 + 23 + 3 Latin Extended-A capitals.
  EXPECT_EQ(pairs, 26 + 30 + 1 + 61);
  EXPECT_EQ(LCase("A\xC4Z\xE4"), "a\xC4z\xE4");
  EXPECT_EQ(UCase("\xC3"), "\xC3");
  EXPECT_EQ(LCase("\xC3\x84"), "\xC3\xA4");  // the valid form of Ä
}

TEST(TextTest, TextComparison) {
  EXPECT_TRUE(EqualsText("Stra\u00dfe", "STRA\u00dfE"));
  EXPECT_TRUE(EqualsText("m\u00fcller", "M\u00dcLLER"));
  EXPECT_TRUE(EqualsText("\u017e", "\u017d"));
  EXPECT_FALSE(EqualsText("M\u00fcller", "Muller"));
  EXPECT_FALSE(EqualsText("abc", "abcd"));
  EXPECT_FALSE(EqualsText("\u0131", "I"));
  EXPECT_TRUE(EqualsText("", ""));
  EXPECT_TRUE(Equals("ABC", "abc", kTxt));
  EXPECT_FALSE(Equals("ABC", "abc", kBin));

  EXPECT_EQ(Compare("abc", "abd", kBin), -1);
  EXPECT_EQ(Compare("b", "a", kBin), 1);
  EXPECT_EQ(Compare("ABC", "abc", kBin), -1);
  EXPECT_EQ(Compare("ABC", "abc", kTxt), 0);
  EXPECT_EQ(Compare("\u00c4", "\u00e4", kTxt), 0);
  EXPECT_EQ(Compare("z", "\u00e4", kBin), -1);  // code point order
  EXPECT_EQ(Compare("B", "a", kTxt), 1);
  EXPECT_EQ(Compare("", "a", kTxt), -1);
}

TEST(TextTest, TrimRemovesBlanksOnly) {
  EXPECT_EQ(Trim("  a b  "), "a b");
  EXPECT_EQ(LTrim("  a b  "), "a b  ");
  EXPECT_EQ(RTrim("  a b  "), "  a b");
  EXPECT_EQ(Trim("\ta\n"), "\ta\n");
  EXPECT_EQ(Trim(" \t a \r\n "), "\t a \r\n");
  EXPECT_EQ(Trim("    "), "");
  EXPECT_EQ(LTrim(""), "");
}

TEST(TextTest, SplitInBothModes) {
  EXPECT_EQ(Split("Haus_A_VM", "_"), (Parts{"Haus", "A", "VM"}));
  EXPECT_EQ(Split("_VM", "_"), (Parts{"", "VM"}));
  EXPECT_EQ(Split("Haus_", "_"), (Parts{"Haus", ""}));
  EXPECT_EQ(Split("a;;b", ";"), (Parts{"a", "", "b"}));
  EXPECT_EQ(Split(";", ";"), (Parts{"", ""}));
  EXPECT_EQ(Split("abc", ";"), (Parts{"abc"}));
  EXPECT_EQ(Split("", ";"), Parts{});
  EXPECT_EQ(Split("a;b", ""), (Parts{"a;b"}));
  EXPECT_EQ(Split("a@@b@@@c", "@@"), (Parts{"a", "b", "@c"}));
  EXPECT_EQ(Split("aXbxc", "x"), (Parts{"aXb", "c"}));
  EXPECT_EQ(Split("aXbxc", "x", kTxt), (Parts{"a", "b", "c"}));
  EXPECT_EQ(Split("Zeile1@@N@@Zeile2@@n@@", "@@n@@", kTxt),
            (Parts{"Zeile1", "Zeile2", ""}));
  EXPECT_EQ(Split("\u00c4x\u00e4y\u00c4", "\u00e4", kTxt),
            (Parts{"", "x", "y", ""}));
  EXPECT_EQ(Split("", "x", kTxt), Parts{});
}

TEST(TextTest, ReplaceInBothModes) {
  EXPECT_EQ(Replace("a.b.c", ".", "::"), "a::b::c");
  EXPECT_EQ(Replace("aaa", "aa", "b"), "ba");  // no overlap
  EXPECT_EQ(Replace("AbAb", "a", "x"), "AbAb");
  EXPECT_EQ(Replace("AbAb", "a", "x", kTxt), "xbxb");
  EXPECT_EQ(Replace("Gr\u00d6\u00dfe gr\u00f6\u00dfe", "\u00f6", "oe", kTxt),
            "Groe\u00dfe groe\u00dfe");
  EXPECT_EQ(Replace("abc", "", "x"), "abc");
  EXPECT_EQ(Replace("", "a", "x"), "");
  EXPECT_EQ(Replace("abc", "abc", ""), "");
  EXPECT_EQ(Replace("xax", "x", "xx"), "xxaxx");
}

TEST(TextTest, InStrPositionsInCharactersAndStartBounds) {
  EXPECT_EQ(InStr("Data Source=x", "Source="), 6u);
  EXPECT_EQ(InStr("abcabc", "c", 4), 6u);
  EXPECT_EQ(InStr("abcabc", "C"), 0u);
  EXPECT_EQ(InStr("abcabc", "C", 1, kTxt), 3u);
  EXPECT_EQ(InStr("\u00e4\u00f6\u00fcx", "x"), 4u);
  EXPECT_EQ(InStr("\u00c4\u00d6\u00dc\u00e4\u00f6", "\u00f6", 3, kTxt), 5u);
  EXPECT_EQ(InStr("abc", "d"), 0u);
  EXPECT_EQ(InStr("", "a"), 0u);
  EXPECT_EQ(InStr("abc", "abcd"), 0u);
  EXPECT_EQ(InStr("abc", ""), 1u);
  EXPECT_EQ(InStr("abc", "", 3), 3u);
  EXPECT_EQ(InStr("abc", "", 4), 0u);
  EXPECT_EQ(InStr("", ""), 0u);
  EXPECT_EQ(InStr("abc", "c", 4), 0u);
  EXPECT_EQ(InStr("abc", "a", 100), 0u);
  ExpectError5([] { InStr("abc", "a", 0); });
}

TEST(TextTest, Utf8ValidationAndDecoding) {
  EXPECT_TRUE(IsValidUtf8(""));
  EXPECT_TRUE(IsValidUtf8("a\u00e4\u20ac\U0001F600"));
  EXPECT_FALSE(IsValidUtf8("\xE4"));              // Latin-1 ä
  EXPECT_FALSE(IsValidUtf8("\xC0\xAF"));          // overlong
  EXPECT_FALSE(IsValidUtf8("\xE0\x80\xAF"));      // overlong
  EXPECT_FALSE(IsValidUtf8("\xED\xA0\x80"));      // surrogate
  EXPECT_FALSE(IsValidUtf8("\xF4\x90\x80\x80"));  // above U+10FFFF
  EXPECT_FALSE(IsValidUtf8("\xE2\x82"));          // cut short
  EXPECT_FALSE(IsValidUtf8("\x80"));              // lone continuation
  EXPECT_EQ(FromWindows1252("\x80"), "\u20ac");
  EXPECT_EQ(FromWindows1252("Gr\xF6\xDFte \xE4"), "Gr\u00f6\u00dfte \u00e4");
  EXPECT_EQ(FromWindows1252("\x8A\x9F\x93x\x94"), "\u0160\u0178\u201cx\u201d");
  EXPECT_EQ(FromWindows1252("\x81\x8D\x8F\x90\x9D"),
            "\u0081\u008d\u008f\u0090\u009d");
  EXPECT_EQ(FromWindows1252("\xA0\xFF"), "\u00a0\u00ff");
  EXPECT_EQ(DecodeFileText("\xEF\xBB\xBFStra\u00dfe"), "Stra\u00dfe");
  EXPECT_EQ(DecodeFileText("Stra\u00dfe"), "Stra\u00dfe");
  EXPECT_EQ(DecodeFileText("Ma\xDFstab"), "Ma\u00dfstab");
  EXPECT_EQ(DecodeFileText("\xEF\xBB\xBF\xE4"), "\u00ef\u00bb\u00bf\u00e4");
  EXPECT_EQ(DecodeFileText(""), "");
}

}  // namespace
}  // namespace qv::text
