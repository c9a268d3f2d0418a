// Writer of client data-set XML packets, version 2.0.

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string>
#include <vector>

#include "framework/Columnas.h"
#include "framework/DecimalCorto.h"
#include "framework/Excepciones.h"
#include "framework/Xml.h"

namespace vel {

using conjunto::Clase;
using conjunto::Columna;
using conjunto::Estado;
using conjunto::Resto;
using conjunto::TipoDeCampo;

namespace {

constexpr std::string_view kObligatorio = " required=\"true\"";

[[noreturn]] void FallaValor(const TFieldDef& def, std::u16string_view que) {
  throw EDatabaseError(u"El valor del campo '" + def.Name + u"' no se puede guardar: " + UnicodeString(que));
}

// Letters, digits and "_", not beginning with a digit: a name that every XML reader takes. Names that begin
// with "xml" are XML's own, and "RowState" is the packet's.
bool EsNombreXml(std::string_view nombre) noexcept {
  const auto letra = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_'; };
  const auto digito = [](char c) { return c >= '0' && c <= '9'; };
  const auto minuscula = [](char c) { return static_cast<char>(c | 0x20); };
  const bool reservado =
      nombre == conjunto::kEstadoFila || (nombre.size() >= 3 && minuscula(nombre[0]) == 'x' &&
                                          minuscula(nombre[1]) == 'm' && minuscula(nombre[2]) == 'l');
  return !nombre.empty() && !reservado && letra(nombre.front()) &&
         std::all_of(nombre.begin(), nombre.end(), [&](char c) { return letra(c) || digito(c); });
}

// The attribute of each field: its name, or "_" and its number where the name is no XML name.
std::vector<std::string> Atributos(const std::vector<TFieldDef>& defs) {
  std::vector<std::string> atributos;
  for (const TFieldDef& def : defs) {
    std::string nombre = UTF8Encode(def.Name);
    const bool sirve = EsNombreXml(nombre) && nombre.front() != '_';
    atributos.push_back(sirve ? std::move(nombre) : "_" + std::to_string(atributos.size()));
  }
  return atributos;
}

// A number of so many digits at most, with zeros before it.
template <std::size_t kCifras>
void AgregaCifras(std::string& salida, int valor) {
  std::array<char, kCifras> texto;
  for (std::size_t i = kCifras; i > 0; valor /= 10) texto[--i] = static_cast<char>('0' + valor % 10);
  salida.append(texto.data(), texto.size());
}

void AgregaMomento(std::string& salida, TFieldType tipo, TDateTime momento) {
  if (tipo != TFieldType::ftTime) {
    const CivilDate f = DecodeDate(momento);
    AgregaCifras<4>(salida, f.anio);
    AgregaCifras<2>(salida, f.mes);
    AgregaCifras<2>(salida, f.dia);
    if (tipo == TFieldType::ftDate) return;
    salida += 'T';
  }
  const CivilTime h = DecodeTime(momento);
  AgregaCifras<2>(salida, h.hora);
  salida += ':';
  AgregaCifras<2>(salida, h.minuto);
  salida += ':';
  AgregaCifras<2>(salida, h.segundo);
  AgregaCifras<3>(salida, h.milisegundo);
}

void AgregaEntero(std::string& salida, std::int64_t valor) {
  std::array<char, 24> buf;
  const auto r = std::to_chars(buf.data(), buf.data() + buf.size(), valor);
  salida.append(buf.data(), r.ptr);
}

// The shortest text that reads back to the same double.
void AgregaReal(std::string& salida, const TFieldDef& def, double valor) {
  if (AgregaDecimalCorto(salida, valor)) return;
  if (!std::isfinite(valor)) FallaValor(def, u"no es un número finito");
  // Fixed-point numbers have no exponent.
  const bool fijo = def.DataType == TFieldType::ftBCD || def.DataType == TFieldType::ftFMTBcd;
  std::array<char, 1100> buf;
  char* const fin = buf.data() + buf.size();
  const auto r = fijo ? std::to_chars(buf.data(), fin, valor, std::chars_format::fixed)
                      : std::to_chars(buf.data(), fin, valor);
  salida.append(buf.data(), r.ptr);
}

void AgregaValor(std::string& salida, const Columna& columna, std::size_t registro) {
  switch (columna.clase) {
    case Clase::Entero:
      AgregaEntero(salida, columna.enteros[registro]);
      break;
    case Clase::Booleano:
      salida += columna.enteros[registro] != 0 ? "TRUE" : "FALSE";
      break;
    case Clase::Real:
      AgregaReal(salida, columna.def, columna.reales[registro]);
      break;
    case Clase::Fecha:
      AgregaMomento(salida, columna.def.DataType, TDateTime(columna.reales[registro]));
      break;
    case Clase::Texto:
      if (!xml::AgregaEscapado(salida, columna.textos[registro])) {
        FallaValor(columna.def, u"el texto tiene un carácter que XML no admite");
      }
      break;
    case Clase::Anidado:
      break;
  }
}

// Type of a field that is not nested. The width stands last, as in the files of earlier versions, so that a
// save of what is unchanged changes no byte.
void AgregaTipo(std::string& salida, const TFieldDef& def) {
  const TipoDeCampo& tipo = conjunto::TipoDe(def.DataType);
  xml::AgregaAtributo(salida, "fieldtype", tipo.paquete);
  if (!tipo.subtipo.empty()) xml::AgregaAtributo(salida, "SUBTYPE", tipo.subtipo);
  if (def.Required) salida += kObligatorio;
  if (def.Size <= 0) return;
  // The width of Unicode text counts bytes.
  const long long ancho = tipo.paquete == conjunto::kTipoUnicode ? 2LL * def.Size : def.Size;
  xml::AgregaAtributo(salida, "WIDTH", std::to_string(ancho));
}

void AgregaCampos(std::string& salida, const std::vector<TFieldDef>& defs, const Resto& resto) {
  const std::vector<std::string> atributos = Atributos(defs);
  const Resto nada;
  salida += "<FIELDS>\n";
  for (std::size_t i = 0; i < defs.size(); ++i) {
    const TFieldDef& def = defs[i];
    const Resto& propio = i < resto.campos.size() ? resto.campos[i] : nada;
    const std::string nombre = UTF8Encode(def.Name);
    if (!xml::CabeEnXml(def.Name)) FallaValor(def, u"su nombre tiene un carácter que XML no admite");
    salida += "<FIELD";
    xml::AgregaAtributo(salida, "attrname", atributos[i]);
    if (nombre != atributos[i]) xml::AgregaAtributo(salida, "fieldname", nombre);
    const bool anidado = def.DataType == TFieldType::ftDataSet;
    if (anidado) {
      xml::AgregaAtributo(salida, "fieldtype", conjunto::kTipoAnidado);
      if (def.Required) salida += kObligatorio;
    } else {
      AgregaTipo(salida, def);
    }
    salida += propio.atributos;
    if (!anidado && propio.elementos.empty()) {
      salida += "/>\n";
      continue;
    }
    salida += ">\n";
    if (anidado) AgregaCampos(salida, def.ChildDefs, propio);
    salida.append(propio.elementos).append("</FIELD>\n");
  }
  salida += "</FIELDS>\n";
}

// Makes room for all rows after some of them, by what these took; a little more, since later ones may be
// longer.
void ReservaFilas(std::string& salida, std::size_t desde, std::size_t hechas, std::size_t todas) {
  const double porFila = static_cast<double>(salida.size() - desde) / static_cast<double>(hechas);
  constexpr double kDeMas = 1.05;
  salida.reserve(desde + static_cast<std::size_t>(porFila * static_cast<double>(todas) * kDeMas));
}

void AgregaFilas(std::string& salida, const Estado& estado, const std::string& nombreFila) {
  constexpr std::size_t kMuestra = 64;
  const std::vector<std::string> atributos = Atributos(estado.defs);
  // What stands before each value.
  std::vector<std::string> comienzos;
  comienzos.reserve(atributos.size());
  for (const std::string& atributo : atributos) comienzos.push_back(" " + atributo + "=\"");
  std::vector<std::size_t> anidados;
  for (std::size_t i = 0; i < atributos.size(); ++i) {
    if (estado.ColumnaDe(i).clase == Clase::Anidado) anidados.push_back(i);
  }
  const std::size_t desde = salida.size();
  for (std::size_t registro = 0; registro < estado.registros; ++registro) {
    if (registro == kMuestra) ReservaFilas(salida, desde, registro, estado.registros);
    salida.append("<").append(nombreFila);
    for (std::size_t i = 0; i < atributos.size(); ++i) {
      const Columna& columna = estado.ColumnaDe(i);
      if (columna.conValor[registro] == 0) continue;
      salida.append(comienzos[i]);
      AgregaValor(salida, columna, registro);
      salida += '"';
    }
    if (anidados.empty()) {
      salida += "/>\n";
      continue;
    }
    salida += ">\n";
    for (const std::size_t i : anidados) {
      const Columna& columna = estado.ColumnaDe(i);
      if (columna.anidados[registro] == nullptr) continue;
      const Estado& anidado = Estado::De(*columna.anidados[registro]);
      if (anidado.registros == 0) continue;
      salida.append("<").append(atributos[i]).append(">\n");
      AgregaFilas(salida, anidado, "ROW" + atributos[i]);
      salida.append("</").append(atributos[i]).append(">\n");
    }
    salida.append("</").append(nombreFila).append(">\n");
  }
}

}  // namespace

std::string TClientDataSet::SaveToXML() const {
  std::string salida =
      "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<DATAPACKET "
      "Version=\"2.0\">\n<METADATA>\n";
  const Resto& resto = estado_->resto;
  AgregaCampos(salida, estado_->defs, resto);
  salida.append(resto.elementos.empty() ? "<PARAMS/>\n" : resto.elementos);
  salida += "</METADATA>\n<ROWDATA>\n";
  AgregaFilas(salida, *estado_, "ROW");
  salida += "</ROWDATA>\n</DATAPACKET>\n";
  return salida;
}

}  // namespace vel
