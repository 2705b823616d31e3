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
    }

protected:
    Outcome read(P &p, const QStringList &args) const override
    {
        if (!args.isEmpty())
            return this->usageOfGet();
        Reading reading(p);
        reading.field("value", "getValue", [&] { return p.getValue(); });
        reading.field("text", "getString", [&] { return p.getString(); });
        return reading.outcome();
    }
    Outcome describe(P &p, const QStringList &args) const override
    {
        if (!args.isEmpty())
            return this->usageOfInfo();
        Reading reading(p);
        reading.field("value", "getValue", [&] { return p.getValue(); });
        reading.field("text", "getString", [&] { return p.getString(); });
        reading.field("lowerLimit", "getLowerLimit", [&] { return p.getLowerLimit(); });
        reading.field("upperLimit", "getUpperLimit", [&] { return p.getUpperLimit(); });
        reading.field("min", "getMinValue", [&] { return p.getMinValue(); });
        reading.field("max", "getMaxValue", [&] { return p.getMaxValue(); });
        // The real-number result has no min/max texts, only their Comp lists.
        if constexpr (!std::is_same<P, ResultDoubleInterface>::value) {
            reading.field("minText", "getMinString", [&] { return p.getMinString(); });
            reading.field("maxText", "getMaxString", [&] { return p.getMaxString(); });
        }
        reading.field("valueComp", "getValueComp", [&] { return p.getValueComp(); });
        reading.field("minValueComp", "getMinValueComp", [&] { return p.getMinValueComp(); });
        reading.field("maxValueComp", "getMaxValueComp", [&] { return p.getMaxValueComp(); });
        reading.field("stringComp", "getStringComp", [&] { return p.getStringComp(); });
        reading.field("minStringComp", "getMinStringComp", [&] { return p.getMinStringComp(); });
        reading.field("maxStringComp", "getMaxStringComp", [&] { return p.getMaxStringComp(); });
        return reading.outcome();
    }
};

class EnumResultKind : public KindOf<ResultEnumInterface>
{
public:
    EnumResultKind()
        : KindOf("ResultEnumInterface", "result-enum", "measured enumerated result", readOnly)
    {
    }

protected:
    Outcome read(ResultEnumInterface &p, const QStringList &args) const override
    {
        if (!args.isEmpty())
            return usageOfGet();
        Reading reading(p);
        reading.field("value", "getValue", [&] { return p.getValue(); });
        reading.field("text", "getString", [&] { return p.getString(); });
        return reading.outcome();
    }
    Outcome describe(ResultEnumInterface &p, const QStringList &args) const override
    {
        if (!args.isEmpty())
            return usageOfInfo();
        Reading reading(p);
        reading.field("value", "getValue", [&] { return p.getValue(); });
        reading.field("text", "getString", [&] { return p.getString(); });
        reading.field("min", "getMinValue", [&] { return p.getMinValue(); });
        reading.field("max", "getMaxValue", [&] { return p.getMaxValue(); });
        reading.field("valueComp", "getValueComp", [&] { return p.getValueComp(); });
        return reading.outcome();
    }
};

class IntArrayResultKind : public KindOf<ResultIntArrayInterface>
{
public:
    IntArrayResultKind()
        : KindOf("ResultIntArrayInterface", "result-int-array", "measured row of integers", readOnly)
    {
    }

protected:
    Outcome read(ResultIntArrayInterface &p, const QStringList &args) const override
    {
        if (!args.isEmpty())
            return usageOfGet();
        Reading reading(p);
        reading.field("value", "getValues", [&] { return p.getValues(); });
        reading.field("text", "getString", [&] { return p.getString(); });
        return reading.outcome();
    }
    Outcome describe(ResultIntArrayInterface &p, const QStringList &args) const override
    {
        if (!args.isEmpty())
            return usageOfInfo();
        Reading reading(p);
        reading.field("size", "size", [&] { return p.size(); });
        reading.field("text", "getString", [&] { return p.getString(); });
        reading.field("resultStatus", "getResultStatus", [&] { return p.getResultStatus(); });
        reading.field("timeStamp", "getTimeStamp", [&] { return p.getTimeStamp(); });
        return reading.outcome();
    }
};

class VarArrayResultKind : public KindOf<ResultVarArrayInterface>
{
public:
    VarArrayResultKind()
        : KindOf("ResultVarArrayInterface", "result-var-array", "measured row of values of any type",
                 {{QString(), QStringLiteral("POSITION")}, {}, {QString()}})
    {
    }

protected:
    Outcome read(ResultVarArrayInterface &p, const QStringList &args) const override
    {
        Reading reading(p);
        if (args.isEmpty())
            return reading.field("value", "getValues", [&] { return p.getValues(); }).outcome();
        if (args.size() != 1)
            return usageOfGet();
        const auto position = Values::parseInt(args.first());
        if (!position)
            return badValue(args.first(), QStringLiteral("a position (whole number)"));
        reading.field("value", "getValue", [&] { return p.getValue(*position); });
        reading.field("status", "getValueStatus", [&] { return p.getValueStatus(*position); });
        return reading.outcome();
    }
    Outcome describe(ResultVarArrayInterface &p, const QStringList &args) const override
    {
        if (!args.isEmpty())
            return usageOfInfo();
        Reading reading(p);
        reading.field("size", "size", [&] { return p.size(); });
        reading.field("lowerLimit", "getLowerLimit", [&] { return p.getLowerLimit(); });
        reading.field("upperLimit", "getUpperLimit", [&] { return p.getUpperLimit(); });
        reading.field("resultStatus", "getResultStatus", [&] { return p.getResultStatus(); });
        reading.field("timeStamp", "getTimeStamp", [&] { return p.getTimeStamp(); });
        reading.field("valuesStatus", "getValuesStatus", [&] { return p.getValuesStatus(); });
        reading.field("valueComp", "getValueComp", [&] { return p.getValueComp(); });
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
