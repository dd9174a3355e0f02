#include "fuzz/pane_surroundings.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>

#include "fuzz/spoiled_list.h"
#include "helperlink/device_kinds.h"
#include "platform/property_list_io.h"
#include "settings/deep_copy.h"

using veltrix::plist::Array;
using veltrix::plist::Dictionary;
using veltrix::plist::Value;

void require(bool holds) {
  if (!holds) {
    std::abort();
  }
}

namespace {

constexpr int kMostChanges = 12;

// One folder for the whole process, in memory where the system has such a place.
class Folder {
 public:
  Folder() {
    const std::string parent = std::filesystem::exists("/dev/shm") ? "/dev/shm" : "/tmp";
    fPath = parent + "/veltrix-fuzz-XXXXXX";
    require(mkdtemp(fPath.data()) != nullptr);
    std::filesystem::create_directory(bundle());
  }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(fPath, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  std::string home() const { return fPath; }
  std::string bundle() const { return fPath + "/bundle"; }
  std::string settings() const { return fPath + "/settings.plist"; }
  std::string factory() const { return bundle() + "/DefaultSettings.plist"; }
  std::string tree() const { return bundle() + "/Assignments.plist"; }

 private:
  std::string fPath;
};

Folder& folder() {
  static Folder theFolder;
  return theFolder;
}

Value shipped(const char* name) {
  const auto file = veltrix::plist::readFile(std::string(VELTRIX_BUNDLE_FOLDER "/") + name);
  require(file.ok());
  return file.value().root;
}

// As XML where it can be; the binary form carries more. What neither takes is no property list at all.
void writeList(const std::string& path, const Value& list, bool asXml) {
  const auto xml = asXml ? veltrix::plist::writeXml(list) : veltrix::plist::writeBinary(list);
  const auto written = xml ? xml : veltrix::plist::writeBinary(list);
  std::ofstream(path, std::ios::binary | std::ios::trunc) << (written ? written.value() : "none");
}

template <typename Container>
Container spoiled(const Container& list, ByteSource* bytes) {
  const auto copy = veltrix::mutableDeepAutoreleasedCopy(list);
  for (std::size_t left = bytes->below(kMostChanges); left > 0; --left) {
    spoil(copy, bytes);
  }
  return copy;
}

template <typename Container>
Container firstOf(const Container& first, const Container& second) {
  return first ? first : second;
}

// What a former run wrote goes, also what was kept aside.
void clearHome() {
  for (const auto& entry : std::filesystem::directory_iterator(folder().home())) {
    if (entry.path() != folder().bundle()) {
      std::filesystem::remove_all(entry.path());
    }
  }
}

}  // namespace

void writePaneFiles(const Dictionary& input, ByteSource* bytes) {
  static const Dictionary kSettings = shipped("DefaultSettings.plist").asDictionary();
  static const Array kTree = shipped("Assignments.plist").asArray();
  clearHome();
  const unsigned forms = bytes->byte();
  const auto settings = spoiled(firstOf(input.dictionaryFor("settings"), kSettings), bytes);
  const auto factory = spoiled(firstOf(input.dictionaryFor("factory"), kSettings), bytes);
  const auto tree = spoiled(firstOf(input.arrayFor("tree"), kTree), bytes);
  writeList(folder().factory(), factory, (forms & 1U) != 0);
  writeList(folder().tree(), tree, (forms & 2U) != 0);
  if ((forms & 4U) == 0) {
    writeList(folder().settings(), settings, (forms & 8U) != 0);
  }
}

std::string paneHome() {
  return folder().home();
}
std::string paneBundle() {
  return folder().bundle();
}
std::string paneSettingsFile() {
  return folder().settings();
}

VeltrixDeviceList chooseDevices(ByteSource* bytes) {
  VeltrixDeviceList list{};
  const unsigned choice = bytes->byte();
  list.helperState = (choice & 1U) != 0 ? kVeltrixHelperStateAccessibility : 0;
  list.count = static_cast<std::uint16_t>(1U + (choice >> 1U) % 3U);
  for (std::size_t i = 0; i < list.count; ++i) {
    constexpr std::array<std::uint16_t, 4> kVersions = {0x0100, 0x0106, 0x0107, 0xFFFF};
    VeltrixDeviceEntry& device = list.device[i];
    device.vendorID = veltrix::kFamilyVendorId;
    const std::size_t kind = bytes->below(veltrix::kDeviceKindCount + 1);
    device.productID =
        kind < veltrix::kDeviceKindCount ? veltrix::kDeviceKinds[kind].productId : bytes->word();
    device.productVers = kVersions[bytes->below(kVersions.size())];
  }
  return list;
}

veltrix::PaneServices makePaneServices(const VeltrixDeviceList* devices, std::uint32_t systemVersion) {
  veltrix::PaneServices services;
  services.settings.settingsPath = folder().settings();
  services.settings.defaultsPath = folder().factory();
  services.settings.sendMessageToHelper = [](std::uint32_t) { return 0; };
  services.findHelper = [] { return std::int16_t{0}; };
  services.launchApplication = [](const std::string&) {};
  services.addLoginItem = [](const std::string&) {};
  services.getConnectedDevices = [devices](VeltrixDeviceList* list) {
    *list = *devices;
    return 0;
  };
  services.sendMessageToHelper = [](std::uint32_t) { return 0; };
  services.systemVersion = [systemVersion] { return systemVersion; };
  services.openUrl = [](const std::string&) {};
  services.openFile = [](const std::string&) {};
  services.selectFile = [](const std::string&) {};
  services.homeDirectory = [] { return folder().home(); };
  services.now = [] { return std::chrono::system_clock::time_point(); };
  services.osRelease = [] { return veltrix::OsRelease{12, 5, 0}; };
  services.setDeviceStateConsumer = [](const veltrix::DeviceStateConsumer&) {};
  services.setDriverStatusConsumer = [](const veltrix::DriverStatusConsumer&) {};
  return services;
}

veltrix::EditChoosers makeChoosers(ByteSource* bytes) {
  const auto text = [bytes] { return hostileValue(bytes).asString(); };
  return {
      .chooseApplication =
          [bytes, text](QWidget*) {
            return bytes->below(4) == 0 ? std::nullopt
                                        : std::optional(veltrix::ChosenApplication{text(), text()});
          },
      .chooseItem = [bytes,
                     text](QWidget*) { return bytes->below(4) == 0 ? std::nullopt : std::optional(text()); }};
}
