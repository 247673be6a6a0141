#include "quiltra/dataset/Tree.h"

#include "NestingGuard.h"
#include "StreamBytes.h"
#include "dataset/OrderedInsert.h"

#include <istream>
#include <memory>
#include <ostream>
#include <set>
#include <utility>

#include <quiltra/core/Exception.h>
#include <quiltra/core/TagId.h>
#include <quiltra/element/Tag.h>
#include <quiltra/io/Sink.h>
#include <quiltra/io/Source.h>
#include <quiltra/io/StreamPrimitives.h>

// The two storage forms of a Tree.
//
// Binary (typed fields; u32 is type code 2 followed by 4 bytes little-endian):
//   u32  N: number of elements in the AllLayers view
//   N x  Tag, ascending by id (the Tag's own binary layout)
// The view is written flat: inherited elements as if they were own ones, hidden ones
// left out, and no parent, deletion marks or dictionary. The reader keys each Tag by
// its own TagInfo id; a later Tag replaces an earlier one with the same id.
//
// Text (primitive encodings of the text stream, two characters per byte):
//   int  T: number of own entries, deletion placeholders included
//   T x  (int: raw id of the map key, then the Tag's own text layout), ascending by id
//   int  D: number of deletion marks
//   D x  TagId (unsigned raw id), ascending
// Only the own layer is written, so a Tree with a parent is refused before anything is
// written.
//
// Nesting: both readers refuse item Trees more than 256 levels below the object being read
// (binary: Exception "nesting too deep"; text: read as the end of the stream), and both
// writers refuse, before writing anything, an object whose items nest deeper. Counts are never
// trusted: once the text has ended, one more entry or mark stands for all the zero-filled ones a
// short stream would still give.

namespace Quiltra {

namespace {

int readCount(std::istream& in) {
  int count = 0;
  Quiltra_Utils::fromStream(in, count);
  return count;
}

// A stream that ends reads as zeros from then on, so every entry after the end is the same
// empty Tag under (0000,0000) and every mark after it is (0000,0000). One such entry or
// mark stands for all of them: a forged count neither loops nor allocates past the text.
void readEntries(std::istream& in, Tree::TagMap& tags) {
  for (int count = readCount(in); count > 0; --count) {
    const bool ended = !in;
    unsigned int key = 0;
    Quiltra_Utils::fromStream(in, key);
    auto tag = std::make_shared<Tag>();
    tag->fromStream(in);
    insertOrAssignInOrder(tags, TagId(key), std::move(tag));
    if (ended) return;
  }
}

void readMarks(std::istream& in, std::set<unsigned int>& marks) {
  for (int count = readCount(in); count > 0; --count) {
    const bool ended = !in;
    TagId id;
    id.fromStream(in);
    marks.insert(id.rawId());
    if (ended) return;
  }
}

}  // namespace

void Tree::serializeX(Quiltra_Serialization::Sink& sink) const {
  const NestingCheck::Scope scope(*this, "Tree::serializeX", sink);
  if (WrittenItemLevel::tooDeep()) throw Exception("Tree::serializeX", "nesting too deep");
  // The count goes first: a root without marks knows it, any other view is counted by a
  // walk of its own (no listing built) before the walk that writes.
  unsigned int count = 0;
  if (!_parent && !hasDeletionMarks()) {
    count = tagsSize();
  } else {
    forEachTag(AllLayers, [&count](const TagId&, const Tag&) { ++count; });
  }
  sink.write(count);
  forEachTag(AllLayers, [&sink](const TagId&, const Tag& tag) { tag.serializeX(sink); });
}

void Tree::deserializeX(Quiltra_Serialization::Source& source) {
  if (ItemLevel::tooDeep()) throw Exception("Tree::deserializeX", "nesting too deep");
  _tags.clear();
  _deleted.reset();
  _parent.reset();
  unsigned int count = 0;
  source.read(count);
  // Each Tag consumes input or throws, so a forged count ends at the end of the input.
  for (; count > 0; --count) {
    auto tag = std::make_shared<Tag>();
    tag->deserializeX(source);
    const TagId id = tag->info().id();
    insertOrAssignInOrder(_tags, id, std::move(tag));
  }
}

void Tree::toStream(std::ostream& out) const {
  if (_parent) throw Exception("Tree::toStream", "cannot stream tree with parents");
  const NestingCheck::Scope scope(*this, NestingCheck::Form::Text, "Tree::toStream");
  Quiltra_Utils::toStream(out, static_cast<int>(_tags.size()));
  for (const auto& entry : _tags) {
    // The raw id as unsigned: the same four bytes as the int of the layout.
    Quiltra_Utils::toStream(out, entry.first.rawId());
    entry.second->toStream(out);
  }
  Quiltra_Utils::toStream(out, static_cast<int>(_deleted ? _deleted->size() : 0));
  if (_deleted) {
    for (unsigned int raw : *_deleted) TagId(raw).toStream(out);
  }
}

void Tree::fromStream(std::istream& in) {
  // Too deep: read as the end of the stream, so this Tree and what follows read as zeros.
  if (ItemLevel::tooDeep()) {
    const Quiltra_Utils::ExceptionMaskOff maskOff(in);
    in.setstate(std::ios::failbit);
  }
  _parent.reset();
  _tags.clear();
  _deleted = std::make_unique<std::set<unsigned int>>();
  readEntries(in, _tags);
  readMarks(in, *_deleted);
  if (_deleted->empty()) _deleted.reset();
}

}  // namespace Quiltra
