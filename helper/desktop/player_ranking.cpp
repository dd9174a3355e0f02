#include "helper/desktop/player_ranking.h"

#include <algorithm>
#include <utility>

namespace veltrix {

void PlayerRanking::setOwner(const std::string& name, const std::string& connection) {
  const auto known = std::find_if(fPlayers.begin(), fPlayers.end(),
                                  [&](const Player& player) { return player.name == name; });
  if (known == fPlayers.end()) {
    if (!connection.empty()) {
      fPlayers.push_back({name, connection});
    }
  } else if (connection.empty()) {
    fPlayers.erase(known);
  } else if (known->connection != connection) {
    *known = {name, connection};
  }
}

void PlayerRanking::setStatus(std::string_view connection, std::string_view status) {
  for (Player& player : fPlayers) {
    if (player.connection == connection) {
      player.plays = status == "Playing";
      player.lastActive = status == "Stopped" ? player.lastActive : ++fActivity;
    }
  }
}

void PlayerRanking::learnStatus(std::string_view name, std::string_view status) {
  for (Player& player : fPlayers) {
    if (player.name == name && player.lastActive == 0) {
      player.plays = status == "Playing";
    }
  }
}

std::string PlayerRanking::best() const {
  const auto rank = [](const Player& player) { return std::pair(player.plays, player.lastActive); };
  // The first of equals.
  const auto best = std::max_element(fPlayers.begin(), fPlayers.end(),
                                     [&](const Player& a, const Player& b) { return rank(a) < rank(b); });
  return best == fPlayers.end() ? std::string() : best->connection;
}

}  // namespace veltrix
