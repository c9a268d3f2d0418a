#include "Uutilext/text/Correo.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "framework/Excepciones.h"
#include "framework/Texto.h"

namespace vel {
namespace {

void Examina(std::u16string_view correo) {
  const auto arrobas = std::count(correo.begin(), correo.end(), u'@');
  if (arrobas != 1 || correo.front() == u'@' || correo.back() == u'@') {
    throw EInvalidOperation(u"Correo inválido.");
  }
}

/// The addresses tested so far, numbered from 1, to be found by the end of a text: a tree of their characters
/// from the last to the first, which goes on only as far as addresses share it.
class Probados {
 public:
  struct Hallazgo {
    /// 0 for none.
    std::size_t numero = 0;
    std::size_t largo = 0;
  };

  void Agrega(std::u16string_view texto) {
    ++cuenta_;
    std::size_t nodo = 0;
    for (std::size_t i = 0;; ++i) {
      const auto [rama, nueva] = ramas_.try_emplace(Clave(nodo, texto, i), Rama{correos_.size(), true});
      if (nueva) break;
      if (rama->second.esCorreo) {
        const std::size_t indice = rama->second.indice;
        if (correos_[indice].texto == texto) return correos_[indice].numeros.push_back(cuenta_);
        rama->second = {++nodos_, false};
        ramas_.emplace(Clave(nodos_, correos_[indice].texto, i + 1), Rama{indice, true});
        nodo = nodos_;
      } else {
        nodo = rama->second.indice;
      }
    }
    correos_.push_back({UnicodeString(texto), {cuenta_}});
  }

  /// Of those with which the text ends, the first one tested after number `desde`.
  Hallazgo Primero(std::u16string_view texto, std::size_t desde) const {
    Hallazgo hallazgo;
    const auto considera = [&](const Correo& correo) {
      const auto numero = std::upper_bound(correo.numeros.begin(), correo.numeros.end(), desde);
      if (numero == correo.numeros.end() || (hallazgo.numero != 0 && hallazgo.numero < *numero)) return;
      hallazgo = {*numero, correo.texto.size()};
    };
    std::size_t nodo = 0;
    for (std::size_t i = 0;; ++i) {
      const auto entero = ramas_.find(Clave(nodo, kFin));
      if (entero != ramas_.end()) considera(correos_[entero->second.indice]);
      const auto rama = i < texto.size() ? ramas_.find(Clave(nodo, texto, i)) : ramas_.end();
      if (rama == ramas_.end()) return hallazgo;
      if (rama->second.esCorreo) {
        const Correo& correo = correos_[rama->second.indice];
        if (texto.ends_with(correo.texto)) considera(correo);
        return hallazgo;
      }
      nodo = rama->second.indice;
    }
  }

 private:
  struct Correo {
    UnicodeString texto;
    /// More than one when what is left of others made it anew.
    std::vector<std::size_t> numeros;
  };
  /// Leads to a node of the tree, or to the only address from here on.
  struct Rama {
    std::size_t indice;
    bool esCorreo;
  };
  /// Stands before the first character of an address.
  static constexpr std::uint64_t kFin = 0x10000;

  static std::uint64_t Clave(std::size_t nodo, std::uint64_t caracter) noexcept {
    return (std::uint64_t{nodo} << 17U) | caracter;
  }
  /// The branch for the character `i` places before the last one.
  static std::uint64_t Clave(std::size_t nodo, std::u16string_view texto, std::size_t i) noexcept {
    return Clave(nodo, i < texto.size() ? texto[texto.size() - 1 - i] : kFin);
  }

  std::unordered_map<std::uint64_t, Rama> ramas_;
  std::vector<Correo> correos_;
  std::size_t nodos_ = 0;
  std::size_t cuenta_ = 0;
};

}  // namespace

// Each address, once tested, is dropped wherever it stands in what follows, also as the end of a longer one,
// whose beginning then runs into the next. Instead of rewriting what follows at each address, the list is
// read once: an item meets, in their order, the tested addresses with which it ends.
void ValidarCorreo(std::u16string_view correos) {
  if (correos.empty()) throw EInvalidOperation(u"Debes capturar el correo electrónico.");
  // A beginning that lost its end when address `numero` was dropped; what comes next joined it then.
  struct Principio {
    std::size_t inicio;
    std::size_t numero;
  };
  Probados probados;
  std::vector<Principio> principios;
  UnicodeString texto;  // the beginnings, one after another, and then the item
  while (!correos.empty()) {
    const std::size_t largo = std::min(correos.find(u';'), correos.size() - 1) + 1;
    Principio item{texto.size(), 0};
    texto.append(correos.substr(0, largo));
    correos.remove_prefix(largo);
    for (;;) {
      const auto hallazgo = probados.Primero(std::u16string_view(texto).substr(item.inicio), item.numero);
      if (hallazgo.numero != 0 && (principios.empty() || hallazgo.numero <= principios.back().numero)) {
        texto.resize(texto.size() - hallazgo.largo);
        if (texto.size() > item.inicio) principios.push_back({item.inicio, hallazgo.numero});
        break;
      }
      if (principios.empty()) {
        Examina(texto);
        probados.Agrega(texto);
        texto.clear();
        break;
      }
      // Whole until its turn came to join the beginning before it, and from then on one text with it.
      item = principios.back();
      principios.pop_back();
    }
  }
  if (!texto.empty()) Examina(texto);
}

}  // namespace vel
