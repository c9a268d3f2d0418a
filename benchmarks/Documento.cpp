// A document against its steps as a careful engineer first writes them: every field by its name when the
// steps name it, every amount rounded through its text, lists kept as texts.

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "Ucalculocfdi/Ucalculocfdi.h"
#include "benchmarks/Medicion.h"
#include "framework/Numeros.h"

namespace {

using vel::UnicodeString;

double RedondeaPorTexto(double valor, int n) {
  const UnicodeString texto = vel::FloatToStr(valor);
  const std::size_t punto = texto.find(u'.');
  if (punto == UnicodeString::npos || texto.size() - punto - 1 <= static_cast<std::size_t>(n)) return valor;
  const double p = n == 6 ? 1e-6 : 1e-2;
  const UnicodeString w = vel::FloatToStr(valor < 0 ? valor / p - 0.5 : valor / p + 0.5);
  return vel::StrToFloat(w.substr(0, w.find(u'.'))) * p;
}

class Referencia {
 public:
  explicit Referencia(const vel::TClientDataSet& partidas) { p_.AppendData(partidas); }

  void Calcula() {
    subtotal = totalImpuestos = sumaDescuentos = 0;
    totalImpuesto.fill(0);
    totalDescuento.fill(0);
    descuento.fill(0);
    for (vel::TStringList& lista : listas) lista.Clear();
    for (p_.First(); !p_.Eof(); p_.Next()) {
      double importe = 0;
      for (std::size_t i = 0; i < 3; ++i)
        porcentaje[i] = Real(u"DESC" + vel::IntToStr(static_cast<int>(i) + 1));
      const double cantidad = R6(Real(u"CANT"));
      const double precio = R6(Real(u"PREC"));
      const double cambio = R6(Real(u"TIP_CAM"));
      const bool noCuenta =
          ((Texto(u"TIPO_PROD") == u"P" || Texto(u"TIPO_PROD") == u"S") && Texto(u"TIPO_ELEM") == u"K") ||
          (Texto(u"TIPO_PROD") == u"G" && Texto(u"TIPO_ELEM") == u"N");
      if (!noCuenta) {
        Impuestos();
        importe = cantidad * precio / cambio;
      }
      subtotal += importe;
      for (std::size_t i = 0; i < 3; ++i) totalDescuento[i] += descuento[i];
    }
    const double s = subtotal;
    for (const double d : totalDescuento) sumaDescuentos += d;
    for (std::size_t k = 0; k < 8; ++k) {
      if (listas[k].Count() > 1) {
        totalImpuesto[k] = 0;
        for (std::size_t i = 0; i < listas[k].Count(); ++i) {
          totalImpuesto[k] += RedondeaPorTexto(vel::StrToFloat(Montos(k, i)[1]), 2);
        }
      }
      totalImpuestos += totalImpuesto[k];
    }
    subtotal = RedondeaPorTexto(subtotal, 2);
    totalImpuestos = RedondeaPorTexto(totalImpuestos, 2) + RedondeaPorTexto(s - sumaDescuentos, 2);
  }

  double subtotal = 0, totalImpuestos = 0, sumaDescuentos = 0;
  std::array<double, 8> totalImpuesto{};
  std::array<vel::TStringList, 8> listas;
  vel::TStringList& Montos(std::size_t k, std::size_t i) {
    return dynamic_cast<vel::TStringList&>(*listas[k].Objects(i));
  }

 private:
  static double R6(double v) { return RedondeaPorTexto(v, 6); }
  double Real(const UnicodeString& campo) const { return p_.FieldByName(campo).AsFloat(); }
  UnicodeString Texto(const UnicodeString& campo) const { return p_.FieldByName(campo).AsString(); }

  double Descuentos(double importe) {
    double suma = 0;
    for (std::size_t i = 0; i < 3; ++i) suma += descuento[i] = R6(porcentaje[i] / 100 * importe);
    return suma;
  }

  void Impuestos() {
    impuesto.fill(0);
    for (std::size_t i = 0; i < 8; ++i) {
      const UnicodeString n = vel::IntToStr(static_cast<int>(i) + 1);
      int codigo = 6;
      if (const vel::TField* campo = p_.FindField(u"IMP" + n + u"APLA")) codigo = campo->AsInteger();
      if (codigo == 4 || codigo == 6) continue;
      const double tasa = R6(Real(u"IMPU" + n));
      const double importe = R6(R6(Real(u"CANT")) * R6(Real(u"PREC")) / R6(Real(u"TIP_CAM")));
      const double base = importe - Descuentos(importe);
      double gravable = base;
      for (std::size_t k = 0; k < static_cast<std::size_t>(codigo); ++k) gravable += impuesto[k];
      if (Texto(u"MAN_IEPS") == u"S") continue;
      impuesto[i] += gravable / 100 * tasa;
      totalImpuesto[i] += R6(impuesto[i]);
      Lista(i, base, tasa, R6(impuesto[i]));
    }
  }

