#include "widgets/picture.h"

#include <QDir>
#include <QFile>
#include <QPainter>
#include <QSvgRenderer>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "platform/bundle.h"

namespace veltrix {
namespace {

constexpr const char* kButtonColor = "#f4f6f8";
constexpr qint64 kLargestFile = 1 << 20;

using Role = std::pair<const char*, QColor PictureColors::*>;
constexpr std::array<Role, 7> kRoles{{
    {"#30343a", &PictureColors::line},
    {"#d8dce1", &PictureColors::body},
    {"#b4bac2", &PictureColors::shade},
    {kButtonColor, &PictureColors::button},
    {"#5a8fc4", &PictureColors::ball},
    {"#9dc1e4", &PictureColors::glow},
    {"#1d74c9", &PictureColors::accent},
}};

QColor mix(const QColor& from, const QColor& to, double share) {
  const auto blend = [share](int a, int b) { return static_cast<int>(std::lround(a + (b - a) * share)); };
  return {blend(from.red(), to.red()), blend(from.green(), to.green()), blend(from.blue(), to.blue())};
}

QByteArray colorName(const QColor& color) {
  return color.name(QColor::HexRgb).toLatin1();
}

}  // namespace

PictureColors PictureColors::fromPalette(const QPalette& palette) {
  const QColor window = palette.color(QPalette::Active, QPalette::Window);
  const QColor text = palette.color(QPalette::Active, QPalette::WindowText);
  const QColor highlight = palette.color(QPalette::Active, QPalette::Highlight);
  const bool dark = window.lightness() < text.lightness();
  PictureColors colors;
  colors.line = mix(text, window, 0.18);
  colors.body = dark ? mix(window, Qt::white, 0.13) : mix(window, Qt::black, 0.08);
  colors.shade = mix(window, Qt::black, dark ? 0.35 : 0.22);
  colors.button = dark ? mix(window, Qt::white, 0.27) : mix(window, Qt::white, 0.85);
  colors.ball = mix(highlight, colors.body, 0.25);
  colors.glow = mix(colors.ball, Qt::white, 0.45);
  colors.accent = highlight;
  return colors;
}

QString standardPictureFolder() {
  return QString::fromStdString(Bundle::standard().resourcePath()) + QStringLiteral("/pictures");
}

Picture::Picture() = default;
Picture::~Picture() = default;
Picture::Picture(Picture&&) noexcept = default;
Picture& Picture::operator=(Picture&&) noexcept = default;

Picture::Picture(const QString& folder, const QString& name, const PictureColors& colors) : fColors(colors) {
  QFile file(QDir(folder).filePath(name + QStringLiteral(".svg")));
  if (name.isEmpty() || !file.open(QIODevice::ReadOnly) || file.size() > kLargestFile) {
    return;
  }
  fSource = file.readAll();
  fRenderer = std::make_unique<QSvgRenderer>(colors == PictureColors{} ? fSource : tinted(colors, {}));
  if (!fRenderer->isValid()) {
    fRenderer.reset();
    fSource.clear();
    return;
  }
  fSize = fRenderer->viewBoxF().size();
}

// A lit element is told by its id; its fill follows the id inside the same tag.
QByteArray Picture::tinted(const PictureColors& colors, const QStringList& lit) const {
  QByteArray text = fSource;
  for (const QString& id : lit) {
    const qsizetype start = text.indexOf("id=\"" + id.toUtf8() + '"');
    const qsizetype end = start < 0 ? -1 : text.indexOf('>', start);
    const qsizetype fill = start < 0 ? -1 : text.indexOf(kButtonColor, start);
    if (fill >= 0 && fill < end) {
      text.replace(fill, static_cast<qsizetype>(qstrlen(kButtonColor)), colorName(colors.accent));
    }
  }
  // One pass, so that a palette colour that happens to equal a stand-in is not replaced again.
  QByteArray result;
  result.reserve(text.size());
  qsizetype copied = 0;
  for (qsizetype at = text.indexOf('#'); at >= 0; at = text.indexOf('#', at + 1)) {
    const QByteArrayView rest = QByteArrayView(text).sliced(at);
    const auto* role = std::find_if(kRoles.begin(), kRoles.end(), [&rest](const Role& candidate) {
      return rest.startsWith(candidate.first);
    });
    if (role != kRoles.end()) {
      result.append(QByteArrayView(text).sliced(copied, at - copied));
      result.append(colorName(colors.*(role->second)));
      copied = at + static_cast<qsizetype>(qstrlen(role->first));
    }
  }
  result.append(QByteArrayView(text).sliced(copied));
  return result;
}

void Picture::prepare(const PictureColors& colors, const QStringList& lit) {
  if (colors == fColors && lit == fLit) {
    return;
  }
  fColors = colors;
  fLit = lit;
  fRenderer->load(tinted(colors, lit));
}

void Picture::draw(QPainter& painter, const QRectF& target, const PictureColors& colors,
                   const QStringList& lit) {
  if (isNull()) {
    return;
  }
  prepare(colors, lit);
  fRenderer->render(&painter, target);
}

bool Picture::hasElement(const QString& id) const {
  return fRenderer && fRenderer->elementExists(id);
}

QRectF Picture::elementRect(const QString& id) const {
  if (!hasElement(id)) {
    return {};
  }
  return fRenderer->boundsOnElement(id).translated(-fRenderer->viewBoxF().topLeft());
}

}  // namespace veltrix
