// How the action editor shows an action.
#include "tests/support/editor_fixture.h"

namespace veltrix::testing {
namespace {

class EditShowingTest : public EditControllerTest {
 protected:
  void expectPlace(int category, int row) {
    EXPECT_EQ(selected(0), category);
    EXPECT_EQ(selected(1), row);
  }

  bool isChecked(const char* name) const { return find<QCheckBox>(name)->isChecked(); }
};

TEST_F(EditShowingTest, AClickShowsItsModifiers) {
  showAction(makeDictionary({{"cmd", 12}, {"mod", 0x1800}}), [&] {
    expectPlace(0, 2);
    EXPECT_EQ(page(), 1);
    EXPECT_TRUE(isChecked("outActClickBoxControl"));
    EXPECT_FALSE(isChecked("outActClickBoxCommand"));
    EXPECT_TRUE(isChecked("outActClickBoxOption"));
    EXPECT_FALSE(isChecked("outActClickBoxShift"));
  });
}

TEST_F(EditShowingTest, AKeystrokeShowsItsKeyAndModifiers) {
  showAction(makeDictionary({{"cmd", 10}, {"key", 49}, {"mod", 0x0300}}), [&] {
    expectPlace(1, 0);
    EXPECT_EQ(page(), 2);
    EXPECT_FALSE(text("outActKeyFieldKeystroke").isEmpty());
    EXPECT_TRUE(isChecked("outActKeyBoxCommand"));
    EXPECT_TRUE(isChecked("outActKeyBoxShift"));
    EXPECT_FALSE(isChecked("outActKeyBoxControl"));
    EXPECT_FALSE(isChecked("outActKeyBoxOption"));
  });
}

TEST_F(EditShowingTest, AKeystrokeWithoutAKeyIsAnEmptyField) {
  showAction(makeDictionary({{"cmd", 10}, {"key", 49}, {"mod", 0}}), [] {});
  showAction(makeDictionary({{"cmd", 10}, {"key", 255}, {"mod", 0x0100}}), [&] {
    EXPECT_EQ(text("outActKeyFieldKeystroke"), "");
    EXPECT_TRUE(isChecked("outActKeyBoxCommand"));
  });
}

TEST_F(EditShowingTest, ASnippetShowsItsNameAndText) {
  snippets.append(makeDictionary({{"name", "Snippet 1"}, {"text", "one"}}));
  snippets.append(makeDictionary({{"text", "two"}}));
  snippets.append(makeDictionary({{"name", "Greeting"}, {"text", "Hello\nthere\n"}}));
  showAction(makeDictionary({{"cmd", 182}}), [&] {
    expectPlace(4, 1);
    EXPECT_EQ(page(), 3);
    EXPECT_EQ(text("outActSnippetFieldName"), "Greeting");
    EXPECT_EQ(find<QPlainTextEdit>("outActSnippetFieldText")->toPlainText(), "Hello\nthere\n");
    EXPECT_EQ(column(1).title(1), "Greeting");
  });
  showAction(makeDictionary({{"cmd", 180}}), [&] { EXPECT_EQ(text("outActSnippetFieldName"), "Snippet 1"); });
  showAction(makeDictionary({{"cmd", 189}}), [&] {
    EXPECT_EQ(text("outActSnippetFieldName"), "");
    EXPECT_EQ(find<QPlainTextEdit>("outActSnippetFieldText")->toPlainText(), "");
  });
}

TEST_F(EditShowingTest, AScrollShowsTheItemOfItsMagnitude) {
  showAction(makeDictionary({{"cmd", 23}, {"cnt", -3}}), [&] {
    expectPlace(2, 1);
    EXPECT_EQ(page(), 4);
    EXPECT_EQ(find<QComboBox>("outActScrollMenuSpeed")->currentData(), 3);
  });
}

TEST_F(EditShowingTest, AScrollThatNoItemHasLeavesThePopUpAlone) {
  showAction(makeDictionary({{"cmd", 20}, {"cnt", 5}}), [] {});
  showAction(makeDictionary({{"cmd", 20}, {"cnt", 500}}),
             [&] { EXPECT_EQ(find<QComboBox>("outActScrollMenuSpeed")->currentData(), 5); });
}

TEST_F(EditShowingTest, AnApplicationShowsItsNameElseItsIdentifierElseADash) {
  const auto shown = [&](plist::Dictionary action) {
    QString result;
    showAction(std::move(action), [&] {
      EXPECT_EQ(page(), 5);
      result = text("outActAppFieldApp");
    });
    return result;
  };
  EXPECT_EQ(shown(makeDictionary({{"cmd", 71}, {"str", "Viewer"}, {"bndl", "a.b"}})), "Viewer");
  EXPECT_EQ(shown(makeDictionary({{"cmd", 71}, {"str", ""}, {"bndl", "a.b"}})), "a.b");
  EXPECT_EQ(shown(makeDictionary({{"cmd", 71}})), "-");
}

TEST_F(EditShowingTest, AnItemShowsItsPathElseADash) {
  showAction(makeDictionary({{"cmd", 70}, {"str", "~/Documents"}}), [&] {
    EXPECT_EQ(page(), 6);
    EXPECT_EQ(text("outActItemFieldItem"), "~/Documents");
  });
  showAction(makeDictionary({{"cmd", 70}, {"str", ""}}),
             [&] { EXPECT_EQ(text("outActItemFieldItem"), "-"); });
}

TEST_F(EditShowingTest, AnAddressAndAScriptShowTheirText) {
  showAction(makeDictionary({{"cmd", 72}, {"str", "https://example.org"}}), [&] {
    EXPECT_EQ(page(), 7);
    EXPECT_EQ(text("outActURLFieldURL"), "https://example.org");
  });
  showAction(makeDictionary({{"cmd", 73}, {"str", "one\ntwo"}}), [&] {
    EXPECT_EQ(page(), 8);
    EXPECT_EQ(find<QPlainTextEdit>("outActAppleScriptFieldScript")->toPlainText(), "one\ntwo");
  });
}

TEST_F(EditShowingTest, AnyOtherCommandShowsTheEmptyPage) {
  showAction(makeDictionary({{"cmd", 11}}), [&] {
    expectPlace(1, 1);
    EXPECT_EQ(page(), 0);
  });
}

TEST_F(EditShowingTest, ACommandInTwoCategoriesIsSelectedInTheFirst) {
  showAction(makeDictionary({{"cmd", 1}}), [&] { expectPlace(0, 0); });
}

TEST_F(EditShowingTest, AnUnknownCommandSelectsNothingAndShowsTheEmptyPage) {
  showAction(makeDictionary({{"cmd", 9999}}), [&] {
    expectPlace(-1, -1);
    EXPECT_EQ(page(), 0);
    EXPECT_TRUE(column(0).hasFocus());
  });
}

TEST_F(EditShowingTest, AnUnknownCommandLeavesTheSelectionAsItWas) {
  showAction(makeDictionary({{"cmd", 23}}), [] {});
  showAction(makeDictionary({{"cmd", 9999}}), [&] { expectPlace(2, 1); });
}

TEST_F(EditShowingTest, TheLabelIsShownOrEmpty) {
  showAction(makeDictionary({{"cmd", 1}, {"label", "Mine"}}),
             [&] { EXPECT_EQ(text("outMainFieldLabel"), "Mine"); });
  showAction(makeDictionary({{"cmd", 1}}), [&] { EXPECT_EQ(text("outMainFieldLabel"), ""); });
  showAction(makeDictionary({{"cmd", 1}, {"label", 5}}), [&] { EXPECT_EQ(text("outMainFieldLabel"), ""); });
}

TEST_F(EditShowingTest, ShowingChangesNothingInTheAction) {
  for (const int command : {1, 10, 11, 23, 70, 71, 72, 73, 182}) {
    const auto before = makeDictionary({{"cmd", command}, {"mod", 0x1400}, {"cnt", -3}, {"key", 0x131}});
    EXPECT_TRUE(plist::equal(editAction(before, [] {}), before)) << command;
  }
}

}  // namespace
}  // namespace veltrix::testing
