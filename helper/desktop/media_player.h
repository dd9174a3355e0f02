#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "helper/commands/command_session.h"
#include "helper/desktop/pending_calls.h"
#include "helper/desktop/player_ranking.h"
#include "platform/session_bus.h"

struct sd_bus;

namespace veltrix {

// Controls the media player that was active last, over MPRIS. Watches the players from its beginning, so
// that it knows.
class MediaPlayers {
 public:
  // The loop and the connection must outlive the object.
  MediaPlayers(sd_event* loop, sd_bus* session, std::chrono::milliseconds limit);

  // An error when there is no player, or none that can seek.
  void control(const PlayerAttempt& attempt, Ended ended);

  // For the bus: a player says what changed; a name has another connection.
  void propertiesChanged(sd_bus_message* message);
  void ownerChanged(sd_bus_message* message);

 private:
  void watch();
  void listPlayers();
  void ask(const std::string& name);
  void answered();
  void seek(const std::string& connection, std::int64_t offset, const Ended& ended);
  void tell(const std::string& connection, const PlayerAttempt& attempt, const Ended& ended);
  void getProperty(const std::string& service, const char* property, PendingCalls::Answered answered);

  sd_bus* fSession;
  std::chrono::milliseconds fLimit;
  PlayerRanking fRanking;
  std::size_t fQuestions = 0;                   // that the players have not answered
  std::vector<std::function<void()>> fWaiting;  // for their answers
  BusSlotHandle fPropertiesMatch;
  BusSlotHandle fOwnersMatch;
  PendingCalls fCalls;
};

}  // namespace veltrix
