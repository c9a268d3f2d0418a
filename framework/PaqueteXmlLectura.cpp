// Reader of client data-set XML packets, version 2.0.

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <limits>
#include <pugixml.hpp>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

#include "framework/Columnas.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "framework/Xml.h"

namespace vel::conjunto {

const TipoPaquete kTiposPaquete[] = {
    {"i1", "", TFieldType::ftShortint},
    {"i2", "", TFieldType::ftSmallint},
    {"i4", "", TFieldType::ftInteger},
    {"i4", "Autoinc", TFieldType::ftAutoInc},
    {"i8", "", TFieldType::ftLargeint},
    {"ui1", "", TFieldType::ftByte},
    {"ui2", "", TFieldType::ftWord},
    {"ui4", "", TFieldType::ftLongWord},
    {"r8", "", TFieldType::ftFloat},
    {"r8", "Money", TFieldType::ftCurrency},
    {"r8", "Single", TFieldType::ftSingle},
    {"r8", "Extended", TFieldType::ftExtended},
    {"fixed", "", TFieldType::ftBCD},
    {"fixed", "FMTBcd", TFieldType::ftFMTBcd},
    {"boolean", "", TFieldType::ftBoolean},
    {"string", "", TFieldType::ftString},
    {"string", "FixedChar", TFieldType::ftFixedChar},
    {"string", "Guid", TFieldType::ftGuid},
    {"string.uni", "", TFieldType::ftWideString},
    {"string.uni", "FixedChar", TFieldType::ftFixedWideChar},
    {"date", "", TFieldType::ftDate},
    {"time", "", TFieldType::ftTime},
    {"dateTime", "", TFieldType::ftDateTime},
    {"SQLdateTime", "", TFieldType::ftTimeStamp},
    {"bin.hex", "Text", TFieldType::ftMemo},
    {"bin.hex", "WideText", TFieldType::ftWideMemo},
    {"bin.hex", "Formatted", TFieldType::ftFmtMemo},
};
const std::size_t kCuantosTiposPaquete = std::size(kTiposPaquete);

namespace {

// Bits of RowState: the row as it was before a change, or a deleted row; neither is a live record.
constexpr int kFilaSuperada = 1;
constexpr int kFilaBorrada = 2;

/// The fields of a level of the packet, in their order.
struct Entradas {
  /// The attribute (or nested element) that holds each in a row; the levels within it.
  std::vector<std::string> atributos;
  std::vector<Entradas> hijas;
  std::unordered_map<std::string_view, std::size_t> porAtributo;

