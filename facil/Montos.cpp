#include "facil/Montos.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel::facil {

namespace {

constexpr int kDecimalesMaximos = 18;
constexpr int kDecimalesLetra = 2;
// Whole digits beside which a double holds its cents.
constexpr std::size_t kEnterasMaximas = 13;

/// A decimal number: its digits without point, the last `decimales` of them behind it.
struct Decimal {
  bool negativo;
  std::string cifras;
  std::size_t decimales;

  std::string_view Enteros() const { return std::string_view(cifras).substr(0, cifras.size() - decimales); }
  std::string_view Fraccion() const { return std::string_view(cifras).substr(cifras.size() - decimales); }
};

void SumaUno(std::string& cifras) {
  for (std::size_t i = cifras.size(); i > 0; --i) {
    if (++cifras[i - 1] <= '9') return;
    cifras[i - 1] = '0';
  }
  cifras.insert(cifras.begin(), '1');
}

/// A text of FloatToChars or TMontoFiscal, rounded half away from zero.
Decimal Redondeado(std::string_view texto, int decimales) {
  if (decimales < 0 || decimales > kDecimalesMaximos) {
    throw EInvalidOperation(u"Los decimales de un monto van de 0 a 18, no " + IntToStr(decimales));
  }
  Decimal d{texto.starts_with('-'), {}, static_cast<std::size_t>(decimales)};
  if (d.negativo) texto.remove_prefix(1);
  int exponente = 0;
  if (const std::size_t e = texto.find('E'); e != std::string_view::npos) {
    std::from_chars(texto.data() + e + 1, texto.data() + texto.size(), exponente);
    texto = texto.substr(0, e);
  }
  const std::size_t punto = texto.find('.');
  d.cifras = texto.substr(0, punto);
  auto enteras = static_cast<std::ptrdiff_t>(d.cifras.size()) + exponente;
  if (punto != std::string_view::npos) d.cifras += texto.substr(punto + 1);
  if (enteras < 1) {
    d.cifras.insert(0, static_cast<std::size_t>(1 - enteras), '0');
    enteras = 1;
  }
  const std::size_t fin = static_cast<std::size_t>(enteras) + d.decimales;
  const bool sube = d.cifras.size() > fin && d.cifras[fin] >= '5';
  d.cifras.resize(fin, '0');
  if (sube) SumaUno(d.cifras);
  if (d.cifras.find_first_not_of('0') == std::string::npos) d.negativo = false;
  return d;
}

Decimal Redondeado(double valor, int decimales) {
  if (!std::isfinite(valor)) throw EInvalidOperation(u"El monto no es un número finito");
  std::array<char, kMaxFloatText> texto{};
  return Redondeado(std::string_view(texto.data(), FloatToChars(valor, texto)), decimales);
}

Decimal Redondeado(const TMontoFiscal& monto, int decimales) {
  return Redondeado(UTF8Encode(monto.Texto()), decimales);
}

UnicodeString ConComas(const Decimal& d) {
  const std::string_view enteros = d.Enteros();
  UnicodeString texto(d.negativo ? u"-" : u"");
  for (std::size_t i = 0; i < enteros.size(); ++i) {
    if (i > 0 && (enteros.size() - i) % 3 == 0) texto += u',';
    texto += static_cast<char16_t>(enteros[i]);
  }
  if (d.decimales > 0) texto += u'.';
  for (const char c : d.Fraccion()) texto += static_cast<char16_t>(c);
  return texto;
}

constexpr std::array<std::u16string_view, 30> kHasta29{u"",
                                                       u"UN",
                                                       u"DOS",
                                                       u"TRES",
                                                       u"CUATRO",
                                                       u"CINCO",
                                                       u"SEIS",
                                                       u"SIETE",
                                                       u"OCHO",
                                                       u"NUEVE",
                                                       u"DIEZ",
                                                       u"ONCE",
                                                       u"DOCE",
                                                       u"TRECE",
                                                       u"CATORCE",
                                                       u"QUINCE",
                                                       u"DIECISÉIS",
                                                       u"DIECISIETE",
                                                       u"DIECIOCHO",
                                                       u"DIECINUEVE",
                                                       u"VEINTE",
                                                       u"VEINTIÚN",
                                                       u"VEINTIDÓS",
                                                       u"VEINTITRÉS",
                                                       u"VEINTICUATRO",
                                                       u"VEINTICINCO",
                                                       u"VEINTISÉIS",
                                                       u"VEINTISIETE",
                                                       u"VEINTIOCHO",
                                                       u"VEINTINUEVE"};
constexpr std::array<std::u16string_view, 10> kDecenas{
    u"", u"", u"", u"TREINTA", u"CUARENTA", u"CINCUENTA", u"SESENTA", u"SETENTA", u"OCHENTA", u"NOVENTA"};
// Before their ending, "OS" or "AS".
constexpr std::array<std::u16string_view, 10> kCentenas{
    u"",         u"",          u"DOSCIENT",  u"TRESCIENT", u"CUATROCIENT",
    u"QUINIENT", u"SEISCIENT", u"SETECIENT", u"OCHOCIENT", u"NOVECIENT"};

void Agrega(UnicodeString& texto, std::u16string_view palabra) {
  if (!texto.empty()) texto += u' ';
  texto += palabra;
}

/// Gender that a group of three digits agrees with: before "MIL" its hundreds do, its "UN" does not.
enum class Genero : std::uint8_t { MASCULINO, FEMENINO, FEMENINO_MIL };

void AgregaGrupo(UnicodeString& texto, std::size_t n, Genero genero) {
  const std::size_t centenas = n / 100;
  const std::size_t resto = n % 100;
  if (centenas == 1) {
    Agrega(texto, resto == 0 ? u"CIEN" : u"CIENTO");
  } else if (centenas > 1) {
    Agrega(texto, kCentenas[centenas]);
    texto += genero == Genero::MASCULINO ? u"OS" : u"AS";
  }
  const bool una = genero == Genero::FEMENINO;
  const auto hasta29 = [una](std::size_t k) {
    return una && k == 1 ? u"UNA" : una && k == 21 ? u"VEINTIUNA" : kHasta29[k];
  };
  if (resto == 0) return;
  if (resto < kHasta29.size()) return Agrega(texto, hasta29(resto));
  Agrega(texto, kDecenas[resto / 10]);
  if (resto % 10 == 0) return;
  Agrega(texto, u"Y");
  Agrega(texto, hasta29(resto % 10));
}

/// A number below a million; nothing for 0.
void AgregaMiles(UnicodeString& texto, std::size_t n, bool femenino) {
  if (n >= 1000) {
    AgregaGrupo(texto, n / 1000, femenino ? Genero::FEMENINO_MIL : Genero::MASCULINO);
    Agrega(texto, u"MIL");
  }
  AgregaGrupo(texto, n % 1000, femenino ? Genero::FEMENINO : Genero::MASCULINO);
}

UnicodeString EnLetra(const Decimal& d, const Moneda& moneda) {
  const std::string_view enteros = d.Enteros();
  if (enteros.size() > kEnterasMaximas) {
    throw EInvalidOperation(u"El monto " + ConComas(d) +
                            u" no se escribe con letra: pasa de 9,999,999,999,999.99");
  }
  constexpr std::uint64_t kMillon = 1'000'000;
  const auto menorAlMillon = [](std::uint64_t cuantos) {
    return static_cast<std::size_t>(cuantos % kMillon);
  };
  std::uint64_t n = 0;
  std::from_chars(enteros.data(), enteros.data() + enteros.size(), n);
  UnicodeString texto(d.negativo ? u"MENOS" : u"");
  const std::array<std::pair<std::size_t, std::array<std::u16string_view, 2>>, 2> millones{
      {{menorAlMillon(n / kMillon / kMillon), {u"BILLÓN", u"BILLONES"}},
       {menorAlMillon(n / kMillon), {u"MILLÓN", u"MILLONES"}}}};
  for (const auto& [cuantos, nombres] : millones) {
    if (cuantos == 0) continue;
    AgregaMiles(texto, cuantos, false);
    Agrega(texto, nombres[cuantos == 1 ? 0 : 1]);
  }
  AgregaMiles(texto, menorAlMillon(n), moneda.Femenina);
  if (n == 0) Agrega(texto, u"CERO");
  if (n != 0 && n % kMillon == 0) Agrega(texto, u"DE");
  Agrega(texto, n == 1 ? moneda.Singular : moneda.Plural);
  Agrega(texto, UTF8ToString(d.Fraccion()));
  texto += u"/100";
  if (!moneda.Sufijo.empty()) Agrega(texto, moneda.Sufijo);
  return texto;
}

}  // namespace

