#ifndef QUILTRA_TOOLS_DEMODICTIONARY_H_
#define QUILTRA_TOOLS_DEMODICTIONARY_H_

#include <map>
#include <memory>
#include <string>

#include <quiltra/quiltra.h>

namespace QuiltraTools {

/// A handful of attributes, standing in for the dictionary module a host would load.
class DemoDictionary : public Quiltra::Dict {
 public:
  DemoDictionary();

  std::string syntaxName(Quiltra::TransferSyntax syntax) const override;
  Quiltra::TagInfo tagInfo(const std::string& name) const override;
  Quiltra::TagInfo tagInfo(const Quiltra::TagId& id) const override;
  bool knowsTagId(const Quiltra::TagId& id) const override;
  bool knowsTagName(const std::string& name) const override;

  /// What a dictionary module does when the host loads it.
  static void install() { setSingleton(std::make_shared<DemoDictionary>()); }

 private:
  std::map<Quiltra::TagId, Quiltra::TagInfo> _byId;
  std::map<std::string, Quiltra::TagId> _byName;
};

/// The host's loading callback: "loads" the dictionary module.
class DemoLoader : public Quiltra_Utils::LoadLibraryDelegate {
 public:
  void loadLibraries() override { DemoDictionary::install(); }
};

}  // namespace QuiltraTools

#endif  // QUILTRA_TOOLS_DEMODICTIONARY_H_
