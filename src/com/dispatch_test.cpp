// Dispatch by name through a small class described with ClassBuilder, and the
// class factory that creates it by ProgID.
#include "com/dispatch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "com/class_factory.h"
#include "testing/callback_object.h"
#include "testing/expect_error.h"

namespace qv {
namespace {

using qv::testing::RaisesError;

constexpr char kNoMember[] = "Object doesn't support this property or method";
constexpr char kWrongCount[] =
    "Wrong number of arguments or invalid property assignment";

enum class Shade { kLight = 1, kDark = 2 };

class DispatchProbe : public Dispatchable<DispatchProbe> {
 public:
  std::string Join(const std::string& a, const std::string& b,
                   const std::string& sep) {
    return a + sep + b;
  }
  void Swap(std::string& a, std::string& b) { std::swap(a, b); }
  int32_t Bump(int32_t& n) { return ++n; }
  double Half(double d) const { return d / 2; }
  const std::string& Name() const { return name_; }
  void SetName(std::string name) { name_ = std::move(name); }
  std::shared_ptr<DispatchProbe> Partner() const { return partner_; }
  void SetPartner(std::shared_ptr<DispatchProbe> p) { partner_ = std::move(p); }
  [[noreturn]] void Fail() {
    throw Error(1234, "DispatchProbe.Fail", "failed on purpose");
  }

  int16_t m_nCount = 0;
  Variant m_vTag;
  std::shared_ptr<DispatchProbe> m_oChild;
  Shade shade = Shade::kLight;
  std::array<Variant, 3> slots;

  static ClassInfo BuildClassInfo();

