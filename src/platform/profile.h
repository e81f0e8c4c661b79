// Profile reads and writes the suite's INI files ("private profiles") with
// the observable behaviour of the Windows profile functions, which the
// suite's programs on Windows use on the same files:
//
// - Sections and keys are found without regard to letter case; the first
//   matching section and, inside it, the first matching key count. Blanks
//   around names and values are ignored and one pair of double quotes around
//   a whole value is removed; a ";" is an ordinary character. CR LF, LF and
//   CR line ends read the same. A file that is valid UTF-8 is read as UTF-8,
//   any other as Windows-1252.
// - GetString returns at most buffer_size - 1 characters; a missing file,
//   section or key gives the default without its trailing blanks, a key
//   written as "key=" gives "".
// - GetInt reads optional blanks and a sign, then the leading decimal
//   digits, computed in 32 bits with wrap-around ("42A9" is 42, "B42" is 0);
//   only a missing key gives the default.
// - WriteString replaces a key's line, or adds the key after the last
//   non-blank line of its section, or adds the section at the end of the
//   file; every other byte of the file is kept. A new file gets CR LF line
//   ends, an existing one keeps its own. A key of null deletes the whole
//   section (every section of that name), a value of null deletes the key;
//   deleting what does not exist succeeds and changes nothing (a missing
//   file is not created). A Windows-1252 file that cannot hold a new
//   character is rewritten as UTF-8 with the same meaning.
//
// Where this does better than the Windows functions:
// - Every write builds the complete new file beside the old one, flushes it
//   to disk and renames it over the old one, keeping the file's permission
//   bits: a crash leaves the old file or the new one, never a cut one.
//   The temporary file a killed writer leaves ("<file>.qvtmp-...") is
//   removed by the first write of a later process once it is ten minutes
//   old.
// - A writer holds an advisory lock (flock) on the file for its whole
//   read-change-write, so concurrent writers in any number of processes
//   never lose each other's keys. The lock goes with the process that holds
//   it, so a killed writer blocks nobody.
// - A parsed file is cached per path and used again while the file has the
//   same device, inode, size and modification and change times (to the
//   nanosecond); a file changed in the last two seconds is always read
//   again, because a change within the file system's timestamp granularity
//   may leave all of these equal.
//
// Writes fail (false) and change nothing when the folder does not exist,
// the file or folder may not be written, or a name or value holds a line
// break (it would change the file's structure), a section name holds "]"
// or a key name holds "=" or is blank. Reads never fail: an unreadable file
// reads as a missing one.
//
// Paths may use "\" as separator, as paths written on Windows do.
//
// Threads: every function may be called from any thread; the cache is
// shared by the process and guarded by a mutex.
#ifndef QVGLOBAL_PLATFORM_PROFILE_H_
#define QVGLOBAL_PLATFORM_PROFILE_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qv::platform {

// One section as it reads: its name as written and its keys in file order
// with the values GetString would return (a later duplicate is not read).
struct ProfileSection {
  std::string name;
  std::vector<std::pair<std::string, std::string>> keys;
};

class Profile {
 public:
  // The buffer size the suite reads strings with.
  static constexpr size_t kBufferSize = 1024;

  static std::string GetString(std::string_view file, std::string_view section,
                               std::string_view key,
                               std::string_view default_value,
                               size_t buffer_size = kBufferSize);
  static int32_t GetInt(std::string_view file, std::string_view section,
                        std::string_view key, int32_t default_value);
  // Writes, or deletes with a null key or value. True on success.
  static bool WriteString(std::string_view file, std::string_view section,
                          std::optional<std::string_view> key,
                          std::optional<std::string_view> value);

  // Every section of the file as it reads; nothing when the file cannot be
  // read.
  static std::optional<std::vector<ProfileSection>> ReadSections(
      std::string_view file);

  // Empties the cache of parsed files (the next read of every file reads it
  // again).
  static void ClearCache();
};

}  // namespace qv::platform

#endif  // QVGLOBAL_PLATFORM_PROFILE_H_
