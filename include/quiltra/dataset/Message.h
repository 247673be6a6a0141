#ifndef QUILTRA_DATASET_MESSAGE_H_
#define QUILTRA_DATASET_MESSAGE_H_

#include <istream>
#include <memory>
#include <ostream>
#include <string>

#include <quiltra/core/Export.h>
#include <quiltra/core/TransferSyntax.h>
#include <quiltra/io/Serializable.h>

namespace Quiltra {

class Tree;

/// A top-level data set as readers deliver it and writers take it: one Tree with the
/// transfer syntax it is encoded in and the name of the character set of its texts.
/// Shares its Tree with the caller (setTags stores the caller's pointer, tags() hands it
/// out again); only copy construction and assignment copy the Tree. A message given a
/// constant Tree has no writable Tree.
/// Threads: const members may run concurrently; changes need exclusive use.
/// Failures: learning the character set never throws; conversion passes on the exceptions
/// of the character-set conversion and of Tag; the storage forms fail as the Tree's do.
class QUILTRA_EXPORT Message : public Quiltra_Serialization::Serializable,
                               public Quiltra_Serialization::Deserializable {
 public:
  /// Character set "ISO_IR 6", syntax IMPLICIT_LITTLE_ENDIAN, no Tree.
  Message();
  /// The given character set (empty: not yet known) and syntax, no Tree.
  Message(const std::string& characterSet, TransferSyntax syntax);
  /// Deep copy: the other message's Tree is copied with Tree::copy.
  Message(const Message& other);
  /// Takes over the character set and syntax and a copy of other's Tree; without a Tree in
  /// other, this message keeps its own.
  Message& operator=(const Message& other);
  ~Message() override;

  TransferSyntax syntax() const noexcept { return _syntax; }
  /// The writable Tree; empty when there is none or it was given constant.
  const std::shared_ptr<Tree>& tags() { return _tree; }
  /// The Tree for reading; empty when there is none.
  const std::shared_ptr<const Tree>& tags() const { return _constTree; }
  /// Shares tree for writing and reading.
  void setTags(std::shared_ptr<Tree> tree);
  /// Shares tree for reading only; the writable Tree becomes empty.
  void setTags(std::shared_ptr<const Tree> tree);

  /// The text of (0008,0005) seen through all layers of the Tree; empty when there is no
  /// Tree or no such element, or when reading it throws.
  std::string specifiedCharacterSet();
  /// The message's character set; while it is empty, learnt from the Tree (a non-empty
  /// answer is kept for good).
  std::string specificCharacterSet();
  /// Converts the writable Tree's texts from the message's character set to characterSet
  /// and records characterSet; does nothing without a writable Tree. (0008,0005) is left
  /// as it is. On an exception the character set stays as it was.
  void convertToCharacterSet(const std::string& characterSet);

  // Storage forms.
  /// Character set, syntax and the Tree (flat). A message without a Tree is written with
  /// an empty one.
  void serializeX(Quiltra_Serialization::Sink& sink) const override;
  /// Reads into a new Tree that becomes both the writable and the constant one.
  void deserializeX(Quiltra_Serialization::Source& source) override;
  /// Character set, syntax, whether there is a Tree, and the Tree. Throws
  /// Exception("Tree::toStream", "cannot stream tree with parents") for a layered Tree.
  void toStream(std::ostream& out) const;
  /// Resets to the defaults, then reads; a short stream reads as zeros (empty texts, no
  /// Tree), never as an error.
  void fromStream(std::istream& in);

 private:
  std::string _characterSet;
  TransferSyntax _syntax = IMPLICIT_LITTLE_ENDIAN;
  std::shared_ptr<Tree> _tree;
  std::shared_ptr<const Tree> _constTree;
};

}  // namespace Quiltra

#endif  // QUILTRA_DATASET_MESSAGE_H_
