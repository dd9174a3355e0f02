#include <array>
#include <iomanip>
#include <iostream>
#include <memory>
#include <sstream>

#include "ctl/commands.h"
#include "ctl/keyboard_arguments.h"
#include "ctl/outcome.h"
#include "ctl/plist_json.h"
#include "keyboard/key_names.h"
#include "keyboard/key_tables.h"
#include "keyboard/layout_access.h"
#include "keyboard/virtual_keys.h"
#include "platform/mac_roman.h"
#include "platform/text_encoding.h"

namespace veltrix::ctl {
namespace {

struct Arguments {
  std::string layout;
  bool preferKeypad = false;
  bool typing = false;
};

struct Tables {
  std::array<std::uint8_t, kCharacters> keys{};
  std::array<std::uint8_t, kCharacters> modifiers{};
};

bool fillTables(const Arguments& arguments, Tables& tables) {
  if (!arguments.typing) {
    return UpdateKeyTablesNumPad(tables.keys.data(), tables.modifiers.data(),
                                 arguments.preferKeypad ? 1 : 0) != 0;
  }
  const KeyboardLayout* layout = nullptr;
  const void* legacyLayout = nullptr;
  if (CompatibleGetKeyboardLayout(&layout, &legacyLayout) != 0) {
    return false;
  }
  fillTypingTables(*layout, tables.keys.data(), tables.modifiers.data(), arguments.preferKeypad);
  return true;
}

std::string hexadecimal(unsigned number, int digits) {
  std::ostringstream text;
  text << "0x" << std::uppercase << std::hex << std::setw(digits) << std::setfill('0') << number;
  return text.str();
}

// The character as it can stand in a line; empty for control characters.
std::string printable(std::uint8_t character) {
  std::string text;
  if (character >= ' ' && character != 0x7F) {
    appendUtf8(text, unicodeFromMacRoman(character));
  }
  return text;
}

Json rowOf(const Tables& tables, std::uint8_t character) {
  const auto key = tables.keys[character];
  const auto mask = GetCharModifiers(tables.modifiers.data(), character);
  return {{"character", character},
          {"text", printable(character)},
          {"key", key},
          {"modifiers", mask},
          {"name", GetKeyCombinationName(key, mask)}};
}

void printRow(const Json& row) {
  const auto text = row["text"].get<std::string>();
  std::cout << hexadecimal(row["character"].get<unsigned>(), 2) << ' ' << (text.empty() ? " " : text) << ' '
            << std::setw(3) << row["key"].get<unsigned>() << ' '
            << hexadecimal(row["modifiers"].get<unsigned>(), 4) << ' ' << row["name"].get<std::string>()
            << '\n';
}

int run(const Arguments& arguments, const Context& context) {
  if (const auto layout = useLayout(arguments.layout); !layout) {
    return fail(kBadInput, layout.error().message);
  }
  Tables tables;
  if (!fillTables(arguments, tables)) {
    return fail(kNotFound, "there is no keyboard layout");
  }
  GetKeyboardInformation(nullptr, nullptr);
  Json rows = Json::array();
  for (unsigned character = 0; character < kCharacters; ++character) {
    if (tables.keys[character] != kNoVirtualKey) {
      rows.push_back(rowOf(tables, static_cast<std::uint8_t>(character)));
    }
  }
  if (context.json) {
    std::cout << jsonText(rows);
    return kDone;
  }
  for (const auto& row : rows) {
    printRow(row);
  }
  return kDone;
}

}  // namespace

void addKeytableCommand(CommandLine app, Context& context) {
  auto command = app.addCommand(
      "keytable", "List characters (Mac OS Roman) with the key code and the modifier mask that type each");
  auto arguments = std::make_shared<Arguments>();
  command.addOption("--layout", arguments->layout,
                    "A keyboard layout such as de, us:dvorak or dvorak; the desktop's by default");
  command.addFlag("--numpad", arguments->preferKeypad, "Prefer the keys of the keypad");
  command.addFlag("--typing", arguments->typing,
                  "Take each key alone: no dead key acts on the key after it in the order of codes");
  command.does([&context, arguments] { context.exitCode = run(*arguments, context); });
}

}  // namespace veltrix::ctl
