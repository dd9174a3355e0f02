#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/property_list.h"
#include "settings/document_check.h"

namespace veltrix {

// Collects problems of one place of a document in a list that outlives it.
class ProblemList {
 public:
  ProblemList(std::vector<DocumentProblem>& problems, std::string place)
      : fProblems(problems), fPlace(std::move(place)) {}

  ProblemList at(std::string_view key) const;
  void add(std::string reason) const;

  // The checks of one key; each leaves a missing key alone.
  void checkType(const plist::Dictionary& dictionary, const char* key) const;
  void checkRange(const plist::Dictionary& dictionary, const char* key, std::int64_t least,
                  std::int64_t most) const;
  void checkModifiers(const plist::Dictionary& dictionary, const char* key) const;

 private:
  std::vector<DocumentProblem>& fProblems;
  std::string fPlace;
};

}  // namespace veltrix
