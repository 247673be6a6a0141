#ifndef QUILTRA_TESTS_SUPPORT_TEMPORARYFOLDER_H_
#define QUILTRA_TESTS_SUPPORT_TEMPORARYFOLDER_H_

#include <filesystem>
#include <stdexcept>
#include <stdlib.h>
#include <string>

namespace QuiltraTest {

// A fresh, uniquely named folder under the system's temporary folder, removed with all it
// holds when the object dies. Not copyable.
class TemporaryFolder {
 public:
  explicit TemporaryFolder(const std::string& prefix) {
    std::string pattern = (std::filesystem::temp_directory_path() / (prefix + "-XXXXXX")).string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("mkdtemp failed");
    _path = pattern;
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(_path, ignored);
  }

  const std::filesystem::path& path() const { return _path; }

 private:
  std::filesystem::path _path;
};

}  // namespace QuiltraTest

#endif  // QUILTRA_TESTS_SUPPORT_TEMPORARYFOLDER_H_
