#include "pane/table_translator.h"

#include <string>

namespace veltrix {

TableTranslator::TableTranslator(const Bundle& bundle, QObject* parent)
    : QTranslator(parent), fBundle(bundle) {}

QString TableTranslator::translate(const char* /*context*/, const char* sourceText,
                                   const char* /*disambiguation*/, int /*n*/) const {
  if (sourceText == nullptr || *sourceText == '\0') {
    return {};
  }
  const std::string text = fBundle.localizedString(sourceText, "", kStringTable);
  // No answer lets other translators, those of the toolkit's own texts, have their turn.
  return text == sourceText ? QString() : QString::fromStdString(text);
}

}  // namespace veltrix
