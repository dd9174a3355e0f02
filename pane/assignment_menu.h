#pragma once

#include <QComboBox>
#include <QString>
#include <cstdint>
#include <optional>

namespace veltrix {

// The pop-up menu of one button. Items carry a tag, usually a command code, and may carry the number of a
// button; separators carry nothing. At most one item, the last, is the extra one that shows what no other
// can. The keys that would step through the items of a closed combo box open the menu instead, and the wheel
// does nothing, because every step would assign a command.
class AssignmentMenu : public QComboBox {
  Q_OBJECT

 public:
  explicit AssignmentMenu(QWidget* parent = nullptr);

  void addTaggedItem(std::int32_t tag, const QString& title);

  // The number that the first item of that tag carries; nothing happens without the item.
  void setRepresentedObject(std::int32_t tag, std::int32_t number);

  std::optional<std::int32_t> tagAt(int index) const;  // none for a separator or outside
  bool hasTag(std::int32_t tag) const;
  bool selectTag(std::int32_t tag);  // false, with the selection as it was, without such an item
  std::optional<std::int32_t> selectedTag() const;

  // Adds the extra item unless it is there, gives it that title and selects it. Characters that would break
  // the line become blanks.
  void showExtraItem(const QString& title);
  void removeExtraItem();

  // Room for a title of the usual length, whatever the items are.
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

  // The list that opens bears the name of the menu.
  void showPopup() override;

 signals:
  void chosen();  // a person chose an item, which may be the one that was selected before
  void editChosen(std::int32_t number);  // a person chose the edit item, which carries that number

 protected:
  void initStyleOption(QStyleOptionComboBox* option) const override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  void takeChoice(int index);
  bool lastIsExtra() const;
};

}  // namespace veltrix