  /// Index of the field of that attribute, looked for from `esperado` on; the number of fields when there is
  /// none.
  std::size_t Busca(const char* atributo, std::size_t esperado) const {
    if (esperado < atributos.size() && std::strcmp(atributos[esperado].c_str(), atributo) == 0)
      return esperado;
    const auto it = porAtributo.find(atributo);
    return it == porAtributo.end() ? atributos.size() : it->second;
  }
};

// The views in it must not dangle when a list of levels grows.
static_assert(std::is_nothrow_move_constructible_v<Entradas>);

// Reads `cuenta` digits from the front of the text.
bool LeeCifras(std::string_view& texto, std::size_t cuenta, int& valor) noexcept {
  if (texto.size() < cuenta) return false;
  int leido = 0;
  for (std::size_t i = 0; i < cuenta; ++i) {
    if (texto[i] < '0' || texto[i] > '9') return false;
    leido = leido * 10 + (texto[i] - '0');
  }
  texto.remove_prefix(cuenta);
  valor = leido;
  return true;
}

bool LeeCaracter(std::string_view& texto, char c) noexcept {
  if (texto.empty() || texto.front() != c) return false;
  texto.remove_prefix(1);
  return true;
}

// "yyyymmdd"
bool LeeFecha(std::string_view& texto, TDateTime& fecha) noexcept {
  CivilDate f;
  return LeeCifras(texto, 4, f.anio) && LeeCifras(texto, 2, f.mes) && LeeCifras(texto, 2, f.dia) &&
         TryEncodeDate(f, fecha);
}

// "hh:mm:ss" and, when there are any, milliseconds "mmm"
bool LeeHora(std::string_view& texto, TDateTime& hora) noexcept {
  CivilTime h;
  if (!LeeCifras(texto, 2, h.hora) || !LeeCaracter(texto, ':') || !LeeCifras(texto, 2, h.minuto) ||
      !LeeCaracter(texto, ':') || !LeeCifras(texto, 2, h.segundo)) {
    return false;
  }
  if (!texto.empty() && !LeeCifras(texto, 3, h.milisegundo)) return false;
  return TryEncodeTime(h, hora);
}

bool LeeMomento(TFieldType tipo, std::string_view texto, TDateTime& momento) noexcept {
  TDateTime fecha;
  TDateTime hora;
  if (tipo != TFieldType::ftTime && !LeeFecha(texto, fecha)) return false;
  const bool conHora = tipo == TFieldType::ftTime || (tipo != TFieldType::ftDate && LeeCaracter(texto, 'T'));
  if (conHora && !LeeHora(texto, hora)) return false;
  if (!texto.empty()) return false;
  momento = ComposeDateTime(fecha, hora);
  return true;
}

// Length of the beginning of a text that has no control characters, by words of eight bytes.
std::size_t LargoSinControles(std::string_view texto) noexcept {
  constexpr std::uint64_t kAltos = 0x8080808080808080U;
  constexpr std::uint64_t kBlancos = 0x2020202020202020U;
  std::size_t i = 0;
  for (; i + sizeof(std::uint64_t) <= texto.size(); i += sizeof(std::uint64_t)) {
    std::uint64_t ocho = 0;
    std::memcpy(&ocho, texto.data() + i, sizeof ocho);
    // A byte below a blank borrows into its high bit, and has none of its own.
    if (((ocho - kBlancos) & ~ocho & kAltos) != 0) break;
  }
  while (i < texto.size() && static_cast<unsigned char>(texto[i]) >= 0x20) ++i;
  return i;
}

bool IgualaAscii(std::string_view a, std::string_view mayusculas) noexcept {
  return std::equal(a.begin(), a.end(), mayusculas.begin(), mayusculas.end(),
                    [](char x, char y) { return (x >= 'a' && x <= 'z' ? x - 32 : x) == y; });
}

// Stores the text of an attribute in a record; false when it does not fit the column's type.
bool PonAtributo(Columna& columna, std::size_t registro, std::string_view texto) {
  switch (columna.clase) {
    case Clase::Entero: {
      std::int64_t valor = 0;
      const auto r = std::from_chars(texto.data(), texto.data() + texto.size(), valor);
      if (r.ec != std::errc() || r.ptr != texto.data() + texto.size() || !columna.CabeEntero(valor))
        return false;
      columna.enteros[registro] = valor;
      break;
    }
    case Clase::Booleano: {
      const bool cierto = IgualaAscii(texto, "TRUE");
      if (!cierto && !IgualaAscii(texto, "FALSE")) return false;
      columna.enteros[registro] = cierto ? 1 : 0;
      break;
    }
    case Clase::Real:
      if (!TryStrToFloat(texto, columna.reales[registro]) || !columna.CabeReal(columna.reales[registro]))
        return false;
      break;
    case Clase::Fecha: {
      TDateTime momento;
      if (!LeeMomento(columna.def.DataType, texto, momento)) return false;
      columna.reales[registro] = momento.Val();
      break;
    }
    case Clase::Texto: {
      UnicodeString& destino = columna.textos[registro];
      destino = UTF8ToString(texto);
      if (!columna.CabeTexto(destino)) return false;
      break;
    }
    case Clase::Anidado:
      return false;
  }
  columna.conValor[registro] = 1;
  return true;
}

// Place of a control character, or of a reference to a character, that XML does not have, both of which the
// parser lets pass; npos when there is none.
std::size_t LugarDeCaracterAjeno(std::string_view texto) noexcept {
  for (std::size_t i = 0; i < texto.size(); ++i) {
    i += LargoSinControles(texto.substr(i));
    if (i < texto.size() && !xml::EsCaracter(static_cast<unsigned char>(texto[i]))) return i;
  }
  // U+FFFE and U+FFFF, which are no characters.
  for (std::size_t i = texto.find("\xEF\xBF"); i != texto.npos; i = texto.find("\xEF\xBF", i + 2)) {
    if (static_cast<unsigned char>(texto[i + 2]) >= 0xBE) return i;
  }
  for (std::size_t i = texto.find("&#"); i != texto.npos; i = texto.find("&#", i + 2)) {
    std::string_view numero = texto.substr(i + 2, texto.find(';', i) - i - 2);
    const int base = LeeCaracter(numero, 'x') ? 16 : 10;
    std::uint32_t codigo = 0;
    const auto r = std::from_chars(numero.data(), numero.data() + numero.size(), codigo, base);
    if (r.ec != std::errc() || r.ptr != numero.data() + numero.size() || !xml::EsCaracter(codigo)) return i;
  }
  return texto.npos;
}

/// The document while it is read; knows how to say where something is wrong.
class Lector {
 public:
  Lector(std::string_view bytes, std::u16string_view nombre)
      : nombre_(nombre), convertido_(Convierte(bytes)), texto_(convertido_.empty() ? bytes : convertido_) {
    if (!IsUTF8(texto_)) Falla(u"el texto no es UTF-8 válido", LugarDeByteMalo());
    if (const std::size_t malo = LugarDeCaracterAjeno(texto_); malo != texto_.npos) {
      Falla(u"no es un documento XML válido (carácter no admitido)", static_cast<std::ptrdiff_t>(malo));
    }
    // As a fragment, so that what stands outside the root shows.
    const pugi::xml_parse_result r = documento_.load_buffer(
        texto_.data(), texto_.size(), pugi::parse_default | pugi::parse_fragment, pugi::encoding_utf8);
    if (!r)
      Falla(u"no es un documento XML válido (" + UnicodeString(xml::Descripcion(r.status)) + u")", r.offset);
  }

