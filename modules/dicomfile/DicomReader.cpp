// Decoding of a DICOM file into a Tree.
//
// Byte layout (all numbers in the syntax's byte order; item tags and delimiters too):
//   file      := [preamble(128) "DICM"] [meta elements, group 0002, explicit VR LE] data set
//                (the meta group's first element, its group length, gives its end)
//   element   := tag(group 2, element 2) header value
//   header    := implicit: length(4)
//              | explicit: VR(2 letters) length(2)                  for most VRs
//              | explicit: VR(2 letters) reserved(2) length(4)      for OB OD OF OL OV OW SQ
//                                                                  SV UC UN UR UT UV
//   value     := length bytes | undefined length (FFFFFFFF): items up to (FFFE,E0DD)
//   item      := (FFFE,E000) length(4), then elements (defined length) or elements up to
//                (FFFE,E00D) length 0 (undefined length)
// An undefined-length value of SQ or UN is a sequence (a UN's content is implicit VR LE);
// of any other VR it is encapsulated pixel data: items whose bytes are the fragments.

#include "ByteInput.h"
#include "Deflate.h"
#include "DicomFile.h"
#include "FileVr.h"
#include "SyntaxUid.h"
#include "Tags.h"

#include <cstring>
#include <optional>
#include <string>
#include <unordered_map>

#include <quiltra/core/Exception.h>
#include <quiltra/core/Logging.h>
#include <quiltra/core/Quiltra_Utils.h>
#include <quiltra/dataset/Dict.h>
#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>

namespace Quiltra_DicomFile {

namespace {

constexpr std::uint32_t kUndefinedLength = 0xFFFFFFFFu;
constexpr unsigned kMaxDepth = 256;

struct Encoding {
  bool explicitVr;
  bool bigEndian;
};
constexpr Encoding kImplicitLittle{false, false};

std::string hex4(unsigned value) {
  static const char kDigits[] = "0123456789abcdef";
  std::string text(4, '0');
  for (int i = 3; i >= 0; --i, value >>= 4) text[i] = kDigits[value & 0xF];
  return text;
}

std::string tagText(std::uint32_t tag) {
  return "(" + hex4(tag >> 16) + "," + hex4(tag & 0xFFFF) + ")";
}

[[noreturn]] void fail(const std::string& what, std::uint64_t offset) {
  throw Quiltra::Exception("DicomFile::read", what + " at offset " + std::to_string(offset));
}

void warn(const std::string& what, std::uint64_t offset) {
  Quiltra_Utils::logMessage("DicomFile::read: " + what + " at offset " + std::to_string(offset), 0);
}

std::uint16_t get16(const unsigned char* p, bool bigEndian) {
  return bigEndian ? static_cast<std::uint16_t>(p[0] << 8 | p[1])
                   : static_cast<std::uint16_t>(p[1] << 8 | p[0]);
}

std::uint32_t get32(const unsigned char* p, bool bigEndian) {
  return bigEndian ? (std::uint32_t{p[0]} << 24 | std::uint32_t{p[1]} << 16 |
                      std::uint32_t{p[2]} << 8 | p[3])
                   : (std::uint32_t{p[3]} << 24 | std::uint32_t{p[2]} << 16 |
                      std::uint32_t{p[1]} << 8 | p[0]);
}

void swapUnits(unsigned char* data, std::size_t n, std::size_t width) {
  if (width < 2) return;
  for (std::size_t i = 0; i + width <= n; i += width) {
    for (std::size_t a = i, b = i + width - 1; a < b; ++a, --b) std::swap(data[a], data[b]);
  }
}

struct Header {
  std::uint32_t tag = 0;
  std::uint32_t length = 0;
  FileVr vr = FileVr::UN;
  bool hasVr = false;
  std::uint64_t offset = 0;
};

// A file VR that differs from the dictionary's beyond the pairs the standard leaves open.
bool contradicts(Quiltra::Vr file, Quiltra::Vr dict) {
  auto either = [&](Quiltra::Vr a, Quiltra::Vr b) {
    return (file == a || file == b) && (dict == a || dict == b);
  };
  return file != dict && file != Quiltra::UN && !either(Quiltra::OB, Quiltra::OW) &&
         !either(Quiltra::US, Quiltra::SS);
}

enum class HeaderStatus { kOk, kEnd, kNotAnElement };

// One reading of one file: the input, the options and a cache of dictionary answers.
class Decoder {
 public:
  Decoder(ByteInput& input, const ReadOptions& options) : _in(input), _options(options) {}