  void Lista(std::size_t k, double base, double tasa, double monto) {
    if (!(tasa > 0)) return;
    const UnicodeString clave = vel::FloatToStr(tasa);
    const std::ptrdiff_t i = listas[k].IndexOf(clave);
    if (i < 0) {
      auto montos = std::make_unique<vel::TStringList>();
      montos->Add(vel::FloatToStr(base));
      montos->Add(vel::FloatToStr(monto));
      listas[k].AddObject(clave, std::move(montos));
      return;
    }
    vel::TStringList& montos = Montos(k, static_cast<std::size_t>(i));
    montos.Put(0, vel::FloatToStr(vel::StrToFloat(montos[0]) + base));
    montos.Put(1, vel::FloatToStr(vel::StrToFloat(montos[1]) + monto));
  }

  vel::TClientDataSet p_;
  std::array<double, 8> impuesto{};
  std::array<double, 3> porcentaje{}, descuento{}, totalDescuento{};
};

// With `mismasTasas` every line has the same rates, as most documents do; else each its own.
vel::TClientDataSet Partidas(std::size_t lineas, bool mismasTasas = false) {
  std::mt19937 azar(11);
  std::vector<vel::TFieldDef> campos;
  for (const char16_t* texto : {u"CVE_DOC", u"TIPO_PROD", u"TIPO_ELEM", u"MAN_IEPS", u"APL_MAN_IEPS"}) {
    campos.push_back({.Name = texto, .DataType = vel::TFieldType::ftString, .Size = 20});
  }
  for (const char16_t* real : {u"CANT", u"PREC", u"TIP_CAM", u"MTO_CUOTA", u"DESC1", u"DESC2", u"DESC3"}) {
    campos.push_back({.Name = real, .DataType = vel::TFieldType::ftFloat});
  }
  campos.push_back({.Name = u"APL_MAN_IMP", .DataType = vel::TFieldType::ftInteger});
  for (int i = 1; i <= 8; ++i) {
    campos.push_back({.Name = u"IMPU" + vel::IntToStr(i), .DataType = vel::TFieldType::ftFloat});
    campos.push_back({.Name = u"IMP" + vel::IntToStr(i) + u"APLA", .DataType = vel::TFieldType::ftInteger});
  }
  vel::TClientDataSet datos;
  datos.CreateDataSet(campos);
  const int codigos[] = {0, 0, 1, 2, 3, 5, 0, 7};
  const double tasas[] = {16, 8, 0.5, 10.6667};
  for (std::size_t r = 0; r < lineas; ++r) {
    const auto pon = [&datos](std::u16string_view campo, double valor) {
      datos.FieldByName(campo).SetAsFloat(valor);
    };
    datos.Append();
    datos.FieldByName(u"CVE_DOC").SetAsString(u"FAC0000001");
    datos.FieldByName(u"TIPO_PROD").SetAsString(r % 50 == 0 ? u"P" : u"");
    datos.FieldByName(u"TIPO_ELEM").SetAsString(u"K");
    datos.FieldByName(u"MAN_IEPS").SetAsString(u"N");
    pon(u"CANT", static_cast<double>(1 + azar() % 10'000) / 100);
    pon(u"PREC", static_cast<double>(azar() % 1'000'000'000) / 1e6);
    pon(u"TIP_CAM", r % 10 == 0 ? 16.7531 : 1);
    pon(u"DESC1", static_cast<double>(azar() % 20));
    pon(u"DESC2", 2.5);
    pon(u"DESC3", 0);
    for (int i = 1; i <= 8; ++i) {
      pon(u"IMPU" + vel::IntToStr(i), tasas[(mismasTasas ? static_cast<unsigned>(i) : azar()) % 4]);
      datos.FieldByName(u"IMP" + vel::IntToStr(i) + u"APLA").SetAsInteger(codigos[i - 1]);
    }
    datos.Post();
  }
  return datos;
}

std::unique_ptr<vel::TCalculoCFDI> Calculo(const vel::TClientDataSet& partidas) {
  auto calculo = std::make_unique<vel::TCalculoCFDI>(
      vel::ENUM_MODULO::MODULO_VENTAS, vel::ENUM_PROC_FACTCOMP::PROC_NORMAL, vel::TIPO_DOCTO::TD_FACTURA);
  calculo->SetPartidas(partidas);
  return calculo;
}

// One document after another through the same object.
void CalculaOtro(vel::TCalculoCFDI& calculo, const vel::TClientDataSet& partidas) {
  calculo.Partidas.EmptyDataSet();
  for (vel::TStringList& lista : calculo.ListaImpuesto) lista.Clear();
  calculo.SetPartidas(partidas);
  calculo.CalculaTotales();
}

void Compara(vel::TCalculoCFDI& objeto, const vel::TClientDataSet& partidas) {
  vel::TCalculoCFDI* const calculo = &objeto;
  Referencia referencia(partidas);
  CalculaOtro(objeto, partidas);
  referencia.Calcula();
  const auto bits = [](double v) { return std::bit_cast<std::uint64_t>(v); };
  medicion::Exige(bits(calculo->Subtotal) == bits(referencia.subtotal), "Subtotal");
  medicion::Exige(bits(calculo->TotalImpuestos) == bits(referencia.totalImpuestos), "TotalImpuestos");
  medicion::Exige(bits(calculo->SumaDescuentos) == bits(referencia.sumaDescuentos), "SumaDescuentos");
  for (int k = 0; k < 8; ++k) {
    const auto i = static_cast<std::size_t>(k);
    medicion::Exige(bits(calculo->GetTotalImpuesto(k)) == bits(referencia.totalImpuesto[i]), "TotalImpuesto");
    vel::TStringList* lista = nullptr;
    calculo->DameListImpuestos(lista, k + 1);
    medicion::Exige(lista->Text() == referencia.listas[i].Text(), "ListaImpuesto");
    for (std::size_t e = 0; e < lista->Count(); ++e) {
      medicion::Exige(
          dynamic_cast<vel::TStringList&>(*lista->Objects(e)).Text() == referencia.Montos(i, e).Text(),
          "montos");
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  const vel::TClientDataSet partidas = Partidas(1'000);
  const vel::TClientDataSet tres = Partidas(3, true);
  const auto otro = Calculo(partidas);
  for (int vez = 0; vez < 2; ++vez) {
    Compara(*otro, partidas);
    Compara(*otro, tres);
    Compara(*otro, Partidas(20'000));
  }
  const auto calculo = Calculo(partidas);
  Referencia referencia(partidas);
  vel::TDatosFiscales datos;
  datos.Impuestos.fill({vel::ENUM_IMPUESTO_FISCAL::IVA, false, {}});
  // What both give alike, up to the engine's last cent; cuenta_resumen checks every figure.
  const auto motor = Calculo(partidas);
  motor->CalculaTotales();
  medicion::Exige(std::abs(vel::TResumenFiscal(*motor, datos).SubTotal.Real() - motor->Subtotal) < 0.015,
                  "SubTotal");
  return medicion::Ejecuta(
      argc, argv,
      {{.nombre = "CalculaTotales, 1,000 lines, 8 taxes",
        // Both begin with empty lists, which would accumulate.
        .propio =
            [&] {
              for (vel::TStringList& lista : calculo->ListaImpuesto) lista.Clear();
              calculo->CalculaTotales();
            },
        .par = [&] { referencia.Calcula(); },
        .limite = 1.0 / 30,
        .nombrePar = "straightforward",
        .unidades = 1'000},
       {.nombre = "100,000 documents of 3 lines, one object",
        .propio =
            [&] {
              for (int documento = 0; documento < 100'000; ++documento) CalculaOtro(*otro, tres);
            },
        .par =
            [&] {
              for (int vez = 0; vez < 300; ++vez) {
                for (vel::TStringList& lista : calculo->ListaImpuesto) lista.Clear();
                calculo->CalculaTotales();
              }
            },
        .limite = 1.5,
        .nombrePar = "1,000 lines",
        .unidades = 300'000},
       {.nombre = "TResumenFiscal, 1,000 lines, 8 taxes",
        .propio = [&] { vel::TResumenFiscal resumen(*motor, datos); },
        // Lists that grow without end would make the engine slower.
        .par =
            [&] {
              for (vel::TStringList& lista : motor->ListaImpuesto) lista.Clear();
              motor->CalculaTotales();
            },
        .limite = 1.5,
        .nombrePar = "CalculaTotales",
        .unidades = 1'000}},
      {{.nombre = "CalculaTotales per line",
        .tamanos = {1'000, 10'000, 100'000},
        .prepara =
            [](std::size_t n) {
              return [c = std::shared_ptr<vel::TCalculoCFDI>(Calculo(Partidas(n)))] { c->CalculaTotales(); };
            },
        .limite = 1.2},
       {.nombre = "TResumenFiscal per line",
        .tamanos = {1'000, 10'000, 100'000},
        .prepara =
            [&datos](std::size_t n) {
              return [&datos, c = std::shared_ptr<vel::TCalculoCFDI>(Calculo(Partidas(n)))] {
                vel::TResumenFiscal resumen(*c, datos);
              };
            },
        .limite = 2}});
}
