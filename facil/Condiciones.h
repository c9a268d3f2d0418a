#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

#include "Paramsql/Enumeraciones.h"
#include "Uutilext/config/Configuracion.h"
#include "facil/Texto.h"
#include "facil/Valor.h"
#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel {
class TParametrosFiltro;
class TParamWhereSimple;
}  // namespace vel

namespace vel::facil {

class Grupo;

/// How capitals and small letters count in contiene, empieza and termina.
enum class Letras : std::uint8_t { SinDistinguir = 0, ComoEstan };

/// A condition that has its field and waits for its comparison: the half that is no template.
/// Threads: one at a time.
class UTILVEL90_EXPORT CondicionAbierta {
 public:
  CondicionAbierta(const CondicionAbierta&) = delete;
  CondicionAbierta& operator=(const CondicionAbierta&) = delete;

 protected:
  /// A condition of that group on that field.
  CondicionAbierta(Grupo& grupo, const Texto& campo);
  ~CondicionAbierta() = default;

  /// The comparisons that Condicion offers by their names.
  void Solo(bool hay) noexcept { hay_ = hay_ && hay; }
  void Compara(ENUM_OPERADOR op, Valor&& valor);
  void Limita(Valor&& bajo, Valor&& alto);
  void Busca(ENUM_OPERADOR op, Valores&& valores);
  void PruebaNulo(ENUM_OPERADOR op);
  template <typename T>
  void Coincide(ENUM_COINCIDENCIA donde, const T& texto, Letras letras) {
    constexpr bool kEsTexto = TipoTexto<T>;
    static_assert(kEsTexto, "contiene, empieza and termina take a text");
    if constexpr (kEsTexto) CoincideTexto(donde, Texto(texto), letras);
  }
  template <typename T>
  void Coincide(ENUM_COINCIDENCIA donde, const std::optional<T>& texto, Letras letras) {
    if (texto.has_value()) Coincide(donde, *texto, letras);
  }

 private:
  void CoincideTexto(ENUM_COINCIDENCIA donde, const Texto& texto, Letras letras);
  void Agrega(TFieldType tipo, Variant&& valor, ENUM_OPERADOR op, bool sensitive);

  Grupo& grupo_;
  UnicodeString campo_;
  bool hay_ = true;
};

/// What `donde` gives: the comparison that follows adds the condition and gives back what `donde` was called
/// on. `si(false)`, or a value that is an empty std::optional, leaves the condition out.
///
///     donde("F.FECHA").entre(desde, hasta)
///     donde("C.NOMBRE").si(!nombre.empty()).contiene(nombre)
template <typename Padre>
class [[nodiscard("a condition lacks its comparison: igual, entre, contiene...")]] Condicion
    : private CondicionAbierta {
 public:
  /// What `donde` makes; programs need not call it.
  Condicion(Padre & padre, Grupo & grupo, const Texto& campo)
      : CondicionAbierta(grupo, campo), padre_(padre) {}

  /// With false the condition is left out, whatever its value; asked more than once, all must be true.
  [[nodiscard("a condition lacks its comparison: igual, entre, contiene...")]] Condicion& si(bool hay) {
    Solo(hay);
    return *this;
  }

  /// The field compared with the value. An std::optional without a value leaves the condition out.
  Padre& igual(Valor valor) { return Compara(ENUM_OPERADOR::IGUAL, std::move(valor)), padre_; }
  Padre& diferente(Valor valor) { return Compara(ENUM_OPERADOR::DIFERENTE, std::move(valor)), padre_; }
  Padre& menor(Valor valor) { return Compara(ENUM_OPERADOR::MENOR, std::move(valor)), padre_; }
  Padre& menorIgual(Valor valor) { return Compara(ENUM_OPERADOR::MENOR_IGUAL, std::move(valor)), padre_; }
  Padre& mayor(Valor valor) { return Compara(ENUM_OPERADOR::MAYOR, std::move(valor)), padre_; }
  Padre& mayorIgual(Valor valor) { return Compara(ENUM_OPERADOR::MAYOR_IGUAL, std::move(valor)), padre_; }

  /// Both bounds are in: where the field holds moments, a day as the upper bound takes its midnight only.
  /// With one bound left out it is mayorIgual or menorIgual of the other.
  Padre& entre(Valor bajo, Valor alto) { return Limita(std::move(bajo), std::move(alto)), padre_; }

  /// A list without any value raises EInvalidOperation: si(!lista.empty()) leaves the condition out.
  Padre& en(Valores valores) { return Busca(ENUM_OPERADOR::INN, std::move(valores)), padre_; }
  Padre& noEn(Valores valores) { return Busca(ENUM_OPERADOR::NOTIN, std::move(valores)), padre_; }

  /// Whether the field holds no value at all.
  Padre& esNulo() { return PruebaNulo(ENUM_OPERADOR::ISNULL), padre_; }
  Padre& noEsNulo() { return PruebaNulo(ENUM_OPERADOR::NOTNULL), padre_; }

  /// What a user typed, to the letter: "%" and "_" in it stand for themselves. A text in either encoding or
  /// an std::optional of one; an empty text is in every field that is not null. With parameters only.
  template <typename T>
  Padre& contiene(const T& texto, Letras letras = Letras::SinDistinguir) {
    return Coincide(ENUM_COINCIDENCIA::CONTIENE, texto, letras), padre_;
  }
  template <typename T>
  Padre& empieza(const T& texto, Letras letras = Letras::SinDistinguir) {
    return Coincide(ENUM_COINCIDENCIA::EMPIEZA, texto, letras), padre_;
  }
  template <typename T>
  Padre& termina(const T& texto, Letras letras = Letras::SinDistinguir) {
    return Coincide(ENUM_COINCIDENCIA::TERMINA, texto, letras), padre_;
  }

 private:
  Padre& padre_;
};

/// The conditions of a group, joined by one connector. A group is opened by a function that fills it, and is
/// closed when that ends:
///
///     consulta.alguna([&](auto& g) {                       // any of these: OR
///       g.donde("P.LINEA").en({"FERRETERÍA", "MUEBLES"});
///       g.todas([&](auto& h) {                             // all of those: AND
///         h.donde("F.IMPORTE").mayorIgual(700.0);
///         h.donde("F.STATUS").igual("E");
///       });
///     });     // (P.LINEA IN (...) OR F.IMPORTE>=... AND F.STATUS=...)
///
/// Parentheses stand around the alternatives of a group of AND, where there are two or more; AND binds
/// tighter than OR in SQL and needs none. A group whose conditions were all left out vanishes. Groups nest
/// without limit: a condition opens or closes one parenthesis only, so that where two fall on one, an
/// alternative that never holds ("1=0") stands before or after it and carries the outer one.
///
/// While a group is being filled, what is outside of it takes no condition (EInvalidOperation). A function
/// that throws leaves no condition of its group.
/// Threads: one at a time.
class UTILVEL90_EXPORT Grupo {
 public:
  Grupo(const Grupo&) = delete;
  Grupo& operator=(const Grupo&) = delete;
  ~Grupo() = default;

