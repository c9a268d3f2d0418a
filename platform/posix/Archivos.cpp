#include "platform/Archivos.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "platform/Rutas.h"
#include "platform/posix/FallasPosix.h"

namespace vel {
namespace {

std::string Nativa(std::u16string_view ruta) { return UTF8Encode(RutaNativa(ruta)); }

/// A file descriptor that closes itself.
class Descriptor {
 public:
  explicit Descriptor(int fd) noexcept : fd_(fd) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  Descriptor(Descriptor&& otro) noexcept : fd_(std::exchange(otro.fd_, -1)) {}
  Descriptor& operator=(Descriptor&&) = delete;
  ~Descriptor() {
    if (fd_ >= 0) close(fd_);
  }
  int Fd() const noexcept { return fd_; }
  /// Hands the descriptor over to the caller.
  int Suelta() noexcept { return std::exchange(fd_, -1); }
  /// Closes now, to learn of errors that the system kept back until the end.
  bool Cierra() noexcept { return close(std::exchange(fd_, -1)) == 0; }

 private:
  int fd_;
};

std::string CarpetaDe(const std::string& ruta) {
  const std::size_t diagonal = ruta.rfind('/');
  if (diagonal == std::string::npos) return ".";
  return diagonal == 0 ? "/" : ruta.substr(0, diagonal);
}

// What a path fails with when its folder is missing is told apart from a missing file.
FallaArchivo FallaDeRuta(int error, const std::string& ruta) {
  FallaArchivo falla = posix::FallaDe(error);
  struct stat estado {};
  if (falla.clase == ClaseFalla::NoExiste && stat(CarpetaDe(ruta).c_str(), &estado) != 0) {
    falla.clase = ClaseFalla::RutaNoExiste;
  }
  return falla;
}

// The file that a path leads to, links followed; the path itself when there is none.
std::string Resuelve(const std::string& ruta) {
  const std::unique_ptr<char, decltype(&std::free)> real(realpath(ruta.c_str(), nullptr), &std::free);
  return real == nullptr ? ruta : std::string(real.get());
}

bool EscribeTodo(int fd, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t n = write(fd, bytes.data(), bytes.size());
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(n));
  }
  return true;
}

// A name beside the file that no other thread or process uses.
std::string NombreTemporal(const std::string& ruta) {
  static std::atomic<unsigned> cuenta{0};
  const std::size_t nombre = ruta.rfind('/') + 1;
  return ruta.substr(0, nombre) + "." + ruta.substr(nombre) + "." + std::to_string(getpid()) + "." +
         std::to_string(cuenta++) + ".tmp";
}

// Writes a new file with the permissions of the one that it will replace; errno says why it failed.
bool EscribeNuevo(const std::string& temporal, const std::string& ruta, std::string_view bytes) {
  constexpr mode_t kModoNuevo = 0666;
  Descriptor archivo(open(temporal.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, kModoNuevo));
  if (archivo.Fd() < 0) return false;
  struct stat estado {};
  if (stat(ruta.c_str(), &estado) == 0) {
    if (fchmod(archivo.Fd(), estado.st_mode & 07777) != 0) return false;
    // Only an administrator may give files away; for everyone else the owner is right already.
    if (geteuid() == 0 && fchown(archivo.Fd(), estado.st_uid, estado.st_gid) != 0) return false;
  }
  return EscribeTodo(archivo.Fd(), bytes) && fsync(archivo.Fd()) == 0 && archivo.Cierra();
}

bool Existe(std::u16string_view ruta, bool carpeta) {
  struct stat estado {};
  return stat(Nativa(ruta).c_str(), &estado) == 0 && S_ISDIR(estado.st_mode) == carpeta;
}

}  // namespace

FallaArchivo LeeArchivo(std::u16string_view ruta, std::string& bytes) {
  const std::string nativa = Nativa(ruta);
  const Descriptor archivo(open(nativa.c_str(), O_RDONLY | O_CLOEXEC));
  struct stat estado {};
  if (archivo.Fd() < 0 || fstat(archivo.Fd(), &estado) != 0) return FallaDeRuta(errno, nativa);
  if (S_ISDIR(estado.st_mode)) return posix::FallaDe(EISDIR);
  std::string leidos;
  // One byte more than the size, so that the end shows in the second read.
  constexpr std::size_t kBloque = 65536;
  std::size_t cuenta = 0;
  std::size_t lugar = estado.st_size > 0 ? static_cast<std::size_t>(estado.st_size) + 1 : kBloque;
  for (;;) {
    leidos.resize(cuenta + lugar);
    const ssize_t n = read(archivo.Fd(), leidos.data() + cuenta, lugar);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return posix::FallaDe(errno);
    cuenta += static_cast<std::size_t>(n);
    leidos.resize(cuenta);
    if (n == 0) break;
    lugar = kBloque;
  }
  bytes = std::move(leidos);
  return {};
}

std::optional<std::string> LeeArchivo(std::u16string_view ruta) {
  std::string bytes;
  if (LeeArchivo(ruta, bytes).Hubo()) return std::nullopt;
  return bytes;
}

