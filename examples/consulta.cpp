// Says a query in words, prints it with literals and with placeholders, runs it on a small SQLite database,
// and saves it and runs it again from the file. consulta_contrato builds the same query without the front.

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <random>
#include <stdexcept>
#include <string>

#include "examples/BaseEjemplo.h"
#include "examples/Salida.h"
#include "facil/facil.h"

namespace {

using namespace std::chrono;
using vel::facil::Consulta;
using vel::facil::Sentencia;

// The sales notes above 1,000.
Consulta Notas() {
  Consulta notas("FACTV01 N");
  notas.campo("C.NOMBRE || ' (notas)'", "CLIENTE")
      .campo("1", "DOCUMENTOS")
      .campo("N.IMPORTE", "TOTAL")
      .join("JOIN CLIENTES C ON C.CVE = N.CVE_CLPV")
      .donde("N.IMPORTE")
      .mayor(1000.0);
  return notas;
}

// Invoices by customer: issued ones of some product lines or large ones, from April to May, of customers
// whose name holds what a user typed, with more than 500 in all; and the notes.
Consulta Facturas() {
  Consulta facturas("FACTF01 F");
  facturas.campo("C.NOMBRE", "CLIENTE").campo("COUNT(*)", "DOCUMENTOS").campo("SUM(F.IMPORTE)", "TOTAL");
  facturas.join("JOIN CLIENTES C ON C.CVE = F.CVE_CLPV").join("JOIN PRODUCTOS P ON P.CVE_ART = F.CVE_ART");
  facturas.donde("F.STATUS").igual("E");
  facturas.alguna([](auto& g) {
    g.donde("P.LINEA").en({"FERRETERÍA", "MUEBLES"});
    g.donde("F.IMPORTE").mayorIgual(700.0);
  });
  facturas.donde("F.FECHA").entre(2024y / April / 1, 2024y / May / 31);
  facturas.alguna([](auto& g) {
    for (const char* buscado : {"ñ", "50% /", "\"el á"}) g.donde("C.NOMBRE").contiene(buscado);
  });
  facturas.agrupa("C.NOMBRE").having("SUM(F.IMPORTE)").mayor(500.0);
  facturas.unionCon(Notas());
  // A union is ordered by the number of a column: not every database takes a name there.
  facturas.ordenaDesc("3");
  return facturas;
}

// What is bound: dates as the database has them.
vel::UnicodeString Texto(const vel::TParam& p) {
  const bool esFecha = p.Value.GetKind() == vel::Variant::Kind::Date;
  return esFecha ? vel::DateTimeToISO(p.Value.AsDateTime(), p.DataType) : p.Value.AsString();
}

}  // namespace

int main(int argc, char** argv) {
  return ejemplo::Principal(argc, argv, [](const std::string& carpeta) {
    Consulta facturas = Facturas();
    const Sentencia sentencia = facturas.sentencia();
    std::printf("Con parámetros:\n%s\n\n", sentencia.utf8().c_str());
    for (const vel::TParam& p : sentencia.parametros) {
      std::printf("  :%s = %s\n", vel::UTF8Encode(p.Name).c_str(), vel::UTF8Encode(Texto(p)).c_str());
    }
    std::printf("\nCon literales, las notas:\n%s\n", vel::UTF8Encode(Notas().literal()).c_str());
    try {
      facturas.literal();
    } catch (const vel::EInvalidOperation& e) {
      std::printf("Las facturas no: %s.\n", e.what());
    }
    std::printf("\nRenglones:\n");
    ejemplo::Base base(ejemplo::LeeArchivo(carpeta + "/base.sql"));
    constexpr auto kMarca = vel::ENUM_MARCADOR::INTERROGACION;
    base.Imprime(facturas.sentencia(kMarca));

    // Kept as a user's saved query, and run again from the file.
    const std::filesystem::path guardada = std::filesystem::temp_directory_path() /
                                           ("consulta_" + std::to_string(std::random_device{}()) + ".ini");
    facturas.guarda(guardada.string());
    Consulta leida = Consulta::lee(guardada.string());
    std::filesystem::remove(guardada);
    if (leida.sentencia().texto != sentencia.texto) {
      throw std::runtime_error("La consulta guardada da otra sentencia");
    }
    std::printf("\nGuardada y leída de nuevo (la misma sentencia), renglones:\n");
    base.Imprime(leida.sentencia(kMarca));
  });
}
