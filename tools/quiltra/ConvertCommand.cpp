// quiltra convert IN OUT --form binary|text|dicom --syntax implicit-le|...: stores a message
// in another form or, as a DICOM file, in another transfer syntax, reading it in any form.
#include "Command.h"
#include "StoredFile.h"

#include <memory>
#include <string>

namespace QuiltraTools {

namespace {

struct ConvertOptions {
  std::string in;
  std::string out;
  OutputChoice output;
};

}  // namespace

Command addConvertCommand(CLI::App& app) {
  auto options = std::make_shared<ConvertOptions>();
  CLI::App* parser = app.add_subcommand(
      "convert", "Store a message in another form, or a DICOM file in another transfer syntax");
  parser->add_option("IN", options->in, "The stored message or DICOM file")->required();
  parser->add_option("OUT", options->out, "Where to write it")->required();
  addOutputOptions(*parser, options->output);
  parser->parse_complete_callback([options] {
    if (options->output.form.empty() && options->output.syntax.empty()) {
      throw CLI::RequiredError("--form or --syntax");
    }
  });
  return {parser, [options] {
            writeChosen(options->out, readStored(options->in), options->output);
            return 0;
          }};
}

}  // namespace QuiltraTools
