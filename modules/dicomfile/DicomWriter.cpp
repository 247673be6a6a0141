// Encoding of a Tree as a DICOM file: preamble, "DICM", meta group, data set.
//
// Byte layout as in DicomReader.cpp. Choices of this writer:
//   - the meta group is explicit VR little endian and starts with its group length (UL);
//   - sequences and items have defined lengths, computed in a first pass (each item's size is
//     computed once and remembered), encapsulated pixel data has undefined lengths with one
//     item per value and a sequence delimiter;
//   - texts are joined with backslashes and padded to an even length with a blank (UI with a
//     zero byte); binary values with a zero byte;
//   - a value too long for the 16-bit length of its VR is written as UN (explicit VR);
//   - group lengths other than the meta's are left out, as they would be stale after changes.

#include "ByteOutput.h"
#include "Deflate.h"
#include "DicomFile.h"
#include "FileVr.h"
#include "SyntaxUid.h"
#include "Tags.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include <quiltra/core/Exception.h>
#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>

namespace Quiltra_DicomFile {

namespace {

constexpr std::uint32_t kUndefinedLength = 0xFFFFFFFFu;
constexpr std::uint64_t kMaxLength = 0xFFFFFFFEu;

[[noreturn]] void fail(const std::string& what) {
  throw Quiltra::Exception("DicomFile::write", what);
}

// The bytes of one text value without its closing zero.
std::size_t textSize(const Quiltra::Value& value) {
  const std::size_t n = value.size();
  return (n > 0 && value.data()[n - 1] == 0) ? n - 1 : n;
}

class Encoder {
 public:
  Encoder(const Quiltra::TransferSyntax syntax, const WriteOptions& options)
      : _layout(layoutOf(syntax)), _options(options) {}

  void writeDataSet(const Quiltra::Tree& tree, ByteOutput& out, bool topLevel);
  std::uint64_t dataSetSize(const Quiltra::Tree& tree, bool topLevel);

  /// Writes tree's elements of group 0002 as the meta group, in explicit VR little endian.
  static void writeMeta(const Quiltra::Tree& tree, Quiltra::TransferSyntax syntax, ByteOutput& out);

 private:
  struct Plan {
    FileVr vr;       // spelt in the header
    FileVr content;  // how the values are laid out
    bool encapsulated;
    std::uint64_t length;  // kUndefinedLength for encapsulated data
  };

  bool selected(const Quiltra::Tag& tag, bool topLevel) const;
  /// sequenceLength: the value length of an SQ element, ignored for any other.
  Plan plan(const Quiltra::Tag& tag, bool topLevel, std::uint64_t sequenceLength) const;
  /// Measures the items of sequence tag and of the sequences below them, recording each
  /// item's size in _itemSizes in the order the writer meets the items; answers tag's
  /// value length.
  std::uint64_t measureSequence(const Quiltra::Tag& tag);
  std::uint64_t valueLength(const Quiltra::Tag& tag, const FileVrInfo& vr) const;
  std::uint64_t elementSize(const Quiltra::Tag& tag, bool topLevel);
  void writeHeader(ByteOutput& out, std::uint32_t tag, FileVr vr, std::uint32_t length) const;
  void writeElement(const Quiltra::Tag& tag, ByteOutput& out, bool topLevel);
  void writeValues(const Quiltra::Tag& tag, const FileVrInfo& vr, std::uint64_t length,
                   ByteOutput& out) const;
  void put16(ByteOutput& out, std::uint16_t value) const;
  void put32(ByteOutput& out, std::uint32_t value) const;

