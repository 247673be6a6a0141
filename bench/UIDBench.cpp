// Identifiers per second from one and from eight threads. The generator allows at most 100
// identifiers per millisecond per process (100,000 per second); beyond that callers sleep
// 1 ms at a time under the generator's lock.
#include <benchmark/benchmark.h>

#include <quiltra/quiltra.h>

namespace {

using Quiltra_Utils::UIDGenerator;

// Initialises once for all benchmark threads; false on a machine without Ethernet.
bool initialized() {
  static const bool ready = [] {
    try {
      UIDGenerator::initialize("1.2.3", "4", "5");
      return true;
    } catch (const Quiltra::Exception&) {
      return false;
    }
  }();
  return ready;
}

void BM_Uid(benchmark::State& state) {
  if (!initialized()) {
    state.SkipWithError("no Ethernet interface: CANNOT GET MAC");
    return;
  }
  for (auto _ : state) benchmark::DoNotOptimize(UIDGenerator::uid());
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_Uid)->Threads(1)->Threads(8)->UseRealTime();

}  // namespace
