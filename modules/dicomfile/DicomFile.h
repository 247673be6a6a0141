#ifndef QUILTRA_MODULES_DICOMFILE_DICOMFILE_H_
#define QUILTRA_MODULES_DICOMFILE_DICOMFILE_H_

// Reading and writing DICOM files (preamble, "DICM", file meta information, data set).
//
// What is read:
//   - A preamble of 128 bytes and "DICM", then the meta group 0002 in explicit VR little
//     endian; its transfer syntax UID (0002,0010) sets how the data set is read. A meta group
//     without the preamble is read too. The meta group ends where its group length
//     (0002,0000) says, else before the first element of another group.
//   - A file without meta information is read as explicit VR when its first element carries a
//     VR (big endian when its group reads so), else as implicit VR little endian.
//   - Implicit VR little endian, explicit VR little and big endian, deflated explicit VR
//     little endian, and every encapsulated syntax: there each pixel data fragment is one
//     value of its element, the basic offset table (possibly empty) the first.
//   - Sequences and items of defined and undefined length at any depth (256 levels at most).
//   - Implicit VR: the representation comes from the dictionary; group lengths are UL,
//     private creators LO, anything else the dictionary does not know is UN. A UN element of
//     undefined length, or whose value holds an implicit VR sequence, is read as a sequence.
//   - Values are held as the library holds them: texts one value per backslash-separated piece
//     (LT, ST, UT whole) with its one padding byte removed, numbers one value each in little
//     endian order, OB, OW, OL, OF and UN as one value of all their bytes in little endian
//     order. Representations outside the library's 28 map as FileVr.h says.
//   - The meta group is part of the returned data set.
//
// What is written: a preamble, "DICM", the meta group with its group length (version,
// SOP class and instance UIDs from (0008,0016) and (0008,0018), the transfer syntax UID, this
// library's implementation class UID and version name, and any further 0002 elements of the
// data set), then the data set in the syntax asked for. Sequences and items get defined
// lengths, encapsulated pixel data undefined ones with one fragment per value. Texts are
// padded to even lengths with a blank (UI with a zero byte), binary values with a zero byte.
// Group lengths other than the meta's are not written.
//
// Damaged input. Each of these throws Exception("DicomFile::read", description), the
// description naming what was wrong and the byte offset (in a deflated file, the offset in
// the inflated data set):
//   - a file that ends inside an element header, a value, an item or a sequence;
//   - a length running past the end of the file or of the enclosing item;
//   - an unknown VR spelling inside a sequence item; an item tag missing where one belongs;
//   - a transfer syntax UID the library does not name; a deflated stream that does not
//     inflate, or inflates past 1100 times its size (more than deflate can give);
//   - sequences nested deeper than 256 levels.
// These are read tolerantly, with a warning through the library's logging handler:
//   - a missing meta group or missing transfer syntax UID (the syntax is then detected as for
//     a file without meta information);
//   - a meta group that does not end where its group length says: it then ends before the
//     first element of another group. Only before a little-endian, uncompressed data set are
//     group 0002 elements after a group length that ends between elements read as meta
//     information (a big-endian data set may start with bytes that read as group 0002);
//   - garbage after the data set: at the top level, an element header that cannot start an
//     element (unknown VR, a tag not above the previous one, an item or delimiter tag, or
//     fewer than 8 bytes left) ends the data set, and what was read so far is returned;
//   - a numeric value whose length is not a multiple of its width (the last value is short);
//   - a VR in an explicit file that differs from the dictionary's (the file's VR is kept).
// Nothing is ever allocated for a length before that many bytes are known to remain, so the
// memory used stays a small multiple of the file's (or the inflated data set's) size.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <quiltra/core/TagInfo.h>
#include <quiltra/core/TransferSyntax.h>

namespace Quiltra {
class Dict;
class Tree;
}  // namespace Quiltra

namespace Quiltra_DicomFile {

class ByteInput;
class ByteOutput;

/// Which elements to handle: called with the element's tag and representation (no name);
/// an element it answers false for is skipped (reading) or left out (writing), items and all.
using ElementFilter = std::function<bool(const Quiltra::TagInfo&)>;

struct ReadOptions {
  /// Representations for implicit VR, names and multiplicities; may be empty (all UN).
  std::shared_ptr<const Quiltra::Dict> dict;
  /// Empty: every element.
  ElementFilter filter;
};

struct DicomContent {
  /// The meta group (when the file has one) and the data set.
  std::shared_ptr<Quiltra::Tree> tree;
  Quiltra::TransferSyntax syntax = Quiltra::IMPLICIT_LITTLE_ENDIAN;
  bool hadMeta = false;
};

/// Reads a whole file. Throws as the header comment says.
DicomContent readDicom(ByteInput& input, const ReadOptions& options);
DicomContent readDicomFile(const std::string& path, const ReadOptions& options);
DicomContent readDicomBytes(const unsigned char* data, std::size_t size,
                            const ReadOptions& options);

struct WriteOptions {
  /// Empty: every element.
  ElementFilter filter;
};

/// Writes tree (its all-layers view) as a file in syntax. Throws
/// Exception("DicomFile::write", ...) for a syntax that has no UID (IMPLICIT_BIG_ENDIAN or
/// an invalid code), for an item or value larger than 4 GiB, for fragments of pixel data in
/// a native syntax, and when the file cannot be written.
void writeDicom(const Quiltra::Tree& tree, Quiltra::TransferSyntax syntax, ByteOutput& output,
                const WriteOptions& options);
/// Writes to a temporary file beside path and renames it over path once complete.
void writeDicomFile(const Quiltra::Tree& tree, Quiltra::TransferSyntax syntax,
                    const std::string& path, const WriteOptions& options);
std::vector<unsigned char> writeDicomBytes(const Quiltra::Tree& tree,
                                           Quiltra::TransferSyntax syntax,
                                           const WriteOptions& options);

/// This library's implementation class UID and version name, written in the meta group.
inline constexpr const char* kImplementationUid = "2.25.255640833964418340829541624826377561437";
inline constexpr const char* kImplementationVersion = "QUILTRA_0_1";

}  // namespace Quiltra_DicomFile

#endif  // QUILTRA_MODULES_DICOMFILE_DICOMFILE_H_
