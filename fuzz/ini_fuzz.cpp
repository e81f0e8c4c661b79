// Fuzzes the INI parser and editor with arbitrary file contents. Beyond not
// crashing, every input must keep the promises writes rely on: decoding and
// encoding a file gives back its exact bytes, a written key reads back with
// its value from the re-read file, and a deleted key no longer reads.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "com/text.h"
#include "fuzz_input.h"
#include "platform/internal/profile_document.h"

namespace {

using qv::fuzz::Require;
using qv::platform::internal::ProfileDocument;
using qv::platform::internal::ProfileSectionView;

// The value of `key` in `section` as a fresh reader sees the bytes, or
// nullptr.
const std::string* Lookup(const std::vector<ProfileSectionView>& sections,
                          std::string_view section, std::string_view key) {
  for (const ProfileSectionView& s : sections) {
    if (!qv::text::EqualsText(s.name, section)) continue;
    for (const auto& [k, v] : s.keys) {
      if (qv::text::EqualsText(k, key)) return &v;
    }
    return nullptr;  // only the first section of a name is read
  }
  return nullptr;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view bytes = qv::fuzz::AsText(data, size);
  ProfileDocument doc = ProfileDocument::FromBytes(std::string(bytes));
  Require(doc.ToBytes() == bytes, "decoding and encoding keep the bytes");
  const std::vector<ProfileSectionView> sections = doc.Sections();

  // Write and delete a key whose section is the first section of the input
  // (when it has one), so that edits land in the middle of real content.
  const std::string section = sections.empty() ? "Fuzz" : sections[0].name;
  if (section.find_first_of("]\r\n") != std::string::npos) return 0;
  ProfileDocument written = doc;
  written.SetValue(section, "qvKey", "wert ä");
  const auto reread = ProfileDocument::FromBytes(written.ToBytes()).Sections();
  const std::string* value = Lookup(reread, section, "qvKey");
  Require(value != nullptr && *value == "wert ä", "a written key reads back");

  written.DeleteKey(section, "qvKey");
  Require(Lookup(ProfileDocument::FromBytes(written.ToBytes()).Sections(),
                 section, "qvKey") == nullptr,
          "a deleted key no longer reads");
  return 0;
}
