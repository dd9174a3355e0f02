#include "host/toolkit_texts.h"

#include <gtest/gtest.h>

#include <QTranslator>

namespace veltrix {
namespace {

TEST(ToolkitTexts, SpeakTheUsersLanguage) {
  QTranslator translator;
  ASSERT_TRUE(loadToolkitTexts(&translator, QLocale(QLocale::German, QLocale::Austria)));
  const QString text = translator.translate("QFileDialog", "Look in:");
  EXPECT_FALSE(text.isEmpty());
  EXPECT_NE(text, QStringLiteral("Look in:"));
}

TEST(ToolkitTexts, StayEnglishWithoutALanguage) {
  QTranslator translator;
  EXPECT_FALSE(loadToolkitTexts(&translator, QLocale::c()));
  EXPECT_TRUE(translator.isEmpty());
}

}  // namespace
}  // namespace veltrix
