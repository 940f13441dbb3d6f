#include "platform/crypto/Wipe.h"

#include <openssl/crypto.h>

namespace orv {

void WipeMemory(void* data, std::size_t size) {
    OPENSSL_cleanse(data, size);
}

}  // namespace orv
