// quiltra uid [--count N] ROOT ORG SUFFIX: prints N new unique identifiers, one a line,
// made by the UID generator from the three given parts.
#include "Command.h"

#include <iostream>
#include <memory>
#include <string>

#include <quiltra/services/UIDGenerator.h>

namespace QuiltraTools {

namespace {

struct UidOptions {
  std::string root;
  std::string organisation;
  std::string suffix;
  unsigned int count = 1;
};

}  // namespace

Command addUidCommand(CLI::App& app) {
  auto options = std::make_shared<UidOptions>();
  CLI::App* parser = app.add_subcommand("uid", "Print new unique identifiers");
  parser->add_option("ROOT", options->root, "The first part of every identifier")->required();
  parser->add_option("ORG", options->organisation, "The second part")->required();
  parser->add_option("SUFFIX", options->suffix, "The third part")->required();
  parser->add_option("--count", options->count, "How many identifiers to print")
      ->check(CLI::Range(1u, 1000000u));
  return {parser, [options] {
            Quiltra_Utils::UIDGenerator::initialize(options->root, options->organisation,
                                                    options->suffix);
            for (unsigned int i = 0; i < options->count; ++i) {
              std::cout << Quiltra_Utils::UIDGenerator::uid() << '\n';
            }
            return 0;
          }};
}

}  // namespace QuiltraTools
