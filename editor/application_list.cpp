#include "editor/application_list.h"

#include <algorithm>
#include <utility>

namespace veltrix {

namespace {

QString text(const std::string& utf8) {
  return QString::fromStdString(utf8);
}

bool hasWord(const InstalledApplication& application, const QString& word) {
  const auto holds = [&word](const std::string& each) {
    return text(each).contains(word, Qt::CaseInsensitive);
  };
  return holds(application.name) || holds(application.comment) || holds(application.identifier) ||
         std::any_of(application.keywords.begin(), application.keywords.end(), holds);
}

}  // namespace

ApplicationListModel::ApplicationListModel(std::vector<InstalledApplication> applications,
                                           std::function<QIcon(const InstalledApplication&)> icon,
                                           QObject* parent)
    : QAbstractListModel(parent),
      fApplications(std::move(applications)),
      fIcon(std::move(icon)),
      fIcons(fApplications.size()) {}

int ApplicationListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(fApplications.size());
}

QVariant ApplicationListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) {
    return {};
  }
  const InstalledApplication& shown = application(index.row());
  switch (role) {
    case Qt::DisplayRole:
      return text(shown.name);
    case Qt::DecorationRole: {
      std::optional<QIcon>& icon = fIcons[static_cast<std::size_t>(index.row())];
      if (!icon) {
        icon = fIcon(shown);
      }
      return *icon;
    }
    case Qt::AccessibleDescriptionRole:
      return text(shown.comment);
    default:
      return {};
  }
}

ApplicationFilter::ApplicationFilter(ApplicationListModel* model, QObject* parent)
    : QSortFilterProxyModel(parent), fModel(model) {
  setSourceModel(model);
  sort(0);
}

void ApplicationFilter::setTyped(const QString& typed) {
  fTyped = typed.simplified();
  fWords = fTyped.split(QLatin1Char(' '), Qt::SkipEmptyParts);
  invalidate();
}

const InstalledApplication& ApplicationFilter::application(const QModelIndex& index) const {
  return fModel->application(mapToSource(index).row());
}

bool ApplicationFilter::filterAcceptsRow(int row, const QModelIndex& /*parent*/) const {
  const InstalledApplication& shown = fModel->application(row);
  return std::all_of(fWords.begin(), fWords.end(),
                     [&shown](const QString& word) { return hasWord(shown, word); });
}

bool ApplicationFilter::lessThan(const QModelIndex& left, const QModelIndex& right) const {
  const int leftRank = rank(left.row());
  const int rightRank = rank(right.row());
  return leftRank != rightRank ? leftRank < rightRank : left.row() < right.row();
}

// How far the typed text lies from the start of the name; the smaller, the likelier meant.
int ApplicationFilter::rank(int row) const {
  const QString name = text(fModel->application(row).name);
  if (fTyped.isEmpty() || name.startsWith(fTyped, Qt::CaseInsensitive)) {
    return 0;
  }
  if (name.contains(QLatin1Char(' ') + fTyped, Qt::CaseInsensitive)) {
    return 1;
  }
  return name.contains(fTyped, Qt::CaseInsensitive) ? 2 : 3;
}

}  // namespace veltrix
