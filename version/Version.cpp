#include "version/Version.h"

#include <mutex>

#include "framework/SinDestruir.h"
#include "platform/RecursoVersion.h"

namespace vel {
namespace {

/// A text of the version resource, read once. An empty one is not remembered: the resource may not be there
/// yet.
class TextoVersion {
 public:
  explicit TextoVersion(std::u16string_view ruta) : ruta_(ruta) {}
  UnicodeString Dame() {
    const std::lock_guard<std::mutex> guardia(candado_);
    if (texto_.empty()) texto_ = LeeRecursoVersion(ruta_);
    return texto_;
  }

 private:
  std::u16string_view ruta_;
  std::mutex candado_;
  UnicodeString texto_;
};

}  // namespace

UnicodeString DameVerVEL() {
  static SinDestruir<TextoVersion> etiqueta(u"\\StringFileInfo\\080A04E4\\Etiqueta de producto");
  return etiqueta->Dame();
}

UnicodeString DameVersionCompVEL(bool conProducto) {
  static SinDestruir<TextoVersion> version(u"\\StringFileInfo\\080A04E4\\FileVersion");
  return (conProducto ? u"Tavex-VEL " : u"") + version->Dame();
}

UnicodeString DameVerVELBitacora() { return u"Tavex-VEL 9.00"; }

UnicodeString DameNombreArchIni() { return u"VELWIN90.INI"; }

}  // namespace vel
