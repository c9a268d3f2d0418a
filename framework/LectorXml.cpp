#include "framework/LectorXml.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "framework/Xml.h"

namespace vel::xml {
namespace {

constexpr std::size_t kNivelesMaximos = 512;

// What a byte may be.
constexpr std::uint8_t kComienzaNombre = 1;
constexpr std::uint8_t kSigueNombre = 2;
constexpr std::uint8_t kBlanco = 4;
constexpr std::uint8_t kDetieneValor = 8;

constexpr std::array<std::uint8_t, 256> kBytes = []() {
  std::array<std::uint8_t, 256> t{};
  for (std::size_t c = 0; c < t.size(); ++c) {
    const bool letra = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == ':';
    if (letra) t[c] |= kComienzaNombre | kSigueNombre;
    if ((c >= '0' && c <= '9') || c == '-' || c == '.') t[c] |= kSigueNombre;
    if (c == ' ' || c == '\t' || c == '\n' || c == '\r') t[c] |= kBlanco;
    if (c == '"' || c == '\'' || c == '<' || c == '&' || c == '\t' || c == '\n' || c == '\r')
      t[c] |= kDetieneValor;
  }
  return t;
}();

bool Es(char c, std::uint8_t clase) noexcept { return (kBytes[static_cast<unsigned char>(c)] & clase) != 0; }

struct Tramo {
  std::uint32_t primero;
  std::uint32_t ultimo;
};

bool EstaEn(std::span<const Tramo> tramos, std::uint32_t c) noexcept {
  return std::any_of(tramos.begin(), tramos.end(),
                     [c](const Tramo& t) { return c >= t.primero && c <= t.ultimo; });
}

// XML 1.0, fifth edition, productions 4 and 4a, beyond ASCII.
constexpr Tramo kComienzos[] = {{0xC0, 0xD6},     {0xD8, 0xF6},     {0xF8, 0x2FF},    {0x370, 0x37D},
                                {0x37F, 0x1FFF},  {0x200C, 0x200D}, {0x2070, 0x218F}, {0x2C00, 0x2FEF},
                                {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF}};
constexpr Tramo kSeguidores[] = {{0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}};

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

// Place of a character that XML does not have; npos when there is none.
std::size_t LugarDeCaracterAjeno(std::string_view texto) noexcept {
  for (std::size_t i = 0; i < texto.size(); ++i) {
    i += LargoSinControles(texto.substr(i));
    if (i < texto.size() && !EsCaracter(static_cast<unsigned char>(texto[i]))) return i;
  }
  // U+FFFE and U+FFFF, which are no characters.
  for (std::size_t i = texto.find("\xEF\xBF"); i != texto.npos; i = texto.find("\xEF\xBF", i + 2)) {
    if (static_cast<unsigned char>(texto[i + 2]) >= 0xBE) return i;
  }
  return texto.npos;
}

// Place of the first byte that is not UTF-8, near enough to tell the line: the longest good beginning, found
// by halves.
std::size_t LugarDeByteMalo(std::string_view texto) {
  std::size_t bueno = 0;
  std::size_t malo = texto.size();
  while (malo - bueno > 4) {
    const std::size_t medio = bueno + (malo - bueno) / 2;
    std::size_t corte = medio;
    while (corte > bueno && (static_cast<unsigned char>(texto[corte]) & 0xC0) == 0x80) --corte;
    if (corte > bueno && IsUTF8(texto.substr(bueno, corte - bueno))) {
      bueno = corte;
    } else {
      malo = medio;
    }
  }
  return bueno;
}

[[noreturn]] void FallaXml(std::u16string_view que, std::size_t lugar) {
  throw ErrorXml(UnicodeString(u"no es un documento XML válido (").append(que).append(u")"), lugar);
}

struct Declaracion {
  std::size_t largo = 0;
  std::string_view codificacion;
};

bool EsVersion(std::string_view v) noexcept {
  return v.size() > 2 && v.substr(0, 2) == "1." &&
         std::all_of(v.begin() + 2, v.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool EsNombreDeCodificacion(std::string_view v) noexcept {
  const auto letra = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
  return !v.empty() && letra(v.front()) && std::all_of(v.begin(), v.end(), [&](char c) {
    return letra(c) || (c >= '0' && c <= '9') || c == '.' || c == '_' || c == '-';
  });
}

bool EsSiONo(std::string_view v) noexcept { return v == "yes" || v == "no"; }

// The XML declaration at the front of a text (productions 23 to 32 and 80); of no length when there is none.
Declaracion LeeDeclaracion(std::string_view texto) {
  Declaracion declaracion;
  constexpr std::string_view kComienzo = "<?xml";
  if (texto.substr(0, kComienzo.size()) != kComienzo || texto.size() == kComienzo.size() ||
      !Es(texto[kComienzo.size()], kBlanco)) {
    return declaracion;
  }
  std::size_t i = kComienzo.size();
  const auto falla = [&i] { FallaXml(u"la declaración está mal formada", i); };
  const auto salta = [&] {
    const std::size_t antes = i;
    while (i < texto.size() && Es(texto[i], kBlanco)) ++i;
    return i != antes;
  };
  const struct {
    std::string_view nombre;
    bool (*sirve)(std::string_view) noexcept;
    bool obligatorio;
  } partes[] = {{"version", EsVersion, true},
                {"encoding", EsNombreDeCodificacion, false},
                {"standalone", EsSiONo, false}};
  bool blanco = salta();
  for (const auto& parte : partes) {
    if (!blanco || texto.substr(i, parte.nombre.size()) != parte.nombre) {
      if (parte.obligatorio) falla();
      continue;
    }
    i += parte.nombre.size();
    salta();
    if (i == texto.size() || texto[i] != '=') falla();
    ++i;
    salta();
    if (i == texto.size() || (texto[i] != '"' && texto[i] != '\'')) falla();
    const std::size_t fin = texto.find(texto[i], i + 1);
    if (fin == texto.npos) falla();
    const std::string_view valor = texto.substr(i + 1, fin - i - 1);
    if (!parte.sirve(valor)) falla();
    if (parte.sirve == EsNombreDeCodificacion) declaracion.codificacion = valor;
    i = fin + 1;
    blanco = salta();
  }
  if (texto.substr(i, 2) != "?>") falla();
  declaracion.largo = i + 2;
  return declaracion;
}

std::string DeUtf16(std::string_view bytes) {
  const std::size_t bajo = bytes.front() == '\xFF' ? 0 : 1;
  UnicodeString ancho;
  ancho.reserve(bytes.size() / 2);
  for (std::size_t i = 2; i + 1 < bytes.size(); i += 2) {
    const auto b = [&](std::size_t k) {
      return static_cast<unsigned>(static_cast<unsigned char>(bytes[i + k]));
    };
    ancho.push_back(static_cast<char16_t>(b(bajo) | b(1 - bajo) << 8));
  }
  if (bytes.size() % 2 != 0 || !CabeEnXml(ancho)) throw ErrorXml(u"el texto no es UTF-16 válido", 0);
  return UTF8Encode(ancho);
}

// Windows-1252 from 0x80 to 0x9F (Unicode's mapping table for the code page); the five bytes that it leaves
// open are the control characters of the same number, as in the system's own conversion.
constexpr char16_t kAltos1252[] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                   0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                   0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                   0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

// From a code page of one byte a character: ISO-8859-1, or Windows-1252, which differs in 32 places.
std::string DeBytes(std::string_view bytes, bool windows) {
  std::string utf8;
  utf8.reserve(bytes.size() + bytes.size() / 8);
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      utf8.push_back(c);
    } else {
      AgregaUtf8(utf8, windows && byte <= 0x9F ? kAltos1252[byte - 0x80U] : byte);
    }
  }
  return utf8;
}

}  // namespace

LectorXml::LectorXml(std::string_view texto)
    : inicio_(texto.data()),
      cursor_(texto.data()),
      fin_(texto.data() + texto.size()),
      evento_(texto.data()),
      // Stands before the first attribute of every element.
      nombres_(1) {
  if (!IsUTF8(texto)) throw ErrorXml(u"el texto no es UTF-8 válido", LugarDeByteMalo(texto));
  if (const std::size_t malo = LugarDeCaracterAjeno(texto); malo != texto.npos)
    FallaXml(u"tiene un carácter que XML no admite", malo);
  Quita("\xEF\xBB\xBF");
  const std::size_t antes = Distancia(cursor_);
  try {
    cursor_ += LeeDeclaracion(Resto()).largo;
  } catch (const ErrorXml& e) {
    throw ErrorXml(e.Message(), e.Lugar() + antes);
  }
}

LectorXml::Suceso LectorXml::Siguiente() {
  if (vacio_) {
    vacio_ = false;
    abiertos_.pop_back();
    return Suceso::Cierra;
  }
  for (;;) {
    evento_ = cursor_;
    if (cursor_ == fin_) {
      if (!abiertos_.empty()) {
        Falla(u"falta la etiqueta de fin de '" + UTF8ToString(abiertos_.back()) + u"'", fin_);
      }
      if (!huboRaiz_) Falla(u"no tiene elementos", fin_);
      return Suceso::Fin;
    }
    if (*cursor_ != '<') {
      if (LeeTexto()) return Suceso::Texto;
    } else if (Quita("</")) {
      LeeFinal();
      return Suceso::Cierra;
    } else if (Quita("<!--")) {
      SaltaComentario();
    } else if (Quita("<?")) {
      SaltaInstruccion();
    } else if (Quita("<![CDATA[")) {
      LeeCdata();
      return Suceso::Texto;
    } else if (Quita("<!DOCTYPE")) {
      Falla(u"no se admite la declaración de un tipo de documento", evento_);
    } else {
      ++cursor_;
      LeeInicio();
      return Suceso::Abre;
    }
  }
}

void LectorXml::Falla(std::u16string_view que, const char* lugar) const { FallaXml(que, Distancia(lugar)); }

bool LectorXml::Quita(std::string_view comienzo) noexcept {
  if (Resto().substr(0, comienzo.size()) != comienzo) return false;
  cursor_ += comienzo.size();
  return true;
}

bool LectorXml::SaltaBlancos() noexcept {
  const char* const antes = cursor_;
  while (cursor_ != fin_ && Es(*cursor_, kBlanco)) ++cursor_;
  return cursor_ != antes;
}

std::string_view LectorXml::LeeNombre() {
  const char* const desde = cursor_;
  while (cursor_ != fin_) {
    const std::uint8_t clase = cursor_ == desde ? kComienzaNombre : kSigueNombre;
    if (Es(*cursor_, clase)) {
      ++cursor_;
      continue;
    }
    if (static_cast<unsigned char>(*cursor_) < 0x80) break;
    const auto [codigo, bytes] = Caracter(Resto());
    if (!EstaEn(kComienzos, codigo) && (cursor_ == desde || !EstaEn(kSeguidores, codigo))) break;
    cursor_ += bytes;
  }
  if (cursor_ == desde) Falla(u"falta un nombre", desde);
  return {desde, static_cast<std::size_t>(cursor_ - desde)};
}

// Elements of one kind name their attributes in one order, so the name that followed the last time is tried
// before any search.
std::uint32_t LectorXml::LeeNombreAtributo(std::uint32_t anterior) {
  const std::uint32_t probable = nombres_[anterior].siguiente;
  const std::string_view nombre = nombres_[probable].nombre;
  const auto quedan = static_cast<std::size_t>(fin_ - cursor_);
  if (probable != 0 && nombre.size() < quedan && cursor_[nombre.size()] == '=' &&
      std::memcmp(cursor_, nombre.data(), nombre.size()) == 0) {
    cursor_ += nombre.size();
    return probable;
  }
  const auto [lugar, nuevo] = indice_.try_emplace(LeeNombre(), static_cast<std::uint32_t>(nombres_.size()));
  if (nuevo) nombres_.push_back({.nombre = lugar->first});
  nombres_[anterior].siguiente = lugar->second;
  return lugar->second;
}

// The value between its quotes, as it stands; `decodifica` tells whether that is not what it means.
std::string_view LectorXml::LeeValor(bool& decodifica) {
  if (cursor_ == fin_ || (*cursor_ != '"' && *cursor_ != '\''))
    Falla(u"el valor de un atributo no está entre comillas", cursor_);
  const char comilla = *cursor_++;
  const char* const desde = cursor_;
  decodifica = false;
  for (;; ++cursor_) {
    while (cursor_ != fin_ && !Es(*cursor_, kDetieneValor)) ++cursor_;
    if (cursor_ == fin_) Falla(u"el valor de un atributo quedó sin terminar", desde);
    if (*cursor_ == comilla) break;
    if (*cursor_ == '<') Falla(u"hay un '<' en el valor de un atributo", cursor_);
    decodifica = decodifica || (*cursor_ != '"' && *cursor_ != '\'');
  }
  return {desde, static_cast<std::size_t>(cursor_++ - desde)};
}

// Appends what the reference at the front of `crudo` stands for; returns its length.
std::size_t LectorXml::LeeReferencia(std::string_view crudo, std::string& salida) const {
  constexpr std::pair<std::string_view, char> kEntidades[] = {
      {"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};
  // No reference that is read here is longer, but for leading zeros.
  const std::size_t fin = crudo.find(';');
  if (fin == crudo.npos) Falla(u"hay un '&' suelto", crudo.data());
  std::string_view nombre = crudo.substr(1, fin - 1);
  if (nombre.substr(0, 1) != "#") {
    for (const auto& [entidad, c] : kEntidades) {
      if (nombre != entidad) continue;
      salida.push_back(c);
      return fin + 1;
    }
    Falla(u"hay un '&' suelto o una entidad desconocida", crudo.data());
  }
  const bool hexadecimal = nombre.substr(1, 1) == "x";
  nombre.remove_prefix(hexadecimal ? 2 : 1);
  std::uint32_t codigo = 0;
  bool valido = !nombre.empty();
  for (const char c : nombre) {
    std::uint32_t cifra = 16;
    if (c >= '0' && c <= '9') cifra = static_cast<std::uint32_t>(c - '0');
    if (hexadecimal && c >= 'a' && c <= 'f') cifra = static_cast<std::uint32_t>(c - 'a' + 10);
    if (hexadecimal && c >= 'A' && c <= 'F') cifra = static_cast<std::uint32_t>(c - 'A' + 10);
    valido = valido && cifra < 16;
    // Stays above every character once it is, so that it cannot come round.
    codigo = std::min<std::uint32_t>(codigo * (hexadecimal ? 16U : 10U) + cifra, 0x110000);
  }
  if (!valido || !EsCaracter(codigo)) Falla(u"hay una referencia a un carácter que no existe", crudo.data());
  AgregaUtf8(salida, codigo);
  return fin + 1;
}

void LectorXml::Decodifica(std::string_view crudo, bool enAtributo, std::string& salida) const {
  for (std::size_t i = 0; i < crudo.size();) {
    const char c = crudo[i];
    if (c == '&') {
      i += LeeReferencia(crudo.substr(i), salida);
      continue;
    }
    ++i;
    if (c == '\r') {
      if (i == crudo.size() || crudo[i] != '\n') salida.push_back(enAtributo ? ' ' : '\n');
    } else {
      salida.push_back(enAtributo && Es(c, kBlanco) ? ' ' : c);
    }
  }
}

void LectorXml::LeeAtributos() {
  atributos_.clear();
  movidos_.clear();
  decodificado_.clear();
  ++elemento_;
  for (std::uint32_t numero = 0;;) {
    const bool blanco = SaltaBlancos();
    if (cursor_ == fin_) Falla(u"una etiqueta quedó sin terminar", evento_);
    if (*cursor_ == '>' || *cursor_ == '/') break;
    const char* const lugar = cursor_;
    if (!blanco) Falla(u"falta un blanco antes de un atributo", lugar);
    numero = LeeNombreAtributo(numero);
    Nombrado& nombrado = nombres_[numero];
    if (std::exchange(nombrado.elemento, elemento_) == elemento_)
      Falla(u"el atributo '" + UTF8ToString(nombrado.nombre) + u"' está repetido", lugar);
    SaltaBlancos();
    if (!Quita("=")) Falla(u"falta el valor de un atributo", cursor_);
    SaltaBlancos();
    bool decodifica = false;
    const std::string_view valor = LeeValor(decodifica);
    if (decodifica) {
      const std::size_t desde = decodificado_.size();
      Decodifica(valor, true, decodificado_);
      movidos_.push_back({atributos_.size(), desde, decodificado_.size() - desde});
    }
    atributos_.push_back({nombrado.nombre, valor, numero - 1});
  }
  for (const Movido& m : movidos_)
    atributos_[m.atributo].valor = std::string_view(decodificado_).substr(m.desde, m.largo);
}

void LectorXml::LeeInicio() {
  const std::string_view nombre = LeeNombre();
  if (abiertos_.empty() && huboRaiz_) Falla(u"sobra contenido después del elemento principal", evento_);
  if (abiertos_.size() == kNivelesMaximos) Falla(u"tiene demasiados niveles de elementos", evento_);
  LeeAtributos();
  vacio_ = Quita("/");
  if (!Quita(">")) Falla(u"una etiqueta de inicio está mal formada", cursor_);
  abiertos_.push_back(nombre);
  nombre_ = nombre;
  huboRaiz_ = true;
}

void LectorXml::LeeFinal() {
  const std::string_view nombre = LeeNombre();
  SaltaBlancos();
  if (!Quita(">")) Falla(u"una etiqueta de fin está mal formada", cursor_);
  if (abiertos_.empty() || abiertos_.back() != nombre)
    Falla(u"la etiqueta de fin de '" + UTF8ToString(nombre) + u"' no corresponde a la de inicio", evento_);
  abiertos_.pop_back();
  nombre_ = nombre;
}

// False for blanks alone.
bool LectorXml::LeeTexto() {
  SaltaBlancos();
  if (cursor_ == fin_ || *cursor_ == '<') return false;
  if (abiertos_.empty()) Falla(u"hay texto fuera del elemento principal", cursor_);
  const char* const desde = evento_;
  const void* const menor = std::memchr(cursor_, '<', Resto().size());
  cursor_ = menor == nullptr ? fin_ : static_cast<const char*>(menor);
  datos_ = {desde, static_cast<std::size_t>(cursor_ - desde)};
  if (const std::size_t lugar = datos_.find("]]>"); lugar != datos_.npos)
    Falla(u"hay un ']]>' en el texto", desde + lugar);
  if (datos_.find_first_of("&\r") != datos_.npos) {
    decodificado_.clear();
    Decodifica(datos_, false, decodificado_);
    datos_ = decodificado_;
  }
  return true;
}

void LectorXml::LeeCdata() {
  if (abiertos_.empty()) Falla(u"hay texto fuera del elemento principal", evento_);
  const std::size_t largo = Resto().find("]]>");
  if (largo == std::string_view::npos) Falla(u"una sección CDATA quedó sin terminar", evento_);
  datos_ = Resto().substr(0, largo);
  cursor_ += largo + 3;
  if (datos_.find('\r') == datos_.npos) return;
  decodificado_.clear();
  for (std::size_t i = 0; i < datos_.size(); ++i) {
    if (datos_[i] != '\r') {
      decodificado_.push_back(datos_[i]);
    } else if (i + 1 == datos_.size() || datos_[i + 1] != '\n') {
      decodificado_.push_back('\n');
    }
  }
  datos_ = decodificado_;
}

void LectorXml::SaltaComentario() {
  const std::size_t largo = Resto().find("--");
  if (largo == std::string_view::npos) Falla(u"un comentario quedó sin terminar", evento_);
  cursor_ += largo + 2;
  if (!Quita(">")) Falla(u"hay un '--' en un comentario", cursor_ - 2);
}

void LectorXml::SaltaInstruccion() {
  const std::string_view nombre = LeeNombre();
  constexpr std::string_view kReservado = "xml";
  const auto iguales = [](char a, char b) { return (a | 0x20) == b; };
  if (std::equal(nombre.begin(), nombre.end(), kReservado.begin(), kReservado.end(), iguales))
    Falla(u"la declaración no está al principio", evento_);
  const bool blanco = SaltaBlancos();
  const std::size_t largo = Resto().find("?>");
  if (largo == std::string_view::npos || (!blanco && largo != 0))
    Falla(u"una instrucción de proceso está mal formada", evento_);
  cursor_ += largo + 2;
}

std::string_view EnUtf8(std::string_view bytes, std::string& convertido) {
  const std::string_view marca = bytes.substr(0, 2);
  if (marca == "\xFF\xFE" || marca == "\xFE\xFF") {
    convertido = DeUtf16(bytes);
    return convertido;
  }
  const std::string_view codificacion = LeeDeclaracion(bytes).codificacion;
  const auto es = [codificacion](std::u16string_view nombre) {
    return SameText(UTF8ToString(codificacion), nombre);
  };
  if (codificacion.empty() || es(u"UTF-8") || es(u"US-ASCII")) return bytes;
  if (!es(u"ISO-8859-1") && !es(u"windows-1252")) {
    throw ErrorXml(u"la codificación '" + UTF8ToString(codificacion) + u"' no se admite", 0);
  }
  convertido = DeBytes(bytes, es(u"windows-1252"));
  return convertido;
}

std::size_t Linea(std::string_view texto, std::size_t lugar) noexcept {
  texto = texto.substr(0, std::min(lugar, texto.size()));
  return static_cast<std::size_t>(std::count(texto.begin(), texto.end(), '\n')) + 1;
}

}  // namespace vel::xml
