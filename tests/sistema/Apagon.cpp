// Power failures, by replay: the calls of each kind of saving are kept, and after each of them the disk is
// rebuilt in every state that a journaling file system may leave. Names that were not flushed with their
// folder came or did not, in any order; what was written and not flushed with its file is lost, in part
// there, or all zeros. Every file must be the old one or the new one, and once the call has returned the new
// one.

#include <algorithm>
#include <gtest/gtest.h>
#include <iostream>
#include <sys/stat.h>

#include "framework/Excepciones.h"
#include "tests/sistema/Llamadas.h"
#include "tests/sistema/Operaciones.h"

namespace vel {
namespace {

using pruebas::EnVigor;
using pruebas::Foto;
using pruebas::Llamada;
using pruebas::Retrata;
using pruebas::Suceso;
using pruebas::Versiones;
using pruebas::Visto;

// By path, the number of the file or folder that has this name.
using Nombres = std::map<std::string, std::size_t>;

/// What stands in a folder under a name that came, went or moved.
struct Cambio {
  std::string carpeta;
  /// Empty for none.
  std::string quita;
  std::string pone;
  std::size_t archivo;
  void En(Nombres& nombres) const {
    if (!quita.empty()) nombres.erase(quita);
    if (!pone.empty()) nombres[pone] = archivo;
  }
};

/// A file as programs see it, and as it stands on the disk for certain.
struct Archivo {
  Visto visto;
  Visto seguro;
};

class Disco {
 public:
  explicit Disco(const Foto& foto) {
    for (const auto& [ruta, visto] : foto) {
      vistos_[ruta] = seguros_[ruta] = archivos_.size();
      archivos_.push_back({visto, visto});
    }
  }

  void Sucede(const Suceso& s) {
    if (!s.hecho) return;
    switch (s.llamada) {
      case Llamada::Abre:
        if (s.crea && !vistos_.contains(s.ruta)) Nace(s, S_IFREG);
        break;
      case Llamada::Carpeta:
        Nace(s, S_IFDIR);
        break;
      case Llamada::Escribe:
        archivos_.at(vistos_.at(s.ruta)).visto.bytes += s.bytes;
        break;
      case Llamada::Permisos:
        archivos_.at(vistos_.at(s.ruta)).visto.modo = S_IFREG | s.modo;
        break;
      case Llamada::Renombra:
        Cambia({Carpeta(s.otra), s.ruta, s.otra, vistos_.at(s.ruta)});
        break;
      case Llamada::Enlaza:
        Cambia({Carpeta(s.otra), "", s.otra, vistos_.at(s.ruta)});
        break;
      case Llamada::Borra:
        Cambia({Carpeta(s.ruta), s.ruta, "", 0});
        break;
      case Llamada::Vacia:
        Vacia(s.ruta);
        break;
      default:
        break;
    }
  }

  /// What may stand at a path after a power failure at this moment.
  std::vector<std::optional<Visto>> Posibles(const std::string& ruta) const {
    std::vector<std::optional<Visto>> posibles;
    EXPECT_LT(pendientes_.size(), 12U) << "too many states";
    for (std::size_t cuales = 0; cuales < std::size_t{1} << pendientes_.size(); ++cuales) {
      Nombres nombres = seguros_;
      for (std::size_t i = 0; i < pendientes_.size(); ++i)
        if ((cuales >> i & 1) != 0) pendientes_[i].En(nombres);
      const auto esta = nombres.find(ruta);
      if (esta == nombres.end() || !ConCarpetas(nombres, ruta)) {
        posibles.push_back(std::nullopt);
        continue;
      }
      const auto& [visto, seguro] = archivos_.at(esta->second);
      posibles.push_back(visto);
      if (visto == seguro) continue;
      const std::size_t medio = (visto.bytes.size() + 1) / 2;
      for (const std::string& bytes :
           {seguro.bytes, visto.bytes.substr(0, medio), std::string(visto.bytes.size(), '\0')}) {
        posibles.push_back(Visto{bytes, visto.modo});
        posibles.push_back(Visto{bytes, seguro.modo});
      }
    }
    return posibles;
  }

