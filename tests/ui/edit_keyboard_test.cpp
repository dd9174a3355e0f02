// Using the action editor without a mouse, with a screen reader, or with large letters.
#include <QAbstractButton>
#include <QLabel>
#include <QStackedWidget>
#include <QTest>
#include <set>

#include "pane/table_translator.h"
#include "tests/support/editor_fixture.h"
#include "tests/support/thread_locale.h"

namespace veltrix::testing {
namespace {

// One action of each kind, in the order of the pages.
const int kCommandOfPage[] = {11, 1, 10, 182, 20, 71, 70, 72, 73};

class EditKeyboardTest : public EditControllerTest {
 protected:
  // The widgets that Tab visits from the focus on, until it comes back.
  std::vector<QWidget*> tabOrder() {
    std::vector<QWidget*> order;
    QWidget* const start = QApplication::focusWidget();
    do {
      order.push_back(QApplication::focusWidget());
      press(Qt::Key_Tab);
    } while (QApplication::focusWidget() != start && order.size() < 40);
    return order;
  }

  // The widgets that a person can use.
  std::set<QWidget*> usable() const {
    std::set<QWidget*> result;
    for (QWidget* widget : dialog->findChildren<QWidget*>()) {
      if (widget->isVisible() && (widget->focusPolicy() & Qt::TabFocus) != 0) {
        result.insert(widget);
      }
    }
    return result;
  }

  void expectDistinctLetters() {
    for (const int command : kCommandOfPage) {
      showAction(makeDictionary({{"cmd", command}, {"key", 255}}), [&] {
        std::multiset<QString> letters;
        for (const QLabel* label : dialog->findChildren<QLabel*>()) {
          if (label->isVisible() && label->buddy() != nullptr) {
            letters.insert(QKeySequence::mnemonic(label->text()).toString());
          }
        }
        for (const QAbstractButton* button : dialog->findChildren<QAbstractButton*>()) {
          if (button->isVisible()) {
            letters.insert(QKeySequence::mnemonic(button->text()).toString());
          }
        }
        letters.erase(QString());
        EXPECT_EQ(std::set<QString>(letters.begin(), letters.end()).size(), letters.size()) << command;
      });
    }
  }
};

TEST_F(EditKeyboardTest, TheKeysBeginInTheCommands) {
  for (int i = 0; i < 2; ++i) {
    showAction(makeDictionary({{"cmd", 70}}), [&] {
      EXPECT_TRUE(column(1).hasFocus());
      find("outMainFieldLabel")->setFocus();
    });
  }
}

TEST_F(EditKeyboardTest, TabVisitsEveryControlOfEveryPageOnce) {
  for (const int command : kCommandOfPage) {
    showAction(makeDictionary({{"cmd", command}, {"key", 255}}), [&] {
      const auto order = tabOrder();
      EXPECT_EQ(std::set<QWidget*>(order.begin(), order.end()), usable()) << command;
      EXPECT_EQ(order.size(), usable().size()) << command;
    });
  }
}

TEST_F(EditKeyboardTest, TabGoesDownTheDialog) {
  for (const int command : kCommandOfPage) {
    showAction(makeDictionary({{"cmd", command}, {"key", 255}}), [&] {
      column(0).setFocus();
      const auto order = tabOrder();
      int last = 0;
      for (QWidget* widget : order) {
        const int top = widget->mapTo(dialog, QPoint()).y();
        EXPECT_GE(top + widget->height(), last) << command << " " << widget->objectName().toStdString();
        last = top;
      }
    });
  }
}

TEST_F(EditKeyboardTest, EveryControlHasANameThatAScreenReaderSays) {
  for (const int command : kCommandOfPage) {
    showAction(makeDictionary({{"cmd", command}, {"key", 255}}), [&] {
      const auto labels = dialog->findChildren<QLabel*>();
      for (QWidget* widget : usable()) {
        const auto* button = qobject_cast<QAbstractButton*>(widget);
        const bool labelled = std::any_of(labels.begin(), labels.end(),
                                          [&](const QLabel* label) { return label->buddy() == widget; });
        EXPECT_TRUE(labelled || !widget->accessibleName().isEmpty() ||
                    (button != nullptr && !button->text().isEmpty()))
            << widget->objectName().toStdString();
      }
    });
  }
}

TEST_F(EditKeyboardTest, NoLetterLeadsToTwoControlsOfAPage) {
  expectDistinctLetters();
}

TEST_F(EditKeyboardTest, NoLetterLeadsToTwoControlsOfAPageInGerman) {
  const ThreadLanguage german("de");
  const Bundle bundle = Bundle::standard();
  TableTranslator translator(bundle);  // as the pane does
  QCoreApplication::installTranslator(&translator);
  makeControllerOfTheCatalogue();
  showAction(makeDictionary({{"cmd", 71}}), [&] {
    EXPECT_EQ(dialog->windowTitle(), "Tastenbelegung");
    EXPECT_EQ(find("buttonActChooseApp")->accessibleName(), "Programm wählen");
    EXPECT_EQ(column(0).accessibleName(), "Kategorien der Befehle");
  });
  expectDistinctLetters();
}

TEST_F(EditKeyboardTest, TheSpaceBarOnAChooseButtonOpensItsSheet) {
  int opened = 0;
  controller->setChoosers({[&](QWidget*) {
                             ++opened;
                             return std::nullopt;
                           },
                           [&](QWidget*) {
                             ++opened;
                             return std::nullopt;
                           }});
  showAction(makeDictionary({{"cmd", 71}}), [&] {
    find("buttonActChooseApp")->setFocus();
    press(Qt::Key_Space);
  });
  showAction(makeDictionary({{"cmd", 70}}), [&] {
    find("buttonActChooseItem")->setFocus();
    press(Qt::Key_Space);
  });
  EXPECT_EQ(opened, 2);
}

TEST_F(EditKeyboardTest, TabLeavesTextsOfSeveralLines) {
  showAction(makeDictionary({{"cmd", 73}, {"str", "a"}}), [&] {
    find("outActAppleScriptFieldScript")->setFocus();
    press(Qt::Key_Tab);
    EXPECT_FALSE(find("outActAppleScriptFieldScript")->hasFocus());
    EXPECT_EQ(controller->vtxGetCurrentAction().stringFor("str"), "a");
  });
}

TEST_F(EditKeyboardTest, NothingIsCutOffInLargeLetters) {
  const QFont usual = QApplication::font();
  QFont large = usual;
  large.setPointSizeF(usual.pointSizeF() * 2);
  QApplication::setFont(large);
  makeControllerOfTheCatalogue();
  for (const int command : kCommandOfPage) {
    showAction(makeDictionary({{"cmd", command}, {"key", 255}}), [&] {
      for (QLabel* label : dialog->findChildren<QLabel*>()) {
        if (label->isVisible()) {
          const int needed =
              label->wordWrap() ? label->heightForWidth(label->width()) : label->sizeHint().height();
          EXPECT_GE(label->height(), needed) << label->text().toStdString();
          EXPECT_TRUE(label->wordWrap() || label->width() >= label->sizeHint().width())
              << label->text().toStdString();
        }
      }
      for (QAbstractButton* button : dialog->findChildren<QAbstractButton*>()) {
        EXPECT_TRUE(!button->isVisible() || button->width() >= button->minimumSizeHint().width())
            << button->text().toStdString();
      }
    });
  }
  QApplication::setFont(usual);
}

}  // namespace
}  // namespace veltrix::testing
