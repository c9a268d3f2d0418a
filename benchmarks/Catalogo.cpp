// The company catalog against a bare parse, and the log against the bare system calls.

#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <memory>
#include <pugixml.hpp>
#include <string>
#include <unistd.h>

#include "Uutilext/config/Empresas.h"
#include "Uutilext/config/Rutas.h"
#include "Uutilext/diagnostics/Bitacora.h"
#include "benchmarks/Medicion.h"
#include "framework/Numeros.h"
#include "framework/TClientDataSet.h"
#include "platform/Archivos.h"

namespace {

std::string Catalogo(int empresas) {
  vel::TClientDataSet datos;
  std::vector<vel::TFieldDef> campos{{.Name = u"NumEmp", .DataType = vel::TFieldType::ftInteger}};
  for (const char16_t* texto :
       {u"Nombre_Empresa", u"RutaDatos", u"Driver", u"RutaTrabajo", u"VersionBD", u"DatosBD"}) {
    campos.push_back({.Name = texto, .DataType = vel::TFieldType::ftWideString, .Size = 120});
  }
  datos.CreateDataSet(campos);
  for (int i = 1; i <= empresas; ++i) {
    datos.Append();
    datos.Fields(0).SetAsInteger(i);
    datos.Fields(1).SetAsString(u"Compañía número " + vel::IntToStr(i) + u", S.A. de C.V.");
    datos.Fields(2).SetAsString(u"C:\\Datos\\Empresa" + vel::IntToStr(i) + u"\\VEL90.FDB");
    datos.Fields(3).SetAsString(u"DEVARTINTERBASE");
    datos.Fields(4).SetAsString(u"C:\\Trabajo\\Empresa" + vel::IntToStr(i));
    datos.Fields(5).SetAsString(u"9.00");
    datos.Fields(6).SetAsString(u"vel" + vel::IntToStr(i));
    datos.Post();
  }
  return datos.SaveToXML();
}

std::size_t LeeYRecorre(const std::string& ruta) {
  pugi::xml_document documento;
  documento.load_file(ruta.c_str());
  std::size_t largo = 0;
  for (const pugi::xml_node fila : documento.document_element().child("ROWDATA").children()) {
    for (const pugi::xml_attribute a : fila.attributes())
      largo += std::strlen(a.name()) + std::strlen(a.value());
  }
  return largo;
}

}  // namespace

int main(int argc, char** argv) {
  constexpr int kEmpresas = 10'000;
  const std::filesystem::path carpeta =
      std::filesystem::temp_directory_path() / ("medicion_catalogo_" + std::to_string(getpid()));
  const std::filesystem::path motor = carpeta / "C" / "Sistemas Tavex" / "VEL9.00";
  std::filesystem::create_directories(motor);
  setenv("UTILVEL_REGISTRO", (carpeta / "registro.reg").c_str(), 1);
  vel::EscribeDirectorioArchComun(vel::UTF8ToString((carpeta / "C").string()));
  const std::string ruta = (motor / "Empresas.xml").string();
  std::ofstream(ruta, std::ios::binary) << Catalogo(kEmpresas);
  std::unique_ptr<vel::TClientDataSet> empresas;
  vel::AbreArchivoEmpresa(empresas, u"");
  medicion::Exige(empresas->RecordCount() == kEmpresas && empresas->SaveToXML() == Catalogo(kEmpresas),
                  "AbreArchivoEmpresa");
  medicion::Exige(vel::DameNombreEmpresa(kEmpresas) == u"Compañía número 10000, S.A. de C.V.",
                  "DameNombreEmpresa");

  const std::string registro = vel::UTF8Encode(vel::DameRutaDll()) + "0010552.log";
  const std::string par = (carpeta / "par.log").string();
  const std::string mensaje(100, 'm');
  std::size_t total = 0;
  const int codigo =
      medicion::Ejecuta(argc, argv,
                        {{.nombre = "AbreArchivoEmpresa, 10,000 companies",
                          .propio = [&] { vel::AbreArchivoEmpresa(empresas, u""); },
                          .par = [&] { total += LeeYRecorre(ruta); },
                          .limite = 3,
                          .nombrePar = "pugixml + walk",
                          .unidades = kEmpresas},
                         {.nombre = "DameNombreEmpresa",
                          .propio = [&] { total += vel::DameNombreEmpresa(kEmpresas).size(); },
                          .par =
                              [&] {
                                std::unique_ptr<vel::TClientDataSet> e;
                                vel::AbreArchivoEmpresa(e, u"");
                                const vel::TField& numero = e->FieldByName(u"NumEmp");
                                while (numero.AsInteger() != kEmpresas) e->Next();
                                total += e->FieldByName(u"Nombre_Empresa").AsString().size();
                              },
                          .limite = 1.1,
                          .nombrePar = "load + scan"},
                         {.nombre = "logInterAux",
                          .propio = [&] { vel::logInterAux(mensaje); },
                          .par =
                              [&] {
                                const std::string linea = "21/11/2026 00:00:00 000 - " + mensaje + "\r\n";
                                const int fd = open(par.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0666);
                                total += static_cast<std::size_t>(write(fd, linea.data(), linea.size()));
                                close(fd);
                              },
                          .limite = 1.5,
                          .nombrePar = "open/write/close"}});
  std::filesystem::remove(registro.substr(0, registro.find_last_of('\\')) + "/0010552.log");
  std::filesystem::remove_all(carpeta);
  return codigo;
}
