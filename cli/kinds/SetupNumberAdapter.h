#ifndef MEASCTL_SETUPNUMBERADAPTER_H
#define MEASCTL_SETUPNUMBERADAPTER_H

#include "ProxyAdapter.h"

#include "SetupDoubleInterface.h"

#include <limits>
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
        if (whole && Values::isWholeNumber(args.first()) && !parse(args.first()))
            return CommandResult::failed(ExitCode::BadValue,
                                         QStringLiteral("'%1' is out of range (%2..%3)")
                                             .arg(args.first())
                                             .arg(std::numeric_limits<int>::min())
                                             .arg(std::numeric_limits<int>::max()));
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
