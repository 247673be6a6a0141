#ifndef QUILTRA_CORE_EXPORT_H_
#define QUILTRA_CORE_EXPORT_H_

// The shared library hides every symbol by default; QUILTRA_EXPORT marks the public API.
#if defined(QUILTRA_STATIC)
#define QUILTRA_EXPORT
#else
#define QUILTRA_EXPORT __attribute__((visibility("default")))
#endif

#endif  // QUILTRA_CORE_EXPORT_H_
