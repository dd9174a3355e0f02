#include "editor/snippet_edit.h"

#include <gtest/gtest.h>

namespace veltrix {
namespace {

using plist::Array;
using plist::Dictionary;

Dictionary makeSnippet(const char* name, const char* text) {
  Dictionary snippet = Dictionary::create();
  snippet.set("name", name);
  snippet.set("text", text);
  return snippet;
}

TEST(SnippetEdit, ChangesTheListItself) {
  const Dictionary snippet = makeSnippet("Greeting", "Hello");
  Array snippets = Array::create();
  snippets.append(snippet);
  setSnippetName(snippets, 0, "Farewell");
  setSnippetText(snippets, 0, "Good bye\nand good luck");
  EXPECT_EQ(snippet.stringFor("name"), "Farewell");
  EXPECT_EQ(snippet.stringFor("text"), "Good bye\nand good luck");
}

TEST(SnippetEdit, FillsAShortListUpWithEmptySnippets) {
  const Array snippets = Array::create();
  setSnippetText(snippets, 3, "Hello");
  ASSERT_EQ(snippets.count(), 4U);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_FALSE(snippets.at(i).asDictionary().contains("name"));
    EXPECT_EQ(snippets.at(i).asDictionary().get("text").type(), plist::Type::kString);
    EXPECT_EQ(snippetText(snippets, static_cast<std::int32_t>(i)), "");
  }
  EXPECT_EQ(snippetText(snippets, 3), "Hello");
}

TEST(SnippetEdit, KeepsWhatStandsInTheListAlready) {
  Array snippets = Array::create();
  snippets.append(makeSnippet("Greeting", "Hello"));
  setSnippetName(snippets, 9, "Last");
  EXPECT_EQ(snippets.count(), 10U);
  EXPECT_EQ(snippets.at(0).asDictionary().stringFor("name"), "Greeting");
  EXPECT_EQ(snippets.at(9).asDictionary().stringFor("name"), "Last");
}

TEST(SnippetEdit, PutsASnippetInThePlaceOfSomethingElse) {
  Array snippets = Array::create();
  snippets.append("no snippet");
  EXPECT_EQ(snippetText(snippets, 0), "");
  setSnippetName(snippets, 0, "Greeting");
  EXPECT_EQ(snippets.at(0).asDictionary().stringFor("name"), "Greeting");
}

TEST(SnippetEdit, NeverGrowsTheListBeyondTenOrWithoutAList) {
  const Array snippets = Array::create();
  setSnippetName(snippets, 10, "Eleventh");
  setSnippetName(snippets, -1, "Before the first");
  EXPECT_EQ(snippets.count(), 0U);
  setSnippetName({}, 0, "Nowhere");
  EXPECT_EQ(snippetText({}, 0), "");
  EXPECT_EQ(snippetText(snippets, -1), "");
}

}  // namespace
}  // namespace veltrix
