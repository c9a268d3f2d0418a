#include "platform/windows/Permisos.h"

#include <aclapi.h>

namespace vel::windows {
namespace {

bool HayPropios(PACL lista) noexcept {
  for (DWORD i = 0; i < lista->AceCount; ++i) {
    void* entrada = nullptr;
    if (GetAce(lista, i, &entrada) == 0) return true;
    if ((static_cast<const ACE_HEADER*>(entrada)->AceFlags & INHERITED_ACE) == 0) return true;
  }
  return false;
}

// What a file system says that has no rights of files.
bool SinPermisos(DWORD error) noexcept {
  return error == ERROR_INVALID_FUNCTION || error == ERROR_NOT_SUPPORTED;
}

}  // namespace

DWORD Permisos::Lee(HANDLE archivo) noexcept {
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  const DWORD error = GetSecurityInfo(archivo, SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr,
                                      &lista_, nullptr, &descriptor);
  descriptor_.reset(descriptor);
  if (SinPermisos(error)) return ERROR_SUCCESS;
  if (error != ERROR_SUCCESS || lista_ == nullptr) return error;
  SECURITY_DESCRIPTOR_CONTROL control = 0;
  DWORD revision = 0;
  if (GetSecurityDescriptorControl(descriptor, &control, &revision) == 0) return GetLastError();
  protegidos_ = (control & SE_DACL_PROTECTED) != 0;
  propios_ = protegidos_ || HayPropios(lista_);
  return ERROR_SUCCESS;
}

DWORD Permisos::Pon(HANDLE archivo) const noexcept {
  if (!propios_) return ERROR_SUCCESS;
  // The system adds what the file's new folder hands down, unless the list is protected against that.
  const SECURITY_INFORMATION cual =
      DACL_SECURITY_INFORMATION |
      (protegidos_ ? PROTECTED_DACL_SECURITY_INFORMATION : UNPROTECTED_DACL_SECURITY_INFORMATION);
  const DWORD error = SetSecurityInfo(archivo, SE_FILE_OBJECT, cual, nullptr, nullptr, lista_, nullptr);
  return SinPermisos(error) ? ERROR_SUCCESS : error;
}

}  // namespace vel::windows
