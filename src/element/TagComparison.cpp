#include "quiltra/element/Tag.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include <quiltra/dataset/TagSelector.h>
#include <quiltra/dataset/Tree.h>

namespace Quiltra {

namespace {

bool isNumeric(Vr vr) {
  switch (vr) {
    case DS:
    case IS:
    case SS:
    case US:
    case SL:
    case UL:
    case FL:
    case FD:
      return true;
    default:
      return false;
  }
}

bool isIntegral(Vr vr) {
  return vr == IS || vr == SS || vr == US || vr == SL;
}

bool isFloatComparable(Vr vr) {
  return vr == FL || vr == FD || vr == DS;
}

int compareNumbers(double a, double b, double tolerance) {
  const double difference = a - b;
  const double bound = std::fabs(tolerance) * std::max(std::fabs(a), std::fabs(b));
  if (difference > bound) return 1;
  if (-difference > bound) return -1;
  return 0;
}

// Like strncmp over the shorter of the two sizes: a shared zero byte ends the comparison.
int compareValueBytes(const Value& mine, const Value& theirs) {
  const unsigned int length = std::min(mine.size(), theirs.size());
  const unsigned char* a = mine.data();
  const unsigned char* b = theirs.data();
  for (unsigned int position = 0; position < length; ++position) {
    if (a[position] != b[position]) return a[position] < b[position] ? -1 : 1;
    if (a[position] == 0) return 0;
  }
  return 0;
}

// Both items present: the own entries of mine, looked up through every layer of theirs
// (one search per layer; an empty answer is what hasTag would call absent). mine is taken
// writable only to walk its own map in place; nothing is changed.
bool itemsEqual(Tree& mine, const Tree& theirs, double tolerance) {
  if (mine.tagsSize() != theirs.tagsSize()) return false;
  for (const auto& [id, tag] : mine.tags()) {
    const std::shared_ptr<const Tag> match = theirs.getTag(id, AllLayers);
    if (!match || !tag->isEqual(*match, tolerance)) return false;
  }
  return true;
}

// Per item index, both item lists are fetched through the checked accessor, so a
// non-sequence on either side fails "illegal type". Two null items count as equal.
bool sequencesEqual(const Tag& mine, const Tag& theirs, double tolerance) {
  if (mine.numberOfSequenceItems() != theirs.numberOfSequenceItems()) return false;
  for (unsigned int index = 0; index < mine.numberOfSequenceItems(); ++index) {
    const std::shared_ptr<Tree>& a = mine.sequenceItems()[index];
    const std::shared_ptr<Tree>& b = theirs.sequenceItems()[index];
    if (!a || !b) {
      if (a || b) return false;
      continue;
    }
    if (!itemsEqual(*a, *b, tolerance)) return false;
  }
  return true;
}

}  // namespace

int Tag::compare(const Tag& other, double tolerance) const {
  const unsigned int mine = numberOfValues();
  const unsigned int theirs = other.numberOfValues();
  const int common = static_cast<int>(std::min(mine, theirs));
  const int result = isNumeric(_info.vr()) && isNumeric(other._info.vr())
                         ? compareNumerical(other, common, tolerance)
                         : compareBytes(other, common);
  if (result != 0) return result;
  if (mine > theirs) return 1;
  if (mine < theirs) return -1;
  return 0;
}

bool Tag::isEqual(const Tag& other, double tolerance) const {
  if (_info.id() != other._info.id()) return false;
  if (numberOfValues() != other.numberOfValues()) return false;
  if (isSequence()) return sequencesEqual(*this, other, tolerance);
  const bool withTolerance =
      tolerance > 0 && isFloatComparable(_info.vr()) && isFloatComparable(other._info.vr());
  for (unsigned int index = 0; index < numberOfValues(); ++index) {
    if (withTolerance) {
      if (std::fabs(toDouble(index) - other.toDouble(index)) > tolerance) return false;
    } else if (_values[index] != other._values[index]) {
      return false;
    }
  }
  return true;
}

int Tag::compareNumerical(const Tag& other, int count, double tolerance) const {
  const bool integral = isIntegral(_info.vr()) && isIntegral(other._info.vr());
  // Each side is read as a double by its own representation.
  const auto asDouble = [](const Tag& tag, unsigned int index) {
    if (tag.isOfType(VRC_INT)) return static_cast<double>(tag.toInt(index));
    if (tag.isOfType(VRC_UINT)) return static_cast<double>(tag.toUInt(index));
    return tag.toDouble(index);
  };
  int result = 0;
  for (int i = 0; i < count && result == 0; ++i) {
    const auto index = static_cast<unsigned int>(i);
    if (integral) {
      const int a = toInt(index);
      const int b = other.toInt(index);
      result = a > b ? 1 : (a < b ? -1 : 0);
      continue;
    }
    result = compareNumbers(asDouble(*this, index), asDouble(other, index), tolerance);
  }
  return result;
}

int Tag::compareBytes(const Tag& other, int count) const {
  int result = 0;
  for (int i = 0; i < count && result == 0; ++i) {
    const auto index = static_cast<unsigned int>(i);
    result = compareValueBytes(_values[index], other._values[index]);
  }
  return result;
}

}  // namespace Quiltra
