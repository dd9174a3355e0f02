#include <gmock/gmock.h>

#include <cctype>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "actions/action_kind.h"
#include "actions/command_tree.h"
#include "actions/template_menu.h"
#include "platform/message_catalog.h"
#include "platform/property_list_io.h"
#include "tests/support/temporary_folder.h"

// The catalogue of commands, the page that explains it and the German texts belong together.
namespace veltrix {
namespace {

struct Command {
  std::string category;
  std::int32_t code;
  std::string title;
  friend bool operator==(const Command&, const Command&) = default;
};

void PrintTo(const Command& command, std::ostream* out) {
  *out << command.category << " / " << command.code << " / " << command.title;
}

plist::Array resource() {
  return plist::readFile(Bundle::standard().pathForResource("Assignments", "plist")).value().root.asArray();
}

std::vector<Command> catalogue() {
  std::vector<Command> commands;
  const auto categories = resource();
  for (const auto& element : categories.items()) {
    const auto category = element.asDictionary();
    const auto rows = category.arrayFor("commands");
    for (const auto& row : rows.items()) {
      const auto command = row.asDictionary();
      commands.push_back(
          {category.stringFor("category"), command.int32For("command"), command.stringFor("name")});
    }
  }
  return commands;
}

// What a table row of the page says.
struct Explained {
  Command command;
  std::string meaning;
  std::string who;
};

// The texts of "| one | two |"; none for any other line.
std::vector<std::string> cellsOf(const std::string& line) {
  std::vector<std::string> cells;
  for (std::size_t at = line.find("| "); at == 0 || !cells.empty();) {
    const std::size_t end = line.find(" |", at + 2);
    if (end == std::string::npos || end < at + 3) {
      break;
    }
    cells.push_back(line.substr(at + 2, end - at - 2));
    at = end + 1;
  }
  return cells;
}

std::vector<Explained> page() {
  std::vector<Explained> rows;
  std::ifstream file(VELTRIX_DOCS "/commands.md");
  std::string category;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("## ")) {
      category = line.substr(3);
    } else if (const auto cells = cellsOf(line); cells.size() == 5 && std::isdigit(cells[0].front()) != 0) {
      rows.push_back({{category, std::stoi(cells[0]), cells[1]}, cells[2], cells[3]});
    }
  }
  return rows;
}

// Every text of the catalogue and of the menus that a person can see.
std::set<std::string> visibleTexts() {
  std::set<std::string> texts = {"Type", "Snippet"};
  for (const auto& item : templateMenu()) {
    texts.insert(item.title != nullptr ? item.title : "Type");
  }
  const auto categories = resource();
  for (const auto& element : categories.items()) {
    const auto category = element.asDictionary();
    texts.insert({category.stringFor("category"), category.stringFor("category106")});
    const auto rows = category.arrayFor("commands");
    for (const auto& row : rows.items()) {
      const auto command = row.asDictionary();
      texts.insert({command.stringFor("name"), command.stringFor("name106")});
    }
  }
  texts.erase("");
  return texts;
}

// Codes that the format leaves to commands without parameters.
bool isPlainCode(std::int32_t code) {
  return code == 0 || (code >= 24 && code <= 69) || (code >= 74 && code <= 179) ||
         (code >= 190 && code <= 199) || code >= 201;
}

TEST(Catalogue, HasAtLeastNinetyCommandsInTenCategories) {
  EXPECT_GE(catalogue().size(), 90U);
  EXPECT_GE(resource().count(), 10U);
}

TEST(Catalogue, HasNoCodeAndNoTitleTwice) {
  std::set<std::int32_t> codes;
  std::set<std::string> titles;
  for (const auto& command : catalogue()) {
    EXPECT_TRUE(codes.insert(command.code).second) << command.code;
    EXPECT_TRUE(titles.insert(command.title).second) << command.title;
  }
}

