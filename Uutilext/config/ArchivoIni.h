#pragma once

#include <functional>
#include <string_view>

#include "framework/TextoIni.h"
#include "platform/Archivos.h"

// INI files on disk: their encoding, their lock and their safe replacement.
namespace vel {

/// The text of the file; empty when it is missing or cannot be read.
TextoIni LeeIni(std::u16string_view archivo);

/// The same for what must not be taken for empty: a file that is there and cannot be read raises Exception,
/// its message as in CambiaIni.
TextoIni LeeIniEntero(std::u16string_view archivo);

/// The value of a key as stored, quotes included; empty when there is none, or no file that can be read.
UnicodeString ValorDeIni(std::u16string_view archivo, std::u16string_view seccion, std::u16string_view clave);

/// Loads the file, lets `cambio` change its text and saves it, while no other program of the suite does the
/// same. The encoding on disk is kept: UTF-16LE or UTF-8 with a mark, UTF-8, Windows-1252 (also for a file
/// that is new or has only ASCII characters); a text that would not be read back from it makes it UTF-16LE
/// with a mark. A text that did not change is not saved. On any fault of the file, damaged text in it
/// included, it is as it was.
FallaArchivo IntentaCambiarIni(std::u16string_view archivo, const std::function<void(TextoIni&)>& cambio);

/// The same, where any fault raises Exception with the message `mensaje` + the path between quotation marks,
/// a line break and the advice about permissions.
void CambiaIni(std::u16string_view archivo, std::u16string_view mensaje,
               const std::function<void(TextoIni&)>& cambio);

/// CambiaIni that sets one value, with the message for writing.
void PonEnIni(std::u16string_view archivo, std::u16string_view seccion, std::u16string_view clave,
              std::u16string_view valor);

/// The beginning of that message when a value is written, and when a section is erased.
inline constexpr std::u16string_view kNoSePuedeEscribir = u"No se puede escribir en el archivo ";
inline constexpr std::u16string_view kNoSePuedeActualizar =
    u"No se puede actualizar la información del archivo ";

}  // namespace vel
