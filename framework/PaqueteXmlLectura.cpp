// Reader of client data-set XML packets, version 2.0.

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "framework/Columnas.h"
#include "framework/Excepciones.h"
#include "framework/LectorXml.h"
#include "framework/Numeros.h"
#include "framework/Xml.h"

namespace vel::conjunto {

namespace {

// Bits of RowState: the row as it was before a change, or a deleted row; neither is a live record.
constexpr int kFilaSuperada = 1;
constexpr int kFilaBorrada = 2;

/// The fields of a level of the packet, in their order.
struct Entradas {
  /// The attribute (or nested element) that holds each in a row; the levels within it.
  std::vector<std::string> atributos;
  std::vector<Entradas> hijas;
  std::map<std::string, std::size_t, std::less<>> porAtributo;
  /// Field of each attribute, by the number that the reader gives its name; kPorBuscar where not looked up.
  std::vector<std::size_t> porNumero;
  static constexpr std::size_t kPorBuscar = std::numeric_limits<std::size_t>::max();

  /// Index of the field of that attribute or element; the number of fields when there is none.
  std::size_t Busca(std::string_view atributo) const {
    const auto it = porAtributo.find(atributo);
    return it == porAtributo.end() ? atributos.size() : it->second;
  }
  std::size_t Busca(const xml::Atributo& atributo) {
    if (atributo.numero >= porNumero.size()) porNumero.resize(atributo.numero + 1, kPorBuscar);
    std::size_t& campo = porNumero[atributo.numero];
    if (campo == kPorBuscar) campo = Busca(atributo.nombre);
    return campo;
  }
};

// Parameters that speak of the change log: its entries are positions of rows, and only live rows are kept.
bool EsDelRegistroDeCambios(std::string_view parametro) noexcept {
  return parametro == "CHANGE_LOG" || parametro == "DATASET_DELTA";
}

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

// Begins every message: "Empresas.xml, línea 4: ".
UnicodeString EnLinea(std::u16string_view nombre, std::string_view texto, std::size_t lugar) {
  const auto linea = static_cast<std::int64_t>(xml::Linea(texto, lugar));
  return UnicodeString(nombre).append(u", línea ").append(IntToStr(linea)).append(u": ");
}

using Suceso = xml::LectorXml::Suceso;

/// The packet while it is read; knows how to say where something is wrong.
class LectorPaquete {
 public:
  LectorPaquete(std::string_view texto, std::u16string_view nombre)
      : nombre_(nombre), texto_(texto), xml_(texto) {}

  std::unique_ptr<Estado> Lee() {
    xml_.Siguiente();
    if (xml_.Nombre() != "DATAPACKET") Falla(u"falta el elemento DATAPACKET");
    if (Atributo("Version") != "2.0") Falla(u"la versión del paquete no es 2.0");
    const std::size_t raiz = xml_.Lugar();
    std::unique_ptr<Estado> estado;
    Entradas entradas;
    bool conFilas = false;
    while (SiguienteHijo()) {
      if (xml_.Nombre() == "METADATA") {
        if (estado != nullptr) FallaRepetido();
        estado = LeeMetadatos(entradas);
      } else if (xml_.Nombre() == "ROWDATA") {
        if (conFilas) FallaRepetido();
        // Rows mean nothing before their fields are known.
        if (estado == nullptr) FallaFalta("METADATA", xml_.Lugar());
        LeeFilas(*estado, entradas, "ROW", xml_.Siguiente(), true);
        conFilas = true;
      } else {
        Salta();
      }
    }
    if (estado == nullptr) FallaFalta("METADATA", raiz);
    if (!conFilas) FallaFalta("ROWDATA", raiz);
    // What follows the packet must be as good as the packet.
    while (xml_.Siguiente() != Suceso::Fin) continue;
    return estado;
  }

 private:
  [[noreturn]] void Falla(const UnicodeString& que) const { Falla(que, xml_.Lugar()); }
  [[noreturn]] void Falla(const UnicodeString& que, std::size_t lugar) const {
    throw EDatabaseError(EnLinea(nombre_, texto_, lugar) + que);
  }
  [[noreturn]] void FallaFalta(std::string_view elemento, std::size_t lugar) const {
    Falla(u"falta el elemento " + UTF8ToString(elemento), lugar);
  }
  [[noreturn]] void FallaRepetido() const {
    Falla(u"el elemento " + UTF8ToString(xml_.Nombre()) + u" está repetido");
  }

