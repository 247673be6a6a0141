#ifndef QUILTRA_TESTS_SUPPORT_LOADINGDELEGATE_H_
#define QUILTRA_TESTS_SUPPORT_LOADINGDELEGATE_H_

#include <functional>
#include <utility>

#include <quiltra/io/LoadLibraryDelegate.h>

namespace QuiltraTest {

// A host's loader for tests: installed as the default delegate for its lifetime, it runs
// the given registration (or nothing) on each load and counts the loads.
class LoadingDelegate : public Quiltra_Utils::LoadLibraryDelegate {
 public:
  explicit LoadingDelegate(std::function<void()> load = nullptr) : _load(std::move(load)) {
    Quiltra_Utils::setDefaultLoadLibraryDelegate(this);
  }
  ~LoadingDelegate() override { Quiltra_Utils::setDefaultLoadLibraryDelegate(nullptr); }
  LoadingDelegate(const LoadingDelegate&) = delete;
  LoadingDelegate& operator=(const LoadingDelegate&) = delete;

  void loadLibraries() override {
    ++loads;
    if (_load) _load();
  }

  int loads = 0;

 private:
  std::function<void()> _load;
};

}  // namespace QuiltraTest

#endif  // QUILTRA_TESTS_SUPPORT_LOADINGDELEGATE_H_