  std::unique_ptr<Estado> Lee() {
    const pugi::xml_node raiz = documento_.first_child();
    if (!raiz) Falla(u"no es un documento XML válido (no tiene elementos)", 0);
    if (raiz.next_sibling()) Falla(u"no es un documento XML válido (sobra contenido)", raiz.next_sibling());
    if (std::strcmp(raiz.name(), "DATAPACKET") != 0) Falla(u"falta el elemento DATAPACKET", raiz);
    if (std::strcmp(raiz.attribute("Version").value(), "2.0") != 0) {
      Falla(u"la versión del paquete no es 2.0", raiz);
    }
    const pugi::xml_node campos = Unico(Unico(raiz, "METADATA"), "FIELDS");
    const pugi::xml_node filas = Unico(raiz, "ROWDATA");
    Entradas entradas;
    std::unique_ptr<Estado> estado = CreaEstado(LeeCampos(campos, entradas, 1), campos);
    LeeFilas(*estado, entradas, filas, "ROW");
    return estado;
  }

 private:
  [[noreturn]] void Falla(const UnicodeString& que, std::ptrdiff_t lugar) const {
    const auto fin =
        texto_.begin() + std::clamp<std::ptrdiff_t>(lugar, 0, static_cast<std::ptrdiff_t>(texto_.size()));
    const auto linea = std::count(texto_.begin(), fin, '\n') + 1;
    throw EDatabaseError(nombre_ + u", línea " + IntToStr(linea) + u": " + que);
  }
  [[noreturn]] void Falla(const UnicodeString& que, pugi::xml_node nodo) const {
    Falla(que, nodo.offset_debug());
  }

