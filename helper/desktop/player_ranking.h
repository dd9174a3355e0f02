#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace veltrix {

// The media players of a session, and which of them a person means: the one that plays, the last that began
// where several do; else the last that played or was paused; else the first that was found.
class PlayerRanking {
 public:
  // The player of this name has this connection now, until the connection is empty.
  void setOwner(const std::string& name, const std::string& connection);

  // What a connection says of its players ("Playing", "Paused", "Stopped").
  void setStatus(std::string_view connection, std::string_view status);
  // What a player says about itself when it is asked, which is no activity.
  void learnStatus(std::string_view name, std::string_view status);

  // The connection of the player that is meant; empty when there is none.
  std::string best() const;

 private:
  struct Player {
    std::string name;
    std::string connection;
    bool plays = false;
    std::uint64_t lastActive = 0;  // counts up; 0 when it was never seen to do anything
  };

  std::vector<Player> fPlayers;
  std::uint64_t fActivity = 0;
};

}  // namespace veltrix
