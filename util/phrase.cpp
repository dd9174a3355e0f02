#include "util/phrase.h"

#include <memory>
#include <utility>

namespace veltrix {

Phrase given(std::string text) {
  return {std::move(text), {}, true};
}

// The arguments are put in as they are, whatever signs they have.
std::string said(const Phrase& phrase, const Translation& translation) {
  if (phrase.isGiven)
    return phrase.text;
  const std::string text = translation ? translation(phrase.text) : phrase.text;
  std::string result;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool isPlace = text[at] == '%' && at + 1 < text.size() && text[at + 1] >= '1' &&
                         text[at + 1] < static_cast<char>('1' + phrase.arguments.size());
    if (isPlace)
      result += said(phrase.arguments[static_cast<std::size_t>(text[++at] - '1')], translation);
    else
      result += text[at];
  }
  return result;
}

Error phrasedError(int code, Phrase phrase) {
  std::string message = said(phrase);
  return {code, std::move(message), {}, std::make_shared<const Phrase>(std::move(phrase))};
}

Phrase phraseOf(const Error& error) {
  return error.phrase != nullptr ? *error.phrase : Phrase{error.message, {}};
}

}  // namespace veltrix