  // The one child of that name.
  pugi::xml_node Unico(pugi::xml_node padre, const char* nombre) const {
    const pugi::xml_node hijo = padre.child(nombre);
    if (!hijo) Falla(u"falta el elemento " + UTF8ToString(nombre), padre);
    if (hijo.next_sibling(nombre)) {
      Falla(u"el elemento " + UTF8ToString(nombre) + u" está repetido", hijo.next_sibling(nombre));
    }
    return hijo;
  }

  // The packet converted to UTF-8 from UTF-16 with a mark or from ISO 8859-1; empty when it needs no
  // conversion.
  std::string Convierte(std::string_view bytes) const {
    if (bytes.substr(0, 2) == "\xFF\xFE" || bytes.substr(0, 2) == "\xFE\xFF") return DeUtf16(bytes);
    const std::string_view declaracion = bytes.substr(0, bytes.find("?>"));
    const std::size_t lugar =
        declaracion.substr(0, 5) == "<?xml" ? declaracion.find("encoding=") : bytes.npos;
    if (lugar == bytes.npos) return {};
    std::string_view resto = declaracion.substr(lugar + 9);
    const char comilla = resto.empty() ? '"' : resto.front();
    resto.remove_prefix(std::min<std::size_t>(1, resto.size()));
    const std::string_view codificacion = resto.substr(0, resto.find(comilla));
    if (IgualaAscii(codificacion, "UTF-8") || IgualaAscii(codificacion, "US-ASCII")) return {};
    if (!IgualaAscii(codificacion, "ISO-8859-1")) {
      throw EDatabaseError(nombre_ + u", línea 1: la codificación '" + UTF8ToString(codificacion) +
                           u"' no se admite");
    }
    UnicodeString ancho;
    // Each byte of ISO 8859-1 is the code point of the same number.
    for (const char c : bytes) ancho.push_back(static_cast<unsigned char>(c));
    return UTF8Encode(ancho);
  }

  std::string DeUtf16(std::string_view bytes) const {
    const std::size_t bajo = bytes.front() == '\xFF' ? 0 : 1;
    UnicodeString ancho;
    for (std::size_t i = 2; i + 1 < bytes.size(); i += 2) {
      const auto b = [&](std::size_t k) {
        return static_cast<unsigned>(static_cast<unsigned char>(bytes[i + k]));
      };
      ancho.push_back(static_cast<char16_t>(b(bajo) | b(1 - bajo) << 8));
    }
    std::string utf8 = UTF8Encode(ancho);
    if (UTF8ToString(utf8) != ancho)
      throw EDatabaseError(nombre_ + u", línea 1: el texto no es UTF-16 válido");
    return utf8;
  }

  std::ptrdiff_t LugarDeByteMalo() const {
    // The longest good beginning, found by halves.
    std::size_t bueno = 0;
    std::size_t malo = texto_.size();
    while (malo - bueno > 4) {
      const std::size_t medio = bueno + (malo - bueno) / 2;
      std::size_t corte = medio;
      while (corte > bueno && (static_cast<unsigned char>(texto_[corte]) & 0xC0) == 0x80) --corte;
      if (corte > bueno && IsUTF8(texto_.substr(bueno, corte - bueno))) {
        bueno = corte;
      } else {
        malo = medio;
      }
    }
    return static_cast<std::ptrdiff_t>(bueno);
  }

  std::unique_ptr<Estado> CreaEstado(std::vector<TFieldDef> defs, pugi::xml_node campos) const {
    try {
      return Estado::Crea(std::move(defs));
    } catch (const EDatabaseError& e) {
      Falla(e.Message(), campos);
    }
  }

