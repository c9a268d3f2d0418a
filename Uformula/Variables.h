#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <string_view>
#include <vector>

#include "framework/TStringList.h"
#include "framework/Texto.h"

namespace vel::formula {

/// One name=value line of the caller, its value read.
struct Variable {
  UnicodeString linea;
  std::size_t largoNombre = 0;
  double numero = 0;
  bool esNumero = false;

  std::u16string_view Nombre() const noexcept { return std::u16string_view(linea).substr(0, largoNombre); }
  std::u16string_view Valor() const noexcept { return std::u16string_view(linea).substr(largoNombre + 1); }
  bool Vacia() const noexcept { return linea.size() == largoNombre + 1; }
};

/// Makes a list sorted, refusing duplicates with EStringListError.
void OrdenaSinRepetir(TStringList& lista);

/// The caller's variables. A formula is executed many times with the same names and other values: while the
/// names stay, setting them only reads the new values, and what refers to a variable by its place stays good.
class Variables {
 public:
  Variables() = default;
  /// TFormula::SetVariables. Memory that runs out leaves the variables as they were.
  void Pon(const TStringList& lista);

  /// Place of the variable of that name when it has a value; -1 otherwise.
  std::ptrdiff_t Busca(std::u16string_view nombre) const noexcept;
  const Variable& operator[](std::size_t lugar) const noexcept { return variables_[lugar]; }

  /// Changes whenever a place may hold another name, or a value appear or disappear.
  std::uint64_t Version() const noexcept { return version_; }
  /// Changes whenever a value may be another one.
  std::uint64_t VersionValores() const noexcept { return versionValores_; }
  /// True when some name could be that of a node or of a built-in call, which then gives way to it.
  bool NombranPasos() const noexcept { return nombranPasos_; }

 private:
  Variables(std::uint64_t version, std::uint64_t versionValores)
      : version_(version), versionValores_(versionValores) {}
  void Lee(const TStringList& lista);
  bool PonValores(const TStringList& lista);
  /// Slot of the name in the hash table: the one that holds it, or the free one where it would go.
  std::size_t Casilla(std::u16string_view nombre) const noexcept;

  // In the order of the sorted list, so that the first of a repeated name is the one that counts.
  std::vector<Variable> variables_;
  // For each line of the caller's list, its place here; empty when lines and places are not one to one.
  std::vector<std::uint32_t> orden_;
  // One for each line of the caller's list, while its values are set.
  struct Leido {
    double numero = 0;
    bool esNumero = false;
    bool cambia = false;
  };
  std::vector<Leido> leidos_;
  // Open addressing by name, a power of two; place plus one, 0 where free.
  std::vector<std::uint32_t> casillas_;
  std::uint64_t version_ = 0;
  std::uint64_t versionValores_ = 0;
  bool nombranPasos_ = false;
};

/// A variable that the caller assigns as a number.
struct Enlazada {
  /// Not a number while it has no value.
  double valor = std::numeric_limits<double>::quiet_NaN();
  /// Where a program may have it among those it uses.
  std::uint32_t uso = 0;
};

/// The variables bound by name: each stays where it is in memory. They go before those of the list.
class Enlazadas {
 public:
  /// The variable of that name, made when there is none; nothing changes when memory runs out.
  Enlazada& Enlaza(std::u16string_view nombre);
  /// Null when no variable of that name is bound.
  Enlazada* Busca(std::u16string_view nombre) noexcept;
  /// The variable whose value stands there; null when none of these does.
  Enlazada* De(const double* valor) noexcept;

  bool Hay() const noexcept { return !enlazadas_.empty(); }
  /// Changes whenever a variable is made.
  std::uint64_t Version() const noexcept { return enlazadas_.size(); }
  /// As Variables has it.
  bool NombranPasos() const noexcept { return nombranPasos_; }

 private:
  std::map<UnicodeString, Enlazada, LessText> enlazadas_;
  bool nombranPasos_ = false;
};

}  // namespace vel::formula
