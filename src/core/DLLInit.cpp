#include "quiltra/core/DLLInit.h"

namespace Quiltra {

DLLInit::~DLLInit() = default;

namespace {

// The module's one instance; loading and unloading the library does no work through it.
DLLInit _dllInit;

}  // namespace

}  // namespace Quiltra
