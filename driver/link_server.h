#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "driver/active_user.h"
#include "driver/helper_channel.h"
#include "driver/poll_loop.h"
#include "driver/request_reader.h"
#include "util/file_descriptor.h"
#include "util/result.h"

namespace veltrix {

struct LinkServerOptions {
  // Where to listen when the service manager has passed no socket.
  std::string socketPath = kDriverSocketPath;
  // At most 23 bytes of it are told.
  std::string driverVersion;
};

// The driver's end of the connection. Listens to the helper of the user at the screen and to nobody else: to
// one at a time, a newer one of the same user takes the place. Whoever breaks a rule, does not read, or is no
// longer the user at the screen is told why and loses the connection. Says on standard error whom it refuses.
class LinkServer final : public HelperChannel, private ActiveUserListener {
 public:
  // All three must outlive the server.
  LinkServer(PollLoop& loop, ActiveUser& user, HelperRequests& requests, LinkServerOptions options);
  ~LinkServer() override;
  LinkServer(const LinkServer&) = delete;
  LinkServer& operator=(const LinkServer&) = delete;

  // Takes the socket that the service manager has passed, else makes one that everybody may connect to:
  // whose connection it is decides. An error when there is another driver, or no place for the socket.
  Status start();

  // Ends the connection with that answer and listens no more; a socket of its own is removed.
  void stop(DriverAnswer answer) noexcept;

  void send(std::span<const std::byte> packet) noexcept override;

  bool connected() const noexcept { return static_cast<bool>(fHelper); }

 private:
  // A descriptor's way to its member function.
  class Port final : public PollHandler {
   public:
    using Callback = void (LinkServer::*)() noexcept;
    Port(LinkServer& server, Callback callback) noexcept : fServer(server), fCallback(callback) {}
    void ready(std::uint32_t /*events*/) noexcept override { (fServer.*fCallback)(); }

   private:
    LinkServer& fServer;
    Callback fCallback;
  };

  void activeUserChanged() noexcept override;
  void acceptSome() noexcept;
  void judge(FileDescriptor socket) noexcept;
  void admit(FileDescriptor socket, uid_t user) noexcept;
  void readSome() noexcept;
  void disconnect(std::optional<DriverAnswer> answer) noexcept;
  void listenAgain() noexcept;
  void pauseListening(int error) noexcept;
  StatusPacket statusPacket(DriverAnswer answer) const noexcept;

  PollLoop& fLoop;
  ActiveUser& fUser;
  HelperRequests& fRequests;
  LinkServerOptions fOptions;
  RequestReader fReader;
  Port fListenerPort{*this, &LinkServer::acceptSome};
  Port fHelperPort{*this, &LinkServer::readSome};
  Port fPausePort{*this, &LinkServer::listenAgain};
  FileDescriptor fListener;
  FileDescriptor fPause;  // fires when it is time to listen again
  FileDescriptor fHelper;
  uid_t fHelperUser = 0;
  std::optional<uid_t> fLastRefused;  // so that a stubborn one fills no journal
  bool fListening = false;
  bool fOwnsPath = false;
};

}  // namespace veltrix
