// The data module of a lookup routine, for the time in which the routine works.
#pragma once

namespace ambrel {

/// Creates a data module and keeps it in the global of its unit. The global is empty afterwards. Errors:
/// those of the module's constructor; the global then stays as it was.
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
