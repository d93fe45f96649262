// A record of the service: a row of one table as a flat list of named texts. Any thread.
#pragma once

#include <QByteArray>
#include <QStringList>
#include <QVariantMap>

#include <array>

class AbstractJson
{
public:
    virtual ~AbstractJson() = default;

    // The names of the fields in the order of declaration, which is the order on the wire.
    [[nodiscard]] virtual QStringList getProperties() const = 0;
    // Their values in the same order, "" for a null one.
    [[nodiscard]] QStringList getPropertyValues() const;
    [[nodiscard]] QVariantMap toDictionary() const;

    // JSON without white space, every value a percent-encoded text; a value that holds both "-"
    // and ":" is written as it stands, even where that breaks the JSON.
    [[nodiscard]] virtual QString toJsonStr();

    // Fills every field, with null where the object or the map has no text of its name or one that
    // does not decode. Text that is no JSON object counts as an empty one.
    void toJson(const QByteArray &jsonObj);
    void toJson(const QVariantMap &dict);

protected:
    AbstractJson() = default;
    AbstractJson(const AbstractJson &) = default;
    AbstractJson(AbstractJson &&) = default;
    AbstractJson &operator=(const AbstractJson &) = default;
    AbstractJson &operator=(AbstractJson &&) = default;

    [[nodiscard]] virtual QString &field(qsizetype index) = 0;
    [[nodiscard]] virtual const QString &field(qsizetype index) const = 0;
};

template <typename Record>
struct JsonField
{
    const char *name;
    QString Record::*value; // a null text is a field that is absent
};

// What a record type inherits; it declares its fields as the array `Record::fields`.
template <typename Record>
class JsonRecord : public AbstractJson
{
public:
    [[nodiscard]] static Record getJson(const QVariantMap &dict)
    {
        Record record;
        record.toJson(dict);
        return record;
    }

    [[nodiscard]] static QStringList fieldNames()
    {
        QStringList names;
        for (const auto &field : Record::fields)
            names.append(QString::fromLatin1(field.name));
        return names;
    }

    [[nodiscard]] QStringList getProperties() const override { return fieldNames(); }

protected:
    [[nodiscard]] QString &field(qsizetype index) override
    {
        return static_cast<Record &>(*this)
               .*Record::fields.at(static_cast<std::size_t>(index)).value;
    }
    [[nodiscard]] const QString &field(qsizetype index) const override
    {
        return static_cast<const Record &>(*this)
               .*Record::fields.at(static_cast<std::size_t>(index)).value;
    }
};
