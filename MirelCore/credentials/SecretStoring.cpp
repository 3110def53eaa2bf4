#include "credentials/SecretStoring.h"

namespace mirel {

SecretStoring::~SecretStoring() = default;

void SecretStoring::cancelAll() {}

} // namespace mirel
