// What the settings cost: loading, merging, converting and saving.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "platform/bundle.h"
#include "platform/property_list.h"
#include "platform/property_list_io.h"
#include "settings/driver_record.h"
#include "settings/settings_store.h"

namespace {

using namespace veltrix;  // NOLINT(google-build-using-namespace)

constexpr int kManyEntries = 10000;

// A folder on the disk of the home folder, not in a memory file system, because saving is about the disk.
class Folder {
 public:
  Folder() {
    std::string name = std::filesystem::current_path() / "settings_bench.XXXXXX";
    if (mkdtemp(name.data()) == nullptr) {
      std::abort();
    }
    fPath = name;
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  ~Folder() { std::filesystem::remove_all(fPath); }
  std::string file(const char* name) const { return fPath / name; }

 private:
  std::filesystem::path fPath;
};

std::string factorySettings() {
  return Bundle::standard().pathForResource("DefaultSettings", "plist");
}

SettingsEnvironment environment(const Folder& folder, std::string defaults) {
  SettingsEnvironment result;
  result.settingsPath = folder.file("settings.plist");
  result.defaultsPath = std::move(defaults);
  return result;
}

void writeFile(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

// A document with entries for `count` products from `firstProduct` on, each like the factory's first one.
std::string manyEntries(int count, int firstProduct) {
  const plist::Dictionary factory = plist::readFile(factorySettings()).value().root.asDictionary();
  const plist::Dictionary sample = factory.arrayFor("devices").at(0).asDictionary();
  const plist::Array devices = plist::Array::create();
  for (int i = 0; i < count; ++i) {
    plist::Dictionary entry = plist::Dictionary::create();
    for (const std::string& key : sample.keys()) {
      entry.set(key, sample.get(key));
    }
    entry.set("device product id", firstProduct + i);
    plist::Array(devices).append(entry);
  }
  plist::Dictionary document = plist::Dictionary::create();
  document.set("version", 2);
  document.set("devices", devices);
  return plist::writeBinary(document).value();
}

void BM_LoadAndMergeFactoryDocument(benchmark::State& state) {
  const Folder folder;
  std::filesystem::copy_file(factorySettings(), folder.file("settings.plist"));
  SettingsStore store(environment(folder, factorySettings()));
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(store.newVTXPrefsFromFile());
  }
}
BENCHMARK(BM_LoadAndMergeFactoryDocument)->Unit(benchmark::kMicrosecond);

// Reading both documents is part of it; every second factory entry is new to the user's document.
void BM_LoadAndMerge10000Into10000(benchmark::State& state) {
  const Folder folder;
  writeFile(folder.file("settings.plist"), manyEntries(kManyEntries, 1));
  writeFile(folder.file("defaults.plist"), manyEntries(kManyEntries, 1 + kManyEntries / 2));
  SettingsStore store(environment(folder, folder.file("defaults.plist")));
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(store.newVTXPrefsFromFile());
  }
}
BENCHMARK(BM_LoadAndMerge10000Into10000)->Unit(benchmark::kMillisecond);

void BM_RecordConversion(benchmark::State& state) {
  const plist::Dictionary factory = plist::readFile(factorySettings()).value().root.asDictionary();
  const plist::Dictionary entry = factory.arrayFor("devices").at(0).asDictionary();
  DriverRecord record;
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(VeltrixAppPrefsDictToStruct(entry, {}, &record));
    benchmark::DoNotOptimize(record);
  }
}
BENCHMARK(BM_RecordConversion)->Unit(benchmark::kNanosecond);

void BM_Save(benchmark::State& state) {
  const Folder folder;
  const plist::Dictionary document = plist::readFile(factorySettings()).value().root.asDictionary();
  SettingsStore store(environment(folder, factorySettings()));
  while (state.KeepRunning()) {
    if (!store.vtxSavePrefsToFile(document)) {
      state.SkipWithError("the settings could not be saved");
      break;
    }
  }
}
BENCHMARK(BM_Save)->Unit(benchmark::kMicrosecond)->UseRealTime();

// The least that a durable replacement of the same bytes can be.
void BM_BareWriteSyncRename(benchmark::State& state) {
  const Folder folder;
  const plist::Dictionary document = plist::readFile(factorySettings()).value().root.asDictionary();
  const std::string bytes = plist::writeXml(document).value();
  const std::string temporary = folder.file("temporary");
  const std::string target = folder.file("settings.plist");
  while (state.KeepRunning()) {
    const int fd = open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    const bool good = write(fd, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()) &&
                      fdatasync(fd) == 0 && close(fd) == 0 && rename(temporary.c_str(), target.c_str()) == 0;
    if (!good) {
      state.SkipWithError("the bare write failed");
      break;
    }
  }
}
BENCHMARK(BM_BareWriteSyncRename)->Unit(benchmark::kMicrosecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
