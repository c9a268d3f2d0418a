#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace pruebas {

/// The calls of the system that this program watches, its own and the library's.
enum class Llamada : std::uint8_t {
  Abre,
  Lee,
  Escribe,
  Vacia,
  Cierra,
  Renombra,
  Enlaza,
  Borra,
  Dueno,
  Permisos,
  Candado,
  Control,
  Estado,
  Acceso,
  Carpeta,
  LeeEnlace,
};

/// A call as it was made, with what it changed.
struct Suceso {
  Llamada llamada;
  std::string ruta;
  /// The new name of Renombra and Enlaza.
  std::string otra;
  /// What Escribe wrote; what stands under the new name of Renombra and Enlaza.
  std::string bytes;
  /// Asked for by Abre, Carpeta and Permisos; of the file that Renombra and Enlaza gave a name.
  unsigned modo;
  bool crea;
  bool hecho;
};

/// The system as this program's calls find it while it is in force: the calls of one thread are counted and
/// kept, and one of them may fail.
struct Sistema {
  bool vigente = false;
  /// The disk itself is waited for when the system is not in force.
  bool disco = true;
  long llamadas = 0;
  /// The call that fails, from 1; 0 for none.
  long falla = 0;
  /// Its errno; 0 for a call that does half of its bytes.
  int error = 0;
  /// Bytes that the disk still takes; -1 for any number.
  long espacio = -1;
  std::vector<Suceso> sucesos;
  /// Added to the clock of the day, in seconds, at each reading; and what the clock shows at first, or 0.
  std::int64_t salto = 0;
  std::int64_t reloj = 0;
};
extern Sistema sistema;

/// The system is in force, from the first call, until the object ends.
class EnVigor {
 public:
  explicit EnVigor(long falla = 0, int error = 0, long espacio = -1);
  EnVigor(const EnVigor&) = delete;
  EnVigor& operator=(const EnVigor&) = delete;
  ~EnVigor();
};

}  // namespace pruebas
