#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <system_error>
#include <termios.h>
#include <unistd.h>

#include "platform/Rutas.h"
#include "tools/utilvel/Errores.h"
#include "tools/utilvel/Sistema.h"
#include "tools/utilvel/Textos.h"

namespace utilvel {
namespace {

// All that a signal's handler may touch: what came, whether it is to end the program at once, and the file
// that goes with it.
volatile std::sig_atomic_t interrumpido = 0;
volatile std::sig_atomic_t esperaLarga = 0;
const char* volatile porBorrar = nullptr;

int Descriptor(Flujo flujo) {
  switch (flujo) {
    case Flujo::Entrada:
      return STDIN_FILENO;
    case Flujo::Salida:
      return STDOUT_FILENO;
    case Flujo::Errores:
      break;
  }
  return STDERR_FILENO;
}

// What went wrong, in Spanish where users meet it often.
std::string Motivo(int error) {
  switch (error) {
    case ENOENT:
      return "el archivo no existe";
    case ENOTDIR:
      return "la carpeta no existe";
    case EISDIR:
      return "es una carpeta";
    case EACCES:
    case EPERM:
    case EROFS:
      return "no hay permiso";
    case ENOSPC:
    case EDQUOT:
      return "el disco está lleno";
    case EMFILE:
    case ENFILE:
      return "hay demasiados archivos abiertos";
    default:
      return std::strerror(error);
  }
}

std::string Nativa(const std::string& ruta) {
  return vel::IsUTF8(ruta) ? vel::UTF8Encode(vel::RutaNativa(vel::UTF8ToString(ruta))) : ruta;
}

[[noreturn]] void Muere(int senal) {
  std::signal(senal, SIG_DFL);
  std::raise(senal);
  std::_Exit(128 + senal);
}

// Muere after deleting the file that has no name yet. For handlers too.
[[noreturn]] void Acaba(int senal) {
  if (porBorrar != nullptr) unlink(porBorrar);
  Muere(senal);
}

// Keeps what is typed from the screen until it is destroyed.
class SinEco {
 public:
  SinEco() {
    tcgetattr(STDIN_FILENO, &previo_);
    termios callado = previo_;
    callado.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &callado);
  }
  SinEco(const SinEco&) = delete;
  SinEco& operator=(const SinEco&) = delete;
  ~SinEco() { tcsetattr(STDIN_FILENO, TCSAFLUSH, &previo_); }

 private:
  termios previo_{};
};

}  // namespace

bool EsTerminal(Flujo flujo) { return isatty(Descriptor(flujo)) == 1; }

std::size_t AnchoTerminal() {
  winsize ventana{};
  if (ioctl(STDERR_FILENO, TIOCGWINSZ, &ventana) != 0 || ventana.ws_col == 0) return 80;
  return ventana.ws_col;
}

bool ConColor(Flujo flujo) {
  const char* const sinColor = std::getenv("NO_COLOR");
  const char* const clase = std::getenv("TERM");
  return EsTerminal(flujo) && (sinColor == nullptr || *sinColor == '\0') && clase != nullptr &&
         std::strcmp(clase, "dumb") != 0;
}

void AtiendeSenales() {
  struct sigaction accion {};
  accion.sa_handler = [](int senal) {
    const bool otra = interrumpido != 0;
    interrumpido = senal;
    if (otra || esperaLarga != 0) Acaba(senal);
  };
  // Without SA_RESTART: who waits for input must notice. With SA_NODEFER: a second signal comes even while
  // the first is attended to (timeout sends two at once), and Muere's own arrives.
  accion.sa_flags = SA_NODEFER;
  for (const int senal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction previa {};
    // What whoever started the program wants ignored (nohup) stays so.
    if (sigaction(senal, nullptr, &previa) == 0 && previa.sa_handler != SIG_IGN) {
      sigaction(senal, &accion, nullptr);
    }
  }
  std::signal(SIGPIPE, SIG_IGN);
}

bool HuboInterrupcion() noexcept { return interrumpido != 0; }

void RevisaInterrupcion() {
  if (HuboInterrupcion()) throw Interrumpido();
}

EsperaLarga::EsperaLarga() noexcept {
  esperaLarga = 1;
  if (HuboInterrupcion()) Acaba(interrumpido);
}
EsperaLarga::~EsperaLarga() { esperaLarga = 0; }

void TerminaPorInterrupcion() { Muere(interrumpido); }

void TerminaPorTuberia() { Muere(SIGPIPE); }

Lector::Lector(const std::string& ruta) : nombre_(ruta == "-" ? "la entrada estándar" : AUtf8(ruta)) {
  descriptor_ = ruta == "-" ? STDIN_FILENO : open(Nativa(ruta).c_str(), O_RDONLY | O_CLOEXEC);
  struct stat datos {};
  int error = descriptor_ < 0 || fstat(descriptor_, &datos) != 0 ? errno : 0;
  if (error == 0 && S_ISDIR(datos.st_mode)) error = EISDIR;
  if (error != 0) {
    if (descriptor_ > STDIN_FILENO) close(descriptor_);
    throw Falla(Codigo::Archivo, "No se puede leer " + nombre_ + ": " + Motivo(error));
  }
  if (S_ISREG(datos.st_mode)) total_ = static_cast<std::uint64_t>(datos.st_size);
}