TEST(Catalogue, HasEveryCodeOfAClassAndPlainCodesElsewhere) {
  std::set<std::int32_t> withParameters;
  for (const auto& command : catalogue()) {
    ASSERT_GE(command.code, 0);
    ASSERT_LE(command.code, 0xFFFF);
    if (actionKind(command.code) != ActionKind::kPlain) {
      withParameters.insert(command.code);
    } else if (command.code != kFallbackCommand) {
      EXPECT_TRUE(isPlainCode(command.code)) << command.code;
    }
  }
  std::set<std::int32_t> all;
  for (std::int32_t code = 0; code <= 0xFFFF; ++code) {
    if (actionKind(code) != ActionKind::kPlain) {
      all.insert(code);
    }
  }
  EXPECT_EQ(withParameters, all);
}

TEST(Catalogue, SnippetsAreTitledAsUnnamedOnes) {
  std::map<std::int32_t, std::string> titles;
  for (const auto& command : catalogue()) {
    titles[command.code] = command.title;
  }
  for (std::int32_t number = 1; number <= 10; ++number) {
    EXPECT_EQ(titles[kFirstSnippetCommand + number - 1], "Text snippet " + std::to_string(number));
  }
}

TEST(Catalogue, OffersTheTwoOverviewsToTheSystemsThatTheyAreFor) {
  const auto has = [](std::int32_t code, std::uint32_t version) {
    return CommandTree::load(Bundle::standard(), version)
        .find(code, {}, [](std::string_view key) { return std::string(key); })
        .has_value();
  };
  EXPECT_TRUE(has(107, 0x1070) && !has(136, 0x1070));
  EXPECT_TRUE(!has(107, 0x1060) && has(136, 0x1060));
}

TEST(Catalogue, HasOtherTitlesForOlderSystems) {
  const auto titleOf = [](std::int32_t code, std::uint32_t version) {
    const auto place =
        CommandTree::load(Bundle::standard(), version).find(code, {}, [](std::string_view key) {
          return std::string(key);
        });
    return *place->categoryTitle + " / " + *place->commandTitle;
  };
  EXPECT_EQ(titleOf(100, 0x1090), "Workspaces and Desktop / Show Applications");
  EXPECT_EQ(titleOf(100, 0x1060), "Desktops / Applications Menu");
}

TEST(Catalogue, IsExplainedRowByRowInItsOrder) {
  std::vector<Command> explained;
  for (const auto& row : page()) {
    explained.push_back(row.command);
    EXPECT_FALSE(row.meaning.empty());
  }
  EXPECT_EQ(explained, catalogue());
}

TEST(Catalogue, TheDriverCarriesOutClicksKeystrokesScrollingAndPointerModes) {
  for (const auto& row : page()) {
    const auto kind = actionKind(row.command.code);
    const bool isPointerMode = row.command.code >= 24 && row.command.code <= 29;
    const bool isOfDriver = kind == ActionKind::kClick || kind == ActionKind::kKeystroke ||
                            kind == ActionKind::kScroll || isPointerMode || row.command.code == 0;
    EXPECT_EQ(row.who, isOfDriver ? "driver" : "helper") << row.command.code;
  }
}

TEST(Catalogue, EveryTextHasAGermanOne) {
  const auto german = MessageCatalog::read(
      testing::readFile(Bundle::standard().resourcePath() + "/locale/de/LC_MESSAGES/Localizable.mo"));
  for (const auto& text : visibleTexts()) {
    const auto found = german.find(text);
    EXPECT_TRUE(found && !found->empty()) << text;
  }
}

TEST(Catalogue, ItsGermanTextsAreOfItsTextsOnly) {
  const auto visible = visibleTexts();
  std::ifstream file(VELTRIX_RESOURCE_SOURCES "/locale/de/commands.po");
  constexpr std::string_view kBefore = "msgid \"";
  std::set<std::string> keys;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with(kBefore) && line.size() > kBefore.size() + 1) {
      keys.insert(line.substr(kBefore.size(), line.size() - kBefore.size() - 1));
    }
  }
  EXPECT_EQ(keys, visible);
}

}  // namespace
}  // namespace veltrix
