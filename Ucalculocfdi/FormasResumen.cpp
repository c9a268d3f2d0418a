// The fiscal summary for programs: names of its values, data sets and JSON.

#include <string_view>

#include "Ucalculocfdi/TResumenFiscal.h"

namespace vel {
namespace {

constexpr std::u16string_view kTraslado = u"Traslado";
constexpr std::u16string_view kRetencion = u"Retencion";

std::u16string_view Tipo(bool retenido) { return retenido ? kRetencion : kTraslado; }

TFieldDef Texto(std::u16string_view nombre, int largo) {
  return {.Name = UnicodeString(nombre), .DataType = TFieldType::ftWideString, .Size = largo};
}

// Sign, 19 digits and the point.
constexpr int kLargoMonto = 21;
constexpr int kLargoClave = 30;
constexpr int kLargoNombre = 255;

/// Writes the record under edit.
class Registro {
 public:
  explicit Registro(TClientDataSet& datos) : datos_(datos) { datos_.Append(); }
  void Pon(std::u16string_view campo, std::u16string_view texto) const {
    datos_.FieldByName(campo).SetAsString(texto);
  }
  void Pon(std::u16string_view campo, const TMontoFiscal& monto) const { Pon(campo, monto.Texto()); }
  void Pon(std::u16string_view campo, std::int64_t numero) const {
    datos_.FieldByName(campo).SetAsLargeInt(numero);
  }
  TClientDataSet& Anidado(std::u16string_view campo) const {
    return *datos_.FieldByName(campo).NestedDataSet();
  }

 private:
  TClientDataSet& datos_;
};

/// JSON in the order in which it is written. Every name and value is followed by a comma, and what closes
/// takes the last one back.
class EscritorJson {
 public:
  void Abre(std::string_view nombre, char signo) {
    Nombre(nombre);
    texto_ += signo;
  }
  void Cierra(char signo) {
    if (texto_.back() == ',') texto_.pop_back();
    texto_ += signo;
    texto_ += ',';
  }
  void Pon(std::string_view nombre, std::u16string_view valor) {
    Nombre(nombre);
    Cadena(UTF8Encode(valor));
    texto_ += ',';
  }
  void Pon(std::string_view nombre, const TMontoFiscal& monto) { Pon(nombre, monto.Texto()); }
  void PonNumero(std::string_view nombre, std::int64_t numero) { PonCrudo(nombre, std::to_string(numero)); }
  void PonCrudo(std::string_view nombre, std::string_view valor) {
    Nombre(nombre);
    texto_ += valor;
    texto_ += ',';
  }
  std::string Termina() {
    texto_.pop_back();
    return std::move(texto_);
  }

 private:
  void Nombre(std::string_view nombre) {
    if (nombre.empty()) return;
    Cadena(nombre);
    texto_ += ':';
  }
  void Cadena(std::string_view utf8) {
    constexpr char kHexadecimal[] = "0123456789abcdef";
    texto_ += '"';
    for (const char c : utf8) {
      const auto byte = static_cast<unsigned char>(c);
      if (byte < 0x20) {
        texto_ += "\\u00";
        texto_ += kHexadecimal[byte >> 4U];
        texto_ += kHexadecimal[byte & 0xFU];
        continue;
      }
      if (c == '"' || c == '\\') texto_ += '\\';
      texto_ += c;
    }
    texto_ += '"';
  }