  std::vector<TFieldDef> LeeCampos(pugi::xml_node campos, Entradas& entradas, int nivel) const {
    std::vector<TFieldDef> defs;
    for (const pugi::xml_node nodo : campos.children()) {
      if (std::strcmp(nodo.name(), "FIELD") != 0) Falla(u"elemento desconocido en FIELDS", nodo);
      TFieldDef def;
      Entradas hijas;
      std::string atributo = nodo.attribute("attrname").value();
      // A name that is no XML name stands in "fieldname", and "attrname" is its stand-in for the rows.
      const pugi::xml_attribute propio = nodo.attribute("fieldname");
      def.Name = UTF8ToString(propio ? propio.value() : atributo.c_str());
      def.Required = IgualaAscii(nodo.attribute("required").value(), "TRUE");
      const std::string_view tipo = nodo.attribute("fieldtype").value();
      if (tipo == kTipoAnidado) {
        if (nivel == kNivelesMaximos) Falla(u"hay demasiados niveles de campos anidados", nodo);
        def.DataType = TFieldType::ftDataSet;
        def.ChildDefs = LeeCampos(nodo.child("FIELDS"), hijas, nivel + 1);
      } else {
        def.DataType = LeeTipo(nodo, tipo, def.Name);
        def.Size = LeeAncho(nodo, def);
      }
      defs.push_back(std::move(def));
      entradas.atributos.push_back(std::move(atributo));
      entradas.hijas.push_back(std::move(hijas));
    }
    // Views of the texts where they stay.
    for (std::size_t i = 0; i < entradas.atributos.size(); ++i) {
      if (!entradas.porAtributo.emplace(entradas.atributos[i], i).second) {
        Falla(u"el atributo '" + UTF8ToString(entradas.atributos[i]) + u"' está repetido", campos);
      }
    }
    return defs;
  }

  TFieldType LeeTipo(pugi::xml_node nodo, std::string_view tipo, const UnicodeString& campo) const {
    const std::string_view subtipo = nodo.attribute("SUBTYPE").value();
    const TipoPaquete* general = nullptr;
    for (std::size_t i = 0; i < kCuantosTiposPaquete; ++i) {
      const TipoPaquete& t = kTiposPaquete[i];
      if (t.tipo != tipo) continue;
      if (t.subtipo == subtipo) return t.campo;
      if (t.subtipo.empty()) general = &t;
    }
    // A subtype that this reader does not know refines a type that it does.
    if (general != nullptr) return general->campo;
    Falla(u"el campo '" + campo + u"' es de un tipo desconocido (" + UTF8ToString(tipo) + u" " +
              UTF8ToString(subtipo) + u")",
          nodo);
  }

  int LeeAncho(pugi::xml_node nodo, const TFieldDef& def) const {
    Clase clase = Clase::Texto;
    ClaseDe(def.DataType, clase);
    const bool memo = def.DataType == TFieldType::ftMemo || def.DataType == TFieldType::ftWideMemo ||
                      def.DataType == TFieldType::ftFmtMemo;
    const std::string_view ancho = nodo.attribute("WIDTH").value();
    // Numbers and memos carry a width too, which limits nothing.
    if (clase != Clase::Texto || memo || ancho.empty()) return 0;
    long long valor = 0;
    const auto r = std::from_chars(ancho.data(), ancho.data() + ancho.size(), valor);
    if (r.ec != std::errc() || r.ptr != ancho.data() + ancho.size() || valor < 0) {
      Falla(u"el ancho del campo '" + def.Name + u"' no es válido", nodo);
    }
    // The width of Unicode text counts bytes.
    const bool enBytes = std::string_view(nodo.attribute("fieldtype").value()) == "string.uni";
    constexpr long long kMaximo = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(enBytes ? valor / 2 + valor % 2 : valor, kMaximo));
  }

