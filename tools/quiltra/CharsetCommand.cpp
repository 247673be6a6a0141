// quiltra charset IN OUT --to "ISO_IR 192": converts the texts of a message to another
// character set, records it in (0008,0005), and writes the result in the form read (or as
// --form and --syntax say).
#include "Command.h"
#include "StoredFile.h"

#include <memory>
#include <string>

#include <quiltra/core/TagId.h>
#include <quiltra/core/TagInfo.h>
#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>

namespace QuiltraTools {

namespace {

using namespace Quiltra;

struct CharsetOptions {
  std::string in;
  std::string out;
  std::string to;
  OutputChoice output;
};

// The conversion leaves (0008,0005) alone: name the new character set there.
void recordCharacterSet(Tree& tree, const std::string& name) {
  auto element = std::make_shared<Tag>(
      TagInfo(TagId(0x0008, 0x0005), "SpecificCharacterSet", CS, {1, 0xFFFFFFFFu}));
  element->addValue(name);
  tree.addTag(element);
}

}  // namespace

Command addCharsetCommand(CLI::App& app) {
  auto options = std::make_shared<CharsetOptions>();
  CLI::App* parser =
      app.add_subcommand("charset", "Convert the texts of a message to another character set");
  parser->add_option("IN", options->in, "The stored message or DICOM file")->required();
  parser->add_option("OUT", options->out, "Where to write the converted message")->required();
  parser->add_option("--to", options->to, "The character set to convert to")
      ->required()
      ->check(CLI::IsMember({"ISO_IR 6", "ISO_IR 100", "ISO_IR 192"}));
  addOutputOptions(*parser, options->output);
  return {parser, [options] {
            const StoredMessage read = readStored(options->in);
            read.message->convertToCharacterSet(options->to);
            recordCharacterSet(*read.message->tags(), options->to);
            writeChosen(options->out, read, options->output);
            return 0;
          }};
}

}  // namespace QuiltraTools
