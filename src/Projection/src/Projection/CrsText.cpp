// SPDX-License-Identifier: MIT
#include "CrsText.h"

#include "Geodesy/Batch/ArgumentError.h"


namespace Kelvo::Projection {
namespace {

using Geodesy::Batch::ArgumentError;

bool isProjString(const std::string& text)
{
    return text.find("proj=") != std::string::npos;
}

/// A bare name such as "WGS 84": not a code, a PROJ string, WKT or PROJJSON.
bool isName(const std::string& text)
{
    return text.find_first_of(":=+[{") == std::string::npos;
}

/// `name` in lower case without spaces and punctuation: "WGS84" and "wgs 84" are one name.
std::string simplified(const std::string& name)
{
    std::string result;
    for (const char c : name) {
        if (c >= 'A' && c <= 'Z') {
            result += static_cast<char>(c - 'A' + 'a');
        } else if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) {
            result += c;
        }
    }
    return result;
}

/// Why a CRS cannot give x, y, z columns; empty when it can.
std::string unusable(ProjContext& context, const PJ* crs)
{
    const PjPointer base = baseCrs(context, crs);
    switch (base ? proj_get_type(base.get()) : PJ_TYPE_UNKNOWN) {
    case PJ_TYPE_VERTICAL_CRS: return "a vertical CRS alone has no x and y";
    case PJ_TYPE_TEMPORAL_CRS: return "a temporal CRS has no x and y";
    default: return {};
    }
}

} // namespace

std::string quoted(const std::string& argument, const std::string& text)
{
    std::string result = argument + " '";
    for (const char c : text) {
        // A NUL would end the message that what() returns.
        result += c == '\0' ? std::string("\\0") : std::string(1, c);
    }
    return result + "'";
}

PjPointer createCrs(ProjContext& context, const std::string& text, const std::string& argument)
{
    const auto fail = [&](const std::string& reason) {
        ProjContext::forwardMessages(context.takeMessages());
        return ArgumentError(quoted(argument, text) + ": " + reason);
    };
    ProjContext::forwardMessages(context.takeMessages());
    if (text.find('\0') != std::string::npos) {
        throw fail("contains a NUL character");
    }
    if (text.find_first_not_of(" \t\r\n") == std::string::npos) {
        throw fail("is empty");
    }
    PjPointer crs(proj_create(context.get(), text.c_str()));
    // PROJ reads "+proj=utm +zone=32" as an operation; cs2cs takes it as the CRS it defines.
    if (crs && !proj_is_crs(crs.get()) && isProjString(text)) {
        crs.reset(proj_create(context.get(), (text + " +type=crs").c_str()));
    }
    if (!crs) {
        throw fail(context.lastMessage().empty() ? "PROJ cannot read it" : context.lastMessage());
    }
    if (!proj_is_crs(crs.get())) {
        throw fail("is not a coordinate reference system");
    }
    // PROJ takes the closest name it knows ("foo" gives "Amersfoort"): a typing error must not
    // silently pick another CRS.
    const char* name = proj_get_name(crs.get());
    if (isName(text) && simplified(name == nullptr ? "" : name) != simplified(text)) {
        throw fail(std::string("no CRS has this name (the nearest is '") + (name == nullptr ? "" : name) + "')");
    }
    if (const std::string reason = unusable(context, crs.get()); !reason.empty()) {
        throw fail(reason);
    }
    ProjContext::forwardMessages(context.takeMessages());
    return crs;
}

PjPointer baseCrs(ProjContext& context, const PJ* crs)
{
    if (proj_get_type(crs) == PJ_TYPE_BOUND_CRS) {
        return PjPointer(proj_get_source_crs(context.get(), crs));
    }
    return PjPointer(proj_clone(context.get(), crs));
}

} // namespace Kelvo::Projection
