#include "framework/TRemotable.h"

#include <array>
#include <charconv>
#include <pugixml.hpp>

#include "framework/Excepciones.h"
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

// Values of attributes. XML cannot hold NUL, and UTF-8 no half of a surrogate pair: such texts stand as the
// hexadecimal digits of their code units in an attribute of another name.
constexpr const char* kTexto = "v";
constexpr const char* kHexadecimal = "hex";

constexpr const char* kTipos[] = {"vacio", "nulo",     "entero", "entero64", "doble",
                                  "fecha", "booleano", "texto",  "arreglo"};

bool SobreviveEnXml(const UnicodeString& texto) {
  return texto.find(u'\0') == UnicodeString::npos && UTF8ToString(UTF8Encode(texto)) == texto;
}

void PonTexto(pugi::xml_node nodo, const UnicodeString& texto) {
  if (SobreviveEnXml(texto)) {
    nodo.append_attribute(kTexto) = UTF8Encode(texto).c_str();
    return;
  }
  constexpr char kCifras[] = "0123456789abcdef";
  std::string hex;
  for (const char16_t c : texto) {
    for (int corrimiento = 12; corrimiento >= 0; corrimiento -= 4)
      hex.push_back(kCifras[(c >> corrimiento) & 0xF]);
  }
  nodo.append_attribute(kHexadecimal) = hex.c_str();
}

UnicodeString LeeTexto(pugi::xml_node nodo, std::u16string_view nombre) {
  if (const pugi::xml_attribute atributo = nodo.attribute(kTexto)) return UTF8ToString(atributo.value());
  const std::string_view hex = nodo.attribute(kHexadecimal).value();
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
void PonNumero(pugi::xml_node nodo, T valor) {
  std::array<char, 40> buf;
  *std::to_chars(buf.data(), buf.data() + buf.size() - 1, valor).ptr = '\0';
  nodo.append_attribute(kTexto) = buf.data();
}

template <typename T>
T LeeNumero(pugi::xml_node nodo, std::u16string_view nombre) {
  const std::string_view texto = nodo.attribute(kTexto).value();
  T valor{};
  const auto r = std::from_chars(texto.data(), texto.data() + texto.size(), valor);
  if (r.ec != std::errc() || r.ptr != texto.data() + texto.size())
    Falla(u"No es un número la propiedad", nombre);
  return valor;
}

void PonVariante(pugi::xml_node nodo, const Variant& valor, int nivel) {
  nodo.append_attribute("tipo") = kTipos[static_cast<std::size_t>(valor.GetKind())];
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
        PonVariante(nodo.append_child("elemento"), v, Siguiente(nivel, u"elemento"));
      break;
  }
}

Variant LeeVariante(pugi::xml_node nodo, std::u16string_view nombre, int nivel) {
  const std::string_view tipo = nodo.attribute("tipo").value();
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
  for (const pugi::xml_node hijo : nodo.children())
    arreglo.items.push_back(LeeVariante(hijo, nombre, Siguiente(nivel, nombre)));
  return Variant(std::move(arreglo));
}

class Escritor final : public VisitantePropiedades {
 public:
  Escritor(pugi::xml_node nodo, int nivel) : nodo_(nodo), nivel_(nivel) {}
  void Texto(std::u16string_view nombre, UnicodeString& valor) override { PonTexto(Hijo(nombre), valor); }
  void Booleano(std::u16string_view nombre, bool& valor) override { PonNumero(Hijo(nombre), valor ? 1 : 0); }
  void Entero(std::u16string_view nombre, std::int32_t& valor) override { PonNumero(Hijo(nombre), valor); }
  void FechaHora(std::u16string_view nombre, TDateTime& valor) override {
    PonNumero(Hijo(nombre), valor.Val());
  }
  void Valor(std::u16string_view nombre, Variant& valor) override {
    PonVariante(Hijo(nombre), valor, nivel_);
  }
  void Textos(std::u16string_view nombre, std::vector<UnicodeString>& valores) override {
    pugi::xml_node lista = Hijo(nombre);
    for (const UnicodeString& valor : valores) PonTexto(lista.append_child("elemento"), valor);
  }
  void Objeto(std::u16string_view nombre, HuecoRemotable& hueco) override {
    Escribe(Hijo(nombre), nombre, hueco);
  }
  void Objetos(std::u16string_view nombre, ArregloRemotable& arreglo) override {
    pugi::xml_node lista = Hijo(nombre);
    for (std::size_t i = 0; i < arreglo.Cuenta(); ++i) {
      arreglo.En(i, [&](HuecoRemotable& hueco) { Escribe(lista.append_child("elemento"), nombre, hueco); });
    }
  }

