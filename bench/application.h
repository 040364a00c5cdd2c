// The application that benchmarks with widgets need.
#pragma once

namespace bench {

/// Makes it at the first call, without a display, for the rest of the run.
void ensureApplication();

} // namespace bench
