#include "quiltra/io/LoadLibraryDelegate.h"

#include <atomic>

namespace Quiltra_Utils {

namespace {

// The host's fallback for callers that have no delegate to pass (the create operations,
// Dict::singleton(nullptr)). Not owned.
std::atomic<LoadLibraryDelegate*> defaultDelegate{nullptr};

}  // namespace

LoadLibraryDelegate::~LoadLibraryDelegate() = default;

void configLoadLibraries(LoadLibraryDelegate* delegate) {
  LoadLibraryDelegate* chosen = delegate != nullptr ? delegate : defaultDelegate.load();
  if (chosen == nullptr) return;
  chosen->loadLibraries();
}

void setDefaultLoadLibraryDelegate(LoadLibraryDelegate* delegate) {
  defaultDelegate.store(delegate);
}

}  // namespace Quiltra_Utils
