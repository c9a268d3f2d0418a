#include "Uutilext/crypto/Borrador.h"

#include <openssl/crypto.h>

namespace vel {

void Borra(void* memoria, std::size_t bytes) noexcept { OPENSSL_cleanse(memoria, bytes); }

}  // namespace vel
