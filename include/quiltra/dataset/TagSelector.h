#ifndef QUILTRA_DATASET_TAGSELECTOR_H_
#define QUILTRA_DATASET_TAGSELECTOR_H_

namespace Quiltra {

/// Which layers of a layered Tree a query sees. Any other value sees nothing.
enum TagSelector : int {
  AllLayers = 0,   ///< this layer and every ancestor, deletion marks applied
  ExceptRoot = 1,  ///< like AllLayers without the root's contribution
  OwnLayer = 2     ///< this layer's own elements that are not marked deleted
};

}  // namespace Quiltra

#endif  // QUILTRA_DATASET_TAGSELECTOR_H_
