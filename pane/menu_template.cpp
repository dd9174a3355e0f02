#include "pane/menu_template.h"

#include "actions/template_menu.h"
#include "pane/assignment_menu.h"

namespace veltrix {

MenuTemplate::MenuTemplate(const std::function<QString(const char*)>& localize) {
  for (const TemplateItem& item : templateMenu()) {
    const bool isSeparator = item.title == nullptr;
    fItems.push_back({item.tag, isSeparator ? QString() : localize(item.title), isSeparator});
  }
}

void MenuTemplate::copyTo(AssignmentMenu* menu, std::int32_t button) const {
  for (const Item& item : fItems) {
    if (item.isSeparator) {
      menu->insertSeparator(menu->count());
    } else {
      menu->addTaggedItem(item.tag, item.title);
    }
  }
  menu->setRepresentedObject(kEditItemTag, button);
}

}  // namespace veltrix
