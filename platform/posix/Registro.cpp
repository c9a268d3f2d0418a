#include "platform/Registro.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "platform/Archivos.h"
#include "platform/TextoArchivo.h"

namespace vel {
namespace {

constexpr std::u16string_view kEncabezado = u"Windows Registry Editor Version 5.00";
constexpr std::u16string_view kRaiz = u"HKEY_LOCAL_MACHINE\\";
constexpr std::u16string_view kSoftware = u"SOFTWARE\\";
constexpr std::u16string_view kNodo32 = u"WOW6432Node\\";

UnicodeString RutaRegistro() {
  const char* const propia = std::getenv("UTILVEL_REGISTRO");
  return UTF8ToString(propia != nullptr && *propia != '\0' ? propia : "/etc/tavex/registro.reg");
}

int CifraHexadecimal(char16_t c) noexcept {
  const char16_t d = FoldCase(c);
  return d >= u'0' && d <= u'9' ? d - u'0' : d >= u'a' && d <= u'f' ? d - u'a' + 10 : -1;
}

// True for a line that goes on with the bytes of a value: pairs of hexadecimal digits, with commas and blanks
// around them and a "\" at its end where more follows.
bool ContinuaValor(std::u16string_view linea) noexcept {
  linea = TrimView(linea);
  if (!linea.empty() && linea.back() == u'\\') linea.remove_suffix(1);
  bool hayBytes = false;
  for (std::size_t i = 0; i < linea.size(); ++i) {
    if (linea[i] == u',' || linea[i] == u' ' || linea[i] == u'\t') continue;
    if (i + 1 == linea.size() || CifraHexadecimal(linea[i]) < 0 || CifraHexadecimal(linea[i + 1]) < 0) {
      return false;
    }
    hayBytes = true;
    ++i;
  }
  return hayBytes;
}

/// A logical line of the file, from `inicio` to `fin` of its text: a value that ends in "\" goes on in the
/// next line where that holds bytes; a value that was cut does not take the line of another with it.
struct Linea {
  std::size_t inicio;
  std::size_t fin;
  /// Where the next line begins.
  std::size_t siguiente;
};

Linea LineaEn(std::u16string_view texto, std::size_t inicio) {
  const auto fisica = [texto](std::size_t desde) -> Linea {
    const std::size_t salto = std::min(texto.find(u'\n', desde), texto.size());
    return {desde, desde + TrimRightView(texto.substr(desde, salto - desde)).size(),
            std::min(salto + 1, texto.size())};
  };
  Linea linea = fisica(inicio);
  const std::u16string_view contenido = TrimLeftView(texto.substr(inicio, linea.fin - inicio));
  if (contenido.empty() || contenido.front() == u'[' || contenido.front() == u';') return linea;
  while (texto[linea.fin - 1] == u'\\') {
    const Linea otra = fisica(linea.siguiente);
    if (!ContinuaValor(texto.substr(otra.inicio, otra.fin - otra.inicio))) break;
    linea.fin = otra.fin;
    linea.siguiente = otra.siguiente;
  }
  return linea;
}

UnicodeString ClaveCompleta(std::u16string_view clave, bool nodo32) {
  while (!clave.empty() && clave.back() == u'\\') clave.remove_suffix(1);
  if (!SameText(clave.substr(0, kSoftware.size()), kSoftware)) return UnicodeString(kRaiz).append(clave);
  clave.remove_prefix(kSoftware.size());
  if (SameText(clave.substr(0, kNodo32.size()), kNodo32)) clave.remove_prefix(kNodo32.size());
  UnicodeString completa(kRaiz);
  completa.append(kSoftware).append(nodo32 ? kNodo32 : std::u16string_view()).append(clave);
  return completa;
}

/// The lines between a key's own line and the next key's.
struct Tramo {
  std::size_t inicio;
  std::size_t fin;
};

/// A key as the file has it: it may stand in several places, or only in the names of keys within it.
struct Clave {
  bool existe = false;
  std::vector<Tramo> tramos;
};

Clave BuscaClave(std::u16string_view texto, const UnicodeString& nombre) {
  Clave clave;
  bool dentro = false;
  for (std::size_t i = 0; i < texto.size();) {
    const Linea linea = LineaEn(texto, i);
    const std::u16string_view contenido = TrimView(texto.substr(linea.inicio, linea.fin - linea.inicio));
    if (!contenido.empty() && contenido.front() == u'[') {
      const std::u16string_view leido = contenido.substr(1, contenido.rfind(u']') - 1);
      dentro = SameText(leido, nombre);
      if (dentro) clave.tramos.push_back({linea.siguiente, linea.siguiente});
      const bool hija = leido.size() > nombre.size() && leido[nombre.size()] == u'\\' &&
                        SameText(leido.substr(0, nombre.size()), nombre);
      clave.existe = clave.existe || dentro || hija;
    } else if (dentro && !contenido.empty()) {
      clave.tramos.back().fin = linea.siguiente;
    }
    i = linea.siguiente;
  }
  return clave;
}

// Reads a quoted text in which "\" escapes, and moves past it.
bool LeeCadena(std::u16string_view& texto, UnicodeString& cadena) {
  if (texto.empty() || texto.front() != u'"') return false;
  cadena.clear();
  for (std::size_t i = 1; i < texto.size(); ++i) {
    if (texto[i] == u'"') {
      texto.remove_prefix(i + 1);
      return true;
    }
    if (texto[i] == u'\\' && i + 1 < texto.size()) ++i;
    cadena.push_back(texto[i]);
  }
  return false;
}

UnicodeString Cadena(std::u16string_view texto) {
  return u"\"" + StringReplace(StringReplace(texto, u"\\", u"\\\\"), u"\"", u"\\\"") + u"\"";
}

// A text as a value: in quotes or, when it has line breaks, as the bytes of its UTF-16LE code units.
UnicodeString Dato(std::u16string_view texto) {
  if (texto.find_first_of(u"\r\n") == std::u16string_view::npos) return Cadena(texto);
  constexpr std::u16string_view kCifras = u"0123456789abcdef";
  UnicodeString dato = u"hex(1):";
  for (const char16_t c : texto) {
    for (const int desplazamiento : {4, 0, 12, 8}) {
      dato += kCifras[static_cast<std::size_t>(c >> desplazamiento & 0xF)];
      if (desplazamiento == 0 || desplazamiento == 8) dato += u',';
    }
  }
  return dato + u"00,00";
}

// "hex(2):" and "hex(1):" hold a text as the bytes of its UTF-16LE code units.
std::optional<UnicodeString> LeeHexadecimal(std::u16string_view valor) {
  constexpr std::size_t kPrefijo = 7;
  const std::u16string_view prefijo = valor.substr(0, kPrefijo);
  if (!SameText(prefijo, u"hex(2):") && !SameText(prefijo, u"hex(1):")) return std::nullopt;
  std::string bytes;
  int pendiente = -1;
  for (const char16_t c : valor.substr(kPrefijo)) {
    const int cifra = CifraHexadecimal(c);
    if (cifra < 0) continue;
    if (pendiente < 0) {
      pendiente = cifra;
    } else {
      bytes.push_back(static_cast<char>(static_cast<unsigned char>(pendiente * 16 + cifra)));
      pendiente = -1;
    }
  }
  const UnicodeString texto = DecodificaArchivo("\xFF\xFE" + bytes).texto;
  return texto.substr(0, texto.find(u'\0'));
}

/// The value's place in a key: the whole line, and what stands after "=".
struct Hallazgo {
  Linea linea;
  UnicodeString valor;
};

std::optional<Hallazgo> BuscaEnTramo(std::u16string_view texto, const Tramo& tramo,
                                     std::u16string_view nombre) {
  for (std::size_t i = tramo.inicio; i < tramo.fin;) {
    const Linea linea = LineaEn(texto, i);
    std::u16string_view contenido = TrimLeftView(texto.substr(linea.inicio, linea.fin - linea.inicio));
    UnicodeString leido;
    const bool predeterminado = !contenido.empty() && contenido.front() == u'@';
    if (predeterminado) contenido.remove_prefix(1);
    if ((predeterminado || LeeCadena(contenido, leido)) && SameText(leido, nombre)) {
      contenido = TrimLeftView(contenido);
      if (!contenido.empty() && contenido.front() == u'=') {
        return Hallazgo{linea, UnicodeString(TrimLeftView(contenido.substr(1)))};
      }
    }
    i = linea.siguiente;
  }
  return std::nullopt;
}

std::optional<Hallazgo> BuscaValor(std::u16string_view texto, const Clave& clave,
                                   std::u16string_view nombre) {
  for (const Tramo& tramo : clave.tramos) {
    if (std::optional<Hallazgo> hallazgo = BuscaEnTramo(texto, tramo, nombre)) return hallazgo;
  }
  return std::nullopt;
}

}  // namespace

ValorRegistro LeeRegistro(std::u16string_view clave, std::u16string_view nombre, FallaArchivo& falla) {
  ValorRegistro leido;
  std::string bytes;
  falla = LeeArchivo(RutaRegistro(), bytes);
  if (falla.clase == ClaseFalla::NoExiste || falla.clase == ClaseFalla::RutaNoExiste) falla = {};
  const UnicodeString registro = DecodificaArchivo(bytes).texto;
  for (const bool nodo32 : {true, false}) {
    const Clave encontrada = BuscaClave(registro, ClaveCompleta(clave, nodo32));
    if (!encontrada.existe) continue;
    leido.claveExiste = true;
    if (const std::optional<Hallazgo> hallazgo = BuscaValor(registro, encontrada, nombre)) {
      std::u16string_view valor = hallazgo->valor;
      UnicodeString cadena;
      leido.texto = LeeCadena(valor, cadena) ? std::optional(cadena) : LeeHexadecimal(hallazgo->valor);
    }
    break;
  }
  return leido;
}

FallaArchivo EscribeRegistro(std::u16string_view clave, std::u16string_view nombre,
                             std::u16string_view texto) {
  const UnicodeString ruta = RutaRegistro();
  const std::size_t diagonal = ruta.rfind(u'/');
  if (diagonal != UnicodeString::npos) {
    FallaArchivo falla = CreaCarpeta(ruta.substr(0, diagonal));
    if (falla.Hubo()) return falla;
  }
  const CandadoArchivo candado(ruta);
  if (candado.Falla().Hubo()) return candado.Falla();
  std::string bytes;
  FallaArchivo lectura = LeeArchivo(ruta, bytes);
  if (lectura.Hubo() && lectura.clase != ClaseFalla::NoExiste) return lectura;
  // A new file is UTF-16, as the registry's own exports.
  TextoArchivo d = DecodificaArchivo(lectura.Hubo() ? "\xFF\xFE" : bytes);
  if (!lectura.Hubo() && !SeReescribeIgual(bytes, d)) {
    return {ClaseFalla::Otra, u"el archivo del registro está dañado"};
  }
  // An ASCII file gets its first accents as an editor of this system would write them.
  if (!lectura.Hubo() && IsASCII(bytes)) d.codificacion = Codificacion::Utf8;
  if (d.texto.empty()) d.texto = UnicodeString(kEncabezado) + u"\r\n";

  UnicodeString completa = ClaveCompleta(clave, true);
  Clave encontrada = BuscaClave(d.texto, completa);
  if (!encontrada.existe) {
    completa = ClaveCompleta(clave, false);
    encontrada = BuscaClave(d.texto, completa);
  }
  const UnicodeString linea = (nombre.empty() ? u"@" : Cadena(nombre)) + u"=" + Dato(texto);
  if (encontrada.tramos.empty()) {
    if (d.texto.back() != u'\n') d.texto += u"\r\n";
    d.texto.append(u"\r\n[").append(completa).append(u"]\r\n").append(linea).append(u"\r\n");
  } else if (const std::optional<Hallazgo> hallazgo = BuscaValor(d.texto, encontrada, nombre)) {
    d.texto.replace(hallazgo->linea.inicio, hallazgo->linea.fin - hallazgo->linea.inicio, linea);
  } else {
    const std::size_t fin = encontrada.tramos.front().fin;
    const bool sinSalto = fin > 0 && d.texto[fin - 1] != u'\n';
    d.texto.insert(fin, (sinSalto ? u"\r\n" : u"") + linea + u"\r\n");
  }
  return ReemplazaArchivo(ruta, CodificaArchivo(d));
}

}  // namespace vel
