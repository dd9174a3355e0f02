#include "tests/ui/model/catalogue.h"

#include <algorithm>
#include <cstddef>

namespace veltrix::model {
namespace {

constexpr int kOnlyOnOldSystems = 136;

const Json& snippetAt(const Json& snippets, int index) {
  static const Json kNone = Json::object();
  const auto place = static_cast<std::size_t>(index);
  return place < snippets.size() ? snippets.at(place) : kNone;
}

}  // namespace

Catalogue::Catalogue(const Json& resource) {
  for (const Json& category : resource) {
    auto& commands = fCategories.emplace_back();
    for (const Json& command : category.at("commands")) {
      if (const int code = command.at("command"); code != kOnlyOnOldSystems) {
        commands.push_back({code, command.at("name")});
      }
    }
  }
}

std::optional<Catalogue::Place> Catalogue::find(int command) const {
  for (int category = 0; category < categories(); ++category) {
    for (int row = 0; row < commands(category); ++row) {
      if (commandAt({category, row}) == command) {
        return Place{category, row};
      }
    }
  }
  return std::nullopt;
}

int Catalogue::commands(int category) const {
  return category < 0 ? 0 : static_cast<int>(fCategories.at(static_cast<std::size_t>(category)).size());
}

int Catalogue::commandAt(Place place) const {
  return fCategories.at(static_cast<std::size_t>(std::max(place.category, 0)))
      .at(static_cast<std::size_t>(std::max(place.command, 0)))
      .code;
}

std::string Catalogue::titleOf(int command, const Json& snippets) const {
  const auto place = find(command);
  if (!place) {
    return {};
  }
  if (command >= kFirstSnippet && command <= kLastSnippet) {
    if (std::string name = snippetName(snippets, command - kFirstSnippet); !name.empty()) {
      return name;
    }
  }
  return fCategories.at(static_cast<std::size_t>(place->category))
      .at(static_cast<std::size_t>(place->command))
      .title;
}

std::string snippetName(const Json& snippets, int index) {
  const std::string number = std::to_string(index + 1);
  std::string name = textOf(snippetAt(snippets, index), "name");
  return name == "Text snippet " + number ? "Snippet " + number : name;
}

std::string snippetText(const Json& snippets, int index) {
  return textOf(snippetAt(snippets, index), "text");
}

}  // namespace veltrix::model
