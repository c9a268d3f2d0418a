#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Ucalculocfdi/TCalculoCFDI.h"
#include "framework/Numeros.h"
#include "framework/TClientDataSet.h"

namespace pruebas {

using namespace vel;

using Partida = std::map<UnicodeString, Variant>;

// Fields that every line needs; a test's line adds to them or changes them.
inline const Partida kBasica = {
    {u"CVE_DOC", Variant(u"A1")}, {u"CANT", Variant(1.0)},      {u"PREC", Variant(100.0)},
    {u"COST", Variant(40.0)},     {u"TIP_CAM", Variant(1.0)},   {u"DESC1", Variant(0.0)},
    {u"DESC2", Variant(0.0)},     {u"DESC3", Variant(0.0)},     {u"DESCU", Variant(0.0)},
    {u"MAN_IEPS", Variant(u"N")}, {u"APL_MAN_IMP", Variant(0)}, {u"APL_MAN_IEPS", Variant(u"")},
    {u"MTO_CUOTA", Variant(0.0)}, {u"TIPO_PROD", Variant(u"")}, {u"TIPO_ELEM", Variant(u"")}};

inline TFieldType TipoDe(const Variant& valor) {
  switch (valor.GetKind()) {
    case Variant::Kind::Double:
      return TFieldType::ftFloat;
    case Variant::Kind::Integer:
      return TFieldType::ftInteger;
    default:
      return TFieldType::ftString;
  }
}

inline TClientDataSet Lineas(const std::vector<Partida>& cambios, std::u16string_view sinCampo = {}) {
  Partida campos = kBasica;
  for (int n = 1; n <= 8; ++n) campos[u"IMPU" + IntToStr(n)] = Variant(0.0);
  for (const Partida& p : cambios) {
    for (const auto& [nombre, valor] : p) campos[nombre] = valor;
  }
  std::vector<TFieldDef> defs;
  for (const auto& [nombre, valor] : campos) {
    if (nombre != sinCampo) defs.push_back({.Name = nombre, .DataType = TipoDe(valor)});
  }
  TClientDataSet lineas;
  lineas.CreateDataSet(defs);
  for (const Partida& p : cambios) {
    lineas.Append();
    for (const TFieldDef& def : defs) {
      const auto propio = p.find(def.Name);
      const auto basico = kBasica.find(def.Name);
      if (propio != p.end()) {
        lineas.FieldByName(def.Name).SetValue(propio->second);
      } else if (basico != kBasica.end()) {
        lineas.FieldByName(def.Name).SetValue(basico->second);
      }
    }
    lineas.Post();
  }
  return lineas;
}

/// A document of these lines.
struct Motor : TCalculoCFDI {
  explicit Motor(const std::vector<Partida>& lineas, ENUM_MODULO modulo = ENUM_MODULO::MODULO_VENTAS)
      : TCalculoCFDI(modulo, ENUM_PROC_FACTCOMP::PROC_NORMAL, TIPO_DOCTO::TD_FACTURA) {
    SetPartidas(Lineas(lineas));
  }
};

/// "rate: base + tax; ..." of a tax list; "none" where there is none.
inline std::string ListaDe(TCalculoCFDI& calculo, int numero) {
  TStringList* lista = nullptr;
  calculo.DameListImpuestos(lista, numero);
  if (lista == nullptr) return "none";
  UnicodeString texto;
  for (std::size_t i = 0; i < lista->Count(); ++i) {
    const auto& montos = dynamic_cast<const TStringList&>(*lista->Objects(i));
    texto += (i == 0 ? u"" : u"; ") + lista->Strings(i) + u": " + montos[0] + u" + " + montos[1];
  }
  return UTF8Encode(texto);
}

inline Partida Iva(double tasa, double precio) {
  return {{u"IMPU1", Variant(tasa)}, {u"IMP1APLA", Variant(0)}, {u"PREC", Variant(precio)}};
}

inline Partida Mas(Partida partida, const Partida& otra) {
  for (const auto& [nombre, valor] : otra) partida[nombre] = valor;
  return partida;
}

using Pares = std::vector<std::pair<std::string, std::string>>;

/// "name=value, name=value".
inline Pares ParesDe(std::string texto) {
  Pares pares;
  for (texto += ", "; !texto.empty(); texto.erase(0, texto.find(", ") + 2)) {
    const std::size_t igual = texto.find('=');
    pares.emplace_back(texto.substr(0, igual), texto.substr(igual + 1, texto.find(", ") - igual - 1));
  }
  return pares;
}

/// The line of a case file: what it does not name is 1, 2 (the cost) or nothing.
inline Partida LineaDe(const std::string& texto) {
  const std::set<std::string> textos = {"CVE_DOC",   "MAN_IEPS",  "APL_MAN_IEPS",
                                        "TIPO_PROD", "TIPO_ELEM", "MUESTRA_PAR"};
  Partida linea{{u"CVE_DOC", Variant(u"")}, {u"PREC", Variant(1.0)}, {u"COST", Variant(2.0)}};
  for (const auto& [campo, valor] : ParesDe(texto)) {
    const UnicodeString propio = UTF8ToString(valor);
    linea[UTF8ToString(campo)] = textos.contains(campo) ? Variant(propio) : Variant(StrToFloat(propio));
  }
  return linea;
}

}  // namespace pruebas
