// Numbers: their texts against the C library's digits, texts read against a plain grammar, and rounding
// against its rule told in texts.
#include "framework/Numeros.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <regex>
#include <vector>

#include "Uutilext/documents/Redondeo.h"
#include "framework/Excepciones.h"
#include "fuzz/Entrada.h"
#include "fuzz/Exige.h"

namespace {

using fuzz::Exige;
using fuzz::ExigeIgual;
using namespace vel;

std::uint64_t Bits(double valor) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &valor, sizeof bits);
  return bits;
}

// The general text, from printf's fifteen digits.
std::string Texto(double valor) {
  if (std::isnan(valor)) return "NAN";
  if (std::isinf(valor)) return valor < 0 ? "-INF" : "INF";
  if (valor == 0) return "0";
  char cientifico[40];
  std::snprintf(cientifico, sizeof cientifico, "%.14e", std::fabs(valor));
  const int exponente = std::atoi(std::strchr(cientifico, 'e') + 1);
  std::string cifras = std::string(1, cientifico[0]) + std::string(cientifico + 2, 14);
  cifras.erase(cifras.find_last_not_of('0') + 1);
  std::string texto;
  const auto punto = [](const std::string& enteras, const std::string& otras) {
    return otras.empty() ? enteras : enteras + "." + otras;
  };
  if (exponente < -4 || exponente > 14) {
    texto = punto(cifras.substr(0, 1), cifras.substr(1)) + "E" + std::to_string(exponente);
  } else if (exponente < 0) {
    texto = "0." + std::string(static_cast<std::size_t>(-exponente - 1), '0') + cifras;
  } else {
    const auto enteras = static_cast<std::size_t>(exponente) + 1;
    if (cifras.size() < enteras) cifras.append(enteras - cifras.size(), '0');
    texto = punto(cifras.substr(0, enteras), cifras.substr(enteras));
  }
  return (valor < 0 ? "-" : "") + texto;
}

void ExigeTexto(double valor) {
  const UnicodeString texto = FloatToStr(valor);
  ExigeIgual(UTF8Encode(texto), Texto(valor), "the number's text");
  double leido = 0;
  const bool finito = std::isfinite(valor);
  const bool desborda = finito && std::isinf(std::strtod(Texto(valor).c_str(), nullptr));
  ExigeIgual(TryStrToFloat(texto, leido), finito && !desborda, "whether its text is a number");
  if (!finito || desborda) return;
  ExigeIgual(Bits(leido), Bits(std::strtod(Texto(valor).c_str(), nullptr)), "the number of its text");
  ExigeIgual(Bits(RoundToText(valor)), Bits(leido), "the number rounded to its text");
  ExigeIgual(FloatToStr(leido), texto, "the text once more");
}

std::string SinBlancos(std::string texto, bool alFinal) {
  const auto blanco = [](char c) { return c >= 0 && c <= ' '; };
  while (!texto.empty() && blanco(texto.front())) texto.erase(0, 1);
  while (alFinal && !texto.empty() && blanco(texto.back())) texto.pop_back();
  return texto;
}

std::optional<double> Lee(const std::string& texto) {
  static const std::regex forma(R"([+-]?([0-9]+\.?[0-9]*|\.[0-9]+)([eE][+-]?[0-9]+)?)");
  const std::string numero = SinBlancos(texto, true);
  if (numero.size() > 300 || !std::regex_match(numero, forma)) return std::nullopt;
  const double valor = std::strtod(numero.c_str(), nullptr);
  // What is below the smallest normal number is either kept or zero.
  return std::isinf(valor) ? std::nullopt : std::optional(valor);
}

std::optional<long long> LeeEntero(const std::string& texto) {
  static const std::regex forma("[+-]?[0-9]+");
  const std::string numero = SinBlancos(texto, false);
  if (numero.size() > 300 || !std::regex_match(numero, forma)) return std::nullopt;
  errno = 0;
  const long long valor = std::strtoll(numero.c_str(), nullptr, 10);
  return errno != 0 ? std::nullopt : std::optional(valor);
}

