#ifndef QUILTRA_DATASET_ORDEREDINSERT_H_
#define QUILTRA_DATASET_ORDEREDINSERT_H_

#include <utility>

namespace Quiltra {

/// map.insert_or_assign(key, value), without the search from the root when key lies past the
/// last key: builders, readers and copies mostly add elements in ascending order, and an
/// append then costs only the rebalancing.
template <class Map, class Key, class Value>
void insertOrAssignInOrder(Map& map, const Key& key, Value&& value) {
  if (map.empty() || map.rbegin()->first < key) {
    map.emplace_hint(map.end(), key, std::forward<Value>(value));
    return;
  }
  map.insert_or_assign(key, std::forward<Value>(value));
}

}  // namespace Quiltra

#endif  // QUILTRA_DATASET_ORDEREDINSERT_H_