  DicomContent run();

 private:
  struct Described {
    bool known = false;
    bool warned = false;
    Quiltra::TagInfo info;
  };

  Encoding detectEncoding();
  std::optional<Quiltra::TransferSyntax> readMeta(Quiltra::Tree& tree);
  /// Whether elements of the meta group follow the end its group length gives, and may be
  /// read as part of it.
  bool metaRunsOn(const Quiltra::Tree& meta, Encoding encoding);
  HeaderStatus readHeader(Encoding encoding, Header& header, bool topLevel);
  void readDataSet(Quiltra::Tree& tree, Encoding encoding, std::uint64_t end, unsigned depth,
                   bool topLevel);
  void readElement(Quiltra::Tree& tree, const Header& header, Encoding encoding, unsigned depth);
  void readSequence(Quiltra::Tag& tag, Encoding encoding, std::uint32_t length, unsigned depth);
  void readFragments(Quiltra::Tag& tag, Encoding encoding);
  void readValues(Quiltra::Tag& tag, const FileVrInfo& vr, std::uint32_t length, Encoding encoding);
  bool readUnAsSequence(Quiltra::Tag& tag, std::uint32_t length, unsigned depth);
  void skipValue(const Header& header, Encoding encoding, unsigned depth);
  void skipItems(Encoding encoding, unsigned depth);
  void readItemHeader(Encoding encoding, std::uint32_t& tag, std::uint32_t& length);
  /// Reads the header of the next item of a sequence or of fragments, checking a defined
  /// length against the input; false at the sequence delimiter.
  bool nextItem(Encoding encoding, std::uint32_t& length);
  void need(std::uint64_t n, const char* what);
  Described& describe(std::uint32_t tag);
  FileVr implicitVr(std::uint32_t tag);

