// Counts how fiscal summaries of random documents fare against a second computation, written plainly from
// the rules on the whole numbers that the documents were made of: every printed figure must be equal, the
// parts must add up and every line tax lie within its limits. Prints how far the totals part from the
// engine's.
//
//     cuenta_resumen [documents] [seed]

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "Ucalculocfdi/Ucalculocfdi.h"
#include "framework/Numeros.h"

namespace {

__extension__ typedef __int128 Ancho;  // NOLINT(modernize-use-using): ISO C++ has no such type

using vel::ENUM_FACTOR_FISCAL;
using vel::ENUM_IMPUESTO_FISCAL;

constexpr std::size_t kTaxes = 8;
constexpr int kSinImpuesto = 6;

Ancho Diez(int n) {
  Ancho p = 1;
  while (n-- > 0) p *= 10;
  return p;
}

Ancho Piso(Ancho n, Ancho d) { return n / d - (n % d != 0 && (n < 0) != (d < 0) ? 1 : 0); }
Ancho Techo(Ancho n, Ancho d) { return -Piso(-n, d); }
Ancho Redondeo(Ancho n, Ancho d) { return Piso(2 * n + d, 2 * d); }

/// A line as whole numbers: millionths, and percentages in millionths of a percent.
struct Linea {
  std::int64_t cantidad = 0;
  std::int64_t precio = 0;
  std::int64_t cambio = 1'000'000;
  std::array<std::int64_t, 3> descuento{};
  std::array<std::int64_t, kTaxes> tasa{};
  std::array<int, kTaxes> codigo{};
  std::array<bool, kTaxes> exento{};
  int conCuota = 0;
  char modo = 'C';
  std::int64_t cuota = 0;
  std::int64_t unidades = 0;
  bool cuenta = true;
  bool visible = true;
};

struct Documento {
  int decimales = 6;
  int moneda = 2;
  std::vector<Linea> lineas;
  /// The engine totals the same things: no withholdings at positive rates, which it adds, no quotas, which
  /// overwrite, no lines without taxes, which repeat discounts, and no rates too long to print.
  bool comparable = true;
};

/// The eight taxes of all documents.
vel::TAsignacionFiscal Asignacion() {
  using enum ENUM_IMPUESTO_FISCAL;
  vel::TAsignacionFiscal a = vel::AsignacionUsual();
  a[4] = {LOCAL, false, u"ISH"};
  a[5] = {LOCAL, true, u"5 al millar"};
  a[6] = {IEPS, false, {}};
  a[7] = {IVA, true, {}};
  return a;
}

class Azar {
 public:
  explicit Azar(std::uint64_t semilla) : motor_(semilla) {}
  std::int64_t Entre(std::int64_t a, std::int64_t b) {
    return a + static_cast<std::int64_t>(motor_() % static_cast<std::uint64_t>(b - a + 1));
  }
  bool Uno(int de) { return Entre(1, de) == 1; }
  /// A positive number below 10^digitos with up to `decimales` decimals, in millionths; all sizes as likely.
  std::int64_t Monto(int digitos, int decimales) {
    const auto unidad = static_cast<std::int64_t>(Diez(6 - decimales));
    const auto tope = static_cast<std::int64_t>(Diez(static_cast<int>(Entre(1, digitos + decimales))));
    return Entre(1, tope) * unidad;
  }
  template <typename Lista>
  auto De(const Lista& lista) {
    return lista[static_cast<std::size_t>(Entre(0, static_cast<std::int64_t>(std::size(lista)) - 1))];
  }

