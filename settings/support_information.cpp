#include "settings/support_information.h"

#include <array>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "platform/atomic_file.h"
#include "platform/plist_date.h"
#include "platform/property_list_io.h"
#include "platform/text_encoding.h"
#include "settings/settings_keys.h"

namespace veltrix {
namespace {

constexpr const char* kReplacement = "\xEF\xBF\xBD";  // U+FFFD
constexpr bool kIs64Bit = sizeof(void*) == 8;

// "2026-11-20 16:05:44 +0000"
plist::Value dateText(std::chrono::system_clock::time_point now) {
  using namespace std::chrono;
  constexpr sys_days kEpoch = year(2001) / 1 / 1;
  const auto since = duration_cast<duration<double>>(now - kEpoch);
  auto text = plist::formatDate({since.count()});
  if (!text) {
    return {};
  }
  text->replace(text->find('T'), 1, " ");
  text->replace(text->find('Z'), 1, " +0000");
  return *text;
}

std::string hexText(unsigned number) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%04x", number);
  return text.data();
}

std::string releaseText(const OsRelease& release) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%d.%d.%d", release.major, release.minor, release.bugFix);
  return text.data();
}

// What a file of XML can carry.
bool canBeWritten(char32_t character) {
  return character >= 0x20 ? character != 0xFFFE && character != 0xFFFF
                           : character == '\t' || character == '\n' || character == '\r';
}

// A name from a device: ends with its field or its first zero byte; what is no text in it shows as U+FFFD.
template <std::size_t N>
std::string nameText(const char (&field)[N]) {
  const std::string_view bytes(field, strnlen(field, N));
  std::string text;
  for (std::size_t at = 0; at < bytes.size();) {
    const auto character = nextUtf8(bytes, at);
    if (character && canBeWritten(*character)) {
      appendUtf8(text, *character);
    } else {
      text += kReplacement;
      at += character ? 0 : 1;
    }
  }
  return text;
}

plist::Dictionary describe(const VeltrixDeviceEntry& device) {
  auto text = plist::Dictionary::create();
  text.set("vendor id", hexText(device.vendorID));
  text.set("product id", hexText(device.productID));
  text.set("product version", hexText(device.productVers));
  text.set("vendor name", nameText(device.vendorName));
  text.set("product name", nameText(device.productName));
  return text;
}

plist::Array describeAll(const VeltrixDeviceList* list) {
  auto devices = plist::Array::create();
  for (std::size_t i = 0; list != nullptr && i < VeltrixDeviceCount(*list); ++i) {
    devices.append(describe(list->device[i]));
  }
  return devices;
}

}  // namespace

plist::Dictionary makeSupportInformation(const SupportFacts& facts) {
  const plist::Entry entries[] = {{"date", dateText(facts.now)},
                                  {"driver version", facts.bundleVersion},
                                  {"mac os version", releaseText(facts.release)},
                                  {"architecture", kIs64Bit ? "x64" : "i386"},
                                  {"connected devices", describeAll(facts.devices)}};
  auto information = plist::Dictionary::create();
  for (const plist::Entry& entry : entries) {
    if (entry.value.isMissing()) {
      break;
    }
    information.set(entry.key, entry.value);
  }
  return information;
}

Result<std::string> supportInformationXml(plist::Dictionary document, const SupportFacts& facts) {
  document.set(keys::kSupport, makeSupportInformation(facts));
  auto xml = plist::writeXml(document);
  document.remove(keys::kSupport);
  return xml;
}

Status writeSupportInformation(const std::string& path, plist::Dictionary document,
                               const SupportFacts& facts) {
  const auto xml = supportInformationXml(std::move(document), facts);
  return xml ? writeFileAtomically(path, xml.value()) : Status(xml.error());
}

std::string supportInformationPath(const std::string& home) {
  return home + "/Desktop/Veltrix Info.plist";
}

}  // namespace veltrix
