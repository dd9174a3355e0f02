#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace veltrix {

struct Phrase;

// Why something failed, for a person at a terminal or for a test.
struct Error {
  int code = 0;                       // an errno value, 0 when no system call was at fault
  std::string message;                // one line without a final full stop
  std::optional<std::size_t> offset;  // byte offset in the input that was read, when there is one
  std::shared_ptr<const Phrase> phrase = nullptr;  // the message as it can be told in another language
};

// A value or the reason why there is none. Asking for the one that is not there is a programming error
// and ends the process through std::bad_variant_access.
template <typename T>
class Result {
 public:
  Result(T value)
      : fState(std::in_place_index<0>, std::move(value)) {}  // NOLINT(google-explicit-constructor)
  Result(Error error)
      : fState(std::in_place_index<1>, std::move(error)) {}  // NOLINT(google-explicit-constructor)

  bool ok() const { return fState.index() == 0; }
  explicit operator bool() const { return ok(); }
  T& value() { return std::get<0>(fState); }
  const T& value() const { return std::get<0>(fState); }
  const Error& error() const { return std::get<1>(fState); }

 private:
  std::variant<T, Error> fState;
};

struct Done {};

// The outcome of an operation that yields nothing but success.
using Status = Result<Done>;

}  // namespace veltrix
