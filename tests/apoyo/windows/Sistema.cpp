#include "tests/apoyo/Sistema.h"

#include <atomic>
#include <stdexcept>
#include <system_error>
#include <utility>
#include <windows.h>

namespace pruebas {
namespace {

// What a process that was killed by a test ends with.
constexpr UINT kMatado = 0xFFFFFFFF;
// The keys of the present Desvio, within the user's own; inherited by the processes that a test starts.
constexpr const char* kVariable = "UTILVEL90_PRUEBAS_CLAVES";
constexpr const wchar_t* kClaves = L"Software\\UtilVel90 pruebas\\";

std::wstring Ancho(const std::string& utf8) {
  return std::filesystem::path(std::u8string(utf8.begin(), utf8.end())).wstring();
}

void Exige(bool bien, const char* que) {
  if (!bien) throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), que);
}

void ExigeClave(LSTATUS estado, const char* que) {
  if (estado != ERROR_SUCCESS) throw std::system_error(estado, std::system_category(), que);
}

/// A registry key, created when needed.
class Clave {
 public:
  Clave(HKEY raiz, const std::wstring& nombre) {
    ExigeClave(
        RegCreateKeyExW(raiz, nombre.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &clave_, nullptr),
        "RegCreateKeyEx");
  }
  Clave(const Clave&) = delete;
  Clave& operator=(const Clave&) = delete;
  ~Clave() { RegCloseKey(clave_); }
  operator HKEY() const noexcept { return clave_; }

 private:
  HKEY clave_ = nullptr;
};

void PonTexto(HKEY clave, const wchar_t* nombre, const std::wstring& texto) {
  const auto bytes = static_cast<DWORD>((texto.size() + 1) * sizeof(wchar_t));
  ExigeClave(RegSetValueExW(clave, nombre, 0, REG_SZ, reinterpret_cast<const BYTE*>(texto.c_str()), bytes),
             "RegSetValueEx");
}

// The system's own branches again.
void Endereza() {
  RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
  RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
}

void Desvia(const std::wstring& claves) {
  Endereza();
  const Clave maquina(HKEY_CURRENT_USER, kClaves + claves + L"\\LM");
  const Clave usuario(HKEY_CURRENT_USER, kClaves + claves + L"\\CU");
  ExigeClave(RegOverridePredefKey(HKEY_LOCAL_MACHINE, maquina), "RegOverridePredefKey");
  ExigeClave(RegOverridePredefKey(HKEY_CURRENT_USER, usuario), "RegOverridePredefKey");
}

// The folder that a branch of the registry names under one of the shell's names.
void PonCarpeta(HKEY raiz, const wchar_t* nombre, const std::filesystem::path& carpeta) {
  const Clave carpetas(raiz, L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders");
  PonTexto(carpetas, nombre, std::filesystem::path(carpeta).make_preferred().wstring());
}

// As the runtime of the started program parts it again.
std::wstring Citado(const std::u16string& argumento) {
  std::wstring citado = L"\"";
  std::size_t diagonales = 0;
  for (const char16_t c : argumento) {
    if (c == u'"') citado.append(diagonales + 1, L'\\');
    diagonales = c == u'\\' ? diagonales + 1 : 0;
    citado += static_cast<wchar_t>(c);
  }
  return citado.append(diagonales, L'\\') + L'"';
}

HANDLE Manija(std::intptr_t id) { return reinterpret_cast<HANDLE>(id); }

}  // namespace

int Veces(int, int enWindows) noexcept { return enWindows; }

std::filesystem::path CreaCarpetaPropia() {
  static std::atomic<unsigned> cuenta = 0;
  const std::filesystem::path base = std::filesystem::temp_directory_path();
  for (;;) {
    std::filesystem::path carpeta =
        base / ("utilvel90_" + std::to_string(GetCurrentProcessId()) + "_" + std::to_string(cuenta++));
    if (std::filesystem::create_directory(carpeta)) return carpeta;
  }
}

