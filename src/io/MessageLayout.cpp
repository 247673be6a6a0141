/*
 * The two storage forms of a Message.
 *
 * Binary (typed fields):
 *   09 00 00 00, u32 L, L bytes   character set (string)
 *   0F 00 00 00, 4 bytes          transfer syntax number (enumeration)
 *   Tree                          the constant Tree, flat (its own binary form)
 * There is no flag for a missing Tree: a message without one is written with an empty
 * Tree (the count 0), and every message reads back with a Tree.
 *
 * Text (two characters per byte):
 *   string  character set
 *   int     transfer syntax number
 *   bool    whether there is a Tree
 *   Tree    the constant Tree's own layer, only when the bool is true
 *
 * Both writers measure the Tree's nesting before the character set goes out, so a Tree
 * that nests too deep for the readers writes nothing at all.
 *
 * Both readers rely on the Tree's: counts and lengths are never trusted, so damaged input
 * ends in the source's end-of-input failure (binary) or reads as zeros (text).
 */
#include "quiltra/dataset/Message.h"

#include "NestingGuard.h"

#include <istream>
#include <memory>
#include <ostream>
#include <string>
#include <utility>

#include <quiltra/dataset/Tree.h>
#include <quiltra/io/Sink.h>
#include <quiltra/io/Source.h>
#include <quiltra/io/StreamPrimitives.h>
#include <quiltra/services/Quiltra_Unicode.h>

namespace Quiltra {

void Message::serializeX(Quiltra_Serialization::Sink& sink) const {
  const Tree empty;
  const Tree& tree = _constTree ? *_constTree : empty;
  const NestingCheck::Scope scope(tree, "Tree::serializeX", sink);
  sink.write(_characterSet);
  sink.write(_syntax);
  tree.serializeX(sink);
}

void Message::deserializeX(Quiltra_Serialization::Source& source) {
  source.read(_characterSet);
  source.read(_syntax);
  auto tree = std::make_shared<Tree>();
  tree->deserializeX(source);
  setTags(std::move(tree));
}

void Message::toStream(std::ostream& out) const {
  const int syntax = _syntax;
  const bool hasTree = static_cast<bool>(_constTree);
  const Tree empty;
  const NestingCheck::Scope scope(hasTree ? *_constTree : empty, NestingCheck::Form::Text,
                                  "Tree::toStream");
  Quiltra_Utils::toStream(out, _characterSet);
  Quiltra_Utils::toStream(out, syntax);
  Quiltra_Utils::toStream(out, hasTree);
  if (hasTree) _constTree->toStream(out);
}

void Message::fromStream(std::istream& in) {
  _characterSet = Quiltra_Unicode::defaultCharacterSet();
  _syntax = IMPLICIT_LITTLE_ENDIAN;
  _tree.reset();
  _constTree.reset();
  std::string characterSet;
  int syntax = 0;
  bool hasTree = false;
  Quiltra_Utils::fromStream(in, characterSet);
  Quiltra_Utils::fromStream(in, syntax);
  Quiltra_Utils::fromStream(in, hasTree);
  if (hasTree) {
    auto tree = std::make_shared<Tree>();
    tree->fromStream(in);
    setTags(std::move(tree));
  }
  _characterSet = std::move(characterSet);
  _syntax = static_cast<TransferSyntax>(syntax);
}

}  // namespace Quiltra
