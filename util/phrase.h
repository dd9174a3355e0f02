#pragma once

#include <functional>
#include <string>
#include <vector>

#include "util/result.h"

namespace veltrix {

// What is said to a person, in a form that can be said in another language.
struct Phrase {
  std::string text;               // in English; %1 to %9 stand for the arguments
  std::vector<Phrase> arguments;  // what stands in no text is left out
  bool isGiven = false;           // a name, or what another program says: the same in every language
};

Phrase given(std::string text);

// The text of a phrase in the language of the person; the English one when there is none.
using Translation = std::function<std::string(const std::string& english)>;

// The whole as one text: in English without a translation.
std::string said(const Phrase& phrase, const Translation& translation = nullptr);

// An error that can be told in another language; its message is the English one.
Error phrasedError(int code, Phrase phrase);

// The phrase of an error; of one without, its message.
Phrase phraseOf(const Error& error);

}  // namespace veltrix
