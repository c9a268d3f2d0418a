#include "tests/sistema/Operaciones.h"

#include <sys/stat.h>

#include "Paramsql/Paramsql.h"
#include "Uutilext/Uutilext.h"
#include "facil/facil.h"
#include "framework/TClientDataSet.h"
#include "framework/TRemotable.h"
#include "platform/Registro.h"

namespace pruebas {

using namespace vel;
namespace fs = std::filesystem;

Foto Retrata(const fs::path& carpeta) {
  Foto foto;
  for (const auto& entrada : fs::recursive_directory_iterator(carpeta)) {
    const std::string ruta = entrada.path().string();
    struct stat estado {};
    lstat(ruta.c_str(), &estado);
    Visto& visto = foto[ruta];
    visto.modo = estado.st_mode;
    if (entrada.is_symlink()) {
      visto.bytes = fs::read_symlink(entrada).string();
    } else if (entrada.is_regular_file()) {
      std::ifstream entra(ruta, std::ios::binary);
      visto.bytes.assign(std::istreambuf_iterator<char>(entra), {});
    }
  }
  return foto;
}

void Revela(const fs::path& carpeta, const Foto& foto) {
  for (const auto& entrada : fs::directory_iterator(carpeta)) fs::remove_all(entrada);
  for (const auto& [ruta, visto] : foto) {
    if (S_ISDIR(visto.modo)) {
      fs::create_directory(ruta);
    } else if (S_ISLNK(visto.modo)) {
      fs::create_symlink(visto.bytes, ruta);
    } else {
      std::ofstream(ruta, std::ios::binary) << visto.bytes;
    }
    if (!S_ISLNK(visto.modo)) chmod(ruta.c_str(), visto.modo & 07777);
  }
}

void Publica(const Suceso& suceso, Versiones& enteras) {
  if (suceso.hecho && !suceso.otra.empty()) enteras.insert({suceso.otra, Visto{suceso.bytes, suceso.modo}});
}

namespace {

struct Guardados {
  TClientDataSet datos;
  TParametrosFiltro filtro{u"CLIENTES C"};
  facil::Consulta consulta{"CLIENTES"};
  Guardados() {
    datos.CreateDataSet({{.Name = u"N", .DataType = TFieldType::ftString, .Size = 20}});
    datos.Append();
    datos.FieldByName(u"N").SetAsString(u"Peña & Ñandú");
    filtro.AgregaFiltro(u"SALDO", TFieldType::ftInteger, 1, ENUM_OPERADOR::MAYOR);
    consulta.campo("NOMBRE").donde("SALDO").mayor(1000.0);
  }
};

Guardados& Objeto() {
  static Guardados objeto;
  return objeto;
}

void Motor(CarpetaTemporal& c) {
  c.Instala();
  fs::copy_file(DATOS_PRUEBA "/memoria/Empresas.xml", c.Motor() / "Empresas.xml");
}

void Ini(CarpetaTemporal& c) {
  c.Escribe("a.ini", "; mía\r\n[TABLAPIV]\r\nTABLA=ANTES\r\n[S]\r\nk=1\r\n");
  chmod((c.Ruta() / "a.ini").c_str(), 0640);
}

void Exige(const FallaArchivo& falla) { ExigeSinFalla(falla, u"No se puede escribir", u"el archivo"); }

}  // namespace

std::string Objetos() {
  return Objeto().datos.SaveToXML() + EscribeRemotableXML(Objeto().filtro, u"f") +
         EscribeRemotableXML(Objeto().consulta.filtro(), u"c");
}

const std::vector<Operacion>& Operaciones() {
  using C = CarpetaTemporal&;
  static const std::vector<Operacion> operaciones{
      {"a setting", Ini, [](C c) { EscribeValor(c.Archivo("a.ini"), u"S", u"k", u"2"); }},
      {"a setting of a new file", [](C) {}, [](C c) { EscribeValor(c.Archivo("a.ini"), u"S", u"k", u"2"); }},
      {"a setting through a link",
       [](C c) {
         Ini(c);
         fs::create_directory(c.Ruta() / "otra");
         fs::rename(c.Ruta() / "a.ini", c.Ruta() / "otra/b.ini");
         fs::create_symlink("otra/b.ini", c.Ruta() / "a.ini");
       },
       [](C c) { EscribeValor(c.Archivo("a.ini"), u"S", u"k", u"2"); }},
      {"a setting of a new machine", [](C) {}, [](C) { EscribeTamPaquete(50); }},
      {"a section that goes", Ini, [](C c) { BorraSeccion(c.Archivo("a.ini"), u"S"); }},
      {"the registry", [](C c) { c.Instala(); },
       [](C) { Exige(EscribeRegistro(u"SOFTWARE\\Tavex", u"TAVEXComunDir", u"D:\\Otra")); }},
      {"the registry in new folders",
       [](C c) { c.Pon("UTILVEL_REGISTRO", (c.Ruta() / "uno/dos/registro.reg").string()); },
       [](C) { Exige(EscribeRegistro(u"SOFTWARE\\Tavex", u"TAVEXComunDir", u"D:\\Otra")); }},
      {"the catalog", Motor, [](C) { ActualizaXMLNombreEmpresa(1, u"Otro nombre de la empresa"); }},
      {"the catalog restored",
       [](C c) {
         Motor(c);
         ActualizaXMLNombreEmpresa(1, u"Otro nombre de la empresa");
       },
       [](C) { facil::RestauraCatalogo(); }},
      {"a new catalog", [](C c) { c.Instala(); }, [](C) { facil::CreaCatalogo(); }},
      {"a new machine", [](C) {}, [](C c) { facil::Instala(c.Archivo("C")); }},
      {"a machine set up again",
       [](C c) {
         facil::Instala(c.Archivo("C"));
         EscribeTamPaquete(99);
         EscribeRegsXDemanda(true);
       },
       [](C c) { facil::Instala(c.Archivo("C")); }},
      // It raises, and changes nothing.
      {"a machine that has another folder", [](C c) { c.Instala(); },
       [](C c) { facil::Instala(c.Archivo("D")); }},
      {"a data set", [](C c) { c.Escribe("a.xml", "<antes/>"); },
       [](C c) { Objeto().datos.SaveToFile(c.Archivo("a.xml")); }},
      {"a definition", Ini, [](C c) { Objeto().filtro.SaveToIni(c.Archivo("a.ini"), 0); }},
      {"a query", Ini, [](C c) { Objeto().consulta.guarda(c.Archivo("a.ini")); }},
      {"a copy", [](C c) { Ini(c), c.Escribe("b.ini", "antes"); },
       [](C c) { Exige(CopiaArchivo(c.Archivo("a.ini"), c.Archivo("b.ini"), true)); }},
      {"a copy to a new file", Ini,
       [](C c) { Exige(CopiaArchivo(c.Archivo("a.ini"), c.Archivo("b.ini"), false)); }},
      {"new folders", [](C) {}, [](C c) { Exige(CreaCarpeta(c.Archivo("uno/dos"))); }},
  };
  return operaciones;
}

}  // namespace pruebas
