#include "ValueHooks.h"

#include "NodeVector.h"

ValueHooks& GetValueHooks() {
    static ValueHooks hooks;
    return hooks;
}

std::string NodeVector::PathString() const {
    const ValueHooks& hooks = GetValueHooks();
    return hooks.pathString ? hooks.pathString(*this) : std::string();
}
