#include "SetupElements.h"

#include "SimCompat.h"

#include <cmath>

SetupElement::SetupElement(const QString &proxyClass, const Common &common)
    : Element(common.path, proxyClass)
    , m_value(common.defaultValue)
    , m_default(common.defaultValue)
    , m_changeable(common.changeable)
    , m_unit(common.unit)
{
}

bool SetupElement::assign(const QVariant &candidate, QString *why)
{
    QString reason;
    if (!m_changeable)
        reason = QStringLiteral("%1 is not changeable").arg(path());
    else
        reason = refusal(candidate);
    if (!reason.isEmpty()) {
        if (why)
            *why = reason;
        return false;
    }
    const QVariant accepted = normalized(candidate);
    if (accepted == m_value)
        return true;
    m_value = accepted;
    emitSignal(QStringLiteral("setupChanged"), changeArguments());
    return true;
}

QString SetupElement::text() const
{
    return Wire::text(m_value, m_unit);
}

bool SetupElement::setFromText(const QString &text, QString *why)
{
    return assign(fromText(text), why);
}

void SetupElement::restoreDefault()
{
    if (m_value == m_default)
        return;
    m_value = m_default;
    emitSignal(QStringLiteral("setupChanged"), changeArguments());
}

void SetupElement::addSetupMembers(const QString &signature, bool withChangeableAndDefault)
{
    const bool wrapped = signature == QLatin1String("v");
    addMember(QStringLiteral("setValue"), signature, QStringLiteral("b"),
              [this](const QVariantList &arguments) { return Outcome::value(assign(Wire::plain(arguments.at(0)))); });
    addMember(QStringLiteral("getValue"), QString(), signature, [this, wrapped](const QVariantList &) {
        return Outcome::value(wrapped ? Wire::variant(m_value) : m_value);
    });
    addMember(QStringLiteral("getString"), QString(), QStringLiteral("s"),
              [this](const QVariantList &) { return Outcome::value(text()); });
    if (!withChangeableAndDefault)
        return;
    addChangeableMember([this] { return m_changeable; });
    addDefaultMember();
}

void SetupElement::addChangeSignal(const QString &signature)
{
    addSignal(QStringLiteral("setupChanged"), signature, [this] { return changeArguments(); });
}

NumberSetup::NumberSetup(const Common &common, bool integer, const NumericRange &range)
    : SetupElement(integer ? QStringLiteral("SetupIntInterface") : QStringLiteral("SetupDoubleInterface"), common)
    , m_integer(integer)
    , m_range(range)
{
    const QString signature = integer ? QStringLiteral("i") : QStringLiteral("d");
    addSetupMembers(signature);
    addMember(QStringLiteral("getMinValue"), QString(), signature,
              [this](const QVariantList &) { return Outcome::value(typed(m_range.min)); });
    addMember(QStringLiteral("getMaxValue"), QString(), signature,
              [this](const QVariantList &) { return Outcome::value(typed(m_range.max)); });
    addMember(QStringLiteral("getGranularity"), QString(), signature,
              [this](const QVariantList &) { return Outcome::value(typed(m_range.granularity)); });
    addChangeSignal(signature);
    if (!integer) {
        addSignal(QStringLiteral("setupBoundsChanged"), QStringLiteral("dd"), [this] {
            return QVariantList{m_range.min, m_range.max};
        });
    }
}

QString NumberSetup::refusal(const QVariant &candidate) const
{
    if (!Wire::isNumber(candidate))
        return QStringLiteral("not a number");
    return m_range.refusal(candidate.toDouble());
}

QVariant NumberSetup::fromText(const QString &text) const
{
    bool ok = false;
    const double number = text.toDouble(&ok);
    return ok ? QVariant(number) : QVariant(text);
}

QVariant NumberSetup::normalized(const QVariant &candidate) const
{
    return typed(candidate.toDouble());
}

QVariant NumberSetup::typed(double number) const
{
    return m_integer ? QVariant(int(std::lround(number))) : QVariant(number);
}

BoolSetup::BoolSetup(const Common &common)
    : SetupElement(QStringLiteral("SetupBoolInterface"), common)
{
    addSetupMembers(QStringLiteral("b"));
    addChangeSignal(QStringLiteral("b"));
}

QString BoolSetup::refusal(const QVariant &candidate) const
{
    return Wire::isBool(candidate) ? QString() : QStringLiteral("not true or false");
}

