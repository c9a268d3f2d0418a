#include "platform/Archivos.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/Rutas.h"

namespace vel {
namespace {

/// A file descriptor that closes itself.
class Descriptor {
 public:
  explicit Descriptor(int fd) noexcept : fd_(fd) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (fd_ >= 0) close(fd_);
  }
  int Fd() const noexcept { return fd_; }

 private:
  int fd_;
};

}  // namespace

std::optional<std::string> LeeArchivo(std::u16string_view ruta) {
  const Descriptor archivo(open(UTF8Encode(RutaNativa(ruta)).c_str(), O_RDONLY | O_CLOEXEC));
  struct stat estado {};
  if (archivo.Fd() < 0 || fstat(archivo.Fd(), &estado) != 0 || S_ISDIR(estado.st_mode)) return std::nullopt;
  std::string bytes;
  // One byte more than the size, so that the end shows in the first read.
  constexpr std::size_t kBloque = 65536;
  std::size_t leidos = 0;
  std::size_t lugar = estado.st_size > 0 ? static_cast<std::size_t>(estado.st_size) + 1 : kBloque;
  for (;;) {
    bytes.resize(leidos + lugar);
    const ssize_t n = read(archivo.Fd(), bytes.data() + leidos, lugar);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) return std::nullopt;
    leidos += static_cast<std::size_t>(n);
    bytes.resize(leidos);
    if (n == 0) return bytes;
    lugar = kBloque;
  }
}

}  // namespace vel
