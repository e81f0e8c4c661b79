// INI reads and writes against the least any program must do for the same.
//
// The file holds 10,000 keys in 100 sections. GetString of a key in the
// unchanged file is compared with a stat of the file (which any cache must
// do to see changes) plus an unordered_map lookup of the key. WriteString
// of one key is compared with writing the same bytes to a temporary file,
// flushing it to disk (fsync, as the library does), renaming it over the
// file and flushing the folder: the same durable replacement, without
// reading, locking or editing.
// The program prints both ratios.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <unordered_map>
#include <vector>

#include "bench_ratio.h"
#include "platform/profile.h"
#include "testing/temp_dir.h"

namespace {

using qv::platform::Profile;

constexpr int kSections = 100;
constexpr int kKeysPerSection = 100;

std::string SectionName(int s) { return "Section " + std::to_string(s); }
std::string KeyName(int s, int k) {
  return "Key" + std::to_string(s * kKeysPerSection + k);
}

struct Files {
  qv::testing::TempDir dir;
  std::string read_file = dir.File("read.ini");
  std::string write_file = dir.File("write.ini");
  // What the baseline looks up: "section\nkey" -> value.
  std::unordered_map<std::string, std::string> map;
  // The keys looked up, spread over the file.
  std::vector<std::pair<std::string, std::string>> probes;

  Files() {
    std::string text;
    for (int s = 0; s < kSections; ++s) {
      text += "[" + SectionName(s) + "]\r\n";
      for (int k = 0; k < kKeysPerSection; ++k) {
        const std::string value = "value of key " + std::to_string(k) +
                                  " in section " + std::to_string(s);
        text += KeyName(s, k) + "=" + value + "\r\n";
        map.emplace(SectionName(s) + "\n" + KeyName(s, k), value);
      }
    }
    std::ofstream(read_file, std::ios::binary) << text;
    std::ofstream(write_file, std::ios::binary) << text;
    for (int i = 0; i < 64; ++i) {
      const int s = (i * 37) % kSections, k = (i * 53) % kKeysPerSection;
      probes.emplace_back(SectionName(s), KeyName(s, k));
    }
    // A file changed in the last two seconds is read again on every read;
    // the read benchmark measures an unchanged file.
    std::this_thread::sleep_for(std::chrono::milliseconds(2100));
  }
};

Files& TheFiles() {
  static Files files;
  return files;
}

void BM_GetString(benchmark::State& state) {
  Files& f = TheFiles();
  size_t i = 0;
  for (auto _ : state) {
    const auto& [section, key] = f.probes[i++ % f.probes.size()];
    benchmark::DoNotOptimize(Profile::GetString(f.read_file, section, key, ""));
  }
}
BENCHMARK(BM_GetString)->Unit(benchmark::kNanosecond);

void BM_StatAndMapLookup(benchmark::State& state) {
  Files& f = TheFiles();
  size_t i = 0;
  for (auto _ : state) {
    const auto& [section, key] = f.probes[i++ % f.probes.size()];
    struct stat st {};
    benchmark::DoNotOptimize(::stat(f.read_file.c_str(), &st));
    const auto it = f.map.find(section + "\n" + key);
    benchmark::DoNotOptimize(std::string(it->second));
  }
}
BENCHMARK(BM_StatAndMapLookup)->Unit(benchmark::kNanosecond);

void BM_WriteString(benchmark::State& state) {
  Files& f = TheFiles();
  size_t i = 0;
  for (auto _ : state) {
    const auto& [section, key] = f.probes[i % f.probes.size()];
    if (!Profile::WriteString(f.write_file, section, key,
                              "written " + std::to_string(i++))) {
      state.SkipWithError("write failed");
    }
  }
}
BENCHMARK(BM_WriteString)->Unit(benchmark::kMicrosecond);

void BM_WriteBytesAndRename(benchmark::State& state) {
  Files& f = TheFiles();
  std::ifstream in(f.write_file, std::ios::binary);
  std::stringstream s;
  s << in.rdbuf();
  const std::string bytes = s.str();
  const std::string temporary = f.write_file + ".raw";
  for (auto _ : state) {
    const int fd =
        ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    const bool ok = fd >= 0 &&
                    ::write(fd, bytes.data(), bytes.size()) ==
                        static_cast<ssize_t>(bytes.size()) &&
                    ::fsync(fd) == 0;
    if (fd >= 0) ::close(fd);
    if (!ok || ::rename(temporary.c_str(), f.write_file.c_str()) != 0) {
      state.SkipWithError("raw write failed");
    }
    const int folder = ::open(f.dir.path().c_str(), O_RDONLY | O_DIRECTORY);
    if (folder >= 0) {
      ::fsync(folder);
      ::close(folder);
    }
  }
}
BENCHMARK(BM_WriteBytesAndRename)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
  return qv::bench::RunWithRatios(
      argc, argv,
      {{"BM_GetString", "BM_StatAndMapLookup", "GetString/stat+map", 2},
       {"BM_WriteString", "BM_WriteBytesAndRename", "WriteString/write+rename",
        2}});
}
