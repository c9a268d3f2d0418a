#include "Uutilext/text/Direcciones.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include "platform/Caracteres.h"

namespace vel {
namespace {

constexpr std::u16string_view kExterior[] = {u" # ", u" S/N ", u" NUMERO ", u" NO ", u" NO. ", u" N "};
constexpr std::u16string_view kInterior[] = {u" INTERIOR ", u" INT. ", u" INT "};
constexpr std::u16string_view kPrimerCruce[] = {u" X ", u" ENTRE ", u" % ", u" POR "};
constexpr std::u16string_view kSegundoCruce[] = {u" Y "};

constexpr std::size_t kGrupos = 4;
constexpr std::array<std::span<const std::u16string_view>, kGrupos> kClaves = {kExterior, kInterior,
                                                                               kPrimerCruce, kSegundoCruce};

// Where a group's keyword stands (1-based; beyond the text when it has none) and how long it is.
struct Hallazgo {
  long long posicion;
  long long largo;
};

Hallazgo Busca(std::u16string_view texto, std::span<const std::u16string_view> claves, long long ausente) {
  for (const std::u16string_view clave : claves) {
    const std::size_t posicion = Pos(clave, texto);
    if (posicion != 0) return {static_cast<long long>(posicion), static_cast<long long>(clave.size())};
  }
  return {ausente, static_cast<long long>(claves.back().size())};
}

// The groups in the order of their positions; ties, which only groups without a keyword have, do not matter.
std::array<std::size_t, kGrupos> Ordena(const std::array<Hallazgo, kGrupos>& hallazgos) {
  std::array<std::size_t, kGrupos> orden = {0, 1, 2, 3};
  std::stable_sort(orden.begin(), orden.end(), [&](std::size_t a, std::size_t b) {
    return hallazgos[a].posicion < hallazgos[b].posicion;
  });
  return orden;
}

}  // namespace

void DividirDireccion(std::u16string_view direccion, UnicodeString& calle, UnicodeString& numExterior,
                      UnicodeString& numInterior, UnicodeString& cruce1, UnicodeString& cruce2) {
  const UnicodeString texto(direccion);
  const UnicodeString mayusculas = Mayusculas(texto);
  const auto largo = static_cast<long long>(texto.size());
  std::array<Hallazgo, kGrupos> hallazgos{};
  for (std::size_t g = 0; g < kGrupos; ++g) hallazgos[g] = Busca(mayusculas, kClaves[g], largo + 1);
  const std::array<std::size_t, kGrupos> orden = Ordena(hallazgos);
  UnicodeString inicio = Trim(Copy(texto, 1, hallazgos[orden[0]].posicion));
  std::array<UnicodeString, kGrupos> partes;
  for (std::size_t i = 0; i < kGrupos; ++i) {
    const Hallazgo& h = hallazgos[orden[i]];
    const long long fin = i + 1 < kGrupos ? hallazgos[orden[i + 1]].posicion : largo + 1;
    partes[orden[i]] = Trim(Copy(texto, h.posicion + h.largo, fin - h.posicion - h.largo));
  }
  calle = std::move(inicio);
  numExterior = std::move(partes[0]);
  numInterior = std::move(partes[1]);
  cruce1 = std::move(partes[2]);
  cruce2 = std::move(partes[3]);
}

void DividePoblacion(std::u16string_view poblacion, UnicodeString& primera, UnicodeString& segunda,
                     UnicodeString& tercera, UnicodeString& cuarta) {
  const UnicodeString texto(poblacion);
  std::u16string_view resto = texto;
  const std::size_t coma = Pos(u",", resto);
  if (coma == 0 && !resto.empty()) {
    primera = resto;
    return;
  }
  UnicodeString inicio(Copy(resto, 1, static_cast<long long>(coma) - 1));
  UnicodeString copia = inicio;
  resto.remove_prefix(coma);
  const std::size_t otra = Pos(u",", resto);
  const bool sinTercera = otra == 0 && !resto.empty();
  resto.remove_prefix(otra);
  if (!resto.empty()) cuarta = resto;
  // From here on nothing fails.
  primera = std::move(inicio);
  segunda = std::move(copia);
  if (sinTercera) tercera.clear();
}

}  // namespace vel
