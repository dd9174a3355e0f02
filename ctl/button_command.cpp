#include <functional>
#include <iostream>
#include <memory>

#include "ctl/action_builder.h"
#include "ctl/action_text.h"
#include "ctl/button_rules.h"
#include "ctl/commands.h"
#include "ctl/device_selector.h"
#include "ctl/document_file.h"
#include "ctl/outcome.h"
#include "ctl/terminal_store.h"
#include "settings/button_key.h"
#include "settings/settings_keys.h"

namespace veltrix::ctl {
namespace {

struct Button {
  std::string device;
  std::int32_t number = 0;
  std::string label;
  bool isChanged = false;  // an action was said
};

int change(const Button& button, const NewAction& action) {
  const std::string unchanged = "; nothing was changed";
  if (!action) {
    return fail(action.error().code, action.error().message + unchanged);
  }
  TerminalStore store;
  if (const int problem = store.open(); problem != kDone) {
    return problem;
  }
  const auto index = selectDevice(store.vtxGetSettingsArray(), button.device);
  if (!index) {
    return fail(index.error().code, store.path() + ": " + index.error().message + unchanged);
  }
  const auto entry = store.vtxGetSettingsArray().at(index.value()).asDictionary();
  for (const auto& status :
       {checkButtonOfModel(entry, button.number), checkNewAction(entry, button.number, action.value())}) {
    if (!status) {
      return fail(status.error().code, store.path() + ": " + status.error().message + unchanged);
    }
  }
  auto buttons = entry.dictionaryFor(keys::kButtons);
  if (!buttons) {
    return fail(kNotFound, store.path() + ": devices/" + std::to_string(index.value()) +
                               " has no dictionary \"buttons\"" + unchanged);
  }
  auto newAction = action.value();
  if (!button.label.empty()) {
    newAction.set(keys::kLabel, button.label);
  }
  buttons.set(buttonKey(button.number), newAction);
  return store.saveIfAllowed();
}

int show(const Button& button, const Context& context) {
  const auto file = readCurrentSettings("there is nothing to show");
  if (!file.document) {
    return file.exitCode;
  }
  const auto devices = file.root().arrayFor(keys::kDevices);
  const auto index = selectDevice(devices, button.device);
  if (!index) {
    return fail(index.error().code, file.path + ": " + index.error().message);
  }
  const auto entry = devices.at(index.value()).asDictionary();
  const auto action = entry.dictionaryFor(keys::kButtons).dictionaryFor(buttonKey(button.number));
  if (!action) {
    return fail(kNotFound, file.path + ": " + entryTitle(entry) + " has no action for button " +
                               std::to_string(button.number));
  }
  const auto snippets = file.root().arrayFor(keys::kSnippets);
  std::cout << (context.json ? jsonText(actionJson(action, snippets)) : actionText(action, snippets));
  return kDone;
}

using Build = std::function<NewAction()>;

// What the ways of saying an action have in common.
class Ways {
 public:
  Ways(CommandLine command, Context& context, std::shared_ptr<Button> button)
      : fCommand(command), fContext(context), fButton(std::move(button)) {}

  // Adds one; `build` is asked after its options have been read.
  CommandLine add(const char* name, const char* description, Build build) {
    auto way = fCommand.addCommand(name, description);
    way.addOption("--label", fButton->label, "A name of your own, shown in place of what the action does");
    way.does([&context = fContext, button = fButton, build = std::move(build)] {
      button->isChanged = true;
      context.exitCode = change(*button, build());
    });
    return way;
  }

  // Adds one that takes just one text.
  void addText(const char* name, const char* description, const char* option, const char* help,
               NewAction (*build)(const std::string&)) {
    auto text = std::make_shared<std::string>();
    add(name, description, [text, build] { return build(*text); }).addOption(option, *text, help).required();
  }

  // Adds one that takes just one number.
  void addNumber(const char* name, const char* description, const char* option, const char* help,
                 NewAction (*build)(std::int32_t)) {
    auto number = std::make_shared<std::int32_t>();
    add(name, description, [number, build] { return build(*number); })
        .addOption(option, *number, help)
        .required();
  }

