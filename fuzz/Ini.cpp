// INI files of any bytes under a row of edits: a value is read back, whatever an edit does not name stays to
// the letter, and the look-up in bytes gives what the text gives.
#include <optional>
#include <utility>
#include <vector>

#include "Uutilext/config/BytesIni.h"
#include "framework/Excepciones.h"
#include "framework/TextoIni.h"
#include "fuzz/Diferencia.h"
#include "fuzz/Entrada.h"
#include "fuzz/Exige.h"
#include "platform/TextoArchivo.h"

namespace {

using fuzz::Exige;
using fuzz::ExigeIgual;
using namespace vel;
using Texto = UnicodeString;

// A key's line by a plain reading from the first line to the last: where what follows its "=" stands.
struct Renglon {
  Texto seccion, clave, valor;
  std::size_t trasIgual = 0, fin = 0;
  bool EsDe(std::u16string_view s, std::u16string_view c) const {
    return SameText(seccion, TrimView(s)) && SameText(clave, TrimView(c));
  }
};

std::vector<Renglon> Renglones(const Texto& texto) {
  std::vector<Renglon> renglones;
  std::optional<Texto> seccion;
  for (std::size_t i = 0; i < texto.size();) {
    const std::size_t fin = std::min(texto.find_first_of(u"\r\n", i), texto.size());
    const Texto linea = Trim(std::u16string_view(texto).substr(i, fin - i));
    const std::size_t cierra = linea.find(u']');
    if (linea.starts_with(u'[') && cierra != Texto::npos &&
        (linea.ends_with(u']') ||
         TrimView(std::u16string_view(linea).substr(cierra + 1)).starts_with(u';'))) {
      const bool comentario = TrimView(std::u16string_view(linea).substr(cierra + 1)).starts_with(u';');
      seccion = Trim(linea.substr(1, (comentario ? cierra : linea.size() - 1) - 1));
    } else if (seccion.has_value() && !linea.starts_with(u';') && linea.find(u'=') != Texto::npos) {
      const std::size_t igual = linea.find(u'=');
      renglones.push_back({*seccion, Trim(linea.substr(0, igual)), Trim(linea.substr(igual + 1)),
                           texto.find(u'=', i) + 1, fin});
    }
    i = fin + 1;
  }
  return renglones;
}

const Renglon* Busca(const std::vector<Renglon>& renglones, const Texto& seccion, const Texto& clave) {
  for (const Renglon& r : renglones) {
    if (r.EsDe(seccion, clave)) return &r;
  }
  return nullptr;
}

// A name or value: a usual one, or a piece of the file.
Texto Pieza(fuzz::Entrada& entrada, const Texto& texto) {
  if (entrada.Moneda()) {
    return entrada.De<const char16_t*>({u"A", u"b", u" B ", u"Ñandú", u"€", u"", u"x=1", u"[A", u"A]", u";A",
                                        u"1", u"\"a b\"", u"  x ", u"a\nb", u"\u00A0", u"Ω"});
  }
  const std::size_t inicio = entrada.Entero<std::size_t>(0, texto.size());
  return texto.substr(inicio, entrada.Entero<std::size_t>(0, 12));
}

void ExigeOtrosIguales(const std::vector<Renglon>& antes, const TextoIni& ini, const Texto& seccion,
                       const Texto& clave) {
  for (const Renglon& r : antes) {
    const Renglon* const primero = Busca(antes, r.seccion, r.clave);
    if (r.EsDe(seccion, clave)) continue;
    ExigeIgual(Texto(ini.Valor(r.seccion, r.clave).value_or(u"(none)")), primero->valor,
               "a value that was not named");
  }
}

// Sets a value; false for one that is refused.
bool Pon(TextoIni& ini, const Texto& seccion, const Texto& clave, const Texto& valor) {
  const Texto antes = ini.Texto();
  const std::vector<Renglon> renglones = Renglones(antes);
  const Renglon* const suyo = Busca(renglones, seccion, clave);
  ExigeIgual(Texto(ini.Valor(seccion, clave).value_or(u"(none)")), suyo != nullptr ? suyo->valor : u"(none)",
             "a value as it stands");
  try {
    ini.Pon(seccion, clave, valor);
  } catch (const EInvalidOperation&) {
    ExigeIgual(ini.Texto(), antes, "a refused change has changed the text");
    return false;
  }
  ExigeIgual(Texto(ini.Valor(seccion, clave).value_or(u"(none)")), Trim(valor), "the value read back");
  const fuzz::Diferencia diferencia(antes, ini.Texto());
  if (suyo == nullptr) {
    ExigeIgual(diferencia.inicio, diferencia.finAntes, "a new key has taken the place of something");
  } else if (antes != ini.Texto()) {
    Exige(diferencia.inicio >= suyo->trasIgual && diferencia.finAntes <= suyo->fin,
          "more than a value has changed");
  }
  ExigeOtrosIguales(renglones, ini, seccion, clave);
  return true;
}

void Borra(TextoIni& ini, const Texto& seccion) {
  std::vector<Renglon> quedan = Renglones(ini.Texto());
  std::erase_if(quedan, [&](const Renglon& r) { return SameText(r.seccion, TrimView(seccion)); });
  try {
    ini.Borra(seccion);
  } catch (const EInvalidOperation&) {
    return Exige(seccion.find_first_of(u"\r\n]") != Texto::npos || seccion.find(u'\0') != Texto::npos,
                 "a section that may stand in a file is not erased");
  }
  Exige(ini.Seccion(seccion).empty(), "an erased section has keys");
  const std::vector<Renglon> hay = Renglones(ini.Texto());
  ExigeIgual(hay.size(), quedan.size(), "keys after a section was erased");
  for (std::size_t i = 0; i < hay.size(); ++i) {
    Exige(hay[i].seccion == quedan[i].seccion && hay[i].clave == quedan[i].clave &&
              hay[i].valor == quedan[i].valor,
          "a key after a section was erased");
  }
}

// What BytesIni makes of an edit, unless it leaves that to the text.
void ComparaBytes(const std::string& bytes, const TextoArchivo& leido, const Texto& seccion,
                  const Texto& clave, const Texto& valor) {
  const BytesIni enBytes(bytes);
  TextoIni enTexto(leido.texto);
  const auto esperado = enTexto.Valor(seccion, clave);
  const auto obtenido = enBytes.Valor(seccion, clave);
  ExigeIgual(obtenido.value_or(u"(none)"), Texto(esperado.value_or(u"(none)")), "a value looked up in bytes");
  std::optional<std::string> cambiado;
  try {
    cambiado = enBytes.ConValor(seccion, clave, valor);
  } catch (const EInvalidOperation&) {
    return Exige(!Pon(enTexto, seccion, clave, valor), "bytes refuse what the text takes");
  }
  if (!cambiado.has_value()) return;
  Exige(Pon(enTexto, seccion, clave, valor), "bytes take what the text refuses");
  ExigeIgual(*cambiado, CodificaArchivo({enTexto.Texto(), leido.codificacion, leido.resto}),
             "a change in bytes");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo) {
  fuzz::Entrada entrada(datos, largo);
  const int cambios = entrada.Entero(1, 4);
  // The edits come from the end of the input, which a file's own bytes rarely fill.
  const std::string numeros = entrada.Cola(40);
  fuzz::Entrada ediciones(reinterpret_cast<const std::uint8_t*>(numeros.data()), numeros.size());
  const std::string bytes = entrada.Resto();
  const TextoArchivo leido = DecodificaArchivo(bytes);
  if (SeReescribeIgual(bytes, leido)) ExigeIgual(CodificaArchivo(leido), bytes, "a file written back");
  TextoIni ini(leido.texto);
  for (int i = 0; i < cambios; ++i) {
    Texto seccion = Pieza(ediciones, leido.texto);
    Texto clave = Pieza(ediciones, leido.texto);
    // More often than not a key that is there.
    const std::vector<Renglon> renglones = Renglones(leido.texto);
    if (ediciones.Entero(0, 3) != 3 && !renglones.empty()) {
      const Renglon& suyo = renglones[ediciones.Entero<std::size_t>(0, renglones.size() - 1)];
      seccion = suyo.seccion;
      clave = suyo.clave;
    }
    const Texto valor = Pieza(ediciones, leido.texto);
    if (i == 0) ComparaBytes(bytes, leido, seccion, clave, valor);
    if (ediciones.Entero(0, 7) == 0) {
      Borra(ini, seccion);
    } else {
      Pon(ini, seccion, clave, valor);
    }
  }
  ExigeIgual(DecodificaArchivo(CodificaArchivo({ini.Texto(), leido.codificacion, {}})).texto, ini.Texto(),
             "the text of the file");
  return 0;
}
