// Documents of any lines against the plain steps of their calculation, bit for bit.
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "Ucalculocfdi/TCalculoCFDI.h"
#include "Uutilext/documents/Redondeo.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "fuzz/Entrada.h"
#include "fuzz/Exige.h"

namespace {

using fuzz::Exige;
using fuzz::ExigeIgual;
using namespace vel;
using Texto = UnicodeString;

constexpr std::size_t kImpuestos = 8;

struct Linea {
  double cantidad = 1, precio = 0, costo = 0, cambio = 1, cuota = 0, descuento = 0;
  std::array<double, 3> descuentos{};
  std::array<double, kImpuestos> tasa{};
  std::array<int, kImpuestos> codigo{};
  Texto maneja, modo, documento, producto, elemento, muestra;
  int conCuota = 0;
};

struct Ajustes {
  bool venta = true, porDocumento = false, ignoraCambio = false, simple = true, conMuestra = true;
  std::array<bool, kImpuestos> incluye{};
  // Which codes stand in the packet at all.
  std::array<bool, kImpuestos> conCodigo{};
  int decimales = 6, decimalesTotales = 2;
};

// A text of the lists, back to its number.
double DeTexto(const Texto& texto) {
  constexpr double kInfinito = std::numeric_limits<double>::infinity();
  if (texto == u"INF" || texto == u"-INF") return texto == u"INF" ? kInfinito : -kInfinito;
  return texto == u"NAN" ? std::numeric_limits<double>::quiet_NaN() : StrToFloat(texto);
}

// The steps of a document as they are told, one after the other; lists hold texts.
struct Pasos {
  struct Gravado {
    Texto tasa, base, impuesto;
  };
  Ajustes a;
  double subtotal = 0, impuestos = 0, redondeado = 0, sumaDescuentos = 0;
  std::array<double, 3> porcentaje{}, descuento{}, totalDescuento{};
  std::array<double, kImpuestos> impuesto{}, total{};
  std::array<std::vector<Gravado>, kImpuestos> lista;

  double Partida(double valor) const { return g_redoTo(valor, a.decimales); }
  double Total(double valor) const { return g_redoTo(valor, a.decimalesTotales); }

  double Descuentos(double importe) {
    double suma = 0;
    for (std::size_t i = 0; i < 3; ++i) descuento[i] = Partida(porcentaje[i] / 100 * importe);
    for (const double d : descuento) suma += d;
    return suma;
  }

  double Aplica(double base, double tasa, int codigo, std::size_t i) {
    if (codigo >= 0 && codigo <= 7) {
      double gravable = base;
      for (std::size_t k = 0; k < static_cast<std::size_t>(codigo); ++k) gravable += impuesto[k];
      impuesto[i] += gravable / 100 * tasa;
    }
    total[i] += Partida(impuesto[i]);
    return Partida(impuesto[i]);
  }

  double ConCuota(const Linea& l, double base, double tasa, int codigo, std::size_t i) {
    if (l.modo == u"M") {
      if (Aplica(base, tasa, codigo, i) < l.cuota) impuesto[i] = l.cuota;
    } else if (l.modo == u"C") {
      impuesto[i] = l.cuota;
    } else if (l.modo == u"A") {
      Aplica(base, tasa, codigo, i);
      impuesto[i] += l.cuota;
    }
    total[i] = Partida(impuesto[i]);
    return impuesto[i];
  }

  void Grava(double base, double tasa, double monto, std::size_t i) {
    if (!(tasa > 0)) return;
    for (Gravado& g : lista[i]) {
      if (g.tasa != FloatToStr(tasa)) continue;
      g.base = FloatToStr(DeTexto(g.base) + base);
      g.impuesto = FloatToStr(DeTexto(g.impuesto) + monto);
      return;
    }
    lista[i].push_back({FloatToStr(tasa), FloatToStr(base), FloatToStr(monto)});
  }

  void ImpuestosDe(const Linea& l) {
    impuesto.fill(0);
    for (std::size_t i = 0; i < kImpuestos; ++i) {
      const int codigo = a.conCodigo[i] ? l.codigo[i] : 6;
      if (codigo == 4 || codigo == 6) continue;
      const double tasa = Partida(l.tasa[i]);
      const double cambio = a.ignoraCambio ? 1.0 : Partida(l.cambio);
      const double importe = Partida(Partida(l.cantidad) * Partida(a.venta ? l.precio : l.costo) / cambio);
      const double base = importe - Descuentos(importe);
      const bool cuota = l.maneja == u"S" && l.conCuota == static_cast<int>(i) + 1;
      Grava(base, tasa, cuota ? ConCuota(l, base, tasa, codigo, i) : Aplica(base, tasa, codigo, i), i);
    }
  }

  double Importe(const Linea& l) const {
    const double cantidad = Partida(l.cantidad);
    const double precio = Partida(l.precio);
    const double cambio = a.ignoraCambio ? 1.0 : Partida(l.cambio);
    if (a.simple) return cantidad * precio / cambio;
    double importe = 0;
    for (std::size_t i = 0; i < kImpuestos; ++i)
      importe +=
          cantidad * (a.incluye[i] ? precio + Partida(impuesto[i] / cantidad / cambio) : precio) / cambio;
    return importe;
  }

