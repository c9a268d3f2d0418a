// Lists the companies of an example catalog and their folders.

#include "Uutilext/config/Empresas.h"

#include <cstdio>
#include <memory>
#include <string>

#include "Uutilext/config/Rutas.h"
#include "examples/Salida.h"
#include "framework/TClientDataSet.h"

int main(int argc, char** argv) {
  return ejemplo::Principal(argc, argv, [](const std::string& carpeta) {
    std::unique_ptr<vel::TClientDataSet> empresas;
    vel::AbreArchivoEmpresa(empresas, vel::UTF8ToString(carpeta + "/Empresas.xml"));
    for (empresas->First(); !empresas->Eof(); empresas->Next()) {
      const int numero = empresas->FieldByName(u"NumEmp").AsInteger();
      const auto texto = [&](std::u16string_view campo) {
        return vel::UTF8Encode(empresas->FieldByName(campo).AsString());
      };
      std::printf(
          "%s  %s\n    controlador   %s\n    datos         %s\n    respaldos     %s\n    certificados  %s\n",
          vel::UTF8Encode(vel::DameNumEmpFormat(numero)).c_str(), texto(u"Nombre_Empresa").c_str(),
          texto(u"Driver").c_str(), texto(u"RutaDatos").c_str(),
          vel::UTF8Encode(vel::DameRutaRespaldosEmpresa(numero)).c_str(),
          vel::UTF8Encode(vel::DameRutaCertificados(numero)).c_str());
    }
  });
}
