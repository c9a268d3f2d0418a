// Addresses, keys, masks and lists of any text against their rules, told one after the other.
#include <algorithm>
#include <array>
#include <optional>

#include "Uutilext/text/Claves.h"
#include "Uutilext/text/Correo.h"
#include "Uutilext/text/Direcciones.h"
#include "Uutilext/text/Limpieza.h"
#include "Uutilext/text/Listas.h"
#include "Uutilext/text/Mascaras.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "fuzz/Entrada.h"
#include "fuzz/Exige.h"
#include "platform/Caracteres.h"

namespace {

using fuzz::Exige;
using fuzz::ExigeIgual;
using namespace vel;
using Texto = UnicodeString;

void ExigeDireccion(const Texto& direccion) {
  static const std::array<std::vector<Texto>, 4> claves{
      {{u" # ", u" S/N ", u" NUMERO ", u" NO ", u" NO. ", u" N "},
       {u" INTERIOR ", u" INT. ", u" INT "},
       {u" X ", u" ENTRE ", u" % ", u" POR "},
       {u" Y "}}};
  const Texto mayusculas = Mayusculas(direccion);
  ExigeIgual(mayusculas.size(), direccion.size(), "the length in capitals");
  std::array<std::size_t, 4> inicio{}, fin{};
  for (std::size_t g = 0; g < 4; ++g) {
    inicio[g] = fin[g] = Texto::npos;
    for (const Texto& clave : claves[g]) {
      if (inicio[g] != Texto::npos) break;
      inicio[g] = mayusculas.find(clave);
      fin[g] = inicio[g] + clave.size();
    }
  }
  // Each part runs from behind its keyword to the next keyword that stands after it.
  std::array<Texto, 5> esperado;
  const std::size_t primero = *std::min_element(inicio.begin(), inicio.end());
  esperado[0] = Trim(direccion.substr(0, primero == Texto::npos ? primero : primero + 1));
  for (std::size_t g = 0; g < 4; ++g) {
    if (inicio[g] == Texto::npos) continue;
    std::size_t hasta = direccion.size();
    for (std::size_t otro = 0; otro < 4; ++otro) {
      if (inicio[otro] != Texto::npos && inicio[otro] > inicio[g]) hasta = std::min(hasta, inicio[otro]);
    }
    if (fin[g] < hasta) esperado[g + 1] = Trim(direccion.substr(fin[g], hasta - fin[g]));
  }
  std::array<Texto, 5> partes{u"*", u"*", u"*", u"*", u"*"};
  DividirDireccion(direccion, partes[0], partes[1], partes[2], partes[3], partes[4]);
  for (std::size_t i = 0; i < 5; ++i)
    ExigeIgual(partes[i], esperado[i], "part " + std::to_string(i) + " of an address");
}

void ExigePoblacion(const Texto& texto) {
  std::array<Texto, 4> esperado{u"*", u"*", u"*", u"*"};
  const std::size_t una = texto.find(u',');
  if (una == Texto::npos && !texto.empty()) {
    esperado[0] = texto;
  } else {
    esperado[0] = esperado[1] = texto.substr(0, texto.empty() ? 0 : una);
    Texto resto = texto.empty() ? Texto() : texto.substr(una + 1);
    const std::size_t otra = resto.find(u',');
    if (otra == Texto::npos && !resto.empty()) esperado[2].clear();
    if (otra != Texto::npos) resto.erase(0, otra + 1);
    if (!resto.empty()) esperado[3] = resto;
  }
  std::array<Texto, 4> partes{u"*", u"*", u"*", u"*"};
  DividePoblacion(texto, partes[0], partes[1], partes[2], partes[3]);
  for (std::size_t i = 0; i < 4; ++i)
    ExigeIgual(partes[i], esperado[i], "part " + std::to_string(i) + " of a town");
}

bool SonCorreos(Texto resto) {
  if (resto.empty()) return false;
  while (!resto.empty()) {
    const std::size_t p = resto.find(u';');
    const Texto correo = resto.substr(0, p == Texto::npos ? p : p + 1);
    resto = p == Texto::npos ? Texto() : StringReplace(resto, correo, u"");
    if (std::count(correo.begin(), correo.end(), u'@') != 1 || correo.front() == u'@' ||
        correo.back() == u'@')
      return false;
  }
  return true;
}

void ExigeCorreos(const Texto& texto) {
  bool pasa = true;
  try {
    ValidarCorreo(texto);
  } catch (const EInvalidOperation&) {
    pasa = false;
  }
  ExigeIgual(pasa, SonCorreos(texto), "whether a list of addresses passes");
}

void ExigeLimpieza(const Texto& texto) {
  Texto palabras;
  for (const char16_t c : texto) {
    if (c != u' ' || palabras.empty() || palabras.back() != u' ') palabras += c;
  }
  ExigeIgual(DejaSoloUnEspacioEntrePalabras(texto), Trim(palabras), "one blank between words");
  ExigeIgual(QuitaBlancos(texto), StringReplace(Trim(texto), u" ", u""), "no blanks");
  Texto sat = texto;
  QuitaCaracteresExtraniosSAT(sat);
  Texto limpio = texto;
  std::erase_if(limpio, [](char16_t c) { return Texto(u",-_.:*;").find(c) != Texto::npos; });
  ExigeIgual(sat, limpio, "what the tax authority takes");
  ExigeIgual(MuestraAmpersAnd(texto).size(),
             texto.size() + static_cast<std::size_t>(std::count(texto.begin(), texto.end(), u'&')),
             "ampersands doubled");
  double numero = 0;
  const Texto cifras = DevuelveSoloNumeros(texto);
  if (TryStrToFloat(texto, numero)) ExigeIgual(cifras, texto, "a number");
  ExigeIgual(DevuelveSoloNumeros(cifras), cifras, "digits of digits");
  const Texto letras = RegresaCadAlfaNum(texto);
  ExigeIgual(RegresaCadAlfaNum(letras), letras, "letters of letters");
}

bool EsCifra(char16_t c) { return c >= u'0' && c <= u'9'; }

Texto SinCifras(const Texto& texto) {
  Texto parte = Trim(texto);
  while (!parte.empty() && EsCifra(parte.back())) parte.pop_back();
  return parte;
}

Texto ALaDerecha(const Texto& texto, std::size_t ancho) {
  if (texto.empty()) return texto;
  return texto.size() < ancho ? Texto(ancho - texto.size(), u' ') + texto : texto.substr(0, ancho);
}

Texto Clave(const Texto& texto, std::size_t ancho) {
  if (texto.empty()) return texto;
  return SinCifras(texto).empty() ? ALaDerecha(texto, ancho) : Trim(texto);
}

void ExigeClaves(const Texto& texto, const Texto& nuevo, int ancho) {
  ExigeIgual(FormateaValor(texto, ancho), ALaDerecha(texto, static_cast<std::size_t>(ancho)),
             "a value to the right");
  ExigeIgual(FormateaValorCve(texto, ancho), Clave(texto, static_cast<std::size_t>(ancho)), "a key");
  ExigeIgual(DameParteAlfanumerica(texto), SinCifras(texto), "what stands before the digits");
  Texto cifras(TrimRightView(texto));
  cifras = cifras.substr(static_cast<std::size_t>(
      std::find_if_not(cifras.rbegin(), cifras.rend(), EsCifra).base() - cifras.begin()));
  std::int32_t numero = 0;
  if (!cifras.empty() && (cifras.size() > 10 || !TryStrToInt(cifras, numero))) numero = -1;
  ExigeIgual(static_cast<int>(DameParteNumerica(texto)), static_cast<int>(numero), "the digits at the end");
  const Texto recortada = Trim(texto);
  const bool derecha = TryStrToInt(recortada, numero) && recortada.front() != u'0';
  ExigeIgual(FormateaCveDocto(texto), derecha ? ALaDerecha(recortada, 10) : recortada, "a document's key");

  Texto folio = SinCifras(texto);
  const std::size_t digitos = texto.size() - folio.size();
  const bool conCeros = digitos > nuevo.size() && digitos >= 1 && texto[folio.size()] == u'0';
  if (conCeros) folio.append(digitos - nuevo.size(), u'0');
  folio += nuevo;
  std::optional<Texto> obtenido;
  try {
    obtenido = FormateaFolioCxCP(texto, nuevo);
  } catch (const Exception&) {
  }
  ExigeIgual(obtenido.value_or(u"(none)"), folio.size() > 9 ? u"(none)" : Clave(folio, 9), "the next folio");
}

void ExigeMascaras(const Texto& mascara, const Texto& valor) {
  Texto m = mascara;
  while (m.ends_with(u'?')) m.pop_back();
  bool vale = m.size() <= valor.size();
  for (std::size_t i = 0; vale && i < m.size(); ++i) vale = m[i] == u'?' || m[i] == valor[i];
  ExigeIgual(p_mascarilla(mascara, valor), vale, "whether a value is of a mask");
  ExigeIgual(EsSerieValida(valor), valor.find_first_of(u"\\/:*?\"<>|") == Texto::npos,
             "whether a series is valid");
  const auto quedan =
      std::count_if(valor.begin(), valor.end(), [](char16_t c) { return c != u' ' && c != u'-'; });
  ExigeIgual(DameTipoContribuyente(valor), quedan >= 13, "whether a person is natural");
}

void ExigeFormatoMiles(int enteros, int decimales) {
  Texto mascara;
  for (int i = enteros; i > 0; --i) {
    mascara += i == 1 ? u'0' : u'#';
    if (i > 1 && i % 3 == 1) mascara += u',';
  }
  if (mascara.empty()) mascara = u"0";
  mascara += u'.' + Texto(static_cast<std::size_t>(decimales), u'0');
  ExigeIgual(FormatoMiles(enteros, decimales), mascara, "the mask of an amount");
}

void ExigeListas(Texto destino, Texto origen, int limite) {
  Texto d = destino, o = origen;
  while (d < IntToStr(limite) && !o.empty()) {
    const std::size_t coma = std::min(o.find(u','), o.size());
    if (d.size() + coma > static_cast<std::size_t>(std::max(limite, 0))) break;
    d += (d.empty() ? u"" : u",") + o.substr(0, coma);
    o.erase(0, coma + 1);
  }
  DivideCadena(destino, origen, limite);
  ExigeIgual(destino, d, "the items moved");
  ExigeIgual(origen, o, "the items left");
  int veces = 0;
  for (std::size_t i = 0; !d.empty() && (i = o.find(d, i)) != Texto::npos; i += d.size()) ++veces;
  ExigeIgual(CuentaVecesStr(d, o), veces, "how often a text occurs");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo) {
  fuzz::Entrada entrada(datos, largo);
  const int ancho = entrada.Entero(0, 20);
  const int limite = entrada.Entero(0, 300);
  const Texto otro = entrada.Texto(24);
  const Texto texto = fuzz::Entrada::ATexto(entrada.Resto());
  ExigeDireccion(texto);
  ExigePoblacion(texto);
  ExigeCorreos(texto);
  ExigeLimpieza(texto);
  ExigeClaves(texto, otro, ancho);
  ExigeClaves(otro, texto, ancho);
  ExigeMascaras(otro, texto);
  ExigeFormatoMiles(ancho, limite % 8);
  ExigeListas(otro, texto, limite);
  return 0;
}
