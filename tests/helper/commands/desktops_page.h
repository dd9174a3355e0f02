#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "helper/commands/command_table.h"

namespace veltrix::testing {

// The sessions that the table tells apart, with the names that the page has for them.
struct NamedSession {
  const char* name;
  SessionKind kind;
};
const std::vector<NamedSession>& namedSessions();

// What the table does in this session, in words: "Alt+F4", or "a, then b".
std::string wordsFor(std::uint16_t command, const SessionKind& session);

// The table of docs/desktops.md for commands with these titles, in this order.
std::string desktopsTable(const std::vector<std::pair<std::uint16_t, std::string>>& commands);

}  // namespace veltrix::testing