  ByteInput& _in;
  const ReadOptions& _options;
  std::unordered_map<std::uint32_t, Described> _described;
  bool _filtering = true;
  std::vector<unsigned char> _scratch;
};

void Decoder::need(std::uint64_t n, const char* what) {
  if (_in.remaining() < n) fail(std::string("file ends inside ") + what, _in.offset());
}

Decoder::Described& Decoder::describe(std::uint32_t tag) {
  auto found = _described.find(tag);
  if (found != _described.end()) return found->second;
  Described described;
  const Quiltra::TagId id(tag);
  described.info.setId(id);
  if (_options.dict && _options.dict->knowsTagId(id)) {
    described.known = true;
    described.info = _options.dict->tagInfo(id);
    described.info.setId(id);
  }
  return _described.emplace(tag, std::move(described)).first->second;
}

FileVr Decoder::implicitVr(std::uint32_t tag) {
  const std::uint16_t group = tag >> 16;
  const std::uint16_t element = tag & 0xFFFF;
  if (element == 0) return FileVr::UL;
  if ((group & 1) && element >= 0x0010 && element <= 0x00FF) return FileVr::LO;
  const Described& described = describe(tag);
  return described.known ? toFileVr(described.info.vr()) : FileVr::UN;
}

void Decoder::readItemHeader(Encoding encoding, std::uint32_t& tag, std::uint32_t& length) {
  unsigned char bytes[8];
  need(8, "an item header");
  _in.read(bytes, 8);
  tag =
      std::uint32_t{get16(bytes, encoding.bigEndian)} << 16 | get16(bytes + 2, encoding.bigEndian);
  length = get32(bytes + 4, encoding.bigEndian);
}

HeaderStatus Decoder::readHeader(Encoding encoding, Header& header, bool topLevel) {
  header.offset = _in.offset();
  if (_in.atEnd()) return HeaderStatus::kEnd;
  if (_in.remaining() < 8) {
    if (topLevel) return HeaderStatus::kNotAnElement;
    fail("file ends inside an element header", header.offset);
  }
  unsigned char bytes[12];
  _in.read(bytes, 8);
  header.tag =
      std::uint32_t{get16(bytes, encoding.bigEndian)} << 16 | get16(bytes + 2, encoding.bigEndian);
  header.hasVr = false;
  if (!encoding.explicitVr || (header.tag >> 16) == kItemGroup) {
    header.length = get32(bytes + 4, encoding.bigEndian);
    return HeaderStatus::kOk;
  }
  if (!parseFileVr(bytes[4], bytes[5], header.vr)) {
    if (topLevel) return HeaderStatus::kNotAnElement;
    fail("unknown VR in the header of " + tagText(header.tag), header.offset);
  }
  header.hasVr = true;
  if (!fileVrInfo(header.vr).longLength) {
    header.length = get16(bytes + 6, encoding.bigEndian);
    return HeaderStatus::kOk;
  }
  need(4, "an element header");
  _in.read(bytes + 8, 4);
  header.length = get32(bytes + 8, encoding.bigEndian);
  return HeaderStatus::kOk;
}

void Decoder::readDataSet(Quiltra::Tree& tree, Encoding encoding, std::uint64_t end, unsigned depth,
                          bool topLevel) {
  const bool delimited = end == UINT64_MAX && !topLevel;
  std::uint32_t previous = 0;
  bool first = true;
  for (;;) {
    if (!delimited && _in.offset() >= end) return;
    Header header;
    const HeaderStatus status = readHeader(encoding, header, topLevel);
    if (status == HeaderStatus::kEnd) {
      if (topLevel) return;
      fail("file ends inside an item", header.offset);
    }
    const bool itemTag = (header.tag >> 16) == kItemGroup;
    if (status == HeaderStatus::kNotAnElement ||
        (topLevel && (itemTag || (!first && header.tag <= previous)))) {
      warn("ignoring " + std::to_string(_in.remaining() + (_in.offset() - header.offset)) +
               " bytes after the data set",
           header.offset);
      _in.skip(_in.remaining());
      return;
    }
    if (header.tag == kItemDelimitation) {
      if (delimited) return;
      fail("item delimiter in an item of defined length", header.offset);
    }
    if (itemTag) fail("unexpected " + tagText(header.tag) + " in an item", header.offset);
    if (header.length != kUndefinedLength && header.length > _in.remaining()) {
      fail("value of " + tagText(header.tag) + " runs past the end of the file", header.offset);
    }
    if (!delimited && header.length != kUndefinedLength && _in.offset() + header.length > end) {
      fail("value of " + tagText(header.tag) + " runs past the end of its item", header.offset);
    }
    readElement(tree, header, encoding, depth);
    if (!delimited && _in.offset() > end) {
      fail("element " + tagText(header.tag) + " runs past the end of its item", header.offset);
    }
    previous = header.tag;
    first = false;
  }
}

void Decoder::readElement(Quiltra::Tree& tree, const Header& header, Encoding encoding,
                          unsigned depth) {
  const FileVr fileVr = header.hasVr ? header.vr : implicitVr(header.tag);
  const FileVrInfo& vr = fileVrInfo(fileVr);
  const bool undefined = header.length == kUndefinedLength;
  // Implicit VR data of undefined length can only be a sequence (or, for pixel data,
  // fragments, which the dictionary then calls OB or OW).
  const bool sequence = vr.fileVr == FileVr::SQ || (undefined && vr.fileVr == FileVr::UN);
  const Quiltra::Vr libraryVr = sequence ? Quiltra::SQ : vr.vr;

  Quiltra::TagInfo probe(Quiltra::TagId(header.tag), std::string(), libraryVr, {0, 0});
  if (_filtering && _options.filter && !_options.filter(probe)) {
    skipValue(header, encoding, depth);
    return;
  }
  Described& described = describe(header.tag);
  if (header.hasVr && described.known && !described.warned &&
      contradicts(vr.vr, described.info.vr())) {
    described.warned = true;
    warn("VR " + std::string(vr.spelling) + " of " + tagText(header.tag) + " differs from the " +
             toString(described.info.vr()) + " of the dictionary; keeping " + vr.spelling,
         header.offset);
  }
  Quiltra::TagInfo info = described.known ? described.info : probe;
  info.setVr(libraryVr);
  auto tag = std::make_shared<Quiltra::Tag>(info);
  if (sequence) {
    // The content of a UN is implicit VR little endian whatever the file's syntax.
    readSequence(*tag, vr.fileVr == FileVr::UN ? kImplicitLittle : encoding, header.length, depth);
  } else if (undefined) {
    readFragments(*tag, encoding);
  } else if (vr.fileVr != FileVr::UN || !readUnAsSequence(*tag, header.length, depth)) {
    readValues(*tag, vr, header.length, encoding);
  }
  tree.addTag(Quiltra::TagId(header.tag), std::move(tag));
}

void Decoder::readSequence(Quiltra::Tag& tag, Encoding encoding, std::uint32_t length,
                           unsigned depth) {
  if (depth >= kMaxDepth) fail("sequences nested deeper than 256 levels", _in.offset());
  const bool delimited = length == kUndefinedLength;
  const std::uint64_t end = delimited ? UINT64_MAX : _in.offset() + length;
  for (;;) {
    if (!delimited && _in.offset() >= end) return;
    const std::uint64_t at = _in.offset();
    if (delimited && _in.atEnd()) fail("file ends inside a sequence", at);
    std::uint32_t itemTag = 0;
    std::uint32_t itemLength = 0;
    readItemHeader(encoding, itemTag, itemLength);
    if (itemTag == kSequenceDelimitation && delimited) return;
    if (itemTag != kItem) fail("item expected, found " + tagText(itemTag), at);
    auto item = std::make_shared<Quiltra::Tree>();
    if (itemLength == kUndefinedLength) {
      readDataSet(*item, encoding, UINT64_MAX, depth + 1, false);
    } else {
      if (itemLength > _in.remaining() || _in.offset() + itemLength > end) {
        fail("item runs past the end of its sequence", at);
      }
      readDataSet(*item, encoding, _in.offset() + itemLength, depth + 1, false);
    }
    tag.addSequenceItem(item);
  }
}

bool Decoder::nextItem(Encoding encoding, std::uint32_t& length) {
  const std::uint64_t at = _in.offset();
  std::uint32_t itemTag = 0;
  readItemHeader(encoding, itemTag, length);
  if (itemTag == kSequenceDelimitation) return false;
  if (itemTag != kItem) fail("item expected, found " + tagText(itemTag), at);
  if (length != kUndefinedLength && length > _in.remaining()) {
    fail("item runs past the end of the file", at);
  }
  return true;
}

void Decoder::readFragments(Quiltra::Tag& tag, Encoding encoding) {
  std::uint32_t length = 0;
  while (nextItem(encoding, length)) {
    if (length == kUndefinedLength) fail("fragment of undefined length", _in.offset() - 8);
    Quiltra::Value& value = tag.addValue();
    if (length == 0) continue;
    value.setSize(length);
    _in.read(value.data(), length);
  }
}

bool Decoder::readUnAsSequence(Quiltra::Tag& tag, std::uint32_t length, unsigned depth) {
  static const unsigned char kItemLittle[4] = {0xFE, 0xFF, 0x00, 0xE0};
  unsigned char head[4];
  if (length < 8 || _in.peek(head, 4) != 4 || std::memcmp(head, kItemLittle, 4) != 0) {
    return false;
  }
  // Decode the value on its own, so that a value that only looks like a sequence is kept as
  // the bytes it is.
  std::vector<unsigned char> bytes(length);
  _in.read(bytes.data(), length);
  ByteInput inner(bytes.data(), bytes.size());
  Decoder decoder(inner, _options);
  Quiltra::Tag candidate(
      Quiltra::TagInfo(tag.info().id(), tag.info().name(), Quiltra::SQ, tag.info().multiplicity()));
  try {
    decoder.readSequence(candidate, kImplicitLittle, length, depth);
  } catch (const Quiltra::Exception&) {
    tag.addValue().setData(length, bytes.data());
    return true;
  }
  tag = std::move(candidate);
  return true;
}

void Decoder::readValues(Quiltra::Tag& tag, const FileVrInfo& vr, std::uint32_t length,
                         Encoding encoding) {
  if (length == 0) return;
  if (!vr.isText && vr.valueWidth == 0) {
    // Binary data held whole: read straight into the value.
    Quiltra::Value& value = tag.addValue();
    value.setSize(length);
    _in.read(value.data(), length);
    if (encoding.bigEndian) swapUnits(value.data(), length, vr.swapWidth);
    return;
  }
  _scratch.resize(length);
  _in.read(_scratch.data(), length);
  unsigned char* data = _scratch.data();
  if (vr.valueWidth != 0) {
    if (length % vr.valueWidth != 0) {
      warn("length " + std::to_string(length) + " of " + tagText(tag.info().id().rawId()) +
               " is not a multiple of " + std::to_string(vr.valueWidth),
           _in.offset() - length);
    }
    if (encoding.bigEndian) swapUnits(data, length, vr.swapWidth);
    for (std::uint32_t at = 0; at < length; at += vr.valueWidth) {
      const std::uint32_t n = std::min<std::uint32_t>(vr.valueWidth, length - at);
      tag.addValue().setData(n, data + at);
    }
    return;
  }
  // Text: drop the one padding byte, then one value per piece, each with a closing zero.
  std::uint32_t n = length;
  if (data[n - 1] == ' ' || data[n - 1] == '\0') --n;
  std::uint32_t start = 0;
  for (std::uint32_t at = 0; at <= n; ++at) {
    if (at < n && (data[at] != '\\' || !vr.splitText)) continue;
    Quiltra::Value& value = tag.addValue();
    value.setSize(at - start + 1);
    std::memcpy(value.data(), data + start, at - start);
    start = at + 1;
  }
}

void Decoder::skipItems(Encoding encoding, unsigned depth) {
  if (depth >= kMaxDepth) fail("sequences nested deeper than 256 levels", _in.offset());
  std::uint32_t length = 0;
  while (nextItem(encoding, length)) {
    if (length != kUndefinedLength) {
      _in.skip(length);
      continue;
    }
    for (;;) {
      Header header;
      if (readHeader(encoding, header, false) == HeaderStatus::kEnd) {
        fail("file ends inside an item", header.offset);
      }
      if (header.tag == kItemDelimitation) break;
      skipValue(header, encoding, depth + 1);
    }
  }
}

void Decoder::skipValue(const Header& header, Encoding encoding, unsigned depth) {
  if (header.length != kUndefinedLength) {
    if (header.length > _in.remaining()) {
      fail("value of " + tagText(header.tag) + " runs past the end of the file", header.offset);
    }
    _in.skip(header.length);
    return;
  }
  const bool un = header.hasVr ? header.vr == FileVr::UN : implicitVr(header.tag) == FileVr::UN;
  skipItems(un ? kImplicitLittle : encoding, depth);
}

Encoding Decoder::detectEncoding() {
  unsigned char head[6];
  if (_in.peek(head, 6) < 6) return kImplicitLittle;
  FileVr vr;
  if (!parseFileVr(head[4], head[5], vr)) return kImplicitLittle;
  // A group that reads small in big endian order and large in little endian order.
  const bool bigEndian = head[0] == 0 && head[1] != 0;
  return Encoding{true, bigEndian};
}

// The text of the meta group's transfer syntax UID; nullopt when there is none.
std::optional<std::string> syntaxUid(const Quiltra::Tree& meta) {
  auto syntaxTag = meta.getTag(Quiltra::TagId(kTransferSyntaxUid));
  if (!syntaxTag || syntaxTag->numberOfValues() == 0) return std::nullopt;
  const Quiltra::Value& uid = syntaxTag->getValue(0);
  return std::string(reinterpret_cast<const char*>(uid.data()),
                     uid.size() == 0 ? 0 : uid.size() - 1);
}

// Where the meta group ends by its group length, read at offset from the value of a
// (0002,0000) that was the group's first element; nullopt when that value is not 4 bytes.
std::optional<std::uint64_t> declaredMetaEnd(const Quiltra::Tree& meta, std::uint64_t offset) {
  auto length = meta.getTag(Quiltra::TagId(kMetaGroupLength));
  if (!length || length->numberOfValues() != 1 || length->getValueSize(0) != 4) return std::nullopt;
  return offset + get32(length->getValue(0).data(), false);
}

bool Decoder::metaRunsOn(const Quiltra::Tree& meta, Encoding encoding) {
  unsigned char head[6];
  FileVr vr;
  if (_in.peek(head, 6) < 6 || get16(head, encoding.bigEndian) != kMetaGroup ||
      (encoding.explicitVr && !parseFileVr(head[4], head[5], vr))) {
    return false;
  }
  const auto uid = syntaxUid(meta);
  const auto syntax = uid ? syntaxOfUid(*uid) : std::nullopt;
  if (!syntax) return false;
  const SyntaxLayout layout = layoutOf(*syntax);
  return !layout.bigEndian && !layout.deflated;
}

std::optional<Quiltra::TransferSyntax> Decoder::readMeta(Quiltra::Tree& tree) {
  const Encoding encoding = detectEncoding();
  // The transfer syntax is needed whatever the filter says; unselected elements go after.
  _filtering = false;
  if (!encoding.explicitVr || encoding.bigEndian) {
    warn("meta information not in explicit VR little endian", _in.offset());
  }
  const std::uint64_t start = _in.offset();
  std::optional<std::uint64_t> declaredEnd;
  for (;;) {
    // At the end its group length gives, the meta group ends: a big-endian data set may
    // well start with bytes that read as group 0002 here. Only before a little-endian,
    // uncompressed data set (which never holds group 0002) may a group length that is too
    // short be read past. An element across that end shows the group length is wrong; then
    // the group ends at the first element of another group.
    if (declaredEnd && _in.offset() == *declaredEnd && !metaRunsOn(tree, encoding)) break;
    unsigned char head[2];
    if (_in.peek(head, 2) < 2 || get16(head, encoding.bigEndian) != kMetaGroup) break;
    Header header;
    if (readHeader(encoding, header, false) != HeaderStatus::kOk) break;
    if (header.length == kUndefinedLength || header.length > _in.remaining()) {
      fail("value of " + tagText(header.tag) + " runs past the end of the file", header.offset);
    }
    readElement(tree, header, encoding, 0);
    if (header.tag == kMetaGroupLength && header.offset == start) {
      declaredEnd = declaredMetaEnd(tree, _in.offset());
    }
  }
  if (declaredEnd && _in.offset() != *declaredEnd) {
    warn("meta information does not end where its group length says (offset " +
             std::to_string(*declaredEnd) + ")",
         _in.offset());
  }
  _filtering = true;
  const auto uid = syntaxUid(tree);
  if (!uid) return std::nullopt;
  const auto syntax = syntaxOfUid(*uid);
  if (!syntax) fail("unsupported transfer syntax " + *uid, _in.offset());
  if (_options.filter) {
    const auto ids = tree.tagIds(Quiltra::OwnLayer);
    for (const auto& entry : *ids) {
      if (!_options.filter(tree.getTag(entry)->info())) tree.removeTag(entry);
    }
  }
  return syntax;
}

DicomContent Decoder::run() {
  DicomContent content;
  content.tree = std::make_shared<Quiltra::Tree>();
  unsigned char head[132];
  const std::size_t got = _in.peek(head, sizeof head);
  if (got == sizeof head && std::memcmp(head + 128, "DICM", 4) == 0) {
    _in.skip(sizeof head);
    content.hadMeta = true;
  } else if (got >= 6 && get16(head, false) == kMetaGroup) {
    content.hadMeta = true;
  }
  std::optional<Quiltra::TransferSyntax> syntax;
  if (content.hadMeta) {
    syntax = readMeta(*content.tree);
    if (!syntax) warn("no transfer syntax in the meta information", _in.offset());
  } else {
    warn("no meta information", _in.offset());
  }
  Encoding encoding = kImplicitLittle;
  if (syntax) {
    const SyntaxLayout layout = layoutOf(*syntax);
    encoding = Encoding{layout.explicitVr, layout.bigEndian};
    content.syntax = *syntax;
    if (!layout.deflated && encoding.explicitVr && !detectEncoding().explicitVr && !_in.atEnd()) {
      warn("the data set is implicit VR although the transfer syntax says explicit", _in.offset());
      encoding = kImplicitLittle;
    }
    if (layout.deflated) {
      const std::vector<unsigned char> inflated = inflateRest(_in);
      ByteInput inner(inflated.data(), inflated.size());
      Decoder decoder(inner, _options);
      decoder.readDataSet(*content.tree, encoding, UINT64_MAX, 0, true);
      return content;
    }
  } else {
    encoding = detectEncoding();
    content.syntax = !encoding.explicitVr ? Quiltra::IMPLICIT_LITTLE_ENDIAN
                     : encoding.bigEndian ? Quiltra::EXPLICIT_BIG_ENDIAN
                                          : Quiltra::EXPLICIT_LITTLE_ENDIAN;
  }
  readDataSet(*content.tree, encoding, UINT64_MAX, 0, true);
  return content;
}

}  // namespace

DicomContent readDicom(ByteInput& input, const ReadOptions& options) {
  return Decoder(input, options).run();
}

DicomContent readDicomFile(const std::string& path, const ReadOptions& options) {
  ByteInput input(path);
  return readDicom(input, options);
}

DicomContent readDicomBytes(const unsigned char* data, std::size_t size,
                            const ReadOptions& options) {
  ByteInput input(data, size);
  return readDicom(input, options);
}

}  // namespace Quiltra_DicomFile
