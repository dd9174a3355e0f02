#pragma once

#include <string>
#include <string_view>

#include "util/result.h"

namespace veltrix {

// Replaces the file at `path` by `bytes` as one step: a reader and a crash at any moment see the old file or
// the new one, whole. Missing parent folders are created with mode 0700; the mode of a file that is there is
// kept, a new one gets 0600. A symbolic link is followed and stays a link. On an error the old file is
// untouched and no temporary file remains; the error carries errno.
Status writeFileAtomically(const std::string& path, std::string_view bytes);

// The same for a file that must not exist yet: EEXIST when something has that path, be it a link that leads
// nowhere.
Status writeNewFileAtomically(const std::string& path, std::string_view bytes);

// Moves a file that could not be used to "PATH.rejected", or to "PATH.rejected.2" and so on when that is
// taken, without ever replacing a file. A symbolic link stays and its target is moved, so that the next write
// through the link lies beside it. Returns the path that the file has now.
Result<std::string> keepRejectedFile(const std::string& path);

// Moves a file that keepRejectedFile moved to `kept` back to the name it had, unless that is taken again.
Status putRejectedFileBack(const std::string& kept);

}  // namespace veltrix
