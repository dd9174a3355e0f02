#include "helper/desktop/media_player.h"

#include <systemd/sd-bus.h>

#include <cstring>
#include <string_view>

#include "util/phrase.h"

namespace veltrix {
namespace {

constexpr std::string_view kPrefix = "org.mpris.MediaPlayer2.";
constexpr const char* kPath = "/org/mpris/MediaPlayer2";
constexpr const char* kPlayer = "org.mpris.MediaPlayer2.Player";
constexpr const char* kStatus = "PlaybackStatus";

Error noPlayer() {
  return {0, "no media player runs", {}};
}

int changeArrived(sd_bus_message* message, void* players, sd_bus_error* /*error*/) {
  static_cast<MediaPlayers*>(players)->propertiesChanged(message);
  return 0;
}

int ownerArrived(sd_bus_message* message, void* players, sd_bus_error* /*error*/) {
  static_cast<MediaPlayers*>(players)->ownerChanged(message);
  return 0;
}

// Nothing when the variant holds no text.
const char* textOfVariant(sd_bus_message* message) {
  const char* text = nullptr;
  return sd_bus_message_read(message, "v", "s", &text) > 0 ? text : nullptr;
}

}  // namespace

MediaPlayers::MediaPlayers(sd_event* loop, sd_bus* session, std::chrono::milliseconds limit)
    : fSession(session), fLimit(limit), fCalls(loop) {
  watch();
  listPlayers();
}

void MediaPlayers::watch() {
  sd_bus_slot* slot = nullptr;
  sd_bus_match_signal_async(fSession, &slot, nullptr, kPath, "org.freedesktop.DBus.Properties",
                            "PropertiesChanged", changeArrived, nullptr, this);
  fPropertiesMatch.reset(slot);
  slot = nullptr;
  sd_bus_add_match_async(fSession, &slot,
                         "type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
                         "member='NameOwnerChanged',arg0namespace='org.mpris.MediaPlayer2'",
                         ownerArrived, nullptr, this);
  fOwnersMatch.reset(slot);
}

void MediaPlayers::listPlayers() {
  sd_bus_message* message = nullptr;
  sd_bus_message_new_method_call(fSession, &message, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                 "org.freedesktop.DBus", "ListNames");
  const BusMessageHandle handle(message);
  ++fQuestions;
  fCalls.send(fSession, message, fLimit, [this](sd_bus_message* reply, const Status& /*status*/) {
    if (reply != nullptr && sd_bus_message_enter_container(reply, 'a', "s") > 0) {
      for (const char* name = nullptr; sd_bus_message_read(reply, "s", &name) > 0;) {
        if (std::string_view(name).starts_with(kPrefix)) {
          ask(name);
        }
      }
    }
    answered();
  });
}

// Its answer carries the connection that signals will come from.
void MediaPlayers::ask(const std::string& name) {
  ++fQuestions;
  getProperty(name, kStatus, [this, name](sd_bus_message* reply, const Status& /*status*/) {
    if (reply != nullptr && sd_bus_message_get_sender(reply) != nullptr) {
      fRanking.setOwner(name, sd_bus_message_get_sender(reply));
      const char* const status = textOfVariant(reply);
      fRanking.learnStatus(name, status != nullptr ? status : "");
    }
    answered();
  });
}

void MediaPlayers::answered() {
  if (--fQuestions == 0) {
    for (const auto& action : std::exchange(fWaiting, {})) {
      action();
    }
  }
}

void MediaPlayers::propertiesChanged(sd_bus_message* message) {
  const char* interface = nullptr;
  const char* const sender = sd_bus_message_get_sender(message);
  if (sender == nullptr || sd_bus_message_read(message, "s", &interface) <= 0 ||
      std::strcmp(interface, kPlayer) != 0 || sd_bus_message_enter_container(message, 'a', "{sv}") <= 0) {
    return;
  }
  while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
    const char* property = nullptr;
    if (sd_bus_message_read(message, "s", &property) <= 0) {
      return;
    }
    if (std::strcmp(property, kStatus) == 0) {
      const char* const status = textOfVariant(message);
      fRanking.setStatus(sender, status != nullptr ? status : "Stopped");
      return;
    }
    if (sd_bus_message_skip(message, "v") < 0 || sd_bus_message_exit_container(message) < 0) {
      return;
    }
  }
}

void MediaPlayers::ownerChanged(sd_bus_message* message) {
  const char* name = nullptr;
  const char* before = nullptr;
  const char* now = nullptr;
  if (sd_bus_message_read(message, "sss", &name, &before, &now) > 0 &&
      std::string_view(name).starts_with(kPrefix)) {
    fRanking.setOwner(name, now);
    if (*now != '\0') {
      ask(name);
    }
  }
}

void MediaPlayers::control(const PlayerAttempt& attempt, Ended ended) {
  if (fQuestions != 0) {
    fWaiting.emplace_back([this, attempt, ended = std::move(ended)]() mutable { control(attempt, ended); });
    return;
  }
  const std::string connection = fRanking.best();
  if (connection.empty()) {
    ended(noPlayer());
  } else if (attempt.offset != 0) {
    seek(connection, attempt.offset, ended);
  } else {
    tell(connection, attempt, ended);
  }
}

void MediaPlayers::seek(const std::string& connection, std::int64_t offset, const Ended& ended) {
  getProperty(connection, "CanSeek", [this, connection, offset, ended](sd_bus_message* reply, const Status&) {
    int canSeek = 0;
    if (reply == nullptr || sd_bus_message_read(reply, "v", "b", &canSeek) <= 0 || canSeek == 0) {
      ended(Error{0, "the media player cannot seek", {}});
    } else {
      tell(connection, {"Seek", offset}, ended);
    }
  });
}

void MediaPlayers::tell(const std::string& connection, const PlayerAttempt& attempt, const Ended& ended) {
  sd_bus_message* message = nullptr;
  int result =
      sd_bus_message_new_method_call(fSession, &message, connection.c_str(), kPath, kPlayer, attempt.method);
  const BusMessageHandle handle(message);
  if (result >= 0) {
    result = sd_bus_message_set_auto_start(message, 0);
  }
  if (result >= 0 && attempt.offset != 0) {
    result = sd_bus_message_append(message, "x", attempt.offset);
  }
  if (result < 0) {
    ended(Error{-result, "cannot call the media player", {}});
    return;
  }
  fCalls.send(fSession, message, fLimit, [ended](sd_bus_message* /*reply*/, const Status& status) {
    ended(status ? status
                 : phrasedError(status.error().code, {"media player: %1", {phraseOf(status.error())}}));
  });
}

void MediaPlayers::getProperty(const std::string& service, const char* property,
                               PendingCalls::Answered answered) {
  sd_bus_message* message = nullptr;
  int result = sd_bus_message_new_method_call(fSession, &message, service.c_str(), kPath,
                                              "org.freedesktop.DBus.Properties", "Get");
  const BusMessageHandle handle(message);
  if (result >= 0) {
    result = sd_bus_message_set_auto_start(message, 0);
  }
  if (result >= 0) {
    result = sd_bus_message_append(message, "ss", kPlayer, property);
  }
  if (result < 0) {
    answered(nullptr, Error{-result, "cannot ask the media player", {}});
    return;
  }
  fCalls.send(fSession, message, fLimit, std::move(answered));
}

}  // namespace veltrix
