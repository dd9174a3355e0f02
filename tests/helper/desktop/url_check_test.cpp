#include "helper/desktop/url_check.h"

#include <gmock/gmock.h>

#include <rapidcheck/gtest.h>
#include <string>

namespace veltrix {
namespace {

using ::testing::HasSubstr;
using namespace std::string_literals;

TEST(CheckUrl, AddressesOfAnySchemeAreTaken) {
  for (const char* url : {"https://example.org/a?b=c#d", "HTTP://example.org", "mailto:anna@example.org",
                          "tel:+43123", "x-my.scheme+1:anything;'$(reboot)`", "irc://example.org/ä"}) {
    EXPECT_TRUE(checkUrl(url)) << url;
  }
}

TEST(CheckUrl, SchemesThatReadFilesOrRunTheirTextAreRefusedInAnyCase) {
  for (const char* url : {"file:///etc/passwd", "FILE:/etc/passwd", "javascript:alert(1)", "JavaScript:x",
                          "data:text/html,x", "vbscript:x"}) {
    const Status status = checkUrl(url);
    ASSERT_FALSE(status) << url;
    EXPECT_THAT(status.error().message, HasSubstr("which a button may not open"));
  }
}

TEST(CheckUrl, TextWithoutASchemeIsRefused) {
  for (const char* url : {"example.org", "/etc/passwd", "--help", "-a:b", "1a:b", ":b", "a:", "ä:b", "a b:c",
                          "a/b:c", "%66ile:///etc/passwd", "~"}) {
    EXPECT_FALSE(checkUrl(url)) << url;
  }
}

TEST(CheckUrl, BlanksAndControlCharactersAreRefused) {
  for (const std::string& url : {"https://a b"s, " https://a"s, "https://a\n"s, "java\nscript:x"s,
                                 "https://a\0b"s, "https://a\x7F"s, "https://a\t"s}) {
    const Status status = checkUrl(url);
    ASSERT_FALSE(status) << url;
    EXPECT_THAT(status.error().message, HasSubstr("blank or a control character"));
    EXPECT_EQ(status.error().message.find('\n'), std::string::npos);
  }
}

TEST(CheckUrl, LengthIsLimited) {
  const std::string start = "https://";
  EXPECT_TRUE(checkUrl(start + std::string(kLongestUrl - start.size(), 'a')));
  EXPECT_FALSE(checkUrl(start + std::string(kLongestUrl - start.size() + 1, 'a')));
  EXPECT_FALSE(checkUrl(""));
}

RC_GTEST_PROP(CheckUrlProperty, WhatIsTakenBeginsWithALetterAndHasNoBlank, (const std::string& text)) {
  for (const std::string& url : {text, "https:" + text}) {
    if (checkUrl(url)) {
      RC_ASSERT((url.front() | 0x20) >= 'a' && (url.front() | 0x20) <= 'z');
      for (const char character : url) {
        RC_ASSERT(!(character >= '\0' && character <= ' '));
      }
    }
  }
}

}  // namespace
}  // namespace veltrix
