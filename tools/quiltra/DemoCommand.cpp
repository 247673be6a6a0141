// quiltra demo: the guided tour that ./scripts/demo runs.
#include "../Demo.h"
#include "Command.h"

#include <iostream>

namespace QuiltraTools {

Command addDemoCommand(CLI::App& app) {
  CLI::App* parser = app.add_subcommand("demo", "Show what the library does, step by step");
  return {parser, [] { return runDemo(std::cout); }};
}

}  // namespace QuiltraTools
