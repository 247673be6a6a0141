// Feeds arbitrary bytes to the character-set conversions. The buffer-level conversions get
// buffers of exactly the input's size, so any read past the end shows. Every input must
// give a result or "source exhausted"; Latin-1 must come back from UTF-8 unchanged; and a
// data set's value must convert exactly as reading its text, converting it and storing it
// back does.
#include "services/CharacterSetCodec.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <quiltra/quiltra.h>

namespace {

using namespace Quiltra;

void checkBuffers(const unsigned char* data, std::size_t size) {
  const std::size_t utf8Size = Quiltra_Unicode::utf8Size(data, size);
  std::vector<unsigned char> utf8(utf8Size);
  Quiltra_Unicode::encodeUTF8(data, size, utf8.data());
  std::vector<unsigned char> latin1(utf8Size);
  latin1.resize(Quiltra_Unicode::decodeUTF8(utf8.data(), utf8.size(), latin1.data()));
  if (latin1.size() != size || (size != 0 && std::memcmp(latin1.data(), data, size) != 0)) {
    std::abort();
  }
  std::vector<unsigned char> decoded(size);
  try {
    if (Quiltra_Unicode::decodeUTF8(data, size, decoded.data()) > size) std::abort();
  } catch (const Exception&) {
  }
}

void checkStrings(const std::string& text) {
  if (Quiltra_Unicode::UTF8toLatin1(Quiltra_Unicode::latin1ToUTF8(text)) != text) std::abort();
  std::string converted = text;
  try {
    Quiltra_Unicode::convertCharacterSet("ISO_IR 192", "ISO_IR 100", converted);
    if (converted.size() > text.size()) std::abort();
  } catch (const Exception&) {
    if (converted != text) std::abort();
  }
}

// A value holding exactly the input bytes, as a binary or text reader would leave it.
std::shared_ptr<Tag> storedAs(const std::string& text) {
  auto tag = std::make_shared<Tag>(TagInfo(TagId(0x0010, 0x0010), "", PN, {1, 1}));
  tag->addValue().setData(static_cast<unsigned int>(text.size()),
                          reinterpret_cast<const unsigned char*>(text.data()));
  return tag;
}

void checkDataSet(const std::string& text, bool toUTF8) {
  if (text.empty()) return;
  const std::string from = toUTF8 ? "ISO_IR 100" : "ISO_IR 192";
  const std::string to = toUTF8 ? "ISO_IR 192" : "ISO_IR 6";
  auto expected = storedAs(text);
  bool failed = false;
  try {
    std::string plain = expected->toString(0);
    Quiltra_Unicode::convertCharacterSet(from, to, plain);
    expected->setValue(plain, 0);
  } catch (const Exception&) {
    failed = true;
  }
  Tree tree;
  tree.addTag(storedAs(text));
  try {
    tree.convertCharacterSet(from, to);
  } catch (const Exception&) {
    if (!failed) std::abort();
    return;
  }
  const Value& actual = tree.getTag(TagId(0x0010, 0x0010))->getValue(0);
  const Value& wanted = expected->getValue(0);
  if (failed || !(actual == wanted) || actual.capacity() != wanted.capacity()) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  checkBuffers(data, size);
  const std::string text(reinterpret_cast<const char*>(data), size);
  checkStrings(text);
  checkDataSet(text, true);
  checkDataSet(text, false);
  return 0;
}