 private:
  std::string name_ = "probe";
  std::shared_ptr<DispatchProbe> partner_;
};

ClassInfo DispatchProbe::BuildClassInfo() {
  using P = DispatchProbe;
  return ClassBuilder<P>("DispatchProbe")
      .Method("Join", &P::Join, {"-"})
      .Method("Swap", &P::Swap)
      .Method("Bump", &P::Bump, {10})
      .Method("Half", &P::Half)
      .Get("Name", &P::Name)
      .Let("Name", &P::SetName)
      .Get("Partner", &P::Partner)
      .Set("Partner", &P::SetPartner)
      .Method("Fail", &P::Fail)
      .Field("m_nCount", &P::m_nCount)
      .Field("m_vTag", &P::m_vTag)
      .Field("m_oChild", &P::m_oChild)
      .Field("Shade", &P::shade)
      .Get("Slot", [](P& p, int16_t i) { return p.slots.at(i); })
      .Let("Slot", [](P& p, int16_t i, Variant v) { p.slots.at(i) = v; })
      .Event("Changed", {"sName", "bCancel"})
      .Build();
}

QV_REGISTER_CLASS(DispatchProbe);

class DispatchTest : public ::testing::Test {
 protected:
  std::shared_ptr<DispatchProbe> probe_ = std::make_shared<DispatchProbe>();
  // Reached through the base class only, as a script host would.
  ObjectPtr object_ = probe_;
};

TEST_F(DispatchTest, NamesIgnoreCaseAndIdsFollowInterfaceOrder) {
  EXPECT_EQ(object_->Call("JOIN", {"a", "b", "+"}), Variant("a+b"));
  EXPECT_EQ(object_->Get("name"), Variant("probe"));
  object_->Let("NAME", "renamed");
  EXPECT_EQ(probe_->Name(), "renamed");
  EXPECT_EQ(object_->Get("M_NCOUNT"), Variant(int16_t{0}));
  const ClassInfo& info = object_->GetClassInfo();
  EXPECT_EQ(info.name(), "DispatchProbe");
  std::vector<std::string> names;
  for (const MemberInfo& m : info.members()) {
    names.push_back(m.name);
    EXPECT_EQ(m.id, static_cast<int32_t>(names.size()));
  }
  EXPECT_EQ(names,
            (std::vector<std::string>{"Join", "Swap", "Bump", "Half", "Name",
                                      "Partner", "Fail", "m_nCount", "m_vTag",
                                      "m_oChild", "Shade", "Slot"}));
  EXPECT_EQ(info.Find("name")->KindsText(), "get/let");
  EXPECT_EQ(info.Find("Partner")->KindsText(), "get/set");
  EXPECT_EQ(info.Find("m_vTag")->KindsText(), "get/let/set");
  EXPECT_EQ(info.Find("Swap")->KindsText(), "method");
  EXPECT_EQ(info.Find("Join")->method.param_types,
            (std::vector<std::string>{"String", "String", "String"}));
  EXPECT_EQ(info.Find("Swap")->method.param_types,
            (std::vector<std::string>{"String&", "String&"}));
  ASSERT_EQ(info.events().size(), 1u);
  EXPECT_EQ(info.events()[0].params,
            (std::vector<std::string>{"sName", "bCancel"}));

  Variant args[] = {3.0};
  EXPECT_EQ(object_->InvokeById(4, InvokeKind::kMethod, args), Variant(1.5));
  EXPECT_TRUE(
      RaisesError([&] { object_->InvokeById(0, InvokeKind::kMethod, {}); }, 438,
                  kNoMember));
  EXPECT_TRUE(RaisesError(
      [&] { object_->InvokeById(13, InvokeKind::kGet, {}); }, 438, kNoMember));
}

TEST(ClassInfoTest, FindsNamesOfEveryLengthInAnyCase) {
  ClassInfo info("Names");
  std::vector<std::string> names;
  for (size_t n = 1; n <= 40; ++n) {
    std::string name;
    for (size_t i = 0; i < n; ++i)
      name += static_cast<char>('a' + (i * 7) % 26);
    name[n / 2] = static_cast<char>(std::toupper(name[n / 2]));
    info.Upsert(name);
    names.push_back(name);
  }
  for (const std::string& name : names) {
    SCOPED_TRACE(name);
    std::string upper = name, lower = name;
    for (char& c : upper) c = static_cast<char>(std::toupper(c));
    for (char& c : lower) c = static_cast<char>(std::tolower(c));
    const MemberInfo* member = info.Find(name);
    ASSERT_NE(member, nullptr);
    EXPECT_EQ(member->name, name);
    EXPECT_EQ(info.Find(upper), member);
    EXPECT_EQ(info.Find(lower), member);
    // One changed byte, first or last, is another name.
    std::string first = lower, last = lower;
    first.front() = '_';
    last.back() = '_';
    EXPECT_EQ(info.Find(first), nullptr);
    EXPECT_EQ(info.Find(last), nullptr);
    EXPECT_EQ(info.Find(lower + "9"), nullptr);
  }
  EXPECT_EQ(info.members().size(), 40u);
  EXPECT_EQ(&info.Upsert("AB"), &info.Upsert("ab"));
}

TEST(ClassInfoTest, OnlyAsciiLettersFoldTheirCase) {
  ClassInfo info("Names");
  // Neighbours of the letter ranges differ from each other by the case bit.
  for (const char* name : {"a@b", "x[y]z", "Gr\u00f6\u00dfe", "tab\x7f"}) {
    info.Upsert(name);
  }
  EXPECT_EQ(info.Find("a`b"), nullptr);
  EXPECT_NE(info.Find("A@B"), nullptr);
  EXPECT_EQ(info.Find("x{y}z"), nullptr);
  EXPECT_NE(info.Find("X[Y]Z"), nullptr);
  EXPECT_NE(info.Find("GR\u00f6\u00dfE"), nullptr);
  EXPECT_EQ(info.Find("Gr\u00d6\u00dfe"), nullptr);
  EXPECT_EQ(info.Find("tab\x5f"), nullptr);
  EXPECT_EQ(info.Find(""), nullptr);
}

TEST_F(DispatchTest, ByReferenceArgumentsAreWrittenBackAndOmittedOnesDefault) {
  Variant swap[] = {"left", "right"};
  EXPECT_TRUE(object_->Invoke("Swap", InvokeKind::kMethod, swap).IsEmpty());
  EXPECT_EQ(swap[0], Variant("right"));
  EXPECT_EQ(swap[1], Variant("left"));

  // Written back in the parameter's type.
  Variant bump[] = {"41"};
  EXPECT_EQ(object_->Invoke("Bump", InvokeKind::kMethod, bump), Variant(42));
  EXPECT_EQ(bump[0], Variant(42));

  // By-value and const-reference parameters leave the arguments alone.
  Variant join[] = {int16_t{1}, 2.5, Variant()};
  EXPECT_EQ(object_->Invoke("Join", InvokeKind::kMethod, join),
            Variant("12.5"));
  EXPECT_EQ(join[0], Variant(int16_t{1}));
  EXPECT_EQ(join[1], Variant(2.5));
  EXPECT_TRUE(join[2].IsEmpty());
  EXPECT_EQ(object_->Call("Join", {"a", "b"}), Variant("a-b"));
  // A by-reference default is a fresh copy on every call.
  EXPECT_EQ(object_->Call("Bump"), Variant(11));
  EXPECT_EQ(object_->Call("Bump"), Variant(11));
  Variant given[] = {1};
  EXPECT_EQ(object_->Invoke("Bump", InvokeKind::kMethod, given), Variant(2));
}

TEST_F(DispatchTest, BadCallsRaiseTheirAutomationErrorAndChangeNothing) {
  struct Row {
    const char* what;
    std::function<void()> call;
    int32_t number;
    const char* text;
  };
  Variant two[] = {"a", "b"};
  const Row rows[] = {
      // unknown member, or a kind the member does not have
      {"unknown", [&] { object_->Call("Nope"); }, 438, kNoMember},
      {"empty name", [&] { object_->Get(""); }, 438, kNoMember},
      {"long name", [&] { object_->Call(std::string(200, 'x')); }, 438,
       kNoMember},
      {"let a method", [&] { object_->Let("Join", "x"); }, 438, kNoMember},
      {"set a let", [&] { object_->Set("Name", probe_); }, 438, kNoMember},
      {"let a set", [&] { object_->Let("Partner", 1); }, 438, kNoMember},
      {"let an object field", [&] { object_->Let("m_oChild", 1); }, 438,
       kNoMember},
      {"set a value field", [&] { object_->Set("m_nCount", probe_); }, 438,
       kNoMember},
      // argument counts
      {"too few", [&] { object_->Call("Join", {"a"}); }, 450, kWrongCount},
      {"too many",
       [&] {
         object_->Call("Join", {"a", "b", "c", "d"});
       },
       450, kWrongCount},
      {"none", [&] { object_->Call("Half"); }, 450, kWrongCount},
      {"get with index", [&] { object_->Get("Name", {1}); }, 450, kWrongCount},
      {"let with two", [&] { object_->Invoke("Name", InvokeKind::kLet, two); },
       450, kWrongCount},
      {"indexed without index", [&] { object_->Get("Slot"); }, 450,
       kWrongCount},
      // arguments converted by automation rules
      {"string to double", [&] { object_->Call("Half", {"abc"}); }, 13,
       "Type mismatch"},
      {"long overflow", [&] { object_->Call("Bump", {3e9}); }, 6, "Overflow"},
      {"integer overflow", [&] { object_->Let("m_nCount", 40000); }, 6,
       "Overflow"},
      {"null", [&] { object_->Call("Half", {kNull}); }, 94,
       "Invalid use of Null"},
  };
  for (const Row& row : rows) {
    EXPECT_TRUE(RaisesError(row.call, row.number, row.text)) << row.what;
  }
  EXPECT_EQ(probe_->Name(), "probe");
  EXPECT_EQ(probe_->m_nCount, 0);
}

TEST_F(DispatchTest, GetAndMethodAreInterchangeableAndConvertArguments) {
  Variant three[] = {3};
  EXPECT_EQ(object_->Invoke("Half", InvokeKind::kGet, three), Variant(1.5));
  EXPECT_EQ(object_->Call("Name"), Variant("probe"));
  EXPECT_EQ(object_->Call("m_nCount"), Variant(int16_t{0}));
  EXPECT_EQ(object_->Call("Half", {"5"}), Variant(2.5));
  EXPECT_EQ(object_->Call("Half", {true}), Variant(-0.5));
}

TEST_F(DispatchTest, ObjectParametersCheckTheClass) {
  auto other = std::make_shared<DispatchProbe>();
  object_->Set("Partner", other);
  EXPECT_EQ(probe_->Partner(), other);
  EXPECT_EQ(object_->Get("Partner").ToObject(), other);
  object_->Set("Partner", nullptr);
  EXPECT_TRUE(object_->Get("Partner").IsNothing());

  auto stranger = std::make_shared<qv::testing::CallbackObject>();
  EXPECT_TRUE(RaisesError([&] { object_->Set("Partner", stranger); }, 13,
                          "Type mismatch"));
  EXPECT_TRUE(RaisesError(
      [&] {
        Variant args[] = {"not an object"};
        object_->Invoke("Partner", InvokeKind::kSet, args);
      },
      13, "Type mismatch"));
}

TEST_F(DispatchTest, FieldsGetLetAndSet) {
  object_->Let("m_nCount", "7");
  EXPECT_EQ(probe_->m_nCount, 7);
  EXPECT_EQ(object_->Get("m_nCount"), Variant(int16_t{7}));

  object_->Let("m_vTag", SafeArray({1, 2}));
  EXPECT_EQ(probe_->m_vTag, Variant(SafeArray({1, 2})));
  object_->Set("m_vTag", probe_);
  EXPECT_EQ(object_->Get("m_vTag").ToObject(), probe_);
  probe_->m_vTag = Variant();  // break the cycle

  auto child = std::make_shared<DispatchProbe>();
  object_->Set("m_oChild", child);
  EXPECT_EQ(probe_->m_oChild, child);
  EXPECT_EQ(object_->Get("m_oChild").ToObject(), child);

  object_->Let("Shade", 2);
  EXPECT_EQ(probe_->shade, Shade::kDark);
  EXPECT_EQ(object_->Get("Shade"), Variant(2));
}

TEST_F(DispatchTest, IndexedPropertyTakesTheNewValueLastAndErrorsPassThrough) {
  Variant let[] = {int16_t{1}, "one"};
  object_->Invoke("Slot", InvokeKind::kLet, let);
  EXPECT_EQ(probe_->slots[1], Variant("one"));
  EXPECT_EQ(object_->Get("Slot", {1}), Variant("one"));
  EXPECT_TRUE(RaisesError([&] { object_->Call("Fail"); }, 1234,
                          "failed on purpose", "DispatchProbe.Fail"));
}

TEST(ClassFactoryTest, CreatesRegisteredClassesByProgIdOrRaises429) {
  ObjectPtr first = CreateObject("qvglobal10.DispatchProbe");
  ASSERT_NE(std::dynamic_pointer_cast<DispatchProbe>(first), nullptr);
  ObjectPtr second = CreateObject("QVGLOBAL10.dispatchprobe");
  ASSERT_NE(std::dynamic_pointer_cast<DispatchProbe>(second), nullptr);
  EXPECT_NE(first, second);
  EXPECT_EQ(first->Get("Name"), Variant("probe"));
  EXPECT_NE(CreateObjectAs<DispatchProbe>("qvglobal10.DispatchProbe"), nullptr);
  for (const char* progid :
       {"qvglobal10.NoSuchClass", "DispatchProbe", "", "qvglobal10."}) {
    SCOPED_TRACE(progid);
    EXPECT_TRUE(RaisesError([&] { CreateObject(progid); }, 429,
                            "ActiveX component can't create object"));
  }
  EXPECT_EQ(FindClass("qvglobal10.NoSuchClass"), nullptr);
}

TEST(ClassFactoryTest, RegisteredClassesListTheirMembersInOrder) {
  const std::vector<ClassRegistration> all = RegisteredClasses();
  auto it = std::find_if(all.begin(), all.end(), [](const auto& r) {
    return r.progid == "qvglobal10.DispatchProbe";
  });
  ASSERT_NE(it, all.end());
  EXPECT_EQ(it->info, &DispatchProbe::StaticClassInfo());
  EXPECT_TRUE(
      std::is_sorted(all.begin(), all.end(), [](const auto& a, const auto& b) {
        return text::LCase(a.progid) < text::LCase(b.progid);
      }));
  const ClassRegistration* found = FindClass("qvglobal10.dispatchPROBE");
  ASSERT_NE(found, nullptr);
  EXPECT_EQ(found->progid, "qvglobal10.DispatchProbe");
}

}  // namespace
}  // namespace qv
