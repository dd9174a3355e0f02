#include "pane/table_translator.h"

#include <string>
#include <string_view>

namespace veltrix {

namespace {

// Whether a text belongs to a class of the toolkit. Its buttons are asked for all the same: their few words
// are ours as well, and the toolkit has them only where its translations are installed.
bool isOfToolkit(std::string_view context) {
  const bool isClass = context.size() > 1 && context[0] == 'Q' && context[1] >= 'A' && context[1] <= 'Z';
  return isClass && context != "QObject" && context != "QPlatformTheme" && context != "QDialogButtonBox";
}

}  // namespace

TableTranslator::TableTranslator(const Bundle& bundle, QObject* parent)
    : QTranslator(parent), fBundle(bundle) {}

QString TableTranslator::translate(const char* context, const char* sourceText,
                                   const char* /*disambiguation*/, int /*n*/) const {
  if (sourceText == nullptr || *sourceText == '\0' || (context != nullptr && isOfToolkit(context))) {
    return {};
  }
  const std::string text = fBundle.localizedString(sourceText, "", kStringTable);
  // No answer lets other translators, those of the toolkit's own texts, have their turn.
  return text == sourceText ? QString() : QString::fromStdString(text);
}

}  // namespace veltrix
