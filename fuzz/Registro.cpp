// Registry files: a written value is read back, what was not named stays, and a file that cannot be changed
// stays whole. The file stands in memory.
#include "platform/Registro.h"

#include <array>
#include <cstdlib>

#include "fuzz/ArchivoEnMemoria.h"
#include "fuzz/Diferencia.h"
#include "fuzz/Entrada.h"
#include "fuzz/Exige.h"
#include "platform/TextoArchivo.h"

namespace {

using fuzz::Exige;
using fuzz::ExigeIgual;
using namespace vel;
using Texto = UnicodeString;

constexpr std::array kClaves = {
    u"SOFTWARE\\Tavex",      u"software\\tavex\\", u"SOFTWARE\\WOW6432Node\\Tavex",
    u"SOFTWARE\\Tavex\\VEL", u"SOFTWARE\\Ñandú",   u"SYSTEM\\X",
    u"SOFTWARE\\A]B"};
constexpr std::array kNombres = {u"TAVEXComunDir", u"", u"a\"b\\", u"ñ", u"x", u"@", u" y ", u"[z]"};

// Both names of a 32-bit key, and its last "\", are the same key.
Texto Propia(std::u16string_view clave) {
  Texto propia = StringReplace(clave, u"WOW6432Node\\", u"");
  while (propia.ends_with(u'\\')) propia.pop_back();
  return propia;
}

std::string Leido(std::u16string_view clave, std::u16string_view nombre) {
  const ValorRegistro valor = LeeRegistro(clave, nombre);
  return (valor.claveExiste ? "key " : "no key ") +
         (valor.texto.has_value() ? UTF8Encode(*valor.texto) : "(none)");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo) {
  static fuzz::ArchivoEnMemoria archivo("registro.reg");
  setenv("UTILVEL_REGISTRO", archivo.Ruta().c_str(), 1);
  fuzz::Entrada entrada(datos, largo);
  const Texto clave = kClaves[entrada.Entero<std::size_t>(0, kClaves.size() - 1)];
  const Texto nombre = kNombres[entrada.Entero<std::size_t>(0, kNombres.size() - 1)];
  const Texto otraClave = kClaves[entrada.Entero<std::size_t>(0, kClaves.size() - 1)];
  const Texto otroNombre = kNombres[entrada.Entero<std::size_t>(0, kNombres.size() - 1)];
  const std::size_t inicio = entrada.Entero<std::size_t>(0, 400);
  const std::size_t cuantos = entrada.Entero<std::size_t>(0, 30);
  const std::string bytes = entrada.Resto();
  const Texto antes = DecodificaArchivo(bytes).texto;
  // The value is a piece of the file; a zero ends a text of the registry.
  Texto valor = antes.substr(std::min(inicio, antes.size()), cuantos);
  std::erase(valor, u'\0');
  archivo.Escribe(bytes);

  const std::string otro = Leido(otraClave, otroNombre);
  if (EscribeRegistro(clave, nombre, valor).Hubo()) {
    ExigeIgual(archivo.Lee(), bytes, "a write that failed has changed the file");
    return 0;
  }
  ExigeIgual(Leido(clave, nombre), "key " + UTF8Encode(valor), "the value read back");
  const bool elMismo = SameText(Propia(clave), Propia(otraClave)) && SameText(nombre, otroNombre);
  const bool suya = otro.starts_with("no key");
  if (!elMismo && !suya) ExigeIgual(Leido(otraClave, otroNombre), otro, "a value that was not named");
  // What was there stays but for one value, whose line may go on behind a "\\".
  const fuzz::Diferencia diferencia(antes, DecodificaArchivo(archivo.Lee()).texto);
  for (std::size_t n = diferencia.inicio; n < diferencia.finAntes; ++n) {
    if (antes[n] == u'\n')
      Exige(TrimRightView(antes.substr(0, n)).ends_with(u'\\'), "more than a value has changed");
  }
  const std::string escrito = archivo.Lee();
  Exige(!EscribeRegistro(clave, nombre, valor).Hubo(), "written again");
  ExigeIgual(archivo.Lee(), escrito, "the same value again");
  return 0;
}
