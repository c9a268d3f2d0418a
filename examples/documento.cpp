// Loads an invoice from its data packets, computes it and prints it: every figure comes from the library.

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <utility>

#include "examples/Salida.h"
#include "facil/facil.h"
#include "framework/Numeros.h"

namespace {

using ejemplo::Columna;
using vel::facil::Documento;
using vel::facil::FormateaMonto;
using vel::facil::ImpuestoPorTasa;
using vel::facil::MontoEnLetra;

std::string Monto(double valor, int ancho = 12) { return Columna(FormateaMonto(valor), -ancho); }

vel::TClientDataSet Carga(const std::string& carpeta, const std::string& nombre) {
  vel::TClientDataSet datos;
  datos.LoadFromXML(ejemplo::LeeArchivo(carpeta + "/" + nombre), vel::UTF8ToString(nombre));
  return datos;
}

// The lines one by one, each computed alone.
void ImprimePartidas(const Documento& factura, vel::TClientDataSet& partidas) {
  std::printf("%s%s%s%s%s%s%s\n", Columna(u"Partida", 34).c_str(), Columna(u"Cantidad", -9).c_str(),
              Columna(u"Precio", -12).c_str(), Columna(u"Importe", -12).c_str(),
              Columna(u"Descuentos", -12).c_str(), Columna(u"IEPS", -12).c_str(),
              Columna(u"IVA", -12).c_str());
  const vel::TField& descripcion = partidas.FieldByName(u"DESCR");
  partidas.First();
  for (const vel::facil::PartidaCalculada& p : factura.Partidas()) {
    double descuentos = 0;
    for (const double d : p.Montos.Descuento) descuentos += d;
    std::printf("%s%s%s%s%s%s%s%s\n", Columna(descripcion.AsString(), 34).c_str(),
                Monto(p.Datos.Cantidad, 9).c_str(), Monto(p.Datos.Precio).c_str(),
                Monto(p.Montos.Importe).c_str(), Monto(descuentos).c_str(),
                Monto(p.Montos.Impuesto[0]).c_str(), Monto(p.Montos.Impuesto[3]).c_str(),
                p.Cuenta ? "" : "  (componente de kit: no cuenta)");
    partidas.Next();
  }
}

void ImprimeTotales(const Documento& factura) {
  for (const ImpuestoPorTasa& i : factura.PorTasa()) {
    std::printf("  %-14s %s %%   base %s   impuesto %s\n", vel::UTF8Encode(i.Nombre).c_str(),
                Columna(vel::FloatToStr(i.Tasa), -6).c_str(), Monto(i.Base, 14).c_str(),
                Monto(i.Importe, 14).c_str());
  }
  std::printf("\n");
  const std::pair<const char*, double> totales[] = {{"Subtotal", factura.Subtotal()},
                                                    {"Descuentos", factura.Descuentos()},
                                                    {"Trasladados", factura.ImpuestosTrasladados()},
                                                    {"Retenidos", factura.ImpuestosRetenidos()},
                                                    {"Total", factura.Total()}};
  for (const auto& [nombre, valor] : totales) std::printf("  %-14s %s\n", nombre, Monto(valor, 14).c_str());
  for (const vel::UnicodeString& aviso : factura.Avisos())
    std::printf("  %s\n", vel::UTF8Encode(aviso).c_str());
}

std::string Celda(const vel::TMontoFiscal& monto, int ancho = 12) { return Columna(monto.Texto(), -ancho); }

// What the electronic invoice prints: its parts add up to its total.
void ImprimeFactura(const Documento& factura) {
  const vel::TResumenFiscal resumen = factura.Resumen({.DecimalesLinea = 4});
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
  std::printf("  %s\n", vel::UTF8Encode(MontoEnLetra(resumen.Total)).c_str());
  std::printf("  Difiere %s del total del motor.\n",
              vel::UTF8Encode(FormateaMonto(vel::TMontoFiscal{resumen.Diferencia.value_or(0), 2})).c_str());
  for (const vel::TMotivoFiscal& m : resumen.Motivos)
    std::printf("  %s\n", vel::UTF8Encode(m.Mensaje).c_str());
}

// An invoice without packets: lines in words.
void ImprimeHonorarios() {
  const Documento factura({{.Precio = 1234.56, .Iva = 16, .RetencionIsr = 10, .RetencionIva = 10.6667},
                           {.Cantidad = 3, .Precio = 1500, .Descuentos = {10}, .Iva = 16}});
  for (const ImpuestoPorTasa& i : factura.PorTasa()) {
    std::printf("  %s %s %s %%: %s\n", i.Retenido ? "-" : "+", vel::UTF8Encode(i.Nombre).c_str(),
                vel::UTF8Encode(vel::FloatToStr(i.Tasa)).c_str(), Monto(i.Importe).c_str());
  }
  std::printf("  %s\n", vel::UTF8Encode(MontoEnLetra(factura.Total())).c_str());
}

}  // namespace

int main(int argc, char** argv) {
  return ejemplo::Principal(argc, argv, [](const std::string& carpeta) {
    const vel::TClientDataSet cabecera = Carga(carpeta, "documento_cabecera.xml");
    vel::TClientDataSet partidas = Carga(carpeta, "documento_partidas.xml");
    // The quota of the 24 bottles is for their 14.4 litres.
    const Documento factura(partidas, {.Notas = {{.Renglon = 6, .Unidades = 14.4}}});
    std::printf("%s %s   %s   %s\n\n",
                vel::UTF8Encode(vel::DameTipoDoctoStr(vel::TIPO_DOCTO::TD_FACTURA, 1)).c_str(),
                vel::UTF8Encode(cabecera.FieldByName(u"CVE_DOC").AsString()).c_str(),
                vel::UTF8Encode(cabecera.FieldByName(u"FECHA").AsString()).c_str(),
                vel::UTF8Encode(cabecera.FieldByName(u"CLIENTE").AsString()).c_str());
    ImprimePartidas(factura, partidas);
    std::printf("\nImpuestos por tasa\n");
    ImprimeTotales(factura);
    std::printf("\nLo que imprime la factura\n");
    ImprimeFactura(factura);
    std::printf("\nHonorarios, sin paquetes de datos\n");
    ImprimeHonorarios();
  });
}
