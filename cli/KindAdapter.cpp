#include "KindAdapter.h"

namespace {

// By class name only: a short name never names a proxy class.
const KindTable::Kind *kindOfClass(const QString &className)
{
    const KindTable::Kind *kind = KindTable::find(className);
    return kind && className == QLatin1String(kind->className) ? kind : nullptr;
}

} // namespace

KindAdapter::KindAdapter(const char *proxyClass, const char *summary, KindSyntax syntax)
    : m_className(QString::fromLatin1(proxyClass))
    , m_kind(kindOfClass(m_className))
    , m_summary(QString::fromLatin1(summary))
    , m_syntax(std::move(syntax))
{
}

KindAdapter::~KindAdapter() = default;

QString KindAdapter::shortName() const
{
    return m_kind ? QString::fromLatin1(m_kind->shortName) : QString();
}

bool KindAdapter::fits(const QString &command, const QStringList &args) const
{
    for (const QString &form : m_syntax.of(command)) {
        if (form.split(QLatin1Char(' '), Qt::SkipEmptyParts).size() == args.size())
            return true;
    }
    return false;
}

CommandResult KindAdapter::usage(const QString &command) const
{
    const QStringList forms = m_syntax.of(command);
    if (forms.isEmpty())
        return CommandResult::failed(ExitCode::BadCommandLine,
                                     QStringLiteral("%1 elements do not offer '%2'").arg(m_className, command));
    QStringList lines;
    for (const QString &form : forms)
        lines.append(QStringLiteral("%1 PATH %2").arg(command, form).trimmed());
    return CommandResult::failed(
        ExitCode::BadCommandLine,
        QStringLiteral("%1 elements take: %2").arg(m_className, lines.join(QStringLiteral(" | "))));
}

CommandResult KindAdapter::badValue(const QString &text, const QString &expected)
{
    return CommandResult::failed(ExitCode::BadValue, QStringLiteral("'%1' is not %2").arg(text, expected));
}
