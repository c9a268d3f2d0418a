// utilvel totales: taxes by rate and totals of a document in data packets.

#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "Ucalculocfdi/Ucalculocfdi.h"
#include "Uutilext/documents/TiposDocto.h"
#include "framework/Numeros.h"
#include "framework/TClientDataSet.h"
#include "tools/utilvel/Argumentos.h"
#include "tools/utilvel/Comandos.h"
#include "tools/utilvel/Entrada.h"
#include "tools/utilvel/Errores.h"
#include "tools/utilvel/Filas.h"
#include "tools/utilvel/Programa.h"
#include "tools/utilvel/Textos.h"

namespace utilvel {
namespace {

struct Opciones {
  std::string partidas;
  std::string cabecera;
  std::string modulo = "ventas";
  OpcionesFilas filas;
};

// What the taxes 1 to 8 of a line are.
constexpr std::array<std::string_view, vel::TCalculoCFDI::kImpuestos> kImpuestos = {
    "IEPS", "ISR retenido", "IVA retenido", "IVA", "Impuesto 5", "Impuesto 6", "Impuesto 7", "Impuesto 8"};

vel::TClientDataSet Carga(const std::string& ruta) {
  vel::TClientDataSet datos;
  datos.LoadFromXML(LeeTodo(ruta), ATexto(ruta == "-" ? "la entrada estándar" : ruta));
  return datos;
}

// Key, date and customer of the header, as far as it has them.
std::string Titulo(const vel::TClientDataSet& cabecera) {
  std::string titulo;
  for (const char16_t* campo : {u"CVE_DOC", u"FECHA", u"CLIENTE"}) {
    const vel::TField* const f = cabecera.FindField(campo);
    if (f == nullptr) continue;
    titulo += (titulo.empty() ? "" : "   ") + vel::UTF8Encode(vel::TrimView(f->AsString()));
  }
  return titulo;
}

vel::ENUM_MODULO Modulo(const std::string& nombre) {
  return nombre == "compras" ? vel::ENUM_MODULO::MODULO_COMPRAS : vel::ENUM_MODULO::MODULO_VENTAS;
}

void AgregaImpuestos(Filas& filas, vel::TCalculoCFDI& calculo) {
  for (int n = 1; n <= vel::TCalculoCFDI::kImpuestos; ++n) {
    vel::TStringList* lista = nullptr;
    calculo.DameListImpuestos(lista, n);
    for (std::size_t i = 0; i < lista->Count(); ++i) {
      const auto& montos = dynamic_cast<const vel::TStringList&>(*lista->Objects(i));
      filas.Agrega({std::string(kImpuestos[static_cast<std::size_t>(n - 1)]),
                    vel::UTF8Encode(lista->Strings(i)), Importe(vel::StrToFloat(montos[0])),
                    Importe(vel::StrToFloat(montos[1]))});
    }
  }
}

Codigo Corre(const Opciones& o) {
  if (o.partidas == "-" && o.cabecera == "-") {
    throw Falla(Codigo::Uso, "Solo uno de los dos archivos puede venir de la entrada estándar");
  }
  vel::TCalculoCFDI calculo(Modulo(o.modulo), vel::ENUM_PROC_FACTCOMP::PROC_NORMAL,
                            vel::TIPO_DOCTO::TD_FACTURA);
  calculo.SetPartidas(Carga(o.partidas));
  std::string titulo;
  if (!o.cabecera.empty()) {
    calculo.SetCabecera(Carga(o.cabecera));
    titulo = Titulo(calculo.Cabecera);
  }
  calculo.CalculaTotales();
  Filas filas(o.filas, {{"concepto"},
                        {"tasa", TipoColumna::Monto},
                        {"base", TipoColumna::Monto},
                        {"importe", TipoColumna::Monto}});
  if (!titulo.empty()) filas.Titulo(titulo);
  AgregaImpuestos(filas, calculo);
  const std::pair<const char*, double> totales[] = {{"Subtotal", calculo.Subtotal},
                                                    {"Descuento 1", calculo.GetTotalDescuento(0)},
                                                    {"Descuento 2", calculo.GetTotalDescuento(1)},
                                                    {"Descuento 3", calculo.GetTotalDescuento(2)},
                                                    {"Impuestos", calculo.TotalImpuestosRedondeado},
                                                    {"Total", calculo.TotalImpuestos}};
  for (const auto& [concepto, importe] : totales) filas.Agrega({concepto, {}, {}, Importe(importe)});
  filas.Termina();
  return Codigo::Bien;
}

}  // namespace

void AgregaTotales(Programa& programa) {
  const auto o = std::make_shared<Opciones>();
  CLI::App& comando = programa.Agrega(
      {.nombre = "totales",
       .resumen = "Impuestos por tasa y totales de un documento",
       .detalle =
           "Las partidas y la cabecera son paquetes de datos XML de la administradora. Los totales son los "
           "que calcula al guardar el documento.",
       .ejemplos = {{"utilvel totales documento_partidas.xml --cabecera documento_cabecera.xml",
                     "Totales de una factura."},
                    {"utilvel totales documento_partidas.xml --json",
                     "Lo mismo para otro programa, sin la cabecera."}}},
      [o] { return Corre(*o); });
  AgregaArgumento(comando, "PARTIDAS", o->partidas, "Paquete con las partidas").Exige();
  AgregaArgumento(comando, "--cabecera", o->cabecera, "Paquete con la cabecera, que da el título")
      .Toma("ARCHIVO");
  AgregaArgumento(comando, "--modulo", o->modulo, "Módulo del documento: ventas (si no se dice) o compras")
      .Toma("MODULO")
      .Revisa([](const std::string& m) {
        return m == "ventas" || m == "compras" ? "" : "El módulo es ventas o compras, no " + m;
      });
  AgregaOpcionesFilas(comando, o->filas);
}

}  // namespace utilvel
