#include "framework/TRemotable.h"

#include <array>
#include <charconv>
#include <iterator>
#include <system_error>
#include <utility>
#include <variant>
#include <vector>

#include "framework/Excepciones.h"
#include "framework/LectorXml.h"
#include "framework/Numeros.h"
#include "framework/Xml.h"

namespace vel {
namespace {

// Deeper than any chain of union partners; a bound for hostile input, since objects are walked recursively.
constexpr int kNivelesMaximos = 64;

[[noreturn]] void Falla(std::u16string_view que, std::u16string_view nombre) {
  throw EInvalidOperation(UnicodeString(que) + u" '" + UnicodeString(nombre) + u"'");
}

int Siguiente(int nivel, std::u16string_view nombre) {
  if (nivel == kNivelesMaximos) Falla(u"Hay demasiados niveles de objetos en", nombre);
  return nivel + 1;
}

// Values of attributes. A text with what XML has no character for (NUL, most control characters, U+FFFE,
// half of a surrogate pair) stands as the hexadecimal digits of its code units in an attribute of another
// name.
constexpr std::string_view kTexto = "v";
constexpr std::string_view kHexadecimal = "hex";
constexpr std::string_view kTipo = "tipo";
constexpr std::string_view kNulo = "nulo";
constexpr std::string_view kElemento = "elemento";

/// An element of a document, with all that it holds: properties are asked for by name, in the class's order.
struct Nodo {
  std::string nombre;
  std::vector<std::pair<std::string, std::string>> atributos;
  std::vector<Nodo> hijos;

