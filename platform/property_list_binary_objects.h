#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/property_list_limits.h"
#include "util/result.h"

namespace veltrix::plist::binary {

// A marker with the count or size that belongs to it; `at` is where the contents start.
struct ObjectHead {
  std::uint8_t kind = 0;
  std::uint8_t low = 0;
  std::uint64_t count = 0;
  std::size_t at = 0;
  std::size_t offset = 0;
};

// Finds the objects of a file in the binary form by their numbers, and sees to it that nothing reaches beyond
// the place where objects stand. What returns false has left the reason in error().
class Objects {
 public:
  // The bytes outlive the objects.
  explicit Objects(std::string_view bytes);

  // Reads the magic and the trailer; comes first, and what follows is for a good trailer only.
  bool open(std::uint64_t& root);

  // The marker of the object with that number.
  bool find(std::uint64_t index, ObjectHead& out);

  // The bytes of `count` units from the head on, when they end before the table. They count towards what the
  // document may hold.
  bool contents(const ObjectHead& head, std::size_t unit, std::string_view& out);

  // Counts one more value without contents.
  bool count(const ObjectHead& head);

  // The bytes, at most eight, as one number; none for what lies beyond the end.
  std::uint64_t number(std::size_t at, std::size_t size) const;

  // The number of the object that stands at a position of a container's contents.
  std::uint64_t reference(std::string_view references, std::uint64_t position) const;
  std::size_t referenceSize() const { return fReferenceSize; }

  // Keeps why the file cannot be read; returns false.
  bool fail(std::size_t offset, std::string message);
  const std::optional<Error>& error() const { return fError; }

 private:
  bool head(std::size_t offset, ObjectHead& out);

  std::string_view fBytes;
  std::size_t fOffsetSize = 0;
  std::size_t fReferenceSize = 0;
  std::uint64_t fObjects = 0;
  std::size_t fTable = 0;  // also the end of the objects
  std::optional<Error> fError;
  Budget fBudget;
};

}  // namespace veltrix::plist::binary
