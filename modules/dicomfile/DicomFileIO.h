#ifndef QUILTRA_MODULES_DICOMFILE_DICOMFILEIO_H_
#define QUILTRA_MODULES_DICOMFILE_DICOMFILEIO_H_

#include <memory>
#include <string>

#include <quiltra/io/Reader.h>
#include <quiltra/io/Writer.h>

namespace Quiltra_DicomFile {

/// The Reader of DICOM files (see DicomFile.h for what is read and how damage is handled).
/// readFile honours the selection (unselected elements are skipped without being stored)
/// and learns the message's character set from (0008,0005), "ISO_IR 6" without one.
/// Threads: one reader per thread; readers share only their dictionary.
class DicomFileReader : public Quiltra::Reader {
 public:
  DicomFileReader() = default;
  explicit DicomFileReader(std::shared_ptr<const Quiltra::Dict> dict) : Reader(std::move(dict)) {}
  std::shared_ptr<Quiltra::Message> readFile(
      const std::string& path, std::shared_ptr<Quiltra::IOParameter> selection) override;
  std::shared_ptr<Quiltra::Reader> createInstance(
      const std::shared_ptr<const Quiltra::Dict>& dict) const override;
  /// Makes a DicomFileReader the registered reader prototype.
  static void registerPrototype();
};

/// The Writer of DICOM files in the message's transfer syntax; unselected elements are left
/// out. Writes to a temporary file beside path and renames it over path when complete.
class DicomFileWriter : public Quiltra::Writer {
 public:
  DicomFileWriter() = default;
  explicit DicomFileWriter(std::shared_ptr<const Quiltra::Dict> dict) : Writer(std::move(dict)) {}
  void writeFile(const std::string& path, std::shared_ptr<Quiltra::IOParameter> selection,
                 std::shared_ptr<Quiltra::Message> message) override;
  std::shared_ptr<Quiltra::Writer> createInstance(
      const std::shared_ptr<const Quiltra::Dict>& dict) const override;
  /// Makes a DicomFileWriter the registered writer prototype.
  static void registerPrototype();
};

}  // namespace Quiltra_DicomFile

#endif  // QUILTRA_MODULES_DICOMFILE_DICOMFILEIO_H_
