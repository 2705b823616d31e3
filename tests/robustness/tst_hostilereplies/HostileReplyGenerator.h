#ifndef TESTS_HOSTILEREPLYGENERATOR_H
#define TESTS_HOSTILEREPLYGENERATOR_H

#include "FakeMeasApplication.h"

#include <QList>
#include <QPair>
#include <QString>
#include <QVariant>

#include <cstdint>
#include <random>

/// A value the generator made, with what a receiver must find of it.
struct GeneratedValue
{
    QVariant value;
    QString signature;
    /// The contents: of a variant (one), of an array of variants, of a dictionary's values.
    QList<GeneratedValue> elements;
    QStringList keys;
};

/// One hostile answer: an error, an empty return, or return arguments of any signature.
struct HostileAnswer
{
    ScriptedAnswer answer;
    QList<GeneratedValue> arguments;

    bool isError() const { return answer.kind == ScriptedAnswer::Error; }
    QString firstSignature() const { return arguments.isEmpty() ? QString() : arguments.first().signature; }
    QString describe() const;
};

/**
 * Random D-Bus values of random signatures, reproducible from a seed: basic types,
 * variants, arrays, dictionaries (with repeated keys) and structures nested up to depth 32,
 * empty and large arrays; and answers made of them, error and empty answers included.
 */
class HostileReplyGenerator
{
public:
    explicit HostileReplyGenerator(std::uint32_t seed);

    /// Registers the structure and dictionary types the generator sends, once per process.
    static void registerTypes();

    enum class Shape { Any, Error, Empty, WellTyped };

    /// An answer of @p shape; of Any answers about a third carry a first argument of
    /// @p expectedSignature, so that well-typed but odd values are tried as often as wrong ones.
    HostileAnswer answer(const QString &expectedSignature, Shape shape = Shape::Any);

private:
    GeneratedValue anyValue(int depth, int maxDepth);
    GeneratedValue basicValue();
    GeneratedValue basicValue(char code);
    GeneratedValue valueOf(const QString &signature, int maxDepth);
    GeneratedValue variantOf(const GeneratedValue &inner);
    /// A container of @p signature with count() elements at @p depth, its value not yet set.
    GeneratedValue container(const QString &signature, int depth, int maxDepth);
    GeneratedValue arrayOfVariants(int depth, int maxDepth);
    GeneratedValue dictionary(int depth, int maxDepth);
    GeneratedValue fixedComplex();
    QString text();
    int count();
    int uniform(int low, int high);
    bool chance(int percent);

    std::mt19937 m_random;
};

#endif
