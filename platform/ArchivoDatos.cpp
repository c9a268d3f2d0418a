#include <string>

#include "framework/TClientDataSet.h"
#include "platform/Archivos.h"

// The members of the data set that reach the disk: they stand here because framework/ knows no system.
namespace vel {

void TClientDataSet::LoadFromFile(std::u16string_view ruta) {
  std::string bytes;
  ExigeSinFalla(LeeArchivo(ruta, bytes), u"No se puede leer el archivo", ruta);
  LoadFromXML(bytes, ruta);
}

void TClientDataSet::SaveToFile(std::u16string_view ruta) const {
  ExigeSinFalla(ReemplazaArchivo(ruta, SaveToXML()), u"No se puede escribir en el archivo", ruta);
}

}  // namespace vel
