// quiltra modify IN OUT --set KEY=VALUE ... --remove KEY ...: makes the changes in a layer
// over the data set of the message read, and writes the message with the flat result. A KEY is an
// attribute name, looked up in the standard dictionary, or a tag as (gggg,eeee).
#include "Command.h"
#include "Modules.h"
#include "StoredFile.h"

#include <memory>
#include <string>
#include <vector>

#include <quiltra/core/Exception.h>
#include <quiltra/core/TagId.h>
#include <quiltra/dataset/Dict.h>
#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>

namespace QuiltraTools {

namespace {

using namespace Quiltra;

const char kModify[] = "quiltra modify";

struct ModifyOptions {
  std::string in;
  std::string out;
  std::vector<std::string> sets;
  std::vector<std::string> removals;
  OutputChoice output;
};

// The dictionary is loaded only when a change names an attribute or adds one.
const Dict& dictionary() {
  static const std::shared_ptr<const Dict> dict = standardDictionary();
  return *dict;
}

TagId toTagId(const std::string& key) {
  if (!key.empty() && key.front() == '(') return TagId(key);
  return dictionary().tagId(key);
}

// The element to set: the existing one's description, else the dictionary's.
std::shared_ptr<Tag> newElement(const Tree& tree, const TagId& id) {
  const auto existing = tree.getTag(id, AllLayers);
  if (existing) return std::make_shared<Tag>(existing->info());
  return std::make_shared<Tag>(dictionary().tagInfo(id));
}

void applySet(Tree& layer, const std::string& change) {
  const std::size_t equals = change.find('=');
  if (equals == std::string::npos) throw Exception(kModify, "expected KEY=VALUE, got " + change);
  auto element = newElement(layer, toTagId(change.substr(0, equals)));
  const std::string value = change.substr(equals + 1);
  if (!value.empty()) element->addValue(value);
  layer.addTag(element);
}

int modify(const ModifyOptions& options) {
  const StoredMessage read = readStored(options.in);
  auto layer = std::make_shared<Tree>(std::shared_ptr<const Tree>(read.message->tags()));
  for (const std::string& change : options.sets) applySet(*layer, change);
  for (const std::string& key : options.removals) layer->removeTag(toTagId(key));
  read.message->setTags(layer->mergedCopy(AllLayers));
  writeChosen(options.out, read, options.output);
  return 0;
}

}  // namespace

Command addModifyCommand(CLI::App& app) {
  auto options = std::make_shared<ModifyOptions>();
  CLI::App* parser =
      app.add_subcommand("modify", "Change attributes of a message and store the result");
  parser->add_option("IN", options->in, "The stored message or DICOM file")->required();
  parser->add_option("OUT", options->out, "Where to write the changed message")->required();
  parser->add_option("--set", options->sets, "KEY=VALUE: set an attribute (NAME or (gggg,eeee))")
      ->allow_extra_args(false);
  parser->add_option("--remove", options->removals, "KEY: remove an attribute")
      ->allow_extra_args(false);
  addOutputOptions(*parser, options->output);
  return {parser, [options] { return modify(*options); }};
}

}  // namespace QuiltraTools
