#include "platform/desktop_entry.h"

#include <map>
#include <utility>

#include "platform/desktop_entry_values.h"

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

// Takes the values of one entry, line after line.
class EntryReader {
 public:
  explicit EntryReader(std::string_view language) : fLanguage(language) {}

  void takeLine(std::string_view line) {
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) {
      return;
    }
    std::string_view key = trimmed(line.substr(0, equals));
    const std::string_view value = trimmed(line.substr(equals + 1));
    const std::size_t bracket = key.find('[');
    if (bracket == std::string_view::npos) {
      takePlain(key, value);
      takeLocalised(key, "", value);
    } else if (key.ends_with(']')) {
      const std::string_view language = key.substr(bracket + 1, key.size() - bracket - 2);
      if (!language.empty()) {
        takeLocalised(key.substr(0, bracket), language, value);
      }
    }
  }

  DesktopEntry takeEntry() { return std::move(fEntry); }

 private:
  void takePlain(std::string_view key, std::string_view value) {
    if (key == "Type") {
      fEntry.type = unescapedValue(value);
    } else if (key == "Exec") {
      fEntry.arguments = ExecReader(unescapedValue(value)).arguments();
    } else if (key == "TryExec") {
      fEntry.tryExec = unescapedValue(value);
    } else if (key == "OnlyShowIn") {
      fEntry.onlyShowIn = unescapedList(value);
    } else if (key == "NotShowIn") {
      fEntry.notShowIn = unescapedList(value);
    } else if (key == "Hidden") {
      fEntry.hidden = value == "true";
    } else if (key == "NoDisplay") {
      fEntry.noDisplay = value == "true";
    } else if (key == "DBusActivatable") {
      fEntry.busActivatable = value == "true";
    }
  }

  void takeLocalised(std::string_view key, std::string_view language, std::string_view value) {
    if (key == "Name" && suitsBest(key, language)) {
      fEntry.name = unescapedValue(value);
    } else if (key == "Comment" && suitsBest(key, language)) {
      fEntry.comment = unescapedValue(value);
    } else if (key == "Icon" && suitsBest(key, language)) {
      fEntry.icon = unescapedValue(value);
    } else if (key == "Keywords" && suitsBest(key, language)) {
      fEntry.keywords = unescapedList(value);
    }
  }

  // Whether no text for `key` before this one suits the user better.
  bool suitsBest(std::string_view key, std::string_view language) {
    const int match = languageMatch(language, fLanguage);
    int& best = fBestMatches[key];
    if (match == 0 || match < best) {
      return false;
    }
    best = match;
    return true;
  }

  std::string_view fLanguage;
  DesktopEntry fEntry;
  std::map<std::string_view, int> fBestMatches;  // by key, which lies in the bytes that are read
};

}  // namespace

DesktopEntry readDesktopEntry(std::string_view bytes, std::string_view language) {
  EntryReader reader(language);
  bool inGroup = false;
  while (!bytes.empty()) {
    const std::size_t end = bytes.find('\n');
    const std::string_view line = trimmed(bytes.substr(0, end));
    bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
    if (line.starts_with('[')) {
      inGroup = line == kGroup;
    } else if (inGroup && !line.starts_with('#')) {
      reader.takeLine(line);
    }
  }
  return reader.takeEntry();
}

std::string writeAutostartEntry(std::string_view name, std::string_view program) {
  std::string text(kGroup);
  text += "\nType=Application\nName=" + escapedValue(name);
  text += "\nExec=" + escapedValue(quotedForExec(program));
  text += "\nTryExec=" + escapedValue(program);
  text += "\nTerminal=false\nStartupNotify=false\nX-GNOME-Autostart-enabled=true\n";
  return text;
}

}  // namespace veltrix
