#pragma once

#include <QIcon>
#include <QString>

namespace veltrix {

// An icon that shows the picture `name` of `folder` (empty: the bundle's own) in the colours of the
// application's palette, whatever they are when it is drawn; fainter for a disabled control. The icon of a
// missing picture shows nothing.
QIcon pictureIcon(const QString& name, const QString& folder = {});

}  // namespace veltrix
