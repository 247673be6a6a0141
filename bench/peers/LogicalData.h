#ifndef QUILTRA_BENCH_PEERS_LOGICALDATA_H_
#define QUILTRA_BENCH_PEERS_LOGICALDATA_H_

// The logical data every implementation of the side-by-side suite works on: the same
// elements, the same orders, the same frame tree. Built once per process, before any
// benchmark runs, so that no implementation pays for making it.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace QuiltraPeers {

/// The three kinds of value of the flat data sets and of the frame tree.
enum class Kind { LO, US, FD };

/// How large the workloads are: the full sizes, or tiny ones that only prove the suite runs.
struct Sizes {
  bool tiny = false;
  std::vector<std::size_t> elementCounts;  // flat data sets
  std::size_t lookups = 0;                 // random typed reads per measurement
  std::size_t frames = 0;                  // items of the per-frame sequence
  std::size_t largeValueBytes = 0;         // the one large value, binary form
  std::size_t largeTextValueBytes = 0;     // the one large value, text stream form
  std::size_t names = 0;                   // person names converted between character sets
  std::size_t identifiers = 0;             // UIDs made per measurement
  std::size_t imageFrames = 0;             // frames of the multi-frame image
  std::size_t imageRows = 0;               // and the size of each, 16 bits per pixel
  std::size_t imageColumns = 0;
};

/// One element of a flat data set: where it goes, what it is called and what it holds.
struct ElementSpec {
  std::uint16_t group = 0;
  std::uint16_t element = 0;
  Kind kind = Kind::LO;
  const char* keyword = "";
  std::string text;          // LO, an even number of characters
  std::string replacement;   // LO, what replace writes
  std::uint16_t number = 0;  // US
  double real = 0.0;         // FD
};

/// A flat data set of count elements and the index lists its workloads walk.
struct FlatData {
  std::vector<ElementSpec> ascending;  // ordered by tag
  std::vector<std::size_t> shuffled;   // a fixed permutation of ascending's indexes
  std::vector<std::size_t> lookups;    // indexes of the random typed reads
  std::vector<std::size_t> removed;    // 1% of the elements, in random order
  std::vector<std::size_t> replaced;   // 10% of the elements, in random order
};

/// One element inside a nested item of the frame tree.
struct NestedElement {
  std::uint16_t group;
  std::uint16_t element;
  Kind kind;
  const char* keyword;
};

/// A nested sequence of each frame item: its tag and the five elements of its one item.
struct NestedSequence {
  std::uint16_t group;
  std::uint16_t element;
  const char* keyword;
  NestedElement elements[5];
};

/// The frame tree: a per-frame sequence whose items each hold three nested sequences of one
/// item with five values. The value every frame workload reads and changes is
/// nested[kReadSequence].elements[kReadElement], an FD.
struct FrameLayout {
  static constexpr std::uint16_t kGroup = 0x5200;
  static constexpr std::uint16_t kElement = 0x9230;
  static constexpr const char* kKeyword = "PerFrameFunctionalGroupsSequence";
  static constexpr std::size_t kReadSequence = 1;
  static constexpr std::size_t kReadElement = 2;
  static const NestedSequence nested[3];
};

/// The grid the frames are also laid out in for the structured multi-frame view: frame f
/// sits at position (f % gridColumns(), f / gridColumns()).
std::size_t gridColumns();

/// The values of frame f: the same in every implementation.
std::uint16_t frameNumber(std::size_t frame, std::size_t sequence, std::size_t element);
double frameReal(std::size_t frame, std::size_t sequence, std::size_t element);
/// An even-length text per frame, made once.
const std::string& frameText(std::size_t frame);

/// A text element of a file's data set (identity, image description), the same in every
/// implementation; the value is unpadded.
enum class TextKind { UI, CS, IS };
struct TextElement {
  std::uint16_t group;
  std::uint16_t element;
  TextKind kind;
  const char* keyword;
  std::string value;
};

/// An unsigned short element of the image's description.
struct NumberElement {
  std::uint16_t group;
  std::uint16_t element;
  const char* keyword;
  std::uint16_t value;
};

/// SOP class and instance of the frame tree when it is written as a file (Enhanced MR).
const std::vector<TextElement>& framesFileTexts();

/// The multi-frame image: identity, photometric interpretation and number of frames, the
/// pixel module's numbers, and 16-bit pixel data (OW) of every frame.
struct ImageLayout {
  static constexpr std::uint16_t kPixelGroup = 0x7FE0;
  static constexpr std::uint16_t kPixelElement = 0x0010;
  static const std::vector<TextElement>& texts();
  static const std::vector<NumberElement>& numbers();
  /// The size of the pixel data in bytes.
  static std::size_t bytes();
  /// The pixel bytes, made once.
  static const std::vector<unsigned char>& pixels();
};

/// Person names (family^given^^prefix, about half with Latin-1 letters), made once; and
/// the same names in UTF-8.
const std::vector<std::string>& latin1Names();
const std::vector<std::string>& utf8Names();

/// A path for name in a scratch folder of this process: on tmpfs (/dev/shm) where there is
/// one, else in the system's temporary folder. The folder goes when the process ends.
std::string scratchPath(const std::string& name);

/// The sizes chosen by QUILTRA_BENCH_SIZE ("tiny" or anything else for full).
const Sizes& sizes();
/// The flat data of count elements (one of sizes().elementCounts), made on first use.
const FlatData& flatData(std::size_t count);
/// A real attribute keyword, used as the element's name where an implementation stores one.
const char* keyword(std::size_t index);

/// Bytes the allocator has handed out and not yet taken back (heap and mapped chunks).
std::size_t heapInUse();

}  // namespace QuiltraPeers

#endif  // QUILTRA_BENCH_PEERS_LOGICALDATA_H_