  // Goes on to the next element within the present one; false at its end. Text between elements says nothing.
  bool SiguienteHijo() {
    Suceso suceso = xml_.Siguiente();
    while (suceso == Suceso::Texto) suceso = xml_.Siguiente();
    return suceso == Suceso::Abre;
  }

  void Salta() {
    while (SiguienteHijo()) Salta();
  }

  // Text of an attribute of the element at hand; "" when there is none.
  std::string_view Atributo(std::string_view nombre) const {
    for (const xml::Atributo& a : xml_.Atributos())
      if (a.nombre == nombre) return a.valor;
    return {};
  }

  std::unique_ptr<Estado> LeeMetadatos(Entradas& entradas) {
    const std::size_t lugar = xml_.Lugar();
    std::unique_ptr<Estado> estado;
    Resto resto;
    while (SiguienteHijo()) {
      if (xml_.Nombre() != "FIELDS") {
        CopiaEnLinea(resto.elementos);
        continue;
      }
      if (estado != nullptr) FallaRepetido();
      const std::size_t lugarCampos = xml_.Lugar();
      std::vector<TFieldDef> defs = LeeCampos(entradas, resto, 1);
      try {
        estado = Estado::Crea(std::move(defs));
      } catch (const EDatabaseError& e) {
        Falla(e.Message(), lugarCampos);
      }
    }
    if (estado == nullptr) FallaFalta("FIELDS", lugar);
    estado->resto = std::move(resto);
    return estado;
  }

  // Appends the element at hand, with all that it holds, as XML.
  void Copia(std::string& salida) {
    const std::string nombre(xml_.Nombre());
    if (nombre == "PARAM" && EsDelRegistroDeCambios(Atributo("Name"))) return Salta();
    salida.append("<").append(nombre);
    for (const xml::Atributo& a : xml_.Atributos()) {
      if (nombre != "PARAMS" || !EsDelRegistroDeCambios(a.nombre))
        xml::AgregaAtributo(salida, a.nombre, a.valor);
    }
    salida += '>';
    const std::size_t contenido = salida.size();
    for (Suceso suceso = xml_.Siguiente(); suceso != Suceso::Cierra; suceso = xml_.Siguiente()) {
      if (suceso == Suceso::Texto) {
        xml::AgregaEscapado(salida, xml_.Texto());
      } else {
        Copia(salida);
      }
    }
    if (salida.size() == contenido) {
      salida.replace(contenido - 1, 1, "/>");
    } else {
      salida.append("</").append(nombre).append(">");
    }
  }

  // The same on a line of its own. Within an element a line break would be text.
  void CopiaEnLinea(std::string& salida) {
    const std::size_t antes = salida.size();
    Copia(salida);
    if (salida.size() != antes) salida += '\n';
  }

  std::vector<TFieldDef> LeeCampos(Entradas& entradas, Resto& resto, int nivel) {
    const std::size_t lugar = xml_.Lugar();
    std::vector<TFieldDef> defs;
    for (Suceso suceso = xml_.Siguiente(); suceso != Suceso::Cierra; suceso = xml_.Siguiente()) {
      if (suceso == Suceso::Texto || xml_.Nombre() != "FIELD") Falla(u"elemento desconocido en FIELDS");
      LeeCampo(defs.emplace_back(), entradas, resto.campos.emplace_back(), nivel);
    }
    for (std::size_t i = 0; i < entradas.atributos.size(); ++i) {
      if (!entradas.porAtributo.emplace(entradas.atributos[i], i).second)
        Falla(u"el atributo '" + UTF8ToString(entradas.atributos[i]) + u"' está repetido", lugar);
    }
    return defs;
  }

