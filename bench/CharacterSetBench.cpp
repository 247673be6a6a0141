// Throughput of the character-set conversions: 100,000 person names (about half with
// Latin-1 letters) to UTF-8 and back, a data set of 100,000 text elements converted in
// place, and memcpy of the same bytes as the ceiling. Bytes processed count the input.
#include <benchmark/benchmark.h>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <quiltra/quiltra.h>

namespace {

using namespace Quiltra;

constexpr unsigned int kValues = 100000;

// Family^Given names; the accented ones are Latin-1.
std::vector<std::string> personNames() {
  const char* families[] = {"Smith",    "M\xFCller",        "Garc\xED\x61", "Johnson",
                            "Dupr\xE9", "\xD8sterg\xE5rd",  "Brown",        "Nu\xF1\x65z",
                            "Taylor",   "Schr\xF6\x64\x65r"};
  const char* givens[] = {"Jane",   "J\xE9r\xF4me", "Anna",        "Fran\xE7ois", "Peter",
                          "Zo\xEB", "Michael",      "Ren\xE9\x65", "Olivia"};
  std::vector<std::string> names;
  names.reserve(kValues);
  for (unsigned int i = 0; i < kValues; ++i) {
    names.push_back(std::string(families[i % 10]) + "^" + givens[(i / 10) % 9] + "^^Dr.");
  }
  return names;
}

std::int64_t totalSize(const std::vector<std::string>& texts) {
  std::int64_t total = 0;
  for (const std::string& text : texts) total += static_cast<std::int64_t>(text.size());
  return total;
}

std::vector<std::string> inUTF8(const std::vector<std::string>& latin1) {
  std::vector<std::string> utf8;
  for (const std::string& text : latin1) utf8.push_back(Quiltra_Unicode::latin1ToUTF8(text));
  return utf8;
}

void BM_NamesLatin1ToUTF8(benchmark::State& state) {
  const auto names = personNames();
  for (auto _ : state) {
    for (const std::string& name : names) {
      benchmark::DoNotOptimize(Quiltra_Unicode::latin1ToUTF8(name));
    }
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * totalSize(names));
}
BENCHMARK(BM_NamesLatin1ToUTF8)->Unit(benchmark::kMillisecond);

void BM_NamesUTF8ToLatin1(benchmark::State& state) {
  const auto names = inUTF8(personNames());
  for (auto _ : state) {
    for (const std::string& name : names) {
      benchmark::DoNotOptimize(Quiltra_Unicode::UTF8toLatin1(name));
    }
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * totalSize(names));
}
BENCHMARK(BM_NamesUTF8ToLatin1)->Unit(benchmark::kMillisecond);

// The same names converted in place, as a data set's values are, both ways per iteration.
void BM_NamesConvertInPlaceBothWays(benchmark::State& state) {
  auto names = personNames();
  for (auto _ : state) {
    for (std::string& name : names) {
      Quiltra_Unicode::convertCharacterSet("ISO_IR 100", "ISO_IR 192", name);
      Quiltra_Unicode::convertCharacterSet("ISO_IR 192", "ISO_IR 100", name);
    }
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                          (totalSize(names) + totalSize(inUTF8(names))));
}
BENCHMARK(BM_NamesConvertInPlaceBothWays)->Unit(benchmark::kMillisecond);

// The ceiling: copying the names' bytes, value by value and as one block.
void BM_NamesMemcpy(benchmark::State& state) {
  const auto names = personNames();
  std::vector<char> target(static_cast<std::size_t>(totalSize(names)));
  for (auto _ : state) {
    char* out = target.data();
    for (const std::string& name : names) {
      std::memcpy(out, name.data(), name.size());
      out += name.size();
    }
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * totalSize(names));
}
BENCHMARK(BM_NamesMemcpy)->Unit(benchmark::kMillisecond);

void BM_NamesMemcpyOneBlock(benchmark::State& state) {
  const auto names = personNames();
  std::string source;
  for (const std::string& name : names) source += name;
  std::vector<char> target(source.size());
  for (auto _ : state) {
    std::memcpy(target.data(), source.data(), source.size());
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * source.size()));
}
BENCHMARK(BM_NamesMemcpyOneBlock)->Unit(benchmark::kMillisecond);

// A data set of 100,000 text elements: PN names, LO texts (ASCII) and, every tenth, a US
// number that the conversion passes over.
std::shared_ptr<Tree> textDataSet(std::int64_t& textBytes) {
  const auto names = personNames();
  auto tree = std::make_shared<Tree>();
  textBytes = 0;
  for (unsigned int i = 0; i < kValues; ++i) {
    const TagId id(static_cast<unsigned short>(0x0011 + 2 * (i >> 16)),
                   static_cast<unsigned short>(i & 0xFFFF));
    const bool name = i % 2 == 0;
    auto tag = std::make_shared<Tag>(TagInfo(id, "", name ? PN : LO, {1, 1}));
    const std::string text = name ? names[i] : "Series description " + std::to_string(i);
    tag->addValue(text);
    textBytes += static_cast<std::int64_t>(text.size());
    tree->addTag(tag);
  }
  return tree;
}

void BM_DataSetLatin1ToUTF8AndBack(benchmark::State& state) {
  std::int64_t textBytes = 0;
  auto tree = textDataSet(textBytes);
  for (auto _ : state) {
    tree->convertCharacterSet("ISO_IR 100", "ISO_IR 192");
    tree->convertCharacterSet("ISO_IR 192", "ISO_IR 100");
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * 2 * textBytes);
}
BENCHMARK(BM_DataSetLatin1ToUTF8AndBack)->Unit(benchmark::kMillisecond);

void BM_DataSetMemcpy(benchmark::State& state) {
  std::int64_t textBytes = 0;
  auto tree = textDataSet(textBytes);
  std::vector<unsigned char> target(static_cast<std::size_t>(textBytes) + kValues);
  for (auto _ : state) {
    unsigned char* out = target.data();
    for (const auto& entry : tree->tags()) {
      const Value& value = entry.second->getValue(0);
      std::memcpy(out, value.data(), value.size());
      out += value.size();
    }
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * textBytes);
}
BENCHMARK(BM_DataSetMemcpy)->Unit(benchmark::kMillisecond);

}  // namespace
