#include "platform/Archivos.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <thread>
#include <vector>

#include "platform/Rutas.h"
#include "platform/windows/FallasWindows.h"
#include "platform/windows/Permisos.h"
#include "platform/windows/Sistema.h"

// Paths within this file are whole and native; error numbers are the system's, ERROR_SUCCESS for none.
namespace vel {
namespace {

using std::chrono::milliseconds;
using windows::Ancha;
using windows::FallaDe;
using windows::Manejador;

constexpr DWORD kCompartidoConTodos = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
// With it the system opens folders too, which are then told apart by what they are.
constexpr DWORD kTambienCarpetas = FILE_FLAG_BACKUP_SEMANTICS;

// How long a program that has the file may take until it counts as in use: a save that replaces it, a scanner
// that looks at it. A file that is not free to be replaced waits as long as a lock does.
constexpr milliseconds kEsperaApertura{1000};
constexpr milliseconds kEsperaManejador{200};
constexpr milliseconds kEsperaCandado{10000};
// The system also denies the access to a file that is about to disappear, which takes a moment; who has no
// right to it must not wait longer.
constexpr milliseconds kEsperaNegado{100};

DWORD UltimoError(bool bien) noexcept { return bien ? ERROR_SUCCESS : GetLastError(); }

// Does what the short use of a file by another program makes fail, until it succeeds, `espera` is over, or it
// was denied for `esperaNegado` on end.
template <class Intento>
DWORD Insiste(milliseconds espera, milliseconds esperaNegado, Intento intento) {
  const auto inicio = std::chrono::steady_clock::now();
  auto negadoDesde = inicio;
  for (;;) {
    const DWORD error = intento();
    const auto ahora = std::chrono::steady_clock::now();
    if (error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION || error == ERROR_DELETE_PENDING) {
      negadoDesde = ahora;
    } else if (error != ERROR_ACCESS_DENIED) {
      return error;
    }
    if (ahora - inicio >= espera || ahora - negadoDesde >= esperaNegado) return error;
    std::this_thread::sleep_for(milliseconds(1));
  }
}

// The whole path, by which the system also knows longer ones than MAX_PATH. Empty, which names no file, for a
// path with a NUL, which the system would cut there.
std::wstring Nativa(std::u16string_view ruta) {
  const UnicodeString nativa = RutaNativa(ruta);
  if (nativa.empty() || nativa.find(u'\0') != UnicodeString::npos) return {};
  const std::wstring dada = Ancha(nativa);
  std::wstring completa(GetFullPathNameW(dada.c_str(), 0, nullptr, nullptr), L'\0');
  completa.resize(
      GetFullPathNameW(dada.c_str(), static_cast<DWORD>(completa.size()), completa.data(), nullptr));
  // Room for the names that stand beside the file, and for what the system wants free in a folder's path.
  constexpr std::size_t kLargoSimple = 230;
  if (completa.size() < kLargoSimple || completa.starts_with(L"\\\\?\\") ||
      completa.starts_with(L"\\\\.\\")) {
    return completa;
  }
  if (completa.starts_with(L"\\\\")) return L"\\\\?\\UNC\\" + completa.substr(2);
  return L"\\\\?\\" + completa;
}

// With the separator at its end.
std::wstring CarpetaDe(const std::wstring& ruta) { return ruta.substr(0, ruta.rfind(L'\\') + 1); }

/// An open file or folder, and what the system knows of it.
struct Abierto {
  Manejador archivo;
  BY_HANDLE_FILE_INFORMATION datos{};
  bool EsCarpeta() const noexcept { return (datos.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0; }
};

// Opens what a path leads to, links followed; a device or a pipe is denied.
DWORD Abre(const std::wstring& ruta, DWORD acceso, DWORD comparticion, DWORD disposicion, milliseconds espera,
           Abierto& abierto) {
  if (ruta.empty()) return ERROR_FILE_NOT_FOUND;
  const DWORD error = Insiste(espera, std::min(espera, kEsperaNegado), [&] {
    abierto.archivo = Manejador(CreateFileW(ruta.c_str(), acceso, comparticion, nullptr, disposicion,
                                            FILE_ATTRIBUTE_NORMAL | kTambienCarpetas, nullptr));
    return UltimoError(abierto.archivo.Valido());
  });
  if (error != ERROR_SUCCESS) return error;
  if (GetFileType(abierto.archivo.Handle()) != FILE_TYPE_DISK) return ERROR_ACCESS_DENIED;
  return UltimoError(GetFileInformationByHandle(abierto.archivo.Handle(), &abierto.datos) != 0);
}

// The same for a file alone.
DWORD AbreSoloArchivo(const std::wstring& ruta, DWORD acceso, DWORD comparticion, DWORD disposicion,
                      milliseconds espera, Abierto& abierto) {
  const DWORD error = Abre(ruta, acceso, comparticion, disposicion, espera, abierto);
  return error == ERROR_SUCCESS && abierto.EsCarpeta() ? ERROR_ACCESS_DENIED : error;
}

// What a path leads to, without a right to its contents.
DWORD Consulta(const std::wstring& ruta, Abierto& abierto) {
  return Abre(ruta, FILE_READ_ATTRIBUTES | READ_CONTROL, kCompartidoConTodos, OPEN_EXISTING, kEsperaApertura,
              abierto);
}

// The file that a path leads to, links followed; empty, which names no file, for a link to nothing.
std::wstring Resuelve(std::wstring ruta) {
  const DWORD atributos = GetFileAttributesW(ruta.c_str());
  if (atributos == INVALID_FILE_ATTRIBUTES || (atributos & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return ruta;
  Abierto abierto;
  if (Consulta(ruta, abierto) != ERROR_SUCCESS) return {};
  std::wstring destino(GetFinalPathNameByHandleW(abierto.archivo.Handle(), nullptr, 0, FILE_NAME_NORMALIZED),
                       L'\0');
  destino.resize(GetFinalPathNameByHandleW(abierto.archivo.Handle(), destino.data(),
                                           static_cast<DWORD>(destino.size()), FILE_NAME_NORMALIZED));
  return destino;
}

// Makes the names in a folder survive a power failure. By the folder's own handle: nobody who opens a file of
// it meanwhile finds that in use. What a file system cannot do for folders is no fault. It takes no memory:
// what it is called for has happened already.
DWORD VaciaCarpeta(const std::wstring& carpeta) noexcept {
  const Manejador abierta(CreateFileW(carpeta.c_str(), FILE_ADD_FILE, kCompartidoConTodos, nullptr,
                                      OPEN_EXISTING, kTambienCarpetas, nullptr));
  if (!abierta.Valido() || FlushFileBuffers(abierta.Handle()) != 0) return ERROR_SUCCESS;
  const DWORD error = GetLastError();
  return error == ERROR_IO_DEVICE || error == ERROR_DISK_FULL ? error : ERROR_SUCCESS;
}

DWORD EscribeTodo(HANDLE archivo, std::string_view bytes) noexcept {
  constexpr std::size_t kBloque = std::size_t{1} << 30U;
  while (!bytes.empty()) {
    DWORD escritos = 0;
    const auto cuantos = static_cast<DWORD>(std::min(bytes.size(), kBloque));
    if (WriteFile(archivo, bytes.data(), cuantos, &escritos, nullptr) == 0) return GetLastError();
    if (escritos == 0) return ERROR_DISK_FULL;
    bytes.remove_prefix(escritos);
  }
  return ERROR_SUCCESS;
}

/// A new file beside another, for which nobody else may write as long as it is open; goes with this object
/// unless it was given a name.
class Temporal {
 public:
  // With `soloPropio` nobody may read it either: it has not got its rights yet.
  DWORD Crea(const std::wstring& destino, DWORD atributos, bool soloPropio);
  Temporal() = default;
  Temporal(const Temporal&) = delete;
  Temporal& operator=(const Temporal&) = delete;
  ~Temporal() {
    if (!archivo_.Valido()) return;
    FILE_DISPOSITION_INFO borrar{};
    borrar.DeleteFile = TRUE;
    SetFileInformationByHandle(archivo_.Handle(), FileDispositionInfo, &borrar, sizeof borrar);
  }
  HANDLE Handle() const noexcept { return archivo_.Handle(); }
  // Gives the finished file its name, in one step.
  DWORD Publica(const std::wstring& destino, bool sobrescribe);

 private:
  Manejador archivo_;
};

// Deletes the temporary files whose writers are gone: those that nobody has open.
void BorraAbandonados(const std::wstring& carpeta) {
  WIN32_FIND_DATAW datos{};
  const HANDLE busqueda = FindFirstFileW((carpeta + L".utilvel90.*.tmp").c_str(), &datos);
  if (busqueda == INVALID_HANDLE_VALUE) return;
  do {
    const Manejador abandonado(
        CreateFileW((carpeta + datos.cFileName).c_str(), DELETE, 0, nullptr, OPEN_EXISTING,
                    FILE_FLAG_DELETE_ON_CLOSE | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
  } while (FindNextFileW(busqueda, &datos) != 0);
  FindClose(busqueda);
}

DWORD Temporal::Crea(const std::wstring& destino, DWORD atributos, bool soloPropio) {
  // More than write in one folder at the same time.
  constexpr unsigned kNombres = 64;
  const std::wstring carpeta = CarpetaDe(destino);
  BorraAbandonados(carpeta);
  const DWORD acceso = GENERIC_WRITE | DELETE | (soloPropio ? WRITE_DAC : 0);
  DWORD error = ERROR_SUCCESS;
  for (unsigned i = 0; i < kNombres; ++i) {
    const std::wstring nombre = carpeta + L".utilvel90." + std::to_wstring(i) + L".tmp";
    archivo_ = Manejador(CreateFileW(nombre.c_str(), acceso, soloPropio ? 0 : FILE_SHARE_READ, nullptr,
                                     CREATE_NEW, atributos | FILE_FLAG_WRITE_THROUGH, nullptr));
    error = UltimoError(archivo_.Valido());
    // Another writer's name; also one that is about to disappear, which the system calls denied.
    if (error != ERROR_FILE_EXISTS && error != ERROR_ALREADY_EXISTS && error != ERROR_ACCESS_DENIED) break;
  }
  return error;
}

DWORD Temporal::Publica(const std::wstring& destino, bool sobrescribe) {
  const std::size_t largo = destino.size() * sizeof(wchar_t);
  std::vector<std::byte> memoria(sizeof(FILE_RENAME_INFO) + largo);
  FILE_RENAME_INFO nombre{};
  nombre.ReplaceIfExists = sobrescribe ? TRUE : FALSE;
  nombre.FileNameLength = static_cast<DWORD>(largo);
  std::memcpy(memoria.data(), &nombre, sizeof nombre);
  std::memcpy(memoria.data() + offsetof(FILE_RENAME_INFO, FileName), destino.data(), largo);
  // The system denies it while anybody reads the old file. That this user may replace it has been seen
  // before, so a refusal that lasts is another program's too.
  DWORD error = Insiste(kEsperaCandado, kEsperaCandado, [&] {
    return UltimoError(SetFileInformationByHandle(archivo_.Handle(), FileRenameInfo, memoria.data(),
                                                  static_cast<DWORD>(memoria.size())) != 0);
  });
  if (error == ERROR_ACCESS_DENIED) error = ERROR_SHARING_VIOLATION;
  if (error == ERROR_SUCCESS) archivo_ = Manejador();
  return error;
}

// Whether this user may write to a file and take its name away; a file that is in use just now may be.
DWORD PruebaReemplazo(const std::wstring& ruta) {
  Abierto abierto;
  const DWORD error =
      Abre(ruta, FILE_WRITE_DATA | DELETE, kCompartidoConTodos, OPEN_EXISTING, kEsperaNegado, abierto);
  return error == ERROR_SHARING_VIOLATION || error == ERROR_DELETE_PENDING ? ERROR_SUCCESS : error;
}

/// What a new file takes from the one that it replaces or is made of.
struct Modelo {
  DWORD atributos = 0;
  windows::Permisos permisos;
};

DWORD LeeModelo(const Abierto& abierto, Modelo& modelo) {
  modelo.atributos = abierto.datos.dwFileAttributes;
  return modelo.permisos.Lee(abierto.archivo.Handle());
}

// Of the file that a path leads to; it need not be there.
DWORD PreparaReemplazo(const std::wstring& destino, bool sobrescribe, bool& existe, Modelo& anterior) {
  Abierto abierto;
  const DWORD error = Consulta(destino, abierto);
  existe = error == ERROR_SUCCESS;
  if (error == ERROR_FILE_NOT_FOUND) return ERROR_SUCCESS;
  if (error != ERROR_SUCCESS || !sobrescribe) return error;
  constexpr DWORD kIntocable = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY;
  if ((abierto.datos.dwFileAttributes & kIntocable) != 0) return ERROR_ACCESS_DENIED;
  const DWORD deModelo = LeeModelo(abierto, anterior);
  return deModelo == ERROR_SUCCESS ? PruebaReemplazo(destino) : deModelo;
}

// Puts a whole file at a path in one step. It takes attributes and rights of `dado`; without one, of the file
// that it replaces.
DWORD Coloca(const std::wstring& ruta, std::string_view bytes, const Modelo* dado, bool sobrescribe) {
  const std::wstring destino = Resuelve(ruta);
  // A link to nothing.
  if (destino.empty()) return ruta.empty() ? ERROR_FILE_NOT_FOUND : ERROR_PATH_NOT_FOUND;
  const std::wstring carpeta = CarpetaDe(destino);
  bool existe = false;
  Modelo anterior;
  DWORD error = PreparaReemplazo(destino, sobrescribe, existe, anterior);
  if (error != ERROR_SUCCESS || (existe && !sobrescribe)) return error;

  // That it is read-only must wait until the temporary file needs no deletion any more.
  constexpr DWORD kAtributos = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ENCRYPTED |
                               FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
  const Modelo& modelo = dado == nullptr ? anterior : *dado;
  const DWORD atributos = FILE_ATTRIBUTE_ARCHIVE | (modelo.atributos & kAtributos);
  Temporal temporal;
  error = temporal.Crea(destino, atributos, modelo.permisos.Propios());
  if (error == ERROR_SUCCESS) error = modelo.permisos.Pon(temporal.Handle());
  if (error == ERROR_SUCCESS) error = EscribeTodo(temporal.Handle(), bytes);
  if (error == ERROR_SUCCESS) error = UltimoError(FlushFileBuffers(temporal.Handle()) != 0);
  if (error == ERROR_SUCCESS) error = temporal.Publica(destino, sobrescribe);
  if (error == ERROR_SUCCESS) error = VaciaCarpeta(carpeta);
  // The first of several that make a new file wins.
  if (!sobrescribe && (error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS)) return ERROR_SUCCESS;
  if (error == ERROR_SUCCESS && (modelo.atributos & FILE_ATTRIBUTE_READONLY) != 0) {
    error = UltimoError(SetFileAttributesW(destino.c_str(), atributos | FILE_ATTRIBUTE_READONLY) != 0);
  }
  return error;
}

// Reads the rest of an open file.
DWORD LeeTodo(const Abierto& abierto, std::string& bytes) {
  const auto largo = static_cast<std::size_t>(
      static_cast<unsigned long long>(abierto.datos.nFileSizeHigh) << 32U | abierto.datos.nFileSizeLow);
  // One byte more than the size, so that the end shows in the second read and a key file's bytes stay in one
  // place.
  constexpr std::size_t kBloque = 65536;
  constexpr std::size_t kMaximo = std::size_t{1} << 30U;
  std::string leidos(largo + 1, '\0');
  std::size_t cuenta = 0;
  for (;;) {
    if (cuenta == leidos.size()) leidos.resize(cuenta + kBloque);
    DWORD n = 0;
    const auto cuantos = static_cast<DWORD>(std::min(leidos.size() - cuenta, kMaximo));
    if (ReadFile(abierto.archivo.Handle(), leidos.data() + cuenta, cuantos, &n, nullptr) == 0)
      return GetLastError();
    if (n == 0) break;
    cuenta += n;
  }
  leidos.resize(cuenta);
  bytes = std::move(leidos);
  return ERROR_SUCCESS;
}

DWORD AbreParaLeer(const std::wstring& ruta, Abierto& abierto) {
  return AbreSoloArchivo(ruta, GENERIC_READ, kCompartidoConTodos, OPEN_EXISTING, kEsperaApertura, abierto);
}

bool Existe(std::u16string_view ruta, bool carpeta) {
  const std::wstring nativa = Nativa(ruta);
  DWORD atributos = nativa.empty() ? INVALID_FILE_ATTRIBUTES : GetFileAttributesW(nativa.c_str());
  if (atributos == INVALID_FILE_ATTRIBUTES) return false;
  // Of a link, what it leads to.
  if ((atributos & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
    Abierto abierto;
    if (Abre(nativa, FILE_READ_ATTRIBUTES, kCompartidoConTodos, OPEN_EXISTING, kEsperaNegado, abierto) !=
        ERROR_SUCCESS) {
      return false;
    }
    atributos = abierto.datos.dwFileAttributes;
  }
  return ((atributos & FILE_ATTRIBUTE_DIRECTORY) != 0) == carpeta;
}

DWORD CreaCarpetaNativa(const std::wstring& ruta) {
  const std::wstring madre = CarpetaDe(ruta);
  if (CreateDirectoryW(ruta.c_str(), nullptr) != 0) return VaciaCarpeta(madre);
  const DWORD error = GetLastError();
  if (error != ERROR_PATH_NOT_FOUND) {
    // The root of a drive that is there is denied, not said to exist.
    const DWORD atributos = GetFileAttributesW(ruta.c_str());
    if (atributos == INVALID_FILE_ATTRIBUTES) return error;
    return (atributos & FILE_ATTRIBUTE_DIRECTORY) != 0 ? ERROR_SUCCESS : ERROR_DIRECTORY;
  }
  const std::size_t diagonal = ruta.rfind(L'\\');
  if (diagonal == std::wstring::npos || diagonal == 0 || ruta[diagonal - 1] == L'\\') return error;
  const DWORD deMadre = CreaCarpetaNativa(ruta.substr(0, diagonal));
  if (deMadre != ERROR_SUCCESS) return deMadre;
  if (CreateDirectoryW(ruta.c_str(), nullptr) != 0) return VaciaCarpeta(madre);
  return UltimoError(GetLastError() == ERROR_ALREADY_EXISTS);
}

/// One byte far beyond the end of a file, locked for whoever adds to the file: where two programs append at
/// the same time, the system alone does not keep every line.
class CandadoDelFinal {
 public:
  explicit CandadoDelFinal(HANDLE archivo) : archivo_(archivo) {
    lugar_.OffsetHigh = 0x40000000;
    error_ = Insiste(kEsperaCandado, kEsperaNegado, [this] {
      return UltimoError(
          LockFileEx(archivo_, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &lugar_) != 0);
    });
  }
  CandadoDelFinal(const CandadoDelFinal&) = delete;
  CandadoDelFinal& operator=(const CandadoDelFinal&) = delete;
  ~CandadoDelFinal() {
    if (error_ == ERROR_SUCCESS) UnlockFileEx(archivo_, 0, 1, 0, &lugar_);
  }
  DWORD Error() const noexcept { return error_; }

 private:
  HANDLE archivo_;
  OVERLAPPED lugar_{};
  DWORD error_ = ERROR_SUCCESS;
};

// Ends a line that was cut with a line break in the place of its own last bytes: there is no room for more.
void TerminaLinea(HANDLE archivo, LARGE_INTEGER inicio) noexcept {
  constexpr std::string_view kFin = "\r\n";
  LARGE_INTEGER fin{};
  if (GetFileSizeEx(archivo, &fin) == 0) return;
  const auto escritos = static_cast<std::size_t>(std::clamp<LONGLONG>(fin.QuadPart - inicio.QuadPart, 0, 2));
  LARGE_INTEGER lugar{};
  lugar.QuadPart = fin.QuadPart - static_cast<LONGLONG>(escritos);
  if (SetFilePointerEx(archivo, lugar, nullptr, FILE_BEGIN) == 0) return;
  // If this fails the line stays as it is, and the caller learns of the full disk in any case.
  static_cast<void>(EscribeTodo(archivo, kFin.substr(kFin.size() - escritos)));
}

DWORD Agrega(const std::wstring& ruta, std::string_view bytes) {
  Abierto abierto;
  DWORD error =
      AbreSoloArchivo(ruta, FILE_WRITE_DATA, kCompartidoConTodos, OPEN_ALWAYS, kEsperaApertura, abierto);
  if (error != ERROR_SUCCESS) return error;
  const HANDLE archivo = abierto.archivo.Handle();
  const CandadoDelFinal candado(archivo);
  if (candado.Error() != ERROR_SUCCESS) return candado.Error();
  LARGE_INTEGER inicio{};
  if (SetFilePointerEx(archivo, {}, &inicio, FILE_END) == 0) return GetLastError();
  error = EscribeTodo(archivo, bytes);
  if (error != ERROR_SUCCESS) TerminaLinea(archivo, inicio);
  return error;
}

}  // namespace

FallaArchivo LeeArchivo(std::u16string_view ruta, std::string& bytes) {
  Abierto abierto;
  const DWORD error = AbreParaLeer(Nativa(ruta), abierto);
  return FallaDe(error == ERROR_SUCCESS ? LeeTodo(abierto, bytes) : error);
}

std::optional<std::string> LeeArchivo(std::u16string_view ruta) {
  std::string bytes;
  if (LeeArchivo(ruta, bytes).Hubo()) return std::nullopt;
  return bytes;
}

bool ExisteArchivo(std::u16string_view ruta) { return Existe(ruta, false); }

bool ExisteCarpeta(std::u16string_view ruta) { return Existe(ruta, true); }

FallaArchivo CreaCarpeta(std::u16string_view ruta) {
  std::wstring nativa = Nativa(ruta);
  while (!nativa.empty() && nativa.back() == L'\\') nativa.pop_back();
  return FallaDe(nativa.empty() ? ERROR_FILE_NOT_FOUND : CreaCarpetaNativa(nativa));
}

FallaArchivo ReemplazaArchivo(std::u16string_view ruta, std::string_view bytes) {
  return FallaDe(Coloca(Nativa(ruta), bytes, nullptr, true));
}

FallaArchivo ReemplazaArchivo(std::u16string_view ruta, std::string_view bytes, std::u16string_view modelo) {
  Modelo dado;
  DWORD error = ERROR_SUCCESS;
  {
    Abierto abierto;
    error = Consulta(Nativa(modelo), abierto);
    if (error == ERROR_SUCCESS) error = LeeModelo(abierto, dado);
  }
  return FallaDe(error == ERROR_SUCCESS ? Coloca(Nativa(ruta), bytes, &dado, true) : error);
}

FallaArchivo CopiaArchivo(std::u16string_view origen, std::u16string_view destino, bool sobrescribe) {
  std::string bytes;
  Modelo modelo;
  DWORD error = ERROR_SUCCESS;
  {
    // Closed before the copy, which may take the place of its original.
    Abierto abierto;
    error = AbreParaLeer(Nativa(origen), abierto);
    if (error == ERROR_SUCCESS) error = LeeTodo(abierto, bytes);
    if (error == ERROR_SUCCESS) error = LeeModelo(abierto, modelo);
  }
  return FallaDe(error == ERROR_SUCCESS ? Coloca(Nativa(destino), bytes, &modelo, sobrescribe) : error);
}

FallaArchivo AgregaAlFinal(std::u16string_view ruta, std::string_view bytes) {
  return FallaDe(Agrega(Nativa(ruta), bytes));
}

FallaArchivo BorraArchivo(std::u16string_view ruta) {
  const std::wstring nativa = Nativa(ruta);
  const DWORD error = Insiste(kEsperaApertura, kEsperaNegado,
                              [&nativa] { return UltimoError(DeleteFileW(nativa.c_str()) != 0); });
  return FallaDe(error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND ? ERROR_SUCCESS : error);
}

FallaArchivo AbreArchivo(std::u16string_view ruta, unsigned int modo, int& manejador) {
  constexpr unsigned int kAcceso = 0x3;
  constexpr unsigned int kComparticion = 0x70;
  constexpr unsigned int kExclusivo = 0x10;
  constexpr DWORD kAccesos[] = {GENERIC_READ, GENERIC_WRITE, GENERIC_READ | GENERIC_WRITE};
  manejador = -1;
  if ((modo & kAcceso) >= std::size(kAccesos)) return FallaDe(ERROR_INVALID_PARAMETER);
  const DWORD comparticion = (modo & kComparticion) == kExclusivo ? 0 : kCompartidoConTodos;
  Abierto abierto;
  const DWORD error = AbreSoloArchivo(Nativa(ruta), kAccesos[modo & kAcceso], comparticion, OPEN_EXISTING,
                                      kEsperaManejador, abierto);
  if (error != ERROR_SUCCESS) return FallaDe(error);
  // The system's handles of files have 32 bits that count, in programs of 64 bits too.
  manejador = static_cast<int>(reinterpret_cast<INT_PTR>(abierto.archivo.Suelta()));
  return {};
}

void CierraArchivo(int manejador) noexcept { CloseHandle(reinterpret_cast<HANDLE>(INT_PTR{manejador})); }

// The lock is a hidden file that one program at a time can have open, and that goes when it is closed, by
// whatever end of the program.
struct CandadoArchivo::Candado {
  Manejador archivo;
};

CandadoArchivo::CandadoArchivo(std::u16string_view ruta) {
  const std::wstring destino = Resuelve(Nativa(ruta));
  if (destino.empty()) {
    falla_ = FallaDe(ERROR_PATH_NOT_FOUND);
    return;
  }
  const std::wstring nombre = CarpetaDe(destino) + L".utilvel90.lock";
  Manejador archivo;
  const DWORD error = Insiste(kEsperaCandado, kEsperaApertura, [&] {
    archivo = Manejador(CreateFileW(nombre.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, OPEN_ALWAYS,
                                    FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    return UltimoError(archivo.Valido());
  });
  if (error != ERROR_SUCCESS) {
    falla_ = FallaDe(error);
    return;
  }
  candado_ = std::make_unique<Candado>(Candado{std::move(archivo)});
}

CandadoArchivo::~CandadoArchivo() = default;

}  // namespace vel
