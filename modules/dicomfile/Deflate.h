#ifndef QUILTRA_MODULES_DICOMFILE_DEFLATE_H_
#define QUILTRA_MODULES_DICOMFILE_DEFLATE_H_

#include <vector>

namespace Quiltra_DicomFile {

class ByteInput;
class ByteOutput;

/// Inflates the rest of input (raw deflate, or a zlib stream, which some writers use).
/// The result grows with the data inflated and may not exceed 1100 times the input.
/// Throws Exception("DicomFile::read", ...) naming the offset for a damaged stream.
std::vector<unsigned char> inflateRest(ByteInput& input);

/// Writes data to output as one raw deflate stream.
void deflateTo(const std::vector<unsigned char>& data, ByteOutput& output);

}  // namespace Quiltra_DicomFile

#endif  // QUILTRA_MODULES_DICOMFILE_DEFLATE_H_
