// quiltra convert IN OUT --form binary|text: stores a message in the storage form asked,
// reading it in whichever form it is.
#include "Command.h"
#include "StoredFile.h"

#include <memory>
#include <string>

namespace QuiltraTools {

namespace {

struct ConvertOptions {
  std::string in;
  std::string out;
  std::string form;
};

}  // namespace

Command addConvertCommand(CLI::App& app) {
  auto options = std::make_shared<ConvertOptions>();
  CLI::App* parser = app.add_subcommand("convert", "Store a message in the other storage form");
  parser->add_option("IN", options->in, "The stored message, in either form")->required();
  parser->add_option("OUT", options->out, "Where to write it")->required();
  parser->add_option("--form", options->form, "The storage form to write")
      ->required()
      ->check(CLI::IsMember({"binary", "text"}));
  return {parser, [options] {
            const auto message = readStored(options->in);
            writeStored(options->out, *message, toStorageForm(options->form));
            return 0;
          }};
}

}  // namespace QuiltraTools
