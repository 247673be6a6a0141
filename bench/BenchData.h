#ifndef QUILTRA_BENCH_BENCHDATA_H_
#define QUILTRA_BENCH_BENCHDATA_H_

#include <memory>
#include <string>

#include <quiltra/quiltra.h>

namespace QuiltraBench {

// A data set of count elements in group 0x0011: alternately US numbers and LO texts.
inline std::shared_ptr<Quiltra::Tree> makeTree(unsigned int count) {
  using namespace Quiltra;
  auto tree = std::make_shared<Tree>();
  for (unsigned int i = 0; i < count; ++i) {
    const TagId id(0x0011, static_cast<unsigned short>(0x1000 + i));
    if (i % 2 == 0) {
      auto tag = std::make_shared<Tag>(TagInfo(id, "Number", US, {1, 1}));
      tag->addValue(static_cast<unsigned short>(i));
      tree->addTag(tag);
    } else {
      auto tag = std::make_shared<Tag>(TagInfo(id, "Text", LO, {1, 1}));
      tag->addValue(std::string("value ") + std::to_string(i));
      tree->addTag(tag);
    }
  }
  return tree;
}

// A chain of layers over base, each overriding one element of the base.
inline std::shared_ptr<Quiltra::Tree> layerOver(std::shared_ptr<Quiltra::Tree> base,
                                                unsigned int layers) {
  std::shared_ptr<Quiltra::Tree> top = std::move(base);
  for (unsigned int i = 0; i < layers; ++i) {
    auto child = std::make_shared<Quiltra::Tree>(top);
    const Quiltra::TagId id(0x0011, static_cast<unsigned short>(0x1000 + i));
    child->setTag(top->getTag(id, Quiltra::AllLayers));
    top = child;
  }
  return top;
}

}  // namespace QuiltraBench

#endif  // QUILTRA_BENCH_BENCHDATA_H_
