// Quiltra side by side with the peer libraries it was built with: every workload is
// registered once per implementation, in table order, as "<workload>/<implementation>".
// Run it with --benchmark_enable_random_interleaving and repetitions (scripts/bench does)
// so that the implementations' repetitions alternate in one process and share its
// conditions; bench/peers/table.py turns the JSON output into the table of medians.
#include "Workloads.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <map>
#include <string>

int main(int argc, char** argv) {
  using namespace QuiltraPeers;
  Workloads all = quiltraWorkloads();
#ifdef QUILTRA_BENCH_WITH_DCMTK
  const Workloads dcmtk = dcmtkWorkloads();
  all.insert(all.end(), dcmtk.begin(), dcmtk.end());
#endif
#ifdef QUILTRA_BENCH_WITH_GDCM
  const Workloads gdcm = gdcmWorkloads();
  all.insert(all.end(), gdcm.begin(), gdcm.end());
#endif

  // Quiltra's list has every workload in table order; a peer's row follows Quiltra's.
  std::map<std::string, std::size_t> rank;
  for (const Workload& workload : all) rank.emplace(workload.name, rank.size());
  std::stable_sort(all.begin(), all.end(), [&rank](const Workload& a, const Workload& b) {
    return rank[a.name] < rank[b.name];
  });

  const bool everything = std::getenv("QUILTRA_BENCH_ALL") != nullptr || sizes().tiny;
  std::string leftOut;
  for (const Workload& workload : all) {
    const std::string name = workload.name + "/" + workload.implementation;
    if (workload.takesMinutes && !everything) {
      leftOut += (leftOut.empty() ? "" : "; ") + name;
      continue;
    }
    auto* registered = benchmark::RegisterBenchmark(name.c_str(), workload.run);
    registered->UseManualTime()->Unit(benchmark::kMillisecond);
    if (workload.singleIteration) registered->Iterations(1);
    if (workload.runOnce) registered->Repetitions(1);
    if (!workload.comparedWith.empty()) {
      benchmark::AddCustomContext("compared:" + workload.name, workload.comparedWith);
    }
  }
  if (!leftOut.empty()) benchmark::AddCustomContext("left_out", leftOut);

  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