  // Whether a row with this state is a record.
  bool EstaViva(pugi::xml_node fila, std::string_view estadoFila) const {
    int bits = 0;
    const auto r = std::from_chars(estadoFila.data(), estadoFila.data() + estadoFila.size(), bits);
    if (r.ec != std::errc() || r.ptr != estadoFila.data() + estadoFila.size() || bits < 0) {
      Falla(u"el RowState no es un número", fila);
    }
    return (bits & (kFilaSuperada | kFilaBorrada)) == 0;
  }

  void LeeFilas(Estado& estado, const Entradas& entradas, pugi::xml_node contenedor,
                const std::string& nombreFila) const {
    std::size_t filas = 0;
    for (const pugi::xml_node fila : contenedor.children()) {
      if (fila.name() != nombreFila) {
        Falla(u"elemento desconocido entre las filas: " + UTF8ToString(fila.name()), fila);
      }
      ++filas;
    }
    estado.Dimensiona(filas);
    std::size_t registro = 0;
    for (const pugi::xml_node fila : contenedor.children()) {
      if (!LeeAtributos(estado, entradas, fila, registro)) continue;
      for (const pugi::xml_node hijo : fila.children()) LeeAnidado(estado, entradas, hijo, registro);
      ++registro;
    }
    estado.Dimensiona(registro);
    estado.AlPrincipio();
  }

  // False for a row that is no record; its place is then as it was.
  bool LeeAtributos(Estado& estado, const Entradas& entradas, pugi::xml_node fila,
                    std::size_t registro) const {
    bool viva = true;
    // Rows name their attributes in the order of the fields.
    std::size_t esperado = 0;
    for (pugi::xml_attribute atributo = fila.first_attribute(); atributo;
         atributo = atributo.next_attribute()) {
      const std::size_t campo = entradas.Busca(atributo.name(), esperado);
      if (campo == entradas.atributos.size()) {
        const std::string_view nombre = atributo.name();
        if (nombre != "RowState")
          Falla(u"la fila tiene un campo desconocido: '" + UTF8ToString(nombre) + u"'", fila);
        viva = EstaViva(fila, atributo.value());
        continue;
      }
      Columna& columna = estado.ColumnaDe(campo);
      if (columna.conValor[registro] != 0) Falla(u"el campo '" + columna.def.Name + u"' está repetido", fila);
      if (!PonAtributo(columna, registro, atributo.value())) {
        Falla(u"el valor del campo '" + columna.def.Name + u"' no corresponde a su tipo: '" +
                  UTF8ToString(atributo.value()).substr(0, 80) + u"'",
              fila);
      }
      esperado = campo + 1;
    }
    for (std::size_t i = 0; !viva && i < entradas.atributos.size(); ++i) estado.ColumnaDe(i).Anula(registro);
    return viva;
  }

  void LeeAnidado(Estado& estado, const Entradas& entradas, pugi::xml_node hijo, std::size_t registro) const {
    const std::size_t indice = entradas.Busca(hijo.name(), 0);
    if (indice == entradas.atributos.size() || estado.ColumnaDe(indice).clase != Clase::Anidado) {
      Falla(u"la fila tiene un elemento desconocido: '" + UTF8ToString(hijo.name()) + u"'", hijo);
    }
    // An empty one needs no data set.
    if (!hijo.first_child()) return;
    Estado& anidado = Estado::De(estado.ColumnaDe(indice).Anidado(registro));
    if (anidado.registros != 0)
      Falla(u"el elemento '" + UTF8ToString(hijo.name()) + u"' está repetido", hijo);
    LeeFilas(anidado, entradas.hijas[indice], hijo, "ROW" + entradas.atributos[indice]);
  }

  UnicodeString nombre_;
  std::string convertido_;
  std::string_view texto_;
  pugi::xml_document documento_;
};

}  // namespace

std::unique_ptr<Estado> LeePaquete(std::string_view bytes, std::u16string_view nombre) {
  return Lector(bytes, nombre).Lee();
}

}  // namespace vel::conjunto
