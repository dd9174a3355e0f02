#pragma once

// Where the buttons of the help page lead.
namespace veltrix {

inline constexpr const char* kProductUrl = "https://veltrix.aldmoor.example/";
inline constexpr const char* kSupportUrl = "https://veltrix.aldmoor.example/support";

// Whatever system it runs on, the pane asks for this path; the one that comes with the programs is opened.
inline constexpr const char* kUninstallerPath = "/Applications/Utilities/Veltrix Uninstaller.app";

// Tags of the buttons.
inline constexpr int kProductLinkTag = 1;
inline constexpr int kSupportLinkTag = 2;
inline constexpr int kUninstallerLinkTag = 100;

}  // namespace veltrix
