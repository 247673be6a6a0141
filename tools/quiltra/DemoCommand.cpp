// quiltra demo [--out FOLDER]: the guided tour that ./scripts/demo runs.
#include "Command.h"
#include "demo/Demo.h"

#include <memory>
#include <string>

namespace QuiltraTools {

Command addDemoCommand(CLI::App& app) {
  auto folder = std::make_shared<std::string>("quiltra-demo");
  CLI::App* parser = app.add_subcommand("demo", "Show what the library does, step by step");
  parser->add_option("--out", *folder, "Where to leave the files the demo stores")
      ->capture_default_str();
  return {parser, [folder] {
            runDemo(*folder);
            return 0;
          }};
}

}  // namespace QuiltraTools
