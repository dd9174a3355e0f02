#pragma once

#include <gtest/gtest.h>
#include <umockdev.h>

#include <string>
#include <vector>

namespace veltrix::testing {

// A /sys of devices that do not exist, for programs that run with umockdev's preloaded library. Texts of
// attributes and properties come in pairs: name, value.
class UdevTestBed {
 public:
  UdevTestBed() : fBed(umockdev_testbed_new()) {}
  ~UdevTestBed() { g_object_unref(fBed); }
  UdevTestBed(const UdevTestBed&) = delete;
  UdevTestBed& operator=(const UdevTestBed&) = delete;

  // The path of the new device, below that of its parent; an empty parent is none.
  std::string add(const std::string& subsystem, const std::string& name, const std::string& parent,
                  const std::vector<std::string>& attributes, const std::vector<std::string>& properties) {
    std::vector<const char*> attributePointers = pointersTo(attributes);
    std::vector<const char*> propertyPointers = pointersTo(properties);
    char* path = umockdev_testbed_add_devicev(
        fBed, subsystem.c_str(), name.c_str(), parent.empty() ? nullptr : parent.c_str(),
        const_cast<char**>(attributePointers.data()), const_cast<char**>(propertyPointers.data()));
    EXPECT_NE(path, nullptr) << name;
    std::string result = path != nullptr ? path : "";
    g_free(path);
    return result;
  }

  // Sends the message of that action as udev does.
  void tell(const std::string& path, const char* action) {
    umockdev_testbed_uevent(fBed, path.c_str(), action);
  }
  // With no message.
  void removeSilently(const std::string& path) { umockdev_testbed_remove_device(fBed, path.c_str()); }

 private:
  static std::vector<const char*> pointersTo(const std::vector<std::string>& texts) {
    std::vector<const char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (const std::string& text : texts) pointers.push_back(text.c_str());
    pointers.push_back(nullptr);
    return pointers;
  }

  UMockdevTestbed* fBed;
};

}  // namespace veltrix::testing
