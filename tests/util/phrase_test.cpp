#include "util/phrase.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <map>

#include "util/system_error.h"

namespace veltrix {
namespace {

std::string german(const std::string& english) {
  static const std::map<std::string, std::string> kTexts = {{"%1 ends with %2", "mit %2 endet %1"},
                                                            {"cannot read %1: %2", "%1 ist unlesbar: %2"},
                                                            {"signal %1", "Signal %1"},
                                                            {"No such file or directory", "nicht da"}};
  const auto found = kTexts.find(english);
  return found != kTexts.end() ? found->second : english;
}

TEST(Phrase, IsSaidInEnglishAndInAnotherLanguageWithItsArgumentsWhereTheyBelong) {
  const Phrase phrase{"%1 ends with %2", {given("signal"), {"signal %1", {given("KILL")}}}};
  EXPECT_EQ(said(phrase), "signal ends with signal KILL");
  EXPECT_EQ(said(phrase, german), "mit Signal KILL endet signal");
}

TEST(Phrase, ArgumentsAreLeftAsTheyAre) {
  EXPECT_EQ(said({"%1 ends with %2", {given("100%2"), given("%1")}}, german), "mit %1 endet 100%2");
  EXPECT_EQ(said(given("signal %1"), german), "signal %1");
}

TEST(Phrase, PlacesWithoutAnArgumentAreText) {
  EXPECT_EQ(said({"%1 of %2, %0, 5%", {given("a")}}), "a of %2, %0, 5%");
}

TEST(Phrase, ErrorHasItsEnglishMessageAndKeepsThePhrase) {
  const Error error = phrasedError(ENOENT, {"signal %1", {given("KILL")}});
  EXPECT_EQ(error.code, ENOENT);
  EXPECT_EQ(error.message, "signal KILL");
  EXPECT_EQ(said(phraseOf(error), german), "Signal KILL");
}

TEST(Phrase, ErrorWithoutOneHasItsMessage) {
  EXPECT_EQ(said(phraseOf(Error{0, "No such file or directory", {}}), german), "nicht da");
}

TEST(Phrase, ErrorOfTheSystemIsAPhrase) {
  EXPECT_EQ(said(phraseOf(systemError(ENOENT, "cannot read", "/a%1")), german),
            "/a%1 ist unlesbar: nicht da");
}

}  // namespace
}  // namespace veltrix
