#include "platform/Tzif.h"

#include <cstdint>
#include <vector>

namespace vel {
namespace {

// Takes numbers from the front of a file; reading past the end makes it bad and gives zeros.
class Lector {
 public:
  explicit Lector(std::string_view bytes) : resto_(bytes) {}
  bool Bueno() const noexcept { return bueno_; }
  std::string_view Resto() const noexcept { return resto_; }

  std::string_view Toma(std::size_t n) {
    if (n > resto_.size()) {
      bueno_ = false;
      n = 0;
    }
    const std::string_view tomado = resto_.substr(0, n);
    resto_.remove_prefix(n);
    return tomado;
  }
  // Big-endian, two's complement.
  std::int64_t Entero(std::size_t n) {
    const std::string_view bytes = Toma(n);
    if (bytes.empty()) return 0;
    std::uint64_t valor = (static_cast<unsigned char>(bytes.front()) & 0x80U) != 0 ? ~std::uint64_t{0} : 0;
    for (const char c : bytes) valor = valor << 8 | static_cast<unsigned char>(c);
    return static_cast<std::int64_t>(valor);
  }
  // Without sign; lengths made of a file's counts take 64 bits, also where sizes have 32.
  std::size_t Cuenta() { return static_cast<std::uint32_t>(Entero(4)); }

 private:
  std::string_view resto_;
  bool bueno_ = true;
};

struct Encabezado {
  char version;
  std::size_t indicadoresUt, indicadoresEst, saltos, momentos, tipos, letras;

