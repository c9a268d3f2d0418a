// Every kind of saving with each call of the system failed once, by each errno that the call can have: it
// tells, every file is the old one or the new one, nothing stays behind, and it works again afterwards.

#include <cerrno>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <iostream>
#include <map>
#include <new>
#include <set>
#include <sys/resource.h>
#include <unistd.h>

#include "Uutilext/Uutilext.h"
#include "framework/Excepciones.h"
#include "framework/Numeros.h"
#include "platform/Modulos.h"
#include "tests/internal/Asignador.h"
#include "tests/sistema/Llamadas.h"
#include "tests/sistema/Operaciones.h"

namespace vel {
namespace {

namespace fs = std::filesystem;
using pruebas::CarpetaTemporal;
using pruebas::EnVigor;
using pruebas::Foto;
using pruebas::Llamada;
using pruebas::Operacion;
using pruebas::Retrata;
using pruebas::sistema;

// 0 stands for half of the bytes. What the system could only say of another state of the disk is not here.
const std::map<Llamada, std::vector<int>> kErrores = {
    {Llamada::Abre, {EACCES, EMFILE, ENFILE, ENOMEM, EINTR, EIO, EROFS, ENOSPC, EDQUOT}},
    {Llamada::Lee, {0, EINTR, EIO}},
    {Llamada::Escribe, {0, EINTR, EIO, ENOSPC, EDQUOT, EFBIG}},
    {Llamada::Vacia, {EIO, EINTR, ENOSPC, EDQUOT, EINVAL}},
    {Llamada::Cierra, {EIO, EINTR, ENOSPC}},
    {Llamada::Renombra, {EIO, ENOSPC, EACCES, EPERM, EBUSY, EROFS, ENOMEM, EXDEV}},
    {Llamada::Enlaza, {EIO, EPERM, EMLINK, ENOSPC}},
    {Llamada::Borra, {EIO, EPERM, EROFS, EBUSY}},
    {Llamada::Dueno, {EIO, EPERM, EROFS}},
    {Llamada::Permisos, {EIO, EPERM, EROFS}},
    {Llamada::Candado, {EWOULDBLOCK, EINTR, ENOLCK}},
    {Llamada::Control, {EAGAIN, EACCES, EINVAL, ENOLCK, EINTR}},
    {Llamada::Estado, {EACCES, EIO, ENOMEM}},
    {Llamada::Acceso, {EACCES, EROFS, EIO}},
    {Llamada::Carpeta, {EACCES, ENOSPC, EROFS, EIO, EDQUOT}},
    {Llamada::LeeEnlace, {EACCES, EIO, ENOMEM}},
};

// Faults of the test so far.
int Faltas() { return testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count(); }

std::set<std::string> Descriptores() {
  std::set<std::string> abiertos;
  for (const auto& entrada : fs::directory_iterator("/proc/self/fd"))
    abiertos.insert(entrada.path().filename());
  return abiertos;
}

// What it raised, in any way that a caller has to foresee; empty when it did its work.
std::string Guarda(const Operacion& operacion, CarpetaTemporal& c) {
  try {
    operacion.guarda(c);
    return "";
  } catch (const Exception& e) {
    // What it tells needs memory.
    pruebas::asignador.restan = 0;
    return e.what();
  } catch (const std::bad_alloc&) {
    return "bad_alloc";
  }
}

bool EsTemporal(const std::string& ruta) { return ruta.find("/.utilvel90.") != std::string::npos; }

/// An operation with its folder, before it and after it, and what its files are on the way: an operation of
/// several saves gives a file several contents, one after the other.
struct Ensayo {
  const Operacion& operacion;
  CarpetaTemporal c;
  Foto antes;
  Foto despues;
  pruebas::Versiones enteras;
  std::vector<Llamada> llamadas;
  std::string dice;

  explicit Ensayo(const Operacion& o) : operacion(o) {
    operacion.prepara(c);
    antes = Retrata(c.Ruta());
    // What is made once and kept is made in the first run.
    dice = Guarda(operacion, c);
    despues = Retrata(c.Ruta());
    pruebas::Revela(c.Ruta(), antes);
    {
      const EnVigor entero;
      EXPECT_EQ(Guarda(operacion, c), dice);
    }
    for (const Foto* foto : {&antes, &despues}) enteras.insert(foto->begin(), foto->end());
    for (const pruebas::Suceso& s : sistema.sucesos) {
      llamadas.push_back(s.llamada);
      pruebas::Publica(s, enteras);
    }
  }