bool ExisteArchivo(std::u16string_view ruta) { return Existe(ruta, false); }

bool ExisteCarpeta(std::u16string_view ruta) { return Existe(ruta, true); }

FallaArchivo CreaCarpeta(std::u16string_view ruta) {
  std::string nativa = Nativa(ruta);
  while (nativa.size() > 1 && nativa.back() == '/') nativa.pop_back();
  if (nativa.empty()) return posix::FallaDe(ENOENT);
  constexpr mode_t kModo = 0777;
  for (std::size_t fin = nativa.find('/', 1);; fin = nativa.find('/', fin + 1)) {
    const std::string parte = nativa.substr(0, fin);
    if (mkdir(parte.c_str(), kModo) != 0 && errno != EEXIST) return posix::FallaDe(errno);
    if (fin == std::string::npos) break;
  }
  struct stat estado {};
  if (stat(nativa.c_str(), &estado) != 0) return posix::FallaDe(errno);
  return S_ISDIR(estado.st_mode) ? FallaArchivo{} : posix::FallaDe(ENOTDIR);
}

FallaArchivo ReemplazaArchivo(std::u16string_view ruta, std::string_view bytes) {
  const std::string destino = Resuelve(Nativa(ruta));
  const std::string temporal = NombreTemporal(destino);
  if (EscribeNuevo(temporal, destino, bytes) && rename(temporal.c_str(), destino.c_str()) == 0) return {};
  const FallaArchivo falla = FallaDeRuta(errno, destino);
  unlink(temporal.c_str());
  return falla;
}

FallaArchivo CopiaArchivo(std::u16string_view origen, std::u16string_view destino, bool sobrescribe) {
  if (!sobrescribe && ExisteArchivo(destino)) return {};
  std::string bytes;
  FallaArchivo falla = LeeArchivo(origen, bytes);
  return falla.Hubo() ? falla : ReemplazaArchivo(destino, bytes);
}

FallaArchivo AgregaAlFinal(std::u16string_view ruta, std::string_view bytes) {
  constexpr mode_t kModoNuevo = 0666;
  const std::string nativa = Nativa(ruta);
  Descriptor archivo(open(nativa.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, kModoNuevo));
  if (archivo.Fd() < 0) return FallaDeRuta(errno, nativa);
  return EscribeTodo(archivo.Fd(), bytes) && archivo.Cierra() ? FallaArchivo{} : posix::FallaDe(errno);
}

FallaArchivo BorraArchivo(std::u16string_view ruta) {
  if (unlink(Nativa(ruta).c_str()) == 0 || errno == ENOENT) return {};
  return posix::FallaDe(errno);
}

FallaArchivo AbreArchivo(std::u16string_view ruta, unsigned int modo, int& manejador) {
  constexpr unsigned int kCrea = 0xFF00;
  constexpr unsigned int kAcceso = 0x3;
  constexpr unsigned int kComparticion = 0x70;
  constexpr unsigned int kExclusivo = 0x10;
  constexpr unsigned int kNiegaEscritura = 0x20;
  constexpr int kBanderas[] = {O_RDONLY, O_WRONLY, O_RDWR, O_RDWR};
  constexpr mode_t kModoNuevo = 0666;
  manejador = -1;
  const std::string nativa = Nativa(ruta);
  const int banderas = (modo & kCrea) == kCrea ? O_RDWR | O_CREAT | O_TRUNC : kBanderas[modo & kAcceso];
  Descriptor archivo(open(nativa.c_str(), banderas | O_CLOEXEC, kModoNuevo));
  struct stat estado {};
  if (archivo.Fd() < 0 || fstat(archivo.Fd(), &estado) != 0) return FallaDeRuta(errno, nativa);
  if (S_ISDIR(estado.st_mode)) return posix::FallaDe(EISDIR);
  const unsigned int comparticion = modo & kComparticion;
  const int candado = comparticion == kExclusivo ? LOCK_EX : comparticion == kNiegaEscritura ? LOCK_SH : 0;
  if (candado != 0 && flock(archivo.Fd(), candado | LOCK_NB) != 0) return posix::FallaDe(errno);
  manejador = archivo.Suelta();
  return {};
}

void CierraArchivo(int manejador) noexcept { close(manejador); }

// The lock is the folder's own: it needs no file of its own, works where nothing may be written, and ends
// with the process.
struct CandadoArchivo::Candado {
  Descriptor carpeta;
};

CandadoArchivo::CandadoArchivo(std::u16string_view ruta) {
  const std::string carpeta = CarpetaDe(Resuelve(Nativa(ruta)));
  Descriptor descriptor(open(carpeta.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  int r = descriptor.Fd() < 0 ? -1 : flock(descriptor.Fd(), LOCK_EX);
  while (r != 0 && errno == EINTR) r = flock(descriptor.Fd(), LOCK_EX);
  if (r != 0) {
    falla_ = posix::FallaDe(errno);
    return;
  }
  candado_ = std::make_unique<Candado>(Candado{std::move(descriptor)});
}

CandadoArchivo::~CandadoArchivo() = default;

}  // namespace vel
