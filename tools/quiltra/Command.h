#ifndef QUILTRA_TOOLS_QUILTRA_COMMAND_H_
#define QUILTRA_TOOLS_QUILTRA_COMMAND_H_

#include <CLI/CLI.hpp>
#include <functional>

namespace QuiltraTools {

/// One subcommand of the quiltra program: its parser, and what it does once its arguments
/// are parsed. run returns the exit status; a failure throws Quiltra::Exception, which the
/// program prints to standard error with status 1.
struct Command {
  CLI::App* parser;
  std::function<int()> run;
};

/// Each adds its subcommand to app, in its own file (DemoCommand.cpp, ...).
Command addDemoCommand(CLI::App& app);
Command addConvertCommand(CLI::App& app);
Command addModifyCommand(CLI::App& app);
Command addDumpCommand(CLI::App& app);
Command addCharsetCommand(CLI::App& app);
Command addUidCommand(CLI::App& app);

}  // namespace QuiltraTools

#endif  // QUILTRA_TOOLS_QUILTRA_COMMAND_H_