  // What must hold after a run that ended with `obtenido`.
  void Revisa(const std::string& obtenido, bool puedeQuedar) {
    Foto hay = Retrata(c.Ruta());
    if (puedeQuedar) std::erase_if(hay, [](const auto& archivo) { return EsTemporal(archivo.first); });
    if (obtenido == dice) {
      EXPECT_TRUE(hay == despues) << "it told nothing";
    } else {
      for (const auto& archivo : hay)
        EXPECT_TRUE(enteras.contains(archivo)) << archivo.first << ": " << archivo.second.bytes;
      for (const auto& archivo : antes) {
        EXPECT_TRUE(hay.contains(archivo.first)) << archivo.first << " is gone";
      }
    }
    if (hay == despues) return;
    EXPECT_EQ(Guarda(operacion, c), dice) << "again";
    hay = Retrata(c.Ruta());
    if (puedeQuedar) std::erase_if(hay, [](const auto& archivo) { return EsTemporal(archivo.first); });
    EXPECT_TRUE(hay == despues) << "again";
  }
};

TEST(Fallas, EachCallOfTheSystemOnce) {
  constexpr std::size_t kMuchas = 200;
  long ensayos = 0;
  std::set<Llamada> vistas;
  const std::string objetos = pruebas::Objetos();
  for (const Operacion& operacion : pruebas::Operaciones()) {
    SCOPED_TRACE(operacion.nombre);
    Ensayo ensayo(operacion);
    const std::vector<Llamada>& llamadas = ensayo.llamadas;
    const int faltas = Faltas();
    for (std::size_t n = 1; n <= llamadas.size(); ++n) {
      const Llamada llamada = llamadas[n - 1];
      vistas.insert(llamada);
      std::vector<int> errores = kErrores.at(llamada);
      // An operation of hundreds of calls, most of them alike, has them fail by one error each, in turn.
      if (llamadas.size() > kMuchas) errores = {errores[n % errores.size()]};
      for (const int error : errores) {
        SCOPED_TRACE("call " + std::to_string(n) + ", kind " + std::to_string(static_cast<int>(llamada)) +
                     ": " + strerrorname_np(error));
        if (Retrata(ensayo.c.Ruta()) != ensayo.antes) pruebas::Revela(ensayo.c.Ruta(), ensayo.antes);
        const std::set<std::string> abiertos = Descriptores();
        sistema.sucesos = {};
        const long vivas = pruebas::asignador.vivas;
        std::string obtenido;
        {
          const EnVigor fallido(static_cast<long>(n), error);
          obtenido = Guarda(operacion, ensayo.c);
        }
        ASSERT_GE(sistema.sucesos.size(), n);
        ASSERT_EQ(sistema.sucesos[n - 1].llamada, llamada);
        // What was cut short or interrupted is taken up again.
        const bool sigue =
            (llamada == Llamada::Lee || llamada == Llamada::Escribe) && (error == 0 || error == EINTR);
        EXPECT_TRUE(!sigue || obtenido == ensayo.dice) << obtenido;
        sistema.sucesos = {};
        EXPECT_EQ(pruebas::asignador.vivas - vivas, obtenido.capacity() > 15 ? 1 : 0) << "memory stays";
        EXPECT_EQ(Descriptores(), abiertos);
        // Nobody can delete what the system does not let him delete, or says to be another's.
        const bool puedeQuedar = llamada == Llamada::Borra ||
                                 (llamada == Llamada::Control && (error == EAGAIN || error == EACCES));
        ensayo.Revisa(obtenido, puedeQuedar);
        EXPECT_EQ(pruebas::Objetos(), objetos);
        ++ensayos;
        if (Faltas() > faltas) n = llamadas.size();
      }
    }
  }
  EXPECT_EQ(vistas.size(), kErrores.size()) << "kinds of calls that nothing makes, or that are not seen";
  std::cout << ensayos << " failed calls\n";
}

// What an operation leaves of its objects in memory is tests/internal/Memoria.cpp's.
TEST(Fallas, EachAllocationOnce) {
  const std::string objetos = pruebas::Objetos();
  sistema.disco = false;
  long ensayos = 0;
  for (const Operacion& operacion : pruebas::Operaciones()) {
    SCOPED_TRACE(operacion.nombre);
    Ensayo ensayo(operacion);
    for (long n = 1;; ++n) {
      if (Retrata(ensayo.c.Ruta()) != ensayo.antes) pruebas::Revela(ensayo.c.Ruta(), ensayo.antes);
      const std::set<std::string> abiertos = Descriptores();
      pruebas::asignador.fallo = false;
      pruebas::asignador.restan = n;
      const std::string obtenido = Guarda(operacion, ensayo.c);
      pruebas::asignador.restan = 0;
      EXPECT_EQ(Descriptores(), abiertos);
      ensayo.Revisa(obtenido, false);
      EXPECT_EQ(pruebas::Objetos(), objetos);
      if (!pruebas::asignador.fallo || HasFailure()) break;
      ++ensayos;
    }
  }
  sistema.disco = true;
  std::cout << ensayos << " failed allocations\n";
}

// A disk with room for so many bytes more.
TEST(Fallas, FullDisk) {
  for (const Operacion& operacion : pruebas::Operaciones()) {
    SCOPED_TRACE(operacion.nombre);
    Ensayo ensayo(operacion);
    for (long espacio = 0; espacio < 5000; espacio += 1 + espacio / 3) {
      pruebas::Revela(ensayo.c.Ruta(), ensayo.antes);
      std::string obtenido;
      {
        const EnVigor lleno(0, 0, espacio);
        obtenido = Guarda(operacion, ensayo.c);
      }
      ensayo.Revisa(obtenido, false);
      if (HasFailure()) break;
    }
  }
}

TEST(Fallas, NoDescriptorsLeft) {
#ifdef CON_SANITIZADORES
  GTEST_SKIP() << "the sanitizers ask a pipe whether memory can be read";
#endif
  rlimit limite{};
  getrlimit(RLIMIT_NOFILE, &limite);
  for (const Operacion& operacion : pruebas::Operaciones()) {
    SCOPED_TRACE(operacion.nombre);
    Ensayo ensayo(operacion);
    const int primero = open("/dev/null", O_RDONLY | O_CLOEXEC);
    close(primero);
    bool hubo = false;
    for (unsigned libres = 0; libres < 6; ++libres) {
      pruebas::Revela(ensayo.c.Ruta(), ensayo.antes);
      const rlimit pocos{static_cast<rlim_t>(primero) + libres, limite.rlim_max};
      setrlimit(RLIMIT_NOFILE, &pocos);
      const std::string obtenido = Guarda(operacion, ensayo.c);
      setrlimit(RLIMIT_NOFILE, &limite);
      hubo = hubo || obtenido != ensayo.dice;
      ensayo.Revisa(obtenido, false);
      if (HasFailure()) break;
    }
    EXPECT_TRUE(hubo);
  }
}

/// This process as an ordinary user, whom permissions bind.
class ComoCualquiera {
 public:
  ComoCualquiera() : era_(geteuid()) {
    if (era_ == 0 && seteuid(kNadie) != 0) std::abort();
  }
  ComoCualquiera(const ComoCualquiera&) = delete;
  ComoCualquiera& operator=(const ComoCualquiera&) = delete;
  ~ComoCualquiera() {
    if (era_ == 0 && seteuid(0) != 0) std::abort();
  }

