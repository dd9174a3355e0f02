#pragma once

#include <QLocale>

class QTranslator;

namespace veltrix {

// Gives `translator` the toolkit's own texts, those of its file panel for instance, in a language of
// `locale`. False when they are not installed; the toolkit then speaks English.
bool loadToolkitTexts(QTranslator* translator, const QLocale& locale);

}  // namespace veltrix