  /// Begins a condition on a column or expression.
  Condicion<Grupo> donde(const Texto& campo) { return {*this, *this, campo}; }
  /// EXISTS ( sub-query ); the program's own SQL.
  Grupo& existe(const Sql& subconsulta);
  /// A group within this one, of which any (OR) or all (AND) must hold.
  template <typename Llena>
  Grupo& alguna(Llena&& llena) {
    return Llenado(ENUM_CONECTOR::OR, llena), *this;
  }
  template <typename Llena>
  Grupo& todas(Llena&& llena) {
    return Llenado(ENUM_CONECTOR::AND, llena), *this;
  }

 private:
  friend class Consulta;
  friend class CondicionAbierta;
  enum class Clausula : bool { Where, Having };
  using Lista = std::vector<std::unique_ptr<TParamWhereSimple>>;

  /// The outermost one of a clause, of AND.
  Grupo(TParametrosFiltro& filtro, Clausula clausula, TiposDeDriver driver) noexcept
      : filtro_(&filtro), clausula_(clausula), driver_(driver), esRaiz_(true) {}
  Grupo(const Grupo& padre, ENUM_CONECTOR conector) noexcept
      : filtro_(padre.filtro_), clausula_(padre.clausula_), driver_(padre.driver_), conector_(conector) {}
  Grupo(Grupo&&) noexcept = default;
  Grupo& operator=(Grupo&&) noexcept = default;

  template <typename Llena>
  void Llenado(ENUM_CONECTOR conector, Llena& llena) {
    constexpr bool kLaToma = std::is_invocable_v<Llena&, Grupo&>;
    static_assert(kLaToma, "a group is filled by a function that takes it: [&](auto& g) { g.donde(...)... }");
    if constexpr (kLaToma) {
      const auto llama = [&llena](Grupo& grupo) { llena(grupo); };
      Subgrupo(conector, &llama,
               [](const void* f, Grupo& grupo) { (*static_cast<decltype(&llama)>(f))(grupo); });
    }
  }
  void Subgrupo(ENUM_CONECTOR conector, const void* llama, void (*llena)(const void*, Grupo&));
  void Agrega(std::unique_ptr<TParamWhereSimple> condicion);
  void AgregaPatron(const UnicodeString& campo, ENUM_COINCIDENCIA donde, const Texto& texto, Letras letras);
  /// What was there before the front came, when what stands from `inicio` on is the first that it adds.
  void Junta(Lista& lista, std::size_t inicio);
  /// The list, to which something is about to be added.
  Lista& Abierta();

  TParametrosFiltro* filtro_;
  Clausula clausula_;
  TiposDeDriver driver_;
  ENUM_CONECTOR conector_ = ENUM_CONECTOR::AND;
  bool esRaiz_ = false;
  /// Conditions and groups in it, those of a group of the same connector being its own.
  std::size_t cuenta_ = 0;
  bool llenandoOtro_ = false;
};

}  // namespace vel::facil
