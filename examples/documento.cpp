// Loads an invoice from its data packets, computes it and prints it: every figure comes from the library.

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "Ucalculocfdi/Ucalculocfdi.h"
#include "Uutilext/documents/Redondeo.h"
#include "examples/Salida.h"
#include "framework/Numeros.h"

namespace {

using ejemplo::Columna;
using ejemplo::Monto;

vel::TClientDataSet Carga(const std::string& carpeta, const std::string& nombre) {
  vel::TClientDataSet datos;
  datos.LoadFromXML(ejemplo::LeeArchivo(carpeta + "/" + nombre), vel::UTF8ToString(nombre));
  return datos;
}

// The lines one by one, each computed alone.
void ImprimePartidas(const vel::TClientDataSet& cabecera, const vel::TClientDataSet& partidas) {
  vel::TCalculoCFDI calculo(vel::ENUM_MODULO::MODULO_VENTAS, vel::ENUM_PROC_FACTCOMP::PROC_NORMAL,
                            vel::TIPO_DOCTO::TD_FACTURA);
  calculo.SetCabecera(cabecera);
  calculo.SetPartidas(partidas);
  vel::TClientDataSet& p = calculo.Partidas;
  std::printf("%s%s%s%s%s%s%s\n", Columna(u"Partida", 34).c_str(), Columna(u"Cantidad", -9).c_str(),
              Columna(u"Precio", -12).c_str(), Columna(u"Importe", -12).c_str(),
              Columna(u"Descuentos", -12).c_str(), Columna(u"IEPS", -12).c_str(),
              Columna(u"IVA", -12).c_str());
  for (p.First(); !p.Eof(); p.Next()) {
    for (std::size_t i = 0; i < 3; ++i) {
      calculo.PorcDescuento[i] = p.FieldByName(u"DESC" + vel::IntToStr(static_cast<int>(i) + 1)).AsFloat();
    }
    calculo.DescuentoPartida.fill(0);
    calculo.CalculaImpDescPar();
    double descuentos = 0;
    for (const double d : calculo.DescuentoPartida) descuentos += d;
    const auto real = [&p](std::u16string_view campo) { return p.FieldByName(campo).AsFloat(); };
    const double importe = vel::g_redoTo(real(u"CANT") * real(u"PREC") / real(u"TIP_CAM"), 6);
    std::printf("%s%s%s%s%s%s%s%s\n", Columna(p.FieldByName(u"DESCR").AsString(), 34).c_str(),
                Monto(real(u"CANT"), 9).c_str(), Monto(real(u"PREC")).c_str(), Monto(importe).c_str(),
                Monto(descuentos).c_str(), Monto(calculo.ImpuestoPartida[0]).c_str(),
                Monto(calculo.ImpuestoPartida[3]).c_str(),
                p.FieldByName(u"TIPO_ELEM").AsString() == u"K" ? "  (componente de kit: no cuenta)" : "");
  }
}

void ImprimeTotales(vel::TCalculoCFDI& calculo) {
  const char* const nombres[] = {"IEPS", "ISR retenido", "IVA retenido", "IVA"};
  for (int n = 1; n <= 4; ++n) {
    vel::TStringList* lista = nullptr;
    calculo.DameListImpuestos(lista, n);
    for (std::size_t i = 0; i < lista->Count(); ++i) {
      const auto& montos = dynamic_cast<const vel::TStringList&>(*lista->Objects(i));
      std::printf("  %-14s %s %%   base %s   impuesto %s\n", nombres[n - 1],
                  Columna(lista->Strings(i), -6).c_str(), Columna(montos[0], -14).c_str(),
                  Columna(montos[1], -14).c_str());
    }
  }
  std::printf("\n");
  const struct {
    const char* nombre;
    double valor;
  } totales[] = {{"Subtotal", calculo.Subtotal},
                 {"Descuento 1", calculo.GetTotalDescuento(0)},
                 {"Descuento 2", calculo.GetTotalDescuento(1)},
                 {"Descuento 3", calculo.GetTotalDescuento(2)},
                 {"Impuestos", calculo.TotalImpuestosRedondeado},
                 {"Total", calculo.TotalImpuestos}};
  for (const auto& t : totales) std::printf("  %-14s %s\n", t.nombre, Monto(t.valor, 14).c_str());
}

std::string Celda(const vel::TMontoFiscal& monto, int ancho = 12) { return Columna(monto.Texto(), -ancho); }

// What the electronic invoice prints: its parts add up to its total.
void ImprimeFactura(vel::TCalculoCFDI& calculo) {
  vel::TDatosFiscales datos;
  datos.DecimalesLinea = 4;
  // The quota of the 24 bottles is for their 14.4 litres.
  datos.Notas = {{.Renglon = 6, .Exento = {}, .Unidades = 14.4}};
  const vel::TResumenFiscal resumen(calculo, datos);
  std::printf("%s%s%s  %s%s%s%s\n", Columna(u"Renglón", 8).c_str(), Columna(u"Importe", -12).c_str(),
              Columna(u"Descuento", -12).c_str(), Columna(u"Impuesto", 22).c_str(),
              Columna(u"Base", -12).c_str(), Columna(u"Tasa/cuota", -12).c_str(),
              Columna(u"Impuesto", -12).c_str());
  const auto clase = [](std::u16string_view nombre, vel::ENUM_FACTOR_FISCAL factor) {
    return Columna(vel::UnicodeString(nombre) + u" " + vel::DameTipoFactor(factor), 22);
  };
  for (const vel::TPartidaFiscal& partida : resumen.Partidas) {
    std::string renglon = Columna(vel::IntToStr(static_cast<std::int64_t>(partida.Renglon)), 8) +
                          Celda(partida.Importe) + Celda(partida.Descuento);
    for (const vel::TImpuestoImpreso& i : partida.Impuestos) {
      std::printf("%s  %s%s%s%s\n", renglon.c_str(), clase(resumen.DameNombre(i), i.Factor).c_str(),
                  Celda(i.Base).c_str(), Celda(i.Tasa).c_str(), Celda(i.Importe).c_str());
      renglon = std::string(32, ' ');
    }
  }
  std::printf("\n  %-24s %s\n", "SubTotal", Celda(resumen.SubTotal, 14).c_str());
  std::printf("  %-24s %s\n", "- Descuento", Celda(resumen.Descuento, 14).c_str());
  for (const vel::TTrasladoFiscal& t : resumen.Traslados) {
    std::printf("  + %s %s   base %s, %s\n", clase(vel::DameClaveImpuesto(t.Impuesto), t.Factor).c_str(),
                Celda(t.Importe, 14).c_str(), Celda(t.Base).c_str(), vel::UTF8Encode(t.Tasa.Texto()).c_str());
  }
  std::printf("  %-24s %s\n", "= Total", Celda(resumen.Total, 14).c_str());
  std::printf("  Difiere %s del total del motor, que no lista la cuota de tasa 0.\n",
              vel::UTF8Encode(vel::TMontoFiscal{resumen.Diferencia.value_or(0), 2}.Texto()).c_str());
  for (const vel::TMotivoFiscal& m : resumen.Motivos)
    std::printf("  %s\n", vel::UTF8Encode(m.Mensaje).c_str());
}

}  // namespace

