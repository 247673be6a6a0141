// The quiltra program: parses the command line and runs one command. Exit status 0 on
// success, 2 for usage errors (with the usage on standard error), 1 for failures (with the
// failure's text on standard error).
#include "Command.h"

#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include <quiltra/core/Exception.h>
#include <quiltra/core/Logging.h>
#include <quiltra/core/Version.h>

namespace {

constexpr int kFailure = 1;
constexpr int kUsageError = 2;

// The library's warnings (a damaged file read tolerantly, say) go to standard error.
void printWarning(std::string message, int /*level*/) {
  std::cerr << "quiltra: warning: " << message << "\n";
}

int runGuarded(const QuiltraTools::Command& command) {
  try {
    return command.run();
  } catch (const Quiltra::Exception& error) {
    std::cerr << error.toString();
  } catch (const std::exception& error) {
    std::cerr << "quiltra " << command.parser->get_name() << ": " << error.what() << "\n";
  }
  return kFailure;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Builds, prints, converts and changes Quiltra messages and DICOM files.", "quiltra");
  app.set_version_flag("--version", QUILTRA_VERSION_STRING);
  app.require_subcommand(1);
  const std::vector<QuiltraTools::Command> commands = {
      QuiltraTools::addDemoCommand(app),    QuiltraTools::addConvertCommand(app),
      QuiltraTools::addModifyCommand(app),  QuiltraTools::addDumpCommand(app),
      QuiltraTools::addCharsetCommand(app), QuiltraTools::addUidCommand(app),
  };
  Quiltra_Utils::setLoggingHandler(&printWarning);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    // Help and version print to standard output and succeed; the rest are usage errors.
    return app.exit(error) == 0 ? 0 : kUsageError;
  }
  for (const QuiltraTools::Command& command : commands) {
    if (command.parser->parsed()) return runGuarded(command);
  }
  return kUsageError;
}
