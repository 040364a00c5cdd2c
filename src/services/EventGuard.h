// The one guard in which every slot and event handler runs.
#pragma once

#include <exception>
#include <functional>
#include <type_traits>
#include <utility>

#include "AmbrelExport.h"

namespace ambrel {

/// Ends an operation whose failure has already been shown to the user.
class AMBREL_EXPORT SilentAbort : public std::exception {
public:
    [[nodiscard]] const char* what() const noexcept override { return "operación interrumpida"; }
};

/// Runs a handler's body. An exception that leaves the body is shown to the user once, and the program goes
/// on; a SilentAbort is not shown.
AMBREL_EXPORT void runGuarded(const std::function<void()>& body) noexcept;

/// Wraps a handler for connect(): connect(button, &QPushButton::clicked, this, guarded([this] { ... })).
template<class Body>
[[nodiscard]] auto guarded(Body body) {
    return [body = std::move(body)]<class... Arguments>(Arguments && ... arguments) mutable
        requires std::is_invocable_v<Body&, Arguments...>
    {
        runGuarded([&] { body(std::forward<Arguments>(arguments)...); });
    };
}

} // namespace ambrel
