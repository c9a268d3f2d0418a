// The tax lists: texts for the callers, numbers while an operation works on them.

#include "Ucalculocfdi/Listas.h"

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "framework/Excepciones.h"
#include "framework/Numeros.h"

namespace vel {
namespace {

// The list of base and tax that an entry carries.
TStringList& Montos(const TStringList& lista, std::size_t indice) {
  auto* const montos = dynamic_cast<TStringList*>(lista.Objects(indice));
  if (montos != nullptr && montos->Count() >= 2) return *montos;
  throw EInvalidOperation(u"La tasa '" + lista[indice] + u"' de una lista de impuestos no tiene sus montos");
}

// Amounts that divide by zero stand in the lists too.
double DeMonto(const UnicodeString& texto) {
  constexpr double kInfinito = std::numeric_limits<double>::infinity();
  if (texto == u"INF") return kInfinito;
  if (texto == u"-INF") return -kInfinito;
  return texto == u"NAN" ? std::numeric_limits<double>::quiet_NaN() : StrToFloat(texto);
}

/// FloatToStr without a text of its own: the lists keep their copy.
class TextoMonto {
 public:
  explicit TextoMonto(double valor) noexcept {
    std::array<char, kMaxFloatText> texto;
    largo_ = FloatToChars(valor, texto);
    std::copy_n(texto.begin(), largo_, texto_.begin());
  }
  std::u16string_view Vista() const noexcept { return {texto_.data(), largo_}; }

 private:
  std::array<char16_t, kMaxFloatText> texto_;
  std::size_t largo_;
};

/// A text of an entry that changes.
struct Cambio {
  TStringList* montos;
  std::size_t renglon;
  UnicodeString texto;
};

void Anota(std::vector<Cambio>& cambios, TStringList& montos, std::size_t renglon, double valor) {
  const TextoMonto texto(valor);
  if (montos[renglon] != texto.Vista()) cambios.push_back({&montos, renglon, UnicodeString(texto.Vista())});
}

}  // namespace

void TCalculoCFDI::LeeLista(std::size_t impuesto) {
  const TStringList& lista = ListaImpuesto[impuesto];
  std::vector<Gravado>& leidos = interno_->gravados[impuesto];
  leidos.clear();
  for (std::size_t i = 0; i < lista.Count(); ++i) {
    const TStringList& montos = Montos(lista, i);
    leidos.push_back({DeMonto(lista[i]), DeMonto(montos[0]), DeMonto(montos[1])});
  }
}

// All texts are made, and have room, before the first list changes.
void TCalculoCFDI::EscribeListas(std::size_t primera, std::size_t fin) {
  std::vector<Cambio> cambios;
  std::array<TStringList, kImpuestos> nuevas;
  for (std::size_t k = primera; k < fin; ++k) {
    const std::vector<Gravado>& gravados = interno_->gravados[k];
    const std::size_t habia = ListaImpuesto[k].Count();
    for (std::size_t i = 0; i < habia; ++i) {
      TStringList& montos = Montos(ListaImpuesto[k], i);
      Anota(cambios, montos, 0, gravados[i].base);
      Anota(cambios, montos, 1, gravados[i].impuesto);
    }
    nuevas[k].SetCapacity(gravados.size() - habia);
    for (std::size_t i = habia; i < gravados.size(); ++i) {
      auto montos = std::make_unique<TStringList>();
      montos->SetCapacity(2);
      montos->Add(TextoMonto(gravados[i].base).Vista());
      montos->Add(TextoMonto(gravados[i].impuesto).Vista());
      nuevas[k].AddObject(TextoMonto(gravados[i].tasa).Vista(), std::move(montos));
    }
    ListaImpuesto[k].SetCapacity(gravados.size());
  }
  for (Cambio& c : cambios) c.montos->Swap(c.renglon, c.texto);
  for (std::size_t k = primera; k < fin; ++k) ListaImpuesto[k].AddStrings(std::move(nuevas[k]));
}

void TCalculoCFDI::Grava(double base, double tasa, double impuesto, std::size_t numero) {
  if (!(tasa > 0)) return;
  std::vector<Gravado>& gravados = interno_->gravados[numero];
  // Entries are told apart by the text of their rate; equal texts read back to equal numbers.
  const double clave = RoundToText(tasa);
  const auto it =
      std::find_if(gravados.begin(), gravados.end(), [clave](const Gravado& g) { return g.tasa == clave; });
  if (it == gravados.end()) {
    gravados.push_back({clave, RoundToText(base), RoundToText(impuesto)});
  } else {
    it->base = RoundToText(it->base + base);
    it->impuesto = RoundToText(it->impuesto + impuesto);
  }
}

}  // namespace vel
