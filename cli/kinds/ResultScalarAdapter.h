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
};

#endif
