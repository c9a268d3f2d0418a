#include "tools/utilvel/cfdi/ExploraXml.h"

#include <algorithm>

#include "framework/Texto.h"
#include "tools/utilvel/cfdi/Comprobante.h"

namespace utilvel::cfdi {
namespace {

constexpr std::size_t kFin = std::string_view::npos;
constexpr std::size_t kPequeno = std::size_t{1} << 20;

/// Place behind the text that ends what began at `desde`; the end of the bytes without one.
std::size_t Tras(std::string_view bytes, std::string_view final, std::size_t desde) {
  const std::size_t lugar = bytes.find(final, desde);
  return lugar == kFin ? bytes.size() : lugar + final.size();
}

/// Place of the ">" of the tag that begins at `desde`, which quotes may hold too; the end without one.
std::size_t CierreEtiqueta(std::string_view bytes, std::size_t desde) {
  for (std::size_t i = desde; i < bytes.size(); ++i) {
    const char c = bytes[i];
    if (c == '>') return i;
    if (c != '"' && c != '\'') continue;
    i = bytes.find(c, i + 1);
    if (i == kFin) break;
  }
  return bytes.size();
}

/// Whether the bytes may hold a comment, a section of characters or a document type.
bool HayDeclaraciones(std::string_view bytes) {
  for (std::size_t i = bytes.find('!'); i != kFin; i = bytes.find('!', i + 1))
    if (i > 0 && bytes[i - 1] == '<') return true;
  return false;
}

}  // namespace

void Rechaza(std::string_view bytes, std::size_t lugar, const std::string& razon) {
  const std::string_view antes = bytes.substr(0, std::min(lugar, bytes.size()));
  const auto lineas = static_cast<std::size_t>(std::count(antes.begin(), antes.end(), '\n'));
  const std::size_t ultimo = antes.rfind('\n');
  const std::size_t columna = ultimo == kFin ? antes.size() : antes.size() - ultimo - 1;
  throw Rechazo(lineas + 1, columna + 1, razon);
}

void ExploraXml(std::string_view bytes) {
  if (bytes.empty()) Rechaza(bytes, 0, "el archivo está vacío");
  if (bytes.size() > kMaxBytes) {
    Rechaza(bytes, 0, "el archivo pasa de " + std::to_string(kMaxBytes >> 20) + " MiB: no es una factura");
  }
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF"))
    Rechaza(bytes, 0, "está en UTF-16 y no en UTF-8");
  if (const std::size_t cero = bytes.find('\0'); cero != kFin) {
    Rechaza(bytes, cero, "hay un byte cero: no es XML en UTF-8");
  }
  if (!vel::IsUTF8(bytes)) {
    // Halving finds where: a beginning may end within a character, so the place is good to three bytes.
    std::size_t bien = 0;
    std::size_t mal = bytes.size();
    const auto entera = [bytes](std::size_t hasta) {
      while (hasta > 0 && (static_cast<unsigned char>(bytes[hasta]) & 0xC0) == 0x80) --hasta;
      return vel::IsUTF8(bytes.substr(0, hasta));
    };
    while (mal - bien > 1) {
      const std::size_t medio = bien + (mal - bien) / 2;
      (entera(medio) ? bien : mal) = medio;
    }
    Rechaza(bytes, bien, "no está en UTF-8");
  }
  // What is so small can only hold few elements, and the parser does not recur.
  if (bytes.size() <= kPequeno && !HayDeclaraciones(bytes)) return;
  std::size_t profundidad = 0;
  std::size_t elementos = 0;
  for (std::size_t i = bytes.find('<'); i < bytes.size(); i = bytes.find('<', i)) {
    const std::string_view resto = bytes.substr(i);
    if (resto.starts_with("<!--")) {
      i = Tras(bytes, "-->", i + 4);
    } else if (resto.starts_with("<![CDATA[")) {
      i = Tras(bytes, "]]>", i + 9);
    } else if (resto.starts_with("<!")) {
      Rechaza(bytes, i, "declara un tipo de documento, que una factura no lleva");
    } else if (resto.starts_with("<?")) {
      i = Tras(bytes, "?>", i + 2);
    } else if (resto.starts_with("</")) {
      if (profundidad > 0) --profundidad;
      i += 2;
    } else {
      const std::size_t cierre = CierreEtiqueta(bytes, i + 1);
      if (++elementos > kMaxElementos) {
        Rechaza(bytes, i, "tiene más de " + std::to_string(kMaxElementos) + " elementos");
      }
      const bool vacio = cierre < bytes.size() && bytes[cierre - 1] == '/';
      if (!vacio && ++profundidad > kMaxProfundidad) {
        Rechaza(bytes, i,
                "tiene elementos dentro de otros a más de " + std::to_string(kMaxProfundidad) + " niveles");
      }
      i = cierre;
    }
  }
}

}  // namespace utilvel::cfdi
