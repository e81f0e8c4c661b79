#include "com/variant.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "com/error.h"
#include "com/safe_array.h"
#include "com/variant_date.h"
#include "testing/callback_object.h"
#include "testing/expect_error.h"

namespace qv {
namespace {

using qv::testing::RaisesError;
using text::CompareMode;

// An expected runtime error: its number and the exact text it carries.
struct Raises {
  int32_t number;
  const char* text;
};
constexpr Raises kOverflow{6, "Overflow"};
constexpr Raises kTypeMismatch{13, "Type mismatch"};
constexpr Raises kInvalidUseOfNull{94, "Invalid use of Null"};

// One row of a conversion table: an input and either the converted value or
// the error the conversion raises.
template <class T>
struct Row {
  Row(Variant in, T want) : input(std::move(in)), expected(std::move(want)) {}
  Row(Variant in, Raises e) : input(std::move(in)), error(e) {}
  Variant input;
  std::optional<T> expected;
  std::optional<Raises> error;
};

template <class T, class Convert>
void CheckTable(const std::vector<Row<T>>& rows, Convert convert) {
  for (const Row<T>& row : rows) {
    SCOPED_TRACE(row.input.Describe());
    if (row.error) {
      EXPECT_TRUE(RaisesError([&] { convert(row.input); }, row.error->number,
                              row.error->text));
      continue;
    }
    try {
      EXPECT_EQ(convert(row.input), *row.expected);
    } catch (const Error& e) {
      ADD_FAILURE() << "raised " << e.number() << " " << e.description();
    }
  }
}

Variant Array(std::initializer_list<Variant> items) {
  return Variant(SafeArray(items));
}

TEST(VariantConversionTest, ToString) {
  CheckTable<std::string>(
      {
          {Variant(), ""},
          {kNull, kInvalidUseOfNull},
          {true, "True"},
          {false, "False"},
          {int16_t{-5}, "-5"},
          {123456, "123456"},
          {1.5, "1.5"},
          {-0.25, "-0.25"},
          {100.0, "100"},
          {-0.0, "0"},
          {0.1, "0.1"},
          {0.1 + 0.2, "0.3"},
          {1.0 / 3, "0.333333333333333"},
          {1e14, "100000000000000"},
          {1e15, "1E+15"},
          {1e-5, "1E-05"},
          {0.0001, "0.0001"},
          {123456789012345678.0, "1.23456789012346E+17"},
          {0.1f, "0.1"},
          {16777216.0f, "1.677722E+07"},
          {MakeDate(2024, 3, 1, 12, 30, 0), "2024-03-01 12:30:00"},
          {MakeDate(2024, 3, 1), "2024-03-01"},
          {"text", "text"},
          {Array({1, 2}), kTypeMismatch},
      },
      [](const Variant& v) { return v.ToString(); });
}

TEST(VariantConversionTest, ToLongRoundsHalfToEven) {
  CheckTable<int32_t>(
      {
          {Variant(), 0},
          {kNull, kInvalidUseOfNull},
          {true, -1},
          {false, 0},
          {int16_t{-7}, -7},
          {0.5, 0},
          {1.5, 2},
          {2.5, 2},
          {-2.5, -2},
          {-3.5, -4},
          {2.4999, 2},
          {2.5f, 2},
          {"1.5", 2},
          {"2.5", 2},
          {" 42 ", 42},
          {"&H1F", 31},
          {"&hFFFF", -1},
          {"&H10000", 65536},
          {"1E3", 1000},
          {"True", -1},
          {2147483647.0, std::numeric_limits<int32_t>::max()},
          {2147483647.5, kOverflow},
          {-2147483648.5, std::numeric_limits<int32_t>::min()},
          {-2147483649.0, kOverflow},
          {3e9, kOverflow},
          {"3000000000", kOverflow},
          {"abc", kTypeMismatch},
          {"", kTypeMismatch},
          {"1,5", kTypeMismatch},
          {"12abc", kTypeMismatch},
          {Array({1}), kTypeMismatch},
      },
      [](const Variant& v) { return v.ToLong(); });
}

TEST(VariantConversionTest, ToIntegerRangeIs16Bit) {
  CheckTable<int16_t>(
      {
          {32767, 32767},
          {32768, kOverflow},
          {-32768, -32768},
          {-32769, kOverflow},
          {32767.4, 32767},
          {32767.5, kOverflow},
          {-32768.5, -32768},
          {1.5, 2},
          {0.5, 0},
          {"-32768", -32768},
          {"32768", kOverflow},
          {"&H8000", -32768},
          {"x", kTypeMismatch},
          {kNull, kInvalidUseOfNull},
          {Variant(), 0},
      },
      [](const Variant& v) { return v.ToInteger(); });
}

TEST(VariantConversionTest, ToDouble) {
  CheckTable<double>(
      {
          {Variant(), 0},
          {true, -1},
          {int16_t{3}, 3},
          {2.5f, 2.5},
          {"1.5", 1.5},
          {" -17 ", -17},
          {"+4", 4},
          {"1E3", 1000},
          {"1D2", 100},
          {".5", 0.5},
          {MakeDate(1900, 1, 1, 12, 0, 0), 2.5},
          {"1,5", kTypeMismatch},
          {"1.5x", kTypeMismatch},
          {"-", kTypeMismatch},
          {"", kTypeMismatch},
          {"inf", kTypeMismatch},
          {kNull, kInvalidUseOfNull},
      },
      [](const Variant& v) { return v.ToDouble(); });
}

TEST(VariantConversionTest, ToSingleOverflow) {
  CheckTable<float>(
      {
          {1.5, 1.5f},
          {"0.25", 0.25f},
          {1e39, kOverflow},
          {-1e39, kOverflow},
      },
      [](const Variant& v) { return v.ToSingle(); });
}

TEST(VariantConversionTest, ToBooleanNonZeroIsTrue) {
  CheckTable<bool>(
      {
          {Variant(), false},
          {0, false},
          {int16_t{0}, false},
          {-1, true},
          {2, true},
          {0.5, true},
          {0.0f, false},
          {"True", true},
          {"FALSE", false},
          {"1", true},
          {"0", false},
          {"0.0", false},
          {"-2.5", true},
          {"yes", kTypeMismatch},
          {"", kTypeMismatch},
          {kNull, kInvalidUseOfNull},
          {Array({true}), kTypeMismatch},
      },
      [](const Variant& v) { return v.ToBoolean(); });
}

TEST(VariantConversionTest, IsNumeric) {
  CheckTable<bool>(
      {
          {Variant(), true},
          {kNull, false},
          {true, true},
          {1.5, true},
          {"1.5", true},
          {" 12 ", true},
          {"-1e3", true},
          {"&H1F", true},
          {"abc", false},
          {"", false},
          {"1.2.3", false},
          {"-", false},
          {".", false},
          {MakeDate(2024, 1, 1), false},
          {Array({1}), false},
          {nullptr, false},
      },
      [](const Variant& v) { return IsNumeric(v); });
}

TEST(VariantConversionTest, ToObjectAcceptsNothingAndRejectsValues) {
  auto object = std::make_shared<qv::testing::CallbackObject>();
  EXPECT_EQ(Variant(object).ToObject().get(), object.get());
  EXPECT_EQ(Variant(object).ToObjectAs<qv::testing::CallbackObject>(), object);
  EXPECT_EQ(Variant(nullptr).ToObject(), nullptr);
  EXPECT_TRUE(RaisesError([] { Variant(5).ToObject(); }, 13, "Type mismatch"));
  EXPECT_TRUE(RaisesError([] { Variant().ToObject(); }, 13, "Type mismatch"));
  EXPECT_TRUE(RaisesError([] { Variant(1).ToArray(); }, 13, "Type mismatch"));
}

TEST(VariantTypeTest, ConstructorsPickTheAutomationType) {
  // Overload resolution is easy to get wrong (a literal string must not
  // become a Boolean, an int must be a Long).
  const std::string lvalue = "lvalue";
  const std::vector<std::pair<Variant, VarType>> rows = {
      {Variant(), VarType::kEmpty},
      {kNull, VarType::kNull},
      {true, VarType::kBoolean},
      {int16_t{1}, VarType::kInteger},
      {1, VarType::kLong},
      {1.0f, VarType::kSingle},
      {1.0, VarType::kDouble},
      {Date{1}, VarType::kDate},
      {"literal", VarType::kString},
      {std::string("string"), VarType::kString},
      {lvalue, VarType::kString},
      {std::string_view("view"), VarType::kString},
      {nullptr, VarType::kObject},
      {Array({}), VarType::kArray},
  };
  for (const auto& [value, type] : rows) {
    SCOPED_TRACE(value.Describe());
    EXPECT_EQ(value.type(), type);
  }
  EXPECT_TRUE(Variant(nullptr).IsNothing());
  EXPECT_FALSE(Variant().IsNothing());
}

// Expected outcome of comparing a with b: -1, 0, 1, Null or an error.
struct CompareRow {
  Variant a, b;
  CompareMode mode;
  std::optional<int> expected;  // nullopt: Null
  std::optional<Raises> error = std::nullopt;
};
constexpr std::optional<int> kIsNull = std::nullopt;
constexpr CompareMode kBin = CompareMode::kBinary;
constexpr CompareMode kTxt = CompareMode::kText;

TEST(VariantCompareTest, AutomationEqualityAndOrder) {
  const std::vector<CompareRow> rows = {
      // numbers of any type compare by value
      {1, 1, kBin, 0},
      {int16_t{1}, 1.0, kBin, 0},
      {1, 2, kBin, -1},
      {2.5f, 2.5, kBin, 0},
      {true, -1, kBin, 0},
      {false, 0, kBin, 0},
      {MakeDate(1900, 1, 1), 2.0, kBin, 0},
      // Empty is 0 against numbers and "" against strings
      {Variant(), 0, kBin, 0},
      {Variant(), 1, kBin, -1},
      {-1, Variant(), kBin, -1},
      {Variant(), "", kBin, 0},
      {Variant(), "a", kBin, -1},
      {"a", Variant(), kBin, 1},
      {Variant(), Variant(), kBin, 0},
      // Null makes every comparison Null
      {kNull, kNull, kBin, kIsNull},
      {1, kNull, kBin, kIsNull},
      {kNull, "a", kBin, kIsNull},
      {Variant(), kNull, kBin, kIsNull},
      // a number against a numeric string compares as numbers
      {1, "1", kBin, 0},
      {1, "1.0", kBin, 0},
      {1.5, " 1.5 ", kBin, 0},
      {2, "10", kBin, -1},
      {"10", 2, kBin, 1},
      {255, "&HFF", kBin, 0},
      // ... and is less than any other string
      {1, "abc", kBin, -1},
      {"abc", 1, kBin, 1},
      {1000, "", kBin, -1},
      // strings compare as text, binary or without regard to case
      {"10", "2", kBin, -1},
      {"abc", "ABC", kBin, 1},
      {"abc", "ABC", kTxt, 0},
      {"Apfel", "apfelbaum", kTxt, -1},
      {"b", "A", kTxt, 1},
      // arrays cannot be compared
      {Array({1}), Array({1}), kBin, 0, kTypeMismatch},
      {Array({1}), 1, kBin, 0, kTypeMismatch},
  };
  for (const CompareRow& row : rows) {
    SCOPED_TRACE(row.a.Describe() + " vs " + row.b.Describe() +
                 (row.mode == kTxt ? " (text)" : " (binary)"));
    if (row.error) {
      EXPECT_TRUE(RaisesError([&] { Compare(row.a, row.b, row.mode); },
                              row.error->number, row.error->text));
      EXPECT_TRUE(RaisesError([&] { Equal(row.a, row.b, row.mode); },
                              row.error->number, row.error->text));
      continue;
    }
    EXPECT_EQ(Compare(row.a, row.b, row.mode), row.expected);
    const std::optional<bool> equal =
        row.expected ? std::optional<bool>(*row.expected == 0) : std::nullopt;
    EXPECT_EQ(Equal(row.a, row.b, row.mode), equal);
  }
}

TEST(VariantCompareTest, IdentityIsNotAutomationEquality) {
  EXPECT_FALSE(Variant(int16_t{1}) == Variant(1));
  EXPECT_EQ(Equal(int16_t{1}, 1), true);
  EXPECT_FALSE(Variant("1") == Variant(1));
  EXPECT_TRUE(Variant("a") == Variant(std::string("a")));
  EXPECT_TRUE(Variant() == Variant());
  EXPECT_TRUE(Variant(kNull) == Variant(kNull));
  EXPECT_FALSE(Variant() == Variant(kNull));
  EXPECT_TRUE(Array({1, "x"}) == Array({1, "x"}));
  EXPECT_FALSE(Array({1, "x"}) == Array({1, "y"}));
  EXPECT_FALSE(Variant(SafeArray({1}, 0)) == Variant(SafeArray({1}, 1)));
  auto object = std::make_shared<qv::testing::CallbackObject>();
  auto other = std::make_shared<qv::testing::CallbackObject>();
  EXPECT_TRUE(Variant(object) == Variant(object));
  EXPECT_FALSE(Variant(object) == Variant(other));
}

TEST(VariantValueTest, CopyingCopiesTheArrayAndAnElementMayReplaceItsArray) {
  Variant original = Array({1, Array({"inner"})});
  Variant copy = original;
  copy.ToArray()[0] = 99;
  copy.ToArray()[1].ToArray()[0] = "changed";
  EXPECT_EQ(original.ToArray()[0], Variant(1));
  EXPECT_EQ(original.ToArray()[1].ToArray()[0], Variant("inner"));

  Variant assigned;
  assigned = original;
  assigned.ToArray().Append(3);
  EXPECT_EQ(original.ToArray().size(), 2u);
  EXPECT_EQ(assigned.ToArray().size(), 3u);

  // Assigning an element of its own array: the element lives inside the array
  // that the assignment replaces.
  Variant v = Array({12345, "a string long enough to live on the heap"});
  v = v.ToArray()[0];
  EXPECT_EQ(v, Variant(12345));

  Variant w = Array({Array({"nested"}), 2});
  w = w.ToArray()[0];
  EXPECT_EQ(w, Array({"nested"}));

  Variant m = Array({"moved out of the array that held it, long text"});
  m = std::move(m.ToArray()[0]);
  EXPECT_EQ(m, Variant("moved out of the array that held it, long text"));
}

TEST(VariantValueTest, AssigningOverAStringOrNumberTakesTheNewValueAndType) {
  const Variant long_text("a text too long for the string's own buffer");
  const Variant cases[] = {long_text, Variant("short"), Variant(int16_t{7}),
                           Array({"x"}), Variant(kNull)};
  for (const Variant& source : cases) {
    SCOPED_TRACE(source.Describe());
    for (Variant target : {long_text, Variant(3.5)}) {
      target = source;
      EXPECT_EQ(target, source);
    }
  }
  Variant text(1);
  for (const char* next : {"first text, long enough for the heap", "", "b"}) {
    text.AssignText(next);
    EXPECT_EQ(text, Variant(next));
  }
  Variant array = Array({"was an array"});
  array.AssignText("now text");
  EXPECT_EQ(array, Variant("now text"));
}

}  // namespace
}  // namespace qv
