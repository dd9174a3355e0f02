#include "platform/compose_table.h"

#include <cstdlib>

namespace veltrix::xkb {
namespace {

constexpr const char* kEnglish = "en_US.UTF-8";

ComposeTable tableOf(xkb_context* context, const char* locale) {
  return ComposeTable(xkb_compose_table_new_from_locale(context, locale, XKB_COMPOSE_COMPILE_NO_FLAGS));
}

// The one called C has a table of its own, but for another encoding.
bool hasTable(const std::string& locale) {
  return !locale.empty() && locale != "C" && locale != "POSIX";
}

}  // namespace

std::string composeLocale() {
  for (const char* variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const char* value = std::getenv(variable);
    if (value != nullptr && *value != '\0') {
      return value;
    }
  }
  return kEnglish;
}

ComposeTable composeTableOf(xkb_context* context, const std::string& locale) {
  auto table = hasTable(locale) ? tableOf(context, locale.c_str()) : nullptr;
  return table ? std::move(table) : tableOf(context, kEnglish);
}

}  // namespace veltrix::xkb
