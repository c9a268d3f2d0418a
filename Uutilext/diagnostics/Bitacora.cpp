#include "Uutilext/diagnostics/Bitacora.h"

#include <string>
#include <utility>

#include "Uutilext/process/Proceso.h"
#include "Uutilext/time/Reloj.h"
#include "framework/TDateTime.h"
#include "platform/Archivos.h"

namespace vel {
namespace {

UnicodeString RutaBitacora() { return CarpetaBiblioteca().append(u"0010552.log"); }

std::string Linea(TDateTime momento, std::string_view mensaje) {
  const CivilDate f = DecodeDate(momento);
  const CivilTime h = DecodeTime(momento);
  constexpr std::string_view kSello = "00/00/0000 00:00:00 000 - ";
  constexpr std::string_view kFin = "\r\n";
  std::string linea;
  linea.reserve(kSello.size() + mensaje.size() + kFin.size());
  linea.append(kSello).append(mensaje).append(kFin);
  // Each number with the place where its digits end.
  const std::pair<int, std::size_t> numeros[] = {{f.dia, 2},         {f.mes, 5},     {f.anio, 10},
                                                 {h.hora, 13},       {h.minuto, 16}, {h.segundo, 19},
                                                 {h.milisegundo, 23}};
  for (auto [numero, lugar] : numeros) {
    for (; numero > 0; numero /= 10) linea[--lugar] = static_cast<char>('0' + numero % 10);
  }
  return linea;
}

}  // namespace

void logInterAux(std::string_view mensaje) {
  const std::string linea = Linea(AhoraLocal(), mensaje);
  const UnicodeString ruta = RutaBitacora();
  ExigeSinFalla(AgregaAlFinal(ruta, linea), u"No se puede escribir en el archivo", ruta);
}

void Deletelog() {
  const UnicodeString ruta = RutaBitacora();
  ExigeSinFalla(BorraArchivo(ruta), u"No se puede borrar el archivo", ruta);
}

}  // namespace vel
