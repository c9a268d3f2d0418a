// Writer of client data-set XML packets, version 2.0.

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string>
#include <vector>

#include "framework/Columnas.h"
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

void AgregaCifras(std::string& salida, int valor, std::size_t cuantas) {
  const std::string texto = std::to_string(valor);
  salida.append(cuantas - std::min(cuantas, texto.size()), '0').append(texto);
}

void AgregaMomento(std::string& salida, TFieldType tipo, TDateTime momento) {
  if (tipo != TFieldType::ftTime) {
    const CivilDate f = DecodeDate(momento);
    AgregaCifras(salida, f.anio, 4);
    AgregaCifras(salida, f.mes, 2);
    AgregaCifras(salida, f.dia, 2);
    if (tipo == TFieldType::ftDate) return;
    salida += 'T';
  }
  const CivilTime h = DecodeTime(momento);
  AgregaCifras(salida, h.hora, 2);
  salida += ':';
  AgregaCifras(salida, h.minuto, 2);
  salida += ':';
  AgregaCifras(salida, h.segundo, 2);
  AgregaCifras(salida, h.milisegundo, 3);
}

void AgregaValor(std::string& salida, const Columna& columna, std::size_t registro) {
  switch (columna.clase) {
    case Clase::Entero:
      salida += std::to_string(columna.enteros[registro]);
      break;
    case Clase::Booleano:
      salida += columna.enteros[registro] != 0 ? "TRUE" : "FALSE";
      break;
    case Clase::Real: {
      if (!std::isfinite(columna.reales[registro])) FallaValor(columna.def, u"no es un número finito");
      // The shortest text that reads back to the same double; fixed-point numbers have no exponent.
      const bool fijo =
          columna.def.DataType == TFieldType::ftBCD || columna.def.DataType == TFieldType::ftFMTBcd;
      std::array<char, 1100> buf;
      char* const fin = buf.data() + buf.size();
      const double valor = columna.reales[registro];
      const auto r = fijo ? std::to_chars(buf.data(), fin, valor, std::chars_format::fixed)
                          : std::to_chars(buf.data(), fin, valor);
      salida.append(buf.data(), r.ptr);
      break;
    }
    case Clase::Fecha:
      AgregaMomento(salida, columna.def.DataType, TDateTime(columna.reales[registro]));
      break;
    case Clase::Texto:
      if (!xml::CabeEnXml(columna.textos[registro])) {
        FallaValor(columna.def, u"el texto tiene un carácter que XML no admite");
      }
      xml::AgregaEscapado(salida, UTF8Encode(columna.textos[registro]));
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

void AgregaFilas(std::string& salida, const Estado& estado, const std::string& nombreFila) {
  const std::vector<std::string> atributos = Atributos(estado.defs);
  for (std::size_t registro = 0; registro < estado.registros; ++registro) {
    salida.append("<").append(nombreFila);
    bool conAnidados = false;
    for (std::size_t i = 0; i < atributos.size(); ++i) {
      const Columna& columna = estado.ColumnaDe(i);
      if (columna.clase == Clase::Anidado) conAnidados = true;
      if (columna.conValor[registro] == 0) continue;
      salida.append(" ").append(atributos[i]).append("=\"");
      AgregaValor(salida, columna, registro);
      salida += '"';
    }
    if (!conAnidados) {
      salida += "/>\n";
      continue;
    }
    salida += ">\n";
    for (std::size_t i = 0; i < atributos.size(); ++i) {
      const Columna& columna = estado.ColumnaDe(i);
      if (columna.clase != Clase::Anidado || columna.anidados[registro] == nullptr) continue;
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
