// Costs of the standard dictionary's lookups, loaded through the module loader as a host
// would load it.
#include <benchmark/benchmark.h>
#include <memory>
#include <string>

#include <quiltra/quiltra.h>

namespace {

using namespace Quiltra;

std::shared_ptr<const Dict> standardDictionary() {
  static Quiltra_Utils::ModuleDirectoryDelegate modules;
  return Dict::singleton(&modules);
}

void BM_TagInfoById(benchmark::State& state) {
  const auto dict = standardDictionary();
  const TagId id(0x0010, 0x0010);
  for (auto _ : state) benchmark::DoNotOptimize(dict->tagInfo(id));
}
BENCHMARK(BM_TagInfoById);

void BM_TagInfoByIdLongName(benchmark::State& state) {
  const auto dict = standardDictionary();
  const TagId id(0x0008, 0x1155);  // ReferencedSOPInstanceUID: beyond the short-string buffer
  for (auto _ : state) benchmark::DoNotOptimize(dict->tagInfo(id));
}
BENCHMARK(BM_TagInfoByIdLongName);

void BM_TagInfoRepeatingGroup(benchmark::State& state) {
  const auto dict = standardDictionary();
  const TagId id(0x6002, 0x3000);  // two searches: the single table, then the masked one
  for (auto _ : state) benchmark::DoNotOptimize(dict->tagInfo(id));
}
BENCHMARK(BM_TagInfoRepeatingGroup);

void BM_TagInfoByName(benchmark::State& state) {
  const auto dict = standardDictionary();
  const std::string name = "PatientName";
  for (auto _ : state) benchmark::DoNotOptimize(dict->tagInfo(name));
}
BENCHMARK(BM_TagInfoByName);

void BM_KnowsTagId(benchmark::State& state) {
  const auto dict = standardDictionary();
  const TagId id(0x0028, 0x0010);
  for (auto _ : state) benchmark::DoNotOptimize(dict->knowsTagId(id));
}
BENCHMARK(BM_KnowsTagId);

void BM_KnowsTagNameUnknown(benchmark::State& state) {
  const auto dict = standardDictionary();
  const std::string name = "NoSuchAttributeName";
  for (auto _ : state) benchmark::DoNotOptimize(dict->knowsTagName(name));
}
BENCHMARK(BM_KnowsTagNameUnknown);

}  // namespace
