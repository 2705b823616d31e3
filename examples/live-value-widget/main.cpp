// A spin box bound to a live integer setting: it shows the application's value and range,
// greys out while the value is not valid, and sends what the user enters. Nothing here
// blocks the window, not even a silent or restarting application.
//
//   live-value-widget [APPLICATION [PATH]] [--until-valid]
//   live-value-widget sim /Setup/Acquisition/Averages

#include <ApplicationMirror.h>
#include <DBusConnector.h>
#include <LiveValue.h>

#include <QApplication>
#include <QLabel>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QTextStream>
#include <QVBoxLayout>
#include <QWidget>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QStringList args = app.arguments();
    // For scripts: print the value once it is valid, and end.
    const bool untilValid = args.removeAll(QStringLiteral("--until-valid")) > 0;
    const QString application = args.value(1, QStringLiteral("sim"));
    const QString path = args.value(2, QStringLiteral("/Setup/Acquisition/Averages"));

    ApplicationMirror mirror(application, DBusConnector::getInstance()->getDBusConnection());
    LiveValue *setting = mirror.value(path, QStringLiteral("int"));

    QWidget window;
    auto *layout = new QVBoxLayout(&window);
    auto *spinBox = new QSpinBox;
    auto *status = new QLabel;
    layout->addWidget(new QLabel(path));
    layout->addWidget(spinBox);
    layout->addWidget(status);

    auto show = [&] {
        const QSignalBlocker quiet(spinBox); // showing the application's value is not editing it
        spinBox->setRange(setting->minimum().toInt(), setting->maximum().toInt());
        spinBox->setSingleStep(setting->granularity().toInt());
        spinBox->setValue(setting->value().toInt());
        const bool valid = setting->state() == LiveValue::Valid;
        spinBox->setEnabled(valid && setting->changeable().toBool());
        status->setText(valid ? setting->text().toString() : setting->lastError());
        if (untilValid && valid) {
            QTextStream(stdout) << path << " = " << setting->value().toInt() << " (" << spinBox->minimum() << ".."
                                << spinBox->maximum() << ")" << Qt::endl;
            app.quit();
        }
    };
    for (auto changed : {&LiveValue::valueChanged, &LiveValue::textChanged, &LiveValue::minimumChanged,
                         &LiveValue::maximumChanged, &LiveValue::granularityChanged, &LiveValue::changeableChanged})
        QObject::connect(setting, changed, &window, show);
    QObject::connect(setting, &LiveValue::stateChanged, &window, show);
    // The application decides: a refused value comes back as its own on the next change.
    QObject::connect(spinBox, qOverload<int>(&QSpinBox::valueChanged), setting,
                     [setting](int value) { setting->set(value); });
    QObject::connect(setting, &LiveValue::writeStateChanged, &window, [&](LiveValue::WriteState state) {
        if (state == LiveValue::Refused)
            status->setText(QStringLiteral("refused"));
    });

    show();
    window.show();
    return app.exec();
}
