#ifndef QUILTRA_IO_DUMP_H_
#define QUILTRA_IO_DUMP_H_

#include <iostream>
#include <memory>
#include <string>

#include <quiltra/core/Export.h>
#include <quiltra/core/Vr.h>
#include <quiltra/io/Writer.h>

namespace Quiltra {

class Dict;
class IOParameter;
class Message;
class Tag;
class Tree;

/// A writer that prints a message as indented, readable text for inspection: a header
/// with the transfer syntax and character set, then per attribute a line with tag,
/// representation, multiplicity and name, a line per value and bracketed sequence items:
///
///   Transfer Syntax: <dictionary's name> <syntax>
///   Specific Character Set: <character set>
///   (0008,0060) VR: CS VM: 1-1 Modality
///      1: 'MR'
///   (0008,1140) VR: SQ VM: 1-4294967295 ReferencedImageSequence
///      <<< 1
///         (0008,1150) VR: UI VM: 1-1 ReferencedSOPClassUID
///            1: '1.2.3'
///      >>> 1
///
/// Nameless tags are described by the dictionary, or named "- non std. tag -" when the
/// dictionary throws for them. Still abstract: writeFile and createInstance come from a
/// derived class (TextDump is the library's own).
/// Shares its dictionary; refers to its output stream, which must outlive the dump.
/// Threads: one dump writes to one stream; use a dump per thread.
/// Fails: exceptions of the tag accessors and of the dictionary's header text pass out;
/// what was printed before them stays printed.
class QUILTRA_EXPORT Dump : public Writer {
 public:
  /// Prints to out. Without a dictionary the header has an empty syntax name and nameless
  /// tags stay nameless.
  explicit Dump(std::shared_ptr<const Dict> dict, std::ostream& out = std::cout);
  Dump(const Dump& other) = default;  // shares the dictionary and the stream
  Dump& operator=(const Dump& other) = default;
  ~Dump() override;

  /// Prints message to the dump's stream, one stream write per line. The selection is not
  /// consulted: every attribute is printed. Throws Exception("Dump::write", "no message")
  /// for an empty message pointer.
  virtual void write(std::shared_ptr<IOParameter> selection, std::shared_ptr<Message> message);

 protected:
  /// What write prints, to out instead of the dump's stream.
  void print(std::ostream& out, const std::shared_ptr<Message>& message) const;

 private:
  /// Prints the tree's elements through all layers at the indentation level; line is the
  /// buffer every line is built in.
  void Write(std::ostream& os, const Tree& tree, unsigned int indent, std::string& line) const;
  void writeValues(std::ostream& os, const Tag& tag, Vr vr, unsigned int indent,
                   std::string& line) const;
  void writeItems(std::ostream& os, const Tag& tag, unsigned int indent, std::string& line) const;
  /// Appends the indentation of level (three blanks per level) to line.
  static void indentstr(std::string& line, unsigned int level);

  std::ostream* _out;
};

}  // namespace Quiltra

#endif  // QUILTRA_IO_DUMP_H_