  /// Null when there is none of that name.
  const std::string* Atributo(std::string_view buscado) const {
    for (const auto& [n, valor] : atributos)
      if (n == buscado) return &valor;
    return nullptr;
  }
  std::string_view Valor(std::string_view buscado) const {
    const std::string* const valor = Atributo(buscado);
    return valor == nullptr ? std::string_view() : *valor;
  }
  Nodo& Agrega(std::string_view nuevo) { return hijos.emplace_back(Nodo{std::string(nuevo), {}, {}}); }
  void Pon(std::string_view atributo, std::string_view valor) { atributos.emplace_back(atributo, valor); }
};

void EscribeNodo(std::string& salida, const Nodo& nodo) {
  salida.append("<").append(nodo.nombre);
  for (const auto& [nombre, valor] : nodo.atributos) xml::AgregaAtributo(salida, nombre, valor);
  if (nodo.hijos.empty()) {
    salida += "/>";
    return;
  }
  salida += '>';
  for (const Nodo& hijo : nodo.hijos) EscribeNodo(salida, hijo);
  salida.append("</").append(nodo.nombre).append(">");
}

// The element that the reader has just opened, to its end.
Nodo LeeNodo(xml::LectorXml& lector) {
  using Suceso = xml::LectorXml::Suceso;
  Nodo nodo{std::string(lector.Nombre()), {}, {}};
  for (const xml::Atributo& a : lector.Atributos()) nodo.Pon(a.nombre, a.valor);
  for (Suceso suceso = lector.Siguiente(); suceso != Suceso::Cierra; suceso = lector.Siguiente()) {
    if (suceso == Suceso::Texto) throw xml::ErrorXml(u"tiene texto fuera de los atributos", lector.Lugar());
    nodo.hijos.push_back(LeeNodo(lector));
  }
  return nodo;
}

constexpr const char* kTipos[] = {"vacio", "nulo",     "entero", "entero64", "doble",
                                  "fecha", "booleano", "texto",  "arreglo"};

void PonTexto(Nodo& nodo, const UnicodeString& texto) {
  if (xml::CabeEnXml(texto)) return nodo.Pon(kTexto, UTF8Encode(texto));
  constexpr char kCifras[] = "0123456789abcdef";
  std::string hex;
  for (const char16_t c : texto) {
    for (int corrimiento = 12; corrimiento >= 0; corrimiento -= 4)
      hex.push_back(kCifras[(c >> corrimiento) & 0xF]);
  }
  nodo.Pon(kHexadecimal, hex);
}

UnicodeString LeeTexto(const Nodo& nodo, std::u16string_view nombre) {
  if (const std::string* const valor = nodo.Atributo(kTexto)) return UTF8ToString(*valor);
  const std::string_view hex = nodo.Valor(kHexadecimal);
  if (hex.empty() || hex.size() % 4 != 0) Falla(u"Falta el texto de la propiedad", nombre);
  UnicodeString texto;
  for (std::size_t i = 0; i < hex.size(); i += 4) {
    std::uint16_t unidad = 0;
    const auto r = std::from_chars(hex.data() + i, hex.data() + i + 4, unidad, 16);
    if (r.ec != std::errc() || r.ptr != hex.data() + i + 4)
      Falla(u"No es válido el texto de la propiedad", nombre);
    texto.push_back(static_cast<char16_t>(unidad));
  }
  return texto;
}

// Numbers travel as their shortest text that reads back to the same value.
template <typename T>
void PonNumero(Nodo& nodo, T valor) {
  std::array<char, 40> buf;
  const char* const fin = std::to_chars(buf.data(), buf.data() + buf.size(), valor).ptr;
  nodo.Pon(kTexto, {buf.data(), static_cast<std::size_t>(fin - buf.data())});
}

template <typename T>
T LeeNumero(const Nodo& nodo, std::u16string_view nombre) {
  const std::string_view texto = nodo.Valor(kTexto);
  T valor{};
  const auto r = std::from_chars(texto.data(), texto.data() + texto.size(), valor);
  if (r.ec != std::errc() || r.ptr != texto.data() + texto.size())
    Falla(u"No es un número la propiedad", nombre);
  return valor;
}

void PonVariante(Nodo& nodo, const Variant& valor, int nivel) {
  nodo.Pon(kTipo, kTipos[static_cast<std::size_t>(valor.GetKind())]);
  switch (valor.GetKind()) {
    case Variant::Kind::Empty:
    case Variant::Kind::Null:
      break;
    case Variant::Kind::Integer:
    case Variant::Kind::Int64:
      PonNumero(nodo, valor.AsInt64());
      break;
    case Variant::Kind::Double:
      PonNumero(nodo, valor.AsDouble());
      break;
    case Variant::Kind::Date:
      PonNumero(nodo, valor.AsDateTime().Val());
      break;
    case Variant::Kind::Boolean:
      PonNumero(nodo, valor.AsBoolean() ? 1 : 0);
      break;
    case Variant::Kind::String:
      PonTexto(nodo, *valor.TextPtr());
      break;
    case Variant::Kind::Array:
      PonNumero(nodo, valor.AsArray().low);
      for (const Variant& v : valor.AsArray().items)
        PonVariante(nodo.Agrega(kElemento), v, Siguiente(nivel, u"elemento"));
      break;
  }
}

Variant LeeVariante(const Nodo& nodo, std::u16string_view nombre, int nivel) {
  const std::string_view tipo = nodo.Valor(kTipo);
  std::size_t ordinal = 0;
  while (ordinal < std::size(kTipos) && tipo != kTipos[ordinal]) ++ordinal;
  if (ordinal == std::size(kTipos)) Falla(u"No se conoce el tipo del valor de la propiedad", nombre);
  switch (static_cast<Variant::Kind>(ordinal)) {
    case Variant::Kind::Empty:
      return {};
    case Variant::Kind::Null:
      return Variant::Null();
    case Variant::Kind::Integer:
      return Variant(LeeNumero<std::int32_t>(nodo, nombre));
    case Variant::Kind::Int64:
      return Variant(LeeNumero<std::int64_t>(nodo, nombre));
    case Variant::Kind::Double:
      return Variant(LeeNumero<double>(nodo, nombre));
    case Variant::Kind::Date:
      return Variant(TDateTime(LeeNumero<double>(nodo, nombre)));
    case Variant::Kind::Boolean:
      return Variant(LeeNumero<int>(nodo, nombre) != 0);
    case Variant::Kind::String:
      return Variant(LeeTexto(nodo, nombre));
    case Variant::Kind::Array:
      break;
  }
  VariantArray arreglo;
  arreglo.low = LeeNumero<int>(nodo, nombre);
  for (const Nodo& hijo : nodo.hijos)
    arreglo.items.push_back(LeeVariante(hijo, nombre, Siguiente(nivel, nombre)));
  return Variant(std::move(arreglo));
}

class Escritor final : public VisitantePropiedades {
 public:
  Escritor(Nodo& nodo, int nivel) : nodo_(nodo), nivel_(nivel) {}
  void Texto(std::u16string_view nombre, UnicodeString& valor) override { PonTexto(Hijo(nombre), valor); }
  void Booleano(std::u16string_view nombre, bool& valor) override { PonNumero(Hijo(nombre), valor ? 1 : 0); }
  void Entero(std::u16string_view nombre, std::int32_t& valor) override { PonNumero(Hijo(nombre), valor); }
  void EnteroEntre(std::u16string_view nombre, std::int32_t& valor, std::int32_t /*minimo*/,
                   std::int32_t /*maximo*/) override {
    Entero(nombre, valor);
  }
  void FechaHora(std::u16string_view nombre, TDateTime& valor) override {
    PonNumero(Hijo(nombre), valor.Val());
  }
  void Valor(std::u16string_view nombre, Variant& valor) override {
    PonVariante(Hijo(nombre), valor, nivel_);
  }
  void Textos(std::u16string_view nombre, std::vector<UnicodeString>& valores) override {
    Nodo& lista = Hijo(nombre);
    for (const UnicodeString& valor : valores) PonTexto(lista.Agrega(kElemento), valor);
  }
  void Objeto(std::u16string_view nombre, HuecoRemotable& hueco) override {
    Escribe(Hijo(nombre), nombre, hueco);
  }
  void Objetos(std::u16string_view nombre, ArregloRemotable& arreglo) override {
    Nodo& lista = Hijo(nombre);
    for (std::size_t i = 0; i < arreglo.Cuenta(); ++i) {
      arreglo.En(i, [&](HuecoRemotable& hueco) { Escribe(lista.Agrega(kElemento), nombre, hueco); });
    }
  }