  void LeeCampo(TFieldDef& def, Entradas& entradas, Resto& resto, int nivel) {
    const std::string_view atributo = Atributo("attrname");
    // A name that is no XML name stands in "fieldname", and "attrname" is its stand-in for the rows.
    const std::string_view propio = Atributo("fieldname");
    def.Name = UTF8ToString(propio.empty() ? atributo : propio);
    def.Required = IgualaAscii(Atributo("required"), "TRUE");
    const bool anidado = Atributo("fieldtype") == kTipoAnidado;
    if (anidado && nivel == kNivelesMaximos) Falla(u"hay demasiados niveles de campos anidados");
    std::vector<std::string_view> usados{"attrname", "fieldname", "fieldtype", "required"};
    if (anidado) {
      def.DataType = TFieldType::ftDataSet;
    } else {
      LeeTipo(def, usados);
    }
    for (const xml::Atributo& a : xml_.Atributos()) {
      if (std::find(usados.begin(), usados.end(), a.nombre) == usados.end())
        xml::AgregaAtributo(resto.atributos, a.nombre, a.valor);
    }
    entradas.atributos.emplace_back(atributo);
    Entradas hijas;
    bool conCampos = false;
    while (SiguienteHijo()) {
      if (!anidado || xml_.Nombre() != "FIELDS") {
        CopiaEnLinea(resto.elementos);
        continue;
      }
      if (conCampos) FallaRepetido();
      conCampos = true;
      def.ChildDefs = LeeCampos(hijas, resto, nivel + 1);
    }
    entradas.hijas.push_back(std::move(hijas));
  }

  // Type and size of a field that is not nested; adds to `usados` the attributes that they say all of.
  void LeeTipo(TFieldDef& def, std::vector<std::string_view>& usados) const {
    const std::string_view tipo = Atributo("fieldtype");
    const std::string_view subtipo = Atributo("SUBTYPE");
    const std::optional<TFieldType> elegido = TipoDePaquete(tipo, subtipo);
    if (!elegido) {
      Falla(u"el campo '" + def.Name + u"' es de un tipo desconocido (" + UTF8ToString(tipo) + u" " +
            UTF8ToString(subtipo) + u")");
    }
    def.DataType = *elegido;
    const TipoDeCampo& fila = TipoDe(def.DataType);
    if (fila.subtipo == subtipo) usados.push_back("SUBTYPE");
    // Numbers and memos carry a width too, which limits nothing.
    if (fila.clase != Clase::Texto || tipo == kTipoMemo) return;
    usados.push_back("WIDTH");
    def.Size = LeeAncho(def);
  }

  int LeeAncho(const TFieldDef& def) const {
    const std::string_view ancho = Atributo("WIDTH");
    if (ancho.empty()) return 0;
    long long valor = 0;
    const auto r = std::from_chars(ancho.data(), ancho.data() + ancho.size(), valor);
    if (r.ec != std::errc() || r.ptr != ancho.data() + ancho.size() || valor < 0)
      Falla(u"el ancho del campo '" + def.Name + u"' no es válido");
    // The width of Unicode text counts bytes.
    const bool enBytes = Atributo("fieldtype") == kTipoUnicode;
    constexpr long long kMaximo = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(enBytes ? valor / 2 + valor % 2 : valor, kMaximo));
  }

  // Whether a row with this state is a record.
  bool EstaViva(std::string_view estadoFila) const {
    int bits = 0;
    const auto r = std::from_chars(estadoFila.data(), estadoFila.data() + estadoFila.size(), bits);
    if (r.ec != std::errc() || r.ptr != estadoFila.data() + estadoFila.size() || bits < 0) {
      Falla(u"el RowState no es un número");
    }
    return (bits & (kFilaSuperada | kFilaBorrada)) == 0;
  }

  // How many records to make room for when `leidas` of them have filled it: what the text promises by what
  // it took so far, within bounds that keep a text that deceives cheap.
  std::size_t Sitio(std::size_t leidas, std::size_t desde, bool raiz) const {
    constexpr std::size_t kMinimo = 4;
    if (!raiz || leidas == 0) return std::max(kMinimo, 2 * leidas);
    const double porFila = static_cast<double>(xml_.Lugar() - desde) / static_cast<double>(leidas);
    const double total = static_cast<double>(texto_.size() - desde) / porFila * 1.02;
    return std::clamp(static_cast<std::size_t>(total) + kMinimo, leidas + leidas / 4 + kMinimo, 8 * leidas);
  }

