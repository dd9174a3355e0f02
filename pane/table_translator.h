#pragma once

#include <QTranslator>

#include "platform/bundle.h"

namespace veltrix {

// Gives the texts of interface files their translations out of the bundle's string table; what the toolkit's
// own classes say is left to the toolkit's translations. The bundle must outlive it.
class TableTranslator : public QTranslator {
  Q_OBJECT

 public:
  explicit TableTranslator(const Bundle& bundle, QObject* parent = nullptr);
  bool isEmpty() const override { return false; }
  QString translate(const char* context, const char* sourceText, const char* disambiguation,
                    int n) const override;

 private:
  const Bundle& fBundle;
};

}  // namespace veltrix