int main(int argc, char** argv) {
  return ejemplo::Principal(argc, argv, [](const std::string& carpeta) {
    const vel::TClientDataSet cabecera = Carga(carpeta, "documento_cabecera.xml");
    const vel::TClientDataSet partidas = Carga(carpeta, "documento_partidas.xml");
    std::printf("%s %s   %s   %s\n\n",
                vel::UTF8Encode(vel::DameTipoDoctoStr(vel::TIPO_DOCTO::TD_FACTURA, 1)).c_str(),
                vel::UTF8Encode(cabecera.FieldByName(u"CVE_DOC").AsString()).c_str(),
                vel::UTF8Encode(cabecera.FieldByName(u"FECHA").AsString()).c_str(),
                vel::UTF8Encode(cabecera.FieldByName(u"CLIENTE").AsString()).c_str());
    ImprimePartidas(cabecera, partidas);
    vel::TCalculoCFDI calculo(vel::ENUM_MODULO::MODULO_VENTAS, vel::ENUM_PROC_FACTCOMP::PROC_NORMAL,
                              vel::TIPO_DOCTO::TD_FACTURA);
    calculo.SetCabecera(cabecera);
    calculo.SetPartidas(partidas);
    calculo.CalculaTotales();
    std::printf("\nImpuestos por tasa\n");
    ImprimeTotales(calculo);
    std::printf("\nLo que imprime la factura\n");
    ImprimeFactura(calculo);
  });
}