 private:
  static std::string Carpeta(const std::string& ruta) { return ruta.substr(0, ruta.rfind('/')); }

  // The folders above it are there; those of the test's own folder and above always are.
  bool ConCarpetas(const Nombres& nombres, std::string ruta) const {
    for (ruta = Carpeta(ruta); vistos_.contains(ruta); ruta = Carpeta(ruta))
      if (!nombres.contains(ruta)) return false;
    return true;
  }

  void Nace(const Suceso& s, unsigned clase) {
    const mode_t mascara = umask(0);
    umask(mascara);
    const Visto nuevo{"", clase | (s.modo & ~mascara)};
    archivos_.push_back({nuevo, nuevo});
    Cambia({Carpeta(s.ruta), "", s.ruta, archivos_.size() - 1});
  }

  void Cambia(const Cambio& cambio) {
    cambio.En(vistos_);
    pendientes_.push_back(cambio);
  }

  void Vacia(const std::string& ruta) {
    const auto archivo = vistos_.find(ruta);
    if (archivo != vistos_.end() && S_ISREG(archivos_.at(archivo->second).visto.modo)) {
      archivos_.at(archivo->second).seguro = archivos_.at(archivo->second).visto;
      return;
    }
    for (const Cambio& cambio : pendientes_)
      if (cambio.carpeta == ruta) cambio.En(seguros_);
    std::erase_if(pendientes_, [&ruta](const Cambio& cambio) { return cambio.carpeta == ruta; });
  }

  std::vector<Archivo> archivos_;
  Nombres vistos_;
  Nombres seguros_;
  std::vector<Cambio> pendientes_;
};

std::optional<Visto> En(const Foto& foto, const std::string& ruta) {
  const auto esta = foto.find(ruta);
  return esta == foto.end() ? std::nullopt : std::optional(esta->second);
}

bool EsCarpeta(const std::optional<Visto>& visto) { return visto.has_value() && S_ISDIR(visto->modo); }

std::string Di(const std::optional<Visto>& visto) {
  return visto.has_value() ? std::to_string(visto->modo) + " \"" + visto->bytes + "\"" : "nothing";
}

TEST(Apagon, LeavesTheOldFileOrTheNewOneAndThenTheNewOne) {
  long estados = 0;
  for (const pruebas::Operacion& operacion : pruebas::Operaciones()) {
    SCOPED_TRACE(operacion.nombre);
    pruebas::CarpetaTemporal c;
    operacion.prepara(c);
    const Foto antes = Retrata(c.Ruta());
    try {
      const EnVigor entero;
      operacion.guarda(c);
    } catch (const Exception&) {
      // Some operations refuse; they too change nothing.
    }
    const std::vector<Suceso> sucesos = pruebas::sistema.sucesos;
    const Foto despues = Retrata(c.Ruta());
    Foto todas = antes;
    todas.insert(despues.begin(), despues.end());

    Disco disco(antes);
    Versiones enteras;
    for (const auto& [ruta, visto] : antes) enteras.emplace(ruta, visto);
    for (std::size_t n = 0; n <= sucesos.size(); ++n) {
      if (n > 0) {
        disco.Sucede(sucesos[n - 1]);
        pruebas::Publica(sucesos[n - 1], enteras);
      }
      for (const auto& [ruta, visto] : todas) {
        for (const std::optional<Visto>& posible : disco.Posibles(ruta)) {
          ++estados;
          const bool falta = !posible.has_value() && !antes.contains(ruta);
          const bool entera = posible.has_value() && enteras.contains({ruta, *posible});
          ASSERT_TRUE(n < sucesos.size() ? falta || entera || EsCarpeta(posible)
                                         : posible == En(despues, ruta))
              << ruta << " after " << n << " of " << sucesos.size() << " calls: " << Di(posible);
        }
      }
    }
  }
  std::cout << estados << " states of files after a power failure\n";
}

}  // namespace
}  // namespace vel
