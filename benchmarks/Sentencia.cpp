// A statement against appending the same pieces by hand into a reserved string, and a query in words, from
// its first word to its text and values, against the builder's interface.

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "Paramsql/Paramsql.h"
#include "benchmarks/Medicion.h"
#include "facil/Consulta.h"
#include "framework/Numeros.h"

namespace {

using Op = vel::ENUM_OPERADOR;
using Tipo = vel::TFieldType;
using vel::UnicodeString;
using vel::Variant;
constexpr auto Y = vel::ENUM_CONECTOR::AND;
constexpr auto SIN = vel::ENUM_GRUPO::NADA;

void Arma(vel::TParametrosFiltro& f) {
  for (const char16_t* campo :
       {u"CVE_DOC", u"CVE_CLPV", u"NOMBRE", u"FECHA", u"IMPORTE", u"STATUS", u"SALDO", u"MONEDA"}) {
    f.AgregaCampoSelect(campo, u"", true);
  }
  f.AgregaJoin(u"JOIN CLIE C ON C.CVE=F.CVE_CLPV");
  f.AgregaJoin(u"LEFT JOIN VEND V ON V.CVE=F.CVE_VEND");
  for (int i = 0; i < 4; ++i) {
    f.AgregaFiltro(u"F.STATUS", Tipo::ftString, Variant(u"E"), Op::IGUAL, Y, SIN, true);
    f.AgregaFiltro(u"F.FECHA", Tipo::ftDateTime, Op::BETWEEN, Y, SIN, Variant(1.0), Variant(2.0));
    f.AgregaFiltro(u"C.NOMBRE", Tipo::ftString, Variant(u"PE_A%"), Op::LIKE, Y, SIN, false);
  }
  f.GroupBy = u"CVE_CLPV";
  f.AgregaHaving(u"SUM(IMPORTE)", Tipo::ftFloat, Variant(1.0), Op::MAYOR, Y, SIN, true);
  f.AgregaHaving(u"COUNT(*)", Tipo::ftInteger, Variant(1), Op::MAYOR, Y, SIN, true);
  f.AgregaUnion(u"FACTV01")->AgregaFiltro(u"IMPORTE", Tipo::ftFloat, Variant(1.0), Op::MAYOR, Y, SIN, true);
  f.SetOrderBy(u"NOMBRE");
}

// The pieces as one who knows the statement by heart appends them.
UnicodeString AMano() {
  UnicodeString s;
  s.reserve(1024);
  int n = 0;
  const auto var = [&s, &n](const char16_t* marca) {
    s += marca;
    s += vel::IntToStr(++n);
  };
  s += u"SELECT ";
  const char16_t* separador = u"";
  for (const char16_t* campo :
       {u"CVE_DOC", u"CVE_CLPV", u"NOMBRE", u"FECHA", u"IMPORTE", u"STATUS", u"SALDO", u"MONEDA"}) {
    s += separador;
    s += campo;
    separador = u",";
  }
  s += u" from ";
  s += u"FACTF01 F";
  s += u" ";
  s += u" ";
  s += u" JOIN CLIE C ON C.CVE=F.CVE_CLPV ";
  s += u" LEFT JOIN VEND V ON V.CVE=F.CVE_VEND ";
  s += u" WHERE (";
  for (int i = 0; i < 4; ++i) {
    s += u"F.STATUS";
    s += u"=";
    var(u":var");
    s += u" AND ";
    s += u" ( ";
    s += u"F.FECHA";
    s += u" BETWEEN ";
    var(u" :var");
    var(u" AND  :var");
    s += u" ) ";
    s += u" AND ";
    s += u"UPPER( ";
    s += u"C.NOMBRE";
    s += u") ";
    s += u" LIKE ";
    var(u" :var");
    s += u" ESCAPE '/' ";
    if (i < 3) s += u" AND ";
  }
  s += u") ";
  s += u" GROUP BY ";
  s += u"CVE_CLPV";
  s += u" HAVING ";
  s += u"SUM(IMPORTE)";
  s += u">";
  var(u":hav");
  s += u" AND ";
  s += u"COUNT(*)";
  s += u">";
  var(u":hav");
  s += u" UNION ";
  s += u"SELECT ";
  s += u" * ";
  s += u" from ";
  s += u"FACTV01";
  s += u" ";
  s += u" WHERE (";
  s += u"IMPORTE";
  s += u">";
  var(u":var");
  s += u") ";
  s += u" ORDER BY ";
  s += u"NOMBRE";
  return s;
}

// The same invoices of a user's filter both ways.
vel::facil::Sentencia EnPalabras() {
  vel::facil::Consulta c(u"FACTF01 F");
  c.campo(u"C.NOMBRE", u"CLIENTE").campo(u"COUNT(*)", u"DOCUMENTOS").campo(u"SUM(F.IMPORTE)", u"TOTAL");
  c.join(u"JOIN CLIENTES C ON C.CVE = F.CVE_CLPV").join(u"JOIN PRODUCTOS P ON P.CVE_ART = F.CVE_ART");
  c.donde(u"F.STATUS").igual(u"E");
  c.alguna([](auto& g) {
    g.donde(u"P.LINEA").en({u"FERRETERÍA", u"MUEBLES"});
    g.donde(u"F.IMPORTE").mayorIgual(700.0);
  });
  c.donde(u"F.FECHA").entre(vel::TDateTime(45383), vel::TDateTime(45443));
  c.donde(u"F.CVE_VEND").igual(7).donde(u"C.NOMBRE").contiene(u"50% /");
  c.agrupa(u"C.NOMBRE").having(u"SUM(F.IMPORTE)").mayor(500.0).ordenaDesc(u"3");
  return c.sentencia(vel::ENUM_MARCADOR::INTERROGACION);
}

vel::facil::Sentencia ConLaInterfaz() {
  constexpr auto O = vel::ENUM_CONECTOR::OR;
  const std::unique_ptr<vel::TParametrosFiltro> f(vel::CreaParametrosFiltro(u"FACTF01 F"));
  f->AgregaCampoSelect(u"C.NOMBRE", u"CLIENTE", true);
  f->AgregaCampoSelect(u"COUNT(*)", u"DOCUMENTOS", true);
  f->AgregaCampoSelect(u"SUM(F.IMPORTE)", u"TOTAL", true);
  f->AgregaJoin(u"JOIN CLIENTES C ON C.CVE = F.CVE_CLPV");
  f->AgregaJoin(u"JOIN PRODUCTOS P ON P.CVE_ART = F.CVE_ART");
  f->AgregaFiltro(u"F.STATUS", Tipo::ftString, Variant(u"E"), Op::IGUAL, Y, SIN, true);
  f->AgregaFiltro(u"P.LINEA", Tipo::ftString, Op::INN, O, vel::ENUM_GRUPO::INICIA, Variant(u"FERRETERÍA"),
                  Variant(u"MUEBLES"));
  f->AgregaFiltro(u"F.IMPORTE", Tipo::ftFloat, Variant(700.0), Op::MAYOR_IGUAL, Y, vel::ENUM_GRUPO::TERMINA,
                  true);
  f->AgregaFiltro(u"F.FECHA", Tipo::ftDateTime, Op::BETWEEN, Y, SIN, Variant(vel::TDateTime(45383)),
                  Variant(vel::TDateTime(45443)));
  f->AgregaFiltro(u"F.CVE_VEND", Tipo::ftInteger, Variant(7), Op::IGUAL, Y, SIN, true);
  f->AgregaFiltroLIKE(u"C.NOMBRE", u"50% /", vel::ENUM_COINCIDENCIA::CONTIENE, Y, SIN, false);
  f->GroupBy = u"C.NOMBRE";
  f->AgregaHaving(u"SUM(F.IMPORTE)", Tipo::ftFloat, Variant(500.0), Op::MAYOR, Y, SIN, true);
  f->OrderBy = u"3";
  f->OrdDesc = true;
  vel::facil::Sentencia s;
  s.texto = f->DameSentenciaSQL(vel::ENUM_MARCADOR::INTERROGACION, 0, s.parametros);
  return s;
}

}  // namespace

