// Builds a small data set through the installed headers and library, stores it and reads
// it back; exits non-zero when anything differs.
#include <iostream>
#include <memory>
#include <sstream>

#include <quiltra/quiltra.h>

int main() {
  using namespace Quiltra;
  auto tree = std::make_shared<Tree>();
  auto name = std::make_shared<Tag>(TagInfo(TagId(0x0010, 0x0010), "PatientName", PN, {1, 1}));
  name->addValue(std::string("Doe^Jane"));
  tree->addTag(name);

  std::stringstream stream;
  tree->toStream(stream);
  Tree back;
  back.fromStream(stream);
  const bool same = back.getTag(TagId(0x0010, 0x0010))->toString() == "Doe^Jane";
  std::cout << "consumer: " << (same ? "ok" : "MISMATCH") << '\n';
  return same ? 0 : 1;
}
