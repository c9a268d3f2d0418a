// Every kind of operation on objects with each of its allocations failed once: it is whole or nothing,
// destructors need no memory, and the operation works when there is memory again. What saves files is in
// tests/sistema/Fallas.cpp, and what leaves nothing of its own in tests/sistema/MemoriaDeTodas.cpp.

#include <functional>
#include <gtest/gtest.h>
#include <iostream>
#include <new>
#include <type_traits>

#include "Fechas/Fechas.h"
#include "Paramsql/Paramsql.h"
#include "Ucalculocfdi/Ucalculocfdi.h"
#include "Uformula/Uformula.h"
#include "Uutilext/Uutilext.h"
#include "facil/facil.h"
#include "framework/Columnas.h"
#include "framework/Numeros.h"
#include "framework/TRemotable.h"
#include "framework/TextoIni.h"
#include "platform/Archivos.h"
#include "tests/CarpetaTemporal.h"
#include "tests/internal/Asignador.h"

namespace vel {
namespace {

using pruebas::asignador;

struct Cuenta {
  int operaciones = 0;
  long puntos = 0;
  ~Cuenta() { std::cout << operaciones << " operations, " << puntos << " failed allocations\n"; }
} cuenta;

template <class Estado, class Hace>
UnicodeString Resultado(Estado& e, Hace& hace, bool& lanzo) {
  lanzo = false;
  try {
    if constexpr (std::is_void_v<std::invoke_result_t<Hace&, Estado&>>) {
      hace(e);
      return {};
    } else {
      const auto valor = hace(e);
      asignador.restan = 0;
      return Variant(valor).AsString();
    }
  } catch (const Exception& error) {
    asignador.restan = 0;
    lanzo = true;
    return u"error: " + error.Message();
  } catch (const std::bad_alloc&) {
    lanzo = true;
    return u"bad_alloc";
  }
}

// Each try has a state made anew, of which Ve tells all that a caller can see.
template <class Estado, class Hace>
void Prueba(const char* nombre, Hace hace) {
  SCOPED_TRACE(nombre);
  bool lanzo = false;
  Estado entero;
  const UnicodeString antes = entero.Ve();
  const UnicodeString esperado = Resultado(entero, hace, lanzo);
  const UnicodeString despues = entero.Ve();
  ++cuenta.operaciones;
  for (long n = 1;; ++n) {
    auto e = std::make_unique<Estado>();
    ASSERT_EQ(UTF8Encode(e->Ve()), UTF8Encode(antes));
    asignador.fallo = false;
    asignador.restan = n;
    const UnicodeString obtenido = Resultado(*e, hace, lanzo);
    asignador.restan = 0;
    if (!asignador.fallo) break;
    ++cuenta.puntos;
    const UnicodeString queda = e->Ve();
    if (obtenido != esperado || queda != despues) {
      EXPECT_TRUE(lanzo) << "allocation " << n << ": " << UTF8Encode(obtenido);
      EXPECT_EQ(UTF8Encode(queda), UTF8Encode(antes)) << "allocation " << n;
      EXPECT_EQ(UTF8Encode(Resultado(*e, hace, lanzo)), UTF8Encode(esperado)) << "again, after " << n;
      EXPECT_EQ(UTF8Encode(e->Ve()), UTF8Encode(despues)) << "again, after " << n;
    }
    asignador.agotado = true;
    e.reset();
    asignador.agotado = false;
    if (testing::Test::HasFailure()) return;
  }
}

UnicodeString Bytes(const std::string& bytes) { return {bytes.begin(), bytes.end()}; }

std::string Entrada(const std::string& nombre) { return std::string(DATOS_PRUEBA) + "/memoria/" + nombre; }

TClientDataSet Paquete(const std::string& nombre) {
  TClientDataSet datos;
  datos.LoadFromXML(LeeArchivo(UTF8ToString(Entrada(nombre))).value(), UTF8ToString(nombre));
  return datos;
}

// One folder for all.
const pruebas::CarpetaTemporal& Carpeta() {
  static const pruebas::CarpetaTemporal carpeta;
  return carpeta;
}

struct Consulta {
  Consulta() {
    for (TParametrosFiltro* filtro : {&f, &otra})
      filtro->LoadFromIni(UTF8ToString(Entrada("consulta.ini")), 0);
    otra.AgregaJoin(u"inner join OTRA O on O.CVE = C.CVE");
    f.NombreTabla = u"PROVEEDORES P";
    f.OrderBy = u"PROVEEDORES.CLAVE";
    f.DameSentenciaSQL(true, 0);
    Carpeta().Escribe("consulta.ini", "; mía\r\n[TABLAPIV]\r\nTABLA=ANTES\r\n");
  }
  UnicodeString Ve() {
    UnicodeString texto =
        Bytes(EscribeRemotableXML(f, u"filtro") + Carpeta().Lee("consulta.ini")) + IntToStr(numero);
    for (const TParam& p : parametros) texto += p.Name + u"=" + p.Value.AsString() + u";";
    return texto;
  }
  TParametrosFiltro f{u"CLIENTES C"}, otra{u"OTRA CONSULTA"};
  TParams parametros;
  int numero = 5;
  UnicodeString archivo = Carpeta().Archivo("consulta.ini");
};

TEST(SinMemoria, LeavesDefinitionsWhole) {
  using E = Consulta;
  constexpr auto kTexto = TFieldType::ftString;
  constexpr auto kY = ENUM_CONECTOR::AND;
  constexpr auto kNada = ENUM_GRUPO::NADA;
  Prueba<E>("AgregaFiltro", [](E& e) {
    e.f.AgregaFiltro(u"CLIENTES.CIUDAD", kTexto, u"Aguascalientes", ENUM_OPERADOR::IGUAL, kY, kNada, true);
  });
  Prueba<E>("AgregaFiltro, dos valores", [](E& e) {
    e.f.AgregaFiltro(u"CLIENTES.CIUDAD", kTexto, ENUM_OPERADOR::INN, kY, kNada, u"Aguascalientes",
                     u"Guadalajara");
  });
  Prueba<E>("AgregaFiltroStr", [](E& e) {
    e.f.AgregaFiltroStr(u"C.CIUDAD", u"1", u"\"'Aguascalientes','León'\"", u"IN", u"AND", u"(", true);
  });
  Prueba<E>("EliminaFiltro", [](E& e) { e.f.EliminaFiltro(u"CLIENTES.FECHA"); });
  Prueba<E>("AgregaFiltroLIKE",
            [](E& e) { e.f.AgregaFiltroLIKE(u"C.CIUDAD", u"100% de Aguascalientes", ENUM_COINCIDENCIA{1}); });
  Prueba<E>("AgregaHaving", [](E& e) {
    e.f.AgregaHaving(u"SUM(C.SALDO)", TFieldType::ftFloat, 1000.5, ENUM_OPERADOR::MAYOR);
  });
  Prueba<E>("AgregaHavingLIKE", [](E& e) {
    e.f.AgregaHavingLIKE(u"MAX(C.NOMBRE)", u"Un nombre más largo", ENUM_COINCIDENCIA{1});
  });
  Prueba<E>("EliminaJoin", [](E& e) { e.otra.EliminaJoin(u"inner join OTRA O on O.CVE = C.CVE"); });
  Prueba<E>("DameSentenciaSQL con sus parámetros",
            [](E& e) { return e.f.DameSentenciaSQL(ENUM_MARCADOR::INTERROGACION, 0, e.parametros); });
  Prueba<E>("EliminaFiltros", [](E& e) { e.f.EliminaFiltros(); });
  Prueba<E>("CopiaFiltros", [](E& e) { e.f.CopiaFiltros(e.otra.ParamWhere, 1); });
  Prueba<E>("AgregaFiltros", [](E& e) { e.f.AgregaFiltros(e.otra.ParamWhere); });
  Prueba<E>("AgregaCampoSelect",
            [](E& e) { e.f.AgregaCampoSelect(u"CLIENTES.RFC", u"Contribuyente", true); });
  Prueba<E>("CopiaCamposSelect", [](E& e) { e.f.CopiaCamposSelect(&e.otra); });
  Prueba<E>("AgregaJoin", [](E& e) { e.f.AgregaJoin(u"left join CIUDADES"); });
  Prueba<E>("CopiaJoin", [](E& e) { e.f.CopiaJoin(&e.otra); });
  Prueba<E>("AgregaUnion", [](E& e) { e.f.AgregaUnion(u"CLIENTES_NUEVOS N"); });
  Prueba<E>("SetOrderBy", [](E& e) { e.f.SetOrderBy(u"CLIENTES.NOMBRE, CLIENTES.CIUDAD, CLIENTES.SALDO"); });
  Prueba<E>("DameSentenciaSQL", [](E& e) { return e.f.DameSentenciaSQL(false, 0); });
  Prueba<E>("DameWhere", [](E& e) { return e.f.DameWhere(true, e.numero); });
  Prueba<E>("DameHaving", [](E& e) { return e.f.DameHaving(true, e.numero); });
  Prueba<E>("DameWhereBETWEEN", [](E& e) { return e.f.DameWhereBETWEEN(1, u"(", 1, &e.numero); });
  Prueba<E>("AsignaParametros", [](E& e) { e.f.AsignaParametros(e.parametros, 0); });
  const UnicodeString guardada = UTF8ToString(Entrada("consulta.ini"));
  Prueba<E>("LoadFromIni", [&](E& e) { e.f.LoadFromIni(guardada, 0); });
  Prueba<E>("LoadFromIni de una sección", [&](E& e) { e.f.LoadFromIni(guardada, u"FILTRO"); });
  Prueba<E>("LeeRemotableXML",
            [xml = EscribeRemotableXML(Consulta().otra, u"f")](E& e) { LeeRemotableXML(e.f, xml); });
}

struct EnPalabras {
  EnPalabras() {
    Carpeta().Escribe("consulta.ini", "; mía\r\n[Vista1]\r\nOrdenadoPor=ANTES\r\n");
    consulta.filtro().AgregaFiltro(u"CLIENTES.SALDO", TFieldType::ftInteger, 1, ENUM_OPERADOR::MAYOR,
                                   ENUM_CONECTOR::OR, ENUM_GRUPO::NADA, true);
    consulta.filtro().AgregaFiltro(u"CLIENTES.SALDO", TFieldType::ftInteger, 1, ENUM_OPERADOR::MENOR);
    consulta.ordenaDesc(u"CLIENTES.NOMBRE");
  }
  UnicodeString Ve() {
    return Bytes(EscribeRemotableXML(consulta.filtro(), u"f") + Carpeta().Lee("consulta.ini"));
  }
  facil::Consulta consulta{u"CLIENTES C"};
  UnicodeString archivo = Carpeta().Archivo("consulta.ini");
};

TEST(SinMemoria, LeavesQueriesInWordsWhole) {
  using E = EnPalabras;
  Prueba<E>("igual", [](E& e) { e.consulta.donde("CLIENTES.CIUDAD").igual("Aguascalientes"); });
  Prueba<E>("entre", [](E& e) { e.consulta.donde(u"CLIENTES.CIUDAD").entre("Aguascalientes", u"León"); });
  Prueba<E>("en", [](E& e) { e.consulta.donde(u"CLIENTES.CIUDAD").en({"Aguascalientes", "Guadalajara"}); });
  Prueba<E>("contiene", [](E& e) { e.consulta.donde("CLIENTES.CIUDAD").contiene("Aguascalientes"); });
  Prueba<E>("alguna", [](E& e) {
    e.consulta.alguna([](auto& g) {
      g.todas([](auto& h) {
        h.alguna([](auto& i) { i.donde(u"A").igual(1).donde(u"B").igual(2); });
        h.donde(u"CLIENTES.CIUDAD").empieza("Aguascalientes");
      });
      g.existe(facil::Sql("SELECT * FROM CLIENTES_NUEVOS"));
    });
  });
  Prueba<E>("sql", [](E& e) { e.consulta.sql("CLIENTES.SALDO > CLIENTES.LIMITE"); });
  Prueba<E>("campo", [](E& e) { e.consulta.campo("CLIENTES.RFC", "Contribuyente del impuesto"); });
  Prueba<E>("join", [](E& e) { e.consulta.join("LEFT JOIN CIUDADES D ON D.CVE = C.CIUDAD"); });
  Prueba<E>("having", [](E& e) { e.consulta.having("SUM(CLIENTES.SALDO)").mayor(1000.5); });
  Prueba<E>("agrupa", [](E& e) { e.consulta.agrupa("CLIENTES.CIUDAD, CLIENTES.ESTADO"); });
  Prueba<E>("literal", [](E& e) { return e.consulta.literal(); });
  Prueba<E>("ordena", [](E& e) { e.consulta.ordena("CLIENTES.CIUDAD, CLIENTES.SALDO"); });
  Prueba<E>("unionCon", [](E& e) { e.consulta.unionCon(facil::Consulta("CLIENTES_NUEVOS N")); });
  Prueba<E>("sentencia", [](E& e) { return e.consulta.sentencia().texto; });
  const UnicodeString guardada = Carpeta().Archivo("guardada.ini");
  facil::Consulta("CLIENTES_NUEVOS").ordena("SALDO").guarda(guardada);
  Prueba<E>("lee", [&](E& e) { e.consulta = facil::Consulta::lee(guardada); });
}

struct Datos {
  UnicodeString Ve() {
    UnicodeString texto = Bytes(d.SaveToXML()) + Variant(d.RecNo()).AsString();
    const conjunto::Estado& estado = conjunto::Estado::De(d);
    for (std::size_t i = 0; i < d.FieldCount(); ++i)
      texto += Variant(estado.ColumnaDe(i).conValor.size()).AsString();
    // Only a record under edit takes a value.
    try {
      d.FieldByName(u"CLAVE").SetValue(d.FieldByName(u"CLAVE").Value());
      return texto + u" en edición";
    } catch (const EDatabaseError&) {
      return texto;
    }
  }
  TClientDataSet d = Paquete("registros.xml"), distinto = Paquete("otros.xml");
};

struct DatosEnEdicion : Datos {
  DatosEnEdicion() {
    d.Edit();
    d.FieldByName(u"NOMBRE").SetAsString(u"Otro nombre, más largo que el anterior");
    d.FieldByName(u"PARTES").NestedDataSet()->EmptyDataSet();
  }
};

struct DatosEnAlta : Datos {
  DatosEnAlta() {
    d.Append();
    d.FieldByName(u"CLAVE").SetAsInteger(7);
  }
};

TEST(SinMemoria, LeavesDataSetsWhole) {
  using E = DatosEnEdicion;
  using A = DatosEnAlta;
  Prueba<Datos>("Edit", [](Datos& e) { e.d.Edit(); });
  Prueba<E>("Append", [](E& e) { e.d.Append(); });
  Prueba<E>("Post", [](E& e) { e.d.Post(); });
  Prueba<E>("Cancel", [](E& e) { e.d.Cancel(); });
  Prueba<A>("Cancel de un alta", [](A& e) { e.d.Cancel(); });
  Prueba<Datos>("CreateDataSet", [](Datos& e) {
    e.d.CreateDataSet({{.Name = u"UN_CAMPO_DE_NOMBRE_LARGO", .DataType = TFieldType::ftInteger}});
  });
  Prueba<Datos>("Delete", [](Datos& e) { e.d.Delete(); });
  Prueba<E>("EmptyDataSet", [](E& e) { e.d.EmptyDataSet(); });
  Prueba<E>("SetValue", [](E& e) { e.d.FieldByName(u"NOMBRE").SetValue(123456789.123456); });
  Prueba<E>("Clear", [](E& e) { e.d.FieldByName(u"NOMBRE").Clear(); });
  Prueba<E>("SetAsString",
            [](E& e) { e.d.FieldByName(u"NOMBRE").SetAsString(u"Un nombre más largo que los otros dos"); });
  Prueba<A>("NestedDataSet", [](A& e) { return e.d.FieldByName(u"PARTES").NestedDataSet()->FieldCount(); });
  Prueba<E>("AssignData", [](E& e) { e.d.AssignData(e.distinto); });
  Prueba<E>("AppendData", [](E& e) { e.d.AppendData(e.d); });
  Prueba<E>("AppendData de otros tipos", [](E& e) { e.d.AppendData(e.distinto); });
  Prueba<E>("Locate", [](E& e) { return e.d.Locate(u"CLAVE", UnicodeString(100, u'0') + u"1"); });
  Prueba<E>("SaveToXML", [](E& e) { return Bytes(e.d.SaveToXML()); });
  Prueba<A>("LoadFromXML",
            [paquete = Datos().d.SaveToXML()](A& e) { e.d.LoadFromXML(paquete, u"un paquete"); });
}

struct Textos {
  Textos() {
    lista.SetText(u"NOMBRE=Uno con un texto largo\nCIUDAD=Guadalajara\nSALDO=1");
    otra.SetText(u"CALLE=Insurgentes Sur 1602\nnombre=Dos con un texto largo\nA=1\nB=2\nC=3");
    lista.SetDuplicates(TDuplicates::dupError);
    condicion.ValorCampo = VarArrayOf({1, 2.5, true});
  }
  UnicodeString Ve() {
    UnicodeString texto = lista.Text() + otra.Text() + ini.Texto() +
                          Bytes(EscribeRemotableXML(condicion, u"c")) + IntToStr(codigo);
    for (const TParam& p : parametros) texto += p.Name + u"=" + p.Value.AsString();
    for (const UnicodeString& t : partes) texto += t + u"|";
    return texto;
  }
  TStringList lista, otra;
  TextoIni ini{u"[Sección]\r\nclave=valor\r\n; nota\r\n[Otra]\r\nclave=valor\r\n"};
  TParams parametros;
  TParamWhereSimple condicion;
  Variant valor = VarArrayOf({u"Primer elemento", VarArrayOf({1, u"Segundo elemento"})});
  std::vector<UnicodeString> partes{u"1", u"1111111111,2222222222,3333333333,4444444444", u"lo que había",
                                    u"antes", u""};
  int codigo = 5;
};

struct TextosEnOrden : Textos {
  TextosEnOrden() { lista.SetSorted(true); }
};

TEST(SinMemoria, LeavesListsAndTextsWhole) {
  using E = Textos;
  using O = TextosEnOrden;
  Prueba<O>("Add", [](O& e) { return e.lista.Add(u"CALLE=Insurgentes Sur 1602"); });
  Prueba<E>("SetValue", [](E& e) { e.lista.SetValue(u"CIUDAD", u"San Cristóbal de las Casas"); });
  Prueba<E>("Insert", [](E& e) { e.lista.Insert(1, u"CALLE=Insurgentes Sur 1602"); });
  Prueba<E>("Put", [](E& e) { e.lista.Put(1, u"CALLE=Insurgentes Sur 1602"); });
  Prueba<E>("AddObject", [](E& e) {
    return e.lista.AddObject(u"CALLE=Insurgentes Sur 1602", std::make_unique<TStringList>()) == 3;
  });
  Prueba<E>("Delete", [](E& e) { e.lista.Delete(1); });
  Prueba<E>("SetSorted", [](E& e) { e.lista.SetSorted(true); });
  Prueba<O>("SetStrings", [](O& e) {
    e.lista.SetStrings({u"CALLE=Insurgentes Sur 1602", u"CIUDAD=Otra ciudad"});
  });
  Prueba<E>("AddStrings que se entregan", [](E& e) { e.lista.AddStrings(std::move(e.otra)); });
  Prueba<E>("TextoIni::Pon",
            [](E& e) { e.ini.Pon(u"Sección", u"clave", u"Un valor más largo que el otro"); });
  Prueba<E>("TextoIni::Pon, otra sección",
            [](E& e) { e.ini.Pon(u"Una sección nueva", u"clave", u"Un valor"); });
  Prueba<E>("TextoIni::AgregaSeccion", [](E& e) {
    e.ini.AgregaSeccion(u"Una sección nueva",
                        {{u"clave", u"Un valor largo"}, {u"otra", u"Otro valor largo"}});
  });
  Prueba<E>("TextoIni::Borra", [](E& e) { e.ini.Borra(u"Sección"); });
  Prueba<E>("AddStrings", [](E& e) { e.lista.AddStrings(e.otra); });
  Prueba<O>("AddStrings en orden", [](O& e) { e.lista.AddStrings(e.otra); });
  Prueba<O>("AddStrings con repetidos", [](O& e) {
    e.lista.SetDuplicates(TDuplicates::dupAccept);
    e.lista.AddStrings(e.otra);
  });
  Prueba<O>("AddStrings que se rechaza", [](O& e) { e.lista.AddStrings(e.lista); });
  Prueba<O>("SetText",
            [](O& e) { e.lista.SetText(u"CALLE=Insurgentes Sur 1602\nA\nB\nC\nD=Otro texto largo"); });
  Prueba<E>("TParams::Add", [](E& e) {
    e.parametros.Add({u"parametro1", TFieldType::ftString, u"Un texto largo"});
  });
  Prueba<E>("Variant", [](E& e) { e.condicion.ValorCampo = e.valor; });
  Prueba<E>("DividirDireccion", [](E& e) {
    auto& p = e.partes;
    DividirDireccion(
        u"Calzada de la Independencia # 1602 poniente INT departamento 42 X Avenida Revolución Y Barranca",
        p[0], p[1], p[2], p[3], p[4]);
  });
  Prueba<E>("DividePoblacion", [](E& e) {
    auto& p = e.partes;
    DividePoblacion(u"San Miguel de Allende,estado de Guanajuato,en la República", p[0], p[1], p[2], p[3]);
  });
  Prueba<E>("DivideCadena", [](E& e) { DivideCadena(e.partes[0], e.partes[1], 40); });
  Prueba<E>("LanzaThrow", [](E& e) { LanzaThrow(u"Un mensaje para el usuario", e.codigo); });
}

struct Formula {
  Formula() {
    f.SetVariables(variables);
    enlazada.Asigna(7);
    f.NewFormula(u"SI(VENTAS_DEL_MES>=META,(VENTAS_DEL_MES-META)*TASA*OTRA_VENTA,SUMA(1,2,3))+META");
    f.CreaFuncionN(u"META-TASA");
    variables.SetText(u"META=2\nTASA=3\nUNA_VARIABLE_NUEVA=4\nOTRA_VARIABLE_NUEVA=5");
  }
  UnicodeString Ve() {
    UnicodeString texto = f.Texto() + u"|" + f.Tokens().Text();
    for (std::size_t i = 0; i < f.Nodos(); ++i)
      texto += f.Nodo(i).izquierdo + f.Nodo(i).operador + f.Nodo(i).derecho;
    for (std::size_t i = 0; i < f.Internas(); ++i)
      texto += f.Interna(i).nombre + f.Interna(i).argumentos.Text();
    for (const char16_t* nombre : {u"META", u"TASA", u"XYZ1"}) texto += f.RemplazaVariables(nombre) + u";";
    try {
      return texto + FloatToStr(f.Execute());
    } catch (const Exception& e) {
      return texto + e.Message();
    }
  }
  static constexpr std::u16string_view kVariables = u"VENTAS_DEL_MES=12000\nMETA=10000\nTASA=0.05\nXYZ1=8";
  TFormula f;
  TVariableEnlazada enlazada = f.EnlazaVariable(u"OTRA_VENTA");
  TStringList variables = Lineas(kVariables);
  static TStringList Lineas(std::u16string_view texto) {
    TStringList lista;
    lista.SetText(texto);
    return lista;
  }
};

struct FormulaConValores : Formula {
  // The same names; texts that need memory, to be kept and to be read.
  FormulaConValores() {
    variables = Lineas(u"VENTAS_DEL_MES=" + UnicodeString(70, u'1') + u"\nMETA=" + UnicodeString(40, u'2') +
                       u"\nTASA=" + UnicodeString(80, u'3') + u"x\nXYZ1=9");
  }
};

TEST(SinMemoria, LeavesFormulasWhole) {
  using E = Formula;
  UnicodeString larga = u"XYZ(1\t)-(META\t)*2";
  UnicodeString plana = u"META<>-4";
  for (int i = 0; i < 40; ++i) {
    larga = u"SUMA(" + larga + u"/3,TASA)+1";
    plana += u"-VENTAS_DEL_MES*7";
  }
  Prueba<E>("NewFormula", [&](E& e) { e.f.NewFormula(larga); });
  Prueba<E>("NewFormula que no se evalúa",
            [](E& e) { e.f.NewFormula(u"(META+DESCONOCIDA)*2+(META-1)*(META-2)"); });
  Prueba<E>("SetVariables", [](E& e) { e.f.SetVariables(e.variables); });
  Prueba<FormulaConValores>("SetVariables, valores",
                            [](FormulaConValores& e) { e.f.SetVariables(e.variables); });
  Prueba<E>("EnlazaVariable", [](E& e) { e.f.EnlazaVariable(u"VENTAS_DEL_MES").Asigna(3); });
  Prueba<E>("Ejecuta por columnas", [](E& e) {
    const double ventas[] = {1, 1e308, 3};
    double salida[3];
    const TColumnaFormula columna{e.enlazada, ventas};
    UnicodeString todo;
    for (const TFallaRenglon& f : e.f.Ejecuta({&columna, 1}, salida)) todo += f.Mensaje;
    return todo + FloatToStr(salida[2]);
  });
  Prueba<E>("DameFuncionN", [&](E& e) { return e.f.DameFuncionN(plana); });
  Prueba<E>("CreaFuncionN", [](E& e) { e.f.CreaFuncionN(u"VENTAS_DEL_MES+OTRA_VENTA"); });
  Prueba<E>("FormateaFormula", [&](E& e) { return e.f.FormateaFormula(larga); });
  Prueba<E>("RemplazaVariables", [](E& e) { return e.f.RemplazaVariables(u"VENTAS_DEL_MES"); });
  Prueba<E>("CreaFuncionInterna", [](E& e) { return e.f.CreaFuncionInterna(u"suma", u"META,TASA,FUN1"); });
}

struct Documento {
  Documento() {
    c.SetPartidas(lineas);
    c.CalculaTotales();
    // A rate that the lists do not have yet.
    c.Partidas.Edit();
    c.Partidas.FieldByName(u"IMPU2").SetAsFloat(5);
  }
  UnicodeString Ve() {
    UnicodeString texto = Bytes(c.Cabecera.SaveToXML() + c.Partidas.SaveToXML());
    for (const double m :
         {c.Subtotal, c.TotalImpuestos, c.ImpuestoPartida[0], c.TotalImpuesto[0], c.TotalImpuesto[1]})
      texto += FloatToStr(m) + u";";
    for (const TStringList& lista : c.ListaImpuesto) {
      for (std::size_t i = 0; i < lista.Count(); ++i)
        texto += lista[i] + u":" + dynamic_cast<const TStringList&>(*lista.Objects(i)).Text();
    }
    return texto;
  }
  TCalculoCFDI c{ENUM_MODULO::MODULO_VENTAS, ENUM_PROC_FACTCOMP::PROC_NORMAL, TIPO_DOCTO::TD_FACTURA};
  TClientDataSet lineas = Paquete("partidas.xml");
};

struct EnPartes {
  UnicodeString Ve() { return Bytes(resumen.DameJson()); }
  TResumenFiscal resumen =
      facil::Documento({{.Precio = 99.99, .Iva = 16, .RetencionIsr = 10}, {.Precio = 33.333333, .Iva = 16}})
          .Resumen();
};

TEST(SinMemoria, LeavesDocumentsWhole) {
  using E = Documento;
  Prueba<E>("SetCabecera", [](E& e) { e.c.SetCabecera(e.lineas); });
  Prueba<E>("SetPartidas", [](E& e) { e.c.SetPartidas(e.lineas); });
  Prueba<E>("CalculaTotales", [](E& e) { e.c.CalculaTotales(); });
  Prueba<E>("CalculaImpDescPar", [](E& e) { e.c.CalculaImpDescPar(); });
  Prueba<E>("facil::Documento", [](E& e) {
    const facil::Documento enPalabras(
        {{.Precio = 100, .Iva = 16, .RetencionIsr = 10, .Locales = {{"ISH", 3}}}});
    const facil::Documento conjunto(e.lineas);
    return FloatToStr(enPalabras.PorTasa().back().Importe) + enPalabras.Resumen().Total.Texto() +
           facil::MontoEnLetra(conjunto.Total()) + IntToStr(static_cast<int>(conjunto.Avisos().size()));
  });
  Prueba<E>("LlenaListImpuestos", [](E& e) { e.c.LlenaListImpuestos(123.456789, 10.6666667, 13.1, 2); });
  Prueba<E>("TResumenFiscal", [](E& e) { return Bytes(TResumenFiscal(e.c).DameJson()); });
  Prueba<EnPartes>("Totaliza", [](EnPartes& e) { e.resumen.Totaliza(); });
  Prueba<EnPartes>("AjustaCentavos", [](EnPartes& e) {
    return AjustaCentavos(e.resumen, {e.resumen.Total.Unidades + 1, e.resumen.Total.Decimales})
               .Movimientos.size() > 0;
  });
}

struct Instalacion {
  Instalacion() {
    for (const auto& vieja : std::filesystem::directory_iterator(c.Ruta()))
      std::filesystem::remove_all(vieja);
    c.Instala();
    c.Escribe("fechas.ini", "[FECHAS]\r\nTOTAL=1\r\nFch0=Este mes del año,1/0/0,31/0/0\r\n");
    rangos = std::make_unique<TConfigVEL>(ini, TDateTime(45427));
    c.Escribe("fechas.ini", "[FECHAS]\r\nTOTAL=1\r\nFch0=El año que pasó entero,1/1/-1,31/12/-1\r\n");
    std::filesystem::copy_file(Entrada("Empresas.xml"), c.Motor() / "Empresas.xml");
    std::filesystem::copy_file(Entrada("../catalogo/EtiqVEL.xml"), c.Motor() / "EtiqVEL.xml");
    lista.Add(u"Lo que había en la lista");
    datos.CreateDataSet({{.Name = u"LO_QUE_HABIA", .DataType = TFieldType::ftInteger}});
  }
  UnicodeString Ve() {
    return lista.Text() + texto + Bytes(datos.SaveToXML()) + rangos->Nombres(0) +
           rangos->FechaComoString(0, 1);
  }
  const pruebas::CarpetaTemporal& c = Carpeta();
  std::unique_ptr<TConfigVEL> rangos;
  TStringList lista;
  UnicodeString texto = u"Lo que había en el texto";
  TClientDataSet datos;
  UnicodeString ini = c.Archivo("fechas.ini");
  UnicodeString catalogo = (c.Motor() / "Empresas.xml").u16string();
};

TEST(SinMemoria, LeavesWhatIsReadFromFilesWhole) {
  using E = Instalacion;
  Prueba<E>("TConfigVEL::Inicio", [](E& e) { e.rangos->Inicio(); });
  Prueba<E>("DameValoresSeccion", [](E& e) { DameValoresSeccion(e.ini, u"FECHAS", e.lista); });
  Prueba<E>("DameDatosDeSeccion", [](E& e) { DameDatosDeSeccion(e.ini, u"FECHAS", e.lista); });
  Prueba<E>("DameListaConexiones", [](E& e) { DameListaConexiones(e.ini, e.lista); });
  Prueba<E>("LoadFromFile", [](E& e) { e.datos.LoadFromFile(e.catalogo); });
  Prueba<E>("DameEmpresasVEL", [](E& e) { DameEmpresasVEL(e.lista); });
  Prueba<E>("DameRutaTrabajoEmpresa", [](E& e) { return DameRutaTrabajoEmpresa(u"1", e.texto); });
  Prueba<E>("LeeXMLCamposTablasSistema",
            [](E& e) { return LeeXMLCamposTablasSistema(u"CLIENTES", e.lista, true); });
  Prueba<E>("CertGetFechaHora", [](E& e) {
    return CertGetFechaHora(UTF8ToString(Entrada("../crypto/sello.cer")), true, e.texto);
  });
}

}  // namespace
}  // namespace vel
