#include <clocale>
#include <iostream>
#include <memory>

#include "ctl/commands.h"
#include "ctl/keyboard_arguments.h"
#include "ctl/outcome.h"
#include "ctl/plist_json.h"
#include "keyboard/key_names.h"
#include "platform/bundle.h"

namespace veltrix::ctl {
namespace {

constexpr std::uint32_t kMostKeyCode = 255;
constexpr std::uint32_t kMostMask = 0xFFFF;

struct Arguments {
  std::string code;
  std::string mask;
  std::string layout;
  std::string modifierSeparator = "+";
  std::string keySeparator = "+";
  bool upperCase = false;
  bool localized = false;
};

void readKeyboard(bool localized) {
  if (!localized) {
    GetKeyboardInformation(nullptr, nullptr);
    return;
  }
  std::setlocale(LC_CTYPE, "");
  std::setlocale(LC_MESSAGES, "");
  const Bundle bundle = Bundle::standard();
  GetKeyboardInformation(&bundle, kStringTable);
}

int run(const Arguments& arguments, const Context& context) {
  const auto code = parseNumber(arguments.code, kMostKeyCode);
  const auto mask = parseNumber(arguments.mask, kMostMask);
  if (!code || !mask) {
    return fail(kBadInput, code ? "MASK is a number from 0 to 65535 or 0xFFFF, not \"" + arguments.mask + "\""
                                : "CODE is a number from 0 to 255 or 0xFF, not \"" + arguments.code + "\"");
  }
  if (const auto layout = useLayout(arguments.layout); !layout) {
    return fail(kBadInput, layout.error().message);
  }
  readKeyboard(arguments.localized);
  const auto name = GetKeyCombinationNameWithSepAndCase(
      static_cast<std::uint16_t>(*code), static_cast<std::uint16_t>(*mask), arguments.modifierSeparator,
      arguments.keySeparator, arguments.upperCase);
  std::cout << (context.json ? jsonText({{"code", *code}, {"mask", *mask}, {"name", name}}) : name + "\n");
  return kDone;
}

}  // namespace

void addKeynameCommand(CommandLine app, Context& context) {
  auto command = app.addCommand("keyname", "Name a key and the modifiers held with it");
  auto arguments = std::make_shared<Arguments>();
  command.addOption("CODE", arguments->code, "Virtual key code, 255 for no key; decimal or 0x…").required();
  command
      .addOption("MASK", arguments->mask,
                 "Modifiers: Command 0x100, Shift 0x200, Caps Lock 0x400, Option 0x800, Control 0x1000")
      .required();
  command.addOption("--layout", arguments->layout,
                    "A keyboard layout such as de, us:dvorak or dvorak; the desktop's by default");
  command.addFlag("--upper", arguments->upperCase, "Letters a to z as capitals");
  command.addOption("--mod-sep", arguments->modifierSeparator, "What stands between modifiers (\"+\")");
  command.addOption("--key-sep", arguments->keySeparator, "What stands before the key (\"+\")");
  command.addFlag("--localized", arguments->localized, "The words that the window shows in your language");
  command.does([&context, arguments] { context.exitCode = run(*arguments, context); });
}

}  // namespace veltrix::ctl
