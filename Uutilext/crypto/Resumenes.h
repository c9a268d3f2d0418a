#pragma once

#include <cstdint>
#include <string_view>

#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// These functions report no errors: should libcrypto fail (no memory) texts and bytes come back empty, and
/// the digest by pointer as a null one. The library uses libcrypto in a context of its own, so that no
/// configuration of the machine or of the program changes a result. It keeps a few small working areas for
/// each algorithm, for the life of the process; none belongs to a thread, so all may be called while a thread
/// or the program ends.

/// SHA-256 (FIPS 180-4) of the bytes of `texto` up to its terminating zero, as 64 hexadecimal digits in
/// small letters. Null counts as the empty text.
///
///     Hash256("abc") == "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"
UTILVEL90_EXPORT AnsiString Hash256(const char* texto);

/// SHA-1 (FIPS 180-4) of a text in the system code page, taken over its UTF-8 form up to the first zero
/// byte, as 40 hexadecimal digits in small letters. SHA-1 no longer withstands forgers; use it only where a
/// receiver asks for it.
///
///     EncriptaSha1("abc") == "a9993e364706816aba3e25717850c26c9cd0d89d"
UTILVEL90_EXPORT AnsiString EncriptaSha1(std::string_view texto);

/// MD5 (RFC 1321) of the UTF-8 form of `texto` in Base64: 24 characters. MD5 is broken as a proof against
/// tampering; use it only where a receiver asks for it.
///
///     EncriptaMD5(u"abc") == u"kAFQmDzST7DWlj99KOF/cg=="
UTILVEL90_EXPORT UnicodeString EncriptaMD5(std::u16string_view texto);

/// HMAC-SHA-256 (RFC 2104) of `datos` in the system code page, as 32 raw bytes. The data end at their first
/// zero, or before the first character that the code page does not have.
///
/// The key is the bytes of `llave` up to its terminating zero. With `ampliaA32` a key shorter than 32 bytes
/// is taken as 32 bytes long, so `llave` must then point to at least 32 bytes, filled with zeros. Null
/// counts as the empty key. No copy of it is left in memory.
///
/// The result belongs to the library and stays valid until the same thread's next call, or its end: copy or
/// encode it at once.
UTILVEL90_EXPORT const unsigned char* EncriptaHmacSha256(std::u16string_view datos, const char* llave,
                                                         bool ampliaA32);

/// The digests above of bytes as they stand, zeros too: 16, 20 or 32 raw bytes.
enum class AlgoritmoResumen : std::uint8_t { MD5, SHA1, SHA256 };
UTILVEL90_EXPORT AnsiString ResumeBytes(AlgoritmoResumen algoritmo, std::string_view bytes);

/// HMAC-SHA-256 of bytes and with a key as they stand, zeros too: 32 raw bytes.
UTILVEL90_EXPORT AnsiString HmacSha256DeBytes(std::string_view llave, std::string_view bytes);

}  // namespace vel
