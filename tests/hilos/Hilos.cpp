// Eight threads call every exported free function, each in an order of its own, save in one file, and read
// the same constant objects: hilos [SECONDS]. Without a time each function is called a few times by each
// thread. A wrong answer, an exception or a lost line ends the program with 1; ThreadSanitizer finds the
// races.
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "tests/data/fin/llamadas.inc"

namespace vel {
namespace {

constexpr int kHilos = 8;

std::atomic<long> llamadas{0};
std::atomic<long> fallas{0};

void Falta(const char* nombre, const std::string& que) {
  ++fallas;
  std::fprintf(stderr, "%s: %s\n", nombre, que.c_str());
}

// Functions whose answer another thread changes meanwhile: their setting, section or catalog is the same for
// all. They too must not raise anything but an error of ours.
const std::set<std::string_view> kDeTodos = {
    "ActualizaXMLNombreEmpresa",
    "AgregaEmpresaXML",
    "DameAlmacenPredeter",
    "EscribeAlmacenPredeter",
    "EscribeValor",
    "facil::AgregaEmpresa",
    "facil::RenombraEmpresa",
    "facil::RestauraCatalogo",
    "DameNombreEmpresa",
};

void Llama(const Llamada& llamada) {
  ++llamadas;
  const bool deTodos = kDeTodos.contains(llamada.nombre);
  try {
    if (!llamada.llama() && !deTodos) Falta(llamada.nombre, "wrong answer");
  } catch (const Exception& e) {
    if (!deTodos) Falta(llamada.nombre, e.what());
  } catch (const std::exception& e) {
    Falta(llamada.nombre, e.what());
  }
}

// The work in all threads at the same time.
void EnHilos(const std::function<void(int)>& trabajo) {
  std::vector<std::thread> hilos;
  for (int i = 0; i < kHilos; ++i) hilos.emplace_back(trabajo, i);
  for (std::thread& hilo : hilos) hilo.join();
}

void TodasLasFunciones(std::chrono::seconds tiempo) {
  const auto fin = std::chrono::steady_clock::now() + tiempo;
  EnHilos([&](int hilo) {
    std::mt19937 azar(static_cast<unsigned>(hilo));
    std::vector<const Llamada*> orden;
    for (const Llamada& llamada : kLlamadas) orden.push_back(&llamada);
    int vueltas = 0;
    do {
      // A catalog of its first size: the calls add companies to it.
      CopiaArchivo(UTF8ToString(EMPRESAS), DameRutaArchEmpresas(), true);
      std::shuffle(orden.begin(), orden.end(), azar);
      for (const Llamada* llamada : orden) Llama(*llamada);
    } while (++vueltas < 2 || std::chrono::steady_clock::now() < fin);
  });
}

// What one thread saves the others do not lose, in settings, registry and log.
void GuardanEnElMismoArchivo() {
  constexpr int kClaves = 20;
  const UnicodeString ini = Propio("juntos.ini"), bitacora = Propio("juntos.log");
  EnHilos([&](int hilo) {
    for (int k = 0; k < kClaves; ++k) {
      const UnicodeString clave = u"k" + IntToStr(hilo * kClaves + k);
      EscribeValor(ini, u"S", clave, clave);
      EscribeRegistro(u"SOFTWARE\\Hilos", clave, clave);
      AgregaAlFinal(bitacora, UTF8Encode(clave) + std::string(200, '.') + "\r\n");
    }
  });
  for (int k = 0; k < kHilos * kClaves; ++k) {
    const UnicodeString clave = u"k" + IntToStr(k);
    if (DameValor(ini, u"S", clave) != clave) Falta("EscribeValor", "lost " + UTF8Encode(clave));
    if (LeeRegistro(u"SOFTWARE\\Hilos", clave).texto != clave)
      Falta("EscribeRegistro", "lost " + UTF8Encode(clave));
    const std::string linea = UTF8Encode(clave) + std::string(200, '.') + "\r\n";
    if (LeeArchivo(bitacora)->find(linea) == std::string::npos) Falta("AgregaAlFinal", "mixed " + linea);
  }
}

// Const members of the classes that promise them to all threads.
void LeenLosMismosObjetos() {
  TStringList lista;
  lista.SetText(u"NOMBRE=Uno\nCIUDAD=Guadalajara");
  const TStringList& textos = lista;
  const Variant valor = VarArrayOf({1, u"dos", 2.5});
  const TextoIni ini(u"[S]\r\nk=v\r\n");
  TParams parametros;
  parametros.Add({u"P", TFieldType::ftString, u"texto"});
  const TParams& enlace = parametros;
  const TConfigVEL rangos(Propio("f.ini"), TDateTime(45000));
  const TResumenFiscal resumen = facil::Documento({{.Precio = 100, .Iva = 16}}).Resumen();
  const facil::NombresVariables nombres{"A", "B"};
  const facil::ValoresFormula valores{{"A", 1}, {"B", 2}};
  const facil::Resumen sha = facil::Sha256("abc");
  const facil::Zona zona("America/Cancun");
  const facil::Moneda pesos = facil::DameMoneda("MXN");
  const EStreamError error(u"ñ");
  EnHilos([&](int) {
    for (int i = 0; i < 200; ++i) {
      ++llamadas;
      const bool bien = textos.Values(u"CIUDAD") == u"Guadalajara" && textos.IndexOfName(u"NOMBRE") == 0 &&
                        textos.Text().size() > 20 && valor == Variant(valor) &&
                        valor.AsArray().items.size() == 3 && ini.Valor(u"S", u"k") == u"v" &&
                        enlace.Count() == 1 && rangos.NumeroFormatos() >= 0 && resumen.Revisa().empty() &&
                        resumen.DameJson().size() > 50 && facil::Revisa("A+B*2", nombres).problemas.empty() &&
                        facil::Evalua("A+B*2", valores) == 5 && sha.Hex().starts_with("ba78") &&
                        facil::MontoEnLetra(2, pesos).size() > 5 &&
                        facil::DeUniversal({}, zona).Val() < 25569 && std::string_view(error.what()) == "ñ";
      if (!bien) Falta("shared constants", "wrong answer");
    }
  });
}

}  // namespace
}  // namespace vel

int main(int argc, char** argv) {
  vel::carpeta.emplace().Instala();
  std::filesystem::copy_file(EMPRESAS, vel::carpeta->Motor() / "Empresas.xml");
  // From the first change on there is a backup, whichever thread asks for it.
  vel::facil::RenombraEmpresa(1, "Una");
  vel::LeenLosMismosObjetos();
  vel::GuardanEnElMismoArchivo();
  vel::TodasLasFunciones(std::chrono::seconds(argc > 1 ? std::atoi(argv[1]) : 0));
  std::printf("%ld calls by %d threads, %ld faults\n", vel::llamadas.load(), vel::kHilos, vel::fallas.load());
  vel::carpeta.reset();
  return vel::fallas == 0 ? 0 : 1;
}