  void Calcula(const std::vector<Linea>& lineas) {
    Texto documento = lineas.empty() ? Texto() : lineas.front().documento;
    for (std::size_t n = 0; n < lineas.size(); ++n) {
      const Linea& l = lineas[n];
      porcentaje = a.venta ? l.descuentos : std::array{l.descuento, 0.0, 0.0};
      const bool paquete = l.producto == u"P" || l.producto == u"S";
      const bool cuenta = !(paquete && l.elemento == u"K") && !(l.producto == u"G" && l.elemento == u"N");
      if (cuenta && (!a.conMuestra || l.muestra == u"N" || l.muestra.empty())) ImpuestosDe(l);
      subtotal += cuenta ? Importe(l) : 0;
      const Texto& siguiente = lineas[std::min(n + 1, lineas.size() - 1)].documento;
      if (a.porDocumento && siguiente != documento) {
        documento = siguiente;
        subtotal = Total(subtotal);
        Descuentos(subtotal);
      }
      for (std::size_t i = 0; i < 3; ++i) totalDescuento[i] += descuento[i];
    }
    const double s = subtotal;
    for (const double d : totalDescuento) sumaDescuentos += d;
    for (std::size_t k = 0; k < kImpuestos; ++k) {
      if (lista[k].size() > 1) {
        total[k] = 0;
        for (const Gravado& g : lista[k]) total[k] += Total(DeTexto(g.impuesto));
      }
      impuestos += total[k];
    }
    redondeado = Total(impuestos);
    subtotal = Total(subtotal);
    impuestos = Total(impuestos) + Total(s - sumaDescuentos);
  }
};

Linea LineaDe(fuzz::Entrada& e) {
  Linea l;
  const auto monto = [&e] {
    return e.Entero(0, 9) == 0 ? e.De({0.0, -1.0, 1e9, 1e-7, 0.0000005}) : e.Importe();
  };
  l.cantidad = e.De({1.0, 2.0, 3.0, 0.5, monto()});
  l.precio = monto();
  l.costo = monto();
  l.cambio = e.De({1.0, 1.0, 17.1234, 0.0, monto()});
  l.cuota = monto();
  l.descuento = e.De({0.0, 10.0, 33.333333, monto()});
  for (double& d : l.descuentos) d = e.De({0.0, 10.0, 2.5, 100.0, monto()});
  for (double& t : l.tasa) t = e.De({0.0, 16.0, 8.0, 10.6667, -10.0, 16.0000001, monto()});
  for (int& c : l.codigo) c = e.Entero(-1, 9);
  for (int& c : l.codigo) c = e.De({0, 6, c});
  l.maneja = e.De<const char16_t*>({u"N", u"S", u""});
  l.modo = e.De<const char16_t*>({u"M", u"C", u"A", u"", u"X"});
  l.documento = e.De<const char16_t*>({u"A1", u"A2", u"a1", u""});
  l.producto = e.De<const char16_t*>({u"", u"P", u"S", u"G", u"p"});
  l.elemento = e.De<const char16_t*>({u"", u"K", u"N"});
  l.muestra = e.De<const char16_t*>({u"", u"N", u"S", u" "});
  l.conCuota = e.Entero(0, 9);
  return l;
}

TClientDataSet Paquete(const std::vector<Linea>& lineas, const Ajustes& a) {
  std::vector<TFieldDef> campos;
  const auto agrega = [&campos](Texto nombre, TFieldType tipo) {
    campos.push_back({.Name = std::move(nombre), .DataType = tipo});
  };
  for (const char16_t* n : {u"CVE_DOC", u"MAN_IEPS", u"APL_MAN_IEPS", u"TIPO_PROD", u"TIPO_ELEM"})
    agrega(n, TFieldType::ftString);
  for (const char16_t* n :
       {u"CANT", u"PREC", u"COST", u"TIP_CAM", u"MTO_CUOTA", u"DESCU", u"DESC1", u"DESC2", u"DESC3"})
    agrega(n, TFieldType::ftFloat);
  agrega(u"APL_MAN_IMP", TFieldType::ftInteger);
  if (a.conMuestra) agrega(u"MUESTRA_PAR", TFieldType::ftString);
  for (int n = 1; n <= 8; ++n) {
    agrega(u"IMPU" + IntToStr(n), TFieldType::ftFloat);
    if (a.conCodigo[static_cast<std::size_t>(n - 1)])
      agrega(u"IMP" + IntToStr(n) + u"APLA", TFieldType::ftInteger);
  }
  TClientDataSet datos;
  datos.CreateDataSet(std::move(campos));
  const auto pon = [&datos](std::u16string_view campo, const Variant& valor) {
    datos.FieldByName(campo).SetValue(valor);
  };
  for (const Linea& l : lineas) {
    datos.Append();
    pon(u"CVE_DOC", Variant(l.documento));
    pon(u"MAN_IEPS", Variant(l.maneja));
    pon(u"APL_MAN_IEPS", Variant(l.modo));
    pon(u"TIPO_PROD", Variant(l.producto));
    pon(u"TIPO_ELEM", Variant(l.elemento));
    if (a.conMuestra) pon(u"MUESTRA_PAR", Variant(l.muestra));
    pon(u"CANT", Variant(l.cantidad));
    pon(u"PREC", Variant(l.precio));
    pon(u"COST", Variant(l.costo));
    pon(u"TIP_CAM", Variant(l.cambio));
    pon(u"MTO_CUOTA", Variant(l.cuota));
    pon(u"DESCU", Variant(l.descuento));
    pon(u"APL_MAN_IMP", Variant(l.conCuota));
    for (int n = 1; n <= 3; ++n)
      pon(u"DESC" + IntToStr(n), Variant(l.descuentos[static_cast<std::size_t>(n - 1)]));
    for (int n = 1; n <= 8; ++n) {
      const auto i = static_cast<std::size_t>(n - 1);
      pon(u"IMPU" + IntToStr(n), Variant(l.tasa[i]));
      if (a.conCodigo[i]) pon(u"IMP" + IntToStr(n) + u"APLA", Variant(l.codigo[i]));
    }
    datos.Post();
  }
  return datos;
}

void ExigeMonto(double obtenido, double esperado, const std::string& cual) {
  if (std::isnan(obtenido) && std::isnan(esperado)) return;
  ExigeIgual(obtenido, esperado, cual);
}

void Compara(TCalculoCFDI& c, const Pasos& p) {
  ExigeMonto(c.Subtotal, p.subtotal, "Subtotal");
  ExigeMonto(c.SumaDescuentos, p.sumaDescuentos, "SumaDescuentos");
  ExigeMonto(c.TotalImpuestosRedondeado, p.redondeado, "TotalImpuestosRedondeado");
  ExigeMonto(c.TotalImpuestos, p.impuestos, "TotalImpuestos");
  for (int i = 0; i < 3; ++i)
    ExigeMonto(c.GetTotalDescuento(i), p.totalDescuento[static_cast<std::size_t>(i)], "TotalDescuento");
  for (int n = 1; n <= 8; ++n) {
    const auto i = static_cast<std::size_t>(n - 1);
    const std::string cual = std::to_string(n);
    ExigeMonto(c.GetTotalImpuesto(n - 1), p.total[i], "TotalImpuesto" + cual);
    ExigeMonto(c.ImpuestoPartida[i], p.impuesto[i], "ImpuestoPartida" + cual);
    TStringList* lista = nullptr;
    c.DameListImpuestos(lista, n);
    ExigeIgual(lista->Count(), p.lista[i].size(), "the rates of tax " + cual);
    for (std::size_t r = 0; r < lista->Count(); ++r) {
      const auto& montos = dynamic_cast<const TStringList&>(*lista->Objects(r));
      ExigeIgual(lista->Strings(r), p.lista[i][r].tasa, "a rate of tax " + cual);
      ExigeIgual(montos[0], p.lista[i][r].base, "a base of tax " + cual);
      ExigeIgual(montos[1], p.lista[i][r].impuesto, "an amount of tax " + cual);
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo) {
  fuzz::Entrada e(datos, largo);
  Ajustes a{.venta = e.Moneda(),
            .porDocumento = e.Moneda(),
            .ignoraCambio = e.Moneda(),
            .simple = e.Moneda(),
            .conMuestra = e.Moneda()};
  for (bool& incluye : a.incluye) incluye = e.Moneda();
  for (bool& con : a.conCodigo) con = e.Entero(0, 3) != 0;
  std::vector<Linea> lineas;
  for (auto n = e.Entero(0, 6); n > 0 && e.Queda(); --n) lineas.push_back(LineaDe(e));

  TCalculoCFDI calculo(
      a.venta ? ENUM_MODULO::MODULO_VENTAS : ENUM_MODULO::MODULO_COMPRAS,
      a.porDocumento ? ENUM_PROC_FACTCOMP::PROC_POR_DOCUMENTO : ENUM_PROC_FACTCOMP::PROC_NORMAL,
      TIPO_DOCTO::TD_FACTURA);
  // At times by way of a packet's text, which keeps every bit.
  TClientDataSet paquete = Paquete(lineas, a);
  TClientDataSet leido;
  if (e.Moneda()) {
    leido.LoadFromXML(paquete.SaveToXML(), u"paquete");
    calculo.SetPartidas(leido);
  } else {
    calculo.SetPartidas(paquete);
  }
  calculo.IgnoraTipoCambio = a.ignoraCambio;
  calculo.SubtotalSimple = a.simple;
  calculo.IncluyeImpuesto = a.incluye;
  Pasos pasos{.a = a};
  bool calcula = true;
  try {
    pasos.Calcula(lineas);
  } catch (const EConvertError&) {
    calcula = false;
  }
  try {
    calculo.CalculaTotales();
    Exige(calcula, "an amount without a text is computed");
    Compara(calculo, pasos);
  } catch (const EConvertError&) {
    Exige(!calcula, "a document is not computed");
  }
  return 0;
}
