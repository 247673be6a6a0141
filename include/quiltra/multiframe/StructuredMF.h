#ifndef QUILTRA_MULTIFRAME_STRUCTUREDMF_H_
#define QUILTRA_MULTIFRAME_STRUCTUREDMF_H_

#include <memory>
#include <vector>

#include <quiltra/core/Export.h>
#include <quiltra/core/TagId.h>
#include <quiltra/core/TagInfo.h>

namespace Quiltra {

class Tag;
class Tree;

/// A view that stores an N-dimensional grid of frames inside one data set, in the private
/// block of group 0041 whose creator element reads privateCreator:
///   (0041,ss01) US  the extent, one value per dimension, dimension 0 first;
///   (0041,ss02) SQ  the nesting: e[n-1] items, each holding its own (0041,ss02) with
///                   e[n-2] items, and so on down to the position items of dimension 0;
///   (0041,ss03) US  the frame index of a position.
/// An attribute in an outer item applies to every position below it; reads search from
/// the position item outward to the top level, and the innermost occurrence wins.
/// Ownership: shares the viewed Tree and writes straight into it; copies of a view share
/// it too. Tags are stored and handed out as shared objects, except that extraction
/// returns deep copies.
/// Cost: reaching a position item costs one lookup per dimension; the first position
/// write builds the whole nesting (one item per position) at once.
/// Threads: as safe as the viewed Tree; reads may run concurrently, writes need exclusive
/// use of it.
/// Failures: nothing is reported of its own; missing data gives empty pointers, -1 or
/// empty extents, and exceptions of Tag, Tree and the dictionary pass through.
class QUILTRA_EXPORT StructuredMF {
 public:
  /// What extractTagTreeForGridPosition returns; any other code behaves as PositionOnly.
  enum ExtractMode : int {
    MergedWithShared = 0,  ///< new data set: position tags plus shared tags they leave open
    PositionOnly = 1,      ///< new data set: position tags only
    SharedAsParent = 2     ///< child layer over the viewed data set holding position tags
  };

  /// The creator text of the view's private block.
  static constexpr const char* privateCreator = "Tavik StructuredMF data";

  /// Reads the grid the data set carries (empty extent when none); writes nothing.
  explicit StructuredMF(std::shared_ptr<Tree> tree);
  /// A read-only view: the writable accessors answer empty and the setters do nothing.
  explicit StructuredMF(std::shared_ptr<const Tree> tree);
  /// A new grid of extent [x], [x, y] or [x, y, z]: trailing extents of 1 are dropped, and
  /// x = 0 gives an empty extent. Replaces an earlier grid of the same creator.
  StructuredMF(std::shared_ptr<Tree> tree, unsigned int x, unsigned int y, unsigned int z);
  /// A new grid of the given extent, taken unchanged. Replaces an earlier grid of the same
  /// creator. When group 0041 has no free slot, the data set stays unchanged and the
  /// extent is empty.
  StructuredMF(std::shared_ptr<Tree> tree, const std::vector<unsigned int>& extent);
  /// Copies share the viewed data set.
  StructuredMF(const StructuredMF& other) = default;
  StructuredMF& operator=(const StructuredMF& other) = default;
  ~StructuredMF();

  // The grid.
  const std::vector<unsigned int>& getGridExtent() const noexcept { return _gridExtent; }
  unsigned int getGridDimension() const noexcept {
    return static_cast<unsigned int>(_gridExtent.size());
  }
  /// The product of the extents, wrapping in 32 bits; 0 for an empty extent.
  unsigned int getNumberOfFrames() const noexcept;
  /// Whether the position item exists and holds at least one tag of its own, empty
  /// placeholders included.
  bool frameExists(const std::vector<unsigned int>& position) const;

  // The whole data set.
  std::shared_ptr<Tree> tagTree() { return _tree; }
  std::shared_ptr<const Tree> tagTree() const { return _constTree; }

  // Shared tags: the attributes of the viewed data set itself.
  /// Through all layers, private tags of the view included; empty when absent.
  std::shared_ptr<const Tag> sharedTag(const TagId& id) const;
  /// The stored tag of the own layer; empty when absent or for a read-only view.
  std::shared_ptr<Tag> sharedTag_rw(const TagId& id);
  /// Stores the own tags of source in the data set, sharing them, except the view's own
  /// private tags. With unpackFunctionalGroups, the macros in the first item of
  /// (5200,9229) are stored in its place and (5200,9230) is left out.
  void setSharedTags(std::shared_ptr<Tree> source, bool unpackFunctionalGroups);

