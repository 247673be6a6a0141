#ifndef QUILTRA_IO_TYPECODE_H_
#define QUILTRA_IO_TYPECODE_H_

namespace Quiltra_Serialization {

// The 4-byte code in front of every typed field. Codes 12 to 14 do not occur.
inline constexpr unsigned int kCodeBool = 0;
inline constexpr unsigned int kCodeInt = 1;
inline constexpr unsigned int kCodeUInt = 2;
inline constexpr unsigned int kCodeShort = 3;
inline constexpr unsigned int kCodeUShort = 4;
inline constexpr unsigned int kCodeLong = 5;
inline constexpr unsigned int kCodeULong = 6;
inline constexpr unsigned int kCodeFloat = 7;
inline constexpr unsigned int kCodeDouble = 8;
inline constexpr unsigned int kCodeString = 9;
inline constexpr unsigned int kCodePair = 10;
inline constexpr unsigned int kCodeVector = 11;
inline constexpr unsigned int kCodeEnum = 15;

}  // namespace Quiltra_Serialization

#endif  // QUILTRA_IO_TYPECODE_H_
