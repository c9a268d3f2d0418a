#pragma once

#include "utilvel90_export.h"

namespace vel {

/// Base64 (RFC 4648, section 4) of `longitud` bytes of `entrada`, or the bytes behind such a text when
/// `codifica` is false. Returns the bytes written to `salida`, never more than its size `tamano`: a longer
/// result is cut there. No terminating zero is written; callers that want one clear the buffer first.
///
/// The encoded text is one line, without a line break at its end. A text to decode is one line too; blanks
/// and line breaks after it are ignored. Anything else in it (another character, padding out of place, a
/// length that is not a multiple of four) is not Base64: the result is 0 bytes and `salida` stays as it was.
///
/// Null pointers and sizes below 1 give 0. Input and output must not overlap.
///
///     the bytes "abcd" are "YWJjZA=="
UTILVEL90_EXPORT int Base64(const unsigned char* entrada, int longitud, unsigned char* salida, int tamano,
                            bool codifica);

}  // namespace vel
