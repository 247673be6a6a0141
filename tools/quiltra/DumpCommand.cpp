// quiltra dump FILE...: prints stored messages and DICOM files with the text dump. With
// several files, each dump follows a line "==> FILE <=="; a file that cannot be read is
// reported on standard error and the others are still printed (exit status 1 then).
#include "Command.h"
#include "Modules.h"
#include "StoredFile.h"

#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <quiltra/core/Exception.h>

namespace QuiltraTools {

Command addDumpCommand(CLI::App& app) {
  auto files = std::make_shared<std::vector<std::string>>();
  CLI::App* parser = app.add_subcommand(
      "dump", "Print stored messages (either form) and DICOM files as readable text");
  parser->add_option("FILE", *files, "Stored messages or DICOM files")->required();
  return {parser, [files] {
            std::shared_ptr<Quiltra::Dump> dump;
            int status = 0;
            for (const std::string& file : *files) {
              if (files->size() > 1) std::cout << "==> " << file << " <==\n";
              try {
                const auto message = readStored(file).message;
                if (!dump) dump = dumpWriter();  // once something is there to print
                dump->write(nullptr, message);
              } catch (const Quiltra::Exception& error) {
                std::cout.flush();
                std::cerr << error.toString();
                status = 1;
              }
            }
            return status;
          }};
}

}  // namespace QuiltraTools
