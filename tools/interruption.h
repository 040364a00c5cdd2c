// Ending a long task in good order when the user or the system asks for it.
#pragma once

#include "loading/text_source.h"

namespace ambcp {

/// While it lives, the first Ctrl+C, or request to end, is only noted; the second one ends the program.
class Interruption {
public:
    Interruption();
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    [[nodiscard]] static bool isRequested();
    /// Ends the program as the signal would have, so that shells and scripts see it; returns if there was
    /// none.
    static void obey();
};

/// Thrown by a source from which nothing more came before the interruption.
struct Interrupted {};

/// Standard input that can be interrupted while it waits. `name`: what errors call it.
[[nodiscard]] loading::TextSource interruptibleInput(const std::string& name);

} // namespace ambcp
