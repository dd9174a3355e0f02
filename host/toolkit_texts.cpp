#include "host/toolkit_texts.h"

#include <QLibraryInfo>
#include <QTranslator>

namespace veltrix {

bool loadToolkitTexts(QTranslator* translator, const QLocale& locale) {
  return translator->load(locale, QStringLiteral("qtbase"), QStringLiteral("_"),
                          QLibraryInfo::path(QLibraryInfo::TranslationsPath));
}

}  // namespace veltrix
