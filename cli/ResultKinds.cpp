// The adapters of the measured-result kinds: read-only, without signals.

#include "KindSupport.h"

#include "ResultBoolInterface.h"
#include "ResultDoubleInterface.h"
#include "ResultEnumInterface.h"
#include "ResultIntArrayInterface.h"
#include "ResultIntInterface.h"
#include "ResultVarArrayInterface.h"

#include <type_traits>

namespace {

const KindSyntax readOnly{{QString()}, {}, {QString()}};

/// Integer, real-number and boolean results: value, limits, min/max tracking, Comp lists.
template<class P>
class ScalarResultKind : public KindOf<P>
{
public:
    ScalarResultKind(const char *className, const char *shortName, const char *summary)
        : KindOf<P>(className, shortName, summary, readOnly)
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

class EnumResultKind : public KindOf<ResultEnumInterface>
{
public:
    using P = ResultEnumInterface;

    EnumResultKind()
        : KindOf("ResultEnumInterface", "result-enum", "measured enumerated result", readOnly)
    {
        reads = {{"value", "getValue", &P::getValue}, {"text", "getString", &P::getString}};
        infos = {{"value", "getValue", &P::getValue},
                 {"text", "getString", &P::getString},
                 {"min", "getMinValue", &P::getMinValue},
                 {"max", "getMaxValue", &P::getMaxValue},
                 {"valueComp", "getValueComp", &P::getValueComp}};
    }
};

class IntArrayResultKind : public KindOf<ResultIntArrayInterface>
{
public:
    using P = ResultIntArrayInterface;

    IntArrayResultKind()
        : KindOf("ResultIntArrayInterface", "result-int-array", "measured row of integers", readOnly)
    {
        reads = {{"value", "getValues", &P::getValues}, {"text", "getString", &P::getString}};
        infos = {{"size", "size", &P::size},
                 {"text", "getString", &P::getString},
                 {"resultStatus", "getResultStatus", &P::getResultStatus},
                 {"timeStamp", "getTimeStamp", &P::getTimeStamp}};
    }
};

class VarArrayResultKind : public KindOf<ResultVarArrayInterface>
{
public:
    using P = ResultVarArrayInterface;

    VarArrayResultKind()
        : KindOf("ResultVarArrayInterface", "result-var-array", "measured row of values of any type",
                 {{QString(), QStringLiteral("POSITION")}, {}, {QString()}})
    {
        reads = {{"value", "getValues", &P::getValues}};
        infos = {{"size", "size", &P::size},
                 {"lowerLimit", "getLowerLimit", &P::getLowerLimit},
                 {"upperLimit", "getUpperLimit", &P::getUpperLimit},
                 {"resultStatus", "getResultStatus", &P::getResultStatus},
                 {"timeStamp", "getTimeStamp", &P::getTimeStamp},
                 {"valuesStatus", "getValuesStatus", &P::getValuesStatus},
                 {"valueComp", "getValueComp", &P::getValueComp}};
    }

protected:
    Outcome read(P &p, const QStringList &args) const override
    {
        if (args.isEmpty())
            return KindOf::read(p, args);
        const auto position = Values::parseInt(args.first());
        if (!position)
            return badValue(args.first(), Expected::position);
        Reading reading(p);
        reading.field("value", "getValue", [&] { return p.getValue(*position); });
        reading.field("status", "getValueStatus", [&] { return p.getValueStatus(*position); });
        return reading.outcome();
    }
};

} // namespace

void addResultKinds(KindList &kinds)
{
    kinds.push_back(std::make_unique<ScalarResultKind<ResultIntInterface>>("ResultIntInterface", "result-int",
                                                                           "measured integer result"));
    kinds.push_back(std::make_unique<ScalarResultKind<ResultDoubleInterface>>("ResultDoubleInterface", "result-double",
                                                                              "measured real-number result"));
    kinds.push_back(std::make_unique<ScalarResultKind<ResultBoolInterface>>("ResultBoolInterface", "result-bool",
                                                                            "measured boolean result"));
    kinds.push_back(std::make_unique<EnumResultKind>());
    kinds.push_back(std::make_unique<IntArrayResultKind>());
    kinds.push_back(std::make_unique<VarArrayResultKind>());
}
