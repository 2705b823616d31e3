#ifndef MEASCTL_RESULTSCALARADAPTER_H
#define MEASCTL_RESULTSCALARADAPTER_H

#include "ProxyAdapter.h"

#include "ResultDoubleInterface.h"

#include <type_traits>

/// Integer, real-number and boolean results: value, limits, min/max tracking, Comp lists.
template<class P>
class ResultScalarAdapter : public ProxyAdapter<P>
{
public:
    explicit ResultScalarAdapter(const char *summary)
        : ProxyAdapter<P>(summary, KindSyntax::readOnly())
    {
        this->reads = {{"value", "getValue", &P::getValue}, {"text", "getString", &P::getString}};
        this->infos = {{"value", "getValue", &P::getValue},
                       {"text", "getString", &P::getString},
                       {"lowerLimit", "getLowerLimit", &P::getLowerLimit},
                       {"upperLimit", "getUpperLimit", &P::getUpperLimit},
                       {"min", "getMinValue", &P::getMinValue},
                       {"max", "getMaxValue", &P::getMaxValue}};
        // The real-number result has no min/max texts, only their Comp lists.
        if constexpr (!std::is_same<P, ResultDoubleInterface>::value) {
            this->infos.push_back({"minText", "getMinString", &P::getMinString});
            this->infos.push_back({"maxText", "getMaxString", &P::getMaxString});
        }
        this->infos.insert(this->infos.end(),
                           {{"valueComp", "getValueComp", &P::getValueComp},
                            {"minValueComp", "getMinValueComp", &P::getMinValueComp},
                            {"maxValueComp", "getMaxValueComp", &P::getMaxValueComp},
                            {"stringComp", "getStringComp", &P::getStringComp},
                            {"minStringComp", "getMinStringComp", &P::getMinStringComp},
                            {"maxStringComp", "getMaxStringComp", &P::getMaxStringComp}});
    }

protected:
    /// Value and text come from two calls and may belong to two samples: read from the Comp
    /// lists, each with its time stamp, the answer says so (textTimeStamp) when they do.
    CommandResult read(P &p, const QStringList &) const override
    {
        Reading reading(p);
        const auto value = reading.value("getValueComp", [&] { return p.getValueComp(); });
        const auto text = reading.value("getStringComp", [&] { return p.getStringComp(); });
        if (reading.failed() || value->size() < compSize || text->size() < compSize)
            return ProxyAdapter<P>::read(p, {});
        reading.add(QStringLiteral("value"), Values::toJson(value->at(0)));
        reading.add(QStringLiteral("text"), Values::toJson(text->at(0)));
        reading.add(QStringLiteral("timeStamp"), Values::toJson(value->at(2)));
        if (text->at(2) != value->at(2))
            reading.add(QStringLiteral("textTimeStamp"), Values::toJson(text->at(2)));
        return reading.result();
    }

private:
    // [value or text, status, time stamp]
    static constexpr int compSize = 3;
};

#endif
