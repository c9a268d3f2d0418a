// The C library's own calls, with ours before them: a definition in the program is found before the C
// library's, by the library and by the C++ standard library too.
#include "tests/sistema/Llamadas.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

namespace pruebas {

Sistema sistema;

EnVigor::EnVigor(long falla, int error, long espacio) {
  sistema.llamadas = 0;
  sistema.falla = falla;
  sistema.error = error;
  sistema.espacio = espacio;
  sistema.sucesos.clear();
  sistema.sucesos.shrink_to_fit();
  sistema.vigente = true;
}

EnVigor::~EnVigor() { sistema.vigente = false; }

namespace {

// The function of this name that comes after ours.
template <class Funcion>
Funcion Siguiente(const char* nombre, Funcion) {
  return reinterpret_cast<Funcion>(dlsym(RTLD_NEXT, nombre));
}

std::string RutaDe(int fd) {
  char ruta[4096];
  const std::string enlace = "/proc/self/fd/" + std::to_string(fd);
  static const auto real = Siguiente("readlink", readlink);
  const ssize_t n = real(enlace.c_str(), ruta, sizeof ruta);
  return n < 0 ? std::string() : std::string(ruta, static_cast<std::size_t>(n));
}

// True when this call must fail; errno then says how. One that does half of its bytes goes on.
bool Falla(bool& corta) {
  ++sistema.llamadas;
  if (sistema.llamadas != sistema.falla) return false;
  corta = sistema.error == 0;
  errno = sistema.error;
  return !corta;
}

// Keeps the file that has got a name.
void Retrata(Suceso& s) {
  struct stat estado {};
  stat(s.otra.c_str(), &estado);
  s.modo = estado.st_mode;
  std::ifstream entra(s.otra, std::ios::binary);
  s.bytes.assign(std::istreambuf_iterator<char>(entra), {});
}

// Makes the call, or has it fail, and keeps it.
template <class Hace>
auto Llama(Llamada llamada, Hace hace, const char* ruta, int fd = -1, const char* otra = "",
           unsigned modo = 0, bool crea = false) {
  if (!sistema.vigente) return hace();
  sistema.vigente = false;
  Suceso s{llamada, fd >= 0 ? RutaDe(fd) : ruta, otra, {}, modo, crea, false};
  bool corta = false;
  decltype(hace()) r = -1;
  if (!Falla(corta)) r = hace();
  const int error = errno;
  s.hecho = r >= 0;
  if (s.hecho && !s.otra.empty()) Retrata(s);
  sistema.sucesos.push_back(std::move(s));
  sistema.vigente = true;
  errno = error;
  return r;
}

// The same of reading and writing: half of the bytes, or those for which the disk has room.
template <class Hace>
ssize_t LlamaBytes(Llamada llamada, Hace hace, int fd, const void* bytes, std::size_t largo) {
  if (!sistema.vigente) return hace(largo);
  sistema.vigente = false;
  Suceso s{llamada, RutaDe(fd), "", {}, 0, false, false};
  bool corta = false;
  ssize_t r = -1;
  if (!Falla(corta)) {
    if (corta) largo = (largo + 1) / 2;
    const bool escribe = llamada == Llamada::Escribe;
    if (escribe && sistema.espacio >= 0) {
      largo = std::min(largo, static_cast<std::size_t>(sistema.espacio));
      sistema.espacio -= static_cast<long>(largo);
    }
    if (escribe && sistema.espacio == 0 && largo == 0) {
      errno = ENOSPC;
    } else {
      r = hace(largo);
    }
    if (escribe && r > 0) s.bytes.assign(static_cast<const char*>(bytes), static_cast<std::size_t>(r));
  }
  const int error = errno;
  s.hecho = r >= 0;
  sistema.sucesos.push_back(std::move(s));
  sistema.vigente = true;
  errno = error;
  return r;
}

}  // namespace
}  // namespace pruebas

using pruebas::Llama;
using pruebas::LlamaBytes;
using pruebas::Llamada;

