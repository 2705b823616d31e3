#include "SettingElement.h"

const QString SettingElement::changedSignal = QStringLiteral("setupChanged");

SettingElement::SettingElement(const Binding &binding, bool changeable)
    : Element(binding)
    , m_changeable(changeable)
{
}

Handlers SettingElement::changeableHandler()
{
    return HandlersOf<SettingElement>().method("isChangeable", [](SettingElement &setting, const QVariantList &) {
        return Outcome::value(setting.isChangeable());
    });
}

Handlers SettingElement::defaultHandler()
{
    return HandlersOf<SettingElement>().method("setToDefault", [](SettingElement &setting, const QVariantList &) {
        setting.restoreDefault();
        return Outcome::reply();
    });
}
