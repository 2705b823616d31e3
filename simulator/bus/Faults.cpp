#include "Faults.h"

#include <QRegularExpression>

const QString FaultPlan::everyPath = QStringLiteral("*");

bool Fault::parse(const QString &kind, const QString &argument, Fault *fault, QString *why)
{
    Fault parsed;
    if (kind == QLatin1String("delay")) {
        bool ok = false;
        parsed.kind = Delay;
        parsed.delayMs = argument.toInt(&ok);
        if (!ok || parsed.delayMs < 0) {
            *why = QStringLiteral("delay needs a number of milliseconds, not \"%1\"").arg(argument);
            return false;
        }
    } else if (kind == QLatin1String("error")) {
        parsed.kind = Error;
        const int blank = argument.indexOf(QLatin1Char(' '));
        parsed.errorName = blank < 0 ? argument : argument.left(blank);
        parsed.errorMessage = blank < 0 ? QString() : argument.mid(blank + 1);
        static const QRegularExpression errorName(
            QStringLiteral("^[A-Za-z_][A-Za-z0-9_]*(\\.[A-Za-z_][A-Za-z0-9_]*)+$"));
        if (!errorName.match(parsed.errorName).hasMatch()) {
            *why = QStringLiteral("error needs \"<error name> <message>\", the name with dots");
            return false;
        }
    } else if (kind == QLatin1String("silent")) {
        parsed.kind = Silent;
    } else if (kind == QLatin1String("drop")) {
        parsed.kind = Drop;
        if (argument != QLatin1String("release") && argument != QLatin1String("disconnect")) {
            *why = QStringLiteral("drop needs \"release\" or \"disconnect\", not \"%1\"").arg(argument);
            return false;
        }
        parsed.disconnect = argument == QLatin1String("disconnect");
    } else if (kind == QLatin1String("restart")) {
        parsed.kind = Restart;
    } else {
        *why = QStringLiteral("no fault kind \"%1\" (delay, error, silent, drop, restart)").arg(kind);
        return false;
    }
    *fault = parsed;
    return true;
}

QString Fault::kindName() const
{
    switch (kind) {
    case Delay:
        return QStringLiteral("delay");
    case Error:
        return QStringLiteral("error");
    case Silent:
        return QStringLiteral("silent");
    case Drop:
        return QStringLiteral("drop");
    case Restart:
        return QStringLiteral("restart");
    case None:
        break;
    }
    return QStringLiteral("none");
}

Fault FaultPlan::faultFor(const QString &path) const
{
    const auto own = m_faults.constFind(path);
    if (own != m_faults.constEnd())
        return *own;
    return m_faults.value(everyPath);
}
