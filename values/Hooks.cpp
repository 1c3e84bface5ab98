#include "Hooks.h"

#include "NodeVector.h"

Hooks& EditHooks() {
    static Hooks hooks;
    return hooks;
}

const Hooks& GetHooks() { return EditHooks(); }

std::string NodeVector::PathString() const {
    const Hooks& hooks = GetHooks();
    return hooks.pathString ? hooks.pathString(*this) : std::string();
}
