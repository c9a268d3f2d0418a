#pragma once

#include <string_view>

#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// Triple DES in the CBCM mode (cipher block chaining with masking; Biham and Knudsen, "Cryptanalysis of the
/// ANSI X9.52 CBCM Mode") with this library's fixed keys. It keeps settings from casual eyes: whoever has the
/// library has the keys.
///
/// Mode 1 enciphers the zero-terminated text `entrada` and its terminating zero, filled up with zeros: the
/// result is the text's length rounded up to the next multiple of 8 (5 becomes 8, 8 becomes 16). Any other
/// mode deciphers into as many bytes as go in: `longitud` bytes in mode 0, else those before the first zero
/// byte of `entrada`. Because cipher text may hold zero bytes, use mode 0 to decipher:
///
///     int longitud = 0;
///     unsigned char* cifrado = Enc21(texto, longitud, 1);   // longitud is set to the result's length
///     unsigned char* claro = Enc21(cifrado, longitud, 0);   // the text, its zero, and zeros up to longitud
///     LiberaBuffer(claro);
///     LiberaBuffer(cifrado);
///
/// On return `longitud` is the length of the result in every mode. The caller owns the result and frees it
/// with LiberaBuffer. Cipher text whose length is not a multiple of 8 has lost its last block: the whole
/// blocks come out right, the remaining bytes are noise.
///
/// A null `entrada`, a negative length, or a text whose result would not fit in an int gives a null pointer
/// and length 0.
UTILVEL90_EXPORT unsigned char* Enc21(const unsigned char* entrada, int& longitud, int modo);

/// Frees what Enc21 returned; null is allowed.
UTILVEL90_EXPORT void LiberaBuffer(unsigned char* buffer) noexcept;

/// AES-128 (FIPS 197) of `datos` up to its first zero byte, each block on its own (ECB, SP 800-38A), with
/// the first 16 bytes of `llave`. The result is raw bytes, in the form that the receiving side expects:
/// - a last partial block is filled with bytes that hold the count of missing bytes; when the data are a
///   multiple of 16 bytes nothing is added, unlike PKCS#7;
/// - of each cipher block only the bytes before its first zero byte are kept;
/// - the result ends at 499 bytes.
/// So not every result can be deciphered again.
///
/// Raises EInvalidOperation ("La llave debe tener al menos 16 bytes.") for a shorter key.
UTILVEL90_EXPORT AnsiString Encripta_AES_128(std::string_view llave, std::string_view datos);

}  // namespace vel
