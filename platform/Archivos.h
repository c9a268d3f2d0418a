#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {

/// Files and folders by their paths in the suite's notation (see RutaNativa). Contents are bytes. On Windows
/// a path may be longer than MAX_PATH, and what another program has open is waited for a moment before it
/// counts as EnUso.

/// What went wrong, by meaning; the numbers of the systems differ.
enum class ClaseFalla : std::uint8_t {
  Ninguna,
  NoExiste,
  RutaNoExiste,
  DemasiadosAbiertos,
  AccesoDenegado,
  SinMemoria,
  DiscoLleno,
  Otra,
  EnUso,
};

/// The answer of an operation: nothing, or what went wrong and the system's own text for it, in the user's
/// language where the system knows it.
struct FallaArchivo {
  /// What went wrong.
  ClaseFalla clase = ClaseFalla::Ninguna;
  /// The system's own text for it; may be empty.
  UnicodeString texto;
  /// Whether anything went wrong.
  bool Hubo() const noexcept { return clase != ClaseFalla::Ninguna; }
};

/// What went wrong as the end of a message to the user, in Spanish: "el archivo no existe". The system's own
/// text only for ClaseFalla::Otra.
UTILVEL90_EXPORT UnicodeString Descripcion(const FallaArchivo& falla);

/// Raises EStreamError for a fault, with what could not be done and to which file; does nothing without one.
///
///     ExigeSinFalla(LeeArchivo(ruta, bytes), u"No se puede leer el archivo", ruta);
///     // No se puede leer el archivo "C:\Datos\a.xml": acceso denegado
UTILVEL90_EXPORT void ExigeSinFalla(const FallaArchivo& falla, std::u16string_view que,
                                    std::u16string_view ruta);

/// The whole file, opened for reading with sharing allowed to all. A folder, a device or a pipe is unreadable
/// (AccesoDenegado).
UTILVEL90_EXPORT FallaArchivo LeeArchivo(std::u16string_view ruta, std::string& bytes);

/// The same for callers that do not ask why: nothing when the file cannot be read.
UTILVEL90_EXPORT std::optional<std::string> LeeArchivo(std::u16string_view ruta);

/// True when the path names a file (a folder is none), or a folder.
UTILVEL90_EXPORT bool ExisteArchivo(std::u16string_view ruta);
UTILVEL90_EXPORT bool ExisteCarpeta(std::u16string_view ruta);

/// Creates the folder with all its parents, which outlive a power failure; one that exists is no fault.
UTILVEL90_EXPORT FallaArchivo CreaCarpeta(std::u16string_view ruta);

/// Gives the file new contents in one step: readers, a crash and a power failure at any moment find the old
/// contents or the new ones, whole; once it has returned, the new ones. A temporary file beside it is
/// written, flushed to the disk and renamed over it, and the folder is flushed; its group and permissions are
/// kept (where this user cannot give it its group, the new group gets no more than all users have), and a
/// link's target is replaced, not the link. What is no file (a folder, a device) or protected against writing
/// is AccesoDenegado. On a fault the old file stands and the temporary one is gone; one that a killed process
/// leaves behind goes with the next save in that folder. Only where the disk fails as the folder is flushed,
/// at the very end, the new file stands, and a power failure may still undo it.
///
/// Windows: attributes and the access rights of the file's own are kept, inherited ones come from its folder;
/// a link to nothing is RutaNoExiste. A file cannot be replaced while a program reads it: after ten seconds
/// of that it is EnUso.
UTILVEL90_EXPORT FallaArchivo ReemplazaArchivo(std::u16string_view ruta, std::string_view bytes);

/// The same for contents that were made from the file `modelo`: whether `ruta` is new or not, it takes group
/// and permissions of that file, so that it is no more open than what it was made of.
UTILVEL90_EXPORT FallaArchivo ReemplazaArchivo(std::u16string_view ruta, std::string_view bytes,
                                               std::u16string_view modelo);

/// Copies a file in one step, as ReemplazaArchivo does, with its group and permissions. Without `sobrescribe`
/// an existing destination stays and is no fault, also one that another process makes meanwhile.
UTILVEL90_EXPORT FallaArchivo CopiaArchivo(std::u16string_view origen, std::u16string_view destino,
                                           bool sobrescribe);

/// Adds a line, given with its line break, at the file's end in one write, creating the file when it is
/// missing: what several threads and processes add does not mix. A line that the disk cannot take whole
/// (DiscoLleno) is cut and gets its "\r\n" within the room there is, so that the next one stands alone. It is
/// not flushed: a power failure may take the last lines.
UTILVEL90_EXPORT FallaArchivo AgregaAlFinal(std::u16string_view ruta, std::string_view bytes);

/// Deletes a file; a missing one is no fault.
UTILVEL90_EXPORT FallaArchivo BorraArchivo(std::u16string_view ruta);

/// Opens a file by the runtime's mode flags (see IntentarAbrirArchivo). The handle is the caller's, to be
/// closed with CierraArchivo; -1 on a fault. A file opened exclusively cannot be opened by this function
/// again, nor one that is open be opened exclusively; the other share modes are all one.
UTILVEL90_EXPORT FallaArchivo AbreArchivo(std::u16string_view ruta, unsigned int modo, int& manejador);
UTILVEL90_EXPORT void CierraArchivo(int manejador) noexcept;

/// Keeps other threads and processes that ask for the lock of a file in the same folder out, until it is
/// destroyed. The system lifts the lock of a process that ends in any way. On Windows it is a hidden file in
/// the folder, so whoever asks must have the right to create one there.
/// Threads: one at a time.
class UTILVEL90_EXPORT CandadoArchivo {
 public:
  /// Waits for the lock, at most ten seconds. A folder that cannot be opened, or that another keeps locked,
  /// leaves the object without one; see Falla.
  explicit CandadoArchivo(std::u16string_view ruta);
  CandadoArchivo(const CandadoArchivo&) = delete;
  CandadoArchivo& operator=(const CandadoArchivo&) = delete;
  ~CandadoArchivo();
  /// Why there is no lock; nothing when it is held.
  const FallaArchivo& Falla() const noexcept { return falla_; }

 private:
  struct Candado;
  std::unique_ptr<Candado> candado_;
  FallaArchivo falla_;
};

}  // namespace vel
