#include "editor/snippet_edit.h"

#include <cstddef>

#include "settings/settings_keys.h"

namespace veltrix {
namespace {

using plist::Array;
using plist::Dictionary;

constexpr std::int32_t kSnippetCount = 10;

bool isSnippet(std::int32_t index) {
  return index >= 0 && index < kSnippetCount;
}

// Without a name it is shown under the command's own title.
Dictionary makeEmptySnippet() {
  Dictionary snippet = Dictionary::create();
  snippet.set(keys::kSnippetText, "");
  return snippet;
}

void setValue(Array snippets, std::int32_t index, const char* key, const std::string& value) {
  if (!snippets || !isSnippet(index)) {
    return;
  }
  const auto place = static_cast<std::size_t>(index);
  while (snippets.count() <= place) {
    snippets.append(makeEmptySnippet());
  }
  if (!snippets.at(place).asDictionary()) {
    snippets.replace(place, makeEmptySnippet());
  }
  snippets.at(place).asDictionary().set(key, value);
}

}  // namespace

void setSnippetName(const Array& snippets, std::int32_t index, const std::string& name) {
  setValue(snippets, index, keys::kSnippetName, name);
}

void setSnippetText(const Array& snippets, std::int32_t index, const std::string& text) {
  setValue(snippets, index, keys::kSnippetText, text);
}

std::string snippetText(const Array& snippets, std::int32_t index) {
  if (!isSnippet(index)) {
    return {};
  }
  return snippets.at(static_cast<std::size_t>(index)).asDictionary().stringFor(keys::kSnippetText);
}

}  // namespace veltrix
