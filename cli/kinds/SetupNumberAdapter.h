#ifndef MEASCTL_SETUPNUMBERADAPTER_H
#define MEASCTL_SETUPNUMBERADAPTER_H

#include "ProxyAdapter.h"

#include "SetupDoubleInterface.h"

#include <type_traits>

/// Integer and real-number settings: value and text, limits, granularity.
template<class P, typename T>
class SetupNumberAdapter : public ProxyAdapter<P>
{
public:
    explicit SetupNumberAdapter(const char *summary)
        : ProxyAdapter<P>(summary, {{QString()}, {QStringLiteral("NUMBER")}, {QString()}})
    {
        this->reads = {{"value", "getValue", &P::getValue}, {"text", "getString", &P::getString}};
        this->infos = {{"text", "getString", &P::getString},
                       {"min", "getMinValue", &P::getMinValue},
                       {"max", "getMaxValue", &P::getMaxValue},
                       {"granularity", "getGranularity", &P::getGranularity},
                       {"changeable", "isChangeable", &P::isChangeable}};
        this->relays = {{&P::setupChanged, "setupChanged"}};
        if constexpr (std::is_same<P, SetupDoubleInterface>::value)
            this->relays.push_back({&P::setupBoundsChanged, "setupBoundsChanged"});
    }

protected:
    CommandResult write(P &p, const QStringList &args) const override
    {
        return this->setParsed(p, args.first(), parse(args.first()),
                               whole ? Expected::wholeNumber : Expected::realNumber);
    }

private:
    static constexpr bool whole = std::is_same<T, int>::value;

    static std::optional<T> parse(const QString &text)
    {
        if constexpr (whole)
            return Values::parseInt(text);
        else
            return Values::parseDouble(text);
    }
};

#endif
