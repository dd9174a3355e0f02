#include "fuzz/property_list_round_trip.h"
#include "platform/property_list_binary_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace veltrix::plist;
  const std::string_view bytes = characters(data, size);
  checkRead(bytes, readBinary(bytes));
  return 0;
}
