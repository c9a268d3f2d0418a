#include "tools/utilvel/LectorCsv.h"

#include <algorithm>
#include <cstring>

#include "tools/utilvel/Errores.h"

namespace utilvel {
namespace {

constexpr std::size_t kBloque = 262144;

}  // namespace

bool LectorCsv::Llena() {
  if (acabo_) return false;
  const std::size_t resto = fin_ - inicio_;
  if (resto > kMaximo) {
    throw Falla(Codigo::Datos, "El renglón que empieza en la línea " + std::to_string(lineaSiguiente_) +
                                   " mide más de un millón de caracteres: quizá faltan comillas que cierren");
  }
  // What is there of a record moves to the front, so that the block need not grow.
  if (resto > 0) std::memmove(bloque_.data(), bloque_.data() + inicio_, resto);
  inicio_ = 0;
  fin_ = resto;
  if (bloque_.size() < resto + kBloque) bloque_.resize(resto + kBloque);
  const std::size_t leidos = lector_.Lee(bloque_.data() + resto, kBloque);
  if (leido_ == 0 && leidos >= 3 && std::memcmp(bloque_.data(), "\xEF\xBB\xBF", 3) == 0) inicio_ = 3;
  leido_ += leidos;
  fin_ += leidos;
  acabo_ = leidos == 0;
  return !acabo_;
}

// Length of the record that begins at inicio_, up to its line break. Notes whether it has quotes.
std::size_t LectorCsv::FinDeRegistro() {
  std::size_t visto = 0;
  for (;;) {
    const char* const desde = bloque_.data() + inicio_;
    const std::size_t hay = fin_ - inicio_;
    const void* const salto = hay > visto ? std::memchr(desde + visto, '\n', hay - visto) : nullptr;
    const std::size_t largo =
        salto == nullptr ? hay : static_cast<std::size_t>(static_cast<const char*>(salto) - desde);
    if (largo > visto && std::memchr(desde + visto, '"', largo - visto) != nullptr) {
      conComillas_ = true;
      return FinEntreComillas();
    }
    if (salto != nullptr) return largo;
    visto = hay;
    if (!Llena()) return fin_ - inicio_;
  }
}

// The same for a record with quotes, which may hold line breaks.
std::size_t LectorCsv::FinEntreComillas() {
  bool primero = true;
  bool citado = false;
  bool dentro = false;
  for (std::size_t i = 0;; ++i) {
    if (i == fin_ - inicio_ && !Llena()) {
      sinCerrar_ = dentro;
      return i;
    }
    const char c = bloque_[inicio_ + i];
    if (c == '"' && (primero || citado)) {
      // A doubled quote leaves and enters again.
      citado = true;
      dentro = !dentro;
    } else if (c == '\n' && !dentro) {
      return i;
    }
    primero = c == ',' && !dentro;
    if (primero) citado = false;
  }
}

bool LectorCsv::Siguiente() {
  for (;;) {
    if (inicio_ == fin_ && !Llena()) return false;
    if (inicio_ == fin_) continue;
    conComillas_ = false;
    const std::size_t largo = FinDeRegistro();
    registro_ = {bloque_.data() + inicio_, largo};
    inicio_ += std::min(largo + 1, fin_ - inicio_);
    linea_ = lineaSiguiente_++;
    if (conComillas_) {
      lineaSiguiente_ += static_cast<std::uint64_t>(std::count(registro_.begin(), registro_.end(), '\n'));
    }
    if (registro_.ends_with('\r')) registro_.remove_suffix(1);
    if (registro_.empty()) continue;
    Parte();
    return true;
  }
}

void LectorCsv::Parte() {
  campos_.clear();
  if (!conComillas_) {
    const char* desde = registro_.data();
    const char* const fin = desde + registro_.size();
    for (const char* p = desde; p != fin; ++p) {
      if (*p != ',') continue;
      campos_.emplace_back(desde, static_cast<std::size_t>(p - desde));
      desde = p + 1;
    }
    campos_.emplace_back(desde, static_cast<std::size_t>(fin - desde));
    return;
  }
  // No field is longer than what it is written with: the texts stay where they are put.
  textos_.clear();
  textos_.reserve(registro_.size());
  for (std::size_t lugar = 0;;) {
    campos_.push_back(SinComillas(lugar));
    if (lugar == registro_.size()) return;
    ++lugar;
  }
}

// The field at `lugar`, which goes to the comma after it or to the record's end.
std::string_view LectorCsv::SinComillas(std::size_t& lugar) {
  const std::size_t primero = textos_.size();
  const bool citado = lugar < registro_.size() && registro_[lugar] == '"';
  bool dentro = false;
  for (; lugar < registro_.size(); ++lugar) {
    const char c = registro_[lugar];
    if (c == ',' && !dentro) break;
    if (c == '"' && citado) {
      if (dentro && lugar + 1 < registro_.size() && registro_[lugar + 1] == '"') {
        textos_ += c;
        ++lugar;
      } else {
        dentro = !dentro;
      }
      continue;
    }
    textos_ += c;
  }
  return std::string_view(textos_).substr(primero);
}

}  // namespace utilvel
