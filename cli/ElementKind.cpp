#include "ElementKind.h"

ElementKind::ElementKind(const char *className, const char *shortName, const char *summary, KindSyntax syntax)
    : m_className(QString::fromLatin1(className))
    , m_shortName(QString::fromLatin1(shortName))
    , m_summary(QString::fromLatin1(summary))
    , m_syntax(std::move(syntax))
{
}

ElementKind::~ElementKind() = default;

bool ElementKind::fits(const QString &command, const QStringList &args) const
{
    for (const QString &form : m_syntax.of(command)) {
        if (form.split(QLatin1Char(' '), Qt::SkipEmptyParts).size() == args.size())
            return true;
    }
    return false;
}

Outcome ElementKind::usage(const QString &command) const
{
    const QStringList forms = m_syntax.of(command);
    if (forms.isEmpty())
        return Outcome::failed(ExitCode::BadCommandLine,
                               QStringLiteral("%1 elements do not offer '%2'").arg(m_className, command));
    QStringList lines;
    for (const QString &form : forms)
        lines.append(QStringLiteral("%1 PATH %2").arg(command, form).trimmed());
    return Outcome::failed(ExitCode::BadCommandLine,
                           QStringLiteral("%1 elements take: %2").arg(m_className, lines.join(QStringLiteral(" | "))));
}

Outcome ElementKind::badValue(const QString &text, const QString &expected)
{
    return Outcome::failed(ExitCode::BadValue, QStringLiteral("'%1' is not %2").arg(text, expected));
}