 private:
  static constexpr uid_t kNadie = 65534;
  uid_t era_;
};

TEST(Fallas, FoldersOfAnother) {
  for (const Operacion& operacion : pruebas::Operaciones()) {
    SCOPED_TRACE(operacion.nombre);
    Ensayo ensayo(operacion);
    // What changes nothing needs no permission.
    if (ensayo.antes == ensayo.despues) continue;
    pruebas::Revela(ensayo.c.Ruta(), ensayo.antes);
    std::vector<fs::path> carpetas{ensayo.c.Ruta()};
    for (const auto& entrada : fs::recursive_directory_iterator(ensayo.c.Ruta()))
      if (entrada.is_directory() && !entrada.is_symlink()) carpetas.push_back(entrada.path());
    const Foto antes = Retrata(ensayo.c.Ruta());
    for (const fs::path& carpeta : carpetas) fs::permissions(carpeta, fs::perms(0555));
    std::string obtenido;
    {
      const ComoCualquiera usuario;
      obtenido = Guarda(operacion, ensayo.c);
    }
    for (const fs::path& carpeta : carpetas) fs::permissions(carpeta, fs::perms(0755));
    EXPECT_NE(obtenido, "");
    EXPECT_TRUE(Retrata(ensayo.c.Ruta()) == antes);
  }
}

TEST(Fallas, LogLineIsWholeOrEnded) {
  const CarpetaTemporal c;
  const std::string antes = "antes\r\n", linea = "una linea mas\r\n";
  long fallidos = 0;
  for (long n = 1; n < 20; ++n) {
    for (const int error : {0, EINTR, EIO, ENOSPC, EDQUOT, EMFILE}) {
      SCOPED_TRACE("call " + std::to_string(n) + ": " + strerrorname_np(error));
      c.Escribe("log", antes);
      const std::set<std::string> abiertos = Descriptores();
      FallaArchivo falla;
      {
        const EnVigor fallido(n, error);
        falla = AgregaAlFinal(c.Archivo("log"), linea);
      }
      if (sistema.llamadas >= n) ++fallidos;
      const std::string hay = c.Lee("log");
      ASSERT_TRUE(hay.starts_with(antes) && hay.ends_with("\r\n") &&
                  hay.size() <= antes.size() + linea.size())
          << hay;
      EXPECT_TRUE(falla.Hubo() || hay == antes + linea) << hay;
      EXPECT_EQ(Descriptores(), abiertos);
    }
  }
  EXPECT_GT(fallidos, 10);
  // A disk that takes a part: what comes next begins a line of its own.
  for (long cabe = 0; cabe <= 20; ++cabe) {
    c.Escribe("log", antes);
    FallaArchivo falla;
    {
      const EnVigor lleno(0, 0, cabe);
      falla = AgregaAlFinal(c.Archivo("log"), linea);
    }
    const std::string hay = c.Lee("log");
    EXPECT_EQ(UTF8Encode(Descripcion(falla)), hay == antes + linea ? "" : "no queda espacio en el disco");
    EXPECT_FALSE(AgregaAlFinal(c.Archivo("log"), "otra\r\n").Hubo());
    EXPECT_TRUE(c.Lee("log").ends_with("\notra\r\n")) << cabe << ": " << c.Lee("log");
  }
}

// The clock of the day leaps between any two readings, and stands in years that no line of the log has room
// for.
TEST(Fallas, ClockThatLeaps) {
  const UnicodeString biblioteca = RutaBiblioteca();
  const UnicodeString carpeta = biblioteca.substr(0, biblioteca.rfind(u'/') + 1);
  if (access(UTF8Encode(carpeta).c_str(), W_OK) != 0) GTEST_SKIP() << "the log is another user's";
  const CarpetaTemporal c;
  c.Instala();
  for (const std::int64_t reloj : {1, -86'400 * 365, 2'147'483'647}) {
    for (const std::int64_t salto : {-400'000'000, 400'000'000}) {
      sistema.reloj = reloj;
      sistema.salto = salto;
      SCOPED_TRACE(reloj);
      Deletelog();
      const auto inicio = std::chrono::steady_clock::now();
      for (int i = 0; i < 3; ++i) {
        EscribeValor(c.Archivo("a.ini"), u"S", u"k", IntToStr(i));
        logInterAux("hola");
      }
      EXPECT_LT(std::chrono::steady_clock::now() - inicio, std::chrono::seconds(5))
          << "nobody waits for a clock";
      sistema.reloj = 0;
      EXPECT_EQ(DameValor(c.Archivo("a.ini"), u"S", u"k"), u"2");
      const std::string bitacora = LeeArchivo(carpeta + u"0010552.log").value_or("");
      EXPECT_EQ(bitacora.size(), 3 * std::string_view("01/01/1970 00:00:01 481 - hola\r\n").size())
          << bitacora;
      if (reloj == 1) {
        EXPECT_TRUE(bitacora.find("/1970 ") == 5 || bitacora.find("/1969 ") == 5) << bitacora;
      }
    }
  }
  Deletelog();
}

}  // namespace
}  // namespace vel