QVariant BoolSetup::fromText(const QString &text) const
{
    if (text == QLatin1String("true") || text == QLatin1String("1") || text == QLatin1String("on"))
        return true;
    if (text == QLatin1String("false") || text == QLatin1String("0") || text == QLatin1String("off"))
        return false;
    return text;
}

StringSetup::StringSetup(const Common &common, int maxLength)
    : SetupElement(QStringLiteral("SetupStringInterface"), common)
    , m_maxLength(maxLength)
{
    addSetupMembers(QStringLiteral("s"));
    addChangeSignal(QStringLiteral("s"));
}

QString StringSetup::refusal(const QVariant &candidate) const
{
    if (!Wire::isText(candidate))
        return QStringLiteral("not a text");
    if (m_maxLength >= 0 && candidate.toString().size() > m_maxLength)
        return QStringLiteral("longer than %1 characters").arg(m_maxLength);
    return {};
}

EnumSetup::EnumSetup(const Common &common, const QStringList &choices)
    : SetupElement(QStringLiteral("SetupEnumInterface"), common)
    , m_choices(choices)
{
    addMember(QStringLiteral("setValue"), QStringLiteral("i"), QStringLiteral("b"),
              [this](const QVariantList &arguments) { return Outcome::value(assign(arguments.at(0))); });
    addMember(
        QStringLiteral("setValue"), QStringLiteral("s"), QStringLiteral("b"),
        [this](const QVariantList &arguments) { return Outcome::value(assign(fromText(arguments.at(0).toString()))); });
    addMember(QStringLiteral("getValueList"), QString(), QStringLiteral("s"),
              [this](const QVariantList &) { return Outcome::value(m_choices.join(QLatin1Char(';'))); });
    addMember(QStringLiteral("getValue"), QString(), QStringLiteral("i"),
              [this](const QVariantList &) { return Outcome::value(value()); });
    addMember(QStringLiteral("getString"), QString(), QStringLiteral("s"),
              [this](const QVariantList &) { return Outcome::value(text()); });
    addMember(QStringLiteral("getStringRepresentation"), QStringLiteral("i"), QStringLiteral("s"),
              [this](const QVariantList &arguments) {
                  const int index = arguments.at(0).toInt();
                  if (index < 0 || index >= m_choices.size())
                      return Outcome::error(ErrorNames::outOfRange, QStringLiteral("No choice %1").arg(index));
                  return Outcome::value(m_choices.at(index));
              });
    addMember(QStringLiteral("getQuantity"), QString(), QStringLiteral("i"),
              [this](const QVariantList &) { return Outcome::value(int(m_choices.size())); });
    // The application runs the chosen action; the simulator has none to run.
    addMember(QStringLiteral("execute"), QString(), QString(), [](const QVariantList &) { return Outcome::reply(); });
    addChangeableMember([this] { return isChangeable(); });
    addDefaultMember();
    addChangeSignal(QStringLiteral("is"));
}

QString EnumSetup::text() const
{
    return m_choices.value(value().toInt());
}

QString EnumSetup::refusal(const QVariant &candidate) const
{
    if (SimCompat::typeId(candidate) != QMetaType::Int)
        return QStringLiteral("not one of the choices");
    const int index = candidate.toInt();
    if (index < 0 || index >= m_choices.size())
        return QStringLiteral("no choice %1").arg(index);
    return {};
}

QVariant EnumSetup::fromText(const QString &text) const
{
    const int index = m_choices.indexOf(text);
    return index >= 0 ? QVariant(index) : QVariant(text);
}

QVariantList EnumSetup::changeArguments() const
{
    return {value(), text()};
}

DevDataSetup::DevDataSetup(const Common &common)
    : SetupElement(QStringLiteral("SetupDevDataInterface"), common)
{
    addSetupMembers(QStringLiteral("v"), false);
    addChangeSignal(QStringLiteral("v"));
}

QString DevDataSetup::refusal(const QVariant &candidate) const
{
    if (!Wire::sameFamily(value(), candidate))
        return QStringLiteral("not of the element's type");
    if (Wire::isNumber(candidate) && std::isnan(candidate.toDouble()))
        return QStringLiteral("NaN is not a value");
    return {};
}

QVariant DevDataSetup::normalized(const QVariant &candidate) const
{
    // A number keeps the element's own type, whichever integer or real type it came as.
    return Wire::isNumber(value()) ? QVariant(candidate.toDouble()) : candidate;
}

QVariant DevDataSetup::fromText(const QString &text) const
{
    if (Wire::isNumber(value())) {
        bool ok = false;
        const double number = text.toDouble(&ok);
        if (ok)
            return number;
    }
    return text;
}
