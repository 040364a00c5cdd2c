// The data module of a lookup routine, alive while the routine runs.
#pragma once

#include <utility>

namespace ambrel {

/// Creates a data module and stores it in its unit's global, which is null afterwards: a host's own module is
/// not put back. A routine that runs during a message or wait of another one puts that one's back, whose list
/// browses it. Errors: those of the module's constructor; the global is then unchanged.
template<class Module>
class ModuleScope {
public:
    explicit ModuleScope(Module*& global) : global_(global), outer_(std::exchange(innermost_, this)) {
        global_ = &module_;
    }
    ~ModuleScope() {
        innermost_ = outer_;
        global_ = outer_ != nullptr ? &outer_->module_ : nullptr;
    }
    ModuleScope(const ModuleScope&) = delete;
    ModuleScope& operator=(const ModuleScope&) = delete;

    [[nodiscard]] Module& module() { return module_; }

private:
    Module module_;
    Module*& global_;
    ModuleScope* const outer_;
    static inline ModuleScope* innermost_ = nullptr;
};

} // namespace ambrel
