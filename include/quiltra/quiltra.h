#ifndef QUILTRA_QUILTRA_H_
#define QUILTRA_QUILTRA_H_

// The whole public API of Quiltra.

#include <quiltra/core/DLLInit.h>
#include <quiltra/core/DateTime.h>
#include <quiltra/core/Exception.h>
#include <quiltra/core/Export.h>
#include <quiltra/core/Logging.h>
#include <quiltra/core/Multiplicity.h>
#include <quiltra/core/Quiltra_Utils.h>
#include <quiltra/core/TagId.h>
#include <quiltra/core/TagInfo.h>
#include <quiltra/core/TransferSyntax.h>
#include <quiltra/core/Value.h>
#include <quiltra/core/Version.h>
#include <quiltra/core/Vr.h>
#include <quiltra/dataset/Dict.h>
#include <quiltra/dataset/Message.h>
#include <quiltra/dataset/TagSelector.h>
#include <quiltra/dataset/Tree.h>
#include <quiltra/element/Tag.h>
#include <quiltra/io/Dump.h>
#include <quiltra/io/FileSink.h>
#include <quiltra/io/FileSource.h>
#include <quiltra/io/IOParameter.h>
#include <quiltra/io/LoadLibraryDelegate.h>
#include <quiltra/io/MemorySink.h>
#include <quiltra/io/MemorySource.h>
#include <quiltra/io/Module.h>
#include <quiltra/io/ModuleDirectoryDelegate.h>
#include <quiltra/io/Reader.h>
#include <quiltra/io/Serializable.h>
#include <quiltra/io/Sink.h>
#include <quiltra/io/Source.h>
#include <quiltra/io/StreamPrimitives.h>
#include <quiltra/io/TextDump.h>
#include <quiltra/io/TypeCode.h>
#include <quiltra/io/Writer.h>
#include <quiltra/multiframe/StructuredMF.h>
#include <quiltra/services/Quiltra_Unicode.h>
#include <quiltra/services/Thread.h>
#include <quiltra/services/UIDGenerator.h>

#endif  // QUILTRA_QUILTRA_H_
