#include "LiveProperties_p.h"

#include "WireValue_p.h"

#include <QStringList>

namespace LiveProperties {

namespace {

const char boundsSignal[] = "setupBoundsChanged";
const char changeSignal[] = "setupChanged";

// clang-format off
const std::array<Source, Count> table{{
    {Value,       "value",       {"getValue", "getValues", nullptr},   Refresh::OnChange,       changeSignal, 0},
    {Text,        "text",        {"getString", nullptr, nullptr},      Refresh::OnChange,       nullptr,      0},
    {Minimum,     "minimum",     {"getMinValue", "getMin", nullptr},   Refresh::OnBoundsChange, boundsSignal, 0},
    {Maximum,     "maximum",     {"getMaxValue", "getMax", nullptr},   Refresh::OnBoundsChange, boundsSignal, 1},
    {Granularity, "granularity", {"getGranularity", nullptr, nullptr}, Refresh::OnBoundsChange, nullptr,      0},
    {LowerLimit,  "lowerLimit",  {"getLowerLimit", nullptr, nullptr},  Refresh::Never,          nullptr,      0},
    {UpperLimit,  "upperLimit",  {"getUpperLimit", nullptr, nullptr},  Refresh::Never,          nullptr,      0},
    {Changeable,  "changeable",  {"isChangeable", nullptr, nullptr},   Refresh::Never,          nullptr,      0},
    {Choices,     "choices",     {"getValueList", nullptr, nullptr},   Refresh::Never,          nullptr,      0},
}};
// clang-format on

} // namespace

const Source &source(Property property)
{
    return table.at(static_cast<std::size_t>(property));
}

Methods methodsOf(const KindTable::Kind &kind)
{
    Methods methods{};
    for (const Source &entry : table) {
        for (const char *member : entry.members) {
            if (!member)
                break;
            if (const KindTable::Method *method = kind.method(QLatin1String(member), QString())) {
                methods.at(static_cast<std::size_t>(entry.property)) = method;
                break;
            }
        }
    }
    return methods;
}

bool isRefreshedBy(Property property, const QString &member)
{
    switch (source(property).refresh) {
    case Refresh::OnChange:
        return member != QLatin1String(boundsSignal);
    case Refresh::OnBoundsChange:
        return member == QLatin1String(boundsSignal);
    case Refresh::Never:
        break;
    }
    return false;
}

QVariant fromWire(Property property, const QVariant &wire)
{
    // The application's own format of the choice list; this is the simulator's.
    if (property == Choices)
        return wire.toString().split(QLatin1Char(';'), Qt::SkipEmptyParts);
    return WireValue::plain(wire);
}

} // namespace LiveProperties
