#include "SingleValueSetup.h"

#include "ModelFields.h"

SingleValueSetup::Common SingleValueSetup::Common::read(const ModelFields &fields, const QVariant &defaultValue)
{
    return {defaultValue, fields.flag(QStringLiteral("changeable"), true),
            fields.text(QStringLiteral("unit"), QString())};
}

SingleValueSetup::SingleValueSetup(const Binding &binding, const Common &common)
    : SettingElement(binding, common.changeable)
    , m_value(common.defaultValue)
    , m_default(common.defaultValue)
    , m_unit(common.unit)
{
}

bool SingleValueSetup::assign(const QVariant &candidate, QString *why)
{
    QString reason;
    if (!isChangeable())
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
    emitSignal(changedSignal, changeArguments());
    return true;
}

QString SingleValueSetup::text() const
{
    return Wire::text(m_value, m_unit);
}

bool SingleValueSetup::setFromText(const QString &text, QString *why)
{
    return assign(fromText(text), why);
}

void SingleValueSetup::restoreDefault()
{
    if (m_value == m_default)
        return;
    m_value = m_default;
    emitSignal(changedSignal, changeArguments());
}

Handlers SingleValueSetup::setHandler()
{
    return HandlersOf<SingleValueSetup>().method("setValue", [](SingleValueSetup &setup, const QVariantList &a) {
        return Outcome::value(setup.assign(Wire::plain(a.at(0))));
    });
}

Handlers SingleValueSetup::readHandlers(bool inVariant)
{
    return HandlersOf<SingleValueSetup>()
        .method("getValue",
                [inVariant](SingleValueSetup &setup, const QVariantList &) {
                    return Outcome::value(inVariant ? Wire::variant(setup.value()) : setup.value());
                })
        .method("getString",
                [](SingleValueSetup &setup, const QVariantList &) { return Outcome::value(setup.text()); });
}

Handlers SingleValueSetup::changeSignal()
{
    return HandlersOf<SingleValueSetup>().busSignal(
        "setupChanged", [](const SingleValueSetup &setup) { return setup.changeArguments(); });
}

Handlers SingleValueSetup::plainHandlers()
{
    return HandlersOf<SingleValueSetup>()
        .with(setHandler())
        .with(readHandlers())
        .with(changeSignal())
        .with(changeableHandler())
        .with(defaultHandler());
}
