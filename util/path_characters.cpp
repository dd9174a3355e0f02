#include "util/path_characters.h"

#include <algorithm>
#include <new>
#include <stdexcept>

namespace veltrix {

namespace {

constexpr std::string_view kIllegal = "\"*/:?\\|";

}  // namespace

// All seven are single bytes that are part of no longer character of UTF-8.
std::optional<std::string> stringByReplacingIllegalPathCharacters(std::string_view text) {
  try {
    std::string result(text);
    std::replace_if(
        result.begin(), result.end(),
        [](char character) { return kIllegal.find(character) != std::string_view::npos; }, '-');
    return result;
  } catch (const std::bad_alloc&) {
    return std::nullopt;
  } catch (const std::length_error&) {
    return std::nullopt;
  }
}

}  // namespace veltrix
