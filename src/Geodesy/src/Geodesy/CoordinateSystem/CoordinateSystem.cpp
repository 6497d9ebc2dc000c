// SPDX-License-Identifier: MIT
#include "Geodesy/CoordinateSystem/CoordinateSystem.h"

#include "Geodesy/CoordinateSystem/OutputCoordinateSystemNotSupportedException.h"

#include <cctype>
#include <map>

namespace Kelvo::Geodesy::CoordinateSystem {
namespace {

// Built when the library is loaded. Ordered by name: toString walks it in that order.
const std::map<std::string, CoordinateSystem> names{
    {"trf", CoordinateSystem::TRF},
    {"ned", CoordinateSystem::NED},
    {"llh", CoordinateSystem::LLH},
    {"proj", CoordinateSystem::PROJECTION},
};

} // namespace

CoordinateSystem fromString(std::string name)
{
    for (char& character : name) {
        // Through unsigned char: tolower of a negative char is undefined.
        character = static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
    }
    const auto found = names.find(name);
    if (found == names.end()) {
        throw OutputCoordinateSystemNotSupportedException("");
    }
    return found->second;
}

std::string toString(CoordinateSystem value)
{
    for (const auto& [name, system] : names) {
        if (system == value) {
            return name;
        }
    }
    throw OutputCoordinateSystemNotSupportedException("");
}

} // namespace Kelvo::Geodesy::CoordinateSystem
