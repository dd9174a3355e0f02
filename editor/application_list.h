#pragma once

#include <QAbstractListModel>
#include <QIcon>
#include <QSortFilterProxyModel>
#include <QStringList>
#include <functional>
#include <optional>
#include <vector>

#include "platform/installed_applications.h"

namespace veltrix {

// The rows of the application chooser, in the given order.
class ApplicationListModel : public QAbstractListModel {
  Q_OBJECT

 public:
  ApplicationListModel(std::vector<InstalledApplication> applications,
                       std::function<QIcon(const InstalledApplication&)> icon, QObject* parent);

  const InstalledApplication& application(int row) const {
    return fApplications[static_cast<std::size_t>(row)];
  }

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  std::vector<InstalledApplication> fApplications;
  std::function<QIcon(const InstalledApplication&)> fIcon;
  mutable std::vector<std::optional<QIcon>> fIcons;  // those that have been seen
};

// Keeps the applications that have every typed word in a text of theirs; those that begin with what was typed
// come first.
class ApplicationFilter : public QSortFilterProxyModel {
  Q_OBJECT

 public:
  explicit ApplicationFilter(ApplicationListModel* model, QObject* parent);

  void setTyped(const QString& typed);
  const InstalledApplication& application(const QModelIndex& index) const;

 protected:
  bool filterAcceptsRow(int row, const QModelIndex& parent) const override;
  bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

 private:
  int rank(int row) const;

  ApplicationListModel* fModel;
  QString fTyped;
  QStringList fWords;
};

}  // namespace veltrix
