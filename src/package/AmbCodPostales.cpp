// The package's own unit: loading it creates nothing; its classes and routines, except those below, come from
// the archives linked whole.
#include "package/AmbCodPostales.h"

namespace ambrel {

const char* version() { return AMBREL_VERSION_TEXT; }
int versionNumber() { return AMBREL_VERSION; }

} // namespace ambrel