int main(int argc, char** argv) {
  vel::TParametrosFiltro filtro(u"FACTF01 F");
  Arma(filtro);
  medicion::Exige(filtro.DameSentenciaSQL(true, 0) == AMano(), "DameSentenciaSQL");
  const vel::facil::Sentencia palabras = EnPalabras();
  const vel::facil::Sentencia interfaz = ConLaInterfaz();
  medicion::Exige(
      palabras.texto == interfaz.texto && std::equal(palabras.parametros.begin(), palabras.parametros.end(),
                                                     interfaz.parametros.begin(), interfaz.parametros.end()),
      "Consulta");
  std::size_t largo = 0;
  const auto condiciones = [&largo](std::size_t n) {
    auto f = std::make_shared<vel::TParametrosFiltro>(u"T");
    for (std::size_t i = 0; i < n; ++i)
      f->AgregaFiltro(u"CAMPO", Tipo::ftInteger, Variant(7), Op::IGUAL, Y, SIN, true);
    return [f, &largo] { largo += f->DameSentenciaSQL(true, 0).size(); };
  };
  const auto elementos = [&largo](std::size_t n) {
    auto f = std::make_shared<vel::TParametrosFiltro>(u"T");
    f->AgregaFiltro(u"CAMPO", Tipo::ftInteger, vel::VarArrayOf(std::vector<Variant>(n, Variant(7))), Op::INN,
                    Y, SIN, true);
    return [f, &largo] { largo += f->DameSentenciaSQL(true, 0).size(); };
  };
  return medicion::Ejecuta(
      argc, argv,
      {{.nombre = "DameSentenciaSQL, 12 conditions",
        .propio = [&] { largo += filtro.DameSentenciaSQL(true, 0).size(); },
        .par = [&] { largo += AMano().size(); },
        .limite = 1.15,
        .nombrePar = "by hand"},
       {.nombre = "Consulta, 7 conditions, built and said",
        .propio = [&] { largo += EnPalabras().texto.size(); },
        .par = [&] { largo += ConLaInterfaz().texto.size(); },
        .limite = 1.1,
        .nombrePar = "AgregaFiltro"}},
      {{.nombre = "per condition", .tamanos = {100, 1'000, 10'000}, .prepara = condiciones, .limite = 1.2},
       {.nombre = "per element of an IN",
        .tamanos = {100, 1'000, 10'000},
        .prepara = elementos,
        .limite = 1.2}});
}
