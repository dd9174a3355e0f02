#include "platform/property_list_text_reader.h"

#include <string>
#include <utility>

#include "platform/property_list_limits.h"
#include "platform/property_list_text_scanner.h"
#include "platform/text_encoding.h"

namespace veltrix::plist {

namespace {

class Reader {
 public:
  explicit Reader(std::string_view text) : fText(text), fScanner(text) {}
  Result<Value> run();

 private:
  bool fail(std::string message) { return fScanner.fail(fScanner.at(), std::move(message)); }
  bool document(Value& out);
  bool value(std::size_t depth, Value& out);
  bool array(std::size_t depth, Value& out);
  bool dictionary(std::size_t depth, Value& out);
  bool entry(std::size_t depth, std::string_view key, Dictionary& out);
  bool data(Value& out);
  bool string(std::string& out);

  std::string_view fText;
  TextScanner fScanner;
  Budget fBudget;
};

Result<Value> Reader::run() {
  if (const auto bad = firstBadUtf8(fText)) {
    return Error{0, "not UTF-8", *bad};
  }
  Value root;
  if (!document(root)) {
    return *fScanner.error();
  }
  return root;
}

bool Reader::document(Value& out) {
  if (!fScanner.skip()) {
    return false;
  }
  if (fScanner.atEnd()) {
    return fail("an empty document");
  }
  const std::size_t start = fScanner.at();
  if (!value(1, out) || !fScanner.skip()) {
    return false;
  }
  if (fScanner.atEnd()) {
    return true;
  }
  if (out.stringIf() == nullptr || !fScanner.startsWith("=")) {
    return fail("text after the end");
  }
  // A string that is given a value: the braces around the dictionary were left out.
  fScanner.goBackTo(start);
  return dictionary(1, out) && (fScanner.atEnd() || fail("text after the end"));
}

bool Reader::value(std::size_t depth, Value& out) {
  const std::size_t start = fScanner.at();
  if (fScanner.atEnd()) {
    return fScanner.fail(start, "no value");
  }
  if (fScanner.startsWith("{") || fScanner.startsWith("(")) {
    if (depth > kMaximumNesting) {
      return fScanner.fail(start, "nested too deeply");
    }
    if (!fBudget.take()) {
      return fScanner.fail(start, "too many values");
    }
    if (fScanner.next('(')) {
      return array(depth, out);
    }
    fScanner.next('{');
    return dictionary(depth, out) &&
           (fScanner.next('}') || fScanner.fail(start, "a dictionary without an end"));
  }
  if (fScanner.startsWith("<")) {
    return data(out);
  }
  std::string text;
  if (!string(text)) {
    return false;
  }
  out = std::move(text);
  return true;
}

// What follows '('. A comma may stand after the last value.
bool Reader::array(std::size_t depth, Value& out) {
  Array result = Array::create();
  while (true) {
    if (!fScanner.skip()) {
      return false;
    }
    if (fScanner.next(')')) {
      break;
    }
    Value item;
    if (!value(depth + 1, item) || !fScanner.skip()) {
      return false;
    }
    result.append(std::move(item));
    if (!fScanner.next(',') && !fScanner.startsWith(")")) {
      return fail("no ',' or ')' after a value");
    }
  }
  out = std::move(result);
  return true;
}

// Entries up to '}', which is left there, or up to the end.
bool Reader::dictionary(std::size_t depth, Value& out) {
  Dictionary result = Dictionary::create();
  while (true) {
    if (!fScanner.skip()) {
      return false;
    }
    if (fScanner.atEnd() || fScanner.startsWith("}")) {
      break;
    }
    std::string key;
    if (!string(key) || !entry(depth, key, result)) {
      return false;
    }
  }
  out = std::move(result);
  return true;
}

// What follows a key.
bool Reader::entry(std::size_t depth, std::string_view key, Dictionary& out) {
  if (!fScanner.skip()) {
    return false;
  }
  if (!fScanner.next('=')) {
    return fail("no '=' after a key");
  }
  Value item;
  if (!fScanner.skip() || !value(depth + 1, item) || !fScanner.skip()) {
    return false;
  }
  if (!fScanner.next(';')) {
    return fail("no ';' after a value");
  }
  out.set(key, std::move(item));
  return true;
}

bool Reader::data(Value& out) {
  const std::size_t start = fScanner.at();
  Data result;
  if (!fScanner.data(result)) {
    return false;
  }
  out = std::move(result);
  return fBudget.take(out.dataIf()->size()) || fScanner.fail(start, "too many values");
}

bool Reader::string(std::string& out) {
  const std::size_t start = fScanner.at();
  return fScanner.string(out) && (fBudget.take(out.size()) || fScanner.fail(start, "too many values"));
}

}  // namespace

Result<Value> readText(std::string_view utf8) {
  return Reader(utf8).run();
}

}  // namespace veltrix::plist
