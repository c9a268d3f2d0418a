#pragma once

#include <memory>
#include <string>

#include "Paramsql/Enumeraciones.h"
#include "facil/Condiciones.h"
#include "facil/Texto.h"
#include "framework/TParams.h"
#include "framework/Texto.h"
#include "utilvel90_export.h"

namespace vel::facil {

/// A statement with the values to bind, in its order; TParam says how one is bound.
/// Threads: const members may be called by all.
struct UTILVEL90_EXPORT Sentencia {
  /// The statement, with a mark for each parameter.
  UnicodeString texto;
  /// The values, in the order of their marks.
  TParams parametros;
  /// The text in UTF-8.
  std::string utf8() const;
};

/// A SELECT statement in words. It builds a TParametrosFiltro, so that what it gives is what AgregaFiltro and
/// the rest would give by hand, to the byte.
///
///     using namespace std::chrono;
///     Consulta facturas("FACTF01 F");
///     facturas.campo("C.NOMBRE", "CLIENTE")
///         .campo("SUM(F.IMPORTE)", "TOTAL")
///         .join("JOIN CLIENTES C ON C.CVE = F.CVE_CLPV")
///         .donde("F.FECHA").entre(2024y / April / 1, 2024y / May / 31)
///         .donde("C.NOMBRE").si(!buscado.empty()).contiene(buscado)
///         .alguna([&](auto& g) {
///           g.donde("P.LINEA").en({"FERRETERÍA", "MUEBLES"});
///           g.donde("F.IMPORTE").mayorIgual(700.0);
///         })
///         .agrupa("C.NOMBRE")
///         .having("SUM(F.IMPORTE)").mayor(500.0)
///         .ordenaDesc("TOTAL");
///     const Sentencia s = facturas.sentencia(ENUM_MARCADOR::INTERROGACION);
///
/// Fields, tables, joins, columns and Sql are the program's own text, written as they are; what a user typed
/// is a value. Every value is a parameter of the statement.
///
/// A query has a name first, as here, and is then filled: calls give a reference to it, and it is moved, not
/// copied, so that `Consulta q = Consulta("T").campo("C")` does not compile.
///
/// Names and clauses are not empty (EInvalidOperation), and are else written as they are.
///
/// It owns its definition. One that was moved from or gave its definition away raises EInvalidOperation
/// ("La consulta ya se entregó"). What throws leaves the query as it was.
/// Threads: one at a time.
class UTILVEL90_EXPORT Consulta {
 public:
  /// `driver` tells for which database patterns are escaped: SQL Server's have one wildcard more.
  explicit Consulta(const Texto& tabla, TiposDeDriver driver = TiposDeDriver::DEVARTINTERBASE);
  /// Goes on from a definition, which it takes. Conditions that are added hold together with all of those
  /// that it has (AND). Raises EInvalidOperation for null.
  explicit Consulta(std::unique_ptr<TParametrosFiltro> definicion,
                    TiposDeDriver driver = TiposDeDriver::DEVARTINTERBASE);
  Consulta(Consulta&&) noexcept;
  Consulta& operator=(Consulta&&) noexcept;
  ~Consulta();

  // --- What is selected. Without fields, "*".

  /// Appends a column or expression, with a name of its own in the result when `alias` is not empty.
  Consulta& campo(const Texto& expresion, const Texto& alias = u"", bool visible = true);
  /// SELECT DISTINCT, or without it.
  Consulta& distintos(bool si = true);
  /// A whole clause: "LEFT JOIN VEND V ON V.CVE = F.CVE_VEND".
  Consulta& join(const Texto& clausula);

  // --- Conditions.

  /// Conditions, all of which hold; see Grupo. Those of the groups in HAVING begin with `donde` too.
  Condicion<Consulta> donde(const Texto& campo) { return {*this, Where(), campo}; }
  Consulta& existe(const Sql& subconsulta) { return Where().existe(subconsulta), *this; }
  template <typename Llena>
  Consulta& alguna(Llena&& llena) {
    return Where().alguna(llena), *this;
  }
  template <typename Llena>
  Consulta& todas(Llena&& llena) {
    return Where().todas(llena), *this;
  }
  /// A condition of the program's own as it stands, joined to the others by AND (the definition's
  /// FilterTextPers). Only here: a group holds none.
  Consulta& sql(const Texto& condicion);

  /// Columns of GROUP BY; called again they are added.
  Consulta& agrupa(const Texto& columnas);
  /// Conditions of HAVING, on an expression of the groups; all of them hold.
  Condicion<Consulta> having(const Texto& expresion) { return {*this, Having(), expresion}; }
  template <typename Llena>
  Consulta& havingAlguna(Llena&& llena) {
    return Having().alguna(llena), *this;
  }
  /// Columns of ORDER BY; called again they are added.
  Consulta& ordena(const Texto& columnas);
  Consulta& ordenaDesc(const Texto& columna);

  /// The rows of `otra` too (UNION), after those of the queries joined before. It may have no order, which is
  /// this one's: EInvalidOperation.
  Consulta& unionCon(Consulta otra);

  // --- What comes of it.

  /// The statement with its parameters, marked in that style and counted after `numInicial`: ":var1", "?",
  /// "$1" or "@var1".
  Sentencia sentencia(ENUM_MARCADOR estilo = ENUM_MARCADOR::DOSPUNTOS, int numInicial = 0);
  /// The statement with its values as literals, to be read by people and tools. Raises EInvalidOperation,
  /// naming the condition, where a literal would be none or another value: contiene, empieza, termina, bool,
  /// texts in `entre`, texts with an apostrophe, numbers that are not finite, and types other than those of
  /// Valor's table. A database that reads "\" as an escape does so in these literals too.
  UnicodeString literal();

  /// Saves the query whole, and reads it: GuardaConsulta and LeeConsulta.
  void guarda(const Texto& archivo) const;
  static Consulta lee(const Texto& archivo, TiposDeDriver driver = TiposDeDriver::DEVARTINTERBASE);

  /// The definition itself, owned by this object and valid as long as it, moved or not. Who works with it
  /// includes Paramsql/TParametrosFiltro.h, which is left out here to spare the others its compile time.
  TParametrosFiltro& filtro() { return Definicion(); }
  /// The definition, to be read.
  const TParametrosFiltro& filtro() const;
  /// The definition, given away.
  std::unique_ptr<TParametrosFiltro> suelta() &&;

 private:
  TParametrosFiltro& Definicion();
  Grupo& Where();
  Grupo& Having() { return Definicion(), having_; }

  std::unique_ptr<TParametrosFiltro> definicion_;
  Grupo where_;
  Grupo having_;
};

}  // namespace vel::facil