  // Length of the block that follows, with moments of `ancho` bytes.
  std::uint64_t Largo(std::uint64_t ancho) const {
    return momentos * (ancho + 1) + tipos * std::uint64_t{6} + letras + saltos * (ancho + 4) +
           indicadoresEst + indicadoresUt;
  }
};

Encabezado LeeEncabezado(Lector& lector) {
  if (lector.Toma(4) != "TZif") lector.Toma(lector.Resto().size() + 1);
  const std::string_view version = lector.Toma(1);
  lector.Toma(15);
  Encabezado e{};
  e.version = version.empty() ? '\0' : version.front();
  for (std::size_t* campo :
       {&e.indicadoresUt, &e.indicadoresEst, &e.saltos, &e.momentos, &e.tipos, &e.letras}) {
    *campo = lector.Cuenta();
  }
  return e;
}

// --- The rule's text.

bool Consume(std::string_view& texto, char c) {
  if (texto.empty() || texto.front() != c) return false;
  texto.remove_prefix(1);
  return true;
}

// Three letters or more; between "<" and ">" digits and signs too.
bool LeeNombre(std::string_view& texto) {
  const bool citado = Consume(texto, '<');
  const auto vale = [citado](char c) {
    const bool letra = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    return letra || (citado && ((c >= '0' && c <= '9') || c == '+' || c == '-'));
  };
  std::size_t n = 0;
  while (n < texto.size() && vale(texto[n])) ++n;
  texto.remove_prefix(n);
  return n >= 3 && (!citado || Consume(texto, '>'));
}

bool LeeNumero(std::string_view& texto, int maximo, int& numero) {
  if (texto.empty() || texto.front() < '0' || texto.front() > '9') return false;
  int leido = 0;
  while (!texto.empty() && texto.front() >= '0' && texto.front() <= '9') {
    leido = leido * 10 + (texto.front() - '0');
    if (leido > maximo) return false;
    texto.remove_prefix(1);
  }
  numero = leido;
  return true;
}

// [+-]hh[:mm[:ss]]
bool LeeTiempo(std::string_view& texto, int maximoHoras, std::int32_t& segundos) {
  const bool negativo = Consume(texto, '-');
  if (!negativo) Consume(texto, '+');
  int horas = 0;
  int minutos = 0;
  int resto = 0;
  if (!LeeNumero(texto, maximoHoras, horas)) return false;
  if (Consume(texto, ':')) {
    if (!LeeNumero(texto, 59, minutos)) return false;
    if (Consume(texto, ':') && !LeeNumero(texto, 59, resto)) return false;
  }
  segundos = (horas * 60 + minutos) * 60 + resto;
  if (negativo) segundos = -segundos;
  return true;
}

// "Mm.w.d", or a day of the year: "Jn" from 1, without 29 February, "n" from 0, with it.
bool LeeDia(std::string_view& texto, ReglaCambio& regla) {
  if (Consume(texto, 'M')) {
    return LeeNumero(texto, 12, regla.mes) && Consume(texto, '.') && LeeNumero(texto, 5, regla.semana) &&
           Consume(texto, '.') && LeeNumero(texto, 6, regla.diaSemana) && regla.mes > 0 && regla.semana > 0;
  }
  if (Consume(texto, 'J')) return LeeNumero(texto, 365, regla.diaAnio) && regla.diaAnio > 0;
  if (!LeeNumero(texto, 365, regla.diaAnio)) return false;
  ++regla.diaAnio;
  regla.conBisiesto = true;
  return true;
}

// A day with an optional "/time".
bool LeeRegla(std::string_view& texto, ReglaCambio& regla) {
  constexpr std::int32_t kDosDeLaManana = 2 * 3600;
  if (!Consume(texto, ',') || !LeeDia(texto, regla)) return false;
  regla.segundos = kDosDeLaManana;
  // RFC 8536, section 3.3.1: a week less an hour.
  constexpr int kMaximoHoras = 167;
  return !Consume(texto, '/') || LeeTiempo(texto, kMaximoHoras, regla.segundos);
}

}  // namespace

bool LeeReglaPosix(std::string_view texto, ZonaHoraria& zona) {
  // Of an offset; POSIX.1-2017, section 8.3.
  constexpr int kMaximoHoras = 24;
  std::int32_t oeste = 0;
  if (!LeeNombre(texto) || !LeeTiempo(texto, kMaximoHoras, oeste)) return false;
  const DesfaseZona estandar{-oeste, false};
  if (texto.empty()) {
    zona.estandar = estandar;
    zona.verano.reset();
    return true;
  }
  ZonaHoraria::Verano verano;
  verano.desfase = {estandar.segundos + 3600, true};
  if (!LeeNombre(texto)) return false;
  if (!texto.empty() && texto.front() != ',') {
    if (!LeeTiempo(texto, kMaximoHoras, oeste)) return false;
    verano.desfase.segundos = -oeste;
  }
  // Without rules POSIX leaves them to the system; those of the United States are the common choice.
  if (texto.empty()) texto = ",M3.2.0,M11.1.0";
  if (!LeeRegla(texto, verano.comienza) || !LeeRegla(texto, verano.termina) || !texto.empty()) return false;
  zona.estandar = estandar;
  zona.verano = verano;
  return true;
}

std::optional<ZonaHoraria> LeeTzif(std::string_view bytes) {
  Lector lector(bytes);
  Encabezado e = LeeEncabezado(lector);
  // The first block, with moments of 32 bits, is for old readers.
  if (!lector.Bueno() || e.version < '2') return std::nullopt;
  if (e.Largo(4) > lector.Resto().size()) return std::nullopt;
  lector.Toma(static_cast<std::size_t>(e.Largo(4)));
  e = LeeEncabezado(lector);
  if (!lector.Bueno() || e.tipos == 0 || e.Largo(8) > lector.Resto().size()) return std::nullopt;

  std::vector<std::int64_t> momentos(e.momentos);
  for (std::int64_t& m : momentos) m = lector.Entero(8);
  const std::string_view indices = lector.Toma(e.momentos);
  std::vector<DesfaseZona> tipos(e.tipos);
  for (DesfaseZona& t : tipos) {
    t.segundos = static_cast<std::int32_t>(lector.Entero(4));
    t.verano = lector.Entero(1) != 0;
    lector.Toma(1);
  }
  lector.Toma(e.letras + e.saltos * 12 + e.indicadoresEst + e.indicadoresUt);

  ZonaHoraria zona;
  zona.inicial = tipos.front();
  zona.estandar = zona.inicial;
  for (std::size_t i = 0; i < momentos.size(); ++i) {
    const auto tipo = static_cast<unsigned char>(indices[i]);
    const bool enOrden = i == 0 || momentos[i - 1] < momentos[i];
    if (tipo >= tipos.size() || !enOrden) return std::nullopt;
    zona.cambios.push_back({momentos[i], tipos[tipo]});
    zona.estandar = tipos[tipo];
  }
  const std::string_view pie = lector.Resto();
  const std::size_t fin = pie.size() > 1 ? pie.find('\n', 1) : std::string_view::npos;
  if (!lector.Bueno() || fin == std::string_view::npos || pie.front() != '\n') return std::nullopt;
  // An empty rule: the last change holds for ever.
  if (fin > 1 && !LeeReglaPosix(pie.substr(1, fin - 1), zona)) return std::nullopt;
  return zona;
}

}  // namespace vel