  std::string texto_;
};

template <typename Lista, typename Cada>
void Arreglo(EscritorJson& json, std::string_view nombre, const Lista& lista, const Cada& cada) {
  json.Abre(nombre, '[');
  for (const auto& elemento : lista) {
    json.Abre({}, '{');
    cada(elemento);
    json.Cierra('}');
  }
  json.Cierra(']');
}

}  // namespace

UnicodeString DameClaveImpuesto(ENUM_IMPUESTO_FISCAL impuesto) {
  switch (impuesto) {
    case ENUM_IMPUESTO_FISCAL::ISR:
      return u"001";
    case ENUM_IMPUESTO_FISCAL::IVA:
      return u"002";
    case ENUM_IMPUESTO_FISCAL::IEPS:
      return u"003";
    case ENUM_IMPUESTO_FISCAL::NINGUNO:
    case ENUM_IMPUESTO_FISCAL::LOCAL:
      break;
  }
  return {};
}

UnicodeString DameTipoFactor(ENUM_FACTOR_FISCAL factor) {
  switch (factor) {
    case ENUM_FACTOR_FISCAL::CUOTA:
      return u"Cuota";
    case ENUM_FACTOR_FISCAL::EXENTO:
      return u"Exento";
    default:
      return u"Tasa";
  }
}

UnicodeString TResumenFiscal::DameNombre(const TImpuestoImpreso& impuesto) const {
  if (impuesto.Impuesto != ENUM_IMPUESTO_FISCAL::LOCAL) return DameClaveImpuesto(impuesto.Impuesto);
  const auto indice = static_cast<std::size_t>(impuesto.Numero - 1);
  return indice < Asignacion.size() ? Asignacion[indice].Nombre : UnicodeString();
}

TClientDataSet TResumenFiscal::DamePartidas() const {
  TClientDataSet datos;
  datos.CreateDataSet({{.Name = u"RENGLON", .DataType = TFieldType::ftLargeint},
                       Texto(u"CANTIDAD", kLargoMonto),
                       Texto(u"VALORUNITARIO", kLargoMonto),
                       Texto(u"IMPORTE", kLargoMonto),
                       Texto(u"DESCUENTO", kLargoMonto),
                       {.Name = u"IMPUESTOS",
                        .DataType = TFieldType::ftDataSet,
                        .ChildDefs = {{.Name = u"NUMERO", .DataType = TFieldType::ftLargeint},
                                      Texto(u"TIPO", kLargoClave),
                                      Texto(u"IMPUESTO", kLargoNombre),
                                      Texto(u"TIPOFACTOR", kLargoClave),
                                      Texto(u"TASAOCUOTA", kLargoMonto),
                                      Texto(u"BASE", kLargoMonto),
                                      Texto(u"IMPORTE", kLargoMonto)}}});
  for (const TPartidaFiscal& partida : Partidas) {
    const Registro registro(datos);
    registro.Pon(u"RENGLON", static_cast<std::int64_t>(partida.Renglon));
    registro.Pon(u"CANTIDAD", partida.Cantidad);
    registro.Pon(u"VALORUNITARIO", partida.ValorUnitario);
    registro.Pon(u"IMPORTE", partida.Importe);
    registro.Pon(u"DESCUENTO", partida.Descuento);
    TClientDataSet& impuestos = registro.Anidado(u"IMPUESTOS");
    for (const TImpuestoImpreso& impuesto : partida.Impuestos) {
      const Registro renglon(impuestos);
      renglon.Pon(u"NUMERO", impuesto.Numero);
      renglon.Pon(u"TIPO", Tipo(impuesto.Retenido));
      renglon.Pon(u"IMPUESTO", DameNombre(impuesto));
      renglon.Pon(u"TIPOFACTOR", DameTipoFactor(impuesto.Factor));
      renglon.Pon(u"BASE", impuesto.Base);
      if (impuesto.Factor != ENUM_FACTOR_FISCAL::EXENTO) {
        renglon.Pon(u"TASAOCUOTA", impuesto.Tasa);
        renglon.Pon(u"IMPORTE", impuesto.Importe);
      }
      impuestos.Post();
    }
    datos.Post();
  }
  datos.First();
  return datos;
}

TClientDataSet TResumenFiscal::DameTotales() const {
  TClientDataSet datos;
  datos.CreateDataSet({Texto(u"CONCEPTO", kLargoClave), Texto(u"IMPUESTO", kLargoNombre),
                       Texto(u"TIPOFACTOR", kLargoClave), Texto(u"TASAOCUOTA", kLargoMonto),
                       Texto(u"BASE", kLargoMonto), Texto(u"IMPORTE", kLargoMonto)});
  const auto figura = [&datos](std::u16string_view concepto, const TMontoFiscal& importe) {
    const Registro registro(datos);
    registro.Pon(u"CONCEPTO", concepto);
    registro.Pon(u"IMPORTE", importe);
    datos.Post();
  };
  figura(u"SubTotal", SubTotal);
  figura(u"Descuento", Descuento);
  for (const TTrasladoFiscal& traslado : Traslados) {
    const Registro registro(datos);
    registro.Pon(u"CONCEPTO", kTraslado);
    registro.Pon(u"IMPUESTO", DameClaveImpuesto(traslado.Impuesto));
    registro.Pon(u"TIPOFACTOR", DameTipoFactor(traslado.Factor));
    registro.Pon(u"BASE", traslado.Base);
    if (traslado.Factor != ENUM_FACTOR_FISCAL::EXENTO) {
      registro.Pon(u"TASAOCUOTA", traslado.Tasa);
      registro.Pon(u"IMPORTE", traslado.Importe);
    }
    datos.Post();
  }
  for (const TRetencionFiscal& retencion : Retenciones) {
    const Registro registro(datos);
    registro.Pon(u"CONCEPTO", kRetencion);
    registro.Pon(u"IMPUESTO", DameClaveImpuesto(retencion.Impuesto));
    registro.Pon(u"IMPORTE", retencion.Importe);
    datos.Post();
  }
  for (const TLocalFiscal& local : Locales) {
    const Registro registro(datos);
    registro.Pon(u"CONCEPTO", UnicodeString(u"Local").append(Tipo(local.Retenido)));
    registro.Pon(u"IMPUESTO", local.Nombre);
    registro.Pon(u"TASAOCUOTA", local.Tasa);
    registro.Pon(u"IMPORTE", local.Importe);
    datos.Post();
  }
  figura(u"TotalImpuestosTrasladados", TotalImpuestosTrasladados);
  figura(u"TotalImpuestosRetenidos", TotalImpuestosRetenidos);
  figura(u"TotalLocalesTrasladados", TotalLocalesTrasladados);
  figura(u"TotalLocalesRetenidos", TotalLocalesRetenidos);
  figura(u"Total", Total);
  if (Diferencia) figura(u"Diferencia", {*Diferencia, DecimalesMoneda});
  datos.First();
  return datos;
}

std::string TResumenFiscal::DameJson() const {
  EscritorJson json;
  const auto tasado = [&json](ENUM_FACTOR_FISCAL factor, const TMontoFiscal& tasa, const TMontoFiscal& base,
                              const TMontoFiscal& importe) {
    json.Pon("TipoFactor", DameTipoFactor(factor));
    json.Pon("Base", base);
    if (factor == ENUM_FACTOR_FISCAL::EXENTO) return;
    json.Pon("TasaOCuota", tasa);
    json.Pon("Importe", importe);
  };
  json.Abre({}, '{');
  Arreglo(json, "Partidas", Partidas, [&](const TPartidaFiscal& p) {
    json.PonNumero("Renglon", static_cast<std::int64_t>(p.Renglon));
    json.Pon("Cantidad", p.Cantidad);
    json.Pon("ValorUnitario", p.ValorUnitario);
    json.Pon("Importe", p.Importe);
    json.Pon("Descuento", p.Descuento);
    Arreglo(json, "Impuestos", p.Impuestos, [&](const TImpuestoImpreso& i) {
      json.PonNumero("Numero", i.Numero);
      json.Pon("Tipo", Tipo(i.Retenido));
      json.Pon("Impuesto", DameNombre(i));
      tasado(i.Factor, i.Tasa, i.Base, i.Importe);
    });
  });
  json.Pon("SubTotal", SubTotal);
  json.Pon("Descuento", Descuento);
  Arreglo(json, "Traslados", Traslados, [&](const TTrasladoFiscal& t) {
    json.Pon("Impuesto", DameClaveImpuesto(t.Impuesto));
    tasado(t.Factor, t.Tasa, t.Base, t.Importe);
  });
  Arreglo(json, "Retenciones", Retenciones, [&](const TRetencionFiscal& r) {
    json.Pon("Impuesto", DameClaveImpuesto(r.Impuesto));
    json.Pon("Importe", r.Importe);
  });
  Arreglo(json, "Locales", Locales, [&](const TLocalFiscal& l) {
    json.Pon("Tipo", Tipo(l.Retenido));
    json.Pon("Nombre", l.Nombre);
    json.Pon("TasaOCuota", l.Tasa);
    json.Pon("Importe", l.Importe);
  });
  json.Pon("TotalImpuestosTrasladados", TotalImpuestosTrasladados);
  json.Pon("TotalImpuestosRetenidos", TotalImpuestosRetenidos);
  json.Pon("TotalLocalesTrasladados", TotalLocalesTrasladados);
  json.Pon("TotalLocalesRetenidos", TotalLocalesRetenidos);
  json.Pon("Total", Total);
  if (Diferencia) {
    json.Pon("Diferencia", TMontoFiscal{*Diferencia, DecimalesMoneda});
  } else {
    json.PonCrudo("Diferencia", "null");
  }
  Arreglo(json, "Motivos", Motivos, [&](const TMotivoFiscal& m) {
    json.Pon("Codigo", m.Codigo);
    json.PonNumero("Renglon", static_cast<std::int64_t>(m.Renglon));
    json.PonNumero("Impuesto", m.Impuesto);
    json.Pon("Mensaje", m.Mensaje);
  });
  json.Cierra('}');
  return json.Termina();
}

}  // namespace vel
