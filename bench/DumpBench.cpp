// The text dump of a data set of 100,000 elements with nested sequences, printed to a
// stream that discards everything, so that only the dump's own work is measured.
#include <benchmark/benchmark.h>
#include <memory>
#include <ostream>
#include <streambuf>
#include <string>

#include <quiltra/quiltra.h>

namespace {

using namespace Quiltra;

// Accepts and drops every character.
class NullBuffer : public std::streambuf {
 protected:
  int overflow(int c) override { return c; }
  std::streamsize xsputn(const char*, std::streamsize count) override { return count; }
};

// One element of a rotating kind: text, unsigned, decimal text, double, signed, bytes.
std::shared_ptr<Tag> plainElement(unsigned short group, unsigned short number) {
  static const Vr kKinds[] = {LO, US, DS, FD, SL, OB, PN};
  const Vr vr = kKinds[number % 7];
  auto tag =
      std::make_shared<Tag>(TagInfo(TagId(group, number), "ReferencedSOPInstanceUID", vr, {1, 1}));
  switch (vr) {
    case US:
      tag->addValue(static_cast<unsigned short>(number));
      break;
    case DS:
      tag->addValue(std::string("-12.5\\0.333"));
      break;
    case FD:
      tag->addValue(number * 0.25);
      break;
    case SL:
      tag->addValue(-static_cast<int>(number));
      break;
    case OB:
      tag->addValue().setSize(16);
      break;
    default:
      tag->addValue(std::string("Doe^Jane value ") + std::to_string(number));
  }
  return tag;
}

std::shared_ptr<Tree> plainTree(unsigned short group, unsigned int count) {
  auto tree = std::make_shared<Tree>();
  for (unsigned int i = 0; i < count; ++i) {
    tree->addTag(plainElement(group, static_cast<unsigned short>(0x1000 + i)));
  }
  return tree;
}

std::shared_ptr<Tag> sequence(unsigned short group, unsigned short number) {
  return std::make_shared<Tag>(TagInfo(TagId(group, number), "ContentSequence", SQ, {1, 1}));
}

// 6,000 plain elements, then 1,000 sequences of 3 items; each item holds 20 plain elements
// and a sequence of 2 items of 5 plain elements: 6,000 + 1,000 * (1 + 3 * 31) = 100,000.
std::shared_ptr<Message> makeMessage() {
  auto top = plainTree(0x0011, 6000);
  for (unsigned int s = 0; s < 1000; ++s) {
    auto outer = sequence(0x0013, static_cast<unsigned short>(0x1000 + s));
    for (int item = 0; item < 3; ++item) {
      auto tree = plainTree(0x0015, 20);
      auto inner = sequence(0x0017, 0x1000);
      inner->addSequenceItem(plainTree(0x0019, 5));
      inner->addSequenceItem(plainTree(0x0019, 5));
      tree->addTag(inner);
      outer->addSequenceItem(tree);
    }
    top->addTag(outer);
  }
  auto message = std::make_shared<Message>("ISO_IR 192", EXPLICIT_LITTLE_ENDIAN);
  message->setTags(top);
  return message;
}

void BM_DumpNested100k(benchmark::State& state) {
  const auto message = makeMessage();
  NullBuffer discard;
  std::ostream out(&discard);
  TextDump dump(nullptr, out);
  for (auto _ : state) dump.write(nullptr, message);
  state.SetItemsProcessed(state.iterations() * 100000);
  state.counters["elements"] = 100000;
}
BENCHMARK(BM_DumpNested100k)->Unit(benchmark::kMillisecond);

}  // namespace