  SyntaxLayout _layout;
  const WriteOptions& _options;
  // Item sizes, measured before a data set is written: the items of each sequence in a
  // row, before those of the sequences inside them, which is the order the writer takes
  // them in; _nextItem is where the writer stands.
  std::vector<std::uint64_t> _itemSizes;
  std::size_t _nextItem = 0;
};

void Encoder::put16(ByteOutput& out, std::uint16_t value) const {
  const unsigned char bytes[2] = {static_cast<unsigned char>(value & 0xFF),
                                  static_cast<unsigned char>(value >> 8)};
  if (_layout.bigEndian) {
    out.put(bytes[1]);
    out.put(bytes[0]);
  } else {
    out.write(bytes, 2);
  }
}

void Encoder::put32(ByteOutput& out, std::uint32_t value) const {
  if (_layout.bigEndian) {
    put16(out, static_cast<std::uint16_t>(value >> 16));
    put16(out, static_cast<std::uint16_t>(value & 0xFFFF));
  } else {
    put16(out, static_cast<std::uint16_t>(value & 0xFFFF));
    put16(out, static_cast<std::uint16_t>(value >> 16));
  }
}

bool Encoder::selected(const Quiltra::Tag& tag, bool topLevel) const {
  const std::uint32_t id = tag.info().id().rawId();
  // Group lengths go stale with every change; the meta group is written on its own.
  if ((id & 0xFFFF) == 0 || (topLevel && (id >> 16) == kMetaGroup)) return false;
  return !_options.filter || _options.filter(tag.info());
}

std::uint64_t Encoder::valueLength(const Quiltra::Tag& tag, const FileVrInfo& vr) const {
  const unsigned int count = tag.numberOfValues();
  if (count == 0) return 0;
  std::uint64_t length = 0;
  if (vr.isText) {
    for (unsigned int i = 0; i < count; ++i) length += textSize(tag.getValue(i));
    length += count - 1;  // backslashes
  } else {
    length = tag.getValueSize();
  }
  return length + (length & 1);
}

Encoder::Plan Encoder::plan(const Quiltra::Tag& tag, bool topLevel,
                            std::uint64_t sequenceLength) const {
  const Quiltra::Vr vr = tag.info().vr();
  const FileVr fileVr = writtenFileVr(tag.info().id(), vr);
  Plan result{fileVr, fileVr, false, 0};
  if (vr == Quiltra::SQ) {
    result.length = sequenceLength;
  } else if (tag.info().id().rawId() == kPixelData &&
             (tag.numberOfValues() >= 2 || (topLevel && _layout.encapsulated))) {
    if (!_layout.encapsulated) fail("pixel data fragments need an encapsulated transfer syntax");
    result.encapsulated = true;
    result.length = kUndefinedLength;
    result.vr = FileVr::OB;
  } else {
    result.length = valueLength(tag, fileVrInfo(result.vr));
  }
  if (!result.encapsulated && result.length > kMaxLength) {
    fail("value of " + tag.info().id().toString() + " is larger than 4 GiB");
  }
  // A 16-bit length that cannot hold the value: the standard's way out is UN.
  if (_layout.explicitVr && !fileVrInfo(result.vr).longLength && result.length > 0xFFFE) {
    result.vr = FileVr::UN;
  }
  return result;
}

std::uint64_t Encoder::elementSize(const Quiltra::Tag& tag, bool topLevel) {
  const bool sequence = tag.info().vr() == Quiltra::SQ;
  const Plan p = plan(tag, topLevel, sequence ? measureSequence(tag) : 0);
  const bool longHeader = !_layout.explicitVr || fileVrInfo(p.vr).longLength;
  const std::uint64_t header = (_layout.explicitVr && longHeader) ? 12 : 8;
  if (!p.encapsulated) return header + p.length;
  std::uint64_t size = header + 8;  // sequence delimiter
  for (unsigned int i = 0; i < tag.numberOfValues(); ++i) {
    const std::uint64_t n = tag.getValueSize(i);
    size += 8 + n + (n & 1);
  }
  return size;
}

std::uint64_t Encoder::measureSequence(const Quiltra::Tag& tag) {
  const Quiltra::Tag::Items& items = tag.sequenceItems();
  const std::size_t first = _itemSizes.size();
  _itemSizes.resize(first + items.size());
  std::uint64_t length = 0;
  for (std::size_t i = 0; i < items.size(); ++i) {
    const std::uint64_t size = items[i] ? dataSetSize(*items[i], false) : 0;
    if (size > kMaxLength) fail("sequence item larger than 4 GiB");
    _itemSizes[first + i] = size;
    length += 8 + size;
  }
  return length;
}

std::uint64_t Encoder::dataSetSize(const Quiltra::Tree& tree, bool topLevel) {
  std::uint64_t size = 0;
  tree.forEachTag(Quiltra::AllLayers, [&](const Quiltra::TagId&, const Quiltra::Tag& tag) {
    if (selected(tag, topLevel)) size += elementSize(tag, topLevel);
  });
  return size;
}

void Encoder::writeHeader(ByteOutput& out, std::uint32_t tag, FileVr vr,
                          std::uint32_t length) const {
  put16(out, static_cast<std::uint16_t>(tag >> 16));
  put16(out, static_cast<std::uint16_t>(tag & 0xFFFF));
  if (!_layout.explicitVr) {
    put32(out, length);
    return;
  }
  const FileVrInfo& info = fileVrInfo(vr);
  out.write(info.spelling, 2);
  if (!info.longLength) {
    put16(out, static_cast<std::uint16_t>(length));
    return;
  }
  put16(out, 0);
  put32(out, length);
}

void Encoder::writeValues(const Quiltra::Tag& tag, const FileVrInfo& vr, std::uint64_t length,
                          ByteOutput& out) const {
  std::uint64_t written = 0;
  for (unsigned int i = 0; i < tag.numberOfValues(); ++i) {
    const Quiltra::Value& value = tag.getValue(i);
    if (vr.isText) {
      if (i > 0) out.put('\\');
      out.write(value.data(), textSize(value));
      written += textSize(value) + (i > 0 ? 1 : 0);
      continue;
    }
    const std::size_t width = vr.swapWidth;
    if (_layout.bigEndian && width > 1 && value.size() % width == 0) {
      out.writeSwapped(value.data(), value.size(), width);
    } else {
      out.write(value.data(), value.size());
    }
    written += value.size();
  }
  if (written < length) out.put(static_cast<unsigned char>(vr.padding));
}

void Encoder::writeElement(const Quiltra::Tag& tag, ByteOutput& out, bool topLevel) {
  const std::uint32_t id = tag.info().id().rawId();
  const bool sequence = tag.info().vr() == Quiltra::SQ;
  const std::size_t firstItem = _nextItem;
  std::uint64_t sequenceLength = 0;
  if (sequence) {
    const std::size_t count = tag.sequenceItems().size();
    for (std::size_t i = 0; i < count; ++i) sequenceLength += 8 + _itemSizes[firstItem + i];
    _nextItem += count;
  }
  const Plan p = plan(tag, topLevel, sequenceLength);
  if (p.encapsulated) {
    writeHeader(out, id, p.vr, kUndefinedLength);
    for (unsigned int i = 0; i < tag.numberOfValues(); ++i) {
      const Quiltra::Value& value = tag.getValue(i);
      put16(out, kItemGroup);
      put16(out, kItem & 0xFFFF);
      put32(out, value.size() + (value.size() & 1));
      out.write(value.data(), value.size());
      if (value.size() & 1) out.put(0);
    }
    put16(out, kItemGroup);
    put16(out, kSequenceDelimitation & 0xFFFF);
    put32(out, 0);
    return;
  }
  writeHeader(out, id, p.vr, static_cast<std::uint32_t>(p.length));
  if (tag.info().vr() != Quiltra::SQ) {
    writeValues(tag, fileVrInfo(p.content), p.length, out);
    return;
  }
  const Quiltra::Tag::Items& items = tag.sequenceItems();
  for (std::size_t i = 0; i < items.size(); ++i) {
    put16(out, kItemGroup);
    put16(out, kItem & 0xFFFF);
    put32(out, static_cast<std::uint32_t>(_itemSizes[firstItem + i]));
    if (items[i]) writeDataSet(*items[i], out, false);
  }
}

void Encoder::writeDataSet(const Quiltra::Tree& tree, ByteOutput& out, bool topLevel) {
  if (topLevel) {
    // One measuring walk ahead of the writing walk; both take the same elements in the
    // same order, so the writer finds each item's size where it stands.
    _itemSizes.clear();
    _nextItem = 0;
    tree.forEachTag(Quiltra::AllLayers, [&](const Quiltra::TagId&, const Quiltra::Tag& tag) {
      if (selected(tag, true) && tag.info().vr() == Quiltra::SQ) measureSequence(tag);
    });
  }
  tree.forEachTag(Quiltra::AllLayers, [&](const Quiltra::TagId&, const Quiltra::Tag& tag) {
    if (selected(tag, topLevel)) writeElement(tag, out, topLevel);
  });
}

// The text of value 0 of tree's element id, or empty.
std::string firstText(const Quiltra::Tree& tree, std::uint32_t id) {
  auto tag = tree.getTag(Quiltra::TagId(id));
  if (!tag || tag->numberOfValues() == 0) return {};
  const Quiltra::Value& value = tag->getValue(0);
  return std::string(reinterpret_cast<const char*>(value.data()), textSize(value));
}

std::shared_ptr<Quiltra::Tag> textElement(std::uint32_t id, Quiltra::Vr vr,
                                          const std::string& text) {
  auto tag = std::make_shared<Quiltra::Tag>(
      Quiltra::TagInfo(Quiltra::TagId(id), std::string(), vr, {1, 1}));
  tag->addValue().setData(text);
  return tag;
}

void Encoder::writeMeta(const Quiltra::Tree& tree, Quiltra::TransferSyntax syntax,
                        ByteOutput& out) {
  Quiltra::Tree meta;
  tree.forEachTag(Quiltra::AllLayers, [&](const Quiltra::TagId&, const Quiltra::Tag& tag) {
    const std::uint32_t id = tag.info().id().rawId();
    if ((id >> 16) == kMetaGroup && id != kMetaGroupLength) {
      meta.addTag(Quiltra::TagId(id), tag.copy());
    }
  });
  if (!meta.hasTag(Quiltra::TagId(kMetaVersion))) {
    auto version = std::make_shared<Quiltra::Tag>(
        Quiltra::TagInfo(Quiltra::TagId(kMetaVersion), std::string(), Quiltra::OB, {1, 1}));
    const unsigned char bytes[2] = {0, 1};
    version->addValue().setData(2, bytes);
    meta.addTag(version);
  }
  const std::string sopClass = firstText(tree, kSopClassUid);
  if (!sopClass.empty()) meta.addTag(textElement(kMediaStorageSopClassUid, Quiltra::UI, sopClass));
  const std::string sopInstance = firstText(tree, kSopInstanceUid);
  if (!sopInstance.empty()) {
    meta.addTag(textElement(kMediaStorageSopInstanceUid, Quiltra::UI, sopInstance));
  }
  meta.addTag(textElement(kTransferSyntaxUid, Quiltra::UI, uidOfSyntax(syntax)));
  meta.addTag(textElement(kImplementationClassUid, Quiltra::UI, kImplementationUid));
  meta.addTag(textElement(kImplementationVersionName, Quiltra::SH, kImplementationVersion));

  const WriteOptions everything;
  Encoder encoder(Quiltra::EXPLICIT_LITTLE_ENDIAN, everything);
  std::uint64_t size = 0;
  meta.forEachTag(Quiltra::AllLayers, [&](const Quiltra::TagId&, const Quiltra::Tag& tag) {
    size += encoder.elementSize(tag, false);
  });
  encoder.writeHeader(out, kMetaGroupLength, FileVr::UL, 4);
  encoder.put32(out, static_cast<std::uint32_t>(size));
  meta.forEachTag(Quiltra::AllLayers, [&](const Quiltra::TagId&, const Quiltra::Tag& tag) {
    encoder.writeElement(tag, out, false);
  });
}

}  // namespace

void writeDicom(const Quiltra::Tree& tree, Quiltra::TransferSyntax syntax, ByteOutput& output,
                const WriteOptions& options) {
  if (uidOfSyntax(syntax).empty()) {
    fail("no file encoding for transfer syntax " + Quiltra::toString(syntax));
  }
  const unsigned char preamble[128] = {};
  output.write(preamble, sizeof preamble);
  output.write("DICM", 4);
  Encoder::writeMeta(tree, syntax, output);
  Encoder encoder(syntax, options);
  if (!layoutOf(syntax).deflated) {
    encoder.writeDataSet(tree, output, true);
    return;
  }
  std::vector<unsigned char> body;
  ByteOutput memory(body);
  encoder.writeDataSet(tree, memory, true);
  deflateTo(body, output);
}

void writeDicomFile(const Quiltra::Tree& tree, Quiltra::TransferSyntax syntax,
                    const std::string& path, const WriteOptions& options) {
  const std::string temporary = path + ".partial";
  try {
    ByteOutput output(temporary);
    writeDicom(tree, syntax, output, options);
    output.close();
  } catch (...) {
    std::remove(temporary.c_str());
    throw;
  }
  if (std::rename(temporary.c_str(), path.c_str()) != 0) {
    std::remove(temporary.c_str());
    fail("cannot rename the written file to " + path);
  }
}

std::vector<unsigned char> writeDicomBytes(const Quiltra::Tree& tree,
                                           Quiltra::TransferSyntax syntax,
                                           const WriteOptions& options) {
  std::vector<unsigned char> bytes;
  ByteOutput output(bytes);
  writeDicom(tree, syntax, output, options);
  return bytes;
}

}  // namespace Quiltra_DicomFile
