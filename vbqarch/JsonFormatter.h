#ifndef VBQARCH_JSONFORMATTER_H
#define VBQARCH_JSONFORMATTER_H

#include <QMap>
#include <QString>
#include <QVariant>

/**
 * @brief Stand-in for the JSON formatter of the instrument's framework library.
 *
 * Only the one function the D-Bus proxies need is provided.
 */
class JsonFormatter
{
public:
    /**
     * @brief Formats one settings map as a compact JSON object text.
     *
     * Keys appear in the map's (ascending) order; nested maps become objects, lists
     * become arrays, numbers, bools and strings keep their JSON forms.
     */
    static QString getJson(QMap<QString, QVariant> map);
};

#endif
