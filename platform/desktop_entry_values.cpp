#include "platform/desktop_entry_values.h"

#include <utility>

namespace veltrix {

namespace {

struct Language {
  std::string_view language;
  std::string_view country;
  std::string_view modifier;
};

// Takes what follows the last `mark` off the end of `text`; empty when there is none.
std::string_view takeAfter(std::string_view& text, char mark) {
  const std::size_t at = text.rfind(mark);
  if (at == std::string_view::npos) {
    return {};
  }
  const std::string_view after = text.substr(at + 1);
  text = text.substr(0, at);
  return after;
}

Language splitLanguage(std::string_view name) {
  Language parts;
  parts.modifier = takeAfter(name, '@');
  takeAfter(name, '.');
  parts.country = takeAfter(name, '_');
  parts.language = name;
  return parts;
}

// The character that a backslash and `letter` stand for; the letter itself when it is none of them.
char escapedCharacter(char letter) {
  switch (letter) {
    case 's':
      return ' ';
    case 'n':
      return '\n';
    case 't':
      return '\t';
    case 'r':
      return '\r';
    default:
      return letter;
  }
}

bool isEscape(char letter) {
  return letter == '\\' || escapedCharacter(letter) != letter;
}

}  // namespace

std::string unescapedValue(std::string_view value) {
  std::string text;
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value[i] == '\\' && i + 1 < value.size() && isEscape(value[i + 1])) {
      text += escapedCharacter(value[++i]);
    } else {
      text += value[i];
    }
  }
  return text;
}

std::string escapedValue(std::string_view text) {
  std::string value;
  for (std::size_t i = 0; i < text.size(); ++i) {
    switch (text[i]) {
      case '\\':
        value += "\\\\";
        break;
      case '\n':
        value += "\\n";
        break;
      case '\t':
        value += "\\t";
        break;
      case '\r':
        value += "\\r";
        break;
      case ' ':
        value += i == 0 || i + 1 == text.size() ? "\\s" : " ";  // readers trim blanks at the ends
        break;
      default:
        value += text[i];
    }
  }
  return value;
}

std::vector<std::string> unescapedList(std::string_view value) {
  std::vector<std::string> items;
  std::string item;
  const auto finishItem = [&items, &item] {
    if (!item.empty()) {
      items.push_back(std::move(item));
    }
    item.clear();
  };
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value[i] == ';') {
      finishItem();
    } else if (value[i] == '\\' && i + 1 < value.size() && (value[i + 1] == ';' || isEscape(value[i + 1]))) {
      item += escapedCharacter(value[++i]);
    } else {
      item += value[i];
    }
  }
  finishItem();
  return items;
}

int languageMatch(std::string_view offered, std::string_view wanted) {
  if (offered.empty()) {
    return 1;
  }
  const Language text = splitLanguage(offered);
  const Language user = splitLanguage(wanted);
  const bool countryFits = text.country.empty() || text.country == user.country;
  const bool modifierFits = text.modifier.empty() || text.modifier == user.modifier;
  if (text.language.empty() || text.language != user.language || !countryFits || !modifierFits) {
    return 0;
  }
  // A country says more than a modifier.
  return 2 + (text.modifier.empty() ? 0 : 1) + (text.country.empty() ? 0 : 2);
}

}  // namespace veltrix