 private:
  pugi::xml_node Hijo(std::u16string_view nombre) { return nodo_.append_child(UTF8Encode(nombre).c_str()); }
  void Escribe(pugi::xml_node nodo, std::u16string_view nombre, const HuecoRemotable& hueco) const {
    if (hueco.Objeto() == nullptr) {
      nodo.append_attribute("nulo") = true;
      return;
    }
    Escritor escritor(nodo, Siguiente(nivel_, nombre));
    hueco.Objeto()->Propiedades(escritor);
  }

  pugi::xml_node nodo_;
  int nivel_;
};

class Lector final : public VisitantePropiedades {
 public:
  Lector(pugi::xml_node nodo, int nivel) : nodo_(nodo), nivel_(nivel) {}
  void Texto(std::u16string_view nombre, UnicodeString& valor) override {
    valor = LeeTexto(Hijo(nombre), nombre);
  }
  void Booleano(std::u16string_view nombre, bool& valor) override {
    valor = LeeNumero<int>(Hijo(nombre), nombre) != 0;
  }
  void Entero(std::u16string_view nombre, std::int32_t& valor) override {
    valor = LeeNumero<std::int32_t>(Hijo(nombre), nombre);
  }
  void FechaHora(std::u16string_view nombre, TDateTime& valor) override {
    valor = TDateTime(LeeNumero<double>(Hijo(nombre), nombre));
  }
  void Valor(std::u16string_view nombre, Variant& valor) override {
    valor = LeeVariante(Hijo(nombre), nombre, nivel_);
  }
  void Textos(std::u16string_view nombre, std::vector<UnicodeString>& valores) override {
    valores.clear();
    for (const pugi::xml_node hijo : Hijo(nombre).children()) valores.push_back(LeeTexto(hijo, nombre));
  }
  void Objeto(std::u16string_view nombre, HuecoRemotable& hueco) override {
    Lee(Hijo(nombre), nombre, hueco);
  }
  void Objetos(std::u16string_view nombre, ArregloRemotable& arreglo) override {
    const auto hijos = Hijo(nombre).children();
    arreglo.Dimensiona(static_cast<std::size_t>(std::distance(hijos.begin(), hijos.end())));
    std::size_t i = 0;
    for (const pugi::xml_node hijo : hijos) {
      arreglo.En(i++, [&](HuecoRemotable& hueco) { Lee(hijo, nombre, hueco); });
    }
  }

 private:
  pugi::xml_node Hijo(std::u16string_view nombre) const {
    const pugi::xml_node hijo = nodo_.child(UTF8Encode(nombre).c_str());
    if (!hijo) Falla(u"Falta la propiedad", nombre);
    return hijo;
  }
  void Lee(pugi::xml_node nodo, std::u16string_view nombre, HuecoRemotable& hueco) const {
    if (nodo.attribute("nulo").as_bool()) return hueco.Vacia();
    Lector lector(nodo, Siguiente(nivel_, nombre));
    hueco.Crea().Propiedades(lector);
  }

  pugi::xml_node nodo_;
  int nivel_;
};

class EscritorTexto final : public pugi::xml_writer {
 public:
  void write(const void* datos, std::size_t largo) override {
    texto.append(static_cast<const char*>(datos), largo);
  }
  std::string texto;
};

}  // namespace

void VisitantePropiedades::RechazaOrdinal(std::u16string_view nombre) {
  Falla(u"Está fuera de rango la propiedad", nombre);
}

std::string EscribeRemotableXML(const TRemotable& objeto, std::u16string_view nombre) {
  pugi::xml_document documento;
  Escritor escritor(documento.append_child(UTF8Encode(nombre).c_str()), 0);
  // One list of properties serves reader and writer, and the writer changes none of them.
  const_cast<TRemotable&>(objeto).Propiedades(escritor);
  EscritorTexto salida;
  documento.save(salida, "", pugi::format_raw, pugi::encoding_utf8);
  return std::move(salida.texto);
}

void LeeRemotableXML(TRemotable& objeto, std::string_view xml) {
  const auto falla = [](const UnicodeString& que) {
    throw EInvalidOperation(u"El objeto no es un documento XML válido: " + que);
  };
  if (!IsUTF8(xml)) falla(u"el texto no es UTF-8 válido");
  pugi::xml_document documento;
  // As a fragment, so that what stands outside the root shows.
  const pugi::xml_parse_result r = documento.load_buffer(
      xml.data(), xml.size(), pugi::parse_default | pugi::parse_fragment, pugi::encoding_utf8);
  if (!r) falla(UnicodeString(xml::Descripcion(r.status)));
  if (documento.first_child().next_sibling()) falla(u"sobra contenido");
  Lector lector(documento.first_child(), 0);
  objeto.Propiedades(lector);
}

}  // namespace vel
