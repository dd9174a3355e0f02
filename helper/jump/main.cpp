#include <sys/socket.h>

#include <cstdio>
#include <string>

#include "helper/jump/jump_listener.h"
#include "platform/program_start.h"

namespace {

constexpr int kExitDone = 0;
constexpr int kExitFailed = 1;
constexpr int kExitUsage = 2;

bool isSocket(int descriptor) {
  int type = 0;
  socklen_t size = sizeof type;
  return getsockopt(descriptor, SOL_SOCKET, SO_TYPE, &type, &size) == 0 && type == SOCK_SEQPACKET;
}

}  // namespace

int main(int argc, char** /*argv*/) {
  if (argc > 1 || !isSocket(veltrix::kExtraDescriptor)) {
    std::fputs("veltrix-jump: VeltrixHelper starts this program; it is of no use alone\n", stderr);
    return kExitUsage;
  }
  const std::string problem = veltrix::listenForDialogs(veltrix::kExtraDescriptor);
  if (problem.empty())
    return kExitDone;
  std::fprintf(stderr, "veltrix-jump: %s\n", problem.c_str());
  return kExitFailed;
}
