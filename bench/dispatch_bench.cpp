// Dispatch by name against the direct C++ call of the same member.
//
// A small class turns key codes into send-keys strings, the kind of member a
// host calls by name many times while it builds a toolbar. Both loops decode
// the same sequence of key codes; the direct loop calls the member function,
// the dispatch loops go through Object::Invoke with a variant argument and a
// variant result. After the runs the program prints the ratio of the times
// per call of Invoke by name and of the direct call.
#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "bench_ratio.h"
#include "com/dispatch.h"
#include "com/object.h"
#include "com/variant.h"

namespace {

class KeyNames : public qv::Dispatchable<KeyNames> {
 public:
  // The send-keys form of a virtual key code ("{F11}", "{LEFT}", "a").
  std::string KeyCodeToString(int16_t key) const;

  std::string m_sCaption = "Keys";
  bool m_bEnabled = true;
  bool m_bVisible = true;
  int32_t m_lTag = 0;
  qv::Variant m_vUser;

  static qv::ClassInfo BuildClassInfo();
};

std::string KeyNames::KeyCodeToString(int16_t key) const {
  if (key >= 112 && key <= 123) return "{F" + std::to_string(key - 111) + "}";
  if (key >= 'A' && key <= 'Z')
    return std::string(1, static_cast<char>(key + 32));
  if (key >= '0' && key <= '9') return std::string(1, static_cast<char>(key));
  switch (key) {
    case 8:
      return "{BS}";
    case 9:
      return "{TAB}";
    case 13:
      return "{ENTER}";
    case 27:
      return "{ESC}";
    case 33:
      return "{PGUP}";
    case 34:
      return "{PGDN}";
    case 35:
      return "{END}";
    case 36:
      return "{HOME}";
    case 37:
      return "{LEFT}";
    case 38:
      return "{UP}";
    case 39:
      return "{RIGHT}";
    case 40:
      return "{DOWN}";
    case 45:
      return "{INSERT}";
    case 46:
      return "{DEL}";
    default:
      return "";
  }
}

// A dozen members around the one measured, as in a real interface.
qv::ClassInfo KeyNames::BuildClassInfo() {
  using K = KeyNames;
  return qv::ClassBuilder<K>("KeyNames")
      .Field("Caption", &K::m_sCaption)
      .Field("Enabled", &K::m_bEnabled)
      .Field("Visible", &K::m_bVisible)
      .Field("Tag", &K::m_lTag)
      .Method("Refresh", [](K&) {})
      .Method("KeyCodeToString", &K::KeyCodeToString)
      .Method("Count", [](K&) { return int32_t{0}; })
      .Field("UserData", &K::m_vUser)
      .Method("Reset", [](K& k) { k.m_lTag = 0; })
      .Method("Describe",
              [](K& k, int32_t n) { return k.m_sCaption + std::to_string(n); })
      .Build();
}

// The same key codes for every loop: function keys, arrows, letters, digits.
constexpr std::array<int16_t, 16> kCodes = {122, 37, 65,  13, 112, 40, 90, 48,
                                            27,  46, 123, 9,  38,  77, 36, 57};

void BM_Direct(benchmark::State& state) {
  auto names = std::make_shared<KeyNames>();
  size_t i = 0;
  for (auto _ : state) {
    int16_t code = kCodes[i++ % kCodes.size()];
    benchmark::DoNotOptimize(code);
    std::string result = names->KeyCodeToString(code);
    benchmark::DoNotOptimize(result);
  }
}
BENCHMARK(BM_Direct)->Apply(qv::bench::FixedIterationsFromEnv);

void BM_InvokeByName(benchmark::State& state) {
  qv::ObjectPtr names = std::make_shared<KeyNames>();
  size_t i = 0;
  for (auto _ : state) {
    int16_t code = kCodes[i++ % kCodes.size()];
    benchmark::DoNotOptimize(code);
    qv::Variant args[] = {code};
    qv::Variant result =
        names->Invoke("KeyCodeToString", qv::InvokeKind::kMethod, args);
    benchmark::DoNotOptimize(result);
  }
}
BENCHMARK(BM_InvokeByName)->Apply(qv::bench::FixedIterationsFromEnv);

void BM_InvokeById(benchmark::State& state) {
  qv::ObjectPtr names = std::make_shared<KeyNames>();
  const int32_t id = names->GetClassInfo().Find("KeyCodeToString")->id;
  size_t i = 0;
  for (auto _ : state) {
    int16_t code = kCodes[i++ % kCodes.size()];
    benchmark::DoNotOptimize(code);
    qv::Variant args[] = {code};
    qv::Variant result = names->InvokeById(id, qv::InvokeKind::kMethod, args);
    benchmark::DoNotOptimize(result);
  }
}
BENCHMARK(BM_InvokeById);

}  // namespace

int main(int argc, char** argv) {
  return qv::bench::RunWithRatio(argc, argv, "BM_InvokeByName", "BM_Direct",
                                 "Invoke/direct", 5);
}