Moneda::Moneda() : Moneda(u"PESO", u"PESOS", u"M.N.") {}

Moneda::Moneda(const Texto& singular, const Texto& plural, const Texto& sufijo, bool femenina)
    : Singular(singular.Vista()), Plural(plural.Vista()), Sufijo(sufijo.Vista()), Femenina(femenina) {}

UnicodeString FormateaMonto(double valor, int decimales) { return ConComas(Redondeado(valor, decimales)); }

UnicodeString FormateaMonto(const TMontoFiscal& monto) { return FormateaMonto(monto, monto.Decimales); }

UnicodeString FormateaMonto(const TMontoFiscal& monto, int decimales) {
  return ConComas(Redondeado(monto, decimales));
}

Moneda DameMoneda(const Texto& clave) {
  const std::u16string_view c = clave.Vista();
  if (c == u"MXN") return {};
  struct Palabras {
    std::u16string_view clave, singular, plural;
    bool femenina;
  };
  constexpr std::array<Palabras, 6> kMonedas{{{u"USD", u"DÓLAR", u"DÓLARES", false},
                                              {u"EUR", u"EURO", u"EUROS", false},
                                              {u"CAD", u"DÓLAR CANADIENSE", u"DÓLARES CANADIENSES", false},
                                              {u"GBP", u"LIBRA ESTERLINA", u"LIBRAS ESTERLINAS", true},
                                              {u"JPY", u"YEN", u"YENES", false},
                                              {u"CHF", u"FRANCO SUIZO", u"FRANCOS SUIZOS", false}}};
  for (const Palabras& m : kMonedas) {
    if (m.clave == c) return {m.singular, m.plural, m.clave, m.femenina};
  }
  throw EInvalidOperation(u"No se conocen las palabras de la moneda '" + UnicodeString(c) +
                          u"': indique su singular, su plural y lo que sigue a los centavos");
}

UnicodeString MontoEnLetra(double valor, const Moneda& moneda) {
  return EnLetra(Redondeado(valor, kDecimalesLetra), moneda);
}

UnicodeString MontoEnLetra(const TMontoFiscal& monto, const Moneda& moneda) {
  return EnLetra(Redondeado(monto, kDecimalesLetra), moneda);
}

}  // namespace vel::facil
