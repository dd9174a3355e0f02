#pragma once

#include <gtest/gtest.h>
#include <locale.h>

#include <optional>
#include <string>

#include "tests/support/environment.h"

namespace veltrix::testing {

// The calling thread works in the user's language `language` until the end of the scope; without one, in the
// C locale. Needs no generated locale.
class ThreadLanguage {
 public:
  explicit ThreadLanguage(const std::optional<std::string>& language)
      : fLanguage("LANGUAGE", language),
        fLocale(newlocale(LC_ALL_MASK, language ? "C.UTF-8" : "C", nullptr)),
        fOld(uselocale(fLocale)) {
    EXPECT_NE(fLocale, nullptr);
  }
  ~ThreadLanguage() {
    uselocale(fOld);
    freelocale(fLocale);
  }
  ThreadLanguage(const ThreadLanguage&) = delete;
  ThreadLanguage& operator=(const ThreadLanguage&) = delete;

 private:
  ScopedEnvironment fLanguage;
  locale_t fLocale;
  locale_t fOld;
};

}  // namespace veltrix::testing
