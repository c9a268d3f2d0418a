#pragma once

#include <optional>
#include <string_view>

#include "framework/Texto.h"
#include "platform/Archivos.h"
#include "utilvel90_export.h"

namespace vel {

/// The local-machine branch of the registry as a 32-bit program sees it, which is what the suite's programs
/// are: what stands under "SOFTWARE\WOW6432Node" is seen under "SOFTWARE" too, and hides what stands there.
/// Keys and value names match without regard to case; a key may end in "\".
///
/// POSIX: a text file in the format of the registry's own exports ("Windows Registry Editor Version 5.00"),
/// at $UTILVEL_REGISTRO, else /etc/tavex/registro.reg, in any encoding of TextoArchivo.h.

/// What a key holds under one name.
struct ValorRegistro {
  /// Whether the key is there.
  bool claveExiste = false;
  /// The text of a text value; nothing when the key has no such value or it is no text.
  std::optional<UnicodeString> texto;
};

/// Reads a value by key ("SOFTWARE\TAVEX") and name; one that cannot be read counts as missing.
UTILVEL90_EXPORT ValorRegistro LeeRegistro(std::u16string_view clave, std::u16string_view nombre);

/// The same, telling in `falla` why the registry could not be read (too many open files, a broken disk,
/// another's file): nothing is known of the key then. A registry or a key that is not there is no fault.
UTILVEL90_EXPORT ValorRegistro LeeRegistro(std::u16string_view clave, std::u16string_view nombre,
                                           FallaArchivo& falla);

/// Writes a text value, creating the key when needed; on POSIX in one step, under a lock and with all else in
/// the file kept. Key and name have no line breaks; the empty name is the key's default value.
UTILVEL90_EXPORT FallaArchivo EscribeRegistro(std::u16string_view clave, std::u16string_view nombre,
                                              std::u16string_view texto);

}  // namespace vel