#pragma GCC visibility push(default)
extern "C" {

int open(const char* ruta, int banderas, ...) {
  unsigned modo = 0;
  if ((banderas & O_CREAT) != 0) {
    va_list resto;
    va_start(resto, banderas);
    modo = va_arg(resto, unsigned);
    va_end(resto);
  }
  static const auto real = pruebas::Siguiente("open", open);
  return Llama(
      Llamada::Abre, [&] { return real(ruta, banderas, modo); }, ruta, -1, "", modo,
      (banderas & O_CREAT) != 0);
}

ssize_t read(int fd, void* bytes, size_t largo) {
  static const auto real = pruebas::Siguiente("read", read);
  return LlamaBytes(
      Llamada::Lee, [&](size_t n) { return real(fd, bytes, n); }, fd, bytes, largo);
}

ssize_t write(int fd, const void* bytes, size_t largo) {
  static const auto real = pruebas::Siguiente("write", write);
  return LlamaBytes(
      Llamada::Escribe, [&](size_t n) { return real(fd, bytes, n); }, fd, bytes, largo);
}

// That the call was made is what counts: the disk itself is not waited for.
int fsync(int fd) {
  static const auto real = pruebas::Siguiente("fsync", fsync);
  if (!pruebas::sistema.vigente) return pruebas::sistema.disco ? real(fd) : 0;
  return Llama(
      Llamada::Vacia, [] { return 0; }, "", fd);
}

// A descriptor is gone even where its close fails.
int close(int fd) {
  static const auto real = pruebas::Siguiente("close", close);
  if (!pruebas::sistema.vigente) return real(fd);
  const int r = Llama(
      Llamada::Cierra, [] { return 0; }, "", fd);
  const int error = errno;
  real(fd);
  errno = error;
  return r;
}

int rename(const char* de, const char* a) noexcept {
  static const auto real = pruebas::Siguiente("rename", rename);
  return Llama(
      Llamada::Renombra, [&] { return real(de, a); }, de, -1, a);
}

int link(const char* de, const char* a) noexcept {
  static const auto real = pruebas::Siguiente("link", link);
  return Llama(
      Llamada::Enlaza, [&] { return real(de, a); }, de, -1, a);
}

int unlink(const char* ruta) noexcept {
  static const auto real = pruebas::Siguiente("unlink", unlink);
  return Llama(
      Llamada::Borra, [&] { return real(ruta); }, ruta);
}

int fchown(int fd, uid_t dueno, gid_t grupo) noexcept {
  static const auto real = pruebas::Siguiente("fchown", fchown);
  return Llama(
      Llamada::Dueno, [&] { return real(fd, dueno, grupo); }, "", fd);
}

int fchmod(int fd, mode_t modo) noexcept {
  static const auto real = pruebas::Siguiente("fchmod", fchmod);
  return Llama(
      Llamada::Permisos, [&] { return real(fd, modo); }, "", fd, "", modo);
}

// The system has a structure of the same name.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wshadow"
int flock(int fd, int que) noexcept {
  static const auto real = pruebas::Siguiente("flock", flock);
  return Llama(
      Llamada::Candado, [&] { return real(fd, que); }, "", fd);
}
#pragma GCC diagnostic pop

int fcntl(int fd, int que, ...) {
  va_list resto;
  va_start(resto, que);
  void* const dato = va_arg(resto, void*);
  va_end(resto);
  static const auto real = pruebas::Siguiente("fcntl", fcntl);
  return Llama(
      Llamada::Control, [&] { return real(fd, que, dato); }, "", fd);
}

int stat(const char* ruta, struct stat* estado) noexcept {
  static const auto real = pruebas::Siguiente("stat", static_cast<int (*)(const char*, struct stat*)>(stat));
  return Llama(
      Llamada::Estado, [&] { return real(ruta, estado); }, ruta);
}

int lstat(const char* ruta, struct stat* estado) noexcept {
  static const auto real = pruebas::Siguiente("lstat", lstat);
  return Llama(
      Llamada::Estado, [&] { return real(ruta, estado); }, ruta);
}

int fstat(int fd, struct stat* estado) noexcept {
  static const auto real = pruebas::Siguiente("fstat", fstat);
  return Llama(
      Llamada::Estado, [&] { return real(fd, estado); }, "", fd);
}

int faccessat(int carpeta, const char* ruta, int modo, int banderas) noexcept {
  static const auto real = pruebas::Siguiente("faccessat", faccessat);
  return Llama(
      Llamada::Acceso, [&] { return real(carpeta, ruta, modo, banderas); }, ruta);
}

int mkdir(const char* ruta, mode_t modo) noexcept {
  static const auto real = pruebas::Siguiente("mkdir", mkdir);
  return Llama(
      Llamada::Carpeta, [&] { return real(ruta, modo); }, ruta, -1, "", modo);
}

ssize_t readlink(const char* ruta, char* destino, size_t largo) noexcept {
  static const auto real = pruebas::Siguiente("readlink", readlink);
  return Llama(
      Llamada::LeeEnlace, [&] { return real(ruta, destino, largo); }, ruta);
}

int clock_gettime(clockid_t reloj, struct timespec* hora) noexcept {
  static const auto real = pruebas::Siguiente("clock_gettime", clock_gettime);
  const int r = real(reloj, hora);
  if (reloj == CLOCK_REALTIME && pruebas::sistema.reloj != 0) {
    hora->tv_sec = pruebas::sistema.reloj;
    pruebas::sistema.reloj += pruebas::sistema.salto;
  }
  return r;
}

}  // extern "C"
#pragma GCC visibility pop
