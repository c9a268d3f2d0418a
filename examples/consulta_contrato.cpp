// The query of consulta.cpp on the builder's own interface, which the suite's programs are written on, and
// its values as they are bound: to compare.

#include <cstdio>
#include <memory>
#include <string>

#include "Paramsql/Paramsql.h"
#include "examples/Salida.h"

namespace {

using enum vel::ENUM_CONECTOR;
using enum vel::ENUM_GRUPO;
using Op = vel::ENUM_OPERADOR;
using Tipo = vel::TFieldType;
using vel::Variant;

// Invoices by customer: issued ones of some product lines or large ones, from April to May, of customers
// whose name holds what a user typed, with more than 500 in all; and the sales notes above 1,000.
void Arma(vel::TParametrosFiltro& filtro) {
  filtro.AgregaCampoSelect(u"C.NOMBRE", u"CLIENTE", true);
  filtro.AgregaCampoSelect(u"COUNT(*)", u"DOCUMENTOS", true);
  filtro.AgregaCampoSelect(u"SUM(F.IMPORTE)", u"TOTAL", true);
  filtro.AgregaJoin(u"JOIN CLIENTES C ON C.CVE = F.CVE_CLPV");
  filtro.AgregaJoin(u"JOIN PRODUCTOS P ON P.CVE_ART = F.CVE_ART");
  filtro.AgregaFiltro(u"F.STATUS", Tipo::ftString, Variant(u"E"), Op::IGUAL, AND, NADA, true);
  filtro.AgregaFiltro(u"P.LINEA", Tipo::ftString, Op::INN, OR, INICIA, Variant(u"FERRETERÍA"),
                      Variant(u"MUEBLES"));
  filtro.AgregaFiltro(u"F.IMPORTE", Tipo::ftFloat, Variant(700.0), Op::MAYOR_IGUAL, AND, TERMINA, true);
  filtro.AgregaFiltro(u"F.FECHA", Tipo::ftDateTime, Op::BETWEEN, AND, NADA,
                      Variant(vel::EncodeDate({2024, 4, 1})), Variant(vel::EncodeDate({2024, 5, 31})));
  filtro.AgregaFiltroLIKE(u"C.NOMBRE", u"ñ", vel::ENUM_COINCIDENCIA::CONTIENE, OR, INICIA, false);
  filtro.AgregaFiltroLIKE(u"C.NOMBRE", u"50% /", vel::ENUM_COINCIDENCIA::CONTIENE, OR, NADA, false);
  filtro.AgregaFiltroLIKE(u"C.NOMBRE", u"\"el á", vel::ENUM_COINCIDENCIA::CONTIENE, AND, TERMINA, false);
  filtro.GroupBy = u"C.NOMBRE";
  filtro.AgregaHaving(u"SUM(F.IMPORTE)", Tipo::ftFloat, Variant(500.0), Op::MAYOR, AND, NADA, true);
  vel::TParametrosFiltro* const notas = filtro.AgregaUnion(u"FACTV01 N");
  notas->AgregaCampoSelect(u"C.NOMBRE || ' (notas)'", u"CLIENTE", true);
  notas->AgregaCampoSelect(u"1", u"DOCUMENTOS", true);
  notas->AgregaCampoSelect(u"N.IMPORTE", u"TOTAL", true);
  notas->AgregaJoin(u"JOIN CLIENTES C ON C.CVE = N.CVE_CLPV");
  notas->AgregaFiltro(u"N.IMPORTE", Tipo::ftFloat, Variant(1000.0), Op::MAYOR, AND, NADA, true);
  // A union is ordered by the number of a column: not every database takes a name there. Twice is descending.
  filtro.SetOrderBy(u"3");
  filtro.SetOrderBy(u"3");
}

// What is bound: dates as the database has them.
vel::UnicodeString Texto(const vel::TParam& p) {
  const bool esFecha = p.Value.GetKind() == Variant::Kind::Date;
  return esFecha ? vel::DateTimeToISO(p.Value.AsDateTime(), p.DataType) : p.Value.AsString();
}

}  // namespace

int main(int argc, char** argv) {
  return ejemplo::Principal(argc, argv, [](const std::string& /*carpeta*/) {
    const std::unique_ptr<vel::TParametrosFiltro> filtro(vel::CreaParametrosFiltro(u"FACTF01 F"));
    Arma(*filtro);
    std::printf("Con parámetros:\n%s\n\n", vel::UTF8Encode(filtro->DameSentenciaSQL(true, 0)).c_str());
    vel::TParams parametros;
    filtro->AsignaParametros(parametros, 0);
    for (const vel::TParam& p : parametros) {
      std::printf("  :%s = %s\n", vel::UTF8Encode(p.Name).c_str(), vel::UTF8Encode(Texto(p)).c_str());
    }
  });
}
