#include <memory>

#include "ctl/commands.h"
#include "ctl/document_file.h"
#include "platform/property_list_io.h"

namespace veltrix::ctl {
namespace {

struct Arguments {
  std::string file;
  std::string form;
  std::string output;
};

int run(const Arguments& arguments) {
  const auto file = readDocument(arguments.file);
  if (!file.document) {
    return file.exitCode;
  }
  const auto& root = file.document->root;
  return writeOutput(arguments.output,
                     arguments.form == "xml" ? plist::writeXml(root) : plist::writeBinary(root));
}

}  // namespace

void addConvertCommand(CommandLine app, Context& context) {
  auto command = app.addCommand("convert", "Write a property list in another form");
  auto arguments = std::make_shared<Arguments>();
  command.addOption("FILE", arguments->file, "A property list: XML, binary or the old text form").required();
  command.addOption("--to", arguments->form, "The form to write: xml or binary")
      .required()
      .oneOf({"xml", "binary"});
  command.addOption("-o,--output", arguments->output, "The file to write; it may be FILE itself").required();
  command.does([&context, arguments] { context.exitCode = run(*arguments); });
}

}  // namespace veltrix::ctl
