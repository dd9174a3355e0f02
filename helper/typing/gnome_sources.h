#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace veltrix {

// A source of input as GNOME's settings name it: a layout ("xkb", "de+nodeadkeys") or a method ("ibus", ...).
struct InputSource {
  std::string kind;
  std::string name;

  friend bool operator==(const InputSource& a, const InputSource& b) = default;
};

// Pairs of texts as gsettings prints them: "[('xkb', 'us'), ('ibus', 'anthy')]", "@a(ss) []". Nothing when it
// is anything else.
std::optional<std::vector<InputSource>> inputSources(std::string_view printed);

// The group of GNOME's keymap that is on, by the keys of "org.gnome.desktop.input-sources" as gsettings lists
// them: "sources" in their order, and "mru-sources", the one in use first. Nothing without a layout.
//
// A keymap has room for four groups. GNOME gives it three of the layouts and puts the one of the language
// behind them; the fourth layout is the first of another keymap, and so on. Methods count for nothing: they
// write by the layout that was in use before them.
std::optional<std::uint32_t> groupOfSources(std::string_view listed);

}  // namespace veltrix
