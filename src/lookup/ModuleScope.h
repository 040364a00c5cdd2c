// The data module of a lookup routine, alive while the routine runs.
#pragma once

namespace ambrel {

/// Creates a data module and stores it in its unit's global, which is null afterwards. Errors: those of the
/// module's constructor; the global is then unchanged.
template<class Module>
class ModuleScope {
public:
    explicit ModuleScope(Module*& global) : global_(global) { global_ = &module_; }
    ~ModuleScope() { global_ = nullptr; }
    ModuleScope(const ModuleScope&) = delete;
    ModuleScope& operator=(const ModuleScope&) = delete;

    [[nodiscard]] Module& module() { return module_; }

private:
    Module module_;
    Module*& global_;
};

} // namespace ambrel
