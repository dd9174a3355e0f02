#pragma once

#include <string>

#include "util/result.h"

// What the desktop does for a program. Nothing here waits for what it has started, none goes through a shell,
// and what is started outlives this process. The errors of the openers themselves are not known.
namespace veltrix {

// Starts the application in the folder PATH ("Name.app", its program is PATH/Name).
Status launchApplication(const std::string& path);

// Opens a file or folder with what the user prefers for it, and starts an application folder. The path must
// be absolute and exist.
Status openFile(const std::string& path);

// Opens an address, "scheme:rest", with what the user prefers for it.
Status openUrl(const std::string& url);

// Asks the file manager to show the folder of `path` (absolute, need not exist) with the file selected; when
// no file manager answers, the folder is opened. Works on a thread of its own: an error only says that it
// could not be begun.
Status selectFile(const std::string& path);

}  // namespace veltrix
