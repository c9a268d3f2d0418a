#include "Uutilext/crypto/ColaErrores.h"

#include <openssl/err.h>

namespace vel {

// An empty queue takes no mark; going back to a mark that is not there empties the queue, which is right too.
ColaErrores::ColaErrores() noexcept { ERR_set_mark(); }

ColaErrores::~ColaErrores() { ERR_pop_to_mark(); }

}  // namespace vel
