// A program of someone who has the unpacked zip and nothing else: a statement and the total of an invoice.
// Its errors are caught by the library's own types, which is what a mismatch of compilers breaks first.
#include <cstdio>

#include "UtilVel90.h"

int main() {
  using vel::UTF8Encode;
  vel::facil::Consulta clientes("CLIENTES");
  clientes.campo("NOMBRE").donde("CIUDAD").igual("Mérida").donde("SALDO").mayor(1000.0).ordena("NOMBRE");
  std::printf("%s\n", clientes.sentencia().utf8().c_str());

  const vel::facil::Documento factura({{.Cantidad = 2, .Precio = 4599.90, .Descuentos = {10}, .Iva = 16},
                                       {.Precio = 1234.56, .Iva = 16, .RetencionIsr = 10}});
  std::printf("%s\n", UTF8Encode(vel::facil::FormateaMonto(factura.Total())).c_str());
  std::printf("%s\n", vel::facil::Sha256("UtilVel90").Hex().c_str());
  std::printf("%s %s\n", UTF8Encode(vel::DameVerVEL()).c_str(),
              UTF8Encode(vel::DameVersionCompVEL(false)).c_str());
  try {
    static_cast<void>(vel::StrToFloat(u"doce"));
  } catch (const vel::EConvertError& e) {
    std::printf("%s\n", e.what());
  }
  try {
    vel::TClientDataSet datos;
    datos.LoadFromFile(u"no existe.xml");
  } catch (const vel::Exception& e) {
    std::printf("%s\n", e.what());
  }
  return 0;
}