 private:
  Nodo& Hijo(std::u16string_view nombre) { return nodo_.Agrega(UTF8Encode(nombre)); }
  void Escribe(Nodo& nodo, std::u16string_view nombre, const HuecoRemotable& hueco) const {
    if (hueco.Objeto() == nullptr) {
      nodo.Pon(kNulo, "true");
      return;
    }
    Escritor escritor(nodo, Siguiente(nivel_, nombre));
    hueco.Objeto()->Propiedades(escritor);
  }

  Nodo& nodo_;
  int nivel_;
};

// The new value of a property, by the kind of the property.
using Leido = std::variant<UnicodeString, bool, std::int32_t, TDateTime, Variant, std::vector<UnicodeString>,
                           std::unique_ptr<HuecoRemotable>, std::unique_ptr<ArregloRemotable>>;

void Llena(TRemotable& objeto, const Nodo& nodo, int nivel);

// Reads the values of all properties, and leaves the object alone.
class Lector final : public VisitantePropiedades {
 public:
  Lector(const Nodo& nodo, int nivel, std::vector<Leido>& leidos)
      : nodo_(nodo), nivel_(nivel), leidos_(leidos) {}
  void Texto(std::u16string_view nombre, UnicodeString& /*valor*/) override {
    leidos_.emplace_back(LeeTexto(Hijo(nombre), nombre));
  }
  void Booleano(std::u16string_view nombre, bool& /*valor*/) override {
    leidos_.emplace_back(LeeNumero<int>(Hijo(nombre), nombre) != 0);
  }
  void Entero(std::u16string_view nombre, std::int32_t& /*valor*/) override {
    leidos_.emplace_back(LeeNumero<std::int32_t>(Hijo(nombre), nombre));
  }
  void EnteroEntre(std::u16string_view nombre, std::int32_t& /*valor*/, std::int32_t minimo,
                   std::int32_t maximo) override {
    const auto leido = LeeNumero<std::int32_t>(Hijo(nombre), nombre);
    if (leido < minimo || leido > maximo) Falla(u"Está fuera de rango la propiedad", nombre);
    leidos_.emplace_back(leido);
  }
  void FechaHora(std::u16string_view nombre, TDateTime& /*valor*/) override {
    leidos_.emplace_back(TDateTime(LeeNumero<double>(Hijo(nombre), nombre)));
  }
  void Valor(std::u16string_view nombre, Variant& /*valor*/) override {
    leidos_.emplace_back(LeeVariante(Hijo(nombre), nombre, nivel_));
  }
  void Textos(std::u16string_view nombre, std::vector<UnicodeString>& /*valores*/) override {
    std::vector<UnicodeString> textos;
    for (const Nodo& hijo : Hijo(nombre).hijos) textos.push_back(LeeTexto(hijo, nombre));
    leidos_.emplace_back(std::move(textos));
  }
  void Objeto(std::u16string_view nombre, HuecoRemotable& hueco) override {
    std::unique_ptr<HuecoRemotable> aparte = hueco.Aparte();
    Lee(Hijo(nombre), nombre, *aparte);
    leidos_.emplace_back(std::move(aparte));
  }
  void Objetos(std::u16string_view nombre, ArregloRemotable& arreglo) override {
    std::unique_ptr<ArregloRemotable> aparte = arreglo.Aparte();
    const std::vector<Nodo>& hijos = Hijo(nombre).hijos;
    aparte->Dimensiona(hijos.size());
    for (std::size_t i = 0; i < hijos.size(); ++i)
      aparte->En(i, [&](HuecoRemotable& hueco) { Lee(hijos[i], nombre, hueco); });
    leidos_.emplace_back(std::move(aparte));
  }

