// Border kinds by the names that people give them.
#pragma once

#include "operations/image.h"

#include <map>

namespace app {

inline const std::map<std::string, ZeliBorderType> kBorders = {{"constant", zeliBorderConstant},
                                                               {"replicate", zeliBorderReplicate},
                                                               {"wrap", zeliBorderWrap},
                                                               {"reflect", zeliBorderReflect},
                                                               {"reflect-edge", zeliBorderReflectEdge}};

inline ZeliBorderType borderNamed(const std::string& name)
{
    const auto kind = kBorders.find(name);
    if (kind == kBorders.end()) throw UsageError("--border: there is no kind '" + name + "'");
    return kind->second;
}

} // namespace app
