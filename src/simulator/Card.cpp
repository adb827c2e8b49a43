#include "simulator/Card.h"

namespace nivor {

std::vector<std::uint32_t> Card::childrenOf(std::uint32_t parent) const
{
    std::vector<std::uint32_t> children;
    for (const std::uint32_t handle : handles()) {
        const std::optional<CardObject> child = object(handle);
        if (child && child->parent == parent)
            children.push_back(handle);
    }
    return children;
}

}  // namespace nivor