  // The rows of the element that was opened, of which `suceso` is the first event.
  void LeeFilas(Estado& estado, Entradas& entradas, const std::string& nombreFila, Suceso suceso, bool raiz) {
    constexpr std::size_t kTanda = 256;
    const std::size_t desde = xml_.Lugar();
    std::size_t sitio = 0;
    std::size_t registro = 0;
    for (; suceso != Suceso::Cierra; suceso = xml_.Siguiente()) {
      if (suceso == Suceso::Texto) Falla(u"hay texto entre las filas");
      if (xml_.Nombre() != nombreFila)
        Falla(u"elemento desconocido entre las filas: " + UTF8ToString(xml_.Nombre()));
      if (registro == sitio) estado.Reserva(sitio = Sitio(registro, desde, raiz));
      if (registro == estado.registros) estado.Dimensiona(std::min(sitio, registro + kTanda));
      const bool viva = LeeAtributos(estado, entradas, registro);
      for (suceso = xml_.Siguiente(); suceso != Suceso::Cierra; suceso = xml_.Siguiente()) {
        if (suceso == Suceso::Texto) Falla(u"hay texto en una fila");
        if (viva) {
          LeeAnidado(estado, entradas, registro);
        } else {
          Salta();
        }
      }
      if (viva) ++registro;
    }
    estado.Dimensiona(registro);
    estado.AlPrincipio();
  }

  // False for a row that is no record; its place is then as it was.
  bool LeeAtributos(Estado& estado, Entradas& entradas, std::size_t registro) const {
    bool viva = true;
    for (const xml::Atributo& atributo : xml_.Atributos()) {
      const std::size_t campo = entradas.Busca(atributo);
      if (campo == entradas.atributos.size()) {
        if (atributo.nombre != kEstadoFila)
          Falla(u"la fila tiene un campo desconocido: '" + UTF8ToString(atributo.nombre) + u"'");
        viva = EstaViva(atributo.valor);
        continue;
      }
      Columna& columna = estado.ColumnaDe(campo);
      if (!PonAtributo(columna, registro, atributo.valor)) {
        Falla(u"el valor del campo '" + columna.def.Name + u"' no corresponde a su tipo: '" +
              UTF8ToString(atributo.valor).substr(0, 80) + u"'");
      }
    }
    for (std::size_t i = 0; !viva && i < entradas.atributos.size(); ++i) estado.ColumnaDe(i).Anula(registro);
    return viva;
  }

  void LeeAnidado(Estado& estado, Entradas& entradas, std::size_t registro) {
    const std::size_t indice = entradas.Busca(xml_.Nombre());
    if (indice == entradas.atributos.size() || estado.ColumnaDe(indice).clase != Clase::Anidado)
      Falla(u"la fila tiene un elemento desconocido: '" + UTF8ToString(xml_.Nombre()) + u"'");
    const Suceso primero = xml_.Siguiente();
    // An empty one needs no data set.
    if (primero == Suceso::Cierra) return;
    Estado& anidado = Estado::De(estado.ColumnaDe(indice).Anidado(registro));
    if (anidado.registros != 0)
      Falla(u"el elemento '" + UTF8ToString(entradas.atributos[indice]) + u"' está repetido");
    LeeFilas(anidado, entradas.hijas[indice], "ROW" + entradas.atributos[indice], primero, false);
  }

  UnicodeString nombre_;
  std::string_view texto_;
  xml::LectorXml xml_;
};

}  // namespace

std::unique_ptr<Estado> LeePaquete(std::string_view bytes, std::u16string_view nombre) {
  std::string convertido;
  // A text for each part: GCC 12 loses the first value of one that the call within the try gives another.
  std::string_view texto;
  try {
    texto = xml::EnUtf8(bytes, convertido);
  } catch (const xml::ErrorXml& e) {
    throw EDatabaseError(EnLinea(nombre, bytes, e.Lugar()) + e.Message());
  }
  try {
    return LectorPaquete(texto, nombre).Lee();
  } catch (const xml::ErrorXml& e) {
    throw EDatabaseError(EnLinea(nombre, texto, e.Lugar()) + e.Message());
  }
}

}  // namespace vel::conjunto