 private:
  const Nodo& Hijo(std::u16string_view nombre) const {
    const std::string buscado = UTF8Encode(nombre);
    for (const Nodo& hijo : nodo_.hijos)
      if (hijo.nombre == buscado) return hijo;
    Falla(u"Falta la propiedad", nombre);
  }
  void Lee(const Nodo& nodo, std::u16string_view nombre, HuecoRemotable& hueco) const {
    if (nodo.Valor(kNulo) == "true") return hueco.Vacia();
    Llena(hueco.Crea(), nodo, Siguiente(nivel_, nombre));
  }

  const Nodo& nodo_;
  int nivel_;
  std::vector<Leido>& leidos_;
};

// Puts the values where they belong, in the order in which they were read. Nothing here can fail.
class Colocador final : public VisitantePropiedades {
 public:
  explicit Colocador(std::vector<Leido>& leidos) : siguiente_(leidos.begin()) {}
  void Texto(std::u16string_view /*nombre*/, UnicodeString& valor) override { Pon(valor); }
  void Booleano(std::u16string_view /*nombre*/, bool& valor) override { Pon(valor); }
  void Entero(std::u16string_view /*nombre*/, std::int32_t& valor) override { Pon(valor); }
  void EnteroEntre(std::u16string_view /*nombre*/, std::int32_t& valor, std::int32_t /*minimo*/,
                   std::int32_t /*maximo*/) override {
    Pon(valor);
  }
  void FechaHora(std::u16string_view /*nombre*/, TDateTime& valor) override { Pon(valor); }
  void Valor(std::u16string_view /*nombre*/, Variant& valor) override { Pon(valor); }
  void Textos(std::u16string_view /*nombre*/, std::vector<UnicodeString>& valores) override { Pon(valores); }
  void Objeto(std::u16string_view /*nombre*/, HuecoRemotable& hueco) override {
    hueco.Intercambia(*std::get<std::unique_ptr<HuecoRemotable>>(*siguiente_++));
  }
  void Objetos(std::u16string_view /*nombre*/, ArregloRemotable& arreglo) override {
    arreglo.Intercambia(*std::get<std::unique_ptr<ArregloRemotable>>(*siguiente_++));
  }

 private:
  template <typename T>
  void Pon(T& valor) {
    std::swap(valor, std::get<T>(*siguiente_++));
  }

  std::vector<Leido>::iterator siguiente_;
};

void Llena(TRemotable& objeto, const Nodo& nodo, int nivel) {
  std::vector<Leido> leidos;
  Lector lector(nodo, nivel, leidos);
  objeto.Propiedades(lector);
  Colocador colocador(leidos);
  objeto.Propiedades(colocador);
}

}  // namespace

void VisitantePropiedades::RechazaOrdinal(std::u16string_view nombre) {
  Falla(u"Está fuera de rango la propiedad", nombre);
}

std::string EscribeRemotableXML(const TRemotable& objeto, std::u16string_view nombre) {
  Nodo raiz{UTF8Encode(nombre), {}, {}};
  Escritor escritor(raiz, 0);
  // One list of properties serves reader and writer, and the writer changes none of them.
  const_cast<TRemotable&>(objeto).Propiedades(escritor);
  std::string salida;
  EscribeNodo(salida, raiz);
  return salida;
}

void LeeRemotableXML(TRemotable& objeto, std::string_view xml) {
  Nodo raiz;
  try {
    xml::LectorXml lector(xml);
    lector.Siguiente();
    raiz = LeeNodo(lector);
    // What follows the object must be as good as the object.
    lector.Siguiente();
  } catch (const xml::ErrorXml& e) {
    const auto linea = static_cast<std::int64_t>(xml::Linea(xml, e.Lugar()));
    throw EInvalidOperation(u"El objeto no se puede leer, línea " + IntToStr(linea) + u": " + e.Message());
  }
  Llena(objeto, raiz, 0);
}

}  // namespace vel
