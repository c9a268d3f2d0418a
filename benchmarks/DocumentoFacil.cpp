// A document through the front against the same one on the engine's own interface, as a careful program
// writes it: fields looked up once for all lines.

#include <bit>
#include <cstdint>
#include <initializer_list>
#include <random>
#include <vector>

#include "benchmarks/Medicion.h"
#include "facil/Documento.h"
#include "framework/Numeros.h"

namespace {

using vel::facil::Documento;
using vel::facil::ImpuestoPorTasa;
using vel::facil::Partida;

constexpr auto kVentas = vel::ENUM_MODULO::MODULO_VENTAS;
constexpr std::size_t kLineas = 30;

/// What a program reads of a document: its totals, and base and tax of each rate.
using Cifras = std::vector<double>;

/// Lines of an invoice with IVA alone, or with IEPS below it and a withholding too, which the engine's lists
/// tell less of than the front does.
std::vector<Partida> Sortea(bool conTodo) {
  std::mt19937 azar(11);
  std::vector<Partida> partidas;
  for (std::size_t r = 0; r < kLineas; ++r) {
    Partida& p = partidas.emplace_back();
    p.Cantidad = static_cast<double>(1 + azar() % 10'000) / 100;
    p.Precio = static_cast<double>(azar() % 1'000'000'000) / 1e6;
    p.Descuentos = {static_cast<double>(azar() % 20), 2.5, 0};
    p.Iva = azar() % 4 == 0 ? 8 : 16;
    if (!conTodo) continue;
    if (azar() % 3 == 0) p.Ieps = 26.5;
    p.RetencionIsr = 10;
  }
  return partidas;
}

vel::TClientDataSet Llena(const std::vector<Partida>& partidas) {
  std::vector<vel::TFieldDef> defs;
  for (const char16_t* texto : {u"CVE_DOC", u"TIPO_PROD", u"TIPO_ELEM", u"MUESTRA_PAR", u"MAN_IEPS"})
    defs.push_back({.Name = texto, .DataType = vel::TFieldType::ftString, .Size = 20});
  for (const char16_t* real :
       {u"CANT", u"PREC", u"TIP_CAM", u"DESC1", u"DESC2", u"DESC3", u"IMPU1", u"IMPU2", u"IMPU3", u"IMPU4"})
    defs.push_back({.Name = real, .DataType = vel::TFieldType::ftFloat});
  for (const char16_t* codigo : {u"IMP1APLA", u"IMP2APLA", u"IMP3APLA", u"IMP4APLA"})
    defs.push_back({.Name = codigo, .DataType = vel::TFieldType::ftInteger});
  vel::TClientDataSet datos;
  datos.CreateDataSet(defs);
  const auto campo = [&datos](const char16_t* nombre) -> vel::TField& { return datos.FieldByName(nombre); };
  vel::TField &cantidad = campo(u"CANT"), &precio = campo(u"PREC"), &cambio = campo(u"TIP_CAM");
  vel::TField &uno = campo(u"DESC1"), &dos = campo(u"DESC2"), &tres = campo(u"DESC3");
  vel::TField &ieps = campo(u"IMPU1"), &isr = campo(u"IMPU2"), &retenido = campo(u"IMPU3"),
              &iva = campo(u"IMPU4");
  vel::TField &sobreIeps = campo(u"IMP1APLA"), &sobreIsr = campo(u"IMP2APLA");
  vel::TField &sobreRetenido = campo(u"IMP3APLA"), &sobreIva = campo(u"IMP4APLA");
  for (const Partida& p : partidas) {
    datos.Append();
    cantidad.SetAsFloat(p.Cantidad);
    precio.SetAsFloat(p.Precio);
    cambio.SetAsFloat(p.TipoCambio);
    uno.SetAsFloat(p.Descuentos[0]);
    dos.SetAsFloat(p.Descuentos[1]);
    tres.SetAsFloat(p.Descuentos[2]);
    ieps.SetAsFloat(p.Ieps.value_or(0));
    isr.SetAsFloat(-p.RetencionIsr.value_or(0));
    retenido.SetAsFloat(0);
    iva.SetAsFloat(*p.Iva);
    sobreIeps.SetAsInteger(p.Ieps ? 0 : 6);
    sobreIsr.SetAsInteger(0);
    sobreRetenido.SetAsInteger(6);
    sobreIva.SetAsInteger(p.Ieps ? 1 : 0);
    datos.Post();
  }
  return datos;
}

void Anota(Cifras& cifras, std::initializer_list<double> valores) { cifras.insert(cifras.end(), valores); }

void AnotaTotales(Cifras& cifras, const vel::TCalculoCFDI& m) {
  Anota(cifras, {m.Subtotal, m.SumaDescuentos, m.TotalImpuestosRedondeado, m.TotalImpuestos});
}

Cifras Directo(const vel::TClientDataSet& datos, bool porTasa) {
  vel::TCalculoCFDI motor(kVentas, vel::ENUM_PROC_FACTCOMP::PROC_NORMAL, vel::TIPO_DOCTO::TD_FACTURA);
  motor.SetPartidas(datos);
  motor.CalculaTotales();
  Cifras cifras;
  AnotaTotales(cifras, motor);
  for (int n = 1; porTasa && n <= vel::TCalculoCFDI::kImpuestos; ++n) {
    vel::TStringList* lista = nullptr;
    motor.DameListImpuestos(lista, n);
    for (std::size_t i = 0; i < lista->Count(); ++i) {
      const auto& montos = dynamic_cast<const vel::TStringList&>(*lista->Objects(i));
      Anota(cifras,
            {vel::StrToFloat(lista->Strings(i)), vel::StrToFloat(montos[0]), vel::StrToFloat(montos[1])});
    }
  }
  return cifras;
}

Cifras PorElFrente(const Documento& documento, bool porTasa) {
  Cifras cifras;
  Anota(cifras, {documento.Subtotal(), documento.Descuentos(), documento.Impuestos(), documento.Total()});
  if (!porTasa) return cifras;
  for (const ImpuestoPorTasa& f : documento.PorTasa()) {
    if (!f.Retenido) Anota(cifras, {f.Tasa, f.Neto, f.Importe});
  }
  return cifras;
}

void ExigeBits(const Cifras& a, const Cifras& b) {
  medicion::Exige(a.size() == b.size(), "figures");
  for (std::size_t i = 0; i < a.size(); ++i)
    medicion::Exige(std::bit_cast<std::uint64_t>(a[i]) == std::bit_cast<std::uint64_t>(b[i]), "bits");
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<Partida> comunes = Sortea(false);
  const std::vector<Partida> varios = Sortea(true);
  const vel::TClientDataSet datos = Llena(varios);
  for (const auto* partidas : {&comunes, &varios})
    ExigeBits(PorElFrente(Documento(*partidas), true), Directo(Llena(*partidas), true));
  ExigeBits(PorElFrente(Documento(datos), true), Directo(datos, true));
  const auto compara = [](const char* nombre, double limite, auto propio, auto par) {
    return medicion::Comparacion{nombre, propio, par, limite, "direct", kLineas};
  };
  constexpr double kLimite = 1.1;
  return medicion::Ejecuta(
      argc, argv,
      {compara(
           "30 lines with IVA, totals", kLimite, [&] { PorElFrente(Documento(comunes), false); },
           [&] { Directo(Llena(comunes), false); }),
       compara(
           "30 lines with IVA, totals and rates", kLimite, [&] { PorElFrente(Documento(comunes), true); },
           [&] { Directo(Llena(comunes), true); }),
       compara(
           "30 lines with 3 taxes, totals", kLimite, [&] { PorElFrente(Documento(varios), false); },
           [&] { Directo(Llena(varios), false); }),
       compara(
           "30 lines of a data set, totals", kLimite, [&] { PorElFrente(Documento(datos), false); },
           [&] { Directo(datos, false); }),
       // More than the lists tell: taxable bases, withholdings, rates of 0 %.
       compara(
           "30 lines with 3 taxes, totals and rates", 0, [&] { PorElFrente(Documento(varios), true); },
           [&] { Directo(Llena(varios), true); }),
       compara(
           "30 lines of a data set, totals and rates", 0, [&] { PorElFrente(Documento(datos), true); },
           [&] { Directo(datos, true); })});
}