std::optional<std::string> CambiaVariable(const std::string& nombre,
                                          const std::optional<std::string>& valor) {
  const std::wstring ancho = Ancho(nombre);
  wchar_t texto[4096];
  std::optional<std::string> previo;
  if (const DWORD n = GetEnvironmentVariableW(ancho.c_str(), texto, static_cast<DWORD>(std::size(texto)));
      n > 0) {
    const std::u8string utf8 = std::filesystem::path(std::wstring(texto, n)).u8string();
    previo.emplace(utf8.begin(), utf8.end());
  }
  SetEnvironmentVariableW(ancho.c_str(), valor.has_value() ? Ancho(*valor).c_str() : nullptr);
  return previo;
}

Desvio::Desvio(const std::filesystem::path& carpeta) : carpeta_(carpeta) {
  const std::string claves = carpeta.filename().string();
  previas_.emplace_back(kVariable, CambiaVariable(kVariable, claves));
  Desvia(Ancho(claves));
  PonCarpeta(HKEY_CURRENT_USER, L"Local AppData", carpeta / "casa/.local/share");
  PonCarpeta(HKEY_LOCAL_MACHINE, L"Common AppData", carpeta / "comunes");
}

Desvio::~Desvio() {
  Endereza();
  RegDeleteTreeW(HKEY_CURRENT_USER, (kClaves + carpeta_.filename().wstring()).c_str());
  CambiaVariable(kVariable, previas_[0].second);
  if (previas_[0].second.has_value()) Desvia(Ancho(*previas_[0].second));
}

void Desvio::VaciaRegistro() const {
  for (const wchar_t* clave : {L"Software\\Tavex", L"Software\\Wow6432Node\\Tavex"})
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, clave);
}

// Whoever runs the tests tells that the drive is one to be thrown away, by a file in its root.
std::optional<std::filesystem::path> UnidadC(const std::filesystem::path&) {
  if (!std::filesystem::exists(L"C:\\unidad de pruebas.txt")) return std::nullopt;
  return L"C:\\";
}

void HeredaDesvio() {
  if (const auto claves = CambiaVariable(kVariable, std::nullopt)) {
    CambiaVariable(kVariable, claves);
    Desvia(Ancho(*claves));
  }
}

Modulo::Modulo(const std::filesystem::path& archivo)
    : modulo_(LoadLibraryW(std::filesystem::path(archivo).make_preferred().c_str())) {
  Exige(modulo_ != nullptr, "LoadLibrary");
}

Modulo::~Modulo() { FreeLibrary(static_cast<HMODULE>(modulo_)); }

Proceso::Proceso(const Argumentos& argumentos) {
  wchar_t programa[4096];
  Exige(GetModuleFileNameW(nullptr, programa, static_cast<DWORD>(std::size(programa))) > 0,
        "GetModuleFileName");
  std::wstring orden = L"\"" + std::wstring(programa) + L"\"";
  for (const std::u16string& a : argumentos) orden += L" " + Citado(a);
  STARTUPINFOW inicio{};
  inicio.cb = sizeof inicio;
  PROCESS_INFORMATION proceso{};
  Exige(CreateProcessW(programa, orden.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &inicio,
                       &proceso) != 0,
        "CreateProcess");
  CloseHandle(proceso.hThread);
  id_ = reinterpret_cast<std::intptr_t>(proceso.hProcess);
}

Proceso::Proceso(Proceso&& otro) noexcept : id_(std::exchange(otro.id_, 0)) {}

Proceso::~Proceso() {
  if (id_ == 0) return;
  Mata();
  Espera();
}

int Proceso::Espera() {
  const HANDLE proceso = Manija(std::exchange(id_, 0));
  DWORD codigo = kMatado;
  WaitForSingleObject(proceso, INFINITE);
  GetExitCodeProcess(proceso, &codigo);
  CloseHandle(proceso);
  return static_cast<int>(codigo);
}

void Proceso::Mata() { TerminateProcess(Manija(id_), kMatado); }

bool Proceso::Vive() const { return WaitForSingleObject(Manija(id_), 0) == WAIT_TIMEOUT; }

// Not the runtime's own, which are in the system's code page.
Argumentos ArgumentosPropios(int, char**) {
  int cuantos = 0;
  wchar_t** const partes = CommandLineToArgvW(GetCommandLineW(), &cuantos);
  Argumentos propios;
  for (int i = 1; i < cuantos; ++i) propios.push_back(std::filesystem::path(partes[i]).u16string());
  LocalFree(partes);
  return propios;
}

}  // namespace pruebas
