// A module for the loader tests that installs a dictionary named after the module
// (QUILTRA_TEST_MODULE_NAME, its syntaxName), so a test sees which module registered last.
#include <memory>
#include <string>

#include <quiltra/core/Exception.h>
#include <quiltra/dataset/Dict.h>
#include <quiltra/io/Module.h>

namespace {

class NamedDict : public Quiltra::Dict {
 public:
  std::string syntaxName(Quiltra::TransferSyntax) const override {
    return QUILTRA_TEST_MODULE_NAME;
  }
  Quiltra::TagInfo tagInfo(const std::string& name) const override {
    throw Quiltra::Exception("NamedDict::tagInfo", name);
  }
  Quiltra::TagInfo tagInfo(const Quiltra::TagId& id) const override {
    throw Quiltra::Exception("NamedDict::tagInfo", id.toString());
  }
  bool knowsTagId(const Quiltra::TagId&) const override { return false; }
  bool knowsTagName(const std::string&) const override { return false; }

  static void install() { setSingleton(std::make_shared<NamedDict>()); }
};

}  // namespace

QUILTRA_MODULE_EXPORT const Quiltra_Utils::ModuleDescription* quiltra_module_entry() {
  static const Quiltra_Utils::ModuleDescription description =
      Quiltra_Utils::describeModule(QUILTRA_TEST_MODULE_NAME, &NamedDict::install);
  return &description;
}
