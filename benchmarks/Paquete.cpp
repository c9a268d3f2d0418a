// Loading a data packet against a bare parse with a walk over the attributes.

#include <cstdio>
#include <cstring>
#include <fstream>
#include <malloc.h>
#include <memory>
#include <pugixml.hpp>
#include <random>
#include <string>
#include <vector>

#include "benchmarks/Medicion.h"
#include "framework/Numeros.h"
#include "framework/TClientDataSet.h"

namespace {

// Lines of a document: texts, amounts, whole numbers, a date and a truth value.
std::string Paquete(std::size_t registros) {
  std::mt19937 azar(7);
  vel::TClientDataSet datos;
  std::vector<vel::TFieldDef> campos{
      {.Name = u"CVE_DOC", .DataType = vel::TFieldType::ftWideString, .Size = 20},
      {.Name = u"DESCR", .DataType = vel::TFieldType::ftWideString, .Size = 80},
      {.Name = u"FECHA", .DataType = vel::TFieldType::ftDateTime},
      {.Name = u"ACTIVO", .DataType = vel::TFieldType::ftBoolean}};
  for (int i = 1; i <= 8; ++i) {
    campos.push_back({.Name = u"IMPU" + vel::IntToStr(i), .DataType = vel::TFieldType::ftFloat});
    campos.push_back({.Name = u"IMP" + vel::IntToStr(i) + u"APLA", .DataType = vel::TFieldType::ftInteger});
  }
  datos.CreateDataSet(campos);
  for (std::size_t r = 0; r < registros; ++r) {
    datos.Append();
    datos.Fields(0).SetAsString(u"FAC" + vel::IntToStr(static_cast<std::int64_t>(10'000'000 + r)));
    datos.Fields(1).SetAsString(u"Artículo número " + vel::IntToStr(static_cast<std::int64_t>(azar())));
    datos.Fields(2).SetAsDateTime(vel::TDateTime(45000 + static_cast<double>(r % 1000) / 7));
    datos.Fields(3).SetAsBoolean(r % 2 == 0);
    for (std::size_t i = 4; i < campos.size(); i += 2) {
      datos.Fields(i).SetAsFloat(static_cast<double>(azar() % 10'000'000) / 1e4);
      datos.Fields(i + 1).SetAsInteger(static_cast<int>(azar() % 8));
    }
    datos.Post();
  }
  return datos.SaveToXML();
}

std::size_t Recorre(const std::string& xml, std::size_t& registros) {
  pugi::xml_document documento;
  documento.load_buffer(xml.data(), xml.size());
  std::size_t largo = 0;
  registros = 0;
  for (const pugi::xml_node fila : documento.document_element().child("ROWDATA").children()) {
    ++registros;
    for (const pugi::xml_attribute a : fila.attributes())
      largo += std::strlen(a.name()) + std::strlen(a.value());
  }
  return largo;
}

// A line of the kernel's account of this process, in kilobytes.
double Estado(const std::string& nombre) {
  std::ifstream estado("/proc/self/status");
  for (std::string linea; std::getline(estado, linea);)
    if (linea.compare(0, nombre.size(), nombre) == 0) return std::stod(linea.substr(nombre.size() + 1));
  return 0;
}

// The memory that a load takes at most, beside its text, against what the data set holds afterwards.
void MideMemoria(std::size_t registros) {
  const std::string xml = Paquete(registros);
  malloc_trim(0);
  std::ofstream("/proc/self/clear_refs") << "5";
  const double antes = Estado("VmRSS");
  vel::TClientDataSet datos;
  datos.LoadFromXML(xml, u"paquete");
  const double queda = Estado("VmRSS") - antes;
  const double maximo = Estado("VmHWM") - antes;
  constexpr double kLimite = 2.5;
  std::printf("LoadFromXML memory, %zu records  holds %.1f MB  peak %.1f MB  ratio %.2f  limit %g: %s\n",
              registros, queda / 1024, maximo / 1024, maximo / queda, kLimite,
              maximo <= kLimite * queda ? "met" : "MISSED");
}

}  // namespace

int main(int argc, char** argv) {
  MideMemoria(100'000);
  const std::string xml = Paquete(10'000);
  vel::TClientDataSet datos;
  datos.LoadFromXML(xml, u"paquete");
  std::size_t registros = 0;
  std::size_t largo = Recorre(xml, registros);
  medicion::Exige(datos.RecordCount() == registros && datos.SaveToXML() == xml, "Paquete");
  return medicion::Ejecuta(argc, argv,
                           {{.nombre = "LoadFromXML, 10,000 records",
                             .propio = [&] { datos.LoadFromXML(xml, u"paquete"); },
                             .par = [&] { largo += Recorre(xml, registros); },
                             .limite = 1.5,
                             .nombrePar = "pugixml + walk",
                             .unidades = 10'000},
                            {.nombre = "SaveToXML, 10,000 records",
                             .propio = [&] { largo += datos.SaveToXML().size(); },
                             .par = [&] { datos.LoadFromXML(xml, u"paquete"); },
                             .limite = 1,
                             .nombrePar = "LoadFromXML",
                             .unidades = 10'000}},
                           {{.nombre = "LoadFromXML per record",
                             .tamanos = {1'000, 10'000, 100'000, 1'000'000},
                             .prepara =
                                 [](std::size_t n) {
                                   return [texto = Paquete(n)] {
                                     vel::TClientDataSet d;
                                     d.LoadFromXML(texto, u"paquete");
                                   };
                                 },
                             .limite = 1.2},
                            // The peer's own growth, which is the machine's: memory for documents this large.
                            {.nombre = "pugixml + walk per record",
                             .tamanos = {1'000, 10'000, 100'000, 1'000'000},
                             .prepara = [&largo](std::size_t n) {
                               return [texto = Paquete(n), &largo] {
                                 std::size_t filas = 0;
                                 largo += Recorre(texto, filas);
                               };
                             }}});
}
