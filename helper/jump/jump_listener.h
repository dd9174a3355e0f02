#pragma once

#include <string>

namespace veltrix {

// Listens for dialogs on the accessibility bus and moves the pointer to their default buttons, until the
// other end of `helper`, a connected socket, is closed. Writes a JumpMessage there when it listens and after
// each dialog. Why it ended otherwise, one line; empty when it ended as asked. Once in a process.
std::string listenForDialogs(int helper);

}  // namespace veltrix
