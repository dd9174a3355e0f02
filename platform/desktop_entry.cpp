#include "platform/desktop_entry.h"

namespace veltrix {

namespace {

constexpr std::string_view kGroup = "[Desktop Entry]";
constexpr std::string_view kBlanks = " \t\r";
constexpr std::string_view kQuotedByBackslash = "\"`$\\";  // inside the quotes of Exec

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// Values of type string write some characters as a backslash and a letter.
std::string unescaped(std::string_view value) {
  std::string text;
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value[i] != '\\' || i + 1 == value.size()) {
      text += value[i];
      continue;
    }
    switch (value[++i]) {
      case 's':
        text += ' ';
        break;
      case 'n':
        text += '\n';
        break;
      case 't':
        text += '\t';
        break;
      case 'r':
        text += '\r';
        break;
      case '\\':
        text += '\\';
        break;
      default:
        text += '\\';
        text += value[i];
    }
  }
  return text;
}

std::string escaped(std::string_view text) {
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

// Splits the text of Exec into its arguments.
class ExecReader {
 public:
  explicit ExecReader(std::string_view text) : fText(text) {}

  // Empty when a quotation does not end.
  std::vector<std::string> arguments() {
    for (; fAt < fText.size(); ++fAt) {
      const char character = fText[fAt];
      if (character == ' ' || character == '\t' || character == '\n') {
        finishArgument();
      } else if (character == '"') {
        if (!readQuotation()) {
          return {};
        }
      } else if (character == '%') {
        readFieldCode();
      } else {
        add(character);
      }
    }
    finishArgument();
    return std::move(fArguments);
  }

 private:
  // Leaves the place at the closing quote.
  bool readQuotation() {
    fInArgument = true;
    for (++fAt; fAt < fText.size() && fText[fAt] != '"'; ++fAt) {
      if (fText[fAt] == '%') {
        readFieldCode();
        continue;
      }
      const bool quotes = fText[fAt] == '\\' && fAt + 1 < fText.size() &&
                          kQuotedByBackslash.find(fText[fAt + 1]) != std::string_view::npos;
      fAt += quotes ? 1 : 0;
      add(fText[fAt]);
    }
    return fAt < fText.size();
  }

  // A doubled % is one; what other codes stand for is not there when a session starts.
  void readFieldCode() {
    if (fAt + 1 < fText.size() && fText[fAt + 1] != '"' && fText[++fAt] == '%') {
      add('%');
    }
  }

  void add(char character) {
    fInArgument = true;
    fArgument += character;
  }

  void finishArgument() {
    if (fInArgument) {
      fArguments.push_back(std::move(fArgument));
    }
    fArgument.clear();
    fInArgument = false;
  }

  std::string_view fText;
  std::size_t fAt = 0;
  std::string fArgument;
  bool fInArgument = false;
  std::vector<std::string> fArguments;
};

std::string quotedForExec(std::string_view argument) {
  std::string text = "\"";
  for (const char character : argument) {
    if (kQuotedByBackslash.find(character) != std::string_view::npos) {
      text += '\\';
    }
    text += character;
    if (character == '%') {
      text += '%';
    }
  }
  return text + '"';
}

void takeLine(std::string_view line, DesktopEntry* entry) {
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos) {
    return;
  }
  const std::string_view key = trimmed(line.substr(0, equals));
  const std::string value = unescaped(trimmed(line.substr(equals + 1)));
  if (key == "Name") {
    entry->name = value;
  } else if (key == "Exec") {
    entry->arguments = ExecReader(value).arguments();
  }
}

}  // namespace

DesktopEntry readDesktopEntry(std::string_view bytes) {
  DesktopEntry entry;
  bool inGroup = false;
  while (!bytes.empty()) {
    const std::size_t end = bytes.find('\n');
    const std::string_view line = trimmed(bytes.substr(0, end));
    bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
    if (line.starts_with('[')) {
      inGroup = line == kGroup;
    } else if (inGroup && !line.starts_with('#')) {
      takeLine(line, &entry);
    }
  }
  return entry;
}

std::string writeAutostartEntry(std::string_view name, std::string_view program) {
  std::string text(kGroup);
  text += "\nType=Application\nName=" + escaped(name);
  text += "\nExec=" + escaped(quotedForExec(program));
  text += "\nTryExec=" + escaped(program);
  text += "\nTerminal=false\nStartupNotify=false\nX-GNOME-Autostart-enabled=true\n";
  return text;
}

}  // namespace veltrix
