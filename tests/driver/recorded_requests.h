#pragma once

#include <string>
#include <vector>

#include "driver/helper_channel.h"

namespace veltrix::testing {

// Writes down what is asked for, in order.
class RecordedRequests final : public HelperRequests {
 public:
  bool hasOutputs() const noexcept override { return outputs; }
  void helperArrived() noexcept override { log.emplace_back("arrived"); }
  void apply(const ApplyPacket& packet) noexcept override {
    log.push_back("apply " + std::to_string(packet.device.product));
  }
  void withdraw(const WithdrawPacket& packet) noexcept override {
    log.push_back("withdraw " + std::to_string(packet.device.product));
  }
  bool typeKeys(const TypeKeysPacket& packet) noexcept override {
    log.push_back("type " + std::to_string(packet.id));
    return takesKeys;
  }
  void stopTyping() noexcept override { log.emplace_back("stop typing"); }
  void movePointer(const MovePointerPacket& packet) noexcept override {
    log.push_back("move " + std::to_string(packet.dx) + " " + std::to_string(packet.dy));
  }
  void monitor(bool wanted) noexcept override { log.emplace_back(wanted ? "monitor" : "no monitor"); }
  void helperGone() noexcept override { log.emplace_back("gone"); }

  std::vector<std::string> log;
  bool outputs = true;
  bool takesKeys = true;
};

}  // namespace veltrix::testing
