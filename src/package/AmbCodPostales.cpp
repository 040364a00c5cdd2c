// The package's own unit: loading it creates nothing; its classes and routines come from the archives linked
// whole.
#include "package/AmbCodPostales.h"
