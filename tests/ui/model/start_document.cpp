// The documents that the pane starts with: the factory's, with oddities that somebody's own tools may have
// left in the file.
#include <vector>

#include "tests/ui/model/steps.h"

namespace veltrix::model {
namespace {

template <typename T>
const T& pick(const std::vector<T>& from, int number) {
  return from.at(static_cast<std::size_t>(number) % from.size());
}

const std::vector<std::string> kOptions = {
    "speed",  "accelerate",  "acceleration",    "jump",         "slow",     "slow keys",
    "single", "single keys", "inertial scroll", "invert wheel", "invert x", "unknown"};
const std::vector<Json> kOptionValues = {0,     1,   true, false, 450,  5,    6400,  0x1A00, 0xFFFF, -7,
                                         0.999, 1.5, 3.99, 1e12,  -0.5, "12", "yes", 100.0,  0x10500};
const std::vector<int> kButtons = {0, 0, 0, 1, 2, 3, 8, 9, 15};
const std::vector<Json> kActions = {
    {{"cmd", 1}, {"mod", 0x1100}},
    {{"cmd", 1}, {"label", "Mine"}},
    {{"cmd", 2}, {"mod", 0}},
    {{"cmd", 3}, {"mod", 0}, {"cnt", 9}, {"other", "kept?"}},
    {{"cmd", 16}},
    {{"cmd", 10}, {"key", 255}, {"mod", 0x0400}},
    {{"cmd", 10}, {"key", 12}, {"mod", 0x0100}},
    {{"cmd", 21}, {"cnt", -3}},
    {{"cmd", 22}, {"cnt", 500}, {"label", "Fast"}},
    {{"cmd", 70}, {"str", "~/papers/notes.txt"}},
    {{"cmd", 70}},
    {{"cmd", 71}, {"str", ""}, {"bndl", "org.example.editor"}},
    {{"cmd", 71}, {"str", "Editor"}},
    {{"cmd", 72}, {"str", "http://www.example.org/"}},
    {{"cmd", 72}},
    {{"cmd", 73}, {"str", "echo one\necho two"}},
    {{"cmd", 183}, {"mod", 512}},
    {{"cmd", 200}},
    {{"cmd", "2"}, {"mod", false}},
    {{"cmd", 9999}, {"label", ""}},
    {{"cmd", 0}, {"btn", 4}, {"clk", 1}, {"char", 65}, {"freq", 2}},
};
const std::vector<int> kWheelAmounts = {0, 1, 20, 21, 500, -4};
const std::vector<Json> kSnippetLists = {
    Json::array(), Json::array({{{"name", "Text snippet 1"}, {"text", "one"}}}),
    Json::array({{{"text", "nameless"}}, {{"name", "Greeting"}}, {{"name", ""}}})};
const std::vector<Json> kParameterSets = {
    Json::object(), {{"timeStop", -5}, {"countStop", 100000}, {"own", 1}}, {{"triggerTime", "80"}}};

enum Place { kOptionPlace, kActionPlace, kWheelPlace, kParameterPlace, kSnippetPlace, kDocumentPlace };
const std::vector<Place> kPlaces = {kOptionPlace,    kOptionPlace,  kOptionPlace,  kActionPlace,
                                    kActionPlace,    kActionPlace,  kActionPlace,  kWheelPlace,
                                    kParameterPlace, kSnippetPlace, kDocumentPlace};

void applyToDocument(Json& document, const Tweak& tweak) {
  if (tweak.what % 3 == 0) {
    document["unknown"] = {{"kept", true}};
  } else {
    document["paramUI"] = true;
  }
}

void apply(Json& document, const Tweak& tweak) {
  Json& entries = document.at("devices");
  Json& entry = entries.at(static_cast<std::size_t>(tweak.entry) % entries.size());
  switch (pick(kPlaces, tweak.where)) {
    case kOptionPlace:
      entry["options"][pick(kOptions, tweak.what)] = pick(kOptionValues, tweak.value);
      break;
    case kActionPlace: {
      const int button = pick(kButtons, tweak.what);
      entry["buttons"][buttonName(button)] = pick(kActions, tweak.value);
      break;
    }
    case kWheelPlace:
      entry["buttons"]["12"] = {{"cmd", tweak.what % 30}, {"cnt", pick(kWheelAmounts, tweak.value)}};
      break;
    case kParameterPlace:
      if (tweak.what % 2 == 0) {
        entry.erase("param");
      } else {
        entry["param"] = pick(kParameterSets, tweak.value);
      }
      break;
    case kSnippetPlace:
      document["snippets"] = pick(kSnippetLists, tweak.value);
      break;
    case kDocumentPlace:
      applyToDocument(document, tweak);
      break;
  }
}

}  // namespace

Json startDocument(Json factory, const std::vector<Tweak>& tweaks) {
  for (const Tweak& tweak : tweaks) {
    apply(factory, tweak);
  }
  return factory;
}

}  // namespace veltrix::model