 private:
  std::mt19937_64 motor_;
};

constexpr double kIeps[] = {3, 6, 7, 8, 9, 25, 26.5, 30, 30.4, 50, 53, 160};
constexpr double kIva[] = {16, 16, 16, 8, 0};
constexpr double kIsr[] = {10, 1.25, 20, 0.5};
constexpr double kIvaRetenido[] = {10.6667, 4, 5.3333, 6};
// Printed as 0.106667: the engine's tax is another one.
constexpr double kIvaRetenidoLarga = 10.666667;

std::int64_t Millon(double porcentaje) { return static_cast<std::int64_t>(porcentaje * 1e6 + 0.5); }

void SorteaImpuestos(Azar& azar, Linea& l, bool comparable) {
  l.codigo.fill(kSinImpuesto);
  const auto pon = [&l](std::size_t i, double tasa, int codigo) {
    l.tasa[i] = Millon(tasa);
    l.codigo[i] = codigo;
  };
  const bool conIeps = azar.Uno(3);
  pon(3, azar.De(kIva), conIeps ? 1 : 0);
  if (azar.Uno(8)) {
    l.tasa[3] = 0;
    l.exento[3] = true;
    // The engine computes no discounts of a line without taxes.
    if (!comparable && azar.Uno(2)) l.codigo[3] = kSinImpuesto;
  }
  if (conIeps) pon(0, azar.De(kIeps), 0);
  if (azar.Uno(4)) {
    pon(1, azar.De(kIsr), 0);
    if (azar.Uno(2)) pon(2, !comparable && azar.Uno(5) ? kIvaRetenidoLarga : azar.De(kIvaRetenido), 0);
    if (comparable || azar.Uno(2)) {
      l.tasa[1] = -l.tasa[1];
      l.tasa[2] = -l.tasa[2];
    }
  }
  if (azar.Uno(12)) pon(4, azar.Uno(2) ? 3 : 2.5, 0);
  if (!comparable && azar.Uno(12)) pon(5, 0.5, 0);
  if (azar.Uno(12)) pon(6, azar.De(kIeps), static_cast<int>(azar.De(std::array{1, 2, 3, 5})));
  if (!comparable && azar.Uno(12)) pon(7, 2, 7);
  if (!comparable && azar.Uno(4)) {
    l.conCuota = azar.Uno(4) ? 7 : 1;
    const auto i = static_cast<std::size_t>(l.conCuota) - 1;
    if (l.codigo[i] == kSinImpuesto) pon(i, azar.De(kIeps), 0);
    l.modo = azar.De(std::string("MCAMCAX"));
    l.unidades = azar.Uno(3) ? azar.Monto(3, 3) : l.cantidad;
    l.cuota = azar.Monto(4, azar.Uno(2) ? 2 : 6);
  }
}

Documento Sortea(Azar& azar) {
  Documento d;
  d.decimales = static_cast<int>(azar.Entre(2, 6));
  if (azar.Uno(10)) d.moneda = static_cast<int>(azar.De(std::array{0, 3, 4}));
  d.decimales = std::max(d.decimales, d.moneda);
  d.comparable = azar.Uno(2);
  const bool grande = azar.Uno(10);
  const std::int64_t cambio = azar.Uno(7) ? azar.Entre(50'000, 25'000'000) : 1'000'000;
  const auto cuantas = azar.Entre(1, 30);
  for (std::int64_t k = 0; k < cuantas; ++k) {
    Linea l;
    // Doubles hold 15 digits: large prices have few decimals.
    l.cantidad =
        azar.Uno(2) ? azar.Entre(1, 200) * 1'000'000 : azar.Monto(3, static_cast<int>(azar.Entre(1, 6)));
    l.precio = grande ? azar.Entre(1'000'000, 1'500'000'000) * 10'000
                      : azar.Monto(5, static_cast<int>(azar.Entre(2, 6)));
    // Most prices are no fractions of a peso.
    if (l.precio < 1'000'000 && !azar.Uno(200)) l.precio += azar.Entre(1, 500) * 1'000'000;
    l.cambio = cambio;
    if (azar.Uno(3)) l.descuento[0] = azar.Entre(0, 40) * 1'000'000;
    if (azar.Uno(6)) l.descuento[1] = azar.Entre(0, 300'000) * 100;
    if (azar.Uno(9))
      l.descuento[2] = azar.Uno(20) ? 100'000'000 - l.descuento[0] - l.descuento[1] : 2'500'000;
    if (!d.comparable) {
      l.cuenta = !azar.Uno(15);
      l.visible = !azar.Uno(15);
    }
    SorteaImpuestos(azar, l, d.comparable);
    d.lineas.push_back(l);
  }
  return d;
}

/// The second computation, as the rules read.
struct Segundo {
  struct Impuesto {
    int numero;
    bool retenido;
    ENUM_FACTOR_FISCAL factor;
    Ancho base, tasa, importe;
  };
  using Clave = std::tuple<std::u16string, bool, int, std::int64_t>;
  const Documento& d;
  const vel::TAsignacionFiscal& asignacion;
  Ancho subTotal = 0, descuento = 0;
  std::map<Clave, std::pair<Ancho, Ancho>> grupos;

  Ancho Inferior(Ancho base, Ancho tasa) const {
    return base == 0 ? 0 : Piso((2 * base - 1) * tasa, 2 * Diez(6));
  }
  Ancho Superior(Ancho base, Ancho tasa) const {
    return Techo((base * Diez(12 - d.decimales) + 5 * Diez(11 - d.decimales) - 1) * tasa,
                 Diez(18 - d.decimales));
  }

  std::tuple<Ancho, Ancho> Importe(const Linea& l, Ancho& valor) const {
    valor = Redondeo(Ancho{l.precio} * 1'000'000, l.cambio);
    Ancho importe = Redondeo(Ancho{l.cantidad} * l.precio * Diez(d.decimales), Ancho{l.cambio} * 1'000'000);
    const Ancho techo = Techo((Ancho{l.cantidad} * 1'000'000 + 499'999) * (valor * 1'000'000 + 499'999),
                              Diez(24 - d.decimales));
    const Ancho piso = Piso((2 * Ancho{l.cantidad} - 1) * (2 * valor - 1), 4 * Diez(12 - d.decimales));
    importe = std::min(std::max(importe, std::max<Ancho>(piso, 0)), techo);
    return {importe, Redondeo(importe * (l.descuento[0] + l.descuento[1] + l.descuento[2]), 100'000'000)};
  }

  std::vector<Impuesto> Impuestos(const Linea& l, Ancho neto) const {
    std::vector<Impuesto> lista;
    if (!l.visible) return lista;
    std::array<Ancho, kTaxes> previos{};
    for (std::size_t i = 0; i < kTaxes; ++i) {
      const int numero = static_cast<int>(i) + 1;
      if (l.exento[i]) {
        Ancho base = neto;
        if (l.codigo[i] != kSinImpuesto) {
          for (int k = 0; k < l.codigo[i]; ++k) base += previos[static_cast<std::size_t>(k)];
        }
        lista.push_back({numero, false, ENUM_FACTOR_FISCAL::EXENTO, base, 0, 0});
        continue;
      }
      if (l.codigo[i] == kSinImpuesto) continue;
      Ancho base = neto;
      for (int k = 0; k < l.codigo[i]; ++k) base += previos[static_cast<std::size_t>(k)];
      const bool negativa = l.tasa[i] < 0;
      const Ancho tasa = Redondeo(negativa ? -l.tasa[i] : l.tasa[i], 100);
      const Impuesto porTasa{numero, asignacion[i].Retenido || negativa, ENUM_FACTOR_FISCAL::TASA, base,
                             tasa,   Redondeo(base * tasa, 1'000'000)};
      if (l.conCuota != numero) {
        lista.push_back(porTasa);
        previos[i] = negativa ? -porTasa.importe : porTasa.importe;
        continue;
      }
      const Ancho unidades = Redondeo(l.unidades, Diez(6 - d.decimales));
      const Ancho cuota = Redondeo(Ancho{l.cuota} * 1'000'000, l.unidades);
      const Ancho entera = Redondeo(l.cuota, Diez(6 - d.decimales));
      const Impuesto porCuota{
          numero,
          asignacion[i].Retenido,
          ENUM_FACTOR_FISCAL::CUOTA,
          unidades,
          cuota,
          std::min(std::max(entera, Inferior(unidades, cuota)), Superior(unidades, cuota))};
      const bool gana = Redondeo(base * tasa * Diez(6 - d.decimales), 1'000'000) >= l.cuota;
      if (l.modo == 'A' || (l.modo == 'M' && gana)) lista.push_back(porTasa), previos[i] += porTasa.importe;
      if (l.modo == 'A' || l.modo == 'C' || (l.modo == 'M' && !gana)) {
        lista.push_back(porCuota), previos[i] += porCuota.importe;
      }
    }
    return lista;
  }

  void Suma(const Impuesto& i) {
    const vel::TImpuestoAsignado& a = asignacion[static_cast<std::size_t>(i.numero - 1)];
    const bool local = a.Impuesto == ENUM_IMPUESTO_FISCAL::LOCAL;
    const bool porImpuesto = i.retenido && !local;
    auto& grupo = grupos[{local ? a.Nombre : vel::DameClaveImpuesto(a.Impuesto), i.retenido,
                          porImpuesto ? 0 : static_cast<int>(i.factor),
                          porImpuesto ? 0 : static_cast<std::int64_t>(i.tasa)}];
    grupo.first += i.base;
    grupo.second += i.importe;
  }
  Ancho Cierra(Ancho suma) const { return Redondeo(suma, Diez(d.decimales - d.moneda)); }
};

class Cuenta {
 public:
  Cuenta()
      : calculo_(vel::ENUM_MODULO::MODULO_VENTAS, vel::ENUM_PROC_FACTCOMP::PROC_NORMAL,
                 vel::TIPO_DOCTO::TD_FACTURA) {
    std::vector<vel::TFieldDef> campos;
    const auto agrega = [&campos](const vel::UnicodeString& nombre, vel::TFieldType tipo) {
      campos.push_back({.Name = nombre, .DataType = tipo});
    };
    // In the order in which Llena writes them.
    for (const char16_t* n : {u"TIPO_PROD", u"TIPO_ELEM", u"MAN_IEPS", u"APL_MAN_IEPS", u"MUESTRA_PAR"}) {
      agrega(n, vel::TFieldType::ftString);
    }
    for (const char16_t* n : {u"CANT", u"PREC", u"TIP_CAM", u"MTO_CUOTA", u"DESC1", u"DESC2", u"DESC3"}) {
      agrega(n, vel::TFieldType::ftFloat);
    }
    agrega(u"APL_MAN_IMP", vel::TFieldType::ftInteger);
    for (int i = 1; i <= 8; ++i) {
      agrega(u"IMPU" + vel::IntToStr(i), vel::TFieldType::ftFloat);
      agrega(u"IMP" + vel::IntToStr(i) + u"APLA", vel::TFieldType::ftInteger);
    }
    agrega(u"CVE_DOC", vel::TFieldType::ftString);
    calculo_.Partidas.CreateDataSet(campos);
    for (std::size_t i = 0; i < campos.size(); ++i) campos_.push_back(&calculo_.Partidas.Fields(i));
    datos_.Impuestos = Asignacion();
  }

  void Documenta(const Documento& d) {
    Llena(d);
    calculo_.CalculaTotales();
    for (vel::TStringList& lista : calculo_.ListaImpuesto) lista.Clear();
    datos_.DecimalesLinea = d.decimales;
    datos_.DecimalesMoneda = d.moneda;
    const vel::TResumenFiscal resumen(calculo_, datos_);
    Compara(d, resumen);
    lineas += resumen.Partidas.size();
    mayor = std::max(mayor, resumen.Total.Real());
    if (!resumen.Motivos.empty()) ++conMotivos;
    for (const auto& m : resumen.Motivos) ++motivos[vel::UTF8Encode(m.Codigo)];
    if (d.comparable && d.moneda == 2) {
      const std::int64_t centavos = *resumen.Diferencia;
      ++(resumen.Total.Unidades < 10'000'000'000
             ? diferencias
             : diferenciasGrandes)[d.decimales][std::min<std::int64_t>(std::abs(centavos), kMuchos)];
    }
  }

  static constexpr std::int64_t kMuchos = 4;
  std::size_t lineas = 0, impuestos = 0, conMotivos = 0, acotadas = 0;
  double mayor = 0;
  std::map<std::string, std::size_t> motivos;
  /// By decimals of the lines and cents; the last holds all above.
  std::map<int, std::map<std::int64_t, std::size_t>> diferencias, diferenciasGrandes;

 private:
  void Llena(const Documento& d) {
    vel::TClientDataSet& p = calculo_.Partidas;
    p.EmptyDataSet();
    datos_.Notas.clear();
    for (const Linea& l : d.lineas) {
      p.Append();
      std::size_t campo = 0;
      const auto texto = [&](std::u16string_view v) { campos_[campo++]->SetAsString(v); };
      const auto real = [&](std::int64_t v) { campos_[campo++]->SetAsFloat(static_cast<double>(v) / 1e6); };
      texto(l.cuenta ? u"" : u"P");
      texto(l.cuenta ? u"" : u"K");
      texto(l.conCuota != 0 ? u"S" : u"N");
      texto(std::u16string(1, static_cast<char16_t>(l.modo)));
      texto(l.visible ? u"N" : u"S");
      for (const std::int64_t v : {l.cantidad, l.precio, l.cambio, l.cuota}) real(v);
      for (const std::int64_t v : l.descuento) real(v);
      campos_[campo++]->SetAsInteger(l.conCuota);
      for (std::size_t i = 0; i < kTaxes; ++i) {
        real(l.tasa[i]);
        campos_[campo++]->SetAsInteger(l.codigo[i]);
      }
      vel::TNotaPartida nota{.Renglon = p.RecordCount(), .Exento = l.exento, .Unidades = {}};
      if (l.conCuota != 0 && l.unidades != l.cantidad) nota.Unidades = static_cast<double>(l.unidades) / 1e6;
      datos_.Notas.push_back(nota);
      p.Post();
    }
  }

  [[noreturn]] static void Difiere(const char* que, const vel::TResumenFiscal& r) {
    std::printf("DIFFERS: %s\n%s\n", que, r.DameJson().c_str());
    std::exit(1);
  }

  void Compara(const Documento& d, const vel::TResumenFiscal& r) {
    const auto exige = [&r](bool cierto, const char* que) {
      if (!cierto) Difiere(que, r);
    };
    Segundo s{d, datos_.Impuestos, 0, 0, {}};
    auto partida = r.Partidas.begin();
    for (const Linea& l : d.lineas) {
      if (!l.cuenta) continue;
      exige(partida != r.Partidas.end(), "lines");
      Ancho valor = 0;
      const auto [importe, descuento] = s.Importe(l, valor);
      exige(partida->Importe.Unidades == importe && partida->Descuento.Unidades == descuento &&
                partida->ValorUnitario.Unidades == valor,
            "amount of a line");
      s.subTotal += importe;
      s.descuento += descuento;
      const std::vector<Segundo::Impuesto> esperados = s.Impuestos(l, importe - descuento);
      exige(esperados.size() == partida->Impuestos.size(), "taxes of a line");
      for (std::size_t i = 0; i < esperados.size(); ++i) {
        const Segundo::Impuesto& e = esperados[i];
        const vel::TImpuestoImpreso& t = partida->Impuestos[i];
        exige(t.Numero == e.numero && t.Retenido == e.retenido && t.Factor == e.factor &&
                  t.Base.Unidades == e.base && t.Tasa.Unidades == e.tasa && t.Importe.Unidades == e.importe,
              "tax of a line");
        if (t.Factor == ENUM_FACTOR_FISCAL::EXENTO) continue;
        const Ancho inferior = s.Inferior(e.base, e.tasa);
        const Ancho superior = s.Superior(e.base, e.tasa);
        exige(inferior <= t.Importe.Unidades && t.Importe.Unidades <= superior, "limits of a tax");
        // The same limits cut to the currency's decimals.
        const Ancho corte = Diez(d.decimales - d.moneda);
        const vel::TLimitesFiscales limites = r.LimitesImpuesto(t);
        exige(limites.Inferior.Unidades == inferior && limites.Superior.Unidades == superior &&
                  limites.InferiorMoneda.Unidades == Piso(inferior, corte) &&
                  limites.SuperiorMoneda.Unidades == Techo(superior, corte),
              "limits as told");
        ++impuestos;
        if (t.Factor == ENUM_FACTOR_FISCAL::CUOTA &&
            (t.Importe.Unidades == inferior || t.Importe.Unidades == superior))
          ++acotadas;
        s.Suma(e);
      }
      for (std::size_t i = 0; i < esperados.size(); ++i) {
        if (esperados[i].factor == ENUM_FACTOR_FISCAL::EXENTO) s.Suma(esperados[i]);
      }
      ++partida;
    }
    exige(partida == r.Partidas.end(), "lines");
    ComparaTotales(s, r);
  }

  static void ComparaTotales(const Segundo& s, const vel::TResumenFiscal& r) {
    const auto exige = [&r](bool cierto, const char* que) {
      if (!cierto) Difiere(que, r);
    };
    std::map<Segundo::Clave, std::pair<Ancho, Ancho>> impresos;
    // Transferred, withheld, local transferred, local withheld: printed entries and their printed sums.
    std::array<Ancho, 4> sumas{};
    for (const auto& t : r.Traslados) {
      impresos[{vel::DameClaveImpuesto(t.Impuesto), false, static_cast<int>(t.Factor), t.Tasa.Unidades}] = {
          t.Base.Unidades, t.Importe.Unidades};
      sumas[0] += t.Importe.Unidades;
    }
    for (const auto& t : r.Retenciones) {
      impresos[{vel::DameClaveImpuesto(t.Impuesto), true, 0, 0}] = {-1, t.Importe.Unidades};
      sumas[1] += t.Importe.Unidades;
    }
    for (const auto& t : r.Locales) {
      impresos[{t.Nombre, t.Retenido, 0, t.Tasa.Unidades}] = {-1, t.Importe.Unidades};
      sumas[t.Retenido ? 3 : 2] += t.Importe.Unidades;
    }
    exige(impresos.size() == r.Traslados.size() + r.Retenciones.size() + r.Locales.size() &&
              impresos.size() == s.grupos.size(),
          "entries");
    for (const auto& [clave, grupo] : s.grupos) {
      const auto impreso = impresos.find(clave);
      exige(impreso != impresos.end() && impreso->second.second == s.Cierra(grupo.second),
            "amount of an entry");
      exige(impreso->second.first == -1 || impreso->second.first == s.Cierra(grupo.first),
            "base of an entry");
    }
    exige(r.SubTotal.Unidades == s.Cierra(s.subTotal) && r.Descuento.Unidades == s.Cierra(s.descuento),
          "subtotal");
    exige(r.TotalImpuestosTrasladados.Unidades == sumas[0] &&
              r.TotalImpuestosRetenidos.Unidades == sumas[1] &&
              r.TotalLocalesTrasladados.Unidades == sumas[2] && r.TotalLocalesRetenidos.Unidades == sumas[3],
          "sums of entries");
    exige(r.Total.Unidades ==
              r.SubTotal.Unidades - r.Descuento.Unidades + sumas[0] - sumas[1] + sumas[2] - sumas[3],
          "parts do not add up");
  }

  vel::TCalculoCFDI calculo_;
  std::vector<vel::TField*> campos_;
  vel::TDatosFiscales datos_;
};

void Imprime(const char* titulo, const std::map<int, std::map<std::int64_t, std::size_t>>& diferencias) {
  std::printf(
      "\n%s: cents of difference to the engine\n  line decimals        0        1        2        3  4 or "
      "more\n",
      titulo);
  for (const auto& [decimales, cuenta] : diferencias) {
    std::printf("  %d            ", decimales);
    for (std::int64_t c = 0; c <= Cuenta::kMuchos; ++c)
      std::printf(" %8zu", cuenta.contains(c) ? cuenta.at(c) : 0);
    std::printf("\n");
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::int64_t documentos = argc > 1 ? std::atoll(argv[1]) : 1'000'000;
  const std::uint64_t semilla = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 20261121;
  try {
    Azar azar(semilla);
    Cuenta cuenta;
    for (std::int64_t i = 0; i < documentos; ++i) cuenta.Documenta(Sortea(azar));
    std::printf(
        "%lld documents, %zu lines, %zu taxes: every figure equal to the second computation's,\n"
        "all parts add up, all taxes within their limits; the largest total is %.2f.\n"
        "%zu quotas stand on a limit. %zu documents have reasons:",
        static_cast<long long>(documentos), cuenta.lineas, cuenta.impuestos, cuenta.mayor, cuenta.acotadas,
        cuenta.conMotivos);
    for (const auto& [codigo, veces] : cuenta.motivos) std::printf(" %s %zu", codigo.c_str(), veces);
    std::printf("\n");
    Imprime("Totals below 100 million", cuenta.diferencias);
    Imprime("Totals from 100 million on", cuenta.diferenciasGrandes);
    return 0;
  } catch (const vel::Exception& e) {
    std::printf("%s\n", e.what());
    return 1;
  }
}
