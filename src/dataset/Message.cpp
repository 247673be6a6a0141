#include "quiltra/dataset/Message.h"

#include <memory>
#include <string>
#include <utility>

#include <quiltra/core/Exception.h>
#include <quiltra/core/TagId.h>
#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>
#include <quiltra/services/Quiltra_Unicode.h>

namespace Quiltra {

Message::Message() : _characterSet(Quiltra_Unicode::defaultCharacterSet()) {}

Message::Message(const std::string& characterSet, TransferSyntax syntax)
    : _characterSet(characterSet), _syntax(syntax) {}

// Starts empty and without a Tree, then assigns.
Message::Message(const Message& other) : Serializable(other), Deserializable(other) {
  *this = other;
}

Message& Message::operator=(const Message& other) {
  if (this == &other) return *this;
  _characterSet = other._characterSet;
  _syntax = other._syntax;
  if (other._constTree) setTags(other._constTree->copy());
  return *this;
}

Message::~Message() = default;

void Message::setTags(std::shared_ptr<Tree> tree) {
  _constTree = tree;
  _tree = std::move(tree);
}

void Message::setTags(std::shared_ptr<const Tree> tree) {
  _tree.reset();
  _constTree = std::move(tree);
}

std::string Message::specifiedCharacterSet() {
  if (!_constTree) return std::string();
  try {
    const std::shared_ptr<const Tag> element = _constTree->getTag(TagId(0x0008, 0x0005), AllLayers);
    return element ? element->toString() : std::string();
  } catch (const Exception&) {
    return std::string();
  }
}

std::string Message::specificCharacterSet() {
  if (_characterSet.empty()) _characterSet = specifiedCharacterSet();
  return _characterSet;
}

void Message::convertToCharacterSet(const std::string& characterSet) {
  if (!_tree) return;
  if (_characterSet != characterSet) _tree->convertCharacterSet(_characterSet, characterSet);
  _characterSet = characterSet;
}

}  // namespace Quiltra