 private:
  CommandLine fCommand;
  Context& fContext;
  std::shared_ptr<Button> fButton;
};

constexpr const char* kModifierHelp = "Modifier keys, such as Control+Shift, or their mask";

void addClick(Ways& ways) {
  struct Click {
    std::string kind = "left";
    std::string modifiers;
  };
  auto click = std::make_shared<Click>();
  auto way = ways.add("click", "A click", [click] { return clickAction(click->kind, click->modifiers); });
  way.addOption("KIND", click->kind,
                "left (the default), right, middle, back, forward, double, triple, drag (drag lock), "
                "button6 to button12");
  way.addOption("--mod", click->modifiers, kModifierHelp);
}

void addKeystroke(Ways& ways) {
  struct Keystroke {
    std::string keys;
    std::string keyCode;
    std::string modifiers;
  };
  auto keystroke = std::make_shared<Keystroke>();
  auto way = ways.add("keystroke", "A key with modifier keys", [keystroke] {
    return keystroke->keyCode.empty() ? keystrokeAction(keystroke->keys)
                                      : keyCodeAction(keystroke->keyCode, keystroke->modifiers);
  });
  auto keys = way.addOption("KEYS", keystroke->keys, "Such as Ctrl+Alt+T, Shift+F5 or \"Page Up\"");
  auto code = way.addOption("--key", keystroke->keyCode, "The place of the key, a virtual key code");
  way.addOption("--mod", keystroke->modifiers, kModifierHelp).needs(code);
  code.excludes(keys);
}

void addScroll(Ways& ways) {
  struct Scroll {
    std::string direction;
    std::int32_t count = 1;
  };
  auto scroll = std::make_shared<Scroll>();
  auto way = ways.add("scroll", "Steps of the wheel; \"up\" on the wheel itself is the way it turns",
                      [scroll] { return scrollAction(scroll->direction, scroll->count); });
  way.addOption("DIRECTION", scroll->direction, "up, down, left or right").required();
  way.addOption("--count", scroll->count, "Amount per step, 1 by default");
}

void addLaunch(Ways& ways) {
  struct Launch {
    std::string name;
    std::string identifier;
  };
  auto launch = std::make_shared<Launch>();
  auto way = ways.add("launch", "Start an application",
                      [launch] { return launchAction(launch->name, launch->identifier); });
  way.addOption("NAME", launch->name, "What it is called").required();
  way.addOption("--id", launch->identifier, "Its identifier, such as org.example.Editor");
}

}  // namespace

void addButtonCommand(CommandLine app, Context& context) {
  constexpr std::int32_t kLastButton = kButtonCount - 1;
  auto command = app.addCommand("button", "Show what a button does, or give it another action");
  auto button = std::make_shared<Button>();
  command
      .addOption("DEVICE", button->device,
                 "Index, product (1020), product and version (2041:0107) or name (skiffline)")
      .required();
  command.addOption("N", button->number, "0 to 15; 8 and 9 are chords, 12 is the wheel or ring")
      .required()
      .inRange(0, kLastButton);
  command.takesCommands(0, 1);
  Ways ways(command, context, button);
  addClick(ways);
  addKeystroke(ways);
  addScroll(ways);
  ways.addText("open", "Open a file or a folder", "PATH", "The file or folder", openAction);
  addLaunch(ways);
  ways.addText("url", "Open an address", "URL", "Such as https://example.org/", urlAction);
  ways.addText("script", "Run a script", "TEXT", "The script itself", scriptAction);
  ways.addNumber("snippet", "Type a text snippet", "N", "1 to 10", snippetAction);
  ways.addNumber("command", "A command without parameters", "CODE", "As \"veltrixctl commands\" lists it",
                 plainAction);
  command.does([&context, button] {
    if (!button->isChanged) {
      context.exitCode = show(*button, context);
    }
  });
}

}  // namespace veltrix::ctl
