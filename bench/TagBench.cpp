// Costs of typed value access and comparison on one element.
#include <benchmark/benchmark.h>
#include <string>

#include <quiltra/quiltra.h>

namespace {

using namespace Quiltra;

Tag makeTag(Vr vr) {
  return Tag(TagInfo(TagId(0x0018, 0x0050), "", vr, {1, 1}));
}

void BM_ToIntFromSL(benchmark::State& state) {
  Tag tag = makeTag(SL);
  tag.addValue(123456);
  for (auto _ : state) benchmark::DoNotOptimize(tag.toInt(0));
}
BENCHMARK(BM_ToIntFromSL);

void BM_ToDoubleFromDS(benchmark::State& state) {
  Tag tag = makeTag(DS);
  tag.addValue(std::string("3.14159"));
  for (auto _ : state) benchmark::DoNotOptimize(tag.toDouble(0));
}
BENCHMARK(BM_ToDoubleFromDS);

void BM_SetValueReusesBuffer(benchmark::State& state) {
  Tag tag = makeTag(FD);
  tag.addValue(1.0);
  double value = 0.0;
  for (auto _ : state) tag.setValue(value += 1.0, 0);
}
BENCHMARK(BM_SetValueReusesBuffer);

void BM_AddValueSplitsText(benchmark::State& state) {
  const std::string text = "1\\2\\3\\4\\5\\6\\7\\8";
  for (auto _ : state) {
    Tag tag = makeTag(IS);
    tag.addValue(text);
    benchmark::DoNotOptimize(tag.numberOfValues());
  }
}
BENCHMARK(BM_AddValueSplitsText);

void BM_ToStringJoinsValues(benchmark::State& state) {
  Tag tag = makeTag(IS);
  tag.addValue(std::string("1\\2\\3\\4\\5\\6\\7\\8"));
  for (auto _ : state) benchmark::DoNotOptimize(tag.toString());
}
BENCHMARK(BM_ToStringJoinsValues);

void BM_CompareNumerical(benchmark::State& state) {
  Tag a = makeTag(FD);
  Tag b = makeTag(FD);
  for (int i = 0; i < 16; ++i) {
    a.addValue(i * 1.5);
    b.addValue(i * 1.5);
  }
  for (auto _ : state) benchmark::DoNotOptimize(a.compare(b, 1e-6));
}
BENCHMARK(BM_CompareNumerical);

}  // namespace
