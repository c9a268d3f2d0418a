#include "platform/Archivos.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <iterator>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>

#include "platform/Rutas.h"
#include "platform/posix/FallasPosix.h"

namespace vel {
namespace {

// What the user's mask leaves of it.
constexpr mode_t kModoNuevo = 0666;

// Empty, which names no file, for a path with a NUL, which the system would cut there.
std::string Nativa(std::u16string_view ruta) {
  std::string nativa = UTF8Encode(RutaNativa(ruta));
  if (nativa.find('\0') != std::string::npos) nativa.clear();
  return nativa;
}

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

// The file that a path leads to, links followed; a link to nothing leads to where the file would be.
std::string Resuelve(const std::string& ruta) {
  constexpr int kMaxEnlaces = 40;
  std::filesystem::path actual = ruta;
  for (int i = 0; i < kMaxEnlaces; ++i) {
    std::error_code error;
    const std::filesystem::path destino = std::filesystem::read_symlink(actual, error);
    if (error) break;
    actual = actual.parent_path() / destino;
  }
  return actual.string();
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

// Once it returns true, what was written survives a power failure.
bool Vacia(int fd) noexcept {
  while (fsync(fd) != 0) {
    if (errno != EINTR) return false;
  }
  return true;
}

Descriptor AbreCarpeta(const std::string& carpeta) {
  return Descriptor(open(carpeta.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

// The folder of a path, open for VaciaCarpeta. It is opened before anything changes, so that a fault leaves
// all as it was. `falla` stays without one, and so does the answer, where the user may enter the folder but
// not read it.
Descriptor AbreParaVaciar(const std::string& ruta, FallaArchivo& falla) {
  Descriptor carpeta = AbreCarpeta(CarpetaDe(ruta));
  if (carpeta.Fd() < 0 && errno != EACCES) falla = FallaDeRuta(errno, ruta);
  return carpeta;
}

// Makes the names in a folder survive a power failure. A file system that cannot do it for folders, as some
// of other machines, keeps their order in its own way; only what the disk says is a fault.
bool VaciaCarpeta(const Descriptor& carpeta) noexcept {
  return carpeta.Fd() < 0 || Vacia(carpeta.Fd()) || (errno != EIO && errno != ENOSPC && errno != EDQUOT);
}

// Claims a file that is open for writing; the claim ends with the descriptor, and so with its process, also
// one on another machine that shares the folder. These are other locks than AbreArchivo's, which must not
// find a file in use because it was saved at that moment.
bool Reclama(int fd) noexcept {
  struct flock candado {};
  candado.l_type = F_WRLCK;
  candado.l_whence = SEEK_SET;
  return fcntl(fd, F_OFD_SETLK, &candado) == 0;
}

// Deletes a temporary file whose writer is gone: one that nobody claims.
void BorraAbandonado(const std::string& temporal) {
  const Descriptor archivo(open(temporal.c_str(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (archivo.Fd() < 0 || !Reclama(archivo.Fd())) return;
  // Before the claim its writer may have finished, and another one taken the name.
  struct stat abierto {};
  struct stat nombrado {};
  if (fstat(archivo.Fd(), &abierto) == 0 && lstat(temporal.c_str(), &nombrado) == 0 &&
      S_ISREG(nombrado.st_mode) && abierto.st_dev == nombrado.st_dev && abierto.st_ino == nombrado.st_ino) {
    unlink(temporal.c_str());
  }
}

// A new file beside `destino`, claimed, and its name: the first that is free, so that what killed writers
// left is found under the first names without reading the folder. A name that a living writer or whoever
// guessed it has taken is passed over.
Descriptor CreaTemporal(const std::string& destino, mode_t modo, std::string& temporal) {
  // More than write in one folder at the same time.
  constexpr unsigned kNombresRevisados = 8;
  const std::string inicio = destino.substr(0, destino.rfind('/') + 1) + ".utilvel90.";
  const auto nombre = [&inicio](unsigned i) { return inicio + std::to_string(i) + ".tmp"; };
  for (unsigned i = 0; i < kNombresRevisados; ++i) BorraAbandonado(nombre(i));
  for (unsigned i = 0;; ++i) {
    temporal = nombre(i);
    Descriptor archivo(open(temporal.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, modo));
    if (archivo.Fd() < 0 && errno == EEXIST) continue;
    if (archivo.Fd() < 0) return archivo;
    // Another writer may have found it before it was claimed, and deletes it. Where the file system has no
    // such locks nobody deletes anything.
    const bool perdido = !Reclama(archivo.Fd()) && (errno == EAGAIN || errno == EACCES);
    struct stat estado {};
    if (!perdido && (fstat(archivo.Fd(), &estado) != 0 || estado.st_nlink != 0)) return archivo;
  }
}

// Gives the file the owner, group and permissions of another.
bool HeredaPermisos(int fd, const struct stat& modelo) {
  constexpr mode_t kDelGrupo = 070;
  constexpr mode_t kTodos = 0777;
  constexpr auto kMismoDueno = static_cast<uid_t>(-1);
  // Only an administrator may give files away. Where even the group cannot stay, the new one gets no right
  // that all others do not have too.
  const bool mismoGrupo =
      fchown(fd, modelo.st_uid, modelo.st_gid) == 0 || fchown(fd, kMismoDueno, modelo.st_gid) == 0;
  const mode_t deOtros = modelo.st_mode << 3 & kDelGrupo;
  return fchmod(fd, modelo.st_mode & kTodos & (mismoGrupo ? kTodos : ~kDelGrupo | deOtros)) == 0;
}

// Gives a finished file its name. Without `sobrescribe` the first of several that do so wins, and the others
// leave it at that.
bool Publica(const std::string& temporal, const std::string& destino, bool sobrescribe) {
  if (!sobrescribe && (link(temporal.c_str(), destino.c_str()) == 0 || errno == EEXIST)) {
    unlink(temporal.c_str());
    return true;
  }
  // Also for a file system without links: that nothing was there has been seen before.
  return rename(temporal.c_str(), destino.c_str()) == 0;
}

// Puts a whole file at a path in one step. It takes owner, group and permissions of `modelo`; without one, of
// the file that it replaces.
FallaArchivo Coloca(std::u16string_view ruta, std::string_view bytes, const struct stat* modelo,
                    bool sobrescribe) {
  const std::string destino = Resuelve(Nativa(ruta));
  struct stat anterior {};
  const bool existe = lstat(destino.c_str(), &anterior) == 0;
  if (!existe && errno != ENOENT) return FallaDeRuta(errno, destino);
  if (existe && !sobrescribe) return {};
  // A device or a pipe must not give way to a file, nor a link that could not be followed; nor may a file
  // that is protected against writing.
  if (existe && !S_ISREG(anterior.st_mode)) {
    return posix::FallaDe(S_ISDIR(anterior.st_mode) ? EISDIR : EACCES);
  }
  if (existe && faccessat(AT_FDCWD, destino.c_str(), W_OK, AT_EACCESS) != 0) return posix::FallaDe(errno);
  if (existe && modelo == nullptr) modelo = &anterior;

  FallaArchivo falla;
  const Descriptor carpeta = AbreParaVaciar(destino, falla);
  if (falla.Hubo()) return falla;
  std::string temporal;
  // Nobody may open it before it has its group.
  const Descriptor archivo =
      CreaTemporal(destino, modelo == nullptr ? kModoNuevo : S_IRUSR | S_IWUSR, temporal);
  if (archivo.Fd() < 0) return FallaDeRuta(errno, destino);
  // It keeps its claim until it has its name.
  if ((modelo == nullptr || HeredaPermisos(archivo.Fd(), *modelo)) && EscribeTodo(archivo.Fd(), bytes) &&
      Vacia(archivo.Fd()) && Publica(temporal, destino, sobrescribe)) {
    return VaciaCarpeta(carpeta) ? FallaArchivo{} : posix::FallaDe(errno);
  }
  // First of all the file goes: telling the fault takes memory, which may be short.
  const int error = errno;
  unlink(temporal.c_str());
  return FallaDeRuta(error, destino);
}

// Reads a whole file, and what the system knows of it.
FallaArchivo Lee(const std::string& nativa, std::string& bytes, struct stat& estado) {
  // A pipe must not make the caller wait for someone who opens its other end.
  const Descriptor archivo(open(nativa.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (archivo.Fd() < 0 || fstat(archivo.Fd(), &estado) != 0) return FallaDeRuta(errno, nativa);
  if (!S_ISREG(estado.st_mode)) return posix::FallaDe(S_ISDIR(estado.st_mode) ? EISDIR : EACCES);
  // One byte more than the size, so that the end shows in the second read and a key file's bytes stay in one
  // place. The system's own files have no size.
  constexpr std::size_t kBloque = 65536;
  std::string leidos(estado.st_size > 0 ? static_cast<std::size_t>(estado.st_size) + 1 : kBloque, '\0');
  std::size_t cuenta = 0;
  for (;;) {
    if (cuenta == leidos.size()) leidos.resize(cuenta + kBloque);
    const ssize_t n = read(archivo.Fd(), leidos.data() + cuenta, leidos.size() - cuenta);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return posix::FallaDe(errno);
    if (n == 0) break;
    cuenta += static_cast<std::size_t>(n);
  }
  leidos.resize(cuenta);
  bytes = std::move(leidos);
  return {};
}

// Ends a line that was cut with a line break in the place of its own last bytes: there is no room for more,
// and what others may have added behind it stays.
void TerminaLinea(int fd, std::size_t escritos) noexcept {
  constexpr std::string_view kFin = "\r\n";
  const std::string_view fin = kFin.substr(kFin.size() - std::min(escritos, kFin.size()));
  const off_t lugar = lseek(fd, 0, SEEK_CUR) - static_cast<off_t>(fin.size());
  // Whoever appends writes at the end, whatever place he names. If this fails the line stays as it is, and
  // the caller learns of the full disk in any case.
  if (fcntl(fd, F_SETFL, 0) == 0) static_cast<void>(pwrite(fd, fin.data(), fin.size(), lugar) < 0);
}

bool Existe(std::u16string_view ruta, bool carpeta) {
  struct stat estado {};
  return stat(Nativa(ruta).c_str(), &estado) == 0 && S_ISDIR(estado.st_mode) == carpeta;
}

}  // namespace

FallaArchivo LeeArchivo(std::u16string_view ruta, std::string& bytes) {
  struct stat estado {};
  return Lee(Nativa(ruta), bytes, estado);
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
  struct stat estado {};
  if (stat(nativa.c_str(), &estado) == 0 && S_ISDIR(estado.st_mode)) return {};
  for (std::size_t fin = nativa.find('/', 1);; fin = nativa.find('/', fin + 1)) {
    const std::string parte = nativa.substr(0, fin);
    FallaArchivo falla;
    const Descriptor padre = AbreParaVaciar(parte, falla);
    if (falla.Hubo()) return falla;
    const bool hecha = mkdir(parte.c_str(), kModo) == 0;
    if (hecha ? !VaciaCarpeta(padre) : errno != EEXIST) return posix::FallaDe(errno);
    if (fin == std::string::npos) break;
  }
  if (stat(nativa.c_str(), &estado) != 0) return posix::FallaDe(errno);
  return S_ISDIR(estado.st_mode) ? FallaArchivo{} : posix::FallaDe(ENOTDIR);
}

FallaArchivo ReemplazaArchivo(std::u16string_view ruta, std::string_view bytes) {
  return Coloca(ruta, bytes, nullptr, true);
}

FallaArchivo ReemplazaArchivo(std::u16string_view ruta, std::string_view bytes, std::u16string_view modelo) {
  const std::string nativa = Nativa(modelo);
  struct stat estado {};
  if (stat(nativa.c_str(), &estado) != 0) return FallaDeRuta(errno, nativa);
  return Coloca(ruta, bytes, &estado, true);
}

FallaArchivo CopiaArchivo(std::u16string_view origen, std::u16string_view destino, bool sobrescribe) {
  std::string bytes;
  struct stat estado {};
  FallaArchivo falla = Lee(Nativa(origen), bytes, estado);
  return falla.Hubo() ? falla : Coloca(destino, bytes, &estado, sobrescribe);
}

FallaArchivo AgregaAlFinal(std::u16string_view ruta, std::string_view bytes) {
  const std::string nativa = Nativa(ruta);
  Descriptor archivo(
      open(nativa.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK, kModoNuevo));
  if (archivo.Fd() < 0) return FallaDeRuta(errno, nativa);
  ssize_t n = 0;
  do {
    n = write(archivo.Fd(), bytes.data(), bytes.size());
  } while (n < 0 && errno == EINTR);
  if (n < 0) return posix::FallaDe(errno);
  if (const auto escritos = static_cast<std::size_t>(n); escritos < bytes.size()) {
    // The rest must not follow what others add meanwhile.
    if (escritos > 0) TerminaLinea(archivo.Fd(), escritos);
    return posix::FallaDe(ENOSPC);
  }
  return archivo.Cierra() ? FallaArchivo{} : posix::FallaDe(errno);
}

FallaArchivo BorraArchivo(std::u16string_view ruta) {
  if (unlink(Nativa(ruta).c_str()) == 0 || errno == ENOENT) return {};
  return posix::FallaDe(errno);
}

FallaArchivo AbreArchivo(std::u16string_view ruta, unsigned int modo, int& manejador) {
  constexpr unsigned int kAcceso = 0x3;
  constexpr unsigned int kComparticion = 0x70;
  constexpr unsigned int kExclusivo = 0x10;
  constexpr int kBanderas[] = {O_RDONLY, O_WRONLY, O_RDWR};
  manejador = -1;
  if ((modo & kAcceso) >= std::size(kBanderas)) return posix::FallaDe(EINVAL);
  const std::string nativa = Nativa(ruta);
  Descriptor archivo(open(nativa.c_str(), kBanderas[modo & kAcceso] | O_CLOEXEC | O_NONBLOCK));
  struct stat estado {};
  if (archivo.Fd() < 0 || fstat(archivo.Fd(), &estado) != 0) return FallaDeRuta(errno, nativa);
  if (!S_ISREG(estado.st_mode)) return posix::FallaDe(S_ISDIR(estado.st_mode) ? EISDIR : EACCES);
  const int candado = (modo & kComparticion) == kExclusivo ? LOCK_EX : LOCK_SH;
  if (flock(archivo.Fd(), candado | LOCK_NB) != 0) {
    if (errno != EWOULDBLOCK) return posix::FallaDe(errno);
    return {ClaseFalla::EnUso, u"El archivo \"" + UnicodeString(ruta) + u"\" está en uso por otro programa"};
  }
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
  Descriptor descriptor = AbreCarpeta(carpeta);
  int r = descriptor.Fd() < 0 ? -1 : flock(descriptor.Fd(), LOCK_EX | LOCK_NB);
  // A stopped program that holds the lock must not stop the others for ever.
  constexpr std::chrono::seconds kEspera{10};
  constexpr std::chrono::microseconds kPausa{300};
  const auto limite = std::chrono::steady_clock::now() + kEspera;
  while (r != 0 && (errno == EINTR || (errno == EWOULDBLOCK && std::chrono::steady_clock::now() < limite))) {
    std::this_thread::sleep_for(kPausa);
    r = flock(descriptor.Fd(), LOCK_EX | LOCK_NB);
  }
  if (r != 0) {
    falla_ = FallaDeRuta(errno, carpeta + "/");
    return;
  }
  candado_ = std::make_unique<Candado>(Candado{std::move(descriptor)});
}

CandadoArchivo::~CandadoArchivo() = default;

}  // namespace vel
