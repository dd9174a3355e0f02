#pragma once

#include <array>
#include <string>

#include "tests/ui/model/catalogue.h"

namespace veltrix::model {

enum class Page { kNone, kClick, kKeystroke, kSnippet, kScroll, kApplication, kItem, kUrl, kScript };

inline constexpr int kPages = 9;

Page pageOf(int command);

// The dialog in which one action is edited. What its controls show survives from one opening to the next.
// Parameters can be changed only while their page is shown.
class EditorModel {
 public:
  explicit EditorModel(Catalogue catalogue) : fCatalogue(std::move(catalogue)) {}

  // Edits a copy of the action. The snippets are the document's own and must outlive the editing.
  void open(const Json& action, Json* snippets);

  void chooseCategory(int category);
  void chooseCommand(int row);  // of the commands that are shown
  void toggleKey(int which);    // Command, Shift, Option, Control
  void chooseSpeed(int amount);
  void pressKeys(int keyCode, int modifiers);
  void typeText(const std::string& text);  // the address or the script
  void typeSnippetName(const std::string& name);
  void typeSnippetText(const std::string& text);
  void typeLabel(const std::string& label);

  const Json& action() const { return fAction; }
  const Catalogue& catalogue() const { return fCatalogue; }
  Catalogue::Place place() const { return fPlace; }
  Page page() const { return fPage; }
  const std::string& label() const { return fLabel; }
  const std::array<bool, 4>& keys() const { return fKeys; }  // of the page that is shown
  int speed() const { return fSpeed; }
  const std::string& text() const { return fText; }  // of the page's only field, or the snippet's name
  const std::string& snippetBody() const { return fSnippetBody; }

 private:
  void show();
  void take(bool reset);
  void takeKeys(bool reset);
  void editSnippet(const char* key, std::string* shown, const std::string& text);

  Catalogue fCatalogue;
  Json fAction;
  Json* fSnippets = nullptr;
  Catalogue::Place fPlace;
  Page fPage = Page::kNone;
  std::string fLabel;
  std::array<bool, 4> fKeys{};
  int fSpeed = 1;
  std::string fText;
  std::string fSnippetBody;
};

}  // namespace veltrix::model
