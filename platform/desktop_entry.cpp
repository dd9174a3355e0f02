#include "platform/desktop_entry.h"

#include <map>
#include <utility>

#include "platform/desktop_entry_values.h"
#include "platform/key_file.h"

namespace veltrix {

namespace {

constexpr std::string_view kGroup = "Desktop Entry";
constexpr std::string_view kQuotedByBackslash = "\"`$\\";  // inside the quotes of Exec

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

// Takes the values of one entry, one after the other.
class EntryReader {
 public:
  explicit EntryReader(std::string_view language) : fLanguage(language) {}

  void take(std::string_view key, std::string_view value) {
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
    } else if (key == "Terminal") {
      fEntry.terminal = value == "true";
    } else if (key == "Path") {
      fEntry.folder = unescapedValue(value);
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
  readKeyFileGroup(bytes, kGroup,
                   [&reader](std::string_view key, std::string_view value) { reader.take(key, value); });
  return reader.takeEntry();
}

std::string writeAutostartEntry(std::string_view name, std::string_view program) {
  std::string text = "[" + std::string(kGroup) + "]";
  text += "\nType=Application\nName=" + escapedValue(name);
  text += "\nExec=" + escapedValue(quotedForExec(program));
  text += "\nTryExec=" + escapedValue(program);
  text += "\nTerminal=false\nStartupNotify=false\nX-GNOME-Autostart-enabled=true\n";
  return text;
}

}  // namespace veltrix
