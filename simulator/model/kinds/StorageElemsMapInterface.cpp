#include "ModelFields.h"
#include "SettingElement.h"
#include "SimulatedKinds.h"
#include "Wire.h"

#include <algorithm>

namespace {

/// The names of stored elements with a sort order.
class StorageSetup : public SettingElement
{
public:
    static Handlers handlers();

    StorageSetup(const Binding &binding, const QStringList &defaults, const QStringList &sortOrders,
                 const QString &sortOrder);

    QString text() const override { return values().join(QStringLiteral(", ")); }
    void restoreDefault() override;
    std::optional<bool> storeName(const QString &name, bool store) override
    {
        return store ? this->store(name) : unstore(name);
    }

private:
    QStringList values() const;
    bool store(const QString &name);
    bool unstore(const QString &name);

    QStringList m_names;
    QStringList m_defaults;
    QStringList m_sortOrders;
    QString m_sortOrder;
    QString m_defaultSortOrder;
};

StorageSetup::StorageSetup(const Binding &binding, const QStringList &defaults, const QStringList &sortOrders,
                           const QString &sortOrder)
    : SettingElement(binding, true)
    , m_names(defaults)
    , m_defaults(defaults)
    , m_sortOrders(sortOrders)
    , m_sortOrder(sortOrder)
    , m_defaultSortOrder(sortOrder)
{
}

Handlers StorageSetup::handlers()
{
    return HandlersOf<StorageSetup>()
        .method("getValues", [](StorageSetup &setup, const QVariantList &) { return Outcome::value(setup.values()); })
        .method("count",
                [](StorageSetup &setup, const QVariantList &) { return Outcome::value(int(setup.m_names.size())); })
        .with(defaultHandler())
        .method("getSortOrder",
                [](StorageSetup &setup, const QVariantList &) { return Outcome::value(setup.m_sortOrder); })
        .method("setSortOrder",
                [](StorageSetup &setup, const QVariantList &a) {
                    const QString order = a.at(0).toString();
                    if (!setup.m_sortOrders.contains(order))
                        return Outcome::error(ErrorNames::invalidArgs,
                                              QStringLiteral("No sort order \"%1\"; known: %2")
                                                  .arg(order, setup.m_sortOrders.join(QStringLiteral(", "))));
                    if (order != setup.m_sortOrder) {
                        setup.m_sortOrder = order;
                        setup.emitSignal(QStringLiteral("sortOrderChanged"), {order});
                        setup.emitSignal(changedSignal,
                                         {QStringLiteral("sort"), 0, int(setup.m_names.size()), setup.values()});
                    }
                    return Outcome::reply();
                })
        .busSignal("setupChanged",
                   [](const StorageSetup &setup) {
                       return QVariantList{QStringLiteral("reset"), 0, int(setup.m_names.size()), setup.values()};
                   })
        .busSignal("sortOrderChanged", [](const StorageSetup &setup) { return QVariantList{setup.m_sortOrder}; });
}

QStringList StorageSetup::values() const
{
    QStringList sorted = m_names;
    if (m_sortOrder == QLatin1String("ascending"))
        std::sort(sorted.begin(), sorted.end());
    else if (m_sortOrder == QLatin1String("descending"))
        std::sort(sorted.begin(), sorted.end(), std::greater<QString>());
    return sorted;
}

bool StorageSetup::store(const QString &name)
{
    if (name.isEmpty() || m_names.contains(name))
        return false;
    m_names.append(name);
    emitSignal(changedSignal, {QStringLiteral("insert"), int(values().indexOf(name)), 1, QStringList{name}});
    return true;
}

bool StorageSetup::unstore(const QString &name)
{
    const int index = values().indexOf(name);
    if (index < 0)
        return false;
    m_names.removeAll(name);
    emitSignal(changedSignal, {QStringLiteral("remove"), index, 1, QStringList{name}});
    return true;
}

void StorageSetup::restoreDefault()
{
    m_names = m_defaults;
    if (m_sortOrder != m_defaultSortOrder) {
        m_sortOrder = m_defaultSortOrder;
        emitSignal(QStringLiteral("sortOrderChanged"), {m_sortOrder});
    }
    emitSignal(changedSignal, {QStringLiteral("reset"), 0, int(m_names.size()), values()});
}

std::unique_ptr<Element> read(const Element::Binding &binding, const ModelFields &fields)
{
    const QStringList orders = fields.texts(QStringLiteral("sortOrders"));
    const QString order = fields.text(QStringLiteral("sortOrder"));
    if (!orders.contains(order))
        throw ModelError{QStringLiteral("sortOrder \"%1\" is not one of \"sortOrders\"").arg(order)};
    return std::make_unique<StorageSetup>(binding, fields.texts(QStringLiteral("default")), orders, order);
}

} // namespace

void registerStorageElemsMapInterface(SimulatedKinds &registry)
{
    registry.add(QStringLiteral("StorageElemsMapInterface"), StorageSetup::handlers(), read);
}
