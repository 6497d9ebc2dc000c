// SPDX-License-Identifier: MIT
#include "Projection/CrsDescription.h"

#include "CrsText.h"

namespace Kelvo::Projection {
namespace {

CrsDescription::Kind kindOf(PJ_TYPE type)
{
    switch (type) {
    case PJ_TYPE_GEOGRAPHIC_2D_CRS: return CrsDescription::Kind::geographic2D;
    case PJ_TYPE_GEOGRAPHIC_3D_CRS: return CrsDescription::Kind::geographic3D;
    case PJ_TYPE_GEOCENTRIC_CRS: return CrsDescription::Kind::geocentric;
    case PJ_TYPE_PROJECTED_CRS: return CrsDescription::Kind::projected;
    case PJ_TYPE_COMPOUND_CRS: return CrsDescription::Kind::compound;
    default: return CrsDescription::Kind::other;
    }
}

std::string text(const char* value)
{
    return value == nullptr ? std::string() : std::string(value);
}

/// Appends the axes of a single CRS (not compound, not bound).
void appendAxes(ProjContext& context, const PJ* crs, std::vector<CrsDescription::Axis>& axes)
{
    const PjPointer system(proj_crs_get_coordinate_system(context.get(), crs));
    const int count = system ? proj_cs_get_axis_count(context.get(), system.get()) : 0;
    for (int index = 0; index < count; ++index) {
        const char* name = nullptr;
        const char* abbreviation = nullptr;
        const char* direction = nullptr;
        const char* unit = nullptr;
        double unitInSI = 0.0;
        if (proj_cs_get_axis_info(context.get(), system.get(), index, &name, &abbreviation, &direction, &unitInSI,
                                  &unit, nullptr, nullptr) != 0) {
            axes.push_back({text(name), text(abbreviation), text(direction), text(unit), unitInSI});
        }
    }
}

} // namespace

const char* toString(CrsDescription::Kind kind)
{
    switch (kind) {
    case CrsDescription::Kind::geographic2D: return "geographic 2D";
    case CrsDescription::Kind::geographic3D: return "geographic 3D";
    case CrsDescription::Kind::geocentric: return "geocentric";
    case CrsDescription::Kind::projected: return "projected";
    case CrsDescription::Kind::compound: return "compound";
    case CrsDescription::Kind::other: return "other";
    }
    return "other";
}

CrsDescription describeCrs(const std::string& crs, const std::string& argument)
{
    ProjContext context;
    const PjPointer created = createCrs(context, crs, argument);
    // The axes in the order CrsTransformer writes them.
    const PjPointer normalized(proj_normalize_for_visualization(context.get(), created.get()));
    const PjPointer base = baseCrs(context, normalized ? normalized.get() : created.get());

    CrsDescription description;
    description.name = text(proj_get_name(created.get()));
    description.kind = kindOf(base ? proj_get_type(base.get()) : PJ_TYPE_UNKNOWN);
    if (const char* authority = proj_get_id_auth_name(created.get(), 0)) {
        description.identifier = std::string(authority) + ":" + text(proj_get_id_code(created.get(), 0));
    }
    if (description.kind == CrsDescription::Kind::compound) {
        for (int index = 0; index < 2; ++index) {
            const PjPointer part(proj_crs_get_sub_crs(context.get(), base.get(), index));
            if (const PjPointer partBase = part ? baseCrs(context, part.get()) : nullptr) {
                appendAxes(context, partBase.get(), description.axes);
            }
        }
    } else if (base) {
        appendAxes(context, base.get(), description.axes);
    }
    ProjContext::forwardMessages(context.takeMessages());
    return description;
}

void validateCrs(const std::string& crs, const std::string& argument)
{
    ProjContext context;
    createCrs(context, crs, argument);
}

} // namespace Kelvo::Projection
