// The package's own unit: loading it creates nothing, and has notices of the tables shown; its classes and
// routines, except those below, come from the archives linked whole.
#include "package/AmbCodPostales.h"

#include "services/Notices.h"

namespace ambrel {

namespace {
[[maybe_unused]] const bool showsNotices = (showNotices(), true);
} // namespace

const char* version() { return AMBREL_VERSION_TEXT; }
int versionNumber() { return AMBREL_VERSION; }

} // namespace ambrel
