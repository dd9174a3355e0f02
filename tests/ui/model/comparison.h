#pragma once

#include <string>
#include <vector>

#include "tests/ui/model/editor_model.h"
#include "tests/ui/model/hands.h"
#include "tests/ui/model/parameters_model.h"

// What is not as the model says, in words; nothing when all agrees.
namespace veltrix::model {

using Problems = std::vector<std::string>;

// The file, the document in memory, the driver's record, and the rule that a button clicks.
void compareDocuments(const PaneModel& model, const Hands& hands, Problems* problems);

void compareControls(const PaneModel& model, const Hands& hands, Problems* problems);
void compareEditor(const EditorModel& model, QDialog* dialog, Problems* problems);
void compareParameters(const ParametersModel& model, QDialog* dialog, Problems* problems);

// Notes a problem unless both are equal.
void compare(Problems* problems, const std::string& what, const Json& expected, const Json& actual);

}  // namespace veltrix::model
