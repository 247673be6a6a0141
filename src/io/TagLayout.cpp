/*
 * The two storage forms of a Tag.
 *
 * Binary (typed fields; u32 = code 02 00 00 00 then 4 bytes little-endian):
 *   TagInfo                          its own binary form
 *   0B 00 00 00                      vector code
 *   V                                value count, 4 raw bytes, no code of its own
 *   V x Value                        each in its own binary form
 *   u32 I                            sequence item count
 *   I x Tree                         each in its own binary form
 * So an element with no values and no items ends in 0B 00 00 00 00 00 00 00
 * 02 00 00 00 00 00 00 00.
 *
 * Text (two characters per byte, no separators):
 *   TagInfo                          its own text form
 *   unsigned V                       8 characters
 *   V x Value
 *   unsigned I                       8 characters
 *   I x Tree
 *
 * A null item slot has no form in either, so both writers refuse it before writing the
 * element. Items nested more than 256 levels below the object written are refused before
 * anything is written, since the readers would refuse them. Counts read back are never trusted:
 * entries are appended one at a time as they are read, so a forged count ends in the source's
 * end-of-input failure (binary) or at the failed stream (text).
 */
#include "quiltra/element/Tag.h"

#include "NestingGuard.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include <quiltra/core/Exception.h>
#include <quiltra/dataset/Tree.h>
#include <quiltra/io/Sink.h>
#include <quiltra/io/Source.h>
#include <quiltra/io/StreamPrimitives.h>
#include <quiltra/io/TypeCode.h>

namespace Quiltra {

namespace {

const std::string& nullSequenceItem() {
  static const std::string kText("null sequence item");
  return kText;
}

void refuseNullItems(const Tag::Items& items, const std::string& method) {
  for (const std::shared_ptr<Tree>& item : items) {
    if (!item) throw Exception(method, nullSequenceItem());
  }
}

}  // namespace

void Tag::serializeX(Quiltra_Serialization::Sink& sink) const {
  static const std::string kMethod("Tag::serializeX");
  // An item Tree too deep is refused in the name of its own writer, as the reader does.
  const NestingCheck::Scope scope(*this, "Tree::serializeX", sink);
  refuseNullItems(itemList(), kMethod);
  _info.serializeX(sink);
  sink.writeType(Quiltra_Serialization::kCodeVector);
  sink.writeRaw(static_cast<std::uint32_t>(_values.size()));
  for (std::size_t index = 0; index < _values.size(); ++index) _values[index].serializeX(sink);
  sink.write(numberOfSequenceItems());
  if (numberOfSequenceItems() == 0) return;
  const WrittenItemLevel level;  // the items lie one level below this Tag
  for (const std::shared_ptr<Tree>& item : *_items) item->serializeX(sink);
}

void Tag::deserializeX(Quiltra_Serialization::Source& source) {
  _values.clear();
  dropSequenceItems();
  _info.deserializeX(source);
  source.readTypeX(Quiltra_Serialization::kCodeVector);
  for (std::uint32_t count = source.readRaw(); count > 0; --count) {
    _values.emplaceBack().deserializeX(source);
  }
  unsigned int items = 0;
  source.read(items);
  const ItemLevel level;  // the items lie one level below this Tag
  for (; items > 0; --items) {
    auto item = std::make_shared<Tree>();
    item->deserializeX(source);
    writableItems().push_back(std::move(item));
  }
}

void Tag::toStream(std::ostream& out) const {
  static const std::string kMethod("Tag::toStream");
  const NestingCheck::Scope scope(*this, NestingCheck::Form::Text, "Tree::toStream");
  refuseNullItems(itemList(), kMethod);
  _info.toStream(out);
  Quiltra_Utils::toStream(out, numberOfValues());
  for (std::size_t index = 0; index < _values.size(); ++index) _values[index].toStream(out);
  Quiltra_Utils::toStream(out, numberOfSequenceItems());
  for (const std::shared_ptr<Tree>& item : itemList()) item->toStream(out);
}

// Once the stream has failed nothing more can be read: the entry that was being read is
// kept and no further empty entries are appended.
void Tag::fromStream(std::istream& in) {
  _values.clear();
  dropSequenceItems();
  _info.fromStream(in);
  unsigned int count = 0;
  Quiltra_Utils::fromStream(in, count);
  for (; count > 0 && in; --count) {
    _values.emplaceBack().fromStream(in);
  }
  count = 0;
  Quiltra_Utils::fromStream(in, count);
  const ItemLevel level;  // the items lie one level below this Tag
  for (; count > 0 && in; --count) {
    auto item = std::make_shared<Tree>();
    item->fromStream(in);
    writableItems().push_back(std::move(item));
  }
}

}  // namespace Quiltra