  // Tags of one position. Missing position entries count as 0; the three-index forms
  // address dimensions 0, 1 and 2 and drop what the grid does not have.
  /// The innermost occurrence from the position item outward, then the top level.
  std::shared_ptr<const Tag> tagForGridPosition(const TagId& id,
                                                std::vector<unsigned int> position) const;
  std::shared_ptr<const Tag> tagForGridPosition(const TagId& id, unsigned int i, unsigned int j,
                                                unsigned int k) const;
  /// As tagForGridPosition on the own layers; returns the stored object wherever found.
  std::shared_ptr<Tag> tagForGridPosition_rw(const TagId& id, std::vector<unsigned int> position);
  std::shared_ptr<Tag> tagForGridPosition_rw(const TagId& id, unsigned int i, unsigned int j,
                                             unsigned int k);
  /// Stores tag itself in the position item, building the nesting on the first write.
  void setTagForGridPosition(std::shared_ptr<Tag> tag, const std::vector<unsigned int>& position);
  void setTagForGridPosition(std::shared_ptr<Tag> tag, unsigned int i, unsigned int j,
                             unsigned int k);
  /// Stores the own tags of source in the position item, sharing them, except the tags of
  /// the source's own block of this creator.
  void setGridPositionSpecificTags(std::shared_ptr<Tree> source,
                                   const std::vector<unsigned int>& position);
  void setGridPositionSpecificTags(std::shared_ptr<Tree> source, unsigned int i, unsigned int j,
                                   unsigned int k);

  // Frame index.
  /// The frame index the position sees (its own, else that of an outer level); -1 when none.
  int frameIndexForGridPosition(const std::vector<unsigned int>& position) const;
  int frameIndexForGridPosition(unsigned int i, unsigned int j, unsigned int k) const;
  void setFrameIndexForGridPosition(unsigned int frameIndex,
                                    const std::vector<unsigned int>& position);
  void setFrameIndexForGridPosition(unsigned int frameIndex, unsigned int i, unsigned int j,
                                    unsigned int k);

  // Extraction and normalisation.
  /// A new data set with deep copies of the position's tags (innermost wins), never a
  /// private tag of the view; see ExtractMode for the shared tags. The viewed data set
  /// stays unchanged.
  std::shared_ptr<Tree> extractTagTreeForGridPosition(std::vector<unsigned int> position,
                                                      ExtractMode mode) const;
  std::shared_ptr<Tree> extractTagTreeForGridPosition(unsigned int i, unsigned int j,
                                                      unsigned int k, ExtractMode mode) const;
  /// A new data set with deep copies of the top-level tags that are not the view's own.
  std::shared_ptr<Tree> extractSharedTagTree() const;
  /// Rewrites the nesting in place, inner levels first: every non-empty item of a level is
  /// completed with the attributes its siblings hold; with shareEqualTags, attributes equal
  /// (within tolerance) in every non-empty item move up into the level instead. Group 0002
  /// and the nesting itself stay. Moves shared tags; copies no values.
  void normalizeTagStructure(double tolerance, bool shareEqualTags);
  /// Clears positions, then appends every position whose item holds no tag with data, in
  /// odometer order (dimension 0 fastest).
  void getEmptyFrames(std::vector<std::vector<unsigned int>>& positions) const;

 private:
  bool hasSlot() const noexcept { return _creatorId.rawId() != 0; }
  /// The extent from the dimensions attribute of an existing grid; writes nothing.
  void readGridExtent();
  bool initPrivateTagIds(bool createMissing);
  void clearPrivateTags();
  bool isPrivateTagId(const TagId& id) const noexcept;
  void setDimensionsTag();
  TagInfo dimensionsTagInfo() const;
  TagInfo dimensionGroupTagInfo() const;
  TagInfo frameIndexTagInfo() const;
  TagInfo defaultCreatorTagInfo() const;
  /// Fills sequence with the items of dimension level and, depth first, everything below.
  /// Requires: level < getGridDimension().
  void createDimensionSubtree(std::shared_ptr<Tag> sequence, int level) const;
  /// The position item; builds the nesting when the data set has none. Empty for a
  /// read-only view, a grid of dimension 0 or a position the nesting does not reach.
  std::shared_ptr<Tree> gridPositionTagTree(const std::vector<unsigned int>& position);
  /// The position item through all layers, creating nothing; empty when not reached.
  std::shared_ptr<const Tree> gridPositionTagTree(const std::vector<unsigned int>& position) const;
  std::vector<unsigned int> indexVectorFromIndexes(unsigned int i, unsigned int j,
                                                   unsigned int k) const;
  /// One level of normalizeTagStructure, after its items.
  void normalizeTagStructure(const std::shared_ptr<Tree>& level, double tolerance,
                             bool shareEqualTags);

  std::shared_ptr<Tree> _tree;
  std::shared_ptr<const Tree> _constTree;
  std::vector<unsigned int> _gridExtent;
  TagId _creatorId;
  TagId _blockId;
  TagId _dimensionsId;
  TagId _dimensionSequenceId;
  TagId _frameIndexId;
};

}  // namespace Quiltra

#endif  // QUILTRA_MULTIFRAME_STRUCTUREDMF_H_