Lector::~Lector() {
  if (descriptor_ > STDIN_FILENO) close(descriptor_);
}

std::size_t Lector::Lee(char* destino, std::size_t cuanto) {
  for (;;) {
    RevisaInterrupcion();
    const ssize_t leidos = read(descriptor_, destino, cuanto);
    if (leidos >= 0) return static_cast<std::size_t>(leidos);
    if (errno != EINTR) {
      throw Falla(Codigo::Archivo, "No se puede leer " + nombre_ + ": " + Motivo(errno));
    }
  }
}

Escritor::Escritor(const std::string& ruta) : ruta_(ruta == "-" ? "" : Nativa(ruta)) {
  if (ruta_.empty()) {
    descriptor_ = STDOUT_FILENO;
    terminal_ = EsTerminal(Flujo::Salida);
    return;
  }
  struct stat datos {};
  const bool existe = stat(ruta_.c_str(), &datos) == 0;
  if (existe && S_ISDIR(datos.st_mode)) Lanza(EISDIR);
  if (existe && !S_ISREG(datos.st_mode)) {
    // A device or a pipe has no name to be given to a finished file.
    descriptor_ = open(ruta_.c_str(), O_WRONLY | O_CLOEXEC);
  } else {
    if (existe && access(ruta_.c_str(), W_OK) != 0) Lanza(errno);
    // The file that a link leads to is replaced, not the link.
    const std::unique_ptr<char, decltype(&std::free)> real(
        existe ? realpath(ruta_.c_str(), nullptr) : nullptr, &std::free);
    if (real != nullptr) ruta_ = real.get();
    temporal_ = ruta_ + ".XXXXXX";
    descriptor_ = mkostemp(temporal_.data(), O_CLOEXEC);
    if (descriptor_ >= 0) porBorrar = temporal_.c_str();
  }
  if (descriptor_ < 0) {
    const int error = errno;
    temporal_.clear();
    Lanza(error == ENOENT ? ENOTDIR : error);
  }
  if (!temporal_.empty()) {
    const mode_t mascara = umask(0);
    umask(mascara);
    fchmod(descriptor_, existe ? datos.st_mode & 07777U : 0666U & ~mascara);
  }
}

Escritor::~Escritor() {
  if (descriptor_ == STDOUT_FILENO) {
    try {
      Vacia();
    } catch (...) {
      // Something else is on its way that tells why the program ends.
      pendiente_.clear();
    }
    return;
  }
  if (descriptor_ >= 0) close(descriptor_);
  if (temporal_.empty()) return;
  unlink(temporal_.c_str());
  porBorrar = nullptr;
}

void Escritor::Lanza(int error) const {
  if (error == EPIPE) throw TuberiaCerrada();
  throw Falla(
      Codigo::Archivo,
      "No se puede escribir " + (ruta_.empty() ? "la salida estándar" : AUtf8(ruta_)) + ": " + Motivo(error));
}

void Escritor::Vacia() {
  Manda(pendiente_);
  pendiente_.clear();
}

void Escritor::Manda(std::string_view texto) {
  while (!texto.empty()) {
    const ssize_t escritos = write(descriptor_, texto.data(), texto.size());
    if (escritos >= 0) {
      texto.remove_prefix(static_cast<std::size_t>(escritos));
    } else if (errno != EINTR) {
      const int error = errno;
      // What could not be written is not tried again.
      pendiente_.clear();
      Lanza(error);
    }
  }
}

void Escritor::Termina() {
  Vacia();
  if (temporal_.empty()) return;
  if (fsync(descriptor_) != 0 || rename(temporal_.c_str(), ruta_.c_str()) != 0) Lanza(errno);
  porBorrar = nullptr;
  temporal_.clear();
}

std::string CreaTemporal() {
  std::error_code falla;
  std::string ruta = (std::filesystem::temp_directory_path(falla) / "utilvel.XXXXXX").string();
  const int descriptor = mkostemp(ruta.data(), O_CLOEXEC);
  if (descriptor < 0) {
    throw Falla(Codigo::Archivo, "No se puede crear un archivo temporal: " + Motivo(errno));
  }
  close(descriptor);
  return ruta;
}

std::string LeeContrasena(std::string_view pregunta) {
  const bool terminal = EsTerminal(Flujo::Entrada);
  std::unique_ptr<SinEco> sinEco;
  if (terminal) {
    sinEco = std::make_unique<SinEco>();
    static_cast<void>(std::fwrite(pregunta.data(), 1, pregunta.size(), stderr));
  }
  Lector entrada("-");
  std::string contrasena;
  // Kept from moving, so that no copy stays behind in memory that is given back.
  contrasena.reserve(4096);
  char c = 0;
  std::size_t leidos = entrada.Lee(&c, 1);
  if (leidos == 0) throw Falla(Codigo::Datos, "Falta la contraseña");
  for (; leidos == 1 && c != '\n' && contrasena.size() < 4096; leidos = entrada.Lee(&c, 1)) contrasena += c;
  if (terminal) std::fputc('\n', stderr);
  if (!contrasena.empty() && contrasena.back() == '\r') contrasena.pop_back();
  return contrasena;
}

}  // namespace utilvel
