#ifndef SIMULATOR_FAULTS_H
#define SIMULATOR_FAULTS_H

#include <QHash>
#include <QString>

/// How the simulator misbehaves on a call to one path.
struct Fault
{
    enum Kind { None, Delay, Error, Silent, Drop, Restart };

    Kind kind = None;
    int delayMs = 0;
    QString errorName;
    QString errorMessage;
    bool disconnect = false; ///< Drop: close the connection rather than release the name

    /// Reads a fault as the control interface gives it: kind and one argument text.
    static bool parse(const QString &kind, const QString &argument, Fault *fault, QString *why);
    QString kindName() const;
};

/// The faults in force, by path; "*" stands for every path without a fault of its own.
class FaultPlan
{
public:
    static const QString everyPath;

    void set(const QString &path, const Fault &fault) { m_faults.insert(path, fault); }
    bool clear(const QString &path) { return m_faults.remove(path) > 0; }
    void clearAll() { m_faults.clear(); }
    Fault faultFor(const QString &path) const;

private:
    QHash<QString, Fault> m_faults;
};

#endif
