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

namespace {

[[noreturn]] void FallaValor(const TFieldDef& def, std::u16string_view que) {
  throw EDatabaseError(u"El valor del campo '" + def.Name + u"' no se puede guardar: " + UnicodeString(que));
}

// Letters, digits and "_", not beginning with a digit: a name that every XML reader takes.
bool EsNombreXml(std::string_view nombre) noexcept {
  const auto letra = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_'; };
  const auto digito = [](char c) { return c >= '0' && c <= '9'; };
  return !nombre.empty() && letra(nombre.front()) &&
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

// False for a text with a character that XML does not have, or half of one.
bool CabeEnXml(std::u16string_view texto) noexcept {
  for (std::size_t i = 0; i < texto.size(); ++i) {
    const char16_t c = texto[i];
    if (c >= 0xD800 && c <= 0xDFFF) {
      const bool par =
          c <= 0xDBFF && i + 1 < texto.size() && texto[i + 1] >= 0xDC00 && texto[i + 1] <= 0xDFFF;
      if (!par) return false;
      ++i;
    } else if (!xml::EsCaracter(c)) {
      return false;
    }
  }
  return true;
}

void AgregaEscapado(std::string& salida, std::string_view texto) {
  for (const char c : texto) {
    switch (c) {
      case '&':
        salida += "&amp;";
        break;
      case '<':
        salida += "&lt;";
        break;
      case '>':
        salida += "&gt;";
        break;
      case '"':
        salida += "&quot;";
        break;
      default:
        // A reader would turn these into blanks if they stood as they are.
        if (static_cast<unsigned char>(c) < 0x20) {
          salida.append("&#").append(std::to_string(static_cast<int>(c))).append(";");
        } else {
          salida += c;
        }
    }
  }
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
      if (!CabeEnXml(columna.textos[registro])) {
        FallaValor(columna.def, u"el texto tiene un carácter que XML no admite");
      }
      AgregaEscapado(salida, UTF8Encode(columna.textos[registro]));
      break;
    case Clase::Anidado:
      break;
  }
}

void AgregaCampos(std::string& salida, const std::vector<TFieldDef>& defs) {
  const std::vector<std::string> atributos = Atributos(defs);
  salida += "<FIELDS>\n";
  for (std::size_t i = 0; i < defs.size(); ++i) {
    const TFieldDef& def = defs[i];
    salida.append("<FIELD attrname=\"").append(atributos[i]).append("\"");
    const std::string nombre = UTF8Encode(def.Name);
    if (!CabeEnXml(def.Name)) FallaValor(def, u"su nombre tiene un carácter que XML no admite");
    if (nombre != atributos[i]) {
      salida += " fieldname=\"";
      AgregaEscapado(salida, nombre);
      salida += '"';
    }
    if (def.DataType == TFieldType::ftDataSet) {
      salida.append(" fieldtype=\"").append(conjunto::kTipoAnidado).append("\"");
      salida += def.Required ? " required=\"true\">\n" : ">\n";
      AgregaCampos(salida, def.ChildDefs);
      salida += "</FIELD>\n";
      continue;
    }
    const auto* const tipo =
        std::find_if(conjunto::kTiposPaquete, conjunto::kTiposPaquete + conjunto::kCuantosTiposPaquete,
                     [&def](const conjunto::TipoPaquete& t) { return t.campo == def.DataType; });
    salida.append(" fieldtype=\"").append(tipo->tipo).append("\"");
    if (!tipo->subtipo.empty()) salida.append(" SUBTYPE=\"").append(tipo->subtipo).append("\"");
    if (def.Required) salida += " required=\"true\"";
    // The width of Unicode text counts bytes.
    if (def.Size > 0) {
      const long long ancho = tipo->tipo == "string.uni" ? 2LL * def.Size : def.Size;
      salida.append(" WIDTH=\"").append(std::to_string(ancho)).append("\"");
    }
    salida += "/>\n";
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
  AgregaCampos(salida, estado_->defs);
  salida += "<PARAMS/>\n</METADATA>\n<ROWDATA>\n";
  AgregaFilas(salida, *estado_, "ROW");
  salida += "</ROWDATA>\n</DATAPACKET>\n";
  return salida;
}

}  // namespace vel
