#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tests/ui/model/document.h"

namespace veltrix::model {

// The commands that the editor offers, and how they are called.
class Catalogue {
 public:
  // The resource, as it is on a system that is not older than 10.7.
  explicit Catalogue(const Json& resource);

  struct Place {
    int category = -1;
    int command = -1;
    friend bool operator==(const Place&, const Place&) = default;
  };

  std::optional<Place> find(int command) const;
  int categories() const { return static_cast<int>(fCategories.size()); }
  int commands(int category) const;  // 0 for none
  int commandAt(Place place) const;  // a row that is not selected (-1) counts as the first
  std::string titleOf(int command, const Json& snippets) const;  // empty when it is not there

 private:
  struct Command {
    int code;
    std::string title;
  };

  std::vector<std::vector<Command>> fCategories;
};

// The name that a snippet is shown by; empty when it has none.
std::string snippetName(const Json& snippets, int index);
std::string snippetText(const Json& snippets, int index);

inline constexpr int kFirstSnippet = 180;
inline constexpr int kLastSnippet = 189;

}  // namespace veltrix::model
