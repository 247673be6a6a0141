#ifndef QUILTRA_MODULES_DICOMFILE_TAGS_H_
#define QUILTRA_MODULES_DICOMFILE_TAGS_H_

#include <cstdint>

namespace Quiltra_DicomFile {

// The tags the file layout itself gives a meaning, as group << 16 | element.
inline constexpr std::uint16_t kMetaGroup = 0x0002;
inline constexpr std::uint16_t kItemGroup = 0xFFFE;
inline constexpr std::uint32_t kItem = 0xFFFEE000u;
inline constexpr std::uint32_t kItemDelimitation = 0xFFFEE00Du;
inline constexpr std::uint32_t kSequenceDelimitation = 0xFFFEE0DDu;

inline constexpr std::uint32_t kMetaGroupLength = 0x00020000u;
inline constexpr std::uint32_t kMetaVersion = 0x00020001u;
inline constexpr std::uint32_t kMediaStorageSopClassUid = 0x00020002u;
inline constexpr std::uint32_t kMediaStorageSopInstanceUid = 0x00020003u;
inline constexpr std::uint32_t kTransferSyntaxUid = 0x00020010u;
inline constexpr std::uint32_t kImplementationClassUid = 0x00020012u;
inline constexpr std::uint32_t kImplementationVersionName = 0x00020013u;

inline constexpr std::uint32_t kSpecificCharacterSet = 0x00080005u;
inline constexpr std::uint32_t kSopClassUid = 0x00080016u;
inline constexpr std::uint32_t kSopInstanceUid = 0x00080018u;
inline constexpr std::uint32_t kPixelData = 0x7FE00010u;

}  // namespace Quiltra_DicomFile

#endif  // QUILTRA_MODULES_DICOMFILE_TAGS_H_
