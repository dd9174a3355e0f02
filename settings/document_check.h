#pragma once

#include <string>
#include <vector>

#include "platform/property_list.h"

namespace veltrix {

// Something in a settings document that a rule does not allow, or that has no effect.
struct DocumentProblem {
  std::string place;  // keys and indices from the root on, "devices/0/options/speed"; empty for the root
  std::string reason;
  friend bool operator==(const DocumentProblem&, const DocumentProblem&) = default;
};

// Every problem of a document, in the order of the document. Keys that are not known are no problem. Values
// are judged more strictly than they are read: a document without problems means what its writer thinks.
std::vector<DocumentProblem> checkSettingsDocument(const plist::Value& root);

}  // namespace veltrix
