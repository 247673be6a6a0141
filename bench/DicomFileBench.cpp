// Throughput of the DICOM file module's reader and writer on two files of the kind that
// matter in practice: a ~200 MB multi-frame image (uncompressed pixel data) and an
// enhanced multi-frame header of 20,000 per-frame items. Bytes per second count the file.
//
//   DicomFileBench                      runs the benchmarks (files in the temporary folder)
//   DicomFileBench --write-files DIR    only writes pixels.dcm and header.dcm into DIR, for
//                                       timing another toolkit on the same files
//                                       (scripts/bench-dicomfile)
#include "DicomFile.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <quiltra/quiltra.h>

namespace {

using namespace Quiltra;
using Quiltra_DicomFile::readDicomFile;
using Quiltra_DicomFile::writeDicomFile;

constexpr unsigned int kFrames = 400;  // 400 frames of 512 x 512 16-bit pixels: 200 MiB
constexpr unsigned short kSide = 512;
constexpr unsigned int kHeaderItems = 20000;

std::shared_ptr<Tag> element(const TagId& id, Vr vr, const std::string& text) {
  auto tag = std::make_shared<Tag>(TagInfo(id, "", vr, {1, 1}));
  if (!text.empty()) tag->addValue(text);
  return tag;
}

std::shared_ptr<Tag> sequenceOf(const TagId& id, std::shared_ptr<Tree> item) {
  auto sequence = std::make_shared<Tag>(TagInfo(id, "", SQ, {1, 1}));
  sequence->addSequenceItem(item);
  return sequence;
}

// What every image shares: identification, and the pixel description for frames.
std::shared_ptr<Tree> imageHeader(unsigned int frames, unsigned short side) {
  auto tree = std::make_shared<Tree>();
  tree->addTag(element(TagId(0x0008, 0x0005), CS, "ISO_IR 100"));
  tree->addTag(element(TagId(0x0008, 0x0016), UI, "1.2.840.10008.5.1.4.1.1.4.1"));
  tree->addTag(element(TagId(0x0008, 0x0018), UI, "2.25.987654321987654321"));
  tree->addTag(element(TagId(0x0008, 0x0060), CS, "MR"));
  tree->addTag(element(TagId(0x0010, 0x0010), PN, "Bench^Mark"));
  tree->addTag(element(TagId(0x0028, 0x0002), US, "1"));
  tree->addTag(element(TagId(0x0028, 0x0004), CS, "MONOCHROME2"));
  tree->addTag(element(TagId(0x0028, 0x0008), IS, std::to_string(frames)));
  tree->addTag(element(TagId(0x0028, 0x0010), US, std::to_string(side)));
  tree->addTag(element(TagId(0x0028, 0x0011), US, std::to_string(side)));
  tree->addTag(element(TagId(0x0028, 0x0100), US, "16"));
  tree->addTag(element(TagId(0x0028, 0x0101), US, "12"));
  tree->addTag(element(TagId(0x0028, 0x0102), US, "11"));
  tree->addTag(element(TagId(0x0028, 0x0103), US, "0"));
  return tree;
}

std::shared_ptr<Tree> pixelImage() {
  auto tree = imageHeader(kFrames, kSide);
  auto pixels = std::make_shared<Tag>(TagInfo(TagId(0x7FE0, 0x0010), "", OW, {1, 1}));
  Value& value = pixels->addValue();
  value.setSize(kFrames * kSide * kSide * 2u);
  for (unsigned int i = 0; i < value.size(); i += 4096)
    value.data()[i] = static_cast<unsigned char>(i >> 12);
  tree->addTag(pixels);
  return tree;
}

// One per-frame functional group item: frame content, plane position and orientation,
// pixel measures and a value transformation, as an enhanced MR image carries them.
std::shared_ptr<Tree> frameGroup(unsigned int frame) {
  auto content = std::make_shared<Tree>();
  content->addTag(element(TagId(0x0020, 0x9056), SH, "1"));
  content->addTag(element(TagId(0x0020, 0x9057), UL, std::to_string(frame % 100 + 1)));
  content->addTag(element(TagId(0x0020, 0x9157), UL, "1\\" + std::to_string(frame + 1)));
  content->addTag(element(TagId(0x0018, 0x9074), DT, "20240131101530.250000"));
  auto position = std::make_shared<Tree>();
  position->addTag(
      element(TagId(0x0020, 0x0032), DS, "-125.5\\-98.25\\" + std::to_string(frame * 0.5)));
  auto orientation = std::make_shared<Tree>();
  orientation->addTag(element(TagId(0x0020, 0x0037), DS, "1\\0\\0\\0\\1\\0"));
  auto measures = std::make_shared<Tree>();
  measures->addTag(element(TagId(0x0028, 0x0030), DS, "0.48828125\\0.48828125"));
  measures->addTag(element(TagId(0x0018, 0x0050), DS, "0.5"));
  auto transformation = std::make_shared<Tree>();
  transformation->addTag(element(TagId(0x0028, 0x1052), DS, "0"));
  transformation->addTag(element(TagId(0x0028, 0x1053), DS, "1"));
  transformation->addTag(element(TagId(0x0028, 0x1054), LO, "US"));
  auto group = std::make_shared<Tree>();
  group->addTag(sequenceOf(TagId(0x0020, 0x9111), content));
  group->addTag(sequenceOf(TagId(0x0020, 0x9113), position));
  group->addTag(sequenceOf(TagId(0x0020, 0x9116), orientation));
  group->addTag(sequenceOf(TagId(0x0028, 0x9110), measures));
  group->addTag(sequenceOf(TagId(0x0028, 0x9145), transformation));
  return group;
}

std::shared_ptr<Tree> enhancedHeader() {
  auto tree = imageHeader(kHeaderItems, 1);
  auto groups = std::make_shared<Tag>(TagInfo(TagId(0x5200, 0x9230), "", SQ, {1, 1}));
  for (unsigned int frame = 0; frame < kHeaderItems; ++frame) {
    groups->addSequenceItem(frameGroup(frame));
  }
  tree->addTag(groups);
  return tree;
}

std::string writeFile(const std::string& path, const Tree& tree) {
  writeDicomFile(tree, EXPLICIT_LITTLE_ENDIAN, path, {});
  return path;
}

std::string benchFile(const std::string& name) {
  return (std::filesystem::temp_directory_path() / ("quiltra-bench-" + name)).string();
}

std::shared_ptr<const Dict> standardDictionary() {
  static Quiltra_Utils::ModuleDirectoryDelegate modules;
  return Dict::singleton(&modules);
}

// The two sample files, written once; removed at exit.
struct Samples {
  std::string pixels = writeFile(benchFile("pixels.dcm"), *pixelImage());
  std::string header = writeFile(benchFile("header.dcm"), *enhancedHeader());
  ~Samples() {
    std::remove(pixels.c_str());
    std::remove(header.c_str());
  }
};

const Samples& samples() {
  static const Samples files;
  return files;
}

void read(benchmark::State& state, const std::string& path) {
  const Quiltra_DicomFile::ReadOptions options{standardDictionary(), {}};
  for (auto _ : state) benchmark::DoNotOptimize(readDicomFile(path, options).tree);
  state.SetBytesProcessed(state.iterations() *
                          static_cast<std::int64_t>(std::filesystem::file_size(path)));
}

void write(benchmark::State& state, const std::string& path) {
  const auto tree = readDicomFile(path, {standardDictionary(), {}}).tree;
  const std::string out = path + ".out";
  for (auto _ : state) writeDicomFile(*tree, EXPLICIT_LITTLE_ENDIAN, out, {});
  state.SetBytesProcessed(state.iterations() *
                          static_cast<std::int64_t>(std::filesystem::file_size(out)));
  std::remove(out.c_str());
}

// Read and write again, as a converting program does.
void convert(benchmark::State& state, const std::string& path) {
  const Quiltra_DicomFile::ReadOptions options{standardDictionary(), {}};
  const std::string out = path + ".out";
  for (auto _ : state)
    writeDicomFile(*readDicomFile(path, options).tree, EXPLICIT_LITTLE_ENDIAN, out, {});
  state.SetBytesProcessed(state.iterations() *
                          static_cast<std::int64_t>(std::filesystem::file_size(path)));
  std::remove(out.c_str());
}

void BM_ReadPixels(benchmark::State& state) {
  read(state, samples().pixels);
}
void BM_WritePixels(benchmark::State& state) {
  write(state, samples().pixels);
}
void BM_ConvertPixels(benchmark::State& state) {
  convert(state, samples().pixels);
}
void BM_ReadHeader(benchmark::State& state) {
  read(state, samples().header);
}
void BM_WriteHeader(benchmark::State& state) {
  write(state, samples().header);
}
void BM_ConvertHeader(benchmark::State& state) {
  convert(state, samples().header);
}
// Reading the header without the pixel data: the selection skips what it leaves out.
void BM_ReadPixelsWithoutPixelData(benchmark::State& state) {
  Quiltra_DicomFile::ReadOptions options{
      standardDictionary(), [](const TagInfo& info) { return info.id() != TagId(0x7FE0, 0x0010); }};
  for (auto _ : state) benchmark::DoNotOptimize(readDicomFile(samples().pixels, options).tree);
}

BENCHMARK(BM_ReadPixels)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_WritePixels)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_ConvertPixels)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_ReadPixelsWithoutPixelData)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ReadHeader)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_WriteHeader)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_ConvertHeader)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

int main(int argc, char** argv) {
  if (argc == 3 && std::string(argv[1]) == "--write-files") {
    try {
      writeFile(argv[2] + std::string("/pixels.dcm"), *pixelImage());
      writeFile(argv[2] + std::string("/header.dcm"), *enhancedHeader());
    } catch (const Exception& error) {
      std::cerr << error.toString();
      return 1;
    }
    return 0;
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