void ExigeLectura(const std::string& utf8) {
  const UnicodeString texto = UTF8ToString(utf8);
  double valor = -7;
  const auto esperado = Lee(UTF8Encode(texto));
  ExigeIgual(TryStrToFloat(texto, valor), esperado.has_value(), "whether a text is a number");
  ExigeIgual(Bits(valor), Bits(esperado.value_or(-7)), "the number of a text");
  double deBytes = -7;
  ExigeIgual(TryStrToFloat(std::string_view(utf8), deBytes), esperado.has_value(), "the same in bytes");
  const auto entero = LeeEntero(UTF8Encode(texto));
  std::int64_t ancho = -7;
  ExigeIgual(TryStrToInt64(texto, ancho), entero.has_value(), "whether a text is an integer");
  ExigeIgual(static_cast<long long>(ancho), entero.value_or(-7), "the integer of a text");
  std::int32_t corto = -7;
  const bool cabe = entero.has_value() && *entero >= INT32_MIN && *entero <= INT32_MAX;
  ExigeIgual(TryStrToInt(texto, corto), cabe, "whether an integer is short");
  ExigeIgual(static_cast<long long>(corto), cabe ? *entero : -7, "the short integer");
  if (entero.has_value())
    ExigeIgual(UTF8Encode(IntToStr(ancho)), std::to_string(*entero), "an integer's text");
}

// The rule of g_redoTo, step by step; nothing when it overflows.
std::optional<double> Redondeado(double valor, int decimales) {
  if (decimales <= 0) return valor;
  const std::string texto = Texto(valor);
  const std::size_t punto = texto.find('.');
  if (punto == std::string::npos || texto.size() - punto - 1 <= static_cast<std::size_t>(decimales))
    return valor;
  const double p = std::pow(10.0, -decimales);
  const double w = valor / p + (valor < 0 ? -0.5 : 0.5);
  std::string entero = Texto(w);
  entero.erase(std::min(entero.find('.'), entero.size()));
  const auto leido = Lee(entero);
  return leido.has_value() ? std::optional(*leido * p) : std::nullopt;
}

void ExigeRedondeo(const std::vector<double>& valores, int decimales) {
  std::vector<double> salida(valores.size(), -7);
  bool desborda = false;
  for (const double valor : valores) {
    const auto esperado = Redondeado(valor, decimales);
    std::optional<double> obtenido;
    try {
      obtenido = g_redoTo(valor, decimales);
    } catch (const EConvertError&) {
      desborda = true;
    }
    ExigeIgual(obtenido.has_value(), esperado.has_value(), "whether a value can be rounded");
    if (esperado.has_value()) ExigeIgual(Bits(*obtenido), Bits(*esperado), "the rounded value");
    Redondea(valor, decimales % 30);
    Redondea4(valor);
    Redondea8(valor, 0.01);
  }
  try {
    g_redoTo(valores, decimales, salida);
    Exige(!desborda, "a column is rounded that cannot be");
    for (std::size_t i = 0; i < valores.size(); ++i)
      ExigeIgual(Bits(salida[i]), Bits(g_redoTo(valores[i], decimales)), "the rounded value of a column");
  } catch (const EConvertError&) {
    Exige(desborda, "a column is not rounded");
    for (const double valor : salida) Exige(valor == -7, "a column that was not rounded has changed");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo) {
  fuzz::Entrada entrada(datos, largo);
  const int decimales = entrada.De({2, 6, 0, -1, 1, 3, 4, 5, 8, 12, 20});
  std::vector<double> valores(entrada.Entero<std::size_t>(1, 6));
  for (double& valor : valores) {
    valor = entrada.Doble();
    ExigeTexto(valor);
  }
  ExigeRedondeo(valores, decimales);
  ExigeLectura(entrada.Resto());
  return 0;
}
